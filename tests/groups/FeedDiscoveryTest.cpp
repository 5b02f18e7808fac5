// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "groups/FeedDiscovery.h"
#include "platform/HttpClient.h"
#include "support/EventPump.h"
#include "support/FakeClock.h"
#include "support/FakeHttpClient.h"
#include "support/LocalHttpServer.h"
#include "support/QStringPrinter.h"
#include "support/TestHome.h"

#include <QCoreApplication>
#include <QFile>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

void PrintTo(const DiscoveredFeed& feed, std::ostream* os) {
    *os << feed.url.toStdString() << " \"" << feed.title.toStdString() << '"';
}

namespace {

// A limit on waiting for the local server, so that a fault fails the test instead of hanging it.
constexpr int kServerLimitMs = 20000;

const QByteArray kRss = "<rss version=\"2.0\"><channel><title> Harbour  News </title></channel></rss>";
const QByteArray kAtom = "<feed xmlns=\"http://www.w3.org/2005/Atom\"><title>Hill Journal</title></feed>";

class FeedDiscoveryTest : public ::testing::Test {
protected:
    FeedDiscoveryTest() {
        for (FeedDiscovery* each : {&discovery, &offline}) {
            QObject::connect(each, &FeedDiscovery::Finished,
                             [this](const QList<DiscoveredFeed>& found, const QString& why) {
                                 ++reports;
                                 feeds = found;
                                 message = why;
                             });
        }
    }

    QString Url(const QString& path) const { return server.Url(path).toString(); }
    static QByteArray Data(const QString& name) {
        QFile file(QStringLiteral(TAMSEL_TEST_DATA_DIR "/") + name);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    // Discovers, serving the event loop until the one report came.
    void Discover(const QString& address) {
        server.ClearRequests();
        reports = 0;
        discovery.Discover(address);
        EXPECT_TRUE(PumpUntil([this] { return reports > 0; }, kServerLimitMs));
        EXPECT_EQ(reports, 1);
    }

    TestHome home;
    FakeClock clock;
    LocalHttpServer server;
    NetworkHttpClient http{home.GetPaths()};
    FeedDiscovery discovery{http, clock};
    // Answered by the test, for what depends on the order of events.
    FakeHttpClient fake;
    FeedDiscovery offline{fake, clock};
    int reports = 0;
    QList<DiscoveredFeed> feeds;
    QString message;
};

} // namespace

TEST_F(FeedDiscoveryTest, AFeedGivesItselfWithItsTitleAPageTheWebFeedsItLinksInPageOrder) {
    server.ServeXml(u"/blog/index.html"_s, Data(u"blog.html"_s));
    server.ServeXml(u"/rss"_s, kRss);
    // Not closed, links in the body, upper-case names, unquoted values, an entity naming a file.
    home.Write(u"secret.txt"_s, "http://secret.example/rss");
    server.ServeXml(u"/messy"_s,
                    Data(u"messy.html"_s)
                        .replace("$SECRET", QUrl::fromLocalFile(home.File(u"secret.txt"_s)).toEncoded()));
    home.Write(u"local.xml"_s, kAtom);
    const QString local = home.File(u"local.xml"_s);
    const std::pair<QString, QList<DiscoveredFeed>> cases[] = {
        {Url(u"/blog/index.html"_s),
         {{u"http://other.example/news/posts.xml"_s, u"Posts"_s},
          {u"http://other.example/all.xml"_s, QString()},
          {u"http://elsewhere.example/comments.atom"_s, u"All comments"_s},
          {u"http://other.example/yes.rdf"_s, u"RDF"_s}}},
        {Url(u"/rss"_s), {{Url(u"/rss"_s), u"Harbour News"_s}}},
        {local, {{QUrl::fromLocalFile(local).toString(), u"Hill Journal"_s}}},
        // The entity's file is never read: its link keeps the reference as written.
        {Url(u"/messy"_s), {{Url(u"/body.atom"_s), u"Body"_s}, {Url(u"/&xxe;"_s), u"Entity"_s}}},
    };
    for (const auto& [typed, expected] : cases) {
        SCOPED_TRACE(typed.toStdString());
        Discover(typed);
        EXPECT_EQ(message, QString());
        EXPECT_EQ(feeds, expected);
        EXPECT_EQ(server.Requests().size(), typed.startsWith(u"http"_s) ? 1 : 0); // only the address
    }
}

TEST_F(FeedDiscoveryTest, APageWithoutFeedsTriesTheSitesCommonPathsInOrder) {
    // The page, itself a common path, is not read twice.
    server.ServeXml(u"/rss"_s, "<html><head><title>Subscribe</title></head><body>No feeds.</body></html>");
    Discover(Url(u"/rss"_s));
    EXPECT_EQ(message, u"No feed was found at "_s + Url(u"/rss"_s) + u'.');
    EXPECT_EQ(server.Requests(), (QStringList{u"GET /rss"_s, u"GET /feed"_s, u"GET /atom.xml"_s,
                                              u"GET /feed.xml"_s, u"GET /rss.xml"_s, u"GET /index.xml"_s}));

    // The site's paths replace the page's path, query and fragment; a path that fails and a page
    // that is no feed are passed over; nothing is asked for after the first feed.
    server.ServeXml(u"/about?lang=en"_s, "<html><body>About us.</body></html>");
    server.ServeXml(u"/atom.xml"_s, kAtom);
    Discover(Url(u"/about?lang=en#top"_s));
    EXPECT_EQ(feeds, (QList<DiscoveredFeed>{{Url(u"/atom.xml"_s), u"Hill Journal"_s}}));
    EXPECT_EQ(server.Requests(),
              (QStringList{u"GET /about?lang=en"_s, u"GET /feed"_s, u"GET /rss"_s, u"GET /atom.xml"_s}));

    // A page that cannot be read gives the network's reason, and no site to try.
    Discover(Url(u"/missing"_s));
    EXPECT_TRUE(message.startsWith(Url(u"/missing"_s) + u" could not be read: "_s)) << message.toStdString();
    EXPECT_EQ(server.Requests(), QStringList{u"GET /missing"_s});
}

TEST_F(FeedDiscoveryTest, RefusalsTheTimeLimitCancelAndNewDiscoveriesReportOnceFromTheEventLoop) {
    // Refusals come from the event loop, never from inside Discover; a newer discovery drops them.
    offline.Discover(u"gopher://old.example/"_s);
    offline.Discover(u"javascript:alert(1)"_s);
    EXPECT_TRUE(reports == 0 && offline.Busy());
    QCoreApplication::processEvents();
    ASSERT_EQ(reports, 1);
    EXPECT_EQ(message, u"javascript:alert(1) is not an http, https or file address."_s);

    // The time limit is for all requests together: the page, then a common path that never answers.
    reports = 0;
    offline.Discover(u"http://a.example/about"_s);
    EXPECT_TRUE(fake.Complete(u"http://a.example/about"_s, "GET", "<html><body>No feeds.</body></html>"));
    clock.Advance(FeedDiscovery::kTimeLimitMs - 1);
    QCoreApplication::processEvents();
    EXPECT_EQ(reports, 0);
    clock.Advance(1);
    QCoreApplication::processEvents();
    ASSERT_EQ(reports, 1);
    EXPECT_EQ(message, u"http://a.example/about gave no answer within 15 seconds."_s);
    EXPECT_EQ(clock.ActiveTimers(), 0);

    // Cancel drops the request and the time limit.
    reports = 0;
    offline.Discover(u"http://a.example/feed"_s);
    offline.Cancel();
    EXPECT_FALSE(fake.Complete(u"http://a.example/feed"_s, "GET", kRss)) << "the request was dropped";
    clock.Advance(FeedDiscovery::kTimeLimitMs * 2);
    QCoreApplication::processEvents();
    EXPECT_EQ(reports, 0);

    // A second discovery abandons the first; a receiver may start the next one from the report.
    QObject::connect(&offline, &FeedDiscovery::Finished, &offline, [&] {
        if (reports == 1) {
            offline.Discover(u"http://c.example/"_s);
        }
    });
    offline.Discover(u"http://a.example/feed"_s);
    offline.Discover(u"http://b.example/feed"_s);
    EXPECT_FALSE(fake.Complete(u"http://a.example/feed"_s, "GET", kRss));
    EXPECT_TRUE(fake.Complete(u"http://b.example/feed"_s, "GET", kAtom));
    ASSERT_EQ(reports, 1);
    EXPECT_EQ(feeds, (QList<DiscoveredFeed>{{u"http://b.example/feed"_s, u"Hill Journal"_s}}));
    EXPECT_EQ(fake.Waiting(u"http://c.example/"_s, "GET"), 1);
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
