// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
// The whole road of a fetch against a real HTTP server on 127.0.0.1: the network client, the
// shipped namespace stylesheet, the channel and the item bank. The channels' timers run on a fake
// clock that the tests advance; the sockets are served by pumping the event loop until the
// awaited state is reached (bounded, so that a broken build fails instead of hanging).
#include "app/HeadlessHost.h"
#include "app/MakerSite.h"
#include "app/Services.h"
#include "app/clsProfile.h"
#include "feeds/RSSChannel.h"
#include "feeds/colChannels.h"
#include "itembank/clsItemBank.h"
#include "itembank/modItemHandler.h"
#include "platform/CRegSettings.h"
#include "platform/HttpClient.h"
#include "platform/XmlSecurity.h"
#include "platform/XsltStylesheet.h"
#include "support/FakeClock.h"
#include "support/EventPump.h"
#include "support/LocalHttpServer.h"
#include "support/RecordingDesktop.h"
#include "support/TestHome.h"

#include <QCoreApplication>
#include <QTimer>
#include <functional>
#include <gtest/gtest.h>
#include <ostream>

using namespace Qt::StringLiterals;

inline void PrintTo(const QString& text, std::ostream* os) {
    *os << '"' << text.toStdString() << '"';
}

namespace {

constexpr int kPumpLimitMs = 20000;
const QByteArray kModified = "Tue, 15 Nov 2005 14:00:00 GMT";

class FeedsIntegrationTest : public ::testing::Test {
protected:
    FeedsIntegrationTest()
        : settings(home.GetPaths()), http(home.GetPaths()),
          namespaceTransform(XsltStylesheet::Load(home.GetPaths().ResourceFile(u"tamselns.xsl"_s))),
          site(settings), host(clock, namespaceTransform, site.HelpURL()),
          profile(Services{clock, settings, http, desktop, home.GetPaths()}, host) {
        XmlSecurity::MapShippedDtds(home.GetPaths().ResourceFolder());
        profile.SetName(u"Tester"_s);
    }
    ~FeedsIntegrationTest() override {
        host.ChangeUser(nullptr);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    void SetUp() override {
        ASSERT_FALSE(namespaceTransform.IsNull());
        Activate(false);
    }
    void Activate(bool keepMakerChannels) {
        host.ChangeUser(&profile);
        if (!keepMakerChannels) {
            profile.Channels()->DelChannel(site.NewsURL());
            profile.Channels()->DelChannel(site.HelpURL());
        }
    }

    static bool PumpUntil(const std::function<bool()>& done) { return ::PumpUntil(done, kPumpLimitMs); }

    RSSChannel* Subscribe(const QString& path) {
        return profile.Channels()->AddChannel(server.Url(path).toString());
    }
    // Runs a check now (as the reload command does) and waits until the channel is idle again.
    bool Check(RSSChannel* channel) {
        channel->LoadRSS();
        return PumpUntil([channel] { return !channel->Busy(); });
    }
    ItemList Items(const RSSChannel* channel) const {
        return profile.ItemBank()->SubChannelList(channel->URL(), QString(), QString());
    }
    QStringList Titles(const RSSChannel* channel) const {
        QStringList titles;
        for (const XmlNode& item : Items(channel)) {
            titles.append(GetItemTitle(item));
        }
        return titles;
    }

    TestHome home;
    FakeClock clock;
    CRegSettings settings;
    NetworkHttpClient http;
    RecordingDesktop desktop;
    XsltStylesheet namespaceTransform;
    MakerSite site;
    HeadlessHost host;
    clsProfile profile;
    LocalHttpServer server;
};

QByteArray Rss20(const QString& title, int items) {
    QByteArray feed = "<?xml version=\"1.0\" encoding=\"UTF-8\"?><rss version=\"2.0\"><channel><title>" +
                      title.toUtf8() +
                      "</title><link>http://news.example.org/</link><description>Tests</description>";
    for (int i = 1; i <= items; ++i) {
        const QByteArray n = QByteArray::number(i);
        feed += "<item><title>Story " + n + "</title><link>http://news.example.org/" + n +
                "</link><guid>story-" + n + "</guid><pubDate>Tue, 15 Nov 2005 13:4" +
                QByteArray::number(i % 10) + ":00 GMT</pubDate></item>";
    }
    return feed + "</channel></rss>";
}

TEST_F(FeedsIntegrationTest, LastModifiedSparesTheDownload) {
    server.ServeXml(u"/feed"_s, Rss20(u"Server News"_s, 3), kModified);
    RSSChannel* channel = Subscribe(u"/feed"_s);
    ASSERT_TRUE(Check(channel));
    EXPECT_EQ(server.Requests(), (QStringList{u"HEAD /feed"_s, u"GET /feed"_s}));
    EXPECT_EQ(channel->Title(), u"Server News"_s);
    EXPECT_EQ(Titles(channel), (QStringList{u"Story 1"_s, u"Story 2"_s, u"Story 3"_s}));
    EXPECT_EQ(channel->LastModified(), QString::fromLatin1(kModified));
    EXPECT_EQ(host.Coordinator().ConnCount(), 0);

    server.ClearRequests();
    ASSERT_TRUE(Check(channel));
    EXPECT_EQ(server.Requests(), QStringList{u"HEAD /feed"_s});

    server.ServeXml(u"/feed"_s, Rss20(u"Server News"_s, 4), "Wed, 16 Nov 2005 09:00:00 GMT");
    server.ClearRequests();
    ASSERT_TRUE(Check(channel));
    EXPECT_EQ(server.Requests(), (QStringList{u"HEAD /feed"_s, u"GET /feed"_s}));
    EXPECT_EQ(Items(channel).size(), 4u);
    EXPECT_EQ(GetItemDate(Items(channel)[3]), u"15 Nov 2005"_s);
    EXPECT_EQ(GetItemTime(Items(channel)[3]), u"13:44:00"_s);
}

TEST_F(FeedsIntegrationTest, WithoutLastModifiedEveryCheckDownloads) {
    server.ServeXml(u"/plain"_s, Rss20(u"Plain"_s, 2));
    RSSChannel* channel = Subscribe(u"/plain"_s);
    ASSERT_TRUE(Check(channel));
    ASSERT_TRUE(Check(channel));
    EXPECT_EQ(server.Requests(),
              (QStringList{u"HEAD /plain"_s, u"GET /plain"_s, u"HEAD /plain"_s, u"GET /plain"_s}));
    EXPECT_EQ(Items(channel).size(), 2u);
    EXPECT_EQ(channel->LastModified(), RSSChannel::kNeverChecked);
}

TEST_F(FeedsIntegrationTest, RedirectIsFollowed) {
    server.ServeXml(u"/new"_s, Rss20(u"Moved"_s, 1));
    server.Redirect(u"/old"_s, server.Url(u"/new"_s));
    RSSChannel* channel = Subscribe(u"/old"_s);
    ASSERT_TRUE(Check(channel));
    EXPECT_TRUE(server.Requests().contains(u"GET /new"_s));
    EXPECT_EQ(channel->Title(), u"Moved"_s);
    ASSERT_EQ(Items(channel).size(), 1u);
    EXPECT_EQ(GetAttributeText(Items(channel)[0], u"channel"_s), server.Url(u"/old"_s).toString());
}

TEST_F(FeedsIntegrationTest, HangingServerEndsInTheTimeOut) {
    LocalHttpServer::Route hang;
    hang.hang = true;
    server.Serve(u"/slow"_s, hang);
    RSSChannel* channel = Subscribe(u"/slow"_s);
    channel->LoadRSS();
    ASSERT_TRUE(PumpUntil([this] { return server.Requests().contains(u"HEAD /slow"_s); }));
    EXPECT_TRUE(channel->Busy());
    clock.Advance(RSSChannel::kTimeOutMs);
    EXPECT_FALSE(channel->Busy());
    EXPECT_TRUE(channel->LoadFailed());
    EXPECT_EQ(channel->GetImage(), u"err"_s);
    EXPECT_EQ(host.Coordinator().ConnCount(), 0);
}

TEST_F(FeedsIntegrationTest, AnswerAfterTheTimeOutIsIgnored) {
    LocalHttpServer::Route late;
    late.hold = true;
    late.body = Rss20(u"Too Late"_s, 2);
    server.Serve(u"/late"_s, late);
    RSSChannel* channel = Subscribe(u"/late"_s);
    channel->ForceLoadRSS();
    ASSERT_TRUE(PumpUntil([this] { return server.Requests().contains(u"GET /late"_s); }));
    clock.Advance(RSSChannel::kTimeOutMs);
    ASSERT_TRUE(channel->LoadFailed());
    server.ReleaseHeld();
    for (int round = 0; round < 20; ++round) {
        QCoreApplication::processEvents();
    }
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(channel->LoadFailed());
    EXPECT_EQ(channel->Title(), server.Url(u"/late"_s).toString());
    EXPECT_TRUE(Items(channel).empty());
}

// A server that fails in any way leaves the channel as it was, marked with an error.
TEST_F(FeedsIntegrationTest, FailingServersLeaveTheChannelUnchanged) {
    struct Case {
        QString path;
        LocalHttpServer::Route route;
    };
    LocalHttpServer::Route error;
    error.status = 500;
    error.body = Rss20(u"Error page"_s, 1);
    LocalHttpServer::Route reset;
    reset.reset = true;
    LocalHttpServer::Route oversized;
    oversized.body = Rss20(u"Huge"_s, 1) + QByteArray(HttpClient::kMaxResponseBytes, ' ');
    LocalHttpServer::Route notXml;
    notXml.body = "<html><body>Maintenance<br></body></html>";
    const Case cases[] = {
        {u"/error"_s, error}, {u"/reset"_s, reset}, {u"/huge"_s, oversized}, {u"/html"_s, notXml}};
    for (const Case& failure : cases) {
        SCOPED_TRACE(failure.path.toStdString());
        server.Serve(failure.path, failure.route);
        RSSChannel* channel = Subscribe(failure.path);
        ASSERT_TRUE(Check(channel));
        EXPECT_TRUE(channel->LoadFailed());
        EXPECT_EQ(channel->GetImage(), u"err"_s);
        EXPECT_EQ(channel->Title(), server.Url(failure.path).toString());
        EXPECT_TRUE(Items(channel).empty());
        EXPECT_EQ(channel->ReloadInterval(), RSSChannel::kBackOffMs);
        EXPECT_EQ(host.Coordinator().ConnCount(), 0);
    }
}

TEST_F(FeedsIntegrationTest, FeedsCannotReadLocalFilesOrReachOtherAddresses) {
    home.Write(u"secret.txt"_s, "TOPSECRET");
    const QByteArray secretUrl = QUrl::fromLocalFile(home.File(u"secret.txt"_s)).toEncoded();
    server.Serve(u"/evil.dtd"_s,
                 LocalHttpServer::Route{200, "<!ENTITY remote \"REMOTE\">", {}, false, false, false});
    const QByteArray dtdUrl = server.Url(u"/evil.dtd"_s).toEncoded();
    const QByteArray feeds[] = {
        "<!DOCTYPE rss [<!ENTITY secret SYSTEM \"" + secretUrl +
            "\">]><rss version=\"2.0\"><channel><title>A &secret;</title><item><title>I "
            "&secret;</title></item>"
            "</channel></rss>",
        "<!DOCTYPE rss SYSTEM \"" + dtdUrl +
            "\"><rss version=\"2.0\"><channel><title>B</title><item><title>I</title></item></channel></rss>",
        "<!DOCTYPE rss [<!ENTITY % ext SYSTEM \"" + dtdUrl +
            "\"> %ext;]><rss version=\"2.0\"><channel><title>C</title></channel></rss>",
        "<!DOCTYPE rss SYSTEM \"secret.txt\"><rss version=\"2.0\"><channel><title>D</title></channel></rss>",
    };
    int n = 0;
    for (const QByteArray& feed : feeds) {
        const QString path = u"/hostile%1"_s.arg(++n);
        server.ServeXml(path, feed);
        RSSChannel* channel = Subscribe(path);
        ASSERT_TRUE(Check(channel));
        EXPECT_FALSE(channel->Title().contains(u"TOPSECRET"_s)) << n;
    }
    EXPECT_FALSE(profile.ItemBank()->XMLDoc().ToBytes().contains("TOPSECRET"));
    EXPECT_FALSE(profile.ItemBank()->XMLDoc().ToBytes().contains("REMOTE"));
    EXPECT_FALSE(server.Requests().contains(u"GET /evil.dtd"_s)) << "no other address is contacted";
    EXPECT_EQ(server.Requests().filter(u"evil"_s).size(), 0);
}

TEST_F(FeedsIntegrationTest, EntityExpansionBombIsRefused) {
    QByteArray bomb = "<?xml version=\"1.0\"?><!DOCTYPE rss [<!ENTITY a0 \"lol\">";
    for (int i = 1; i <= 10; ++i) {
        bomb += "<!ENTITY a" + QByteArray::number(i) + " \"";
        for (int j = 0; j < 10; ++j) {
            bomb += "&a" + QByteArray::number(i - 1) + ";";
        }
        bomb += "\">";
    }
    bomb += "]><rss version=\"2.0\"><channel><title>&a10;</title></channel></rss>";
    server.ServeXml(u"/bomb"_s, bomb);
    RSSChannel* channel = Subscribe(u"/bomb"_s);
    ASSERT_TRUE(Check(channel));
    EXPECT_TRUE(channel->LoadFailed());
    EXPECT_EQ(channel->Title(), server.Url(u"/bomb"_s).toString());
}

struct Dialect {
    const char* name;
    QByteArray feed;
    QString channelTitle;
    QStringList itemTitles;
    // Date and time of the first item; empty when it should carry the channel's or today's.
    QString firstDate;
    QString firstTime;
};

void PrintTo(const Dialect& dialect, std::ostream* os) {
    *os << dialect.name;
}

class DialectTest : public FeedsIntegrationTest, public ::testing::WithParamInterface<Dialect> {};

TEST_P(DialectTest, TravelsTheWholeRoad) {
    const Dialect& dialect = GetParam();
    server.ServeXml(u"/dialect"_s, dialect.feed, kModified);
    RSSChannel* channel = Subscribe(u"/dialect"_s);
    ASSERT_TRUE(Check(channel));
    EXPECT_FALSE(channel->LoadFailed());
    EXPECT_EQ(channel->Title(), dialect.channelTitle);
    EXPECT_EQ(Titles(channel), dialect.itemTitles);
    const ItemList items = Items(channel);
    ASSERT_FALSE(items.empty());
    const QString expectedDate =
        dialect.firstDate.isEmpty() ? FormatItemDate(clock.Now().date()) : dialect.firstDate;
    EXPECT_EQ(GetItemDate(items[0]), expectedDate);
    if (!dialect.firstTime.isEmpty()) {
        EXPECT_EQ(GetItemTime(items[0]), dialect.firstTime);
    }
    for (const XmlNode& item : items) {
        EXPECT_EQ(GetChildText(item, u"channeltitle"_s), dialect.channelTitle);
        EXPECT_EQ(GetChildText(item, u"read"_s), u"false"_s);
    }
    EXPECT_TRUE(channel->NewItems());
    EXPECT_EQ(host.NodeIcon(channel->URL()), u"newitems"_s);
}

INSTANTIATE_TEST_SUITE_P(
    Feeds, DialectTest,
    ::testing::Values(
        Dialect{"Rss091",
                "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>\n"
                "<!DOCTYPE rss PUBLIC \"-//Netscape Communications//DTD RSS 0.91//EN\"\n"
                " \"http://my.netscape.com/publish/formats/rss-0.91.dtd\">\n"
                "<rss version=\"0.91\"><channel><title>Caf&eacute; Chronicle</title>"
                "<link>http://cafe.example.org/</link><description>Daily notes from the corner "
                "caf\xe9</description>"
                "<language>en-us</language><pubDate>Mon, 14 Nov 2005 08:00:00 GMT</pubDate>"
                "<image><title>Cafe logo</title><url>http://cafe.example.org/logo.gif</url>"
                "<link>http://cafe.example.org/</link></image>"
                "<item><title>Opening hours</title><link>http://cafe.example.org/hours</link>"
                "<description>We open at eight &amp; close at six.</description></item>"
                "<item><title>New menu &#8211; winter</title><link>http://cafe.example.org/menu</link></item>"
                "</channel></rss>",
                u"Caf\u00e9 Chronicle"_s,
                {u"Opening hours"_s, u"New menu \u2013 winter"_s},
                u"14 Nov 2005"_s,
                u"08:00:00"_s},
        Dialect{"Rss092",
                "<?xml version=\"1.0\"?><rss version=\"0.92\"><channel><title>Radio Notes</title>"
                "<link>http://radio.example.org/</link><description>Episodes</description>"
                "<item><title>Episode 12</title><description>Tides and harbours</description>"
                "<enclosure url=\"http://radio.example.org/12.mp3\" length=\"1200\" type=\"audio/mpeg\"/>"
                "<category>Sea</category></item>"
                "<item><title>Episode 11</title><description>Lighthouses</description>"
                "<source url=\"http://other.example.org/rss\">Other</source></item>"
                "</channel></rss>",
                u"Radio Notes"_s,
                {u"Episode 12"_s, u"Episode 11"_s},
                QString(),
                QString()},
        Dialect{"Rss20",
                "<?xml version=\"1.0\" encoding=\"UTF-8\"?><rss version=\"2.0\" "
                "xmlns:dc=\"http://purl.org/dc/elements/1.1/\" "
                "xmlns:content=\"http://purl.org/rss/1.0/modules/content/\"><channel>"
                "<title>Harbour Gazette</title><link>http://gazette.example.org/</link>"
                "<description>Port news</description><ttl>30</ttl>"
                "<item><title>Ferry timetable changes</title><link>http://gazette.example.org/ferry</link>"
                "<guid isPermaLink=\"true\">http://gazette.example.org/ferry</guid>"
                "<pubDate>Tue, 15 Nov 2005 13:45:00 GMT</pubDate><dc:creator>Ann Writer</dc:creator>"
                "<content:encoded><![CDATA[<p>From <b>Monday</b> on.</p>]]></content:encoded></item>"
                "<item><title>Storm warning</title><guid isPermaLink=\"false\">storm-1</guid>"
                "<pubDate>Wed, 16 Nov 2005 06:30:00 GMT</pubDate><description>Gales "
                "expected.</description></item>"
                "</channel></rss>",
                u"Harbour Gazette"_s,
                {u"Ferry timetable changes"_s, u"Storm warning"_s},
                u"15 Nov 2005"_s,
                u"13:45:00"_s},
        Dialect{"Rss10",
                "<?xml version=\"1.0\"?><rdf:RDF xmlns:rdf=\"http://www.w3.org/1999/02/22-rdf-syntax-ns#\" "
                "xmlns=\"http://purl.org/rss/1.0/\" xmlns:dc=\"http://purl.org/dc/elements/1.1/\">"
                "<channel rdf:about=\"http://library.example.org/\"><title>Library Additions</title>"
                "<link>http://library.example.org/</link><description>New books</description>"
                "<dc:date>2005-11-14T08:00:00Z</dc:date>"
                "<items><rdf:Seq><rdf:li resource=\"http://library.example.org/b1\"/>"
                "<rdf:li resource=\"http://library.example.org/b2\"/></rdf:Seq></items></channel>"
                "<item rdf:about=\"http://library.example.org/b1\"><title>A History of Tides</title>"
                "<link>http://library.example.org/b1</link><description>Oceanography</description>"
                "<dc:date>2005-11-15T13:45:00Z</dc:date><dc:creator>M. Shore</dc:creator></item>"
                "<item rdf:about=\"http://library.example.org/b2\"><title>Knots</title>"
                "<link>http://library.example.org/b2</link><dc:date>2005-11-15T09:00:00Z</dc:date></item>"
                "</rdf:RDF>",
                u"Library Additions"_s,
                {u"A History of Tides"_s, u"Knots"_s},
                u"15 Nov 2005"_s,
                u"13:45:00"_s},
        Dialect{"Atom03",
                "<?xml version=\"1.0\" encoding=\"utf-8\"?><feed version=\"0.3\" "
                "xmlns=\"http://purl.org/atom/ns#\">"
                "<title>Garden Diary</title><link rel=\"alternate\" type=\"text/html\" "
                "href=\"http://garden.example.org/\"/><modified>2005-11-15T13:45:00Z</modified>"
                "<author><name>G. Green</name></author>"
                "<entry><title>Planting bulbs</title><link rel=\"alternate\" type=\"text/html\" "
                "href=\"http://garden.example.org/bulbs\"/><id>tag:garden.example.org,2005:bulbs</id>"
                "<issued>2005-11-15T13:45:00Z</issued><modified>2005-11-15T13:45:00Z</modified>"
                "<summary>Tulips go in now.</summary></entry>"
                "<entry><title>First frost</title><link rel=\"alternate\" type=\"text/html\" "
                "href=\"http://garden.example.org/frost\"/><id>tag:garden.example.org,2005:frost</id>"
                "<issued>2005-11-14T07:00:00Z</issued><modified>2005-11-14T07:00:00Z</modified>"
                "<content type=\"text/html\" mode=\"escaped\">&lt;p&gt;Cover the "
                "roses.&lt;/p&gt;</content></entry>"
                "</feed>",
                u"Garden Diary"_s,
                {u"Planting bulbs"_s, u"First frost"_s},
                u"15 Nov 2005"_s,
                u"13:45:00"_s},
        Dialect{
            "Atom10",
            "<?xml version=\"1.0\" encoding=\"utf-8\"?><feed xmlns=\"http://www.w3.org/2005/Atom\">"
            "<title>Observatory Log</title><link href=\"http://observatory.example.org/\"/>"
            "<link rel=\"self\" href=\"http://observatory.example.org/atom.xml\"/>"
            "<updated>2005-11-15T13:45:00Z</updated><id>urn:uuid:60a76c80-d399-11d9-b93C-0003939e0af6</id>"
            "<author><name>Dr. Stella</name></author>"
            "<entry><title>Meteor shower tonight</title><link "
            "href=\"http://observatory.example.org/meteors\"/>"
            "<id>urn:uuid:1225c695-cfb8-4ebb-aaaa-80da344efa6a</id><updated>2005-11-15T13:45:00Z</updated>"
            "<summary>Look east after midnight.</summary></entry>"
            "<entry><title type=\"html\">Clouds &amp;lt;again&amp;gt;</title>"
            "<link href=\"http://observatory.example.org/clouds\"/><id>urn:uuid:clouds</id>"
            "<published>2005-11-14T22:00:00Z</published><updated>2005-11-14T22:10:00Z</updated>"
            "<content type=\"xhtml\"><div xmlns=\"http://www.w3.org/1999/xhtml\"><p>No "
            "viewing.</p></div></content>"
            "</entry></feed>",
            u"Observatory Log"_s,
            {u"Meteor shower tonight"_s, u"Clouds <again>"_s},
            u"15 Nov 2005"_s,
            u"13:45:00"_s}),
    [](const ::testing::TestParamInfo<Dialect>& info) { return std::string(info.param.name); });

TEST_F(FeedsIntegrationTest, MakerChannelsLoadFromTheShippedSite) {
    host.ChangeUser(nullptr);
    Activate(true);
    host.SetFirstRun(true);
    clock.Advance(RSSChannel::kFirstCheckMs);
    RSSChannel* news = profile.GetChannel(site.NewsURL());
    RSSChannel* help = profile.GetChannel(site.HelpURL());
    ASSERT_TRUE(PumpUntil([&] { return !news->Busy() && !help->Busy(); }));
    EXPECT_FALSE(news->LoadFailed());
    EXPECT_FALSE(help->LoadFailed());
    EXPECT_GT(news->ItemCount(), 0);
    EXPECT_GT(help->ItemCount(), 0);
    EXPECT_NE(news->LastModified(), RSSChannel::kNeverChecked) << "file addresses answer HEAD with a date";
    EXPECT_TRUE(help->IsViewerLoaded()) << "the first start opens the help channel";
    EXPECT_FALSE(host.FirstRun());
}

} // namespace
