// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/ItemFormatter.h"

#include "cli/CliArguments.h"
#include "cli/HtmlToText.h"
#include "itembank/modItemHandler.h"
#include "platform/XmlNode.h"

#include <QUrl>
#include <algorithm>

namespace {

QString Cut(const QString& text, qsizetype limit, qsizetype kept) {
    return text.size() > limit ? text.left(kept) + QStringLiteral("...") : text;
}

QString ChannelTitleOf(const XmlNode& item) {
    const QString title = HtmlToText::Printable(GetChildText(item, QStringLiteral("channeltitle")));
    return title.isEmpty() ? HtmlToText::Printable(GetAttributeText(item, QStringLiteral("channel"))) : title;
}

QString JsonBool(bool value) {
    return value ? QStringLiteral("true") : QStringLiteral("false");
}

} // namespace

QString ItemFormatter::ListTitle(const XmlNode& item) {
    QString title = HtmlToText::Printable(GetItemTitle(item));
    if (title.isEmpty()) {
        title = HtmlToText::OneLine(GetItemDescription(item));
    }
    return Cut(title, kTitleLimit, kTitleKept);
}

QString ItemFormatter::Flags(const XmlNode& item) {
    QString flags;
    flags += IsItemRead(item) ? u'.' : u'U';
    flags += IsItemFlagged(item) ? u'T' : u'.';
    flags += IsItemDeleted(item) ? u'D' : u'.';
    return flags;
}

QString ItemFormatter::TextLine(int number, const XmlNode& item) {
    const QString when =
        HtmlToText::Printable(GetItemDate(item)) + u' ' + HtmlToText::Printable(GetItemTime(item));
    const QString channel = Cut(ChannelTitleOf(item), kChannelColumn, kChannelColumn - 3);
    return QString::number(number).rightJustified(4) + QStringLiteral("  ") + Flags(item) +
           QStringLiteral("  ") + when.leftJustified(20) + QStringLiteral("  ") +
           channel.leftJustified(kChannelColumn) + QStringLiteral("  ") + ListTitle(item);
}

QString ItemFormatter::JsonLine(int number, const XmlNode& item) {
    const std::pair<const char16_t*, QString> texts[] = {
        {u"channel", GetAttributeText(item, QStringLiteral("channel"))},
        {u"channeltitle", GetChildText(item, QStringLiteral("channeltitle"))},
        {u"title", GetItemTitle(item)},
        {u"link", GetItemLink(item)},
        {u"guid", GetChildText(item, QStringLiteral("guid"))},
        {u"date", GetItemDate(item)},
        {u"time", GetItemTime(item)},
    };
    QString line = QStringLiteral("{\"n\":") + QString::number(number);
    for (const auto& [key, value] : texts) {
        line += QStringLiteral(",\"") + QString::fromUtf16(key) + QStringLiteral("\":") + JsonString(value);
    }
    line += QStringLiteral(",\"read\":") + JsonBool(IsItemRead(item));
    line += QStringLiteral(",\"flag\":") + JsonBool(IsItemFlagged(item));
    line += QStringLiteral(",\"delete\":") + JsonBool(IsItemDeleted(item));
    return line + u'}';
}

QString ItemFormatter::ShowText(const XmlNode& item) {
    const QString link = HtmlToText::Printable(GetItemLink(item));
    const QString channelUrl = HtmlToText::Printable(GetAttributeText(item, QStringLiteral("channel")));
    QStringList states;
    states.append(IsItemRead(item) ? QStringLiteral("read") : QStringLiteral("unread"));
    if (IsItemFlagged(item)) {
        states.append(QStringLiteral("tagged"));
    }
    if (IsItemDeleted(item)) {
        states.append(QStringLiteral("deleted"));
    }
    QString text = HtmlToText::Printable(GetItemTitle(item)) + u'\n';
    text += QStringLiteral("Channel: ") + ChannelTitleOf(item) + QStringLiteral(" <") + channelUrl +
            QStringLiteral(">\n");
    text += QStringLiteral("Date:    ") + HtmlToText::Printable(GetItemDate(item)) + u' ' +
            HtmlToText::Printable(GetItemTime(item)) + u'\n';
    if (!link.isEmpty()) {
        text += QStringLiteral("Link:    ") + link + u'\n';
    }
    text += QStringLiteral("State:   ") + states.join(QStringLiteral(", ")) + u'\n';
    const HtmlToText::Result body = HtmlToText::Convert(GetItemDescription(item), QUrl(GetItemLink(item)));
    if (!body.text.isEmpty()) {
        text += u'\n' + body.text + u'\n';
    }
    if (!body.links.isEmpty()) {
        text += QStringLiteral("\nLinks:\n");
        for (qsizetype n = 0; n < body.links.size(); ++n) {
            text += u'[' + QString::number(n + 1) + QStringLiteral("] ") + body.links[n] + u'\n';
        }
    }
    return text;
}

QString ItemFormatter::JsonString(const QString& text) {
    QString quoted;
    quoted.reserve(text.size() + 2);
    quoted += u'"';
    for (const QChar c : text) {
        switch (c.unicode()) {
        case u'"':
            quoted += QStringLiteral("\\\"");
            break;
        case u'\\':
            quoted += QStringLiteral("\\\\");
            break;
        case u'\n':
            quoted += QStringLiteral("\\n");
            break;
        case u'\r':
            quoted += QStringLiteral("\\r");
            break;
        case u'\t':
            quoted += QStringLiteral("\\t");
            break;
        case u'\b':
            quoted += QStringLiteral("\\b");
            break;
        case u'\f':
            quoted += QStringLiteral("\\f");
            break;
        default:
            // Control characters, and the two line separators that some readers of JSON lines
            // take for line ends, are written as escapes.
            if (c.unicode() < 0x20 || c.unicode() == 0x7F || c.unicode() == 0x2028 || c.unicode() == 0x2029) {
                quoted += QStringLiteral("\\u") + QString::number(c.unicode(), 16).rightJustified(4, u'0');
            } else {
                quoted += c;
            }
        }
    }
    quoted += u'"';
    return quoted;
}

int ItemFormatter::PageCount(qsizetype count) {
    return int((count + CliArguments::kItemsPerPage - 1) / CliArguments::kItemsPerPage);
}

bool ItemFormatter::PageBounds(qsizetype count, int page, qsizetype* first, qsizetype* last) {
    if (page < 1 || page > PageCount(count)) {
        return false;
    }
    *first = count - 1 - qsizetype(page - 1) * CliArguments::kItemsPerPage;
    *last = std::max<qsizetype>(0, *first - CliArguments::kItemsPerPage + 1);
    return true;
}
