// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/HttpClient.h"
#include "support/LocalHttpServer.h"
#include "support/TestHome.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

struct Outcome {
    int state = 0;
    QString lastModified;
    QByteArray body;
};

// Runs the event loop until the request reports, or 10 s pass (a failed test, not a wait).
Outcome Fetch(HttpClient& client, const QUrl& url, const QByteArray& method = "GET") {
    std::unique_ptr<HttpRequest> request = client.Execute(url, method);
    Outcome outcome;
    QEventLoop loop;
    QObject::connect(request.get(), &HttpRequest::StateChange, &loop, [&](int state) {
        outcome = {state, request->GetHeader(u"Last-modified"_s), request->Body()};
        loop.quit();
    });
    QTimer::singleShot(10000, &loop, &QEventLoop::quit);
    loop.exec();
    return outcome;
}

} // namespace

// HEAD and GET against a local server, a redirect, a file address (whose HEAD gives a date too),
// the shipped site, and the synchronous download. A request destroyed before it answers reports
// nothing.
TEST(HttpClientTest, ServersFilesAndTheShippedSiteAnswerAlike) {
    TestHome home;
    home.Write(u"res/site/tamsel/news.xml"_s, "<rss>news</rss>");
    LocalHttpServer server;
    server.ServeXml(u"/feed.xml"_s, "<rss/>", "Tue, 15 Nov 2005 13:45:00 GMT");
    server.Redirect(u"/moved"_s, server.Url(u"/feed.xml"_s), 301);
    NetworkHttpClient client(Paths(home.File(u"res"_s), home.Path(), home.Path()));
    const Outcome head = Fetch(client, server.Url(u"/feed.xml"_s), "HEAD");
    EXPECT_EQ(head.state, HttpRequest::icResponseCompleted);
    EXPECT_EQ(head.lastModified, u"Tue, 15 Nov 2005 13:45:00 GMT"_s);
    EXPECT_TRUE(head.body.isEmpty());
    const Outcome moved = Fetch(client, server.Url(u"/moved"_s));
    EXPECT_EQ(moved.state, HttpRequest::icResponseCompleted);
    EXPECT_EQ(moved.body, QByteArray("<rss/>"));
    EXPECT_EQ(server.Requests(), (QStringList{u"HEAD /feed.xml"_s, u"GET /moved"_s, u"GET /feed.xml"_s}));

    const QUrl file = QUrl::fromLocalFile(home.File(u"res/site/tamsel/news.xml"_s));
    EXPECT_TRUE(Fetch(client, file, "HEAD").lastModified.endsWith(u" GMT"_s));
    EXPECT_EQ(Fetch(client, file).body, QByteArray("<rss>news</rss>"));
    EXPECT_EQ(Fetch(client, QUrl(u"tamsel://site/tamsel/news.xml"_s)).body, QByteArray("<rss>news</rss>"));
    bool ok = false;
    EXPECT_EQ(client.OpenURL(server.Url(u"/feed.xml"_s), &ok), QByteArray("<rss/>"));
    EXPECT_TRUE(ok);
    EXPECT_TRUE(client.OpenURL(server.Url(u"/none.png"_s), &ok).isEmpty());
    EXPECT_FALSE(ok);
    int reports = 0;
    {
        std::unique_ptr<HttpRequest> request = client.Execute(server.Url(u"/feed.xml"_s), "GET");
        QObject::connect(request.get(), &HttpRequest::StateChange, [&](int) { ++reports; });
    }
    EXPECT_EQ(Fetch(client, server.Url(u"/feed.xml"_s)).state, HttpRequest::icResponseCompleted);
    EXPECT_EQ(reports, 0);
}

// Failures of every kind report an error: missing, reset, too large, an unknown scheme, a
// redirect loop, a missing file, and the shipped site's address leaving its folder.
TEST(HttpClientTest, FailuresReportError) {
    TestHome home;
    home.Write(u"res/site/tamsel/news.xml"_s, "<rss>news</rss>");
    home.Write(u"res/secret.txt"_s, "TOPSECRET");
    LocalHttpServer server;
    server.Serve(u"/reset"_s, {.reset = true});
    server.Serve(u"/huge"_s, {.body = QByteArray(HttpClient::kMaxResponseBytes + 1024, 'x')});
    for (int i = 0; i < 12; ++i) {
        server.Redirect(u"/loop%1"_s.arg(i), server.Url(u"/loop%1"_s.arg(i + 1)));
    }
    NetworkHttpClient client(Paths(home.File(u"res"_s), home.Path(), home.Path()));
    for (const QUrl& url :
         {server.Url(u"/missing"_s), server.Url(u"/reset"_s), server.Url(u"/huge"_s),
          QUrl(u"gopher://127.0.0.1/"_s), server.Url(u"/loop0"_s),
          QUrl::fromLocalFile(home.File(u"none.xml"_s)), QUrl(u"tamsel://site/../secret.txt"_s),
          QUrl(u"tamsel://other/tamsel/news.xml"_s)}) {
        const Outcome outcome = Fetch(client, url);
        EXPECT_EQ(outcome.state, HttpRequest::icError) << url.toString().toStdString();
        EXPECT_TRUE(outcome.body.isEmpty()) << url.toString().toStdString();
    }
}
