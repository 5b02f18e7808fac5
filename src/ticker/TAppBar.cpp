// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ticker/TAppBar.h"

#include "platform/CRegSettings.h"
#include "platform/Clock.h"
#include "ticker/AppBarShell.h"

#include <cstdlib>

namespace {

const QString kDefaultKey = QStringLiteral("*");
constexpr int kNoFlags = 0;
constexpr int kDockFlags =
    TAppBar::AllowLeft | TAppBar::AllowRight | TAppBar::AllowTop | TAppBar::AllowBottom;

// Snaps a length to `step` counted from `minimum`; a zero step leaves it alone.
int Snap(int length, int minimum, int step) {
    if (step == 0) {
        return length;
    }
    return ((length - minimum + step / 2) / step) * step + minimum;
}

} // namespace

TAppBar::TAppBar(Clock& clock, QSize screen)
    : m_clock(clock), m_state(AppBarState::Defaults(screen)), m_timer(clock.CreateTimer()) {
    m_timer->SetCallback([this] { AutoHideCheck(); });
}

TAppBar::~TAppBar() {
    Detach();
}

void TAppBar::Extends(AppBarShell& shell) {
    m_shell = &shell;
    m_timer->Start(m_state.autoHideDelay);
    m_state.floatRect = shell.WindowRect();
    m_registered = shell.Register();
    UpdateBar();
}

void TAppBar::Detach() {
    if (!m_shell) {
        return;
    }
    m_timer->Stop();
    if (IsDocked(m_state.edge)) {
        m_shell->SetAutoHideBar(m_state.edge, false);
    }
    m_shell->Unregister();
    m_registered = false;
    m_shell = nullptr;
}

void TAppBar::UpdateBar() {
    SetEdge(m_state.edge);
}

bool TAppBar::LoadSettings(CRegSettings& settings) {
    const QString text = settings.GetSetting(kSettingsSection, kDefaultKey, QString());
    return AppBarState::FromBytes(QByteArray::fromHex(text.toLatin1()), &m_state);
}

bool TAppBar::SaveSettings(CRegSettings& settings) const {
    return settings.SaveSetting(kSettingsSection, kDefaultKey,
                                QString::fromLatin1(m_state.ToBytes().toHex()));
}

int TAppBar::Edge() const {
    return m_dragEdge != EdgeUnregistered ? m_dragEdge : m_state.edge;
}

void TAppBar::SetAutoHideDelay(int ms) {
    m_state.autoHideDelay = ms;
    if (m_shell) {
        m_timer->Start(ms);
    }
}

void TAppBar::SetFloatTracking(QSize minimum, QSize maximum) {
    m_state.minTrackFloat = minimum;
    m_state.maxTrackFloat = maximum;
}

void TAppBar::SetDockedTracking(QSize minimum, QSize maximum) {
    m_state.minTrackDocked = minimum;
    m_state.maxTrackDocked = maximum;
}

void TAppBar::SetEdge(int edge) {
    if (m_shell && m_registered && IsDocked(m_state.edge)) {
        m_shell->SetAutoHideBar(m_state.edge, false);
    }
    m_state.edge = edge;
    if (m_shell) {
        ApplyEdge();
    }
}

void TAppBar::ApplyEdge() {
    const int edge = m_state.edge;
    if (edge == EdgeUnregistered) {
        m_shell->Unregister();
        m_registered = false;
        return;
    }
    // A bar unregistered by edge 4 joins the shell again when it is given a place.
    if (!m_registered) {
        m_registered = m_shell->Register();
    }
    if (edge == EdgeFloat) {
        m_shell->SetPos(EdgeFloat, QRect());
        m_shell->MoveWindow(m_state.floatRect);
        return;
    }
    if (!IsDocked(edge)) {
        return;
    }
    // Every docked edge is claimed, so that a second auto-hiding bar there is refused.
    if (!m_shell->SetAutoHideBar(edge, true) && m_state.autoHide) {
        m_state.autoHide = false;
        m_shell->ShowMessage(m_shell->WindowCaption(), kMessage);
    }
    const QRect rect = EdgeRect(edge);
    m_shell->SetPos(edge, m_state.autoHide ? QRect() : rect);
    MoveTo(rect);
}

QRect TAppBar::EdgeRect(int edge) {
    QRect rect = m_shell->ScreenRect();
    if (!m_state.autoHide) {
        rect = m_shell->QueryPos(edge, rect);
    }
    switch (edge) {
    case EdgeLeft:
        rect.setWidth(m_state.dockWidth);
        break;
    case EdgeTop:
        rect.setHeight(m_state.dockHeight);
        break;
    case EdgeRight:
        rect.setLeft(rect.left() + rect.width() - m_state.dockWidth);
        break;
    case EdgeBottom:
        rect.setTop(rect.top() + rect.height() - m_state.dockHeight);
        break;
    default:
        break;
    }
    return rect;
}

QRect TAppBar::DockedRect(int edge) {
    return m_shell && IsDocked(edge) ? EdgeRect(edge) : QRect();
}

QRect TAppBar::HiddenRect(int edge, QRect rect) const {
    const AppBarMetrics metrics = m_shell->Metrics();
    // What stays on screen of an auto-hidden bar: twice the border, enough to catch the mouse.
    const int stripX = 2 * metrics.border.width();
    const int stripY = 2 * metrics.border.height();
    switch (edge) {
    case EdgeLeft:
        rect.translate(-(rect.width() - stripX), 0);
        break;
    case EdgeTop:
        rect.translate(0, -(rect.height() - stripY));
        break;
    case EdgeRight:
        rect.translate(rect.width() - stripX, 0);
        break;
    case EdgeBottom:
        rect.translate(0, rect.height() - stripY);
        break;
    default:
        break;
    }
    return rect;
}

void TAppBar::MoveTo(QRect rect) {
    if (m_state.autoHide && !m_autoHideShown) {
        rect = HiddenRect(m_state.edge, rect);
    }
    m_shell->MoveWindow(rect);
}

int TAppBar::EdgeBit(int edge) {
    switch (edge) {
    case EdgeLeft:
        return AllowLeft;
    case EdgeTop:
        return AllowTop;
    case EdgeRight:
        return AllowRight;
    case EdgeBottom:
        return AllowBottom;
    default:
        return kNoFlags;
    }
}

int TAppBar::EdgeFromPoint(QPoint point, bool ctrlHeld) const {
    const bool mayFloat = (m_state.flags & AllowFloat) != 0;
    if (!m_shell) {
        return m_state.edge;
    }
    if (mayFloat && ctrlHeld) {
        return EdgeFloat;
    }
    const AppBarMetrics metrics = m_shell->Metrics();
    const QRect inner = m_shell->WorkArea().adjusted(metrics.scrollBar.width(), metrics.scrollBar.height(),
                                                     -metrics.scrollBar.width(), -metrics.scrollBar.height());
    if (mayFloat && (inner.contains(point) || (m_state.flags & kDockFlags) == 0)) {
        return EdgeFloat;
    }
    const QRect screen = m_shell->ScreenRect();
    const qint64 dx = point.x() - (screen.left() + screen.width() / 2);
    const qint64 dy = point.y() - (screen.top() + screen.height() / 2);
    int edge = EdgeLeft;
    if (std::llabs(dy) * screen.width() > std::llabs(dx) * screen.height()) {
        edge = dy < 0 ? EdgeTop : EdgeBottom;
    } else {
        edge = dx < 0 ? EdgeLeft : EdgeRight;
    }
    if ((m_state.flags & EdgeBit(edge)) == 0) {
        return mayFloat ? EdgeFloat : m_state.edge;
    }
    return edge;
}

QRect TAppBar::Moving(QPoint cursor, bool ctrlHeld) {
    const int before = m_dragEdge;
    m_dragEdge = EdgeFromPoint(cursor, ctrlHeld);
    if (IsDocked(before) && m_dragEdge == EdgeFloat) {
        m_state.floatRect.moveCenter(cursor);
    }
    if (m_dragEdge == EdgeFloat) {
        return m_state.floatRect;
    }
    return IsDocked(m_dragEdge) ? EdgeRect(m_dragEdge) : m_shell->WindowRect();
}

QRect TAppBar::Sizing(int side, const QRect& proposed) const {
    const bool floating = m_state.edge == EdgeFloat;
    const QSize minimum = floating ? m_state.minTrackFloat : m_state.minTrackDocked;
    const int width = Snap(proposed.width(), minimum.width(), m_state.sizeIncX);
    const int height = Snap(proposed.height(), minimum.height(), m_state.sizeIncY);
    const int right = proposed.left() + proposed.width();
    const int bottom = proposed.top() + proposed.height();
    int left = proposed.left();
    int top = proposed.top();
    const bool fromLeft = side == SizeLeft || side == SizeTopLeft || side == SizeBottomLeft;
    const bool fromTop = side == SizeTop || side == SizeTopLeft || side == SizeTopRight;
    if (fromLeft) {
        left = right - width;
    }
    if (fromTop) {
        top = bottom - height;
    }
    return QRect(left, top, width, height);
}

void TAppBar::EnterSizeMove() {
    m_dragEdge = m_state.edge;
}

void TAppBar::ExitSizeMove(const QRect& windowRect) {
    const int proposal = m_dragEdge;
    m_dragEdge = EdgeUnregistered;
    if (proposal == m_state.edge) {
        if (proposal == EdgeLeft || proposal == EdgeRight) {
            m_state.dockWidth = windowRect.width();
        } else if (proposal == EdgeTop || proposal == EdgeBottom) {
            m_state.dockHeight = windowRect.height();
        }
    }
    if (proposal == EdgeFloat) {
        if (m_state.edge == EdgeFloat) {
            m_state.floatRect = windowRect;
        } else {
            const QRect work = m_shell ? m_shell->WorkArea() : QRect();
            const bool smaller = windowRect.width() < work.width() && windowRect.height() < work.height();
            const QSize size = smaller ? windowRect.size() : m_state.floatRect.size();
            m_state.floatRect = QRect(windowRect.topLeft(), size);
        }
    }
    SetEdge(proposal);
}

TAppBar::TrackLimits TAppBar::MinMaxInfo() const {
    if (m_state.edge == EdgeFloat) {
        return {m_state.minTrackFloat, m_state.maxTrackFloat, true};
    }
    return {m_state.minTrackDocked, m_state.maxTrackDocked, !m_state.autoHide};
}

int TAppBar::HitTest(int code) const {
    const bool sizeX = m_state.sizeIncX != 0;
    const bool sizeY = m_state.sizeIncY != 0;
    const bool left = code == HitLeft || code == HitTopLeft || code == HitBottomLeft;
    const bool right = code == HitRight || code == HitTopRight || code == HitBottomRight;
    const bool top = code == HitTop || code == HitTopLeft || code == HitTopRight;
    const bool bottom = code == HitBottom || code == HitBottomLeft || code == HitBottomRight;
    if (!left && !right && !top && !bottom) {
        return code;
    }
    const int edge = m_state.edge;
    if (IsDocked(edge)) {
        // Only the side facing the middle of the screen sizes a docked bar.
        const bool facing = (edge == EdgeLeft && code == HitRight && sizeX) ||
                            (edge == EdgeRight && code == HitLeft && sizeX) ||
                            (edge == EdgeTop && code == HitBottom && sizeY) ||
                            (edge == EdgeBottom && code == HitTop && sizeY);
        return facing ? code : int(HitBorder);
    }
    const bool keepX = (left || right) && sizeX;
    const bool keepY = (top || bottom) && sizeY;
    if (keepX && keepY) {
        return code;
    }
    if (keepX) {
        return left ? int(HitLeft) : int(HitRight);
    }
    if (keepY) {
        return top ? int(HitTop) : int(HitBottom);
    }
    return HitBorder;
}

void TAppBar::ShellCallback(int notification) {
    switch (notification) {
    case NotifyPosChanged:
        if (m_state.edge != EdgeFloat && !m_state.autoHide) {
            UpdateBar();
        }
        break;
    case NotifyFullScreenApp:
        UpdateBar();
        break;
    default:
        break;
    }
}

void TAppBar::Activated(bool active) {
    if (!m_shell) {
        return;
    }
    if (!active) {
        SlideOut();
    }
    m_shell->Activate();
}

void TAppBar::WindowPosChanged() {
    if (m_shell) {
        m_shell->WindowPosChanged();
    }
}

void TAppBar::MouseOver() {
    SlideIn();
}

void TAppBar::SlideIn() {
    if (!m_shell || !m_state.autoHide || !IsDocked(m_state.edge) || m_autoHideShown) {
        return;
    }
    m_autoHideShown = true;
    MoveTo(EdgeRect(m_state.edge));
}

void TAppBar::SlideOut() {
    if (!m_shell || !m_state.autoHide || !IsDocked(m_state.edge) || !m_autoHideShown) {
        return;
    }
    m_autoHideShown = false;
    MoveTo(EdgeRect(m_state.edge));
}

void TAppBar::AutoHideCheck() {
    if (!m_shell || m_shell->IsWindowActive()) {
        return;
    }
    const AppBarMetrics metrics = m_shell->Metrics();
    const int dx = 2 * metrics.doubleClick.width();
    const int dy = 2 * metrics.doubleClick.height();
    const QRect around = m_shell->WindowRect().adjusted(-dx, -dy, dx, dy);
    if (!around.contains(m_shell->CursorPos())) {
        SlideOut();
    }
}
