// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/CRegSettings.h"
#include "support/TestHome.h"

#include <QDir>
#include <QFile>
#include <gtest/gtest.h>

namespace {

class SettingsTest : public ::testing::Test {
protected:
    QString Get(const QString& section, const QString& key, const QString& fallback = QStringLiteral("d")) {
        return settings.GetSetting(section, key, fallback);
    }
    bool Save(const QString& section, const QString& key, const QString& value) {
        return settings.SaveSetting(section, key, value);
    }

    TestHome home;
    CRegSettings settings{home.GetPaths()};
};

TEST_F(SettingsTest, ValuesRoundTripCaseBlindAndSurviveANewReader) {
    EXPECT_EQ(Get(QStringLiteral("SETTINGS"), QStringLiteral("SKINNAME"), QStringLiteral("Default")),
              QStringLiteral("Default"));
    ASSERT_TRUE(Save(QStringLiteral("SETTINGS"), QStringLiteral("SKINNAME"), QString()));
    EXPECT_EQ(Get(QStringLiteral("SETTINGS"), QStringLiteral("SKINNAME")), QStringLiteral("d"));
    ASSERT_TRUE(Save(QStringLiteral("Ticker"), QStringLiteral("Edge"), QStringLiteral("3")));
    ASSERT_TRUE(Save(QStringLiteral("Spotlight"), QStringLiteral("a=b [x]_lastmod"),
                     QStringLiteral("Tue, 1 = 2\nline\\two")));
    ASSERT_TRUE(Save(QStringLiteral("AppBar"), QStringLiteral("*"), QStringLiteral("default value")));
    ASSERT_TRUE(Save(QStringLiteral("ticker"), QStringLiteral("EDGE"), QStringLiteral("2")));
    // A second reader sees the values, and sees later changes of the first.
    CRegSettings again(home.GetPaths());
    EXPECT_EQ(again.GetSetting(QStringLiteral("TICKER"), QStringLiteral("edge"), QString()),
              QStringLiteral("2"));
    EXPECT_EQ(again.GetSetting(QStringLiteral("Spotlight"), QStringLiteral("a=b [x]_lastmod"), QString()),
              QStringLiteral("Tue, 1 = 2\nline\\two"));
    EXPECT_EQ(again.GetSetting(QStringLiteral("AppBar"), QStringLiteral("*"), QString()),
              QStringLiteral("default value"));
    ASSERT_TRUE(Save(QStringLiteral("Common"), QStringLiteral("LastID"), QStringLiteral("2561")));
    EXPECT_EQ(again.GetSetting(QStringLiteral("Common"), QStringLiteral("LastID"), QString()),
              QStringLiteral("2561"));
    EXPECT_TRUE(QFile::exists(home.File(QStringLiteral("config/Orvane/Tamsel.conf"))));
}

TEST_F(SettingsTest, DeleteRemovesAValueOrAWholeSection) {
    Save(QStringLiteral("AppBar"), QStringLiteral("Edge"), QStringLiteral("1"));
    Save(QStringLiteral("AppBar"), QStringLiteral("Auto"), QStringLiteral("True"));
    Save(QStringLiteral("AppBar\\Inner"), QStringLiteral("X"), QStringLiteral("1"));
    Save(QStringLiteral("Other"), QStringLiteral("Y"), QStringLiteral("1"));
    EXPECT_TRUE(settings.DeleteSetting(QStringLiteral("AppBar"), QStringLiteral("edge")));
    EXPECT_FALSE(settings.DeleteSetting(QStringLiteral("AppBar"), QStringLiteral("edge")));
    EXPECT_EQ(Get(QStringLiteral("AppBar"), QStringLiteral("Edge")), QStringLiteral("d"));
    EXPECT_EQ(Get(QStringLiteral("AppBar"), QStringLiteral("Auto")), QStringLiteral("True"));
    EXPECT_TRUE(settings.DeleteSetting(QStringLiteral("AppBar"), QString()));
    EXPECT_EQ(Get(QStringLiteral("AppBar"), QStringLiteral("Auto")), QStringLiteral("d"));
    EXPECT_EQ(Get(QStringLiteral("AppBar\\Inner"), QStringLiteral("X")), QStringLiteral("d"));
    EXPECT_EQ(Get(QStringLiteral("Other"), QStringLiteral("Y")), QStringLiteral("1"));
}

TEST_F(SettingsTest, TheStartUpEntryIsAnAutostartFileNamingTheProgram) {
    settings.SetCompany(QStringLiteral("Microsoft"));
    settings.SetAppName(QStringLiteral("Windows"));
    const QString run = QStringLiteral("CurrentVersion\\Run");
    ASSERT_TRUE(Save(run, QStringLiteral("Tamsel"), QStringLiteral("/opt/tamsel/bin/tamsel")));
    EXPECT_EQ(Get(run, QStringLiteral("Tamsel")), QStringLiteral("/opt/tamsel/bin/tamsel"));
    const QByteArray desktop = home.Read(QStringLiteral("config/autostart/tamsel.desktop"));
    EXPECT_TRUE(desktop.startsWith("[Desktop Entry]\n"));
    EXPECT_TRUE(desktop.contains("\nExec=/opt/tamsel/bin/tamsel\n")) << desktop.toStdString();
    EXPECT_TRUE(settings.DeleteSetting(run, QStringLiteral("Tamsel")));
    EXPECT_FALSE(QFile::exists(home.File(QStringLiteral("config/autostart/tamsel.desktop"))));
    EXPECT_FALSE(QFile::exists(home.File(QStringLiteral("config/Microsoft/Windows.conf"))));
}

TEST_F(SettingsTest, ADamagedFileIsKeptAsideBeforeItIsRewritten) {
    home.Write(QStringLiteral("config/Orvane/Tamsel.conf"),
               "[PREF]\nALERT=False\n\x01garbage line without equals\n");
    CRegSettings damaged(home.GetPaths());
    EXPECT_EQ(damaged.GetSetting(QStringLiteral("PREF"), QStringLiteral("ALERT"), QString()),
              QStringLiteral("False"));
    ASSERT_TRUE(damaged.SaveSetting(QStringLiteral("PREF"), QStringLiteral("ALERT"), QStringLiteral("True")));
    const QStringList aside =
        QDir(home.File(QStringLiteral("config/Orvane"))).entryList({QStringLiteral("Tamsel.conf.damaged-*")});
    ASSERT_EQ(aside.size(), 1);
    EXPECT_TRUE(home.Read(QStringLiteral("config/Orvane/") + aside.first()).contains("garbage"));
}

TEST(SettingsText, BooleansAreTrueOrMinusOne) {
    for (const char* text : {"True", "true", "-1"}) {
        EXPECT_TRUE(CRegSettings::ToBool(QString::fromLatin1(text))) << text;
    }
    for (const char* text : {"False", "0", "yes"}) {
        EXPECT_FALSE(CRegSettings::ToBool(QString::fromLatin1(text))) << text;
    }
}

TEST_F(SettingsTest, DeferredWritesReachTheFileOnlyWhenTheOutermostStretchEnds) {
    const QString file = QStringLiteral("config/Orvane/Tamsel.conf");
    const QString common = QStringLiteral("Common");
    const QString lastId = QStringLiteral("LastID");
    ASSERT_TRUE(Save(common, lastId, QStringLiteral("2560")));
    const QByteArray before = home.Read(file);
    {
        CRegSettings::DeferredWrites outer(settings);
        {
            CRegSettings::DeferredWrites inner(settings);
            for (int id = 2561; id <= 2600; ++id) {
                ASSERT_TRUE(Save(common, lastId, QString::number(id)));
            }
            EXPECT_TRUE(inner.End());
        }
        EXPECT_EQ(Get(common, lastId), QStringLiteral("2600"));
        EXPECT_EQ(home.Read(file), before) << "written before the outermost stretch ended";
        // Another writer meanwhile: the file is read again, and the held values stay.
        CRegSettings other(home.GetPaths());
        ASSERT_TRUE(
            other.SaveSetting(QStringLiteral("PREF"), QStringLiteral("ALERT"), QStringLiteral("False")));
        EXPECT_EQ(Get(QStringLiteral("PREF"), QStringLiteral("ALERT")), QStringLiteral("False"));
        EXPECT_EQ(Get(common, lastId), QStringLiteral("2600"));
    }
    CRegSettings reader(home.GetPaths());
    EXPECT_EQ(reader.GetSetting(common, lastId, QString()), QStringLiteral("2600"));
    EXPECT_EQ(reader.GetSetting(QStringLiteral("PREF"), QStringLiteral("ALERT"), QString()),
              QStringLiteral("False"));

    // A final write that the disk refuses is reported.
    ASSERT_TRUE(QFile::remove(home.File(file)) && QDir().mkpath(home.File(file)));
    CRegSettings::DeferredWrites refused(settings);
    EXPECT_TRUE(Save(common, lastId, QStringLiteral("2601")));
    EXPECT_FALSE(refused.End());
}

} // namespace
