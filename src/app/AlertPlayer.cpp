// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/AlertPlayer.h"

#include "platform/CRegSettings.h"
#include "platform/Clock.h"
#include "platform/Desktop.h"

AlertPlayer::AlertPlayer(Clock& clock, CRegSettings& settings, Desktop& desktop, QString soundFile)
    : m_clock(clock), m_settings(settings), m_desktop(desktop), m_soundFile(std::move(soundFile)) {}

void AlertPlayer::PlayAlert() {
    const quint32 now = m_clock.TickCount();
    // Unsigned difference: correct across the 32-bit wrap of the tick count in either order.
    const quint32 since = now - m_lastAlertTick;
    const quint32 before = m_lastAlertTick - now;
    if (m_lastAlertTick != 0 && std::min(since, before) < kQuietMs) {
        return;
    }
    m_lastAlertTick = now;
    if (CRegSettings::ToBool(m_settings.GetSetting(QStringLiteral("PREF"), QStringLiteral("ALERT"), QStringLiteral("True")))) {
        m_desktop.PlaySound(m_soundFile);
    }
}
