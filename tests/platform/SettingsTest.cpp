// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/CRegSettings.h"
#include "support/TestHome.h"

#include <QDir>
#include <QFile>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

class SettingsTest : public ::testing::Test {
protected:
    // The values `from` reads for the keys ("Section/Key" each), joined by '|'; "d" when missing.
    static QString Values(CRegSettings& from, const QStringList& keys) {
        QStringList values;
        for (const QString& key : keys) {
            values.append(from.GetSetting(key.section(u'/', 0, 0), key.section(u'/', 1), u"d"_s));
        }
        return values.join(u'|');
    }

    TestHome home;
    CRegSettings settings{home.GetPaths()};
    const QString file = u"config/Orvane/Tamsel.conf"_s;
};

// A damaged file is read as far as it goes and kept aside before it is rewritten. Values
// round-trip whatever their characters, sections and keys compare without letter case, a second
// reader sees the values and later changes of the first; an empty value reads as missing. Deleting
// takes a value, or a section with those below it.
TEST_F(SettingsTest, ValuesRoundTripCaseBlindFromADamagedFileKeptAsideToANewReader) {
    home.Write(file, "[PREF]\nALERT=False\n\x01garbage line without equals\n");
    EXPECT_EQ(Values(settings, {u"PREF/ALERT"_s}), u"False"_s);
    ASSERT_TRUE(settings.SaveSetting(u"PREF"_s, u"ALERT"_s, u"True"_s));
    const QStringList aside = QDir(home.File(u"config/Orvane"_s)).entryList({u"Tamsel.conf.damaged-*"_s});
    ASSERT_EQ(aside.size(), 1);
    EXPECT_TRUE(home.Read(u"config/Orvane/"_s + aside.first()).contains("garbage"));

    ASSERT_TRUE(settings.SaveSetting(u"SETTINGS"_s, u"SKINNAME"_s, QString()));
    ASSERT_TRUE(settings.SaveSetting(u"Ticker"_s, u"Edge"_s, u"3"_s));
    ASSERT_TRUE(settings.SaveSetting(u"Spotlight"_s, u"a=b [x]_lastmod"_s, u"Tue, 1 = 2\nline\\two"_s));
    ASSERT_TRUE(settings.SaveSetting(u"AppBar"_s, u"*"_s, u"default value"_s));
    ASSERT_TRUE(settings.SaveSetting(u"ticker"_s, u"EDGE"_s, u"2"_s));
    CRegSettings again(home.GetPaths());
    const QStringList keys{u"settings/SkinName"_s, u"TICKER/edge"_s,   u"Spotlight/a=b [x]_lastmod"_s,
                           u"AppBar/*"_s,          u"Common/LastID"_s, u"pref/alert"_s};
    EXPECT_EQ(Values(again, keys), u"d|2|Tue, 1 = 2\nline\\two|default value|d|True"_s);
    ASSERT_TRUE(settings.SaveSetting(u"Common"_s, u"LastID"_s, u"2561"_s));
    EXPECT_EQ(Values(again, {u"Common/LastID"_s}), u"2561"_s);

    settings.SaveSetting(u"AppBar"_s, u"Edge"_s, u"1"_s);
    settings.SaveSetting(u"AppBar\\Inner"_s, u"X"_s, u"1"_s);
    EXPECT_TRUE(settings.DeleteSetting(u"AppBar"_s, u"edge"_s));
    EXPECT_FALSE(settings.DeleteSetting(u"AppBar"_s, u"edge"_s));
    const QStringList appBar{u"AppBar/Edge"_s, u"AppBar/*"_s, u"AppBar\\Inner/X"_s, u"Ticker/Edge"_s};
    EXPECT_EQ(Values(settings, appBar), u"d|default value|1|2"_s);
    EXPECT_TRUE(settings.DeleteSetting(u"AppBar"_s, QString()));
    EXPECT_EQ(Values(settings, appBar), u"d|d|d|2"_s);
    QStringList truths = u"True true -1 False 0 yes"_s.split(u' ');
    truths.removeIf([](const QString& text) { return !CRegSettings::ToBool(text); });
    EXPECT_EQ(truths, QStringList({u"True"_s, u"true"_s, u"-1"_s}));
}

// The system's start-up entry is an autostart file that names the program, and nothing else.
TEST_F(SettingsTest, TheStartUpEntryIsAnAutostartFileNamingTheProgram) {
    settings.SetCompany(u"Microsoft"_s);
    settings.SetAppName(u"Windows"_s);
    const QString run = u"CurrentVersion\\Run"_s;
    // The program's path, and its Exec= line: quoted where a launcher would split or expand it.
    const std::pair<QString, QByteArray> programs[] = {
        {u"/opt/tamsel/bin/tamsel"_s, "/opt/tamsel/bin/tamsel"},
        {u"/home/ann/My Apps/tamsel"_s, "\"/home/ann/My Apps/tamsel\""},
        {u"/home/ann/100%/$HOME/a\\b"_s, "\"/home/ann/100%%/\\\\$HOME/a\\\\\\\\b\""},
    };
    for (const auto& [program, exec] : programs) {
        ASSERT_TRUE(settings.SaveSetting(run, u"Tamsel"_s, program));
        EXPECT_EQ(Values(settings, {run + u"/Tamsel"_s}), program);
        const QByteArray desktop = home.Read(u"config/autostart/tamsel.desktop"_s);
        EXPECT_TRUE(desktop.startsWith("[Desktop Entry]\n"));
        EXPECT_TRUE(desktop.contains(QByteArray("\nExec=" + exec + "\n"))) << desktop.toStdString();
    }
    EXPECT_TRUE(settings.DeleteSetting(run, u"Tamsel"_s));
    EXPECT_FALSE(QFile::exists(home.File(u"config/autostart/tamsel.desktop"_s)));
    EXPECT_FALSE(QFile::exists(home.File(u"config/Microsoft/Windows.conf"_s)));
}

// Inside nested stretches, writes reach the file only when the outermost one ends; another
// writer meanwhile is read again, and the held values stay. A final write the disk refuses is
// reported.
TEST_F(SettingsTest, DeferredWritesReachTheFileOnlyWhenTheOutermostStretchEnds) {
    ASSERT_TRUE(settings.SaveSetting(u"Common"_s, u"LastID"_s, u"2560"_s));
    const QByteArray before = home.Read(file);
    const QStringList keys{u"Common/LastID"_s, u"PREF/ALERT"_s};
    {
        CRegSettings::DeferredWrites outer(settings);
        {
            CRegSettings::DeferredWrites inner(settings);
            for (int id = 2561; id <= 2600; ++id) {
                ASSERT_TRUE(settings.SaveSetting(u"Common"_s, u"LastID"_s, QString::number(id)));
            }
            EXPECT_TRUE(inner.End());
        }
        EXPECT_EQ(Values(settings, keys), u"2600|d"_s);
        EXPECT_EQ(home.Read(file), before) << "written before the outermost stretch ended";
        ASSERT_TRUE(CRegSettings(home.GetPaths()).SaveSetting(u"PREF"_s, u"ALERT"_s, u"False"_s));
        EXPECT_EQ(Values(settings, keys), u"2600|False"_s);
    }
    CRegSettings reader(home.GetPaths());
    EXPECT_EQ(Values(reader, keys), u"2600|False"_s);

    ASSERT_TRUE(QFile::remove(home.File(file)) && QDir().mkpath(home.File(file)));
    CRegSettings::DeferredWrites refused(settings);
    EXPECT_TRUE(settings.SaveSetting(u"Common"_s, u"LastID"_s, u"2601"_s));
    EXPECT_FALSE(refused.End());
}

} // namespace
