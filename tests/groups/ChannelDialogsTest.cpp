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

#include <QtTest>
#include <QtWidgets>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int kPumpLimitMs = 10000;

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

// Each tab as "group/group/>chosen group: its list", a line each.
QString Tabs(const frmAddChannel& dialog) {
    QString tabs;
    for (int tab = frmAddChannel::TabAddress; tab <= frmAddChannel::TabSpotlight; ++tab) {
        const QComboBox* box = dialog.GroupBox(tab);
        for (int i = 0; i < box->count(); ++i) {
            tabs += box->itemText(i) + u'/';
        }
        tabs += u'>' + box->currentText() + u": "_s + Rows(*dialog.List(tab)) + u'\n';
    }
    return tabs;
}

// The active profile (with the maker's channels) has the groups and channels of data/dialogs-*.xml:
// Science and News, two channels of its own in Science and one in the Spotlight group; the profile Ben is
// listed after it. A local web site answers searches. The fixture plays the main window: it records the
// commands the dialogs give, and groups and channels still reach the profile, so that the dialogs see what
// they did.
class ChannelDialogsTest : public FeedsFixture, public ChannelCommands {
protected:
    ChannelDialogsTest()
        : users(Services{clock, settings, http, desktop, home.GetPaths()}, host), network(home.GetPaths()),
          skin(settings, home.GetPaths(), clock, skinHost) {
        settings.SaveSetting(u"SETTINGS"_s, u"SKINNAME"_s, u"Default"_s);
        skin.LoadSkin();
        users.AddUser(kProfile, true, true);
        users.AddUser(u"Ben"_s, false, true);
        for (const QString& file : {u"channels.xml"_s, u"groups.xml"_s}) {
            home.Write(u"profiles/Tester/"_s + file, ReadData(u"dialogs-"_s + file));
        }
        Activate(true);
    }

    clsProfile* ActiveProfile() const override { return host.ActiveProfile(); }
    colProfiles* Users() const override { return listed; }
    void AddChannel(const QString& url, const QString& groupName) override {
        calls.append(u"add "_s + url + u" > "_s + groupName);
        profile.AddChannel(url, groupName);
    }
    bool AddGroup(const QString& name) override {
        calls.append(u"group "_s + name);
        return profile.AddGroup(name);
    }
    bool RenameGroup(const QString& oldName, const QString& newName) override {
        calls.append(u"rename "_s + oldName + u" > "_s + newName);
        return renameAnswer;
    }
    void RemoveChannel(const QString& key) override {
        calls.append(u"remove "_s + key);
        profile.RemoveChannel(key);
    }
    void ChangeUser(const QString& name) override { calls.append(u"user "_s + name); }

    // The dialog as the main window opens it, after its OPML file was read; the record of commands
    // starts anew.
    std::unique_ptr<frmAddChannel> OpenAddChannel() {
        calls.clear();
        auto dialog = std::make_unique<frmAddChannel>(*this, settings, network, clock, skin, home.GetPaths());
        dialog->init();
        dialog->show();
        const QTreeWidget* rows = dialog->List(frmAddChannel::TabOPML);
        const QLabel* status = dialog->lblOPMLStatus();
        EXPECT_TRUE(PumpUntil([=] { return rows->topLevelItemCount() > 0 || !status->text().isEmpty(); },
                              kPumpLimitMs));
        return dialog;
    }

    // Starts a search with News chosen for `path` on the local site, which is held (never
    // answers), answers with `page` (a file of data/), or else closes the connection.
    void Search(frmAddChannel& dialog, const QString& path, const QString& page = {}) {
        const LocalHttpServer::Route route{
            .body = ReadData(page), .reset = page.isEmpty(), .hold = page == u"hold"_s};
        server.Serve(path, route);
        dialog.txtURL()->setText(server.Url(path).toString());
        dialog.SelectGroup(u"News"_s);
        QTest::mouseClick(dialog.cmdOk(), Qt::LeftButton);
        EXPECT_TRUE(route.hold || PumpUntil([&dialog] { return !dialog.Searching(); }, kPumpLimitMs));
    }

    // "shown+accepted+searching+ok+asTyped" (what holds), the feeds found, what the dialog asked of
    // the main window, and the search status; the local site's address reads "site".
    QString State(const frmAddChannel& dialog) const {
        QStringList flags{dialog.isVisible() ? u"shown"_s : QString(),
                          dialog.result() == QDialog::Accepted ? u"accepted"_s : QString(),
                          dialog.Searching() ? u"searching"_s : QString(),
                          dialog.cmdOk()->isEnabled() ? u"ok"_s : QString(),
                          dialog.cmdAsTyped()->isVisible() ? u"asTyped"_s : QString()};
        flags.removeAll(QString());
        return u"%1 found=%2 calls=%3 | %4"_s
            .arg(flags.join(u'+'), Rows(*dialog.List(frmAddChannel::TabAddress)), calls.join(u','),
                 dialog.lblStatus()->text())
            .replace(server.Url(u"/"_s).toString().chopped(1), u"site"_s);
    }

    colProfiles users;
    NetworkHttpClient network;
    FakeSkinHost skinHost;
    frmTamselSkin skin;
    LocalHttpServer server;
    colProfiles* listed = &users;
    QStringList calls;
    bool renameAnswer = true;
};

// The lists offer the profile's own channels (not the maker's), the first other profile's (an
// external entity in its file is never read) and the Spotlight group's. Return in the new-group box
// once fired Ok twice, asking the main window for the group twice.
TEST_F(ChannelDialogsTest, TheTabsOfferTheUsersOwnGroupsAndChannelsAndTakeANewGroupOnce) {
    home.Write(u"secret.txt"_s, "http://leaked.example.org/");
    home.Write(u"profiles/Ben/channels.xml"_s,
               ReadData(u"entity-channels.xml"_s)
                   .replace("$SECRET", QUrl::fromLocalFile(home.File(u"secret.txt"_s)).toEncoded()));
    const auto dialog = OpenAddChannel();
    QString tabs = Tabs(*dialog);
    EXPECT_EQ(tabs, QString::fromUtf8(ReadData(u"add-channel-tabs.expected"_s)));
    EXPECT_EQ(dialog->cboUsers()->currentText(), u"Ben"_s);
    QTest::mouseClick(dialog->cmdNewGroup(), Qt::LeftButton);
    frmAddGroup* addGroup = dialog->NewGroupDialog();
    ASSERT_TRUE(addGroup && addGroup->isVisible());
    QLineEdit* name = addGroup->cboGroup()->lineEdit();
    name->setText(u"A|B"_s);
    EXPECT_EQ(PressAndAnswer(addGroup->cmdOk()), u"Group name contains invalid characters: |"_s);
    EXPECT_TRUE(calls.isEmpty() && addGroup->isVisible());
    name->setText(u"Later"_s);
    QTest::keyClick(name, Qt::Key_Return);
    EXPECT_EQ(calls, QStringList{u"group Later"_s});
    ASSERT_TRUE(PumpUntil([&dialog] { return dialog->NewGroupDialog() == nullptr; }, kPumpLimitMs));
    EXPECT_EQ(Tabs(*dialog), tabs.replace(u"Science/News/>"_s, u"Science/News/Later/>Later"_s));
}

// Return in the file box once also pressed Ok. A number that cannot be read counts as 0; the file
// is remembered for the next opening.
TEST_F(ChannelDialogsTest, OpmlRowsReachTheChosenGroupWithTheTypedExpiryAndReload) {
    const auto dialog = OpenAddChannel();
    EXPECT_TRUE(dialog->lblOPMLStatus()->text().startsWith(u"Error Reading OPML File !!!"_s))
        << dialog->lblOPMLStatus()->text().toStdString();
    EXPECT_EQ(PressAndAnswer(dialog->cmdOk()), u"No Group Selected"_s);
    dialog->tabAdd()->setCurrentIndex(frmAddChannel::TabOPML);
    dialog->SelectGroup(u"news"_s);
    dialog->txtOPML()->setText(QStringLiteral(TAMSEL_TEST_DATA_DIR "/mine.opml"));
    QTest::keyClick(dialog->txtOPML(), Qt::Key_Return);
    EXPECT_EQ(State(*dialog), u"shown+ok found= calls= | "_s);
    for (int row : {0, 3, 2}) {
        dialog->List(frmAddChannel::TabOPML)->topLevelItem(row)->setSelected(true);
    }
    dialog->txtExpire()->setText(u"7"_s);
    dialog->txtUpdate()->setText(u"abc"_s);
    QTest::mouseClick(dialog->cmdOk(), Qt::LeftButton);
    EXPECT_EQ(State(*dialog).remove(u"http://o.example.org/"_s),
              u"accepted+ok found= calls=add 1 > News,add 3 > News,add 4 > News | "_s);
    // The typed days, and 0 minutes for the number that could not be read.
    for (const QString& call : std::as_const(calls)) {
        const RSSChannel* channel = profile.GetChannel(call.section(u' ', 1, 1));
        EXPECT_TRUE(channel && channel->Expire() == 7 && channel->Update() == 0) << call.toStdString();
    }
    EXPECT_EQ(OpenAddChannel()->List(frmAddChannel::TabOPML)->topLevelItemCount(), 4);
}

// Every control in each window's focus chain has an accessible name; a dark skin gives dark boxes. A group
// window closes only when the main window accepted the name; the channel manager rebuilds the tree once,
// when it closes after deleting.
TEST_F(ChannelDialogsTest, EveryWindowIsNamedAndSkinnedAndRenamingAndDeletingGoThroughTheMainWindow) {
    const auto addChannel = OpenAddChannel();
    frmAddGroup group(*this, skin);
    frmChannelManage manage(*this, settings, skin);
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
    EXPECT_EQ(named(group, group.cboGroup()), 3);
    EXPECT_EQ(named(manage, manage.lstChannels()), 2) << "Delete is off until a row is selected";
    settings.SaveSetting(u"SETTINGS"_s, u"SKINNAME"_s, u"Nightfall"_s);
    skin.LoadSkin();
    for (QWidget* box : QList<QWidget*>{addChannel->txtURL(), group.cboGroup(), manage.lstChannels()}) {
        SCOPED_TRACE(box->accessibleName().toStdString());
        EXPECT_EQ(box->palette().color(QPalette::Base), SkinColor::ToQColor(skin.GridColorEven()));
        EXPECT_LT(box->palette().color(QPalette::Base).lightness(), 128);
    }

    group.RenameGroup(u"Science"_s);
    group.show();
    QSignalSpy closed(&group, &frmAddGroup::Closed);
    group.txtGroup()->setText(u"Sciences"_s);
    renameAnswer = false;
    QTest::keyClick(group.txtGroup(), Qt::Key_Return);
    EXPECT_TRUE(group.isVisible() && closed.isEmpty());
    renameAnswer = true;
    QTest::mouseClick(group.cmdOk(), Qt::LeftButton);
    EXPECT_TRUE(!group.isVisible() && closed.count() == 1);
    manage.show();
    manage.lstChannels()->topLevelItem(2)->setSelected(true);
    manage.lstChannels()->topLevelItem(0)->setSelected(true);
    QTest::mouseClick(manage.cmdDelete(), Qt::LeftButton);
    EXPECT_EQ(Rows(*manage.lstChannels()), u"Arts|http://feeds.example.org/arts.xml"_s);
    QTest::mouseClick(manage.cmdClose(), Qt::LeftButton);
    EXPECT_EQ(calls, (QStringList{u"rename Science > Sciences"_s, u"rename Science > Sciences"_s,
                                  u"remove http://feeds.example.org/science.xml"_s,
                                  u"remove http://spot.example.org/rss"_s, u"user "_s + kProfile}));
}

// The address box takes only a web address from the clipboard. A page naming two feeds lets the user choose
// one. A page without feeds is only said; a site that cannot be reached may be a feed that is down just now,
// so subscribing to the address as typed is offered. Cancel stops a search and keeps the dialog.
TEST_F(ChannelDialogsTest, TheAddressTabTakesAWebAddressFindsTheFeedsOfAPageOrOffersTheAddressAsTyped) {
    for (const auto& [clipboard, expected] :
         {std::pair{u"  https://example.org/feed  "_s, u"https://example.org/feed"_s},
          std::pair{u"Some text from a letter"_s, QString()},
          std::pair{u"http://example.org/a\nsecond line"_s, QString()}}) {
        QGuiApplication::clipboard()->setText(clipboard);
        EXPECT_EQ(OpenAddChannel()->txtURL()->text(), expected) << clipboard.toStdString();
    }
    auto dialog = OpenAddChannel();
    Search(*dialog, u"/slow"_s, u"hold"_s);
    EXPECT_EQ(State(*dialog), u"shown+searching found= calls= | Looking for feeds at site/slow ..."_s);
    QTest::mouseClick(dialog->cmdCancel(), Qt::LeftButton);
    EXPECT_EQ(State(*dialog), u"shown+ok found= calls= | The search was stopped."_s);
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
    EXPECT_EQ(State(*dialog), u"shown+ok found=Main|site/main.xml,Comments|site/site/comments.xml calls= | "
                              u"2 feeds were found at site/site/. Choose one and press Ok."_s)
        << "nothing is added before the user chose";
    QTreeWidget& found = *dialog->List(frmAddChannel::TabAddress);
    found.setCurrentItem(found.topLevelItem(1));
    QTest::keyClick(&found, Qt::Key_Return);
    EXPECT_EQ(State(*dialog).section(u" | "_s, 0, 0),
              u"accepted+ok found=Main|site/main.xml,Comments|site/site/comments.xml calls=add "
              u"site/site/comments.xml > News"_s);
}

} // namespace
