// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QString>
#include <cstdio>
#include <cstdlib>

// The made-up data of the benchmarks that build a profile on disk.

inline QByteArray ChannelUrl(int channel) {
    return "http://feeds.example/channel-" + QByteArray::number(channel) + "/rss";
}

// Writes the file or ends the benchmark: a figure measured on missing data would mislead.
inline void WriteFile(const QString& path, const QByteArray& bytes) {
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size()) {
        std::fprintf(stderr, "cannot write %s\n", qPrintable(path));
        std::exit(1);
    }
}
