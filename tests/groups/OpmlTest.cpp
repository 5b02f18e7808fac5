// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/AppHost.h"
#include "groups/clsOPML.h"
#include "platform/HttpClient.h"
#include "support/FakeClock.h"
#include "support/FakeHttpClient.h"
#include "support/LocalHttpServer.h"
#include "support/TestHome.h"

#include <QSignalSpy>
#include <QTimer>
#include <gtest/gtest.h>

namespace {

class RecordingHost final : public AppHost {
public:
    void PopupInfo(const QString& message, const QString&, const QString&) override { popups.append(message); }
    QStringList popups;
};

class OpmlTest : public ::testing::Test {
protected:
    TestHome home;
    FakeClock clock;
    NetworkHttpClient http{home.GetPaths()};
    RecordingHost host;
    clsOPML OPML{clock, http, host};
};

} // namespace

TEST_F(OpmlTest, OutlinesBecomeEntriesMembersBeforeTheirCategory) {
    home.Write(QStringLiteral("feeds.opml"),
               "<opml version=\"2.0\"><head><title>My Feeds</title></head><body>"
               "<outline text=\"Science\" title=\"ignored\">"
               "<outline text=\"Space\" XMLURL=\"http://space.example/rss\" count=\"30 days\"/>"
               "<outline text=\"Cells\" xmlUrl=\"http://cells.example/rss\" type=\"rss\"/>"
               "</outline>"
               "<outline xmlns:x=\"urn:x\" x:text=\"Prefixed\" x:xmlUrl=\"http://p.example/rss\"/>"
               "</body></opml>");
    QSignalSpy loaded(&OPML, &clsOPML::FileLoaded);
    OPML.LoadOPML(home.File(QStringLiteral("feeds.opml")));
    ASSERT_EQ(loaded.count(), 1);
    EXPECT_EQ(OPML.Title(), QStringLiteral("My Feeds"));
    ASSERT_EQ(OPML.GetCount(), 4);
    EXPECT_EQ(OPML.GetURL(0), QStringLiteral("http://space.example/rss"));
    EXPECT_EQ(OPML.GetExpire(0), 30);
    EXPECT_EQ(OPML.GetTitle(1), QStringLiteral("Cells"));
    EXPECT_EQ(OPML.GetURL(2), QString());
    EXPECT_EQ(OPML.GetTitle(2), QStringLiteral("Science"));
    EXPECT_EQ(OPML.GetURL(3), QStringLiteral("http://p.example/rss"));
    EXPECT_TRUE(host.popups.isEmpty());
}

TEST_F(OpmlTest, ASecondLoadKeepsOnlyTheSecondFileAndNoHeadKeepsThePathAsTitle) {
    home.Write(QStringLiteral("one.opml"), "<opml><body><outline text=\"A\" xmlUrl=\"http://a/\"/><outline text=\"B\" xmlUrl=\"http://b/\"/></body></opml>");
    home.Write(QStringLiteral("two.opml"), "<opml><body><outline text=\"C\" xmlUrl=\"http://c/\"/></body></opml>");
    OPML.LoadOPML(home.File(QStringLiteral("one.opml")));
    OPML.LoadOPML(home.File(QStringLiteral("two.opml")));
    ASSERT_EQ(OPML.GetCount(), 1);
    EXPECT_EQ(OPML.GetURL(0), QStringLiteral("http://c/"));
    EXPECT_EQ(OPML.Title(), home.File(QStringLiteral("two.opml")));
}

TEST_F(OpmlTest, AMissingOrBrokenFilePopsTheErrorAndStillReportsLoaded) {
    QSignalSpy loaded(&OPML, &clsOPML::FileLoaded);
    const QString missing = home.File(QStringLiteral("none.opml"));
    OPML.LoadOPML(missing);
    EXPECT_EQ(loaded.count(), 1);
    EXPECT_EQ(OPML.GetCount(), 0);
    EXPECT_EQ(host.popups, QStringList{QStringLiteral("Error Reading OPML File !!!\r\n") + missing});
    home.Write(QStringLiteral("bad.opml"), "<opml><body><outline");
    OPML.LoadOPML(home.File(QStringLiteral("bad.opml")));
    EXPECT_EQ(loaded.count(), 2);
    EXPECT_EQ(host.popups.size(), 2);
}

TEST_F(OpmlTest, AServerThatNeverAnswersTimesOutAfter25Seconds) {
    LocalHttpServer server;
    LocalHttpServer::Route silent;
    silent.hang = true;
    server.Serve(QStringLiteral("/slow.opml"), silent);
    QSignalSpy loaded(&OPML, &clsOPML::FileLoaded);
    QSignalSpy timedOut(&OPML, &clsOPML::FileTimout);
    // Fake time runs on from inside the reader's wait: first not quite enough, then enough.
    QTimer::singleShot(0, [&] { clock.Advance(clsOPML::kWaitMs - 1); });
    QTimer::singleShot(50, [&] { clock.Advance(1); });
    OPML.LoadOPML(server.Url(QStringLiteral("/slow.opml")).toString());
    EXPECT_EQ(timedOut.count(), 1);
    EXPECT_EQ(loaded.count(), 0);
    EXPECT_EQ(OPML.GetCount(), 0);
    EXPECT_EQ(clock.ElapsedMs(), clsOPML::kWaitMs);
}

TEST_F(OpmlTest, ReadsFromAUrl) {
    LocalHttpServer server;
    server.ServeXml(QStringLiteral("/list.opml"), "<opml><head><title>Spotlight</title></head><body><outline text=\"A\" xmlUrl=\"http://a/\"/></body></opml>");
    QSignalSpy loaded(&OPML, &clsOPML::FileLoaded);
    OPML.LoadOPML(server.Url(QStringLiteral("/list.opml")).toString());
    EXPECT_EQ(loaded.count(), 1);
    EXPECT_EQ(OPML.Title(), QStringLiteral("Spotlight"));
    EXPECT_EQ(OPML.GetCount(), 1);
}

TEST(OpmlLateAnswerTest, AnAnswerAfterTheTimeOutOrAfterTheReadersEndIsIgnored) {
    FakeClock clock;
    FakeHttpClient http;
    RecordingHost host;
    const QString url = QStringLiteral("http://lists.example.org/late.opml");
    const QByteArray list = "<opml><body><outline text=\"A\" xmlUrl=\"http://a/\"/></body></opml>";

    clsOPML OPML(clock, http, host);
    QSignalSpy loaded(&OPML, &clsOPML::FileLoaded);
    QTimer::singleShot(0, [&] { clock.Advance(clsOPML::kWaitMs); });
    OPML.LoadOPML(url);
    EXPECT_EQ(loaded.count(), 0);
    EXPECT_FALSE(http.Complete(url, "GET", list)) << "nobody listens any more";
    QCoreApplication::processEvents();
    EXPECT_EQ(OPML.GetCount(), 0);

    // A reader destroyed while it waits: its wait ends and the answer reaches nobody.
    auto doomed = std::make_unique<clsOPML>(clock, http, host);
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, [&] {
        if (http.Waiting(url, "GET") > 0) {
            poll.stop();
            doomed.reset();
        }
    });
    poll.start(0);
    doomed->LoadOPML(url);
    EXPECT_EQ(doomed, nullptr) << "the wait ended when the reader went";
    EXPECT_FALSE(http.Complete(url, "GET", list));
}
