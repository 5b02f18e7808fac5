// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "SimulatedShell.h"

#include "platform/CRegSettings.h"
#include "support/FakeClock.h"
#include "support/QStringPrinter.h"
#include "support/TestHome.h"
#include "ticker/AppBarState.h"
#include "ticker/TAppBar.h"

#include <QtEndian>

#include <gtest/gtest.h>

namespace {

const QSize kScreen(1000, 600);

class AppBarTest : public ::testing::Test {
protected:
    AppBarTest() : shell(desktop), bar(clock, kScreen) {}

    // The ticker's set-up: no floating, no dragging to other edges, no sizing, 20 pixels thick.
    void ConfigureLikeTicker(TAppBar& target) {
        target.SetFlags(0);
        target.SetDockWidth(20);
        target.SetDockHeight(20);
        target.SetSizeIncX(0);
        target.SetSizeIncY(0);
    }

    FakeClock clock;
    SimulatedDesktop desktop;
    SimulatedShell shell;
    TAppBar bar;
};

TEST_F(AppBarTest, RecordIsNinetyLittleEndianBytesWithTheDefaults) {
    const QByteArray bytes = bar.State().ToBytes();
    ASSERT_EQ(bytes.size(), 90);
    const auto int32At = [&](int offset) { return qFromLittleEndian<qint32>(bytes.constData() + offset); };
    const auto int16At = [&](int offset) { return qFromLittleEndian<qint16>(bytes.constData() + offset); };
    EXPECT_EQ(int32At(0), 90);
    EXPECT_EQ(int32At(4), 5);
    EXPECT_EQ(int32At(8), 31);
    EXPECT_EQ(int16At(12), 0);
    EXPECT_EQ(int16At(14), -1);
    EXPECT_EQ(int16At(16), -1);
    EXPECT_EQ(int32At(20), 400);
    EXPECT_EQ(int32At(24), 1);
    EXPECT_EQ(int32At(28), 1);
    EXPECT_EQ(int32At(32), 32);
    EXPECT_EQ(int32At(36), 32);
    EXPECT_EQ(int32At(64), 1000);
    EXPECT_EQ(int32At(68), 600);
    EXPECT_EQ(int32At(80), 500);
    EXPECT_EQ(int32At(84), 300);
    EXPECT_EQ(int16At(88), 2);
}

TEST_F(AppBarTest, FloatRectIsStoredAsTopLeftRightBottom) {
    bar.SetFloatRect(QRect(10, 20, 300, 40));
    bar.SetAutoHide(true);
    bar.SetOptionC(1);
    const QByteArray bytes = bar.State().ToBytes();
    EXPECT_EQ(qFromLittleEndian<qint32>(bytes.constData() + 40), 20);
    EXPECT_EQ(qFromLittleEndian<qint32>(bytes.constData() + 44), 10);
    EXPECT_EQ(qFromLittleEndian<qint32>(bytes.constData() + 48), 310);
    EXPECT_EQ(qFromLittleEndian<qint32>(bytes.constData() + 52), 60);
    EXPECT_EQ(qFromLittleEndian<qint16>(bytes.constData() + 12), -1);

    AppBarState read;
    ASSERT_TRUE(AppBarState::FromBytes(bytes, &read));
    EXPECT_EQ(read.floatRect, QRect(10, 20, 300, 40));
    EXPECT_TRUE(read.autoHide);
    EXPECT_EQ(read.optionC, 1);
}

TEST_F(AppBarTest, SettingsRoundTripAndAWrongSizeKeepsTheDefaults) {
    TestHome home;
    CRegSettings settings(home.GetPaths());
    ConfigureLikeTicker(bar);
    bar.SetEdge(TAppBar::EdgeBottom);
    ASSERT_TRUE(bar.SaveSettings(settings));

    TAppBar other(clock, kScreen);
    ASSERT_TRUE(other.LoadSettings(settings));
    EXPECT_EQ(other.State().ToBytes(), bar.State().ToBytes());

    for (const int size : {0, 89, 91}) {
        SCOPED_TRACE(size);
        settings.SaveSetting(TAppBar::kSettingsSection, QStringLiteral("*"),
                             QString::fromLatin1(QByteArray(size, '\1').toHex()));
        TAppBar fresh(clock, kScreen);
        EXPECT_FALSE(fresh.LoadSettings(settings));
        EXPECT_EQ(fresh.Edge(), TAppBar::EdgeFloat);
        EXPECT_EQ(fresh.Flags(), 31);
    }
}

TEST_F(AppBarTest, DockingClaimsQueriesAndReservesABandOfTheThickness) {
    struct Case {
        int edge;
        QString band;
    };
    // The simulated shell keeps 40 pixels at the bottom for its task bar.
    const Case cases[] = {
        {TAppBar::EdgeLeft, QStringLiteral("0,0 20x560")},
        {TAppBar::EdgeTop, QStringLiteral("0,0 1000x20")},
        {TAppBar::EdgeRight, QStringLiteral("980,0 20x560")},
        {TAppBar::EdgeBottom, QStringLiteral("0,540 1000x20")},
    };
    ConfigureLikeTicker(bar);
    bar.Extends(shell);
    for (const Case& c : cases) {
        SCOPED_TRACE(c.edge);
        const int before = bar.Edge();
        shell.log.clear();
        bar.SetEdge(c.edge);
        QStringList expected;
        if (before >= TAppBar::EdgeLeft && before <= TAppBar::EdgeBottom) {
            expected << QStringLiteral("SetAutoHideBar %1 0").arg(before);
        }
        expected << QStringLiteral("SetAutoHideBar %1 1").arg(c.edge)
                 << QStringLiteral("QueryPos %1").arg(c.edge)
                 << QStringLiteral("SetPos %1 %2").arg(c.edge).arg(c.band)
                 << QStringLiteral("Move %1").arg(c.band);
        EXPECT_EQ(shell.log, expected);
    }
}

TEST_F(AppBarTest, SettingTheSameEdgeAgainReservesTheSameRectangle) {
    ConfigureLikeTicker(bar);
    bar.Extends(shell);
    bar.SetEdge(TAppBar::EdgeTop);
    const QRect first = shell.reserved;
    shell.log.clear();
    bar.UpdateBar();
    EXPECT_EQ(shell.reserved, first);
    EXPECT_EQ(shell.log.first(), QStringLiteral("SetAutoHideBar 1 0"));
    EXPECT_EQ(shell.log.last(), QStringLiteral("Move 0,0 1000x20"));
}

TEST_F(AppBarTest, FloatingReservesNothingAndUnregisteringRemoves) {
    shell.window = QRect(50, 60, 200, 30);
    bar.Extends(shell);
    EXPECT_EQ(shell.log, QStringList({QStringLiteral("New"), QStringLiteral("SetPos 5 0,0 0x0"),
                                      QStringLiteral("Move 50,60 200x30")}));
    shell.log.clear();
    bar.SetEdge(TAppBar::EdgeUnregistered);
    EXPECT_EQ(shell.log, QStringList({QStringLiteral("Remove")}));
    shell.log.clear();
    bar.SetEdge(TAppBar::EdgeFloat);
    EXPECT_EQ(shell.log.first(), QStringLiteral("New"));
}

TEST_F(AppBarTest, ASecondAutoHiddenBarOnAnEdgeIsRefusedWithTheMessage) {
    bar.SetAutoHide(true);
    bar.Extends(shell);
    bar.SetEdge(TAppBar::EdgeTop);
    EXPECT_TRUE(bar.AutoHide());
    EXPECT_TRUE(shell.messages.isEmpty());
    // An auto-hiding bar reserves nothing.
    EXPECT_TRUE(shell.reserved.isEmpty());

    SimulatedShell secondShell(desktop);
    TAppBar second(clock, kScreen);
    second.SetAutoHide(true);
    second.Extends(secondShell);
    second.SetEdge(TAppBar::EdgeTop);
    EXPECT_FALSE(second.AutoHide());
    ASSERT_EQ(secondShell.messages.size(), 1);
    EXPECT_EQ(secondShell.messages.first(),
              QStringLiteral("Bar|There is already an auto hidden window on this edge.\n\r"
                             "Only one auto hidden window is allowed on each edge."));
    // It stays docked, reserving its strip like any bar without auto-hide.
    EXPECT_EQ(secondShell.reserved, QRect(0, 0, 1000, 32));
    EXPECT_EQ(secondShell.window, QRect(0, 0, 1000, 32));

    // Once the first bar has gone, the edge is free again.
    bar.Detach();
    SimulatedShell thirdShell(desktop);
    TAppBar third(clock, kScreen);
    third.SetAutoHide(true);
    third.Extends(thirdShell);
    third.SetEdge(TAppBar::EdgeTop);
    EXPECT_TRUE(third.AutoHide());
    EXPECT_TRUE(thirdShell.messages.isEmpty());
}

TEST_F(AppBarTest, AnAutoHiddenBarLeavesAStripAndSlidesInAndOut) {
    struct Case {
        int edge;
        QRect hidden;
        QRect shown;
    };
    // The strip is twice the border: 2 pixels with a 1-pixel border.
    const Case cases[] = {
        {TAppBar::EdgeLeft, QRect(-30, 0, 32, 600), QRect(0, 0, 32, 600)},
        {TAppBar::EdgeTop, QRect(0, -30, 1000, 32), QRect(0, 0, 1000, 32)},
        {TAppBar::EdgeRight, QRect(998, 0, 32, 600), QRect(968, 0, 32, 600)},
        {TAppBar::EdgeBottom, QRect(0, 598, 1000, 32), QRect(0, 568, 1000, 32)},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.edge);
        SimulatedDesktop ownDesktop;
        SimulatedShell ownShell(ownDesktop);
        TAppBar hiding(clock, kScreen);
        hiding.SetAutoHide(true);
        hiding.Extends(ownShell);
        hiding.SetEdge(c.edge);
        EXPECT_EQ(ownShell.window, c.hidden);
        hiding.MouseOver();
        EXPECT_TRUE(hiding.AutoHideShown());
        EXPECT_EQ(ownShell.window, c.shown);
        hiding.Activated(false);
        EXPECT_FALSE(hiding.AutoHideShown());
        EXPECT_EQ(ownShell.window, c.hidden);
    }
}

TEST_F(AppBarTest, TheCheckSlidesOutOnlyWhenTheCursorHasGoneAndAnotherWindowIsActive) {
    bar.SetAutoHide(true);
    bar.SetAutoHideDelay(250);
    bar.Extends(shell);
    bar.SetEdge(TAppBar::EdgeTop);
    bar.SlideIn();
    // Within twice the double-click size below the bar, the cursor still counts as on it.
    shell.cursor = QPoint(500, 32 + 7);
    clock.Advance(250);
    EXPECT_TRUE(bar.AutoHideShown());
    shell.cursor = QPoint(500, 32 + 9);
    shell.active = true;
    clock.Advance(250);
    EXPECT_TRUE(bar.AutoHideShown());
    shell.active = false;
    clock.Advance(249);
    EXPECT_TRUE(bar.AutoHideShown());
    clock.Advance(1);
    EXPECT_FALSE(bar.AutoHideShown());
    EXPECT_EQ(shell.window, QRect(0, -30, 1000, 32));
    bar.Detach();
    EXPECT_EQ(clock.ActiveTimers(), 0);
}

TEST_F(AppBarTest, WithNoFlagsDraggingNeverChangesTheEdge) {
    ConfigureLikeTicker(bar);
    bar.Extends(shell);
    bar.SetEdge(TAppBar::EdgeBottom);
    const QRect docked = shell.window;
    bar.EnterSizeMove();
    for (int x = 0; x <= 1000; x += 125) {
        for (int y = 0; y <= 600; y += 75) {
            for (const bool ctrl : {false, true}) {
                SCOPED_TRACE(QStringLiteral("%1,%2 ctrl %3").arg(x).arg(y).arg(ctrl).toStdString());
                EXPECT_EQ(bar.EdgeFromPoint(QPoint(x, y), ctrl), TAppBar::EdgeBottom);
                EXPECT_EQ(bar.Moving(QPoint(x, y), ctrl), docked);
            }
        }
    }
    bar.ExitSizeMove(docked);
    EXPECT_EQ(bar.Edge(), TAppBar::EdgeBottom);
    EXPECT_EQ(shell.window, docked);
}

TEST_F(AppBarTest, TheEdgeFromAPointFollowsTheScreenDiagonalsAndThePermissions) {
    struct Case {
        int flags;
        QPoint point;
        bool ctrl;
        int edge;
    };
    const Case cases[] = {
        {31, QPoint(500, 2), false, TAppBar::EdgeTop},
        {31, QPoint(500, 598), false, TAppBar::EdgeBottom},
        {31, QPoint(2, 300), false, TAppBar::EdgeLeft},
        {31, QPoint(998, 300), false, TAppBar::EdgeRight},
        // Inside the work area, away from its borders, the bar floats.
        {31, QPoint(500, 300), false, TAppBar::EdgeFloat},
        {31, QPoint(500, 2), true, TAppBar::EdgeFloat},
        // On the diagonal the horizontal edges win only when strictly steeper.
        {31, QPoint(5, 3), false, TAppBar::EdgeLeft},
        // Top not allowed: floating is, so the bar floats.
        {31 & ~TAppBar::AllowTop, QPoint(500, 2), false, TAppBar::EdgeFloat},
        // Neither top nor floating allowed: the current edge (right) stays.
        {TAppBar::AllowRight | TAppBar::AllowLeft, QPoint(500, 2), false, TAppBar::EdgeRight},
        {TAppBar::AllowRight | TAppBar::AllowLeft, QPoint(2, 300), false, TAppBar::EdgeLeft},
        // Only floating allowed: every point floats.
        {TAppBar::AllowFloat, QPoint(500, 2), false, TAppBar::EdgeFloat},
        // Ctrl without permission to float changes nothing.
        {TAppBar::AllowTop, QPoint(500, 2), true, TAppBar::EdgeTop},
    };
    bar.Extends(shell);
    bar.SetEdge(TAppBar::EdgeRight);
    for (const Case& c : cases) {
        SCOPED_TRACE(
            QStringLiteral("flags %1 at %2,%3").arg(c.flags).arg(c.point.x()).arg(c.point.y()).toStdString());
        bar.SetFlags(c.flags);
        EXPECT_EQ(bar.EdgeFromPoint(c.point, c.ctrl), c.edge);
    }
}

TEST_F(AppBarTest, ADragFromAnEdgeToTheMiddleFloatsCentredOnTheCursor) {
    shell.window = QRect(0, 0, 200, 100);
    bar.Extends(shell);
    bar.SetEdge(TAppBar::EdgeTop);
    bar.EnterSizeMove();
    EXPECT_EQ(bar.Edge(), TAppBar::EdgeTop);
    const QRect floating = bar.Moving(QPoint(400, 300), false);
    EXPECT_EQ(bar.Edge(), TAppBar::EdgeFloat);
    EXPECT_EQ(floating.size(), QSize(200, 100));
    EXPECT_EQ(floating.center(), QPoint(400, 300));
    EXPECT_EQ(bar.Moving(QPoint(400, 598), false), QRect(0, 528, 1000, 32));
    bar.ExitSizeMove(QRect(0, 528, 1000, 32));
    EXPECT_EQ(bar.Edge(), TAppBar::EdgeBottom);
}

TEST_F(AppBarTest, SizingSnapsToTheStepsFromTheMinimum) {
    bar.SetSizeIncX(10);
    bar.SetSizeIncY(0);
    bar.SetFloatTracking(QSize(33, 0), kScreen);
    bar.Extends(shell);
    // Width 57 is 24 past the minimum: it rounds to 20, so 53; the height is left as it is.
    EXPECT_EQ(bar.Sizing(TAppBar::SizeRight, QRect(100, 100, 57, 41)), QRect(100, 100, 53, 41));
    // Dragging the left side keeps the right side where it was.
    EXPECT_EQ(bar.Sizing(TAppBar::SizeLeft, QRect(100, 100, 59, 41)), QRect(96, 100, 63, 41));
    bar.SetSizeIncY(4);
    EXPECT_EQ(bar.Sizing(TAppBar::SizeTopLeft, QRect(100, 100, 57, 41)), QRect(104, 101, 53, 40));
}

TEST_F(AppBarTest, TheTickersSettingsNeverOfferASizingBorder) {
    ConfigureLikeTicker(bar);
    bar.Extends(shell);
    for (const int edge : {0, 1, 2, 3, 5}) {
        bar.SetEdge(edge);
        for (int code = TAppBar::HitLeft; code <= TAppBar::HitBottomRight; ++code) {
            SCOPED_TRACE(QStringLiteral("edge %1 code %2").arg(edge).arg(code).toStdString());
            EXPECT_EQ(bar.HitTest(code), TAppBar::HitBorder);
        }
        // The caption and client area are left alone.
        EXPECT_EQ(bar.HitTest(2), 2);
        EXPECT_EQ(bar.HitTest(1), 1);
    }
}

TEST_F(AppBarTest, HitTestingKeepsOnlyTheAllowedAxesAndTheSideFacingTheCentre) {
    bar.Extends(shell);
    bar.SetSizeIncX(0);
    bar.SetSizeIncY(1);
    bar.SetEdge(TAppBar::EdgeFloat);
    EXPECT_EQ(bar.HitTest(TAppBar::HitTopLeft), TAppBar::HitTop);
    EXPECT_EQ(bar.HitTest(TAppBar::HitBottomRight), TAppBar::HitBottom);
    EXPECT_EQ(bar.HitTest(TAppBar::HitLeft), TAppBar::HitBorder);
    bar.SetSizeIncX(1);
    bar.SetSizeIncY(0);
    EXPECT_EQ(bar.HitTest(TAppBar::HitTopRight), TAppBar::HitRight);
    EXPECT_EQ(bar.HitTest(TAppBar::HitTop), TAppBar::HitBorder);

    bar.SetSizeIncY(1);
    bar.SetEdge(TAppBar::EdgeTop);
    EXPECT_EQ(bar.HitTest(TAppBar::HitBottom), TAppBar::HitBottom);
    EXPECT_EQ(bar.HitTest(TAppBar::HitTop), TAppBar::HitBorder);
    EXPECT_EQ(bar.HitTest(TAppBar::HitBottomLeft), TAppBar::HitBorder);
    bar.SetEdge(TAppBar::EdgeRight);
    EXPECT_EQ(bar.HitTest(TAppBar::HitLeft), TAppBar::HitLeft);
    EXPECT_EQ(bar.HitTest(TAppBar::HitRight), TAppBar::HitBorder);
}

TEST_F(AppBarTest, EndingAResizeOfADockedBarRecordsItsThickness) {
    bar.Extends(shell);
    bar.SetEdge(TAppBar::EdgeLeft);
    bar.EnterSizeMove();
    bar.ExitSizeMove(QRect(0, 0, 57, 560));
    EXPECT_EQ(bar.DockWidth(), 57);
    EXPECT_EQ(bar.DockHeight(), 32);
    EXPECT_EQ(shell.window, QRect(0, 0, 57, 560));
}

TEST_F(AppBarTest, ShellNotificationsReapplyTheEdgeUnlessFloatingOrHiding) {
    bar.Extends(shell);
    bar.SetEdge(TAppBar::EdgeTop);
    shell.log.clear();
    bar.ShellCallback(TAppBar::NotifyWindowArrange);
    EXPECT_TRUE(shell.log.isEmpty());
    bar.ShellCallback(TAppBar::NotifyPosChanged);
    EXPECT_TRUE(shell.log.contains(QStringLiteral("SetPos 1 0,0 1000x32")));
    bar.SetEdge(TAppBar::EdgeFloat);
    shell.log.clear();
    bar.ShellCallback(TAppBar::NotifyPosChanged);
    EXPECT_TRUE(shell.log.isEmpty());
    bar.ShellCallback(TAppBar::NotifyFullScreenApp);
    EXPECT_TRUE(shell.log.contains(QStringLiteral("SetPos 5 0,0 0x0")));
}

TEST_F(AppBarTest, DetachReleasesTheClaimAndUnregisters) {
    bar.Extends(shell);
    bar.SetEdge(TAppBar::EdgeBottom);
    shell.log.clear();
    bar.Detach();
    EXPECT_EQ(shell.log, QStringList({QStringLiteral("SetAutoHideBar 3 0"), QStringLiteral("Remove")}));
    EXPECT_TRUE(desktop.autoHideOwners.isEmpty());
    shell.log.clear();
    bar.SetEdge(TAppBar::EdgeTop);
    EXPECT_TRUE(shell.log.isEmpty());
}

} // namespace
