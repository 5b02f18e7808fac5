// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPointF>
#include <QString>

class SkinSurface;

// The desktop as the skin subsystem needs it; tests put a recording double in its place.
class SkinHost {
public:
    virtual ~SkinHost() = default;

    // Shows a message with an OK button and returns once the user has dismissed it.
    virtual void ShowMessage(const QString& text) = 0;
    // Where the mouse pointer is now, in the surface's layout pixels.
    virtual QPointF CursorOn(const SkinSurface& surface) const = 0;
};
