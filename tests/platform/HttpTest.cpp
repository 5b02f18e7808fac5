// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/HttpClient.h"
#include "support/LocalHttpServer.h"
#include "support/TestHome.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>
#include <gtest/gtest.h>

namespace {

struct Outcome {
    int state = 0;
    QString lastModified;
    QByteArray body;
};

// Runs the event loop until the request reports, or 10 s pass (a failed test, not a wait).
Outcome Fetch(HttpClient& client, const QUrl& url, const QByteArray& method) {
    std::unique_ptr<HttpRequest> request = client.Execute(url, method);
    Outcome outcome;
    QEventLoop loop;
    QObject::connect(request.get(), &HttpRequest::StateChange, &loop, [&](int state) {
        outcome.state = state;
        outcome.lastModified = request->GetHeader(QStringLiteral("Last-modified"));
        outcome.body = request->Body();
        loop.quit();
    });
    QTimer::singleShot(10000, &loop, &QEventLoop::quit);
    loop.exec();
    return outcome;
}

} // namespace

TEST(HttpClientTest, HeadAndGetAgainstALocalServer) {
    LocalHttpServer server;
    server.ServeXml(QStringLiteral("/feed.xml"), "<rss/>", "Tue, 15 Nov 2005 13:45:00 GMT");
    NetworkHttpClient client(TestHome().GetPaths());
    const Outcome head = Fetch(client, server.Url(QStringLiteral("/feed.xml")), "HEAD");
    EXPECT_EQ(head.state, HttpRequest::icResponseCompleted);
    EXPECT_EQ(head.lastModified, QStringLiteral("Tue, 15 Nov 2005 13:45:00 GMT"));
    EXPECT_TRUE(head.body.isEmpty());
    const Outcome get = Fetch(client, server.Url(QStringLiteral("/feed.xml")), "GET");
    EXPECT_EQ(get.state, HttpRequest::icResponseCompleted);
    EXPECT_EQ(get.body, QByteArray("<rss/>"));
    EXPECT_EQ(server.Requests(),
              (QStringList{QStringLiteral("HEAD /feed.xml"), QStringLiteral("GET /feed.xml")}));
}

// Failures of every kind report an error: missing, reset, too large, an unknown scheme, a
// redirect loop, a missing file, and the shipped site's address leaving its folder.
TEST(HttpClientTest, FailuresReportError) {
    TestHome home;
    home.Write(QStringLiteral("res/site/tamsel/news.xml"), "<rss>news</rss>");
    home.Write(QStringLiteral("res/secret.txt"), "TOPSECRET");
    LocalHttpServer server;
    LocalHttpServer::Route reset;
    reset.reset = true;
    server.Serve(QStringLiteral("/reset"), reset);
    LocalHttpServer::Route huge;
    huge.body = QByteArray(HttpClient::kMaxResponseBytes + 1024, 'x');
    server.Serve(QStringLiteral("/huge"), huge);
    for (int i = 0; i < 12; ++i) {
        server.Redirect(QStringLiteral("/loop%1").arg(i), server.Url(QStringLiteral("/loop%1").arg(i + 1)));
    }
    NetworkHttpClient client(Paths(home.File(QStringLiteral("res")), home.Path(), home.Path()));
    EXPECT_EQ(Fetch(client, QUrl(QStringLiteral("tamsel://site/tamsel/news.xml")), "GET").body,
              QByteArray("<rss>news</rss>"));
    for (const QUrl& url :
         {server.Url(QStringLiteral("/missing")), server.Url(QStringLiteral("/reset")),
          server.Url(QStringLiteral("/huge")), QUrl(QStringLiteral("gopher://127.0.0.1/")),
          server.Url(QStringLiteral("/loop0")), QUrl::fromLocalFile(home.File(QStringLiteral("none.xml"))),
          QUrl(QStringLiteral("tamsel://site/../secret.txt")),
          QUrl(QStringLiteral("tamsel://other/tamsel/news.xml"))}) {
        const Outcome outcome = Fetch(client, url, "GET");
        EXPECT_EQ(outcome.state, HttpRequest::icError) << url.toString().toStdString();
        EXPECT_TRUE(outcome.body.isEmpty()) << url.toString().toStdString();
    }
}

TEST(HttpClientTest, RedirectsAndFileUrlsAnswerLikeAServer) {
    TestHome home;
    home.Write(QStringLiteral("site/news.xml"), "<rss>local</rss>");
    LocalHttpServer server;
    server.ServeXml(QStringLiteral("/final.xml"), "<rss>final</rss>");
    server.Redirect(QStringLiteral("/moved"), server.Url(QStringLiteral("/final.xml")), 301);
    NetworkHttpClient client(home.GetPaths());
    const Outcome moved = Fetch(client, server.Url(QStringLiteral("/moved")), "GET");
    EXPECT_EQ(moved.state, HttpRequest::icResponseCompleted);
    EXPECT_EQ(moved.body, QByteArray("<rss>final</rss>"));
    const QUrl url = QUrl::fromLocalFile(home.File(QStringLiteral("site/news.xml")));
    const Outcome head = Fetch(client, url, "HEAD");
    EXPECT_EQ(head.state, HttpRequest::icResponseCompleted);
    EXPECT_TRUE(head.lastModified.endsWith(QStringLiteral(" GMT"))) << head.lastModified.toStdString();
    EXPECT_EQ(Fetch(client, url, "GET").body, QByteArray("<rss>local</rss>"));
}

TEST(HttpClientTest, OpenUrlDownloadsSynchronously) {
    LocalHttpServer server;
    server.ServeXml(QStringLiteral("/logo.png"), "PNGDATA");
    NetworkHttpClient client(TestHome().GetPaths());
    bool ok = false;
    EXPECT_EQ(client.OpenURL(server.Url(QStringLiteral("/logo.png")), &ok), QByteArray("PNGDATA"));
    EXPECT_TRUE(ok);
    EXPECT_TRUE(client.OpenURL(server.Url(QStringLiteral("/none.png")), &ok).isEmpty());
    EXPECT_FALSE(ok);
}

TEST(HttpClientTest, ADestroyedRequestReportsNothing) {
    LocalHttpServer server;
    server.ServeXml(QStringLiteral("/feed.xml"), "<rss/>");
    NetworkHttpClient client(TestHome().GetPaths());
    int reports = 0;
    {
        std::unique_ptr<HttpRequest> request = client.Execute(server.Url(QStringLiteral("/feed.xml")), "GET");
        QObject::connect(request.get(), &HttpRequest::StateChange, [&](int) { ++reports; });
    }
    const Outcome after = Fetch(client, server.Url(QStringLiteral("/feed.xml")), "GET");
    EXPECT_EQ(after.state, HttpRequest::icResponseCompleted);
    EXPECT_EQ(reports, 0);
}
