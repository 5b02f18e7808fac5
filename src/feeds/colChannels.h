// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "feeds/FeedServices.h"

#include <QHash>
#include <QObject>
#include <QString>
#include <memory>
#include <vector>

class RSSChannel;
class XmlNode;

// A profile's channels, kept in channels.xml: nine built-ins (seven folders and the maker's news
// and help feeds) first, then the user's channels in file order. Channels are keyed by URL;
// URLs that differ only in letter case name the same channel. Positions count from 1.
class colChannels final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(colChannels)
public:
    static constexpr int kBuiltinCount = 9;
    static constexpr qint64 kMaxFileBytes = 32 * 1024 * 1024;

    explicit colChannels(FeedServices services, QObject* parent = nullptr);
    ~colChannels() override;

    // Creates the built-ins, then reads the profile's channels.xml.
    void init(const QString& profileName);
    // Reads channels.xml (at once). A missing file leaves the built-ins alone; a file that cannot
    // be read or parsed is renamed aside (channels.xml.damaged-yyyyMMdd-HHmmss) so that the next
    // save cannot overwrite it.
    void LoadXML();
    // Writes every channel, built-ins included, to channels.xml atomically; false when it could
    // not be written (or a damaged file could not be kept aside).
    bool SaveChannelXML(QString* error = nullptr);
    // Every channel checks its feed as never seen before on its next fetch.
    void ForgetLastModified();
    // Writes the user's channels (no built-ins) as OPML; false when it could not be written.
    bool SaveOPML(const QString& path);

    // The channel of that URL, created (and first checked 7 s later) when there is none.
    // None for an empty URL.
    RSSChannel* AddChannel(const QString& url);
    // Removes (and destroys) the channel; its KillMe is the caller's.
    void DelChannel(const QString& key);
    // By 1-based position, or by URL in any letter case; none when absent.
    RSSChannel* GetChannel(int index) const;
    RSSChannel* GetChannel(const QString& key) const;
    int ChannelCount() const { return int(m_channels.size()); }
    // Every channel reports its state, in order, so that the tree redraws every node.
    void RequestAllStatus();

    QString Username() const { return m_username; }
    QString FilePath() const;
    // Where the last load kept a damaged channels.xml; empty when it did not.
    QString DamagedFile() const { return m_damagedFile; }

private:
    static QString KeyOf(const QString& url) { return url.toCaseFolded(); }
    QString ChannelFolder() const { return m_profileFolder + u'/'; }
    std::unique_ptr<RSSChannel> NewChannel();
    void Append(std::unique_ptr<RSSChannel> channel);
    void ParseChannelNode(const XmlNode& node);
    void KeepDamagedAside();

    FeedServices m_services;
    QString m_username;
    QString m_profileFolder;
    QString m_damagedFile;
    // Set when a damaged file could not be moved aside: saving would destroy it.
    bool m_saveBlocked = false;
    std::vector<std::unique_ptr<RSSChannel>> m_channels;
    QHash<QString, RSSChannel*> m_byKey;
};
