// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "skin/SkinPicture.h"

#include <QFileInfo>
#include <QImageReader>

namespace {

constexpr qint64 kMaxFileBytes = 4 * 1024 * 1024;
constexpr int kMaxSide = 4096;
constexpr int kDoubled = 2;

QImage Read(const QString& path, QString* error) {
    const QFileInfo info(path);
    if (!info.isFile()) {
        *error = QStringLiteral("File not found");
        return {};
    }
    if (info.size() > kMaxFileBytes) {
        *error = QStringLiteral("The picture file is too large");
        return {};
    }
    QImageReader reader(path);
    reader.setDecideFormatFromContent(true);
    const QSize size = reader.size();
    if (size.width() > kMaxSide || size.height() > kMaxSide) {
        *error = QStringLiteral("The picture is too large");
        return {};
    }
    QImage image = reader.read();
    if (image.isNull()) {
        *error = reader.errorString();
        return {};
    }
    image.setDevicePixelRatio(1);
    return image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

} // namespace

SkinPicture::SkinPicture(QImage base, QImage doubled) : m_base(std::move(base)) {
    m_base.setDevicePixelRatio(1);
    if (!doubled.isNull() && doubled.size() == m_base.size() * kDoubled) {
        m_doubled = std::move(doubled);
        m_doubled.setDevicePixelRatio(kDoubled);
    }
}

SkinPicture SkinPicture::Load(const QString& path, QString* error) {
    QString reason;
    QImage base = Read(path, &reason);
    if (base.isNull()) {
        if (error) {
            *error = reason;
        }
        return {};
    }
    const QFileInfo info(path);
    const QString suffix = info.suffix();
    const QString doubledPath = info.path() + u'/' + info.completeBaseName() + QStringLiteral("@2x") +
                                (suffix.isEmpty() ? QString() : u'.' + suffix);
    QString ignored;
    QImage doubled = QFileInfo::exists(doubledPath) ? Read(doubledPath, &ignored) : QImage();
    return SkinPicture(std::move(base), std::move(doubled));
}

const QImage& SkinPicture::ForRatio(qreal devicePixelRatio) const {
    return devicePixelRatio > 1 && !m_doubled.isNull() ? m_doubled : m_base;
}

QIcon SkinPicture::ToIcon() const {
    QIcon icon;
    if (IsNull()) {
        return icon;
    }
    icon.addPixmap(QPixmap::fromImage(m_base));
    if (!m_doubled.isNull()) {
        icon.addPixmap(QPixmap::fromImage(m_doubled));
    }
    return icon;
}
