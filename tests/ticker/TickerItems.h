// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "itembank/modItemHandler.h"

#include <QDate>
#include <QList>
#include <QString>

struct TickerItem {
    QString title;
    QString description = QStringLiteral("a description");
    QString time = QStringLiteral("08:15:00");
    QString channel = QStringLiteral("Channel A");
    QString link = QStringLiteral("https://a.example/1");
};

// An item bank file holding the given unread items, all of `day`; an empty link is left out.
inline QByteArray ItemBankOf(const QList<TickerItem>& items, QDate day) {
    QString xml = QStringLiteral("<itembank>");
    for (const TickerItem& item : items) {
        xml +=
            QStringLiteral("<item channel=\"http://a.example/feed\" date=\"%1\" time=\"%2\"><title>%3</title>"
                           "<description>%4</description>%5<read>false</read><flag>false</flag>"
                           "<delete>false</delete><channeltitle>%6</channeltitle></item>")
                .arg(FormatItemDate(day), item.time, item.title.toHtmlEscaped(),
                     item.description.toHtmlEscaped(),
                     item.link.isEmpty() ? QString()
                                         : QStringLiteral("<link>%1</link>").arg(item.link.toHtmlEscaped()),
                     item.channel.toHtmlEscaped());
    }
    return (xml + QStringLiteral("</itembank>")).toUtf8();
}
