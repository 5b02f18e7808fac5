// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/AppHost.h"
#include "app/RefreshCoordinator.h"
#include "groups/ChannelCommands.h"
#include "skin/SkinImageListTarget.h"
#include "skin/SkinPicture.h"
#include "skin/SkinnedWindow.h"

#include <QHash>
#include <QIcon>
#include <QList>
#include <QPointer>
#include <functional>
#include <memory>

class QAction;
class QDialog;
class QMenu;
class QMenuBar;
class QSystemTrayIcon;
class QTimer;
class QTreeWidget;
class QTreeWidgetItem;
class RSSGroup;
class Runtime;
class ImageLoader;
class ViewerWindows;
class XmlNode;
class frmTicker;
class frmTickerView;
class clsProfile;
class colProfiles;
class frmAbout;
class frmLoading;
class frmUser;

// The main window: a frameless window painted by the skin, with the tree of the active profile's
// folders, groups and channels inside the skin's frame, and the tray icon. It owns the profile
// list and the active profile, shares the connection slots among the channels, and its life is
// the program's: closing hides it to the tray, and only the tray's Exit (or a logout) ends the
// program, after everything was saved. Where the desktop has no tray, nothing hides: closing
// ends the program the same way, and the tray's menu opens from a right click on the window.
class frmMain final : public SkinnedWindow,
                      public AppHost,
                      public ChannelCommands,
                      public SkinImageListTarget,
                      private RefreshCoordinator::Target {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(frmMain)
public:
    // The skin engine paints this window and is loaded by it; `trayAvailable` is the desktop's
    // answer whether a system tray exists.
    frmMain(Runtime& runtime, frmTamselSkin& skin, bool trayAvailable);
    ~frmMain() override;

    // AppHost
    void PopupInfo(const QString& message, const QString& profileName, const QString& channelKey) override;
    bool RequestConnect() override { return m_coordinator.RequestConnect(); }
    void ConnectRelease() override { m_coordinator.ConnectRelease(); }
    void StateChange(const QString& profileName, RSSChannel& channel) override;
    bool AddRSSItem(const XmlNode& item) override;
    clsProfile* ActiveProfile() const override { return m_User; }
    const XsltStylesheet& NamespaceTransform() const override;
    bool FirstRun() const override { return m_FirstRun; }
    void SetFirstRun(bool firstRun) override { m_FirstRun = firstRun; }
    void AddChannel(const QString& url, const QString& groupName) override;
    ChannelViewer* Viewer(const RSSChannel& channel) const override;
    ChannelViewer* LoadViewer(RSSChannel& channel) override;
    void UnloadViewer(RSSChannel& channel) override;

    // SkinWindow
    QString DecodeText(const QString& text) override;
    void SkinHandler(const QString& function) override;

    // SkinImageListTarget: the tree's image list `imglst`.
    bool HasImage(const QString& key) const override;
    void RemoveImage(const QString& key) override;
    void AddImage(const QString& key, const SkinPicture& picture) override;
    // The 0-based position of the key in the image list, -1 when it has none.
    int ImageIndex(const QString& key) const;

    // ChannelCommands
    colProfiles* Users() const override { return m_Users.get(); }
    bool AddGroup(const QString& name) override;
    bool RenameGroup(const QString& oldName, const QString& newName) override;
    void RemoveChannel(const QString& key) override;
    // Saves everything, then switches to the named profile and shows its tree. Nothing happens
    // when the save was cancelled or there is no such profile.
    void ChangeUser(const QString& name) override;

    // The tree node of a key (group, or group "|" channel URL), or none.
    QTreeWidgetItem* Node(const QString& key) const;
    QTreeWidget* Tree() const { return treMain; }
    QMenuBar* MenuBar() const { return m_menuBar; }
    QMenu* FileMenu() const { return mnuFile; }
    QMenu* ProfileMenu() const { return mnuProfile; }
    QMenu* ActionsMenu() const { return mnuActions; }
    QMenu* HelpMenu() const { return mnuHelp; }
    QMenu* TrayMenu() const { return mnuTray; }
    QMenu* TickerMenu() const { return mnuTicker; }
    frmTicker* Ticker() const;
    // The "&New Items" submenu of the tray menu.
    QMenu* NewItemsMenu() const { return mnuNewItems; }
    bool TrayAvailable() const { return m_trayAvailable; }
    bool TrayIconShown() const { return m_TrayIconShown; }
    bool ExitRequested() const { return m_ExitRequested; }

    // Rebuilds the tray's "&New Items" list from the channels that have new items.
    void LoadTrayMenu();
    // One checkable entry per profile, the active one checked.
    void LoadProfileMenu();
    // Selects the help channel's node and opens its viewer.
    void ShowHelpChannel();
    // Hides the window to the tray; without a tray, ends the program instead.
    void MeClose();
    // Saves everything and ends the program: the window goes at once, the process on a later tick.
    void ShutDown();
    // Saves the profile list and everything of the active profile. When a file cannot be
    // written, asks whether to try again, go on without it, or stay; false when the user stays.
    bool SaveAllOrAsk();
    // Shows the window in its normal state in front of the others, for the tray's "&Open Tamsel"
    // and for a second start of the program.
    void ShowAndRaise();

Q_SIGNALS:
    // The window has unloaded itself after ShutDown; the program ends.
    void Unloaded();

protected:
    void closeEvent(QCloseEvent* event) override;
    void changeEvent(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void RepaintSkin() override;
    void SurfacePressed(Qt::MouseButton button, QPointF point) override;

private:
    bool UpdateChannelNode(RSSChannel& channel) override;

    void CreateMenus();
    void CreateFileMenu();
    void mnuExportOPML_Click();
    void mnuChangeSkin_Click();
    void mnuAddChannels_Click();
    void mnuDeleteChannels_Click();
    void mnuPreferences_Click();
    // Add mode with an empty name, rename mode otherwise.
    void ShowAddGroup(const QString& renamedGroup);
    // A modal dialog; the profiles stay while it is open.
    void RunModal(QDialog& dialog);
    // A message box; the profiles stay while it is open.
    void Inform(const QString& caption, const QString& text);
    // The group of the selected node, or the profile's last group, never a reserved one.
    QString PreselectedGroup() const;
    void CreateTray();
    void m_Users_ProfilesLoaded();
    void ShowNewUser();
    void Skin_SkinLoaded();
    void ApplyWindowColors();
    void StyleNode(QTreeWidgetItem* node) const;
    void SetNodeImage(QTreeWidgetItem* node, const QString& imageKey) const;
    void RefreshGroupText(RSSGroup* group);

    void RepopulateTreeMain();
    void m_User_NewGroup(RSSGroup* group);
    void m_User_NewChannel(RSSGroup* group, const QString& key);
    void m_User_DelChannel(RSSGroup* group, const QString& key);
    void m_User_DelGroup(RSSGroup* group);
    QTreeWidgetItem* AddNode(QTreeWidgetItem* parent, const QString& key, const QString& text);
    void RemoveNode(QTreeWidgetItem* node);
    void ForgetNode(QTreeWidgetItem* node);
    void ClearTree();

    void treMain_KeyUp(int key, Qt::KeyboardModifiers modifiers);
    void treMain_NodeClick(QTreeWidgetItem* node);
    void treMain_NodeRightClick(QTreeWidgetItem* node, QPoint globalPosition);
    void SetContextEntries(bool channel, bool group, bool reservedGroup);
    QTreeWidgetItem* SelectedNode() const;
    RSSChannel* SelectedChannel() const;
    void mnuRemoveChannel_Click();
    void mnuDeleteGroup_Click();
    void ForEachChannelInGroup(const std::function<void(RSSChannel&)>& action);

    void tmrOneShot_Timer();
    void trayMain_Activated(int reason);
    void mnuTray_Closed();
    void UnloadMain();
    void ToggleFramed();
    void CreateTickerMenu();
    // Shows or closes the ticker bar, keeping the choice for the next start.
    void ShowTicker(bool show);
    // Lets go of the items the ticker and its view hold, before the profile is released.
    void ForgetTickerItems();
    // The ticker's view marked an item read: the counts of its channel and the folders follow.
    void ReportItemRead(const XmlNode& item);
    // Says where an items file that could not be read was kept, once the profile has loaded.
    void TellOfDamagedItems(clsProfile& profile);
    // Releases the active profile; the window keeps none afterwards.
    void ReleaseUser();
    void Layout();

    Runtime& m_runtime;
    // Declared before the profiles: channels give their slots back while they are released.
    RefreshCoordinator m_coordinator;
    std::unique_ptr<colProfiles> m_Users;
    // Declared after the profiles, so that the viewers close before the channels they show.
    std::unique_ptr<ViewerWindows> m_viewers;
    clsProfile* m_User = nullptr;
    bool m_trayAvailable;
    bool m_FirstRun = false;
    bool m_ExitRequested = false;
    bool m_shutDownRan = false;
    bool m_TrayIconShown = false;
    bool m_KeyNavigation = false;
    // An activation or a question to the user is running below the current event; the profile
    // list must stay until it has returned.
    int m_busyDepth = 0;
    bool m_damageTold = false;

    QTreeWidget* treMain = nullptr;
    QMenuBar* m_menuBar = nullptr;
    QMenu* mnuFile = nullptr;
    QMenu* mnuProfile = nullptr;
    QList<QAction*> m_profileEntries;
    QAction* mnuTopMost = nullptr;
    QAction* mnuShowTicker = nullptr;
    QMenu* mnuActions = nullptr;
    QMenu* mnuHelp = nullptr;
    QAction* mnuADash1 = nullptr;
    QList<QAction*> m_channelEntries;
    QAction* mnuRemoveChannel = nullptr;
    QList<QAction*> m_groupEntries;
    QList<QAction*> m_userGroupEntries;
    QMenu* mnuTray = nullptr;
    QMenu* mnuNewItems = nullptr;
    QAction* mnuNoNewItems = nullptr;
    QList<QAction*> m_newItemsEntries;
    QAction* mnuTrayDash = nullptr;
    QAction* mnuTrayTicker = nullptr;
    QMenu* mnuTicker = nullptr;
    QPointer<frmTicker> m_ticker;
    std::unique_ptr<ImageLoader> m_tickerImages;
    std::unique_ptr<frmTickerView> m_tickerView;
    QSystemTrayIcon* trayMain = nullptr;
    QTimer* tmrOneShot = nullptr;
    // Redraws the skin's texts ("{items}" and the like) once after a burst of channel changes.
    QTimer* m_textsTimer = nullptr;

    struct ListImage {
        QString key;
        SkinPicture picture;
        QIcon icon;
    };
    QList<ListImage> imglst;
    // Nodes by case-folded key, and the channel nodes by case-folded channel URL.
    QHash<QString, QTreeWidgetItem*> m_nodes;
    QMultiHash<QString, QTreeWidgetItem*> m_channelNodes;

    QPointer<frmUser> m_frmUser;
    QPointer<frmLoading> m_frmLoading;
    QPointer<frmAbout> m_frmAbout;
};
