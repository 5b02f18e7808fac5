// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/Services.h"

#include <QObject>
#include <QString>
#include <memory>

class AppHost;
class MakerSite;
class RSSChannel;
class RSSGroup;
class XmlDocument;
class XmlNode;
class clsItemBank;
class clsSpotlight;
class colChannels;
class colGroups;

// One profile: a named, independent set of channels, groups, items and Spotlight directory kept
// in its own folder. Only the active profile holds those members.
class clsProfile final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(clsProfile)
public:
    clsProfile(Services services, AppHost& host, QObject* parent = nullptr);
    ~clsProfile() override;

    QString Name() const { return m_name; }
    void SetName(const QString& name) { m_name = name; }
    bool Default() const { return m_default; }
    void SetDefault(bool isDefault) { m_default = isDefault; }
    bool Offline() const { return m_offline; }
    void SetOffline(bool offline) { m_offline = offline; }
    bool Active() const { return m_active; }

    // The profile's folder, without a trailing separator.
    QString Folder() const;

    // Reads the fields from a "user" element, at any depth and in any order.
    void LoadUser(const XmlNode& user);
    // A "user" element made in `doc`, for profiles.xml.
    XmlNode SaveXML(XmlDocument& doc) const;

    // Loads what the profile owns; true when the profile is active afterwards. Pending events run
    // between the steps; when one of them releases (or destroys) the profile, the activation stops
    // there and nothing of it touches what was released.
    bool SetUserActive();
    // Releases what the profile owns without saving its channels and groups.
    void Deactivate();
    // Writes what the active profile holds: items.xml first, then groups.xml, then channels.xml,
    // which records which feeds were fetched and so is written only once their items are on disk.
    // False, with the files that failed and why, when any could not be written.
    bool SaveProfileXML(QString* error = nullptr);

    // The item bank from the start of activation until Deactivate, else none.
    clsItemBank* ItemBank() const { return m_itemBank.get(); }
    // Hands an item to the item bank; true when the bank changed. False while inactive.
    bool AddItem(const XmlNode& item);

    // The channels while active, else none.
    colChannels* Channels() const { return m_channels.get(); }
    // By URL (any letter case) or by 1-based position; none when absent or inactive.
    RSSChannel* GetChannel(const QString& key) const;
    RSSChannel* GetChannel(int index) const;
    int ChannelCount() const;
    // Writes channels.xml when active; false when inactive or it could not be written.
    bool SaveChannelXML();
    // Exports the user's channels as OPML; false when inactive or it could not be written.
    bool SaveOPML(const QString& path);

    // The groups while active, else none.
    colGroups* Groups() const { return m_groups.get(); }
    int GroupCount() const;
    // By name (any letter case) or by 1-based position; none when absent or inactive.
    RSSGroup* GetGroup(const QString& name) const;
    RSSGroup* GetGroup(int index) const;
    // Writes groups.xml when active; false when inactive or it could not be written.
    bool SaveGroupXML(QString* error = nullptr);

    // Finds or creates the channel, puts it into the group and starts its first fetch; the
    // channel found (none for an empty URL or an inactive profile).
    RSSChannel* AddChannel(const QString& url, const QString& groupName);
    bool AddGroup(const QString& name);
    // False when another group already has the new name in any letter case.
    bool RenameGroup(const QString& oldName, const QString& newName);
    // Raises DelGroup, then removes the group; its channels stay subscribed.
    void DeleteGroup(const QString& name);
    // Takes the channel out of one group and raises DelChannel; it stays subscribed.
    void DeleteChannel(const QString& groupName, const QString& key);
    // Unsubscribes: out of every group, fetching stopped, items removed, channel gone.
    void RemoveChannel(const QString& key);
    bool IsInGroup(const QString& key) const;

Q_SIGNALS:
    void NewGroup(RSSGroup* group);
    void NewChannel(RSSGroup* group, const QString& key);
    void DelChannel(RSSGroup* group, const QString& key);
    void DelGroup(RSSGroup* group);

private:
    void ReadUserFields(const XmlNode& node);
    // Lets timer and network events that arrived meanwhile run between the steps of activation;
    // false when the activation `run` was ended by them.
    bool LetPendingEventsRun(quint64 run);

    Services m_services;
    AppHost& m_host;
    QString m_name;
    bool m_default = false;
    bool m_offline = false;
    bool m_active = false;
    // Counts activations and releases, so that an activation knows whether it is still the current one.
    quint64 m_activation = 0;
    // Declared in the order of activation; released in the reverse order by Deactivate. The
    // channels hold lists of the bank's items and must go before it.
    std::unique_ptr<MakerSite> m_site;
    std::unique_ptr<clsItemBank> m_itemBank;
    std::unique_ptr<colChannels> m_channels;
    std::unique_ptr<colGroups> m_groups;
    // Releasing it during its wait for the list ends the wait; nothing of it runs afterwards.
    std::unique_ptr<clsSpotlight> m_spotlight;
};
