// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/WindowHelpers.h"
#include "platform/CRegSettings.h"
#include "support/TestHome.h"

#include <QApplication>
#include <QScreen>
#include <QWidget>
#include <gtest/gtest.h>

TEST(WindowHelpersTest, PlacementRoundTripsThroughTheSettings) {
    TestHome home;
    CRegSettings settings(home.GetPaths());
    QWidget window;
    window.setWindowTitle(QStringLiteral("Properties"));
    window.setGeometry(40, 60, 300, 200);
    SaveWindowPlacement(settings, &window, QString());
    EXPECT_EQ(settings.GetSetting(QStringLiteral("Properties"), QStringLiteral("Top"), QString()),
              QStringLiteral("900"));

    window.setWindowState(Qt::WindowMaximized);
    SaveWindowPlacement(settings, &window, QStringLiteral("Properties"));
    EXPECT_EQ(settings.GetSetting(QStringLiteral("Properties"), QStringLiteral("WindowState"), QString()),
              QStringLiteral("2"));
    EXPECT_EQ(settings.GetSetting(QStringLiteral("Properties"), QStringLiteral("Width"), QString()),
              QStringLiteral("4500"));

    QWidget restored;
    restored.setGeometry(1, 2, 30, 40);
    RestoreWindowPlacement(settings, &restored, QStringLiteral("Properties"));
    EXPECT_TRUE(restored.windowState().testFlag(Qt::WindowMaximized));
    EXPECT_EQ(restored.geometry(), QRect(1, 2, 30, 40));

    // Saved on a wider screen, or at another scale: it comes back whole on this one.
    const QRect area = QGuiApplication::primaryScreen()->availableGeometry();
    const QString beyond = QString::number((area.right() + 2000) * 15);
    const std::pair<QString, QString> record[] = {{QStringLiteral("Saved"), QStringLiteral("True")},
                                                  {QStringLiteral("WindowState"), QStringLiteral("0")},
                                                  {QStringLiteral("Left"), beyond},
                                                  {QStringLiteral("Top"), beyond},
                                                  {QStringLiteral("Width"), QStringLiteral("4500")},
                                                  {QStringLiteral("Height"), QStringLiteral("3000")}};
    for (const auto& [key, value] : record) {
        settings.SaveSetting(QStringLiteral("Far"), key, value);
    }
    QWidget far;
    RestoreWindowPlacement(settings, &far, QStringLiteral("Far"));
    EXPECT_EQ(far.size(), QSize(300, 200));
    EXPECT_TRUE(area.contains(far.geometry())) << far.geometry().x() << "," << far.geometry().y();

    QWidget fresh;
    fresh.setGeometry(5, 6, 70, 80);
    RestoreWindowPlacement(settings, &fresh, QStringLiteral("Unsaved"));
    EXPECT_EQ(fresh.geometry(), QRect(5, 6, 70, 80));
}

TEST(WindowHelpersTest, BusyDisablesInputAndLoadedFormsAreTopLevel) {
    QWidget window;
    BeginBusy(&window);
    EXPECT_FALSE(window.isEnabled());
    EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::WaitCursor);
    EndBusy(&window);
    EXPECT_TRUE(window.isEnabled());
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);

    EXPECT_TRUE(IsFormLoaded(&window));
    QWidget child(&window);
    EXPECT_FALSE(IsFormLoaded(&child));
    EXPECT_FALSE(IsFormLoaded(nullptr));
    auto* gone = new QWidget;
    delete gone;
    EXPECT_FALSE(IsFormLoaded(gone));

    SetTopMost(&window, true);
    EXPECT_TRUE(window.windowFlags().testFlag(Qt::WindowStaysOnTopHint));
    SetTopMost(&window, false);
    EXPECT_FALSE(window.windowFlags().testFlag(Qt::WindowStaysOnTopHint));
}
