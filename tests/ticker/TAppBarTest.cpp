// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ticker/TAppBar.h"
#include "platform/CRegSettings.h"
#include "support/DataRows.h"
#include "support/FakeClock.h"
#include "support/TestHome.h"
#include "ticker/AppBarShell.h"

#include <QMap>
#include <QProcess>
#include <QStandardPaths>
#include <gtest/gtest.h>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

const QSize kScreen(1000, 600);

// A desktop shell that records every message a bar sends, as text, and keeps a window rectangle.
// The screen is 1000 by 600 with a 40-pixel task bar at the bottom; QueryPos keeps bars off it.
class SimulatedShell final : public AppBarShell {
public:
    // `desktop` holds the auto-hide claims of the simulated desktop by edge (none where null), shared
    // by its bars.
    explicit SimulatedShell(QMap<int, const void*>& desktop) : m_desktop(desktop) {}

    bool Register() override {
        log << u"New"_s;
        return true;
    }
    void Unregister() override { log << u"Remove"_s; }
    QRect QueryPos(int edge, const QRect& proposed) override {
        log << u"QueryPos %1"_s.arg(edge);
        return proposed.intersected(WorkArea());
    }
    void SetPos(int edge, const QRect& rect) override { log << u"SetPos %1 %2"_s.arg(edge).arg(Text(rect)); }
    bool SetAutoHideBar(int edge, bool claim) override {
        log << u"SetAutoHideBar %1 %2"_s.arg(edge).arg(claim ? 1 : 0);
        const void* holder = m_desktop.value(edge);
        if (holder && holder != this) {
            return !claim;
        }
        m_desktop[edge] = claim ? this : nullptr;
        return true;
    }
    void Activate() override { log << u"Activate"_s; }
    void WindowPosChanged() override { log << u"WindowPosChanged"_s; }

    QRect ScreenRect() const override { return QRect(QPoint(), kScreen); }
    QRect WorkArea() const override { return ScreenRect().adjusted(0, 0, 0, -40); }
    AppBarMetrics Metrics() const override { return {}; }
    QRect WindowRect() const override { return window; }
    void MoveWindow(const QRect& rect) override {
        log << u"Move %1"_s.arg(Text(rect));
        window = rect;
    }
    QPoint CursorPos() const override { return cursor; }
    bool IsWindowActive() const override { return active; }
    QString WindowCaption() const override { return QStringLiteral("Bar"); }
    void ShowMessage(const QString& title, const QString& text) override { log << title + u'|' + text; }

    // "left,top widthxheight"
    static QString Text(const QRect& r) {
        return QString::asprintf("%d,%d %dx%d", r.left(), r.top(), r.width(), r.height());
    }

    QStringList log;
    QRect window{100, 100, 300, 50};
    QPoint cursor{500, 300};
    bool active = false;

private:
    QMap<int, const void*>& m_desktop;
};

const QString kRefused = QStringLiteral("Bar|There is already an auto hidden window on this edge.\n\r"
                                        "Only one auto hidden window is allowed on each edge.");

// Per edge, for a bar 20 pixels thick: the band it reserves when docked, and its window when
// auto-hidden, hidden and shown.
const std::tuple<int, QString, QString, QString> kEdges[] = {
    {TAppBar::EdgeLeft, u"0,0 20x560"_s, u"-18,0 20x600"_s, u"0,0 20x600"_s},
    {TAppBar::EdgeTop, u"0,0 1000x20"_s, u"0,-18 1000x20"_s, u"0,0 1000x20"_s},
    {TAppBar::EdgeRight, u"980,0 20x560"_s, u"998,0 20x600"_s, u"980,0 20x600"_s},
    {TAppBar::EdgeBottom, u"0,540 1000x20"_s, u"0,598 1000x20"_s, u"0,580 1000x20"_s},
};

class AppBarTest : public ::testing::Test {
protected:
    // The bar as the ticker sets it up: no floating, no dragging to other edges, no sizing, 20 pixels
    // thick.
    AppBarTest() : shell(desktop), bar(clock, kScreen) {
        bar.SetFlags(0);
        bar.SetDockWidth(20);
        bar.SetDockHeight(20);
        bar.SetSizeIncX(0);
        bar.SetSizeIncY(0);
    }

    // The messages sent to the shell since the last call, joined by "|".
    QString TakeLog() { return std::exchange(shell.log, {}).join(u'|'); }

    FakeClock clock;
    QMap<int, const void*> desktop;
    SimulatedShell shell;
    TAppBar bar;
};

// The saved record holds the whole state, the floating rectangle too.
TEST_F(AppBarTest, SettingsRoundTripAndAWrongSizeKeepsTheDefaults) {
    TestHome home;
    CRegSettings settings(home.GetPaths());
    bar.SetEdge(TAppBar::EdgeBottom);
    bar.SetFloatRect(QRect(10, 20, 300, 40));
    bar.SetAutoHide(true);
    TAppBar other(clock, kScreen);
    ASSERT_TRUE(bar.SaveSettings(settings) && other.LoadSettings(settings));
    EXPECT_EQ(other.State().ToBytes(), bar.State().ToBytes());

    for (const int size : {0, 89, 91}) {
        SCOPED_TRACE(size);
        settings.SaveSetting(TAppBar::kSettingsSection, QStringLiteral("*"),
                             QString::fromLatin1(QByteArray(size, '\1').toHex()));
        TAppBar fresh(clock, kScreen);
        EXPECT_EQ(std::tuple(fresh.LoadSettings(settings), fresh.Edge(), fresh.Flags()),
                  std::tuple(false, int(TAppBar::EdgeFloat), 31));
    }
}

// A new bar floats where its window is and reserves nothing; detached then, it has no edge to
// release. Setting an edge, then the same edge again, claims, queries and reserves the same band.
// Unregistered by edge 4, a bar registers again when it is given an edge; detached, it releases
// its edge and sends nothing more.
TEST_F(AppBarTest, DockingClaimsQueriesAndReservesABandOfTheThickness) {
    bar.Extends(shell);
    bar.Detach();
    EXPECT_EQ(TakeLog(), u"New|SetPos 5 0,0 0x0|Move 100,100 300x50|Remove"_s);
    bar.Extends(shell);
    TakeLog();
    for (const auto& [edge, band, hidden, shown] : kEdges) {
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
    bar.SetEdge(TAppBar::EdgeUnregistered);
    bar.SetEdge(TAppBar::EdgeBottom);
    EXPECT_EQ(TakeLog().section(u'|', 0, 3), u"SetAutoHideBar 3 0|Remove|New|SetAutoHideBar 3 1"_s);
    bar.Detach();
    EXPECT_EQ(TakeLog(), u"SetAutoHideBar 3 0|Remove"_s);
    bar.SetEdge(TAppBar::EdgeTop);
    EXPECT_TRUE(shell.log.isEmpty());
}

// An auto-hidden bar reserves nothing and leaves a strip of twice the border (2 pixels) on the
// screen; the mouse slides it in, and losing the focus slides it out. A second auto-hidden bar on
// an edge is refused with the message and stays docked, reserving its band like any bar without
// auto-hide. The check slides the first one out only when the cursor has gone and another window
// is active.
TEST_F(AppBarTest, OneAutoHiddenBarPerEdgeSlidesInAndOut) {
    bar.SetAutoHide(true);
    bar.SetAutoHideDelay(250);
    bar.Extends(shell);
    for (const auto& [edge, band, hidden, shown] : kEdges) {
        SCOPED_TRACE(edge);
        bar.SetEdge(edge);
        bar.MouseOver();
        bar.Activated(false);
        EXPECT_EQ(TakeLog().section(u'|', -6),
                  u"SetAutoHideBar %1 1|SetPos %1 0,0 0x0|Move %2|Move %3|Move %2|Activate"_s.arg(edge).arg(
                      hidden, shown));
    }
    // A second bar on the bottom edge: whether it hides, then the messages it sent.
    const auto secondBar = [&]() -> QString {
        SimulatedShell secondShell(desktop);
        TAppBar second(clock, kScreen);
        second.SetAutoHide(true);
        second.Extends(secondShell);
        second.SetEdge(TAppBar::EdgeBottom);
        return (second.AutoHide() ? u"hides|"_s : u"stays|"_s) + secondShell.log.join(u'|');
    };
    // What a new floating bar sends up to its claim of the bottom edge.
    const QString docking = u"New|SetPos 5 0,0 0x0|Move 100,100 300x50|SetAutoHideBar 3 1|"_s;
    EXPECT_EQ(secondBar(),
              u"stays|"_s + docking + kRefused + u"|QueryPos 3|SetPos 3 0,528 1000x32|Move 0,528 1000x32"_s);

    bar.SlideIn();
    // Within twice the double-click size above the bar, the cursor still counts as on it. Rows:
    // cursor height above the bar, the bar's window active, milliseconds, then the bar's top.
    for (const auto& [above, active, ms, top] :
         {std::tuple{7, false, 250, 580}, {9, true, 250, 580}, {9, false, 249, 580}, {9, false, 1, 598}}) {
        shell.cursor = QPoint(500, 580 - above);
        shell.active = active;
        clock.Advance(ms);
        EXPECT_EQ(std::pair(bar.AutoHideShown(), shell.window),
                  std::pair(top == 580, QRect(0, top, 1000, 20)))
            << above << " " << active << " " << ms;
    }
    bar.Detach();
    EXPECT_EQ(clock.ActiveTimers(), 0);
    EXPECT_EQ(secondBar(), u"hides|"_s + docking + u"SetPos 3 0,0 0x0|Move 0,598 1000x32"_s);
}

// With the ticker's set-up no sizing border is offered on any edge, and the caption, client area
// and other codes are left alone. The edge under a dragged point follows the screen diagonals and
// the permissions (data/drag_edges.txt); without any, the bar stays where it is. A drag from an edge to the
// middle floats the bar centred on the cursor; one that ends on the bar's own edge keeps its thickness.
TEST_F(AppBarTest, DraggingFollowsTheScreenDiagonalsAndThePermissions) {
    shell.window = QRect(0, 0, 200, 100);
    bar.Extends(shell);
    for (const int edge : {0, 1, 5, 3, 2}) {
        bar.SetEdge(edge);
        for (int code = 1; code <= TAppBar::HitBottomRight; ++code) {
            EXPECT_EQ(bar.HitTest(code), code < TAppBar::HitLeft ? code : int(TAppBar::HitBorder))
                << "edge " << edge << " code " << code;
        }
    }
    ExpectTable("drag_edges.txt", 13, [&](const QString& row) {
        const QStringList words = QString(row).replace(u',', u' ').split(u' ');
        bar.SetFlags(words.at(0).toInt());
        const QPoint point(words.at(1).toInt(), words.at(2).toInt());
        return QString::number(bar.EdgeFromPoint(point, words.at(3) == u"ctrl"));
    });
    bar.SetFlags(31);
    bar.SetEdge(TAppBar::EdgeTop);
    bar.EnterSizeMove();
    const QRect floating = bar.Moving(QPoint(400, 300), false);
    EXPECT_EQ(std::tuple(bar.Edge(), floating.size(), floating.center()),
              std::tuple(int(TAppBar::EdgeFloat), QSize(200, 100), QPoint(400, 300)));
    EXPECT_EQ(bar.Moving(QPoint(400, 598), false), QRect(0, 540, 1000, 20));
    bar.ExitSizeMove(QRect(0, 540, 1000, 20));
    bar.EnterSizeMove();
    EXPECT_EQ(bar.Moving(QPoint(400, 598), false), QRect(0, 540, 1000, 20));
    bar.ExitSizeMove(QRect(0, 500, 1000, 30));
    EXPECT_EQ(std::pair(bar.Edge(), shell.window),
              std::pair(int(TAppBar::EdgeBottom), QRect(0, 530, 1000, 30)));
}

constexpr int kWaitMs = 20000;

// Docked bars on an X server of the test's own, on a display number the server chooses; for each
// edge the probe prints the partial strut, the strut, whether its window is a dock, whether a second
// bar on the same edge left it the edge's claim, and whether that bar took over a claim of a
// vanished window.
TEST(X11StrutTest, ADockedBarReservesItsStripWithAPartialStrut) {
    const QString xvfb = QStandardPaths::findExecutable(QStringLiteral("Xvfb"));
    if (xvfb.isEmpty()) {
        GTEST_SKIP() << "Xvfb is not installed";
    }
    QProcess server;
    server.start(xvfb, QStringLiteral("-displayfd 1 -screen 0 800x600x24 -nolisten tcp").split(u' '));
    // It prints its display number once it accepts clients.
    while (!server.canReadLine() && server.waitForReadyRead(kWaitMs)) {
    }
    ASSERT_TRUE(server.canReadLine());
    QProcess probe;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    // On a real display the desktop bus library keeps one allocation to the end, which the leak
    // checker of the sanitizer build would turn into a failed exit; this probe is about window
    // properties.
    environment.insert(u"ASAN_OPTIONS"_s, environment.value(u"ASAN_OPTIONS"_s) + u":detect_leaks=0"_s);
    probe.setProcessEnvironment(environment);
    probe.start(QStringLiteral(TAMSEL_STRUT_PROBE),
                {u"-display"_s, u':' + QString::fromLatin1(server.readLine().trimmed())});
    ASSERT_TRUE(probe.waitForFinished(kWaitMs));
    EXPECT_EQ(probe.exitCode(), 0) << probe.readAllStandardError().toStdString();
    // Top, bottom and left edge in turn.
    EXPECT_EQ(probe.readAllStandardOutput(),
              QByteArrayLiteral("0 0 20 0 0 0 0 0 0 799 0 0\n0 0 20 0\n1\n1\n1\n"
                                "0 0 0 20 0 0 0 0 0 0 0 799\n0 0 0 20\n1\n1\n1\n"
                                "20 0 0 0 0 599 0 0 0 0 0 0\n20 0 0 0\n1\n1\n1\n"));
    server.kill();
    server.waitForFinished(kWaitMs);
}

} // namespace
