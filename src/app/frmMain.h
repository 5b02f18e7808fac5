// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/AppHost.h"

#include <QWidget>
#include <memory>

class QLabel;
class Runtime;
class clsProfile;
class colProfiles;

// The main window: owns the profile list and the active profile. For now it shows which
// profile is active; the tree, the menus and the tray join it later.
class frmMain final : public QWidget, public AppHost {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(frmMain)
public:
    explicit frmMain(Runtime& runtime);
    ~frmMain() override;

    void PopupInfo(const QString& message, const QString& profileName, const QString& channelKey) override;
    // Brings the window forward, for a second start of the program.
    void ShowAndRaise();

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void m_Users_ProfilesLoaded();
    void ChangeUser(const QString& name);

    Runtime& m_runtime;
    std::unique_ptr<colProfiles> m_Users;
    clsProfile* m_User = nullptr;
    QLabel* m_status = nullptr;
};
