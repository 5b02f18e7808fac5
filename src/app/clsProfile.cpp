// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/clsProfile.h"

#include "app/AppHost.h"
#include "app/MakerSite.h"
#include "feeds/FeedServices.h"
#include "feeds/colChannels.h"
#include "itembank/clsItemBank.h"
#include "platform/XmlDocument.h"

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

void clsProfile::SetUserActive() {
    if (m_active) {
        return;
    }
    m_itemBank = std::make_unique<clsItemBank>(m_services.clock, m_services.paths);
    m_itemBank->init(m_name);
    const MakerSite site(m_services.settings);
    m_channels = std::make_unique<colChannels>(
        FeedServices{m_services.clock, m_services.settings, m_services.http, m_services.paths, m_host,
                     m_host.NamespaceTransform(), site.HelpURL(), site.NewsURL()});
    m_channels->init(m_name);
    m_active = true;
}

void clsProfile::Deactivate() {
    // The channels first: they hold lists of the bank's items and may still hold slots.
    m_channels.reset();
    if (m_itemBank) {
        m_itemBank->Release();
        m_itemBank.reset();
    }
    m_active = false;
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
