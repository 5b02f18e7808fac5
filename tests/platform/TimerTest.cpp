// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/LongTimer.h"
#include "support/FakeClock.h"

#include <gtest/gtest.h>

TEST(LongTimerTest, FiresEveryIntervalWhileEnabled) {
    FakeClock clock;
    LongTimer timer(clock);
    std::vector<qint64> fired;
    QObject::connect(&timer, &LongTimer::OnTimer, [&] { fired.push_back(clock.ElapsedMs()); });
    timer.SetInterval(7000);
    clock.Advance(10000);
    EXPECT_TRUE(fired.empty());
    timer.SetEnabled(true);
    clock.Advance(21000);
    EXPECT_EQ(fired, (std::vector<qint64>{17000, 24000, 31000}));
    timer.SetEnabled(false);
    clock.Advance(100000);
    EXPECT_EQ(fired.size(), 3u);
}

TEST(LongTimerTest, IntervalZeroNeverFiresAndAChangeReschedulesFromNow) {
    FakeClock clock;
    LongTimer timer(clock);
    int ticks = 0;
    QObject::connect(&timer, &LongTimer::OnTimer, [&] { ++ticks; });
    timer.SetEnabled(true);
    clock.Advance(100000);
    EXPECT_EQ(ticks, 0);
    timer.SetInterval(10000);
    clock.Advance(6000);
    timer.SetInterval(60000);
    clock.Advance(59999);
    EXPECT_EQ(ticks, 0);
    clock.Advance(1);
    EXPECT_EQ(ticks, 1);
    timer.SetInterval(0);
    clock.Advance(1000000);
    EXPECT_EQ(ticks, 1);
}

TEST(LongTimerTest, LongIntervalsBeyondThe16BitRangeAndChangesFromTheHandler) {
    FakeClock clock;
    LongTimer timer(clock);
    std::vector<qint64> fired;
    QObject::connect(&timer, &LongTimer::OnTimer, [&] {
        fired.push_back(clock.ElapsedMs());
        timer.SetInterval(3600000);
    });
    timer.SetInterval(2147483647u);
    timer.SetEnabled(true);
    timer.SetInterval(90000);
    clock.Advance(90000 + 3600000);
    EXPECT_EQ(fired, (std::vector<qint64>{90000, 3690000}));
}

TEST(LongTimerTest, ReEnablingARunningTimerKeepsItsCountdown) {
    FakeClock clock;
    LongTimer timeout(clock);
    int ticks = 0;
    QObject::connect(&timeout, &LongTimer::OnTimer, [&] { ++ticks; });
    timeout.SetInterval(25000);
    timeout.SetEnabled(true);
    clock.Advance(20000);
    timeout.SetEnabled(true);
    clock.Advance(5000);
    EXPECT_EQ(ticks, 1);
}
