// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDialog>

class CRegSettings;
class QCheckBox;
class QPushButton;
class frmTamselSkin;

// "Preferences": four switches kept in the settings, one of them the desktop's start-up entry
// for Tamsel. Ok stores all four; Cancel stores nothing.
class frmPreferences final : public QDialog {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(frmPreferences)
public:
    frmPreferences(CRegSettings& settings, frmTamselSkin& skin, QWidget* parent = nullptr);
    ~frmPreferences() override;

    // Stores the four switches, then closes.
    void cmdOk_Click();

    QCheckBox* chkUpdates() const { return m_chkUpdates; }
    QCheckBox* chkAlert() const { return m_chkAlert; }
    QCheckBox* chkRunStartup() const { return m_chkRunStartup; }
    QCheckBox* chkOpenMain() const { return m_chkOpenMain; }
    QPushButton* cmdOk() const { return m_cmdOk; }
    QPushButton* cmdCancel() const { return m_cmdCancel; }

private:
    void ApplySkin();

    CRegSettings& m_settings;
    frmTamselSkin& m_skin;
    QCheckBox* m_chkUpdates;
    QCheckBox* m_chkAlert;
    QCheckBox* m_chkRunStartup;
    QCheckBox* m_chkOpenMain;
    QPushButton* m_cmdOk;
    QPushButton* m_cmdCancel;
};
