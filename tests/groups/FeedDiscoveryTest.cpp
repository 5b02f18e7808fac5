// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "groups/FeedDiscovery.h"
#include "feeds/FeedsFixture.h"
#include "support/EventPump.h"
#include "support/LocalHttpServer.h"

using namespace Qt::StringLiterals;

namespace {

// A limit on waiting for the local server, so that a fault fails the test instead of hanging it.
constexpr int kServerLimitMs = 20000;

const QByteArray kRss = "<rss version=\"2.0\"><channel><title> Harbour  News </title></channel></rss>";
const QByteArray kAtom = "<feed xmlns=\"http://www.w3.org/2005/Atom\"><title>Hill Journal</title></feed>";

// Discoveries through a local server, and through the fake network (answered by the test) for what
// depends on the order of events.
class FeedDiscoveryTest : public FeedsFixture {
protected:
    FeedDiscoveryTest() : FeedsFixture(false, Network::Real) {
        for (FeedDiscovery* each : {&discovery, &offline}) {
            QObject::connect(each, &FeedDiscovery::Finished,
                             [this](const QList<DiscoveredFeed>& found, const QString& message) {
                                 QStringList feeds;
                                 for (const DiscoveredFeed& feed : found) {
                                     feeds.append(feed.url + u' ' + feed.title);
                                 }
                                 reports.append(message + u" | "_s + feeds.join(u", "_s));
                             });
        }
    }

    // Discovers `address` ("site/" stands for the local server), serving the event loop until the
    // report came; the report, then what was asked, as "report / GET path / ..." with the server's
    // address as "site/".
    QString Discover(const QString& address) {
        server.ClearRequests();
        reports.clear();
        const QString site = server.Url(u"/"_s).toString();
        discovery.Discover(QString(address).replace(u"site/"_s, site));
        EXPECT_TRUE(PumpUntil([this] { return !reports.isEmpty(); }, kServerLimitMs));
        return (reports + server.Requests()).join(u" / "_s).replace(site, u"site/"_s);
    }

    LocalHttpServer server;
    FeedDiscovery discovery{*network, clock};
    FeedDiscovery offline{http, clock};
    // Each report as "message | url title, url title".
    QStringList reports;
};

} // namespace

TEST_F(FeedDiscoveryTest, AFeedGivesItselfAPageItsLinkedFeedsInPageOrderOrElseTheSitesCommonPaths) {
    server.ServeXml(u"/blog/index.html"_s, ReadData(u"blog.html"_s));
    server.ServeXml(u"/rss"_s, kRss);
    // Not closed, links in the body, upper-case names, unquoted values, an entity naming a file.
    home.Write(u"secret.txt"_s, "http://secret.example/rss");
    server.ServeXml(u"/messy"_s,
                    ReadData(u"messy.html"_s)
                        .replace("$SECRET", QUrl::fromLocalFile(home.File(u"secret.txt"_s)).toEncoded()));
    home.Write(u"local.xml"_s, kAtom);
    const QString local = home.File(u"local.xml"_s);
    EXPECT_EQ(Discover(u"site/blog/index.html"_s), QString::fromUtf8(ReadData(u"blog.expected"_s)));
    EXPECT_EQ(Discover(u"site/rss"_s), u" | site/rss Harbour News / GET /rss"_s);
    EXPECT_EQ(Discover(local), u" | "_s + QUrl::fromLocalFile(local).toString() + u" Hill Journal"_s);
    // The entity's file is never read: its link keeps the reference as written.
    EXPECT_EQ(Discover(u"site/messy"_s), u" | site/body.atom Body, site/&xxe; Entity / GET /messy"_s);

    // A page without feeds tries the site's common paths in order; the page, itself a common path,
    // is not read twice.
    server.ServeXml(u"/rss"_s, "<html><head><title>Subscribe</title></head><body>No feeds.</body></html>");
    EXPECT_EQ(Discover(u"site/rss"_s),
              u"No feed was found at site/rss. |  / GET /rss / GET /feed / GET /atom.xml / "
              u"GET /feed.xml / GET /rss.xml / GET /index.xml"_s);

    // The site's paths replace the page's path, query and fragment; a path that fails and a page
    // that is no feed are passed over; nothing is asked for after the first feed.
    server.ServeXml(u"/about?lang=en"_s, "<html><body>About us.</body></html>");
    server.ServeXml(u"/atom.xml"_s, kAtom);
    EXPECT_EQ(Discover(u"site/about?lang=en#top"_s),
              u" | site/atom.xml Hill Journal / GET /about?lang=en / GET /feed / GET /rss / GET /atom.xml"_s);

    // A page that cannot be read gives the network's reason, and no site to try.
    const QString missing = Discover(u"site/missing"_s);
    EXPECT_TRUE(missing.startsWith(u"site/missing could not be read: "_s) &&
                missing.endsWith(u" |  / GET /missing"_s))
        << missing.toStdString();
}

TEST_F(FeedDiscoveryTest, RefusalsTheTimeLimitCancelAndNewDiscoveriesReportOnceFromTheEventLoop) {
    // Refusals come from the event loop, never from inside Discover; a newer discovery drops them.
    offline.Discover(u"gopher://old.example/"_s);
    offline.Discover(u"javascript:alert(1)"_s);
    EXPECT_TRUE(reports.isEmpty() && offline.Busy());
    QCoreApplication::processEvents();
    EXPECT_EQ(reports, QStringList{u"javascript:alert(1) is not an http, https or file address. | "_s});

    // The time limit is for all requests together: the page, then a common path that never answers.
    reports.clear();
    offline.Discover(u"http://a.example/about"_s);
    EXPECT_TRUE(http.Complete(u"http://a.example/about"_s, "GET", "<html><body>No feeds.</body></html>"));
    clock.Advance(FeedDiscovery::kTimeLimitMs - 1);
    QCoreApplication::processEvents();
    EXPECT_TRUE(reports.isEmpty());
    clock.Advance(1);
    QCoreApplication::processEvents();
    EXPECT_EQ(reports, QStringList{u"http://a.example/about gave no answer within 15 seconds. | "_s});
    EXPECT_EQ(clock.ActiveTimers(), 0);

    // Cancel drops the request and the time limit.
    reports.clear();
    offline.Discover(u"http://a.example/feed"_s);
    offline.Cancel();
    EXPECT_FALSE(http.Complete(u"http://a.example/feed"_s, "GET", kRss)) << "the request was dropped";
    clock.Advance(FeedDiscovery::kTimeLimitMs * 2);
    QCoreApplication::processEvents();
    EXPECT_TRUE(reports.isEmpty());

    // A second discovery abandons the first; a receiver may start the next one from the report.
    QList<DiscoveredFeed> found;
    QObject::connect(&offline, &FeedDiscovery::Finished, &offline, [&](const QList<DiscoveredFeed>& feeds) {
        found = feeds;
        if (reports.size() == 1) {
            offline.Discover(u"http://c.example/"_s);
        }
    });
    offline.Discover(u"http://a.example/feed"_s);
    offline.Discover(u"http://b.example/feed"_s);
    EXPECT_FALSE(http.Complete(u"http://a.example/feed"_s, "GET", kRss));
    EXPECT_TRUE(http.Complete(u"http://b.example/feed"_s, "GET", kAtom));
    EXPECT_EQ(reports, QStringList{u" | http://b.example/feed Hill Journal"_s});
    EXPECT_EQ(found, (QList<DiscoveredFeed>{{u"http://b.example/feed"_s, u"Hill Journal"_s}}));
    EXPECT_EQ(http.Waiting(u"http://c.example/"_s, "GET"), 1);
}

TEST(FeedDiscoveryAddressTest, TypedAddressesAreNormalised) {
    const std::pair<QString, QString> cases[] = {
        {u"\t example.com/feed.xml \n"_s, u"https://example.com/feed.xml"_s},
        {u"HTTPS://Example.com/Feed"_s, u"https://Example.com/Feed"_s},
        {u"localhost:8080/feed"_s, u"https://localhost:8080/feed"_s},
        {u"//cdn.example/rss"_s, u"https://cdn.example/rss"_s},
        {u"FEED://example.com/rss"_s, u"http://example.com/rss"_s},
        {u"feed:https://example.com/rss"_s, u"https://example.com/rss"_s},
        {u"feed:example.com/rss"_s, u"https://example.com/rss"_s},
        {u"/home/me/news.xml"_s, u"file:///home/me/news.xml"_s},
        {u"javascript:alert(1)"_s, u"javascript:alert(1)"_s},
        {u"   "_s, QString()},
    };
    for (const auto& [typed, expected] : cases) {
        EXPECT_EQ(FeedDiscovery::NormalisedAddress(typed), expected) << typed.toStdString();
    }
}
