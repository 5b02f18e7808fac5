// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "itembank/ItemTextSearch.h"

#include "itembank/ItemTextFold.h"
#include "itembank/ItemTextNodes.h"

#include <array>
#include <libxml/tree.h>

// Sixteen bytes at a time where the processor allows it. Aligned loads never cross a page, but
// they read bytes beside the text, which the address sanitizer would report; it gets the plain
// loop instead.
#if defined(__SSE2__) && !defined(__SANITIZE_ADDRESS__)
#define TAMSEL_ITEM_SEARCH_SSE2 1
#include <emmintrin.h>
#endif

namespace {

char FoldChar(char c) {
    return char(kItemTextFold[static_cast<unsigned char>(c)]);
}

#ifdef TAMSEL_ITEM_SEARCH_SSE2
// A comparison that finds both cases of a lower-case letter, and exactly any other byte.
struct ByteProbe {
    __m128i value;
    __m128i caseBit;

    explicit ByteProbe(char c)
        : value(_mm_set1_epi8(c)), caseBit(_mm_set1_epi8(c >= 'a' && c <= 'z' ? char(0x20) : char(0))) {}
    unsigned Matches(__m128i bytes) const {
        return unsigned(_mm_movemask_epi8(_mm_cmpeq_epi8(_mm_or_si128(bytes, caseBit), value)));
    }
};
#endif

} // namespace

ItemTextSearch::ItemTextSearch(const QString& text) : m_needle(Fold(text)) {
    m_impossible = m_needle.contains('\0');
    // The prefix function of the needle: for each length, the longest proper border.
    m_fallback.assign(size_t(m_needle.size()), 0);
    for (qsizetype i = 1, border = 0; i < m_needle.size(); ++i) {
        while (border > 0 && m_needle[i] != m_needle[border]) {
            border = m_fallback[size_t(border - 1)];
        }
        if (m_needle[i] == m_needle[border]) {
            ++border;
        }
        m_fallback[size_t(i)] = int(border);
    }
}

QByteArray ItemTextSearch::Fold(const QString& text) {
    QByteArray bytes = text.toUtf8();
    for (char& c : bytes) {
        c = FoldChar(c);
    }
    return bytes;
}

bool ItemTextSearch::Matches(const xmlNode* item) const {
    const int length = int(m_needle.size());
    if (length == 0) {
        return true;
    }
    if (m_impossible || !item) {
        return false;
    }
    // State of the matching automaton over the item's text so far: how much of the needle the
    // text read until now ends with.
    int state = 0;
    const xmlNode* node = item->children;
    while (node) {
        if (IsTextLike(node) && node->content) {
            const char* at = reinterpret_cast<const char*>(node->content);
            while (state > 0 && *at) {
                state = Step(state, *at++);
                if (state == length) {
                    return true;
                }
            }
            if (*at) {
                const char* end = nullptr;
                if (FindIn(at, end)) {
                    return true;
                }
                // A partial match at the end of this text lies within its last length-1 bytes
                // and starts with the needle's first byte.
                const char* tail = end - at > length - 1 ? end - (length - 1) : at;
                while (tail < end && FoldChar(*tail) != m_needle[0]) {
                    ++tail;
                }
                state = tail < end ? Advance(0, tail, end) : 0;
            }
        }
        node = NextInItem(node, item);
    }
    return false;
}

int ItemTextSearch::Step(int state, char c) const {
    const char folded = FoldChar(c);
    while (state > 0 && m_needle[state] != folded) {
        state = m_fallback[size_t(state - 1)];
    }
    return m_needle[state] == folded ? state + 1 : 0;
}

int ItemTextSearch::Advance(int state, const char* from, const char* to) const {
    for (; from < to && state < int(m_needle.size()); ++from) {
        state = Step(state, *from);
    }
    return state;
}

bool ItemTextSearch::MatchesAt(const char* at) const {
    // The needle holds no zero byte, so the comparison stops at the text's end.
    for (qsizetype i = 0; i < m_needle.size(); ++i) {
        if (FoldChar(at[i]) != m_needle[i]) {
            return false;
        }
    }
    return true;
}

#ifdef TAMSEL_ITEM_SEARCH_SSE2

bool ItemTextSearch::FindIn(const char* text, const char*& end) const {
    constexpr unsigned kAllLanes = 0xFFFFu;
    constexpr int kLanes = 16;
    constexpr uintptr_t kLaneMask = kLanes - 1;
    // Candidates must show the needle's first byte and, a fixed distance on, its last one (its
    // second one for needles longer than a block), which leaves few to check one by one.
    const int probeOffset = m_needle.size() <= kLanes ? int(m_needle.size()) - 1 : 1;
    const ByteProbe first(m_needle[0]);
    const ByteProbe probe(m_needle[probeOffset]);
    const __m128i zero = _mm_setzero_si128();
    const auto zerosOf = [&zero](__m128i bytes) {
        return unsigned(_mm_movemask_epi8(_mm_cmpeq_epi8(bytes, zero)));
    };

    const uintptr_t offset = reinterpret_cast<uintptr_t>(text) & kLaneMask;
    const char* block = text - offset;
    const unsigned live = (kAllLanes << offset) & kAllLanes;
    __m128i bytes = _mm_load_si128(reinterpret_cast<const __m128i*>(block));
    unsigned zeros = zerosOf(bytes) & live;
    unsigned firsts = first.Matches(bytes) & live;
    unsigned probes = probe.Matches(bytes);
    for (;;) {
        // The next block may be read only while the text goes on beyond this one.
        __m128i next = zero;
        unsigned nextProbes = 0;
        if (!zeros) {
            next = _mm_load_si128(reinterpret_cast<const __m128i*>(block + kLanes));
            nextProbes = probe.Matches(next);
        }
        unsigned hits = firsts & ((probes | (nextProbes << kLanes)) >> probeOffset);
        if (zeros) {
            hits &= (zeros & (0u - zeros)) - 1;
        }
        while (hits) {
            if (MatchesAt(block + __builtin_ctz(hits))) {
                return true;
            }
            hits &= hits - 1;
        }
        if (zeros) {
            end = block + __builtin_ctz(zeros);
            return false;
        }
        block += kLanes;
        bytes = next;
        zeros = zerosOf(bytes);
        firsts = first.Matches(bytes);
        probes = nextProbes;
    }
}

#else

bool ItemTextSearch::FindIn(const char* text, const char*& end) const {
    const char first = m_needle[0];
    const char* at = text;
    for (; *at; ++at) {
        if (FoldChar(*at) == first && MatchesAt(at)) {
            return true;
        }
    }
    end = at;
    return false;
}

#endif
