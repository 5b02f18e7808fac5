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
#include "support/EventPump.h"
#include "support/FakeClock.h"
#include "support/LocalHttpServer.h"
#include "support/QStringPrinter.h"
#include "support/RecordingDesktop.h"
#include "support/TestHome.h"

#include <QCoreApplication>
#include <QFile>
#include <QTimer>
#include <functional>
#include <gtest/gtest.h>
#include <ostream>

using namespace Qt::StringLiterals;

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
    EXPECT_EQ(Titles(channel), (QStringList{u"Story 1"_s, u"Story 2"_s, u"Story 3"_s}));
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
    EXPECT_EQ(server.Requests().filter(u"evil"_s), QStringList()) << "no other address is contacted";
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

// The namespace stylesheet's dialect files, served over HTTP. The channel title and the item
// titles are those that the stylesheet's .expected file lists.
struct Dialect {
    const char* file;
    // Date and time of the first item; empty when it should carry today's.
    QString firstDate;
    QString firstTime;
};

void PrintTo(const Dialect& dialect, std::ostream* os) {
    *os << dialect.file;
}

// The channel title, then each item's title (empty for an untitled item), from an .expected file.
QStringList ExpectedTitles(const QString& file) {
    QFile expected(QStringLiteral(TAMSEL_TEST_DATA_DIR) + u'/' +
                   QString(file).replace(u".xml"_s, u".expected"_s));
    EXPECT_TRUE(expected.open(QIODevice::ReadOnly)) << file.toStdString();
    QStringList titles{QString()};
    for (const QString& line : QString::fromUtf8(expected.readAll()).split(u'\n')) {
        if (line == u"item"_s) {
            titles.append(QString());
        } else if (line.startsWith(u"title="_s) || line.startsWith(u"  title="_s)) {
            titles.last() = line.section(u'=', 1);
        }
    }
    return titles;
}

class DialectTest : public FeedsIntegrationTest, public ::testing::WithParamInterface<Dialect> {};

TEST_P(DialectTest, TravelsTheWholeRoad) {
    const Dialect& dialect = GetParam();
    QFile feed(QStringLiteral(TAMSEL_TEST_DATA_DIR) + u'/' + QString::fromLatin1(dialect.file));
    ASSERT_TRUE(feed.open(QIODevice::ReadOnly));
    server.ServeXml(u"/dialect"_s, feed.readAll(), kModified);
    RSSChannel* channel = Subscribe(u"/dialect"_s);
    ASSERT_TRUE(Check(channel));
    QStringList titles = ExpectedTitles(QString::fromLatin1(dialect.file));
    const QString channelTitle = titles.takeFirst();
    EXPECT_EQ(channel->Title(), channelTitle);
    EXPECT_EQ(Titles(channel), titles);
    const ItemList items = Items(channel);
    ASSERT_FALSE(items.empty());
    EXPECT_EQ(GetItemDate(items[0]),
              dialect.firstDate.isEmpty() ? FormatItemDate(clock.Now().date()) : dialect.firstDate);
    if (!dialect.firstTime.isEmpty()) {
        EXPECT_EQ(GetItemTime(items[0]), dialect.firstTime);
    }
    for (const XmlNode& item : items) {
        EXPECT_EQ(GetChildText(item, u"channeltitle"_s), channelTitle);
    }
    EXPECT_EQ(host.NodeIcon(channel->URL()), u"newitems"_s);
}

INSTANTIATE_TEST_SUITE_P(
    Feeds, DialectTest,
    ::testing::Values(Dialect{"dialect-rss090.xml", QString(), QString()},
                      // Undated items carry the channel's date.
                      Dialect{"dialect-rss091.xml", u"05 Mar 2001"_s, u"09:00:00"_s},
                      Dialect{"dialect-rss092.xml", QString(), QString()},
                      Dialect{"dialect-rss093.xml", u"07 Mar 2003"_s, u"17:45:00"_s},
                      Dialect{"dialect-rss094.xml", u"31 Mar 2003"_s, u"08:00:00"_s},
                      Dialect{"dialect-rss10.xml", u"31 Aug 2004"_s, u"19:30:00"_s},
                      Dialect{"dialect-rss20.xml", u"15 Nov 2005"_s, u"13:45:00"_s},
                      Dialect{"dialect-atom03.xml", u"03 Oct 2004"_s, u"19:00:00"_s},
                      Dialect{"dialect-atom10.xml", u"28 Feb 2012"_s, u"09:15:00"_s}),
    [](const ::testing::TestParamInfo<Dialect>& info) {
        return QString::fromLatin1(info.param.file).section(u'.', 0, 0).remove(u'-').toStdString();
    });

TEST_F(FeedsIntegrationTest, MakerChannelsLoadFromTheShippedSite) {
    host.ChangeUser(nullptr);
    Activate(true);
    host.SetFirstRun(true);
    clock.Advance(RSSChannel::kFirstCheckMs);
    RSSChannel* news = profile.GetChannel(site.NewsURL());
    RSSChannel* help = profile.GetChannel(site.HelpURL());
    ASSERT_TRUE(PumpUntil([&] { return !news->Busy() && !help->Busy(); }));
    EXPECT_GT(news->ItemCount(), 0);
    EXPECT_GT(help->ItemCount(), 0);
    EXPECT_NE(news->LastModified(), RSSChannel::kNeverChecked) << "file addresses answer HEAD with a date";
    EXPECT_TRUE(help->IsViewerLoaded()) << "the first start opens the help channel";
    EXPECT_FALSE(host.FirstRun());
}

} // namespace
