// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/ItemFormatter.h"
#include "platform/XmlDocument.h"
#include "support/QStringPrinter.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <gtest/gtest.h>
#include <ostream>

using namespace Qt::StringLiterals;

namespace {

// An item as the bank stores it.
class ItemFormatterTest : public ::testing::Test {
protected:
    XmlNode Item(const QString& children, const QString& read = u"false"_s, const QString& flag = u"false"_s,
                 const QString& deleted = u"false"_s) {
        const QString xml =
            u"<item channel=\"http://a.example/feed\" date=\"16 Nov 2026\" time=\"09:30:00\">"_s + children +
            u"<read>"_s + read + u"</read><flag>"_s + flag + u"</flag><delete>"_s + deleted +
            u"</delete><channeltitle>Channel A</channeltitle></item>"_s;
        m_doc = XmlDocument::Parse(xml.toUtf8());
        return m_doc.DocumentElement();
    }

    XmlDocument m_doc;
};

TEST_F(ItemFormatterTest, TextLineShowsNumberFlagsDateChannelAndTitle) {
    const XmlNode item = Item(u"<title>Storm ahead</title>"_s, u"false"_s, u"true"_s);
    const QString line = ItemFormatter::TextLine(7, item);
    EXPECT_TRUE(line.startsWith(u"   7  UT.  16 Nov 2026 09:30:00  Channel A"_s)) << line.toStdString();
    EXPECT_TRUE(line.endsWith(u"  Storm ahead"_s));
    EXPECT_EQ(ItemFormatter::Flags(Item(u"<title>x</title>"_s, u"true"_s, u"false"_s, u"true"_s)), u"..D"_s);
}

TEST_F(ItemFormatterTest, ListTitleFollowsTheViewer) {
    EXPECT_EQ(ItemFormatter::ListTitle(Item(u"<title>T</title><description>D</description>"_s)), u"T"_s);
    EXPECT_EQ(
        ItemFormatter::ListTitle(Item(u"<description>&lt;p&gt;From &lt;b&gt;the&lt;/b&gt; text&lt;/p&gt;"
                                      u"</description>"_s)),
        u"From the text"_s);
    const QString exact(128, u'a');
    EXPECT_EQ(ItemFormatter::ListTitle(Item(u"<title>"_s + exact + u"</title>"_s)), exact);
    const QString longer(130, u'b');
    EXPECT_EQ(ItemFormatter::ListTitle(Item(u"<title>"_s + longer + u"</title>"_s)),
              QString(125, u'b') + u"..."_s);
    // C1 controls (CSI) pass an XML parser; they never reach the terminal.
    EXPECT_EQ(ItemFormatter::ListTitle(Item(u"<title>line\none\u009b2J\u202E</title>"_s)), u"line one2J"_s);
}

TEST_F(ItemFormatterTest, JsonLineHoldsTheKeysInOrder) {
    const XmlNode item = Item(
        u"<title>Say \"hi\" \\ there</title><link>http://a.example/1</link><guid>g-1</guid>"_s, u"true"_s);
    const QString line = ItemFormatter::JsonLine(3, item);
    EXPECT_FALSE(line.contains(u'\n'));
    EXPECT_TRUE(
        line.startsWith(u"{\"n\":3,\"channel\":\"http://a.example/feed\",\"channeltitle\":\"Channel A\","
                        u"\"title\":"_s))
        << line.toStdString();
    QJsonParseError error;
    const QJsonObject object = QJsonDocument::fromJson(line.toUtf8(), &error).object();
    ASSERT_EQ(error.error, QJsonParseError::NoError) << line.toStdString();
    EXPECT_EQ(object.keys().size(), 11);
    EXPECT_EQ(object.value(u"n"_s).toInt(), 3);
    EXPECT_EQ(object.value(u"title"_s).toString(), u"Say \"hi\" \\ there"_s);
    EXPECT_EQ(object.value(u"link"_s).toString(), u"http://a.example/1"_s);
    EXPECT_EQ(object.value(u"guid"_s).toString(), u"g-1"_s);
    EXPECT_EQ(object.value(u"date"_s).toString(), u"16 Nov 2026"_s);
    EXPECT_EQ(object.value(u"time"_s).toString(), u"09:30:00"_s);
    EXPECT_TRUE(object.value(u"read"_s).toBool());
    EXPECT_TRUE(object.value(u"flag"_s).isBool());
    EXPECT_FALSE(object.value(u"flag"_s).toBool());
    EXPECT_FALSE(object.value(u"delete"_s).toBool());
}

TEST_F(ItemFormatterTest, JsonStringsEscapeWhatMustBeEscaped) {
    EXPECT_EQ(ItemFormatter::JsonString(u"a\"b\\c"_s), u"\"a\\\"b\\\\c\""_s);
    EXPECT_EQ(ItemFormatter::JsonString(u"1\n2\r3\t4\b5\f"_s), u"\"1\\n2\\r3\\t4\\b5\\f\""_s);
    EXPECT_EQ(ItemFormatter::JsonString(u"\x1b[0m\x01\x7f\u2028é"_s),
              u"\"\\u001b[0m\\u0001\\u007f\\u2028é\""_s);
    const QString all = u"\x00\x1f \"\\ /\u2029 ok"_s;
    EXPECT_EQ(QJsonDocument::fromJson((u"["_s + ItemFormatter::JsonString(all) + u"]"_s).toUtf8())
                  .array()
                  .at(0)
                  .toString(),
              all);
}

TEST_F(ItemFormatterTest, ShowTextRendersTheDescription) {
    const XmlNode item =
        Item(u"<title>Storm</title><link>https://news.example/storm</link>"
             u"<description>&lt;p&gt;Winds of &lt;a href=\"/map\"&gt;force 10&lt;/a&gt;.&lt;/p&gt;"
             u"&lt;p&gt;Stay in.&lt;/p&gt;</description>"_s);
    const QString text = ItemFormatter::ShowText(item);
    EXPECT_TRUE(
        text.startsWith(u"Storm\nChannel: Channel A <http://a.example/feed>\nDate:    16 Nov 2026 09:30:00\n"
                        u"Link:    https://news.example/storm\nState:   unread\n"_s))
        << text.toStdString();
    EXPECT_TRUE(text.contains(u"\nWinds of force 10 [1].\n\nStay in.\n"_s)) << text.toStdString();
    EXPECT_TRUE(text.endsWith(u"Links:\n[1] https://news.example/map\n"_s)) << text.toStdString();
}

TEST(ItemFormatterPagingTest, PagesRunFromTheNewest) {
    qsizetype first = -1;
    qsizetype last = -1;
    // 120 items: 119 to 70, 69 to 20, 19 to 0.
    ASSERT_TRUE(ItemFormatter::PageBounds(120, 1, &first, &last));
    EXPECT_EQ(std::pair(first, last), std::pair(qsizetype(119), qsizetype(70)));
    ASSERT_TRUE(ItemFormatter::PageBounds(120, 2, &first, &last));
    EXPECT_EQ(std::pair(first, last), std::pair(qsizetype(69), qsizetype(20)));
    ASSERT_TRUE(ItemFormatter::PageBounds(120, 3, &first, &last));
    EXPECT_EQ(std::pair(first, last), std::pair(qsizetype(19), qsizetype(0)));
    EXPECT_FALSE(ItemFormatter::PageBounds(120, 4, &first, &last));
    EXPECT_EQ(ItemFormatter::PageCount(120), 3);
    // 51 items: the second page holds only the oldest.
    ASSERT_TRUE(ItemFormatter::PageBounds(51, 2, &first, &last));
    EXPECT_EQ(std::pair(first, last), std::pair(qsizetype(0), qsizetype(0)));
    ASSERT_TRUE(ItemFormatter::PageBounds(100, 2, &first, &last));
    EXPECT_EQ(std::pair(first, last), std::pair(qsizetype(49), qsizetype(0)));
    EXPECT_EQ(ItemFormatter::PageCount(0), 0);
    EXPECT_FALSE(ItemFormatter::PageBounds(0, 1, &first, &last));
    EXPECT_FALSE(ItemFormatter::PageBounds(10, 0, &first, &last));
}

} // namespace
