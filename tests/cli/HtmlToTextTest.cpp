// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/HtmlToText.h"
#include "support/QStringPrinter.h"

#include <gtest/gtest.h>
#include <ostream>

using namespace Qt::StringLiterals;

namespace {

QString Text(const QString& html) {
    return HtmlToText::Convert(html).text;
}

TEST(HtmlToTextTest, BlocksBecomeLines) {
    const std::pair<QString, QString> cases[] = {
        {u"Plain words"_s, u"Plain words"_s},
        {u"<p>One</p><p>Two</p>"_s, u"One\n\nTwo"_s},
        {u"<div>One</div><div>Two</div>"_s, u"One\nTwo"_s},
        {u"one<br>two<br/><br>three"_s, u"one\ntwo\n\nthree"_s},
        {u"<h1>Head</h1>Body"_s, u"Head\n\nBody"_s},
        {u"<ul><li>a</li><li>b <b>bold</b></li></ul>after"_s, u"- a\n- b bold\n\nafter"_s},
        {u"<table><tr><td>1</td><td>2</td></tr><tr><td>3</td></tr></table>"_s, u"1 2\n3"_s},
        {u"<p>  lots   of\n\n  space  </p>"_s, u"lots of space"_s},
        {u"<pre>  kept\n    as is</pre>"_s, u"kept\n    as is"_s},
        {u"a<hr>b"_s, u"a\n\n----\n\nb"_s},
        {u"<b>in</b><i>line</i> stays"_s, u"inline stays"_s},
        {u"<img src=\"x.png\" alt=\"A cat\"> sleeps"_s, u"[A cat] sleeps"_s},
    };
    for (const auto& [html, text] : cases) {
        EXPECT_EQ(Text(html), text) << html.toStdString();
    }
}

TEST(HtmlToTextTest, EntitiesAreDecoded) {
    EXPECT_EQ(Text(u"Fish &amp; chips &lt;3 &eacute;t&#233; &#x263A;"_s), u"Fish & chips <3 été ☺"_s);
    EXPECT_EQ(Text(u"a < b and c > d"_s), u"a < b and c > d"_s);
}

TEST(HtmlToTextTest, ScriptsStylesAndHeadsAreDropped) {
    EXPECT_EQ(Text(u"<head><title>T</title><style>p{}</style></head><body>Seen<script>alert(1)</script>"
                   u"<noscript>no</noscript></body>"_s),
              u"Seen"_s);
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

TEST(HtmlToTextTest, DeepAndBrokenMarkupIsHandled) {
    const auto nested = [](int depth) -> QString { return u"<span>"_s.repeated(depth) + u"bottom"_s; };
    EXPECT_EQ(Text(nested(200)), u"bottom"_s);
    // Far deeper than any parser goes: the walk does not recurse, and the parser either keeps
    // the text or gives up on the document; nothing else comes out.
    const QString deep = Text(nested(20000));
    EXPECT_TRUE(deep == u"bottom"_s || deep.isEmpty()) << deep.left(40).toStdString();
    EXPECT_EQ(Text(u"<p>unclosed <b>bold <i>italic"_s), u"unclosed bold italic"_s);
    EXPECT_EQ(Text(u"</p></div>stray ends"_s), u"stray ends"_s);
}

TEST(HtmlToTextTest, HugeInputIsCut) {
    const QString huge = QString(HtmlToText::kMaxInputChars + 1000, u'x');
    EXPECT_EQ(Text(huge).size(), HtmlToText::kMaxInputChars);
}

TEST(HtmlToTextTest, NothingOutsideIsLoaded) {
    // A document that names an external entity and a DTD: nothing is fetched and the text stays.
    const HtmlToText::Result result = HtmlToText::Convert(
        u"<!DOCTYPE html SYSTEM \"file:///etc/passwd\"><p>safe &xxe;</p><img src=\"file:///etc/passwd\">"_s);
    EXPECT_TRUE(result.text.startsWith(u"safe"_s));
    EXPECT_FALSE(result.text.contains(u"root:"_s));
}

} // namespace
