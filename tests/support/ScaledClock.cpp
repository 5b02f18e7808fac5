// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/ScaledClock.h"

#include <algorithm>

namespace {

// A real timer that fires on the shortened interval and reports as the asked one.
class ScaledTimerSource final : public TimerSource {
public:
    ScaledTimerSource(const ScaledClock& clock, std::unique_ptr<TimerSource> real)
        : m_clock(clock), m_real(std::move(real)) {
        m_real->SetCallback([this] { Fire(); });
    }

    void Start(qint64 intervalMs) override { m_real->Start(m_clock.RealInterval(intervalMs)); }
    void Stop() override { m_real->Stop(); }
    bool IsActive() const override { return m_real->IsActive(); }

private:
    const ScaledClock& m_clock;
    std::unique_ptr<TimerSource> m_real;
};

} // namespace

ScaledClock::ScaledClock(int factor) : m_factor(std::max(factor, 1)) {}

quint32 ScaledClock::TickCount() const {
    return quint32(quint64(m_real.TickCount()) * quint64(m_factor));
}

std::unique_ptr<TimerSource> ScaledClock::CreateTimer() {
    return std::make_unique<ScaledTimerSource>(*this, m_real.CreateTimer());
}

qint64 ScaledClock::RealInterval(qint64 intervalMs) const {
    if (intervalMs <= 0) {
        return 0;
    }
    return std::max<qint64>(intervalMs / m_factor, 1);
}
