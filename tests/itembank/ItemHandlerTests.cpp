// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "itembank/modItemHandler.h"
#include "platform/XmlDocument.h"

#include <QLocale>
#include <gtest/gtest.h>

namespace {

XmlDocument Parse(const char* xml) {
    QString error;
    XmlDocument doc = XmlDocument::Parse(QByteArray(xml), &error);
    EXPECT_FALSE(doc.IsNull()) << error.toStdString();
    return doc;
}

TEST(ItemHandler, ChildTextIsTheFirstChildOfThatNameAsWritten) {
    const XmlDocument doc = Parse("<item xmlns:dc=\"urn:dc\"><title>One</title><title>Two</title>"
                                  "<dc:creator>Ann <b>Lee</b></dc:creator><pubDate>x</pubDate></item>");
    const XmlNode item = doc.DocumentElement();
    EXPECT_EQ(GetChildText(item, QStringLiteral("title")), QStringLiteral("One"));
    EXPECT_EQ(GetChildText(item, QStringLiteral("dc:creator")), QStringLiteral("Ann Lee"));
    EXPECT_EQ(GetChildText(item, QStringLiteral("creator")), QString());
    EXPECT_EQ(GetChildText(item, QStringLiteral("pubdate")), QString());
    EXPECT_EQ(GetChildText(XmlNode(), QStringLiteral("title")), QString());
}

TEST(ItemHandler, SetChildTextChangesInPlaceOrAppendsALastChild) {
    XmlDocument doc = Parse("<item><read>false</read><title>T</title></item>");
    const XmlNode item = doc.DocumentElement();
    SetItemRead(item, true);
    SetChildText(item, QStringLiteral("flag"), QStringLiteral("true"));
    SetChildText(item, QStringLiteral("title"), QStringLiteral("<b>&amp;</b>"));
    EXPECT_EQ(doc.ToBytes(), QByteArray("<item><read>true</read><title>&lt;b&gt;&amp;amp;&lt;/b&gt;</title>"
                                        "<flag>true</flag></item>\n"));
    SetChildText(XmlNode(), QStringLiteral("read"), QStringLiteral("true"));
}

TEST(ItemHandler, StateTestsCompareWithTrueExactly) {
    const XmlDocument doc =
        Parse("<item><read>True</read><flag> true</flag><delete>true</delete><delete>false</delete></item>");
    const XmlNode item = doc.DocumentElement();
    EXPECT_FALSE(IsItemRead(item));
    EXPECT_FALSE(IsItemFlagged(item));
    EXPECT_TRUE(IsItemDeleted(item));
}

TEST(ItemHandler, ItemDatesUseEnglishMonthsWhateverTheLocale) {
    const QLocale before;
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    const QStringList months = QStringLiteral("Jan Feb Mar Apr May Jun Jul Aug Sep Oct Nov Dec").split(u' ');
    for (int month = 1; month <= 12; ++month) {
        const QDate date(2005, month, 5);
        EXPECT_EQ(FormatItemDate(date), QStringLiteral("05 ") + months[month - 1] + QStringLiteral(" 2005"));
        EXPECT_EQ(ParseItemDateAttribute(FormatItemDate(date)), date);
    }
    QLocale::setDefault(before);
    EXPECT_EQ(FormatItemTime(QTime(7, 5, 9)), QStringLiteral("07:05:09"));
    const std::pair<const char*, QDate> texts[] = {{" 5 mar 2005 ", QDate(2005, 3, 5)},
                                                   {"31 DEC 1999", QDate(1999, 12, 31)},
                                                   {"29 Feb 2024", QDate(2024, 2, 29)},
                                                   {"29 Feb 2023", QDate()},
                                                   {"05 Mär 2005", QDate()},
                                                   {"2005-03-05", QDate()},
                                                   {"05 Mar 05", QDate()},
                                                   {"", QDate()},
                                                   {"005 Mar 2005", QDate()},
                                                   {"05 March 2005", QDate()},
                                                   {"Sat, 05 Mar 2005", QDate()}};
    for (const auto& [text, date] : texts) {
        EXPECT_EQ(ParseItemDateAttribute(QString::fromUtf8(text)), date) << text;
    }
}

TEST(ItemHandler, AgeIsTheDistanceInDaysEitherWay) {
    const XmlDocument doc = Parse("<bank><item date=\"08 Nov 2026\"/><item date=\"24 Nov 2026\"/>"
                                  "<item date=\"16 Nov 2026\"/><item date=\"someday\"/><item/></bank>");
    std::vector<int> ages;
    for (const XmlNode& item : doc.DocumentElement().ChildNodes()) {
        ages.push_back(GetItemAge(item, QDate(2026, 11, 16)));
    }
    EXPECT_EQ(ages, std::vector<int>({8, 8, 0, 0, 0}));
}

} // namespace
