// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QObject>
#include <QString>
#include <QUrl>
#include <memory>

class Clock;
class HttpClient;
class HttpRequest;
class TimerSource;

// One feed found for an address; the title may be empty.
struct DiscoveredFeed {
    QString url;
    QString title;

    friend bool operator==(const DiscoveredFeed&, const DiscoveredFeed&) = default;
};

// Finds the feeds behind an address the user typed: the address itself when it is a feed, else
// the feeds its web page names, else the first of the site's common feed paths that is a feed.
class FeedDiscovery final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(FeedDiscovery)
public:
    static constexpr int kTimeLimitMs = 15000; // the whole discovery, all requests together
    // A page naming more feeds than this is not a page a user picks from; the rest is dropped.
    static constexpr int kMaxFeeds = 100;

    FeedDiscovery(HttpClient& http, Clock& clock, QObject* parent = nullptr);
    ~FeedDiscovery() override;

    // An address typed without a scheme gets "https://"; surrounding blanks go; "feed:" and
    // "feed://" prefixes become http(s); a local path ("/...") becomes a file URL; anything but
    // http/https/file stays as typed (and is refused by Discover with a message).
    static QString NormalisedAddress(const QString& typed);
    // Starts looking (a running discovery is abandoned first). Reports once through Finished,
    // always from the event loop, never from inside this call.
    void Discover(const QString& address);
    // Nothing is reported afterwards.
    void Cancel();
    bool Busy() const { return m_busy; }
    // The last report came from a web address that could not be read (a network failure or the
    // time limit), not from a page that names no feed: it may be a feed that is down just now.
    bool Unreachable() const { return m_unreachable; }

Q_SIGNALS:
    // feeds: the feeds found, in page order, no duplicates (case-blind URL); when the address
    // itself is a feed: exactly that one, with its channel title. message: empty on success,
    // otherwise a sentence for the user.
    void Finished(const QList<DiscoveredFeed>& feeds, const QString& message);

private:
    void Request(const QUrl& url);
    void OnAnswer(int state);
    void TryNextCommonPath();
    void RetireRequest();
    // Reports from the event loop unless a newer discovery or a Cancel came first.
    void ReportLater(const QList<DiscoveredFeed>& feeds, const QString& message);
    void Report(const QList<DiscoveredFeed>& feeds, const QString& message);

    HttpClient& m_http;
    std::unique_ptr<TimerSource> m_timer;
    std::unique_ptr<HttpRequest> m_request;
    QString m_address;
    QUrl m_page;
    // Common paths still to try after the page named no feed.
    QList<QUrl> m_commonPaths;
    bool m_tryingCommonPaths = false;
    bool m_busy = false;
    bool m_unreachable = false;
    // Counts discoveries and cancellations, so that a report meant for an older one is dropped.
    quint64 m_run = 0;
};
