// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/HtmlToText.h"

#include "platform/XmlDocument.h"
#include "platform/XmlText.h"

#include <QByteArray>
#include <QSet>
#include <algorithm>
#include <libxml/HTMLparser.h>
#include <libxml/tree.h>
#include <vector>

namespace {

constexpr int kParseOptions = HTML_PARSE_NONET | HTML_PARSE_NOERROR | HTML_PARSE_NOWARNING;
constexpr int kParagraphBreak = 2;
constexpr int kLineBreak = 1;

enum class Kind {
    Inline,
    Skipped,
    LineBreak,
    Line,
    Paragraph,
    ListEntry,
    Cell,
    Rule,
    Image,
    Anchor,
    Preformatted
};

Kind KindOf(const QString& name) {
    static const QSet<QString> kSkipped = {
        QStringLiteral("script"), QStringLiteral("style"),    QStringLiteral("head"),
        QStringLiteral("title"),  QStringLiteral("noscript"), QStringLiteral("template"),
        QStringLiteral("iframe"), QStringLiteral("object"),   QStringLiteral("embed"),
        QStringLiteral("svg"),    QStringLiteral("select"),   QStringLiteral("button")};
    static const QSet<QString> kParagraphs = {
        QStringLiteral("p"),      QStringLiteral("h1"),         QStringLiteral("h2"),
        QStringLiteral("h3"),     QStringLiteral("h4"),         QStringLiteral("h5"),
        QStringLiteral("h6"),     QStringLiteral("blockquote"), QStringLiteral("ul"),
        QStringLiteral("ol"),     QStringLiteral("dl"),         QStringLiteral("table"),
        QStringLiteral("figure"), QStringLiteral("address")};
    static const QSet<QString> kLines = {
        QStringLiteral("div"),     QStringLiteral("tr"),       QStringLiteral("dt"),
        QStringLiteral("dd"),      QStringLiteral("section"),  QStringLiteral("article"),
        QStringLiteral("header"),  QStringLiteral("footer"),   QStringLiteral("nav"),
        QStringLiteral("aside"),   QStringLiteral("main"),     QStringLiteral("figcaption"),
        QStringLiteral("form"),    QStringLiteral("fieldset"), QStringLiteral("center"),
        QStringLiteral("caption"), QStringLiteral("details"),  QStringLiteral("summary"),
        QStringLiteral("body")};
    if (kSkipped.contains(name)) {
        return Kind::Skipped;
    }
    if (kParagraphs.contains(name)) {
        return Kind::Paragraph;
    }
    if (kLines.contains(name)) {
        return Kind::Line;
    }
    if (name == QStringLiteral("br")) {
        return Kind::LineBreak;
    }
    if (name == QStringLiteral("li")) {
        return Kind::ListEntry;
    }
    if (name == QStringLiteral("td") || name == QStringLiteral("th")) {
        return Kind::Cell;
    }
    if (name == QStringLiteral("hr")) {
        return Kind::Rule;
    }
    if (name == QStringLiteral("img")) {
        return Kind::Image;
    }
    if (name == QStringLiteral("a")) {
        return Kind::Anchor;
    }
    if (name == QStringLiteral("pre")) {
        return Kind::Preformatted;
    }
    return Kind::Inline;
}

QString AttributeOf(const xmlNode* node, const char* name) {
    const XmlText::OwnedChars value(xmlGetProp(node, reinterpret_cast<const xmlChar*>(name)));
    return XmlText::ToQString(value.get());
}

// Collects text with collapsed white space and line breaks asked for by the elements around it.
class TextBuilder final {
public:
    void Break(int lines) { m_pendingBreaks = std::max(m_pendingBreaks, lines); }
    // A <br> ends the line at once; two of them leave an empty line.
    void HardBreak() {
        Flush();
        if (!m_text.isEmpty() && TrailingBreaks() < kParagraphBreak) {
            m_text += u'\n';
        }
        m_space = false;
    }
    void Space() { m_space = true; }

    void Text(const QString& text, bool preformatted) {
        for (const QChar c : text) {
            if (preformatted) {
                if (c == u'\n') {
                    Flush();
                    m_text += u'\n';
                } else if (c == u'\t') {
                    Put(u' ');
                } else if (HtmlToText::IsShown(c)) {
                    Put(c);
                }
            } else if (c.isSpace()) {
                m_space = true;
            } else if (HtmlToText::IsShown(c)) {
                Put(c);
            }
        }
    }
    // Text that stands apart from what precedes it by one blank.
    void Word(const QString& word) {
        m_space = true;
        Text(word, false);
    }

    QString Finish() const {
        QStringList lines = m_text.split(u'\n');
        for (QString& line : lines) {
            while (line.endsWith(u' ')) {
                line.chop(1);
            }
        }
        return lines.join(u'\n').trimmed();
    }

private:
    qsizetype TrailingBreaks() const {
        qsizetype have = 0;
        while (have < m_text.size() && m_text[m_text.size() - 1 - have] == u'\n') {
            ++have;
        }
        return have;
    }
    void Flush() {
        if (m_pendingBreaks > 0 && !m_text.isEmpty()) {
            for (qsizetype have = TrailingBreaks(); have < m_pendingBreaks; ++have) {
                m_text += u'\n';
            }
            m_space = false;
        }
        m_pendingBreaks = 0;
    }
    void Put(QChar c) {
        Flush();
        if (m_space && !m_text.isEmpty() && !m_text.endsWith(u'\n') && !m_text.endsWith(u' ')) {
            m_text += u' ';
        }
        m_space = false;
        m_text += c;
    }

    QString m_text;
    int m_pendingBreaks = 0;
    bool m_space = false;
};

class Walker final {
public:
    explicit Walker(const QUrl& base) : m_base(base) {}

    void Walk(xmlNode* start) {
        xmlNode* node = start;
        while (node) {
            if (Enter(node) && node->children) {
                node = node->children;
                continue;
            }
            while (node) {
                Leave(node);
                if (node == start) {
                    return;
                }
                if (node->next) {
                    node = node->next;
                    break;
                }
                node = node->parent;
            }
        }
    }

    HtmlToText::Result Finish() const { return {m_builder.Finish(), m_links}; }

private:
    // Whether the node's children are to be walked.
    bool Enter(const xmlNode* node) {
        if (node->type == XML_TEXT_NODE || node->type == XML_CDATA_SECTION_NODE) {
            m_builder.Text(QString::fromUtf8(reinterpret_cast<const char*>(node->content)),
                           m_preformatted > 0);
            return false;
        }
        if (node->type != XML_ELEMENT_NODE) {
            return false;
        }
        const QString name = QString::fromUtf8(reinterpret_cast<const char*>(node->name)).toLower();
        switch (KindOf(name)) {
        case Kind::Skipped:
            return false;
        case Kind::LineBreak:
            m_builder.HardBreak();
            return false;
        case Kind::Paragraph:
            m_builder.Break(kParagraphBreak);
            break;
        case Kind::Preformatted:
            m_builder.Break(kParagraphBreak);
            ++m_preformatted;
            break;
        case Kind::Line:
            m_builder.Break(kLineBreak);
            break;
        case Kind::ListEntry:
            m_builder.Break(kLineBreak);
            m_builder.Text(QStringLiteral("- "), true);
            break;
        case Kind::Cell:
            m_builder.Space();
            break;
        case Kind::Rule:
            m_builder.Break(kParagraphBreak);
            m_builder.Text(QStringLiteral("----"), true);
            m_builder.Break(kParagraphBreak);
            return false;
        case Kind::Image:
            if (const QString alt = AttributeOf(node, "alt").simplified(); !alt.isEmpty()) {
                m_builder.Word(u'[' + alt + u']');
            }
            return false;
        case Kind::Anchor:
            m_anchors.push_back(LinkNumber(AttributeOf(node, "href")));
            break;
        case Kind::Inline:
            break;
        }
        return true;
    }

    void Leave(const xmlNode* node) {
        if (node->type != XML_ELEMENT_NODE) {
            return;
        }
        const QString name = QString::fromUtf8(reinterpret_cast<const char*>(node->name)).toLower();
        switch (KindOf(name)) {
        case Kind::Paragraph:
            m_builder.Break(kParagraphBreak);
            break;
        case Kind::Preformatted:
            --m_preformatted;
            m_builder.Break(kParagraphBreak);
            break;
        case Kind::Line:
        case Kind::ListEntry:
            m_builder.Break(kLineBreak);
            break;
        case Kind::Anchor:
            if (!m_anchors.empty()) {
                if (const int number = m_anchors.back(); number > 0) {
                    m_builder.Word(u'[' + QString::number(number) + u']');
                }
                m_anchors.pop_back();
            }
            break;
        default:
            break;
        }
    }

    // The number of the link (a link seen before keeps its number); 0 for a link not listed.
    int LinkNumber(const QString& href) {
        const QString trimmed = href.trimmed();
        if (trimmed.isEmpty()) {
            return 0;
        }
        const QUrl url = m_base.isValid() ? m_base.resolved(QUrl(trimmed)) : QUrl(trimmed);
        const QString scheme = url.scheme().toLower();
        if (!url.isValid() || (scheme != QStringLiteral("http") && scheme != QStringLiteral("https") &&
                               scheme != QStringLiteral("ftp") && scheme != QStringLiteral("mailto"))) {
            return 0;
        }
        const QString target = HtmlToText::Printable(url.toString(QUrl::FullyEncoded));
        const qsizetype known = m_links.indexOf(target);
        if (known >= 0) {
            return int(known) + 1;
        }
        m_links.append(target);
        return int(m_links.size());
    }

    QUrl m_base;
    TextBuilder m_builder;
    QStringList m_links;
    std::vector<int> m_anchors;
    int m_preformatted = 0;
};

} // namespace

HtmlToText::Result HtmlToText::Convert(const QString& html, const QUrl& base) {
    const QByteArray bytes = html.left(kMaxInputChars).toUtf8();
    if (bytes.trimmed().isEmpty()) {
        return {};
    }
    // The document is owned (and freed) like every other libxml2 tree of the program.
    const XmlDocument doc = XmlDocument::Adopt(
        htmlReadMemory(bytes.constData(), int(bytes.size()), nullptr, "UTF-8", kParseOptions));
    if (doc.IsNull() || doc.DocumentElement().IsNull()) {
        return {Printable(html), {}};
    }
    Walker walker(base);
    walker.Walk(doc.DocumentElement().Raw());
    return walker.Finish();
}

QString HtmlToText::OneLine(const QString& html) {
    return Convert(html).text.simplified();
}

bool HtmlToText::IsShown(QChar c) {
    const char16_t code = c.unicode();
    // Direction overrides and isolates could make a line read otherwise than it is.
    const bool directional = (code >= 0x202A && code <= 0x202E) || (code >= 0x2066 && code <= 0x2069);
    return c.category() != QChar::Other_Control && !directional;
}

QString HtmlToText::Printable(const QString& text) {
    QString shown;
    shown.reserve(text.size());
    for (const QChar c : text) {
        if (c == u'\n' || c == u'\r' || c == u'\t') {
            shown += u' ';
        } else if (IsShown(c)) {
            shown += c;
        }
    }
    return shown.simplified();
}
