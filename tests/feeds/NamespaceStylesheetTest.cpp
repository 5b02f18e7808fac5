// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
// The namespace stylesheet (tamselns.xsl): every feed dialect comes out in the RSS 2.0 shape that
// the channel walks, with RFC 822 item dates that the channel's date reader understands. Also the
// decoding of feeds in legacy encodings and the entities of RSS 0.91 documents.
#include "platform/Paths.h"
#include "platform/XmlDocument.h"
#include "platform/XmlNode.h"
#include "platform/XmlSecurity.h"
#include "platform/XsltStylesheet.h"

#include <QDate>
#include <QDateTime>
#include <QFile>
#include <QHostAddress>
#include <QLocale>
#include <QRegularExpression>
#include <QSet>
#include <QStringEncoder>
#include <QTcpServer>
#include <QTemporaryDir>
#include <QUrl>
#include <cstdarg>
#include <gtest/gtest.h>
#include <libxml/tree.h>
#include <libxslt/transform.h>
#include <libxslt/xsltInternals.h>
#include <libxslt/xsltutils.h>
#include <memory>
#include <ostream>

using namespace Qt::StringLiterals;

// Readable failure messages.
static void PrintTo(const QString& text, std::ostream* os) {
    *os << '"' << text.toStdString() << '"';
}

namespace {

QString ResourceFolder() {
    return Paths::FromEnvironment().ResourceFolder();
}

QString StylesheetPath() {
    return ResourceFolder() + u"/tamselns.xsl"_s;
}

const XsltStylesheet& Stylesheet() {
    static const XsltStylesheet style = XsltStylesheet::Load(StylesheetPath());
    return style;
}

QByteArray ReadFeed(const QString& name) {
    QFile file(QStringLiteral(TAMSEL_TEST_DATA_DIR) + u'/' + name);
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
    if (feed.IsNull()) {
        return XmlDocument::Adopt(nullptr);
    }
    XmlDocument result = Stylesheet().TransformToDocument(feed, &error);
    EXPECT_FALSE(result.IsNull()) << error.toStdString();
    return result;
}

XmlNode Channel(const XmlDocument& doc) {
    return doc.DocumentElement().SelectSingleNode(u"/rss/channel"_s);
}

std::vector<XmlNode> Items(const XmlDocument& doc) {
    return doc.DocumentElement().SelectNodes(u"/rss/channel/item"_s);
}

QString ItemText(XmlNode item, const QString& path) {
    return item.SelectSingleNode(path).Text();
}

// One element as a line: name, [attributes], and "=text", or {children} for elements that hold
// elements.
QString Describe(XmlNode node) {
    QString line = node.Name();
    QStringList attributes;
    for (xmlAttr* attribute = node.Raw()->properties; attribute; attribute = attribute->next) {
        const QString name = QString::fromUtf8(reinterpret_cast<const char*>(attribute->name));
        attributes << name + u'=' + node.Attribute(name);
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
    return node.HasChildNodes() ? line + u'=' + node.Text() : line;
}

QStringList DescribeChildren(XmlNode parent, bool skipItems) {
    QStringList lines;
    for (const XmlNode& child : parent.ChildNodes()) {
        if (child.IsElement() && !(skipItems && child.Name() == u"item"_s)) {
            lines << Describe(child);
        }
    }
    return lines;
}

// The channel's walk over the normalised feed, reduced to what concerns the stylesheet: the first
// child's text of each channel field (a later one overwrites an earlier one), no descent into
// "item", "image" or the fields themselves, and for each item the channel title and date as they
// stand when the walk reaches it.
struct Walk {
    QMap<QString, QString> fields;
    QStringList itemStamps;
};

void WalkNode(XmlNode node, Walk& walk) {
    static const QStringList kChannelKeys = {
        u"title"_s,          u"link"_s,      u"description"_s, u"language"_s,      u"copyright"_s,
        u"managingeditor"_s, u"webmaster"_s, u"pubdate"_s,     u"lastbuilddate"_s, u"category"_s,
        u"generator"_s,      u"docs"_s,      u"ttl"_s,         u"rating"_s};
    if (!node.HasChildNodes()) {
        return;
    }
    const QString key = node.Name().toLower();
    if (kChannelKeys.contains(key)) {
        walk.fields.insert(key, node.FirstChild().Text());
    } else if (key == u"image"_s) {
        return;
    } else if (key == u"item"_s) {
        walk.itemStamps << walk.fields.value(u"title"_s) + u" | "_s + walk.fields.value(u"pubdate"_s);
    } else {
        for (const XmlNode& child : node.ChildNodes()) {
            WalkNode(child, walk);
        }
    }
}

Walk WalkFeed(const XmlDocument& doc) {
    Walk walk;
    WalkNode(doc.DocumentElement(), walk);
    return walk;
}

// The channel's date reader: the 21 characters from the fifth, else all but the first four and
// the last four, read as "dd MMM yyyy hh:mm:ss".
QDateTime ReadLikeTheChannel(const QString& text) {
    const QString format = u"dd MMM yyyy HH:mm:ss"_s;
    QDateTime read = QLocale::c().toDateTime(text.mid(4, 21).trimmed(), format);
    if (!read.isValid() && text.size() >= 8) {
        read = QLocale::c().toDateTime(text.mid(4, text.size() - 8).trimmed(), format);
    }
    return read;
}

QByteArray AtomFeed(const QByteArray& entries, const QByteArray& feedAttributes = {}) {
    return "<feed xmlns=\"http://www.w3.org/2005/Atom\"" + feedAttributes + "><title>Test</title>" + entries +
           "</feed>";
}

QByteArray Rss2Feed(const QByteArray& channelContent) {
    return "<rss version=\"2.0\"><channel><title>Test</title>" + channelContent + "</channel></rss>";
}

// libxslt's messages while a scope lives; the previous handler comes back afterwards.
class XsltMessages final {
public:
    XsltMessages() : m_previous(xsltGenericError), m_previousContext(xsltGenericErrorContext) {
        xsltSetGenericErrorFunc(this, &XsltMessages::Collect);
    }
    ~XsltMessages() { xsltSetGenericErrorFunc(m_previousContext, m_previous); }
    XsltMessages(const XsltMessages&) = delete;
    XsltMessages& operator=(const XsltMessages&) = delete;
    QString Text() const { return m_text; }

private:
    static void Collect(void* context, const char* format, ...) {
        va_list args;
        va_start(args, format);
        static_cast<XsltMessages*>(context)->m_text += QString::vasprintf(format, args);
        va_end(args);
    }

    xmlGenericErrorFunc m_previous;
    void* m_previousContext;
    QString m_text;
};

const QStringList kDialectFiles = {u"dialect-rss090.xml"_s, u"dialect-rss091.xml"_s, u"dialect-rss092.xml"_s,
                                   u"dialect-rss093.xml"_s, u"dialect-rss094.xml"_s, u"dialect-rss20.xml"_s,
                                   u"dialect-rss10.xml"_s,  u"dialect-atom03.xml"_s, u"dialect-atom10.xml"_s};

} // namespace

TEST(NamespaceStylesheetTest, CompilesAndTransformsEveryDialectWithoutAMessage) {
    QString error;
    ASSERT_FALSE(XsltStylesheet::Load(StylesheetPath(), &error).IsNull()) << error.toStdString();

    const XmlDocument source = XmlDocument::Load(StylesheetPath(), &error);
    ASSERT_FALSE(source.IsNull()) << error.toStdString();
    XsltMessages messages;
    std::unique_ptr<xsltStylesheet, decltype(&xsltFreeStylesheet)> style(
        xsltParseStylesheetDoc(xmlCopyDoc(source.Raw(), 1)), &xsltFreeStylesheet);
    ASSERT_NE(style, nullptr);
    EXPECT_EQ(style->errors, 0);
    EXPECT_EQ(style->warnings, 0);
    for (const QString& file : kDialectFiles) {
        const XmlDocument feed = ParseFeed(ReadFeed(file));
        ASSERT_FALSE(feed.IsNull()) << file.toStdString();
        xmlDoc* result = xsltApplyStylesheet(style.get(), feed.Raw(), nullptr);
        EXPECT_NE(result, nullptr) << file.toStdString();
        xmlFreeDoc(result);
    }
    EXPECT_EQ(messages.Text().toStdString(), "");
}

// ---------------------------------------------------------------------------------------------
// Every dialect, field by field.

namespace {

struct DialectCase {
    QString file;
    QStringList channel; // the channel's children other than items, in order
    QList<QStringList> items;
};

void PrintTo(const DialectCase& c, std::ostream* os) {
    *os << c.file.toStdString();
}

class StylesheetDialectTest : public ::testing::TestWithParam<DialectCase> {};

} // namespace

TEST_P(StylesheetDialectTest, BecomesRss2WithEveryFieldMapped) {
    const DialectCase& expected = GetParam();
    const XmlDocument doc = Normalise(ReadFeed(expected.file));
    ASSERT_FALSE(doc.IsNull());
    const XmlNode root = doc.DocumentElement();
    EXPECT_EQ(root.Name(), u"rss"_s);
    EXPECT_EQ(root.Attribute(u"version"_s), u"2.0"_s);
    ASSERT_EQ(root.ChildNodes().size(), 1u);
    EXPECT_EQ(DescribeChildren(Channel(doc), true), expected.channel);

    const std::vector<XmlNode> items = Items(doc);
    ASSERT_EQ(items.size(), size_t(expected.items.size()));
    for (size_t i = 0; i < items.size(); ++i) {
        EXPECT_EQ(DescribeChildren(items[i], false), expected.items[int(i)]) << "item " << i;
        // The walk and the item bank read a description's text from its first child.
        const XmlNode description = items[i].SelectSingleNode(u"description"_s);
        if (!description.IsNull()) {
            EXPECT_EQ(description.ChildNodes().size(), 1u) << "item " << i;
        }
    }
    // No item precedes a channel field: the walk stamps items with the fields seen so far.
    const QStringList channelNames = [&] {
        QStringList names;
        for (const XmlNode& child : Channel(doc).ChildNodes()) {
            names << child.Name();
        }
        return names;
    }();
    EXPECT_EQ(channelNames.lastIndexOf(QRegularExpression(u"^(?!item$).*"_s)),
              int(channelNames.size() - items.size()) - 1);
}

namespace {

const QString kRss091Title = u"Mossgrove Library \u2014 Reading Room"_s;

} // namespace

INSTANTIATE_TEST_SUITE_P(
    AllDialects, StylesheetDialectTest,
    ::testing::Values(
        DialectCase{u"dialect-rss090.xml"_s,
                    {u"title=Harbourlight Gazette"_s, u"link=http://news.harbourlight.example/"_s,
                     u"description=Tide tables, ferry news and the harbour master's notes"_s,
                     u"image{url=http://news.harbourlight.example/images/masthead.gif; title=Harbourlight "
                     u"Gazette masthead; "
                     u"link=http://news.harbourlight.example/}"_s},
                    {{u"title=Ferry timetable changes for the winter"_s,
                      u"link=http://news.harbourlight.example/1999/ferry-winter.html"_s},
                     {u"title=New pontoon opens at the east quay"_s,
                      u"link=http://news.harbourlight.example/1999/east-quay.html"_s}}},
        DialectCase{
            u"dialect-rss091.xml"_s,
            {u"title="_s + kRss091Title, u"link=http://library.mossgrove.example/"_s,
             u"description=Events at the Caf\u00e9 and new arrivals, every\u00a0week"_s, u"language=en-gb"_s,
             u"copyright=Copyright \u00a9 2001 Mossgrove Library Trust"_s,
             u"managingEditor=editor@library.mossgrove.example"_s,
             u"webMaster=webmaster@library.mossgrove.example"_s,
             u"rating=(PICS-1.1 \"http://ratings.mossgrove.example/v1\" l r (all 0))"_s,
             u"pubDate=Mon, 05 Mar 2001 09:00:00 GMT"_s, u"lastBuildDate=Mon, 05 Mar 2001 09:30:00 GMT"_s,
             u"docs=http://library.mossgrove.example/about/rss.html"_s,
             u"image{title=Mossgrove Library; url=http://library.mossgrove.example/img/badge.gif; "
             u"link=http://library.mossgrove.example/; width=88; height=31}"_s,
             u"skipHours{hour=2; hour=3}"_s, u"skipDays{day=Sunday}"_s},
            {{u"title=Author evening: Zo\u00eb Br\u00fcnn on \u201cTidewater\u201d"_s,
              u"link=http://library.mossgrove.example/events/bruenn.html"_s,
              u"description=Join us at 7\u00a0pm \u2026 tickets \u00a33 or \u20ac4 \u2013 \u00bd price for members"_s},
             {u"title=Science shelf: \u03b1, \u03b2 and \u03b3 rays explained"_s,
              u"link=http://library.mossgrove.example/new/rays.html"_s,
              u"description=Our Physics\u2122 corner grew \u2192 see the list \u00a74 & more"_s}}},
        DialectCase{
            u"dialect-rss092.xml"_s,
            {u"title=Tinderbox Robotics Club"_s, u"link=http://tinderbox-robotics.example/"_s,
             u"description=Build logs and meeting notes of the Tinderbox Robotics Club."_s,
             u"language=en-us"_s, u"lastBuildDate=Thu, 14 Nov 2002 21:10:00 EST"_s,
             u"docs=http://tinderbox-robotics.example/feeds.html"_s,
             u"cloud[domain=rpc.tinderbox-robotics.example port=80 path=/RPC2 registerProcedure=pleaseNotify "
             u"protocol=xml-rpc]"_s},
            {{u"title=Line follower, take two"_s,
              u"description=We swapped the <b>IR sensors</b> for a camera. "
              u"<a href=\"http://tinderbox-robotics.example/log/17\">Full log</a>"_s,
              u"link=http://tinderbox-robotics.example/log/17"_s,
              u"category[domain=http://tinderbox-robotics.example/topics]=Sensors"_s,
              u"source[url=http://tinderbox-robotics.example/members/ines.xml]=Ines's build notes"_s,
              u"enclosure[url=http://tinderbox-robotics.example/media/run17.mpg length=2314752 type=video/mpeg]"_s},
             {u"description=Meeting moved to the workshop on Saturday; bring your soldering irons."_s}}},
        DialectCase{
            u"dialect-rss093.xml"_s,
            {u"title=Pelican Ridge Observatory"_s, u"link=http://pelicanridge-obs.example/"_s,
             u"description=Observing nights, sky notes and open-house dates."_s, u"language=en"_s,
             u"pubDate=Fri, 07 Mar 2003 18:00:00 GMT"_s},
            {{u"title=Open house: the Moon at first quarter"_s,
              u"link=http://pelicanridge-obs.example/events/2003-03-10.html"_s,
              u"description=Telescopes open from dusk; dress warmly."_s,
              u"pubDate=Fri, 07 Mar 2003 17:45:00 GMT"_s, u"expirationDate=Tue, 11 Mar 2003 06:00:00 GMT"_s,
              u"enclosure[url=http://pelicanridge-obs.example/maps/moon.pdf length=48211 type=application/pdf]"_s},
             {u"title=Mirror re-coating finished"_s,
              u"link=http://pelicanridge-obs.example/news/mirror.html"_s,
              u"description=The 40 cm reflector is back in service."_s,
              // "Sat, 1 Feb 2003" gains its leading zero, so that the reader's 21 characters fit.
              u"pubDate=Sat, 01 Feb 2003 10:00:00 GMT"_s}}},
        DialectCase{
            u"dialect-rss094.xml"_s,
            {u"title=Quillfeather Press"_s, u"link=http://www.quillfeather-press.example/"_s,
             u"description=New titles and author interviews from a small independent publisher."_s,
             u"language=en-ca"_s, u"copyright=2003 Quillfeather Press"_s, u"category=Books"_s,
             u"generator=Quill CMS 2.1"_s, u"ttl=120"_s},
            {{u"title=Spring catalogue is out"_s,
              u"link=http://www.quillfeather-press.example/catalogue/spring-2003"_s,
              u"description=Twelve new titles, including two first novels."_s,
              u"author=publicity@quillfeather-press.example (Mara Lindqvist)"_s, u"category=Catalogue"_s,
              u"comments=http://www.quillfeather-press.example/catalogue/spring-2003#comments"_s,
              u"guid[isPermaLink=true]=http://www.quillfeather-press.example/catalogue/spring-2003"_s,
              u"pubDate=Mon, 31 Mar 2003 08:00:00 -0500"_s},
             {u"title=Interview with Oren Castell"_s,
              u"link=http://www.quillfeather-press.example/interviews/castell"_s,
              u"description=On maps, memory and writing in a second language."_s,
              u"guid[isPermaLink=false]=quillfeather-2003-0412"_s,
              u"pubDate=Sat, 12 Apr 2003 14:30:00 -0500"_s}}},
        DialectCase{
            u"dialect-rss20.xml"_s,
            {u"title=Larchmere Cycling Collective"_s, u"link=https://larchmere-cycling.example/"_s,
             u"description=Rides, repairs and route notes from the Larchmere valley."_s,
             u"atom:link[rel=self type=application/rss+xml href=https://larchmere-cycling.example/feed.rss]"_s,
             u"language=en-ie"_s, u"copyright=2005 Larchmere Cycling Collective"_s,
             u"dc:rights=All rights reserved by the riders"_s,
             u"managingEditor=rides@larchmere-cycling.example (Niamh Devlin)"_s,
             u"webMaster=admin@larchmere-cycling.example (Site admin)"_s,
             u"pubDate=Tue, 15 Nov 2005 13:45:00 GMT"_s,
             u"category[domain=http://larchmere-cycling.example/sections]=Clubs"_s,
             u"generator=Spokeword 1.3"_s, u"docs=https://larchmere-cycling.example/help/feeds"_s,
             u"ttl=60"_s,
             u"image{url=https://larchmere-cycling.example/logo.png; title=Larchmere CC logo; "
             u"link=https://larchmere-cycling.example/}"_s,
             // Written after the items in the feed; moved before them. The text input is gone.
             u"lastBuildDate=Wed, 16 Nov 2005 08:00:00 GMT"_s},
            {{u"title=Sunday loop: Larchmere to Carrowbeg"_s,
              u"link=https://larchmere-cycling.example/rides/carrowbeg"_s,
              u"description=A 60 km loop with <b>one</b> proper climb."_s,
              u"content:encoded=<p>A 60&nbsp;km loop with <b>one</b> proper climb and a caf&eacute; stop.</p>"_s,
              u"author=rides@larchmere-cycling.example (Niamh Devlin)"_s, u"category=Rides"_s,
              u"category[domain=http://larchmere-cycling.example/levels]=Intermediate"_s,
              u"comments=https://larchmere-cycling.example/rides/carrowbeg#talk"_s,
              u"enclosure[url=https://larchmere-cycling.example/gpx/carrowbeg.gpx length=88213 "
              u"type=application/gpx+xml]"_s,
              u"guid=https://larchmere-cycling.example/rides/carrowbeg"_s,
              u"pubDate=Tue, 15 Nov 2005 13:45:00 GMT"_s,
              u"media:thumbnail[url=https://larchmere-cycling.example/img/carrowbeg-thumb.jpg width=120 height=80]"_s},
             {u"title=Puncture clinic this Thursday"_s,
              u"link=https://larchmere-cycling.example/workshop/punctures"_s,
              u"description=<p>Bring your own tube &amp; levers.</p><p>Tea provided.</p>"_s,
              u"dc:creator=Cathal Brennan"_s, u"dc:subject=Workshop"_s,
              u"dc:date=2006-06-21T06:30:00+02:00"_s, u"guid[isPermaLink=false]=larchmere-workshop-0621"_s,
              u"pubDate=Wed, 21 Jun 2006 06:30:00 +0200"_s, u"author=Cathal Brennan"_s,
              u"category=Workshop"_s},
             {u"title=Leap-day time trial results"_s,
              u"link=https://larchmere-cycling.example/results/2008-tt"_s,
              u"description=Fastest lap: 11:42."_s, u"pubDate=Fri, 29 Feb 2008 18:05:00 -0500"_s},
             {u"title=Independence Day ride with our Boston friends"_s,
              u"link=https://larchmere-cycling.example/rides/boston"_s,
              u"description=Guests from across the water."_s, u"pubDate=Fri, 04 Jul 2008 07:15:00 EDT"_s},
             {u"title=Old notice with a strange date"_s,
              u"link=https://larchmere-cycling.example/notices/old"_s,
              u"description=<p>Kept for the archive.</p>"_s, u"pubDate=sometime last week"_s}}},
        DialectCase{
            u"dialect-rss10.xml"_s,
            {u"title=Fernhollow Seed Exchange"_s, u"link=http://fernhollow-seeds.example/"_s,
             u"description=Swaps, sowing calendars and growers' notes."_s, u"language=en-au"_s,
             u"copyright=CC BY-SA, Fernhollow growers"_s, u"managingEditor=Priya Okonjo"_s,
             u"webMaster=feeds@fernhollow-seeds.example"_s, u"pubDate=Wed, 01 Sep 2004 07:00:00 +1000"_s,
             u"category=Gardening"_s, u"generator=http://fernhollow-seeds.example/tools/sprout-1.4"_s,
             u"ttl=30"_s,
             u"image{url=http://fernhollow-seeds.example/img/logo.png; title=Fernhollow; "
             u"link=http://fernhollow-seeds.example/}"_s},
            {{u"title=Heirloom tomato swap"_s,
              u"link=http://fernhollow-seeds.example/swaps/2004/heirloom-tomatoes"_s,
              u"description=<p>Bring <em>labelled</em> seeds &amp; take seeds.</p>"_s,
              u"guid[isPermaLink=true]=http://fernhollow-seeds.example/swaps/2004/heirloom-tomatoes"_s,
              u"pubDate=Tue, 31 Aug 2004 19:30:00 +1000"_s, u"author=Priya Okonjo"_s, u"category=Tomatoes"_s,
              u"category=Events"_s, u"slash:comments=7"_s},
             {u"title=Sowing calendar: spring"_s, u"link=http://fernhollow-seeds.example/calendar/spring"_s,
              u"description=<p>Sow <strong>peas</strong> now.<br />Beans after the last frost.</p>"_s,
              u"guid[isPermaLink=false]=urn:fernhollow:notes:2004-0830"_s,
              u"pubDate=Mon, 30 Aug 2004 00:00:00 GMT"_s,
              u"enclosure[url=http://fernhollow-seeds.example/calendar/spring.pdf length=90210 type=application/pdf]"_s},
             {u"title=Frost warning for the valley"_s, u"link=http://fernhollow-seeds.example/notes/frost"_s,
              u"description=Cover seedlings tonight."_s,
              u"guid[isPermaLink=true]=http://fernhollow-seeds.example/notes/frost"_s,
              u"pubDate=Tue, 24 Aug 2004 16:00:00 +1000"_s}}},
        DialectCase{
            u"dialect-atom03.xml"_s,
            {u"title=Wrenfield Parish Bulletin"_s, u"link=http://wrenfield-parish.example/"_s,
             u"description=News from the village hall, the church and the playing field"_s,
             u"language=en-GB"_s, u"copyright=(c) 2004 Wrenfield Parish Council"_s,
             u"managingEditor=clerk@wrenfield-parish.example (Wrenfield Parish Council)"_s,
             u"pubDate=Sun, 03 Oct 2004 20:15:00 GMT"_s, u"lastBuildDate=Sun, 03 Oct 2004 20:15:00 GMT"_s,
             u"generator=Hallnotes 0.9"_s},
            {{u"title=Harvest supper tickets"_s,
              u"link=http://wrenfield-parish.example/2004/10/harvest-supper"_s,
              u"description=<p>Tickets &pound;8 from the shop.</p>"_s,
              u"guid[isPermaLink=false]=tag:wrenfield-parish.example,2004:harvest-supper"_s,
              u"pubDate=Sun, 03 Oct 2004 19:00:00 +0100"_s,
              u"author=clerk@wrenfield-parish.example (Wrenfield Parish Council)"_s, u"category=Events"_s},
             {u"title=Playing field drainage"_s, u"link=http://wrenfield-parish.example/2004/09/drainage"_s,
              u"description=<p>Work starts <em>Monday</em>; the east gate stays shut.</p>"_s,
              u"guid[isPermaLink=false]=tag:wrenfield-parish.example,2004:drainage"_s,
              u"pubDate=Tue, 28 Sep 2004 09:00:00 GMT"_s, u"author=Tom Ashby"_s},
             {u"title=Bell ringing practice"_s, u"link=http://wrenfield-parish.example/2004/09/bells"_s,
              u"description=<p>Practice moves to <b>7 &amp; 8 pm</b>.</p>"_s,
              u"guid[isPermaLink=false]=tag:wrenfield-parish.example,2004:bells"_s,
              u"pubDate=Mon, 20 Sep 2004 18:30:00 GMT"_s,
              u"author=clerk@wrenfield-parish.example (Wrenfield Parish Council)"_s},
             {u"title=Lost: one tabby cat"_s, u"link=http://wrenfield-parish.example/2004/09/cat"_s,
              u"description=Answers to \"Biscuit\" &amp; likes &lt;tuna&gt;."_s,
              u"guid[isPermaLink=false]=tag:wrenfield-parish.example,2004:cat"_s,
              u"pubDate=Wed, 15 Sep 2004 08:00:00 GMT"_s,
              u"author=clerk@wrenfield-parish.example (Wrenfield Parish Council)"_s}}},
        DialectCase{
            u"dialect-atom10.xml"_s,
            {u"title=Sablecrest Software Journal"_s, u"link=https://journal.sablecrest.example/"_s,
             u"description=Notes on compilers, tools & craft"_s, u"language=en-NZ"_s,
             u"copyright=\u00a9 2012 Sablecrest Ltd"_s,
             u"managingEditor=hana@sablecrest.example (Hana Whitcombe)"_s,
             u"pubDate=Wed, 29 Feb 2012 23:59:59 +1300"_s, u"lastBuildDate=Wed, 29 Feb 2012 23:59:59 +1300"_s,
             u"category[domain=https://journal.sablecrest.example/topics]=programming"_s,
             u"generator=Inkwell 3.2"_s,
             u"image{url=https://journal.sablecrest.example/images/logo.png; title=Sablecrest Software "
             u"Journal; "
             u"link=https://journal.sablecrest.example/}"_s},
            {{u"title=Parsing <templates> without tears"_s,
              u"link=https://journal.sablecrest.example/posts/2012/parsing-templates.html"_s,
              u"description=<p>Templates look <em>simple</em> &amp; aren't.</p><pre>if (a &lt; b) { x = "
              u"\"y\"; }</pre>"
              u"<p><img src=\"https://journal.sablecrest.example/posts/2012/img/parser.png\" "
              u"alt=\"A parser &quot;diagram&quot;\" /><br /><a "
              u"href=\"https://journal.sablecrest.example/archive\">"
              u"Archive</a></p>"_s,
              u"guid[isPermaLink=false]=tag:sablecrest.example,2012:parsing-templates"_s,
              u"pubDate=Tue, 28 Feb 2012 09:15:00 +1300"_s, u"author=Hana Whitcombe"_s,
              u"author=luca@sablecrest.example (Luca Ferreira)"_s, u"category=parsing"_s,
              u"category[domain=https://journal.sablecrest.example/tags]=templates"_s,
              u"enclosure[url=https://journal.sablecrest.example/media/parsing.mp3 length=5242880 type=audio/mpeg]"_s,
              u"enclosure[url=https://cdn.sablecrest.example/slides/parsing.pdf type=application/pdf]"_s,
              u"comments=https://journal.sablecrest.example/posts/2012/parsing-templates.html#comments"_s,
              u"thr:total=4"_s},
             {u"title=Release 3.2"_s, u"link=https://journal.sablecrest.example/releases/3.2"_s,
              u"description=<p>Faster builds &amp; a <a "
              u"href=\"https://journal.sablecrest.example/changelog\">"
              u"changelog</a>.</p>"_s,
              u"guid[isPermaLink=true]=https://journal.sablecrest.example/releases/3.2"_s,
              u"pubDate=Sat, 31 Dec 2011 10:00:00 GMT"_s,
              u"author=hana@sablecrest.example (Hana Whitcombe)"_s,
              u"media:thumbnail[url=https://journal.sablecrest.example/releases/3.2.png width=120 height=90]"_s},
             {u"title=Plain text notes: a < b"_s, u"link=https://journal.sablecrest.example/notes/a-lt-b"_s,
              u"description=Use a &lt; b &amp;&amp; b &gt; c\non two lines."_s,
              u"guid[isPermaLink=false]=tag:sablecrest.example,2000:notes-leap"_s,
              u"pubDate=Tue, 29 Feb 2000 12:00:00 -0330"_s, u"author=Ira Quon"_s},
             {u"title=Video: build farm tour"_s, u"link=https://video.sablecrest.example/tour"_s,
              u"description=Ten minutes among the build machines."_s,
              u"guid[isPermaLink=false]=tag:sablecrest.example,2100:tour"_s,
              u"pubDate=Mon, 01 Mar 2100 00:00:00 GMT"_s,
              u"author=hana@sablecrest.example (Hana Whitcombe)"_s}}}),
    [](const ::testing::TestParamInfo<DialectCase>& info) {
        return info.param.file.section(u'.', 0, 0).remove(u'-').toStdString();
    });

TEST(NamespaceStylesheetTest, TheWalkSeesTheChannelFieldsAndReadsEveryItemDate) {
    for (const QString& file : kDialectFiles) {
        SCOPED_TRACE(file.toStdString());
        const XmlDocument doc = Normalise(ReadFeed(file));
        ASSERT_FALSE(doc.IsNull());
        const Walk walk = WalkFeed(doc);
        // Nothing later in the document (image, text input, extensions) overwrites the channel's own fields.
        for (const QString& field : {u"title"_s, u"link"_s, u"description"_s}) {
            EXPECT_EQ(walk.fields.value(field), ItemText(Channel(doc), field)) << field.toStdString();
        }
        ASSERT_EQ(walk.itemStamps.size(), qsizetype(Items(doc).size()));
        for (const QString& stamp : walk.itemStamps) {
            EXPECT_TRUE(stamp.startsWith(ItemText(Channel(doc), u"title"_s) + u" | "_s))
                << stamp.toStdString();
        }
        for (const XmlNode& item : Items(doc)) {
            const QString date = ItemText(item, u"pubDate"_s);
            if (date.isEmpty() || date == u"sometime last week"_s) {
                continue;
            }
            const QDateTime read = ReadLikeTheChannel(date);
            ASSERT_TRUE(read.isValid()) << date.toStdString();
            EXPECT_EQ(QLocale::c().dayName(read.date().dayOfWeek(), QLocale::ShortFormat), date.left(3));
            EXPECT_EQ(QLocale::c().toString(read, u"dd MMM yyyy HH:mm:ss"_s), date.mid(5, 20));
        }
    }
}

TEST(NamespaceStylesheetTest, TheTextInputNeverBecomesTheChannelTitle) {
    for (const QString& file :
         {u"dialect-rss090.xml"_s, u"dialect-rss091.xml"_s, u"dialect-rss20.xml"_s, u"dialect-rss10.xml"_s}) {
        const XmlDocument doc = Normalise(ReadFeed(file));
        ASSERT_FALSE(doc.IsNull());
        EXPECT_TRUE(doc.DocumentElement().SelectNodes(u"//textInput | //textinput"_s).empty())
            << file.toStdString();
        EXPECT_FALSE(WalkFeed(doc).fields.value(u"title"_s).contains(u"Search"_s, Qt::CaseInsensitive))
            << file.toStdString();
    }
}

// ---------------------------------------------------------------------------------------------
// Dates.

namespace {

struct DateCase {
    const char* input;
    const char* expected; // empty: the date cannot be read
};

void PrintTo(const DateCase& c, std::ostream* os) {
    *os << '"' << c.input << "\" -> \"" << c.expected << '"';
}

class StylesheetW3cDateTest : public ::testing::TestWithParam<DateCase> {};
class StylesheetRfc822DateTest : public ::testing::TestWithParam<DateCase> {};

} // namespace

TEST_P(StylesheetW3cDateTest, BecomesRfc822WithItsWeekday) {
    const DateCase& date = GetParam();
    const XmlDocument doc = Normalise(AtomFeed(QByteArray("<entry><id>e</id><title>t</title><published>") +
                                               date.input + "</published></entry>"));
    ASSERT_FALSE(doc.IsNull());
    ASSERT_EQ(Items(doc).size(), 1u);
    const XmlNode pubDate = Items(doc)[0].SelectSingleNode(u"pubDate"_s);
    if (*date.expected == '\0') {
        EXPECT_TRUE(pubDate.IsNull()) << pubDate.Text().toStdString();
    } else {
        EXPECT_EQ(pubDate.Text().toStdString(), date.expected);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Dates, StylesheetW3cDateTest,
    ::testing::Values(DateCase{"2005-11-15T13:45:00Z", "Tue, 15 Nov 2005 13:45:00 GMT"},
                      DateCase{"2000-02-29", "Tue, 29 Feb 2000 00:00:00 GMT"},
                      DateCase{"2100-03-01T08:00:00+01:00", "Mon, 01 Mar 2100 08:00:00 +0100"},
                      DateCase{"1900-03-01T00:00Z", "Thu, 01 Mar 1900 00:00:00 GMT"},
                      DateCase{"2000-03-01T00:00:00-00:00", "Wed, 01 Mar 2000 00:00:00 -0000"},
                      DateCase{"1999-12-31T23:59:60Z", "Fri, 31 Dec 1999 23:59:60 GMT"},
                      DateCase{"2004-12", "Wed, 01 Dec 2004 00:00:00 GMT"},
                      DateCase{"1999", "Fri, 01 Jan 1999 00:00:00 GMT"},
                      DateCase{"2012-02-29T23:59:59.987654-08:00", "Wed, 29 Feb 2012 23:59:59 -0800"},
                      DateCase{"2024-02-29t07:05:09z", "Thu, 29 Feb 2024 07:05:09 GMT"},
                      DateCase{"2024-02-29 07:05:09+0530", "Thu, 29 Feb 2024 07:05:09 +0530"},
                      DateCase{"2024-03-31T02:30:00+05", "Sun, 31 Mar 2024 02:30:00 +0500"},
                      DateCase{"2023-06-15T10:20", "Thu, 15 Jun 2023 10:20:00 GMT"},
                      DateCase{"  2023-06-15T10:20:30,5Z ", "Thu, 15 Jun 2023 10:20:30 GMT"},
                      DateCase{"Tue, 15 Nov 2005 13:45:00 GMT", "Tue, 15 Nov 2005 13:45:00 GMT"},
                      DateCase{"2100-02-29", ""}, DateCase{"1900-02-29", ""}, DateCase{"2023-02-29", ""},
                      DateCase{"2005-13-01", ""}, DateCase{"2005-00-10", ""}, DateCase{"2005-04-31", ""},
                      DateCase{"2005-11-00", ""}, DateCase{"0000-01-01", ""},
                      DateCase{"2005-11-15T24:00:00Z", ""}, DateCase{"2005-11-15T13:60:00Z", ""},
                      DateCase{"2005-11-15T13:45:61Z", ""}, DateCase{"2005-11-15T13:45:00+1:00", ""},
                      DateCase{"2005-11-15T13:45:00ZZ", ""}, DateCase{"2005-11-15T13:45:00 CET", ""},
                      DateCase{"2005-11-15T", ""}, DateCase{"20051115", ""}, DateCase{"2005-1-5", ""},
                      DateCase{"2005-11-15X13:45:00Z", ""}, DateCase{"yesterday", ""}, DateCase{"", ""}));

TEST_P(StylesheetRfc822DateTest, IsCompletedWithItsWeekdayOrKeptAsItIs) {
    const DateCase& date = GetParam();
    const QByteArray input(date.input);
    const XmlDocument doc =
        Normalise(Rss2Feed("<lastBuildDate>" + input + "</lastBuildDate><item><title>t</title><pubDate>" +
                           input + "</pubDate></item>"));
    ASSERT_FALSE(doc.IsNull());
    ASSERT_EQ(Items(doc).size(), 1u);
    const std::string expected =
        *date.expected == '\0' ? QString::fromUtf8(input).toStdString() : date.expected;
    EXPECT_EQ(ItemText(Items(doc)[0], u"pubDate"_s).toStdString(), expected);
    EXPECT_EQ(ItemText(Channel(doc), u"lastBuildDate"_s).toStdString(), expected);
}

INSTANTIATE_TEST_SUITE_P(
    Dates, StylesheetRfc822DateTest,
    ::testing::Values(DateCase{"Tue, 15 Nov 2005 13:45:00 GMT", "Tue, 15 Nov 2005 13:45:00 GMT"},
                      DateCase{"Mon, 15 Nov 2005 13:45:00 GMT", "Tue, 15 Nov 2005 13:45:00 GMT"},
                      DateCase{"15 Nov 2005 13:45:00 GMT", "Tue, 15 Nov 2005 13:45:00 GMT"},
                      DateCase{"Sat, 5 Nov 2005 1:05 +0100", "Sat, 05 Nov 2005 01:05:00 +0100"},
                      DateCase{"Tuesday, 15 November 2005 13:45:00 est", "Tue, 15 Nov 2005 13:45:00 EST"},
                      DateCase{"Tue, 15 Nov 05 13:45:00 GMT", "Tue, 15 Nov 2005 13:45:00 GMT"},
                      DateCase{"Wed, 01 Mar 00 00:00:00 GMT", "Wed, 01 Mar 2000 00:00:00 GMT"},
                      DateCase{"Fri, 31 Dec 99 23:59:59 GMT", "Fri, 31 Dec 1999 23:59:59 GMT"},
                      DateCase{"Tue,15 Nov 2005 13:45:00 GMT", "Tue, 15 Nov 2005 13:45:00 GMT"},
                      DateCase{"Tue, 15 Nov 2005", "Tue, 15 Nov 2005 00:00:00 GMT"},
                      DateCase{"Tue, 15 Nov 2005 13:45:00 +01:00", "Tue, 15 Nov 2005 13:45:00 +0100"},
                      DateCase{"Tue, 15 Nov 2005 13:45:00", "Tue, 15 Nov 2005 13:45:00 GMT"},
                      DateCase{"2005-11-15T13:45:00Z", "Tue, 15 Nov 2005 13:45:00 GMT"},
                      DateCase{"Mon, 01 Mar 2100 00:00:00 UT", "Mon, 01 Mar 2100 00:00:00 UT"},
                      DateCase{"sometime last week", ""}, DateCase{"Tue, 31 Feb 2005 10:00:00 GMT", ""},
                      DateCase{"Tue, 29 Feb 2100 10:00:00 GMT", ""},
                      DateCase{"Tue, 15 Foo 2005 10:00:00 GMT", ""},
                      DateCase{"Tue, 15 Nov 2005 25:00:00 GMT", ""},
                      DateCase{"Tue, 115 Nov 2005 13:45:00 GMT", ""},
                      DateCase{"Tue, 15 Nov 2005 13:45:00 (Pacific)", ""}));

TEST(NamespaceStylesheetTest, WeekdaysAgreeWithTheCalendarAcrossCenturies) {
    QList<QDate> dates;
    for (QDate day(1999, 1, 1); day <= QDate(2001, 12, 31); day = day.addDays(1)) {
        dates << day;
    }
    for (int year = 1600; year <= 2400; ++year) {
        dates << QDate(year, 1, 1) << QDate(year, 2, 28) << QDate(year, 3, 1) << QDate(year, 12, 31);
        if (QDate::isLeapYear(year)) {
            dates << QDate(year, 2, 29);
        }
    }
    QByteArray entries;
    for (const QDate& date : dates) {
        entries += "<entry><id>" + date.toString(Qt::ISODate).toLatin1() + "</id><published>" +
                   date.toString(Qt::ISODate).toLatin1() + "T06:07:08Z</published></entry>";
    }
    // February 29 of the years that have none is no date at all.
    for (int year : {1700, 1800, 1900, 2100, 2200, 2300, 2001, 2023}) {
        entries +=
            "<entry><id>none</id><published>" + QByteArray::number(year) + "-02-29</published></entry>";
    }
    const XmlDocument doc = Normalise(AtomFeed(entries));
    ASSERT_FALSE(doc.IsNull());
    const std::vector<XmlNode> items = Items(doc);
    ASSERT_EQ(items.size(), size_t(dates.size() + 8));
    for (qsizetype i = 0; i < dates.size(); ++i) {
        const QString expected = QLocale::c().toString(dates[i], u"ddd, dd MMM yyyy"_s) + u" 06:07:08 GMT"_s;
        ASSERT_EQ(ItemText(items[size_t(i)], u"pubDate"_s), expected);
    }
    for (size_t i = size_t(dates.size()); i < items.size(); ++i) {
        EXPECT_TRUE(items[i].SelectSingleNode(u"pubDate"_s).IsNull());
    }
}

TEST(NamespaceStylesheetTest, ItemDatesComeFromTheFirstReadableSourceInOrder) {
    struct Case {
        QByteArray entry;
        QString expected;
    };
    const Case cases[] = {
        // Atom 1.0: published, then updated, then Dublin Core.
        {"<published>2001-01-01</published><updated>2002-02-02</updated>",
         u"Mon, 01 Jan 2001 00:00:00 GMT"_s},
        {"<published>never</published><updated>2002-02-02</updated>", u"Sat, 02 Feb 2002 00:00:00 GMT"_s},
        {"<dc:date xmlns:dc=\"http://purl.org/dc/elements/1.1/\">2003-03-03</dc:date>",
         u"Mon, 03 Mar 2003 00:00:00 GMT"_s},
        {"<updated>bad</updated><dc:date xmlns:dc=\"http://purl.org/dc/elements/1.1/\">bad</dc:date>",
         QString()},
    };
    for (const Case& c : cases) {
        const XmlDocument doc = Normalise(AtomFeed("<entry><id>x</id>" + c.entry + "</entry>"));
        ASSERT_EQ(Items(doc).size(), 1u);
        EXPECT_EQ(ItemText(Items(doc)[0], u"pubDate"_s), c.expected) << c.entry.toStdString();
    }
    // Atom 0.3: issued, then modified, then created.
    const XmlDocument old = Normalise(
        "<feed version=\"0.3\" "
        "xmlns=\"http://purl.org/atom/ns#\"><entry><created>2004-01-01T00:00:00Z</created>"
        "<modified>2004-02-02T00:00:00Z</modified><issued>2004-03-03T00:00:00</issued></entry>"
        "<entry><created>2004-01-01T00:00:00Z</created><modified>2004-02-02T00:00:00Z</modified></entry>"
        "<entry><created>2004-01-01T00:00:00Z</created></entry></feed>");
    ASSERT_EQ(Items(old).size(), 3u);
    EXPECT_EQ(ItemText(Items(old)[0], u"pubDate"_s), u"Wed, 03 Mar 2004 00:00:00 GMT"_s);
    EXPECT_EQ(ItemText(Items(old)[1], u"pubDate"_s), u"Mon, 02 Feb 2004 00:00:00 GMT"_s);
    EXPECT_EQ(ItemText(Items(old)[2], u"pubDate"_s), u"Thu, 01 Jan 2004 00:00:00 GMT"_s);
}

// ---------------------------------------------------------------------------------------------
// Bodies, links and the RSS 2.0 repairs.

namespace {

struct BodyCase {
    const char* entryContent;
    const char* expected;
};

void PrintTo(const BodyCase& c, std::ostream* os) {
    *os << c.entryContent;
}

class StylesheetAtomBodyTest : public ::testing::TestWithParam<BodyCase> {};

} // namespace

TEST_P(StylesheetAtomBodyTest, DescriptionHoldsTheBodyAsHtmlSource) {
    const XmlDocument doc =
        Normalise(AtomFeed(QByteArray("<entry><id>x</id>") + GetParam().entryContent + "</entry>",
                           " xmlns:h=\"http://www.w3.org/1999/xhtml\""));
    ASSERT_EQ(Items(doc).size(), 1u);
    EXPECT_EQ(ItemText(Items(doc)[0], u"description"_s).toStdString(), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Bodies, StylesheetAtomBodyTest,
    ::testing::Values(
        BodyCase{"<content type=\"text\">a &lt; b &amp; \"c\" &gt; d</content>",
                 "a &lt; b &amp; \"c\" &gt; d"},
        BodyCase{"<content>plain by default &amp; escaped</content>", "plain by default &amp; escaped"},
        BodyCase{"<content type=\"text/plain\">x &amp; y</content>", "x &amp; y"},
        BodyCase{"<content type=\"html\">&lt;p&gt;x &amp;amp; y&lt;/p&gt;</content>", "<p>x &amp; y</p>"},
        BodyCase{"<content type=\"text/html\">&lt;i&gt;i&lt;/i&gt;</content>", "<i>i</i>"},
        BodyCase{"<content type=\"xhtml\"><h:div><h:p class=\"a&amp;b\" xml:lang=\"de\">1<h:br/>2</h:p><!-- "
                 "note -->"
                 "<h:span></h:span><h:hr/></h:div></content>",
                 "<p class=\"a&amp;b\" lang=\"de\">1<br />2</p><span></span><hr />"},
        BodyCase{"<content type=\"application/xhtml+xml\"><h:div><h:b>bold</h:b></h:div></content>",
                 "<b>bold</b>"},
        // A blank between two inline elements is a word space; the layout around the div is not.
        BodyCase{"<content type=\"xhtml\">\n  <h:div><h:b>a</h:b> <h:i>b</h:i></h:div>\n</content>",
                 "<b>a</b> <i>b</i>"},
        // Not a lone wrapper: the children are written as they are.
        BodyCase{"<content type=\"xhtml\"><h:p>one</h:p><h:p>two</h:p></content>", "<p>one</p><p>two</p>"},
        BodyCase{"<content type=\"image/png\">iVBORw0KGgo=</content><summary>the summary</summary>",
                 "the summary"},
        BodyCase{"<content type=\"html\">  </content><summary type=\"html\">&lt;b&gt;s&lt;/b&gt;</summary>",
                 "<b>s</b>"},
        BodyCase{"<summary>only a summary</summary>", "only a summary"},
        BodyCase{
            "<content type=\"xhtml\"><h:div><h:img src=\"a.png\"/></h:div></content><summary>s</summary>",
            "<img src=\"a.png\" />"}));

TEST(NamespaceStylesheetTest, LongTextsDoNotExhaustTheRecursion) {
    const int count = 10000;
    const QByteArray markup = QByteArray("a &lt; b &amp; c &gt; d ").repeated(count);
    const QByteArray tags = QByteArray("&lt;b&gt;x&lt;/b&gt;").repeated(count);
    const XmlDocument doc = Normalise(AtomFeed(
        "<entry><id>1</id><title type=\"html\">" + tags + "</title><content type=\"text\">" + markup +
        "</content></entry><entry><id>2</id><content type=\"xhtml\"><div "
        "xmlns=\"http://www.w3.org/1999/xhtml\"><p>" +
        markup + "</p></div></content></entry>"));
    ASSERT_FALSE(doc.IsNull());
    ASSERT_EQ(Items(doc).size(), 2u);
    const QString expected = u"a &lt; b &amp; c &gt; d "_s.repeated(count);
    EXPECT_EQ(ItemText(Items(doc)[0], u"description"_s), expected);
    EXPECT_EQ(ItemText(Items(doc)[1], u"description"_s), u"<p>"_s + expected + u"</p>"_s);
    // A title is cut before its tags are taken out; what is left is only text.
    const QString title = ItemText(Items(doc)[0], u"title"_s);
    EXPECT_FALSE(title.isEmpty());
    EXPECT_EQ(title, QString(title.size(), u'x'));

    // Markup nested as deep as the parser allows, under a base of many folders, with addresses of
    // many steps; an address longer than 1000 characters stays as written.
    const int depth = 250;
    const QByteArray steps = QByteArray("../").repeated(150) + QByteArray("a/").repeated(150);
    const QByteArray tooLong = QByteArray("../").repeated(400) + "z";
    const XmlDocument deep = Normalise(AtomFeed(
        "<entry><id>3</id><link href=\"" + steps +
            "x\"/><content type=\"xhtml\">"
            "<div xmlns=\"http://www.w3.org/1999/xhtml\">" +
            QByteArray("<span>").repeated(depth) + "<a href=\"" + steps + "y\">&amp;</a><img src=\"" +
            tooLong + "\"/>" + QByteArray("</span>").repeated(depth) + "</div></content></entry>",
        " xml:base=\"http://b.example/" + QByteArray("d/").repeated(400) + "\""));
    ASSERT_EQ(Items(deep).size(), 1u);
    const QString folders = u"d/"_s.repeated(250) + u"a/"_s.repeated(150);
    EXPECT_EQ(ItemText(Items(deep)[0], u"link"_s), u"http://b.example/"_s + folders + u'x');
    EXPECT_EQ(ItemText(Items(deep)[0], u"description"_s),
              u"<span>"_s.repeated(depth) + u"<a href=\"http://b.example/"_s + folders +
                  u"y\">&amp;</a><img src=\""_s + QString::fromLatin1(tooLong) + u"\" />"_s +
                  u"</span>"_s.repeated(depth));
}

TEST(NamespaceStylesheetTest, PlainTitlesReadTheCommonReferences) {
    const XmlDocument doc = Normalise(
        AtomFeed("<entry><id>1</id><title type=\"html\">&lt;b&gt;Fish&lt;/b&gt; &amp;amp; chips &amp;lt;3 "
                 "&amp;quot;ok&amp;quot; "
                 "it&amp;#39;s&amp;nbsp;fine &amp;amp;lt;</title></entry>"
                 "<entry><id>2</id><title type=\"xhtml\"><div xmlns=\"http://www.w3.org/1999/xhtml\"> A  "
                 "<em>b</em>\n c </div>"
                 "</title></entry><entry><id>3</id><title>  kept &lt;as&gt; written  </title></entry>"));
    ASSERT_EQ(Items(doc).size(), 3u);
    EXPECT_EQ(ItemText(Items(doc)[0], u"title"_s), u"Fish & chips <3 \"ok\" it's\u00a0fine &lt;"_s);
    EXPECT_EQ(ItemText(Items(doc)[1], u"title"_s), u"A b c"_s);
    EXPECT_EQ(ItemText(Items(doc)[2], u"title"_s), u"  kept <as> written  "_s);
}

TEST(NamespaceStylesheetTest, RelativeAddressesFollowXmlBase) {
    struct Case {
        QByteArray href;
        QString expected;
    };
    const Case cases[] = {
        {"g", u"http://a.example/b/c/g"_s},
        {"./g", u"http://a.example/b/c/g"_s},
        {"g/", u"http://a.example/b/c/g/"_s},
        {"/g", u"http://a.example/g"_s},
        {"//g.example/x", u"http://g.example/x"_s},
        {"?y", u"http://a.example/b/c/d;p?y"_s},
        {"#s", u"http://a.example/b/c/d;p?q#s"_s},
        {"../g", u"http://a.example/b/g"_s},
        {"../../g", u"http://a.example/g"_s},
        {"../../../g", u"http://a.example/g"_s},
        {"https://x.example/y", u"https://x.example/y"_s},
        {"mailto:someone@a.example", u"mailto:someone@a.example"_s},
    };
    for (const Case& c : cases) {
        const XmlDocument doc = Normalise(AtomFeed("<entry><id>x</id><link href=\"" + c.href + "\"/></entry>",
                                                   " xml:base=\"http://a.example/b/c/d;p?q\""));
        ASSERT_EQ(Items(doc).size(), 1u);
        EXPECT_EQ(ItemText(Items(doc)[0], u"link"_s), c.expected) << c.href.toStdString();
    }
    // Bases nest; without any base a relative address stays as written.
    const XmlDocument nested =
        Normalise(AtomFeed("<entry xml:base=\"sub/\"><id>x</id><link href=\"x.html\"/></entry>",
                           " xml:base=\"http://a.example/root/\""));
    EXPECT_EQ(ItemText(Items(nested)[0], u"link"_s), u"http://a.example/root/sub/x.html"_s);
    const XmlDocument bare = Normalise(AtomFeed("<entry><id>x</id><link href=\"x.html\"/></entry>"));
    EXPECT_EQ(ItemText(Items(bare)[0], u"link"_s), u"x.html"_s);
}

TEST(NamespaceStylesheetTest, LinksPreferTheAlternatePage) {
    const XmlDocument doc = Normalise(
        AtomFeed("<entry><id>1</id><link rel=\"self\" href=\"http://a.example/self\"/>"
                 "<link rel=\"alternate\" type=\"application/pdf\" href=\"http://a.example/pdf\"/>"
                 "<link rel=\"alternate\" type=\"text/html\" href=\"http://a.example/page\"/></entry>"
                 "<entry><id>2</id><link rel=\"self\" href=\"http://a.example/self\"/>"
                 "<link rel=\"alternate\" type=\"application/pdf\" href=\"http://a.example/pdf\"/></entry>"
                 "<entry><id>3</id><link rel=\"enclosure\" href=\"http://a.example/e.mp3\"/>"
                 "<link rel=\"self\" href=\"http://a.example/self\"/></entry>"
                 "<entry><id>4</id><link rel=\"http://www.iana.org/assignments/relation/alternate\" "
                 "href=\"http://a.example/iana\"/>"
                 "</entry>"));
    ASSERT_EQ(Items(doc).size(), 4u);
    EXPECT_EQ(ItemText(Items(doc)[0], u"link"_s), u"http://a.example/page"_s);
    EXPECT_EQ(ItemText(Items(doc)[1], u"link"_s), u"http://a.example/pdf"_s);
    EXPECT_EQ(ItemText(Items(doc)[2], u"link"_s), u"http://a.example/e.mp3"_s);
    EXPECT_EQ(ItemText(Items(doc)[3], u"link"_s), u"http://a.example/iana"_s);
}

TEST(NamespaceStylesheetTest, Rss2ChannelLackingFieldsTakesThemFromDublinCoreBeforeItsItems) {
    const XmlDocument doc =
        Normalise("<rss version=\"2.0\" "
                  "xmlns:dc=\"http://purl.org/dc/elements/1.1/\"><channel><title>Oakridge Allotments</title>"
                  "<item><title>Water off on Monday</title></item>"
                  "<dc:date>2010-05-04T09:00:00+01:00</dc:date><dc:language>en-gb</dc:language>"
                  "<dc:rights>Oakridge Allotment Society</dc:rights></channel></rss>");
    ASSERT_FALSE(doc.IsNull());
    EXPECT_EQ(DescribeChildren(Channel(doc), false),
              (QStringList{u"pubDate=Tue, 04 May 2010 09:00:00 +0100"_s, u"language=en-gb"_s,
                           u"copyright=Oakridge Allotment Society"_s, u"title=Oakridge Allotments"_s,
                           u"dc:date=2010-05-04T09:00:00+01:00"_s, u"dc:language=en-gb"_s,
                           u"dc:rights=Oakridge Allotment Society"_s, u"item{title=Water off on Monday}"_s}));
    // The undated item finds the channel's date when the walk reaches it.
    EXPECT_EQ(WalkFeed(doc).itemStamps,
              QStringList{u"Oakridge Allotments | Tue, 04 May 2010 09:00:00 +0100"_s});
}

TEST(NamespaceStylesheetTest, Rss2DescriptionWrittenAsElementsBecomesMarkupText) {
    const XmlDocument doc = Normalise(Rss2Feed(
        "<item><title>a</title><description><p>Hello <b>there</b> &amp; <br/>bye</p></description></item>"
        "<item><title>b</title><description><div xmlns=\"http://www.w3.org/1999/xhtml\"><p>wrapped</p></div>"
        "</description></item>"));
    ASSERT_EQ(Items(doc).size(), 2u);
    EXPECT_EQ(DescribeChildren(Items(doc)[0], false),
              (QStringList{u"title=a"_s, u"description=<p>Hello <b>there</b> &amp; <br />bye</p>"_s}));
    EXPECT_EQ(ItemText(Items(doc)[1], u"description"_s), u"<p>wrapped</p>"_s);
}

TEST(NamespaceStylesheetTest, Rss2InANamespaceComesOutWithoutIt) {
    for (const QByteArray& space : {QByteArray("http://backend.userland.com/rss2"),
                                    QByteArray("http://blogs.law.harvard.edu/tech/rss")}) {
        const XmlDocument doc =
            Normalise("<rss xmlns=\"" + space +
                      "\" version=\"2.0\"><channel><title>Kestrel Radio</title>"
                      "<item><title>Tonight</title><pubDate>Thu, 01 Jan 2009 20:00:00 GMT</pubDate>"
                      "<x:extra xmlns:x=\"urn:x\"><note>n</note></x:extra></item></channel></rss>");
        ASSERT_EQ(Items(doc).size(), 1u) << space.toStdString();
        // The channel's date lookup uses the plain path "pubDate", which only finds elements without a
        // namespace.
        EXPECT_EQ(ItemText(Items(doc)[0], u"pubDate"_s), u"Thu, 01 Jan 2009 20:00:00 GMT"_s);
        EXPECT_EQ(ItemText(Channel(doc), u"title"_s), u"Kestrel Radio"_s);
        EXPECT_FALSE(doc.ToBytes().contains(space));
    }
}

TEST(NamespaceStylesheetTest, AnyOtherDocumentBecomesAnEmptyChannel) {
    for (const QByteArray& other :
         {QByteArray("<html><head><title>Not a feed</title></head><body><p>Hello</p></body></html>"),
          QByteArray("<opml version=\"1.0\"><head><title>Subscriptions</title></head><body/></opml>"),
          QByteArray("<channel><title>Loose channel</title><item><title>i</title></item></channel>")}) {
        const XmlDocument doc = Normalise(other);
        ASSERT_FALSE(doc.IsNull());
        EXPECT_EQ(doc.ToBytes(), QByteArray("<rss version=\"2.0\"><channel/></rss>\n"))
            << other.toStdString();
        EXPECT_TRUE(WalkFeed(doc).fields.isEmpty());
    }
}

// ---------------------------------------------------------------------------------------------
// Encodings: the parser decodes documents by their declaration or byte-order mark.

namespace {

struct EncodingCase {
    const char* name;
    QByteArray bytes;
    QString title;
};

QByteArray Declared(const char* encoding, const QByteArray& title) {
    return "<?xml version=\"1.0\" encoding=\"" + QByteArray(encoding) + "\"?>\n" +
           Rss2Feed("<item><title>" + title + "</title></item>");
}

QByteArray Utf16(QStringConverter::Encoding encoding, bool bom, const QString& text) {
    QStringEncoder encoder(encoding,
                           bom ? QStringConverter::Flag::WriteBom : QStringConverter::Flag::Default);
    return encoder.encode(text);
}

} // namespace

TEST(NamespaceStylesheetTest, FeedsInLegacyAndUtf16EncodingsDecode) {
    const QString cyrillic = u"\u041f\u0440\u0438\u0432\u0435\u0442"_s;
    const QString utf16Feed =
        u"<?xml version=\"1.0\" encoding=\"UTF-16\"?><rss version=\"2.0\"><channel>"
        u"<title>Test</title><item><title>\u00c5ngstr\u00f6m \u20ac \u65e5\u672c</title></item>"
        u"</channel></rss>"_s;
    const QString utf16Title = u"\u00c5ngstr\u00f6m \u20ac \u65e5\u672c"_s;
    const EncodingCase cases[] = {
        {"ISO-8859-1", Declared("ISO-8859-1", "Caf\xE9 cr\xE8me \xBD \xA9"),
         u"Caf\u00e9 cr\u00e8me \u00bd \u00a9"_s},
        {"ISO-8859-15", Declared("ISO-8859-15", "\xA4 \xBD \xA6"), u"\u20ac \u0153 \u0160"_s},
        {"ISO-8859-2", Declared("ISO-8859-2", "Za\xBF\xF3\xB3\xE6 g\xEA\xB6l\xB1 ja\xBC\xF1"),
         u"Za\u017c\u00f3\u0142\u0107 g\u0119\u015bl\u0105 ja\u017a\u0144"_s},
        {"ISO-8859-7", Declared("ISO-8859-7", "\xE1\xE2\xE3 \xD9"), u"\u03b1\u03b2\u03b3 \u03a9"_s},
        {"windows-1252", Declared("windows-1252", "\x93Quoted\x94 \x80 5 \x85 \x96 caf\xE9"),
         u"\u201cQuoted\u201d \u20ac 5 \u2026 \u2013 caf\u00e9"_s},
        {"windows-1250", Declared("windows-1250", "\x9A\x9E\x8A"), u"\u0161\u017e\u0160"_s},
        {"windows-1251", Declared("windows-1251", "\xCF\xF0\xE8\xE2\xE5\xF2"), cyrillic},
        {"KOI8-R", Declared("KOI8-R", "\xF0\xD2\xC9\xD7\xC5\xD4"), cyrillic},
        {"UTF-8 with a byte-order mark",
         "\xEF\xBB\xBF" + Declared("UTF-8", "Stra\xC3\x9F"
                                            "e"),
         u"Stra\u00dfe"_s},
        {"UTF-16LE with a byte-order mark", Utf16(QStringConverter::Utf16LE, true, utf16Feed), utf16Title},
        {"UTF-16BE with a byte-order mark", Utf16(QStringConverter::Utf16BE, true, utf16Feed), utf16Title},
        {"UTF-16LE declared, no byte-order mark", Utf16(QStringConverter::Utf16LE, false, utf16Feed),
         utf16Title},
    };
    for (const EncodingCase& c : cases) {
        SCOPED_TRACE(c.name);
        QString error;
        const XmlDocument feed = ParseFeed(c.bytes, &error);
        ASSERT_FALSE(feed.IsNull()) << error.toStdString();
        const XmlDocument doc = Stylesheet().TransformToDocument(feed, &error);
        ASSERT_FALSE(doc.IsNull()) << error.toStdString();
        ASSERT_EQ(Items(doc).size(), 1u);
        EXPECT_EQ(ItemText(Items(doc)[0], u"title"_s), c.title);
    }
}

TEST(NamespaceStylesheetTest, AnAtomFeedInUtf16DecodesAndMaps) {
    const QString text =
        u"<feed xmlns=\"http://www.w3.org/2005/Atom\"><title>\u30c6\u30b9\u30c8</title>"
        u"<entry><id>1</id><title>\u00e9t\u00e9</title><content type=\"html\">&lt;p&gt;\u00fc&lt;/p&gt;"
        u"</content></entry></feed>"_s;
    const XmlDocument doc = Normalise(Utf16(QStringConverter::Utf16BE, true, text));
    ASSERT_EQ(Items(doc).size(), 1u);
    EXPECT_EQ(ItemText(Channel(doc), u"title"_s), u"\u30c6\u30b9\u30c8"_s);
    EXPECT_EQ(ItemText(Items(doc)[0], u"title"_s), u"\u00e9t\u00e9"_s);
    EXPECT_EQ(ItemText(Items(doc)[0], u"description"_s), u"<p>\u00fc</p>"_s);
}

// ---------------------------------------------------------------------------------------------
// The RSS 0.91 DTD: shipped entities, and nothing else ever read.

namespace {

const QByteArray kRss091Public = "-//Netscape Communications//DTD RSS 0.91//EN";
const QByteArray kRss091System = "http://my.netscape.com/publish/formats/rss-0.91.dtd";

QByteArray Rss091(const QByteArray& doctype, const QByteArray& title) {
    return "<?xml version=\"1.0\"?>\n" + doctype + "\n<rss version=\"0.91\"><channel><title>" + title +
           "</title><item><title>i</title></item></channel></rss>";
}

} // namespace

TEST(NamespaceStylesheetTest, Rss091EntitiesComeFromTheShippedDtd) {
    struct Entity {
        const char* name;
        char32_t codePoint;
    };
    // A sample from each of the three sets, checked against code points written here.
    const Entity entities[] = {
        {"nbsp", 0xA0},    {"copy", 0xA9},    {"Agrave", 0xC0},   {"times", 0xD7},    {"szlig", 0xDF},
        {"eacute", 0xE9},  {"divide", 0xF7},  {"yuml", 0xFF},     {"fnof", 0x192},    {"Omega", 0x3A9},
        {"alpha", 0x3B1},  {"sigmaf", 0x3C2}, {"bull", 0x2022},   {"hellip", 0x2026}, {"trade", 0x2122},
        {"rarr", 0x2192},  {"lang", 0x2329},  {"hearts", 0x2665}, {"OElig", 0x152},   {"mdash", 0x2014},
        {"ldquo", 0x201C}, {"zwj", 0x200D},   {"permil", 0x2030}, {"euro", 0x20AC},
    };
    const QByteArrayList doctypes = {
        QByteArray("<!DOCTYPE rss PUBLIC \"" + kRss091Public + "\" \"" + kRss091System + "\">"),
        QByteArray("<!DOCTYPE rss PUBLIC \"" + kRss091Public + "\" \"rss-0.91.dtd\">"),
        QByteArray("<!DOCTYPE rss SYSTEM \"" + kRss091System + "\">")};
    for (const QByteArray& doctype : doctypes) {
        for (const Entity& entity : entities) {
            const XmlDocument doc = Normalise(Rss091(doctype, "[&" + QByteArray(entity.name) + ";]"));
            ASSERT_FALSE(doc.IsNull()) << doctype.toStdString();
            EXPECT_EQ(ItemText(Channel(doc), u"title"_s),
                      u'[' + QString::fromUcs4(&entity.codePoint, 1) + u']')
                << entity.name << " " << doctype.toStdString();
        }
    }
    EXPECT_EQ(WalkFeed(Normalise(ReadFeed(u"dialect-rss091.xml"_s))).fields.value(u"title"_s), kRss091Title);
}

TEST(NamespaceStylesheetTest, TheShippedDtdDeclaresTheWholeHtml4EntitySetOnce) {
    QFile file(ResourceFolder() + u"/dtd/rss-0.91.dtd"_s);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QString text = QString::fromUtf8(file.readAll());
    const QRegularExpression declaration(u"<!ENTITY\\s+(\\w+)\\s+\"&#(\\d+);\">"_s);
    QSet<QString> names;
    QSet<int> codePoints;
    QByteArray body;
    QString expected;
    for (auto match = declaration.globalMatch(text); match.hasNext();) {
        const auto m = match.next();
        names.insert(m.captured(1));
        codePoints.insert(m.captured(2).toInt());
        body += "&" + m.captured(1).toLatin1() + ";";
        const char32_t codePoint = char32_t(m.captured(2).toUInt());
        expected += QString::fromUcs4(&codePoint, 1);
    }
    // 96 Latin-1 characters, 124 symbols and Greek letters, 28 special characters.
    EXPECT_EQ(names.size(), 248);
    EXPECT_EQ(codePoints.size(), 248);
    for (int latin1 = 0xA0; latin1 <= 0xFF; ++latin1) {
        EXPECT_TRUE(codePoints.contains(latin1)) << latin1;
    }
    EXPECT_EQ(text.count(u"<!ENTITY"_s), 248);
    // Every declaration is usable through the mapping.
    const XmlDocument doc = ParseFeed(Rss091("<!DOCTYPE rss PUBLIC \"" + kRss091Public + "\" \"x\">", body));
    ASSERT_FALSE(doc.IsNull());
    EXPECT_EQ(doc.DocumentElement().SelectSingleNode(u"channel/title"_s).Text(), expected);
}

TEST(NamespaceStylesheetTest, WithoutDtdLoadingTheFeedLoadsButItsEntitiesStayEmpty) {
    XmlSecurity::MapShippedDtds(ResourceFolder());
    const XmlDocument doc = XmlDocument::Parse(
        Rss091("<!DOCTYPE rss PUBLIC \"" + kRss091Public + "\" \"" + kRss091System + "\">", "Caf&eacute;!"));
    ASSERT_FALSE(doc.IsNull());
    EXPECT_EQ(doc.DocumentElement().SelectSingleNode(u"channel/title"_s).Text(), u"Caf!"_s);
}

TEST(NamespaceStylesheetTest, UnmappedDtdsAndEntitiesAreNeverRead) {
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    const QString evilDtd = dir.filePath(u"evil.dtd"_s);
    const QString secret = dir.filePath(u"secret.txt"_s);
    for (const auto& [path, content] : {std::pair{evilDtd, QByteArray("<!ENTITY eacute \"PWNED\">")},
                                        std::pair{secret, QByteArray("TOPSECRET")}}) {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    }
    QTcpServer server;
    ASSERT_TRUE(server.listen(QHostAddress::LocalHost));
    const QByteArray http = "http://127.0.0.1:" + QByteArray::number(server.serverPort());
    const QByteArray evilUrl = QUrl::fromLocalFile(evilDtd).toEncoded();
    const QByteArray secretUrl = QUrl::fromLocalFile(secret).toEncoded();

    // Each attack either loads with the outside reference left empty, or does not load at all.
    struct Attack {
        QByteArray document;
        QString title; // the channel title when the document loads
        bool loads;
    };
    const Attack attacks[] = {
        {Rss091("<!DOCTYPE rss SYSTEM \"" + evilUrl + "\">", "Caf&eacute;!"), u"Caf!"_s, true},
        {Rss091("<!DOCTYPE rss PUBLIC \"-//Someone//DTD Other//EN\" \"" + evilUrl + "\">", "Caf&eacute;!"),
         u"Caf!"_s, true},
        {Rss091("<!DOCTYPE rss SYSTEM \"" + http + "/rss-0.91.dtd\">", "Caf&eacute;!"), u"Caf!"_s, true},
        {Rss091("<!DOCTYPE rss [<!ENTITY x SYSTEM \"" + secretUrl + "\">]>", "[&x;]"), u"[]"_s, true},
        {Rss091("<!DOCTYPE rss [<!ENTITY x SYSTEM \"file:///etc/hostname\">]>", "[&x;]"), u"[]"_s, true},
        {Rss091("<!DOCTYPE rss [<!ENTITY x SYSTEM \"" + http + "/secret\">]>", "[&x;]"), u"[]"_s, true},
        {Rss091("<!DOCTYPE rss [<!ENTITY % p SYSTEM \"" + http + "/p.dtd\"> %p;]>", "p"), u"p"_s, true},
        {Rss091("<!DOCTYPE rss [<!ENTITY % p SYSTEM \"" + evilUrl + "\"> %p;]>", "Caf&eacute;!"), u"Caf!"_s,
         false},
    };
    for (const Attack& attack : attacks) {
        for (bool loadDtd : {true, false}) {
            SCOPED_TRACE(attack.document.toStdString() + (loadDtd ? " (loading mapped DTDs)" : ""));
            XmlParseOptions options;
            options.loadMappedDtd = loadDtd;
            const XmlDocument doc = XmlDocument::Parse(attack.document, nullptr, options);
            EXPECT_TRUE(!attack.loads || !doc.IsNull());
            if (doc.IsNull()) {
                continue;
            }
            EXPECT_EQ(doc.DocumentElement().SelectSingleNode(u"channel/title"_s).Text(), attack.title);
            const QByteArray bytes = doc.ToBytes();
            EXPECT_FALSE(bytes.contains("PWNED"));
            EXPECT_FALSE(bytes.contains("TOPSECRET"));
        }
    }
    // No connection was even attempted.
    EXPECT_FALSE(server.waitForNewConnection(0));
    EXPECT_FALSE(server.hasPendingConnections());

    // The shipped DTD answers for its public identifier whatever system identifier comes with it.
    const XmlDocument mapped = ParseFeed(
        Rss091("<!DOCTYPE rss PUBLIC \"" + kRss091Public + "\" \"" + evilUrl + "\">", "Caf&eacute;"));
    ASSERT_FALSE(mapped.IsNull());
    EXPECT_EQ(mapped.DocumentElement().SelectSingleNode(u"channel/title"_s).Text(), u"Caf\u00e9"_s);
}
