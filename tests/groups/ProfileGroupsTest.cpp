// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "feeds/FeedsFixture.h"
#include "groups/RSSGroup.h"
#include "groups/clsSpotlight.h"

#include <QTimer>

using namespace Qt::Literals::StringLiterals;

namespace {

// The profile's groups, on a fake network that answers the Spotlight list as the test sets it.
class ProfileGroupsTest : public FeedsFixture {
protected:
    static inline const QString kA = u"https://a.example.org/feed"_s;
    static inline const QString kB = u"https://b.example.org/feed"_s;

    ProfileGroupsTest() : FeedsFixture(true) {}
    ~ProfileGroupsTest() override {
        host.ChangeUser(nullptr);
        Settle();
    }

    // Runs queued events until the nested waits of the list reader have finished.
    static void Settle() {
        for (int i = 0; i < 5; ++i) {
            Flush();
        }
    }
    void Advance(qint64 ms) {
        clock.Advance(ms);
        Settle();
    }

    // The list the maker's site serves from now on (a file of data/), with its Last-modified header.
    void ServeList(const QString& file, const QString& lastModified) {
        http.AnswerAlways(site.SpotlightURL(), "HEAD", {{}, {{u"Last-Modified"_s, lastModified}}, false});
        http.AnswerAlways(site.SpotlightURL(), "GET",
                          {ReadData(file), {{u"Last-Modified"_s, lastModified}}, false});
    }
    // Deactivates the profile, activates it again and lets the first Spotlight check run.
    void Restart() {
        host.ChangeUser(nullptr);
        host.ChangeUser(&profile);
        Advance(clsSpotlight::kFirstCheckMs);
    }
    // The user's groups beyond the three built-ins and the Spotlight group, as "name: url url",
    // each channel with the number of its stored items; then the checks and loads of the list.
    QString State() const {
        QStringList groups;
        for (int index = 2; index <= profile.GroupCount(); ++index) {
            const RSSGroup& group = *profile.GetGroup(index);
            if (index == 3) {
                continue;
            }
            QString text = group.Name() + u':';
            for (int i = 0; i < group.ChannelCount(); ++i) {
                const QString url = group.ChannelURL(i);
                text += u' ' + url.mid(8, 1) + u'=' + QString::number(Items(url).size());
            }
            groups.append(text);
        }
        return groups.join(u"; "_s) +
               u"; checks %1, loads %2"_s.arg(http.Requests().count(u"HEAD "_s + site.SpotlightURL()))
                   .arg(http.Requests().count(u"GET "_s + site.SpotlightURL()));
    }
};

TEST_F(ProfileGroupsTest, GroupsAndChannelsChangeWithTheirEventsAndOnlyWhileActive) {
    EXPECT_EQ(profile.AddChannel(kA, GroupName::Spotlight), nullptr) << "inactive";
    host.ChangeUser(&profile);
    ASSERT_NE(profile.ItemBank(), nullptr);
    QStringList events;
    QObject::connect(&profile, &clsProfile::NewGroup, [&](RSSGroup* g) { events << u"+"_s + g->Name(); });
    QObject::connect(&profile, &clsProfile::DelGroup, [&](RSSGroup* g) { events << u"-"_s + g->Name(); });
    QObject::connect(&profile, &clsProfile::NewChannel,
                     [&](RSSGroup* g, const QString& key) { events << g->Name() + u" +"_s + key.mid(8, 1); });
    QObject::connect(&profile, &clsProfile::DelChannel,
                     [&](RSSGroup* g, const QString& key) { events << g->Name() + u" -"_s + key.mid(8, 1); });

    ASSERT_TRUE(profile.AddGroup(u"One"_s));
    RSSChannel* channel = profile.AddChannel(kA, u"One"_s);
    ASSERT_NE(channel, nullptr);
    EXPECT_TRUE(channel->Busy()) << "the first fetch starts at once";
    EXPECT_EQ(events, (QStringList{u"+One"_s, u"One +a"_s}));
    EXPECT_EQ(profile.AddChannel(kA.toUpper(), u"One"_s), channel) << "the subscribed channel is found";
    EXPECT_EQ(profile.GetGroup(u"One"_s)->ChannelCount(), 1);
    events.clear();
    profile.DeleteChannel(u"One"_s, kA);
    EXPECT_TRUE(profile.GetChannel(kA) == channel && !profile.IsInGroup(kA)) << "still subscribed";
    profile.AddChannel(kA, u"One"_s);
    profile.DeleteGroup(u"One"_s);
    EXPECT_EQ(profile.GetChannel(kA), channel);
    EXPECT_EQ(events, (QStringList{u"One -a"_s, u"One +a"_s, u"-One"_s}));

    // Removing a channel takes it out of every group, with its items.
    profile.AddGroup(u"One"_s);
    profile.AddGroup(u"Two"_s);
    profile.AddChannel(kA, u"One"_s);
    profile.AddChannel(kA, u"Two"_s);
    profile.AddChannel(kB, u"Two"_s);
    StoreItems(kA, 1);
    StoreItems(kB, 1);
    EXPECT_EQ(State(), u"Spotlight:; One: a=1; Two: a=1 b=1; checks 0, loads 0"_s);
    profile.RemoveChannel(kA);
    EXPECT_EQ(profile.GetChannel(kA), nullptr);
    EXPECT_EQ(State(), u"Spotlight:; One:; Two: b=1; checks 0, loads 0"_s);

    // Switching to the active profile reads its files again: the file on disk wins.
    ASSERT_TRUE(profile.SaveGroupXML());
    home.Write(u"profiles/Tester/groups.xml"_s,
               "<groups><group><title>Edited Outside</title><expand>true</expand></group></groups>");
    host.ChangeUser(&profile);
    EXPECT_EQ(State(), u"Spotlight:; Edited Outside:; checks 0, loads 0"_s);

    profile.Deactivate();
    EXPECT_TRUE(!profile.ItemBank() && !profile.Groups() && !profile.SaveGroupXML());
    http.ClearRequests();
    Advance(clsSpotlight::kFirstCheckMs);
    EXPECT_TRUE(http.Requests().isEmpty()) << "nothing of a released profile keeps running";
}

TEST_F(ProfileGroupsTest, TheSpotlightListFillsItsGroupWhenItChangesAndOnlyThen) {
    const QString stamp = u"Mon, 16 Nov 2026 10:00:00 GMT"_s;
    ServeList(u"spotlight-abc.xml"_s, stamp);
    host.ChangeUser(&profile);
    Advance(clsSpotlight::kFirstCheckMs - 1);
    EXPECT_EQ(State(), u"Spotlight:; checks 0, loads 0"_s);
    // A fresh installation loads the list, walked from its end; the category outline adds nothing.
    Advance(1);
    EXPECT_EQ(State(), u"Spotlight: c=0 b=0 a=0; checks 1, loads 1"_s);
    EXPECT_EQ(profile.ChannelCount(), 12);
    EXPECT_EQ(profile.GetChannel(kB)->Title(), u"t"_s) << "named as the list names it until fetched";
    EXPECT_FALSE(XmlDocument::Load(ProfileFolder() + u"/groups.xml"_s).IsNull()) << "adding saves the groups";
    Advance(clsSpotlight::kCheckPeriodMs);
    EXPECT_EQ(State(), u"Spotlight: c=0 b=0 a=0; checks 2, loads 1"_s) << "same Last-modified";

    // Across restarts the list's Last-modified is kept once the profile was saved.
    Restart();
    EXPECT_EQ(State(), u"Spotlight: c=0 b=0 a=0; checks 3, loads 2"_s);
    ASSERT_TRUE(profile.SaveProfileXML());
    Restart();
    EXPECT_EQ(settings.GetSetting(u"Spotlight"_s, kProfile + u"_lastmod"_s, QString()), stamp);
    EXPECT_EQ(State(), u"Spotlight: c=0 b=0 a=0; checks 4, loads 2"_s);

    // A channel that left the list goes with its items, unless the user grouped it.
    profile.AddGroup(u"Mine"_s);
    profile.AddChannel(kB, u"Mine"_s);
    StoreItems(kA, 1);
    StoreItems(kB, 1);
    ServeList(u"spotlight-c.xml"_s, u"Tue, 17 Nov 2026 10:00:00 GMT"_s);
    Advance(clsSpotlight::kCheckPeriodMs);
    EXPECT_EQ(State(), u"Spotlight: c=0; Mine: b=1; checks 5, loads 3"_s);
    EXPECT_TRUE(profile.GetChannel(kA) == nullptr && Items(kA).empty());

    // A failed check loads the list anyway; a list that cannot be read leaves the group as it is.
    http.AnswerAlways(site.SpotlightURL(), "HEAD", {{}, {}, true});
    http.AnswerAlways(site.SpotlightURL(), "GET", {"<opml><body>", {}, false});
    Advance(clsSpotlight::kCheckPeriodMs);
    EXPECT_EQ(State(), u"Spotlight: c=0; Mine: b=1; checks 6, loads 4"_s);
    EXPECT_EQ(host.Popups().size(), 1);
}

TEST_F(ProfileGroupsTest, DeactivatingDuringTheListWaitEndsTheWait) {
    // The list request never answers: the reader waits in a nested loop.
    http.AnswerAlways(site.SpotlightURL(), "HEAD", {{}, {{u"Last-Modified"_s, u"x"_s}}, false});
    host.ChangeUser(&profile);
    clock.Advance(clsSpotlight::kFirstCheckMs);
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, [&] {
        if (http.Waiting(site.SpotlightURL(), "GET") > 0) {
            poll.stop();
            host.ChangeUser(nullptr);
        }
    });
    poll.start(0);
    Settle();
    EXPECT_FALSE(profile.Active()) << "switched while the list was awaited";
    EXPECT_EQ(http.Requests().count(u"GET "_s + site.SpotlightURL()), 1);
}

} // namespace
