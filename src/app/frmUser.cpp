// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/frmUser.h"

#include "app/SharedHelpers.h"
#include "app/WindowHelpers.h"
#include "app/clsProfile.h"
#include "app/colProfiles.h"
#include "app/frmMain.h"
#include "skin/SkinColor.h"
#include "skin/frmTamselSkin.h"

#include <QCloseEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>

namespace {

constexpr int kWidth = 340;
constexpr int kHeight = 124;
constexpr int kMargin = 12;
constexpr int kRowGap = 8;

} // namespace

frmUser::frmUser(frmTamselSkin& skin, frmMain& main)
    : SkinnedWindow(skin, frmTamselSkin::KindDialog, &main), m_main(main),
      m_lblTitle(new QLabel(QStringLiteral("Create New Profile"), this)),
      m_lblName(new QLabel(QStringLiteral("&Username:"), this)),
      txtUsername(new QLineEdit(QStringLiteral("My Username"), this)),
      cmdCreate(new QPushButton(QStringLiteral("&Ok"), this)),
      cmdCancel(new QPushButton(QStringLiteral("&Cancel"), this)) {
    setWindowTitle(QStringLiteral("Create New Profile"));
    setWindowModality(Qt::ApplicationModal);
    setAttribute(Qt::WA_DeleteOnClose);
    m_lblName->setBuddy(txtUsername);
    txtUsername->setAccessibleName(QStringLiteral("Username"));
    txtUsername->selectAll();
    cmdCreate->setAccessibleName(QStringLiteral("Ok"));
    cmdCreate->setDefault(true);
    cmdCancel->setAccessibleName(QStringLiteral("Cancel"));
    setTabOrder(txtUsername, cmdCreate);
    setTabOrder(cmdCreate, cmdCancel);
    connect(cmdCreate, &QPushButton::clicked, this, &frmUser::cmdCreate_Click);
    connect(cmdCancel, &QPushButton::clicked, this, &QWidget::close);
    connect(txtUsername, &QLineEdit::returnPressed, this, &frmUser::cmdCreate_Click);
    resize(kWidth, kHeight);
    PlaceCentredOver(this, &main);
    txtUsername->setFocus();
}

frmUser::~frmUser() = default;

void frmUser::SkinHandler(const QString& function) {
    if (function == QStringLiteral("close")) {
        close();
    }
}

void frmUser::RepaintSkin() {
    SkinnedWindow::RepaintSkin();
    frmTamselSkin& skin = Skin();
    const int kind = SkinKind();
    const QRect inside = rect().adjusted(skin.FrameWSize(kind) + kMargin, skin.FrameNSize(kind) + kMargin,
                                         -skin.FrameESize(kind) - kMargin, -skin.FrameSSize(kind) - kMargin);
    const QFont font = skin.GetFont(skin.TreeFont());
    QFont titleFont = font;
    titleFont.setBold(true);
    m_lblTitle->setFont(titleFont);
    m_lblName->setFont(font);
    QPalette palette = m_lblTitle->palette();
    palette.setColor(QPalette::WindowText, SkinColor::ToQColor(skin.GetFontColor(skin.TreeFont())));
    m_lblTitle->setPalette(palette);
    m_lblName->setPalette(palette);

    int y = inside.top();
    const int titleHeight = m_lblTitle->sizeHint().height();
    m_lblTitle->setGeometry(inside.left(), y, inside.width(), titleHeight);
    y += titleHeight + kRowGap;
    const int rowHeight = std::max(txtUsername->sizeHint().height(), m_lblName->sizeHint().height());
    const int labelWidth = m_lblName->sizeHint().width();
    m_lblName->setGeometry(inside.left(), y, labelWidth, rowHeight);
    txtUsername->setGeometry(inside.left() + labelWidth + kRowGap, y, inside.width() - labelWidth - kRowGap,
                             rowHeight);
    const QSize button = cmdCreate->sizeHint().expandedTo(cmdCancel->sizeHint());
    const int buttonTop = inside.bottom() - button.height() + 1;
    cmdCancel->setGeometry(inside.right() - button.width() + 1, buttonTop, button.width(), button.height());
    cmdCreate->setGeometry(cmdCancel->x() - kRowGap - button.width(), buttonTop, button.width(),
                           button.height());
    const int needed = buttonTop - (y + rowHeight + kRowGap);
    if (needed < 0) {
        resize(width(), height() - needed);
    }
}

void frmUser::closeEvent(QCloseEvent* event) {
    event->accept();
    Q_EMIT Closed();
}

void frmUser::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape) {
        close();
        return;
    }
    SkinnedWindow::keyPressEvent(event);
}

void frmUser::cmdCreate_Click() {
    // Taken as typed: a name with blanks around it is a name of its own.
    const QString name = txtUsername->text();
    colProfiles* users = m_main.Users();
    if (!users) {
        return;
    }
    if (name.isEmpty()) {
        QMessageBox::information(this, QStringLiteral("Tamsel"), QStringLiteral("Please enter a username"));
        return;
    }
    if (users->UserExists(name)) {
        QMessageBox::information(this, QStringLiteral("Tamsel"), QStringLiteral("Username already exists"));
        return;
    }
    users->AddUser(name, true, true);
    m_main.ChangeUser(name);
    if (clsProfile* profile = m_main.Users() ? m_main.Users()->GetUser(name) : nullptr) {
        profile->AddGroup(GroupName::MyChannels);
    }
    m_main.SaveAllOrAsk();
    close();
}
