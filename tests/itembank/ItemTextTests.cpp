// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "itembank/ItemTextIndex.h"
#include "itembank/ItemTextMask.h"
#include "itembank/ItemTextSearch.h"
#include "platform/XmlDocument.h"

#include <gtest/gtest.h>
#include <map>
#include <random>
#include <string>

namespace {

// Random items of nested children and comments, so that needles fall across the borders of
// text nodes. Few letters, so that partial matches and repeats abound; texts of all lengths, so that
// matches fall on every position of the sixteen-byte blocks. The search must find what the item's
// whole text, folded the slow way, contains, and the item's summary must never turn such a match away.
TEST(ItemTextSearch, FindsWhatTheFoldedWholeTextContainsAndTheSummaryLetsItThrough) {
    const std::string letters = "aAbBsStT é<";
    std::mt19937 random(11);
    const auto text = [&](int most) {
        std::string value;
        for (int n = int(random() % unsigned(most + 1)); n > 0; --n) {
            value += letters[random() % letters.size()];
        }
        return value;
    };
    const auto element = [&](int most) { return QString::fromStdString(text(most)).toHtmlEscaped(); };
    int matches = 0;
    int turnedAway = 0;
    for (int round = 0; round < 400; ++round) {
        QString xml = QStringLiteral("<item>") + element(3);
        for (int child = int(random() % 6); child > 0; --child) {
            xml += QStringLiteral("<c>") + element(random() % 4 == 0 ? 70 : 6);
            if (random() % 5 == 0) {
                xml += QStringLiteral("<d>") + element(3) + QStringLiteral("</d>") + element(2);
            }
            xml += QStringLiteral("</c><!--ab-->");
        }
        const XmlDocument doc = XmlDocument::Parse((xml + QStringLiteral("</item>")).toUtf8());
        ASSERT_FALSE(doc.IsNull()) << xml.toStdString();
        // Only ASCII letters change case here, so folding keeps the length.
        const std::string whole = doc.DocumentElement().Text().toLower().toStdString();
        qint64 bytesRead = 0;
        const ItemTextMask mask = ItemTextMask::OfItem(doc.DocumentElement().Raw(), bytesRead);
        EXPECT_EQ(bytesRead, qint64(whole.size()));
        for (int probe = 0; probe < 30; ++probe) {
            const std::string needle = probe % 3 == 0 && whole.size() > 2
                                           ? whole.substr(random() % (whole.size() - 1), 1 + random() % 24)
                                           : text(probe % 2 == 0 ? 4 : 20);
            const ItemTextSearch search(QString::fromStdString(needle));
            const bool expected = whole.find(search.Needle().toStdString()) != std::string::npos;
            const bool mayContain = mask.MayContain(ItemTextMask::OfNeedle(search.Needle()));
            SCOPED_TRACE("needle '" + needle + "' in '" + whole + "'");
            EXPECT_EQ(search.Matches(doc.DocumentElement().Raw()), expected);
            EXPECT_TRUE(mayContain || !expected);
            matches += expected ? 1 : 0;
            turnedAway += mayContain ? 0 : 1;
        }
    }
    // Both outcomes were tried often, and the summaries did turn items away.
    EXPECT_GT(matches, 2000);
    EXPECT_LT(matches, 10000);
    EXPECT_GT(turnedAway, 3000);
}

TEST(ItemTextIndex, KeepsEveryEntryThroughCollisionsRemovalsAndGrowth) {
    // Few distinct hashes, many entries each, so that runs collide and wrap around the table.
    ItemTextIndex index;
    std::map<quint32, quint32> hashOfSlot;
    std::mt19937 random(7);
    for (quint32 step = 0; step < 20000; ++step) {
        if (random() % 3 == 0 && !hashOfSlot.empty()) {
            const auto victim = std::next(hashOfSlot.begin(), long(random() % hashOfSlot.size()));
            EXPECT_TRUE(index.Remove(victim->second, victim->first));
            hashOfSlot.erase(victim);
        } else {
            const quint32 hash = random() % 8 == 0 ? 0xFFFFFFFFu - random() % 3 : random() % 64;
            index.Insert(hash, step);
            hashOfSlot.emplace(step, hash);
        }
    }
    EXPECT_EQ(index.Size(), qsizetype(hashOfSlot.size()));
    // Asked for every hash in use (the top three, then 0 to 63 once the count wraps), it names each
    // entry once, under its own hash.
    std::map<quint32, quint32> found;
    for (quint32 hash = 0xFFFFFFFDu; hash != 64; ++hash) {
        index.ForEach(hash, [&found, hash](quint32 slot) { EXPECT_TRUE(found.emplace(slot, hash).second); });
    }
    EXPECT_EQ(found, hashOfSlot);
    EXPECT_FALSE(index.Remove(1000, 1));
}

} // namespace
