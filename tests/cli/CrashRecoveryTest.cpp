// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
// A reader may lose the last minutes of news, never decide that it has news it does not have.
// tamsel-cli is killed at every moment that matters while a fetch saves, or its items file is found
// damaged; each time, the next fetch must bring back every item the feeds still carry. (An items
// file the disk refuses is the session script refused-fetch.)
#include "support/CliProcess.h"
#include "support/GrowingFeeds.h"
#include "support/KillAtWrite.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSet>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

QByteArray ReadFile(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// Each test starts from a copy of the home that fetched the feeds once; the feeds have grown since.
class CrashRecoveryTest : public ::testing::Test {
protected:
    static void SetUpTestSuite() { s_feeds = std::make_unique<GrowingFeeds>(); }
    static void TearDownTestSuite() { s_feeds.reset(); }
    void SetUp() override {
        ASSERT_TRUE(s_feeds->Ready()) << "the base profile could not be made";
        CopyFolder(s_feeds->BaseHome(), home.path());
    }
    QString File(const QString& name) const { return GrowingFeeds::ProfileFile(home.path(), name); }
    // The guids of the stored items, read or not.
    static QSet<QString> Guids(const QString& where) {
        return GrowingFeeds::Unmarked(GrowingFeeds::StoredItems(where));
    }

    static inline std::unique_ptr<GrowingFeeds> s_feeds;
    QTemporaryDir home;
};

TEST_F(CrashRecoveryTest, AFetchKilledAtAnyMomentOfItsSaveLosesNothingForGood) {
    const QString log = home.filePath(u"events.log"_s);
    const CliRun watched = RunIn(home.path(), {u"fetch"_s}, KillAtWriteEnvironment(home.path(), 0, log));
    ASSERT_EQ(watched.exitCode, 0) << watched;
    EXPECT_EQ(Guids(home.path()), GrowingFeeds::AllGuids(GrowingFeeds::kItemsAfter));
    const QStringList events = KillAtWriteEvents(log);
    ASSERT_GE(events.count(u"rename "_s + File(u"items.xml"_s)), 1);
    ASSERT_GE(events.count(u"rename "_s + File(u"channels.xml"_s)), 1);

    for (const long point : KillPoints(events)) {
        SCOPED_TRACE(QStringLiteral("killed at event %1 of %2 (%3)")
                         .arg(point)
                         .arg(events.size())
                         .arg(KillAtWriteEventShape(events[point - 1], home.path()))
                         .toStdString());
        QTemporaryDir crashed;
        CopyFolder(s_feeds->BaseHome(), crashed.path());
        const CliRun killed =
            RunIn(crashed.path(), {u"fetch"_s}, KillAtWriteEnvironment(crashed.path(), point));
        ASSERT_TRUE(killed.killed) << killed;
        const CliRun next = RunIn(crashed.path(), {u"fetch"_s});
        EXPECT_EQ(next.exitCode, 0) << next;
        EXPECT_EQ(Guids(crashed.path()), GrowingFeeds::AllGuids(GrowingFeeds::kItemsAfter));
    }
}

TEST_F(CrashRecoveryTest, ADamagedItemsFileIsKeptAsideWhatCanBeReadStaysAndTheFeedsRefill) {
    ASSERT_EQ(RunIn(home.path(), {u"mark-read"_s, u"--channel"_s, s_feeds->FeedUrl(1)}).exitCode, 0);
    const QString items = File(u"items.xml"_s);
    const QByteArray whole = ReadFile(items);
    // Cut inside the last item, as a write ended by a full disk or a crash would leave it.
    const QByteArray cut = whole.left(whole.lastIndexOf("<item") + 40);
    QFile file(items);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write(cut);
    file.close();

    // A reading command changes nothing and names the user's own file, not its temporary copy.
    const CliRun listed = RunIn(home.path(), {u"list"_s});
    EXPECT_EQ(listed.exitCode, 0) << listed;
    EXPECT_TRUE(listed.err.contains(QDir::toNativeSeparators(items) + u" could not be read"_s)) << listed;
    EXPECT_TRUE(listed.err.contains(u"it is left as it is"_s)) << listed;

    // The feeds did not change since the last fetch: only forgetting that they were seen refills the bank.
    s_feeds->Serve(GrowingFeeds::kItemsBefore, GrowingFeeds::kModifiedBefore);
    const CliRun fetched = RunIn(home.path(), {u"fetch"_s});
    s_feeds->Serve(GrowingFeeds::kItemsAfter, GrowingFeeds::kModifiedAfter);
    EXPECT_EQ(fetched.exitCode, 0) << fetched;
    const QStringList aside = QFileInfo(items).dir().entryList({u"items.xml.damaged-*"_s}, QDir::Files);
    ASSERT_EQ(aside.size(), 1);
    const QString kept = QFileInfo(items).dir().filePath(aside.first());
    EXPECT_EQ(ReadFile(kept), cut) << "kept aside untouched";
    EXPECT_TRUE(fetched.err.contains(u"kept aside as "_s + QDir::toNativeSeparators(kept))) << fetched;

    // The item the cut ran through is dropped and comes back from its feed, unread.
    const QByteArray lastItem = whole.mid(whole.lastIndexOf("<item"));
    const qsizetype guidAt = lastItem.indexOf("<guid>") + 6;
    const QString cutGuid = QString::fromUtf8(lastItem.mid(guidAt, lastItem.indexOf("</guid>") - guidAt));
    const QSet<QString> stored = GrowingFeeds::StoredItems(home.path());
    EXPECT_EQ(GrowingFeeds::Unmarked(stored), GrowingFeeds::AllGuids(GrowingFeeds::kItemsBefore));
    for (int item = 1; item <= GrowingFeeds::kItemsBefore; ++item) {
        const QString guid = u"feed1-%1"_s.arg(item);
        EXPECT_TRUE(stored.contains(guid == cutGuid ? guid : guid + u" read"_s)) << guid.toStdString();
    }
}

} // namespace
