// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Clock.h"

// The real clock with time running `factor` times faster: timers fire after their interval
// divided by the factor (at least 1 ms), and the tick count advances that much faster. The date
// stays the real one. For a whole program under test whose schedule would otherwise take seconds.
class ScaledClock final : public Clock {
public:
    explicit ScaledClock(int factor);

    quint32 TickCount() const override;
    QDateTime Now() const override { return m_real.Now(); }
    std::unique_ptr<TimerSource> CreateTimer() override;

    // The real interval of a timer that asks for `intervalMs` (0 stays 0: it never fires).
    qint64 RealInterval(qint64 intervalMs) const;

private:
    int m_factor;
    SystemClock m_real;
};
