// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "skin/SkinnedWindow.h"

class ChannelCommands;
class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;

// Asks for the name of a new group (add mode, the start) or for a new name of a group (rename
// mode). The main window's command decides; the window closes only when it accepted the name.
class frmAddGroup final : public SkinnedWindow {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(frmAddGroup)
public:
    static inline const QString kInvalidCharacter = QStringLiteral("|");

    frmAddGroup(ChannelCommands& commands, frmTamselSkin& skin, QWidget* parent = nullptr);
    ~frmAddGroup() override;

    // Switches to rename mode for the group `name`.
    void RenameGroup(const QString& name);
    bool Renaming() const { return !m_oldName.isEmpty(); }

    QString DecodeText(const QString& text) override { return text; }
    void SkinHandler(const QString& function) override;

    QLineEdit* txtGroup() const { return m_txtGroup; }
    QComboBox* cboGroup() const { return m_cboGroup; }
    QPushButton* cmdOk() const { return m_cmdOk; }
    QPushButton* cmdCancel() const { return m_cmdCancel; }

    void cmdOk_Click();

Q_SIGNALS:
    // The window has closed, with or without a change.
    void Closed();

protected:
    void RepaintSkin() override;
    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void ApplySkin();
    QWidget* NameBox() const;
    int NeededHeight() const;

    ChannelCommands& m_commands;
    QString m_oldName;
    QLabel* m_lblTitle;
    QLabel* m_lblName;
    QLineEdit* m_txtGroup;
    QComboBox* m_cboGroup;
    QPushButton* m_cmdOk;
    QPushButton* m_cmdCancel;
};
