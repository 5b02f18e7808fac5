// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "views/ImageLoader.h"

#include "platform/HttpClient.h"

#include <QTimer>

ImageLoader::ImageLoader(HttpClient& http, QObject* parent) : QObject(parent), m_http(http) {}

ImageLoader::~ImageLoader() = default;

bool ImageLoader::IsFetchable(const QUrl& url) {
    const QString scheme = url.scheme().toLower();
    return url.isValid() && !url.host().isEmpty() &&
           (scheme == QStringLiteral("http") || scheme == QStringLiteral("https"));
}

QImage ImageLoader::Image(const QUrl& url) {
    if (const auto found = m_images.constFind(url); found != m_images.constEnd()) {
        return *found;
    }
    if (!IsFetchable(url) || m_failed.contains(url) || m_pending.contains(url)) {
        return {};
    }
    std::shared_ptr<HttpRequest> request = m_http.Execute(url, QByteArrayLiteral("GET"));
    if (!request) {
        m_failed.insert(url);
        return {};
    }
    connect(request.get(), &HttpRequest::StateChange, this, [this, url](int state) { Finished(url, state); });
    m_pending.insert(url, std::move(request));
    return {};
}

void ImageLoader::Finished(const QUrl& url, int state) {
    const std::shared_ptr<HttpRequest> request = m_pending.take(url);
    if (!request) {
        return;
    }
    QImage image;
    if (state == HttpRequest::icResponseCompleted) {
        const QByteArray body = request->Body();
        if (body.size() <= kMaxImageBytes) {
            image.loadFromData(body);
        }
    }
    // The request reports from inside itself: it is let go once it has returned.
    QTimer::singleShot(0, this, [request] {});
    if (image.isNull()) {
        m_failed.insert(url);
        Q_EMIT ImageFailed(url);
        return;
    }
    m_images.insert(url, image);
    Q_EMIT ImageArrived(url);
}
