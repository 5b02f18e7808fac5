// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Raw libxml2 reading of item elements, for the item bank's indexes and helpers: names compared
// as UTF-8 bytes and text values read in place, so that walking a large bank allocates nothing.

#include <QByteArray>
#include <QByteArrayView>
#include <cstddef>
#include <string_view>

struct _xmlNode;
struct _xmlAttr;

namespace ItemXml {

// The typed value (string value) of a node: the concatenated text of its descendants, or an
// attribute's value. Borrows the one text node's content when there is exactly one.
class NodeText final {
public:
    NodeText() = default;
    explicit NodeText(const _xmlNode* node);
    explicit NodeText(const _xmlAttr* attribute);
    ~NodeText();
    NodeText(const NodeText&) = delete;
    NodeText& operator=(const NodeText&) = delete;

    std::string_view View() const { return m_view; }
    bool IsEmpty() const { return m_view.empty(); }

private:
    std::string_view m_view;
    unsigned char* m_owned = nullptr;
};

// Whether the element's name as written (prefix included) is `qualifiedName`.
bool HasQualifiedName(const _xmlNode* node, QByteArrayView qualifiedName);
// Whether two elements carry the same name as written.
bool SameQualifiedName(const _xmlNode* a, const _xmlNode* b);
// The first child element whose name as written is `qualifiedName`, or null.
_xmlNode* FirstChildNamed(const _xmlNode* node, QByteArrayView qualifiedName);
// Whether the node is an element without namespace whose name is `localName` (how an XPath
// name test without prefix selects it).
bool IsPlainElement(const _xmlNode* node, QByteArrayView localName);
// The attribute without namespace named `localName`, or null.
const _xmlAttr* PlainAttribute(const _xmlNode* node, QByteArrayView localName);
// Whether the element's name as written equals `lowerName` when ASCII capitals are lowered.
bool HasQualifiedNameIgnoringCase(const _xmlNode* node, QByteArrayView lowerName);

} // namespace ItemXml
