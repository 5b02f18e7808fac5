// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "itembank/ItemTextIndex.h"

#include <QHashFunctions>
#include <utility>

quint32 ItemTextIndex::HashOf(std::string_view text) {
    // Seeded per process, so that feeds cannot choose texts that pile up in one place.
    const size_t hash = qHashBits(text.data(), text.size(), QHashSeed::globalSeed());
    return quint32(hash ^ (quint64(hash) >> 32));
}

void ItemTextIndex::Insert(quint32 hash, quint32 slot) {
    // At most half full, so that probe runs stay short.
    if (size_t(m_size + 1) * 2 > m_entries.size()) {
        Grow();
    }
    const size_t mask = m_entries.size() - 1;
    size_t at = hash & mask;
    while (m_entries[at].slot != kEmpty) {
        at = (at + 1) & mask;
    }
    m_entries[at] = Entry{hash, slot};
    ++m_size;
}

bool ItemTextIndex::Remove(quint32 hash, quint32 slot) {
    if (m_entries.empty()) {
        return false;
    }
    const size_t mask = m_entries.size() - 1;
    size_t hole = hash & mask;
    while (m_entries[hole].slot != kEmpty &&
           !(m_entries[hole].hash == hash && m_entries[hole].slot == slot)) {
        hole = (hole + 1) & mask;
    }
    if (m_entries[hole].slot == kEmpty) {
        return false;
    }
    // Backward-shift deletion: pull later entries of the run into the hole when their home
    // position allows it, so that lookups never need tombstones.
    for (size_t next = (hole + 1) & mask; m_entries[next].slot != kEmpty; next = (next + 1) & mask) {
        const size_t home = m_entries[next].hash & mask;
        const bool homeAfterHole =
            hole <= next ? (home > hole && home <= next) : (home > hole || home <= next);
        if (!homeAfterHole) {
            m_entries[hole] = m_entries[next];
            hole = next;
        }
    }
    m_entries[hole] = Entry{};
    --m_size;
    return true;
}

void ItemTextIndex::Clear() {
    m_entries.clear();
    m_size = 0;
}

void ItemTextIndex::Grow() {
    std::vector<Entry> old = std::exchange(
        m_entries, std::vector<Entry>(m_entries.empty() ? kFirstCapacity : m_entries.size() * 2));
    m_size = 0;
    for (const Entry& entry : old) {
        if (entry.slot != kEmpty) {
            Insert(entry.hash, entry.slot);
        }
    }
}
