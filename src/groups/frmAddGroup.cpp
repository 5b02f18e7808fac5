// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "groups/frmAddGroup.h"

#include "app/SharedHelpers.h"
#include "app/WindowHelpers.h"
#include "app/clsProfile.h"
#include "groups/ChannelCommands.h"
#include "groups/RSSGroup.h"
#include "skin/SkinPalette.h"
#include "skin/frmTamselSkin.h"

#include <QCloseEvent>
#include <QComboBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <algorithm>

namespace {

// In average character widths of the window's font, so that the window grows with the font.
constexpr int kWidthInCharacters = 46;
constexpr int kMargin = 12;
constexpr int kGap = 8;

} // namespace

frmAddGroup::frmAddGroup(ChannelCommands& commands, frmTamselSkin& skin, QWidget* parent)
    : SkinnedWindow(skin, frmTamselSkin::KindDialog, parent), m_commands(commands),
      m_lblTitle(new QLabel(QStringLiteral("Add Group"), this)),
      m_lblName(new QLabel(QStringLiteral("&Group name:"), this)), m_txtGroup(new QLineEdit(this)),
      m_cboGroup(new QComboBox(this)), m_cmdOk(new QPushButton(QStringLiteral("&Ok"), this)),
      m_cmdCancel(new QPushButton(QStringLiteral("&Cancel"), this)) {
    setWindowTitle(QStringLiteral("Add Group"));
    setWindowModality(Qt::ApplicationModal);
    m_cboGroup->setEditable(true);
    m_cboGroup->setInsertPolicy(QComboBox::NoInsert);
    if (clsProfile* profile = m_commands.ActiveProfile()) {
        for (int i = 1; i <= profile->GroupCount(); ++i) {
            const QString name = profile->GetGroup(i)->Name();
            if (!IsReservedGroupName(name)) {
                m_cboGroup->addItem(name);
            }
        }
    }
    m_cboGroup->setCurrentIndex(-1);
    m_cboGroup->setEditText(QString());
    m_txtGroup->hide();
    m_lblName->setBuddy(m_cboGroup);
    m_txtGroup->setAccessibleName(QStringLiteral("New group name"));
    m_cboGroup->setAccessibleName(QStringLiteral("Group name"));
    m_cboGroup->lineEdit()->setAccessibleName(QStringLiteral("Group name"));
    m_cmdOk->setAccessibleName(QStringLiteral("Ok"));
    m_cmdOk->setDefault(true);
    m_cmdCancel->setAccessibleName(QStringLiteral("Cancel"));
    setTabOrder(m_cboGroup, m_txtGroup);
    setTabOrder(m_txtGroup, m_cmdOk);
    setTabOrder(m_cmdOk, m_cmdCancel);
    connect(m_cmdOk, &QPushButton::clicked, this, &frmAddGroup::cmdOk_Click);
    connect(m_cmdCancel, &QPushButton::clicked, this, &QWidget::close);
    // A combo box hands a key that its line edit passed up back to the line edit, which would
    // report Return twice: the key is taken before either sees it.
    m_txtGroup->installEventFilter(this);
    m_cboGroup->lineEdit()->installEventFilter(this);
    connect(&skin, &frmTamselSkin::SkinLoaded, this, &frmAddGroup::ApplySkin);
    ApplySkin();
    setMinimumWidth(fontMetrics().averageCharWidth() * kWidthInCharacters);
    resize(minimumWidth(), NeededHeight());
    if (parent) {
        PlaceCentredOver(this, parent->window());
    }
    m_cboGroup->setFocus();
}

frmAddGroup::~frmAddGroup() = default;

void frmAddGroup::RenameGroup(const QString& name) {
    m_oldName = name;
    setWindowTitle(QStringLiteral("Rename Group"));
    m_lblTitle->setText(QStringLiteral("Rename Group"));
    m_lblName->setText(QStringLiteral("New &name:"));
    m_lblName->setBuddy(m_txtGroup);
    m_txtGroup->setText(name);
    m_txtGroup->selectAll();
    m_txtGroup->show();
    m_cboGroup->hide();
    m_txtGroup->setFocus();
    RepaintSkin();
}

void frmAddGroup::SkinHandler(const QString& function) {
    if (function == QStringLiteral("close")) {
        close();
    }
}

void frmAddGroup::ApplySkin() {
    ApplySkinPalette(*this, Skin(), SkinKind());
    QFont titleFont = font();
    titleFont.setBold(true);
    m_lblTitle->setFont(titleFont);
}

QWidget* frmAddGroup::NameBox() const {
    return Renaming() ? static_cast<QWidget*>(m_txtGroup) : static_cast<QWidget*>(m_cboGroup);
}

int frmAddGroup::NeededHeight() const {
    const frmTamselSkin& skin = Skin();
    const int kind = SkinKind();
    const int rowHeight = std::max(NameBox()->sizeHint().height(), m_lblName->sizeHint().height());
    const int buttonHeight = std::max(m_cmdOk->sizeHint().height(), m_cmdCancel->sizeHint().height());
    return skin.FrameNSize(kind) + kMargin + m_lblTitle->sizeHint().height() + kGap + rowHeight + 2 * kGap +
           buttonHeight + kMargin + skin.FrameSSize(kind);
}

void frmAddGroup::RepaintSkin() {
    SkinnedWindow::RepaintSkin();
    frmTamselSkin& skin = Skin();
    const int kind = SkinKind();
    const QRect inside = rect().adjusted(skin.FrameWSize(kind) + kMargin, skin.FrameNSize(kind) + kMargin,
                                         -skin.FrameESize(kind) - kMargin, -skin.FrameSSize(kind) - kMargin);
    int y = inside.top();
    const int titleHeight = m_lblTitle->sizeHint().height();
    m_lblTitle->setGeometry(inside.left(), y, inside.width(), titleHeight);
    y += titleHeight + kGap;
    QWidget* box = NameBox();
    const int rowHeight = std::max(box->sizeHint().height(), m_lblName->sizeHint().height());
    const int labelWidth = m_lblName->sizeHint().width();
    m_lblName->setGeometry(inside.left(), y, labelWidth, rowHeight);
    box->setGeometry(inside.left() + labelWidth + kGap, y, inside.width() - labelWidth - kGap, rowHeight);
    y += rowHeight + 2 * kGap;
    const QSize button = m_cmdOk->sizeHint().expandedTo(m_cmdCancel->sizeHint());
    const int buttonTop = std::max(y, inside.bottom() + 1 - button.height());
    m_cmdCancel->setGeometry(inside.right() + 1 - button.width(), buttonTop, button.width(), button.height());
    m_cmdOk->setGeometry(m_cmdCancel->x() - kGap - button.width(), buttonTop, button.width(),
                         button.height());
    const int needed = NeededHeight();
    setMinimumHeight(needed);
    if (height() < needed) {
        resize(width(), needed);
    }
}

void frmAddGroup::closeEvent(QCloseEvent* event) {
    event->accept();
    Q_EMIT Closed();
}

void frmAddGroup::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape) {
        close();
        return;
    }
    SkinnedWindow::keyPressEvent(event);
}

bool frmAddGroup::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter) {
            cmdOk_Click();
            return true;
        }
    }
    return SkinnedWindow::eventFilter(watched, event);
}

void frmAddGroup::cmdOk_Click() {
    const QString name = Renaming() ? m_txtGroup->text() : m_cboGroup->currentText();
    if (name.contains(kInvalidCharacter)) {
        QMessageBox::information(this, QStringLiteral("Tamsel"),
                                 QStringLiteral("Group name contains invalid characters: ") +
                                     kInvalidCharacter);
        return;
    }
    const bool accepted = Renaming() ? m_commands.RenameGroup(m_oldName, name) : m_commands.AddGroup(name);
    if (accepted) {
        close();
    }
}
