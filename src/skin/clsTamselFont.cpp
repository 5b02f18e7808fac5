// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "skin/clsTamselFont.h"

#include "skin/SkinColor.h"
#include "skin/SkinSurface.h"

#include <QPalette>
#include <QWidget>

#include <algorithm>

namespace {

// Sizes a skin may ask for; a size of 0 (no number) becomes the smallest.
constexpr double kMinPointSize = 1;
constexpr double kMaxPointSize = 144;

} // namespace

void clsTamselFont::SetFont(QWidget* control, bool withColour) const {
    if (!control) {
        return;
    }
    if (auto* surface = qobject_cast<SkinSurface*>(control)) {
        surface->SetDrawFont(GetFont());
        if (withColour) {
            surface->SetForeColor(SkinColor::ToQColor(Color));
        }
        return;
    }
    control->setFont(GetFont());
    if (withColour) {
        QPalette palette = control->palette();
        const QColor colour = SkinColor::ToQColor(Color);
        palette.setColor(QPalette::WindowText, colour);
        palette.setColor(QPalette::Text, colour);
        palette.setColor(QPalette::ButtonText, colour);
        control->setPalette(palette);
    }
}

QFont clsTamselFont::GetFont() const {
    QFont font(Name);
    font.setPointSizeF(std::clamp(Size, kMinPointSize, kMaxPointSize));
    font.setBold(Bold);
    font.setItalic(Italic);
    font.setUnderline(Underline);
    font.setStrikeOut(StrikeThrough);
    return font;
}
