// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "groups/frmChannelManage.h"

#include "app/MakerSite.h"
#include "app/SharedHelpers.h"
#include "app/WindowHelpers.h"
#include "app/clsProfile.h"
#include "feeds/RSSChannel.h"
#include "groups/ChannelCommands.h"
#include "skin/SkinPalette.h"
#include "skin/frmTamselSkin.h"

#include <QCloseEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace {

// In average character widths of the list's font.
constexpr int kTitleColumnCharacters = 26;
constexpr int kUrlColumnCharacters = 45;
constexpr int kListRows = 14;

} // namespace

frmChannelManage::frmChannelManage(ChannelCommands& commands, CRegSettings& settings, frmTamselSkin& skin,
                                   QWidget* parent)
    : QDialog(parent), m_commands(commands), m_settings(settings), m_skin(skin),
      m_lstChannels(new QTreeWidget(this)), m_cmdDelete(new QPushButton(QStringLiteral("&Delete"), this)),
      m_cmdClose(new QPushButton(QStringLiteral("&Close"), this)) {
    setWindowTitle(QStringLiteral("Delete Channels"));
    setModal(true);
    auto* caption = new QLabel(QStringLiteral("Select the channels to &unsubscribe from:"), this);
    caption->setBuddy(m_lstChannels);
    m_lstChannels->setHeaderLabels({QStringLiteral("Title"), QStringLiteral("URL")});
    m_lstChannels->setRootIsDecorated(false);
    m_lstChannels->setUniformRowHeights(true);
    m_lstChannels->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_lstChannels->setAccessibleName(QStringLiteral("Channels"));
    const int unit = m_lstChannels->fontMetrics().averageCharWidth();
    m_lstChannels->setColumnWidth(0, unit * kTitleColumnCharacters);
    m_lstChannels->setMinimumWidth(unit * (kTitleColumnCharacters + kUrlColumnCharacters));
    m_lstChannels->setMinimumHeight(m_lstChannels->fontMetrics().height() * kListRows);
    m_cmdDelete->setAccessibleName(QStringLiteral("Delete the selected channels"));
    m_cmdClose->setAccessibleName(QStringLiteral("Close"));
    m_cmdClose->setDefault(true);

    auto* buttons = new QHBoxLayout();
    buttons->addWidget(m_cmdDelete);
    buttons->addStretch();
    buttons->addWidget(m_cmdClose);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(caption);
    layout->addWidget(m_lstChannels, 1);
    layout->addLayout(buttons);
    SetTabChain({m_lstChannels, m_cmdDelete, m_cmdClose});

    connect(m_cmdDelete, &QPushButton::clicked, this, &frmChannelManage::cmdDelete_Click);
    connect(m_cmdClose, &QPushButton::clicked, this, &QDialog::accept);
    connect(m_lstChannels, &QTreeWidget::itemSelectionChanged, this, &frmChannelManage::UpdateDeleteButton);
    connect(&m_skin, &frmTamselSkin::SkinLoaded, this, &frmChannelManage::ApplySkin);
    ApplySkin();
    ListChannels();
    m_lstChannels->setFocus();
}

frmChannelManage::~frmChannelManage() = default;

void frmChannelManage::ApplySkin() {
    ApplySkinPalette(*this, m_skin, frmTamselSkin::KindDialog);
}

void frmChannelManage::ListChannels() {
    m_lstChannels->clear();
    const clsProfile* profile = m_commands.ActiveProfile();
    if (!profile) {
        UpdateDeleteButton();
        return;
    }
    const MakerSite site(m_settings);
    QList<QTreeWidgetItem*> rows;
    for (int i = 1; i <= profile->ChannelCount(); ++i) {
        const RSSChannel* channel = profile->GetChannel(i);
        if (IsBuiltinChannel(channel->URL(), site.HelpURL(), site.NewsURL())) {
            continue;
        }
        auto* row = new QTreeWidgetItem({channel->Title(), channel->URL()});
        row->setToolTip(0, channel->Title());
        row->setToolTip(1, channel->URL());
        rows.append(row);
    }
    m_lstChannels->addTopLevelItems(rows);
    if (!rows.isEmpty()) {
        m_lstChannels->setCurrentItem(rows.first(), 0, QItemSelectionModel::NoUpdate);
    }
    UpdateDeleteButton();
}

void frmChannelManage::UpdateDeleteButton() {
    m_cmdDelete->setEnabled(!m_lstChannels->selectedItems().isEmpty());
}

void frmChannelManage::cmdDelete_Click() {
    QStringList keys;
    for (int i = 0; i < m_lstChannels->topLevelItemCount(); ++i) {
        if (m_lstChannels->topLevelItem(i)->isSelected()) {
            keys.append(m_lstChannels->topLevelItem(i)->text(1));
        }
    }
    for (const QString& key : std::as_const(keys)) {
        m_commands.RemoveChannel(key);
        m_deleted = true;
    }
    ListChannels();
}

void frmChannelManage::done(int result) {
    QDialog::done(result);
    if (m_deleted) {
        m_deleted = false;
        if (const clsProfile* profile = m_commands.ActiveProfile()) {
            m_commands.ChangeUser(profile->Name());
        }
    }
}
