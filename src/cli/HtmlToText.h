// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>
#include <QUrl>

// Turns an item's HTML (a feed's description) into plain text for a terminal: block elements
// become line breaks, list entries start with "- ", scripts and styles are dropped, and each link
// is marked with a number in brackets and listed apart. The HTML is parsed leniently by libxml2
// without network access; plain text passes through with its entities decoded. Control
// characters never reach the output.
class HtmlToText final {
public:
    // Longer input is cut to this many characters before it is parsed.
    static constexpr qsizetype kMaxInputChars = 4 * 1024 * 1024;

    struct Result {
        QString text;
        // The targets of the numbered links: [1] is links[0].
        QStringList links;
    };

    // Relative links are resolved against `base`; only http, https, ftp and mailto links are kept.
    static Result Convert(const QString& html, const QUrl& base = {});
    // The HTML's text on one line: every run of white space (line breaks included) becomes one blank.
    static QString OneLine(const QString& html);
    // Plain text made safe for a terminal on one line: control characters and direction
    // overrides are dropped, line breaks and tabs become blanks, surrounding blanks go.
    static QString Printable(const QString& text);
    // Whether a character may be written to a terminal as it is.
    static bool IsShown(QChar c);
};
