// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/XmlNode.h"

#include <QDialog>
#include <QPointer>

class CRegSettings;
class Desktop;
class QCheckBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QTreeWidget;
class RSSChannel;
class frmTamselSkin;

// "Properties": the feed properties of a channel with its three settings, or every element of an
// item, read only. One window serves both; filling it again replaces what it showed. It wears the
// colours of the current skin's dialogs.
class frmProperties final : public QDialog {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(frmProperties)
public:
    frmProperties(CRegSettings& settings, Desktop& desktop, const frmTamselSkin& skin,
                  QWidget* parent = nullptr);
    ~frmProperties() override;

    void SetChannelProp(RSSChannel& channel);
    void SetProp(const XmlNode& item);

    // Stores the three settings in the remembered channel; false (and nothing stored) when a
    // number is not a whole number of 0 or more, in which case the box shows the kept value again.
    bool Apply();
    // The value of the selected row onto the clipboard.
    void CopyValue();

    // Row texts and values in order.
    QList<QPair<QString, QString>> Rows() const;

    QTreeWidget* lstProp() const { return m_lstProp; }
    QLineEdit* txtReload() const { return m_txtReload; }
    QLineEdit* txtRemove() const { return m_txtRemove; }
    QCheckBox* chkOpenOnNew() const { return m_chkOpenOnNew; }
    QPushButton* cmdApply() const { return m_cmdApply; }
    QPushButton* cmdOk() const { return m_cmdOk; }
    QPushButton* cmdCancel() const { return m_cmdCancel; }

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void ApplySkin();
    void AddRow(const QString& name, const QString& value);
    void ShowSettings(bool visible);
    void OpenRowValue(const QString& value);

    CRegSettings& m_settings;
    Desktop& m_desktop;
    const frmTamselSkin& m_skin;
    QPointer<RSSChannel> m_channel;
    QTreeWidget* m_lstProp;
    QLabel* m_lblReloadPre;
    QLineEdit* m_txtReload;
    QLabel* m_lblReloadPost;
    QLabel* m_lblRemovePre;
    QLineEdit* m_txtRemove;
    QLabel* m_lblRemovePost;
    QCheckBox* m_chkOpenOnNew;
    QPushButton* m_cmdApply;
    QPushButton* m_cmdOk;
    QPushButton* m_cmdCancel;
    bool m_placed = false;
};
