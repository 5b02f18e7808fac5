// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
// The fetch cycle of a channel on a fake clock and a fake network: the reload tick, connection
// slots, the HEAD check, the load, time-outs and back-off, and the stamping of items.
#include "FeedsFixture.h"

#include "platform/XmlSecurity.h"

#include <functional>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 kHour = 60 * RSSChannel::kMinuteMs;

class ChannelFetchTest : public FeedsFixture {
protected:
    void SetUp() override { Activate(); }
    // What the tests follow of a channel: title, icon, whether busy, the slots held in all, its
    // items in the bank and the period of its reload timer.
    QString State(RSSChannel& channel) {
        return u"%1: %2, %3, %4 slots, %5 items, every %6 ms"_s.arg(channel.Title(), channel.GetImage())
            .arg(channel.Busy() ? u"busy"_s : u"idle"_s)
            .arg(host.Coordinator().ConnCount())
            .arg(Items(channel.URL()).size())
            .arg(channel.ReloadInterval());
    }
};

// One channel's life: the first check 7 s after creation loads whatever the header says; later
// checks spare the load only for a Last-Modified header seen before; Update takes effect at the
// next tick, at most 35791 minutes (a period within that: FailedLoadsBackOffAndKeepFieldsAndItems);
// new items open the viewer of an OpenLink channel, and ticks while it is open wait.
TEST_F(ChannelFetchTest, TheHeadCheckDecidesTheLoad) {
    const QString modified = u"Tue, 15 Nov 2005 14:00:00 GMT"_s;
    const QStringList head{u"HEAD "_s + kFeedUrl};
    auto channel = NewChannel();
    clock.Advance(RSSChannel::kFirstCheckMs - 1);
    EXPECT_TRUE(http.Requests().isEmpty());
    clock.Advance(1);
    EXPECT_EQ(http.Requests(), head);
    EXPECT_EQ(State(*channel),
              u"http://feeds.example.org/news.xml: reload, busy, 1 slots, 0 items, every 3600000 ms"_s);
    ASSERT_TRUE(http.Complete(kFeedUrl, "HEAD", QByteArray(), modified));
    EXPECT_EQ(channel->LastModified(), modified) << "taken when the load starts";
    ASSERT_TRUE(http.Complete(kFeedUrl, "GET", ExampleFeed(), modified));
    EXPECT_EQ(State(*channel), u"Example News: newitems, idle, 0 slots, 2 items, every 3600000 ms"_s);
    channel->SetNewItems(false);

    http.ClearRequests();
    clock.Advance(kHour);
    ASSERT_TRUE(http.Complete(kFeedUrl, "HEAD", QByteArray(), modified));
    EXPECT_EQ(http.Requests(), head) << "no full load of an unchanged feed";
    EXPECT_EQ(State(*channel), u"Example News: unread, idle, 0 slots, 2 items, every 3600000 ms"_s);

    clock.Advance(kHour);
    AnswerFullCheck(kFeedUrl, ExampleFeed());
    EXPECT_EQ(channel->LastModified(), modified) << "a missing header keeps the one seen";
    clock.Advance(kHour);
    ASSERT_TRUE(http.Fail(kFeedUrl, "HEAD"));
    ASSERT_TRUE(http.Complete(kFeedUrl, "GET", ExampleFeed()));
    EXPECT_EQ(State(*channel), u"Example News: unread, idle, 0 slots, 2 items, every 3600000 ms"_s)
        << "the same items are stored once";

    channel->SetUpdate(1000000);
    EXPECT_EQ(channel->ReloadInterval(), quint32(kHour)) << "writing Update only stores it";
    clock.Advance(kHour);
    EXPECT_EQ(channel->ReloadInterval(), quint32(RSSChannel::kMaxUpdateMinutes) * RSSChannel::kMinuteMs);
    AnswerFullCheck(kFeedUrl, ExampleFeed());
    channel->SetUpdate(0);
    clock.Advance(qint64(RSSChannel::kMaxUpdateMinutes) * RSSChannel::kMinuteMs);
    AnswerFullCheck(kFeedUrl, ExampleFeed());
    http.ClearRequests();
    clock.Advance(48 * kHour);
    EXPECT_TRUE(http.Requests().isEmpty()) << "Update 0 never reloads";

    channel->SetOpenLink(true);
    channel->LoadRSS();
    EXPECT_EQ(http.Requests(), head) << "a reload by hand still checks";
    AnswerFullCheck(kFeedUrl, ReadData(u"example-more.xml"_s));
    const HeadlessHost::RecordedViewer* viewer = host.ViewerOf(*channel);
    ASSERT_TRUE(viewer && viewer->Visible()) << "new items show the viewer";
    EXPECT_EQ(viewer->Caption(), u"Example News"_s);
    EXPECT_FALSE(channel->NewItems()) << "opening the viewer clears NewItems";

    http.ClearRequests();
    channel->LoadRSS();
    EXPECT_EQ(channel->ReloadInterval(), RSSChannel::kViewerOpenDelayMs);
    clock.Advance(5 * RSSChannel::kViewerOpenDelayMs);
    EXPECT_TRUE(http.Requests().isEmpty()) << "ticks while the viewer is open only postpone";
    host.UnloadViewer(*channel);
    clock.Advance(RSSChannel::kViewerOpenDelayMs);
    EXPECT_EQ(http.Requests(), head) << "the first tick after closing checks";
    AnswerFullCheck(kFeedUrl, ReadData(u"example-more.xml"_s));
    EXPECT_FALSE(channel->IsViewerLoaded()) << "the same items again change nothing";
}

// Each way a load can fail, the time-out last, leaves the channel's fields and items as they were
// and backs off for an hour; the answer that comes after the time-out reaches nobody.
TEST_F(ChannelFetchTest, FailedLoadsBackOffAndKeepFieldsAndItems) {
    auto channel = NewChannel();
    channel->SetUpdate(10);
    clock.Advance(RSSChannel::kFirstCheckMs);
    AnswerFullCheck(kFeedUrl, ExampleFeed());
    const QByteArray huge = ExampleFeed() + QByteArray(HttpClient::kMaxResponseBytes, ' ');
    const std::pair<const char*, std::function<void()>> failures[] = {
        {"not well-formed", [&] { http.Complete(kFeedUrl, "GET", "<rss><channel><title>Broken"); }},
        {"empty body", [&] { http.Complete(kFeedUrl, "GET", QByteArray()); }},
        {"billion laughs", [&] { http.Complete(kFeedUrl, "GET", ReadData(u"laughs.xml"_s)); }},
        {"network error", [&] { http.Fail(kFeedUrl, "GET"); }},
        {"over the size cap", [&] { http.Complete(kFeedUrl, "GET", huge); }},
        // It runs from the start of the check, not from the start of the load.
        {"time-out", [&] {
             clock.Advance(RSSChannel::kTimeOutMs - 10000 - 1);
             EXPECT_TRUE(channel->Busy());
             clock.Advance(1);
         }}};
    quint32 wait = 10 * RSSChannel::kMinuteMs;
    for (const auto& [name, fail] : failures) {
        SCOPED_TRACE(name);
        clock.Advance(wait - 1);
        EXPECT_EQ(http.Waiting(), 0) << "the next check follows the period, or an hour after a failure";
        // The check, answered ten seconds later.
        clock.Advance(1 + 10000);
        ASSERT_TRUE(http.Complete(kFeedUrl, "HEAD", QByteArray()));
        EXPECT_FALSE(channel->LoadFailed()) << "the load starts fresh";
        fail();
        EXPECT_EQ(State(*channel), u"Example News: err, idle, 0 slots, 2 items, every 3600000 ms"_s);
        wait = RSSChannel::kBackOffMs;
    }
    // The dropped request has not been destroyed yet.
    http.Complete(kFeedUrl, "GET", ReadData(u"example-more.xml"_s));
    Flush();
    EXPECT_EQ(State(*channel), u"Example News: err, idle, 0 slots, 2 items, every 3600000 ms"_s);
    EXPECT_EQ(http.Waiting(), 0);
    clock.Advance(RSSChannel::kBackOffMs);
    EXPECT_EQ(channel->ReloadInterval(), 10u * RSSChannel::kMinuteMs) << "then the regular period again";
    EXPECT_TRUE(channel->LoadFailed()) << "a HEAD check alone does not clear the error";
}

// Four slots: a fifth channel due at the same time retries after one to three seconds; a destroyed
// channel gives its slot back; a forced load takes none and skips folders and busy channels.
TEST_F(ChannelFetchTest, ChannelsShareFourSlots) {
    std::vector<std::unique_ptr<RSSChannel>> channels;
    for (int i = 1; i <= 5; ++i) {
        channels.push_back(NewChannel(u"http://feeds.example.org/%1.xml"_s.arg(i)));
    }
    clock.Advance(RSSChannel::kFirstCheckMs);
    EXPECT_EQ(http.Waiting(), RefreshCoordinator::kConnectionSlots);
    EXPECT_EQ(State(*channels[4]),
              u"http://feeds.example.org/5.xml: read, idle, 4 slots, 0 items, every 2000 ms"_s);
    const std::pair<double, quint32> retries[] = {
        {0.0, 1000u}, {0.5, 2000u}, {0.99975, 3000u}, {0.12345, 1247u}};
    for (const auto& [r, expected] : retries) {
        randomValue = r;
        channels[4]->LoadRSS();
        EXPECT_EQ(channels[4]->ReloadInterval(), expected) << r;
    }

    channels[1].reset();
    EXPECT_EQ(http.Waiting(), 3) << "the destroyed channel's check is dropped, the fifth has none";
    EXPECT_FALSE(http.Complete(u"http://feeds.example.org/2.xml"_s, "HEAD", QByteArray()));
    AnswerFullCheck(u"http://feeds.example.org/1.xml"_s, "<rss><channel><title>One</title></channel></rss>");
    clock.Advance(1247);
    EXPECT_EQ(State(*channels[4]),
              u"http://feeds.example.org/5.xml: reload, busy, 3 slots, 0 items, every 3600000 ms"_s)
        << "both released slots came back, and one went to the fifth";

    http.ClearRequests();
    auto folder = NewChannel(FolderKey::Today);
    folder->ForceLoadRSS();
    folder->LoadRSS();
    EXPECT_EQ(State(*folder), u"_tamsel/today: read, idle, 3 slots, 0 items, every 3600000 ms"_s)
        << "a folder gives its slot back at once";
    auto channel = NewChannel();
    channel->ForceLoadRSS();
    channel->ForceLoadRSS();
    channel->LoadRSS();
    EXPECT_EQ(host.Coordinator().ConnCount(), 3)
        << "a forced load takes no slot, a tick while busy gives its slot back";
    EXPECT_EQ(http.Requests(), QStringList{u"GET "_s + kFeedUrl}) << "no second load and no HEAD while busy";
    ASSERT_TRUE(http.Complete(kFeedUrl, "GET", ExampleFeed()));
    EXPECT_EQ(State(*channel), u"Example News: newitems, idle, 3 slots, 2 items, every 3600000 ms"_s)
        << "its completion gives back nothing it did not take";
}

// The cached copy of the first channel made (id A01) loads when the channel is made.
TEST_F(ChannelFetchTest, LocalCopyLoadsWithoutSlotOrViewer) {
    home.Write(u"profiles/Tester/A01.xml"_s, ExampleFeed());
    auto channel = NewChannel();
    channel->SetOpenLink(true);
    ASSERT_TRUE(channel->LocalLoad());
    ASSERT_TRUE(
        http.Complete(QUrl::fromLocalFile(ProfileFolder() + u"A01.xml"_s).toString(), "GET", ExampleFeed()));
    EXPECT_FALSE(channel->LocalLoad());
    EXPECT_EQ(State(*channel), u"Example News: newitems, idle, 0 slots, 2 items, every 7000 ms"_s);
    EXPECT_FALSE(channel->IsViewerLoaded()) << "a local load never opens the viewer";
    EXPECT_FALSE(NewChannel(u"http://feeds.example.org/other.xml"_s)->LocalLoad()) << "no cached copy";
    EXPECT_EQ(http.Requests().size(), 1);
}

// Each data/fetch-*.xml, dialect-*.xml and hostile-*.xml feed, loaded by hand into a new channel
// at 17:04:02 on 5 Mar 2026, leaves the channel's record and its items as its .fetched file holds
// them: every item stamped with the channel's address, a date and time (its own, else the
// channel's, else now), the state children it lacks and the channel's title, before the bank sees
// it. Hostile feeds load with their references to local files (@SECRET@) and other addresses
// left empty. The ids count up from A01 through the LastID setting.
TEST_F(ChannelFetchTest, LoadedFeedsLeaveTheExpectedRecordAndItems) {
    clock.SetNow(QDateTime(QDate(2026, 3, 5), QTime(17, 4, 2)));
    XmlSecurity::MapShippedDtds(home.GetPaths().ResourceFolder());
    home.Write(u"secret.txt"_s, "TOPSECRET");
    const QByteArray secret = QUrl::fromLocalFile(home.File(u"secret.txt"_s)).toEncoded();
    const QStringList files =
        DataFiles(u"fetch-*.xml"_s) + DataFiles(u"dialect-*.xml"_s) + DataFiles(u"hostile-*.xml"_s);
    ASSERT_EQ(files.size(), 15);
    for (const QString& file : files) {
        SCOPED_TRACE(file.toStdString());
        const QString url = u"http://feeds.example.org/"_s + file;
        auto channel = NewChannel(url);
        channel->ForceLoadRSS();
        ASSERT_TRUE(http.Complete(url, "GET", ReadData(file).replace("@SECRET@", secret)));
        EXPECT_EQ(channel->ReloadInterval(), RSSChannel::kFirstCheckMs) << "a load does not set the period";
        XmlDocument items;
        items.SetDocumentElement(items.CreateElement(u"items"_s));
        for (const XmlNode& item : Items(url)) {
            items.DocumentElement().AppendChild(items.ImportNode(item));
        }
        EXPECT_EQ(QString::fromUtf8(ElementBytes(*channel) + items.ToBytes()),
                  QString::fromUtf8(ReadData(file.chopped(4) + u".fetched"_s)));
    }
    EXPECT_EQ(settings.GetSetting(u"Common"_s, u"LastID"_s, QString()), u"2575"_s) << "A0F in decimal";
}

// The rows of data/item-dates.txt.
TEST(ParseItemDateTest, ReadsTheFormsLeftByTheStylesheet) {
    ExpectTable("item-dates.txt", 17, [](const QString& text) {
        const QDateTime date = RSSChannel::ParseItemDate(text);
        return date.isValid() ? date.toString(u"yyyy-MM-dd HH:mm:ss"_s) : u"none"_s;
    });
}

} // namespace
