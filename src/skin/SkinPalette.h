// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPalette>

class QWidget;
class frmTamselSkin;

// The colours that plain controls (lists, text boxes, buttons, scroll bars) take inside a skinned
// window, so that a dark skin never shows a white box: `frame` behind the controls, `base` and
// `alternate` for the rows of lists and the insides of boxes, `text` for every text.
QPalette SkinPalette(QPalette palette, const QColor& frame, const QColor& base, const QColor& alternate,
                     const QColor& text);

// The same for a window of the skin's frame kind, its boxes in the colours of the item grid.
QPalette SkinPalette(const QPalette& palette, const frmTamselSkin& skin, int kind);

// Gives a dialog and all its controls the skin's palette. On a dark frame the outlines of check
// boxes, text boxes and lists (drawn a shade darker than the frame) would vanish, so those
// controls take a lighter frame colour.
void ApplySkinPalette(QWidget& window, const frmTamselSkin& skin, int kind);
