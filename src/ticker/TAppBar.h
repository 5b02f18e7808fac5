// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ticker/AppBarState.h"

#include <QPoint>
#include <QRect>
#include <QSize>
#include <QString>

#include <memory>

class AppBarShell;
class CRegSettings;
class Clock;
class TimerSource;

// Turns a top-level window into a desktop application bar: a strip along one screen edge that
// the shell keeps free of maximised windows, or a floating window, or an auto-hidden strip that
// slides the bar in when the mouse touches it. The bar talks to the desktop and moves its window
// only through an AppBarShell; the window reports drags, sizing, activation and mouse moves
// through the operations below.
class TAppBar final {
public:
    enum EdgeCode {
        EdgeLeft = 0,
        EdgeTop = 1,
        EdgeRight = 2,
        EdgeBottom = 3,
        EdgeUnregistered = 4,
        EdgeFloat = 5
    };
    enum FlagBit { AllowLeft = 1, AllowRight = 2, AllowTop = 4, AllowBottom = 8, AllowFloat = 16 };
    // Border codes of hit-testing: the sides and corners that size a window, and a plain border.
    enum HitCode {
        HitLeft = 10,
        HitRight = 11,
        HitTop = 12,
        HitTopLeft = 13,
        HitTopRight = 14,
        HitBottom = 15,
        HitBottomLeft = 16,
        HitBottomRight = 17,
        HitBorder = 18
    };
    // The side or corner being dragged while sizing.
    enum SizingSide {
        SizeLeft = 1,
        SizeRight = 2,
        SizeTop = 3,
        SizeTopLeft = 4,
        SizeTopRight = 5,
        SizeBottom = 6,
        SizeBottomLeft = 7,
        SizeBottomRight = 8
    };
    // The shell's notifications to a bar.
    enum Notification { NotifyPosChanged = 1, NotifyFullScreenApp = 2, NotifyWindowArrange = 3 };

    static inline const QString kSettingsSection = QStringLiteral("AppBar");
    static inline const QString kMessage =
        QStringLiteral("There is already an auto hidden window on this edge.\n\r"
                       "Only one auto hidden window is allowed on each edge.");

    struct TrackLimits {
        QSize minimum;
        QSize maximum;
        bool hasMaximum = true;
    };

    // The tracking limits' defaults follow `screen`.
    TAppBar(Clock& clock, QSize screen);
    ~TAppBar();
    TAppBar(const TAppBar&) = delete;
    TAppBar& operator=(const TAppBar&) = delete;

    // Attaches to the window behind `shell`: starts the auto-hide check, takes the window's
    // rectangle as the floating one, registers and applies the current edge.
    void Extends(AppBarShell& shell);
    // Stops the check and unregisters; the bar no longer touches the window.
    void Detach();
    bool Attached() const { return m_shell != nullptr; }
    // Applies the current edge again.
    void UpdateBar();

    // The record from the "AppBar" settings (90 bytes as hex text); false when there is none of
    // that size, and the current values stay.
    bool LoadSettings(CRegSettings& settings);
    bool SaveSettings(CRegSettings& settings) const;
    const AppBarState& State() const { return m_state; }

    // During a drag, the edge the drag proposes.
    int Edge() const;
    // Releases the old edge's auto-hide claim, then docks, floats or unregisters.
    void SetEdge(int edge);
    int Flags() const { return m_state.flags; }
    void SetFlags(int flags) { m_state.flags = flags; }
    bool AutoHide() const { return m_state.autoHide; }
    void SetAutoHide(bool on) { m_state.autoHide = on; }
    int AutoHideDelay() const { return m_state.autoHideDelay; }
    void SetAutoHideDelay(int ms);
    int SizeIncX() const { return m_state.sizeIncX; }
    void SetSizeIncX(int step) { m_state.sizeIncX = step; }
    int SizeIncY() const { return m_state.sizeIncY; }
    void SetSizeIncY(int step) { m_state.sizeIncY = step; }
    int DockWidth() const { return m_state.dockWidth; }
    void SetDockWidth(int width) { m_state.dockWidth = width; }
    int DockHeight() const { return m_state.dockHeight; }
    void SetDockHeight(int height) { m_state.dockHeight = height; }
    QRect FloatRect() const { return m_state.floatRect; }
    void SetFloatRect(const QRect& rect) { m_state.floatRect = rect; }
    void SetFloatTracking(QSize minimum, QSize maximum);
    void SetDockedTracking(QSize minimum, QSize maximum);
    bool OptionA() const { return m_state.optionA; }
    void SetOptionA(bool on) { m_state.optionA = on; }
    bool OptionB() const { return m_state.optionB; }
    void SetOptionB(bool on) { m_state.optionB = on; }
    qint16 OptionC() const { return m_state.optionC; }
    void SetOptionC(qint16 value) { m_state.optionC = value; }
    bool AutoHideShown() const { return m_autoHideShown; }

    // The edge a drag to screen point `point` proposes.
    int EdgeFromPoint(QPoint point, bool ctrlHeld) const;
    // The window is being moved with the cursor at `cursor`; returns where it should be.
    QRect Moving(QPoint cursor, bool ctrlHeld);
    // The window is being sized from `side` to `proposed`; returns the snapped rectangle.
    QRect Sizing(int side, const QRect& proposed) const;
    void EnterSizeMove();
    // A move or resize ended with the window at `windowRect`.
    void ExitSizeMove(const QRect& windowRect);
    TrackLimits MinMaxInfo() const;
    // What a border point of the window may do: the hit code the system proposed, or a plain
    // border where the bar forbids sizing.
    int HitTest(int code) const;
    void ShellCallback(int notification);
    void Activated(bool active);
    void WindowPosChanged();
    // The mouse is over the bar: an auto-hidden bar slides in.
    void MouseOver();
    void SlideIn();
    void SlideOut();
    // The auto-hide check: slides out when another window is active and the cursor went away.
    void AutoHideCheck();

    // The rectangle a docked edge gets, before any off-screen shift.
    QRect DockedRect(int edge);

private:
    static bool IsDocked(int edge) { return edge >= EdgeLeft && edge <= EdgeBottom; }
    static int EdgeBit(int edge);
    void ApplyEdge();
    void MoveTo(QRect rect);
    QRect HiddenRect(int edge, QRect rect) const;
    QRect EdgeRect(int edge);

    Clock& m_clock;
    AppBarState m_state;
    AppBarShell* m_shell = nullptr;
    std::unique_ptr<TimerSource> m_timer;
    int m_dragEdge = EdgeUnregistered;
    bool m_autoHideShown = false;
    bool m_registered = false;
};
