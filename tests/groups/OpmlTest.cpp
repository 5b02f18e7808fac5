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

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTimer>
#include <gtest/gtest.h>

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

// Each data/*.opml, loaded one after the other into one reader, gives the title
// and the entries
// ("title | url | expire", "-" for no URL) its .expected file lists: members
// before their folder, at every depth.
TEST_F(OpmlTest, OutlinesBecomeTheEntriesTheExpectedFilesList) {
    const QDir data(QStringLiteral(TAMSEL_TEST_DATA_DIR));
    const QStringList files = data.entryList({u"*.opml"_s}, QDir::Files, QDir::Name);
    ASSERT_GE(files.size(), 3);
    for (const QString& name : files) {
        SCOPED_TRACE(name.toStdString());
        QFile expected(data.filePath(name.chopped(5) + u".expected"_s));
        ASSERT_TRUE(expected.open(QIODevice::ReadOnly | QIODevice::Text));
        OPML.LoadOPML(data.filePath(name));
        QString entries = OPML.Title() + u'\n';
        for (int index = 0; index < OPML.GetCount(); ++index) {
            const QString url = OPML.GetURL(index);
            entries += u"%1 | %2 | %3\n"_s.arg(OPML.GetTitle(index), url.isEmpty() ? u"-"_s : url)
                           .arg(OPML.GetExpire(index));
        }
        // Without a head the path is the title.
        EXPECT_EQ(entries, QString::fromUtf8(expected.readAll()).replace(u"<path>"_s, data.filePath(name)));
    }
    EXPECT_EQ(loaded.count(), files.size());
    EXPECT_TRUE(host.popups.isEmpty()) << host.popups.join(u'\n').toStdString();
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
    // Fake time runs on from inside the reader's wait: first not quite enough,
    // then enough.
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

    // A reader destroyed while it waits: its wait ends and the answer reaches
    // nobody.
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
