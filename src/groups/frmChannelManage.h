// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDialog>

class CRegSettings;
class ChannelCommands;
class QPushButton;
class QTreeWidget;
class frmTamselSkin;

// Lists the profile's own channels and unsubscribes the selected ones. The tree is rebuilt once,
// when the window closes after something was deleted.
class frmChannelManage final : public QDialog {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(frmChannelManage)
public:
    // The settings name the maker's channels, which are never offered.
    frmChannelManage(ChannelCommands& commands, CRegSettings& settings, frmTamselSkin& skin,
                     QWidget* parent = nullptr);
    ~frmChannelManage() override;

    // Refills lstChannels from the active profile.
    void ListChannels();
    void cmdDelete_Click();

    QTreeWidget* lstChannels() const { return m_lstChannels; }
    QPushButton* cmdDelete() const { return m_cmdDelete; }
    QPushButton* cmdClose() const { return m_cmdClose; }

    // Every way of closing (the button, Escape, the window's frame) ends here.
    void done(int result) override;

private:
    void ApplySkin();
    void UpdateDeleteButton();

    ChannelCommands& m_commands;
    CRegSettings& m_settings;
    frmTamselSkin& m_skin;
    bool m_deleted = false;
    QTreeWidget* m_lstChannels;
    QPushButton* m_cmdDelete;
    QPushButton* m_cmdClose;
};
