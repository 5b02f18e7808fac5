// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/AlertPlayer.h"
#include "app/MakerSite.h"
#include "app/SharedHelpers.h"
#include "app/WindowPlacement.h"
#include "platform/CRegSettings.h"
#include "support/FakeClock.h"
#include "support/RecordingDesktop.h"
#include "support/TestHome.h"

#include <gtest/gtest.h>

TEST(SharedHelpersTest, NewChannelIdCountsOnFromTheStoredLastId) {
    TestHome home;
    CRegSettings settings(home.GetPaths());
    EXPECT_EQ(NewChannelID(settings), QStringLiteral("A01"));
    EXPECT_EQ(settings.GetSetting(QStringLiteral("Common"), QStringLiteral("LastID"), QString()), QStringLiteral("2561"));
    EXPECT_EQ(NewChannelID(settings), QStringLiteral("A02"));
    settings.SaveSetting(QStringLiteral("Common"), QStringLiteral("LastID"), QStringLiteral("2574"));
    EXPECT_EQ(NewChannelID(settings), QStringLiteral("A0F"));
}

TEST(SharedHelpersTest, TreeKeysSplitAtTheFirstBar) {
    EXPECT_EQ(GroupOfKey(QStringLiteral("News|A01")), QStringLiteral("News"));
    EXPECT_EQ(ChannelOfKey(QStringLiteral("News|A01")), QStringLiteral("A01"));
    EXPECT_EQ(GroupOfKey(QStringLiteral("News")), QStringLiteral("News"));
    EXPECT_EQ(ChannelOfKey(QStringLiteral("News")), QString());
    EXPECT_EQ(ChannelOfKey(QStringLiteral("Tamsel|http://x/a|b")), QStringLiteral("http://x/a|b"));
}

TEST(SharedHelpersTest, KeyAndNameTests) {
    const MakerSite site(QStringLiteral("tamsel://site/"));
    const QString help = site.HelpURL();
    const QString news = site.NewsURL();
    EXPECT_EQ(help, QStringLiteral("tamsel://site/tamsel/help.xml"));
    for (const QString& key : {FolderKey::Today, FolderKey::Yesterday, FolderKey::Week, FolderKey::Flagged,
                               FolderKey::Deleted, FolderKey::Unread, FolderKey::Read}) {
        EXPECT_TRUE(IsVirtualFolder(key)) << key.toStdString();
        EXPECT_TRUE(IsBuiltinChannel(key, help, news));
        EXPECT_FALSE(IsMakerChannel(key, help, news));
    }
    EXPECT_FALSE(IsVirtualFolder(FolderKey::Old));
    EXPECT_FALSE(IsVirtualFolder(help));
    EXPECT_TRUE(IsMakerChannel(news, help, news));
    EXPECT_TRUE(IsBuiltinChannel(help, help, news));
    EXPECT_FALSE(IsBuiltinChannel(QStringLiteral("http://example.org/rss"), help, news));

    EXPECT_TRUE(IsReservedGroupName(QStringLiteral("All Items")));
    EXPECT_TRUE(IsReservedGroupName(QStringLiteral("Spotlight")));
    EXPECT_FALSE(IsReservedGroupName(QStringLiteral("tamsel")));

    EXPECT_FALSE(IsCustomItemField(QStringLiteral("PUBDATE")));
    EXPECT_FALSE(IsCustomItemField(QStringLiteral("read")));
    EXPECT_TRUE(IsCustomItemField(QStringLiteral("Read")));
    EXPECT_TRUE(IsCustomItemField(QStringLiteral("title")));

    EXPECT_TRUE(PointInRect(10, 10, 20, 5, 10, 15));
    EXPECT_TRUE(PointInRect(10, 10, 20, 5, 30, 10));
    EXPECT_FALSE(PointInRect(10, 10, 20, 5, 30.5f, 10));
    EXPECT_EQ(TrimText(QVariant(QStringLiteral("  a b \t"))), QStringLiteral("a b"));
    EXPECT_EQ(TrimText(QVariant(42)), QStringLiteral("42"));
}

TEST(AlertPlayerTest, OneSoundInFiveSecondsAndTheMutedOneStillCounts) {
    TestHome home;
    FakeClock clock;
    CRegSettings settings(home.GetPaths());
    RecordingDesktop desktop;
    AlertPlayer alerts(clock, settings, desktop, QStringLiteral("/res/alert.wav"));

    alerts.PlayAlert();
    EXPECT_EQ(desktop.sounds, QStringList{QStringLiteral("/res/alert.wav")});
    const quint32 first = alerts.LastAlertTick();
    clock.Advance(4900);
    alerts.PlayAlert();
    EXPECT_EQ(desktop.sounds.size(), 1);
    EXPECT_EQ(alerts.LastAlertTick(), first);
    clock.Advance(100);
    alerts.PlayAlert();
    EXPECT_EQ(desktop.sounds.size(), 2);

    settings.SaveSetting(QStringLiteral("PREF"), QStringLiteral("ALERT"), QStringLiteral("False"));
    clock.Advance(6000);
    alerts.PlayAlert();
    EXPECT_EQ(desktop.sounds.size(), 2);
    EXPECT_EQ(alerts.LastAlertTick(), clock.TickCount());
    settings.SaveSetting(QStringLiteral("PREF"), QStringLiteral("ALERT"), QStringLiteral("True"));
    clock.Advance(4000);
    alerts.PlayAlert();
    EXPECT_EQ(desktop.sounds.size(), 2);
}

TEST(WindowPlacementTest, AMaximisedSaveKeepsTheEarlierNormalGeometry) {
    TestHome home;
    CRegSettings settings(home.GetPaths());
    EXPECT_FALSE(WindowPlacement::Restore(settings, QStringLiteral("Tamsel")).has_value());

    WindowPlacement normal{WindowPlacement::Normal, QRect(100, 50, 400, 300)};
    normal.Save(settings, QStringLiteral("Tamsel"));
    EXPECT_EQ(settings.GetSetting(QStringLiteral("Tamsel"), QStringLiteral("Left"), QString()), QStringLiteral("1500"));
    EXPECT_EQ(settings.GetSetting(QStringLiteral("Tamsel"), QStringLiteral("Height"), QString()), QStringLiteral("4500"));
    EXPECT_EQ(settings.GetSetting(QStringLiteral("Tamsel"), QStringLiteral("Saved"), QString()), QStringLiteral("True"));

    WindowPlacement maximised{WindowPlacement::Maximized, QRect(0, 0, 1920, 1080)};
    maximised.Save(settings, QStringLiteral("Tamsel"));
    EXPECT_EQ(settings.GetSetting(QStringLiteral("Tamsel"), QStringLiteral("Width"), QString()), QStringLiteral("6000"));

    const auto restored = WindowPlacement::Restore(settings, QStringLiteral("Tamsel"));
    ASSERT_TRUE(restored.has_value());
    EXPECT_EQ(restored->state, WindowPlacement::Maximized);
    EXPECT_TRUE(restored->geometry.isNull());

    normal.Save(settings, QStringLiteral("Tamsel"));
    EXPECT_EQ(WindowPlacement::Restore(settings, QStringLiteral("Tamsel"))->geometry, QRect(100, 50, 400, 300));
}

TEST(WindowPlacementTest, MissingKeysOfASavedRecordUseTheDefaults) {
    TestHome home;
    CRegSettings settings(home.GetPaths());
    settings.SaveSetting(QStringLiteral("ADDCHANNEL"), QStringLiteral("Saved"), QStringLiteral("True"));
    const auto restored = WindowPlacement::Restore(settings, QStringLiteral("ADDCHANNEL"));
    ASSERT_TRUE(restored.has_value());
    EXPECT_EQ(restored->geometry, QRect(0, 0, 200, 200));
}
