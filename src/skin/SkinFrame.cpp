// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "skin/SkinFrame.h"

#include "skin/SkinColor.h"

#include <QPainter>

void SkinFrame::Piece::SetPicture(const SkinPicture& picture) {
    Picture = picture;
    Width = picture.Width();
    Height = picture.Height();
}

void SkinFrame::Piece::Clear() {
    SetPicture(SkinPicture());
}

void SkinFrame::ClearPieces() {
    for (Piece& piece : m_pieces) {
        piece.Clear();
    }
}

void SkinFrame::Paint(QPainter& painter, QSize size, qreal devicePixelRatio) const {
    const int w = size.width();
    const int h = size.height();
    const auto copy = [&](const Piece& piece, int x, int y) {
        if (!piece.Picture.IsNull()) {
            painter.drawImage(QPoint(x, y), piece.Picture.ForRatio(devicePixelRatio));
        }
    };
    // Tiles from `from` up to and including `to`; a piece without a picture has no tiles.
    const auto tile = [](const Piece& piece, int from, int to, int step, auto&& place) {
        if (piece.Picture.IsNull() || step <= 0) {
            return;
        }
        for (int at = from; at <= to; at += step) {
            place(at);
        }
    };

    painter.fillRect(QRect(QPoint(0, 0), size), SkinColor::ToQColor(m_color));

    const Piece& top = At(Top);
    tile(top, At(TopLeft).Width, w - At(TopRight).Width, top.Picture.Width(),
         [&](int x) { copy(top, x, 0); });
    copy(At(TopRight), w - At(TopRight).Width, 0);
    copy(At(TopLeft), 0, 0);

    const Piece& left = At(Left);
    tile(left, top.Height, h, left.Picture.Height(), [&](int y) { copy(left, 0, y); });
    const Piece& right = At(Right);
    tile(right, top.Height, h, right.Picture.Height(), [&](int y) { copy(right, w - right.Width, y); });

    const Piece& bottom = At(Bottom);
    tile(bottom, 0, w, bottom.Picture.Width(), [&](int x) { copy(bottom, x, h - bottom.Height); });
    copy(At(BottomLeft), 0, h - At(BottomLeft).Height);
    copy(At(BottomRight), w - At(BottomRight).Width, h - At(BottomRight).Height);
}
