// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/HtmlToText.h"
#include "support/DataRows.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

// The text, then " => " and the listed links when there are any.
QString Text(const QString& html) {
    const HtmlToText::Result result = HtmlToText::Convert(html);
    return result.links.isEmpty() ? result.text : result.text + u" => "_s + result.links.join(u' ');
}

TEST(HtmlToTextTest, HtmlBecomesTheTextTheTableSays) {
    ExpectTable("html-to-text.txt", 21, Text);
}

TEST(HtmlToTextTest, ControlCharactersNeverReachTheTerminal) {
    const QString hostile =
        u"<p>red\x1b[31m text\x07 and \u202Eevil\u2066</p><a href=\"https://x.example/\x1b]0;t\">l</a>"_s;
    const HtmlToText::Result result = HtmlToText::Convert(hostile);
    for (const QString& text : {result.text, result.links.join(u' ')}) {
        for (const QChar c : text) {
            EXPECT_TRUE(c == u'\n' || HtmlToText::IsShown(c)) << int(c.unicode());
        }
    }
    EXPECT_TRUE(result.text.contains(u"red[31m text and evil"_s)) << result.text.toStdString();
    EXPECT_EQ(HtmlToText::Printable(u"  a\tb\nc\x1b[0m\u202Ed  "_s), u"a b c[0md"_s);
}

TEST(HtmlToTextTest, DeepAndHugeInputIsHandled) {
    const auto nested = [](int depth) -> QString { return u"<span>"_s.repeated(depth) + u"bottom"_s; };
    EXPECT_EQ(Text(nested(200)), u"bottom"_s);
    EXPECT_EQ(Text(u" \n "_s), QString());
    // Far deeper than any parser goes: the walk does not recurse, and the parser either keeps
    // the text or gives up on the document; nothing else comes out.
    const QString deep = Text(nested(20000));
    EXPECT_TRUE(deep == u"bottom"_s || deep.isEmpty()) << deep.left(40).toStdString();
    EXPECT_EQ(Text(QString(HtmlToText::kMaxInputChars + 1000, u'x')).size(), HtmlToText::kMaxInputChars);
}

} // namespace
