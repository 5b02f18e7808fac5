// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/FakeClock.h"

#include <algorithm>
#include <limits>

class FakeClock::Source final : public TimerSource {
public:
    explicit Source(FakeClock* clock) : m_clock(clock) { m_clock->m_sources.push_back(this); }
    ~Source() override {
        if (m_clock) {
            std::erase(m_clock->m_sources, this);
        }
    }
    void Start(qint64 intervalMs) override {
        m_interval = intervalMs;
        m_active = intervalMs > 0;
        m_due = m_clock->m_elapsedMs + intervalMs;
    }
    void Stop() override { m_active = false; }
    bool IsActive() const override { return m_active; }

    qint64 Due() const { return m_active ? m_due : std::numeric_limits<qint64>::max(); }
    void FireNow() {
        m_due += m_interval;
        Fire();
    }
    void Detach() { m_clock = nullptr; }

private:
    FakeClock* m_clock;
    qint64 m_interval = 0;
    qint64 m_due = 0;
    bool m_active = false;
};

FakeClock::~FakeClock() {
    for (Source* source : m_sources) {
        source->Detach();
    }
}

std::unique_ptr<TimerSource> FakeClock::CreateTimer() {
    return std::make_unique<Source>(this);
}

void FakeClock::Advance(qint64 ms) {
    const qint64 target = m_elapsedMs + ms;
    while (true) {
        Source* next = nullptr;
        for (Source* source : m_sources) {
            if (source->Due() <= target && (!next || source->Due() < next->Due())) {
                next = source;
            }
        }
        if (!next) {
            break;
        }
        m_elapsedMs = std::max(m_elapsedMs, next->Due());
        next->FireNow();
    }
    m_elapsedMs = target;
}

void FakeClock::SetNow(const QDateTime& now) {
    m_start = now.addMSecs(-m_elapsedMs);
}

int FakeClock::ActiveTimers() const {
    return int(std::ranges::count_if(m_sources, [](const Source* s) { return s->IsActive(); }));
}
