// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "support/QStringPrinter.h"

#include <QFile>
#include <QFileInfo>
#include <QStringList>
#include <functional>
#include <gtest/gtest.h>

// The bytes of the file at `path`; none when it cannot be read.
inline QByteArray ReadFile(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// The whole file; empty (and a failed expectation) when it cannot be read.
inline QByteArray ReadWholeFile(const QString& path) {
    EXPECT_TRUE(QFileInfo(path).isReadable()) << path.toStdString();
    return ReadFile(path);
}

// A text file of the suite's data folder.
inline QString DataText(const QString& name) {
    return QString::fromUtf8(ReadWholeFile(QStringLiteral(TAMSEL_TEST_DATA_DIR "/") + name));
}

// Walks the table data/<name>, of at least `minRows` rows "INPUT => EXPECTED" ("\n" is a line end;
// empty lines and comments, '#', are skipped): `actual` turns each input into the expected text.
inline void ExpectTable(const char* name, qsizetype minRows,
                        const std::function<QString(const QString&)>& actual) {
    QStringList rows = DataText(QString::fromLatin1(name)).split(u'\n', Qt::SkipEmptyParts);
    rows.removeIf([](const QString& row) { return row.startsWith(u'#'); });
    EXPECT_GE(rows.size(), minRows) << name;
    for (QString row : rows) {
        SCOPED_TRACE(row.toStdString());
        row.replace(QStringLiteral("\\n"), QStringLiteral("\n"));
        EXPECT_EQ(actual(row.section(QStringLiteral(" => "), 0, 0)), row.section(QStringLiteral(" => "), 1));
    }
}
