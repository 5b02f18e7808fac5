// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/XmlNode.h"

#include "platform/XmlText.h"

#include <libxml/tree.h>
#include <libxml/xpath.h>
#include <memory>

namespace {

struct XPathContextDeleter {
    void operator()(xmlXPathContext* ctx) const { xmlXPathFreeContext(ctx); }
};
struct XPathObjectDeleter {
    void operator()(xmlXPathObject* obj) const { xmlXPathFreeObject(obj); }
};

} // namespace

bool XmlNode::IsElement() const {
    return m_node && m_node->type == XML_ELEMENT_NODE;
}

bool XmlNode::IsText() const {
    return m_node && (m_node->type == XML_TEXT_NODE || m_node->type == XML_CDATA_SECTION_NODE);
}

QString XmlNode::Name() const {
    if (!m_node || m_node->type == XML_TEXT_NODE || !m_node->name) {
        return {};
    }
    const QString local = XmlText::ToQString(m_node->name);
    if (m_node->type == XML_ELEMENT_NODE && m_node->ns && m_node->ns->prefix) {
        return XmlText::ToQString(m_node->ns->prefix) + u':' + local;
    }
    return local;
}

QString XmlNode::Text() const {
    if (!m_node) {
        return {};
    }
    XmlText::OwnedChars content(xmlNodeGetContent(m_node));
    return XmlText::ToQString(content.get());
}

void XmlNode::SetText(const QString& value) {
    if (!m_node) {
        return;
    }
    const QByteArray utf8 = value.toUtf8();
    if (m_node->type != XML_ELEMENT_NODE) {
        xmlNodeSetContentLen(m_node, XmlText::Chars(utf8), int(utf8.size()));
        return;
    }
    // The common case, one text child, is changed in place: no allocation, and a handle to that
    // text node stays valid.
    xmlNode* only = m_node->children;
    if (only && !only->next && only->type == XML_TEXT_NODE) {
        xmlNodeSetContentLen(only, XmlText::Chars(utf8), int(utf8.size()));
        return;
    }
    xmlNodeSetContent(m_node, nullptr);
    if (!utf8.isEmpty()) {
        xmlAddChild(m_node, xmlNewDocTextLen(m_node->doc, XmlText::Chars(utf8), int(utf8.size())));
    }
}

QString XmlNode::Attribute(const QString& name) const {
    if (!IsElement()) {
        return {};
    }
    XmlText::OwnedChars value(xmlGetProp(m_node, XmlText::Chars(name.toUtf8())));
    return XmlText::ToQString(value.get());
}

bool XmlNode::HasAttribute(const QString& name) const {
    return IsElement() && xmlHasProp(m_node, XmlText::Chars(name.toUtf8())) != nullptr;
}

std::vector<std::pair<QString, QString>> XmlNode::Attributes() const {
    std::vector<std::pair<QString, QString>> attributes;
    if (!IsElement()) {
        return attributes;
    }
    for (xmlAttr* attribute = m_node->properties; attribute; attribute = attribute->next) {
        XmlText::OwnedChars value(xmlNodeGetContent(reinterpret_cast<xmlNode*>(attribute)));
        attributes.emplace_back(XmlText::ToQString(attribute->name), XmlText::ToQString(value.get()));
    }
    return attributes;
}

void XmlNode::SetAttribute(const QString& name, const QString& value) {
    if (IsElement()) {
        xmlSetProp(m_node, XmlText::Chars(name.toUtf8()), XmlText::Chars(value.toUtf8()));
    }
}

XmlNode XmlNode::Parent() const {
    if (!m_node || !m_node->parent || m_node->parent->type == XML_DOCUMENT_NODE) {
        return {};
    }
    return XmlNode(m_node->parent);
}

XmlNode XmlNode::FirstChild() const {
    return XmlNode(m_node ? m_node->children : nullptr);
}

XmlNode XmlNode::LastChild() const {
    return XmlNode(m_node ? xmlGetLastChild(m_node) : nullptr);
}

XmlNode XmlNode::NextSibling() const {
    return XmlNode(m_node ? m_node->next : nullptr);
}

bool XmlNode::HasChildNodes() const {
    return m_node && m_node->children;
}

std::vector<XmlNode> XmlNode::ChildNodes() const {
    std::vector<XmlNode> children;
    for (xmlNode* child = m_node ? m_node->children : nullptr; child; child = child->next) {
        children.emplace_back(child);
    }
    return children;
}

XmlNode XmlNode::FirstChildElement(const QString& name) const {
    if (!m_node) {
        return {};
    }
    for (xmlNode* child = m_node->children; child; child = child->next) {
        if (child->type == XML_ELEMENT_NODE && XmlNode(child).Name() == name) {
            return XmlNode(child);
        }
    }
    return {};
}

XmlNode XmlNode::AppendChild(XmlNode child) {
    if (!m_node || child.IsNull() || child.m_node->doc != m_node->doc) {
        return {};
    }
    xmlUnlinkNode(child.m_node);
    // A text child may be merged into a text node before it; the node in the tree is returned.
    xmlNode* added = xmlAddChild(m_node, child.m_node);
    return XmlNode(added);
}

std::vector<XmlNode> XmlNode::SelectNodes(const QString& xpath) const {
    std::vector<XmlNode> result;
    if (!m_node || !m_node->doc) {
        return result;
    }
    std::unique_ptr<xmlXPathContext, XPathContextDeleter> ctx(xmlXPathNewContext(m_node->doc));
    if (!ctx) {
        return result;
    }
    ctx->node = m_node;
    XmlText::QuietErrors quiet;
    std::unique_ptr<xmlXPathObject, XPathObjectDeleter> found(
        xmlXPathEvalExpression(XmlText::Chars(xpath.toUtf8()), ctx.get()));
    if (!found || found->type != XPATH_NODESET || !found->nodesetval) {
        return result;
    }
    const xmlNodeSet* set = found->nodesetval;
    result.reserve(size_t(set->nodeNr));
    for (int i = 0; i < set->nodeNr; ++i) {
        result.emplace_back(set->nodeTab[i]);
    }
    return result;
}

XmlNode XmlNode::SelectSingleNode(const QString& xpath) const {
    const std::vector<XmlNode> found = SelectNodes(xpath);
    return found.empty() ? XmlNode() : found.front();
}
