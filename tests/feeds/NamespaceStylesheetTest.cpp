// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
// The namespace stylesheet (tamselns.xsl): every feed dialect comes out in the RSS 2.0 shape that
// the channel walks. Its cases are feed files under data/ (stylesheet-*.xml, dialect-*.xml), each
// beside the fields it must give (.expected), among them feeds in legacy and UTF-16 encodings and
// weekdays across centuries. Also the entities of RSS 0.91 documents.
#include "platform/Paths.h"
#include "platform/XmlDocument.h"
#include "platform/XmlSecurity.h"
#include "platform/XsltStylesheet.h"
#include "support/QStringPrinter.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QSet>
#include <cstdarg>
#include <gtest/gtest.h>
#include <libxml/tree.h>
#include <libxslt/xsltInternals.h>
#include <libxslt/xsltutils.h>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

QString ResourceFolder() {
    return Paths::FromEnvironment().ResourceFolder();
}

const XsltStylesheet& Stylesheet() {
    static const XsltStylesheet style = XsltStylesheet::Load(ResourceFolder() + u"/tamselns.xsl"_s);
    return style;
}

QByteArray ReadFile(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// Feeds are parsed as a channel parses them: shipped DTDs may be read, nothing else.
XmlDocument ParseFeed(const QByteArray& bytes, QString* error = nullptr) {
    XmlSecurity::MapShippedDtds(ResourceFolder());
    return XmlDocument::Parse(bytes, error, XmlParseOptions::ForFeed(QString()));
}

XmlDocument Normalise(const QByteArray& bytes) {
    QString error;
    const XmlDocument feed = ParseFeed(bytes, &error);
    EXPECT_FALSE(feed.IsNull()) << error.toStdString();
    XmlDocument result =
        feed.IsNull() ? XmlDocument::Adopt(nullptr) : Stylesheet().TransformToDocument(feed, &error);
    EXPECT_FALSE(result.IsNull()) << error.toStdString();
    return result;
}

// One element as a line: name, {namespace} when it has a default one, [attributes], and "=text",
// or {children} for elements that hold elements. Line breaks in texts are written as \n.
QString Describe(XmlNode node) {
    QString line = node.Name();
    if (node.Raw()->ns && !node.Raw()->ns->prefix) {
        line += u'{' + QString::fromUtf8(reinterpret_cast<const char*>(node.Raw()->ns->href)) + u'}';
    }
    QStringList attributes;
    for (const auto& [name, value] : node.Attributes()) {
        attributes << name + u'=' + value;
    }
    if (!attributes.isEmpty()) {
        line += u'[' + attributes.join(u' ') + u']';
    }
    QStringList children;
    for (const XmlNode& child : node.ChildNodes()) {
        if (child.IsElement()) {
            children << Describe(child);
        }
    }
    if (!children.isEmpty()) {
        return line + u'{' + children.join(u"; "_s) + u'}';
    }
    return node.HasChildNodes() ? line + u'=' + node.Text().replace(u'\n', u"\\n"_s) : line;
}

// The channel as the .expected files write it: its fields one a line, each item as a line "item"
// followed by its fields indented by two spaces. Children are taken in document order, so that a
// field after an item shows: the channel walk stamps each item with the fields seen so far.
QStringList DescribeChannel(const XmlDocument& doc) {
    QStringList lines;
    for (const XmlNode& child : doc.DocumentElement().SelectSingleNode(u"/rss/channel"_s).ChildNodes()) {
        if (child.Name() != u"item"_s) {
            lines << Describe(child);
            continue;
        }
        lines << u"item"_s;
        for (const XmlNode& field : child.ChildNodes()) {
            lines << u"  "_s + Describe(field);
        }
    }
    return lines;
}

// libxslt's messages while the test that installs this function runs.
QString g_messages;
void CollectMessage(void*, const char* format, ...) {
    va_list args;
    va_start(args, format);
    g_messages += QString::vasprintf(format, args);
    va_end(args);
}

} // namespace

// The stylesheet compiles without a warning, and every feed file becomes RSS 2.0 with the fields
// its .expected file lists, in that order, without a message; the walk and the item bank read a
// description from its first child.
TEST(NamespaceStylesheetTest, EveryCaseFileGivesItsExpectedFieldsWithoutAMessage) {
    ASSERT_FALSE(Stylesheet().IsNull());
    // Installed after the stylesheet's first use, which installs the product's own collector.
    xmlGenericErrorFunc previous = xsltGenericError;
    void* previousContext = xsltGenericErrorContext;
    xsltSetGenericErrorFunc(nullptr, &CollectMessage);
    const XmlDocument source = XmlDocument::Load(ResourceFolder() + u"/tamselns.xsl"_s);
    std::unique_ptr<xsltStylesheet, decltype(&xsltFreeStylesheet)> style(
        xsltParseStylesheetDoc(xmlCopyDoc(source.Raw(), 1)), &xsltFreeStylesheet);
    ASSERT_NE(style, nullptr);
    EXPECT_EQ(style->warnings, 0);
    const QDir data(QStringLiteral(TAMSEL_TEST_DATA_DIR));
    const QStringList files =
        data.entryList({u"dialect-*.xml"_s, u"stylesheet-*.xml"_s}, QDir::Files, QDir::Name);
    ASSERT_EQ(files.size(), 38);
    for (const QString& file : files) {
        SCOPED_TRACE(file.toStdString());
        const XmlDocument doc = Normalise(ReadFile(data.filePath(file)));
        ASSERT_FALSE(doc.IsNull());
        EXPECT_EQ(doc.DocumentElement().Name(), u"rss"_s);
        EXPECT_EQ(doc.DocumentElement().Attribute(u"version"_s), u"2.0"_s);
        ASSERT_EQ(doc.DocumentElement().ChildNodes().size(), 1u);
        QStringList expected = QString::fromUtf8(ReadFile(data.filePath(file.chopped(4) + u".expected"_s)))
                                   .split(u'\n', Qt::SkipEmptyParts);
        expected.removeIf(
            [](const QString& line) { return line.startsWith(u'#') || line.trimmed().isEmpty(); });
        EXPECT_EQ(DescribeChannel(doc), expected);
        for (const XmlNode& item : doc.DocumentElement().SelectNodes(u"/rss/channel/item"_s)) {
            const XmlNode description = item.SelectSingleNode(u"description"_s);
            EXPECT_TRUE(description.IsNull() || description.ChildNodes().size() == 1u);
        }
    }
    xsltSetGenericErrorFunc(previousContext, previous);
    EXPECT_EQ(g_messages.toStdString(), "");
}

TEST(NamespaceStylesheetTest, LongTextsDoNotExhaustTheRecursion) {
    const int count = 10000;
    const QByteArray markup = QByteArray("a &lt; b &amp; c &gt; d ").repeated(count);
    const QByteArray tags = QByteArray("&lt;b&gt;x&lt;/b&gt;").repeated(count);
    const QByteArray xhtml = "<content type=\"xhtml\"><div xmlns=\"http://www.w3.org/1999/xhtml\">";
    // Markup nested as deep as the parser allows, under a base of many folders, with addresses of
    // many steps; an address longer than 1000 characters stays as written.
    const int depth = 250;
    const QByteArray steps = QByteArray("../").repeated(150) + QByteArray("a/").repeated(150);
    const QByteArray tooLong = QByteArray("../").repeated(400) + "z";
    const XmlDocument doc = Normalise(
        "<feed xmlns=\"http://www.w3.org/2005/Atom\" xml:base=\"http://b.example/" +
        QByteArray("d/").repeated(400) + "\"><title>Test</title><entry><id>1</id><title type=\"html\">" +
        tags + "</title><content type=\"text\">" + markup + "</content></entry><entry><id>2</id>" + xhtml +
        "<p>" + markup + "</p></div></content></entry><entry><id>3</id><link href=\"" + steps + "x\"/>" +
        xhtml + QByteArray("<span>").repeated(depth) + "<a href=\"" + steps + "y\">&amp;</a><img src=\"" +
        tooLong + "\"/>" + QByteArray("</span>").repeated(depth) + "</div></content></entry></feed>");
    const std::vector<XmlNode> items = doc.DocumentElement().SelectNodes(u"/rss/channel/item"_s);
    ASSERT_EQ(items.size(), 3u);
    const QString expected = u"a &lt; b &amp; c &gt; d "_s.repeated(count);
    EXPECT_EQ(items[0].SelectSingleNode(u"description"_s).Text(), expected);
    EXPECT_EQ(items[1].SelectSingleNode(u"description"_s).Text(), u"<p>"_s + expected + u"</p>"_s);
    // A title is cut before its tags are taken out; what is left is only text.
    const QString title = items[0].SelectSingleNode(u"title"_s).Text();
    EXPECT_FALSE(title.isEmpty());
    EXPECT_EQ(title, QString(title.size(), u'x'));
    const QString folders = u"http://b.example/"_s + u"d/"_s.repeated(250) + u"a/"_s.repeated(150);
    EXPECT_EQ(items[2].SelectSingleNode(u"link"_s).Text(), folders + u'x');
    EXPECT_EQ(items[2].SelectSingleNode(u"description"_s).Text(),
              u"<span>"_s.repeated(depth) + u"<a href=\""_s + folders + u"y\">&amp;</a><img src=\""_s +
                  QString::fromLatin1(tooLong) + u"\" />"_s + u"</span>"_s.repeated(depth));
}

// The shipped RSS 0.91 DTD declares the whole HTML 4 entity set once (96 Latin-1 characters, 124
// symbols and Greek letters, 28 special characters), and answers for either of its identifiers
// whatever the other says. A sample is checked against code points written here, then every
// declaration.
TEST(NamespaceStylesheetTest, Rss091EntitiesComeFromTheShippedDtd) {
    const QString text = QString::fromUtf8(ReadFile(ResourceFolder() + u"/dtd/rss-0.91.dtd"_s));
    QSet<int> codePoints;
    QByteArray body = "[&eacute;&Omega;&hellip;&euro;&zwj;]";
    QString expected = u"[\u00e9\u03a9\u2026\u20ac\u200d]"_s;
    for (auto match = QRegularExpression(u"<!ENTITY\\s+(\\w+)\\s+\"&#(\\d+);\">"_s).globalMatch(text);
         match.hasNext();) {
        const auto m = match.next();
        const char32_t codePoint = char32_t(m.captured(2).toUInt());
        codePoints.insert(int(codePoint));
        body += "&" + m.captured(1).toLatin1() + ";";
        expected += QString::fromUcs4(&codePoint, 1);
    }
    EXPECT_EQ(codePoints.size(), 248);
    EXPECT_EQ(text.count(u"<!ENTITY"_s), 248);
    for (int latin1 = 0xA0; latin1 <= 0xFF; ++latin1) {
        EXPECT_TRUE(codePoints.contains(latin1)) << latin1;
    }
    const QByteArray publicId = "\"-//Netscape Communications//DTD RSS 0.91//EN\"";
    const QByteArray systemId = "\"http://my.netscape.com/publish/formats/rss-0.91.dtd\"";
    const QByteArray doctypes[] = {"PUBLIC " + publicId + " " + systemId, "PUBLIC " + publicId + " \"x\"",
                                   "PUBLIC " + publicId + " \"rss-0.91.dtd\"", "SYSTEM " + systemId};
    for (const QByteArray& doctype : doctypes) {
        const XmlDocument doc =
            ParseFeed("<?xml version=\"1.0\"?>\n<!DOCTYPE rss " + doctype +
                      ">\n<rss version=\"0.91\"><channel><title>" + body + "</title></channel></rss>");
        ASSERT_FALSE(doc.IsNull()) << doctype.toStdString();
        EXPECT_EQ(doc.DocumentElement().SelectSingleNode(u"channel/title"_s).Text(), expected)
            << doctype.toStdString();
    }
}
