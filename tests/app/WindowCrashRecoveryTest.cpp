// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
// A reader may lose the last minutes of news, never decide that it has news it does not have.
// The window program fetches new items, and a logout (SIGTERM) ends it through its own shutdown,
// which saves everything; it is killed at every moment that matters of that save. Each time, the
// next fetch of tamsel-cli must bring back every item the feeds carry, and what the reader had
// marked read stays read.
#include "support/CliProcess.h"
#include "support/EventPump.h"
#include "support/GrowingFeeds.h"
#include "support/KillAtWrite.h"
#include "support/QStringPrinter.h"

#include <QFile>
#include <QProcess>
#include <QSet>
#include <QTemporaryDir>
#include <algorithm>
#include <gtest/gtest.h>
#include <memory>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

constexpr int kAllWindowsLimitMs = 180000;
// Windows that run side by side: most of a run is waiting for timers and the network.
constexpr qsizetype kWindowsAtOnce = 4;

// The window program on a copy of a home, with the crash stand-in preloaded and killing it at
// event `killAt` (0: never). Once its channels have checked their feeds, the stand-in is armed
// (only the shutdown's events count) and the window is told to end as a logout does. With
// `fetchAfter`, tamsel-cli fetches on that home when the window has gone.
struct WatchedWindow {
    WatchedWindow(const QString& base, long killAt, bool fetchAfter) : fetchAfter(fetchAfter) {
        CopyFolder(base, home.path());
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"TAMSEL_HOME"_s, home.path());
        environment.insert(u"TAMSEL_RESOURCES"_s, QStringLiteral(TAMSEL_BUILD_DATA_DIR));
        environment.insert(u"QT_QPA_PLATFORM"_s, u"offscreen"_s);
        const QHash<QString, QString> watch = KillAtWriteEnvironment(home.path(), killAt, Log(), Armed());
        for (auto it = watch.cbegin(); it != watch.cend(); ++it) {
            environment.insert(it.key(), it.value());
        }
        window.setProcessEnvironment(environment);
        window.setWorkingDirectory(home.path());
        window.start(QStringLiteral(TAMSEL_WINDOW_PATH), {});
    }

    // Ends the window once it has checked, then fetches; true when all that is over.
    bool Poll() {
        out += window.readAllStandardOutput();
        if (!told && out.contains("checked\n")) {
            told = true;
            checked = QFile(Armed()).open(QIODevice::WriteOnly);
            window.terminate();
        }
        if (window.state() != QProcess::NotRunning || !fetchAfter) {
            return window.state() == QProcess::NotRunning;
        }
        if (!fetchStarted) {
            fetchStarted = true;
            StartIn(fetch, home.path(), {u"fetch"_s});
        }
        return fetch.state() == QProcess::NotRunning;
    }
    QString Log() const { return scratch.filePath(u"events.log"_s); }
    QString Armed() const { return scratch.filePath(u"armed"_s); }

    QTemporaryDir home;
    QTemporaryDir scratch;
    QProcess window;
    QProcess fetch;
    QByteArray out;
    bool fetchAfter;
    bool told = false;
    // Every channel had checked its feed before the window was told to end.
    bool checked = false;
    bool fetchStarted = false;
};

// One window per kill point, a few at a time, each run until it (and the fetch after it) has ended.
std::vector<std::unique_ptr<WatchedWindow>> RunWindows(const QString& base, const QList<long>& killPoints,
                                                       bool fetchAfter) {
    std::vector<std::unique_ptr<WatchedWindow>> windows;
    const bool ended = PumpUntil(
        [&] {
            qsizetype running =
                std::count_if(windows.begin(), windows.end(),
                              [](const std::unique_ptr<WatchedWindow>& w) { return !w->Poll(); });
            for (; running < kWindowsAtOnce && qsizetype(windows.size()) < killPoints.size(); ++running) {
                windows.push_back(
                    std::make_unique<WatchedWindow>(base, killPoints[qsizetype(windows.size())], fetchAfter));
            }
            return running == 0;
        },
        kAllWindowsLimitMs);
    if (!ended) {
        ADD_FAILURE() << "a window or its next fetch did not end";
        windows.clear();
    }
    return windows;
}

// The base home has fetched the earlier stories and marked those of the first feed read; then the
// feeds grew.
class WindowCrashRecoveryTest : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        s_feeds = std::make_unique<GrowingFeeds>();
        s_ready =
            s_feeds->Ready() &&
            RunIn(s_feeds->BaseHome(), {u"mark-read"_s, u"--channel"_s, s_feeds->FeedUrl(1)}).exitCode == 0;
    }
    static void TearDownTestSuite() { s_feeds.reset(); }
    void SetUp() override { ASSERT_TRUE(s_ready) << "the base profile could not be made"; }

    // Every story the feeds carry now, the first feed's earlier ones marked read.
    static QSet<QString> AllItemsWithMarks() {
        QSet<QString> items;
        for (int feed = 1; feed <= GrowingFeeds::kFeeds; ++feed) {
            for (int item = 1; item <= GrowingFeeds::kItemsAfter; ++item) {
                const bool read = feed == 1 && item <= GrowingFeeds::kItemsBefore;
                items.insert(GrowingFeeds::Guid(feed, item) + (read ? u" read"_s : QString()));
            }
        }
        return items;
    }
    // The shutdown's events of a window, its home written as ~.
    static QStringList Shapes(const WatchedWindow& window) {
        QStringList shapes;
        for (const QString& event : KillAtWriteEvents(window.Log())) {
            shapes.append(KillAtWriteEventShape(event, window.home.path()));
        }
        return shapes;
    }

    static inline std::unique_ptr<GrowingFeeds> s_feeds;
    static inline bool s_ready = false;
};

TEST_F(WindowCrashRecoveryTest, AWindowKilledAtAnyMomentOfItsShutdownLosesNothingForGood) {
    const auto references = RunWindows(s_feeds->BaseHome(), {0}, false);
    ASSERT_EQ(references.size(), 1U);
    WatchedWindow& reference = *references.front();
    const CliRun ended = Finished(reference.window);
    ASSERT_TRUE(reference.checked) << ended;
    ASSERT_EQ(ended.exitCode, 0) << ended;
    ASSERT_EQ(GrowingFeeds::StoredItems(reference.home.path()), AllItemsWithMarks());
    const QStringList events = Shapes(reference);
    for (const QString& file : {u"items.xml"_s, u"channels.xml"_s}) {
        ASSERT_TRUE(events.contains(u"rename ~/profiles/Reader/"_s + file))
            << events.join(u'\n').toStdString();
    }

    // The placement and the other settings say nothing about which news the reader has.
    const QList<long> points =
        KillPoints(KillAtWriteEvents(reference.Log()), reference.home.path() + u"/profiles"_s);
    const auto crashes = RunWindows(s_feeds->BaseHome(), points, true);
    ASSERT_EQ(crashes.size(), size_t(points.size()));
    for (qsizetype i = 0; i < points.size(); ++i) {
        const long point = points[i];
        SCOPED_TRACE(u"killed at event %1 of %2 (%3)"_s.arg(point)
                         .arg(events.size())
                         .arg(events[point - 1])
                         .toStdString());
        WatchedWindow& crash = *crashes[size_t(i)];
        const CliRun killed = Finished(crash.window);
        ASSERT_TRUE(crash.checked) << killed;
        ASSERT_TRUE(killed.killed) << killed;
        EXPECT_EQ(Shapes(crash), events.mid(0, point)) << "the shutdown took another way";
        const CliRun next = Finished(crash.fetch);
        EXPECT_EQ(next.exitCode, 0) << next;
        EXPECT_EQ(GrowingFeeds::StoredItems(crash.home.path()), AllItemsWithMarks());
    }
}

} // namespace
