// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "SimulatedShell.h"

#include "platform/CRegSettings.h"
#include "support/FakeClock.h"
#include "support/QStringPrinter.h"
#include "support/TestHome.h"
#include "ticker/AppBarState.h"
#include "ticker/TAppBar.h"

#include <QProcess>
#include <QStandardPaths>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

const QSize kScreen(1000, 600);
const QString kRefused = QStringLiteral("Bar|There is already an auto hidden window on this edge.\n\r"
                                        "Only one auto hidden window is allowed on each edge.");

class AppBarTest : public ::testing::Test {
protected:
    AppBarTest() : shell(desktop), bar(clock, kScreen) {}

    // The ticker's set-up: no floating, no dragging to other edges, no sizing, 20 pixels thick.
    static void ConfigureLikeTicker(TAppBar& target) {
        target.SetFlags(0);
        target.SetDockWidth(20);
        target.SetDockHeight(20);
        target.SetSizeIncX(0);
        target.SetSizeIncY(0);
    }

    // The messages sent to the shell since the last call, joined by "|".
    QString TakeLog() {
        const QString text = shell.log.join(u'|');
        shell.log.clear();
        return text;
    }

    FakeClock clock;
    SimulatedDesktop desktop;
    SimulatedShell shell;
    TAppBar bar;
};

TEST_F(AppBarTest, SettingsRoundTripAndAWrongSizeKeepsTheDefaults) {
    TestHome home;
    CRegSettings settings(home.GetPaths());
    ConfigureLikeTicker(bar);
    bar.SetEdge(TAppBar::EdgeBottom);
    bar.SetFloatRect(QRect(10, 20, 300, 40));
    bar.SetAutoHide(true);
    ASSERT_TRUE(bar.SaveSettings(settings));
    TAppBar other(clock, kScreen);
    ASSERT_TRUE(other.LoadSettings(settings));
    EXPECT_EQ(other.State().ToBytes(), bar.State().ToBytes());
    EXPECT_EQ(other.State().floatRect, QRect(10, 20, 300, 40));

    for (const int size : {0, 89, 91}) {
        SCOPED_TRACE(size);
        settings.SaveSetting(TAppBar::kSettingsSection, QStringLiteral("*"),
                             QString::fromLatin1(QByteArray(size, '\1').toHex()));
        TAppBar fresh(clock, kScreen);
        EXPECT_EQ(std::tuple(fresh.LoadSettings(settings), fresh.Edge(), fresh.Flags()),
                  std::tuple(false, int(TAppBar::EdgeFloat), 31));
    }
}

// Setting an edge, then the same edge again, claims, queries and reserves the same band.
TEST_F(AppBarTest, DockingClaimsQueriesAndReservesABandOfTheThickness) {
    const std::pair<int, QString> cases[] = {
        {TAppBar::EdgeLeft, u"0,0 20x560"_s},
        {TAppBar::EdgeTop, u"0,0 1000x20"_s},
        {TAppBar::EdgeRight, u"980,0 20x560"_s},
        {TAppBar::EdgeBottom, u"0,540 1000x20"_s},
    };
    ConfigureLikeTicker(bar);
    bar.Extends(shell);
    TakeLog();
    for (const auto& [edge, band] : cases) {
        for (const bool again : {false, true}) {
            SCOPED_TRACE(testing::Message() << edge << (again ? " again" : ""));
            const int before = bar.Edge();
            bar.SetEdge(edge);
            const QString release =
                before <= TAppBar::EdgeBottom ? u"SetAutoHideBar %1 0|"_s.arg(before) : QString();
            EXPECT_EQ(TakeLog(),
                      release +
                          u"SetAutoHideBar %1 1|QueryPos %1|SetPos %1 %2|Move %2"_s.arg(edge).arg(band));
        }
    }
}

// A floating bar reserves nothing and has no edge to release; a detached bar sends nothing more.
TEST_F(AppBarTest, FloatingReservesNothingAndDetachUnregisters) {
    shell.window = QRect(50, 60, 200, 30);
    bar.Extends(shell);
    EXPECT_EQ(TakeLog(), u"New|SetPos 5 0,0 0x0|Move 50,60 200x30"_s);
    bar.Detach();
    EXPECT_EQ(TakeLog(), u"Remove"_s);
    bar.Extends(shell);
    TakeLog();
    bar.SetEdge(TAppBar::EdgeUnregistered);
    bar.SetEdge(TAppBar::EdgeBottom);
    EXPECT_TRUE(TakeLog().startsWith(u"Remove|New|"_s));
    bar.Detach();
    EXPECT_EQ(TakeLog(), u"SetAutoHideBar 3 0|Remove"_s);
    EXPECT_TRUE(desktop.autoHideOwners.isEmpty());
    bar.SetEdge(TAppBar::EdgeTop);
    EXPECT_TRUE(shell.log.isEmpty());
}

// A second auto-hidden bar on an edge is refused with the message and stays docked, reserving its
// strip like any bar without auto-hide. The check slides the first one out only when the cursor
// has gone and another window is active.
TEST_F(AppBarTest, OneAutoHiddenBarPerEdgeSlidesOutWhenTheCursorHasGone) {
    bar.SetAutoHide(true);
    bar.SetAutoHideDelay(250);
    bar.Extends(shell);
    bar.SetEdge(TAppBar::EdgeTop);
    EXPECT_TRUE(bar.AutoHide());
    EXPECT_TRUE(shell.reserved.isEmpty()) << "an auto-hiding bar reserves nothing";
    const auto secondBar = [&](bool refused) {
        SimulatedShell secondShell(desktop);
        TAppBar second(clock, kScreen);
        second.SetAutoHide(true);
        second.Extends(secondShell);
        second.SetEdge(TAppBar::EdgeTop);
        const QString state =
            QStringList{second.AutoHide() ? u"hides"_s : u"stays"_s, secondShell.messages.join(u'|'),
                        SimulatedShell::Text(secondShell.reserved), SimulatedShell::Text(secondShell.window)}
                .join(u'/');
        EXPECT_EQ(state, refused ? u"stays/"_s + kRefused + u"/0,0 1000x32/0,0 1000x32"_s
                                 : u"hides//0,0 0x0/0,-30 1000x32"_s);
    };
    secondBar(true);

    bar.SlideIn();
    // Within twice the double-click size below the bar, the cursor still counts as on it. Rows:
    // cursor height below the bar, the bar's window active, milliseconds, still shown.
    for (const auto& [below, active, ms, shown] : {std::tuple{7, false, 250, true},
                                                   {9, true, 250, true},
                                                   {9, false, 249, true},
                                                   {9, false, 1, false}}) {
        shell.cursor = QPoint(500, 32 + below);
        shell.active = active;
        clock.Advance(ms);
        EXPECT_EQ(bar.AutoHideShown(), shown) << below << " " << active << " " << ms;
    }
    EXPECT_EQ(shell.window, QRect(0, -30, 1000, 32));
    bar.Detach();
    EXPECT_EQ(clock.ActiveTimers(), 0);
    secondBar(false);
}

// The strip is twice the border: 2 pixels with a 1-pixel border.
TEST_F(AppBarTest, AnAutoHiddenBarLeavesAStripAndSlidesInAndOut) {
    const std::tuple<int, QRect, QRect> cases[] = {
        {TAppBar::EdgeLeft, QRect(-30, 0, 32, 600), QRect(0, 0, 32, 600)},
        {TAppBar::EdgeTop, QRect(0, -30, 1000, 32), QRect(0, 0, 1000, 32)},
        {TAppBar::EdgeRight, QRect(998, 0, 32, 600), QRect(968, 0, 32, 600)},
        {TAppBar::EdgeBottom, QRect(0, 598, 1000, 32), QRect(0, 568, 1000, 32)},
    };
    for (const auto& [edge, hidden, shown] : cases) {
        SCOPED_TRACE(edge);
        SimulatedDesktop ownDesktop;
        SimulatedShell ownShell(ownDesktop);
        TAppBar hiding(clock, kScreen);
        hiding.SetAutoHide(true);
        hiding.Extends(ownShell);
        hiding.SetEdge(edge);
        QList<QRect> windows{ownShell.window};
        hiding.MouseOver();
        windows << ownShell.window;
        hiding.Activated(false);
        EXPECT_EQ(windows << ownShell.window, (QList<QRect>{hidden, shown, hidden}));
    }
}

// With the ticker's set-up dragging never changes the edge and no sizing border is offered; the
// caption and client area are left alone.
TEST_F(AppBarTest, TheTickersSettingsNeitherMoveNorSizeTheBar) {
    ConfigureLikeTicker(bar);
    bar.Extends(shell);
    for (const int edge : {0, 1, 2, 5, 3}) {
        bar.SetEdge(edge);
        for (int code = TAppBar::HitLeft; code <= TAppBar::HitBottomRight; ++code) {
            EXPECT_EQ(bar.HitTest(code), TAppBar::HitBorder) << "edge " << edge << " code " << code;
        }
        EXPECT_EQ(bar.HitTest(2), 2);
        EXPECT_EQ(bar.HitTest(1), 1);
    }
    const QRect docked = shell.window;
    bar.EnterSizeMove();
    for (const QPoint point :
         {QPoint(0, 0), QPoint(500, 2), QPoint(2, 300), QPoint(998, 300), QPoint(500, 300)}) {
        for (const bool ctrl : {false, true}) {
            SCOPED_TRACE(testing::Message() << point.x() << ',' << point.y() << " ctrl " << ctrl);
            EXPECT_EQ(bar.EdgeFromPoint(point, ctrl), TAppBar::EdgeBottom);
            EXPECT_EQ(bar.Moving(point, ctrl), docked);
        }
    }
    bar.ExitSizeMove(docked);
    EXPECT_EQ(bar.Edge(), TAppBar::EdgeBottom);
    EXPECT_EQ(shell.window, docked);
}

// The edge under a dragged point follows the screen diagonals and the permissions; a drag from an
// edge to the middle floats the bar centred on the cursor.
TEST_F(AppBarTest, TheEdgeFromAPointFollowsTheScreenDiagonalsAndThePermissions) {
    const int sides = TAppBar::AllowRight | TAppBar::AllowLeft;
    const std::tuple<int, QPoint, bool, int> cases[] = {
        {31, QPoint(500, 2), false, TAppBar::EdgeTop},
        {31, QPoint(500, 598), false, TAppBar::EdgeBottom},
        {31, QPoint(2, 300), false, TAppBar::EdgeLeft},
        {31, QPoint(998, 300), false, TAppBar::EdgeRight},
        {31, QPoint(500, 300), false, TAppBar::EdgeFloat},
        {31, QPoint(500, 2), true, TAppBar::EdgeFloat},
        // On the diagonal the horizontal edges win only when strictly steeper.
        {31, QPoint(5, 3), false, TAppBar::EdgeLeft},
        // Top not allowed but floating is; with neither, the current edge (right) stays.
        {31 & ~TAppBar::AllowTop, QPoint(500, 2), false, TAppBar::EdgeFloat},
        {sides, QPoint(500, 2), false, TAppBar::EdgeRight},
        {sides, QPoint(2, 300), false, TAppBar::EdgeLeft},
        {TAppBar::AllowFloat, QPoint(500, 2), false, TAppBar::EdgeFloat},
        // Ctrl without permission to float changes nothing.
        {TAppBar::AllowTop, QPoint(500, 2), true, TAppBar::EdgeTop},
    };
    shell.window = QRect(0, 0, 200, 100);
    bar.Extends(shell);
    bar.SetEdge(TAppBar::EdgeRight);
    for (const auto& [flags, point, ctrl, edge] : cases) {
        bar.SetFlags(flags);
        EXPECT_EQ(bar.EdgeFromPoint(point, ctrl), edge)
            << "flags " << flags << " at " << point.x() << ',' << point.y();
    }
    bar.SetFlags(31);
    bar.SetEdge(TAppBar::EdgeTop);
    bar.EnterSizeMove();
    const QRect floating = bar.Moving(QPoint(400, 300), false);
    EXPECT_EQ(bar.Edge(), TAppBar::EdgeFloat);
    EXPECT_EQ(floating.size(), QSize(200, 100));
    EXPECT_EQ(floating.center(), QPoint(400, 300));
    EXPECT_EQ(bar.Moving(QPoint(400, 598), false), QRect(0, 528, 1000, 32));
    bar.ExitSizeMove(QRect(0, 528, 1000, 32));
    EXPECT_EQ(bar.Edge(), TAppBar::EdgeBottom);
}

constexpr int kWaitMs = 20000;

// Docked bars on an X server of the test's own, on a display number the server chooses; the probe
// prints the partial strut, the strut, whether its window is a dock, whether a second bar on the
// same edge left it the edge's claim, and whether that bar took over a claim of a vanished window.
TEST(X11StrutTest, ADockedBarReservesItsStripWithAPartialStrut) {
    const QString xvfb = QStandardPaths::findExecutable(QStringLiteral("Xvfb"));
    if (xvfb.isEmpty()) {
        GTEST_SKIP() << "Xvfb is not installed";
    }
    QProcess server;
    server.start(xvfb, {QStringLiteral("-displayfd"), QStringLiteral("1"), QStringLiteral("-screen"),
                        QStringLiteral("0"), QStringLiteral("800x600x24"), QStringLiteral("-nolisten"),
                        QStringLiteral("tcp")});
    QByteArray output;
    while (!output.contains('\n') && server.waitForReadyRead(kWaitMs)) {
        output += server.readAll();
    }
    ASSERT_TRUE(output.contains('\n'));
    const std::pair<int, QByteArray> cases[] = {
        {1, "0 0 20 0 0 0 0 0 0 799 0 0\n0 0 20 0\n1\n1\n1\n"},
        {3, "0 0 0 20 0 0 0 0 0 0 0 799\n0 0 0 20\n1\n1\n1\n"},
        {0, "20 0 0 0 0 599 0 0 0 0 0 0\n20 0 0 0\n1\n1\n1\n"},
    };
    for (const auto& [edge, properties] : cases) {
        SCOPED_TRACE(edge);
        QProcess probe;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("DISPLAY"), u':' + QString::fromLatin1(output.trimmed()));
        environment.remove(QStringLiteral("QT_SCALE_FACTOR"));
        // On a real display the desktop bus library keeps one allocation to the end, which the
        // leak checker of the sanitizer build would turn into a failed exit; this probe is about
        // window properties.
        environment.insert(QStringLiteral("ASAN_OPTIONS"), environment.value(QStringLiteral("ASAN_OPTIONS")) +
                                                               QStringLiteral(":detect_leaks=0"));
        probe.setProcessEnvironment(environment);
        probe.start(QStringLiteral(TAMSEL_STRUT_PROBE), {QString::number(edge)});
        ASSERT_TRUE(probe.waitForFinished(kWaitMs));
        EXPECT_EQ(probe.exitCode(), 0) << probe.readAllStandardError().toStdString();
        EXPECT_EQ(probe.readAllStandardOutput(), properties);
    }
    server.kill();
    server.waitForFinished(kWaitMs);
}

} // namespace
