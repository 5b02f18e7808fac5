// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "skin/SkinSurface.h"

#include "skin/SkinPicture.h"

#include <QFontMetricsF>
#include <QMouseEvent>
#include <QPainter>

#include <cmath>

SkinSurface::SkinSurface(QWidget* parent) : QWidget(parent), m_backColor(palette().color(QPalette::Window)) {
    setMouseTracking(true);
    setAttribute(Qt::WA_OpaquePaintEvent);
}

SkinSurface::~SkinSurface() = default;

qreal SkinSurface::Ratio() const {
    return devicePixelRatioF();
}

bool SkinSurface::IsStale() const {
    const qreal ratio = Ratio();
    const QSize wanted(int(std::ceil(width() * ratio)), int(std::ceil(height() * ratio)));
    return m_image.size() != wanted || !qFuzzyCompare(m_image.devicePixelRatio(), ratio);
}

void SkinSurface::Allocate() {
    const qreal ratio = Ratio();
    const QSize wanted(int(std::ceil(width() * ratio)), int(std::ceil(height() * ratio)));
    m_image = wanted.isEmpty() ? QImage() : QImage(wanted, QImage::Format_RGB32);
    m_image.setDevicePixelRatio(ratio);
    if (!m_image.isNull()) {
        m_image.fill(m_backColor);
    }
}

QImage& SkinSurface::Image() {
    if (IsStale()) {
        Allocate();
    }
    return m_image;
}

void SkinSurface::Refresh() {
    // Drawing done while the widget paints itself is shown by that same paint.
    if (!m_painting) {
        update();
    }
}

void SkinSurface::SetBackColor(const QColor& colour) {
    m_backColor = colour;
    Clear();
}

void SkinSurface::Clear() {
    QImage& image = Image();
    if (!image.isNull()) {
        image.fill(m_backColor);
    }
    Refresh();
}

void SkinSurface::DrawPicture(QPointF topLeft, const SkinPicture& picture) {
    QImage& image = Image();
    if (image.isNull() || picture.IsNull()) {
        return;
    }
    QPainter painter(&image);
    painter.drawImage(topLeft, picture.ForRatio(image.devicePixelRatio()));
    painter.end();
    Refresh();
}

void SkinSurface::Print(const QString& text) {
    QImage& image = Image();
    if (image.isNull() || text.isEmpty()) {
        return;
    }
    QPainter painter(&image);
    painter.setFont(m_drawFont);
    painter.setPen(m_foreColor);
    const QFontMetricsF metrics(m_drawFont);
    painter.drawText(QPointF(m_currentPos.x(), m_currentPos.y() + metrics.ascent()), text);
    painter.end();
    Refresh();
}

QSizeF SkinSurface::TextExtent(const QFont& font, const QString& text) {
    const QFontMetricsF metrics(font);
    return QSizeF(metrics.horizontalAdvance(text), metrics.height());
}

void SkinSurface::paintEvent(QPaintEvent* event) {
    m_painting = true;
    if (IsStale()) {
        Allocate();
        Q_EMIT Invalidated();
    }
    m_painting = false;
    QPainter painter(this);
    if (m_image.isNull()) {
        painter.fillRect(event->rect(), m_backColor);
        return;
    }
    painter.drawImage(QPointF(), m_image);
}

void SkinSurface::mousePressEvent(QMouseEvent* event) {
    Q_EMIT MousePressed(event->button(), event->position());
}

void SkinSurface::mouseMoveEvent(QMouseEvent* event) {
    Q_EMIT MouseMoved(event->buttons(), event->position());
}

void SkinSurface::mouseReleaseEvent(QMouseEvent* event) {
    Q_EMIT MouseReleased(event->button(), event->position());
}
