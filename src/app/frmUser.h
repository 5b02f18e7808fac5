// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "skin/SkinnedWindow.h"

class QLabel;
class QLineEdit;
class QPushButton;
class frmMain;

// Asks for the name of a new profile and creates it with its first group, "My Channels", as the
// active profile. Every profile comes into being here, the very first one too.
class frmUser final : public SkinnedWindow {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(frmUser)
public:
    frmUser(frmTamselSkin& skin, frmMain& main);
    ~frmUser() override;

    QString DecodeText(const QString& text) override { return text; }
    void SkinHandler(const QString& function) override;

    QLineEdit* Username() const { return txtUsername; }
    QPushButton* CreateButton() const { return cmdCreate; }
    QPushButton* CancelButton() const { return cmdCancel; }

Q_SIGNALS:
    // The dialog has closed, with or without a new profile.
    void Closed();

protected:
    void RepaintSkin() override;
    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void cmdCreate_Click();

    frmMain& m_main;
    QLabel* m_lblTitle;
    QLabel* m_lblName;
    QLineEdit* txtUsername;
    QPushButton* cmdCreate;
    QPushButton* cmdCancel;
};
