// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "views/frmProperties.h"

#include "app/WindowHelpers.h"
#include "feeds/RSSChannel.h"
#include "platform/Desktop.h"
#include "skin/SkinPalette.h"
#include "skin/frmTamselSkin.h"
#include "views/GuardedBrowser.h"

#include <QCheckBox>
#include <QClipboard>
#include <QGridLayout>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace {
const QString kSection = QStringLiteral("Properties");
constexpr int kPropertyColumnWidth = 140;

// A whole number of 0 or more; -1 when the text is not one.
int WholeNumber(const QString& text) {
    bool ok = false;
    const int value = text.trimmed().toInt(&ok);
    return ok && value >= 0 ? value : -1;
}
} // namespace

frmProperties::frmProperties(CRegSettings& settings, Desktop& desktop, const frmTamselSkin& skin,
                             QWidget* parent)
    : QDialog(parent), m_settings(settings), m_desktop(desktop), m_skin(skin),
      m_lstProp(new QTreeWidget(this)),
      m_lblReloadPre(new QLabel(QStringLiteral("Reload channel every"), this)),
      m_txtReload(new QLineEdit(this)), m_lblReloadPost(new QLabel(QStringLiteral("minutes"), this)),
      m_lblRemovePre(new QLabel(QStringLiteral("Remove items after"), this)),
      m_txtRemove(new QLineEdit(this)), m_lblRemovePost(new QLabel(QStringLiteral("days"), this)),
      m_chkOpenOnNew(new QCheckBox(QStringLiteral("Open channel when new items are received"), this)),
      m_cmdApply(new QPushButton(QStringLiteral("Apply"), this)),
      m_cmdOk(new QPushButton(QStringLiteral("Ok"), this)),
      m_cmdCancel(new QPushButton(QStringLiteral("Cancel"), this)) {
    setWindowTitle(QStringLiteral("Properties"));
    setModal(false);
    m_lstProp->setHeaderLabels({QStringLiteral("Property"), QStringLiteral("Value")});
    m_lstProp->setRootIsDecorated(false);
    // Rows alternate like the item grid's, so that long values stay easy to follow across.
    m_lstProp->setAlternatingRowColors(true);
    m_lstProp->setColumnWidth(0, kPropertyColumnWidth);
    m_lstProp->setContextMenuPolicy(Qt::CustomContextMenu);
    m_lstProp->setAccessibleName(QStringLiteral("Properties"));
    m_txtReload->setAccessibleName(QStringLiteral("Reload channel every (minutes)"));
    m_txtRemove->setAccessibleName(QStringLiteral("Remove items after (days)"));
    m_chkOpenOnNew->setAccessibleName(m_chkOpenOnNew->text());
    for (QPushButton* button : {m_cmdApply, m_cmdOk, m_cmdCancel}) {
        button->setAccessibleName(button->text());
    }
    m_lblReloadPre->setBuddy(m_txtReload);
    m_lblRemovePre->setBuddy(m_txtRemove);

    auto* settingsGrid = new QGridLayout();
    settingsGrid->addWidget(m_lblReloadPre, 0, 0);
    settingsGrid->addWidget(m_txtReload, 0, 1);
    settingsGrid->addWidget(m_lblReloadPost, 0, 2);
    settingsGrid->addWidget(m_lblRemovePre, 1, 0);
    settingsGrid->addWidget(m_txtRemove, 1, 1);
    settingsGrid->addWidget(m_lblRemovePost, 1, 2);
    settingsGrid->addWidget(m_chkOpenOnNew, 2, 0, 1, 3);
    settingsGrid->setColumnStretch(3, 1);
    auto* buttons = new QHBoxLayout();
    buttons->addStretch();
    buttons->addWidget(m_cmdApply);
    buttons->addWidget(m_cmdOk);
    buttons->addWidget(m_cmdCancel);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_lstProp, 1);
    layout->addLayout(settingsGrid);
    layout->addLayout(buttons);

    connect(m_cmdApply, &QPushButton::clicked, this, &frmProperties::Apply);
    connect(m_cmdOk, &QPushButton::clicked, this, [this] {
        if (Apply()) {
            close();
        }
    });
    connect(m_cmdCancel, &QPushButton::clicked, this, &QDialog::close);
    connect(m_lstProp, &QTreeWidget::customContextMenuRequested, this, [this](const QPoint& at) {
        QMenu menu(this);
        menu.addAction(QStringLiteral("Copy Value"), this, &frmProperties::CopyValue);
        menu.exec(m_lstProp->viewport()->mapToGlobal(at));
    });
    connect(m_lstProp, &QTreeWidget::itemDoubleClicked, this,
            [this](QTreeWidgetItem* row) { OpenRowValue(row->text(1)); });
    connect(&m_skin, &frmTamselSkin::SkinLoaded, this, &frmProperties::ApplySkin);
    ApplySkin();
    resize(420, 440);
}

void frmProperties::ApplySkin() {
    ApplySkinPalette(*this, m_skin, frmTamselSkin::KindDialog);
}

frmProperties::~frmProperties() = default;

void frmProperties::AddRow(const QString& name, const QString& value) {
    auto* row = new QTreeWidgetItem(m_lstProp, {name, value});
    row->setToolTip(1, value);
}

void frmProperties::SetChannelProp(RSSChannel& channel) {
    m_channel = &channel;
    m_lstProp->clear();
    const QString ttl = channel.TimeToLive() != 0 ? QString::number(channel.TimeToLive()) : QString();
    const QList<QPair<QString, QString>> rows = {
        {QStringLiteral("Title"), channel.Title()},
        {QStringLiteral("URL"), channel.URL()},
        {QStringLiteral("Description"), channel.Description()},
        {QStringLiteral("Items"), QString::number(channel.ItemCount())},
        {QStringLiteral("Catergory"), channel.Catergory()},
        {QStringLiteral("Copyright"), channel.Copyright()},
        {QStringLiteral("Docs"), channel.Docs()},
        {QStringLiteral("Generator"), channel.Generator()},
        {QStringLiteral("Image"), channel.ImageURL()},
        {QStringLiteral("Language"), channel.Language()},
        {QStringLiteral("Last Build Date"), channel.LastBuildDate()},
        {QStringLiteral("Link"), channel.Link()},
        {QStringLiteral("Managing Editor"), channel.ManagingEditor()},
        {QStringLiteral("Publish Date"), channel.PubDate()},
        {QStringLiteral("Rating"), channel.Rating()},
        {QStringLiteral("Time To Live"), ttl},
        {QStringLiteral("Web Master"), channel.WebMaster()},
    };
    for (const auto& [name, value] : rows) {
        if (!value.isEmpty() || name == QStringLiteral("Items")) {
            AddRow(name, value);
        }
    }
    m_txtReload->setText(QString::number(channel.Update()));
    m_txtRemove->setText(QString::number(channel.Expire()));
    m_chkOpenOnNew->setChecked(channel.OpenLink());
    ShowSettings(true);
}

void frmProperties::SetProp(const XmlNode& item) {
    m_channel = nullptr;
    m_lstProp->clear();
    for (const XmlNode& child : item.ChildNodes()) {
        if (child.IsElement()) {
            AddRow(child.Name(), child.Text());
        }
    }
    ShowSettings(false);
}

void frmProperties::ShowSettings(bool visible) {
    for (QWidget* control : {static_cast<QWidget*>(m_lblReloadPre), static_cast<QWidget*>(m_txtReload),
                             static_cast<QWidget*>(m_lblReloadPost), static_cast<QWidget*>(m_lblRemovePre),
                             static_cast<QWidget*>(m_txtRemove), static_cast<QWidget*>(m_lblRemovePost),
                             static_cast<QWidget*>(m_chkOpenOnNew), static_cast<QWidget*>(m_cmdApply),
                             static_cast<QWidget*>(m_cmdOk)}) {
        control->setVisible(visible);
    }
}

bool frmProperties::Apply() {
    if (!m_channel) {
        return false;
    }
    const int update = WholeNumber(m_txtReload->text());
    const int expire = WholeNumber(m_txtRemove->text());
    if (update < 0 || expire < 0) {
        if (update < 0) {
            m_txtReload->setText(QString::number(m_channel->Update()));
        }
        if (expire < 0) {
            m_txtRemove->setText(QString::number(m_channel->Expire()));
        }
        return false;
    }
    m_channel->SetUpdate(update);
    m_channel->SetExpire(expire);
    m_channel->SetOpenLink(m_chkOpenOnNew->isChecked());
    return true;
}

void frmProperties::CopyValue() {
    const QTreeWidgetItem* row = m_lstProp->currentItem();
    QClipboard* clipboard = QGuiApplication::clipboard();
    clipboard->clear();
    if (row) {
        clipboard->setText(row->text(1));
    }
}

void frmProperties::OpenRowValue(const QString& value) {
    if (value.startsWith(QStringLiteral("http://"), Qt::CaseInsensitive) ||
        value.startsWith(QStringLiteral("https://"), Qt::CaseInsensitive)) {
        if (GuardedBrowser::IsSafeExternal(QUrl(value))) {
            m_desktop.OpenDocument(value);
        }
    }
}

QList<QPair<QString, QString>> frmProperties::Rows() const {
    QList<QPair<QString, QString>> rows;
    for (int i = 0; i < m_lstProp->topLevelItemCount(); ++i) {
        rows.append({m_lstProp->topLevelItem(i)->text(0), m_lstProp->topLevelItem(i)->text(1)});
    }
    return rows;
}

void frmProperties::showEvent(QShowEvent* event) {
    if (!m_placed) {
        m_placed = true;
        RestoreWindowPlacement(m_settings, this, kSection);
    }
    QDialog::showEvent(event);
}

void frmProperties::hideEvent(QHideEvent* event) {
    SaveWindowPlacement(m_settings, this, kSection);
    QDialog::hideEvent(event);
}
