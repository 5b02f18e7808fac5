// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ticker/WidgetAppBarShell.h"

#include "ticker/X11AppBarShell.h"

#include <QCursor>
#include <QGuiApplication>
#include <QMessageBox>
#include <QScreen>
#include <QStyle>

WidgetAppBarShell::WidgetAppBarShell(QWidget& window) : m_window(&window) {}

WidgetAppBarShell::~WidgetAppBarShell() = default;

std::unique_ptr<AppBarShell> WidgetAppBarShell::ForDesktop(QWidget& window) {
    if (QGuiApplication::platformName() == QLatin1String("xcb")) {
        return std::make_unique<X11AppBarShell>(window);
    }
    return std::make_unique<WidgetAppBarShell>(window);
}

bool WidgetAppBarShell::Register() {
    if (!m_window) {
        return false;
    }
    m_window->setWindowFlag(Qt::FramelessWindowHint, true);
    m_window->setWindowFlag(Qt::WindowStaysOnTopHint, true);
    return true;
}

void WidgetAppBarShell::Unregister() {}

QRect WidgetAppBarShell::QueryPos(int, const QRect& proposed) {
    return proposed;
}

void WidgetAppBarShell::SetPos(int, const QRect&) {}

bool WidgetAppBarShell::SetAutoHideBar(int, bool) {
    return true;
}

void WidgetAppBarShell::Activate() {}

void WidgetAppBarShell::WindowPosChanged() {}

QPoint WidgetAppBarShell::ScreenOrigin() const {
    const QScreen* screen = QGuiApplication::primaryScreen();
    return screen ? screen->geometry().topLeft() : QPoint();
}

QRect WidgetAppBarShell::ScreenRect() const {
    const QScreen* screen = QGuiApplication::primaryScreen();
    return screen ? QRect(QPoint(), screen->geometry().size()) : QRect();
}

QRect WidgetAppBarShell::WorkArea() const {
    const QScreen* screen = QGuiApplication::primaryScreen();
    return screen ? screen->availableGeometry().translated(-ScreenOrigin()) : QRect();
}

AppBarMetrics WidgetAppBarShell::Metrics() const {
    AppBarMetrics metrics;
    if (m_window) {
        const int scroll = m_window->style()->pixelMetric(QStyle::PM_ScrollBarExtent);
        metrics.scrollBar = QSize(scroll, scroll);
    }
    return metrics;
}

QRect WidgetAppBarShell::WindowRect() const {
    return m_window ? m_window->frameGeometry().translated(-ScreenOrigin()) : QRect();
}

void WidgetAppBarShell::MoveWindow(const QRect& rect) {
    if (m_window) {
        m_window->setGeometry(rect.translated(ScreenOrigin()));
    }
}

QPoint WidgetAppBarShell::CursorPos() const {
    return QCursor::pos() - ScreenOrigin();
}

bool WidgetAppBarShell::IsWindowActive() const {
    return m_window && m_window->isActiveWindow();
}

QString WidgetAppBarShell::WindowCaption() const {
    return m_window ? m_window->windowTitle() : QString();
}

void WidgetAppBarShell::ShowMessage(const QString& title, const QString& text) {
    QMessageBox::information(m_window, title, text);
}
