// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "itembank/modItemHandler.h"

#include <QByteArray>
#include <QDate>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QString>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <random>

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

// An items.xml of `items` items spread over the last 60 days and `channels` channels, with
// 120-word descriptions drawn from a small vocabulary (so searches find many items), half of them
// read and one in fifty tagged or deleted. The same seed gives the same bank.
inline QByteArray BenchItemBank(int items, int channels, unsigned seed) {
    constexpr int kDays = 60;
    constexpr int kDescriptionWords = 120;
    std::mt19937 random(seed);
    const char* words[] = {"storm", "market", "river",  "council", "vote",  "harbour", "team",  "season",
                           "plan",  "report", "bridge", "school",  "price", "winter",  "night", "road"};
    const auto word = [&random, &words] { return words[random() % std::size(words)]; };
    const QDate today = QDate::currentDate();
    QByteArray bank = "<itembank>";
    bank.reserve(qsizetype(items) * 1100);
    for (int index = 0; index < items; ++index) {
        const int channel = int(random() % unsigned(channels));
        const QDate date = today.addDays(-(kDays - 1) + qint64(index) * kDays / items);
        QByteArray description;
        for (int n = 0; n < kDescriptionWords; ++n) {
            description += word();
            description += ' ';
        }
        const QByteArray number = QByteArray::number(index);
        bank += "<item channel=\"" + ChannelUrl(channel) + "\" date=\"" + FormatItemDate(date).toUtf8() +
                "\" time=\"12:00:00\"><title>Item " + number + ' ' + word() + ' ' + word() +
                "</title><link>http://feeds.example/story/" + number + "</link><description>" + description +
                "</description><guid>urn:bench:" + number + "</guid><read>" +
                (random() % 2 == 0 ? "true" : "false") + "</read><flag>" +
                (random() % 50 == 0 ? "true" : "false") + "</flag><delete>" +
                (random() % 50 == 0 ? "true" : "false") + "</delete><channeltitle>Channel " +
                QByteArray::number(channel) + " News</channeltitle></item>";
    }
    return bank + "</itembank>\n";
}
