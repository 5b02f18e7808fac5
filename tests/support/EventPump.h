// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QTimer>
#include <functional>

// Serves the event loop until `done` holds; false when it did not within `limitMs`. A short
// wake-up timer makes sure `done` is looked at again even when no event arrives.
inline bool PumpUntil(const std::function<bool()>& done, int limitMs) {
    constexpr int kWakeMs = 10;
    const QDeadlineTimer limit(limitMs);
    QTimer wake;
    wake.start(kWakeMs);
    while (!done()) {
        if (limit.hasExpired()) {
            return false;
        }
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return true;
}
