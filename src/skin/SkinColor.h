// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QColor>
#include <QtGlobal>

// Skin colours are 32-bit values 0x00BBGGRR, or a system colour 0x800000nn whose low byte picks
// one of the desktop's colours (0x8000000F is the button face).
class SkinColor final {
public:
    static constexpr quint32 kSystemFlag = 0x80000000U;
    static constexpr quint32 kButtonFace = 0x8000000FU;

    static QColor ToQColor(quint32 colour);
};
