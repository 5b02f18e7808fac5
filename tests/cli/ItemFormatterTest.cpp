// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/ItemFormatter.h"
#include "platform/XmlDocument.h"
#include "support/QStringPrinter.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <gtest/gtest.h>
#include <ostream>

using namespace Qt::StringLiterals;

namespace {

// An item as the bank stores it, in the state that `flags` shows ("UT." unread and tagged).
XmlDocument Item(const QString& children, const QString& flags = u"U.."_s) {
    const auto state = [](bool on) { return on ? u"true"_s : u"false"_s; };
    return XmlDocument::Parse(
        (u"<item channel=\"http://a.example/feed\" date=\"16 Nov 2026\" time=\"09:30:00\">"_s + children +
         u"<read>"_s + state(flags[0] != u'U') + u"</read><flag>"_s + state(flags[1] == u'T') +
         u"</flag><delete>"_s + state(flags[2] == u'D') +
         u"</delete><channeltitle>Channel A</channeltitle></item>"_s)
            .toUtf8());
}

TEST(ItemFormatterTest, ItemsComeOutAsTheTableSays) {
    QFile table(QStringLiteral(TAMSEL_TEST_DATA_DIR "/item-formatter.txt"));
    ASSERT_TRUE(table.open(QIODevice::ReadOnly | QIODevice::Text));
    int rows = 0;
    for (const QString& row : QString::fromUtf8(table.readAll()).split(u'\n', Qt::SkipEmptyParts)) {
        const QStringList cells = row.split(u" | "_s);
        if (row.startsWith(u'#') || cells.size() != 4) {
            EXPECT_TRUE(row.startsWith(u'#')) << row.toStdString();
            continue;
        }
        SCOPED_TRACE(row.toStdString());
        ++rows;
        const XmlDocument doc = Item(cells[2], cells[1]);
        const XmlNode item = doc.DocumentElement();
        const QString what = cells[0].section(u' ', 0, 0);
        const int number = cells[0].section(u' ', 1).toInt();
        const QString out = what == u"text"    ? ItemFormatter::TextLine(number, item)
                            : what == u"json"  ? ItemFormatter::JsonLine(number, item)
                            : what == u"title" ? ItemFormatter::ListTitle(item)
                            : what == u"show"  ? ItemFormatter::ShowText(item)
                                               : ItemFormatter::Flags(item);
        EXPECT_EQ(out, QString(cells[3]).replace(u"\\n"_s, u"\n"_s));
    }
    EXPECT_EQ(rows, 6);
}

TEST(ItemFormatterTest, LongTitlesAreCutAndControlsNeverReachTheTerminal) {
    const QString exact(128, u'a');
    EXPECT_EQ(ItemFormatter::ListTitle(Item(u"<title>"_s + exact + u"</title>"_s).DocumentElement()), exact);
    EXPECT_EQ(
        ItemFormatter::ListTitle(Item(u"<title>"_s + QString(130, u'b') + u"</title>"_s).DocumentElement()),
        QString(125, u'b') + u"..."_s);
    // C1 controls (CSI) pass an XML parser; they never reach the terminal.
    EXPECT_EQ(ItemFormatter::ListTitle(Item(u"<title>line\none\u009b2J\u202E</title>"_s).DocumentElement()),
              u"line one2J"_s);
}

TEST(ItemFormatterTest, JsonStringsEscapeWhatMustBeEscaped) {
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

TEST(ItemFormatterTest, PagesRunFromTheNewest) {
    // {items, page, first, last}; a last of -1: no such page.
    const int cases[][4] = {{120, 1, 119, 70}, {120, 2, 69, 20}, {120, 3, 19, 0}, {120, 4, 0, -1},
                            {51, 2, 0, 0},     {100, 2, 49, 0},  {0, 1, 0, -1},   {10, 0, 0, -1}};
    for (const auto& [count, page, first, last] : cases) {
        SCOPED_TRACE(testing::Message() << count << " items, page " << page);
        qsizetype bounds[2] = {-1, -1};
        ASSERT_EQ(ItemFormatter::PageBounds(count, page, &bounds[0], &bounds[1]), last >= 0);
        if (last >= 0) {
            EXPECT_EQ(std::pair(bounds[0], bounds[1]), std::pair(qsizetype(first), qsizetype(last)));
        }
    }
    EXPECT_EQ(ItemFormatter::PageCount(120), 3);
    EXPECT_EQ(ItemFormatter::PageCount(0), 0);
}

} // namespace
