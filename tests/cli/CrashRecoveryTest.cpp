// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
// A reader may lose the last minutes of news, never decide that it has news it does not have.
// tamsel-cli is killed at every moment that matters while a fetch saves, its items file is refused
// by the disk or found damaged; each time, the next fetch must bring back every item the feeds
// still carry.
#include "support/CliProcess.h"
#include "support/GrowingFeeds.h"
#include "support/KillAtWrite.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSet>
#include <QTemporaryDir>
#include <csignal>
#include <gtest/gtest.h>
#include <memory>
#include <sys/resource.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int kItemsBefore = GrowingFeeds::kItemsBefore;
constexpr int kItemsAfter = GrowingFeeds::kItemsAfter;

class CrashRecoveryTest : public ::testing::Test {
protected:
    static void SetUpTestSuite() { s_feeds = std::make_unique<GrowingFeeds>(); }
    static void TearDownTestSuite() { s_feeds.reset(); }
    void SetUp() override {
        ASSERT_TRUE(s_feeds->Ready()) << "the base profile could not be made";
        CopyFolder(s_feeds->BaseHome(), home.path());
    }

    static void Serve(int items, const QByteArray& lastModified) { s_feeds->Serve(items, lastModified); }
    static QString FeedUrl(int feed) { return s_feeds->FeedUrl(feed); }

    // A fetch with the crash stand-in preloaded: the events it saw and whether it was killed.
    CliRun FetchWatched(const QString& where, long killAt, const QString& log = {}) {
        return RunIn(where, {u"fetch"_s}, KillAtWriteEnvironment(where, killAt, log));
    }

    static inline std::unique_ptr<GrowingFeeds> s_feeds;
    QTemporaryDir home;
};

TEST_F(CrashRecoveryTest, AFetchKilledAtAnyMomentOfItsSaveLosesNothingForGood) {
    QTemporaryDir reference;
    CopyFolder(s_feeds->BaseHome(), reference.path());
    const QString log = reference.filePath(u"events.log"_s);
    const CliRun watched = FetchWatched(reference.path(), 0, log);
    ASSERT_EQ(watched.exitCode, 0) << watched.err.toStdString();
    ASSERT_EQ(GrowingFeeds::Unmarked(GrowingFeeds::StoredItems(reference.path())),
              GrowingFeeds::AllGuids(kItemsAfter));
    const QStringList events = KillAtWriteEvents(log);
    ASSERT_GE(events.count(u"rename "_s + GrowingFeeds::ProfileFile(reference.path(), u"items.xml"_s)), 1);
    ASSERT_GE(events.count(u"rename "_s + GrowingFeeds::ProfileFile(reference.path(), u"channels.xml"_s)), 1);

    const QList<long> points = KillPoints(events);
    for (const long point : points) {
        SCOPED_TRACE(QStringLiteral("killed at event %1 of %2 (%3)")
                         .arg(point)
                         .arg(events.size())
                         .arg(KillAtWriteEventShape(events[point - 1], reference.path()))
                         .toStdString());
        QTemporaryDir crashed;
        CopyFolder(s_feeds->BaseHome(), crashed.path());
        const CliRun killed = FetchWatched(crashed.path(), point);
        ASSERT_TRUE(killed.killed) << "exit " << killed.exitCode << ": " << killed.err.toStdString();

        const CliRun next = RunIn(crashed.path(), {u"fetch"_s});
        EXPECT_EQ(next.exitCode, 0) << next.err.toStdString();
        EXPECT_EQ(GrowingFeeds::Unmarked(GrowingFeeds::StoredItems(crashed.path())),
                  GrowingFeeds::AllGuids(kItemsAfter));
    }
}

TEST_F(CrashRecoveryTest, AnItemsFileTheDiskRefusesLeavesTheFeedsUnseen) {
    const QByteArray channelsBefore = [this] {
        QFile file(GrowingFeeds::ProfileFile(home.path(), u"channels.xml"_s));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }();
    // Smaller than the new items file, larger than every other file.
    const qint64 limit = QFileInfo(GrowingFeeds::ProfileFile(home.path(), u"items.xml"_s)).size() + 1024;
    const CliRun refused = RunIn(home.path(), {u"fetch"_s}, {}, [limit] {
        std::signal(SIGXFSZ, SIG_IGN);
        const rlimit small{rlim_t(limit), rlim_t(limit)};
        setrlimit(RLIMIT_FSIZE, &small);
    });
    EXPECT_EQ(refused.exitCode, 1);
    EXPECT_TRUE(refused.err.contains(u"items.xml could not be written"_s)) << refused.err.toStdString();
    QFile channels(GrowingFeeds::ProfileFile(home.path(), u"channels.xml"_s));
    ASSERT_TRUE(channels.open(QIODevice::ReadOnly));
    EXPECT_EQ(channels.readAll(), channelsBefore) << "channels.xml must not say the feeds were seen";

    ASSERT_EQ(RunIn(home.path(), {u"fetch"_s}).exitCode, 0);
    EXPECT_EQ(GrowingFeeds::Unmarked(GrowingFeeds::StoredItems(home.path())),
              GrowingFeeds::AllGuids(kItemsAfter));
}

TEST_F(CrashRecoveryTest, ADamagedItemsFileIsKeptAsideWhatCanBeReadStaysAndTheFeedsRefill) {
    ASSERT_EQ(RunIn(home.path(), {u"mark-read"_s, u"--channel"_s, FeedUrl(1)}).exitCode, 0);
    const QString items = GrowingFeeds::ProfileFile(home.path(), u"items.xml"_s);
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
    Serve(kItemsBefore, GrowingFeeds::kModifiedBefore);
    const CliRun fetched = RunIn(home.path(), {u"fetch"_s});
    Serve(kItemsAfter, GrowingFeeds::kModifiedAfter);
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
    const QSet<QString> stored = GrowingFeeds::StoredItems(home.path());
    EXPECT_EQ(GrowingFeeds::Unmarked(stored), GrowingFeeds::AllGuids(kItemsBefore));
    for (int item = 1; item <= kItemsBefore; ++item) {
        const QString guid = u"feed1-%1"_s.arg(item);
        EXPECT_TRUE(stored.contains(guid == cutGuid ? guid : guid + u" read"_s)) << guid.toStdString();
    }
}

} // namespace
