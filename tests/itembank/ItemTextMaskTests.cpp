// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "itembank/ItemTextMask.h"
#include "itembank/ItemTextSearch.h"
#include "platform/XmlDocument.h"

#include <gtest/gtest.h>
#include <random>
#include <string>

namespace {

// Random items of nested children, CDATA and mixed text, so that needles fall across the borders
// of text nodes; every needle the plain search finds must pass the item's summary.
TEST(ItemTextMask, NeverTurnsAwayAnItemThatMatches) {
    const std::string letters = "aAbBcCsStT é<";
    std::mt19937 random(29);
    const auto text = [&](int most) {
        std::string value;
        for (int n = int(random() % unsigned(most + 1)); n > 0; --n) {
            value += letters[random() % letters.size()];
        }
        return QString::fromStdString(value).toHtmlEscaped();
    };
    int matched = 0;
    int turnedAway = 0;
    int searched = 0;
    for (int round = 0; round < 300; ++round) {
        QString xml = QStringLiteral("<item>") + text(3);
        for (int child = int(random() % 5); child > 0; --child) {
            xml += QStringLiteral("<c>") + text(random() % 4 == 0 ? 40 : 5);
            if (random() % 4 == 0) {
                xml += QStringLiteral("<![CDATA[") + text(4).remove(u'&') + QStringLiteral("]]>");
            }
            if (random() % 4 == 0) {
                xml += QStringLiteral("<d>") + text(3) + QStringLiteral("</d>") + text(2);
            }
            xml += QStringLiteral("</c><!--ab-->");
        }
        const XmlDocument doc = XmlDocument::Parse((xml + QStringLiteral("</item>")).toUtf8());
        ASSERT_FALSE(doc.IsNull()) << xml.toStdString();
        qint64 bytesRead = 0;
        const ItemTextMask mask = ItemTextMask::OfItem(doc.DocumentElement().Raw(), bytesRead);
        EXPECT_EQ(bytesRead, doc.DocumentElement().Text().toUtf8().size());
        const std::string whole = doc.DocumentElement().Text().toStdString();
        for (int probe = 0; probe < 40; ++probe) {
            const QString needle =
                probe % 2 == 0 && whole.size() > 1
                    ? QString::fromStdString(whole.substr(random() % whole.size(), 1 + random() % 6))
                    : QString::fromStdString(text(4).toStdString());
            const ItemTextSearch search(needle);
            const bool mayContain = mask.MayContain(ItemTextMask::OfNeedle(search.Needle()));
            const bool matches = search.Matches(doc.DocumentElement().Raw());
            ++searched;
            matched += matches ? 1 : 0;
            turnedAway += mayContain ? 0 : 1;
            if (matches) {
                EXPECT_TRUE(mayContain) << "needle '" << needle.toStdString() << "' in '" << whole << "'";
            }
        }
    }
    // Both outcomes were common, and the summary did turn items away.
    EXPECT_GT(matched, searched / 4);
    EXPECT_GT(turnedAway, searched / 10);
}

TEST(ItemTextMask, TurnsAwayTextsWithoutTheNeedlesPairs) {
    const XmlDocument doc = XmlDocument::Parse("<item><title>Harbour</title><read>false</read></item>");
    ASSERT_FALSE(doc.IsNull());
    qint64 bytesRead = 0;
    const ItemTextMask mask = ItemTextMask::OfItem(doc.DocumentElement().Raw(), bytesRead);
    struct Case {
        const char* needle;
        bool mayContain;
    };
    // Pairs across the two texts count ("rf"), letters are folded, one letter has no pair.
    for (const Case& c : {Case{"harb", true}, Case{"HARBOUR", true}, Case{"urfa", true}, Case{"q", true},
                          Case{"", true}, Case{"zq", false}, Case{"xy", false}}) {
        SCOPED_TRACE(c.needle);
        EXPECT_EQ(mask.MayContain(ItemTextMask::OfNeedle(ItemTextSearch::Fold(QString::fromUtf8(c.needle)))),
                  c.mayContain);
    }
}

} // namespace
