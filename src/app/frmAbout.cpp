// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/frmAbout.h"

#include "app/WindowHelpers.h"
#include "platform/Desktop.h"
#include "skin/SkinColor.h"
#include "skin/SkinSurface.h"
#include "skin/frmTamselSkin.h"

#include <QApplication>
#include <QEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QMessageBox>
#include <QProcess>
#include <QPushButton>
#include <QScreen>
#include <QStandardPaths>
#include <QTimer>

namespace {

constexpr int kWidth = 420;
constexpr int kHeight = 330;
constexpr int kMargin = 14;
constexpr int kGap = 6;
constexpr int kCreditsHeight = 110;
constexpr int kCreditsIndent = 8;
constexpr double kTitleScale = 1.6;
const QString kProductTitle = QStringLiteral("Tamsel");

const QStringList& CreditLines() {
    static const QStringList lines = {
        QStringLiteral("Tamsel is made by Orvane."),
        QString(),
        QStringLiteral("Windows and drawing: the Qt toolkit."),
        QStringLiteral("Feeds and stylesheets: libxml2 and libxslt."),
        QStringLiteral("Tests: GoogleTest."),
        QString(),
        QStringLiteral("Thanks to everyone who publishes a feed,"),
        QStringLiteral("and to everyone who reads one."),
    };
    return lines;
}

// Moves each channel of `from` one step towards `to`.
QColor StepTowards(const QColor& from, const QColor& to) {
    const auto step = [](int value, int target) { return value + (target > value) - (target < value); };
    return QColor(step(from.red(), to.red()), step(from.green(), to.green()), step(from.blue(), to.blue()));
}

// A web address reads as itself; the site that ships with the program has no address worth showing.
QString LinkText(const QString& homePage) {
    return homePage.startsWith(QStringLiteral("http"), Qt::CaseInsensitive)
               ? homePage
               : QStringLiteral("Tamsel Website");
}

} // namespace

frmAbout::frmAbout(frmTamselSkin& skin, Desktop& desktop, QString homePage, QWidget* parent)
    : SkinnedWindow(skin, frmTamselSkin::KindDialog, parent), m_desktop(desktop),
      m_homePage(std::move(homePage)), lblTitle(new QLabel(kProductTitle, this)),
      lblVersion(new QLabel(QStringLiteral("Version %1.%2.%3")
                                .arg(TAMSEL_VERSION_MAJOR)
                                .arg(TAMSEL_VERSION_MINOR)
                                .arg(TAMSEL_VERSION_PATCH),
                            this)),
      Label1(new QLabel(QStringLiteral("Syndicated Information Retrival Platform"), this)),
      picCredits(new SkinSurface(this)), Label2(new QLabel(LinkText(m_homePage), this)),
      cmdOk(new QPushButton(QStringLiteral("OK"), this)),
      cmdSysInfo(new QPushButton(QStringLiteral("&System Info"), this)), tmrCredits(new QTimer(this)) {
    setWindowTitle(QStringLiteral("About ") + kProductTitle);
    setWindowModality(Qt::ApplicationModal);
    for (QLabel* label : {lblTitle, lblVersion, Label1, Label2}) {
        label->setAccessibleName(label->text());
    }
    picCredits->setAccessibleName(QStringLiteral("Credits"));
    cmdOk->setAccessibleName(QStringLiteral("OK"));
    cmdOk->setDefault(true);
    cmdSysInfo->setAccessibleName(QStringLiteral("System Info"));
    Label2->setCursor(Qt::PointingHandCursor);
    Label2->setFocusPolicy(Qt::TabFocus);
    Label2->setAccessibleName(QStringLiteral("Tamsel Website"));
    Label2->installEventFilter(this);
    setTabOrder(cmdOk, cmdSysInfo);
    setTabOrder(cmdSysInfo, Label2);
    connect(cmdOk, &QPushButton::clicked, this, &QWidget::close);
    connect(cmdSysInfo, &QPushButton::clicked, this, &frmAbout::StartSysInfo);
    tmrCredits->setInterval(kCreditsIntervalMs);
    connect(tmrCredits, &QTimer::timeout, this, &frmAbout::tmrCredits_Timer);
    tmrCredits->start();
    resize(kWidth, kHeight);
    if (parent && parent->isVisible()) {
        PlaceCentredOver(this, parent);
    }
    cmdOk->setFocus();
}

frmAbout::~frmAbout() = default;

void frmAbout::SkinHandler(const QString& function) {
    if (function == QStringLiteral("close")) {
        close();
    }
}

bool frmAbout::CreditsRunning() const {
    return tmrCredits->isActive();
}

void frmAbout::tmrCredits_Timer() {
    const QColor text = SkinColor::ToQColor(Skin().GetFontColor(Skin().TreeFont()));
    if (!m_creditsStarted) {
        m_creditsStarted = true;
        m_CreditsTop = picCredits->height();
        m_creditsColour = picCredits->BackColor();
    }
    picCredits->Clear();
    m_creditsColour = StepTowards(m_creditsColour, text);
    picCredits->SetForeColor(m_creditsColour);
    const double lineHeight = SkinSurface::TextExtent(picCredits->DrawFont(), QStringLiteral("Ag")).height();
    double y = m_CreditsTop;
    for (const QString& line : CreditLines()) {
        picCredits->SetCurrentPos(QPointF(kCreditsIndent, y));
        picCredits->Print(line);
        y += lineHeight;
    }
    picCredits->Refresh();
    --m_CreditsTop;
    if (m_CreditsTop == kCreditsEnd) {
        m_CreditsTop = 0;
        m_creditsStarted = false;
        tmrCredits->stop();
    }
}

QStringList frmAbout::FindSysInfo() {
    // The information tools of the common desktops, each with what opens its overview.
    const QList<QStringList> tools = {
        {QStringLiteral("kinfocenter")},
        {QStringLiteral("gnome-control-center"), QStringLiteral("info-overview")},
        {QStringLiteral("hardinfo2")},
        {QStringLiteral("hardinfo")},
        {QStringLiteral("xfce4-about")},
    };
    for (const QStringList& tool : tools) {
        const QString path = QStandardPaths::findExecutable(tool.first());
        if (!path.isEmpty()) {
            return QStringList{path} + tool.mid(1);
        }
    }
    return {};
}

void frmAbout::StartSysInfo() {
    const QStringList tool = FindSysInfo();
    if (tool.isEmpty() || !QProcess::startDetached(tool.first(), tool.mid(1))) {
        QMessageBox::information(this, kProductTitle,
                                 QStringLiteral("System Information Is Unavailable At This Time"));
    }
}

void frmAbout::RepaintSkin() {
    SkinnedWindow::RepaintSkin();
    frmTamselSkin& skin = Skin();
    const int kind = SkinKind();
    const QRect inside = rect().adjusted(skin.FrameWSize(kind) + kMargin, skin.FrameNSize(kind) + kMargin,
                                         -skin.FrameESize(kind) - kMargin, -skin.FrameSSize(kind) - kMargin);
    const QFont font = skin.GetFont(skin.TreeFont());
    const QColor text = SkinColor::ToQColor(skin.GetFontColor(skin.TreeFont()));
    QFont titleFont = font;
    titleFont.setBold(true);
    titleFont.setPointSizeF(font.pointSizeF() * kTitleScale);
    QFont linkFont = font;
    linkFont.setUnderline(true);
    lblTitle->setFont(titleFont);
    lblVersion->setFont(font);
    Label1->setFont(font);
    Label2->setFont(linkFont);
    QPalette palette = lblTitle->palette();
    palette.setColor(QPalette::WindowText, text);
    for (QLabel* label : {lblTitle, lblVersion, Label1, Label2}) {
        label->setPalette(palette);
    }

    int y = inside.top();
    for (QLabel* label : {lblTitle, lblVersion, Label1}) {
        const int h = label->sizeHint().height();
        label->setGeometry(inside.left(), y, inside.width(), h);
        y += h + kGap;
    }
    const QSize button = cmdOk->sizeHint().expandedTo(cmdSysInfo->sizeHint());
    const int buttonTop = inside.bottom() - button.height() + 1;
    cmdOk->setGeometry(inside.right() - button.width() + 1, buttonTop, button.width(), button.height());
    cmdSysInfo->setGeometry(cmdOk->x() - kGap - button.width(), buttonTop, button.width(), button.height());
    const int linkHeight = Label2->sizeHint().height();
    Label2->setGeometry(inside.left(), buttonTop + (button.height() - linkHeight) / 2,
                        std::min(Label2->sizeHint().width(), cmdSysInfo->x() - kGap - inside.left()),
                        linkHeight);
    const int creditsHeight = std::min(kCreditsHeight, buttonTop - kGap - y);
    const bool resized = picCredits->geometry() != QRect(inside.left(), y, inside.width(), creditsHeight);
    picCredits->setGeometry(inside.left(), y, inside.width(), creditsHeight);
    picCredits->SetDrawFont(font);
    // The tree's colours make the credits a panel of their own on every skin.
    const QColor back = SkinColor::ToQColor(skin.TreeColor());
    if (resized || picCredits->BackColor() != back) {
        picCredits->SetBackColor(back);
        m_CreditsTop = 0;
        m_creditsStarted = false;
    }
}

void frmAbout::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape) {
        close();
        return;
    }
    SkinnedWindow::keyPressEvent(event);
}

bool frmAbout::eventFilter(QObject* watched, QEvent* event) {
    if (watched == Label2) {
        const bool clicked = event->type() == QEvent::MouseButtonRelease;
        const auto* key = event->type() == QEvent::KeyPress ? static_cast<QKeyEvent*>(event) : nullptr;
        const bool pressed = key && (key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter ||
                                     key->key() == Qt::Key_Space);
        if (clicked || pressed) {
            m_desktop.OpenDocument(m_homePage);
            return true;
        }
    }
    return SkinnedWindow::eventFilter(watched, event);
}
