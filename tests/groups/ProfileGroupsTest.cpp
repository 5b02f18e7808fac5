// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/SharedHelpers.h"
#include "app/clsProfile.h"
#include "app/colProfiles.h"
#include "feeds/FeedsFixture.h"
#include "feeds/RSSChannel.h"
#include "groups/RSSGroup.h"
#include "groups/clsSpotlight.h"
#include "itembank/clsItemBank.h"
#include "platform/XmlDocument.h"

#include <QCoreApplication>
#include <QTimer>

using namespace Qt::Literals::StringLiterals;

namespace {

// The profile's groups, on a fake network that answers the Spotlight list as the test sets it.
class ProfileGroupsTest : public FeedsFixture {
protected:
    static inline const QString kA = u"https://a.example.org/feed"_s;
    static inline const QString kB = u"https://b.example.org/feed"_s;
    static inline const QString kC = u"https://c.example.org/feed"_s;

    ProfileGroupsTest() : FeedsFixture(true) {}
    ~ProfileGroupsTest() override {
        host.ChangeUser(nullptr);
        Settle();
    }

    // Runs queued events until the nested waits of the list reader have finished.
    static void Settle() {
        for (int i = 0; i < 5; ++i) {
            QCoreApplication::processEvents();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        }
    }

    // The list the maker's site serves from now on, with its Last-modified header.
    void ServeList(const QStringList& urls, const QString& lastModified) {
        QByteArray body = "<opml version=\"1.0\"><head><title>Spotlight</title></head><body>"
                          "<outline text=\"News\">";
        for (const QString& url : urls) {
            body += "<outline text=\"t\" xmlUrl=\"" + url.toUtf8() + "\"/>";
        }
        body += "</outline></body></opml>";
        http.AnswerAlways(site.SpotlightURL(), "HEAD", {{}, {{u"Last-Modified"_s, lastModified}}, false});
        http.AnswerAlways(site.SpotlightURL(), "GET", {body, {{u"Last-Modified"_s, lastModified}}, false});
    }

    // Activates the profile and lets the first Spotlight check run.
    void ActivateAndCheck() {
        host.ChangeUser(&profile);
        clock.Advance(clsSpotlight::kFirstCheckMs);
        Settle();
    }

    static QStringList Urls(const RSSGroup& group) {
        QStringList urls;
        for (int i = 0; i < group.ChannelCount(); ++i) {
            urls.append(group.ChannelURL(i));
        }
        return urls;
    }
    int ListLoads() const { return int(http.Requests().count(u"GET "_s + site.SpotlightURL())); }
    RSSGroup& Spotlight() const { return *profile.GetGroup(GroupName::Spotlight); }

    size_t ItemsOf(const QString& url) const {
        return Bank().SubChannelList(url, QString(), QString()).size();
    }
};

TEST_F(ProfileGroupsTest, ActivationLoadsEverythingAndDeactivationReleasesIt) {
    EXPECT_EQ(profile.AddChannel(kA, GroupName::Spotlight), nullptr) << "inactive";

    host.ChangeUser(&profile);
    ASSERT_NE(profile.ItemBank(), nullptr);
    EXPECT_EQ(profile.ChannelCount(), 9) << "the built-in channels";
    EXPECT_EQ(profile.GroupCount(), 3);

    profile.Deactivate();
    EXPECT_EQ(profile.ItemBank(), nullptr);
    EXPECT_EQ(profile.Groups(), nullptr);
    EXPECT_FALSE(profile.SaveGroupXML());
    clock.Advance(clsSpotlight::kFirstCheckMs);
    Settle();
    EXPECT_TRUE(http.Requests().isEmpty()) << "nothing of a released profile keeps running";
}

TEST_F(ProfileGroupsTest, SwitchingToTheActiveProfileReadsItsFilesAgain) {
    host.ChangeUser(&profile);
    ASSERT_TRUE(profile.AddGroup(u"Science"_s));
    ASSERT_TRUE(profile.SaveGroupXML());
    home.Write(u"profiles/Tester/groups.xml"_s,
               "<groups><group><title>Edited Outside</title><expand>true</expand></group></groups>");
    EXPECT_EQ(profile.GetGroup(u"Edited Outside"_s), nullptr);

    host.ChangeUser(&profile);
    EXPECT_NE(profile.GetGroup(u"Edited Outside"_s), nullptr);
    EXPECT_EQ(profile.GetGroup(u"Science"_s), nullptr)
        << "the file on disk wins, nothing was saved on the way";
}

TEST_F(ProfileGroupsTest, GroupAndChannelOperationsRaiseTheProfileEvents) {
    host.ChangeUser(&profile);
    QStringList events;
    QObject::connect(&profile, &clsProfile::NewGroup, [&](RSSGroup* g) { events << u"+"_s + g->Name(); });
    QObject::connect(&profile, &clsProfile::DelGroup, [&](RSSGroup* g) { events << u"-"_s + g->Name(); });
    QObject::connect(&profile, &clsProfile::NewChannel,
                     [&](RSSGroup* g, const QString& key) { events << g->Name() + u" +"_s + key; });
    QObject::connect(&profile, &clsProfile::DelChannel,
                     [&](RSSGroup* g, const QString& key) { events << g->Name() + u" -"_s + key; });

    ASSERT_TRUE(profile.AddGroup(u"Science"_s));
    RSSChannel* channel = profile.AddChannel(kA, u"Science"_s);
    ASSERT_NE(channel, nullptr);
    EXPECT_EQ(events, (QStringList{u"+Science"_s, u"Science +"_s + kA}));
    EXPECT_TRUE(channel->Busy()) << "the first fetch starts at once";
    EXPECT_EQ(profile.AddChannel(kA.toUpper(), u"Science"_s), channel) << "the subscribed channel is found";
    EXPECT_EQ(profile.GetGroup(u"Science"_s)->ChannelCount(), 1);

    events.clear();
    profile.DeleteChannel(u"Science"_s, kA);
    EXPECT_EQ(profile.GetChannel(kA), channel) << "still subscribed";
    EXPECT_FALSE(profile.IsInGroup(kA));
    profile.AddChannel(kA, u"Science"_s);
    profile.DeleteGroup(u"Science"_s);
    EXPECT_EQ(profile.GetGroup(u"Science"_s), nullptr);
    EXPECT_EQ(profile.GetChannel(kA), channel);
    EXPECT_EQ(events, (QStringList{u"Science -"_s + kA, u"Science +"_s + kA, u"-Science"_s}));
}

TEST_F(ProfileGroupsTest, RemoveChannelTakesItOutOfEveryGroupWithItsItems) {
    host.ChangeUser(&profile);
    profile.AddGroup(u"One"_s);
    profile.AddGroup(u"Two"_s);
    profile.AddChannel(kA, u"One"_s);
    profile.AddChannel(kA, u"Two"_s);
    profile.AddChannel(kB, u"Two"_s);
    StoreItems(kA, 1);
    StoreItems(kB, 1);

    profile.RemoveChannel(kA);
    EXPECT_EQ(profile.GetChannel(kA), nullptr);
    EXPECT_FALSE(profile.IsInGroup(kA));
    EXPECT_EQ(profile.GetGroup(u"Two"_s)->ChannelURL(0), kB);
    EXPECT_EQ(ItemsOf(kA), 0u);
    EXPECT_EQ(ItemsOf(kB), 1u);
}

TEST_F(ProfileGroupsTest, SaveAllWritesTheActiveProfilesGroupsAndChannels) {
    Services services{clock, settings, http, desktop, home.GetPaths()};
    colProfiles users(services, host);
    clsProfile* user = users.AddUser(u"Saver"_s, true, true);
    host.ChangeUser(user);
    user->AddGroup(u"Kept"_s);
    user->AddChannel(kA, u"Kept"_s);
    ASSERT_TRUE(users.SaveAllXML());

    const QString folder = home.GetPaths().ProfileFolder(u"Saver"_s) + u'/';
    const XmlDocument groups = XmlDocument::Load(folder + u"groups.xml"_s);
    const XmlDocument channels = XmlDocument::Load(folder + u"channels.xml"_s);
    ASSERT_FALSE(groups.IsNull() || channels.IsNull());
    EXPECT_FALSE(
        groups.DocumentElement().SelectSingleNode(u"group[title='Kept'][channel='%1']"_s.arg(kA)).IsNull());
    EXPECT_FALSE(channels.DocumentElement().SelectSingleNode(u"channel[url='%1']"_s.arg(kA)).IsNull());
    host.ChangeUser(nullptr);
}

TEST_F(ProfileGroupsTest, AFreshInstallationLoadsTheListIntoTheSpotlightGroup) {
    ServeList({kA, kB, QString(), kC}, u"Mon, 16 Nov 2026 10:00:00 GMT"_s);
    host.ChangeUser(&profile);
    clock.Advance(clsSpotlight::kFirstCheckMs - 1);
    Settle();
    EXPECT_EQ(ListLoads(), 0);
    clock.Advance(1);
    Settle();
    EXPECT_EQ(http.Requests().count(u"HEAD "_s + site.SpotlightURL()), 1);
    ASSERT_EQ(ListLoads(), 1);

    // The list is walked from its end; the category outline has no URL and adds nothing.
    EXPECT_EQ(Urls(Spotlight()), (QStringList{kC, kB, kA}));
    EXPECT_EQ(profile.ChannelCount(), 12);
    EXPECT_EQ(profile.GetChannel(kB)->Expire(), RSSChannel::kNewExpireDays);
    EXPECT_EQ(profile.GetChannel(kB)->Title(), u"t"_s) << "named as the list names it until fetched";
    const XmlDocument saved = XmlDocument::Load(home.GetPaths().ProfileFolder(kProfile) + u"/groups.xml"_s);
    EXPECT_FALSE(saved.IsNull()) << "adding through the host saves the groups";
}

TEST_F(ProfileGroupsTest, AnUnchangedListIsLoadedOnceAlsoAcrossRestarts) {
    const QString stamp = u"Mon, 16 Nov 2026 10:00:00 GMT"_s;
    ServeList({kA}, stamp);
    ActivateAndCheck();
    ASSERT_EQ(ListLoads(), 1);

    clock.Advance(clsSpotlight::kCheckPeriodMs);
    Settle();
    EXPECT_EQ(http.Requests().count(u"HEAD "_s + site.SpotlightURL()), 2);
    EXPECT_EQ(ListLoads(), 1) << "same Last-modified";

    host.ChangeUser(nullptr);
    EXPECT_EQ(settings.GetSetting(u"Spotlight"_s, kProfile + u"_lastmod"_s, QString()), QString())
        << "not kept while the group it was applied to was never saved";
    ActivateAndCheck();
    ASSERT_EQ(ListLoads(), 2);
    ASSERT_TRUE(profile.SaveProfileXML());
    host.ChangeUser(nullptr);
    EXPECT_EQ(settings.GetSetting(u"Spotlight"_s, kProfile + u"_lastmod"_s, QString()), stamp);
    ActivateAndCheck();
    EXPECT_EQ(ListLoads(), 2) << "kept for the next start";

    ServeList({kA, kB}, u"Tue, 17 Nov 2026 10:00:00 GMT"_s);
    clock.Advance(clsSpotlight::kCheckPeriodMs);
    Settle();
    EXPECT_EQ(ListLoads(), 3);
    EXPECT_TRUE(Spotlight().HasChannel(kB));
}

TEST_F(ProfileGroupsTest, AChannelThatLeftTheListGoesUnlessTheUserGroupedIt) {
    ServeList({kA, kB, kC}, u"Mon, 16 Nov 2026 10:00:00 GMT"_s);
    ActivateAndCheck();
    profile.AddGroup(u"Mine"_s);
    profile.AddChannel(kB, u"Mine"_s);
    StoreItems(kA, 1);
    StoreItems(kB, 1);

    ServeList({kC}, u"Tue, 17 Nov 2026 10:00:00 GMT"_s);
    clock.Advance(clsSpotlight::kCheckPeriodMs);
    Settle();
    ASSERT_EQ(ListLoads(), 2);
    EXPECT_EQ(Urls(Spotlight()), QStringList{kC});
    EXPECT_EQ(profile.GetChannel(kA), nullptr);
    EXPECT_EQ(ItemsOf(kA), 0u);
    ASSERT_NE(profile.GetChannel(kB), nullptr) << "also in a group of the user";
    EXPECT_EQ(ItemsOf(kB), 1u);
}

TEST_F(ProfileGroupsTest, AnUnreadableListLeavesTheGroupAsItIs) {
    ServeList({kA, kB}, u"Mon, 16 Nov 2026 10:00:00 GMT"_s);
    ActivateAndCheck();
    ASSERT_EQ(Spotlight().ChannelCount(), 2);

    http.AnswerAlways(site.SpotlightURL(), "HEAD", {{}, {}, true});
    http.AnswerAlways(site.SpotlightURL(), "GET", {"<opml><body>", {}, false});
    clock.Advance(clsSpotlight::kCheckPeriodMs);
    Settle();
    EXPECT_EQ(ListLoads(), 2) << "a failed check loads the list anyway";
    EXPECT_EQ(Urls(Spotlight()), (QStringList{kB, kA}));
    EXPECT_EQ(host.Popups().size(), 1);
}

TEST_F(ProfileGroupsTest, DeactivatingDuringTheListWaitEndsTheWait) {
    // The list request never answers: the reader waits in a nested loop.
    http.AnswerAlways(site.SpotlightURL(), "HEAD", {{}, {{u"Last-Modified"_s, u"x"_s}}, false});
    host.ChangeUser(&profile);
    clock.Advance(clsSpotlight::kFirstCheckMs);
    bool switched = false;
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, [&] {
        if (http.Waiting(site.SpotlightURL(), "GET") > 0) {
            poll.stop();
            host.ChangeUser(nullptr);
            switched = true;
        }
    });
    poll.start(0);
    Settle();
    EXPECT_TRUE(switched);
    EXPECT_EQ(ListLoads(), 1);
    EXPECT_FALSE(profile.Active());
}

} // namespace
