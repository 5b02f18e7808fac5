// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Conversions between libxml2's UTF-8 strings and Qt's, for the platform's own sources.

#include <QByteArray>
#include <QString>
#include <libxml/xmlerror.h>
#include <libxml/xmlmemory.h>
#include <libxml/xmlstring.h>
#include <memory>

namespace XmlText {

inline const xmlChar* Chars(const QByteArray& utf8) {
    return reinterpret_cast<const xmlChar*>(utf8.constData());
}

inline QString ToQString(const xmlChar* chars) {
    return chars ? QString::fromUtf8(reinterpret_cast<const char*>(chars)) : QString();
}

struct CharsDeleter {
    void operator()(xmlChar* chars) const { xmlFree(chars); }
};
using OwnedChars = std::unique_ptr<xmlChar, CharsDeleter>;

// Keeps libxml2 from printing to stderr while it evaluates an expression that may be invalid;
// callers report failure through their own results.
class QuietErrors final {
public:
    QuietErrors() { xmlSetStructuredErrorFunc(nullptr, [](void*, xmlError*) {}); }
    ~QuietErrors() { xmlSetStructuredErrorFunc(nullptr, nullptr); }
    QuietErrors(const QuietErrors&) = delete;
    QuietErrors& operator=(const QuietErrors&) = delete;
};

} // namespace XmlText
