// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/Runtime.h"
#include "app/SharedHelpers.h"
#include "app/frmMain.h"
#include "feeds/RSSChannel.h"
#include "support/EventPump.h"
#include "support/RecordingDesktop.h"
#include "support/TestHome.h"

#include <QTreeWidget>
#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int kPumpLimitMs = 10000;

// The captions of the tree: each group followed by its channels, indented by two blanks.
QStringList Captions(const QTreeWidget& tree) {
    QStringList captions;
    for (int g = 0; g < tree.topLevelItemCount(); ++g) {
        const QTreeWidgetItem* group = tree.topLevelItem(g);
        captions.append(group->text(0));
        for (int c = 0; c < group->childCount(); ++c) {
            captions.append(u"  "_s + group->child(c)->text(0));
        }
    }
    return captions;
}

class MainWindowTest : public ::testing::Test {
protected:
    MainWindowTest() {
        home.Write(u"profiles/profiles.xml"_s,
                   "<tamselprofiles><user><username>Ana</username><default>true</default></user></tamselprofiles>");
        home.Write(u"profiles/Ana/groups.xml"_s,
                   "<groups><group><title>Science</title><expand>true</expand></group></groups>");
        runtime.LoadNamespaceStylesheet(nullptr);
    }

    QTreeWidget& Tree() { return *window.findChild<QTreeWidget*>(); }
    bool Loaded() { return window.ActiveProfile() != nullptr && Tree().topLevelItemCount() > 0; }

    TestHome home;
    RecordingDesktop desktop;
    Runtime runtime{home.GetPaths(), desktop};
    frmMain window{runtime};
};

TEST_F(MainWindowTest, TheDefaultProfileComesUpWithItsGroupsAndFollowsNewChannels) {
    ASSERT_TRUE(PumpUntil([this] { return Loaded(); }, kPumpLimitMs));
    const QStringList captions = Captions(Tree());
    EXPECT_EQ(captions.first(), GroupName::Tamsel);
    EXPECT_TRUE(captions.contains(u"Spotlight  (0)"_s));
    EXPECT_EQ(captions.last(), u"Science  (0)"_s);

    window.AddChannel(u"http://127.0.0.1:9/never.xml"_s, u"Science"_s);
    EXPECT_EQ(Captions(Tree()).last(), u"  http://127.0.0.1:9/never.xml  (0)"_s);
    EXPECT_TRUE(home.Read(u"profiles/Ana/groups.xml"_s).contains("http://127.0.0.1:9/never.xml"))
        << "adding saves the groups";
    window.AddChannel(u" "_s, u"Science"_s);
    EXPECT_EQ(Captions(Tree()).size(), captions.size() + 1);
}

TEST_F(MainWindowTest, FourConnectionSlotsAreShared) {
    for (int i = 0; i < 4; ++i) {
        EXPECT_TRUE(window.RequestConnect());
    }
    EXPECT_FALSE(window.RequestConnect());
    window.ConnectRelease();
    EXPECT_TRUE(window.RequestConnect());
}

} // namespace
