// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/Services.h"

#include <QObject>
#include <QString>
#include <memory>
#include <vector>

class AppHost;
class clsProfile;
class XmlNode;

// The list of profiles, kept in profiles/profiles.xml: which exist, which is the default, and
// the creation of new ones with their folders.
class colProfiles final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(colProfiles)
public:
    static inline const QString kReadError = QStringLiteral("Error Reading Profiles.XML File !!!");

    colProfiles(Services services, AppHost& host, QObject* parent = nullptr);
    ~colProfiles() override;

    // Starts loading profiles.xml; ProfilesLoaded follows from the event loop. A list that cannot
    // be read is renamed aside (DamagedFile) and the profiles start empty, so that the user can go on.
    void init();
    // Where an unreadable profiles.xml was kept aside by the last load; empty when none was.
    QString DamagedFile() const { return m_damagedFile; }

    int UserCount() const { return int(m_users.size()); }
    // By 1-based position.
    clsProfile* User(int index) const;
    clsProfile* GetUser(const QString& name) const;
    bool UserExists(const QString& name) const;
    // The first default profile; else the first profile, which becomes the default.
    clsProfile* GetDefaultUser();
    void SetDefault(const QString& name);
    // Creates the profile's folder (an existing one is fine) and appends the profile.
    clsProfile* AddUser(const QString& name, bool isDefault, bool offline);
    // Writes profiles.xml, then everything every active profile holds (clsProfile::SaveProfileXML:
    // the items before the channels that record which feeds were fetched). False, with the files
    // that could not be written and why, when any of them failed; the others are still written.
    bool SaveAllXML(QString* error = nullptr);

    QString FilePath() const;

Q_SIGNALS:
    void ProfilesLoaded();

private:
    void XMLDoc_onreadystatechange();
    void ReadUsers(const XmlNode& node);
    void KeepDamagedAside();

    Services m_services;
    AppHost& m_host;
    std::vector<std::unique_ptr<clsProfile>> m_users;
    QString m_damagedFile;
};
