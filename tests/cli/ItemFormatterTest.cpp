// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/ItemFormatter.h"
#include "platform/XmlDocument.h"
#include "support/DataRows.h"

#include <QJsonDocument>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

// Each row: what comes out (and the item's number), the item's state as list flags ("UT." unread
// and tagged) and its children. The item is stored as the bank stores it.
TEST(ItemFormatterTest, ItemsComeOutAsTheTableSays) {
    ExpectTable("item-formatter.txt", 10, [](const QString& row) {
        const QStringList cells = row.split(u" | "_s);
        // A state child is "true" where its letter shows: '.' read, 'T' tagged, 'D' deleted.
        const auto state = [&cells](int at, QChar on) {
            return cells.value(1)[at] == on ? u"true"_s : u"false"_s;
        };
        const XmlDocument doc = XmlDocument::Parse(
            u"<item channel=\"http://a.example/feed\" date=\"16 Nov 2026\" time=\"09:30:00\">%1"
            u"<read>%2</read><flag>%3</flag><delete>%4</delete><channeltitle>Channel A</channeltitle></item>"_s
                .arg(cells.value(2), state(0, u'.'), state(1, u'T'), state(2, u'D'))
                .toUtf8());
        const XmlNode item = doc.DocumentElement();
        const QString what = cells[0].section(u' ', 0, 0);
        const int number = cells[0].section(u' ', 1).toInt();
        return what == u"text"    ? ItemFormatter::TextLine(number, item)
               : what == u"json"  ? ItemFormatter::JsonLine(number, item)
               : what == u"title" ? ItemFormatter::ListTitle(item)
               : what == u"show"  ? ItemFormatter::ShowText(item)
                                  : ItemFormatter::Flags(item);
    });
}

TEST(ItemFormatterTest, JsonStringsEscapeWhatMustBeEscaped) {
    EXPECT_EQ(ItemFormatter::JsonString(u"a\"b\\c"_s), u"\"a\\\"b\\\\c\""_s);
    EXPECT_EQ(ItemFormatter::JsonString(u"1\n2\r3\t4\b5\f"_s), u"\"1\\n2\\r3\\t4\\b5\\f\""_s);
    EXPECT_EQ(ItemFormatter::JsonString(u"\x1b[0m\x01\x7f\u2028é"_s),
              u"\"\\u001b[0m\\u0001\\u007f\\u2028é\""_s);
    const QString all = u"\x00\x1f \"\\ /\u2029 ok"_s;
    const QByteArray array = (u"["_s + ItemFormatter::JsonString(all) + u"]"_s).toUtf8();
    EXPECT_EQ(QJsonDocument::fromJson(array)[0].toString(), all);
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
