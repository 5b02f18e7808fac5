// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/XmlNode.h"

#include <QByteArray>
#include <QString>

class XsltStylesheet;

// Turns one stored item into the page a preview shows: the item is copied into a document of its
// own under "channel" (inside an RSS 2.0 root), normalised by the namespace stylesheet and laid out by the
// skin's item stylesheet. The store is never changed here.
class ItemRenderer final {
public:
    ItemRenderer(const XsltStylesheet& namespaceTransform, const XsltStylesheet& itemTransform);

    // The page as UTF-8 HTML that declares its encoding; empty (and the reason) when a
    // stylesheet is missing or fails.
    QByteArray Render(const XmlNode& item, QString* error = nullptr) const;
    // Renders and writes the page, ending with CR LF, atomically; false when either step failed.
    bool RenderToFile(const XmlNode& item, const QString& path, QString* error = nullptr) const;

    // Makes sure the page says it is UTF-8: a document without a charset declaration gets one.
    static QByteArray WithUtf8Declaration(const QByteArray& page);

private:
    const XsltStylesheet& m_namespaceTransform;
    const XsltStylesheet& m_itemTransform;
};
