// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

class SkinSurface;

// What the skin engine asks of a window it paints: the drawing surface covering the window's
// client area, the expansion of placeholders in entity texts, and the functions of its buttons.
// A window that has no surface (or no longer has one) counts as unloaded and is left alone.
// The surface belongs to the window and must not outlive it.
class SkinWindow {
public:
    virtual ~SkinWindow() = default;

    virtual SkinSurface* picSkin() = 0;
    // Entity text with the window's placeholders ("{user}", "{page}", ...) expanded.
    virtual QString DecodeText(const QString& text) = 0;
    // Performs a skin button's function; the name arrives in lower case. Unknown names do nothing.
    virtual void SkinHandler(const QString& function) = 0;
};
