// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QObject>
#include <QString>
#include <QUrl>
#include "platform/Paths.h"
#include <memory>

// One request in flight. It reports exactly once through StateChange: response completed (12)
// or error (11). Destroying the request abandons it; nothing is reported afterwards.
class HttpRequest : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(HttpRequest)
public:
    static constexpr int icError = 11;
    static constexpr int icResponseCompleted = 12;

    HttpRequest() = default;
    ~HttpRequest() override = default;

    // A header of the response by case-blind name; empty when absent.
    virtual QString GetHeader(const QString& name) const = 0;
    // The body of a completed GET.
    virtual QByteArray Body() const = 0;
    // Why the request failed, for messages.
    virtual QString ErrorString() const = 0;

Q_SIGNALS:
    void StateChange(int state);
};

// The HTTP service: asynchronous HEAD and GET of http(s) and file URLs.
class HttpClient {
public:
    // Larger responses are errors.
    static constexpr qint64 kMaxResponseBytes = 32 * 1024 * 1024;
    // OpenURL gives up after this long.
    static constexpr int kOpenUrlTimeoutMs = 25000;

    virtual ~HttpClient() = default;
    // Starts "HEAD" or "GET" for the URL; the caller owns the request.
    virtual std::unique_ptr<HttpRequest> Execute(const QUrl& url, const QByteArray& method) = 0;

    // Downloads the URL's bytes and returns them once done, keeping the event loop running
    // meanwhile; empty (and ok false) on failure or after kOpenUrlTimeoutMs.
    QByteArray OpenURL(const QUrl& url, bool* ok = nullptr);
};

// The network of the desktop: QNetworkAccessManager with the system's proxy, safe redirects
// (no https to http, at most 10), compressed responses, a User-Agent naming Tamsel, a size cap.
class NetworkHttpClient final : public HttpClient {
public:
    // Addresses of the shipped maker's site ("tamsel://site/...") are read from `paths`.
    explicit NetworkHttpClient(Paths paths);
    ~NetworkHttpClient() override;
    std::unique_ptr<HttpRequest> Execute(const QUrl& url, const QByteArray& method) override;

    static QByteArray UserAgent();

private:
    struct Private;
    std::unique_ptr<Private> d;
};
