// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QLocale>

// Feed N: "Feed N" with the items "Story N.1" ... (guids "feedN-1" ...), each with `description`
// (escaped as it stands in the feed). Dated now, as a server writes dates: the items land in Today
// and never expire during a test.
inline QByteArray StoryFeed(int feed, int items, const QByteArray& description) {
    const QByteArray now =
        QLocale::c()
            .toString(QDateTime::currentDateTime(), QStringLiteral("ddd, dd MMM yyyy hh:mm:ss"))
            .toUtf8() +
        " GMT";
    const QByteArray n = QByteArray::number(feed);
    QByteArray body = "<?xml version=\"1.0\"?><rss version=\"2.0\"><channel><title>Feed " + n +
                      "</title><link>http://news.example/" + n + "/</link>";
    for (int item = 1; item <= items; ++item) {
        const QByteArray i = QByteArray::number(item);
        body += "<item><title>Story " + n + "." + i + "</title><link>http://news.example/" + n + "/" + i +
                "</link><guid>feed" + n + "-" + i + "</guid><pubDate>" + now + "</pubDate><description>" +
                description + "</description></item>";
    }
    return body + "</channel></rss>";
}
