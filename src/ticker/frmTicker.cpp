// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ticker/frmTicker.h"

#include "itembank/modItemHandler.h"
#include "platform/CRegSettings.h"
#include "platform/Clock.h"
#include "platform/Desktop.h"
#include "platform/LongTimer.h"
#include "skin/SkinColor.h"
#include "skin/SkinSurface.h"
#include "skin/frmTamselSkin.h"
#include "ticker/TickerItemView.h"

#include <QCloseEvent>
#include <QCursor>
#include <QScreen>
#include <QTime>

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

const QString kEffectKey = QStringLiteral("Effect");
const QString kEdgeKey = QStringLiteral("Edge");
const QString kDefaultEffect = QStringLiteral("1");
const QString kDefaultEdge = QStringLiteral("1");
const QString kEllipsis = QStringLiteral("...");
const QString kCaret = QStringLiteral("_");
const QString kTitle = QStringLiteral("Tamsel Ticker");

constexpr int kRestHorizontal = 500;
constexpr int kRestLong = 5000;
constexpr int kFadeHold = 3000;
constexpr int kVerticalStep = 50;
constexpr int kFadeStep = 30;
constexpr int kTypeStep = 100;
constexpr int kRestBand = 2;
constexpr int kPercentFull = 100;
constexpr double kBlendPerMs = 3.5;
constexpr qint16 kOn = 1;

void ReplaceFirst(QString& text, const QString& placeholder, const QString& value) {
    const qsizetype at = text.indexOf(placeholder);
    if (at >= 0) {
        text.replace(at, placeholder.size(), value);
    }
}

// The number of pixels the horizontal effect moves per tick at a given interval.
int HorizontalStep(int interval) {
    if (interval > 200) {
        return 1;
    }
    if (interval > 80) {
        return 2;
    }
    if (interval > 40) {
        return 3;
    }
    return 6;
}

int EffectFromSetting(const QString& text) {
    bool ok = false;
    const int value = text.trimmed().toInt(&ok);
    return ok && value >= frmTicker::EffectHorizontal && value <= frmTicker::EffectType
               ? value
               : int(frmTicker::EffectHorizontal);
}

} // namespace

frmTicker::frmTicker(frmTamselSkin& skin, CRegSettings& settings, Clock& clock, Desktop& desktop,
                     ActiveBank activeBank, AppBarShellFactory shellFactory, QWidget* parent)
    : SkinnedWindow(skin, frmTamselSkin::KindTicker, parent), m_settings(settings), m_clock(clock),
      m_desktop(desktop), m_activeBank(std::move(activeBank)),
      m_appBar(clock, screen() ? screen()->geometry().size() : QSize()),
      m_tmrScroll(new LongTimer(clock, this)) {
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(kTitle);
    setAccessibleName(kTitle);
    picSkin()->setAccessibleName(QStringLiteral("Ticker text"));
    SetSkipHidden(true);
    connect(m_tmrScroll, &LongTimer::OnTimer, this, &frmTicker::tmrScroll_OnTimer);
    m_tmrScroll->SetInterval(kFirstInterval);
    m_tmrScroll->SetEnabled(true);

    SetEffect(EffectFromSetting(m_settings.GetSetting(kSection, kEffectKey, kDefaultEffect)));

    // The user may neither float the bar nor drag it to another edge, nor size it.
    m_appBar.SetOptionA(true);
    m_appBar.SetOptionB(false);
    for (const int bit : {TAppBar::AllowFloat, TAppBar::AllowLeft, TAppBar::AllowTop, TAppBar::AllowRight,
                          TAppBar::AllowBottom}) {
        m_appBar.SetFlags(m_appBar.Flags() & ~bit);
    }
    m_appBar.SetDockWidth(kBarThickness);
    m_appBar.SetDockHeight(kBarThickness);
    m_appBar.SetSizeIncY(0);
    m_appBar.SetSizeIncX(0);
    resize(kBarThickness * 10, kBarThickness);
    m_shell = shellFactory(*this);
    m_appBar.Extends(*m_shell);

    bool ok = false;
    int edge = m_settings.GetSetting(kSection, kEdgeKey, kDefaultEdge).trimmed().toInt(&ok);
    if (!ok || edge < TAppBar::EdgeLeft || edge > TAppBar::EdgeBottom) {
        edge = TAppBar::EdgeTop;
    }
    m_appBar.SetEdge(edge);
}

frmTicker::~frmTicker() {
    m_appBar.Detach();
}

void frmTicker::closeEvent(QCloseEvent* event) {
    m_tmrScroll->SetEnabled(false);
    m_appBar.Detach();
    event->accept();
    Q_EMIT Closed();
}

void frmTicker::DockBar(int edge) {
    m_appBar.SetEdge(edge);
    m_appBar.SetOptionC(1);
    m_settings.SaveSetting(kSection, kEdgeKey, QString::number(edge));
    m_iRestX = 0;
    m_bNext = true;
}

void frmTicker::SetEffect(int effect) {
    const int chosen = effect >= EffectHorizontal && effect <= EffectType ? effect : int(EffectHorizontal);
    m_bScrollHorz = chosen == EffectHorizontal;
    m_bScrollVert = chosen == EffectVertical;
    m_bFade = chosen == EffectFade;
    m_bType = chosen == EffectType;
    m_settings.SaveSetting(kSection, kEffectKey, QString::number(chosen));
}

int frmTicker::CurrentEffect() const {
    if (m_bScrollVert) {
        return EffectVertical;
    }
    if (m_bFade) {
        return EffectFade;
    }
    if (m_bType) {
        return EffectType;
    }
    return EffectHorizontal;
}

quint32 frmTicker::Interval() const {
    return m_tmrScroll->Interval();
}

bool frmTicker::Running() const {
    return m_tmrScroll->Enabled();
}

XmlNode frmTicker::CurrentItem() const {
    if (!m_Items || m_iIndex < 0 || m_iIndex >= int(m_Items->size())) {
        return XmlNode();
    }
    return m_Items->at(size_t(m_iIndex));
}

void frmTicker::ShowItem() {
    if (!m_view || !m_Items || m_Items->empty()) {
        return;
    }
    const QRect screenRect = screen() ? screen()->geometry() : QRect();
    const int width = screenRect.width() * 2 / 3;
    const int top = m_appBar.Edge() == TAppBar::EdgeTop ? height() : 0;
    const QRect placement(screenRect.left() + (screenRect.width() - width) / 2, screenRect.top() + top, width,
                          0);
    m_view->ShowItem(CurrentItem(), placement);
}

void frmTicker::OpenExtern() {
    const QString link = GetItemLink(CurrentItem());
    if (!link.isEmpty()) {
        m_desktop.OpenDocument(link);
    }
}

void frmTicker::ProfileChanged() {
    m_Items.reset();
    m_iIndex = -1;
    m_bNext = true;
}

QString frmTicker::DecodeText(const QString& text) {
    if (!m_activeBank || !m_activeBank()) {
        return text;
    }
    QString result = text;
    ReplaceFirst(result, QStringLiteral("{chl}"), m_lblSource);
    const XmlNode item = CurrentItem();
    if (m_iIndex >= 0 && m_Items && !item.IsNull()) {
        // Hour boundaries crossed between the item's date and time and now.
        const QDateTime now = m_clock.Now();
        QDate date = ParseItemDateAttribute(GetItemDate(item));
        if (!date.isValid()) {
            date = now.date();
        }
        const QTime time = QTime::fromString(GetItemTime(item), QStringLiteral("hh:mm:ss"));
        const qint64 hours =
            date.daysTo(now.date()) * 24 + now.time().hour() - (time.isValid() ? time.hour() : 0);
        ReplaceFirst(result, QStringLiteral("{hrs}"), QString::number(std::llabs(hours)));
    }
    ReplaceFirst(result, QStringLiteral("{time}"), m_lblTime);
    return result;
}

void frmTicker::SkinHandler(const QString& function) {
    if (function == QLatin1String("close")) {
        close();
    } else if (function == QLatin1String("tickermenu")) {
        raise();
        activateWindow();
        Q_EMIT MenuRequested(QCursor::pos());
    } else if (function == QLatin1String("next")) {
        m_bNext = true;
    } else if (function == QLatin1String("prev")) {
        m_bPrev = true;
    } else if (function == QLatin1String("pause")) {
        m_tmrScroll->SetEnabled(false);
    } else if (function == QLatin1String("play")) {
        m_tmrScroll->SetEnabled(true);
    } else if (function == QLatin1String("link")) {
        OpenExtern();
    }
}

void frmTicker::RepaintSkin() {
    SkinnedWindow::RepaintSkin();
    // A new width or font moves the resting place.
    m_iRestX = 0;
}

quint32 frmTicker::BlendColor(quint32 base, quint32 target, int percent) {
    const double share = std::clamp(percent, 0, kPercentFull) / double(kPercentFull);
    quint32 result = 0;
    for (int shift = 0; shift <= 16; shift += 8) {
        const int b = int((base >> shift) & 0xFF);
        const int t = int((target >> shift) & 0xFF);
        const int byte = b <= t ? t - int(share * (t - b)) : t + int(share * (b - t));
        result |= quint32(std::clamp(byte, 0, 255)) << shift;
    }
    return result;
}

void frmTicker::FetchItems() {
    clsItemBank* bank = m_activeBank ? m_activeBank() : nullptr;
    m_Items = bank ? bank->UnreadTodayList() : ItemList();
}

void frmTicker::NextEntry() {
    ++m_iIndex;
    if (!m_Items || m_iIndex >= int(m_Items->size())) {
        FetchItems();
        m_iIndex = 0;
    }
    TakeEntry();
}

void frmTicker::PrevEntry() {
    --m_iIndex;
    if (!m_Items || m_iIndex < 0) {
        FetchItems();
        m_iIndex = int(m_Items->size()) - 1;
    }
    TakeEntry();
}

void frmTicker::TakeEntry() {
    const XmlNode item = CurrentItem();
    if (item.IsNull()) {
        m_lblTxtSize = kNoItems;
        m_lblSource = kNoItemsSource;
        m_lblTime.clear();
    } else {
        QString text = GetItemTitle(item);
        if (text.isEmpty()) {
            text = GetItemDescription(item);
        }
        if (text.size() > kMaxTextLength) {
            text = text.left(kMaxTextLength) + kEllipsis;
        }
        m_lblTxtSize = text;
        m_lblSource = GetChildText(item, QStringLiteral("channeltitle"));
        m_lblTime = GetItemTime(item);
    }
    m_freshEntry = true;
    LayoutLabels();
}

void frmTicker::LayoutLabels() {
    m_tickerFont = Skin().GetFont(Skin().TickerFont());
    m_textSize = SkinSurface::TextExtent(m_tickerFont, m_lblTxtSize);
    m_iRestX = qRound((width() - m_textSize.width()) / 2);
}

bool frmTicker::HorizontalBar() const {
    const int edge = m_appBar.Edge();
    return edge == TAppBar::EdgeTop || edge == TAppBar::EdgeBottom;
}

bool frmTicker::ViewVisible() const {
    return m_view && m_view->IsVisible();
}

void frmTicker::ViewCheck() {
    if (ViewVisible()) {
        m_anim.HeldByView = kOn;
    }
}

void frmTicker::SetInterval(int interval) {
    m_tmrScroll->SetInterval(quint32(interval));
}

void frmTicker::tmrScroll_OnTimer() {
    const bool viewOpen = ViewVisible();
    if (viewOpen && m_anim.HeldByView) {
        return;
    }
    if (!viewOpen) {
        m_anim.HeldByView = 0;
    } else {
        m_bNext = false;
    }
    m_freshEntry = false;
    if (m_bNext) {
        NextEntry();
        m_bNext = false;
    }
    if (m_bPrev) {
        PrevEntry();
        m_bPrev = false;
    }
    if (m_iRestX == 0) {
        LayoutLabels();
    }

    m_lTextColor = Skin().GetFontColor(Skin().TickerFont());
    m_printColor = m_lTextColor;
    m_shownText = m_lblTxtSize;
    SkinSurface& surface = *picSkin();
    surface.setGeometry(rect());
    Skin().PaintAll(*this, surface, SkinKind(), false);

    const bool horizontal = HorizontalBar();
    const double drawHeight = horizontal ? height() : width();
    const double drawWidth = horizontal ? width() : height();
    const double centredY = std::floor((drawHeight - m_textSize.height()) / 2);

    bool print = true;
    if (m_bScrollVert) {
        print = ScrollVertical(drawHeight, centredY);
    } else if (m_bFade) {
        Fade(centredY);
    } else if (m_bType) {
        TypeWrite(centredY);
    } else {
        print = ScrollHorizontal(drawWidth, centredY);
    }

    m_printed = print && horizontal;
    if (m_printed) {
        surface.SetDrawFont(m_tickerFont);
        surface.SetForeColor(SkinColor::ToQColor(m_printColor));
        surface.SetCurrentPos(QPointF(m_sngX, m_sngY));
        surface.Print(m_shownText);
    }
    // Keeps an auto-hidden bar shown, and a hovered button lit, while the mouse rests on it.
    if (m_mouseSeen && underMouse()) {
        SurfaceMoved(Qt::NoButton, m_lMouse);
    }
}

bool frmTicker::ScrollHorizontal(double drawWidth, double centredY) {
    m_sngY = centredY;
    const double x = m_sngX;
    int interval = 0;
    if (m_iRestX - kRestBand <= x && x <= m_iRestX + kRestBand && !m_anim.Paused) {
        m_anim.Paused = kOn;
        interval = kRestHorizontal;
        ViewCheck();
    } else {
        if (x <= m_iRestX + kRestBand) {
            interval = int(std::lround(2000.0 / (m_iRestX - x + 4) + 20));
            ViewCheck();
        } else {
            m_anim.Paused = 0;
            interval = int(std::lround(2000.0 / (x - m_iRestX + 4) + 20));
        }
        const int percent = int(std::lround((interval - 20) * kBlendPerMs));
        m_printColor = BlendColor(m_lTextColor, Skin().TickerFadeColor(), percent);
    }
    SetInterval(interval);
    m_sngX = x - HorizontalStep(interval);
    if (m_sngX < -m_textSize.width()) {
        m_sngX = drawWidth;
        // An entry taken in this tick enters now; only one that has crossed asks for the next.
        if (!m_freshEntry) {
            m_bNext = true;
        }
        return false;
    }
    return true;
}

bool frmTicker::ScrollVertical(double drawHeight, double centredY) {
    m_sngX = m_iRestX;
    if (centredY < m_sngY) {
        SetInterval(kVerticalStep);
    } else if (centredY == m_sngY) {
        SetInterval(kRestLong);
        ViewCheck();
    } else {
        SetInterval(kVerticalStep);
        ViewCheck();
    }
    m_sngY -= 1;
    if (m_sngY < -m_textSize.height()) {
        m_sngY = drawHeight;
        if (!m_freshEntry) {
            m_bNext = true;
        }
        return false;
    }
    return true;
}

void frmTicker::Fade(double centredY) {
    m_sngY = centredY;
    m_sngX = m_iRestX;
    SetInterval(kFadeStep);
    const quint32 fadeColour = Skin().TickerFadeColor();
    if (m_anim.FadeIn < kPercentFull) {
        ++m_anim.FadeIn;
        if (m_anim.FadeIn == kPercentFull) {
            m_anim.FadeOut = kPercentFull;
            SetInterval(kFadeHold);
            ViewCheck();
        }
        m_printColor = BlendColor(m_lTextColor, fadeColour, m_anim.FadeIn);
    } else {
        --m_anim.FadeOut;
        if (m_anim.FadeOut <= 0) {
            m_bNext = true;
            m_anim.FadeIn = 0;
            ViewCheck();
        }
        m_printColor = BlendColor(m_lTextColor, fadeColour, m_anim.FadeOut);
    }
}

void frmTicker::TypeWrite(double centredY) {
    m_sngY = centredY;
    m_sngX = m_iRestX;
    ++m_anim.TypeCount;
    if (m_anim.TypeCount > m_lblTxtSize.size()) {
        SetInterval(kRestLong);
        m_bNext = true;
        m_shownText = m_lblTxtSize;
        m_anim.TypeCount = 0;
        ViewCheck();
    } else {
        SetInterval(kTypeStep);
        m_shownText = m_lblTxtSize.left(m_anim.TypeCount) + kCaret;
    }
}

// The shipped skins draw buttons on the bar (previous, pause, play, next, link, menu, close), so
// a press that lands on one goes to it; anywhere else the bar itself answers the click.
void frmTicker::SurfacePressed(Qt::MouseButton button, QPointF point) {
    if (button == Qt::LeftButton) {
        m_entityPressed = Skin().SkinMouseDown(*this, button, point, SkinKind(), false);
    }
}

void frmTicker::SurfaceMoved(Qt::MouseButtons buttons, QPointF point) {
    m_lMouse = point;
    m_mouseSeen = true;
    m_appBar.MouseOver();
    Skin().SkinMouseMove(*this, buttons, point, SkinKind(), false);
}

void frmTicker::SurfaceReleased(Qt::MouseButton button, QPointF point) {
    if (button == Qt::RightButton) {
        raise();
        activateWindow();
        Q_EMIT MenuRequested(picSkin()->mapToGlobal(point.toPoint()));
    } else if (button == Qt::LeftButton) {
        if (std::exchange(m_entityPressed, false)) {
            Skin().SkinMouseUp(*this, button, point, SkinKind(), false);
        } else if (ViewVisible()) {
            m_view->HideItem();
        } else {
            ShowItem();
        }
    }
}
