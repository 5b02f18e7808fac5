// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QIcon>
#include <QImage>
#include <QSize>
#include <QString>

// A picture of a skin: its image at the size the skin lays out with, and optionally the same
// picture drawn at twice that size for screens scaled to 200 % ("name@2x.png" beside "name.png").
class SkinPicture final {
public:
    SkinPicture() = default;
    // A `doubled` image that is not exactly twice the size of `base` is ignored.
    explicit SkinPicture(QImage base, QImage doubled = QImage());

    // Reads a picture file of a skin; a null picture and the reason when it cannot be read.
    // Files above a few megabytes and images above 4096 pixels a side are refused.
    static SkinPicture Load(const QString& path, QString* error = nullptr);

    bool IsNull() const { return m_base.isNull(); }
    // Size in layout pixels.
    QSize Size() const { return m_base.size(); }
    int Width() const { return m_base.width(); }
    int Height() const { return m_base.height(); }

    // The image that best fits a surface of this device pixel ratio, with its ratio set so that
    // it covers Size() in layout pixels.
    const QImage& ForRatio(qreal devicePixelRatio) const;
    QIcon ToIcon() const;

private:
    QImage m_base;
    QImage m_doubled;
};
