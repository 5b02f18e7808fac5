// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/HttpClient.h"
#include "support/EventPump.h"
#include "support/LocalHttpServer.h"
#include "support/TestHome.h"

#include <QFile>
#include <QTimeZone>
#include <gtest/gtest.h>
#include <tuple>

using namespace Qt::StringLiterals;

namespace {

// What the request reported, as "ok|Last-Modified|body" or "error|...". Serves the event loop until
// it reports, or 10 s pass (a failed test, not a wait).
QString Fetch(HttpClient& client, const QUrl& url, const QByteArray& method) {
    std::unique_ptr<HttpRequest> request = client.Execute(url, method);
    QString outcome = u"no report"_s;
    QObject::connect(request.get(), &HttpRequest::StateChange, [&](int state) {
        const QString name = state == HttpRequest::icResponseCompleted ? u"ok"_s
                             : state == HttpRequest::icError           ? u"error"_s
                                                                       : QString::number(state);
        outcome =
            name + u'|' + request->GetHeader(u"Last-modified"_s) + u'|' + QString::fromUtf8(request->Body());
    });
    PumpUntil([&outcome] { return outcome != u"no report"; }, 10000);
    return outcome;
}

} // namespace

// A server, a redirect, a file address and the shipped site answer alike, HEAD with the date and
// GET with the body. Failures of every kind report an error and no body: missing, reset, too
// large, an unknown scheme, a redirect loop, a missing file, and the shipped site's address
// leaving its folder. A request destroyed before it answers reports nothing.
TEST(HttpClientTest, ServersFilesAndTheShippedSiteAnswerAlikeAndFailuresReportAnError) {
    TestHome home;
    home.Write(u"res/site/tamsel/news.xml"_s, "<rss>news</rss>");
    home.Write(u"res/secret.txt"_s, "TOPSECRET");
    QFile news(home.File(u"res/site/tamsel/news.xml"_s));
    ASSERT_TRUE(news.open(QIODevice::Append) &&
                news.setFileTime(QDateTime(QDate(2005, 11, 15), QTime(13, 45), QTimeZone::utc()),
                                 QFileDevice::FileModificationTime));
    const QString answer = u"ok|Tue, 15 Nov 2005 13:45:00 GMT|"_s;
    LocalHttpServer server;
    server.ServeXml(u"/feed.xml"_s, "<rss/>", "Tue, 15 Nov 2005 13:45:00 GMT");
    server.Redirect(u"/moved"_s, server.Url(u"/feed.xml"_s), 301);
    server.Serve(u"/reset"_s, {.reset = true});
    server.Serve(u"/huge"_s, {.body = QByteArray(HttpClient::kMaxResponseBytes + 1024, 'x')});
    for (int i = 0; i < 12; ++i) {
        server.Redirect(u"/loop%1"_s.arg(i), server.Url(u"/loop%1"_s.arg(i + 1)));
    }
    NetworkHttpClient client(Paths(home.File(u"res"_s), home.Path(), home.Path()));
    const QUrl file = QUrl::fromLocalFile(news.fileName());
    const std::tuple<QUrl, QByteArray, QString> answered[] = {
        {server.Url(u"/feed.xml"_s), "HEAD", answer},
        {server.Url(u"/moved"_s), "GET", answer + u"<rss/>"_s},
        {file, "HEAD", answer},
        {file, "GET", answer + u"<rss>news</rss>"_s},
        {QUrl(u"tamsel://site/tamsel/news.xml"_s), "GET", answer + u"<rss>news</rss>"_s}};
    for (const auto& [url, method, expected] : answered) {
        EXPECT_EQ(Fetch(client, url, method), expected)
            << method.data() << ' ' << url.toString().toStdString();
    }
    EXPECT_EQ(server.Requests(), (QStringList{u"HEAD /feed.xml"_s, u"GET /moved"_s, u"GET /feed.xml"_s}));
    for (const QUrl& url :
         {server.Url(u"/missing"_s), server.Url(u"/reset"_s), server.Url(u"/huge"_s),
          QUrl(u"gopher://127.0.0.1/"_s), server.Url(u"/loop0"_s),
          QUrl::fromLocalFile(home.File(u"none.xml"_s)), QUrl(u"tamsel://site/../secret.txt"_s),
          QUrl(u"tamsel://other/tamsel/news.xml"_s)}) {
        EXPECT_EQ(Fetch(client, url, "GET"), u"error||"_s) << url.toString().toStdString();
    }

    bool ok = false;
    EXPECT_EQ(client.OpenURL(server.Url(u"/feed.xml"_s), &ok), QByteArray("<rss/>"));
    EXPECT_TRUE(ok);
    EXPECT_TRUE(client.OpenURL(server.Url(u"/none.png"_s), &ok).isEmpty());
    EXPECT_FALSE(ok);
    // The request ends with the statement that makes it.
    int reports = 0;
    QObject::connect(client.Execute(server.Url(u"/feed.xml"_s), "GET").get(), &HttpRequest::StateChange,
                     [&reports](int) { ++reports; });
    EXPECT_EQ(Fetch(client, server.Url(u"/feed.xml"_s), "GET"), answer + u"<rss/>"_s);
    EXPECT_EQ(reports, 0);
}
