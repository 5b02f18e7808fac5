// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/HeadlessHost.h"
#include "app/MakerSite.h"
#include "app/Services.h"
#include "app/SharedHelpers.h"
#include "app/clsProfile.h"
#include "app/colProfiles.h"
#include "feeds/RSSChannel.h"
#include "feeds/colChannels.h"
#include "groups/RSSGroup.h"
#include "groups/clsSpotlight.h"
#include "groups/colGroups.h"
#include "itembank/clsItemBank.h"
#include "platform/CRegSettings.h"
#include "platform/XmlDocument.h"
#include "platform/XsltStylesheet.h"
#include "support/FakeClock.h"
#include "support/FakeHttpClient.h"
#include "support/RecordingDesktop.h"
#include "support/TestHome.h"

#include <QCoreApplication>
#include <QTimer>
#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

namespace {

inline void PrintTo(const QString& text, std::ostream* os) {
    *os << '"' << text.toStdString() << '"';
}

// An active-able profile "Tester" held by a headless host, on a fake clock and a fake network
// that answers the Spotlight list as the test sets it.
class ProfileGroupsTest : public ::testing::Test {
protected:
    static inline const QString kProfile = u"Tester"_s;
    static inline const QString kA = u"https://a.example.org/feed"_s;
    static inline const QString kB = u"https://b.example.org/feed"_s;
    static inline const QString kC = u"https://c.example.org/feed"_s;

    ProfileGroupsTest() { profile.SetName(kProfile); }
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

    int ListLoads() const { return int(http.Requests().count(u"GET "_s + site.SpotlightURL())); }
    RSSGroup& Spotlight() const { return *profile.GetGroup(GroupName::Spotlight); }

    void StoreItem(const QString& url, const QString& title) {
        const XmlDocument doc = XmlDocument::Parse(
            QStringLiteral("<item channel=\"%1\" date=\"16 Nov 2026\" time=\"09:00:00\"><title>%2</title>"
                           "<read>false</read><flag>false</flag><delete>false</delete></item>")
                .arg(url, title)
                .toUtf8());
        ASSERT_TRUE(profile.AddItem(doc.DocumentElement()));
    }
    size_t ItemsOf(const QString& url) const {
        return profile.ItemBank()->SubChannelList(url, QString(), QString()).size();
    }

    TestHome home;
    FakeClock clock;
    CRegSettings settings{home.GetPaths()};
    FakeHttpClient http;
    RecordingDesktop desktop;
    XsltStylesheet namespaceTransform{
        XsltStylesheet::Load(home.GetPaths().ResourceFile(QStringLiteral("tamselns.xsl")))};
    MakerSite site{settings};
    HeadlessHost host{clock, namespaceTransform, site.HelpURL()};
    clsProfile profile{Services{clock, settings, http, desktop, home.GetPaths()}, host};
};

TEST_F(ProfileGroupsTest, ActivationLoadsEverythingAndDeactivationReleasesIt) {
    EXPECT_EQ(profile.GroupCount(), 0);
    EXPECT_EQ(profile.GetGroup(1), nullptr);
    EXPECT_EQ(profile.AddChannel(kA, GroupName::Spotlight), nullptr) << "inactive";

    host.ChangeUser(&profile);
    ASSERT_TRUE(profile.Active());
    ASSERT_NE(profile.ItemBank(), nullptr);
    EXPECT_EQ(profile.ChannelCount(), 9) << "the built-in channels";
    EXPECT_EQ(profile.GroupCount(), 3);
    EXPECT_EQ(profile.GetGroup(1)->Name(), GroupName::Tamsel);
    EXPECT_EQ(profile.GetGroup(u"spotlight"_s)->Name(true), u"Spotlight  (0)"_s);

    profile.Deactivate();
    EXPECT_FALSE(profile.Active());
    EXPECT_EQ(profile.ItemBank(), nullptr);
    EXPECT_EQ(profile.Groups(), nullptr);
    EXPECT_EQ(profile.ChannelCount(), 0);
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
    EXPECT_EQ(profile.GetGroup(u"Science"_s), nullptr) << "the file on disk wins, nothing was saved on the way";
}

TEST_F(ProfileGroupsTest, GroupAndChannelOperationsRaiseTheProfileEvents) {
    host.ChangeUser(&profile);
    // Each event as the group it names and the channel key.
    using Event = std::pair<RSSGroup*, QString>;
    std::vector<RSSGroup*> newGroups;
    std::vector<Event> newChannels;
    std::vector<Event> delChannels;
    std::vector<RSSGroup*> delGroups;
    QObject::connect(&profile, &clsProfile::NewGroup, [&](RSSGroup* group) { newGroups.push_back(group); });
    QObject::connect(&profile, &clsProfile::NewChannel,
                     [&](RSSGroup* group, const QString& key) { newChannels.emplace_back(group, key); });
    QObject::connect(&profile, &clsProfile::DelChannel,
                     [&](RSSGroup* group, const QString& key) { delChannels.emplace_back(group, key); });
    QObject::connect(&profile, &clsProfile::DelGroup, [&](RSSGroup* group) { delGroups.push_back(group); });

    ASSERT_TRUE(profile.AddGroup(u"Science"_s));
    RSSGroup* science = profile.GetGroup(u"Science"_s);
    EXPECT_EQ(newGroups, std::vector<RSSGroup*>{science});

    RSSChannel* channel = profile.AddChannel(kA, u"Science"_s);
    ASSERT_NE(channel, nullptr);
    EXPECT_EQ(newChannels, std::vector<Event>{Event(science, kA)});
    EXPECT_TRUE(channel->Busy()) << "the first fetch starts at once";

    EXPECT_EQ(profile.AddChannel(kA.toUpper(), u"Science"_s), channel) << "the subscribed channel is found";
    EXPECT_EQ(science->ChannelCount(), 1);
    EXPECT_EQ(profile.AddChannel(u"  "_s, u"Science"_s), nullptr);

    profile.DeleteChannel(u"Science"_s, kA);
    EXPECT_EQ(delChannels, std::vector<Event>{Event(science, kA)});
    EXPECT_EQ(profile.GetChannel(kA), channel) << "still subscribed";
    EXPECT_FALSE(profile.IsInGroup(kA));

    profile.AddChannel(kA, u"Science"_s);
    profile.DeleteGroup(u"Science"_s);
    EXPECT_EQ(delGroups, std::vector<RSSGroup*>{science});
    EXPECT_EQ(profile.GetGroup(u"Science"_s), nullptr);
    EXPECT_EQ(profile.GetChannel(kA), channel);
    profile.DeleteGroup(u"Nowhere"_s);
    EXPECT_EQ(delGroups.size(), 1u);
}

TEST_F(ProfileGroupsTest, RenameGroupRefusesANameTakenInAnotherCase) {
    host.ChangeUser(&profile);
    profile.AddGroup(u"Science"_s);
    profile.AddGroup(u"News"_s);
    EXPECT_FALSE(profile.RenameGroup(u"News"_s, u"SCIENCE"_s));
    EXPECT_TRUE(profile.RenameGroup(u"News"_s, u"World"_s));
    EXPECT_EQ(profile.GetGroup(5)->Name(), u"World"_s);
}

TEST_F(ProfileGroupsTest, RemoveChannelTakesItOutOfEveryGroupWithItsItems) {
    host.ChangeUser(&profile);
    profile.AddGroup(u"One"_s);
    profile.AddGroup(u"Two"_s);
    profile.AddChannel(kA, u"One"_s);
    profile.AddChannel(kA, u"Two"_s);
    profile.AddChannel(kB, u"Two"_s);
    StoreItem(kA, u"a1"_s);
    StoreItem(kB, u"b1"_s);

    profile.RemoveChannel(kA);
    EXPECT_EQ(profile.GetChannel(kA), nullptr);
    EXPECT_FALSE(profile.IsInGroup(kA));
    EXPECT_EQ(profile.GetGroup(u"One"_s)->ChannelCount(), 0);
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
    ASSERT_FALSE(groups.IsNull());
    const XmlDocument channels = XmlDocument::Load(folder + u"channels.xml"_s);
    ASSERT_FALSE(channels.IsNull());
    EXPECT_FALSE(groups.DocumentElement().SelectSingleNode(u"group[title='Kept'][channel='%1']"_s.arg(kA)).IsNull());
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
    ASSERT_EQ(Spotlight().ChannelCount(), 3);
    EXPECT_EQ(Spotlight().ChannelURL(0), kC);
    EXPECT_EQ(Spotlight().ChannelURL(2), kA);
    EXPECT_EQ(Spotlight().Name(true), u"Spotlight  (3)"_s);
    EXPECT_EQ(profile.ChannelCount(), 12);
    EXPECT_EQ(profile.GetChannel(kB)->Expire(), RSSChannel::kNewExpireDays);
    EXPECT_EQ(profile.GetChannel(kB)->Title(), u"t"_s) << "named as the list names it until fetched";
    EXPECT_EQ(profile.GetChannel(QString()), nullptr);
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
    ASSERT_EQ(Spotlight().ChannelCount(), 3);
    profile.AddGroup(u"Mine"_s);
    profile.AddChannel(kB, u"Mine"_s);
    StoreItem(kA, u"a1"_s);
    StoreItem(kB, u"b1"_s);

    ServeList({kC}, u"Tue, 17 Nov 2026 10:00:00 GMT"_s);
    clock.Advance(clsSpotlight::kCheckPeriodMs);
    Settle();
    ASSERT_EQ(ListLoads(), 2);
    EXPECT_EQ(Spotlight().ChannelCount(), 1);
    EXPECT_EQ(profile.GetChannel(kA), nullptr);
    EXPECT_EQ(ItemsOf(kA), 0u);
    ASSERT_NE(profile.GetChannel(kB), nullptr) << "also in a group of the user";
    EXPECT_EQ(ItemsOf(kB), 1u);
    EXPECT_FALSE(Spotlight().HasChannel(kB));
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
    EXPECT_EQ(Spotlight().ChannelCount(), 2);
    EXPECT_NE(profile.GetChannel(kA), nullptr);
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
