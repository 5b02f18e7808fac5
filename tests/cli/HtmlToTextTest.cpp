// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/HtmlToText.h"
#include "support/QStringPrinter.h"

#include <QFile>
#include <gtest/gtest.h>
#include <ostream>

using namespace Qt::StringLiterals;

namespace {

QString Text(const QString& html) {
    return HtmlToText::Convert(html).text;
}

TEST(HtmlToTextTest, HtmlBecomesTheTextTheTableSays) {
    QFile table(QStringLiteral(TAMSEL_TEST_DATA_DIR "/html-to-text.txt"));
    ASSERT_TRUE(table.open(QIODevice::ReadOnly | QIODevice::Text));
    int rows = 0;
    for (QString row : QString::fromUtf8(table.readAll()).split(u'\n', Qt::SkipEmptyParts)) {
        if (!row.startsWith(u'#')) {
            SCOPED_TRACE(row.toStdString());
            ++rows;
            row.replace(u"\\n"_s, u"\n"_s);
            EXPECT_EQ(Text(row.section(u" => "_s, 0, 0)), row.section(u" => "_s, 1));
        }
    }
    EXPECT_GE(rows, 18);
}

TEST(HtmlToTextTest, LinksAreNumberedAndListed) {
    const HtmlToText::Result result =
        HtmlToText::Convert(u"Read <a href=\"https://a.example/one\">this</a>, <a href=\"/two\">that</a> and "
                            u"<a href=\"https://a.example/one\">this again</a>."_s,
                            QUrl(u"https://a.example/item/7"_s));
    EXPECT_EQ(result.text, u"Read this [1], that [2] and this again [1]."_s);
    EXPECT_EQ(result.links, (QStringList{u"https://a.example/one"_s, u"https://a.example/two"_s}));
}

TEST(HtmlToTextTest, ScriptLinksAndUnresolvableLinksAreNotListed) {
    const HtmlToText::Result result = HtmlToText::Convert(
        u"<a href=\"javascript:alert(1)\">x</a> <a href=\"data:text/html,hi\">y</a> <a href=\"rel\">z</a> "
        u"<a href=\"mailto:a@b.example\">mail</a>"_s);
    EXPECT_EQ(result.text, u"x y z mail [1]"_s);
    EXPECT_EQ(result.links, QStringList{u"mailto:a@b.example"_s});
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

TEST(HtmlToTextTest, OneLineJoinsEverything) {
    EXPECT_EQ(HtmlToText::OneLine(u"<p>One</p>\n<ul><li>two</li></ul>"_s), u"One - two"_s);
    EXPECT_EQ(HtmlToText::OneLine(QString()), QString());
    EXPECT_EQ(HtmlToText::OneLine(u"   "_s), QString());
}

TEST(HtmlToTextTest, DeepAndHugeInputIsHandled) {
    const auto nested = [](int depth) -> QString { return u"<span>"_s.repeated(depth) + u"bottom"_s; };
    EXPECT_EQ(Text(nested(200)), u"bottom"_s);
    // Far deeper than any parser goes: the walk does not recurse, and the parser either keeps
    // the text or gives up on the document; nothing else comes out.
    const QString deep = Text(nested(20000));
    EXPECT_TRUE(deep == u"bottom"_s || deep.isEmpty()) << deep.left(40).toStdString();
    EXPECT_EQ(Text(QString(HtmlToText::kMaxInputChars + 1000, u'x')).size(), HtmlToText::kMaxInputChars);
}

} // namespace
