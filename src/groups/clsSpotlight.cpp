// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "groups/clsSpotlight.h"

#include "app/AppHost.h"
#include "app/MakerSite.h"
#include "app/SharedHelpers.h"
#include "app/clsProfile.h"
#include "feeds/RSSChannel.h"
#include "groups/RSSGroup.h"
#include "groups/clsOPML.h"
#include "platform/CRegSettings.h"
#include "platform/HttpClient.h"
#include "platform/LongTimer.h"

#include <QTimer>

namespace {

const QString kSection = QStringLiteral("Spotlight");
const QString kLastModSuffix = QStringLiteral("_lastmod");
const QString kNeverChecked = QStringLiteral("-1");

} // namespace

clsSpotlight::clsSpotlight(Services services, const MakerSite& site, AppHost& host, QObject* parent)
    : QObject(parent), m_services(std::move(services)), m_site(site), m_host(host) {}

clsSpotlight::~clsSpotlight() = default;

void clsSpotlight::GroupsSaved() {
    if (!m_profileName.isEmpty()) {
        m_services.settings.SaveSetting(kSection, m_profileName + kLastModSuffix, m_lastModified);
    }
}

void clsSpotlight::init(const QString& profileName) {
    m_profileName = profileName;
    OPML = std::make_unique<clsOPML>(m_services.clock, m_services.http, m_host);
    connect(OPML.get(), &clsOPML::FileLoaded, this, &clsSpotlight::OPML_FileLoaded);
    m_Reloader = std::make_unique<LongTimer>(m_services.clock);
    connect(m_Reloader.get(), &LongTimer::OnTimer, this, &clsSpotlight::m_Reloader_OnTimer);
    m_Reloader->SetEnabled(true);
    m_Reloader->SetInterval(kFirstCheckMs);
    m_lastModified = m_services.settings.GetSetting(kSection, m_profileName + kLastModSuffix, QString());
}

void clsSpotlight::LoadOPML() {
    m_Reloader_OnTimer();
}

void clsSpotlight::m_Reloader_OnTimer() {
    if (!m_Reloader) {
        return;
    }
    if (m_Reloader->Interval() != kCheckPeriodMs) {
        m_Reloader->SetInterval(kCheckPeriodMs);
    }
    m_request = m_services.http.Execute(QUrl(m_site.SpotlightURL()), "HEAD");
    connect(m_request.get(), &HttpRequest::StateChange, this, &clsSpotlight::objInet_StateChange);
}

void clsSpotlight::objInet_StateChange(int state) {
    if (state == HttpRequest::icError) {
        LoadList(m_lastModified);
        return;
    }
    if (state != HttpRequest::icResponseCompleted) {
        return;
    }
    const QString header = m_request->GetHeader(QStringLiteral("Last-modified"));
    const bool unchanged = !header.isEmpty() && header == m_lastModified && m_lastModified != kNeverChecked;
    if (!unchanged) {
        LoadList(header.isEmpty() ? m_lastModified : header);
    }
}

void clsSpotlight::LoadList(const QString& lastModified) {
    m_pendingLastModified = lastModified;
    // The reader waits with the event loop running; it must not do so inside the request's
    // own report, which may be gone by the time the wait ends.
    QTimer::singleShot(0, this, [this] { OPML->LoadOPML(m_site.SpotlightURL()); });
}

void clsSpotlight::OPML_FileLoaded() {
    clsProfile* profile = m_host.ActiveProfile();
    // An unreadable list says nothing about which channels left it: the group stays as it is.
    if (!profile || OPML->Failed()) {
        return;
    }
    RSSGroup* spotlight = profile->GetGroup(GroupName::Spotlight);
    if (!spotlight) {
        return;
    }
    for (int i = spotlight->ChannelCount() - 1; i >= 0; --i) {
        const QString url = spotlight->ChannelURL(i);
        bool listed = false;
        for (int j = 0; j < OPML->GetCount() && !listed; ++j) {
            listed = OPML->GetURL(j) == url;
        }
        if (!listed) {
            profile->DeleteChannel(GroupName::Spotlight, url);
            if (!profile->IsInGroup(url)) {
                profile->RemoveChannel(url);
            }
        }
    }
    for (int j = OPML->GetCount() - 1; j >= 0; --j) {
        m_host.AddChannel(OPML->GetURL(j), GroupName::Spotlight);
        // Named as the list names it until its feed gives it a title of its own.
        RSSChannel* channel = profile->GetChannel(OPML->GetURL(j));
        const QString title = OPML->GetTitle(j).trimmed();
        if (channel && !title.isEmpty() && channel->Title() == channel->URL()) {
            channel->SetTitle(title);
            m_host.StateChange(m_profileName, *channel);
        }
    }
    // Applied only now: the saves of the groups during the walk must not record a list half applied.
    m_lastModified = m_pendingLastModified;
}
