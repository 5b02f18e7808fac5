// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QHash>
#include <QImage>
#include <QObject>
#include <QSet>
#include <QUrl>
#include <memory>
#include <unordered_map>

class HttpClient;
class HttpRequest;

// Fetches the pictures of previews through the program's own HTTP service: http and https only,
// never more than kMaxImageBytes each, never waited for. Each picture is asked for once; what
// arrived is kept for the next preview, what failed is not asked for again.
class ImageLoader final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(ImageLoader)
public:
    static constexpr qint64 kMaxImageBytes = 8 * 1024 * 1024;

    explicit ImageLoader(HttpClient& http, QObject* parent = nullptr);
    ~ImageLoader() override;

    // Whether the address may be fetched at all.
    static bool IsFetchable(const QUrl& url);
    // The picture when it has arrived; a null image otherwise, and the download starts when it
    // has neither started nor failed.
    QImage Image(const QUrl& url);
    bool HasFailed(const QUrl& url) const { return m_failed.contains(url); }
    bool IsPending(const QUrl& url) const { return m_pending.contains(url); }

Q_SIGNALS:
    void ImageArrived(const QUrl& url);
    void ImageFailed(const QUrl& url);

private:
    void Finished(const QUrl& url, int state);

    HttpClient& m_http;
    QHash<QUrl, QImage> m_images;
    QSet<QUrl> m_failed;
    QHash<QUrl, std::shared_ptr<HttpRequest>> m_pending;
};
