// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QColor>
#include <QFont>
#include <QImage>
#include <QPointF>
#include <QWidget>

class SkinPicture;

// The drawing surface of a skinned window (`picSkin`): an off-screen image that the skin engine
// and the window draw into whenever they choose, shown by the widget when the system asks it to
// paint. Coordinates are layout pixels; the image holds device pixels of the widget's screen.
// Mouse events on the surface are reported through signals for the window to hand on.
class SkinSurface final : public QWidget {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(SkinSurface)
public:
    explicit SkinSurface(QWidget* parent = nullptr);
    ~SkinSurface() override;

    // The image to draw into, of the widget's size at its device pixel ratio. It is made anew
    // (filled with the back colour) whenever the size or the ratio changed.
    QImage& Image();
    qreal Ratio() const;
    // Shows what was drawn into the image.
    void Refresh();

    QColor BackColor() const { return m_backColor; }
    // Like setting a picture box's back colour, this also clears the surface to it.
    void SetBackColor(const QColor& colour);
    void Clear();

    void DrawPicture(QPointF topLeft, const SkinPicture& picture);

    QFont DrawFont() const { return m_drawFont; }
    void SetDrawFont(const QFont& font) { m_drawFont = font; }
    QColor ForeColor() const { return m_foreColor; }
    void SetForeColor(const QColor& colour) { m_foreColor = colour; }
    QPointF CurrentPos() const { return m_currentPos; }
    void SetCurrentPos(QPointF position) { m_currentPos = position; }
    // Prints in the draw font and fore colour with the text's top left at the current position,
    // on a transparent background.
    void Print(const QString& text);
    // Width and height of a text printed in `font` (one line high).
    static QSizeF TextExtent(const QFont& font, const QString& text);

Q_SIGNALS:
    void MousePressed(Qt::MouseButton button, QPointF position);
    void MouseMoved(Qt::MouseButtons buttons, QPointF position);
    void MouseReleased(Qt::MouseButton button, QPointF position);
    // The image was made anew for a new size or screen scale; its owner should draw it again.
    void Invalidated();

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    bool IsStale() const;
    void Allocate();

    QImage m_image;
    QColor m_backColor;
    QFont m_drawFont;
    QColor m_foreColor = Qt::black;
    QPointF m_currentPos;
    bool m_painting = false;
};
