// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <utility>
#include <vector>

struct _xmlNode;
class XmlDocument;

// A non-owning handle to a node of an XmlDocument. Copying it is cheap; it stays valid while its
// document lives, also after the node has been removed from the tree (see XmlDocument).
class XmlNode final {
public:
    XmlNode() = default;
    explicit XmlNode(_xmlNode* node) : m_node(node) {}

    bool IsNull() const { return m_node == nullptr; }
    bool IsElement() const;
    bool IsText() const;
    _xmlNode* Raw() const { return m_node; }
    bool operator==(const XmlNode& other) const = default;

    // The name as written, with its prefix ("dc:date"); empty for text nodes.
    QString Name() const;
    // The typed value: the concatenated text of all descendants (attributes: the value).
    QString Text() const;
    // Replaces all children by one text node holding the value as it is (no markup is parsed).
    void SetText(const QString& value);

    QString Attribute(const QString& name) const;
    bool HasAttribute(const QString& name) const;
    // Every attribute as (local name, value), in document order.
    std::vector<std::pair<QString, QString>> Attributes() const;
    // Replaces the attribute's value in place, or appends the attribute after the others.
    void SetAttribute(const QString& name, const QString& value);

    XmlNode Parent() const;
    XmlNode FirstChild() const;
    XmlNode LastChild() const;
    XmlNode NextSibling() const;
    bool HasChildNodes() const;
    std::vector<XmlNode> ChildNodes() const;
    // The first child element whose name is exactly `name`.
    XmlNode FirstChildElement(const QString& name) const;

    // Appends `child`, which must belong to the same document, moving it when it is linked elsewhere.
    XmlNode AppendChild(XmlNode child);

    // XPath 1.0 with this node as the context node; an invalid expression selects nothing.
    std::vector<XmlNode> SelectNodes(const QString& xpath) const;
    XmlNode SelectSingleNode(const QString& xpath) const;

private:
    _xmlNode* m_node = nullptr;
};
