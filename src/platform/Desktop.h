// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

// Hands things to the desktop: sounds and documents for other programs.
class Desktop {
public:
    virtual ~Desktop() = default;
    // Plays a sound file without waiting for it; a missing file plays nothing.
    virtual void PlaySound(const QString& path) = 0;
    // Opens a URL or file with the user's default program.
    virtual void OpenDocument(const QString& urlOrPath) = 0;
};
