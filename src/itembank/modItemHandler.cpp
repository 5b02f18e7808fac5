// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "itembank/modItemHandler.h"

#include "itembank/ItemXml.h"
#include "itembank/clsItemBank.h"

#include <QStringList>
#include <algorithm>
#include <array>
#include <libxml/tree.h>

namespace {

constexpr std::array<const char16_t*, 12> kMonths = {u"Jan", u"Feb", u"Mar", u"Apr", u"May", u"Jun",
                                                     u"Jul", u"Aug", u"Sep", u"Oct", u"Nov", u"Dec"};
constexpr qsizetype kYearDigits = 4;
constexpr qsizetype kMaxDayDigits = 2;
constexpr qsizetype kDateParts = 3;

const QString kTrue = QStringLiteral("true");
const QString kFalse = QStringLiteral("false");

bool IsDigits(const QString& text) {
    return !text.isEmpty() &&
           std::all_of(text.cbegin(), text.cend(), [](QChar c) { return c >= u'0' && c <= u'9'; });
}

} // namespace

QString GetChildText(const XmlNode& node, const QString& name) {
    const xmlNode* child = ItemXml::FirstChildNamed(node.Raw(), name.toUtf8());
    if (!child) {
        return {};
    }
    const ItemXml::NodeText text(child);
    return QString::fromUtf8(text.View().data(), qsizetype(text.View().size()));
}

void SetChildText(const XmlNode& node, const QString& name, const QString& value) {
    if (!node.IsElement()) {
        return;
    }
    const QByteArray utf8Name = name.toUtf8();
    const clsItemBank::ItemEdit edit(node, utf8Name);
    xmlNode* child = ItemXml::FirstChildNamed(node.Raw(), utf8Name);
    if (!child) {
        child = xmlNewDocNode(node.Raw()->doc, nullptr,
                              reinterpret_cast<const xmlChar*>(utf8Name.constData()), nullptr);
        if (!child) {
            return;
        }
        xmlAddChild(node.Raw(), child);
    }
    XmlNode(child).SetText(value);
}

QString GetAttributeText(const XmlNode& node, const QString& name) {
    return node.Attribute(name);
}

QString GetItemTime(const XmlNode& item) {
    return GetAttributeText(item, QStringLiteral("time"));
}

QString GetItemDate(const XmlNode& item) {
    return GetAttributeText(item, QStringLiteral("date"));
}

int GetItemAge(const XmlNode& item, const QDate& today) {
    const QDate date = ParseItemDateAttribute(GetItemDate(item));
    if (!date.isValid() || !today.isValid()) {
        return 0;
    }
    return int(qAbs(date.daysTo(today)));
}

QString GetItemTitle(const XmlNode& item) {
    return GetChildText(item, QStringLiteral("title"));
}

QString GetItemDescription(const XmlNode& item) {
    return GetChildText(item, QStringLiteral("description"));
}

QString GetItemLink(const XmlNode& item) {
    return GetChildText(item, QStringLiteral("link"));
}

QString GetItemPubDate(const XmlNode& item) {
    return GetChildText(item, QStringLiteral("pubDate"));
}

bool IsItemDeleted(const XmlNode& item) {
    return GetChildText(item, QStringLiteral("delete")) == kTrue;
}

bool IsItemRead(const XmlNode& item) {
    return GetChildText(item, QStringLiteral("read")) == kTrue;
}

bool IsItemFlagged(const XmlNode& item) {
    return GetChildText(item, QStringLiteral("flag")) == kTrue;
}

void SetItemRead(const XmlNode& item, bool read) {
    SetChildText(item, QStringLiteral("read"), read ? kTrue : kFalse);
}

QString FormatItemDate(const QDate& date) {
    if (!date.isValid()) {
        return {};
    }
    return QStringLiteral("%1 %2 %3")
        .arg(date.day(), 2, 10, QLatin1Char('0'))
        .arg(QString::fromUtf16(kMonths[size_t(date.month() - 1)]))
        .arg(date.year(), int(kYearDigits), 10, QLatin1Char('0'));
}

QString FormatItemTime(const QTime& time) {
    return time.isValid() ? time.toString(QStringLiteral("HH:mm:ss")) : QString();
}

QDate ParseItemDateAttribute(const QString& text) {
    const QStringList parts = text.trimmed().split(u' ', Qt::SkipEmptyParts);
    if (parts.size() != kDateParts || parts[0].size() > kMaxDayDigits || !IsDigits(parts[0]) ||
        parts[2].size() != kYearDigits || !IsDigits(parts[2])) {
        return {};
    }
    for (size_t month = 0; month < kMonths.size(); ++month) {
        if (parts[1].compare(QString::fromUtf16(kMonths[month]), Qt::CaseInsensitive) == 0) {
            return QDate(parts[2].toInt(), int(month) + 1, parts[0].toInt());
        }
    }
    return {};
}
