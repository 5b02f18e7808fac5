// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "groups/FeedDiscovery.h"

#include "platform/Clock.h"
#include "platform/HttpClient.h"
#include "platform/XmlDocument.h"

#include <QMetaObject>
#include <QRegularExpression>
#include <QSet>
#include <algorithm>
#include <array>
#include <optional>

namespace {

// Where sites commonly keep their feed, tried in this order when a page names none.
constexpr std::array kCommonFeedPaths = {u"/feed",     u"/rss",     u"/atom.xml",
                                         u"/feed.xml", u"/rss.xml", u"/index.xml"};
// Feed types a page may name that the program reads (JSON feeds are not among them).
constexpr std::array kFeedTypes = {u"application/rss+xml", u"application/atom+xml", u"application/rdf+xml"};

bool IsWeb(const QUrl& url) {
    const QString scheme = url.scheme().toLower();
    return url.isValid() && (scheme == u"http" || scheme == u"https") && !url.host().isEmpty();
}

bool IsLocalFile(const QUrl& url) {
    return url.isValid() && url.scheme().toLower() == u"file" && !url.path().isEmpty();
}

// An element's name without its prefix, in lower case, as the readers compare names.
QString LocalName(const XmlNode& node) {
    const QString name = node.Name();
    return name.mid(name.lastIndexOf(u':') + 1).toLower();
}

XmlNode ChildElement(const XmlNode& parent, const QString& localName) {
    for (XmlNode child = parent.FirstChild(); !child.IsNull(); child = child.NextSibling()) {
        if (child.IsElement() && LocalName(child) == localName) {
            return child;
        }
    }
    return {};
}

// The channel title when the bytes are a feed (RSS, RDF or Atom); nothing otherwise. Parsed as
// channels parse what they fetch: no network, only the program's own DTDs.
std::optional<QString> FeedTitle(const QByteArray& body, const QUrl& url) {
    XmlParseOptions options;
    options.loadMappedDtd = true;
    options.baseUrl = url.toString();
    const XmlDocument doc = XmlDocument::Parse(body, nullptr, options);
    const XmlNode root = doc.DocumentElement();
    if (root.IsNull()) {
        return std::nullopt;
    }
    const QString kind = LocalName(root);
    XmlNode title;
    if (kind == u"rss" || kind == u"rdf") {
        title = ChildElement(ChildElement(root, QStringLiteral("channel")), QStringLiteral("title"));
    } else if (kind == u"feed") {
        title = ChildElement(root, QStringLiteral("title"));
    } else {
        return std::nullopt;
    }
    return title.IsNull() ? QString() : title.Text().simplified();
}

// The charset named by a Content-Type header ("text/html; charset=utf-8"), if any.
QString CharsetOf(const QString& contentType) {
    static const QRegularExpression charset(QStringLiteral("charset\\s*=\\s*\"?([A-Za-z0-9._:-]+)"),
                                            QRegularExpression::CaseInsensitiveOption);
    return charset.match(contentType).captured(1);
}

bool IsFeedType(const QString& type) {
    const QString bare = type.section(u';', 0, 0).trimmed();
    for (const char16_t* feedType : kFeedTypes) {
        if (bare.compare(QStringView(feedType), Qt::CaseInsensitive) == 0) {
            return true;
        }
    }
    return false;
}

bool NamesAlternate(const QString& rel) {
    static const QRegularExpression blanks(QStringLiteral("\\s+"));
    const QStringList words = rel.split(blanks, Qt::SkipEmptyParts);
    return std::any_of(words.cbegin(), words.cend(), [](const QString& word) {
        return word.compare(u"alternate", Qt::CaseInsensitive) == 0;
    });
}

// The next element in document order, without recursion: pages may nest deeply.
XmlNode NextInDocument(XmlNode node) {
    if (XmlNode child = node.FirstChild(); !child.IsNull()) {
        return child;
    }
    while (!node.IsNull()) {
        if (XmlNode sibling = node.NextSibling(); !sibling.IsNull()) {
            return sibling;
        }
        node = node.Parent();
    }
    return {};
}

// The http(s) feeds a page names with <link rel="alternate">, in page order, without duplicates.
QList<DiscoveredFeed> LinkedFeeds(const XmlDocument& page, const QUrl& pageUrl) {
    struct Link {
        QString href;
        QString title;
    };
    QList<Link> links;
    QString baseHref;
    bool baseSeen = false;
    for (XmlNode node = page.DocumentElement(); !node.IsNull(); node = NextInDocument(node)) {
        if (!node.IsElement()) {
            continue;
        }
        const QString name = LocalName(node);
        if (name == u"base" && !baseSeen && node.HasAttribute(QStringLiteral("href"))) {
            // Only the first base of a document counts, for links before and after it.
            baseSeen = true;
            baseHref = node.Attribute(QStringLiteral("href")).trimmed();
        } else if (name == u"link" && NamesAlternate(node.Attribute(QStringLiteral("rel"))) &&
                   IsFeedType(node.Attribute(QStringLiteral("type")))) {
            links.append({node.Attribute(QStringLiteral("href")).trimmed(),
                          node.Attribute(QStringLiteral("title")).simplified()});
        }
    }
    const QUrl base = baseSeen ? pageUrl.resolved(QUrl(baseHref)) : pageUrl;
    QList<DiscoveredFeed> feeds;
    QSet<QString> seen;
    for (const Link& link : std::as_const(links)) {
        if (link.href.isEmpty()) {
            continue;
        }
        const QUrl target = base.resolved(QUrl(link.href));
        if (!IsWeb(target)) {
            continue;
        }
        const QString url = target.toString(QUrl::FullyEncoded);
        if (seen.contains(url.toLower())) {
            continue;
        }
        seen.insert(url.toLower());
        feeds.append({url, link.title});
        if (feeds.size() == FeedDiscovery::kMaxFeeds) {
            break;
        }
    }
    return feeds;
}

} // namespace

FeedDiscovery::FeedDiscovery(HttpClient& http, Clock& clock, QObject* parent)
    : QObject(parent), m_http(http), m_timer(clock.CreateTimer()) {
    m_timer->SetCallback([this] {
        m_timer->Stop();
        RetireRequest();
        m_unreachable = IsWeb(m_page);
        const int seconds = kTimeLimitMs / 1000;
        ReportLater(
            {},
            QStringLiteral("%1 gave no answer within %2 seconds.").arg(m_address, QString::number(seconds)));
    });
}

FeedDiscovery::~FeedDiscovery() {
    RetireRequest();
}

QString FeedDiscovery::NormalisedAddress(const QString& typed) {
    static const QRegularExpression schemePattern(QStringLiteral("^([A-Za-z][A-Za-z0-9+.-]*):(.*)$"),
                                                  QRegularExpression::DotMatchesEverythingOption);
    static const QRegularExpression portPattern(QStringLiteral("^[0-9]+([/?#].*)?$"),
                                                QRegularExpression::DotMatchesEverythingOption);
    QString text = typed.trimmed();
    if (text.isEmpty()) {
        return text;
    }
    if (text.startsWith(u"feed:", Qt::CaseInsensitive)) {
        QString rest = text.mid(5);
        const bool slashes = rest.startsWith(u"//");
        const QString scheme = schemePattern.match(rest).captured(1).toLower();
        if (scheme == u"http" || scheme == u"https") {
            return scheme + rest.mid(scheme.size());
        }
        // "feed://host/path" stands for the plain http address of the feed.
        if (slashes) {
            return QStringLiteral("http:") + rest;
        }
        text = rest.trimmed();
    }
    const QRegularExpressionMatch scheme = schemePattern.match(text);
    // "example.com:8080/feed" is a host and a port, not a scheme.
    if (scheme.hasMatch() && !portPattern.match(scheme.captured(2)).hasMatch()) {
        return scheme.captured(1).toLower() + u':' + scheme.captured(2);
    }
    if (text.startsWith(u"//")) {
        return QStringLiteral("https:") + text;
    }
    if (text.startsWith(u'/')) {
        return QUrl::fromLocalFile(text).toString(QUrl::FullyEncoded);
    }
    return QStringLiteral("https://") + text;
}

void FeedDiscovery::Discover(const QString& address) {
    Cancel();
    m_busy = true;
    m_unreachable = false;
    m_address = NormalisedAddress(address);
    m_page = QUrl(m_address);
    m_commonPaths.clear();
    m_tryingCommonPaths = false;
    if (m_address.isEmpty()) {
        ReportLater({}, QStringLiteral("Type the address of a feed or of a web page."));
        return;
    }
    if (!IsWeb(m_page) && !IsLocalFile(m_page)) {
        const QString scheme = m_page.scheme().toLower();
        const bool known = scheme == u"http" || scheme == u"https" || scheme == u"file";
        ReportLater({}, known ? QStringLiteral("%1 is not a valid address.").arg(m_address)
                              : QStringLiteral("%1 is not an http, https or file address.").arg(m_address));
        return;
    }
    m_timer->Start(kTimeLimitMs);
    Request(m_page);
}

void FeedDiscovery::Cancel() {
    ++m_run;
    m_busy = false;
    m_timer->Stop();
    RetireRequest();
}

void FeedDiscovery::Request(const QUrl& url) {
    m_request = m_http.Execute(url, "GET");
    connect(m_request.get(), &HttpRequest::StateChange, this, &FeedDiscovery::OnAnswer);
}

void FeedDiscovery::RetireRequest() {
    if (m_request) {
        disconnect(m_request.get(), nullptr, this, nullptr);
        m_request.reset();
    }
}

void FeedDiscovery::OnAnswer(int state) {
    // The request is inside its own signal: it goes once the event loop runs again.
    std::unique_ptr<HttpRequest> answered = std::move(m_request);
    disconnect(answered.get(), nullptr, this, nullptr);
    HttpRequest* request = answered.release();
    request->setParent(this);
    request->deleteLater();
    const bool completed = state == HttpRequest::icResponseCompleted;

    if (m_tryingCommonPaths) {
        const QUrl tried = m_commonPaths.takeFirst();
        if (completed) {
            if (const std::optional<QString> title = FeedTitle(request->Body(), tried)) {
                Report({{tried.toString(QUrl::FullyEncoded), *title}}, QString());
                return;
            }
        }
        TryNextCommonPath();
        return;
    }
    if (!completed) {
        m_unreachable = IsWeb(m_page);
        Report({}, QStringLiteral("%1 could not be read: %2.").arg(m_address, request->ErrorString()));
        return;
    }
    const QByteArray body = request->Body();
    if (const std::optional<QString> title = FeedTitle(body, m_page)) {
        Report({{m_address, *title}}, QString());
        return;
    }
    const XmlDocument page =
        XmlDocument::ParseHtml(body, CharsetOf(request->GetHeader(QStringLiteral("Content-Type"))));
    const QList<DiscoveredFeed> linked = page.IsNull() ? QList<DiscoveredFeed>() : LinkedFeeds(page, m_page);
    if (!linked.isEmpty()) {
        Report(linked, QString());
        return;
    }
    if (IsWeb(m_page)) {
        const QString pageText = m_page.toString(QUrl::FullyEncoded).toLower();
        for (const char16_t* path : kCommonFeedPaths) {
            QUrl candidate = m_page;
            candidate.setPath(QString::fromUtf16(path));
            candidate.setQuery(QString());
            candidate.setFragment(QString());
            // The page itself was read already and is no feed.
            if (candidate.toString(QUrl::FullyEncoded).toLower() != pageText) {
                m_commonPaths.append(candidate);
            }
        }
    }
    m_tryingCommonPaths = true;
    TryNextCommonPath();
}

void FeedDiscovery::TryNextCommonPath() {
    if (m_commonPaths.isEmpty()) {
        Report({}, QStringLiteral("No feed was found at %1.").arg(m_address));
        return;
    }
    Request(m_commonPaths.first());
}

void FeedDiscovery::ReportLater(const QList<DiscoveredFeed>& feeds, const QString& message) {
    QMetaObject::invokeMethod(
        this,
        [this, run = m_run, feeds, message] {
            if (run == m_run && m_busy) {
                Report(feeds, message);
            }
        },
        Qt::QueuedConnection);
}

void FeedDiscovery::Report(const QList<DiscoveredFeed>& feeds, const QString& message) {
    m_busy = false;
    m_timer->Stop();
    // The receiver may start another discovery or destroy this object: nothing follows the signal.
    Q_EMIT Finished(feeds, message);
}
