// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Desktop.h"

// The desktop of a program without windows: it plays no sound and opens nothing.
class SilentDesktop final : public Desktop {
public:
    void PlaySound(const QString& path) override { Q_UNUSED(path) }
    void OpenDocument(const QString& urlOrPath) override { Q_UNUSED(urlOrPath) }
};
