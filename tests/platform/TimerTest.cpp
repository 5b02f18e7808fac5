// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/LongTimer.h"
#include "support/FakeClock.h"

#include <gtest/gtest.h>

namespace {

// It fires every interval while enabled; interval 0 never fires; a change of the interval
// reschedules from now. Long intervals, changes made by the handler, and enabling again while
// enabled keep the countdown.
TEST(LongTimerTest, FiresEveryIntervalWhileEnabled) {
    FakeClock clock;
    LongTimer timer{clock};
    std::vector<qint64> fired;
    QObject::connect(&timer, &LongTimer::OnTimer, [&] { fired.push_back(clock.ElapsedMs()); });
    timer.SetInterval(7000);
    clock.Advance(10000);
    timer.SetEnabled(true);
    clock.Advance(21000);
    timer.SetEnabled(false);
    clock.Advance(100000);
    timer.SetInterval(0);
    timer.SetEnabled(true);
    clock.Advance(100000);
    timer.SetInterval(10000);
    clock.Advance(6000);
    timer.SetInterval(60000);
    clock.Advance(60000);

    QObject::connect(&timer, &LongTimer::OnTimer, [&] { timer.SetInterval(3600000); });
    timer.SetInterval(2147483647u);
    clock.Advance(1000000);
    timer.SetInterval(90000);
    clock.Advance(80000);
    timer.SetEnabled(true);
    clock.Advance(10000 + 3600000);
    // Every 7 s from enabling; 60 s after the last change of the interval, at 237 s; 90 s after the
    // change at 1297 s, and then the hour that the handler set.
    EXPECT_EQ(fired, (std::vector<qint64>{17000, 24000, 31000, 297000, 1387000, 4987000}));
}

} // namespace
