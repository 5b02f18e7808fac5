// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/LongTimer.h"

#include "platform/Clock.h"

LongTimer::LongTimer(Clock& clock, QObject* parent) : QObject(parent), m_source(clock.CreateTimer()) {
    m_source->SetCallback([this] { Q_EMIT OnTimer(); });
}

LongTimer::~LongTimer() = default;

void LongTimer::SetInterval(quint32 intervalMs) {
    if (intervalMs == m_interval) {
        return;
    }
    m_interval = intervalMs;
    Reschedule();
}

void LongTimer::SetEnabled(bool enabled) {
    if (enabled == m_enabled) {
        return;
    }
    m_enabled = enabled;
    Reschedule();
}

void LongTimer::Reschedule() {
    if (m_enabled && m_interval > 0) {
        m_source->Start(m_interval);
    } else {
        m_source->Stop();
    }
}
