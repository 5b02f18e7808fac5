// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>
#include <vector>

struct _xmlNode;

// Looks for a text in the string value of items (the concatenated text of all descendants,
// attributes excluded) with the capitals A to Z folded to lower case on both sides and nothing
// else folded. Reads the text nodes in place, with matches across node boundaries found too.
class ItemTextSearch final {
public:
    // `text` is searched as it stands; an empty text matches every item.
    explicit ItemTextSearch(const QString& text);

    // The UTF-8 bytes of `text` with A to Z lowered.
    static QByteArray Fold(const QString& text);

    const QByteArray& Needle() const { return m_needle; }
    bool Matches(const _xmlNode* item) const;

private:
    // Scans one text from its start with no partial match pending; returns true on a match,
    // else sets `end` to the text's terminating zero.
    bool FindIn(const char* text, const char*& end) const;
    bool MatchesAt(const char* at) const;
    // The automaton's state after the bytes [from, to), starting from `state`; m_needle.size()
    // means a match.
    int Advance(int state, const char* from, const char* to) const;
    int Step(int state, char c) const;

    QByteArray m_needle;
    std::vector<int> m_fallback;
    bool m_impossible = false;
};
