// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QFile>
#include <QStringList>

// The rows of the table data/<name>: its lines but empty ones and comments ('#'); none when the
// file cannot be read.
inline QStringList DataRows(const char* name) {
    QFile file(QStringLiteral(TAMSEL_TEST_DATA_DIR "/") + QString::fromLatin1(name));
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        return {};
    }
    QStringList rows = QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts);
    rows.removeIf([](const QString& row) { return row.startsWith(u'#'); });
    return rows;
}
