// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QRect>
#include <QString>
#include <optional>

class CRegSettings;

// A window's state and normal geometry as kept in the settings, in twips (15 per pixel).
struct WindowPlacement {
    enum State { Normal = 0, Minimized = 1, Maximized = 2 };
    static constexpr int kTwipsPerPixel = 15;

    int state = Normal;
    // In pixels; only meaningful, and only written, in the normal state.
    QRect geometry;

    // Writes "WindowState", the geometry when normal, then "Saved" = "True".
    void Save(CRegSettings& settings, const QString& section) const;
    // The record when one was saved; its geometry is set only when the state is normal.
    static std::optional<WindowPlacement> Restore(CRegSettings& settings, const QString& section);
};
