// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
// The fetch cycle of a channel on a fake clock and a fake network: the reload tick, connection
// slots, the HEAD check, the load, time-outs and back-off, and the stamping of items.
#include "FeedsFixture.h"

#include "app/RefreshCoordinator.h"
#include "app/SharedHelpers.h"
#include "feeds/RSSChannel.h"
#include "itembank/clsItemBank.h"
#include "itembank/modItemHandler.h"
#include "platform/XmlDocument.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <functional>

using namespace Qt::StringLiterals;

namespace {

class ChannelFetchTest : public FeedsFixture {
protected:
    void SetUp() override { Activate(); }

    int Slots() { return host.Coordinator().ConnCount(); }
    ItemList Items(const QString& url = kFeedUrl) const {
        return Bank().SubChannelList(url, QString(), QString());
    }
    int Count(const QString& request) const { return int(http.Requests().count(request)); }

    const QString head = QStringLiteral("HEAD ") + kFeedUrl;
    const QString get = QStringLiteral("GET ") + kFeedUrl;
};

TEST_F(ChannelFetchTest, FirstCheckFollowsSevenSecondsAfterCreationAndLoadsWhateverTheHeader) {
    auto channel = NewChannel();
    clock.Advance(RSSChannel::kFirstCheckMs - 1);
    EXPECT_TRUE(http.Requests().isEmpty());
    clock.Advance(1);
    EXPECT_EQ(http.Requests(), QStringList{head});
    EXPECT_EQ(channel->GetImage(), QStringLiteral("reload"));
    EXPECT_EQ(Slots(), 1);
    EXPECT_EQ(channel->ReloadInterval(), 60u * RSSChannel::kMinuteMs) << "then every Update minutes";
    ASSERT_TRUE(http.Complete(kFeedUrl, "HEAD", QByteArray(), kModified));
    EXPECT_EQ(http.Waiting(kFeedUrl, "GET"), 1) << "a never checked feed is loaded whatever its header says";
    EXPECT_EQ(channel->LastModified(), kModified) << "taken when the load starts";
    ASSERT_TRUE(http.Complete(kFeedUrl, "GET", ExampleFeed(), kModified));
    EXPECT_FALSE(channel->Busy());
    EXPECT_EQ(channel->Title(), QStringLiteral("Example News"));
    EXPECT_EQ(Items().size(), 2u);
    EXPECT_EQ(Slots(), 0);
    EXPECT_EQ(channel->GetImage(), QStringLiteral("newitems"));
}

// Only a Last-Modified header that was seen before spares the load; none, or a failed HEAD, loads.
TEST_F(ChannelFetchTest, TheHeadCheckDecidesTheLoad) {
    auto channel = NewChannel();
    clock.Advance(RSSChannel::kFirstCheckMs);
    AnswerFullCheck(kFeedUrl, ExampleFeed());
    clock.Advance(60 * RSSChannel::kMinuteMs);
    AnswerFullCheck(kFeedUrl, ExampleFeed());
    EXPECT_EQ(channel->LastModified(), RSSChannel::kNeverChecked);
    EXPECT_EQ(Items().size(), 2u) << "the same items are stored once";
    clock.Advance(60 * RSSChannel::kMinuteMs);
    AnswerFullCheck(kFeedUrl, ExampleFeed(), kModified);
    EXPECT_EQ(channel->LastModified(), kModified);
    channel->SetNewItems(false);
    http.ClearRequests();

    clock.Advance(60 * RSSChannel::kMinuteMs);
    EXPECT_EQ(channel->GetImage(), QStringLiteral("reload"));
    ASSERT_TRUE(http.Complete(kFeedUrl, "HEAD", QByteArray(), kModified));
    EXPECT_EQ(http.Requests(), QStringList{head}) << "no full load of an unchanged feed";
    EXPECT_FALSE(channel->Busy());
    EXPECT_EQ(Slots(), 0);
    EXPECT_EQ(channel->GetImage(), QStringLiteral("unread"));

    clock.Advance(60 * RSSChannel::kMinuteMs);
    ASSERT_TRUE(http.Fail(kFeedUrl, "HEAD"));
    ASSERT_TRUE(http.Complete(kFeedUrl, "GET", ExampleFeed()));
    EXPECT_EQ(Slots(), 0);
    clock.Advance(60 * RSSChannel::kMinuteMs);
    ASSERT_TRUE(
        http.Complete(kFeedUrl, "HEAD", QByteArray(), QStringLiteral("Wed, 16 Nov 2005 09:00:00 GMT")));
    EXPECT_EQ(Count(get), 2) << "a changed header loads";
    EXPECT_EQ(channel->LastModified(), QStringLiteral("Wed, 16 Nov 2005 09:00:00 GMT"));
}

TEST_F(ChannelFetchTest, TimeOutMarksErrorBacksOffAndIgnoresTheLateAnswer) {
    auto channel = NewChannel();
    channel->SetUpdate(10);
    clock.Advance(RSSChannel::kFirstCheckMs);
    EXPECT_EQ(channel->ReloadInterval(), 10u * RSSChannel::kMinuteMs);
    clock.Advance(10000);
    ASSERT_TRUE(http.Complete(kFeedUrl, "HEAD", QByteArray()));
    // The time-out runs from the start of the check, not from the start of the load.
    clock.Advance(RSSChannel::kTimeOutMs - 10000 - 1);
    EXPECT_TRUE(channel->Busy());
    clock.Advance(1);
    EXPECT_FALSE(channel->Busy());
    EXPECT_EQ(channel->GetImage(), QStringLiteral("err"));
    EXPECT_EQ(channel->ReloadInterval(), RSSChannel::kBackOffMs);
    EXPECT_EQ(Slots(), 0);

    // The dropped request has not been destroyed yet: its answer reaches nobody.
    http.Complete(kFeedUrl, "GET", ExampleFeed());
    Flush();
    EXPECT_TRUE(channel->LoadFailed());
    EXPECT_EQ(channel->Title(), kFeedUrl);
    EXPECT_TRUE(Items().empty());
    EXPECT_EQ(http.Waiting(), 0);

    http.ClearRequests();
    clock.Advance(RSSChannel::kBackOffMs - 1);
    EXPECT_TRUE(http.Requests().isEmpty()) << "not at the regular ten minutes";
    clock.Advance(1);
    EXPECT_EQ(http.Requests(), QStringList{head}) << "next try one hour after the time-out";
    EXPECT_EQ(channel->ReloadInterval(), 10u * RSSChannel::kMinuteMs) << "then the regular period again";
    EXPECT_TRUE(channel->LoadFailed()) << "a HEAD check alone does not clear the error";
    ASSERT_TRUE(http.Complete(kFeedUrl, "HEAD", QByteArray()));
    EXPECT_FALSE(channel->LoadFailed()) << "the next load starts fresh";
}

// Each way a load can fail leaves the channel's fields and items as they were.
TEST_F(ChannelFetchTest, FailedLoadsKeepFieldsAndItems) {
    struct Case {
        const char* name;
        std::function<void(FakeHttpClient&)> answer;
    };
    const std::vector<Case> cases = {
        {"not well-formed",
         [](FakeHttpClient& http) { http.Complete(kFeedUrl, "GET", "<rss><channel><title>Broken"); }},
        {"empty body", [](FakeHttpClient& http) { http.Complete(kFeedUrl, "GET", QByteArray()); }},
        {"network error", [](FakeHttpClient& http) { http.Fail(kFeedUrl, "GET"); }},
        {"over the size cap",
         [](FakeHttpClient& http) {
             QByteArray big = FeedWithItems(QStringLiteral("Huge"), 1);
             big.append(QByteArray(HttpClient::kMaxResponseBytes, ' '));
             http.Complete(kFeedUrl, "GET", big);
         }},
    };
    for (const Case& failure : cases) {
        SCOPED_TRACE(failure.name);
        auto channel = NewChannel();
        channel->SetUpdate(10);
        clock.Advance(RSSChannel::kFirstCheckMs);
        AnswerFullCheck(kFeedUrl, ExampleFeed());
        ASSERT_EQ(Items().size(), 2u);

        clock.Advance(10 * RSSChannel::kMinuteMs);
        ASSERT_TRUE(http.Complete(kFeedUrl, "HEAD", QByteArray()));
        failure.answer(http);
        EXPECT_FALSE(channel->Busy());
        EXPECT_EQ(channel->GetImage(), QStringLiteral("err"));
        EXPECT_EQ(channel->ReloadInterval(), RSSChannel::kBackOffMs);
        EXPECT_EQ(channel->Title(), QStringLiteral("Example News"));
        EXPECT_EQ(Items().size(), 2u);
        EXPECT_EQ(Slots(), 0);
        channel->KillMe();
        channel.reset();
        Flush();
    }
}

TEST_F(ChannelFetchTest, FiveChannelsDueAtOnceGetFourSlots) {
    std::vector<std::unique_ptr<RSSChannel>> channels;
    for (int i = 1; i <= 5; ++i) {
        channels.push_back(NewChannel(QStringLiteral("http://feeds.example.org/%1.xml").arg(i)));
    }
    randomValue = 0.25;
    clock.Advance(RSSChannel::kFirstCheckMs);
    EXPECT_EQ(Slots(), RefreshCoordinator::kConnectionSlots);
    EXPECT_EQ(http.Waiting(), 4);
    EXPECT_FALSE(channels[4]->Busy());
    EXPECT_EQ(channels[4]->ReloadInterval(), 1500u) << "1000 + 0.25 x 2000 ms";

    clock.Advance(1500);
    EXPECT_FALSE(channels[4]->Busy()) << "still no free slot";
    randomValue = 0.999;
    EXPECT_EQ(channels[4]->ReloadInterval(), 1500u);
    clock.Advance(1500);
    EXPECT_EQ(channels[4]->ReloadInterval(), 2998u);

    AnswerFullCheck(QStringLiteral("http://feeds.example.org/1.xml"), ExampleFeed());
    EXPECT_EQ(Slots(), 3);
    clock.Advance(2998);
    EXPECT_TRUE(channels[4]->Busy()) << "the released slot went to the fifth";
    EXPECT_EQ(Slots(), 4);
    EXPECT_EQ(channels[4]->ReloadInterval(), 60u * RSSChannel::kMinuteMs);
}

TEST_F(ChannelFetchTest, RetryDelayCoversOneToThreeSeconds) {
    for (int slot = 0; slot < 4; ++slot) {
        ASSERT_TRUE(host.RequestConnect());
    }
    auto channel = NewChannel();
    const std::pair<double, quint32> cases[] = {
        {0.0, 1000u}, {0.5, 2000u}, {0.99975, 3000u}, {0.12345, 1247u}};
    for (const auto& [r, expected] : cases) {
        randomValue = r;
        channel->LoadRSS();
        EXPECT_EQ(channel->ReloadInterval(), expected) << r;
    }
    EXPECT_TRUE(http.Requests().isEmpty());
}

TEST_F(ChannelFetchTest, TicksWhileTheViewerIsOpenOnlyPostpone) {
    auto channel = NewChannel();
    channel->CreateChannelView(true);
    ASSERT_TRUE(channel->IsViewerLoaded());
    clock.Advance(RSSChannel::kFirstCheckMs);
    EXPECT_EQ(channel->ReloadInterval(), RSSChannel::kViewerOpenDelayMs);
    clock.Advance(5 * RSSChannel::kViewerOpenDelayMs);
    EXPECT_TRUE(http.Requests().isEmpty());
    EXPECT_EQ(Slots(), 0);

    host.UnloadViewer(*channel);
    clock.Advance(RSSChannel::kViewerOpenDelayMs);
    EXPECT_EQ(http.Requests(), QStringList{head}) << "the first tick after closing checks";
}

TEST_F(ChannelFetchTest, UpdateTakesEffectAtTheNextTickIsCappedAndZeroNeverReloads) {
    auto channel = NewChannel();
    channel->SetUpdate(5);
    EXPECT_EQ(channel->ReloadInterval(), RSSChannel::kFirstCheckMs) << "writing Update only stores it";
    clock.Advance(RSSChannel::kFirstCheckMs);
    EXPECT_EQ(channel->ReloadInterval(), 5u * RSSChannel::kMinuteMs);
    AnswerFullCheck(kFeedUrl, ExampleFeed());
    channel->SetUpdate(1000000);
    clock.Advance(5 * RSSChannel::kMinuteMs);
    EXPECT_EQ(channel->ReloadInterval(), quint32(RSSChannel::kMaxUpdateMinutes) * RSSChannel::kMinuteMs);
    AnswerFullCheck(kFeedUrl, ExampleFeed());

    channel->SetUpdate(0);
    clock.Advance(quint32(RSSChannel::kMaxUpdateMinutes) * RSSChannel::kMinuteMs);
    AnswerFullCheck(kFeedUrl, ExampleFeed());
    EXPECT_EQ(channel->ReloadInterval(), 0u);
    clock.Advance(48LL * 3600 * 1000);
    EXPECT_EQ(Count(head), 3);
    channel->LoadRSS();
    EXPECT_EQ(Count(head), 4) << "a reload by hand still checks";
}

TEST_F(ChannelFetchTest, ForcedLoadsTakeNoSlotAndSkipFoldersAndBusyChannels) {
    auto folder = NewChannel(FolderKey::Today);
    folder->ForceLoadRSS();
    folder->LoadRSS();
    EXPECT_TRUE(http.Requests().isEmpty());
    EXPECT_FALSE(folder->Busy());
    EXPECT_EQ(Slots(), 0) << "a folder gives its slot back at once";

    auto channel = NewChannel();
    channel->ForceLoadRSS();
    channel->ForceLoadRSS();
    channel->LoadRSS();
    EXPECT_EQ(Slots(), 0) << "a forced load takes no slot, a tick while busy gives its slot back";
    EXPECT_EQ(http.Requests(), QStringList{get}) << "no second load and no HEAD check while busy";
    // Its completion gives back nothing it did not take: other channels keep their slots.
    ASSERT_TRUE(host.RequestConnect());
    ASSERT_TRUE(http.Complete(kFeedUrl, "GET", ExampleFeed()));
    EXPECT_EQ(Slots(), 1);
    EXPECT_EQ(Items().size(), 2u);
}

TEST_F(ChannelFetchTest, DestroyedChannelDropsItsRequestAndSlot) {
    auto channel = NewChannel();
    clock.Advance(RSSChannel::kFirstCheckMs);
    ASSERT_EQ(Slots(), 1);
    channel.reset();
    EXPECT_EQ(Slots(), 0);
    EXPECT_EQ(http.Waiting(), 0);
    EXPECT_FALSE(http.Complete(kFeedUrl, "HEAD", QByteArray()));
}

TEST_F(ChannelFetchTest, LocalCopyLoadsWithoutSlotOrViewer) {
    auto channel = std::make_unique<RSSChannel>(ChannelServices());
    channel->CreateRSS(kFeedUrl);
    channel->SetUsername(kProfile);
    channel->SetOpenLink(true);
    home.Write(QStringLiteral("profiles/Tester/") + channel->ID() + QStringLiteral(".xml"), ExampleFeed());
    channel->LoadLocal(ProfileFolder());
    ASSERT_TRUE(channel->LocalLoad());
    EXPECT_TRUE(channel->Busy());
    const QString local =
        QUrl::fromLocalFile(ProfileFolder() + channel->ID() + QStringLiteral(".xml")).toString();
    EXPECT_EQ(http.Requests(), QStringList{QStringLiteral("GET ") + local});
    ASSERT_TRUE(http.Complete(local, "GET", ExampleFeed()));
    EXPECT_FALSE(channel->LocalLoad());
    EXPECT_EQ(Items().size(), 2u);
    EXPECT_EQ(Slots(), 0);
    EXPECT_FALSE(channel->IsViewerLoaded()) << "a local load never opens the viewer";

    auto missing = NewChannel(QStringLiteral("http://feeds.example.org/other.xml"));
    EXPECT_FALSE(missing->LocalLoad());
    EXPECT_EQ(http.Requests().size(), 1) << "no cached copy, no load";
}

TEST_F(ChannelFetchTest, OpenLinkOpensTheViewerWhenItemsChanged) {
    auto channel = NewChannel();
    channel->SetOpenLink(true);
    clock.Advance(RSSChannel::kFirstCheckMs);
    AnswerFullCheck(kFeedUrl, ExampleFeed());
    HeadlessHost::RecordedViewer* viewer = host.ViewerOf(*channel);
    ASSERT_NE(viewer, nullptr);
    EXPECT_TRUE(viewer->Visible());
    EXPECT_EQ(viewer->Caption(), QStringLiteral("Example News"));
    EXPECT_FALSE(channel->NewItems()) << "opening the viewer clears NewItems";

    host.UnloadViewer(*channel);
    clock.Advance(60 * RSSChannel::kMinuteMs);
    AnswerFullCheck(kFeedUrl, ExampleFeed());
    EXPECT_FALSE(channel->IsViewerLoaded()) << "the same items again change nothing";
}

// Each data/fetch-*.xml feed, loaded by hand into a new channel at 17:04:02 on 5 Mar 2026, leaves
// the channel's record and its items as its .expected file holds them: every item stamped with
// the channel's address, a date and time (its own, else the channel's, else now), the state
// children it lacks and the channel's title, before the bank sees it.
TEST_F(ChannelFetchTest, LoadedFeedsLeaveTheExpectedRecordAndItems) {
    clock.SetNow(QDateTime(QDate(2026, 3, 5), QTime(17, 4, 2)));
    const QDir data(QStringLiteral(TAMSEL_TEST_DATA_DIR));
    const QStringList files = data.entryList({u"fetch-*.xml"_s}, QDir::Files, QDir::Name);
    ASSERT_GE(files.size(), 2);
    for (const QString& file : files) {
        SCOPED_TRACE(file.toStdString());
        QFile feed(data.filePath(file));
        QFile expected(data.filePath(file.chopped(4) + u".expected"_s));
        ASSERT_TRUE(feed.open(QIODevice::ReadOnly) && expected.open(QIODevice::ReadOnly));
        const QString url = u"http://feeds.example.org/"_s + file;
        auto channel = NewChannel(url);
        channel->ForceLoadRSS();
        ASSERT_TRUE(http.Complete(url, "GET", feed.readAll()));
        EXPECT_EQ(channel->ReloadInterval(), RSSChannel::kFirstCheckMs) << "a load does not set the period";
        XmlDocument record;
        record.SetDocumentElement(channel->SaveXML(record));
        XmlDocument items;
        items.SetDocumentElement(items.CreateElement(u"items"_s));
        for (const XmlNode& item : Items(url)) {
            items.DocumentElement().AppendChild(items.ImportNode(item));
        }
        EXPECT_EQ(QString::fromUtf8(record.ToBytes() + items.ToBytes()),
                  QString::fromUtf8(expected.readAll()));
    }
}

// The forms that the namespace stylesheet leaves, and what the reader must refuse.
TEST(ParseItemDateTest, ReadsTheFormsLeftByTheStylesheet) {
    const std::pair<const char*, QDateTime> cases[] = {
        {"Tue, 15 Nov 2005 13:45:00 GMT", QDateTime(QDate(2005, 11, 15), QTime(13, 45))},
        {"Tue, 15 Nov 2005 13:45:00 +0200", QDateTime(QDate(2005, 11, 15), QTime(13, 45))},
        {"Tue, 1 Nov 2005 13:45:00 GMT", QDateTime(QDate(2005, 11, 1), QTime(13, 45))},
        {"Tue, 15 November 2005 13:45:00 GMT", QDateTime(QDate(2005, 11, 15), QTime(13, 45))},
        {"Tue, 15 nov 2005 13:45 GMT", QDateTime(QDate(2005, 11, 15), QTime(13, 45))},
        {"Tue, 15 Nov 2005", QDateTime(QDate(2005, 11, 15), QTime(0, 0))},
        {"Sat, 05 Mar 05 07:08:09 GMT", QDateTime(QDate(2005, 3, 5), QTime(7, 8, 9))},
        {"Mon, 29 Feb 2016 23:59:59 GMT", QDateTime(QDate(2016, 2, 29), QTime(23, 59, 59))},
        {"Tue, 31 Feb 2005 10:00:00 GMT", {}},
        {"Tue, 15 Nov 2005 25:00:00 GMT", {}},
        {"Tue, 15 Foo 2005 13:45:00 GMT", {}},
        {"2005-11-15T13:45:00Z", {}},
        {"15 Nov 2005 13:45:00", {}},
        {"short", {}},
        {"", {}},
    };
    for (const auto& [text, expected] : cases) {
        const QDateTime parsed = RSSChannel::ParseItemDate(QString::fromUtf8(text));
        EXPECT_EQ(parsed.isValid(), expected.isValid()) << text;
        if (expected.isValid()) {
            EXPECT_EQ(parsed.date(), expected.date()) << text;
            EXPECT_EQ(parsed.time(), expected.time()) << text;
        }
    }
}

} // namespace
