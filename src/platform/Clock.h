// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDateTime>
#include <functional>
#include <memory>

// A repeating timer: once started it calls its callback every interval until stopped.
class TimerSource {
public:
    virtual ~TimerSource() = default;
    // (Re)starts counting from now; an interval of 0 never fires.
    virtual void Start(qint64 intervalMs) = 0;
    virtual void Stop() = 0;
    virtual bool IsActive() const = 0;

    void SetCallback(std::function<void()> callback) { m_callback = std::move(callback); }

protected:
    void Fire() {
        if (m_callback) {
            m_callback();
        }
    }

private:
    std::function<void()> m_callback;
};

// Time and timers of the program; tests replace it with a clock they advance by hand.
class Clock {
public:
    virtual ~Clock() = default;
    // Milliseconds since an arbitrary start, wrapping at 32 bits like the system's tick count.
    virtual quint32 TickCount() const = 0;
    // The local date and time.
    virtual QDateTime Now() const = 0;
    virtual std::unique_ptr<TimerSource> CreateTimer() = 0;
};

// The real clock, on QTimer and the system time.
class SystemClock final : public Clock {
public:
    quint32 TickCount() const override;
    QDateTime Now() const override;
    std::unique_ptr<TimerSource> CreateTimer() override;
};
