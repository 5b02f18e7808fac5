// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "itembank/ItemTextMask.h"

#include "itembank/ItemTextFold.h"
#include "itembank/ItemTextNodes.h"

#include <libxml/tree.h>

namespace {

constexpr int kWordBits = 64;
constexpr quint32 kBitCount = 512;
// The top bits of the pair times an odd constant pick the bit.
constexpr int kBitShift = 23;
constexpr quint32 kSpread = 2654435761u;
constexpr int kByteBits = 8;
// Stands for "no byte before" the first one. The pair it forms sets one bit that no needle's
// pair may need; cheaper than a test in the loop, and only a superset is ever required.
constexpr quint32 kNoByte = 0x100;

static_assert((quint64(1) << (32 - kBitShift)) == kBitCount);

quint32 BitOf(quint32 first, quint32 second) {
    return (((first << kByteBits) | second) * kSpread) >> kBitShift;
}

} // namespace

ItemTextMask ItemTextMask::OfItem(const xmlNode* item, qint64& bytesRead) {
    ItemTextMask mask;
    if (!item) {
        return mask;
    }
    // Kept in a local array: the bytes read below may alias the mask, and a member would be
    // reloaded after every store.
    std::array<quint64, kWords> bits{};
    // Pairs run across the borders of text nodes, as the texts are searched run together.
    quint32 previous = kNoByte;
    const xmlNode* node = item->children;
    while (node) {
        if (IsTextLike(node) && node->content) {
            const xmlChar* at = node->content;
            for (; *at; ++at) {
                const quint32 c = kItemTextFold[*at];
                const quint32 bit = BitOf(previous, c);
                bits[bit / kWordBits] |= quint64(1) << (bit % kWordBits);
                previous = c;
            }
            bytesRead += qint64(at - node->content);
        }
        node = NextInItem(node, item);
    }
    mask.m_bits = bits;
    return mask;
}

ItemTextMask ItemTextMask::OfNeedle(QByteArrayView needle) {
    ItemTextMask mask;
    for (qsizetype i = 1; i < needle.size(); ++i) {
        const quint32 bit = BitOf(kItemTextFold[static_cast<unsigned char>(needle[i - 1])],
                                  kItemTextFold[static_cast<unsigned char>(needle[i])]);
        mask.m_bits[bit / kWordBits] |= quint64(1) << (bit % kWordBits);
    }
    return mask;
}

bool ItemTextMask::MayContain(const ItemTextMask& needle) const {
    quint64 missing = 0;
    for (size_t word = 0; word < kWords; ++word) {
        missing |= needle.m_bits[word] & ~m_bits[word];
    }
    return missing == 0;
}
