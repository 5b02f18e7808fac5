// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/Clock.h"

#include <QElapsedTimer>
#include <QTimer>
#include <algorithm>
#include <limits>

namespace {

// QTimer takes at most INT_MAX ms; longer intervals are waited out in steps.
class QtTimerSource final : public TimerSource {
public:
    QtTimerSource() {
        m_timer.setSingleShot(true);
        m_timer.setTimerType(Qt::CoarseTimer);
        QObject::connect(&m_timer, &QTimer::timeout, [this] { Step(); });
    }

    void Start(qint64 intervalMs) override {
        m_interval = intervalMs;
        m_remaining = intervalMs;
        if (intervalMs <= 0) {
            m_timer.stop();
            return;
        }
        Arm();
    }
    void Stop() override { m_timer.stop(); }
    bool IsActive() const override { return m_timer.isActive(); }

private:
    void Arm() {
        const qint64 step = std::min<qint64>(m_remaining, std::numeric_limits<int>::max());
        m_remaining -= step;
        m_timer.start(int(step));
    }
    void Step() {
        if (m_remaining > 0) {
            Arm();
            return;
        }
        // Re-arm before firing: the callback may change the interval or stop the timer.
        m_remaining = m_interval;
        Arm();
        Fire();
    }

    QTimer m_timer;
    qint64 m_interval = 0;
    qint64 m_remaining = 0;
};

} // namespace

quint32 SystemClock::TickCount() const {
    static QElapsedTimer started = [] {
        QElapsedTimer timer;
        timer.start();
        return timer;
    }();
    // Start above zero: a tick of 0 means "never" to callers that keep one.
    return quint32(started.elapsed() + 1);
}

QDateTime SystemClock::Now() const {
    return QDateTime::currentDateTime();
}

std::unique_ptr<TimerSource> SystemClock::CreateTimer() {
    return std::make_unique<QtTimerSource>();
}
