// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "itembank/ItemXml.h"

#include "itembank/ItemTextNodes.h"

#include <libxml/tree.h>
#include <libxml/xmlmemory.h>

namespace ItemXml {

namespace {

std::string_view ViewOf(const xmlChar* chars) {
    return chars ? std::string_view(reinterpret_cast<const char*>(chars)) : std::string_view();
}

} // namespace

NodeText::NodeText(const xmlNode* node) {
    if (!node) {
        return;
    }
    if (IsTextLike(node)) {
        m_view = ViewOf(node->content);
        return;
    }
    const xmlNode* only = node->children;
    if (!only) {
        return;
    }
    if (!only->next && IsTextLike(only)) {
        m_view = ViewOf(only->content);
        return;
    }
    m_owned = xmlNodeGetContent(node);
    m_view = ViewOf(m_owned);
}

NodeText::NodeText(const xmlAttr* attribute) {
    if (!attribute || !attribute->children) {
        return;
    }
    const xmlNode* only = attribute->children;
    if (!only->next && IsTextLike(only)) {
        m_view = ViewOf(only->content);
        return;
    }
    m_owned = xmlNodeGetContent(reinterpret_cast<const xmlNode*>(attribute));
    m_view = ViewOf(m_owned);
}

NodeText::~NodeText() {
    if (m_owned) {
        xmlFree(m_owned);
    }
}

bool HasQualifiedName(const xmlNode* node, QByteArrayView qualifiedName) {
    if (!node || node->type != XML_ELEMENT_NODE || !node->name) {
        return false;
    }
    const std::string_view local = ViewOf(node->name);
    const std::string_view wanted(qualifiedName.data(), size_t(qualifiedName.size()));
    if (!node->ns || !node->ns->prefix) {
        return local == wanted;
    }
    const std::string_view prefix = ViewOf(node->ns->prefix);
    return wanted.size() == prefix.size() + 1 + local.size() && wanted.substr(0, prefix.size()) == prefix &&
           wanted[prefix.size()] == ':' && wanted.substr(prefix.size() + 1) == local;
}

bool SameQualifiedName(const xmlNode* a, const xmlNode* b) {
    if (ViewOf(a->name) != ViewOf(b->name)) {
        return false;
    }
    const xmlChar* prefixA = a->ns ? a->ns->prefix : nullptr;
    const xmlChar* prefixB = b->ns ? b->ns->prefix : nullptr;
    return ViewOf(prefixA) == ViewOf(prefixB) && (prefixA == nullptr) == (prefixB == nullptr);
}

xmlNode* FirstChildNamed(const xmlNode* node, QByteArrayView qualifiedName) {
    if (!node) {
        return nullptr;
    }
    for (xmlNode* child = node->children; child; child = child->next) {
        if (HasQualifiedName(child, qualifiedName)) {
            return child;
        }
    }
    return nullptr;
}

bool IsPlainElement(const xmlNode* node, QByteArrayView localName) {
    return node && node->type == XML_ELEMENT_NODE && !node->ns &&
           ViewOf(node->name) == std::string_view(localName.data(), size_t(localName.size()));
}

const xmlAttr* PlainAttribute(const xmlNode* node, QByteArrayView localName) {
    const std::string_view wanted(localName.data(), size_t(localName.size()));
    for (const xmlAttr* attribute = node ? node->properties : nullptr; attribute;
         attribute = attribute->next) {
        if (!attribute->ns && ViewOf(attribute->name) == wanted) {
            return attribute;
        }
    }
    return nullptr;
}

bool HasQualifiedNameIgnoringCase(const xmlNode* node, QByteArrayView lowerName) {
    if (!node || node->type != XML_ELEMENT_NODE || !node->name) {
        return false;
    }
    const std::string_view prefix = node->ns ? ViewOf(node->ns->prefix) : std::string_view();
    const std::string_view local = ViewOf(node->name);
    const size_t length = prefix.empty() ? local.size() : prefix.size() + 1 + local.size();
    if (length != size_t(lowerName.size())) {
        return false;
    }
    auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? char(c | 0x20) : c; };
    size_t at = 0;
    for (char c : prefix) {
        if (lower(c) != lowerName[qsizetype(at++)]) {
            return false;
        }
    }
    if (!prefix.empty() && lowerName[qsizetype(at++)] != ':') {
        return false;
    }
    for (char c : local) {
        if (lower(c) != lowerName[qsizetype(at++)]) {
            return false;
        }
    }
    return true;
}

} // namespace ItemXml
