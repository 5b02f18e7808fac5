// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/Services.h"

#include <QObject>
#include <QString>

class XmlDocument;
class XmlNode;

// One profile: a named, independent set of channels, groups, items and Spotlight directory kept
// in its own folder. Only the active profile holds those members.
class clsProfile final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(clsProfile)
public:
    clsProfile(Services services, QObject* parent = nullptr);
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

    // Loads what the profile owns; nothing happens when it is active already.
    void SetUserActive();
    // Releases what the profile owns without saving its channels and groups.
    void Deactivate();

private:
    void ReadUserFields(const XmlNode& node);

    Services m_services;
    QString m_name;
    bool m_default = false;
    bool m_offline = false;
    bool m_active = false;
};
