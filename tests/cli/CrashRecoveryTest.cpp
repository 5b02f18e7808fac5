// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
// A reader may lose the last minutes of news, never decide that it has news it does not have.
// tamsel-cli is killed at every moment that matters while a fetch saves, its items file is refused
// by the disk or found damaged; each time, the next fetch must bring back every item the feeds
// still carry.
#include "platform/CRegSettings.h"
#include "platform/Paths.h"
#include "platform/XmlDocument.h"
#include "support/CliProcess.h"
#include "support/LocalHttpServer.h"

#include <QDateTime>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QLocale>
#include <QProcess>
#include <QSet>
#include <QTemporaryDir>
#include <csignal>
#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <sys/resource.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int kFeeds = 4;
constexpr int kItemsBefore = 3;
constexpr int kItemsAfter = 8;
const QString kProfile = u"Reader"_s;

// One feed with `items` stories; a later version of a feed carries the earlier stories too.
QByteArray Feed(int feed, int items) {
    const QByteArray now =
        QLocale::c().toString(QDateTime::currentDateTime(), u"ddd, dd MMM yyyy hh:mm:ss"_s).toUtf8() + " GMT";
    const QByteArray n = QByteArray::number(feed);
    QByteArray body = "<rss version=\"2.0\"><channel><title>Feed " + n +
                      "</title><link>http://news.example/" + n + "/</link>";
    for (int item = 1; item <= items; ++item) {
        const QByteArray i = QByteArray::number(item);
        body += "<item><title>Story " + n + "." + i + "</title><guid>feed" + n + "-" + i +
                "</guid><pubDate>" + now + "</pubDate><description>" + QByteArray(400, 'x') +
                "</description></item>";
    }
    return body + "</channel></rss>";
}

QString ProfileFile(const QString& home, const QString& name) {
    return HomePaths(home).ProfileFolder(kProfile) + u'/' + name;
}

// The guids of the stored items, with " read" after those marked read.
QSet<QString> StoredItems(const QString& home) {
    const XmlDocument doc = XmlDocument::Load(ProfileFile(home, u"items.xml"_s));
    QSet<QString> items;
    for (XmlNode item = doc.DocumentElement().FirstChild(); !item.IsNull(); item = item.NextSibling()) {
        const XmlNode read = item.FirstChildElement(u"read"_s);
        items.insert(item.FirstChildElement(u"guid"_s).Text() +
                     (!read.IsNull() && read.Text() == u"true"_s ? u" read"_s : QString()));
    }
    return items;
}

QSet<QString> AllGuids(int items) {
    QSet<QString> guids;
    for (int feed = 1; feed <= kFeeds; ++feed) {
        for (int item = 1; item <= items; ++item) {
            guids.insert(u"feed%1-%2"_s.arg(feed).arg(item));
        }
    }
    return guids;
}

QSet<QString> Unmarked(QSet<QString> items) {
    QSet<QString> guids;
    for (const QString& item : items) {
        guids.insert(item.section(u' ', 0, 0));
    }
    return guids;
}

// The server carries the earlier stories first. The suite's base home is subscribed to every feed
// and has fetched them once; then each feed gains stories and a new Last-modified, so that the
// fetch under test downloads all of them and writes every file.
class CrashRecoveryTest : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        s_server = std::make_unique<LocalHttpServer>();
        s_server->ServeXml(u"/tamsel/spotlight.xml"_s, "<opml><body/></opml>",
                           "Mon, 16 Nov 2026 09:00:00 GMT");
        s_base = std::make_unique<QTemporaryDir>();
        const QString home = s_base->path();
        CRegSettings(HomePaths(home))
            .SaveSetting(u"Common"_s, u"MakerSite"_s, s_server->Url(QString()).toString());
        Serve(kItemsBefore, "Mon, 16 Nov 2026 08:00:00 GMT");
        s_setUp = RunIn(home, {u"profile-add"_s, kProfile}).exitCode == 0;
        for (int feed = 1; feed <= kFeeds; ++feed) {
            s_setUp = s_setUp && RunIn(home, {u"add"_s, FeedUrl(feed)}).exitCode == 0;
        }
        s_setUp = s_setUp && RunIn(home, {u"fetch"_s}).exitCode == 0 &&
                  Unmarked(StoredItems(home)) == AllGuids(kItemsBefore);
        Serve(kItemsAfter, "Tue, 17 Nov 2026 08:00:00 GMT");
    }
    static void TearDownTestSuite() {
        s_base.reset();
        s_server.reset();
    }
    void SetUp() override {
        ASSERT_TRUE(s_setUp) << "the base profile could not be made";
        CopyFolder(s_base->path(), home.path());
    }

    static void Serve(int items, const QByteArray& lastModified) {
        for (int feed = 1; feed <= kFeeds; ++feed) {
            s_server->ServeXml(u"/feed"_s + QString::number(feed), Feed(feed, items), lastModified);
        }
    }
    static QString FeedUrl(int feed) { return s_server->Url(u"/feed"_s + QString::number(feed)).toString(); }

    // A fetch with the crash stand-in preloaded: the events it saw and whether it was killed.
    CliRun FetchWatched(const QString& where, long killAt, const QString& log = {}) {
        QHash<QString, QString> extra{{u"LD_PRELOAD"_s, QStringLiteral(TAMSEL_KILLAT_PATH)},
                                      {u"TAMSEL_KILL_PREFIX"_s, where + u'/'},
                                      {u"TAMSEL_KILL_AT"_s, QString::number(killAt)},
                                      {u"TAMSEL_KILL_LOG"_s, log}};
        // The sanitizers' runtime must otherwise come first among the loaded libraries.
        extra.insert(u"ASAN_OPTIONS"_s,
                     qEnvironmentVariable("ASAN_OPTIONS") + u":verify_asan_link_order=0"_s);
        return RunIn(where, {u"fetch"_s}, extra);
    }

    static inline std::unique_ptr<LocalHttpServer> s_server;
    static inline std::unique_ptr<QTemporaryDir> s_base;
    static inline bool s_setUp = false;
    QTemporaryDir home;
};

// Kill points: every rename that puts a file in place, and the first and the last write of each
// run of writes to one file (a file begun, a file all but finished). Between those, a kill finds
// the disk in the same state as at one of them.
QList<long> KillPoints(const QStringList& events) {
    QList<long> points;
    for (qsizetype i = 0; i < events.size(); ++i) {
        const bool write = events[i].startsWith(u"write "_s);
        const bool firstOfRun = write && (i == 0 || events[i - 1] != events[i]);
        const bool lastOfRun = write && (i + 1 == events.size() || events[i + 1] != events[i]);
        if (!write || firstOfRun || lastOfRun) {
            points.append(long(i + 1));
        }
    }
    return points;
}

TEST_F(CrashRecoveryTest, AFetchKilledAtAnyMomentOfItsSaveLosesNothingForGood) {
    QTemporaryDir reference;
    CopyFolder(s_base->path(), reference.path());
    const QString log = reference.filePath(u"events.log"_s);
    const CliRun watched = FetchWatched(reference.path(), 0, log);
    ASSERT_EQ(watched.exitCode, 0) << watched.err.toStdString();
    ASSERT_EQ(Unmarked(StoredItems(reference.path())), AllGuids(kItemsAfter));
    QFile file(log);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QStringList events = QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts);
    ASSERT_GE(events.count(u"rename "_s + ProfileFile(reference.path(), u"items.xml"_s)), 1);
    ASSERT_GE(events.count(u"rename "_s + ProfileFile(reference.path(), u"channels.xml"_s)), 1);

    const QList<long> points = KillPoints(events);
    for (const long point : points) {
        const QString event = events[point - 1].section(u' ', 0, 0) + u' ' +
                              QFileInfo(events[point - 1].section(u' ', 1)).fileName();
        SCOPED_TRACE(QStringLiteral("killed at event %1 of %2 (%3)")
                         .arg(point)
                         .arg(events.size())
                         .arg(event)
                         .toStdString());
        QTemporaryDir crashed;
        CopyFolder(s_base->path(), crashed.path());
        const CliRun killed = FetchWatched(crashed.path(), point);
        ASSERT_TRUE(killed.killed) << "exit " << killed.exitCode << ": " << killed.err.toStdString();

        const CliRun next = RunIn(crashed.path(), {u"fetch"_s});
        EXPECT_EQ(next.exitCode, 0) << next.err.toStdString();
        EXPECT_EQ(Unmarked(StoredItems(crashed.path())), AllGuids(kItemsAfter));
    }
}

TEST_F(CrashRecoveryTest, AnItemsFileTheDiskRefusesLeavesTheFeedsUnseen) {
    const QByteArray channelsBefore = [this] {
        QFile file(ProfileFile(home.path(), u"channels.xml"_s));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }();
    // Smaller than the new items file, larger than every other file.
    const qint64 limit = QFileInfo(ProfileFile(home.path(), u"items.xml"_s)).size() + 1024;
    const CliRun refused = RunIn(home.path(), {u"fetch"_s}, {}, [limit] {
        std::signal(SIGXFSZ, SIG_IGN);
        const rlimit small{rlim_t(limit), rlim_t(limit)};
        setrlimit(RLIMIT_FSIZE, &small);
    });
    EXPECT_EQ(refused.exitCode, 1);
    EXPECT_TRUE(refused.err.contains(u"items.xml could not be written"_s)) << refused.err.toStdString();
    QFile channels(ProfileFile(home.path(), u"channels.xml"_s));
    ASSERT_TRUE(channels.open(QIODevice::ReadOnly));
    EXPECT_EQ(channels.readAll(), channelsBefore) << "channels.xml must not say the feeds were seen";

    ASSERT_EQ(RunIn(home.path(), {u"fetch"_s}).exitCode, 0);
    EXPECT_EQ(Unmarked(StoredItems(home.path())), AllGuids(kItemsAfter));
}

TEST_F(CrashRecoveryTest, ADamagedItemsFileIsKeptAsideWhatCanBeReadStaysAndTheFeedsRefill) {
    ASSERT_EQ(RunIn(home.path(), {u"mark-read"_s, u"--channel"_s, FeedUrl(1)}).exitCode, 0);
    const QString items = ProfileFile(home.path(), u"items.xml"_s);
    QFile file(items);
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    const QByteArray whole = file.readAll();
    // Cut inside the last item, as a write ended by a full disk or a crash would leave it.
    const QByteArray cut = whole.left(whole.lastIndexOf("<item") + 40);
    file.resize(0);
    file.write(cut);
    file.close();

    // A reading command changes nothing and names the user's own file, not its temporary copy.
    const CliRun listed = RunIn(home.path(), {u"list"_s});
    EXPECT_EQ(listed.exitCode, 0) << listed.err.toStdString();
    EXPECT_TRUE(listed.err.contains(QDir::toNativeSeparators(items) + u" could not be read"_s))
        << listed.err.toStdString();
    EXPECT_TRUE(listed.err.contains(u"it is left as it is"_s)) << listed.err.toStdString();

    // The feeds did not change since the last fetch: only forgetting that they were seen refills the bank.
    Serve(kItemsBefore, "Mon, 16 Nov 2026 08:00:00 GMT");
    const CliRun fetched = RunIn(home.path(), {u"fetch"_s});
    Serve(kItemsAfter, "Tue, 17 Nov 2026 08:00:00 GMT");
    EXPECT_EQ(fetched.exitCode, 0) << fetched.err.toStdString();
    const QStringList aside = QFileInfo(items).dir().entryList({u"items.xml.damaged-*"_s}, QDir::Files);
    ASSERT_EQ(aside.size(), 1);
    QFile kept(QFileInfo(items).dir().filePath(aside.first()));
    ASSERT_TRUE(kept.open(QIODevice::ReadOnly));
    EXPECT_EQ(kept.readAll(), cut) << "kept aside untouched";
    EXPECT_TRUE(fetched.err.contains(u"kept aside as "_s + QDir::toNativeSeparators(kept.fileName())))
        << fetched.err.toStdString();

    // The item the cut ran through is dropped and comes back from its feed, unread.
    const QByteArray lastItem = whole.mid(whole.lastIndexOf("<item"));
    const qsizetype guidAt = lastItem.indexOf("<guid>") + 6;
    const QString cutGuid = QString::fromUtf8(lastItem.mid(guidAt, lastItem.indexOf("</guid>") - guidAt));
    const QSet<QString> stored = StoredItems(home.path());
    EXPECT_EQ(Unmarked(stored), AllGuids(kItemsBefore));
    for (int item = 1; item <= kItemsBefore; ++item) {
        const QString guid = u"feed1-%1"_s.arg(item);
        EXPECT_TRUE(stored.contains(guid == cutGuid ? guid : guid + u" read"_s)) << guid.toStdString();
    }
}

} // namespace
