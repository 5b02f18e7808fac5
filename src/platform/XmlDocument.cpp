// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/XmlDocument.h"

#include "platform/AtomicFile.h"
#include "platform/XmlSecurity.h"
#include "platform/XmlText.h"

#include <QFile>
#include <QSaveFile>
#include <algorithm>
#include <functional>
#include <utility>
#include <libxml/HTMLparser.h>
#include <libxml/encoding.h>
#include <libxml/parser.h>
#include <libxml/tree.h>
#include <libxml/xmlsave.h>
#include <vector>

namespace {

// Nodes that left the tree or never joined it, freed with the document. Kept in the tree's
// own _private slot so that the static node operations can reach it.
struct FloatingNodes {
    std::vector<xmlNode*> nodes;
};

FloatingNodes* FloatingOf(xmlDoc* doc) {
    if (!doc->_private) {
        doc->_private = new FloatingNodes;
    }
    return static_cast<FloatingNodes*>(doc->_private);
}

void Keep(xmlNode* node) {
    if (node && node->doc) {
        FloatingOf(node->doc)->nodes.push_back(node);
    }
}

void FreeDocument(xmlDoc* doc) {
    if (!doc) {
        return;
    }
    if (auto* floating = static_cast<FloatingNodes*>(doc->_private)) {
        // Only roots of detached subtrees are freed; a kept node that was linked again (or sits
        // inside another kept subtree) goes with its parent. Decide all before freeing any.
        std::vector<xmlNode*> roots;
        for (xmlNode* node : floating->nodes) {
            if (!node->parent) {
                roots.push_back(node);
            }
        }
        std::sort(roots.begin(), roots.end());
        roots.erase(std::unique(roots.begin(), roots.end()), roots.end());
        for (xmlNode* node : roots) {
            xmlFreeNode(node);
        }
        delete floating;
        doc->_private = nullptr;
    }
    xmlFreeDoc(doc);
}

int ParserFlags(const XmlParseOptions& options) {
    int flags = XML_PARSE_NOCDATA | XML_PARSE_NONET | XML_PARSE_NOENT | XML_PARSE_NOERROR | XML_PARSE_NOWARNING;
    if (!options.keepXhtmlBlanks) {
        flags |= XML_PARSE_NOBLANKS;
    }
    if (options.loadMappedDtd) {
        flags |= XML_PARSE_DTDLOAD;
    }
    if (options.recover) {
        flags |= XML_PARSE_RECOVER;
    }
    return flags;
}

bool IsXhtmlElement(const xmlNode* node) {
    static constexpr char kXhtmlNamespace[] = "http://www.w3.org/1999/xhtml";
    return node->type == XML_ELEMENT_NODE && node->ns && node->ns->href &&
           xmlStrEqual(node->ns->href, reinterpret_cast<const xmlChar*>(kXhtmlNamespace));
}

// What the parser's own blank removal would have dropped, outside XHTML elements. Iterative, as
// documents may nest as deep as the parser allows.
void RemoveBlanksOutsideXhtml(xmlNode* root) {
    if (!root || IsXhtmlElement(root)) {
        return;
    }
    xmlNode* node = root->children;
    while (node) {
        if (node->type == XML_ELEMENT_NODE && node->children && !IsXhtmlElement(node)) {
            node = node->children;
            continue;
        }
        xmlNode* up = node;
        while (up != root && !up->next) {
            up = up->parent;
        }
        xmlNode* const next = up == root ? nullptr : up->next;
        if (node->type == XML_TEXT_NODE && xmlIsBlankNode(node)) {
            xmlUnlinkNode(node);
            xmlFreeNode(node);
        }
        node = next;
    }
}

QString ErrorText(xmlParserCtxt* ctxt) {
    const xmlError* error = xmlCtxtGetLastError(ctxt);
    if (!error || !error->message) {
        return QStringLiteral("not well-formed");
    }
    return QStringLiteral("line %1: %2").arg(error->line).arg(QString::fromUtf8(error->message).trimmed());
}

} // namespace

XmlDocument::XmlDocument() : m_doc(xmlNewDoc(reinterpret_cast<const xmlChar*>("1.0"))) {}

XmlDocument::XmlDocument(xmlDoc* doc) : m_doc(doc) {}

XmlDocument::~XmlDocument() {
    FreeDocument(m_doc);
}

XmlDocument::XmlDocument(XmlDocument&& other) noexcept : m_doc(std::exchange(other.m_doc, nullptr)) {}

XmlDocument& XmlDocument::operator=(XmlDocument&& other) noexcept {
    if (this != &other) {
        FreeDocument(m_doc);
        m_doc = std::exchange(other.m_doc, nullptr);
    }
    return *this;
}

XmlDocument XmlDocument::Adopt(xmlDoc* doc) {
    return XmlDocument(doc);
}

XmlDocument XmlDocument::Parse(const QByteArray& bytes, QString* error, const XmlParseOptions& options) {
    XmlSecurity::Install();
    std::unique_ptr<xmlParserCtxt, decltype(&xmlFreeParserCtxt)> ctxt(xmlNewParserCtxt(), &xmlFreeParserCtxt);
    if (!ctxt) {
        if (error) {
            *error = QStringLiteral("out of memory");
        }
        return XmlDocument(nullptr);
    }
    const QByteArray url = options.baseUrl.toUtf8();
    xmlDoc* doc = xmlCtxtReadMemory(ctxt.get(), bytes.constData(), int(bytes.size()),
                                    url.isEmpty() ? nullptr : url.constData(), nullptr, ParserFlags(options));
    const bool usable = doc && (ctxt->wellFormed || (options.recover && xmlDocGetRootElement(doc)));
    if (!usable) {
        if (error) {
            *error = ErrorText(ctxt.get());
        }
        if (doc) {
            xmlFreeDoc(doc);
        }
        return XmlDocument(nullptr);
    }
    if (options.keepXhtmlBlanks) {
        RemoveBlanksOutsideXhtml(xmlDocGetRootElement(doc));
    }
    return XmlDocument(doc);
}

XmlDocument XmlDocument::Load(const QString& path, QString* error, const XmlParseOptions& options) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        if (error) {
            *error = file.errorString();
        }
        return XmlDocument(nullptr);
    }
    XmlParseOptions withBase = options;
    if (withBase.baseUrl.isEmpty()) {
        withBase.baseUrl = path;
    }
    return Parse(file.readAll(), error, withBase);
}

XmlDocument XmlDocument::ParseHtml(const QByteArray& bytes, const QString& encoding) {
    XmlSecurity::Install();
    constexpr int kHtmlFlags = HTML_PARSE_NONET | HTML_PARSE_NOERROR | HTML_PARSE_NOWARNING;
    QByteArray charset = encoding.trimmed().toLatin1();
    // A charset libxml2 does not know would fail the whole parse; the page's own guess is better.
    if (!charset.isEmpty()) {
        if (xmlCharEncodingHandler* handler = xmlFindCharEncodingHandler(charset.constData())) {
            xmlCharEncCloseFunc(handler);
        } else {
            charset.clear();
        }
    }
    xmlDoc* doc = htmlReadMemory(bytes.constData(), int(bytes.size()), nullptr,
                                 charset.isEmpty() ? nullptr : charset.constData(), kHtmlFlags);
    if (doc && !xmlDocGetRootElement(doc)) {
        xmlFreeDoc(doc);
        doc = nullptr;
    }
    return XmlDocument(doc);
}

XmlNode XmlDocument::DocumentElement() const {
    return XmlNode(m_doc ? xmlDocGetRootElement(m_doc) : nullptr);
}

void XmlDocument::SetDocumentElement(XmlNode element) {
    if (!m_doc || element.IsNull() || element.Raw()->doc != m_doc) {
        return;
    }
    xmlUnlinkNode(element.Raw());
    if (xmlNode* old = xmlDocSetRootElement(m_doc, element.Raw())) {
        Keep(old);
    }
}

XmlNode XmlDocument::CreateElement(const QString& name) {
    if (!m_doc) {
        return {};
    }
    xmlNode* node = xmlNewDocNode(m_doc, nullptr, XmlText::Chars(name.toUtf8()), nullptr);
    Keep(node);
    return XmlNode(node);
}

XmlNode XmlDocument::CreateTextElement(const QString& name, const QString& text) {
    XmlNode node = CreateElement(name);
    node.SetText(text);
    return node;
}

XmlNode XmlDocument::ImportNode(XmlNode node) {
    if (!m_doc || node.IsNull()) {
        return {};
    }
    xmlNode* copy = xmlDocCopyNode(node.Raw(), m_doc, 1);
    Keep(copy);
    return XmlNode(copy);
}

void XmlDocument::RemoveChild(XmlNode parent, XmlNode child) {
    if (parent.IsNull() || child.IsNull() || child.Raw()->parent != parent.Raw()) {
        return;
    }
    xmlUnlinkNode(child.Raw());
    Keep(child.Raw());
}

void XmlDocument::ReplaceChild(XmlNode old, XmlNode replacement) {
    if (old.IsNull() || replacement.IsNull() || !old.Raw()->parent || old.Raw()->doc != replacement.Raw()->doc) {
        return;
    }
    xmlUnlinkNode(replacement.Raw());
    xmlReplaceNode(old.Raw(), replacement.Raw());
    Keep(old.Raw());
}

namespace {

// Streams the serialised root element to `device`, then a line break; false when a write failed.
// Serialises the tree without declaration, followed by a line break, through `write`, which
// takes a chunk and says whether it was taken.
bool WriteTree(xmlNode* root, const std::function<bool(const char*, int)>& write) {
    struct Sink {
        const std::function<bool(const char*, int)>* write;
        bool failed = false;
    } sink{&write};
    auto callback = [](void* context, const char* data, int length) -> int {
        auto* target = static_cast<Sink*>(context);
        if (target->failed || !(*target->write)(data, length)) {
            target->failed = true;
            return -1;
        }
        return length;
    };
    xmlSaveCtxt* save = xmlSaveToIO(callback, nullptr, &sink, "UTF-8", XML_SAVE_NO_DECL | XML_SAVE_AS_XML);
    if (!save) {
        return false;
    }
    xmlSaveTree(save, root);
    const bool flushed = xmlSaveClose(save) >= 0;
    return flushed && !sink.failed && write("\n", 1);
}

} // namespace

QByteArray XmlDocument::ToBytes() const {
    const XmlNode root = DocumentElement();
    QByteArray bytes;
    if (!root.IsNull()) {
        WriteTree(root.Raw(), [&bytes](const char* data, int length) {
            bytes.append(data, length);
            return true;
        });
    }
    return bytes;
}

bool XmlDocument::Save(const QString& path, QString* error) const {
    const XmlNode root = DocumentElement();
    if (root.IsNull()) {
        if (error) {
            *error = QStringLiteral("the document has no root element");
        }
        return false;
    }
    QSaveFile file(path);
    QString reason;
    const auto write = [&file, &reason](const char* data, int length) {
        return AtomicFile::WriteAll(file, data, length, &reason);
    };
    if (AtomicFile::Open(file) && WriteTree(root.Raw(), write) && file.commit()) {
        return true;
    }
    file.cancelWriting();
    if (error) {
        *error = reason.isEmpty() ? file.errorString() : reason;
    }
    return false;
}
