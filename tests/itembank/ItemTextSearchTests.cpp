// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "itembank/ItemTextSearch.h"
#include "platform/XmlDocument.h"

#include <gtest/gtest.h>
#include <random>
#include <string>

namespace {

// The item's whole text with A to Z lowered, built the slow way.
std::string FoldedText(const XmlNode& item) {
    std::string text = item.Text().toStdString();
    for (char& c : text) {
        if (c >= 'A' && c <= 'Z') {
            c = char(c + ('a' - 'A'));
        }
    }
    return text;
}

TEST(ItemTextSearch, FindsWhatTheFoldedWholeTextContains) {
    // Few letters, so that partial matches, repeats and matches across children abound; texts
    // of all lengths, so that matches fall on every position of the sixteen-byte blocks.
    const std::string letters = "aAbBsS é";
    std::mt19937 random(11);
    const auto text = [&](int most) {
        std::string value;
        for (int n = int(random() % unsigned(most + 1)); n > 0; --n) {
            value += letters[random() % letters.size()];
        }
        return value;
    };
    int matches = 0;
    for (int round = 0; round < 400; ++round) {
        QString xml = QStringLiteral("<item>");
        for (int child = int(random() % 6); child > 0; --child) {
            xml += QStringLiteral("<c>") + QString::fromStdString(text(random() % 4 == 0 ? 70 : 6));
            if (random() % 5 == 0) {
                xml += QStringLiteral("<d>") + QString::fromStdString(text(3)) + QStringLiteral("</d>");
            }
            xml += QStringLiteral("</c>");
        }
        const XmlDocument doc = XmlDocument::Parse((xml + QStringLiteral("</item>")).toUtf8());
        ASSERT_FALSE(doc.IsNull());
        const std::string whole = FoldedText(doc.DocumentElement());
        for (int probe = 0; probe < 30; ++probe) {
            std::string needle = probe % 3 == 0 && whole.size() > 2
                                     ? whole.substr(random() % (whole.size() - 1), 1 + random() % 24)
                                     : text(probe % 2 == 0 ? 4 : 20);
            const QString typed = QString::fromStdString(needle);
            const bool expected = whole.find(ItemTextSearch::Fold(typed).toStdString()) != std::string::npos;
            matches += expected ? 1 : 0;
            EXPECT_EQ(ItemTextSearch(typed).Matches(doc.DocumentElement().Raw()), expected)
                << "needle '" << needle << "' in '" << whole << "'";
        }
    }
    // Both outcomes were tried often.
    EXPECT_GT(matches, 2000);
    EXPECT_LT(matches, 10000);
}

} // namespace
