// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ticker/AppBarShell.h"

#include <QPointer>
#include <QWidget>

#include <functional>
#include <memory>

// A shell for desktops without an application bar protocol (a Wayland session): the bar is a
// frameless window kept above others at its edge. Nothing is reserved, so maximised windows may
// cover the strip; an auto-hide claim always succeeds, as only this process could compete.
class WidgetAppBarShell : public AppBarShell {
public:
    explicit WidgetAppBarShell(QWidget& window);
    ~WidgetAppBarShell() override;
    WidgetAppBarShell(const WidgetAppBarShell&) = delete;
    WidgetAppBarShell& operator=(const WidgetAppBarShell&) = delete;

    // The shell that suits the running desktop: X11 struts where the display speaks X11.
    static std::unique_ptr<AppBarShell> ForDesktop(QWidget& window);

    bool Register() override;
    void Unregister() override;
    QRect QueryPos(int edge, const QRect& proposed) override;
    void SetPos(int edge, const QRect& rect) override;
    bool SetAutoHideBar(int edge, bool claim) override;
    void Activate() override;
    void WindowPosChanged() override;

    QRect ScreenRect() const override;
    QRect WorkArea() const override;
    AppBarMetrics Metrics() const override;
    QRect WindowRect() const override;
    void MoveWindow(const QRect& rect) override;
    QPoint CursorPos() const override;
    bool IsWindowActive() const override;
    QString WindowCaption() const override;
    void ShowMessage(const QString& title, const QString& text) override;

protected:
    QWidget* Window() const { return m_window; }
    // The screen's top left in desktop coordinates; the bar counts from (0, 0).
    QPoint ScreenOrigin() const;

private:
    QPointer<QWidget> m_window;
};

// Makes the shell for a ticker's window; tests put a simulated shell in its place.
using AppBarShellFactory = std::function<std::unique_ptr<AppBarShell>(QWidget&)>;
