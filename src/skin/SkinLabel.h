// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "skin/clsTamselFont.h"

#include <QFont>
#include <QSizeF>
#include <QString>

// A caption of a skin entity with its font and colour. It takes the size of its caption, as the
// caption stands in the skin (placeholders unexpanded), one line high.
class SkinLabel final {
public:
    QString Caption;
    QFont Font = clsTamselFont().GetFont();
    quint32 ForeColor = 0;

    bool IsEmpty() const { return Caption.isEmpty(); }
    QSizeF Extent() const;
    void SetFont(const clsTamselFont& font, bool withColour);
};
