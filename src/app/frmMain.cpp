// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/frmMain.h"

#include "app/Runtime.h"
#include "app/SharedHelpers.h"
#include "app/WindowHelpers.h"
#include "app/clsProfile.h"
#include "app/colProfiles.h"
#include "feeds/RSSChannel.h"
#include "groups/RSSGroup.h"
#include "itembank/clsItemBank.h"
#include "platform/CRegSettings.h"

#include <QCloseEvent>
#include <QHeaderView>
#include <QInputDialog>
#include <QLabel>
#include <QMessageBox>
#include <QScreen>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace {

const QString kTitle = QStringLiteral("Tamsel");
const QString kSettings = QStringLiteral("SETTINGS");
// The setting's name is spelled so in every installation; it must stay as it is.
const QString kFirstRunKey = QStringLiteral("FISRTRUN");
constexpr int kDefaultWidth = 320;
constexpr int kDefaultHeight = 480;
constexpr int kScreenMargin = 10;
// The channel key of a channel node; group nodes have none.
constexpr int kKeyRole = Qt::UserRole;

} // namespace

frmMain::frmMain(Runtime& runtime)
    : m_runtime(runtime), m_coordinator(runtime.GetServices().clock, runtime.Site().HelpURL(), *this) {
    setWindowTitle(kTitle);
    auto* layout = new QVBoxLayout(this);
    m_status = new QLabel(QStringLiteral("Loading Profile . . .  Please Wait"), this);
    m_status->setAlignment(Qt::AlignCenter);
    layout->addWidget(m_status);
    treMain = new QTreeWidget(this);
    treMain->setHeaderHidden(true);
    treMain->header()->setStretchLastSection(true);
    layout->addWidget(treMain, 1);

    // Top-right corner of the screen until a placement was saved.
    resize(kDefaultWidth, kDefaultHeight);
    if (const QScreen* screen = this->screen()) {
        const QRect area = screen->availableGeometry();
        move(area.right() - kDefaultWidth - kScreenMargin, area.top() + kScreenMargin);
    }
    RestoreWindowPlacement(m_runtime.Settings(), this, kTitle);

    CRegSettings& settings = m_runtime.Settings();
    m_firstRun = settings.GetSetting(kSettings, kFirstRunKey, QStringLiteral("True")) == QStringLiteral("True");
    settings.SaveSetting(kSettings, kFirstRunKey, QStringLiteral("False"));

    m_Users = std::make_unique<colProfiles>(m_runtime.GetServices(), *this);
    connect(m_Users.get(), &colProfiles::ProfilesLoaded, this, &frmMain::m_Users_ProfilesLoaded);
    m_Users->init();
}

frmMain::~frmMain() {
    ReleaseUser();
}

void frmMain::PopupInfo(const QString&, const QString& profileName, const QString& channelKey) {
    if (!profileName.isEmpty() && (!m_User || profileName != m_User->Name())) {
        return;
    }
    if (!channelKey.isEmpty() && (!m_User || !m_User->IsInGroup(channelKey))) {
        return;
    }
    m_runtime.Alerts().PlayAlert();
}

void frmMain::StateChange(const QString& profileName, RSSChannel& channel) {
    m_coordinator.StateChange(profileName, channel);
}

bool frmMain::AddRSSItem(const XmlNode& item) {
    return m_User && m_User->AddItem(item);
}

const XsltStylesheet& frmMain::NamespaceTransform() const {
    return m_runtime.NamespaceTransform();
}

void frmMain::AddChannel(const QString& url, const QString& groupName) {
    if (m_User && !url.trimmed().isEmpty()) {
        m_User->AddChannel(url, groupName);
        m_User->SaveGroupXML();
    }
}

void frmMain::ShowAndRaise() {
    setWindowState(windowState() & ~Qt::WindowMinimized);
    show();
    raise();
    activateWindow();
}

bool frmMain::UpdateChannelNode(RSSChannel& channel) {
    if (!m_User || m_User->GetChannel(channel.URL()) != &channel) {
        return false;
    }
    const QString key = channel.URL().toCaseFolded();
    const QString text = channel.TitleAndCount();
    const QString state = channel.GetImage();
    bool changed = false;
    for (int g = 0; g < treMain->topLevelItemCount(); ++g) {
        QTreeWidgetItem* groupNode = treMain->topLevelItem(g);
        for (int c = 0; c < groupNode->childCount(); ++c) {
            QTreeWidgetItem* node = groupNode->child(c);
            if (node->data(0, kKeyRole).toString() != key) {
                continue;
            }
            if (node->text(0) != text || node->toolTip(0) != state) {
                node->setText(0, text);
                node->setToolTip(0, state);
                changed = true;
            }
        }
    }
    return changed;
}

void frmMain::m_Users_ProfilesLoaded() {
    if (m_Users->UserCount() >= 1) {
        ChangeUser(m_Users->GetDefaultUser()->Name());
        return;
    }
    bool ok = false;
    const QString name = QInputDialog::getText(this, QStringLiteral("Create New Profile"), QStringLiteral("Username"),
                                               QLineEdit::Normal, QStringLiteral("My Username"), &ok);
    if (ok && !name.isEmpty()) {
        m_Users->AddUser(name, true, true);
        ChangeUser(name);
        m_User->AddGroup(GroupName::MyChannels);
        m_Users->SaveAllXML();
        return;
    }
    m_Users_ProfilesLoaded();
}

void frmMain::ChangeUser(const QString& name) {
    if (!SaveItemsOrAsk()) {
        return;
    }
    m_Users->SaveAllXML();
    clsProfile* profile = m_Users->GetUser(name);
    if (!profile) {
        return;
    }
    clsProfile* old = m_User;
    m_User = nullptr;
    setEnabled(false);
    treMain->clear();
    if (old) {
        disconnect(old, nullptr, this, nullptr);
        old->Deactivate();
    }
    m_User = profile;
    connect(m_User, &clsProfile::NewGroup, this, &frmMain::RepopulateTreeMain);
    connect(m_User, &clsProfile::NewChannel, this, &frmMain::RepopulateTreeMain);
    connect(m_User, &clsProfile::DelChannel, this, &frmMain::RepopulateTreeMain);
    connect(m_User, &clsProfile::DelGroup, this, &frmMain::RepopulateTreeMain, Qt::QueuedConnection);
    m_User->SetUserActive();
    m_Users->SetDefault(m_User->Name());
    m_status->setText(QStringLiteral("Profile: %1").arg(m_User->Name()));
    RepopulateTreeMain();
    setEnabled(true);
}

void frmMain::RepopulateTreeMain() {
    treMain->clear();
    if (!m_User || !m_User->Active()) {
        return;
    }
    for (int i = 1; i <= m_User->GroupCount(); ++i) {
        AddGroupNode(m_User->GetGroup(i));
    }
}

void frmMain::AddGroupNode(RSSGroup* group) {
    auto* groupNode = new QTreeWidgetItem(treMain, {group->Name(true)});
    for (int i = 0; i < group->ChannelCount(); ++i) {
        AddChannelNode(groupNode, group->ChannelURL(i));
    }
    groupNode->setExpanded(group->Expanded());
}

void frmMain::AddChannelNode(QTreeWidgetItem* groupNode, const QString& key) {
    RSSChannel* channel = m_User->GetChannel(key);
    if (!channel) {
        return;
    }
    auto* node = new QTreeWidgetItem(groupNode, {channel->TitleAndCount()});
    node->setData(0, kKeyRole, channel->URL().toCaseFolded());
    node->setToolTip(0, channel->GetImage());
}

void frmMain::ReleaseUser() {
    if (!m_User) {
        return;
    }
    m_Users->SaveAllXML();
    clsProfile* old = m_User;
    m_User = nullptr;
    disconnect(old, nullptr, this, nullptr);
    old->Deactivate();
}

bool frmMain::SaveItemsOrAsk() {
    clsItemBank* bank = m_User ? m_User->ItemBank() : nullptr;
    while (bank && bank->HasUnsavedChanges() && !bank->SaveXML()) {
        const QMessageBox::StandardButton choice = QMessageBox::warning(
            this, kTitle,
            QStringLiteral("Your items could not be saved:\n%1\n\nMake room on the disk and try again, or "
                           "discard what changed since the last save.")
                .arg(bank->LastError()),
            QMessageBox::Retry | QMessageBox::Discard | QMessageBox::Cancel, QMessageBox::Retry);
        if (choice == QMessageBox::Discard) {
            return true;
        }
        if (choice != QMessageBox::Retry) {
            return false;
        }
    }
    return true;
}

void frmMain::closeEvent(QCloseEvent* event) {
    if (!SaveItemsOrAsk()) {
        event->ignore();
        return;
    }
    SaveWindowPlacement(m_runtime.Settings(), this, kTitle);
    ReleaseUser();
    event->accept();
}
