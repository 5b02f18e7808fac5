// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/RefreshCoordinator.h"

#include "app/SharedHelpers.h"
#include "app/clsProfile.h"
#include "feeds/RSSChannel.h"

RefreshCoordinator::RefreshCoordinator(Clock& clock, QString helpUrl, Target& target, QObject* parent)
    : QObject(parent), m_helpUrl(std::move(helpUrl)), m_target(target), tmrSysChannels(clock) {
    tmrSysChannels.SetInterval(kFolderRecountMs);
    connect(&tmrSysChannels, &LongTimer::OnTimer, this, &RefreshCoordinator::tmrSysChannels_OnTimer);
}

RefreshCoordinator::~RefreshCoordinator() = default;

bool RefreshCoordinator::RequestConnect() {
    if (m_ConnCount >= kConnectionSlots) {
        return false;
    }
    ++m_ConnCount;
    return true;
}

void RefreshCoordinator::ConnectRelease() {
    if (m_ConnCount > 0) {
        --m_ConnCount;
    }
}

void RefreshCoordinator::StateChange(const QString& profileName, RSSChannel& channel) {
    // Late reports of a profile that has just been switched away from are ignored.
    const clsProfile* profile = m_target.ActiveProfile();
    if (!profile || profile->Name() != profileName) {
        return;
    }
    if (m_target.UpdateChannelNode(channel) && !IsVirtualFolder(channel.URL())) {
        tmrSysChannels.SetEnabled(true);
    }
}

void RefreshCoordinator::tmrSysChannels_OnTimer() {
    if (clsProfile* profile = m_target.ActiveProfile()) {
        const QString recounted[] = {
            FolderKey::Today, FolderKey::Yesterday, FolderKey::Week,    FolderKey::Deleted,
            FolderKey::Read,  FolderKey::Unread,    FolderKey::Flagged, m_helpUrl};
        for (const QString& key : recounted) {
            if (RSSChannel* channel = profile->GetChannel(key)) {
                channel->LoadChannelSet();
            }
        }
        const QString redrawn[] = {FolderKey::Flagged, FolderKey::Today,   FolderKey::Yesterday,
                                   FolderKey::Week,    FolderKey::Deleted, FolderKey::Read,
                                   FolderKey::Unread,  m_helpUrl};
        for (const QString& key : redrawn) {
            if (RSSChannel* channel = profile->GetChannel(key)) {
                StateChange(profile->Name(), *channel);
            }
        }
    }
    // Last, so that a change of the help channel noted just above does not leave it armed.
    tmrSysChannels.SetEnabled(false);
}
