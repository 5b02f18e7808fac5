// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringView>
#include <QtGlobal>

// Numbers as skin files write them: a leading number, decimal or "&h" hexadecimal.
class SkinNumber final {
public:
    // Blanks are skipped, then either "&h" (any case) and hexadecimal digits, or an optional sign,
    // digits and one decimal point; reading stops at the first character that does not fit, and
    // text without a number reads 0. Hexadecimal numbers are 32-bit patterns ("&hFFFFFFFF" is
    // 4294967295) so that colours read as written.
    static double Leading(QStringView text);
    // Nearest integer, halves to even (2.5 gives 2, 3.5 gives 4).
    static qint64 Round(double value);
    // "true" in any case is true; everything else is false.
    static bool Boolean(QStringView text);
};
