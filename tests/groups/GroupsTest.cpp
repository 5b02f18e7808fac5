// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/MakerSite.h"
#include "groups/RSSGroup.h"
#include "groups/colGroups.h"
#include "support/QStringPrinter.h"
#include "support/TestHome.h"

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

QStringList Urls(const RSSGroup& group) {
    QStringList urls;
    for (int i = 0; i < group.ChannelCount(); ++i) {
        urls.append(group.ChannelURL(i));
    }
    return urls;
}

QByteArray Data(const QString& name) {
    QFile file(QStringLiteral(TAMSEL_TEST_DATA_DIR "/") + name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

class GroupsTest : public ::testing::Test {
protected:
    TestHome home;
    Paths paths = home.GetPaths();
    MakerSite site{u"tamsel://site"_s};
    colGroups groups{paths, site};
};

} // namespace

TEST(RSSGroupTest, NamesCountsAndTheOrderAfterADeletion) {
    RSSGroup group;
    EXPECT_TRUE(group.CreateGroup(u"News"_s));
    for (const QString& url : {u"A"_s, u"B"_s, u"C"_s, u"B"_s}) {
        group.AddChannel(url);
    }
    EXPECT_EQ(group.Name(true), u"News  (3)"_s);
    group.DeleteChannel(u"A"_s);
    group.DeleteChannel(u"missing"_s);
    EXPECT_EQ(Urls(group), (QStringList{u"C"_s, u"B"_s}));
    // The maker's group and the folders' group show no count.
    for (const QString& name : {u"Tamsel"_s, u"All Items"_s}) {
        RSSGroup builtin;
        builtin.CreateGroup(name);
        builtin.AddChannel(u"x"_s);
        EXPECT_EQ(builtin.Name(true), name);
    }
}

// A fresh profile has the three built-ins with their channels; what it saves is
// exactly so.
TEST_F(GroupsTest, AFreshProfileHasTheBuiltInsRenamesKeepThePlaceAndSavesAreExact) {
    QSignalSpy newGroups(&groups, &colGroups::NewGroup);
    QSignalSpy newChannels(&groups, &colGroups::NewChannel);
    groups.init(u"Ann"_s);
    ASSERT_EQ(groups.GroupCount(), 3);
    EXPECT_EQ(groups.Group(2)->Name(true), u"Spotlight  (0)"_s);
    EXPECT_EQ(Urls(*groups.Group(1)),
              (QStringList{u"_tamsel/flagged"_s, site.NewsURL(), u"_tamsel/deleted"_s, site.HelpURL()}));
    EXPECT_EQ(Urls(*groups.Group(3)),
              (QStringList{u"_tamsel/today"_s, u"_tamsel/yesterday"_s, u"_tamsel/week"_s, u"_tamsel/unread"_s,
                           u"_tamsel/read"_s}));
    EXPECT_EQ(newGroups.count(), 3);
    EXPECT_EQ(newChannels.count(), 9);

    groups.AddGroup(u"News"_s);
    groups.AddGroup(u"Sport"_s);
    EXPECT_TRUE(groups.AddGroup(u"NEWS"_s));
    EXPECT_EQ(groups.GroupCount(), 5);
    EXPECT_TRUE(groups.Rename(u"News"_s, u"World"_s));
    EXPECT_FALSE(groups.Rename(u"World"_s, u"sport"_s));
    EXPECT_TRUE(groups.Rename(u"World"_s, u"WORLD"_s));
    EXPECT_TRUE(groups.Rename(u"WORLD"_s, u"My Channels"_s));
    EXPECT_EQ(groups.Group(4)->Name(), u"My Channels"_s);
    groups.Remove(u"sport"_s);
    EXPECT_EQ(groups.Group(u"Sport"_s), nullptr);
    groups.AssignChannel(u"my channels"_s, u"http://a/rss?x=1&y=2"_s);
    groups.Group(u"Spotlight"_s)->SetExpanded(false);
    ASSERT_TRUE(groups.SaveGroupXML());
    EXPECT_EQ(home.Read(u"profiles/Ann/groups.xml"_s), Data(u"groups-saved.xml"_s));
}

TEST_F(GroupsTest, SavedBuiltInsAndDuplicatesMergeAndABrokenFileIsKeptAside) {
    home.Write(u"profiles/Ann/groups.xml"_s, Data(u"groups-merged.xml"_s));
    groups.init(u"Ann"_s);
    ASSERT_EQ(groups.GroupCount(), 4);
    const RSSGroup* tamsel = groups.Group(u"Tamsel"_s);
    EXPECT_FALSE(tamsel->Expanded());
    EXPECT_EQ(Urls(*tamsel).last(), u"http://extra/rss"_s);
    EXPECT_EQ(tamsel->ChannelCount(), 5);
    const RSSGroup* news = groups.Group(4);
    EXPECT_EQ(news->Name(), u"News"_s);
    EXPECT_FALSE(news->Expanded()) << "\"False\" is not true";
    EXPECT_EQ(Urls(*news), (QStringList{u"http://a/rss"_s, u"http://b/rss"_s, u"http://c/rss"_s}));

    home.Write(u"profiles/Bob/groups.xml"_s, "<tamselgroups><group>");
    colGroups bob(paths, site);
    bob.init(u"Bob"_s);
    EXPECT_EQ(bob.GroupCount(), 3);
    EXPECT_EQ(QDir(home.File(u"profiles/Bob"_s)).entryList({u"groups.xml.damaged-*"_s}).size(), 1);
}
