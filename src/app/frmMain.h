// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/AppHost.h"
#include "app/RefreshCoordinator.h"

#include <QWidget>
#include <memory>

class QLabel;
class QTreeWidget;
class QTreeWidgetItem;
class RSSGroup;
class Runtime;
class clsProfile;
class colProfiles;

// The main window: owns the profile list and the active profile, shares the connection slots
// among the channels and shows the active profile's groups and channels with their counts. The
// skinned tree with folders, menus and the tray replace this plain tree later.
class frmMain final : public QWidget, public AppHost, private RefreshCoordinator::Target {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(frmMain)
public:
    explicit frmMain(Runtime& runtime);
    ~frmMain() override;

    void PopupInfo(const QString& message, const QString& profileName, const QString& channelKey) override;
    bool RequestConnect() override { return m_coordinator.RequestConnect(); }
    void ConnectRelease() override { m_coordinator.ConnectRelease(); }
    void StateChange(const QString& profileName, RSSChannel& channel) override;
    bool AddRSSItem(const XmlNode& item) override;
    clsProfile* ActiveProfile() const override { return m_User; }
    const XsltStylesheet& NamespaceTransform() const override;
    bool FirstRun() const override { return m_firstRun; }
    void SetFirstRun(bool firstRun) override { m_firstRun = firstRun; }
    void AddChannel(const QString& url, const QString& groupName) override;

    // Brings the window forward, for a second start of the program.
    void ShowAndRaise();

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    bool UpdateChannelNode(RSSChannel& channel) override;

    void m_Users_ProfilesLoaded();
    void ChangeUser(const QString& name);
    void RepopulateTreeMain();
    void AddGroupNode(RSSGroup* group);
    void AddChannelNode(QTreeWidgetItem* groupNode, const QString& key);
    // Releases the active profile after a last save; the window keeps no profile afterwards.
    void ReleaseUser();
    // Saves the active profile's changed items before it goes. When the disk refuses, asks whether
    // to try again, to go on without the changes, or to stay; false when the user chose to stay.
    bool SaveItemsOrAsk();

    Runtime& m_runtime;
    // Declared before the profiles: channels give their slots back while they are released.
    RefreshCoordinator m_coordinator;
    std::unique_ptr<colProfiles> m_Users;
    clsProfile* m_User = nullptr;
    bool m_firstRun = false;
    QLabel* m_status = nullptr;
    QTreeWidget* treMain = nullptr;
};
