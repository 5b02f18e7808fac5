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
    EXPECT_EQ(GetItemPubDate(item), QStringLiteral("x"));
    EXPECT_EQ(GetChildText(item, QStringLiteral("link")), QString());
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
    EXPECT_TRUE(IsItemRead(item));
    EXPECT_TRUE(IsItemFlagged(item));
    EXPECT_FALSE(IsItemDeleted(item));
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

TEST(ItemHandler, AttributesAndItemFields) {
    const XmlDocument doc = Parse("<item channel=\"http://x/it's\" date=\"05 Mar 2005\" time=\"13:45:00\">"
                                  "<title>T</title><link>L</link><description>D</description></item>");
    const XmlNode item = doc.DocumentElement();
    EXPECT_EQ(GetAttributeText(item, QStringLiteral("channel")), QStringLiteral("http://x/it's"));
    EXPECT_EQ(GetAttributeText(item, QStringLiteral("missing")), QString());
    EXPECT_EQ(GetItemDate(item), QStringLiteral("05 Mar 2005"));
    EXPECT_EQ(GetItemTime(item), QStringLiteral("13:45:00"));
    EXPECT_EQ(GetItemTitle(item), QStringLiteral("T"));
    EXPECT_EQ(GetItemLink(item), QStringLiteral("L"));
    EXPECT_EQ(GetItemDescription(item), QStringLiteral("D"));
}

TEST(ItemHandler, ItemDatesUseEnglishMonthsWhateverTheLocale) {
    const QLocale before;
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    const QStringList expected = {
        QStringLiteral("05 Jan 2005"), QStringLiteral("05 Feb 2005"), QStringLiteral("05 Mar 2005"),
        QStringLiteral("05 Apr 2005"), QStringLiteral("05 May 2005"), QStringLiteral("05 Jun 2005"),
        QStringLiteral("05 Jul 2005"), QStringLiteral("05 Aug 2005"), QStringLiteral("05 Sep 2005"),
        QStringLiteral("05 Oct 2005"), QStringLiteral("05 Nov 2005"), QStringLiteral("05 Dec 2005")};
    for (int month = 1; month <= 12; ++month) {
        const QDate date(2005, month, 5);
        EXPECT_EQ(FormatItemDate(date), expected[month - 1]);
        EXPECT_EQ(ParseItemDateAttribute(FormatItemDate(date)), date);
    }
    QLocale::setDefault(before);
    EXPECT_EQ(FormatItemDate(QDate(2026, 11, 30)), QStringLiteral("30 Nov 2026"));
    EXPECT_EQ(FormatItemDate(QDate()), QString());
    EXPECT_EQ(FormatItemTime(QTime(7, 5, 9)), QStringLiteral("07:05:09"));
    EXPECT_EQ(FormatItemTime(QTime(23, 59, 0)), QStringLiteral("23:59:00"));
}

struct DateCase {
    const char* text;
    QDate expected;
};

class ItemDateParsing : public ::testing::TestWithParam<DateCase> {};

TEST_P(ItemDateParsing, ReadsOnlyItemDates) {
    EXPECT_EQ(ParseItemDateAttribute(QString::fromUtf8(GetParam().text)), GetParam().expected)
        << GetParam().text;
}

INSTANTIATE_TEST_SUITE_P(Texts, ItemDateParsing,
                         ::testing::Values(DateCase{"05 Mar 2005", QDate(2005, 3, 5)},
                                           DateCase{" 5 mar 2005 ", QDate(2005, 3, 5)},
                                           DateCase{"31 DEC 1999", QDate(1999, 12, 31)},
                                           DateCase{"29 Feb 2024", QDate(2024, 2, 29)},
                                           DateCase{"29 Feb 2023", QDate()}, DateCase{"05 Mär 2005", QDate()},
                                           DateCase{"2005-03-05", QDate()}, DateCase{"05 Mar 05", QDate()},
                                           DateCase{"", QDate()}, DateCase{"005 Mar 2005", QDate()},
                                           DateCase{"05 March 2005", QDate()},
                                           DateCase{"Sat, 05 Mar 2005", QDate()}));

TEST(ItemHandler, AgeIsTheDistanceInDaysEitherWay) {
    const QDate today(2026, 11, 16);
    const XmlDocument doc = Parse("<bank><item date=\"08 Nov 2026\"/><item date=\"24 Nov 2026\"/>"
                                  "<item date=\"16 Nov 2026\"/><item date=\"someday\"/><item/></bank>");
    const std::vector<XmlNode> items = doc.DocumentElement().ChildNodes();
    EXPECT_EQ(GetItemAge(items[0], today), 8);
    EXPECT_EQ(GetItemAge(items[1], today), 8);
    EXPECT_EQ(GetItemAge(items[2], today), 0);
    EXPECT_EQ(GetItemAge(items[3], today), 0);
    EXPECT_EQ(GetItemAge(items[4], today), 0);
}

} // namespace
