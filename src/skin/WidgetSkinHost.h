// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "skin/SkinHost.h"

// The real desktop: message boxes and the system's mouse pointer.
class WidgetSkinHost final : public SkinHost {
public:
    void ShowMessage(const QString& text) override;
    QPointF CursorOn(const SkinSurface& surface) const override;
};
