// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "itembank/ItemTextIndex.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <map>
#include <random>

namespace {

std::vector<quint32> Find(const ItemTextIndex& index, quint32 hash) {
    std::vector<quint32> found;
    index.ForEach(hash, [&found](quint32 slot) { found.push_back(slot); });
    std::sort(found.begin(), found.end());
    return found;
}

TEST(ItemTextIndex, KeepsEveryEntryThroughCollisionsRemovalsAndGrowth) {
    // Few distinct hashes, many entries each, so that runs collide and wrap around the table.
    ItemTextIndex index;
    std::multimap<quint32, quint32> model;
    std::mt19937 random(7);
    for (int step = 0; step < 20000; ++step) {
        const quint32 hash = random() % 8 == 0 ? 0xFFFFFFFFu - random() % 3 : random() % 64;
        if (random() % 3 == 0 && !model.empty()) {
            auto victim = model.begin();
            std::advance(victim, random() % model.size());
            EXPECT_TRUE(index.Remove(victim->first, victim->second));
            model.erase(victim);
        } else {
            const quint32 slot = quint32(step);
            index.Insert(hash, slot);
            model.emplace(hash, slot);
        }
    }
    EXPECT_EQ(index.Size(), qsizetype(model.size()));
    for (quint32 hash = 0; hash < 64; ++hash) {
        std::vector<quint32> expected;
        for (auto [at, end] = model.equal_range(hash); at != end; ++at) {
            expected.push_back(at->second);
        }
        std::sort(expected.begin(), expected.end());
        EXPECT_EQ(Find(index, hash), expected) << hash;
    }
    EXPECT_FALSE(index.Remove(1000, 1));
}

} // namespace
