// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/frmMain.h"

#include "app/Runtime.h"
#include "app/WindowHelpers.h"
#include "app/clsProfile.h"
#include "app/colProfiles.h"

#include <QCloseEvent>
#include <QInputDialog>
#include <QLabel>
#include <QScreen>
#include <QVBoxLayout>

namespace {

const QString kTitle = QStringLiteral("Tamsel");
constexpr int kDefaultWidth = 320;
constexpr int kDefaultHeight = 480;
constexpr int kScreenMargin = 10;

} // namespace

frmMain::frmMain(Runtime& runtime) : m_runtime(runtime) {
    setWindowTitle(kTitle);
    auto* layout = new QVBoxLayout(this);
    m_status = new QLabel(QStringLiteral("Loading Profile . . .  Please Wait"), this);
    m_status->setAlignment(Qt::AlignCenter);
    layout->addWidget(m_status);

    // Top-right corner of the screen until a placement was saved.
    resize(kDefaultWidth, kDefaultHeight);
    if (const QScreen* screen = this->screen()) {
        const QRect area = screen->availableGeometry();
        move(area.right() - kDefaultWidth - kScreenMargin, area.top() + kScreenMargin);
    }
    RestoreWindowPlacement(m_runtime.Settings(), this, kTitle);

    m_Users = std::make_unique<colProfiles>(m_runtime.GetServices(), *this);
    connect(m_Users.get(), &colProfiles::ProfilesLoaded, this, &frmMain::m_Users_ProfilesLoaded);
    m_Users->init();
}

frmMain::~frmMain() = default;

void frmMain::PopupInfo(const QString&, const QString& profileName, const QString&) {
    if (!profileName.isEmpty() && (!m_User || profileName != m_User->Name())) {
        return;
    }
    m_runtime.Alerts().PlayAlert();
}

void frmMain::ShowAndRaise() {
    setWindowState(windowState() & ~Qt::WindowMinimized);
    show();
    raise();
    activateWindow();
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
    }
    m_Users_ProfilesLoaded();
}

void frmMain::ChangeUser(const QString& name) {
    m_Users->SaveAllXML();
    clsProfile* profile = m_Users->GetUser(name);
    if (!profile) {
        return;
    }
    if (m_User) {
        m_User->Deactivate();
    }
    m_User = profile;
    m_User->SetUserActive();
    m_Users->SetDefault(m_User->Name());
    m_status->setText(QStringLiteral("Profile: %1").arg(m_User->Name()));
}

void frmMain::closeEvent(QCloseEvent* event) {
    SaveWindowPlacement(m_runtime.Settings(), this, kTitle);
    m_Users->SaveAllXML();
    if (m_User) {
        m_User->Deactivate();
    }
    event->accept();
}
