// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "skin/SkinPalette.h"

#include "skin/SkinColor.h"
#include "skin/frmTamselSkin.h"

#include <QAbstractButton>
#include <QAbstractScrollArea>
#include <QComboBox>
#include <QLineEdit>
#include <QWidget>

QPalette SkinPalette(QPalette palette, const QColor& frame, const QColor& base, const QColor& alternate,
                     const QColor& text) {
    const bool dark = base.lightness() < 128;
    palette.setColor(QPalette::Window, frame);
    palette.setColor(QPalette::Base, base);
    palette.setColor(QPalette::AlternateBase, alternate);
    palette.setColor(QPalette::Text, text);
    palette.setColor(QPalette::WindowText, text);
    palette.setColor(QPalette::ButtonText, text);
    palette.setColor(QPalette::Button, dark ? alternate.lighter(130) : alternate);
    palette.setColor(QPalette::PlaceholderText, dark ? text.darker(150) : text.lighter(150));
    palette.setColor(QPalette::Highlight, dark ? alternate.lighter(180) : QColor(0xCC, 0xE0, 0xF5));
    palette.setColor(QPalette::HighlightedText, text);
    palette.setColor(QPalette::Light, dark ? alternate.lighter(160) : QColor(Qt::white));
    palette.setColor(QPalette::Mid, dark ? alternate.lighter(140) : alternate.darker(115));
    palette.setColor(QPalette::Dark, dark ? frame.darker(120) : alternate.darker(140));
    palette.setColor(QPalette::Shadow, frame.darker(150));
    return palette;
}

QPalette SkinPalette(const QPalette& palette, const frmTamselSkin& skin, int kind) {
    return SkinPalette(palette, SkinColor::ToQColor(skin.FrameColor(kind)),
                       SkinColor::ToQColor(skin.GridColorEven()), SkinColor::ToQColor(skin.GridColorOdd()),
                       SkinColor::ToQColor(skin.GetFontColor(skin.GridFont())));
}

void ApplySkinPalette(QWidget& window, const frmTamselSkin& skin, int kind) {
    const QPalette palette = SkinPalette(window.palette(), skin, kind);
    window.setPalette(palette);
    constexpr int kDarkLightness = 128;
    constexpr int kOutlineLighter = 170;
    QPalette boxes = palette;
    if (palette.color(QPalette::Base).lightness() < kDarkLightness) {
        boxes.setColor(QPalette::Window, palette.color(QPalette::Mid).lighter(kOutlineLighter));
    }
    for (QWidget* control : window.findChildren<QWidget*>()) {
        const bool outlined = qobject_cast<QAbstractButton*>(control) || qobject_cast<QLineEdit*>(control) ||
                              qobject_cast<QComboBox*>(control) ||
                              qobject_cast<QAbstractScrollArea*>(control);
        control->setPalette(outlined ? boxes : palette);
    }
}
