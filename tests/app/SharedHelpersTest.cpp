// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/SharedHelpers.h"
#include "app/AlertPlayer.h"
#include "app/MakerSite.h"
#include "platform/CRegSettings.h"
#include "support/FakeClock.h"
#include "support/RecordingDesktop.h"
#include "support/TestHome.h"

#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

TEST(SharedHelpersTest, KeysNamesFieldsAndPointsAreToldApart) {
    // A tree key splits at its first bar: group/channel.
    QStringList split;
    for (const QString& key : {u"News|A01"_s, u"News"_s, u"Tamsel|http://x/a|b"_s}) {
        split.append(GroupOfKey(key) + u'/' + ChannelOfKey(key));
    }
    EXPECT_EQ(split, (QStringList{u"News/A01"_s, u"News/"_s, u"Tamsel/http://x/a|b"_s}));

    const MakerSite site(u"tamsel://site/"_s);
    const QString help = site.HelpURL();
    const QString news = site.NewsURL();
    EXPECT_EQ(help, u"tamsel://site/tamsel/help.xml"_s);
    // Per key: whether it is a virtual folder, a built-in channel, one of the maker's channels.
    QStringList kinds;
    for (const QString& key :
         {FolderKey::Today, FolderKey::Yesterday, FolderKey::Week, FolderKey::Flagged, FolderKey::Deleted,
          FolderKey::Unread, FolderKey::Read, FolderKey::Old, help, news, u"http://example.org/rss"_s}) {
        kinds.append(u"%1%2%3"_s.arg(int(IsVirtualFolder(key)))
                         .arg(int(IsBuiltinChannel(key, help, news)))
                         .arg(int(IsMakerChannel(key, help, news))));
    }
    EXPECT_EQ(kinds.join(u' '), u"110 110 110 110 110 110 110 000 011 011 000"_s);

    EXPECT_TRUE(IsReservedGroupName(u"All Items"_s));
    EXPECT_TRUE(IsReservedGroupName(u"Spotlight"_s));
    EXPECT_FALSE(IsReservedGroupName(u"tamsel"_s));
    for (const auto& [field, custom] :
         {std::pair{u"PUBDATE"_s, false}, std::pair{u"read"_s, false}, std::pair{u"delete"_s, false},
          std::pair{u"Read"_s, true}, std::pair{u"title"_s, true}}) {
        EXPECT_EQ(IsCustomItemField(field), custom) << field.toStdString();
    }

    // The rectangle 10,10 20x5 holds its edges.
    for (const auto& [x, y, inside] :
         {std::tuple{10.0f, 15.0f, true}, std::tuple{30.0f, 10.0f, true}, std::tuple{30.5f, 10.0f, false},
          std::tuple{9.5f, 12.0f, false}, std::tuple{20.0f, 9.0f, false}, std::tuple{20.0f, 15.5f, false}}) {
        EXPECT_EQ(PointInRect(10, 10, 20, 5, x, y), inside) << x << "," << y;
    }
    EXPECT_EQ(TrimText(QVariant(u"  a b \t"_s)), u"a b"_s);
    EXPECT_EQ(TrimText(QVariant(42)), u"42"_s);
}

TEST(AlertPlayerTest, OneSoundInFiveSecondsAndTheMutedOneStillCounts) {
    TestHome home;
    FakeClock clock;
    CRegSettings settings(home.GetPaths());
    RecordingDesktop desktop;
    AlertPlayer alerts(clock, settings, desktop, u"/res/alert.wav"_s);
    // Each step: advance the clock, the alert setting, the sounds played so far.
    const std::tuple<quint32, QString, qsizetype> steps[] = {{0, u"True"_s, 1},
                                                             {4900, u"True"_s, 1},
                                                             {100, u"True"_s, 2},
                                                             {6000, u"False"_s, 2},
                                                             {4000, u"True"_s, 2}};
    for (const auto& [advance, alert, sounds] : steps) {
        SCOPED_TRACE(clock.TickCount());
        clock.Advance(advance);
        settings.SaveSetting(u"PREF"_s, u"ALERT"_s, alert);
        alerts.PlayAlert();
        EXPECT_EQ(desktop.sounds.size(), sounds);
    }
    EXPECT_EQ(desktop.sounds.first(), u"/res/alert.wav"_s);
    EXPECT_EQ(alerts.LastAlertTick(), clock.TickCount() - 4000) << "the muted alert was the last to count";
}
