// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/MakerSite.h"
#include "groups/RSSGroup.h"
#include "groups/colGroups.h"
#include "support/TestHome.h"

#include <QDir>
#include <QSignalSpy>
#include <gtest/gtest.h>

namespace {

QStringList Urls(const RSSGroup& group) {
    QStringList urls;
    for (int i = 0; i < group.ChannelCount(); ++i) {
        urls.append(group.ChannelURL(i));
    }
    return urls;
}

class GroupsTest : public ::testing::Test {
protected:
    TestHome home;
    Paths paths = home.GetPaths();
    MakerSite site{QStringLiteral("tamsel://site")};
    colGroups groups{paths, site};
};

} // namespace

TEST(RSSGroupTest, NamesCountsAndTheOrderAfterADeletion) {
    RSSGroup group;
    EXPECT_TRUE(group.CreateGroup(QStringLiteral("News")));
    EXPECT_TRUE(group.Expanded());
    for (const char* url : {"A", "B", "C", "B"}) {
        group.AddChannel(QString::fromLatin1(url));
    }
    EXPECT_EQ(group.ChannelCount(), 3);
    EXPECT_EQ(group.Name(true), QStringLiteral("News  (3)"));
    EXPECT_EQ(group.Name(false), QStringLiteral("News"));
    group.DeleteChannel(QStringLiteral("A"));
    EXPECT_EQ(Urls(group), (QStringList{QStringLiteral("C"), QStringLiteral("B")}));
    group.DeleteChannel(QStringLiteral("missing"));
    group.DeleteChannel(QStringLiteral("B"));
    EXPECT_EQ(Urls(group), QStringList{QStringLiteral("C")});
    EXPECT_EQ(group.ChannelURL(5), QString());

    RSSGroup tamsel;
    tamsel.CreateGroup(QStringLiteral("Tamsel"));
    tamsel.AddChannel(QStringLiteral("x"));
    EXPECT_EQ(tamsel.Name(true), QStringLiteral("Tamsel"));
    RSSGroup all;
    all.CreateGroup(QStringLiteral("All Items"));
    EXPECT_EQ(all.Name(true), QStringLiteral("All Items"));
}

TEST_F(GroupsTest, AFreshProfileHasTheThreeBuiltInsWithTheirChannels) {
    QSignalSpy newGroups(&groups, &colGroups::NewGroup);
    QSignalSpy newChannels(&groups, &colGroups::NewChannel);
    groups.init(QStringLiteral("Ann"));
    ASSERT_EQ(groups.GroupCount(), 3);
    EXPECT_EQ(groups.Group(1)->Name(true), QStringLiteral("Tamsel"));
    EXPECT_EQ(groups.Group(2)->Name(true), QStringLiteral("Spotlight  (0)"));
    EXPECT_EQ(groups.Group(3)->Name(true), QStringLiteral("All Items"));
    EXPECT_EQ(Urls(*groups.Group(1)), (QStringList{QStringLiteral("_tamsel/flagged"), site.NewsURL(),
                                                    QStringLiteral("_tamsel/deleted"), site.HelpURL()}));
    EXPECT_EQ(Urls(*groups.Group(3)), (QStringList{QStringLiteral("_tamsel/today"), QStringLiteral("_tamsel/yesterday"),
                                                    QStringLiteral("_tamsel/week"), QStringLiteral("_tamsel/unread"),
                                                    QStringLiteral("_tamsel/read")}));
    EXPECT_EQ(newGroups.count(), 3);
    EXPECT_EQ(newChannels.count(), 9);
    EXPECT_EQ(newChannels.first().at(0).toString(), QStringLiteral("_tamsel/flagged"));
    EXPECT_TRUE(groups.IsInGroup(QStringLiteral("_tamsel/read")));
    EXPECT_FALSE(groups.IsInGroup(QStringLiteral("_TAMSEL/read")));
}

TEST_F(GroupsTest, SavedBuiltInsAndDuplicatesMergeIntoOneGroup) {
    home.Write(QStringLiteral("profiles/Ann/groups.xml"),
               "<tamselgroups>"
               "<group><title>Tamsel</title><expand>false</expand><channel>_tamsel/flagged</channel><channel>http://extra/rss</channel></group>"
               "<group><title>News</title><expand>true</expand><channel>http://a/rss</channel></group>"
               "<wrapper><GROUP><TITLE>News</TITLE><Expand>False</Expand><channel>http://b/rss</channel><channel>http://a/rss</channel></GROUP></wrapper>"
               "<group><title>news</title><channel>http://c/rss</channel></group>"
               "</tamselgroups>");
    QSignalSpy newGroups(&groups, &colGroups::NewGroup);
    groups.init(QStringLiteral("Ann"));
    ASSERT_EQ(groups.GroupCount(), 4);
    const RSSGroup* tamsel = groups.Group(QStringLiteral("Tamsel"));
    EXPECT_FALSE(tamsel->Expanded());
    EXPECT_EQ(tamsel->ChannelCount(), 5);
    EXPECT_EQ(tamsel->ChannelURL(4), QStringLiteral("http://extra/rss"));
    const RSSGroup* news = groups.Group(4);
    EXPECT_EQ(news->Name(), QStringLiteral("News"));
    EXPECT_FALSE(news->Expanded()) << "\"False\" is not true";
    EXPECT_EQ(Urls(*news), (QStringList{QStringLiteral("http://a/rss"), QStringLiteral("http://b/rss"), QStringLiteral("http://c/rss")}));
    EXPECT_EQ(newGroups.count(), 4);
}

TEST_F(GroupsTest, SaveWritesTheExactFileAndABrokenFileIsKeptAside) {
    groups.init(QStringLiteral("Ann"));
    groups.AddGroup(QStringLiteral("My Channels"));
    groups.AssignChannel(QStringLiteral("my channels"), QStringLiteral("http://a/rss?x=1&y=2"));
    groups.Group(QStringLiteral("Spotlight"))->SetExpanded(false);
    ASSERT_TRUE(groups.SaveGroupXML());
    const QByteArray saved = home.Read(QStringLiteral("profiles/Ann/groups.xml"));
    EXPECT_EQ(saved,
              "<tamselgroups><group><title>Tamsel</title><expand>true</expand><channel>_tamsel/flagged</channel>"
              "<channel>tamsel://site/tamsel/news.xml</channel><channel>_tamsel/deleted</channel>"
              "<channel>tamsel://site/tamsel/help.xml</channel></group>"
              "<group><title>Spotlight</title><expand>false</expand></group>"
              "<group><title>All Items</title><expand>true</expand><channel>_tamsel/today</channel>"
              "<channel>_tamsel/yesterday</channel><channel>_tamsel/week</channel><channel>_tamsel/unread</channel>"
              "<channel>_tamsel/read</channel></group>"
              "<group><title>My Channels</title><expand>true</expand><channel>http://a/rss?x=1&amp;y=2</channel></group>"
              "</tamselgroups>\n");

    home.Write(QStringLiteral("profiles/Bob/groups.xml"), "<tamselgroups><group>");
    colGroups bob(paths, site);
    bob.init(QStringLiteral("Bob"));
    EXPECT_EQ(bob.GroupCount(), 3);
    EXPECT_EQ(QDir(home.File(QStringLiteral("profiles/Bob"))).entryList({QStringLiteral("groups.xml.damaged-*")}).size(), 1);
}

TEST_F(GroupsTest, RenameKeepsThePositionAndRefusesAnotherGroupsName) {
    groups.init(QStringLiteral("Ann"));
    groups.AddGroup(QStringLiteral("News"));
    groups.AddGroup(QStringLiteral("Sport"));
    EXPECT_TRUE(groups.AddGroup(QStringLiteral("NEWS")));
    EXPECT_EQ(groups.GroupCount(), 5);
    EXPECT_TRUE(groups.Rename(QStringLiteral("News"), QStringLiteral("World")));
    EXPECT_EQ(groups.Group(4)->Name(), QStringLiteral("World"));
    EXPECT_FALSE(groups.Rename(QStringLiteral("World"), QStringLiteral("sport")));
    EXPECT_EQ(groups.Group(4)->Name(), QStringLiteral("World"));
    EXPECT_TRUE(groups.Rename(QStringLiteral("World"), QStringLiteral("WORLD")));
    EXPECT_TRUE(groups.Rename(QStringLiteral("Tamsel"), QStringLiteral("Mine")));
    EXPECT_EQ(groups.Group(1)->Name(), QStringLiteral("Mine"));
    groups.Remove(QStringLiteral("sport"));
    EXPECT_EQ(groups.GroupCount(), 4);
    EXPECT_EQ(groups.Group(QStringLiteral("Sport")), nullptr);
}
