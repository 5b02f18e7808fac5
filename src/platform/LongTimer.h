// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <memory>

class Clock;
class TimerSource;

// A timer with a 32-bit millisecond interval: while Enabled it raises OnTimer every Interval ms.
// Interval 0 never fires. Changing the interval while running reschedules the next tick from now.
class LongTimer final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(LongTimer)
public:
    explicit LongTimer(Clock& clock, QObject* parent = nullptr);
    ~LongTimer() override;

    quint32 Interval() const { return m_interval; }
    void SetInterval(quint32 intervalMs);
    bool Enabled() const { return m_enabled; }
    // Enabling a running timer leaves its countdown as it is.
    void SetEnabled(bool enabled);

Q_SIGNALS:
    void OnTimer();

private:
    void Reschedule();

    std::unique_ptr<TimerSource> m_source;
    quint32 m_interval = 0;
    bool m_enabled = false;
};
