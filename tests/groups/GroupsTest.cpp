// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "feeds/FeedsFixture.h"
#include "groups/RSSGroup.h"
#include "groups/colGroups.h"

#include <QSignalSpy>

using namespace Qt::StringLiterals;

namespace {

// Every group, a line each: "name (shown name, + when expanded): url url".
QString Describe(const colGroups& groups) {
    QString text;
    for (int index = 1; index <= groups.GroupCount(); ++index) {
        const RSSGroup& group = *groups.Group(index);
        text += group.Name() + u" ("_s + group.Name(true) + (group.Expanded() ? u"+):"_s : u"):"_s);
        for (int i = 0; i < group.ChannelCount(); ++i) {
            text += u' ' + group.ChannelURL(i);
        }
        text += u'\n';
    }
    return text;
}

class GroupsTest : public ::testing::Test {
protected:
    TestHome home;
    Paths paths = home.GetPaths();
    MakerSite site{u"tamsel://site"_s};
    colGroups groups{paths, site};
};

} // namespace

// A fresh profile has the three built-ins with their channels (the maker's group and the folders'
// group show no count); renames keep the place; a URL is held once, and deleting one moves the
// last into its place; what it saves is exactly so.
TEST_F(GroupsTest, AFreshProfileHasTheBuiltInsRenamesKeepThePlaceAndSavesAreExact) {
    QSignalSpy newGroups(&groups, &colGroups::NewGroup);
    QSignalSpy newChannels(&groups, &colGroups::NewChannel);
    groups.init(u"Ann"_s);
    EXPECT_EQ(Describe(groups), QString::fromUtf8(ReadData(u"groups-fresh.expected"_s)));
    EXPECT_EQ(std::pair(newGroups.count(), newChannels.count()), std::pair(qsizetype(3), qsizetype(9)));
    groups.AddGroup(u"News"_s);
    groups.AddGroup(u"Sport"_s);
    EXPECT_TRUE(groups.AddGroup(u"NEWS"_s));
    EXPECT_EQ(
        (QList<bool>{groups.Rename(u"News"_s, u"World"_s), groups.Rename(u"World"_s, u"sport"_s),
                     groups.Rename(u"World"_s, u"WORLD"_s), groups.Rename(u"WORLD"_s, u"My Channels"_s)}),
        (QList<bool>{true, false, true, true}));
    groups.Remove(u"sport"_s);
    for (const QString& url :
         {u"http://a/rss?x=1&y=2"_s, u"http://b/"_s, u"http://c/"_s, u"http://d/"_s, u"http://b/"_s}) {
        groups.AssignChannel(u"my channels"_s, url);
    }
    EXPECT_EQ(newChannels.count(), 9 + 4) << "a channel the group holds is not announced again";
    groups.Group(u"My Channels"_s)->DeleteChannel(u"http://b/"_s);
    groups.Group(u"Spotlight"_s)->SetExpanded(false);
    ASSERT_TRUE(groups.SaveGroupXML());
    EXPECT_EQ(home.Read(u"profiles/Ann/groups.xml"_s), ReadData(u"groups-saved.xml"_s));
}

TEST_F(GroupsTest, SavedBuiltInsAndDuplicatesMergeAndABrokenFileIsKeptAside) {
    home.Write(u"profiles/Ann/groups.xml"_s, ReadData(u"groups-merged.xml"_s));
    groups.init(u"Ann"_s);
    EXPECT_EQ(Describe(groups), QString::fromUtf8(ReadData(u"groups-merged.expected"_s)));
    home.Write(u"profiles/Bob/groups.xml"_s, "<tamselgroups><group>");
    colGroups bob(paths, site);
    bob.init(u"Bob"_s);
    EXPECT_EQ(bob.GroupCount(), 3);
    EXPECT_EQ(QDir(home.File(u"profiles/Bob"_s)).entryList({u"groups.xml.damaged-*"_s}).size(), 1);
}
