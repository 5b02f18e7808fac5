// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "skin/SkinLabel.h"

#include "skin/SkinSurface.h"

QSizeF SkinLabel::Extent() const {
    return SkinSurface::TextExtent(Font, Caption);
}

void SkinLabel::SetFont(const clsTamselFont& font, bool withColour) {
    Font = font.GetFont();
    if (withColour) {
        ForeColor = font.Color;
    }
}
