// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/colProfiles.h"
#include "feeds/FeedsFixture.h"
#include "groups/ChannelCommands.h"
#include "groups/frmAddChannel.h"
#include "groups/frmAddGroup.h"
#include "groups/frmChannelManage.h"
#include "skin/SkinColor.h"
#include "skin/SkinTestSupport.h"
#include "support/EventPump.h"
#include "support/FocusChain.h"
#include "support/LocalHttpServer.h"

#include <QClipboard>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QSignalSpy>
#include <QTabWidget>
#include <QTimer>
#include <QTreeWidget>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int kPumpLimitMs = 10000;
const QString kScience = u"http://feeds.example.org/science.xml"_s;
const QString kArts = u"http://feeds.example.org/arts.xml"_s;
const QString kSpot = u"http://spot.example.org/rss"_s;

// The main window's commands as a record; groups and channels still reach the profile, so that
// the dialogs see what they did.
class RecordingCommands final : public ChannelCommands {
public:
    RecordingCommands(clsProfile& profile, colProfiles& users) : m_profile(profile), m_users(users) {}

    clsProfile* ActiveProfile() const override { return &m_profile; }
    colProfiles* Users() const override { return &m_users; }
    void AddChannel(const QString& url, const QString& groupName) override {
        calls.append(u"add "_s + url + u" > "_s + groupName);
        if (RSSChannel* channel = m_profile.AddChannel(url, groupName)) {
            channel->StopReloading();
        }
    }
    bool AddGroup(const QString& name) override {
        calls.append(u"group "_s + name);
        return m_profile.AddGroup(name);
    }
    bool RenameGroup(const QString& oldName, const QString& newName) override {
        calls.append(u"rename "_s + oldName + u" > "_s + newName);
        return renameAnswer;
    }
    void RemoveChannel(const QString& key) override {
        calls.append(u"remove "_s + key);
        m_profile.RemoveChannel(key);
    }
    void ChangeUser(const QString& name) override { calls.append(u"user "_s + name); }

    QStringList calls;
    bool renameAnswer = true;

private:
    clsProfile& m_profile;
    colProfiles& m_users;
};

// Clicks `button` and answers the message box it opens; what the box said, empty when none came.
QString PressAndAnswer(QAbstractButton* button) {
    const auto text = std::make_shared<QString>();
    QTimer::singleShot(0, [text] {
        if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
            *text = box->text();
            box->accept();
        }
    });
    QTest::mouseClick(button, Qt::LeftButton);
    return *text;
}

// "title|url,title|url", top to bottom.
QString Rows(const QTreeWidget& list) {
    QStringList rows;
    for (int i = 0; i < list.topLevelItemCount(); ++i) {
        rows.append(list.topLevelItem(i)->text(0) + u'|' + list.topLevelItem(i)->text(1));
    }
    return rows.join(u',');
}

void SelectRows(QTreeWidget& list, const QList<int>& rows) {
    list.clearSelection();
    for (int row : rows) {
        list.topLevelItem(row)->setSelected(true);
    }
}

// Each tab as "group/group>chosen group: its list".
QStringList Tabs(const frmAddChannel& dialog) {
    QStringList tabs;
    for (int tab = frmAddChannel::TabAddress; tab <= frmAddChannel::TabSpotlight; ++tab) {
        const QComboBox* box = dialog.GroupBox(tab);
        QStringList groups;
        for (int i = 0; i < box->count(); ++i) {
            groups.append(box->itemText(i));
        }
        tabs.append(groups.join(u'/') + u'>' + box->currentText() + u": "_s + Rows(*dialog.List(tab)));
    }
    return tabs;
}

// The active profile (with the maker's channels) has the groups Science and News, two channels of
// its own in Science and one in the Spotlight group; the profile Ben is listed after it. A local
// web site answers searches.
class ChannelDialogsTest : public FeedsFixture {
protected:
    ChannelDialogsTest()
        : users(Services{clock, settings, http, desktop, home.GetPaths()}, host), network(home.GetPaths()),
          skin(settings, home.GetPaths(), clock, skinHost), commands(profile, users) {
        LoadSkin(u"Default"_s);
        users.AddUser(kProfile, true, true);
        users.AddUser(u"Ben"_s, false, true);
        Activate(true);
        profile.AddGroup(u"Science"_s);
        profile.AddGroup(u"News"_s);
        for (const auto& [url, title, group] : {std::tuple{kScience, u"Science Daily"_s, u"Science"_s},
                                                std::tuple{kArts, u"Arts"_s, u"Science"_s},
                                                std::tuple{kSpot, u"Spotted"_s, GroupName::Spotlight}}) {
            RSSChannel* channel = profile.AddChannel(url, group);
            channel->SetTitle(title);
            channel->StopReloading();
        }
        QGuiApplication::clipboard()->clear();
    }

    void LoadSkin(const QString& name) {
        settings.SaveSetting(u"SETTINGS"_s, u"SKINNAME"_s, name);
        skin.LoadSkin();
    }

    // The dialog as the main window opens it, after its OPML file was read.
    std::unique_ptr<frmAddChannel> OpenAddChannel() {
        auto dialog =
            std::make_unique<frmAddChannel>(commands, settings, network, clock, skin, home.GetPaths());
        dialog->init();
        dialog->show();
        EXPECT_TRUE(PumpUntil(
            [&dialog] {
                return dialog->List(frmAddChannel::TabOPML)->topLevelItemCount() > 0 ||
                       !dialog->lblOPMLStatus()->text().isEmpty();
            },
            kPumpLimitMs));
        return dialog;
    }

    // Starts a search with News chosen for `path` on the local site, which is held (never
    // answers), answers with `page` (a file of data/), or else closes the connection.
    void Search(frmAddChannel& dialog, const QString& path, const QString& page = {}) {
        LocalHttpServer::Route route;
        route.hold = page == u"hold"_s;
        route.reset = page.isEmpty();
        route.body = ReadData(page);
        route.headers = {{"Content-Type", "text/html; charset=utf-8"}};
        server.Serve(path, route);
        dialog.txtURL()->setText(server.Url(path).toString());
        dialog.SelectGroup(u"News"_s);
        QTest::mouseClick(dialog.cmdOk(), Qt::LeftButton);
        EXPECT_TRUE(route.hold || PumpUntil([&dialog] { return !dialog.Searching(); }, kPumpLimitMs));
    }

    // "shown+accepted+searching+ok+asTyped" (what holds), the feeds found, what the dialog asked of
    // the main window, and the search status; the local site's address reads "site".
    QString State(const frmAddChannel& dialog) const {
        QStringList flags;
        for (const auto& [name, set] :
             {std::pair{"shown", dialog.isVisible()},
              std::pair{"accepted", dialog.result() == QDialog::Accepted},
              std::pair{"searching", dialog.Searching()}, std::pair{"ok", dialog.cmdOk()->isEnabled()},
              std::pair{"asTyped", dialog.cmdAsTyped()->isVisible()}}) {
            if (set) {
                flags.append(QString::fromLatin1(name));
            }
        }
        return u"%1 found=%2 calls=%3 | %4"_s
            .arg(flags.join(u'+'), Rows(*dialog.List(frmAddChannel::TabAddress)), commands.calls.join(u','),
                 dialog.lblStatus()->text())
            .replace(server.Url(u"/"_s).toString().chopped(1), u"site"_s);
    }

    colProfiles users;
    NetworkHttpClient network;
    FakeSkinHost skinHost;
    frmTamselSkin skin;
    RecordingCommands commands;
    LocalHttpServer server;
};

TEST_F(ChannelDialogsTest, TheAddressBoxTakesOnlyAWebAddressFromTheClipboard) {
    for (const auto& [clipboard, expected] :
         {std::pair{u"  https://example.org/feed  "_s, u"https://example.org/feed"_s},
          std::pair{u"Some text from a letter"_s, QString()},
          std::pair{u"http://example.org/a\nsecond line"_s, QString()}}) {
        SCOPED_TRACE(clipboard.toStdString());
        QGuiApplication::clipboard()->setText(clipboard);
        EXPECT_EQ(OpenAddChannel()->txtURL()->text(), expected);
    }
}

// The lists offer the profile's own channels (not the maker's), the first other profile's (an
// external entity in its file is never read) and the Spotlight group's. Return in the new-group box
// once fired Ok twice, asking the main window for the group twice.
TEST_F(ChannelDialogsTest, TheTabsOfferTheUsersOwnGroupsAndChannelsAndTakeANewGroupOnce) {
    home.Write(u"secret.txt"_s, "http://leaked.example.org/");
    home.Write(u"profiles/Ben/channels.xml"_s,
               ReadData(u"entity-channels.xml"_s)
                   .replace("$SECRET", QUrl::fromLocalFile(home.File(u"secret.txt"_s)).toEncoded()));
    const auto dialog = OpenAddChannel();
    QStringList tabs = Tabs(*dialog);
    EXPECT_EQ(tabs, (QStringList{
                        u"Science/News>: "_s,
                        u"Science/News>: Science Daily|%1,Arts|%2,Spotted|%3"_s.arg(kScience, kArts, kSpot),
                        u"Science/News>: "_s, u"Science/News>: One|http://b.example.org/one"_s,
                        u"Science/News>: Spotted|"_s + kSpot}));
    EXPECT_EQ(dialog->cboUsers()->currentText(), u"Ben"_s);
    QTest::mouseClick(dialog->cmdNewGroup(), Qt::LeftButton);
    frmAddGroup* addGroup = dialog->NewGroupDialog();
    ASSERT_TRUE(addGroup && addGroup->isVisible());
    QLineEdit* name = addGroup->cboGroup()->lineEdit();
    name->setText(u"A|B"_s);
    EXPECT_EQ(PressAndAnswer(addGroup->cmdOk()), u"Group name contains invalid characters: |"_s);
    EXPECT_TRUE(commands.calls.isEmpty() && addGroup->isVisible());
    name->setText(u"Later"_s);
    QTest::keyClick(name, Qt::Key_Return);
    EXPECT_EQ(commands.calls, QStringList{u"group Later"_s});
    ASSERT_TRUE(PumpUntil([&dialog] { return dialog->NewGroupDialog() == nullptr; }, kPumpLimitMs));
    EXPECT_EQ(Tabs(*dialog), tabs.replaceInStrings(u"Science/News>"_s, u"Science/News/Later>Later"_s));
}

// Return in the file box once also pressed Ok. The file is remembered for the next opening; a
// number that cannot be read counts as 0.
TEST_F(ChannelDialogsTest, OpmlRowsReachTheChosenGroupWithTheTypedExpiryAndReload) {
    auto dialog = OpenAddChannel();
    EXPECT_TRUE(dialog->lblOPMLStatus()->text().startsWith(u"Error Reading OPML File !!!"_s))
        << dialog->lblOPMLStatus()->text().toStdString();
    EXPECT_EQ(PressAndAnswer(dialog->cmdOk()), u"No Group Selected"_s);
    dialog->tabAdd()->setCurrentIndex(frmAddChannel::TabOPML);
    dialog->SelectGroup(u"News"_s);
    dialog->txtOPML()->setText(QStringLiteral(TAMSEL_TEST_DATA_DIR "/mine.opml"));
    QTest::keyClick(dialog->txtOPML(), Qt::Key_Return);
    EXPECT_EQ(State(*dialog), u"shown+ok found= calls= | "_s);
    for (const auto& [rows, expire, update, added] :
         {std::tuple{QList<int>{0, 3, 2}, u"7"_s, u"30"_s, u"1 > News 7/30,3 > News 7/30,4 > News 7/30"_s},
          std::tuple{QList<int>{1}, u"abc"_s, QString(), u"2 > News 0/0"_s}}) {
        SCOPED_TRACE(expire.toStdString());
        if (!dialog->isVisible()) {
            dialog = OpenAddChannel();
        }
        ASSERT_EQ(dialog->List(frmAddChannel::TabOPML)->topLevelItemCount(), 4);
        dialog->tabAdd()->setCurrentIndex(frmAddChannel::TabOPML);
        dialog->SelectGroup(u"news"_s);
        SelectRows(*dialog->List(frmAddChannel::TabOPML), rows);
        dialog->txtExpire()->setText(expire);
        dialog->txtUpdate()->setText(update);
        commands.calls.clear();
        QTest::mouseClick(dialog->cmdOk(), Qt::LeftButton);
        EXPECT_EQ(dialog->result(), QDialog::Accepted);
        // Each call as "url > group" without the site, with the channel's days/minutes.
        QStringList channels;
        for (const QString& call : std::as_const(commands.calls)) {
            const RSSChannel* channel = profile.GetChannel(call.section(u' ', 1, 1));
            channels.append(call.mid(4).remove(u"http://o.example.org/"_s) + u' ' +
                            (channel ? u"%1/%2"_s.arg(channel->Expire()).arg(channel->Update()) : u"none"_s));
        }
        EXPECT_EQ(channels.join(u','), added);
    }
}

// A group window closes only when the main window accepted the name; the channel manager rebuilds
// the tree once, when it closes after deleting.
TEST_F(ChannelDialogsTest, RenamingAndDeletingGoThroughTheMainWindow) {
    frmAddGroup rename(commands, skin);
    rename.RenameGroup(u"Science"_s);
    rename.show();
    QSignalSpy closed(&rename, &frmAddGroup::Closed);
    rename.txtGroup()->setText(u"Sci|ence"_s);
    EXPECT_EQ(PressAndAnswer(rename.cmdOk()), u"Group name contains invalid characters: |"_s);
    rename.txtGroup()->setText(u"Sciences"_s);
    commands.renameAnswer = false;
    QTest::keyClick(rename.txtGroup(), Qt::Key_Return);
    EXPECT_TRUE(rename.isVisible() && closed.isEmpty());
    commands.renameAnswer = true;
    QTest::mouseClick(rename.cmdOk(), Qt::LeftButton);
    EXPECT_TRUE(!rename.isVisible() && closed.count() == 1);

    frmChannelManage manage(commands, settings, skin);
    manage.show();
    SelectRows(*manage.lstChannels(), {2, 0});
    QTest::mouseClick(manage.cmdDelete(), Qt::LeftButton);
    EXPECT_EQ(Rows(*manage.lstChannels()), u"Arts|"_s + kArts);
    QTest::mouseClick(manage.cmdClose(), Qt::LeftButton);
    EXPECT_FALSE(manage.isVisible());
    EXPECT_EQ(commands.calls,
              (QStringList{u"rename Science > Sciences"_s, u"rename Science > Sciences"_s,
                           u"remove "_s + kScience, u"remove "_s + kSpot, u"user "_s + kProfile}));
}

// Every control in each window's focus chain has an accessible name; a dark skin gives dark
// boxes, and the light one comes back.
TEST_F(ChannelDialogsTest, EveryWindowIsNamedForAssistiveToolsAndFollowsTheSkin) {
    const auto addChannel = OpenAddChannel();
    frmAddGroup addGroup(commands, skin);
    frmChannelManage manage(commands, settings, skin);
    const auto named = [](QWidget& window, QWidget* first) {
        window.show();
        const FocusChain chain = FocusChain::Walk(window, first);
        EXPECT_TRUE(chain.unnamed.isEmpty()) << chain.Unnamed();
        EXPECT_EQ(chain.clashingKeys, QStringList());
        window.close();
        return chain.visited.size();
    };
    for (int tab = frmAddChannel::TabAddress; tab <= frmAddChannel::TabSpotlight; ++tab) {
        SCOPED_TRACE(tab);
        addChannel->tabAdd()->setCurrentIndex(tab);
        EXPECT_GE(named(*addChannel, addChannel->tabAdd()->tabBar()), 5);
    }
    EXPECT_EQ(named(addGroup, addGroup.cboGroup()), 3);
    EXPECT_EQ(named(manage, manage.lstChannels()), 2) << "Delete is off until a row is selected";
    for (const auto& [name, dark] : {std::pair{u"Nightfall"_s, true}, std::pair{u"Default"_s, false}}) {
        SCOPED_TRACE(name.toStdString());
        LoadSkin(name);
        for (QWidget* box :
             QList<QWidget*>{addChannel->txtURL(), addGroup.cboGroup(), manage.lstChannels()}) {
            const QColor base = box->palette().color(QPalette::Base);
            EXPECT_EQ(base, SkinColor::ToQColor(skin.GridColorEven())) << box->accessibleName().toStdString();
            EXPECT_EQ(base.lightness() < 128, dark) << box->accessibleName().toStdString();
        }
    }
}

// A page naming two feeds lets the user choose one. A page without feeds is only said; a site
// that cannot be reached may be a feed that is down just now, so subscribing to the address as
// typed is offered. Cancel stops a search and keeps the dialog.
TEST_F(ChannelDialogsTest, TheAddressTabFindsTheFeedsOfAPageOrOffersTheAddressAsTyped) {
    auto dialog = OpenAddChannel();
    Search(*dialog, u"/slow"_s, u"hold"_s);
    EXPECT_EQ(State(*dialog), u"shown+searching found= calls= | Looking for feeds at site/slow ..."_s);
    QTest::mouseClick(dialog->cmdCancel(), Qt::LeftButton);
    EXPECT_EQ(State(*dialog), u"shown+ok found= calls= | The search was stopped."_s);
    QTest::keyClick(dialog->txtURL(), Qt::Key_Escape);
    EXPECT_EQ(State(*dialog), u"ok found= calls= | The search was stopped."_s);

    dialog = OpenAddChannel();
    Search(*dialog, u"/plain"_s, u"no-feeds.html"_s);
    EXPECT_EQ(State(*dialog), u"shown+ok found= calls= | No feed was found at site/plain."_s);
    Search(*dialog, u"/down.xml"_s);
    const QString down = State(*dialog);
    EXPECT_TRUE(down.startsWith(u"shown+ok+asTyped found= calls= | site/down.xml could not be read: "_s) &&
                down.endsWith(u"\nIt may be a feed that is down just now."_s))
        << down.toStdString();
    QTest::mouseClick(dialog->cmdAsTyped(), Qt::LeftButton);
    EXPECT_TRUE(State(*dialog).startsWith(u"accepted+ok found= calls=add site/down.xml > News | site/"_s));

    dialog = OpenAddChannel();
    Search(*dialog, u"/site/"_s, u"two-feeds.html"_s);
    EXPECT_EQ(State(*dialog),
              u"shown+ok found=Main|site/main.xml,Comments|site/site/comments.xml calls=add "
              u"site/down.xml > News | 2 feeds were found at site/site/. Choose one and press Ok."_s)
        << "nothing is added before the user chose";
    QTreeWidget& found = *dialog->List(frmAddChannel::TabAddress);
    found.setCurrentItem(found.topLevelItem(1));
    QTest::keyClick(&found, Qt::Key_Return);
    EXPECT_EQ(State(*dialog),
              u"accepted+ok found=Main|site/main.xml,Comments|site/site/comments.xml calls=add "
              u"site/down.xml > News,add site/site/comments.xml > News | 2 feeds were found at "
              u"site/site/. Choose one and press Ok."_s);
}

} // namespace
