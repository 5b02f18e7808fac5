// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QColor>
#include <QString>

// The colours of one shipped skin; the generator draws every picture of the skin from these.
struct SkinTheme {
    QString name;

    QColor frame;      // background of the frame (the window kinds' frame colour)
    QColor border;     // outer edge of every window
    QColor highlight;  // the light line just inside the top edge
    QColor innerLine;  // lines between the frame bands and the window's content
    QColor captionTop; // caption row gradient
    QColor captionBottom;
    QColor toolbarTop; // second row of the main window and viewer
    QColor toolbarBottom;
    QColor statusTop; // status band at the bottom
    QColor statusBottom;
    QColor grip; // dots of the sizing grips

    QColor glyph; // button symbols
    QColor glyphHover;
    QColor hover;   // button background under the mouse
    QColor pressed; // button background while pressed
    QColor closeHover;
    QColor closePressed;
    QColor closeGlyph;
    QColor accent;

    QColor tickerTop;
    QColor tickerBottom;
    QColor tickerLine;

    // Icons.
    QColor feed;
    QColor feedRead;
    QColor badge;
    QColor error;
    QColor help;
    QColor tag;
    QColor folder;
    QColor folderDark;
    QColor page;
    QColor pageEdge;
    QColor pageLines;
    QColor trash;
    QColor faded;
    QColor iconMark; // the symbol drawn on coloured icon faces

    static SkinTheme Default();
    static SkinTheme Nightfall();
};
