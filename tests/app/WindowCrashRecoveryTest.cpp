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
#include <csignal>
#include <gtest/gtest.h>
#include <memory>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

constexpr int kAllWindowsLimitMs = 180000;
// Windows that run side by side: most of a run is waiting for timers and the network.
constexpr qsizetype kWindowsAtOnce = 4;
const QByteArray kCheckedLine = "checked\n";

// The window program on a copy of a home, with the crash stand-in preloaded and killing it at
// event `killAt` (0: never). Once its channels have checked their feeds, the stand-in is armed
// (only the shutdown's events count) and the window is told to end as a logout does. With
// `fetchAfter`, tamsel-cli fetches on that home when the window has gone.
class WatchedWindow final {
public:
    WatchedWindow(const QString& base, long killAt, bool fetchAfter) : m_fetchAfter(fetchAfter) {
        CopyFolder(base, m_home.path());
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"TAMSEL_HOME"_s, m_home.path());
        environment.insert(u"TAMSEL_RESOURCES"_s, QStringLiteral(TAMSEL_BUILD_DATA_DIR));
        environment.insert(u"QT_QPA_PLATFORM"_s, u"offscreen"_s);
        const QHash<QString, QString> watch = KillAtWriteEnvironment(m_home.path(), killAt, Log(), Armed());
        for (auto it = watch.cbegin(); it != watch.cend(); ++it) {
            environment.insert(it.key(), it.value());
        }
        m_window.setProcessEnvironment(environment);
        m_window.setWorkingDirectory(m_home.path());
        m_window.start(QStringLiteral(TAMSEL_WINDOW_PATH), {});
    }

    // Ends the window once it has checked, then fetches; true when all that is over.
    bool Poll() {
        if (!m_told) {
            m_out += m_window.readAllStandardOutput();
            if (m_out.contains(kCheckedLine)) {
                m_told = true;
                QFile armed(Armed());
                m_checked = armed.open(QIODevice::WriteOnly);
                m_window.terminate();
            }
        }
        if (m_window.state() != QProcess::NotRunning || !m_fetchAfter) {
            return m_window.state() == QProcess::NotRunning;
        }
        if (!m_fetchStarted) {
            m_fetchStarted = true;
            StartIn(m_fetch, Home(), {u"fetch"_s});
        }
        return m_fetch.state() == QProcess::NotRunning;
    }
    void Kill() {
        for (QProcess* process : {&m_window, &m_fetch}) {
            process->kill();
            process->waitForFinished();
        }
    }

    QString Home() const { return m_home.path(); }
    // Every channel had checked its feed before the window was told to end.
    bool Checked() const { return m_checked; }
    // Ended by SIGKILL, as the crash stand-in does.
    bool Killed() const {
        return m_window.exitStatus() == QProcess::CrashExit && m_window.exitCode() == SIGKILL;
    }
    int ExitCode() const { return m_window.exitStatus() == QProcess::NormalExit ? m_window.exitCode() : -1; }
    QString Err() { return QString::fromUtf8(m_window.readAllStandardError()); }
    // The shutdown's events, as the stand-in logged them.
    QStringList Events() const { return KillAtWriteEvents(Log()); }
    // What the fetch after the window did.
    CliRun Fetch() { return Finished(m_fetch); }

private:
    QString Log() const { return m_scratch.filePath(u"events.log"_s); }
    QString Armed() const { return m_scratch.filePath(u"armed"_s); }

    QTemporaryDir m_home;
    QTemporaryDir m_scratch;
    QProcess m_window;
    QProcess m_fetch;
    QByteArray m_out;
    bool m_fetchAfter;
    bool m_told = false;
    bool m_checked = false;
    bool m_fetchStarted = false;
};

// One window per kill point, a few at a time, each run until it (and the fetch after it) has ended.
std::vector<std::unique_ptr<WatchedWindow>> RunWindows(const QString& base, const QList<long>& killPoints,
                                                       bool fetchAfter) {
    std::vector<std::unique_ptr<WatchedWindow>> windows;
    const bool ended = PumpUntil(
        [&] {
            qsizetype running =
                std::count_if(windows.begin(), windows.end(),
                              [](const std::unique_ptr<WatchedWindow>& window) { return !window->Poll(); });
            for (; running < kWindowsAtOnce && qsizetype(windows.size()) < killPoints.size(); ++running) {
                windows.push_back(
                    std::make_unique<WatchedWindow>(base, killPoints[qsizetype(windows.size())], fetchAfter));
            }
            return running == 0;
        },
        kAllWindowsLimitMs);
    if (!ended) {
        ADD_FAILURE() << "a window or its next fetch did not end";
        for (const std::unique_ptr<WatchedWindow>& window : windows) {
            window->Kill();
        }
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

    static QStringList Shapes(const QStringList& events, const QString& home) {
        QStringList shapes;
        for (const QString& event : events) {
            shapes.append(KillAtWriteEventShape(event, home));
        }
        return shapes;
    }

    static inline std::unique_ptr<GrowingFeeds> s_feeds;
    static inline bool s_ready = false;
};

TEST_F(WindowCrashRecoveryTest, AWindowKilledAtAnyMomentOfItsShutdownLosesNothingForGood) {
    const std::vector<std::unique_ptr<WatchedWindow>> references =
        RunWindows(s_feeds->BaseHome(), {0}, false);
    ASSERT_EQ(references.size(), 1U);
    WatchedWindow& reference = *references.front();
    ASSERT_TRUE(reference.Checked()) << reference.Err().toStdString();
    ASSERT_EQ(reference.ExitCode(), 0) << reference.Err().toStdString();
    ASSERT_EQ(GrowingFeeds::StoredItems(reference.Home()), AllItemsWithMarks());
    const QStringList events = Shapes(reference.Events(), reference.Home());
    ASSERT_TRUE(events.contains(u"rename ~/profiles/Reader/items.xml"_s)) << events.join(u'\n').toStdString();
    ASSERT_TRUE(events.contains(u"rename ~/profiles/Reader/channels.xml"_s))
        << events.join(u'\n').toStdString();

    // The placement and the other settings say nothing about which news the reader has.
    const QList<long> points = KillPoints(reference.Events(), reference.Home() + u"/profiles"_s);
    const std::vector<std::unique_ptr<WatchedWindow>> crashes = RunWindows(s_feeds->BaseHome(), points, true);
    ASSERT_EQ(crashes.size(), size_t(points.size()));
    for (qsizetype i = 0; i < points.size(); ++i) {
        const long point = points[i];
        SCOPED_TRACE(QStringLiteral("killed at event %1 of %2 (%3)")
                         .arg(point)
                         .arg(events.size())
                         .arg(events[point - 1])
                         .toStdString());
        WatchedWindow& crash = *crashes[size_t(i)];
        ASSERT_TRUE(crash.Checked()) << crash.Err().toStdString();
        ASSERT_TRUE(crash.Killed()) << "exit " << crash.ExitCode() << ": " << crash.Err().toStdString();
        EXPECT_EQ(Shapes(crash.Events(), crash.Home()), events.mid(0, point))
            << "the shutdown took another way";

        const CliRun next = crash.Fetch();
        EXPECT_EQ(next.exitCode, 0) << next.err.toStdString();
        EXPECT_EQ(GrowingFeeds::StoredItems(crash.Home()), AllItemsWithMarks());
    }
}

} // namespace
