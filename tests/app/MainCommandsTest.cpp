// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "MainWindowFixture.h"
#include "app/colProfiles.h"
#include "groups/RSSGroup.h"
#include "groups/frmAddChannel.h"
#include "groups/frmAddGroup.h"
#include "groups/frmChannelManage.h"
#include "platform/CRegSettings.h"
#include "skin/frmSkin.h"

#include <QComboBox>
#include <QFile>
#include <QFileDialog>
#include <QLineEdit>
#include <QListWidget>
#include <QMenuBar>
#include <QPushButton>
#include <QTest>

namespace {

using namespace main_window_test;

class MainCommandsTest : public MainWindowFixture {
protected:
    static QStringList Captions(const QMenu& menu) {
        QStringList captions;
        for (const QAction* action : menu.actions()) {
            captions.append(action->isSeparator() ? u"-"_s : action->text());
        }
        return captions;
    }
    static QAction* Entry(const QMenu& menu, const QString& caption) {
        for (QAction* action : menu.actions()) {
            if (action->text() == caption) {
                return action;
            }
        }
        ADD_FAILURE() << "no entry " << caption.toStdString();
        return nullptr;
    }
    void Trigger(const QMenu& menu, const QString& caption) {
        if (QAction* entry = Entry(menu, caption)) {
            entry->trigger();
        }
    }
    // Runs `command`, answering the message box it may show; gives what the box said.
    static QString Answered(const std::function<void()>& command,
                            QMessageBox::StandardButton button = QMessageBox::Ok) {
        QString said;
        AnswerMessageBox(button, &said);
        command();
        QCoreApplication::processEvents();
        return said;
    }
    QStringList GroupNames() const {
        QStringList names;
        for (int i = 1; i <= window->ActiveProfile()->GroupCount(); ++i) {
            names.append(window->ActiveProfile()->GetGroup(i)->Name());
        }
        return names;
    }
};

TEST_F(MainCommandsTest, TheMenusReadAsWrittenAndShowInFramedModeOnly) {
    Start();
    const QList<QAction*> bar = window->MenuBar()->actions();
    ASSERT_GE(bar.size(), 3);
    EXPECT_EQ((QStringList{bar[0]->text(), bar[1]->text(), bar[2]->text()}),
              (QStringList{u"&File"_s, u"&Actions"_s, u"&Help"_s}));
    EXPECT_EQ(
        Captions(*window->FileMenu()),
        (QStringList{u"Export &OPML File..."_s, u"-"_s, u"&Profile"_s, u"Change &Skin..."_s,
                     u"P&references..."_s, u"Always On &Top"_s, u"-"_s, u"Show Ticker &Bar"_s, u"&Close"_s}));
    EXPECT_EQ(Captions(*window->HelpMenu()),
              (QStringList{u"&Help Channel"_s, u"&Tamsel Website"_s, u"-"_s, u"&About..."_s}));
    EXPECT_EQ(Captions(*window->ActionsMenu()).mid(0, 4),
              (QStringList{u"&Add Channels..."_s, u"Add &Group..."_s, u"&Reload All Channels"_s,
                           u"&Delete Channels..."_s}));

    EXPECT_FALSE(window->MenuBar()->isVisible()) << "a skinned window starts without its frame";
    window->SkinHandler(u"windowframe"_s);
    EXPECT_TRUE(window->MenuBar()->isVisible());
    window->SkinHandler(u"windowframe"_s);
    EXPECT_FALSE(window->MenuBar()->isVisible());

    // Maximising a frameless window gains the frame and the menus first.
    window->SkinHandler(u"max"_s);
    EXPECT_TRUE(window->MenuBar()->isVisible());
    EXPECT_TRUE(window->isMaximized());
    window->SkinHandler(u"max"_s);
    EXPECT_FALSE(window->isMaximized());
}

TEST_F(MainCommandsTest, GroupNamesAreCheckedBeforeAnythingChanges) {
    Start();
    struct Case {
        const char* name;
        std::function<bool()> command;
        bool accepted;
        QString message;
    };
    const QString exists = u"Group already exists.  Please select another name."_s;
    const Case cases[] = {
        {"blank new name", [this] { return window->AddGroup(u"  "_s); }, false,
         u"Please enter a group name."_s},
        {"taken new name", [this] { return window->AddGroup(u"Science"_s); }, false, exists},
        {"new name, trimmed", [this] { return window->AddGroup(u" News "_s); }, true, QString()},
        {"renamed to itself", [this] { return window->RenameGroup(u"Science"_s, u"Science"_s); }, true,
         QString()},
        {"renamed to another's", [this] { return window->RenameGroup(u"Science"_s, u"Empty"_s); }, false,
         exists},
        {"renamed to nothing", [this] { return window->RenameGroup(u"Science"_s, u" "_s); }, false,
         u"Please enter a Group Name"_s},
        {"renamed", [this] { return window->RenameGroup(u"Science"_s, u"Physics"_s); }, true, QString()},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        bool accepted = !c.accepted;
        EXPECT_EQ(Answered([&] { accepted = c.command(); }), c.message);
        EXPECT_EQ(accepted, c.accepted);
    }
    EXPECT_TRUE(GroupNames().contains(u"News"_s));
    EXPECT_TRUE(home.Read(u"profiles/Ana/groups.xml"_s).contains("<title>News</title>"))
        << "a new group is saved";
    EXPECT_FALSE(GroupNames().contains(u"Science"_s));
    EXPECT_NE(Node(u"Physics|"_s + kFeed), nullptr) << "the tree shows the renamed group with its channel";
    EXPECT_NE(Node(u"News"_s), nullptr);
}

TEST_F(MainCommandsTest, DeleteGroupRefusesAGroupWithChannels) {
    Start();
    Select(Node(u"Science"_s));
    EXPECT_EQ(Answered([this] { Trigger(*window->ActionsMenu(), u"&Delete Group"_s); }),
              u"Group not empty. Remove Channels before removing Group."_s);
    EXPECT_TRUE(GroupNames().contains(u"Science"_s));

    Select(Node(u"Empty"_s));
    EXPECT_EQ(Answered([this] { Trigger(*window->ActionsMenu(), u"&Delete Group"_s); }), QString());
    EXPECT_FALSE(GroupNames().contains(u"Empty"_s));
    EXPECT_EQ(Node(u"Empty"_s), nullptr);
    EXPECT_FALSE(home.Read(u"profiles/Ana/groups.xml"_s).contains("Empty"));
}

TEST_F(MainCommandsTest, RemovingOneOfTwoMembershipsAsksNothing) {
    Start();
    window->AddChannel(kFeed, u"Empty"_s);
    Select(Node(u"Empty|"_s + kFeed));
    EXPECT_EQ(Answered([this] { Trigger(*window->ActionsMenu(), u"Re&move Channel"_s); }, QMessageBox::Yes),
              QString());
    EXPECT_EQ(Node(u"Empty|"_s + kFeed), nullptr);
    EXPECT_NE(Node(u"Science|"_s + kFeed), nullptr);
    EXPECT_NE(window->ActiveProfile()->GetChannel(kFeed), nullptr);
}

TEST_F(MainCommandsTest, TheChannelDialogsOpenOnTheSelectedGroup) {
    Start();
    // A folder belongs to a group that the dialog never offers: the profile's last group instead.
    const std::pair<QString, QString> selections[] = {{u"Science|"_s + kFeed, u"Science"_s},
                                                      {u"Science"_s, u"Science"_s},
                                                      {u"All Items|_tamsel/today"_s, u"Empty"_s}};
    for (const auto& [node, group] : selections) {
        SCOPED_TRACE(node.toStdString());
        Select(Node(node));
        QString preselected;
        QTimer::singleShot(0, [&preselected] {
            if (auto* dialog = qobject_cast<frmAddChannel*>(QApplication::activeModalWidget())) {
                preselected = dialog->GroupBox(frmAddChannel::TabAddress)->currentText();
                dialog->reject();
            }
        });
        window->SkinHandler(u"addchannel"_s);
        EXPECT_EQ(preselected, group);
    }

    bool listed = false;
    QTimer::singleShot(0, [&listed] {
        if (auto* dialog = qobject_cast<frmChannelManage*>(QApplication::activeModalWidget())) {
            listed = true;
            dialog->reject();
        }
    });
    Trigger(*window->ActionsMenu(), u"&Delete Channels..."_s);
    EXPECT_TRUE(listed);

    Select(Node(u"Science"_s));
    Trigger(*window->ActionsMenu(), u"Re&name Group"_s);
    auto* rename = TopLevel<frmAddGroup>();
    ASSERT_NE(rename, nullptr);
    EXPECT_TRUE(rename->Renaming());
    EXPECT_EQ(rename->txtGroup()->text(), u"Science"_s);
    rename->txtGroup()->setText(u"Physics"_s);
    rename->cmdOk()->click();
    ASSERT_TRUE(PumpUntil([] { return TopLevel<frmAddGroup>() == nullptr; }, kPumpLimitMs));
    EXPECT_NE(Node(u"Physics|"_s + kFeed), nullptr);
}

TEST_F(MainCommandsTest, TheProfileMenuListsEveryProfileAndSwitches) {
    Start();
    window->Users()->AddUser(u"Bob & Co"_s, false, true);
    window->LoadProfileMenu();
    QMenu& profiles = *window->ProfileMenu();
    QStringList shown;
    for (const QAction* entry : profiles.actions()) {
        if (entry->isVisible()) {
            shown.append(entry->isSeparator() ? u"-"_s
                                              : entry->text() + (entry->isChecked() ? u" *"_s : QString()));
        }
    }
    EXPECT_EQ(shown, (QStringList{u"Ana *"_s, u"Bob && Co"_s, u"-"_s, u"&New Profile..."_s}));

    profiles.actions().at(1)->trigger();
    ASSERT_TRUE(PumpUntil(
        [this] { return window->ActiveProfile() && window->ActiveProfile()->Name() == u"Bob & Co"_s; },
        kPumpLimitMs));
    window->LoadProfileMenu();
    EXPECT_FALSE(profiles.actions().at(0)->isChecked());
    EXPECT_TRUE(profiles.actions().at(1)->isChecked());
    EXPECT_TRUE(home.Read(u"profiles/Ana/groups.xml"_s).contains("Science"))
        << "the switch saved the old profile";
}

TEST_F(MainCommandsTest, F1OpensTheHelpChannel) {
    Start();
    RSSChannel& help = Channel(runtime.Site().HelpURL());
    ASSERT_EQ(window->Viewer(help), nullptr);
    QApplication::setActiveWindow(window.get());
    Tree().setFocus();
    QTest::keyClick(&Tree(), Qt::Key_F1);
    EXPECT_NE(window->Viewer(help), nullptr);
    EXPECT_EQ(Tree().currentItem(), Node(u"Tamsel|"_s + runtime.Site().HelpURL()));
}

TEST_F(MainCommandsTest, ExportWritesTheChannelsAsOpml) {
    Start();
    const QString file = home.File(u"export.opml"_s);
    QTimer::singleShot(0, [file] {
        if (auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget())) {
            dialog->selectFile(file);
            QMetaObject::invokeMethod(dialog, &QDialog::accept);
        }
    });
    Trigger(*window->FileMenu(), u"Export &OPML File..."_s);
    ASSERT_TRUE(QFile::exists(file));
    EXPECT_TRUE(home.Read(u"export.opml"_s).contains(kFeed.toUtf8()));
}

TEST_F(MainCommandsTest, ChangingTheSkinClosesTheViewersAndReloads) {
    Start();
    Channel(kFeed).CreateChannelView(true);
    ASSERT_NE(window->Viewer(Channel(kFeed)), nullptr);
    QTimer::singleShot(0, [] {
        if (auto* chooser = qobject_cast<frmSkin*>(QApplication::activeModalWidget())) {
            const QList<QListWidgetItem*> found =
                chooser->lstSkins()->findItems(u"Nightfall"_s, Qt::MatchExactly);
            if (!found.isEmpty()) {
                chooser->lstSkins()->setCurrentItem(found.first());
            }
            chooser->cmdOk()->click();
        }
    });
    Trigger(*window->FileMenu(), u"Change &Skin..."_s);
    EXPECT_EQ(window->Viewer(Channel(kFeed)), nullptr);
    EXPECT_EQ(skin.SkinName(), u"Nightfall"_s);
}

TEST_F(MainCommandsTest, AlwaysOnTopFollowsItsMark) {
    Start();
    QAction* entry = Entry(*window->FileMenu(), u"Always On &Top"_s);
    ASSERT_NE(entry, nullptr);
    EXPECT_FALSE(entry->isChecked());
    entry->trigger();
    EXPECT_TRUE(window->windowFlags().testFlag(Qt::WindowStaysOnTopHint));
    entry->trigger();
    EXPECT_FALSE(window->windowFlags().testFlag(Qt::WindowStaysOnTopHint));
}

} // namespace
