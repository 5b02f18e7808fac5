// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Clock.h"

#include <QDateTime>
#include <vector>

// A clock that moves only when a test advances it. Timers fire in due order, each seeing the
// clock at its own due time, so callbacks behave as they would with real time passing.
class FakeClock final : public Clock {
public:
    ~FakeClock() override;

    quint32 TickCount() const override { return quint32(m_elapsedMs + kFirstTick); }
    QDateTime Now() const override { return m_start.addMSecs(m_elapsedMs); }
    std::unique_ptr<TimerSource> CreateTimer() override;

    // Moves time forward by `ms`, firing every timer that falls due on the way.
    void Advance(qint64 ms);
    // Sets the wall clock without firing timers (for date-dependent tests).
    void SetNow(const QDateTime& now);
    qint64 ElapsedMs() const { return m_elapsedMs; }
    int ActiveTimers() const;

private:
    static constexpr qint64 kFirstTick = 1000;
    class Source;
    friend class Source;

    QDateTime m_start{QDate(2026, 11, 16), QTime(9, 0)};
    qint64 m_elapsedMs = 0;
    std::vector<Source*> m_sources;
};
