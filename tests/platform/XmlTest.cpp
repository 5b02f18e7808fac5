// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/Paths.h"
#include "platform/XmlDocument.h"
#include "platform/XmlSecurity.h"
#include "platform/XsltStylesheet.h"
#include "support/TestHome.h"

#include <QFile>
#include <QHostAddress>
#include <QTcpServer>
#include <QUrl>
#include <gtest/gtest.h>
#include <tuple>

using namespace Qt::StringLiterals;

// Whitespace between elements is no child, CDATA reads as text and internal entities are
// substituted. Feeds keep the blanks inside XHTML markup, where they separate words, and drop them
// elsewhere, nested as deep as the parser allows, without recursion; other documents drop them
// everywhere. A broken document gives a reason.
TEST(XmlDocumentTest, WhitespaceBetweenElementsIsNoChildButAFeedsXhtmlKeepsItsWordSpaces) {
    const XmlDocument doc = XmlDocument::Parse(
        "<!DOCTYPE channel [<!ENTITY who \"Tamsel\">]><channel>\n  <title>  News &who; </title>\n  "
        "<description><![CDATA[<b>bold</b>]]></description>\n</channel>");
    EXPECT_EQ(doc.ToBytes(), "<channel><title>  News Tamsel </title>"
                             "<description>&lt;b&gt;bold&lt;/b&gt;</description></channel>\n");
    // The title's words are a text node; the element holding them is none.
    EXPECT_TRUE(doc.DocumentElement().FirstChild().FirstChild().IsText() && !doc.DocumentElement().IsText());

    const QByteArray feed(
        "<feed xmlns=\"http://www.w3.org/2005/Atom\">\n <entry>\n  <content type=\"xhtml\">\n"
        "   <div xmlns=\"http://www.w3.org/1999/xhtml\"><b>a</b> <i>b</i>\n</div>\n  </content>\n"
        "  <x:note xmlns:x=\"urn:x\"> <x:y/> </x:note>\n </entry>\n</feed>");
    const XmlParseOptions forFeed = XmlParseOptions::ForFeed(QString());
    const QByteArray head = "<feed xmlns=\"http://www.w3.org/2005/Atom\"><entry><content type=\"xhtml\">"
                            "<div xmlns=\"http://www.w3.org/1999/xhtml\">";
    const QByteArray tail = "</div></content><x:note xmlns:x=\"urn:x\"><x:y/></x:note></entry></feed>\n";
    EXPECT_EQ(XmlDocument::Parse(feed, nullptr, forFeed).ToBytes(), head + "<b>a</b> <i>b</i>\n" + tail);
    EXPECT_EQ(XmlDocument::Parse(feed).ToBytes(), head + "<b>a</b><i>b</i>" + tail);
    constexpr int kDepth = 250;
    const QByteArray nested =
        QByteArray("<a> ").repeated(kDepth) + "<b/>" + QByteArray(" </a>\n").repeated(kDepth);
    EXPECT_EQ(XmlDocument::Parse(nested, nullptr, forFeed).ToBytes(),
              QByteArray("<a>").repeated(kDepth) + "<b/>" + QByteArray("</a>").repeated(kDepth) + '\n');

    QString error;
    EXPECT_TRUE(XmlDocument::Parse("<a><b></a>", &error).IsNull());
    EXPECT_TRUE(error.contains(u"line 1"_s));
    EXPECT_TRUE(XmlDocument::Parse("", &error).IsNull());
    EXPECT_TRUE(XmlDocument::Load(u"/nonexistent/file.xml"_s, &error).IsNull());
}

TEST(XmlDocumentTest, BuildsAndSavesWithoutDeclarationAtomically) {
    TestHome home;
    XmlDocument doc;
    XmlNode root = doc.CreateElement(u"tamselprofiles"_s);
    doc.SetDocumentElement(root);
    XmlNode user = root.AppendChild(doc.CreateElement(u"user"_s));
    user.AppendChild(doc.CreateTextElement(u"username"_s, u"Zoë & <Co>"_s));
    user.SetAttribute(u"a"_s, u"\"q\""_s);
    const QString path = home.File(u"out.xml"_s);
    ASSERT_TRUE(doc.Save(path));
    EXPECT_EQ(home.Read(u"out.xml"_s),
              QByteArray("<tamselprofiles><user a=\"&quot;q&quot;\"><username>Zo\xC3\xAB &amp; "
                         "&lt;Co&gt;</username></user></tamselprofiles>\n"));

    // A save that cannot happen says why, and leaves the old file whole.
    QString noRoot;
    QString noFolder;
    EXPECT_FALSE(XmlDocument().Save(path, &noRoot));
    EXPECT_FALSE(doc.Save(home.File(u"missing-folder/x.xml"_s)));
    EXPECT_FALSE(doc.Save(home.File(u"missing-folder/x.xml"_s), &noFolder));
    EXPECT_FALSE(noRoot.isEmpty() || noFolder.isEmpty()) << noRoot.toStdString() << noFolder.toStdString();
    EXPECT_TRUE(home.Read(u"out.xml"_s).startsWith("<tamselprofiles>"));

    // A created node that never joins the tree is freed with the document (checked by ASan).
    doc.CreateElement(u"orphan"_s);
}

// Each attack either loads with the outside reference left empty, or does not load at all; no
// connection is even attempted. Only the shipped RSS 0.91 DTD is ever read, and only when mapped
// DTDs may be loaded.
TEST(XmlSecurityTest, UnmappedDtdsAndExternalEntitiesAreNeverRead) {
    TestHome home;
    home.Write(u"evil.dtd"_s, "<!ENTITY eacute \"PWNED\">");
    home.Write(u"secret.txt"_s, "TOPSECRET");
    QTcpServer server;
    ASSERT_TRUE(server.listen(QHostAddress::LocalHost));
    const QByteArray http = "http://127.0.0.1:" + QByteArray::number(server.serverPort());
    const QByteArray evilUrl = QUrl::fromLocalFile(home.File(u"evil.dtd"_s)).toEncoded();
    const QByteArray secretUrl = QUrl::fromLocalFile(home.File(u"secret.txt"_s)).toEncoded();
    const QByteArray rss091 = "\"-//Netscape Communications//DTD RSS 0.91//EN\"";
    // Each doctype, the title it declares, and the titles read with mapped DTDs loaded and
    // without ("-": the document does not load).
    const std::tuple<QByteArray, QByteArray, const char16_t*> attacks[] = {
        {"SYSTEM \"" + evilUrl + "\"", "Caf&eacute;!", u"Caf!|Caf!"},
        {"PUBLIC \"-//Someone//DTD Other//EN\" \"" + evilUrl + "\"", "Caf&eacute;!", u"Caf!|Caf!"},
        {"SYSTEM \"" + http + "/rss-0.91.dtd\"", "Caf&eacute;!", u"Caf!|Caf!"},
        {"[<!ENTITY x SYSTEM \"" + secretUrl + "\">]", "[&x;]", u"[]|[]"},
        {"[<!ENTITY x SYSTEM \"file:///etc/hostname\">]", "[&x;]", u"[]|[]"},
        {"[<!ENTITY x SYSTEM \"" + http + "/secret\">]", "[&x;]", u"[]|[]"},
        {"[<!ENTITY % p SYSTEM \"" + http + "/p.dtd\"> %p;]", "p", u"p|p"},
        {"[<!ENTITY % p SYSTEM \"" + evilUrl + "\"> %p;]", "Caf&eacute;!", u"-|-"},
        {"PUBLIC " + rss091 + " \"" + evilUrl + "\"", "Caf&eacute;!", u"Caf\u00e9!|Caf!"},
    };
    XmlSecurity::MapShippedDtds(Paths::FromEnvironment().ResourceFolder());
    for (const auto& [doctype, title, expected] : attacks) {
        QStringList titles;
        for (bool loadDtd : {true, false}) {
            const XmlDocument doc = XmlDocument::Parse("<!DOCTYPE rss " + doctype + "><rss><channel><title>" +
                                                           title + "</title></channel></rss>",
                                                       nullptr, {.loadMappedDtd = loadDtd});
            titles.append(doc.IsNull() ? u"-"_s
                                       : doc.DocumentElement().SelectSingleNode(u"channel/title"_s).Text());
            EXPECT_FALSE(doc.ToBytes().contains("PWNED") || doc.ToBytes().contains("TOPSECRET"));
        }
        EXPECT_EQ(titles.join(u'|'), QString::fromUtf16(expected)) << doctype.toStdString();
    }
    EXPECT_FALSE(server.waitForNewConnection(0));
}

TEST(XmlSecurityTest, BillionLaughsIsRefusedQuickly) {
    QString doc = u"<!DOCTYPE lolz [<!ENTITY lol0 \"lol\">"_s;
    for (int i = 1; i <= 9; ++i) {
        doc += u"<!ENTITY lol%1 \"%2\">"_s.arg(i).arg(u"&lol%1;"_s.arg(i - 1).repeated(10));
    }
    doc += u"]><lolz>&lol9;</lolz>"_s;
    QString error;
    EXPECT_TRUE(XmlDocument::Parse(doc.toUtf8(), &error).IsNull());
    EXPECT_FALSE(error.isEmpty());
}

TEST(XsltTest, StylesheetsMayNotWriteFilesOrReadOtherFiles) {
    TestHome home;
    home.Write(u"secret.xml"_s, "<s>TOPSECRET</s>");
    const QString target = home.File(u"written.txt"_s);
    const QByteArray sheetText =
        "<xsl:stylesheet version=\"1.0\" xmlns:xsl=\"http://www.w3.org/1999/XSL/Transform\" "
        "xmlns:exsl=\"http://exslt.org/common\" extension-element-prefixes=\"exsl\">"
        "<xsl:template match=\"/\"><out><xsl:value-of select=\"document('file://" +
        home.File(u"secret.xml"_s).toUtf8() + "')\"/><exsl:document href=\"" + target.toUtf8() +
        "\"><x/></exsl:document></out></xsl:template></xsl:stylesheet>";
    const XsltStylesheet style = XsltStylesheet::Compile(XmlDocument::Parse(sheetText));
    ASSERT_FALSE(style.IsNull());
    const XmlDocument out = style.TransformToDocument(XmlDocument::Parse("<r/>"));
    EXPECT_FALSE(QFile::exists(target));
    EXPECT_FALSE(out.ToBytes().contains("TOPSECRET"));
}
