// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

class XmlNode;

// How items of the bank are written by tamsel-cli: one line of a list (as text or as JSON), and
// one item in full. Whatever comes from a feed is made safe for a terminal first.
class ItemFormatter final {
public:
    // A title longer than this is cut to its first 125 characters and "...", as the viewer does.
    static constexpr qsizetype kTitleLimit = 128;
    static constexpr qsizetype kTitleKept = 125;
    static constexpr qsizetype kChannelColumn = 24;

    // The title as the viewer lists it: the title, else the description's text; cut when long.
    static QString ListTitle(const XmlNode& item);
    // "flags" of a list line: "U" unread, "T" tagged, "D" deleted, "." for each that does not hold.
    static QString Flags(const XmlNode& item);
    // One line of a list: number, flags, date and time, channel title, title.
    static QString TextLine(int number, const XmlNode& item);
    // One JSON object with the keys n, channel, channeltitle, title, link, guid, date, time, read,
    // flag and delete (the last three booleans), on one line.
    static QString JsonLine(int number, const XmlNode& item);
    // The whole item as readable text: its fields, its description as text and its links.
    static QString ShowText(const XmlNode& item);

    // A JSON string literal, quotes included.
    static QString JsonString(const QString& text);

    // The 0-based positions [first, last] (first ≥ last: the list is shown newest first) of the
    // items on a 1-based page of a list of `count` items, 50 a page; false when there is no such page.
    static bool PageBounds(qsizetype count, int page, qsizetype* first, qsizetype* last);
    static int PageCount(qsizetype count);
};
