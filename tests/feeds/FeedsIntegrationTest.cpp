// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
// The whole road of a fetch against a real HTTP server on 127.0.0.1: the network client, the
// shipped namespace stylesheet, the channel and the item bank. The channels' timers run on a fake
// clock that the tests advance; the sockets are served by pumping the event loop until the
// awaited state is reached (bounded, so that a broken build fails instead of hanging).
#include "FeedsFixture.h"

#include "platform/XmlSecurity.h"
#include "support/EventPump.h"
#include "support/LocalHttpServer.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int kPumpLimitMs = 20000;

class FeedsIntegrationTest : public FeedsFixture {
protected:
    FeedsIntegrationTest() : FeedsFixture(false, Network::Real) {
        XmlSecurity::MapShippedDtds(home.GetPaths().ResourceFolder());
    }
    void SetUp() override { Activate(); }

    static bool PumpUntil(const std::function<bool()>& done) { return ::PumpUntil(done, kPumpLimitMs); }
    RSSChannel* Subscribe(const QString& path) {
        return profile.Channels()->AddChannel(server.Url(path).toString());
    }
    // Runs a check now (as the reload command does) and waits until the channel is idle again.
    bool Check(RSSChannel* channel) {
        channel->LoadRSS();
        return PumpUntil([channel] { return !channel->Busy(); });
    }
    // The channel was left as it was, marked with an error.
    void ExpectUnchanged(const RSSChannel* channel, const QString& path) {
        EXPECT_TRUE(channel->LoadFailed());
        EXPECT_EQ(channel->GetImage(), u"err"_s);
        EXPECT_EQ(channel->Title(), server.Url(path).toString());
        EXPECT_TRUE(Items(channel->URL()).empty());
    }

    LocalHttpServer server;
};

// A known Last-Modified header spares the download; a redirect is followed, the items keep the
// address the user subscribed to.
TEST_F(FeedsIntegrationTest, LastModifiedSparesTheDownloadAndRedirectsAreFollowed) {
    server.ServeXml(u"/feed"_s, FeedWithItems(u"Server News"_s, 3), kModified.toUtf8());
    RSSChannel* channel = Subscribe(u"/feed"_s);
    ASSERT_TRUE(Check(channel));
    EXPECT_EQ(server.Requests(), (QStringList{u"HEAD /feed"_s, u"GET /feed"_s}));
    EXPECT_EQ(Titles(channel->URL()), (QStringList{u"Item 1"_s, u"Item 2"_s, u"Item 3"_s}));
    EXPECT_EQ(host.Coordinator().ConnCount(), 0);
    server.ClearRequests();
    ASSERT_TRUE(Check(channel));
    EXPECT_EQ(server.Requests(), QStringList{u"HEAD /feed"_s});

    server.ServeXml(u"/new"_s, ReadData(u"fetch-later-fields.xml"_s));
    server.Redirect(u"/old"_s, server.Url(u"/new"_s));
    RSSChannel* moved = Subscribe(u"/old"_s);
    ASSERT_TRUE(Check(moved));
    EXPECT_EQ(moved->Title(), u"Two"_s);
    EXPECT_EQ(Titles(moved->URL()), QStringList{u"A"_s});
}

// A server that answers with an error, a feed that expands entities without end, or a server that
// holds its answer past the time-out leaves the channel as it was, and the answer released later
// reaches nobody (the client's other failures are proven with the client, the channel's with a fake
// network). Feeds that try to read local files or reach other addresses (data/hostile-*.xml) load,
// with the outside references left empty. The held answer comes last: its time-out advances the
// clock, which starts the earlier channels' own checks.
TEST_F(FeedsIntegrationTest, FailingServersAndHostileFeedsLeaveTheChannelUnchanged) {
    const std::pair<QString, LocalHttpServer::Route> failing[] = {
        {u"/error"_s, {.status = 500, .body = FeedWithItems(u"Error page"_s, 1)}},
        {u"/bomb"_s, {.body = ReadData(u"laughs.xml"_s)}}};
    for (const auto& [path, route] : failing) {
        SCOPED_TRACE(path.toStdString());
        server.Serve(path, route);
        RSSChannel* channel = Subscribe(path);
        ASSERT_TRUE(Check(channel));
        ExpectUnchanged(channel, path);
        EXPECT_EQ(channel->ReloadInterval(), RSSChannel::kBackOffMs);
        EXPECT_EQ(host.Coordinator().ConnCount(), 0);
    }
    home.Write(u"secret.txt"_s, "TOPSECRET");
    server.Serve(u"/evil.dtd"_s, {.body = "<!ENTITY remote \"REMOTE\">"});
    for (const QString& file : DataFiles(u"hostile-*.xml"_s)) {
        SCOPED_TRACE(file.toStdString());
        server.ServeXml(u"/"_s + file,
                        ReadData(file)
                            .replace("@SECRET@", QUrl::fromLocalFile(home.File(u"secret.txt"_s)).toEncoded())
                            .replace("@DTD@", server.Url(u"/evil.dtd"_s).toEncoded()));
        RSSChannel* channel = Subscribe(u"/"_s + file);
        ASSERT_TRUE(Check(channel));
        EXPECT_FALSE(channel->LoadFailed());
        EXPECT_NE(channel->Title(), channel->URL()) << "the feed was loaded";
        EXPECT_FALSE(channel->Title().contains(u"TOPSECRET"_s));
    }
    EXPECT_FALSE(Bank().XMLDoc().ToBytes().contains("TOPSECRET"));
    EXPECT_FALSE(Bank().XMLDoc().ToBytes().contains("REMOTE"));
    EXPECT_EQ(server.Requests().filter(u"evil"_s), QStringList()) << "no other address is contacted";

    server.Serve(u"/late"_s, {.body = FeedWithItems(u"Too Late"_s, 2), .hold = true});
    RSSChannel* late = Subscribe(u"/late"_s);
    late->ForceLoadRSS();
    ASSERT_TRUE(PumpUntil([this] { return server.Requests().contains(u"GET /late"_s); }));
    clock.Advance(RSSChannel::kTimeOutMs);
    ASSERT_TRUE(late->LoadFailed());
    EXPECT_FALSE(late->Busy());
    server.ReleaseHeld();
    for (int round = 0; round < 20; ++round) {
        Flush();
    }
    ExpectUnchanged(late, u"/late"_s);
}

// The maker's channels load from the shipped site; the first start opens the help channel.
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
    EXPECT_TRUE(help->IsViewerLoaded());
    EXPECT_FALSE(host.FirstRun());
}

} // namespace
