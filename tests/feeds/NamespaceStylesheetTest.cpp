// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
// The namespace stylesheet (tamselns.xsl): every feed dialect comes out in the RSS 2.0 shape that
// the channel walks. Its cases are feed files under data/ (stylesheet-*.xml, dialect-*.xml), each
// beside the fields it must give (.expected), among them feeds in legacy and UTF-16 encodings and
// weekdays across centuries, and the entities of RSS 0.91 documents, which come from the shipped
// DTD (stylesheet-rss091-*.xml). The feeds fixture lends only its data-file readers.
#include "FeedsFixture.h"

#include "platform/XmlSecurity.h"

#include <QRegularExpression>
#include <cstdarg>
#include <libxslt/xsltutils.h>

using namespace Qt::StringLiterals;

namespace {

const XsltStylesheet& Stylesheet() {
    static const XsltStylesheet style =
        XsltStylesheet::Load(Paths::FromEnvironment().ResourceFile(u"tamselns.xsl"_s));
    return style;
}

// Feeds are parsed as a channel parses them (shipped DTDs may be read, nothing else), then
// normalised; a feed that does not parse reports the parser's message.
XmlDocument Normalise(const QByteArray& bytes) {
    XmlSecurity::MapShippedDtds(Paths::FromEnvironment().ResourceFolder());
    QString error;
    const XmlDocument feed = XmlDocument::Parse(bytes, &error, XmlParseOptions::ForFeed(QString()));
    EXPECT_FALSE(feed.IsNull()) << error.toStdString();
    XmlDocument result = Stylesheet().TransformToDocument(feed, &error);
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
    for (const XmlNode& child : node.SelectNodes(u"*"_s)) {
        children << Describe(child);
    }
    if (!children.isEmpty()) {
        return line + u'{' + children.join(u"; "_s) + u'}';
    }
    return node.HasChildNodes() ? line + u'=' + node.Text().replace(u'\n', u"\\n"_s) : line;
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
    // Installed after the stylesheet's first use, which installs the product's own collector; the
    // compilation that follows reports its warnings here.
    ASSERT_FALSE(Stylesheet().IsNull());
    xmlGenericErrorFunc previous = xsltGenericError;
    void* previousContext = xsltGenericErrorContext;
    xsltSetGenericErrorFunc(nullptr, &CollectMessage);
    ASSERT_FALSE(XsltStylesheet::Load(Paths::FromEnvironment().ResourceFile(u"tamselns.xsl"_s)).IsNull());
    const QStringList files = DataFiles(u"dialect-*.xml"_s) + DataFiles(u"stylesheet-*.xml"_s);
    ASSERT_EQ(files.size(), 42);
    for (const QString& file : files) {
        SCOPED_TRACE(file.toStdString());
        const XmlDocument doc = Normalise(ReadData(file));
        ASSERT_FALSE(doc.IsNull());
        EXPECT_EQ(doc.DocumentElement().Name(), u"rss"_s);
        EXPECT_EQ(doc.DocumentElement().Attribute(u"version"_s), u"2.0"_s);
        ASSERT_EQ(doc.DocumentElement().ChildNodes().size(), 1u);
        // The channel's fields one a line, each item as a line "item" followed by its fields indented
        // by two spaces. Children are taken in document order, so that a field after an item shows:
        // the channel walk stamps each item with the fields seen so far.
        QStringList lines;
        for (const XmlNode& child : doc.DocumentElement().SelectSingleNode(u"/rss/channel"_s).ChildNodes()) {
            lines << (child.Name() == u"item"_s ? u"item"_s : Describe(child));
            for (const XmlNode& field : child.SelectNodes(u"self::item/*"_s)) {
                lines << u"  "_s + Describe(field);
            }
        }
        // The lines that are neither blank nor comments.
        EXPECT_EQ(lines, QString::fromUtf8(ReadData(file.chopped(4) + u".expected"_s))
                             .split(u'\n')
                             .filter(QRegularExpression(u"^(?!#)\\s*\\S"_s)));
        EXPECT_TRUE(doc.DocumentElement().SelectSingleNode(u"//description[count(node()) != 1]"_s).IsNull());
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
    EXPECT_TRUE(!title.isEmpty() && title == QString(title.size(), u'x')) << title.toStdString();
    const QString folders = u"http://b.example/"_s + u"d/"_s.repeated(250) + u"a/"_s.repeated(150);
    EXPECT_EQ(items[2].SelectSingleNode(u"link"_s).Text(), folders + u'x');
    EXPECT_EQ(items[2].SelectSingleNode(u"description"_s).Text(),
              u"<span>"_s.repeated(depth) + u"<a href=\""_s + folders + u"y\">&amp;</a><img src=\""_s +
                  QString::fromLatin1(tooLong) + u"\" />"_s + u"</span>"_s.repeated(depth));
}
