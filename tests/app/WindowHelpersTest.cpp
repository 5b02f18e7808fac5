// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/WindowHelpers.h"
#include "platform/CRegSettings.h"
#include "support/TestHome.h"

#include <QApplication>
#include <QScreen>
#include <QWidget>
#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

TEST(WindowHelpersTest, PlacementComesBackWholeOnThisScreenBusyDisablesInputAndOnlyLiveWindowsAreLoaded) {
    TestHome home;
    CRegSettings settings(home.GetPaths());
    QWidget window;
    window.setWindowTitle(u"Properties"_s);
    window.setGeometry(40, 60, 300, 200);
    SaveWindowPlacement(settings, &window, QString());
    EXPECT_EQ(settings.GetSetting(u"Properties"_s, u"Top"_s, QString()), u"900"_s);
    window.setWindowState(Qt::WindowMaximized);
    SaveWindowPlacement(settings, &window, u"Properties"_s);
    EXPECT_EQ(settings.GetSetting(u"Properties"_s, u"WindowState"_s, QString()), u"2"_s);
    EXPECT_EQ(settings.GetSetting(u"Properties"_s, u"Width"_s, QString()), u"4500"_s);

    // Maximised comes back maximised, the widget's own normal geometry untouched; nothing saved
    // leaves it as it was.
    for (const auto& [section, maximised] :
         {std::pair{u"Properties"_s, true}, std::pair{u"Unsaved"_s, false}}) {
        QWidget restored;
        restored.setGeometry(1, 2, 30, 40);
        RestoreWindowPlacement(settings, &restored, section);
        EXPECT_EQ(restored.windowState().testFlag(Qt::WindowMaximized), maximised);
        EXPECT_EQ(restored.geometry(), QRect(1, 2, 30, 40));
    }

    // Saved on a wider screen, or at another scale: it comes back whole on this one.
    const QRect area = QGuiApplication::primaryScreen()->availableGeometry();
    const QString beyond = QString::number((area.right() + 2000) * 15);
    settings.SaveSetting(u"Properties"_s, u"WindowState"_s, u"0"_s);
    settings.SaveSetting(u"Properties"_s, u"Left"_s, beyond);
    settings.SaveSetting(u"Properties"_s, u"Top"_s, beyond);
    QWidget far;
    RestoreWindowPlacement(settings, &far, u"Properties"_s);
    EXPECT_EQ(far.size(), QSize(300, 200));
    EXPECT_TRUE(area.contains(far.geometry())) << far.geometry().x() << "," << far.geometry().y();
    // A record without its geometry takes the default size.
    settings.SaveSetting(u"ADDCHANNEL"_s, u"Saved"_s, u"True"_s);
    RestoreWindowPlacement(settings, &far, u"ADDCHANNEL"_s);
    EXPECT_EQ(far.size(), QSize(200, 200));

    // Busy disables input; only live top-level windows are loaded.
    BeginBusy(&window);
    EXPECT_FALSE(window.isEnabled());
    EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::WaitCursor);
    EndBusy(&window);
    EXPECT_TRUE(window.isEnabled());
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);

    // Kept on top while still hidden, as a dialog is before it shows.
    SetTopMost(&window, true);
    EXPECT_TRUE(window.windowFlags().testFlag(Qt::WindowStaysOnTopHint));
    EXPECT_FALSE(window.isVisible());
    QWidget child(&window);
    auto* gone = new QWidget;
    delete gone;
    EXPECT_EQ(
        (QList<bool>{IsFormLoaded(&window), IsFormLoaded(&child), IsFormLoaded(nullptr), IsFormLoaded(gone)}),
        (QList<bool>{true, false, false, false}));
}
