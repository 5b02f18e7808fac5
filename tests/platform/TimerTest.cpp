// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/LongTimer.h"
#include "support/FakeClock.h"

#include <gtest/gtest.h>

namespace {

class LongTimerTest : public ::testing::Test {
protected:
    LongTimerTest() {
        QObject::connect(&timer, &LongTimer::OnTimer, [this] { fired.push_back(clock.ElapsedMs()); });
    }
    FakeClock clock;
    LongTimer timer{clock};
    std::vector<qint64> fired;
};

TEST_F(LongTimerTest, FiresEveryIntervalWhileEnabled) {
    timer.SetInterval(7000);
    clock.Advance(10000);
    timer.SetEnabled(true);
    clock.Advance(21000);
    timer.SetEnabled(false);
    clock.Advance(100000);
    EXPECT_EQ(fired, (std::vector<qint64>{17000, 24000, 31000}));
}

TEST_F(LongTimerTest, IntervalZeroNeverFiresAndAChangeReschedulesFromNow) {
    timer.SetEnabled(true);
    clock.Advance(100000);
    timer.SetInterval(10000);
    clock.Advance(6000);
    timer.SetInterval(60000);
    clock.Advance(59999);
    EXPECT_TRUE(fired.empty());
    clock.Advance(1);
    timer.SetInterval(0);
    clock.Advance(1000000);
    EXPECT_EQ(fired, (std::vector<qint64>{166000}));
}

TEST_F(LongTimerTest, LongIntervalsChangesFromTheHandlerAndReEnablingKeepTheCountdown) {
    QObject::connect(&timer, &LongTimer::OnTimer, [this] { timer.SetInterval(3600000); });
    timer.SetInterval(2147483647u);
    timer.SetEnabled(true);
    timer.SetInterval(90000);
    clock.Advance(80000);
    timer.SetEnabled(true);
    clock.Advance(10000 + 3600000);
    EXPECT_EQ(fired, (std::vector<qint64>{90000, 3690000}));
}

} // namespace
