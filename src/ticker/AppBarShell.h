// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>
#include <QString>

// Sizes of the desktop that the bar's geometry depends on, in the bar's pixels.
struct AppBarMetrics {
    QSize border{1, 1};      // thin window border
    QSize scrollBar{16, 16}; // vertical scroll bar width, horizontal scroll bar height
    QSize doubleClick{4, 4}; // the area within which two clicks make a double click
};

// The desktop shell as an application bar sees it: the reservation of screen strips, the
// auto-hide claims (one per edge), and the one window that the bar moves. Rectangles are in the
// bar's pixels with the screen's top left at (0, 0).
class AppBarShell {
public:
    virtual ~AppBarShell() = default;

    // Registers the window as a bar; false when the shell refuses.
    virtual bool Register() = 0;
    virtual void Unregister() = 0;
    // The rectangle the shell would grant on `edge` for `proposed`, clear of other bars.
    virtual QRect QueryPos(int edge, const QRect& proposed) = 0;
    // Reserves `rect` on `edge`; an empty rectangle (or edge 5) reserves nothing.
    virtual void SetPos(int edge, const QRect& rect) = 0;
    // Claims (or releases) the one auto-hide slot of `edge`; false when another bar holds it.
    virtual bool SetAutoHideBar(int edge, bool claim) = 0;
    virtual void Activate() = 0;
    virtual void WindowPosChanged() = 0;

    virtual QRect ScreenRect() const = 0;
    virtual QRect WorkArea() const = 0;
    virtual AppBarMetrics Metrics() const = 0;
    virtual QRect WindowRect() const = 0;
    virtual void MoveWindow(const QRect& rect) = 0;
    virtual QPoint CursorPos() const = 0;
    // Whether the bar's window is the active window.
    virtual bool IsWindowActive() const = 0;
    virtual QString WindowCaption() const = 0;
    // An information message with the given title; returns once dismissed.
    virtual void ShowMessage(const QString& title, const QString& text) = 0;
};
