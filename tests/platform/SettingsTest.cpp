// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/CRegSettings.h"
#include "support/TestHome.h"

#include <QDir>
#include <QFile>
#include <gtest/gtest.h>

TEST(SettingsTest, MissingOrEmptyValuesReadAsTheCallersDefault) {
    TestHome home;
    CRegSettings settings(home.GetPaths());
    EXPECT_EQ(settings.GetSetting(QStringLiteral("SETTINGS"), QStringLiteral("SKINNAME"), QStringLiteral("Default")), QStringLiteral("Default"));
    EXPECT_EQ(settings.GetSetting(QStringLiteral("SETTINGS"), QStringLiteral("SKINNAME"), QString()), QString());
    ASSERT_TRUE(settings.SaveSetting(QStringLiteral("SETTINGS"), QStringLiteral("SKINNAME"), QString()));
    EXPECT_EQ(settings.GetSetting(QStringLiteral("SETTINGS"), QStringLiteral("SKINNAME"), QStringLiteral("x")), QStringLiteral("x"));
}

TEST(SettingsTest, ValuesRoundTripCaseBlindAndSurviveANewReader) {
    TestHome home;
    {
        CRegSettings settings(home.GetPaths());
        ASSERT_TRUE(settings.SaveSetting(QStringLiteral("Ticker"), QStringLiteral("Edge"), QStringLiteral("3")));
        ASSERT_TRUE(settings.SaveSetting(QStringLiteral("Spotlight"), QStringLiteral("a=b [x]_lastmod"), QStringLiteral("Tue, 1 = 2\nline\\two")));
        ASSERT_TRUE(settings.SaveSetting(QStringLiteral("AppBar"), QStringLiteral("*"), QStringLiteral("default value")));
        ASSERT_TRUE(settings.SaveSetting(QStringLiteral("ticker"), QStringLiteral("EDGE"), QStringLiteral("2")));
    }
    CRegSettings again(home.GetPaths());
    EXPECT_EQ(again.GetSetting(QStringLiteral("TICKER"), QStringLiteral("edge"), QString()), QStringLiteral("2"));
    EXPECT_EQ(again.GetSetting(QStringLiteral("Spotlight"), QStringLiteral("a=b [x]_lastmod"), QString()), QStringLiteral("Tue, 1 = 2\nline\\two"));
    EXPECT_EQ(again.GetSetting(QStringLiteral("AppBar"), QStringLiteral("*"), QString()), QStringLiteral("default value"));
    EXPECT_TRUE(QFile::exists(home.File(QStringLiteral("config/Orvane/Tamsel.conf"))));
}

TEST(SettingsTest, DeleteRemovesAValueOrAWholeSection) {
    TestHome home;
    CRegSettings settings(home.GetPaths());
    settings.SaveSetting(QStringLiteral("AppBar"), QStringLiteral("Edge"), QStringLiteral("1"));
    settings.SaveSetting(QStringLiteral("AppBar"), QStringLiteral("Auto"), QStringLiteral("True"));
    settings.SaveSetting(QStringLiteral("AppBar\\Inner"), QStringLiteral("X"), QStringLiteral("1"));
    settings.SaveSetting(QStringLiteral("Other"), QStringLiteral("Y"), QStringLiteral("1"));
    EXPECT_TRUE(settings.DeleteSetting(QStringLiteral("AppBar"), QStringLiteral("edge")));
    EXPECT_FALSE(settings.DeleteSetting(QStringLiteral("AppBar"), QStringLiteral("edge")));
    EXPECT_EQ(settings.GetSetting(QStringLiteral("AppBar"), QStringLiteral("Edge"), QStringLiteral("d")), QStringLiteral("d"));
    EXPECT_EQ(settings.GetSetting(QStringLiteral("AppBar"), QStringLiteral("Auto"), QStringLiteral("d")), QStringLiteral("True"));
    EXPECT_TRUE(settings.DeleteSetting(QStringLiteral("AppBar"), QString()));
    EXPECT_EQ(settings.GetSetting(QStringLiteral("AppBar"), QStringLiteral("Auto"), QStringLiteral("d")), QStringLiteral("d"));
    EXPECT_EQ(settings.GetSetting(QStringLiteral("AppBar\\Inner"), QStringLiteral("X"), QStringLiteral("d")), QStringLiteral("d"));
    EXPECT_EQ(settings.GetSetting(QStringLiteral("Other"), QStringLiteral("Y"), QStringLiteral("d")), QStringLiteral("1"));
}

TEST(SettingsTest, TheStartUpEntryIsAnAutostartFileNamingTheProgram) {
    TestHome home;
    CRegSettings settings(home.GetPaths());
    settings.SetCompany(QStringLiteral("Microsoft"));
    settings.SetAppName(QStringLiteral("Windows"));
    const QString run = QStringLiteral("CurrentVersion\\Run");
    EXPECT_EQ(settings.GetSetting(run, QStringLiteral("Tamsel"), QString()), QString());
    ASSERT_TRUE(settings.SaveSetting(run, QStringLiteral("Tamsel"), QStringLiteral("/opt/tamsel/bin/tamsel")));
    EXPECT_EQ(settings.GetSetting(run, QStringLiteral("Tamsel"), QString()), QStringLiteral("/opt/tamsel/bin/tamsel"));
    const QByteArray desktop = home.Read(QStringLiteral("config/autostart/tamsel.desktop"));
    EXPECT_TRUE(desktop.contains("\nExec=/opt/tamsel/bin/tamsel\n")) << desktop.toStdString();
    EXPECT_TRUE(desktop.startsWith("[Desktop Entry]\n"));
    EXPECT_TRUE(settings.DeleteSetting(run, QStringLiteral("Tamsel")));
    EXPECT_FALSE(QFile::exists(home.File(QStringLiteral("config/autostart/tamsel.desktop"))));
    // The program's own values are untouched by the switch and back.
    settings.SetCompany(CRegSettings::kCompany);
    settings.SetAppName(CRegSettings::kAppName);
    EXPECT_FALSE(QFile::exists(home.File(QStringLiteral("config/Microsoft/Windows.conf"))));
}

TEST(SettingsTest, ADamagedFileIsKeptAsideBeforeItIsRewritten) {
    TestHome home;
    home.Write(QStringLiteral("config/Orvane/Tamsel.conf"), "[PREF]\nALERT=False\n\x01garbage line without equals\n");
    CRegSettings settings(home.GetPaths());
    EXPECT_EQ(settings.GetSetting(QStringLiteral("PREF"), QStringLiteral("ALERT"), QStringLiteral("True")), QStringLiteral("False"));
    ASSERT_TRUE(settings.SaveSetting(QStringLiteral("PREF"), QStringLiteral("ALERT"), QStringLiteral("True")));
    const QStringList aside = QDir(home.File(QStringLiteral("config/Orvane"))).entryList({QStringLiteral("Tamsel.conf.damaged-*")});
    ASSERT_EQ(aside.size(), 1);
    EXPECT_TRUE(home.Read(QStringLiteral("config/Orvane/") + aside.first()).contains("garbage"));
}

TEST(SettingsTest, ChangesByAnotherWriterAreSeen) {
    TestHome home;
    CRegSettings first(home.GetPaths());
    CRegSettings second(home.GetPaths());
    EXPECT_EQ(first.GetSetting(QStringLiteral("Common"), QStringLiteral("LastID"), QStringLiteral("2560")), QStringLiteral("2560"));
    second.SaveSetting(QStringLiteral("Common"), QStringLiteral("LastID"), QStringLiteral("2561"));
    EXPECT_EQ(first.GetSetting(QStringLiteral("Common"), QStringLiteral("LastID"), QStringLiteral("2560")), QStringLiteral("2561"));
}

TEST(SettingsTest, TextToBoolean) {
    EXPECT_TRUE(CRegSettings::ToBool(QStringLiteral("True")));
    EXPECT_TRUE(CRegSettings::ToBool(QStringLiteral("true")));
    EXPECT_TRUE(CRegSettings::ToBool(QStringLiteral("-1")));
    EXPECT_FALSE(CRegSettings::ToBool(QStringLiteral("False")));
    EXPECT_FALSE(CRegSettings::ToBool(QStringLiteral("0")));
    EXPECT_FALSE(CRegSettings::ToBool(QStringLiteral("yes")));
    EXPECT_EQ(CRegSettings::FromBool(true), QStringLiteral("True"));
}
