// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "feeds/FeedsFixture.h"
#include "groups/RSSGroup.h"
#include "groups/colGroups.h"

#include <QSignalSpy>

using namespace Qt::StringLiterals;

namespace {

// "name (shown name, + when expanded): url url".
QString Describe(const RSSGroup& group) {
    QString text = group.Name() + u" ("_s + group.Name(true) + (group.Expanded() ? u"+):"_s : u"):"_s);
    for (int i = 0; i < group.ChannelCount(); ++i) {
        text += u' ' + group.ChannelURL(i);
    }
    return text;
}

// Every group, in order.
QStringList Describe(const colGroups& groups) {
    QStringList text;
    for (int index = 1; index <= groups.GroupCount(); ++index) {
        text.append(Describe(*groups.Group(index)));
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

// A URL is held once; deleting one moves the last into its place. The maker's group and the
// folders' group show no count.
TEST(RSSGroupTest, NamesCountsAndTheOrderAfterADeletion) {
    for (const auto& [name, shown] :
         {std::pair{u"News"_s, u"News  (2)"_s}, std::pair{u"Tamsel"_s, u"Tamsel"_s},
          std::pair{u"All Items"_s, u"All Items"_s}}) {
        RSSGroup group;
        EXPECT_TRUE(group.CreateGroup(name));
        for (const QString& url : {u"A"_s, u"B"_s, u"C"_s, u"B"_s}) {
            group.AddChannel(url);
        }
        group.DeleteChannel(u"A"_s);
        group.DeleteChannel(u"missing"_s);
        EXPECT_EQ(Describe(group), QString(name + u" ("_s + shown + u"+): C B"_s));
    }
}

// A fresh profile has the three built-ins with their channels; renames keep the place; what it
// saves is exactly so.
TEST_F(GroupsTest, AFreshProfileHasTheBuiltInsRenamesKeepThePlaceAndSavesAreExact) {
    QSignalSpy newGroups(&groups, &colGroups::NewGroup);
    QSignalSpy newChannels(&groups, &colGroups::NewChannel);
    groups.init(u"Ann"_s);
    EXPECT_EQ(Describe(groups),
              (QStringList{u"Tamsel (Tamsel+): _tamsel/flagged tamsel://site/tamsel/news.xml "
                           u"_tamsel/deleted tamsel://site/tamsel/help.xml"_s,
                           u"Spotlight (Spotlight  (0)+):"_s,
                           u"All Items (All Items+): _tamsel/today _tamsel/yesterday "
                           u"_tamsel/week _tamsel/unread _tamsel/read"_s}));
    EXPECT_EQ(std::pair(newGroups.count(), newChannels.count()), std::pair(qsizetype(3), qsizetype(9)));
    groups.AddGroup(u"News"_s);
    groups.AddGroup(u"Sport"_s);
    EXPECT_TRUE(groups.AddGroup(u"NEWS"_s));
    EXPECT_EQ(
        (QList<bool>{groups.Rename(u"News"_s, u"World"_s), groups.Rename(u"World"_s, u"sport"_s),
                     groups.Rename(u"World"_s, u"WORLD"_s), groups.Rename(u"WORLD"_s, u"My Channels"_s)}),
        (QList<bool>{true, false, true, true}));
    groups.Remove(u"sport"_s);
    groups.AssignChannel(u"my channels"_s, u"http://a/rss?x=1&y=2"_s);
    groups.Group(u"Spotlight"_s)->SetExpanded(false);
    ASSERT_TRUE(groups.SaveGroupXML());
    EXPECT_EQ(home.Read(u"profiles/Ann/groups.xml"_s), ReadData(u"groups-saved.xml"_s));
}

TEST_F(GroupsTest, SavedBuiltInsAndDuplicatesMergeAndABrokenFileIsKeptAside) {
    home.Write(u"profiles/Ann/groups.xml"_s, ReadData(u"groups-merged.xml"_s));
    groups.init(u"Ann"_s);
    EXPECT_EQ(Describe(groups),
              (QStringList{u"Tamsel (Tamsel): _tamsel/flagged tamsel://site/tamsel/news.xml "
                           u"_tamsel/deleted tamsel://site/tamsel/help.xml http://extra/rss"_s,
                           u"Spotlight (Spotlight  (0)+):"_s,
                           u"All Items (All Items+): _tamsel/today _tamsel/yesterday "
                           u"_tamsel/week _tamsel/unread _tamsel/read"_s,
                           u"News (News  (3)): http://a/rss http://b/rss http://c/rss"_s}));
    home.Write(u"profiles/Bob/groups.xml"_s, "<tamselgroups><group>");
    colGroups bob(paths, site);
    bob.init(u"Bob"_s);
    EXPECT_EQ(bob.GroupCount(), 3);
    EXPECT_EQ(QDir(home.File(u"profiles/Bob"_s)).entryList({u"groups.xml.damaged-*"_s}).size(), 1);
}
