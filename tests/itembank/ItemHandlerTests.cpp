// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "itembank/modItemHandler.h"
#include "platform/XmlDocument.h"
#include "support/DataRows.h"

#include <QLocale>
#include <gtest/gtest.h>
#include <tuple>

using namespace Qt::Literals::StringLiterals;

namespace {

// Children are found by their name as written, prefix included; the state tests compare with "true"
// exactly; setting changes the first child of the name in place, or appends one.
TEST(ItemHandler, ChildTextReadsAndChangesTheFirstChildOfThatName) {
    XmlDocument doc =
        XmlDocument::Parse("<item xmlns:dc=\"urn:dc\"><read>True</read><flag> true</flag>"
                           "<delete>true</delete><delete>false</delete><title>One</title><title>Two</title>"
                           "<dc:creator>Ann <b>Lee</b></dc:creator><pubDate>x</pubDate></item>");
    const XmlNode item = doc.DocumentElement();
    EXPECT_EQ(GetChildText(item, u"title"_s), u"One"_s);
    EXPECT_EQ(GetChildText(item, u"dc:creator"_s), u"Ann Lee"_s);
    EXPECT_EQ(GetChildText(item, u"creator"_s), QString());
    EXPECT_EQ(GetChildText(item, u"pubdate"_s), QString());
    EXPECT_EQ(GetChildText(XmlNode(), u"title"_s), QString());
    EXPECT_EQ(std::tuple(IsItemRead(item), IsItemFlagged(item), IsItemDeleted(item)),
              std::tuple(false, false, true));
    SetItemRead(item, true);
    SetChildText(item, u"flag"_s, u"true"_s);
    SetChildText(item, u"title"_s, u"<b>&amp;</b>"_s);
    SetChildText(item, u"link"_s, u"x"_s);
    SetChildText(item, u"dc:creator"_s, QString());
    SetChildText(XmlNode(), u"read"_s, u"true"_s);
    EXPECT_EQ(doc.ToBytes(),
              "<item xmlns:dc=\"urn:dc\"><read>true</read><flag>true</flag><delete>true</delete>"
              "<delete>false</delete><title>&lt;b&gt;&amp;amp;&lt;/b&gt;</title><title>Two</title>"
              "<dc:creator/><pubDate>x</pubDate><link>x</link></item>\n");
}

TEST(ItemHandler, ItemDatesUseEnglishMonthsWhateverTheLocale) {
    const QLocale before;
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    const QStringList months = u"Jan Feb Mar Apr May Jun Jul Aug Sep Oct Nov Dec"_s.split(u' ');
    for (int month = 1; month <= 12; ++month) {
        const QDate date(2005, month, 5);
        EXPECT_EQ(FormatItemDate(date), u"05 "_s + months[month - 1] + u" 2005"_s);
        EXPECT_EQ(ParseItemDateAttribute(FormatItemDate(date)), date);
    }
    QLocale::setDefault(before);
    EXPECT_EQ(FormatItemTime(QTime(7, 5, 9)), u"07:05:09"_s);
    ExpectTable("date-attributes.txt", 11, [](const QString& text) {
        const QDate date = ParseItemDateAttribute(text);
        return date.isNull() ? u"-"_s : date.toString(Qt::ISODate);
    });
}

} // namespace
