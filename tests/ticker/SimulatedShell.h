// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ticker/AppBarShell.h"

#include <QList>
#include <QMap>
#include <QRect>
#include <QString>
#include <QStringList>

// The auto-hide slots of one simulated desktop, shared by the bars on it.
struct SimulatedDesktop {
    QMap<int, const void*> autoHideOwners;
};

// A desktop shell that records every message a bar sends, as text, and keeps a window rectangle.
// The screen is 1000 by 600 with a 40-pixel task bar at the bottom; QueryPos keeps bars off it.
class SimulatedShell final : public AppBarShell {
public:
    static constexpr QRect kScreen{0, 0, 1000, 600};
    explicit SimulatedShell(SimulatedDesktop& desktop) : m_desktop(desktop) {}

    bool Register() override { return Log(QStringLiteral("New")); }
    void Unregister() override { Log(QStringLiteral("Remove")); }
    QRect QueryPos(int edge, const QRect& proposed) override {
        Log(QStringLiteral("QueryPos %1").arg(edge));
        QRect granted = proposed;
        // Bars keep off the task bar: a bottom bar ends above it, side bars are as high as the rest.
        granted.setBottom(edge == 3 ? WorkArea().bottom() : granted.top() + WorkArea().height() - 1);
        return granted;
    }
    void SetPos(int edge, const QRect& rect) override {
        Log(QStringLiteral("SetPos %1 %2").arg(edge).arg(Text(rect)));
        reserved = rect;
    }
    bool SetAutoHideBar(int edge, bool claim) override {
        Log(QStringLiteral("SetAutoHideBar %1 %2").arg(edge).arg(claim ? 1 : 0));
        const void* holder = m_desktop.autoHideOwners.value(edge, nullptr);
        if (holder != nullptr && holder != this) {
            return !claim;
        }
        if (claim) {
            m_desktop.autoHideOwners[edge] = this;
        } else {
            m_desktop.autoHideOwners.remove(edge);
        }
        return true;
    }
    void Activate() override { Log(QStringLiteral("Activate")); }
    void WindowPosChanged() override { Log(QStringLiteral("WindowPosChanged")); }

    QRect ScreenRect() const override { return kScreen; }
    QRect WorkArea() const override { return kScreen.adjusted(0, 0, 0, -40); }
    AppBarMetrics Metrics() const override { return {}; }
    QRect WindowRect() const override { return window; }
    void MoveWindow(const QRect& rect) override {
        Log(QStringLiteral("Move %1").arg(Text(rect)));
        window = rect;
    }
    QPoint CursorPos() const override { return cursor; }
    bool IsWindowActive() const override { return active; }
    QString WindowCaption() const override { return QStringLiteral("Bar"); }
    void ShowMessage(const QString& title, const QString& text) override { messages << title + u'|' + text; }

    bool Log(const QString& message) {
        log << message;
        return true;
    }
    // "left,top widthxheight"
    static QString Text(const QRect& r) {
        return QString::asprintf("%d,%d %dx%d", r.left(), r.top(), r.width(), r.height());
    }

    QStringList log;
    QStringList messages;
    QRect window{100, 100, 300, 50};
    QRect reserved;
    QPoint cursor{500, 300};
    bool active = false;

private:
    SimulatedDesktop& m_desktop;
};
