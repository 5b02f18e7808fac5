// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/XmlNode.h"

#include <QByteArray>
#include <QString>
#include <memory>

struct _xmlDoc;

struct XmlParseOptions {
    // Feeds may name a DTD whose entities the program ships; only such mapped DTDs are ever read.
    bool loadMappedDtd = false;
    // Base URL of the document, for messages and relative references.
    QString baseUrl;
    // Whitespace-only text stays within XHTML markup, where a blank between two inline elements
    // is a word space; elsewhere it is dropped as usual.
    bool keepXhtmlBlanks = false;
    // Keeps what can be read of a damaged document (a cut-off or corrupted file) instead of
    // failing; the result is null only when not even a root element could be read.
    bool recover = false;

    // As a channel parses what it fetched.
    static XmlParseOptions ForFeed(const QString& baseUrl) {
        return XmlParseOptions{true, baseUrl, true};
    }
};

// An XML document that owns its libxml2 tree. Documents are parsed without whitespace-only text
// between elements (outside XHTML markup when asked), with CDATA as text, without network access and without external entities
// other than the program's own (XmlSecurity).
//
// Nodes removed from the tree (RemoveChild, ReplaceChild) and nodes created but never linked are
// kept until the document is destroyed, so that node handles held elsewhere never dangle.
class XmlDocument final {
public:
    XmlDocument();
    ~XmlDocument();
    XmlDocument(XmlDocument&& other) noexcept;
    XmlDocument& operator=(XmlDocument&& other) noexcept;
    XmlDocument(const XmlDocument&) = delete;
    XmlDocument& operator=(const XmlDocument&) = delete;

    // Takes ownership of a tree made by libxml2 or libxslt.
    static XmlDocument Adopt(_xmlDoc* doc);

    // A failed parse gives a null document and, when asked, the parser's message.
    static XmlDocument Parse(const QByteArray& bytes, QString* error = nullptr, const XmlParseOptions& options = {});
    static XmlDocument Load(const QString& path, QString* error = nullptr, const XmlParseOptions& options = {});
    // A web page read by the forgiving HTML parser: no network, no external entities, no
    // messages. `encoding` is the charset the server named (empty: the page's own meta tag or
    // UTF-8). Null only when not even a root element could be made.
    static XmlDocument ParseHtml(const QByteArray& bytes, const QString& encoding = {});

    bool IsNull() const { return m_doc == nullptr; }
    _xmlDoc* Raw() const { return m_doc; }

    XmlNode DocumentElement() const;
    void SetDocumentElement(XmlNode element);

    XmlNode CreateElement(const QString& name);
    XmlNode CreateTextElement(const QString& name, const QString& text);
    // A deep copy of a node of any document, owned by this one and not yet linked.
    XmlNode ImportNode(XmlNode node);

    // Unlinks `child` from its parent; the node stays readable until the document goes.
    static void RemoveChild(XmlNode parent, XmlNode child);
    // Puts `replacement` (of the same document) where `old` stands; `old` stays readable.
    static void ReplaceChild(XmlNode old, XmlNode replacement);

    // The serialised tree: UTF-8, no XML declaration, no indentation, a final line break.
    QByteArray ToBytes() const;
    // Writes ToBytes() through a temporary file and a rename; false (and the reason) on failure.
    bool Save(const QString& path, QString* error = nullptr) const;

private:
    explicit XmlDocument(_xmlDoc* doc);

    _xmlDoc* m_doc = nullptr;
};
