// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

class Clock;
class CRegSettings;
class Desktop;

// The alert sound, at most once in five seconds, and only when PREF/ALERT allows it.
class AlertPlayer final {
public:
    static constexpr quint32 kQuietMs = 5000;

    AlertPlayer(Clock& clock, CRegSettings& settings, Desktop& desktop, QString soundFile);

    // A suppressed alert does not restart the quiet time; a muted one does.
    void PlayAlert();
    quint32 LastAlertTick() const { return m_lastAlertTick; }

private:
    Clock& m_clock;
    CRegSettings& m_settings;
    Desktop& m_desktop;
    QString m_soundFile;
    quint32 m_lastAlertTick = 0;
};
