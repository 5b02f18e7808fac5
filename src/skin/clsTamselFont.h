// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QFont>
#include <QString>
#include <QtGlobal>

class QWidget;

// One font slot of a skin. Outline, Shadow and ShadowColor are kept as the skin gives them; no
// drawing uses them.
class clsTamselFont final {
public:
    QString Name = QStringLiteral("Arial");
    double Size = 8; // points
    bool Bold = false;
    bool Italic = false;
    bool Underline = false;
    bool StrikeThrough = false;
    bool Outline = false;
    bool Shadow = false;
    quint32 Color = 0;
    quint32 ShadowColor = 0;

    // Gives the control this font (name, size, bold, italic, underline, strike-through) and, when
    // asked, its colour as the text colour. A missing control is left alone.
    void SetFont(QWidget* control, bool withColour) const;
    QFont GetFont() const;
};
