// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/Runtime.h"
#include "app/SharedHelpers.h"
#include "app/clsProfile.h"
#include "app/frmMain.h"
#include "feeds/RSSChannel.h"
#include "itembank/clsItemBank.h"
#include "itembank/modItemHandler.h"
#include "platform/XmlDocument.h"
#include "support/EventPump.h"
#include "support/FileSizeLimit.h"
#include "support/RecordingDesktop.h"
#include "support/TestHome.h"

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>
#include <QTreeWidget>
#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int kPumpLimitMs = 10000;
constexpr rlim_t kDiskRoom = 1024;

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

// Answers the next message box with `button` once it shows, and tells what it said.
void AnswerMessageBox(QMessageBox::StandardButton button, QString* text) {
    QTimer::singleShot(0, [button, text] {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        ASSERT_NE(box, nullptr);
        *text = box->text();
        box->button(button)->click();
    });
}

TEST_F(MainWindowTest, ItemsThatCannotBeSavedKeepTheWindowOpenUntilTheUserChooses) {
    ASSERT_TRUE(PumpUntil([this] { return Loaded(); }, kPumpLimitMs));
    const QString story = u"<item channel=\"http://a.example/feed\" date=\"23 Nov 2026\" time=\"09:00:00\">"
                          u"<title>Story %1</title><description>%2</description><read>false</read>"
                          u"<flag>false</flag><delete>false</delete></item>"_s;
    for (int n = 0; n < 5; ++n) {
        const XmlDocument item = XmlDocument::Parse(story.arg(n).arg(QString(300, u'w')).toUtf8());
        ASSERT_TRUE(window.AddRSSItem(item.DocumentElement()));
    }
    clsItemBank& bank = *window.ActiveProfile()->ItemBank();
    ASSERT_TRUE(bank.SaveXML());
    const QByteArray saved = home.Read(u"profiles/Ana/items.xml"_s);
    ASSERT_GT(saved.size(), qsizetype(kDiskRoom));
    SetItemRead(bank.SubChannelList(FolderKey::Unread, {}, {}).front(), true);

    QString message;
    {
        const FileSizeLimit full(kDiskRoom);
        ASSERT_TRUE(full.Active());
        AnswerMessageBox(QMessageBox::Cancel, &message);
        EXPECT_FALSE(window.close());
    }
    EXPECT_TRUE(message.startsWith(u"Your items could not be saved:"_s)) << message.toStdString();
    EXPECT_TRUE(message.contains(u"File too large"_s)) << message.toStdString();
    EXPECT_EQ(home.Read(u"profiles/Ana/items.xml"_s), saved);
    ASSERT_NE(window.ActiveProfile(), nullptr);

    // With room again, trying again saves and closes.
    message.clear();
    EXPECT_TRUE(window.close());
    EXPECT_TRUE(message.isEmpty());
    EXPECT_EQ(window.ActiveProfile(), nullptr);
    EXPECT_TRUE(home.Read(u"profiles/Ana/items.xml"_s).contains("<read>true</read>"));
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
