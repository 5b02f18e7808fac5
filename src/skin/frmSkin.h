// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Paths.h"

#include <QDialog>
#include <QStringList>

class CRegSettings;
class QListWidget;
class QPushButton;
class SkinHost;

// The skin chooser: lists the skin folders (the user's and the shipped ones) and stores the
// chosen name as SETTINGS/SKINNAME. The caller reloads the skin when SkinChanged() is true.
class frmSkin final : public QDialog {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(frmSkin)
public:
    frmSkin(CRegSettings& settings, Paths paths, SkinHost& host, QWidget* parent = nullptr);
    ~frmSkin() override;

    // Fills the list and selects the current skin. Without any skin folder it says
    // "No Skins Found", closes the dialog and returns false.
    bool LoadList();
    // LoadList, then the dialog; ends at once without skins.
    int exec() override;

    bool SkinChanged() const { return m_skinChanged; }
    // The names of the skin folders, sorted without regard to case, each name once.
    static QStringList SkinNames(const Paths& paths);

    QListWidget* lstSkins() const { return m_lstSkins; }
    QPushButton* cmdOk() const { return m_cmdOk; }

private:
    void cmdOk_Click();

    CRegSettings& m_settings;
    Paths m_paths;
    SkinHost& m_host;
    QListWidget* m_lstSkins;
    QPushButton* m_cmdOk;
    bool m_skinChanged = false;
};
