// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "skin/frmSkin.h"

#include "platform/CRegSettings.h"
#include "skin/SkinHost.h"

#include <QDir>
#include <QHBoxLayout>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

namespace {

const QString kSection = QStringLiteral("SETTINGS");
const QString kKey = QStringLiteral("SKINNAME");

} // namespace

frmSkin::frmSkin(CRegSettings& settings, Paths paths, SkinHost& host, QWidget* parent)
    : QDialog(parent), m_settings(settings), m_paths(std::move(paths)), m_host(host),
      m_lstSkins(new QListWidget(this)), m_cmdOk(new QPushButton(QStringLiteral("OK"), this)) {
    setWindowTitle(QStringLiteral("Change Skin"));
    m_lstSkins->setSelectionMode(QAbstractItemView::SingleSelection);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(m_cmdOk);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_lstSkins);
    layout->addLayout(buttons);
    m_cmdOk->setDefault(true);
    connect(m_cmdOk, &QPushButton::clicked, this, &frmSkin::cmdOk_Click);
    connect(m_lstSkins, &QListWidget::itemClicked, this,
            [this] { m_cmdOk->setText(QStringLiteral("Load Skin")); });
}

frmSkin::~frmSkin() = default;

QStringList frmSkin::SkinNames(const Paths& paths) {
    QStringList names;
    const QStringList folders = {paths.DataFolder() + QStringLiteral("/skins"),
                                 paths.ResourceFolder() + QStringLiteral("/skins")};
    for (const QString& folder : folders) {
        const QStringList found = QDir(folder).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
        for (const QString& name : found) {
            if (!names.contains(name)) {
                names.append(name);
            }
        }
    }
    std::sort(names.begin(), names.end(), [](const QString& a, const QString& b) {
        const int order = a.compare(b, Qt::CaseInsensitive);
        return order != 0 ? order < 0 : a < b;
    });
    return names;
}

bool frmSkin::LoadList() {
    const QString current = m_settings.GetSetting(kSection, kKey, QStringLiteral("Default"));
    m_lstSkins->clear();
    m_lstSkins->addItems(SkinNames(m_paths));
    if (m_lstSkins->count() == 0) {
        m_host.ShowMessage(QStringLiteral("No Skins Found"));
        reject();
        return false;
    }
    const QList<QListWidgetItem*> matches = m_lstSkins->findItems(current, Qt::MatchExactly);
    if (!matches.isEmpty()) {
        m_lstSkins->setCurrentItem(matches.first());
    }
    return true;
}

int frmSkin::exec() {
    if (!LoadList()) {
        return QDialog::Rejected;
    }
    return QDialog::exec();
}

void frmSkin::cmdOk_Click() {
    const QList<QListWidgetItem*> selected = m_lstSkins->selectedItems();
    if (selected.isEmpty()) {
        reject();
        return;
    }
    m_settings.SaveSetting(kSection, kKey, selected.first()->text());
    m_skinChanged = true;
    accept();
}
