// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "feeds/colChannels.h"

#include "app/AppHost.h"
#include "app/SharedHelpers.h"
#include "app/clsProfile.h"
#include "feeds/RSSChannel.h"
#include "platform/Clock.h"
#include "platform/XmlDocument.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace {

constexpr int kMaxAsideAttempts = 100;

} // namespace

colChannels::colChannels(FeedServices services, QObject* parent)
    : QObject(parent), m_services(std::move(services)) {}

colChannels::~colChannels() = default;

QString colChannels::FilePath() const {
    return m_profileFolder + QStringLiteral("/channels.xml");
}

void colChannels::init(const QString& profileName) {
    m_username = profileName;
    m_profileFolder = m_services.paths.ProfileFolder(profileName);
    struct Builtin {
        const char16_t* id;
        const char16_t* title;
        QString url;
        int expire;
        int update;
    };
    const Builtin builtins[kBuiltinCount] = {
        {u"F0", u"Today", FolderKey::Today, 0, 0},
        {u"F1", u"Tagged", FolderKey::Flagged, 0, 0},
        {u"F2", u"Tamsel News", m_services.newsUrl, 100, 1500},
        {u"F3", u"Help", m_services.helpUrl, 0, 7000},
        {u"F4", u"Deleted", FolderKey::Deleted, 0, 0},
        {u"F5", u"Yesterday", FolderKey::Yesterday, 0, 0},
        {u"F6", u"Past 7 Days", FolderKey::Week, 0, 0},
        {u"F7", u"Unread", FolderKey::Unread, 0, 0},
        {u"F8", u"Read", FolderKey::Read, 0, 0},
    };
    for (const Builtin& builtin : builtins) {
        std::unique_ptr<RSSChannel> channel = NewChannel();
        channel->GenerateChannel(builtin.url, QString::fromUtf16(builtin.title), builtin.expire,
                                 builtin.update, QString::fromUtf16(builtin.id), ChannelFolder(), m_username);
        RSSChannel* added = channel.get();
        Append(std::move(channel));
        added->LoadLocal(ChannelFolder());
    }
    LoadXML();
}

void colChannels::LoadXML() {
    const QFileInfo info(FilePath());
    if (!info.exists()) {
        return;
    }
    XmlDocument doc = XmlDocument::Adopt(nullptr);
    if (info.size() <= kMaxFileBytes) {
        doc = XmlDocument::Load(FilePath());
    }
    if (doc.IsNull() || doc.DocumentElement().IsNull()) {
        KeepDamagedAside();
        return;
    }
    ParseChannelNode(doc.DocumentElement());
}

void colChannels::KeepDamagedAside() {
    const QString stem = FilePath() + QStringLiteral(".damaged-") +
                         m_services.clock.Now().toString(QStringLiteral("yyyyMMdd-HHmmss"));
    for (int attempt = 0; attempt < kMaxAsideAttempts; ++attempt) {
        const QString aside = attempt == 0 ? stem : stem + u'-' + QString::number(attempt);
        if (!QFileInfo::exists(aside) && QFile::rename(FilePath(), aside)) {
            m_damagedFile = aside;
            return;
        }
    }
    m_saveBlocked = true;
}

void colChannels::ParseChannelNode(const XmlNode& node) {
    if (!node.HasChildNodes()) {
        return;
    }
    if (node.Name().toLower() != QStringLiteral("channel")) {
        for (XmlNode child = node.FirstChild(); !child.IsNull(); child = child.NextSibling()) {
            ParseChannelNode(child);
        }
        return;
    }
    std::unique_ptr<RSSChannel> channel = NewChannel();
    channel->LoadChannel(node);
    const QString url = channel->URL();
    if (url.isEmpty()) {
        return;
    }
    if (channel->Expire() > 0 && !IsVirtualFolder(url)) {
        clsProfile* profile = m_services.host.ActiveProfile();
        if (clsItemBank* bank = profile ? profile->ItemBank() : nullptr) {
            bank->RemoveExpired(url, channel->Expire());
        }
    }
    // The built-ins are in the file too; the channel in the list keeps its values.
    if (GetChannel(url)) {
        return;
    }
    if (!RSSChannel::IsSafeID(channel->ID())) {
        channel->SetID(NewChannelID(m_services.settings));
    }
    channel->SetUsername(m_username);
    RSSChannel* added = channel.get();
    Append(std::move(channel));
    added->LoadLocal(ChannelFolder());
}

bool colChannels::SaveChannelXML(QString* error) {
    if (m_saveBlocked) {
        if (error) {
            *error = QStringLiteral("it could not be read nor kept aside, so it is not overwritten");
        }
        return false;
    }
    XmlDocument doc;
    XmlNode root = doc.CreateElement(QStringLiteral("tamselchannels"));
    for (const auto& channel : m_channels) {
        root.AppendChild(channel->SaveXML(doc));
    }
    doc.SetDocumentElement(root);
    QDir().mkpath(m_profileFolder);
    return doc.Save(FilePath(), error);
}

void colChannels::ForgetLastModified() {
    for (const auto& channel : m_channels) {
        channel->ForgetLastModified();
    }
}

bool colChannels::SaveOPML(const QString& path) {
    XmlDocument doc;
    XmlNode opml = doc.CreateElement(QStringLiteral("opml"));
    XmlNode body = doc.CreateElement(QStringLiteral("body"));
    for (const auto& channel : m_channels) {
        if (!IsBuiltinChannel(channel->URL(), m_services.helpUrl, m_services.newsUrl)) {
            body.AppendChild(channel->SaveOPML(doc));
        }
    }
    opml.AppendChild(body);
    doc.SetDocumentElement(opml);
    return doc.Save(path);
}

RSSChannel* colChannels::AddChannel(const QString& url) {
    if (url.trimmed().isEmpty()) {
        return nullptr;
    }
    if (RSSChannel* existing = GetChannel(url)) {
        return existing;
    }
    std::unique_ptr<RSSChannel> channel = NewChannel();
    channel->CreateRSS(url);
    channel->SetUsername(m_username);
    RSSChannel* added = channel.get();
    Append(std::move(channel));
    added->LoadLocal(ChannelFolder());
    return added;
}

void colChannels::DelChannel(const QString& key) {
    RSSChannel* channel = m_byKey.take(KeyOf(key));
    if (!channel) {
        return;
    }
    std::erase_if(m_channels, [channel](const auto& held) { return held.get() == channel; });
}

RSSChannel* colChannels::GetChannel(int index) const {
    return index >= 1 && index <= ChannelCount() ? m_channels[size_t(index - 1)].get() : nullptr;
}

RSSChannel* colChannels::GetChannel(const QString& key) const {
    return m_byKey.value(KeyOf(key));
}

void colChannels::RequestAllStatus() {
    for (size_t i = 0; i < m_channels.size(); ++i) {
        m_channels[i]->SetState();
    }
}

std::unique_ptr<RSSChannel> colChannels::NewChannel() {
    return std::make_unique<RSSChannel>(m_services);
}

void colChannels::Append(std::unique_ptr<RSSChannel> channel) {
    m_byKey.insert(KeyOf(channel->URL()), channel.get());
    m_channels.push_back(std::move(channel));
}
