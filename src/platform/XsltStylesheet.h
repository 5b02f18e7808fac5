// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/XmlDocument.h"

#include <QString>
#include <memory>

struct _xsltStylesheet;

// A compiled XSLT 1.0 stylesheet. Transformations may not write files, create folders or use
// the network, and may read only the program's own files.
class XsltStylesheet final {
public:
    XsltStylesheet();
    ~XsltStylesheet();
    XsltStylesheet(XsltStylesheet&&) noexcept;
    XsltStylesheet& operator=(XsltStylesheet&&) noexcept;

    // Compiles a copy of `source`; a null stylesheet and the reason when it is not XSLT.
    static XsltStylesheet Compile(const XmlDocument& source, QString* error = nullptr);
    static XsltStylesheet Load(const QString& path, QString* error = nullptr);

    bool IsNull() const { return m_style == nullptr; }

    // The result tree; a null document (and the reason) when the transformation fails.
    XmlDocument TransformToDocument(const XmlDocument& input, QString* error = nullptr) const;
    XmlDocument TransformToDocument(XmlNode input, QString* error = nullptr) const;
    // The result serialised as xsl:output asks (HTML pages, text, XML).
    QByteArray TransformToBytes(const XmlDocument& input, QString* error = nullptr) const;

private:
    struct Deleter {
        void operator()(_xsltStylesheet* style) const;
    };
    std::unique_ptr<_xsltStylesheet, Deleter> m_style;
};
