// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "skin/SkinPicture.h"

#include <QSize>
#include <QtGlobal>

#include <array>

class QPainter;

// The frame of one window kind: eight pieces placed or tiled around the edges, on a background
// colour.
class SkinFrame final {
public:
    enum PieceIndex { TopLeft, TopRight, Top, Left, Right, Bottom, BottomLeft, BottomRight, kPieceCount };

    // A piece takes its picture's size; the band thickness keywords may override one side later.
    class Piece final {
    public:
        SkinPicture Picture;
        int Width = 0;
        int Height = 0;

        void SetPicture(const SkinPicture& picture);
        void Clear();
    };

    Piece& At(PieceIndex index) { return m_pieces.at(index); }
    const Piece& At(PieceIndex index) const { return m_pieces.at(index); }
    quint32 Color() const { return m_color; }
    void SetColor(quint32 colour) { m_color = colour; }
    void ClearPieces();

    // Fills `size` with the colour, then copies the pieces unscaled: the top band between the
    // two top corners, the two top corners, the side bands from below the top band down, the
    // bottom band, and last the bottom corners, so that corners cover the last tile of a band.
    // Pieces without a picture are skipped.
    void Paint(QPainter& painter, QSize size, qreal devicePixelRatio) const;

private:
    std::array<Piece, kPieceCount> m_pieces;
    quint32 m_color = 0;
};
