// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArrayView>
#include <QtGlobal>
#include <array>

struct _xmlNode;

// A 512-bit summary of the byte pairs in a text, folded as ItemTextSearch folds (A to Z lowered):
// a search whose pairs are not all in an item's summary cannot match the item, so most items are
// turned away without reading their text. Pairs share bits, so a summary that has them all proves
// nothing; the search still reads the text then.
class ItemTextMask final {
public:
    // The summary of an item's string value: its descendants' texts run together, as searched.
    // Adds the number of bytes read to `bytesRead`.
    static ItemTextMask OfItem(const _xmlNode* item, qint64& bytesRead);
    // The bits that a text holding `needle` (already folded) must have. A needle of one byte has
    // no pairs and so passes every summary.
    static ItemTextMask OfNeedle(QByteArrayView needle);

    // False only when the text summarised here cannot contain the needle summarised in `needle`.
    bool MayContain(const ItemTextMask& needle) const;

private:
    static constexpr size_t kWords = 8;

    std::array<quint64, kWords> m_bits{};
};
