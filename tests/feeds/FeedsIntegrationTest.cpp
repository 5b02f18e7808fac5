// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
// The whole road of a fetch against a real HTTP server on 127.0.0.1: the network client, the
// shipped namespace stylesheet, the channel and the item bank. The channels' timers run on a fake
// clock that the tests advance; the sockets are served by pumping the event loop until the
// awaited state is reached (bounded, so that a broken build fails instead of hanging).
#include "FeedsFixture.h"

#include "app/SharedHelpers.h"
#include "feeds/RSSChannel.h"
#include "feeds/colChannels.h"
#include "itembank/clsItemBank.h"
#include "itembank/modItemHandler.h"
#include "platform/XmlSecurity.h"
#include "support/EventPump.h"
#include "support/LocalHttpServer.h"

#include <QFile>
#include <functional>

using namespace Qt::StringLiterals;

namespace {

constexpr int kPumpLimitMs = 20000;

class FeedsIntegrationTest : public FeedsFixture {
protected:
    FeedsIntegrationTest() : FeedsFixture(false, Network::Real) {
        XmlSecurity::MapShippedDtds(home.GetPaths().ResourceFolder());
    }
    void SetUp() override {
        ASSERT_FALSE(namespaceTransform.IsNull());
        Activate();
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
        return Bank().SubChannelList(channel->URL(), QString(), QString());
    }
    QStringList Titles(const RSSChannel* channel) const {
        QStringList titles;
        for (const XmlNode& item : Items(channel)) {
            titles.append(GetItemTitle(item));
        }
        return titles;
    }
    // The channel was left as it was, marked with an error.
    void ExpectUnchanged(const RSSChannel* channel, const QString& path) {
        EXPECT_TRUE(channel->LoadFailed());
        EXPECT_EQ(channel->GetImage(), u"err"_s);
        EXPECT_EQ(channel->Title(), server.Url(path).toString());
        EXPECT_TRUE(Items(channel).empty());
    }

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
    server.ServeXml(u"/feed"_s, Rss20(u"Server News"_s, 3), kModified.toUtf8());
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
    ASSERT_EQ(Items(channel).size(), 4u);
    EXPECT_EQ(GetItemDate(Items(channel)[3]), u"15 Nov 2005"_s);
    EXPECT_EQ(GetItemTime(Items(channel)[3]), u"13:44:00"_s);
}

TEST_F(FeedsIntegrationTest, RedirectIsFollowed) {
    server.ServeXml(u"/new"_s, Rss20(u"Moved"_s, 1));
    server.Redirect(u"/old"_s, server.Url(u"/new"_s));
    RSSChannel* channel = Subscribe(u"/old"_s);
    ASSERT_TRUE(Check(channel));
    EXPECT_EQ(channel->Title(), u"Moved"_s);
    ASSERT_EQ(Items(channel).size(), 1u);
    EXPECT_EQ(GetAttributeText(Items(channel)[0], u"channel"_s), server.Url(u"/old"_s).toString());
}

// A server that hangs ends in the time-out; an answer held past it reaches nobody.
TEST_F(FeedsIntegrationTest, TimeOutEndsAHangingCheckAndTheLateAnswerIsIgnored) {
    LocalHttpServer::Route hang;
    hang.hang = true;
    server.Serve(u"/slow"_s, hang);
    RSSChannel* slow = Subscribe(u"/slow"_s);
    slow->LoadRSS();
    ASSERT_TRUE(PumpUntil([this] { return server.Requests().contains(u"HEAD /slow"_s); }));
    EXPECT_TRUE(slow->Busy());
    clock.Advance(RSSChannel::kTimeOutMs);
    EXPECT_FALSE(slow->Busy());
    ExpectUnchanged(slow, u"/slow"_s);
    EXPECT_EQ(host.Coordinator().ConnCount(), 0);

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
        Flush();
    }
    ExpectUnchanged(channel, u"/late"_s);
}

// A server that fails in any way, and feeds that try to read local files, reach other addresses
// or expand entities without end, leave the channel as it was.
TEST_F(FeedsIntegrationTest, FailingServersAndHostileFeedsLeaveTheChannelUnchanged) {
    home.Write(u"secret.txt"_s, "TOPSECRET");
    const QByteArray secretUrl = QUrl::fromLocalFile(home.File(u"secret.txt"_s)).toEncoded();
    server.Serve(u"/evil.dtd"_s,
                 LocalHttpServer::Route{200, "<!ENTITY remote \"REMOTE\">", {}, false, false, false});
    const QByteArray dtdUrl = server.Url(u"/evil.dtd"_s).toEncoded();
    QByteArray bomb = "<?xml version=\"1.0\"?><!DOCTYPE rss [<!ENTITY a0 \"lol\">";
    for (int i = 1; i <= 10; ++i) {
        bomb += "<!ENTITY a" + QByteArray::number(i) + " \"" +
                QByteArray("&a" + QByteArray::number(i - 1) + ";").repeated(10) + "\">";
    }
    bomb += "]><rss version=\"2.0\"><channel><title>&a10;</title></channel></rss>";
    LocalHttpServer::Route error;
    error.status = 500;
    error.body = Rss20(u"Error page"_s, 1);
    LocalHttpServer::Route reset;
    reset.reset = true;
    LocalHttpServer::Route oversized;
    oversized.body = Rss20(u"Huge"_s, 1) + QByteArray(HttpClient::kMaxResponseBytes, ' ');
    LocalHttpServer::Route notXml;
    notXml.body = "<html><body>Maintenance<br></body></html>";
    LocalHttpServer::Route laughs;
    laughs.body = bomb;
    for (const auto& [path, route] :
         {std::pair{u"/error"_s, error}, std::pair{u"/reset"_s, reset}, std::pair{u"/huge"_s, oversized},
          std::pair{u"/html"_s, notXml}, std::pair{u"/bomb"_s, laughs}}) {
        SCOPED_TRACE(path.toStdString());
        server.Serve(path, route);
        RSSChannel* channel = Subscribe(path);
        ASSERT_TRUE(Check(channel));
        ExpectUnchanged(channel, path);
        EXPECT_EQ(channel->ReloadInterval(), RSSChannel::kBackOffMs);
        EXPECT_EQ(host.Coordinator().ConnCount(), 0);
    }

    // Those that load have the outside references left empty.
    const QByteArray hostile[] = {
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
    for (const QByteArray& feed : hostile) {
        const QString path = u"/hostile%1"_s.arg(++n);
        server.ServeXml(path, feed);
        RSSChannel* channel = Subscribe(path);
        ASSERT_TRUE(Check(channel));
        EXPECT_FALSE(channel->Title().contains(u"TOPSECRET"_s)) << n;
    }
    EXPECT_FALSE(Bank().XMLDoc().ToBytes().contains("TOPSECRET"));
    EXPECT_FALSE(Bank().XMLDoc().ToBytes().contains("REMOTE"));
    EXPECT_EQ(server.Requests().filter(u"evil"_s), QStringList()) << "no other address is contacted";
}

// The namespace stylesheet's dialect files, served over HTTP: the channel title and the item
// titles are those that the stylesheet's .expected file lists; the first item's date and time
// (empty: today's) are given here.
TEST_F(FeedsIntegrationTest, EveryDialectTravelsTheWholeRoad) {
    const std::tuple<const char*, QString, QString> dialects[] = {
        {"rss090", QString(), QString()},
        {"rss091", u"05 Mar 2001"_s, u"09:00:00"_s}, // undated items carry the channel's date
        {"rss092", QString(), QString()},
        {"rss093", u"07 Mar 2003"_s, u"17:45:00"_s},
        {"rss094", u"31 Mar 2003"_s, u"08:00:00"_s},
        {"rss10", u"31 Aug 2004"_s, u"19:30:00"_s},
        {"rss20", u"15 Nov 2005"_s, u"13:45:00"_s},
        {"atom03", u"03 Oct 2004"_s, u"19:00:00"_s},
        {"atom10", u"28 Feb 2012"_s, u"09:15:00"_s}};
    for (const auto& [name, firstDate, firstTime] : dialects) {
        SCOPED_TRACE(name);
        const QString base = QStringLiteral(TAMSEL_TEST_DATA_DIR "/dialect-") + QString::fromLatin1(name);
        QFile feed(base + u".xml"_s);
        QFile expected(base + u".expected"_s);
        ASSERT_TRUE(feed.open(QIODevice::ReadOnly) && expected.open(QIODevice::ReadOnly));
        QStringList titles{QString()};
        for (const QString& line : QString::fromUtf8(expected.readAll()).split(u'\n')) {
            if (line == u"item"_s) {
                titles.append(QString());
            } else if (line.startsWith(u"title="_s) || line.startsWith(u"  title="_s)) {
                titles.last() = line.section(u'=', 1);
            }
        }
        const QString path = u"/"_s + QString::fromLatin1(name);
        server.ServeXml(path, feed.readAll(), kModified.toUtf8());
        RSSChannel* channel = Subscribe(path);
        ASSERT_TRUE(Check(channel));
        const QString channelTitle = titles.takeFirst();
        EXPECT_EQ(channel->Title(), channelTitle);
        EXPECT_EQ(Titles(channel), titles);
        const ItemList items = Items(channel);
        ASSERT_FALSE(items.empty());
        EXPECT_EQ(GetItemDate(items[0]),
                  firstDate.isEmpty() ? FormatItemDate(clock.Now().date()) : firstDate);
        if (!firstTime.isEmpty()) {
            EXPECT_EQ(GetItemTime(items[0]), firstTime);
        }
        for (const XmlNode& item : items) {
            EXPECT_EQ(GetChildText(item, u"channeltitle"_s), channelTitle);
        }
        EXPECT_EQ(host.NodeIcon(channel->URL()), u"newitems"_s);
    }
}

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
