// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QFile>
#include <QStringList>

// The bytes of the file at `path`; none when it cannot be read.
inline QByteArray ReadFile(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// The rows of the table data/<name>: its lines but empty ones and comments ('#'); none when the
// file cannot be read.
inline QStringList DataRows(const char* name) {
    const QString path = QStringLiteral(TAMSEL_TEST_DATA_DIR "/") + QString::fromLatin1(name);
    QStringList rows = QString::fromUtf8(ReadFile(path)).split(u'\n', Qt::SkipEmptyParts);
    rows.removeIf([](const QString& row) { return row.startsWith(u'#'); });
    return rows;
}
