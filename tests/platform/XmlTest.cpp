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

using namespace Qt::StringLiterals;

namespace {

XmlDocument ParseOk(const char* text) {
    QString error;
    XmlDocument doc = XmlDocument::Parse(QByteArray(text), &error);
    EXPECT_FALSE(doc.IsNull()) << error.toStdString();
    return doc;
}

} // namespace

// Whitespace between elements is no child, CDATA reads as text and internal entities are
// substituted; a broken document gives a reason.
TEST(XmlDocumentTest, WhitespaceBetweenElementsIsNoChildAndCdataReadsAsText) {
    const XmlDocument doc =
        ParseOk("<!DOCTYPE channel [<!ENTITY who \"Tamsel\">]><channel>\n  <title>  News &who; </title>\n  "
                "<description><![CDATA[<b>bold</b>]]></description>\n</channel>");
    const XmlNode root = doc.DocumentElement();
    ASSERT_EQ(root.ChildNodes().size(), 2u);
    EXPECT_EQ(root.FirstChild().FirstChild().Text(), u"  News Tamsel "_s);
    const XmlNode description = root.FirstChildElement(u"description"_s);
    ASSERT_TRUE(description.FirstChild().IsText());
    EXPECT_EQ(description.FirstChild().Text(), u"<b>bold</b>"_s);
    QString error;
    EXPECT_TRUE(XmlDocument::Parse("<a><b></a>", &error).IsNull());
    EXPECT_TRUE(error.contains(u"line 1"_s));
    EXPECT_TRUE(XmlDocument::Parse("", &error).IsNull());
    EXPECT_TRUE(XmlDocument::Load(u"/nonexistent/file.xml"_s, &error).IsNull());
}

TEST(XmlDocumentTest, FeedsKeepTheWordSpacesOfXhtmlMarkupOnly) {
    const QByteArray feed(
        "<feed xmlns=\"http://www.w3.org/2005/Atom\">\n <entry>\n  <content type=\"xhtml\">\n"
        "   <div xmlns=\"http://www.w3.org/1999/xhtml\"><b>a</b> <i>b</i>\n</div>\n  </content>\n"
        "  <x:note xmlns:x=\"urn:x\"> <x:y/> </x:note>\n </entry>\n</feed>");
    const XmlDocument doc = XmlDocument::Parse(feed, nullptr, XmlParseOptions::ForFeed(QString()));
    ASSERT_FALSE(doc.IsNull());
    // Each child of the feed's own elements is an element: the walks see no blanks.
    const XmlNode entry = doc.DocumentElement().FirstChild();
    EXPECT_EQ(doc.DocumentElement().ChildNodes().size(), 1u);
    ASSERT_EQ(entry.ChildNodes().size(), 2u);
    const XmlNode content = entry.FirstChild();
    ASSERT_EQ(content.ChildNodes().size(), 1u);
    EXPECT_EQ(entry.ChildNodes()[1].ChildNodes().size(), 1u);
    const std::vector<XmlNode> words = content.FirstChild().ChildNodes();
    ASSERT_EQ(words.size(), 4u);
    EXPECT_EQ(words[1].Text(), u" "_s);
    EXPECT_EQ(words[3].Text(), u"\n"_s);

    // Other documents drop the blanks everywhere, XHTML markup included.
    const XmlDocument plain = XmlDocument::Parse(feed);
    ASSERT_FALSE(plain.IsNull());
    EXPECT_EQ(plain.DocumentElement().FirstChild().FirstChild().FirstChild().ChildNodes().size(), 2u);

    // Blanks go from feeds nested as deep as the parser allows, without recursion.
    constexpr int kDepth = 250;
    const QByteArray nested =
        QByteArray("<a> ").repeated(kDepth) + "<b/>" + QByteArray(" </a>\n").repeated(kDepth);
    const XmlDocument deep = XmlDocument::Parse(nested, nullptr, XmlParseOptions::ForFeed(QString()));
    ASSERT_FALSE(deep.IsNull());
    XmlNode node = deep.DocumentElement();
    for (int level = 1; level < kDepth; ++level) {
        ASSERT_EQ(node.ChildNodes().size(), 1u) << level;
        node = node.FirstChild();
    }
    EXPECT_EQ(node.FirstChild().Name(), u"b"_s);
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

    // A save that cannot happen leaves the old file whole.
    XmlDocument empty;
    QString error;
    EXPECT_FALSE(empty.Save(path, &error));
    EXPECT_FALSE(error.isEmpty());
    EXPECT_TRUE(home.Read(u"out.xml"_s).startsWith("<tamselprofiles>"));
    EXPECT_FALSE(doc.Save(home.File(u"missing-folder/x.xml"_s)));

    // Removed and replaced nodes stay readable until the document goes.
    XmlDocument bank =
        ParseOk("<bank><item><title>old</title></item><item><title>gone</title></item></bank>");
    const XmlNode bankRoot = bank.DocumentElement();
    const auto items = bankRoot.ChildNodes();
    XmlNode replacement = bank.ImportNode(ParseOk("<item><title>new</title></item>").DocumentElement());
    XmlDocument::ReplaceChild(items[0], replacement);
    XmlDocument::RemoveChild(bankRoot, items[1]);
    EXPECT_EQ(items[0].Text(), u"old"_s);
    EXPECT_EQ(items[1].Text(), u"gone"_s);
    ASSERT_EQ(bankRoot.ChildNodes().size(), 1u);
    EXPECT_EQ(bankRoot.FirstChild().Text(), u"new"_s);
    // A created node that never joins the tree is freed with the document (checked by ASan).
    bank.CreateElement(u"orphan"_s);
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
    // Titles with mapped DTDs loaded and without; nullptr: the document does not load.
    struct Attack {
        QByteArray doctype;
        QByteArray title;
        const char16_t* withDtd;
        const char16_t* withoutDtd;
    };
    const Attack attacks[] = {
        {"SYSTEM \"" + evilUrl + "\"", "Caf&eacute;!", u"Caf!", u"Caf!"},
        {"PUBLIC \"-//Someone//DTD Other//EN\" \"" + evilUrl + "\"", "Caf&eacute;!", u"Caf!", u"Caf!"},
        {"SYSTEM \"" + http + "/rss-0.91.dtd\"", "Caf&eacute;!", u"Caf!", u"Caf!"},
        {"[<!ENTITY x SYSTEM \"" + secretUrl + "\">]", "[&x;]", u"[]", u"[]"},
        {"[<!ENTITY x SYSTEM \"file:///etc/hostname\">]", "[&x;]", u"[]", u"[]"},
        {"[<!ENTITY x SYSTEM \"" + http + "/secret\">]", "[&x;]", u"[]", u"[]"},
        {"[<!ENTITY % p SYSTEM \"" + http + "/p.dtd\"> %p;]", "p", u"p", u"p"},
        {"[<!ENTITY % p SYSTEM \"" + evilUrl + "\"> %p;]", "Caf&eacute;!", nullptr, nullptr},
        {"PUBLIC " + rss091 + " \"" + evilUrl + "\"", "Caf&eacute;!", u"Caf\u00e9!", u"Caf!"},
    };
    XmlSecurity::MapShippedDtds(Paths::FromEnvironment().ResourceFolder());
    for (const Attack& attack : attacks) {
        for (bool loadDtd : {true, false}) {
            SCOPED_TRACE(attack.doctype.toStdString() + (loadDtd ? " (loading mapped DTDs)" : ""));
            XmlParseOptions options;
            options.loadMappedDtd = loadDtd;
            const XmlDocument doc =
                XmlDocument::Parse("<!DOCTYPE rss " + attack.doctype + "><rss><channel><title>" +
                                       attack.title + "</title></channel></rss>",
                                   nullptr, options);
            const char16_t* title = loadDtd ? attack.withDtd : attack.withoutDtd;
            EXPECT_TRUE(!title || !doc.IsNull());
            if (!doc.IsNull()) {
                EXPECT_EQ(doc.DocumentElement().SelectSingleNode(u"channel/title"_s).Text(),
                          QString::fromUtf16(title ? title : u"Caf!"));
                EXPECT_FALSE(doc.ToBytes().contains("PWNED"));
                EXPECT_FALSE(doc.ToBytes().contains("TOPSECRET"));
            }
        }
    }
    EXPECT_FALSE(server.waitForNewConnection(0));
    EXPECT_FALSE(server.hasPendingConnections());
}

TEST(XmlSecurityTest, BillionLaughsIsRefusedQuickly) {
    QByteArray doc = "<!DOCTYPE lolz [<!ENTITY lol \"lol\">";
    QByteArray previous = "lol";
    for (int i = 1; i <= 9; ++i) {
        const QByteArray name = "lol" + QByteArray::number(i);
        doc += "<!ENTITY " + name + " \"" + QByteArray("&" + previous + ";").repeated(10) + "\">";
        previous = name;
    }
    doc += "]><lolz>&" + previous + ";</lolz>";
    QString error;
    EXPECT_TRUE(XmlDocument::Parse(doc, &error).IsNull());
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
    const XsltStylesheet style = XsltStylesheet::Compile(ParseOk(sheetText.constData()));
    ASSERT_FALSE(style.IsNull());
    const XmlDocument out = style.TransformToDocument(ParseOk("<r/>"));
    EXPECT_FALSE(QFile::exists(target));
    if (!out.IsNull()) {
        EXPECT_FALSE(out.ToBytes().contains("TOPSECRET"));
    }
}
