// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/AppHost.h"
#include "groups/clsOPML.h"
#include "platform/HttpClient.h"
#include "support/FakeClock.h"
#include "support/FakeHttpClient.h"
#include "support/LocalHttpServer.h"
#include "support/QStringPrinter.h"
#include "support/TestHome.h"

#include <QSignalSpy>
#include <QTimer>
#include <gtest/gtest.h>
#include <tuple>

using namespace Qt::StringLiterals;

namespace {

class RecordingHost final : public AppHost {
public:
    void PopupInfo(const QString& message, const QString&, const QString&) override {
        popups.append(message);
    }
    QStringList popups;
};

class OpmlTest : public ::testing::Test {
protected:
    TestHome home;
    FakeClock clock;
    NetworkHttpClient http{home.GetPaths()};
    RecordingHost host;
    clsOPML OPML{clock, http, host};
    QSignalSpy loaded{&OPML, &clsOPML::FileLoaded};
};

} // namespace

TEST_F(OpmlTest, OutlinesBecomeEntriesMembersBeforeTheirCategory) {
    home.Write(u"one.opml"_s, "<opml><body><outline text=\"A\" xmlUrl=\"http://a/\"/></body></opml>");
    home.Write(u"feeds.opml"_s,
               "<opml version=\"2.0\"><head><title>My Feeds</title></head><body>"
               "<outline text=\"Science\" title=\"ignored\">"
               "<outline text=\"Space\" XMLURL=\"http://space.example/rss\" count=\"30 days\"/>"
               "<outline text=\"Cells\" xmlUrl=\"http://cells.example/rss\" type=\"rss\"/></outline>"
               "<outline xmlns:x=\"urn:x\" x:text=\"Prefixed\" x:xmlUrl=\"http://p.example/rss\"/>"
               "</body></opml>");
    OPML.LoadOPML(home.File(u"one.opml"_s));
    EXPECT_EQ(OPML.Title(), home.File(u"one.opml"_s)) << "without a head the path is the title";
    OPML.LoadOPML(home.File(u"feeds.opml"_s));
    ASSERT_EQ(loaded.count(), 2);
    EXPECT_EQ(OPML.Title(), u"My Feeds"_s);
    ASSERT_EQ(OPML.GetCount(), 4) << "a second load keeps only the second file";
    EXPECT_EQ(OPML.GetURL(0), u"http://space.example/rss"_s);
    EXPECT_EQ(OPML.GetExpire(0), 30);
    EXPECT_EQ(OPML.GetTitle(1), u"Cells"_s);
    EXPECT_EQ(OPML.GetURL(2), QString());
    EXPECT_EQ(OPML.GetTitle(2), u"Science"_s);
    EXPECT_EQ(OPML.GetURL(3), u"http://p.example/rss"_s);
    EXPECT_TRUE(host.popups.isEmpty());
}

TEST_F(OpmlTest, AMissingOrBrokenFilePopsTheErrorAndStillReportsLoaded) {
    home.Write(u"bad.opml"_s, "<opml><body><outline");
    for (const QString& path : {home.File(u"none.opml"_s), home.File(u"bad.opml"_s)}) {
        host.popups.clear();
        OPML.LoadOPML(path);
        EXPECT_EQ(OPML.GetCount(), 0);
        EXPECT_EQ(host.popups, QStringList{u"Error Reading OPML File !!!\r\n"_s + path});
    }
    EXPECT_EQ(loaded.count(), 2);
}

TEST_F(OpmlTest, ReadsFromAUrlAndTimesOutAfter25Seconds) {
    LocalHttpServer server;
    server.ServeXml(u"/list.opml"_s, "<opml><head><title>Spotlight</title></head><body>"
                                     "<outline text=\"A\" xmlUrl=\"http://a/\"/></body></opml>");
    OPML.LoadOPML(server.Url(u"/list.opml"_s).toString());
    EXPECT_EQ(loaded.count(), 1);
    EXPECT_EQ(OPML.Title(), u"Spotlight"_s);
    EXPECT_EQ(OPML.GetCount(), 1);

    LocalHttpServer::Route silent;
    silent.hang = true;
    server.Serve(u"/slow.opml"_s, silent);
    QSignalSpy timedOut(&OPML, &clsOPML::FileTimout);
    // Fake time runs on from inside the reader's wait: first not quite enough, then enough.
    QTimer::singleShot(0, [&] { clock.Advance(clsOPML::kWaitMs - 1); });
    QTimer::singleShot(50, [&] { clock.Advance(1); });
    OPML.LoadOPML(server.Url(u"/slow.opml"_s).toString());
    EXPECT_EQ(timedOut.count(), 1);
    EXPECT_EQ(loaded.count(), 1);
    EXPECT_EQ(clock.ElapsedMs(), clsOPML::kWaitMs);
}

TEST(OpmlLateAnswerTest, AnAnswerAfterTheTimeOutOrAfterTheReadersEndIsIgnored) {
    FakeClock clock;
    FakeHttpClient http;
    RecordingHost host;
    const QString url = u"http://lists.example.org/late.opml"_s;
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

TEST_F(OpmlTest, AnotherReadersNestedFoldersGiveEveryFeedAsAnEntry) {
    const QString path = QStringLiteral(TAMSEL_TEST_DATA_DIR) + u"/nested-folders.opml"_s;
    OPML.LoadOPML(path);
    ASSERT_EQ(loaded.count(), 1);
    EXPECT_TRUE(host.popups.isEmpty()) << host.popups.join(u'\n').toStdString();
    EXPECT_EQ(OPML.Title(), u"Subscriptions of Mira"_s);
    struct Expected {
        QString url;
        QString title;
        int expire;
    };
    // Members before their folder, at every depth; folders have no URL.
    const QList<Expected> expected = {
        {u"https://orbit.example/rss.xml"_s, u"Orbit Weekly"_s, 0},
        {u"https://trench.example/atom.xml"_s, u"Trench Log"_s, 0},
        {u"https://reef.example/feed"_s, u"Reef Watch"_s, 0},
        {u"https://vent.example/index.xml"_s, u"Vent Notes"_s, 14},
        {QString(), u"Abyss"_s, 0},
        {QString(), u"Deep Sea"_s, 0},
        {QString(), u"Science"_s, 0},
        {QString(), u"Empty folder"_s, 0},
        {u"http://loose.example/feed"_s, u"Loose Feed"_s, 0},
    };
    ASSERT_EQ(OPML.GetCount(), expected.size());
    for (int index = 0; index < OPML.GetCount(); ++index) {
        SCOPED_TRACE(index);
        EXPECT_EQ(OPML.GetURL(index), expected[index].url);
        EXPECT_EQ(OPML.GetTitle(index), expected[index].title);
        EXPECT_EQ(OPML.GetExpire(index), expected[index].expire);
    }
}

TEST_F(OpmlTest, TheTitleAttributeNamesAnOutlineOnlyWithoutText) {
    const std::tuple<const char*, QString, QString> cases[] = {
        {"<outline text=\"Text Wins\" title=\"Title Loses\" xmlUrl=\"http://a.example/rss\"/>",
         u"http://a.example/rss"_s, u"Text Wins"_s},
        {"<outline TITLE=\"Upper\" XmlUrl=\"http://a.example/rss\"/>", u"http://a.example/rss"_s, u"Upper"_s},
        {"<outline title=\"Site only\" type=\"link\" url=\"http://a.example/\"/>", QString(), u"Site only"_s},
    };
    for (const auto& [outline, url, title] : cases) {
        SCOPED_TRACE(outline);
        home.Write(u"one.opml"_s, QByteArray("<opml version=\"1.1\"><body>") + outline + "</body></opml>");
        OPML.LoadOPML(home.File(u"one.opml"_s));
        ASSERT_EQ(OPML.GetCount(), 1);
        EXPECT_EQ(OPML.GetURL(0), url);
        EXPECT_EQ(OPML.GetTitle(0), title);
    }
}
