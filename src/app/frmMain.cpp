// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/frmMain.h"

#include "app/Runtime.h"
#include "app/SharedHelpers.h"
#include "app/WindowHelpers.h"
#include "app/WindowPlacement.h"
#include "app/clsProfile.h"
#include "app/colProfiles.h"
#include "app/frmAbout.h"
#include "app/frmLoading.h"
#include "app/frmPreferences.h"
#include "app/frmUser.h"
#include "feeds/RSSChannel.h"
#include "groups/RSSGroup.h"
#include "groups/frmAddChannel.h"
#include "groups/frmAddGroup.h"
#include "groups/frmChannelManage.h"
#include "itembank/clsItemBank.h"
#include "itembank/modItemHandler.h"
#include "platform/CRegSettings.h"
#include "platform/Desktop.h"
#include "platform/Memory.h"
#include "skin/SkinColor.h"
#include "skin/SkinSurface.h"
#include "skin/frmSkin.h"
#include "skin/frmTamselSkin.h"
#include "ticker/frmTicker.h"
#include "ticker/frmTickerView.h"
#include "views/ImageLoader.h"
#include "views/ViewerWindows.h"
#include "views/frmProperties.h"

#include <QActionGroup>
#include <QApplication>
#include <QCloseEvent>
#include <QCursor>
#include <QDir>
#include <QFileDialog>
#include <QGuiApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QScreen>
#include <QSystemTrayIcon>
#include <QTimer>
#include <QTreeWidget>

namespace {

const QString kTitle = QStringLiteral("Tamsel");
const QString kSettings = QStringLiteral("SETTINGS");
// The setting's name is spelled so in every installation; it must stay as it is.
const QString kFirstRunKey = QStringLiteral("FISRTRUN");
const QString kTrue = QStringLiteral("True");
const QString kCollapseImage = QStringLiteral("collapse");
const QString kGroupExists = QStringLiteral("Group already exists.  Please select another name.");
constexpr int kDefaultWidth = 300;
constexpr int kDefaultHeight = 520;
// The window's default distance from the top and right edges of the screen, in twips.
constexpr int kScreenMarginTwips = 150;
constexpr int kOneShotMs = 100;
constexpr int kUnloadDelayMs = 500;
constexpr int kKeyRole = Qt::UserRole;
constexpr int kImageRole = Qt::UserRole + 1;

bool IsNavigationKey(int key) {
    switch (key) {
    case Qt::Key_Left:
    case Qt::Key_Up:
    case Qt::Key_Right:
    case Qt::Key_Down:
    case Qt::Key_Home:
    case Qt::Key_End:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
        return true;
    default:
        return false;
    }
}

// Menu captions treat "&" as the access key's mark; channel titles mean it as it stands.
QString MenuText(const QString& text) {
    QString escaped = text;
    return escaped.replace(u'&', QStringLiteral("&&"));
}

} // namespace

frmMain::frmMain(Runtime& runtime, frmTamselSkin& skin, bool trayAvailable)
    : SkinnedWindow(skin, frmTamselSkin::KindMain), m_runtime(runtime),
      m_coordinator(runtime.GetServices().clock, runtime.Site().HelpURL(), *this),
      m_trayAvailable(trayAvailable), treMain(new QTreeWidget(this)), m_menuBar(new QMenuBar(this)),
      tmrOneShot(new QTimer(this)), m_textsTimer(new QTimer(this)) {
    setWindowTitle(kTitle);
    m_textsTimer->setSingleShot(true);
    connect(m_textsTimer, &QTimer::timeout, this, &frmMain::RepaintSkin);
    treMain->setHeaderHidden(true);
    treMain->header()->setStretchLastSection(true);
    treMain->setFrameShape(QFrame::NoFrame);
    treMain->setSortingEnabled(false);
    treMain->setContextMenuPolicy(Qt::CustomContextMenu);
    treMain->setAccessibleName(QStringLiteral("Channels"));
    treMain->installEventFilter(this);
    connect(treMain, &QTreeWidget::itemClicked, this,
            [this](QTreeWidgetItem* node) { treMain_NodeClick(node); });
    connect(treMain, &QTreeWidget::customContextMenuRequested, this, [this](QPoint position) {
        QTreeWidgetItem* node = treMain->itemAt(position);
        if (!node) {
            node = treMain->currentItem();
            position = node ? treMain->visualItemRect(node).center() : position;
        }
        treMain_NodeRightClick(node, treMain->viewport()->mapToGlobal(position));
    });
    // Folding a group by any means is what it shows at the next start.
    const auto storeExpanded = [this](QTreeWidgetItem* node) {
        const QString key = node->data(0, kKeyRole).toString();
        if (RSSGroup* group = m_User && ChannelOfKey(key).isEmpty() ? m_User->GetGroup(key) : nullptr) {
            group->SetExpanded(node->isExpanded());
        }
    };
    connect(treMain, &QTreeWidget::itemExpanded, this, storeExpanded);
    connect(treMain, &QTreeWidget::itemCollapsed, this, storeExpanded);
    picSkin()->setAccessibleName(kTitle);
    CreateMenus();

    // The load sequence. The style helper came with the skinned window; the image list is
    // this window's, filled by every skin load.
    Skin().SetImageListTarget(this);
    CRegSettings& settings = m_runtime.Settings();
    m_FirstRun = settings.GetSetting(kSettings, kFirstRunKey, kTrue) == kTrue;
    resize(kDefaultWidth, kDefaultHeight);
    if (const QScreen* screen = this->screen()) {
        const int margin = kScreenMarginTwips / WindowPlacement::kTwipsPerPixel;
        const QRect area = screen->geometry();
        move(area.right() + 1 - kDefaultWidth - margin, area.top() + margin);
    }
    RestoreWindowPlacement(settings, this, kTitle);
    CreateTray();
    connect(&Skin(), &frmTamselSkin::SkinLoaded, this, &frmMain::Skin_SkinLoaded);
    Skin().LoadSkin();
    hide();

    const Services services = m_runtime.GetServices();
    m_viewers = std::make_unique<ViewerWindows>(
        ViewerServices{*this, Skin(), services.desktop, services.http, services.settings});
    m_Users = std::make_unique<colProfiles>(services, *this);
    connect(m_Users.get(), &colProfiles::ProfilesLoaded, this, &frmMain::m_Users_ProfilesLoaded);
    m_Users->init();

    tmrOneShot->setInterval(kOneShotMs);
    connect(tmrOneShot, &QTimer::timeout, this, &frmMain::tmrOneShot_Timer);
    tmrOneShot->start();
    settings.SaveSetting(kSettings, kFirstRunKey, QStringLiteral("False"));
    // Without a tray a hidden window could not be brought back: it always shows.
    if (settings.GetSetting(QStringLiteral("START"), QStringLiteral("OPENMAIN"), kTrue) == kTrue ||
        !m_trayAvailable) {
        setWindowState(windowState() & ~(Qt::WindowMinimized | Qt::WindowMaximized));
        show();
    } else {
        MeClose();
    }
    SetContextEntries(false, false, false);
    if (settings.GetSetting(frmTicker::kSection, QStringLiteral("Show"), QStringLiteral("False")) == kTrue) {
        ShowTicker(true);
    }
}

frmMain::~frmMain() {
    // The ticker is a window of its own; it must not outlive the view it was given.
    delete m_ticker.data();
    Skin().SetImageListTarget(nullptr);
    if (m_Users && m_User) {
        m_Users->SaveAllXML();
    }
    ReleaseUser();
}

void frmMain::CreateMenus() {
    CreateFileMenu();
    mnuActions = m_menuBar->addMenu(QStringLiteral("&Actions"));
    connect(mnuActions->addAction(QStringLiteral("&Add Channels...")), &QAction::triggered, this,
            &frmMain::mnuAddChannels_Click);
    connect(mnuActions->addAction(QStringLiteral("Add &Group...")), &QAction::triggered, this,
            [this] { ShowAddGroup(QString()); });
    connect(mnuActions->addAction(QStringLiteral("&Reload All Channels")), &QAction::triggered, this, [this] {
        for (int i = 1; m_User && i <= m_User->ChannelCount(); ++i) {
            if (RSSChannel* channel = m_User->GetChannel(i)) {
                channel->ForceLoadRSS();
                QCoreApplication::processEvents();
            }
        }
    });
    connect(mnuActions->addAction(QStringLiteral("&Delete Channels...")), &QAction::triggered, this,
            &frmMain::mnuDeleteChannels_Click);
    mnuADash1 = mnuActions->addSeparator();

    QAction* viewGroup = mnuActions->addAction(QStringLiteral("&View Channels in Group"));
    connect(viewGroup, &QAction::triggered, this,
            [this] { ForEachChannelInGroup([](RSSChannel& channel) { channel.CreateChannelView(true); }); });
    QAction* reloadGroup = mnuActions->addAction(QStringLiteral("Reload &Channels in Group"));
    connect(reloadGroup, &QAction::triggered, this,
            [this] { ForEachChannelInGroup([](RSSChannel& channel) { channel.LoadRSS(); }); });
    m_groupEntries = {viewGroup, reloadGroup};
    QAction* renameGroup = mnuActions->addAction(QStringLiteral("Re&name Group"));
    connect(renameGroup, &QAction::triggered, this, [this] {
        if (const QTreeWidgetItem* node = SelectedNode()) {
            ShowAddGroup(GroupOfKey(node->data(0, kKeyRole).toString()));
        }
    });
    QAction* deleteGroup = mnuActions->addAction(QStringLiteral("&Delete Group"));
    connect(deleteGroup, &QAction::triggered, this, &frmMain::mnuDeleteGroup_Click);
    m_userGroupEntries = {renameGroup, deleteGroup};

    QAction* viewChannel = mnuActions->addAction(QStringLiteral("&View Channel"));
    connect(viewChannel, &QAction::triggered, this, [this] {
        if (QTreeWidgetItem* node = SelectedNode()) {
            treMain_NodeClick(node);
        }
    });
    QAction* markRead = mnuActions->addAction(QStringLiteral("&Mark All Read"));
    connect(markRead, &QAction::triggered, this, [this] {
        if (RSSChannel* channel = SelectedChannel()) {
            channel->MarkAllRead();
        }
    });
    QAction* reload = mnuActions->addAction(QStringLiteral("R&eload Channel"));
    connect(reload, &QAction::triggered, this, [this] {
        if (RSSChannel* channel = SelectedChannel()) {
            channel->ForceLoadRSS();
        }
    });
    mnuRemoveChannel = mnuActions->addAction(QStringLiteral("Re&move Channel"));
    connect(mnuRemoveChannel, &QAction::triggered, this, &frmMain::mnuRemoveChannel_Click);
    QAction* properties = mnuActions->addAction(QStringLiteral("&Properties..."));
    connect(properties, &QAction::triggered, this, [this] {
        if (RSSChannel* channel = SelectedChannel()) {
            frmProperties& window = m_viewers->ChannelProperties();
            window.SetChannelProp(*channel);
            window.show();
            window.raise();
        }
    });
    m_channelEntries = {viewChannel, markRead, reload, properties};
    // The context entries go again once the popup has closed and its choice has run.
    connect(mnuActions, &QMenu::aboutToHide, this,
            [this] { QTimer::singleShot(0, this, [this] { SetContextEntries(false, false, false); }); });

    mnuTray = new QMenu(QStringLiteral("T&ray"), this);
    mnuNewItems = mnuTray->addMenu(QStringLiteral("&New Items"));
    mnuNoNewItems = mnuNewItems->addAction(QStringLiteral("(none)"));
    mnuNoNewItems->setVisible(false);
    m_newItemsEntries = {mnuNoNewItems};
    connect(mnuNewItems, &QMenu::triggered, this, [this](QAction* entry) {
        if (RSSChannel* channel = m_User ? m_User->GetChannel(entry->data().toString()) : nullptr) {
            channel->CreateChannelView(true);
        }
    });
    mnuTrayDash = mnuTray->addSeparator();
    mnuTrayDash->setVisible(false);
    mnuTrayTicker = mnuTray->addAction(QStringLiteral("&Show Ticker Bar"));
    mnuTrayTicker->setCheckable(true);
    connect(mnuTrayTicker, &QAction::triggered, this, [this](bool checked) { ShowTicker(checked); });
    CreateTickerMenu();
    QAction* open = mnuTray->addAction(QStringLiteral("&Open Tamsel"));
    QFont bold = open->font();
    bold.setBold(true);
    open->setFont(bold);
    mnuTray->setDefaultAction(open);
    connect(open, &QAction::triggered, this, &frmMain::ShowAndRaise);
    connect(mnuTray->addAction(QStringLiteral("E&xit")), &QAction::triggered, this,
            [this] { m_ExitRequested = true; });
    connect(mnuTray, &QMenu::aboutToShow, this, &frmMain::LoadTrayMenu);
    // Exit acts only once the menu has closed, so that nothing goes from inside its own menu.
    connect(mnuTray, &QMenu::aboutToHide, this,
            [this] { QTimer::singleShot(0, this, &frmMain::mnuTray_Closed); });

    mnuHelp = m_menuBar->addMenu(QStringLiteral("&Help"));
    QAction* helpChannel = mnuHelp->addAction(QStringLiteral("&Help Channel"));
    // F1 works in frameless mode too, where the menu bar is hidden.
    helpChannel->setShortcut(QKeySequence(Qt::Key_F1));
    helpChannel->setShortcutContext(Qt::WindowShortcut);
    addAction(helpChannel);
    connect(helpChannel, &QAction::triggered, this, &frmMain::ShowHelpChannel);
    connect(mnuHelp->addAction(QStringLiteral("&Tamsel Website")), &QAction::triggered, this,
            [this] { m_runtime.GetServices().desktop.OpenDocument(m_runtime.Site().HomePage()); });
    mnuHelp->addSeparator();
    connect(mnuHelp->addAction(QStringLiteral("&About...")), &QAction::triggered, this, [this] {
        if (!m_frmAbout) {
            m_frmAbout =
                new frmAbout(Skin(), m_runtime.GetServices().desktop, m_runtime.Site().HomePage(), this);
            m_frmAbout->setAttribute(Qt::WA_DeleteOnClose);
        }
        m_frmAbout->show();
        m_frmAbout->raise();
    });
    if (!m_trayAvailable) {
        m_menuBar->addMenu(mnuTray);
    }
    m_menuBar->setAccessibleName(QStringLiteral("Menu"));
    m_menuBar->setVisible(Framed());
}

void frmMain::CreateFileMenu() {
    mnuFile = m_menuBar->addMenu(QStringLiteral("&File"));
    connect(mnuFile->addAction(QStringLiteral("Export &OPML File...")), &QAction::triggered, this,
            &frmMain::mnuExportOPML_Click);
    mnuFile->addSeparator();
    mnuProfile = mnuFile->addMenu(QStringLiteral("&Profile"));
    mnuProfile->addSeparator();
    connect(mnuProfile->addAction(QStringLiteral("&New Profile...")), &QAction::triggered, this,
            &frmMain::ShowNewUser);
    connect(mnuProfile, &QMenu::triggered, this, [this](QAction* entry) {
        // A checkable entry is a profile; choosing the active one changes nothing.
        if (entry->isCheckable() && m_User && entry->data().toString() != m_User->Name()) {
            ChangeUser(entry->data().toString());
        }
    });
    connect(mnuFile->addAction(QStringLiteral("Change &Skin...")), &QAction::triggered, this,
            &frmMain::mnuChangeSkin_Click);
    connect(mnuFile->addAction(QStringLiteral("P&references...")), &QAction::triggered, this,
            &frmMain::mnuPreferences_Click);
    mnuTopMost = mnuFile->addAction(QStringLiteral("Always On &Top"));
    mnuTopMost->setCheckable(true);
    connect(mnuTopMost, &QAction::toggled, this, [this](bool onTop) { SetTopMost(this, onTop); });
    mnuFile->addSeparator();
    mnuShowTicker = mnuFile->addAction(QStringLiteral("Show Ticker &Bar"));
    mnuShowTicker->setCheckable(true);
    connect(mnuShowTicker, &QAction::triggered, this, [this](bool checked) { ShowTicker(checked); });
    connect(mnuFile->addAction(QStringLiteral("&Close")), &QAction::triggered, this, &frmMain::MeClose);
    connect(mnuFile, &QMenu::aboutToShow, this, &frmMain::LoadProfileMenu);
}

void frmMain::LoadProfileMenu() {
    const int count = m_Users ? m_Users->UserCount() : 0;
    QAction* dash = mnuProfile->actions().at(m_profileEntries.size());
    for (int i = 0; i < count; ++i) {
        if (i == m_profileEntries.size()) {
            QAction* entry = new QAction(mnuProfile);
            entry->setCheckable(true);
            mnuProfile->insertAction(dash, entry);
            m_profileEntries.append(entry);
        }
        const QString name = m_Users->User(i + 1)->Name();
        m_profileEntries[i]->setText(MenuText(name));
        m_profileEntries[i]->setData(name);
        m_profileEntries[i]->setChecked(m_User && name == m_User->Name());
        m_profileEntries[i]->setVisible(true);
    }
    for (qsizetype i = count; i < m_profileEntries.size(); ++i) {
        m_profileEntries[i]->setVisible(false);
    }
}

void frmMain::mnuExportOPML_Click() {
    if (!m_User) {
        return;
    }
    QFileDialog dlgExport(this, QStringLiteral("Export OPML File"), QDir::homePath(),
                          QStringLiteral("OPML files (*.opml)"));
    dlgExport.setAcceptMode(QFileDialog::AcceptSave);
    dlgExport.setDefaultSuffix(QStringLiteral("opml"));
    dlgExport.selectFile(m_User->Name() + QStringLiteral(".opml"));
    RunModal(dlgExport);
    if (dlgExport.result() == QDialog::Accepted && !dlgExport.selectedFiles().isEmpty() && m_User) {
        m_User->SaveOPML(dlgExport.selectedFiles().constFirst());
    }
}

void frmMain::mnuChangeSkin_Click() {
    const Services services = m_runtime.GetServices();
    frmSkin chooser(services.settings, services.paths, Skin().Host(), this);
    RunModal(chooser);
    m_viewers->CloseAll();
    if (chooser.SkinChanged()) {
        Skin().LoadSkin();
    }
}

void frmMain::mnuAddChannels_Click() {
    if (!m_User) {
        return;
    }
    const Services services = m_runtime.GetServices();
    frmAddChannel dialog(*this, services.settings, services.http, services.clock, Skin(), services.paths,
                         this);
    dialog.init();
    dialog.SelectGroup(PreselectedGroup());
    RunModal(dialog);
}

void frmMain::mnuDeleteChannels_Click() {
    if (!m_User) {
        return;
    }
    frmChannelManage dialog(*this, m_runtime.Settings(), Skin(), this);
    dialog.ListChannels();
    RunModal(dialog);
}

void frmMain::mnuPreferences_Click() {
    frmPreferences dialog(m_runtime.Settings(), Skin(), this);
    RunModal(dialog);
}

void frmMain::RunModal(QDialog& dialog) {
    ++m_busyDepth;
    dialog.exec();
    --m_busyDepth;
}

void frmMain::ShowAddGroup(const QString& renamedGroup) {
    if (!m_User) {
        return;
    }
    auto* dialog = new frmAddGroup(*this, Skin(), this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setWindowModality(Qt::ApplicationModal);
    if (!renamedGroup.isEmpty()) {
        dialog->RenameGroup(renamedGroup);
    }
    dialog->show();
}

void frmMain::ShowHelpChannel() {
    QTreeWidgetItem* node = Node(GroupName::Tamsel + u'|' + m_runtime.Site().HelpURL());
    if (!node) {
        return;
    }
    treMain->setCurrentItem(node);
    treMain->scrollToItem(node);
    treMain_NodeClick(node);
}

QString frmMain::PreselectedGroup() const {
    // The dialog offers no reserved group: a folder or a maker's channel selected means none.
    if (const QTreeWidgetItem* node = SelectedNode()) {
        const QString group = GroupOfKey(node->data(0, kKeyRole).toString());
        if (!IsReservedGroupName(group)) {
            return group;
        }
    }
    for (int i = m_User ? m_User->GroupCount() : 0; i >= 1; --i) {
        if (const RSSGroup* group = m_User->GetGroup(i); group && !IsReservedGroupName(group->Name())) {
            return group->Name();
        }
    }
    return QString();
}

void frmMain::Inform(const QString& caption, const QString& text) {
    ++m_busyDepth;
    QMessageBox::information(this, caption, text);
    --m_busyDepth;
}

bool frmMain::AddGroup(const QString& name) {
    const QString trimmed = name.trimmed();
    if (trimmed.isEmpty()) {
        Inform(kTitle, QStringLiteral("Please enter a group name."));
        return false;
    }
    if (!m_User) {
        return false;
    }
    if (m_User->GetGroup(trimmed)) {
        Inform(kTitle, kGroupExists);
        return false;
    }
    m_User->AddGroup(trimmed);
    m_User->SaveGroupXML();
    return true;
}

bool frmMain::RenameGroup(const QString& oldName, const QString& newName) {
    const QString trimmed = newName.trimmed();
    if (trimmed.isEmpty()) {
        Inform(kTitle, QStringLiteral("Please enter a Group Name"));
        return false;
    }
    if (!m_User) {
        return false;
    }
    if (!m_User->GetGroup(trimmed)) {
        m_User->RenameGroup(oldName, trimmed);
        RepopulateTreeMain();
        return true;
    }
    if (trimmed == oldName) {
        return true;
    }
    Inform(kTitle, kGroupExists);
    return false;
}

void frmMain::RemoveChannel(const QString& key) {
    if (m_User) {
        m_User->RemoveChannel(key);
    }
}

void frmMain::CreateTray() {
    if (!m_trayAvailable) {
        return;
    }
    trayMain = new QSystemTrayIcon(this);
    trayMain->setToolTip(kTitle);
    trayMain->setContextMenu(mnuTray);
    connect(trayMain, &QSystemTrayIcon::activated, this,
            [this](QSystemTrayIcon::ActivationReason reason) { trayMain_Activated(int(reason)); });
}

void frmMain::trayMain_Activated(int reason) {
    if (reason == QSystemTrayIcon::DoubleClick) {
        ShowAndRaise();
    } else if (reason == QSystemTrayIcon::Trigger && isVisible()) {
        raise();
        activateWindow();
    }
}

void frmMain::mnuTray_Closed() {
    if (m_ExitRequested && !m_shutDownRan) {
        ShutDown();
    }
}

void frmMain::LoadTrayMenu() {
    mnuTrayDash->setVisible(false);
    for (QAction* entry : std::as_const(m_newItemsEntries)) {
        entry->setVisible(false);
    }
    qsizetype n = 0;
    for (int i = 1; m_User && i <= m_User->ChannelCount(); ++i) {
        RSSChannel* channel = m_User->GetChannel(i);
        if (!channel || !channel->NewItems()) {
            continue;
        }
        if (n >= m_newItemsEntries.size()) {
            m_newItemsEntries.append(mnuNewItems->addAction(QString()));
        }
        QAction* entry = m_newItemsEntries.at(n);
        entry->setText(MenuText(channel->TitleAndCount()));
        entry->setData(channel->URL());
        entry->setVisible(true);
        ++n;
    }
    mnuTrayDash->setVisible(n > 0);
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

QString frmMain::DecodeText(const QString& text) {
    // The seven folders are no channels of the user's; the maker's two are. Until a profile is
    // active there is no name and nothing to count, rather than the placeholders' own names.
    constexpr int kFolders = 7;
    const bool active = m_User && m_User->Active();
    const QString channels = QString::number(active ? m_User->ChannelCount() - kFolders : 0);
    const clsItemBank* bank = active ? m_User->ItemBank() : nullptr;
    const QString replacements[][2] = {
        {QStringLiteral("{user}"), active ? m_User->Name() : QString()},
        {QStringLiteral("{channels}"), channels},
        {QStringLiteral("{chls}"), channels},
        {QStringLiteral("{items}"), QString::number(bank ? bank->Count() : 0)},
    };
    QString result = text;
    for (const auto& [placeholder, value] : replacements) {
        const qsizetype at = result.indexOf(placeholder);
        if (at >= 0) {
            result.replace(at, placeholder.size(), value);
        }
    }
    return result;
}

void frmMain::SkinHandler(const QString& function) {
    if (function == QStringLiteral("close")) {
        MeClose();
    } else if (function == QStringLiteral("max")) {
        if (isMaximized()) {
            showNormal();
        } else {
            if (!Framed()) {
                ToggleFramed();
            }
            showMaximized();
        }
    } else if (function == QStringLiteral("min")) {
        showMinimized();
    } else if (function == QStringLiteral("windowframe")) {
        ToggleFramed();
    } else if (function == QStringLiteral("addchannel")) {
        mnuAddChannels_Click();
    } else if (function == QStringLiteral("profiles")) {
        LoadProfileMenu();
        mnuProfile->popup(QCursor::pos());
    }
}

void frmMain::ToggleFramed() {
    SetFramed(!Framed());
    m_menuBar->setVisible(Framed());
    setWindowState(Qt::WindowNoState);
    show();
    Layout();
}

bool frmMain::HasImage(const QString& key) const {
    return ImageIndex(key) >= 0;
}

void frmMain::RemoveImage(const QString& key) {
    const int at = ImageIndex(key);
    if (at >= 0) {
        imglst.removeAt(at);
    }
}

void frmMain::AddImage(const QString& key, const SkinPicture& picture) {
    const int at = ImageIndex(key);
    if (at >= 0) {
        imglst[at].picture = picture;
        imglst[at].icon = picture.ToIcon();
    } else {
        imglst.append({key, picture, picture.ToIcon()});
    }
}

int frmMain::ImageIndex(const QString& key) const {
    for (int i = 0; i < imglst.size(); ++i) {
        if (imglst.at(i).key == key) {
            return i;
        }
    }
    return -1;
}

void frmMain::Skin_SkinLoaded() {
    const int unread = ImageIndex(QStringLiteral("unread"));
    if (unread >= 0) {
        setWindowIcon(imglst.at(unread).icon);
        if (trayMain) {
            trayMain->setIcon(imglst.at(unread).icon);
        }
    }
    ApplyWindowColors();
    Layout();
}

void frmMain::ApplyWindowColors() {
    frmTamselSkin& skin = Skin();
    treMain->setFont(skin.GetFont(skin.TreeFont()));
    // The scroll bars and branch marks take the tree's colours too, so that a dark skin has no
    // light bars.
    const QColor back = SkinColor::ToQColor(skin.TreeColor());
    const QColor text = SkinColor::ToQColor(skin.GetFontColor(skin.TreeFont()));
    QPalette palette = treMain->palette();
    for (const QPalette::ColorRole role : {QPalette::Base, QPalette::Window, QPalette::Button}) {
        palette.setColor(role, back);
    }
    for (const QPalette::ColorRole role : {QPalette::Text, QPalette::WindowText, QPalette::ButtonText}) {
        palette.setColor(role, text);
    }
    treMain->setPalette(palette);
    int iconSide = 0;
    for (const ListImage& image : std::as_const(imglst)) {
        iconSide = std::max({iconSide, image.picture.Width(), image.picture.Height()});
    }
    if (iconSide > 0) {
        treMain->setIconSize(QSize(iconSide, iconSide));
    }
    for (QTreeWidgetItem* node : std::as_const(m_nodes)) {
        StyleNode(node);
        const int image = node->data(0, kImageRole).toInt();
        node->setIcon(0, image >= 0 && image < imglst.size() ? imglst.at(image).icon : QIcon());
    }
}

void frmMain::StyleNode(QTreeWidgetItem* node) const {
    const frmTamselSkin& skin = Skin();
    node->setFont(0, skin.GetFont(skin.TreeFont()));
    node->setForeground(0, SkinColor::ToQColor(skin.GetFontColor(skin.TreeFont())));
}

void frmMain::SetNodeImage(QTreeWidgetItem* node, const QString& imageKey) const {
    const int image = ImageIndex(imageKey);
    node->setData(0, kImageRole, image);
    node->setIcon(0, image >= 0 ? imglst.at(image).icon : QIcon());
}

void frmMain::RepaintSkin() {
    Layout();
}

void frmMain::Layout() {
    if (isMinimized()) {
        Memory::TrimWorkingSet();
        return;
    }
    QRect area = rect();
    if (m_menuBar->isVisible()) {
        const int barHeight = m_menuBar->sizeHint().height();
        m_menuBar->setGeometry(0, 0, width(), barHeight);
        area.setTop(barHeight);
    }
    picSkin()->setGeometry(area);
    frmTamselSkin& skin = Skin();
    skin.PaintAll(*this, *picSkin(), SkinKind(), SkipHidden());
    const int kind = SkinKind();
    const int west = skin.FrameWSize(kind);
    const int north = skin.FrameNSize(kind);
    QRect tree = treMain->geometry();
    tree.moveTo(area.left() + west, area.top() + north);
    const int treeWidth = area.width() - west - skin.FrameESize(kind);
    const int treeHeight = area.height() - north - skin.FrameSSize(kind);
    if (treeWidth > 0) {
        tree.setWidth(treeWidth);
    }
    if (treeHeight > 0) {
        tree.setHeight(treeHeight);
    }
    treMain->setGeometry(tree);
}

void frmMain::SurfacePressed(Qt::MouseButton button, QPointF point) {
    const bool hit = Skin().SkinMouseDown(*this, button, point, SkinKind(), SkipHidden());
    if (hit) {
        return;
    }
    const bool normal = !(windowState() & (Qt::WindowMaximized | Qt::WindowFullScreen));
    if (button == Qt::LeftButton && !Framed() && normal) {
        BeginSystemDrag(EdgeZone(point, picSkin()->size()));
    } else if (button == Qt::RightButton && !m_trayAvailable) {
        mnuTray->popup(QCursor::pos());
    }
}

void frmMain::changeEvent(QEvent* event) {
    SkinnedWindow::changeEvent(event);
    if (event->type() == QEvent::WindowStateChange && isMinimized()) {
        Memory::TrimWorkingSet();
    }
}

void frmMain::closeEvent(QCloseEvent* event) {
    // The window's own close control hides it; closes from code go through.
    if (event->spontaneous() && !m_shutDownRan) {
        event->ignore();
        MeClose();
        return;
    }
    event->accept();
}

void frmMain::MeClose() {
    if (!m_trayAvailable) {
        ShutDown();
        return;
    }
    Memory::TrimWorkingSet();
    hide();
}

void frmMain::ShowAndRaise() {
    if (m_shutDownRan) {
        return;
    }
    setWindowState(windowState() & ~(Qt::WindowMinimized | Qt::WindowMaximized));
    show();
    raise();
    activateWindow();
}

void frmMain::ShutDown() {
    if (m_shutDownRan) {
        return;
    }
    const bool wasVisible = isVisible();
    hide();
    m_ExitRequested = true;
    if (trayMain) {
        trayMain->hide();
    }
    SaveWindowPlacement(m_runtime.Settings(), this, kTitle);
    if (!SaveAllOrAsk()) {
        // The user chose to stay rather than lose what could not be written.
        m_ExitRequested = false;
        if (trayMain && m_TrayIconShown) {
            trayMain->show();
        }
        if (wasVisible || !m_trayAvailable) {
            ShowAndRaise();
        }
        return;
    }
    m_shutDownRan = true;
    for (QWidget* window : {static_cast<QWidget*>(m_frmUser.data()), static_cast<QWidget*>(m_frmAbout.data()),
                            static_cast<QWidget*>(m_frmLoading.data())}) {
        if (window) {
            window->close();
        }
    }
    ReleaseUser();
    tmrOneShot->setInterval(kUnloadDelayMs);
    tmrOneShot->start();
}

void frmMain::tmrOneShot_Timer() {
    if (!m_TrayIconShown && trayMain) {
        trayMain->show();
        m_TrayIconShown = true;
    }
    if (m_shutDownRan) {
        UnloadMain();
        return;
    }
    tmrOneShot->stop();
    Layout();
}

void frmMain::UnloadMain() {
    // An activation or a question below this event still uses the profiles; a later tick,
    // from the outer event loop, finishes the job.
    if (m_busyDepth > 0) {
        return;
    }
    tmrOneShot->stop();
    m_Users.reset();
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (QWidget* window : windows) {
        if (window != this && window->isVisible()) {
            window->close();
        }
    }
    close();
    Q_EMIT Unloaded();
}

bool frmMain::SaveAllOrAsk() {
    QString error;
    while (m_Users && !m_Users->SaveAllXML(&error)) {
        ++m_busyDepth;
        const QMessageBox::StandardButton choice = QMessageBox::warning(
            this, kTitle,
            QStringLiteral(
                "Tamsel could not save:\n%1\n\nMake room on the disk and try again, or discard what "
                "changed since the last save.")
                .arg(error),
            QMessageBox::Retry | QMessageBox::Discard | QMessageBox::Cancel, QMessageBox::Retry);
        --m_busyDepth;
        if (choice == QMessageBox::Discard) {
            return true;
        }
        if (choice != QMessageBox::Retry) {
            return false;
        }
        error.clear();
    }
    return true;
}

ChannelViewer* frmMain::Viewer(const RSSChannel& channel) const {
    return m_viewers->Viewer(channel);
}

ChannelViewer* frmMain::LoadViewer(RSSChannel& channel) {
    return m_viewers->LoadViewer(channel);
}

void frmMain::UnloadViewer(RSSChannel& channel) {
    m_viewers->UnloadViewer(channel);
}

void frmMain::CreateTickerMenu() {
    mnuTicker = new QMenu(QStringLiteral("&Ticker"), this);
    connect(mnuTicker->addAction(QStringLiteral("Open &Item in Browser")), &QAction::triggered, this, [this] {
        if (m_ticker) {
            m_ticker->OpenExtern();
        }
    });
    connect(mnuTicker->addAction(QStringLiteral("&Open Tamsel")), &QAction::triggered, this,
            &frmMain::ShowAndRaise);
    mnuTicker->addSeparator();
    QMenu* dock = mnuTicker->addMenu(QStringLiteral("&Dock"));
    // The app bar's edge numbers: 0 left, 1 top, 2 right, 3 bottom.
    const std::pair<const char16_t*, int> edges[] = {
        {u"&Top", 1}, {u"&Bottom", 3}, {u"&Left", 0}, {u"&Right", 2}};
    for (const auto& [caption, edge] : edges) {
        connect(dock->addAction(QString::fromUtf16(caption)), &QAction::triggered, this, [this, edge] {
            if (m_ticker) {
                m_ticker->DockBar(edge);
            }
        });
    }
    QMenu* effects = mnuTicker->addMenu(QStringLiteral("&Effects"));
    auto* effectGroup = new QActionGroup(effects);
    const std::pair<const char16_t*, int> choices[] = {{u"&Scroll Horizontal", frmTicker::EffectHorizontal},
                                                       {u"Scroll &Vertical", frmTicker::EffectVertical},
                                                       {u"&Fade", frmTicker::EffectFade},
                                                       {u"&TypeWrite", frmTicker::EffectType}};
    for (const auto& [caption, effect] : choices) {
        QAction* entry = effects->addAction(QString::fromUtf16(caption));
        entry->setCheckable(true);
        entry->setData(effect);
        effectGroup->addAction(entry);
        connect(entry, &QAction::triggered, this, [this, effect] {
            if (m_ticker) {
                m_ticker->SetEffect(effect);
            }
        });
    }
    connect(effects, &QMenu::aboutToShow, this, [this, effectGroup] {
        for (QAction* entry : effectGroup->actions()) {
            entry->setChecked(m_ticker && entry->data().toInt() == m_ticker->CurrentEffect());
        }
    });
    connect(mnuTicker->addAction(QStringLiteral("&Close Ticker Bar")), &QAction::triggered, this,
            [this] { ShowTicker(false); });
}

void frmMain::ShowTicker(bool show) {
    mnuTrayTicker->setChecked(show);
    mnuShowTicker->setChecked(show);
    m_runtime.Settings().SaveSetting(frmTicker::kSection, QStringLiteral("Show"),
                                     show ? kTrue : QStringLiteral("False"));
    if (!show) {
        if (m_ticker) {
            m_ticker->close();
        }
        return;
    }
    if (m_ticker) {
        m_ticker->raise();
        return;
    }
    const Services services = m_runtime.GetServices();
    if (!m_tickerView) {
        m_tickerImages = std::make_unique<ImageLoader>(services.http);
        m_tickerView = std::make_unique<frmTickerView>(
            Skin(), services.settings, services.clock, services.desktop, *m_tickerImages,
            NamespaceTransform(),
            [this] { return m_User ? m_User->Folder() + QStringLiteral("/tck_tmp.html") : QString(); },
            [this](const XmlNode& item) { ReportItemRead(item); });
    }
    m_ticker = new frmTicker(Skin(), services.settings, services.clock, services.desktop,
                             [this] { return m_User ? m_User->ItemBank() : nullptr; });
    m_ticker->setAttribute(Qt::WA_DeleteOnClose);
    m_ticker->SetItemView(m_tickerView.get());
    connect(m_ticker, &frmTicker::MenuRequested, this,
            [this](QPoint position) { mnuTicker->popup(position); });
    // Closed by its own close button: as the menu's "&Close Ticker Bar".
    connect(m_ticker, &frmTicker::Closed, this, [this] {
        mnuTrayTicker->setChecked(false);
        mnuShowTicker->setChecked(false);
        if (!m_shutDownRan) {
            m_runtime.Settings().SaveSetting(frmTicker::kSection, QStringLiteral("Show"),
                                             QStringLiteral("False"));
        }
        if (m_tickerView) {
            m_tickerView->HideItem();
        }
    });
    m_ticker->show();
}

frmTicker* frmMain::Ticker() const {
    return m_ticker;
}

void frmMain::ForgetTickerItems() {
    // The ticker and its view hold items of the bank that is about to go.
    if (m_tickerView) {
        m_tickerView->HideItem();
    }
    if (m_ticker) {
        m_ticker->ProfileChanged();
    }
}

void frmMain::ReportItemRead(const XmlNode& item) {
    if (!m_User) {
        return;
    }
    for (const QString& key :
         {GetAttributeText(item, QStringLiteral("channel")), FolderKey::Unread, FolderKey::Read}) {
        if (RSSChannel* channel = m_User->GetChannel(key)) {
            channel->SetState();
        }
    }
}

void frmMain::ReleaseUser() {
    ClearTree();
    if (!m_User) {
        return;
    }
    m_viewers->CloseAll();
    ForgetTickerItems();
    clsProfile* old = m_User;
    m_User = nullptr;
    disconnect(old, nullptr, this, nullptr);
    old->Deactivate();
}

void frmMain::m_Users_ProfilesLoaded() {
    if (!m_Users || m_shutDownRan) {
        return;
    }
    if (!m_damageTold && !m_Users->DamagedFile().isEmpty()) {
        m_damageTold = true;
        ++m_busyDepth;
        QMessageBox::warning(
            this, kTitle,
            colProfiles::kReadError +
                QStringLiteral("\n\nThe list of profiles could not be read. It was kept as\n%1\n"
                               "and a new list was started. Create a profile to go on.")
                    .arg(m_Users->DamagedFile()));
        --m_busyDepth;
        if (!m_Users || m_shutDownRan) {
            return;
        }
    }
    if (m_Users->UserCount() < 1) {
        ShowNewUser();
        return;
    }
    clsProfile* profile = m_Users->GetDefaultUser();
    // The new-profile dialog has just activated it.
    if (profile == m_User && m_User->Active()) {
        Layout();
        return;
    }
    ChangeUser(profile->Name());
}

void frmMain::ShowNewUser() {
    if (!m_frmUser) {
        m_frmUser = new frmUser(Skin(), *this);
        connect(m_frmUser, &frmUser::Closed, this, [this] {
            // A closed dialog deletes itself whenever its deferred delete comes round, which may
            // follow the timer below: showing it again would lose it, so a cancel makes a new one.
            m_frmUser = nullptr;
            QTimer::singleShot(0, this, &frmMain::m_Users_ProfilesLoaded);
        });
    }
    m_frmUser->show();
    m_frmUser->raise();
    m_frmUser->activateWindow();
}

void frmMain::ChangeUser(const QString& name) {
    if (!m_Users || !SaveAllOrAsk()) {
        return;
    }
    clsProfile* profile = m_Users->GetUser(name);
    if (!profile) {
        return;
    }
    clsProfile* old = m_User;
    m_User = nullptr;
    setEnabled(false);
    if (!(m_frmUser && m_frmUser->isVisible())) {
        if (!m_frmLoading) {
            m_frmLoading = new frmLoading(Skin(), this);
            m_frmLoading->setAttribute(Qt::WA_DeleteOnClose);
        }
        if (isVisible()) {
            m_frmLoading->move(geometry().center() - m_frmLoading->rect().center());
        }
        m_frmLoading->show();
    }
    ClearTree();
    if (old) {
        m_viewers->CloseAll();
        ForgetTickerItems();
        disconnect(old, nullptr, this, nullptr);
        old->Deactivate();
    }
    m_User = profile;
    connect(profile, &clsProfile::NewGroup, this, &frmMain::m_User_NewGroup);
    connect(profile, &clsProfile::NewChannel, this, &frmMain::m_User_NewChannel);
    connect(profile, &clsProfile::DelChannel, this, &frmMain::m_User_DelChannel);
    connect(profile, &clsProfile::DelGroup, this, &frmMain::m_User_DelGroup);
    ++m_busyDepth;
    const bool active = profile->SetUserActive();
    --m_busyDepth;
    if (m_frmLoading) {
        m_frmLoading->close();
    }
    setEnabled(true);
    // A shutdown (or another switch) that ran while the profile loaded has released it.
    if (!active || m_User != profile || !m_Users) {
        return;
    }
    m_Users->SetDefault(profile->Name());
    RepopulateTreeMain();
    Layout();
    TellOfDamagedItems(*profile);
}

void frmMain::TellOfDamagedItems(clsProfile& profile) {
    const clsItemBank* bank = profile.ItemBank();
    if (!bank || bank->DamagedFile().isEmpty()) {
        return;
    }
    ++m_busyDepth;
    QMessageBox::warning(
        this, kTitle,
        QStringLiteral("The items of \"%1\" could not be read (%2).\n\nThe file was kept as\n%3\n"
                       "The items that could still be read are kept, and every channel "
                       "fetches its news again.")
            .arg(profile.Name(), bank->DamageReason(), QDir::toNativeSeparators(bank->DamagedFile())));
    --m_busyDepth;
}

QTreeWidgetItem* frmMain::Node(const QString& key) const {
    return m_nodes.value(key.toCaseFolded());
}

QTreeWidgetItem* frmMain::AddNode(QTreeWidgetItem* parent, const QString& key, const QString& text) {
    auto* node = parent ? new QTreeWidgetItem(parent) : new QTreeWidgetItem(treMain);
    node->setText(0, text);
    node->setData(0, kKeyRole, key);
    m_nodes.insert(key.toCaseFolded(), node);
    const QString channel = ChannelOfKey(key);
    if (!channel.isEmpty()) {
        m_channelNodes.insert(channel.toCaseFolded(), node);
    }
    StyleNode(node);
    return node;
}

void frmMain::ForgetNode(QTreeWidgetItem* node) {
    for (int i = 0; i < node->childCount(); ++i) {
        ForgetNode(node->child(i));
    }
    const QString key = node->data(0, kKeyRole).toString();
    m_nodes.remove(key.toCaseFolded());
    const QString channel = ChannelOfKey(key);
    if (!channel.isEmpty()) {
        m_channelNodes.remove(channel.toCaseFolded(), node);
    }
}

void frmMain::RemoveNode(QTreeWidgetItem* node) {
    if (!node) {
        return;
    }
    ForgetNode(node);
    QTreeWidgetItem* parent = node->parent();
    const std::unique_ptr<QTreeWidgetItem> removed(
        parent ? parent->takeChild(parent->indexOfChild(node))
               : treMain->takeTopLevelItem(treMain->indexOfTopLevelItem(node)));
}

void frmMain::ClearTree() {
    m_nodes.clear();
    m_channelNodes.clear();
    treMain->clear();
}

void frmMain::RepopulateTreeMain() {
    // Hidden while it fills, which takes the focus away: the tree gets it back when it had it, or
    // when nothing had it yet (the window opening), so that the keys reach the tree.
    const bool takesFocus = !focusWidget() || focusWidget() == treMain;
    treMain->setVisible(false);
    ClearTree();
    for (int i = 1; m_User && i <= m_User->GroupCount(); ++i) {
        m_User_NewGroup(m_User->GetGroup(i));
    }
    treMain->setVisible(true);
    if (takesFocus) {
        treMain->setFocus();
    }
}

void frmMain::m_User_NewGroup(RSSGroup* group) {
    if (!group || !m_User) {
        return;
    }
    QTreeWidgetItem* node = nullptr;
    if (group->Name() != GroupName::Tamsel) {
        node = AddNode(nullptr, group->Name(), group->Name(true));
    }
    for (int i = 0; i < group->ChannelCount(); ++i) {
        m_User_NewChannel(group, group->ChannelURL(i));
    }
    if (node) {
        SetNodeImage(node, kCollapseImage);
        node->setExpanded(group->Expanded());
    }
}

void frmMain::m_User_NewChannel(RSSGroup* group, const QString& key) {
    RSSChannel* channel = m_User && group ? m_User->GetChannel(key) : nullptr;
    if (!channel) {
        return;
    }
    const QString nodeKey = group->Name() + u'|' + key;
    if (Node(nodeKey)) {
        return;
    }
    QTreeWidgetItem* parent = nullptr;
    if (group->Name() != GroupName::Tamsel) {
        parent = Node(group->Name());
        if (!parent) {
            return;
        }
    }
    QTreeWidgetItem* node = AddNode(parent, nodeKey, channel->TitleAndCount());
    SetNodeImage(node, channel->GetImage());
    RefreshGroupText(group);
}

void frmMain::m_User_DelChannel(RSSGroup* group, const QString& key) {
    if (group) {
        RemoveNode(Node(group->Name() + u'|' + key));
        RefreshGroupText(group);
    }
}

void frmMain::m_User_DelGroup(RSSGroup* group) {
    if (group) {
        RemoveNode(Node(group->Name()));
    }
}

void frmMain::RefreshGroupText(RSSGroup* group) {
    if (QTreeWidgetItem* node = Node(group->Name())) {
        node->setText(0, group->Name(true));
    }
}

bool frmMain::UpdateChannelNode(RSSChannel& channel) {
    if (!m_User || m_User->GetChannel(channel.URL()) != &channel) {
        return false;
    }
    const QList<QTreeWidgetItem*> nodes = m_channelNodes.values(channel.URL().toCaseFolded());
    if (nodes.isEmpty()) {
        return false;
    }
    const QString text = channel.TitleAndCount();
    const QString imageKey = channel.GetImage();
    const int image = ImageIndex(imageKey);
    bool changed = false;
    for (QTreeWidgetItem* node : nodes) {
        if (node->text(0) != text) {
            node->setText(0, text);
            changed = true;
            m_textsTimer->start();
        }
        if (node->data(0, kImageRole).toInt() != image) {
            SetNodeImage(node, imageKey);
            changed = true;
        }
    }
    return changed;
}

bool frmMain::eventFilter(QObject* watched, QEvent* event) {
    if (watched == treMain) {
        if (event->type() == QEvent::KeyPress) {
            const auto* key = static_cast<QKeyEvent*>(event);
            if (IsNavigationKey(key->key())) {
                m_KeyNavigation = true;
            } else if ((key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter) &&
                       treMain->currentItem()) {
                // The keyboard's way to open what the mouse opens with a click.
                treMain_NodeClick(treMain->currentItem());
                return true;
            }
        } else if (event->type() == QEvent::KeyRelease) {
            const auto* key = static_cast<QKeyEvent*>(event);
            if (!key->isAutoRepeat()) {
                treMain_KeyUp(key->key(), key->modifiers());
            }
        }
    }
    return SkinnedWindow::eventFilter(watched, event);
}

void frmMain::treMain_KeyUp(int key, Qt::KeyboardModifiers modifiers) {
    m_KeyNavigation = false;
    if (key != Qt::Key_Delete || modifiers.testFlag(Qt::ShiftModifier) || !m_User) {
        return;
    }
    QTreeWidgetItem* node = treMain->currentItem();
    if (!node) {
        return;
    }
    const QString nodeKey = node->data(0, kKeyRole).toString();
    const QString group = GroupOfKey(nodeKey);
    const QString channelKey = ChannelOfKey(nodeKey);
    if (IsReservedGroupName(group)) {
        return;
    }
    if (!channelKey.isEmpty()) {
        const RSSChannel* channel = m_User->GetChannel(channelKey);
        const QString title = channel ? channel->Title() : channelKey;
        ++m_busyDepth;
        const auto answer =
            QMessageBox::question(this, QStringLiteral("Comfirm Remove"),
                                  QStringLiteral("Remove ") + title + QStringLiteral(" from ") + group + u'?',
                                  QMessageBox::Yes | QMessageBox::No);
        --m_busyDepth;
        if (answer == QMessageBox::Yes && Node(nodeKey) == node) {
            mnuRemoveChannel_Click();
        }
        return;
    }
    if (node->childCount() == 0) {
        mnuDeleteGroup_Click();
        return;
    }
    Inform(QStringLiteral("Cannot Delete"), QStringLiteral("Remove all Channels before deleting Group"));
}

void frmMain::treMain_NodeClick(QTreeWidgetItem* node) {
    if (m_KeyNavigation || !node || !m_User) {
        return;
    }
    const QString key = node->data(0, kKeyRole).toString();
    treMain->setCurrentItem(node);
    const QString channelKey = ChannelOfKey(key);
    if (!channelKey.isEmpty()) {
        if (RSSChannel* channel = m_User->GetChannel(channelKey)) {
            BeginBusy(this);
            channel->CreateChannelView(true);
            EndBusy(this);
        }
        return;
    }
    node->setExpanded(!node->isExpanded());
}

void frmMain::treMain_NodeRightClick(QTreeWidgetItem* node, QPoint globalPosition) {
    if (m_KeyNavigation || !node) {
        return;
    }
    const QString key = node->data(0, kKeyRole).toString();
    treMain->setCurrentItem(node);
    const bool channel = !ChannelOfKey(key).isEmpty();
    SetContextEntries(channel, !channel, IsReservedGroupName(GroupOfKey(key)));
    mnuActions->popup(globalPosition);
}

void frmMain::SetContextEntries(bool channel, bool group, bool reservedGroup) {
    mnuADash1->setVisible(channel || group);
    for (QAction* entry : std::as_const(m_channelEntries)) {
        entry->setVisible(channel);
    }
    mnuRemoveChannel->setVisible(channel && !reservedGroup);
    for (QAction* entry : std::as_const(m_groupEntries)) {
        entry->setVisible(group);
    }
    for (QAction* entry : std::as_const(m_userGroupEntries)) {
        entry->setVisible(group && !reservedGroup);
    }
}

QTreeWidgetItem* frmMain::SelectedNode() const {
    return treMain->currentItem();
}

RSSChannel* frmMain::SelectedChannel() const {
    const QTreeWidgetItem* node = SelectedNode();
    const QString key = node ? ChannelOfKey(node->data(0, kKeyRole).toString()) : QString();
    return m_User && !key.isEmpty() ? m_User->GetChannel(key) : nullptr;
}

void frmMain::ForEachChannelInGroup(const std::function<void(RSSChannel&)>& action) {
    const QTreeWidgetItem* selected = SelectedNode();
    if (!selected || !m_User) {
        return;
    }
    const QString group = GroupOfKey(selected->data(0, kKeyRole).toString());
    QStringList keys;
    for (auto it = m_nodes.cbegin(); it != m_nodes.cend(); ++it) {
        const QString key = it.value()->data(0, kKeyRole).toString();
        if (GroupOfKey(key) == group && !ChannelOfKey(key).isEmpty()) {
            keys.append(ChannelOfKey(key));
        }
    }
    for (const QString& key : std::as_const(keys)) {
        if (RSSChannel* channel = m_User ? m_User->GetChannel(key) : nullptr) {
            action(*channel);
        }
    }
}

void frmMain::mnuRemoveChannel_Click() {
    const QTreeWidgetItem* node = SelectedNode();
    if (!node || !m_User) {
        return;
    }
    const QString key = node->data(0, kKeyRole).toString();
    const QString group = GroupOfKey(key);
    const QString channelKey = ChannelOfKey(key);
    if (channelKey.isEmpty()) {
        return;
    }
    const RSSChannel* channel = m_User->GetChannel(channelKey);
    const QString title = channel ? channel->Title() : channelKey;
    m_User->DeleteChannel(group, channelKey);
    if (!m_User->IsInGroup(channelKey)) {
        ++m_busyDepth;
        const auto answer =
            QMessageBox::question(this, title,
                                  QStringLiteral("This channel is no longer associated with a group.\n"
                                                 "Would you like to remove its items from the system?"),
                                  QMessageBox::Yes | QMessageBox::No);
        --m_busyDepth;
        if (!m_User) {
            return;
        }
        if (answer == QMessageBox::Yes) {
            m_User->RemoveChannel(channelKey);
            for (QTreeWidgetItem* orphan : m_channelNodes.values(channelKey.toCaseFolded())) {
                RemoveNode(orphan);
            }
        }
    }
    SaveAllOrAsk();
}

void frmMain::mnuDeleteGroup_Click() {
    const QTreeWidgetItem* node = SelectedNode();
    if (!node || !m_User) {
        return;
    }
    const QString key = node->data(0, kKeyRole).toString();
    if (!ChannelOfKey(key).isEmpty()) {
        return;
    }
    if (node->childCount() == 0) {
        m_User->DeleteGroup(GroupOfKey(key));
        RepopulateTreeMain();
        SaveAllOrAsk();
        return;
    }
    Inform(QStringLiteral("Cannot Delete Group"),
           QStringLiteral("Group not empty. Remove Channels before removing Group."));
}
