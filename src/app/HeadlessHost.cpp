// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/HeadlessHost.h"

#include "app/clsProfile.h"
#include "feeds/RSSChannel.h"

#include <cstdio>

void HeadlessHost::RecordedViewer::SetCaption(const QString& caption) {
    m_caption = caption;
    m_calls.append(QStringLiteral("caption ") + caption);
}

void HeadlessHost::RecordedViewer::SetupView(const QString& key, const QString& pagePath) {
    m_calls.append(QStringLiteral("setup ") + key + u'|' + pagePath);
}

void HeadlessHost::RecordedViewer::SetVisible(bool visible) {
    m_visible = visible;
    m_calls.append(visible ? QStringLiteral("show") : QStringLiteral("hide"));
}

void HeadlessHost::RecordedViewer::ShowItem(int index) {
    m_calls.append(QStringLiteral("item %1").arg(index));
}

void HeadlessHost::RecordedViewer::SetGeometry(const QRect& geometry) {
    m_geometry = geometry;
    m_calls.append(QStringLiteral("geometry %1,%2,%3,%4")
                       .arg(geometry.left())
                       .arg(geometry.top())
                       .arg(geometry.width())
                       .arg(geometry.height()));
    // A real window reports the move as a resize; the channel must not save it back.
    m_channel.frm_Resized();
}

void HeadlessHost::RecordedViewer::SetPanelHeight(int height) {
    m_panelHeight = height;
    m_calls.append(QStringLiteral("panel %1").arg(height));
}

void HeadlessHost::RecordedViewer::UserResize(const QRect& geometry) {
    m_geometry = geometry;
    m_channel.frm_Resized();
}

HeadlessHost::HeadlessHost(Clock& clock, const XsltStylesheet& namespaceTransform, QString helpUrl)
    : m_namespaceTransform(namespaceTransform), m_coordinator(clock, std::move(helpUrl), *this) {}

HeadlessHost::~HeadlessHost() {
    // The channels call their host while they close down.
    ChangeUser(nullptr);
}

void HeadlessHost::ChangeUser(clsProfile* profile) {
    clsProfile* old = m_activeProfile;
    m_activeProfile = nullptr;
    if (old) {
        old->Deactivate();
    }
    m_nodes.clear();
    m_activeProfile = profile;
    if (profile) {
        profile->SetUserActive();
    }
}

void HeadlessHost::PopupInfo(const QString& message, const QString& profileName, const QString& channelKey) {
    if (!profileName.isEmpty() && (!m_activeProfile || profileName != m_activeProfile->Name())) {
        return;
    }
    if (!channelKey.isEmpty() && (!m_activeProfile || !m_activeProfile->IsInGroup(channelKey))) {
        return;
    }
    m_popups.append(message);
    if (m_printPopups) {
        std::fprintf(stderr, "%s%s%s\n", qUtf8Printable(message), channelKey.isEmpty() ? "" : " - ",
                     qUtf8Printable(channelKey));
    }
}

void HeadlessHost::StateChange(const QString& profileName, RSSChannel& channel) {
    m_coordinator.StateChange(profileName, channel);
    if (m_stateObserver && m_activeProfile && m_activeProfile->Name() == profileName) {
        m_stateObserver(channel);
    }
}

bool HeadlessHost::AddRSSItem(const XmlNode& item) {
    const bool isNew = m_activeProfile && m_activeProfile->AddItem(item);
    if (m_itemObserver && m_activeProfile) {
        m_itemObserver(item, isNew);
    }
    return isNew;
}

ChannelViewer* HeadlessHost::Viewer(const RSSChannel& channel) const {
    return ViewerOf(channel);
}

HeadlessHost::RecordedViewer* HeadlessHost::ViewerOf(const RSSChannel& channel) const {
    const auto found = m_viewers.find(&channel);
    return found == m_viewers.end() ? nullptr : found->second.get();
}

ChannelViewer* HeadlessHost::LoadViewer(RSSChannel& channel) {
    m_viewerRequests.append(QStringLiteral("load ") + channel.URL());
    auto& viewer = m_viewers[&channel];
    if (!viewer) {
        viewer = std::make_unique<RecordedViewer>(channel);
    }
    return viewer.get();
}

void HeadlessHost::UnloadViewer(RSSChannel& channel) {
    if (m_viewers.erase(&channel) > 0) {
        m_viewerRequests.append(QStringLiteral("unload ") + channel.URL());
    }
}

void HeadlessHost::AddChannel(const QString& url, const QString& groupName) {
    if (m_activeProfile && !url.trimmed().isEmpty()) {
        m_activeProfile->AddChannel(url, groupName);
        m_activeProfile->SaveGroupXML();
    }
}

QString HeadlessHost::NodeText(const QString& url) const {
    return m_nodes.value(url.toCaseFolded()).text;
}

QString HeadlessHost::NodeIcon(const QString& url) const {
    return m_nodes.value(url.toCaseFolded()).icon;
}

bool HeadlessHost::UpdateChannelNode(RSSChannel& channel) {
    // Only channels of the active profile have a node.
    if (!m_activeProfile || m_activeProfile->GetChannel(channel.URL()) != &channel) {
        return false;
    }
    m_stateChanges.append(channel.URL());
    Node& node = m_nodes[channel.URL().toCaseFolded()];
    const QString text = channel.TitleAndCount();
    const QString icon = channel.GetImage();
    const bool changed = node.text != text || node.icon != icon;
    node.text = text;
    node.icon = icon;
    return changed;
}
