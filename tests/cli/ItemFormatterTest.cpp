// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/ItemFormatter.h"
#include "DataRows.h"
#include "platform/XmlDocument.h"
#include "support/QStringPrinter.h"

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
    const QStringList rows = DataRows("item-formatter.txt");
    EXPECT_EQ(rows.size(), 10);
    for (const QString& row : rows) {
        SCOPED_TRACE(row.toStdString());
        const QStringList cells = row.split(u" | "_s);
        ASSERT_EQ(cells.size(), 4);
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

// The sessions page through lists; a page before the first, or of an empty list, does not exist.
TEST(ItemFormatterTest, NoPageBeforeTheFirstNorOfAnEmptyList) {
    qsizetype first = 0;
    qsizetype last = 0;
    EXPECT_FALSE(ItemFormatter::PageBounds(10, 0, &first, &last));
    EXPECT_FALSE(ItemFormatter::PageBounds(0, 1, &first, &last));
    EXPECT_EQ(ItemFormatter::PageCount(0), 0);
}

} // namespace
