// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
// A reader may lose the last minutes of news, never decide that it has news it does not have.
// tamsel-cli is killed at every moment that matters while a fetch saves; each time, the next fetch
// must bring back every item the feeds still carry, and the read marks the reader had set. (A damaged items
// file and one the disk refuses are the session scripts damaged-items and refused-fetch.)
#include "support/CliProcess.h"
#include "support/GrowingFeeds.h"
#include "support/KillAtWrite.h"

#include <QSet>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

// Each fetch starts from a copy of the home that fetched the feeds once; the feeds have grown since.
TEST(CrashRecoveryTest, AFetchKilledAtAnyMomentOfItsSaveLosesNothingForGood) {
    const GrowingFeeds feeds;
    ASSERT_TRUE(feeds.Ready()) << "the base profile could not be made";
    const QSet<QString> all = GrowingFeeds::Expected(GrowingFeeds::kItemsAfter);
    const QTemporaryDir home;
    CopyFolder(feeds.BaseHome(), home.path());
    const QString log = home.filePath(u"events.log"_s);
    const CliRun watched = RunIn(home.path(), {u"fetch"_s}, KillAtWriteEnvironment(home.path(), 0, log));
    ASSERT_EQ(watched.exitCode, 0) << watched;
    EXPECT_EQ(GrowingFeeds::StoredItems(home.path()), all);
    const QStringList events = KillAtWriteEvents(log);
    for (const QString& file : {u"items.xml"_s, u"channels.xml"_s}) {
        ASSERT_GE(events.count(u"rename "_s + GrowingFeeds::ProfileFile(home.path(), file)), 1);
    }

    for (const long point : KillPoints(events)) {
        const QString event = KillAtWriteEventShape(events[point - 1], home.path());
        SCOPED_TRACE(
            u"killed at event %1 of %2 (%3)"_s.arg(point).arg(events.size()).arg(event).toStdString());
        const QTemporaryDir crashed;
        CopyFolder(feeds.BaseHome(), crashed.path());
        const CliRun killed =
            RunIn(crashed.path(), {u"fetch"_s}, KillAtWriteEnvironment(crashed.path(), point));
        ASSERT_TRUE(killed.killed) << killed;
        const CliRun next = RunIn(crashed.path(), {u"fetch"_s});
        EXPECT_EQ(next.exitCode, 0) << next;
        EXPECT_EQ(GrowingFeeds::StoredItems(crashed.path()), all);
    }
}

} // namespace
