// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/HeadlessHost.h"
#include "app/MakerSite.h"
#include "app/Services.h"
#include "app/SharedHelpers.h"
#include "app/clsProfile.h"
#include "app/colProfiles.h"
#include "feeds/RSSChannel.h"
#include "groups/ChannelCommands.h"
#include "groups/frmAddChannel.h"
#include "groups/frmAddGroup.h"
#include "groups/frmChannelManage.h"
#include "platform/CRegSettings.h"
#include "platform/HttpClient.h"
#include "platform/XsltStylesheet.h"
#include "skin/SkinColor.h"
#include "skin/SkinTestSupport.h"
#include "support/EventPump.h"
#include "support/FakeClock.h"
#include "support/FakeHttpClient.h"
#include "support/FocusChain.h"
#include "support/LocalHttpServer.h"
#include "support/QStringPrinter.h"
#include "support/RecordingDesktop.h"
#include "support/TestHome.h"

#include <QAbstractButton>
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QSignalSpy>
#include <QTabWidget>
#include <QTest>
#include <QTimer>
#include <QTreeWidget>
#include <gtest/gtest.h>

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
    RecordingCommands(HeadlessHost& host, colProfiles& users) : m_host(host), m_users(users) {}

    clsProfile* ActiveProfile() const override { return m_host.ActiveProfile(); }
    colProfiles* Users() const override { return &m_users; }
    void AddChannel(const QString& url, const QString& groupName) override {
        calls.append(u"add "_s + url + u" > "_s + groupName);
        if (RSSChannel* channel = ActiveProfile()->AddChannel(url, groupName)) {
            channel->StopReloading();
        }
    }
    bool AddGroup(const QString& name) override {
        calls.append(u"group "_s + name);
        return ActiveProfile()->AddGroup(name);
    }
    bool RenameGroup(const QString& oldName, const QString& newName) override {
        calls.append(u"rename "_s + oldName + u" > "_s + newName);
        return renameAnswer;
    }
    void RemoveChannel(const QString& key) override {
        calls.append(u"remove "_s + key);
        ActiveProfile()->RemoveChannel(key);
    }
    void ChangeUser(const QString& name) override { calls.append(u"user "_s + name); }

    QStringList calls;
    bool renameAnswer = true;

private:
    HeadlessHost& m_host;
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

// Every group box of the dialog as "item/item/...>current".
QStringList GroupBoxes(frmAddChannel& dialog) {
    QStringList boxes;
    for (int tab = frmAddChannel::TabAddress; tab <= frmAddChannel::TabSpotlight; ++tab) {
        const QComboBox* box = dialog.GroupBox(tab);
        QStringList items;
        for (int i = 0; i < box->count(); ++i) {
            items.append(box->itemText(i));
        }
        boxes.append(items.join(u'/') + u'>' + box->currentText());
    }
    return boxes;
}

// "title|url" per row, top to bottom.
QStringList Rows(const QTreeWidget& list) {
    QStringList rows;
    for (int i = 0; i < list.topLevelItemCount(); ++i) {
        rows.append(list.topLevelItem(i)->text(0) + u'|' + list.topLevelItem(i)->text(1));
    }
    return rows;
}

void SelectRows(QTreeWidget& list, const QList<int>& rows) {
    list.clearSelection();
    for (int row : rows) {
        list.topLevelItem(row)->setSelected(true);
    }
}

// The profile Ana, active, with the groups Science and News, two channels of its own in Science
// (besides the built-ins) and one in the Spotlight group; another profile Ben; a local web site.
class ChannelDialogsTest : public ::testing::Test {
protected:
    ChannelDialogsTest()
        : settings(home.GetPaths()),
          namespaceTransform(XsltStylesheet::Load(home.GetPaths().ResourceFile(u"tamselns.xsl"_s))),
          site(settings), host(clock, namespaceTransform, site.HelpURL()),
          users(Services{clock, settings, http, desktop, home.GetPaths()}, host), network(home.GetPaths()),
          skin(settings, home.GetPaths(), clock, skinHost), commands(host, users) {
        LoadSkin(u"Default"_s);
        http.Ignore(site.SpotlightURL());
        profile = users.AddUser(u"Ana"_s, true, true);
        users.AddUser(u"Ben"_s, false, true);
        host.ChangeUser(profile);
        profile->AddGroup(u"Science"_s);
        profile->AddGroup(u"News"_s);
        for (const auto& [url, title, group] : {std::tuple{kScience, u"Science Daily"_s, u"Science"_s},
                                                std::tuple{kArts, u"Arts"_s, u"Science"_s},
                                                std::tuple{kSpot, u"Spotted"_s, GroupName::Spotlight}}) {
            RSSChannel* channel = profile->AddChannel(url, group);
            channel->SetTitle(title);
            channel->StopReloading();
        }
        QGuiApplication::clipboard()->clear();
    }

    ~ChannelDialogsTest() override {
        host.ChangeUser(nullptr);
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
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

    // The address tab's search, started with News chosen, for `path` on the local site, which
    // answers with `page` (a file of data/), else closes the connection.
    void Search(frmAddChannel& dialog, const QString& path, const QString& page = {}) {
        LocalHttpServer::Route route;
        route.reset = page.isEmpty();
        QFile file(QStringLiteral(TAMSEL_TEST_DATA_DIR "/") + page);
        route.body = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
        route.headers = {{"Content-Type", "text/html; charset=utf-8"}};
        server.Serve(path, route);
        dialog.txtURL()->setText(server.Url(path).toString());
        dialog.SelectGroup(u"News"_s);
        QTest::mouseClick(dialog.cmdOk(), Qt::LeftButton);
        EXPECT_TRUE(PumpUntil([&dialog] { return !dialog.Searching(); }, kPumpLimitMs));
    }
    QString Added(const QString& path) const {
        return u"add "_s + server.Url(path).toString() + u" > News"_s;
    }

    TestHome home;
    FakeClock clock;
    CRegSettings settings;
    FakeHttpClient http;
    RecordingDesktop desktop;
    XsltStylesheet namespaceTransform;
    MakerSite site;
    HeadlessHost host;
    colProfiles users;
    NetworkHttpClient network;
    FakeSkinHost skinHost;
    frmTamselSkin skin;
    RecordingCommands commands;
    LocalHttpServer server;
    clsProfile* profile = nullptr;
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

// Return in the new-group box once fired Ok twice, asking the main window for the group twice.
TEST_F(ChannelDialogsTest, TheGroupBoxesOfferOnlyTheUsersGroupsAndTakeANewOneOnce) {
    const auto dialog = OpenAddChannel();
    EXPECT_EQ(GroupBoxes(*dialog), QStringList(5, u"Science/News>"_s));
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
    EXPECT_EQ(GroupBoxes(*dialog), QStringList(5, u"Science/News/Later>Later"_s));
}

TEST_F(ChannelDialogsTest, AnExternalEntityInAnotherProfilesChannelsIsNeverRead) {
    home.Write(u"secret.txt"_s, "http://leaked.example.org/");
    QFile channels(QStringLiteral(TAMSEL_TEST_DATA_DIR "/entity-channels.xml"));
    ASSERT_TRUE(channels.open(QIODevice::ReadOnly));
    home.Write(
        u"profiles/Ben/channels.xml"_s,
        channels.readAll().replace("$SECRET", QUrl::fromLocalFile(home.File(u"secret.txt"_s)).toEncoded()));
    const auto dialog = OpenAddChannel();
    EXPECT_EQ(dialog->cboUsers()->currentText(), u"Ben"_s);
    EXPECT_EQ(Rows(*dialog->List(frmAddChannel::TabUser)), QStringList{u"One|http://b.example.org/one"_s});
}

// Return in the file box once also pressed Ok.
TEST_F(ChannelDialogsTest, OpmlRowsReachTheChosenGroupWithTheTypedExpiryAndReload) {
    auto dialog = OpenAddChannel();
    EXPECT_TRUE(dialog->lblOPMLStatus()->text().startsWith(u"Error Reading OPML File !!!"_s))
        << dialog->lblOPMLStatus()->text().toStdString();
    EXPECT_EQ(PressAndAnswer(dialog->cmdOk()), u"No Group Selected"_s);
    EXPECT_TRUE(dialog->isVisible() && commands.calls.isEmpty());
    dialog->tabAdd()->setCurrentIndex(frmAddChannel::TabOPML);
    dialog->SelectGroup(u"News"_s);
    dialog->txtOPML()->setText(QStringLiteral(TAMSEL_TEST_DATA_DIR "/mine.opml"));
    QTest::keyClick(dialog->txtOPML(), Qt::Key_Return);
    EXPECT_TRUE(dialog->isVisible());

    // The file is remembered for the next opening; a number that cannot be read counts as 0.
    for (const auto& [rows, expire, update, days, minutes] :
         {std::tuple{QList<int>{0, 3, 2}, u"7"_s, u"30"_s, 7, 30},
          std::tuple{QList<int>{1}, u"abc"_s, QString(), 0, 0}}) {
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
        ASSERT_EQ(commands.calls.size(), rows.size());
        for (int row : rows) {
            const QString url = u"http://o.example.org/"_s + QString::number(row + 1);
            EXPECT_TRUE(commands.calls.contains(u"add "_s + url + u" > News"_s)) << url.toStdString();
            const RSSChannel* channel = profile->GetChannel(url);
            ASSERT_NE(channel, nullptr) << url.toStdString();
            EXPECT_EQ(std::pair(channel->Expire(), channel->Update()), std::pair(days, minutes));
        }
    }
}

TEST_F(ChannelDialogsTest, RenamingRefusesABarAndClosesOnlyWhenTheMainWindowAccepts) {
    frmAddGroup dialog(commands, skin);
    dialog.RenameGroup(u"Science"_s);
    dialog.show();
    QSignalSpy closed(&dialog, &frmAddGroup::Closed);
    dialog.txtGroup()->setText(u"Sci|ence"_s);
    EXPECT_EQ(PressAndAnswer(dialog.cmdOk()), u"Group name contains invalid characters: |"_s);
    EXPECT_TRUE(commands.calls.isEmpty());
    dialog.txtGroup()->setText(u"Sciences"_s);
    commands.renameAnswer = false;
    QTest::keyClick(dialog.txtGroup(), Qt::Key_Return);
    EXPECT_TRUE(dialog.isVisible());
    EXPECT_EQ(closed.count(), 0);
    commands.renameAnswer = true;
    QTest::mouseClick(dialog.cmdOk(), Qt::LeftButton);
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_EQ(closed.count(), 1);
    EXPECT_EQ(commands.calls, QStringList(2, u"rename Science > Sciences"_s));
}

TEST_F(ChannelDialogsTest, DeletingTwoChannelsAndClosingRebuildsTheTreeOnce) {
    frmChannelManage dialog(commands, settings, skin);
    dialog.show();
    SelectRows(*dialog.lstChannels(), {2, 0});
    QTest::mouseClick(dialog.cmdDelete(), Qt::LeftButton);
    EXPECT_EQ(commands.calls, (QStringList{u"remove "_s + kScience, u"remove "_s + kSpot}));
    EXPECT_EQ(Rows(*dialog.lstChannels()), QStringList{u"Arts|"_s + kArts});
    QTest::mouseClick(dialog.cmdClose(), Qt::LeftButton);
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_EQ(commands.calls.filter(u"user "_s), QStringList{u"user Ana"_s});
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
    LocalHttpServer::Route slow;
    slow.hold = true;
    server.Serve(u"/slow"_s, slow);
    auto dialog = OpenAddChannel();
    dialog->txtURL()->setText(server.Url(u"/slow"_s).toString());
    dialog->SelectGroup(u"News"_s);
    QTest::mouseClick(dialog->cmdOk(), Qt::LeftButton);
    ASSERT_TRUE(dialog->Searching());
    QTest::mouseClick(dialog->cmdCancel(), Qt::LeftButton);
    EXPECT_FALSE(dialog->Searching());
    EXPECT_TRUE(dialog->isVisible() && dialog->cmdOk()->isEnabled());
    EXPECT_EQ(dialog->lblStatus()->text(), u"The search was stopped."_s);
    QTest::keyClick(dialog->txtURL(), Qt::Key_Escape);
    EXPECT_EQ(dialog->result(), QDialog::Rejected);

    dialog = OpenAddChannel();
    for (const auto& [path, said, offered] :
         {std::tuple{u"/plain"_s, u"No feed was found"_s, false},
          std::tuple{u"/down.xml"_s, u"It may be a feed that is down just now."_s, true}}) {
        SCOPED_TRACE(path.toStdString());
        Search(*dialog, path, offered ? QString() : u"no-feeds.html"_s);
        EXPECT_TRUE(dialog->lblStatus()->text().contains(said)) << dialog->lblStatus()->text().toStdString();
        EXPECT_EQ(dialog->cmdAsTyped()->isVisible(), offered);
        EXPECT_TRUE(dialog->isVisible() && commands.calls.isEmpty());
    }
    QTest::mouseClick(dialog->cmdAsTyped(), Qt::LeftButton);
    EXPECT_EQ(commands.calls, QStringList{Added(u"/down.xml"_s)});
    EXPECT_FALSE(dialog->isVisible());

    dialog = OpenAddChannel();
    Search(*dialog, u"/site/"_s, u"two-feeds.html"_s);
    QTreeWidget& found = *dialog->List(frmAddChannel::TabAddress);
    EXPECT_EQ(Rows(found), (QStringList{u"Main|"_s + server.Url(u"/main.xml"_s).toString(),
                                        u"Comments|"_s + server.Url(u"/site/comments.xml"_s).toString()}));
    EXPECT_EQ(commands.calls.size(), 1) << "nothing is added before the user chose";
    found.setCurrentItem(found.topLevelItem(1));
    QTest::keyClick(&found, Qt::Key_Return);
    EXPECT_EQ(commands.calls.last(), Added(u"/site/comments.xml"_s));
    EXPECT_FALSE(dialog->isVisible());
}

} // namespace
