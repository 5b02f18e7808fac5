// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QString>
#include <memory>
#include <vector>

class MakerSite;
class Paths;
class RSSGroup;
class XmlNode;

// A profile's groups, kept in groups.xml: the three built-ins ("Tamsel", "Spotlight",
// "All Items") first, then the user's groups. Names compare without regard to letter case.
class colGroups final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(colGroups)
public:
    colGroups(const Paths& paths, const MakerSite& site, QObject* parent = nullptr);
    ~colGroups() override;

    // Creates the built-ins with their channels, then reads the profile's groups.xml.
    void init(const QString& profileName);
    // Reads groups.xml; a missing file is passed over, a damaged one kept aside.
    void LoadXML();
    // Writes groups.xml atomically; false, with the reason when asked, when it could not.
    bool SaveGroupXML(QString* error = nullptr) const;

    int GroupCount() const { return int(m_groups.size()); }
    // By 1-based position; none outside the list.
    RSSGroup* Group(int index) const;
    // By name, without regard to letter case; none when absent.
    RSSGroup* Group(const QString& name) const;
    // Creates the group unless one of exactly this name exists; true either way.
    bool AddGroup(const QString& name);
    void AssignChannel(const QString& groupName, const QString& url);
    // Renames in place. Refused (false) when another group has the new name in any letter case.
    bool Rename(const QString& oldName, const QString& newName);
    void Remove(const QString& name);
    bool IsInGroup(const QString& url) const;

    QString FilePath() const;

Q_SIGNALS:
    void NewGroup(RSSGroup* group);
    void NewChannel(const QString& url, RSSGroup* group);

private:
    int IndexOf(const QString& name) const;
    void WalkGroups(const XmlNode& node);

    const Paths& m_paths;
    const MakerSite& m_site;
    QString m_profileFolder;
    std::vector<std::unique_ptr<RSSGroup>> m_groups;
};
