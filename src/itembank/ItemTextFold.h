// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtGlobal>
#include <array>

// The byte folding of item searches: the capitals A to Z lowered, every other byte as it is.
constexpr std::array<quint8, 256> MakeItemTextFoldTable() {
    std::array<quint8, 256> table{};
    for (int c = 0; c < 256; ++c) {
        table[size_t(c)] = quint8(c >= 'A' && c <= 'Z' ? c + ('a' - 'A') : c);
    }
    return table;
}

inline constexpr std::array<quint8, 256> kItemTextFold = MakeItemTextFoldTable();
