// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/FetchRound.h"

#include "app/HeadlessHost.h"
#include "app/MakerSite.h"
#include "app/SharedHelpers.h"
#include "app/clsProfile.h"
#include "feeds/RSSChannel.h"

#include <QEventLoop>
#include <QTimer>
#include <algorithm>

namespace {

// How often channels destroyed meanwhile (dropped by the Spotlight list) and a stalled round are
// looked for.
constexpr int kWatchMs = 1000;
// A check that went on to a full load reported itself busy twice: at the HEAD and at the load.
constexpr int kHeadAndLoadReports = 2;

} // namespace

FetchRound::FetchRound(HeadlessHost& host, clsProfile& profile, const MakerSite& site, bool force,
                       QObject* parent)
    : QObject(parent), m_host(host), m_profile(profile), m_site(site), m_force(force) {}

FetchRound::~FetchRound() {
    m_host.SetStateObserver({});
    m_host.SetItemObserver({});
}

FetchRound::Summary FetchRound::Run() {
    m_host.SetStateObserver([this](RSSChannel& channel) { OnState(channel); });
    m_host.SetItemObserver([this](const XmlNode&, bool isNew) { OnItem(isNew); });

    for (int index = 1; index <= m_profile.ChannelCount(); ++index) {
        RSSChannel* channel = m_profile.GetChannel(index);
        if (IsBuiltinChannel(channel->URL(), m_site.HelpURL(), m_site.NewsURL())) {
            channel->StopReloading();
        } else {
            m_entries.push_back(Entry{channel, channel->URL()});
        }
    }
    m_summary.channels = int(m_entries.size());
    for (Entry& entry : m_entries) {
        if (m_force) {
            entry.channel->ForgetLastModified();
        }
        // A channel still reading its local copy is asked once that load has ended.
        if (!entry.channel->Busy()) {
            Ask(entry);
        }
    }
    if (!AllDone()) {
        QEventLoop loop;
        QTimer watch;
        connect(&watch, &QTimer::timeout, this, &FetchRound::Watch);
        watch.start(kWatchMs);
        m_stall.setRemainingTime(kStallMs);
        m_loop = &loop;
        loop.exec();
        m_loop = nullptr;
    }
    m_host.SetStateObserver({});
    m_host.SetItemObserver({});
    return m_summary;
}

void FetchRound::Ask(Entry& entry) {
    entry.phase = Phase::Asked;
    // The reload tick: with a free slot the HEAD check starts now (and reports itself busy);
    // without one the channel's own timer asks again 1 to 3 s later.
    entry.channel->LoadRSS();
}

void FetchRound::OnState(RSSChannel& channel) {
    const auto found = std::find_if(m_entries.begin(), m_entries.end(),
                                    [&channel](const Entry& entry) { return entry.channel == &channel; });
    if (found == m_entries.end()) {
        return;
    }
    Entry& entry = *found;
    switch (entry.phase) {
    case Phase::Waiting:
        if (!channel.Busy()) {
            // Not from inside the channel's own report.
            QTimer::singleShot(0, this, [this, pointer = entry.channel] {
                for (Entry& waiting : m_entries) {
                    if (waiting.channel == pointer && pointer && waiting.phase == Phase::Waiting) {
                        Ask(waiting);
                    }
                }
            });
        }
        break;
    case Phase::Asked:
        if (channel.Busy()) {
            entry.phase = Phase::Running;
            entry.busyReports = 1;
            channel.StopReloading();
        }
        break;
    case Phase::Running:
        if (channel.Busy()) {
            ++entry.busyReports;
        } else {
            Finish(entry, channel.LoadFailed(), entry.busyReports >= kHeadAndLoadReports);
        }
        break;
    case Phase::Done:
        break;
    }
}

void FetchRound::OnItem(bool isNew) {
    if (isNew) {
        ++m_summary.newItems;
    }
}

void FetchRound::Finish(Entry& entry, bool failed, bool fetched) {
    entry.phase = Phase::Done;
    ++m_done;
    if (failed) {
        ++m_summary.failed;
        m_summary.failedUrls.append(entry.url);
    } else if (fetched) {
        ++m_summary.fetched;
    } else {
        ++m_summary.unchanged;
    }
    m_stall.setRemainingTime(kStallMs);
    // Its slot is free again: a channel still waiting for one asks now, not at its own retry 1 to
    // 3 s later. Not from inside the finished channel's report, which still holds the slot.
    QTimer::singleShot(0, this, [this] {
        for (Entry& waiting : m_entries) {
            if (waiting.phase == Phase::Asked && waiting.channel && !waiting.channel->Busy()) {
                Ask(waiting);
                return;
            }
        }
    });
    if (m_progress) {
        m_progress(m_summary, m_done);
    }
    if (AllDone() && m_loop) {
        m_loop->quit();
    }
}

void FetchRound::Watch() {
    const bool stalled = m_stall.hasExpired();
    for (Entry& entry : m_entries) {
        if (entry.phase != Phase::Done && (!entry.channel || stalled)) {
            Finish(entry, true, false);
        }
    }
}

bool FetchRound::AllDone() const {
    return m_done == int(m_entries.size());
}
