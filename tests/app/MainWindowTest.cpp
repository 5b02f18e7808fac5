// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "MainWindowFixture.h"
#include "app/Runtime.h"
#include "app/SharedHelpers.h"
#include "app/clsProfile.h"
#include "app/colProfiles.h"
#include "app/frmMain.h"
#include "app/frmUser.h"
#include "feeds/RSSChannel.h"
#include "groups/RSSGroup.h"
#include "platform/CRegSettings.h"
#include "skin/SkinHost.h"
#include "skin/frmTamselSkin.h"
#include "support/EventPump.h"
#include "support/FocusChain.h"
#include "support/RecordingDesktop.h"
#include "support/TestHome.h"
#include "ticker/frmTicker.h"

#include <QAbstractButton>
#include <QApplication>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <QTreeWidget>
#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

namespace {

using namespace main_window_test;
using MainWindowTest = MainWindowFixture;

TEST_F(MainWindowTest, AFirstStartAsksForANameThenShowsTheNewProfileTopToBottom) {
    Start(false);
    EXPECT_EQ(runtime.Settings().GetSetting(u"SETTINGS"_s, u"FISRTRUN"_s, u"?"_s), u"False"_s);
    EXPECT_TRUE(window->FirstRun()) << "the help channel still has to open once";
    frmUser* dialog = nullptr;
    ASSERT_TRUE(PumpUntil([&dialog] { return (dialog = TopLevel<frmUser>()) != nullptr; }, kPumpLimitMs));
    EXPECT_EQ(dialog->Username()->text(), u"My Username"_s);

    struct Case {
        const char* typed;
        const char* message;
    };
    window->Users()->AddUser(u"Taken"_s, false, true);
    for (const Case& c : {Case{"", "Please enter a username"}, Case{"Taken", "Username already exists"}}) {
        SCOPED_TRACE(c.typed);
        dialog->Username()->setText(QString::fromUtf8(c.typed));
        QString message;
        AnswerMessageBox(QMessageBox::Ok, &message);
        QTest::mouseClick(dialog->CreateButton(), Qt::LeftButton);
        EXPECT_EQ(message, QString::fromUtf8(c.message));
        EXPECT_TRUE(dialog->isVisible());
    }
    dialog->Username()->setText(u"taken"_s);
    QTest::mouseClick(dialog->CreateButton(), Qt::LeftButton);
    ASSERT_TRUE(PumpUntil([this] { return Loaded() && !TopLevel<frmUser>(); }, kPumpLimitMs));
    EXPECT_EQ(window->ActiveProfile()->Name(), u"taken"_s) << "names differing in case only are new";

    EXPECT_EQ(
        Captions(Tree()).join(u'/'),
        (QStringList{u"Tagged  (0)"_s, u"Tamsel News  (0)"_s, u"Deleted  (0)"_s, u"Help  (0)"_s,
                     u"Spotlight  (0)"_s, u"All Items"_s, u"  Today  (0)"_s, u"  Yesterday  (0)"_s,
                     u"  Past 7 Days  (0)"_s, u"  Unread  (0)"_s, u"  Read  (0)"_s, u"My Channels  (0)"_s})
            .join(u'/'));
    EXPECT_EQ(Node(GroupName::Tamsel), nullptr);
    for (QTreeWidgetItemIterator it(&Tree()); *it; ++it) {
        EXPECT_FALSE((*it)->icon(0).isNull()) << (*it)->text(0).toStdString();
    }
    EXPECT_TRUE(home.Read(u"profiles/taken/groups.xml"_s).contains("My Channels"));
    EXPECT_TRUE(home.Read(u"profiles/profiles.xml"_s).contains("taken"));
    ASSERT_TRUE(PumpUntil([this] { return window->TrayIconShown(); }, kPumpLimitMs));
}

TEST_F(MainWindowTest, ADamagedProfileListIsNamedAndANewProfileCanBeMade) {
    home.Write(u"profiles/profiles.xml"_s, "<tamselprofiles><user>");
    runtime.LoadNamespaceStylesheet(nullptr);
    QString message;
    QTimer watch;
    QObject::connect(&watch, &QTimer::timeout, [&message] {
        if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
            message = box->text();
            box->accept();
        }
    });
    watch.start(5);
    window = std::make_unique<frmMain>(runtime, skin, true);
    ASSERT_TRUE(PumpUntil([] { return TopLevel<frmUser>() != nullptr; }, kPumpLimitMs));
    ASSERT_FALSE(window->Users()->DamagedFile().isEmpty());
    EXPECT_TRUE(message.startsWith(colProfiles::kReadError)) << message.toStdString();
    EXPECT_TRUE(message.contains(window->Users()->DamagedFile())) << message.toStdString();
}

TEST_F(MainWindowTest, ArrowKeysMoveWithoutOpeningAClickOpens) {
    Start();
    RSSChannel& channel = Channel(kFeed);
    channel.SetNewItems(true);
    QTreeWidgetItem* group = Node(u"Science"_s);
    QTreeWidgetItem* node = Node(u"Science|"_s + kFeed);
    ASSERT_NE(node, nullptr);
    Select(group);
    QTest::keyClick(&Tree(), Qt::Key_Down);
    EXPECT_EQ(Tree().currentItem(), node);
    EXPECT_TRUE(channel.NewItems()) << "moving the selection opened the channel";

    QTest::mouseClick(Tree().viewport(), Qt::LeftButton, {}, Tree().visualItemRect(node).center());
    EXPECT_FALSE(channel.NewItems()) << "a click opens the channel's view";

    channel.SetNewItems(true);
    QTest::keyClick(&Tree(), Qt::Key_Return);
    EXPECT_FALSE(channel.NewItems()) << "Enter opens it from the keyboard";

    // A click on a group folds it and remembers it.
    ASSERT_TRUE(group->isExpanded());
    QTest::mouseClick(Tree().viewport(), Qt::LeftButton, {}, Tree().visualItemRect(group).center());
    EXPECT_FALSE(group->isExpanded());
    EXPECT_FALSE(window->ActiveProfile()->GetGroup(u"Science"_s)->Expanded());
}

TEST_F(MainWindowTest, TheDeleteKeyAsksRefusesOrDoesNothingByNode) {
    Start();
    struct Case {
        QString key;
        QString message;
        bool nodeStays;
    };
    const Case cases[] = {
        {u"All Items|_tamsel/today"_s, QString(), true},
        {u"Tamsel|_tamsel/flagged"_s, QString(), true},
        {u"Science|"_s + kFeed, u"Remove Science Daily from Science?"_s, true},
        {u"Science"_s, u"Remove all Channels before deleting Group"_s, true},
        {u"Empty"_s, QString(), false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.key.toStdString());
        QTreeWidgetItem* node = Node(c.key);
        ASSERT_NE(node, nullptr);
        Select(node);
        QString message;
        AnswerMessageBox(QMessageBox::No, &message);
        QTest::keyClick(&Tree(), Qt::Key_Delete);
        QCoreApplication::processEvents();
        EXPECT_EQ(message, c.message);
        EXPECT_EQ(Node(c.key) != nullptr, c.nodeStays);
    }
    EXPECT_EQ(window->ActiveProfile()->GetGroup(u"Empty"_s), nullptr);
    EXPECT_FALSE(home.Read(u"profiles/Ana/groups.xml"_s).contains("Empty")) << "the deletion is saved";

    // Yes removes the channel from its last group and offers to unsubscribe it.
    Select(Node(u"Science|"_s + kFeed));
    QStringList asked;
    QList<QMessageBox::StandardButton> answers = {QMessageBox::Yes, QMessageBox::No};
    QTimer answerer;
    QObject::connect(&answerer, &QTimer::timeout, [&asked, &answers] {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        if (box && box->isVisible() && !answers.isEmpty() && !asked.contains(box->text())) {
            asked.append(box->text());
            box->button(answers.takeFirst())->click();
        }
    });
    answerer.start(2);
    QTest::keyClick(&Tree(), Qt::Key_Delete);
    ASSERT_EQ(asked.size(), 2);
    const QString offer = asked.last();
    EXPECT_TRUE(offer.startsWith(u"This channel is no longer associated with a group."_s));
    EXPECT_EQ(Node(u"Science|"_s + kFeed), nullptr);
    EXPECT_NE(window->ActiveProfile()->GetChannel(kFeed), nullptr) << "No keeps the subscription";
}

TEST_F(MainWindowTest, OneChannelInTwoGroupsChangesBothNodes) {
    Start();
    window->AddChannel(kFeed, u"Empty"_s);
    QTreeWidgetItem* first = Node(u"Science|"_s + kFeed);
    QTreeWidgetItem* second = Node(u"Empty|"_s + kFeed);
    ASSERT_NE(second, nullptr);
    RSSChannel& channel = Channel(kFeed);
    channel.SetTitle(u"Renamed"_s);
    channel.SetNewItems(true);
    window->StateChange(u"Ana"_s, channel);
    for (QTreeWidgetItem* node : {first, second}) {
        EXPECT_EQ(node->text(0), channel.TitleAndCount());
        EXPECT_TRUE(node->text(0).startsWith(u"Renamed"_s));
        EXPECT_EQ(node->icon(0).cacheKey(), first->icon(0).cacheKey());
    }

    // A report of another profile changes nothing.
    channel.SetTitle(u"Elsewhere"_s);
    window->StateChange(u"Bob"_s, channel);
    EXPECT_TRUE(first->text(0).startsWith(u"Renamed"_s));
}

TEST_F(MainWindowTest, TheActionsPopupShowsTheEntriesOfTheNode) {
    Start();
    const QStringList channelEntries = {u"&View Channel"_s, u"&Mark All Read"_s, u"R&eload Channel"_s,
                                        u"Re&move Channel"_s, u"&Properties..."_s};
    struct Case {
        QString key;
        QStringList context;
    };
    const Case cases[] = {
        {u"Science|"_s + kFeed, channelEntries},
        {u"All Items|_tamsel/today"_s,
         {u"&View Channel"_s, u"&Mark All Read"_s, u"R&eload Channel"_s, u"&Properties..."_s}},
        {u"Science"_s,
         {u"&View Channels in Group"_s, u"Reload &Channels in Group"_s, u"Re&name Group"_s,
          u"&Delete Group"_s}},
        {u"Spotlight"_s, {u"&View Channels in Group"_s, u"Reload &Channels in Group"_s}},
    };
    QMenu& actions = *window->ActionsMenu();
    const QStringList fixed = Shown(actions);
    EXPECT_FALSE(fixed.contains(u"-"_s)) << "context entries are hidden outside the popup";
    for (const Case& c : cases) {
        SCOPED_TRACE(c.key.toStdString());
        QTreeWidgetItem* node = Node(c.key);
        ASSERT_NE(node, nullptr);
        const QPoint at = Tree().visualItemRect(node).center();
        QContextMenuEvent event(QContextMenuEvent::Mouse, at, Tree().viewport()->mapToGlobal(at));
        QApplication::sendEvent(Tree().viewport(), &event);
        ASSERT_TRUE(actions.isVisible());
        EXPECT_EQ(Tree().currentItem(), node);
        EXPECT_EQ(Shown(actions), fixed + QStringList{u"-"_s} + c.context);
        actions.hide();
        QCoreApplication::processEvents();
        EXPECT_EQ(Shown(actions), fixed);
    }
}

TEST_F(MainWindowTest, TheTrayListsTheChannelsWithNewItems) {
    Start();
    window->LoadTrayMenu();
    EXPECT_TRUE(Shown(*window->NewItemsMenu()).isEmpty());
    EXPECT_EQ(Shown(*window->TrayMenu()),
              (QStringList{u"&New Items"_s, u"&Show Ticker Bar"_s, u"&Open Tamsel"_s, u"E&xit"_s}));
    EXPECT_TRUE(window->TrayMenu()->defaultAction()->font().bold());

    Channel(kFeed).SetNewItems(true);
    Channel(kOther).SetNewItems(true);
    window->LoadTrayMenu();
    EXPECT_EQ(Shown(*window->NewItemsMenu()),
              (QStringList{Channel(kFeed).TitleAndCount(), Channel(kOther).TitleAndCount()}));
    EXPECT_EQ(Shown(*window->TrayMenu()).at(1), u"-"_s);

    // Choosing an entry opens its channel; the list shrinks without losing entries.
    window->NewItemsMenu()->actions().at(0)->trigger();
    EXPECT_FALSE(Channel(kFeed).NewItems());
    window->LoadTrayMenu();
    EXPECT_EQ(Shown(*window->NewItemsMenu()), QStringList{Channel(kOther).TitleAndCount()});
}

TEST_F(MainWindowTest, TheTickerFollowsItsSettingAndItsEntriesAgree) {
    runtime.Settings().SaveSetting(u"Ticker"_s, u"Show"_s, u"True"_s);
    Start();
    QAction& trayEntry = *window->TrayMenu()->actions().at(2);
    ASSERT_EQ(trayEntry.text(), u"&Show Ticker Bar"_s);
    QAction& fileEntry = *window->FileMenu()->actions().at(7);
    ASSERT_EQ(fileEntry.text(), u"Show Ticker &Bar"_s);
    const auto marksAgree = [&](bool shown) {
        return trayEntry.isChecked() == shown && fileEntry.isChecked() == shown;
    };
    ASSERT_NE(window->Ticker(), nullptr) << "shown at start when it was shown before";
    EXPECT_TRUE(marksAgree(true));
    EXPECT_EQ(Shown(*window->TickerMenu()),
              (QStringList{u"Open &Item in Browser"_s, u"&Open Tamsel"_s, u"-"_s, u"&Dock"_s, u"&Effects"_s,
                           u"&Close Ticker Bar"_s}));

    window->TickerMenu()->actions().last()->trigger();
    ASSERT_TRUE(PumpUntil([this] { return window->Ticker() == nullptr; }, kPumpLimitMs));
    EXPECT_TRUE(marksAgree(false));
    EXPECT_EQ(runtime.Settings().GetSetting(u"Ticker"_s, u"Show"_s, QString()), u"False"_s);

    fileEntry.trigger();
    ASSERT_NE(window->Ticker(), nullptr);
    EXPECT_TRUE(marksAgree(true));
    trayEntry.trigger();
    ASSERT_TRUE(PumpUntil([this] { return window->Ticker() == nullptr; }, kPumpLimitMs));
    EXPECT_TRUE(marksAgree(false));
    trayEntry.trigger();
    ASSERT_NE(window->Ticker(), nullptr);
    EXPECT_TRUE(marksAgree(true));
    EXPECT_EQ(runtime.Settings().GetSetting(u"Ticker"_s, u"Show"_s, QString()), u"True"_s);
    // Closed by its own button, the ticker clears the mark as the menu entry would.
    window->Ticker()->SkinHandler(u"close"_s);
    ASSERT_TRUE(PumpUntil([this] { return window->Ticker() == nullptr; }, kPumpLimitMs));
    EXPECT_TRUE(marksAgree(false));
    EXPECT_EQ(runtime.Settings().GetSetting(u"Ticker"_s, u"Show"_s, QString()), u"False"_s);
}

TEST_F(MainWindowTest, ExitFromTheTraySavesEverythingAndEndsAfterTheMenuCloses) {
    Start();
    const QStringList files = {u"profiles/profiles.xml"_s, u"profiles/Ana/groups.xml"_s,
                               u"profiles/Ana/channels.xml"_s};
    for (const QString& file : files) {
        QFile::remove(home.File(file));
    }
    QSignalSpy unloaded(window.get(), &frmMain::Unloaded);
    QMenu& tray = *window->TrayMenu();
    tray.popup(QPoint(10, 10));
    const QList<QAction*> entries = tray.actions();
    entries.last()->trigger();
    EXPECT_TRUE(window->ExitRequested());
    EXPECT_NE(window->ActiveProfile(), nullptr) << "nothing goes while the menu is open";
    tray.hide();
    ASSERT_TRUE(PumpUntil([&unloaded] { return !unloaded.isEmpty(); }, kPumpLimitMs));
    EXPECT_EQ(window->ActiveProfile(), nullptr);
    EXPECT_FALSE(window->isVisible());
    for (const QString& file : files) {
        EXPECT_TRUE(QFile::exists(home.File(file))) << file.toStdString();
    }
    EXPECT_TRUE(home.Read(u"profiles/Ana/groups.xml"_s).contains("Science"));
}

TEST_F(MainWindowTest, TheCloseControlHidesToTheTrayOrEndsWithoutOne) {
    for (const bool tray : {true, false}) {
        SCOPED_TRACE(tray ? "with a tray" : "without a tray");
        window.reset();
        Start(true, tray);
        QFile::remove(home.File(u"profiles/Ana/groups.xml"_s));
        QSignalSpy unloaded(window.get(), &frmMain::Unloaded);
        ASSERT_TRUE(window->isVisible());
        window->SkinHandler(u"close"_s);
        EXPECT_FALSE(window->isVisible());
        if (tray) {
            EXPECT_NE(window->ActiveProfile(), nullptr);
            EXPECT_FALSE(window->ExitRequested());
            window->ShowAndRaise();
            EXPECT_TRUE(window->isVisible());
        } else {
            ASSERT_TRUE(PumpUntil([&unloaded] { return !unloaded.isEmpty(); }, kPumpLimitMs));
            EXPECT_TRUE(QFile::exists(home.File(u"profiles/Ana/groups.xml"_s))) << "ending saves";
        }
    }
}

TEST_F(MainWindowTest, DecodeTextReplacesTheFirstOfEachPlaceholder) {
    Start();
    EXPECT_EQ(window->DecodeText(u"{user} and {user}: {channels}/{chls} channels, {items} items"_s),
              u"Ana and {user}: 4/4 channels, 0 items"_s);
    EXPECT_EQ(window->DecodeText(u"no placeholders"_s), u"no placeholders"_s);
}

TEST_F(MainWindowTest, EveryFocusableControlHasAnAccessibleName) {
    Start();
    const FocusChain chain = FocusChain::Walk(*window, &Tree());
    ASSERT_FALSE(chain.visited.isEmpty());
    EXPECT_TRUE(chain.unnamed.isEmpty()) << chain.Unnamed();
}

} // namespace
