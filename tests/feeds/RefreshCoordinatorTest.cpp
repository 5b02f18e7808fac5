// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
// Refresh coordination: the four connection slots and the folder recount about a second after a
// real channel changed, through the headless host that shares this logic with the main window.
#include "FeedsFixture.h"

#include "app/RefreshCoordinator.h"
#include "app/SharedHelpers.h"
#include "feeds/RSSChannel.h"
#include "feeds/colChannels.h"
#include "itembank/clsItemBank.h"
#include "itembank/modItemHandler.h"

using namespace Qt::StringLiterals;

namespace {

class RefreshCoordinatorTest : public FeedsFixture {
protected:
    RefreshCoordinator& Coordinator() { return host.Coordinator(); }
    // Activates with the maker's channels and lets their first checks fail (next try in an
    // hour), so that nothing but the test's own changes is reported for a while.
    void ActivateQuietly() {
        Activate(true);
        clock.Advance(RSSChannel::kFirstCheckMs);
        for (const QString& url : {site.NewsURL(), site.HelpURL()}) {
            ASSERT_TRUE(http.Fail(url, "HEAD"));
            ASSERT_TRUE(http.Fail(url, "GET"));
        }
        clock.Advance(RefreshCoordinator::kFolderRecountMs);
        ASSERT_FALSE(Coordinator().RecountPending());
        host.ClearStateChanges();
    }
    // The folders and the help channel, in the order the recount redraws them.
    QStringList RecountOrder() const {
        return {FolderKey::Flagged, FolderKey::Today, FolderKey::Yesterday, FolderKey::Week,
                FolderKey::Deleted, FolderKey::Read,  FolderKey::Unread,    site.HelpURL()};
    }
};

TEST_F(RefreshCoordinatorTest, FourSlotsAndNeverBelowZero) {
    for (int i = 0; i < RefreshCoordinator::kConnectionSlots; ++i) {
        EXPECT_TRUE(Coordinator().RequestConnect());
    }
    EXPECT_FALSE(Coordinator().RequestConnect());
    for (int i = 0; i < 6; ++i) {
        Coordinator().ConnectRelease();
    }
    EXPECT_TRUE(Coordinator().RequestConnect());
    EXPECT_EQ(Coordinator().ConnCount(), 1);
}

TEST_F(RefreshCoordinatorTest, ChangesWithinASecondRecountOnceAboutASecondAfterTheFirst) {
    ActivateQuietly();
    RSSChannel* channel = profile.Channels()->AddChannel(kFeedUrl);
    channel->SetUpdate(0);
    channel->SetState();
    clock.Advance(RSSChannel::kFirstCheckMs);
    AnswerFullCheck(kFeedUrl, "<rss version=\"2.0\"><channel><title>Quiet</title></channel></rss>");
    clock.Advance(RefreshCoordinator::kFolderRecountMs);
    ASSERT_EQ(host.NodeIcon(kFeedUrl), u"read"_s);
    host.ClearStateChanges();

    channel->SetNewItems(true);
    clock.Advance(200);
    channel->SetNewItems(false);
    clock.Advance(300);
    channel->SetNewItems(true);
    EXPECT_TRUE(Coordinator().RecountPending());
    EXPECT_EQ(host.StateChanges(), QStringList(3, kFeedUrl));

    host.ClearStateChanges();
    clock.Advance(499);
    EXPECT_TRUE(host.StateChanges().isEmpty()) << "not before a second has passed since the first change";
    clock.Advance(1);
    EXPECT_EQ(host.StateChanges(), RecountOrder());
    EXPECT_FALSE(Coordinator().RecountPending()) << "the help channel's own change does not re-arm it";

    host.ClearStateChanges();
    clock.Advance(10000);
    EXPECT_TRUE(host.StateChanges().isEmpty()) << "one recount only";
}

TEST_F(RefreshCoordinatorTest, RecountReloadsTheFolderCounts) {
    Activate(true);
    RSSChannel* channel = profile.Channels()->AddChannel(kFeedUrl);
    profile.Channels()->RequestAllStatus();
    clock.Advance(1000);
    EXPECT_EQ(host.NodeText(FolderKey::Unread), u"Unread  (0)"_s);

    channel->ForceLoadRSS();
    ASSERT_TRUE(http.Complete(kFeedUrl, "GET", FeedWithItems(u"Ten"_s, 10)));
    EXPECT_EQ(host.NodeText(kFeedUrl), u"Ten  (10)"_s);
    EXPECT_EQ(host.NodeText(FolderKey::Unread), u"Unread  (0)"_s) << "folders wait for the recount";
    clock.Advance(RefreshCoordinator::kFolderRecountMs);
    EXPECT_EQ(host.NodeText(FolderKey::Unread), u"Unread  (10)"_s);
    EXPECT_EQ(host.NodeIcon(FolderKey::Unread), u"unread"_s);
}

// Only a shown change of one of the active profile's own channels arms the recount.
TEST_F(RefreshCoordinatorTest, FolderChangesAndReportsOfOthersDoNotArmTheRecount) {
    Activate(true);
    profile.Channels()->RequestAllStatus();
    clock.Advance(RefreshCoordinator::kFolderRecountMs);
    ASSERT_FALSE(Coordinator().RecountPending());
    profile.GetChannel(FolderKey::Today)->SetNewItems(true);
    EXPECT_EQ(host.NodeIcon(FolderKey::Today), u"newitems"_s);
    EXPECT_FALSE(Coordinator().RecountPending());
    profile.GetChannel(site.HelpURL())->SetState();
    EXPECT_FALSE(Coordinator().RecountPending()) << "a report that changes nothing shown";

    host.ClearStateChanges();
    auto outsider = NewChannel();
    outsider->SetState();
    RSSChannel* channel = profile.Channels()->AddChannel(kFeedUrl);
    channel->SetUsername(u"Someone else"_s);
    channel->SetNewItems(true);
    EXPECT_TRUE(host.StateChanges().isEmpty());
    EXPECT_TRUE(host.NodeText(kFeedUrl).isEmpty());
    EXPECT_FALSE(Coordinator().RecountPending());
    host.ChangeUser(nullptr);
    Coordinator().StateChange(kProfile, *outsider);
    EXPECT_FALSE(Coordinator().RecountPending());
}

TEST_F(RefreshCoordinatorTest, HostRecordsMessagesOfTheActiveProfileAndGroupedChannelsOnly) {
    host.PopupInfo(u"Error Reading OPML File !!!"_s, QString(), QString());
    host.PopupInfo(u"Of nobody"_s, kProfile, QString());
    Activate();
    host.PopupInfo(u"Of the active profile"_s, kProfile, QString());
    host.PopupInfo(u"Of another profile"_s, u"Other"_s, QString());
    host.PopupInfo(u"Of a channel in no group"_s, kProfile, kFeedUrl);
    profile.AddChannel(kFeedUrl, u"My Channels"_s);
    profile.AddGroup(u"My Channels"_s);
    profile.AddChannel(kFeedUrl, u"My Channels"_s);
    host.PopupInfo(u"Of a grouped channel"_s, kProfile, kFeedUrl);
    EXPECT_EQ(host.Popups(), (QStringList{u"Error Reading OPML File !!!"_s, u"Of the active profile"_s,
                                          u"Of a grouped channel"_s}));
}

} // namespace
