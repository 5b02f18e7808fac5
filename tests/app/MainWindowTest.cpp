// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/Runtime.h"
#include "app/clsProfile.h"
#include "app/colProfiles.h"
#include "app/frmAbout.h"
#include "app/frmMain.h"
#include "app/frmPreferences.h"
#include "app/frmUser.h"
#include "feeds/RSSChannel.h"
#include "groups/RSSGroup.h"
#include "groups/frmAddChannel.h"
#include "groups/frmAddGroup.h"
#include "groups/frmChannelManage.h"
#include "platform/CRegSettings.h"
#include "platform/XmlDocument.h"
#include "skin/SkinColor.h"
#include "skin/SkinSurface.h"
#include "skin/SkinTestSupport.h"
#include "skin/frmSkin.h"
#include "support/EventPump.h"
#include "support/FocusChain.h"
#include "support/QStringPrinter.h"
#include "support/RecordingDesktop.h"
#include "support/TestHome.h"
#include "ticker/frmTicker.h"
#include "views/frmProperties.h"

#include <QtTest>
#include <QtWidgets>
#include <gtest/gtest.h>
#include <memory>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int kPumpLimitMs = 10000;
// The two channels of data/Ana/channels.xml.
const QString kFeed = u"http://127.0.0.1:9/science.xml"_s;
const QString kOther = u"http://127.0.0.1:9/other.xml"_s;

// Runs `command` and hands each modal dialog of type T that it opens, once, to `answer`; true when
// exactly one came.
template <typename T>
bool WithModal(const std::function<void()>& command, const std::function<void(T&)>& answer) {
    int came = 0;
    QPointer<T> last;
    QTimer watch;
    QObject::connect(&watch, &QTimer::timeout, [&came, &last, &answer] {
        auto* dialog = qobject_cast<T*>(QApplication::activeModalWidget());
        if (dialog && dialog != last && dialog->isVisible()) {
            last = dialog;
            ++came;
            answer(*dialog);
        }
    });
    watch.start(1);
    command();
    QCoreApplication::processEvents();
    return came == 1;
}

// Runs `command` and answers every message box it shows, in turn with `answers` and then with OK;
// gives what the boxes said.
QStringList Answered(const std::function<void()>& command, QList<QMessageBox::StandardButton> answers = {}) {
    QStringList said;
    WithModal<QMessageBox>(command, [&said, &answers](QMessageBox& box) {
        said.append(box.text());
        QAbstractButton* answer = box.button(answers.isEmpty() ? QMessageBox::Ok : answers.takeFirst());
        ASSERT_NE(answer, nullptr) << "the box offers no such answer: " << box.text().toStdString();
        answer->click();
    });
    return said;
}

template <typename T> T* TopLevel() {
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        if (auto* found = qobject_cast<T*>(widget); found && found->isVisible()) {
            return found;
        }
    }
    return nullptr;
}

// The rows of data/<name>: cells split at " | "; "# " lines are comments.
QList<QStringList> Rows(const QString& name) {
    QList<QStringList> rows;
    for (const QString& line : DataText(name).split(u'\n', Qt::SkipEmptyParts)) {
        if (!line.startsWith(u"# "_s)) {
            rows.append(line.split(u" | "_s));
        }
    }
    return rows;
}

// Visible entries of a menu or menu bar, by caption (a checked one marked by a star), joined by bars.
QString Shown(const QWidget& menu) {
    QStringList shown;
    for (const QAction* action : menu.actions()) {
        if (action->isVisible()) {
            shown.append((action->isChecked() ? u"*"_s : QString()) +
                         (action->isSeparator() ? u"-"_s : action->text()));
        }
    }
    return shown.join(u'|');
}

QAction* Entry(const QMenu& menu, const QString& caption) {
    const QList<QAction*> entries = menu.actions();
    const auto found =
        std::find_if(entries.begin(), entries.end(), [&](QAction* a) { return a->text() == caption; });
    EXPECT_NE(found, entries.end()) << "no entry " << caption.toStdString();
    return found == entries.end() ? nullptr : *found;
}

// Chooses an entry of a menu, answering the boxes it shows as Answered does.
QStringList Choose(const QMenu& menu, const QString& caption,
                   QList<QMessageBox::StandardButton> answers = {}) {
    return Answered([&] { Entry(menu, caption)->trigger(); }, answers);
}

class MainWindowTest : public ::testing::Test {
protected:
    // The profile Ana of data/ (the group Science holding kFeed, the group Empty), or no profile at
    // all for a first start.
    void Start(bool withProfile = true, bool trayAvailable = true) {
        for (const QString& name : {u"profiles.xml"_s, u"Ana/channels.xml"_s, u"Ana/groups.xml"_s}) {
            if (withProfile) {
                home.Write(u"profiles/"_s + name, DataText(name).toUtf8());
            }
        }
        runtime.InstallDataFolder();
        runtime.LoadNamespaceStylesheet(nullptr);
        window = std::make_unique<frmMain>(runtime, skin, trayAvailable);
        ASSERT_TRUE(!withProfile || PumpUntil([this] { return Loaded(); }, kPumpLimitMs));
    }
    bool Loaded() { return window->ActiveProfile() && window->Tree()->topLevelItemCount() > 0; }
    QTreeWidget& Tree() { return *window->Tree(); }
    RSSChannel& Channel(const QString& url) { return *window->ActiveProfile()->GetChannel(url); }
    QTreeWidgetItem* Node(const QString& key) { return window->Node(key); }
    void Select(const QString& key) {
        Tree().setFocus();
        Tree().setCurrentItem(Node(key));
        ASSERT_NE(Tree().currentItem(), nullptr) << key.toStdString();
    }
    // The window at a glance: its profile, shown, asked to end, its menu bar, maximised, kept on top.
    QString State() {
        const clsProfile* profile = window->ActiveProfile();
        return u"profile=%1 shown=%2 ending=%3 menus=%4 max=%5 top=%6"_s
            .arg(profile ? profile->Name() : u"-"_s)
            .arg(int(window->isVisible()))
            .arg(int(window->ExitRequested()))
            .arg(int(window->MenuBar()->isVisible()))
            .arg(int(window->isMaximized()))
            .arg(int(window->windowFlags().testFlag(Qt::WindowStaysOnTopHint)));
    }

    TestHome home;
    RecordingDesktop desktop;
    Runtime runtime{home.GetPaths(), desktop};
    FakeSkinHost skinHost;
    frmTamselSkin skin{runtime.Settings(), home.GetPaths(), runtime.GetServices().clock, skinHost};
    std::unique_ptr<frmMain> window;
};

// A first start asks for a name; a window closed then leaves the list as it was. A damaged list is
// named and kept aside, and the start goes on as a first one: Tamsel cannot go on without a profile,
// so a cancelled dialog comes back.
TEST_F(MainWindowTest, AFirstStartOrADamagedListAsksForANameThenShowsTheNewProfileTopToBottom) {
    home.Write(u"profiles/profiles.xml"_s, "<tamselprofiles></tamselprofiles>");
    frmUser* dialog = nullptr;
    const auto asked = [&dialog] {
        return PumpUntil([&dialog] { return (dialog = TopLevel<frmUser>()) != nullptr; }, kPumpLimitMs);
    };
    Start(false);
    ASSERT_TRUE(asked());
    EXPECT_EQ(runtime.Settings().GetSetting(u"SETTINGS"_s, u"FISRTRUN"_s, u"?"_s), u"False"_s);
    EXPECT_TRUE(window->FirstRun()) << "the help channel still has to open once";
    window.reset();
    EXPECT_EQ(home.Read(u"profiles/profiles.xml"_s), QByteArray("<tamselprofiles></tamselprofiles>"));

    home.Write(u"profiles/profiles.xml"_s, "<tamselprofiles><user>");
    const QStringList said = Answered([&] {
        Start(false);
        ASSERT_TRUE(asked());
    });
    const QString damaged = window->Users()->DamagedFile();
    ASSERT_EQ(said.size(), 1);
    EXPECT_TRUE(!damaged.isEmpty() && said[0].startsWith(colProfiles::kReadError) &&
                said[0].contains(damaged))
        << said[0].toStdString();
    QTest::keyClick(dialog, Qt::Key_Escape);
    ASSERT_TRUE(asked());
    window->Users()->AddUser(u"Taken"_s, false, true);
    for (const QString& typed : {u""_s, u"Taken"_s}) {
        dialog->Username()->setText(typed);
        EXPECT_EQ(Answered([dialog] { QTest::mouseClick(dialog->CreateButton(), Qt::LeftButton); }),
                  QStringList{typed.isEmpty() ? u"Please enter a username"_s : u"Username already exists"_s});
        EXPECT_TRUE(dialog->isVisible());
    }
    dialog->Username()->setText(u"taken"_s);
    QTest::mouseClick(dialog->CreateButton(), Qt::LeftButton);
    ASSERT_TRUE(PumpUntil([this] { return Loaded() && !TopLevel<frmUser>(); }, kPumpLimitMs));
    EXPECT_EQ(window->ActiveProfile()->Name(), u"taken"_s) << "names differing in case only are new";
    // Each node's text, indented by two blanks under its parent, top to bottom.
    QStringList captions;
    for (QTreeWidgetItemIterator it(&Tree()); *it; ++it) {
        EXPECT_FALSE((*it)->icon(0).isNull()) << (*it)->text(0).toStdString();
        captions.append(((*it)->parent() ? u"  "_s : QString()) + (*it)->text(0));
    }
    EXPECT_EQ(captions.join(u'/'),
              u"Tagged  (0)/Tamsel News  (0)/Deleted  (0)/Help  (0)/Spotlight  (0)/All Items/"
              u"  Today  (0)/  Yesterday  (0)/  Past 7 Days  (0)/  Unread  (0)/  Read  (0)/"
              u"My Channels  (0)"_s);
    EXPECT_TRUE(home.Read(u"profiles/taken/groups.xml"_s).contains("My Channels"));
    EXPECT_TRUE(home.Read(u"profiles/profiles.xml"_s).contains("taken"));
    ASSERT_TRUE(PumpUntil([this] { return window->TrayIconShown(); }, kPumpLimitMs));
}

TEST_F(MainWindowTest, ArrowKeysMoveWithoutOpeningAClickOpensAndOneChannelInTwoGroupsChangesBothNodes) {
    Start();
    EXPECT_EQ(window->focusWidget(), &Tree()) << "the keys reach the tree as soon as the window opens";
    const FocusChain chain = FocusChain::Walk(*window, &Tree());
    ASSERT_FALSE(chain.visited.isEmpty());
    EXPECT_TRUE(chain.unnamed.isEmpty()) << chain.Unnamed();
    RSSChannel& channel = Channel(kFeed);
    channel.SetNewItems(true);
    QTreeWidgetItem* group = Node(u"Science"_s);
    QTreeWidgetItem* node = Node(u"Science|"_s + kFeed);
    Select(u"Science"_s);
    QTest::keyClick(&Tree(), Qt::Key_Down);
    EXPECT_EQ(Tree().currentItem(), node);
    EXPECT_TRUE(channel.NewItems()) << "moving the selection opened the channel";
    QTest::mouseClick(Tree().viewport(), Qt::LeftButton, {}, Tree().visualItemRect(node).center());
    EXPECT_FALSE(channel.NewItems()) << "a click opens the channel's view";
    channel.SetNewItems(true);
    QTest::keyClick(&Tree(), Qt::Key_Return);
    EXPECT_FALSE(channel.NewItems()) << "Enter opens it from the keyboard";
    // A click on a group folds it and remembers it.
    QTest::mouseClick(Tree().viewport(), Qt::LeftButton, {}, Tree().visualItemRect(group).center());
    EXPECT_FALSE(group->isExpanded());
    EXPECT_FALSE(window->ActiveProfile()->GetGroup(u"Science"_s)->Expanded());

    window->AddChannel(kFeed, u"Empty"_s);
    QTreeWidgetItem* second = Node(u"Empty|"_s + kFeed);
    ASSERT_NE(second, nullptr);
    // The window's texts count the items: a new one shows there once its channel reports (after
    // the start's own late redraw).
    ASSERT_TRUE(PumpUntil([this] { return window->TrayIconShown(); }, kPumpLimitMs));
    const QImage texts = window->picSkin()->Image();
    const auto unread = [this] { return Node(u"All Items|_tamsel/unread"_s)->text(0); };
    const QString before = unread();
    const XmlDocument item =
        XmlDocument::Parse("<item channel=\"" + kFeed.toUtf8() +
                           "\"><title>One more</title><read>false</read><delete>false</delete></item>");
    ASSERT_TRUE(window->AddRSSItem(item.DocumentElement()));
    EXPECT_FALSE(window->AddRSSItem(item.DocumentElement())) << "a known item is not added again";
    channel.SetTitle(u"Renamed"_s);
    window->StateChange(u"Ana"_s, channel);
    EXPECT_TRUE(PumpUntil([&] { return window->picSkin()->Image() != texts; }, kPumpLimitMs));
    for (QTreeWidgetItem* shown : {node, second}) {
        EXPECT_EQ(shown->text(0), channel.TitleAndCount());
        EXPECT_EQ(shown->icon(0).cacheKey(), node->icon(0).cacheKey());
    }
    // About a second later the built-in folders count again.
    EXPECT_TRUE(PumpUntil([&] { return unread() != before; }, kPumpLimitMs)) << before.toStdString();
    EXPECT_EQ(unread(), u"Unread  (1)"_s);
    channel.SetTitle(u"Elsewhere"_s);
    window->StateChange(u"Bob"_s, channel);
    EXPECT_TRUE(node->text(0).startsWith(u"Renamed"_s)) << "a report of another profile changes nothing";
    // Leaving one of two groups asks nothing.
    Select(u"Empty|"_s + kFeed);
    EXPECT_EQ(Choose(*window->ActionsMenu(), u"Re&move Channel"_s), QStringList());
    EXPECT_EQ(Node(u"Empty|"_s + kFeed), nullptr);
    EXPECT_NE(Node(u"Science|"_s + kFeed), nullptr);
}

// Refused writes at the end: the user chooses between staying, trying again and leaving without the
// list; the profile's own files are saved all the same. Exit from the tray waits for its menu to close.
TEST_F(MainWindowTest, AnEndThatCannotSaveAsksStaysOnCancelAndOnDiscardEndsWithTheProfileSaved) {
    Start();
    const QStringList files = {u"profiles/Ana/groups.xml"_s, u"profiles/Ana/channels.xml"_s};
    for (const QString& file : files) {
        QFile::remove(home.File(file));
    }
    // A folder where the profile list belongs makes every save of the list fail.
    QFile::remove(home.File(u"profiles/profiles.xml"_s));
    home.Write(u"profiles/profiles.xml/blocker"_s, "x");
    QSignalSpy unloaded(window.get(), &frmMain::Unloaded);
    QMenu& tray = *window->TrayMenu();
    tray.popup(QPoint(10, 10));
    Entry(tray, u"E&xit"_s)->trigger();
    EXPECT_EQ(State(), u"profile=Ana shown=1 ending=1 menus=0 max=0 top=0"_s)
        << "nothing goes while the menu is open";
    const QStringList said = Answered([&tray] { tray.hide(); }, {QMessageBox::Retry, QMessageBox::Cancel});
    ASSERT_EQ(said.size(), 2) << "Retry tries again";
    EXPECT_TRUE(said[1].startsWith(u"Tamsel could not save:"_s)) << said[1].toStdString();
    EXPECT_EQ(State(), u"profile=Ana shown=1 ending=0 menus=0 max=0 top=0"_s);
    EXPECT_EQ(Answered([this] { window->ShutDown(); }, {QMessageBox::Discard}).size(), 1);
    ASSERT_TRUE(PumpUntil([&unloaded] { return !unloaded.isEmpty(); }, kPumpLimitMs));
    EXPECT_EQ(State(), u"profile=- shown=0 ending=1 menus=0 max=0 top=0"_s);
    for (const QString& file : files) {
        EXPECT_TRUE(QFile::exists(home.File(file))) << file.toStdString();
    }
    EXPECT_TRUE(home.Read(u"profiles/Ana/groups.xml"_s).contains("Science"));
}

// The menus read as written, the popup shows the entries of the node, channel commands need a
// channel, and the Delete key asks, refuses or does nothing by node.
TEST_F(MainWindowTest, TheMenusAndTheDeleteKeyFollowTheSelectedNode) {
    Start();
    EXPECT_EQ(Shown(*window->MenuBar()), u"&File|&Actions|&Help"_s);
    EXPECT_EQ(Shown(*window->FileMenu()), u"Export &OPML File...|-|&Profile|Change &Skin...|P&references...|"
                                          u"Always On &Top|-|Show Ticker &Bar|&Close"_s);
    EXPECT_EQ(Shown(*window->HelpMenu()), u"&Help Channel|&Tamsel Website|-|&About..."_s);
    QMenu& actions = *window->ActionsMenu();
    const QString fixed = u"&Add Channels...|Add &Group...|&Reload All Channels|&Delete Channels..."_s;
    EXPECT_EQ(Shown(actions), fixed) << "context entries are hidden outside the popup";
    for (const QStringList& row : Rows(u"context-menus.txt"_s)) {
        const QString& key = row[0];
        SCOPED_TRACE(key.toStdString());
        const QPoint at = Tree().visualItemRect(Node(key)).center();
        QContextMenuEvent event(QContextMenuEvent::Mouse, at, Tree().viewport()->mapToGlobal(at));
        QApplication::sendEvent(Tree().viewport(), &event);
        ASSERT_TRUE(actions.isVisible());
        EXPECT_EQ(Tree().currentItem(), Node(key));
        EXPECT_EQ(Shown(actions), QString(fixed + u"|-|"_s + row[1]));
        actions.hide();
        QCoreApplication::processEvents();
        EXPECT_EQ(Shown(actions), fixed);
    }
    RSSChannel& channel = Channel(kFeed);
    channel.SetNewItems(true);
    // Fetching, or done with a check: the reload timer then waits far longer than for a first check.
    const auto checked = [](const RSSChannel& fetched) {
        return fetched.Busy() || fetched.ReloadInterval() >= RSSChannel::kMinuteMs;
    };
    // The state after each step, as data/menu-steps.txt describes it.
    const auto state = [&] {
        return u"new=%1 checked=%2%3 props=%4 viewer=%5 nodes=%6%7"_s.arg(int(channel.NewItems()))
            .arg(int(checked(channel)))
            .arg(int(checked(Channel(kOther))))
            .arg(int(TopLevel<frmProperties>() != nullptr))
            .arg(int(window->Viewer(channel) != nullptr))
            .arg(int(Node(u"Science"_s) != nullptr))
            .arg(int(Node(u"Science|"_s + kFeed) != nullptr));
    };
    for (const QStringList& step : Rows(u"menu-steps.txt"_s)) {
        SCOPED_TRACE(step.join(u" | "_s).toStdString());
        Select(step[0]);
        const QString said = Choose(actions, step[1]).join(u'|');
        EXPECT_EQ(QStringList({state(), said}), QStringList({step[2], step.value(3)}));
    }
    const auto pressDelete = [this] { QTest::keyClick(&Tree(), Qt::Key_Delete); };
    for (const QStringList& row : Rows(u"delete-key.txt"_s)) {
        SCOPED_TRACE(row.join(u" | "_s).toStdString());
        Select(row[0]);
        const QString said =
            Answered(pressDelete, {row[1] == u"No"_s ? QMessageBox::No : QMessageBox::Ok}).join(u'|');
        EXPECT_EQ(QStringList({Node(row[0]) ? u"stays"_s : u"goes"_s, said}),
                  QStringList({row[2], row.value(3)}));
    }
    EXPECT_FALSE(home.Read(u"profiles/Ana/groups.xml"_s).contains("Empty")) << "the deletion is saved";
    // Yes removes a channel from its last group and offers to unsubscribe it.
    window->AddChannel(kOther, u"Science"_s);
    for (const auto& [url, unsubscribe] :
         {std::pair{kFeed, QMessageBox::No}, std::pair{kOther, QMessageBox::Yes}}) {
        SCOPED_TRACE(url.toStdString());
        Select(u"Science|"_s + url);
        const QStringList said = Answered(pressDelete, {QMessageBox::Yes, unsubscribe});
        ASSERT_EQ(said.size(), 2);
        EXPECT_TRUE(said[1].startsWith(u"This channel is no longer associated with a group."_s));
        EXPECT_EQ(Node(u"Science|"_s + url), nullptr);
        EXPECT_EQ(window->ActiveProfile()->GetChannel(url) != nullptr, unsubscribe == QMessageBox::No);
    }
}

TEST_F(MainWindowTest, TheTrayListsNewsBringsTheWindowBackSoundsForAnasGroupsAndItsTickerEntryAgrees) {
    runtime.Settings().SaveSetting(u"Ticker"_s, u"Show"_s, u"True"_s);
    Start();
    window->LoadTrayMenu();
    EXPECT_EQ(Shown(*window->NewItemsMenu()), QString());
    EXPECT_EQ(Shown(*window->TrayMenu()), u"&New Items|*&Show Ticker Bar|&Open Tamsel|E&xit"_s);
    EXPECT_TRUE(window->TrayMenu()->defaultAction()->font().bold());
    Channel(kFeed).SetNewItems(true);
    Channel(kOther).SetNewItems(true);
    window->LoadTrayMenu();
    EXPECT_EQ(Shown(*window->TrayMenu()).left(13), u"&New Items|-|"_s);
    EXPECT_EQ(Shown(*window->NewItemsMenu()),
              QString(Channel(kFeed).TitleAndCount() + u'|' + Channel(kOther).TitleAndCount()));
    // Choosing an entry opens its channel; the list shrinks without losing entries.
    window->NewItemsMenu()->actions().at(0)->trigger();
    EXPECT_FALSE(Channel(kFeed).NewItems());
    window->LoadTrayMenu();
    EXPECT_EQ(Shown(*window->NewItemsMenu()), Channel(kOther).TitleAndCount());
    window->hide();
    auto* icon = window->findChild<QSystemTrayIcon*>();
    ASSERT_NE(icon, nullptr);
    Q_EMIT icon->activated(QSystemTrayIcon::Trigger);
    EXPECT_FALSE(window->isVisible()) << "a single click leaves a hidden window hidden";
    Q_EMIT icon->activated(QSystemTrayIcon::DoubleClick);
    EXPECT_TRUE(window->isVisible());

    // kOther is subscribed but in no group.
    const std::tuple<QString, QString, qsizetype> news[] = {
        {u"Bob"_s, QString(), 0}, {u"Ana"_s, kOther, 0}, {u"Ana"_s, kFeed, 1}};
    for (const auto& [profile, channel, sounds] : news) {
        window->PopupInfo(u"New items"_s, profile, channel);
        EXPECT_EQ(desktop.sounds.size(), sounds) << profile.toStdString() << " " << channel.toStdString();
    }
    EXPECT_EQ(window->DecodeText(u"{user} and {user}: {channels}/{chls} channels, {items} items"_s),
              u"Ana and {user}: 4/4 channels, 0 items"_s);

    QAction& trayEntry = *Entry(*window->TrayMenu(), u"&Show Ticker Bar"_s);
    QAction& fileEntry = *Entry(*window->FileMenu(), u"Show Ticker &Bar"_s);
    const auto shownAndMarked = [&](bool shown) {
        const bool ended = shown || PumpUntil([this] { return window->Ticker() == nullptr; }, kPumpLimitMs);
        return ended && (window->Ticker() != nullptr) == shown && trayEntry.isChecked() == shown &&
               fileEntry.isChecked() == shown &&
               runtime.Settings().GetSetting(u"Ticker"_s, u"Show"_s, {}) == (shown ? u"True"_s : u"False"_s);
    };
    EXPECT_TRUE(shownAndMarked(true));
    EXPECT_EQ(Shown(*window->TickerMenu()),
              u"Open &Item in Browser|&Open Tamsel|-|&Dock|&Effects|&Close Ticker Bar"_s);
    // The Effects entries choose the ticker's effect and mark the one it runs.
    QMenu& effects = *Entry(*window->TickerMenu(), u"&Effects"_s)->menu();
    Entry(effects, u"&Fade"_s)->trigger();
    EXPECT_EQ(window->Ticker()->CurrentEffect(), frmTicker::EffectFade);
    window->Ticker()->SetEffect(frmTicker::EffectType);
    effects.popup({0, 0});
    EXPECT_EQ(Shown(effects), u"&Scroll Horizontal|Scroll &Vertical|&Fade|*&TypeWrite"_s);
    effects.hide();

    Entry(*window->TickerMenu(), u"&Close Ticker Bar"_s)->trigger();
    EXPECT_TRUE(shownAndMarked(false));
    fileEntry.trigger();
    EXPECT_TRUE(shownAndMarked(true));
    trayEntry.trigger();
    EXPECT_TRUE(shownAndMarked(false));
    trayEntry.trigger();
    EXPECT_TRUE(shownAndMarked(true));
    // Closed by its own button, the ticker clears the marks as the menu entry would.
    window->Ticker()->SkinHandler(u"close"_s);
    EXPECT_TRUE(shownAndMarked(false));
}

TEST_F(MainWindowTest, WithoutATrayTheCloseControlEndsTamsel) {
    Start(true, false);
    QSignalSpy unloaded(window.get(), &frmMain::Unloaded);
    window->SkinHandler(u"close"_s);
    EXPECT_EQ(State(), u"profile=- shown=0 ending=1 menus=0 max=0 top=0"_s);
    EXPECT_TRUE(PumpUntil([&unloaded] { return !unloaded.isEmpty(); }, kPumpLimitMs));
}

// The profile menu is used right after the start, as by a reader who switches at once.
TEST_F(MainWindowTest,
       TheFileMenuSwitchesProfilesTheWindowControlsHideFrameAndGrowItThePreferencesStoreOnOk) {
    Start();
    window->Users()->AddUser(u"Bob & Co"_s, false, true);
    window->LoadProfileMenu();
    QMenu& profiles = *window->ProfileMenu();
    EXPECT_EQ(Shown(profiles), u"*Ana|Bob && Co|-|&New Profile..."_s);
    QFile::remove(home.File(u"profiles/Ana/groups.xml"_s));
    profiles.actions().at(1)->trigger();
    ASSERT_TRUE(PumpUntil([this] { return State().startsWith(u"profile=Bob & Co "_s); }, kPumpLimitMs));
    window->LoadProfileMenu();
    EXPECT_EQ(Shown(profiles), u"Ana|*Bob && Co|-|&New Profile..."_s);
    EXPECT_TRUE(home.Read(u"profiles/Ana/groups.xml"_s).contains("Science"))
        << "the switch saved the old profile";
    EXPECT_EQ(State(), u"profile=Bob & Co shown=1 ending=0 menus=0 max=0 top=0"_s)
        << "a skinned window starts frameless";
    QAction* onTop = Entry(*window->FileMenu(), u"Always On &Top"_s);
    // The close control hides the window to the tray. Maximising a frameless window gains the frame
    // and the menus first.
    const std::pair<std::function<void()>, QString> steps[] = {
        {[this] { window->SkinHandler(u"close"_s); }, u"shown=0 ending=0 menus=0 max=0 top=0"_s},
        {[this] { window->ShowAndRaise(); }, u"shown=1 ending=0 menus=0 max=0 top=0"_s},
        {[this] { window->SkinHandler(u"windowframe"_s); }, u"shown=1 ending=0 menus=1 max=0 top=0"_s},
        {[this] { window->SkinHandler(u"windowframe"_s); }, u"shown=1 ending=0 menus=0 max=0 top=0"_s},
        {[this] { window->SkinHandler(u"max"_s); }, u"shown=1 ending=0 menus=1 max=1 top=0"_s},
        {[this] { window->SkinHandler(u"max"_s); }, u"shown=1 ending=0 menus=1 max=0 top=0"_s},
        {[onTop] { onTop->trigger(); }, u"shown=1 ending=0 menus=1 max=0 top=1"_s},
        {[onTop] { onTop->trigger(); }, u"shown=1 ending=0 menus=1 max=0 top=0"_s},
    };
    for (const auto& [step, state] : steps) {
        step();
        EXPECT_EQ(State(), u"profile=Bob & Co "_s + state);
    }
    // The preferences: Cancel stores nothing; Ok writes the switches and the start entry, then removes
    // it again; a dark skin darkens the dialog.
    CRegSettings& settings = runtime.Settings();
    const QString autostart = home.GetPaths().AutostartFolder() + u"/tamsel.desktop"_s;
    // The switches as the dialog shows them: updates, sound, run at log-in, open the main window.
    const auto boxes = [](frmPreferences& dialog) {
        return QList<bool>{dialog.chkUpdates()->isChecked(), dialog.chkAlert()->isChecked(),
                           dialog.chkRunStartup()->isChecked(), dialog.chkOpenMain()->isChecked()};
    };
    for (const bool ok : {false, true}) {
        EXPECT_TRUE(WithModal<frmPreferences>(
            [this] { Choose(*window->FileMenu(), u"P&references..."_s); },
            [&boxes, ok](frmPreferences& dialog) {
                EXPECT_EQ(boxes(dialog), (QList<bool>{true, true, false, true})) << "Cancel stores nothing";
                for (QCheckBox* box : {dialog.chkRunStartup(), dialog.chkAlert(), dialog.chkOpenMain()}) {
                    QTest::mouseClick(box, Qt::LeftButton);
                }
                QTest::mouseClick(ok ? dialog.cmdOk() : dialog.cmdCancel(), Qt::LeftButton);
            }));
    }
    EXPECT_EQ((QStringList{settings.GetSetting(u"START"_s, u"CHECKUPDATE"_s, {}),
                           settings.GetSetting(u"PREF"_s, u"ALERT"_s, {}),
                           settings.GetSetting(u"START"_s, u"OPENMAIN"_s, {})}),
              (QStringList{u"True"_s, u"False"_s, u"False"_s}));
    // The desktop runs the entry's command line: the full path, without quotes.
    QFile entry(autostart);
    ASSERT_TRUE(entry.open(QIODevice::ReadOnly));
    EXPECT_TRUE(entry.readAll().contains(
        QByteArray("\nExec=" + QCoreApplication::applicationFilePath().toUtf8() + '\n')));
    EXPECT_EQ((QStringList{settings.Company(), settings.AppName()}),
              (QStringList{CRegSettings::kCompany, CRegSettings::kAppName}))
        << "the start entry's names are left again";

    frmPreferences again(settings, skin);
    again.show();
    EXPECT_EQ(boxes(again), (QList<bool>{true, false, true, false}));
    const FocusChain chain = FocusChain::Walk(again, again.chkUpdates());
    EXPECT_TRUE(chain.unnamed.isEmpty()) << chain.Unnamed();
    EXPECT_EQ(chain.clashingKeys, QStringList());
    EXPECT_EQ(chain.visited, (QList<QWidget*>{again.chkUpdates(), again.chkAlert(), again.chkRunStartup(),
                                              again.chkOpenMain(), again.cmdOk(), again.cmdCancel()}));
    QTest::mouseClick(again.chkRunStartup(), Qt::LeftButton);
    QTest::mouseClick(again.cmdOk(), Qt::LeftButton);
    EXPECT_FALSE(QFile::exists(autostart));
    // A dark skin gives a dark dialog.
    settings.SaveSetting(u"SETTINGS"_s, u"SKINNAME"_s, u"Nightfall"_s);
    skin.LoadSkin();
    const QColor back = again.palette().color(QPalette::Window);
    EXPECT_EQ(back, SkinColor::ToQColor(skin.FrameColor(frmTamselSkin::KindDialog)));
    EXPECT_LT(back.lightness(), 128);
}

TEST_F(MainWindowTest, TheChannelDialogsOpenOnTheSelectedGroupAndGroupNamesAreCheckedBeforeAnythingChanges) {
    Start();
    for (const QStringList& row : Rows(u"add-channel-groups.txt"_s)) {
        Select(row[0]);
        QString preselected;
        EXPECT_TRUE(WithModal<frmAddChannel>(
            [this] { window->SkinHandler(u"addchannel"_s); },
            [&preselected](frmAddChannel& dialog) {
                preselected = dialog.GroupBox(frmAddChannel::TabAddress)->currentText();
                dialog.reject();
            }));
        EXPECT_EQ(preselected, row[1]) << row[0].toStdString();
    }
    EXPECT_TRUE(
        WithModal<frmChannelManage>([this] { Choose(*window->ActionsMenu(), u"&Delete Channels..."_s); },
                                    [](frmChannelManage& dialog) { dialog.reject(); }));
    Select(u"Science"_s);
    Choose(*window->ActionsMenu(), u"Re&name Group"_s);
    ASSERT_NE(TopLevel<frmAddGroup>(), nullptr);
    EXPECT_EQ(TopLevel<frmAddGroup>()->txtGroup()->text(), u"Science"_s);
    TopLevel<frmAddGroup>()->close();
    for (const QStringList& row : Rows(u"group-names.txt"_s)) {
        SCOPED_TRACE(row.join(u" | "_s).toStdString());
        const QString name = row[1].mid(1, row[1].size() - 2);
        bool done = false;
        const QString said =
            Answered([&] {
                done = row[0] == u"add"_s ? window->AddGroup(name) : window->RenameGroup(u"Science"_s, name);
            }).join(u'|');
        EXPECT_EQ(QStringList({done ? u"done"_s : u"refused"_s, said}), QStringList({row[2], row.value(3)}));
    }
    EXPECT_TRUE(home.Read(u"profiles/Ana/groups.xml"_s).contains("<title>News</title>"))
        << "a new group is saved";
    EXPECT_EQ(window->ActiveProfile()->GetGroup(u"Science"_s), nullptr);
    EXPECT_NE(Node(u"Physics|"_s + kFeed), nullptr) << "the tree shows the renamed group with its channel";
    EXPECT_NE(Node(u"News"_s), nullptr);
}

TEST_F(MainWindowTest,
       TheHelpEntriesOpenTheHelpChannelTheWebsiteAndTheAboutBoxExportAndSkinChoiceActUnlessCancelled) {
    Start();
    RSSChannel& help = Channel(runtime.Site().HelpURL());
    ASSERT_EQ(window->Viewer(help), nullptr);
    QApplication::setActiveWindow(window.get());
    Tree().setFocus();
    QTest::keyClick(&Tree(), Qt::Key_F1);
    EXPECT_NE(window->Viewer(help), nullptr);
    EXPECT_EQ(Tree().currentItem(), Node(u"Tamsel|"_s + runtime.Site().HelpURL()));
    Choose(*window->HelpMenu(), u"&Tamsel Website"_s);
    EXPECT_TRUE(desktop.opened.contains(runtime.Site().HomePage()));
    Choose(*window->HelpMenu(), u"&About..."_s);
    frmAbout* about = TopLevel<frmAbout>();
    ASSERT_NE(about, nullptr);
    EXPECT_EQ(about->windowTitle(), u"About Tamsel"_s);
    EXPECT_TRUE(window->geometry().contains(about->geometry().center())) << "placed over the main window";
    const auto texts = [](const frmAbout& box) {
        QStringList all;
        for (const QLabel* label : box.findChildren<QLabel*>()) {
            all.append(label->text());
        }
        return all;
    };
    EXPECT_TRUE(texts(*about).contains(
        u"Version %1.%2.%3"_s.arg(TAMSEL_VERSION_MAJOR).arg(TAMSEL_VERSION_MINOR).arg(TAMSEL_VERSION_PATCH)));
    EXPECT_TRUE(texts(*about).contains(u"Tamsel Website"_s)) << "the link's text for a home page off the web";
    const FocusChain chain = FocusChain::Walk(*about, about->focusWidget());
    ASSERT_EQ(chain.visited.size(), 3);
    EXPECT_TRUE(chain.unnamed.isEmpty()) << chain.Unnamed();
    // The link, last in the chain, opens the website by mouse and by keyboard.
    auto* link = qobject_cast<QLabel*>(chain.visited.last());
    ASSERT_NE(link, nullptr);
    QTest::mouseClick(link, Qt::LeftButton);
    QTest::keyClick(link, Qt::Key_Space);
    EXPECT_EQ(desktop.opened.count(runtime.Site().HomePage()), 3);
    // Without a system information tool on the path the box says so.
    const QByteArray path = qgetenv("PATH");
    qputenv("PATH", home.Path().toUtf8());
    const QStringList said = Answered([about] { about->StartSysInfo(); });
    qputenv("PATH", path);
    EXPECT_EQ(said, QStringList{u"System Information Is Unavailable At This Time"_s});
    QTest::keyClick(about, Qt::Key_Escape);
    EXPECT_FALSE(about->isVisible());
    about->show();
    about->SkinHandler(u"close"_s);
    EXPECT_FALSE(about->isVisible());
    // A home page on the web reads as its address. The credits fade in, scroll up and stop.
    frmAbout web(skin, desktop, u"https://tamsel.example/"_s, nullptr);
    web.show();
    EXPECT_TRUE(texts(web).contains(u"https://tamsel.example/"_s));
    const int height = web.Credits()->height();
    ASSERT_GT(height, 0);
    const QColor back = web.Credits()->BackColor();
    web.tmrCredits_Timer();
    EXPECT_EQ(web.CreditsTop(), height - 1);
    EXPECT_LE(std::abs(web.CreditsColour().red() - back.red()), 1) << "the text starts near invisible";
    for (int tick = 1; tick < height + 1000; ++tick) {
        web.tmrCredits_Timer();
    }
    EXPECT_EQ(web.CreditsTop(), 0);
    EXPECT_FALSE(web.CreditsRunning());
    EXPECT_NE(web.CreditsColour(), back) << "the text has faded in";
    const QString file = home.File(u"export.opml"_s);
    for (const bool accept : {false, true}) {
        SCOPED_TRACE(accept);
        EXPECT_TRUE(WithModal<QFileDialog>([this] { Choose(*window->FileMenu(), u"Export &OPML File..."_s); },
                                           [&file, accept](QFileDialog& dialog) {
                                               dialog.selectFile(file);
                                               QMetaObject::invokeMethod(&dialog, accept ? &QDialog::accept
                                                                                         : &QDialog::reject);
                                           }));
        EXPECT_EQ(QFile::exists(file), accept);
        // A skin chooser, left either way, closes the viewers; only its Ok reloads the skin.
        Channel(kFeed).CreateChannelView(true);
        EXPECT_TRUE(WithModal<frmSkin>([this] { Choose(*window->FileMenu(), u"Change &Skin..."_s); },
                                       [accept](frmSkin& chooser) {
                                           chooser.lstSkins()->setCurrentItem(
                                               chooser.lstSkins()->findItems(u"Nightfall"_s, {}).value(0));
                                           accept ? chooser.cmdOk()->click() : chooser.reject();
                                       }));
        EXPECT_EQ(window->Viewer(Channel(kFeed)), nullptr);
        EXPECT_EQ(skin.SkinName() == u"Nightfall"_s, accept);
    }
    EXPECT_TRUE(home.Read(u"export.opml"_s).contains(kFeed.toUtf8()));
}

} // namespace
