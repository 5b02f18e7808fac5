// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDeadlineTimer>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QStringList>
#include <functional>
#include <vector>

class HeadlessHost;
class MakerSite;
class QEventLoop;
class RSSChannel;
class XmlNode;
class clsProfile;

// One round of fetches for a program that ends afterwards: every subscribed channel (not the
// folders, not the maker's channels) is checked once through its own reload road: a connection
// slot from the host (four at most; a refused channel retries 1 to 3 s later), the HEAD check,
// the full load when the feed changed, the 25 s time-out. Each channel's reload timer is stopped
// as soon as its check has started, and the timers of the channels left out are stopped at once,
// so that no channel starts a second check while the round runs.
class FetchRound final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(FetchRound)
public:
    struct Summary {
        int channels = 0;
        // Loaded in full (the feed had changed or was never checked).
        int fetched = 0;
        // The HEAD check found the same Last-modified header: nothing was downloaded.
        int unchanged = 0;
        int failed = 0;
        int newItems = 0;
        QStringList failedUrls;
    };
    using Progress = std::function<void(const Summary& soFar, int done)>;

    // A channel's check ends within two time-outs of 25 s (HEAD, then load); a round in which no
    // channel finished for this long is over, and what is left counts as failed.
    static constexpr int kStallMs = 120000;

    // `force`: every channel loads its whole feed, whatever its Last-modified header says.
    FetchRound(HeadlessHost& host, clsProfile& profile, const MakerSite& site, bool force,
               QObject* parent = nullptr);
    ~FetchRound() override;

    // Called after every channel that finished.
    void SetProgress(Progress progress) { m_progress = std::move(progress); }
    // Runs the round to its end, serving the event loop meanwhile.
    Summary Run();

private:
    enum class Phase { Waiting, Asked, Running, Done };
    struct Entry {
        QPointer<RSSChannel> channel;
        QString url;
        Phase phase = Phase::Waiting;
        // State reports while busy: the HEAD check makes one, a full load one more.
        int busyReports = 0;
    };

    void Ask(Entry& entry);
    void OnState(RSSChannel& channel);
    void OnItem(bool isNew);
    void Finish(Entry& entry, bool failed, bool fetched);
    // Ends channels destroyed meanwhile, and the whole round when nothing finished for long.
    void Watch();
    bool AllDone() const;

    HeadlessHost& m_host;
    clsProfile& m_profile;
    const MakerSite& m_site;
    bool m_force = false;
    Progress m_progress;
    std::vector<Entry> m_entries;
    Summary m_summary;
    int m_done = 0;
    QEventLoop* m_loop = nullptr;
    QDeadlineTimer m_stall;
};
