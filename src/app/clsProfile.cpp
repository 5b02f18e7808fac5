// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/clsProfile.h"

#include "app/AppHost.h"
#include "app/MakerSite.h"
#include "feeds/FeedServices.h"
#include "feeds/RSSChannel.h"
#include "feeds/colChannels.h"
#include "groups/RSSGroup.h"
#include "groups/clsSpotlight.h"
#include "groups/colGroups.h"
#include "itembank/clsItemBank.h"
#include "platform/XmlDocument.h"

#include <QCoreApplication>
#include <QDir>
#include <QPointer>

namespace {

const QString kTrue = QStringLiteral("true");

// The text of an element's first child node; empty when it has none.
QString FirstChildText(const XmlNode& node) {
    return node.FirstChild().IsNull() ? QString() : node.FirstChild().Text();
}

} // namespace

clsProfile::clsProfile(Services services, AppHost& host, QObject* parent)
    : QObject(parent), m_services(std::move(services)), m_host(host) {}

clsProfile::~clsProfile() {
    Deactivate();
}

QString clsProfile::Folder() const {
    return m_services.paths.ProfileFolder(m_name);
}

void clsProfile::LoadUser(const XmlNode& user) {
    ReadUserFields(user);
}

void clsProfile::ReadUserFields(const XmlNode& node) {
    for (XmlNode child = node.FirstChild(); !child.IsNull(); child = child.NextSibling()) {
        if (!child.IsElement()) {
            continue;
        }
        const QString key = child.Name().toLower();
        if (key == QStringLiteral("username")) {
            m_name = FirstChildText(child);
        } else if (key == QStringLiteral("default")) {
            m_default = FirstChildText(child) == kTrue;
        } else if (key == QStringLiteral("offline")) {
            m_offline = FirstChildText(child) == kTrue;
        } else {
            ReadUserFields(child);
        }
    }
}

XmlNode clsProfile::SaveXML(XmlDocument& doc) const {
    XmlNode user = doc.CreateElement(QStringLiteral("user"));
    user.AppendChild(doc.CreateTextElement(QStringLiteral("username"), m_name));
    if (m_default) {
        user.AppendChild(doc.CreateTextElement(QStringLiteral("default"), kTrue));
    }
    if (m_offline) {
        user.AppendChild(doc.CreateTextElement(QStringLiteral("offline"), kTrue));
    }
    return user;
}

bool clsProfile::SetUserActive() {
    if (m_active) {
        return true;
    }
    const quint64 run = ++m_activation;
    m_site = std::make_unique<MakerSite>(m_services.settings);
    m_itemBank = std::make_unique<clsItemBank>(m_services.clock, m_services.paths);
    m_channels = std::make_unique<colChannels>(
        FeedServices{m_services.clock, m_services.settings, m_services.http, m_services.paths, m_host,
                     m_host.NamespaceTransform(), m_site->HelpURL(), m_site->NewsURL()});
    m_groups = std::make_unique<colGroups>(m_services.paths, *m_site);
    connect(m_groups.get(), &colGroups::NewGroup, this, &clsProfile::NewGroup);
    connect(m_groups.get(), &colGroups::NewChannel, this,
            [this](const QString& url, RSSGroup* group) { Q_EMIT NewChannel(group, url); });
    m_spotlight = std::make_unique<clsSpotlight>(m_services, *m_site, m_host);

    m_itemBank->init(m_name);
    if (!LetPendingEventsRun(run)) {
        return false;
    }
    m_channels->init(m_name);
    if (m_itemBank->LostItems()) {
        // The items those Last-modified values stand for are gone: fetch every feed in full again.
        m_channels->ForgetLastModified();
    }
    if (!LetPendingEventsRun(run)) {
        return false;
    }
    m_groups->init(m_name);
    if (!LetPendingEventsRun(run)) {
        return false;
    }
    m_spotlight->init(m_name);
    m_active = true;
    return true;
}

bool clsProfile::LetPendingEventsRun(quint64 run) {
    const QPointer<clsProfile> self(this);
    QCoreApplication::processEvents();
    return self && m_activation == run;
}

void clsProfile::Deactivate() {
    ++m_activation;
    m_spotlight.reset();
    m_groups.reset();
    // The channels before the bank: they hold lists of its items and may still hold slots.
    m_channels.reset();
    if (m_itemBank) {
        m_itemBank->Release();
        m_itemBank.reset();
    }
    m_site.reset();
    m_active = false;
}

bool clsProfile::SaveProfileXML(QString* error) {
    if (!m_active) {
        return true;
    }
    const QString folder = QDir::toNativeSeparators(Folder());
    QStringList failures;
    const bool itemsSaved = !m_itemBank->HasUnsavedChanges() || m_itemBank->SaveXML();
    if (!itemsSaved) {
        failures << m_itemBank->LastError();
    }
    QString reason;
    if (!SaveGroupXML(&reason)) {
        failures << QStringLiteral("%1/groups.xml could not be written: %2").arg(folder, reason);
    }
    if (!itemsSaved) {
        failures << QStringLiteral("%1/channels.xml was left as it was, so that the next fetch brings the "
                                   "unsaved items again")
                        .arg(folder);
    } else if (!m_channels->SaveChannelXML(&reason)) {
        failures << QStringLiteral("%1/channels.xml could not be written: %2").arg(folder, reason);
    }
    if (error) {
        *error = failures.join(u'\n');
    }
    return failures.isEmpty();
}

bool clsProfile::AddItem(const XmlNode& item) {
    return m_itemBank && m_itemBank->AddItem(item);
}

RSSChannel* clsProfile::GetChannel(const QString& key) const {
    return m_channels ? m_channels->GetChannel(key) : nullptr;
}

RSSChannel* clsProfile::GetChannel(int index) const {
    return m_channels ? m_channels->GetChannel(index) : nullptr;
}

int clsProfile::ChannelCount() const {
    return m_channels ? m_channels->ChannelCount() : 0;
}

bool clsProfile::SaveChannelXML() {
    return m_active && m_channels && m_channels->SaveChannelXML();
}

bool clsProfile::SaveOPML(const QString& path) {
    return m_active && m_channels && m_channels->SaveOPML(path);
}

int clsProfile::GroupCount() const {
    return m_groups ? m_groups->GroupCount() : 0;
}

RSSGroup* clsProfile::GetGroup(const QString& name) const {
    return m_groups ? m_groups->Group(name) : nullptr;
}

RSSGroup* clsProfile::GetGroup(int index) const {
    return m_groups ? m_groups->Group(index) : nullptr;
}

bool clsProfile::SaveGroupXML(QString* error) {
    if (!m_active || !m_groups->SaveGroupXML(error)) {
        return false;
    }
    m_spotlight->GroupsSaved();
    return true;
}

RSSChannel* clsProfile::AddChannel(const QString& url, const QString& groupName) {
    if (!m_channels || !m_groups) {
        return nullptr;
    }
    RSSChannel* channel = m_channels->AddChannel(url);
    if (!channel) {
        return nullptr;
    }
    // A URL typed in another letter case names the channel already subscribed; the group
    // records the channel's own spelling so that it finds it again.
    m_groups->AssignChannel(groupName, channel->URL());
    channel->LoadRSS();
    return channel;
}

bool clsProfile::AddGroup(const QString& name) {
    return m_groups && m_groups->AddGroup(name);
}

bool clsProfile::RenameGroup(const QString& oldName, const QString& newName) {
    return m_groups && m_groups->Rename(oldName, newName);
}

void clsProfile::DeleteGroup(const QString& name) {
    RSSGroup* group = GetGroup(name);
    if (!group) {
        return;
    }
    Q_EMIT DelGroup(group);
    m_groups->Remove(name);
}

void clsProfile::DeleteChannel(const QString& groupName, const QString& key) {
    RSSGroup* group = GetGroup(groupName);
    if (!group) {
        return;
    }
    group->DeleteChannel(key);
    Q_EMIT DelChannel(group, key);
}

void clsProfile::RemoveChannel(const QString& key) {
    if (!m_channels || !m_groups) {
        return;
    }
    for (int i = 1; i <= m_groups->GroupCount(); ++i) {
        m_groups->Group(i)->DeleteChannel(key);
    }
    if (RSSChannel* channel = m_channels->GetChannel(key)) {
        channel->KillMe();
    }
    m_channels->DelChannel(key);
}

bool clsProfile::IsInGroup(const QString& key) const {
    return m_groups && m_groups->IsInGroup(key);
}
