// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtGlobal>
#include <string_view>
#include <vector>

// A compact multimap from a text's hash to the item slots holding that text (8 bytes an entry,
// open addressing). Entries sharing a hash may hold different texts: callers compare the texts.
class ItemTextIndex final {
public:
    static quint32 HashOf(std::string_view text);

    void Insert(quint32 hash, quint32 slot);
    // Removes one entry of (hash, slot); false when there is none.
    bool Remove(quint32 hash, quint32 slot);
    void Clear();
    qsizetype Size() const { return m_size; }

    // Calls visit(slot) for every entry whose hash is `hash`.
    template <typename Visit> void ForEach(quint32 hash, Visit&& visit) const {
        if (m_entries.empty()) {
            return;
        }
        const size_t mask = m_entries.size() - 1;
        for (size_t at = hash & mask; m_entries[at].slot != kEmpty; at = (at + 1) & mask) {
            if (m_entries[at].hash == hash) {
                visit(m_entries[at].slot);
            }
        }
    }

private:
    static constexpr quint32 kEmpty = 0xFFFFFFFFu;
    static constexpr size_t kFirstCapacity = 64;
    struct Entry {
        quint32 hash = 0;
        quint32 slot = kEmpty;
    };

    void Grow();

    std::vector<Entry> m_entries;
    qsizetype m_size = 0;
};
