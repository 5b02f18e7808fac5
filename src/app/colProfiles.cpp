// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/colProfiles.h"

#include "app/AppHost.h"
#include "app/clsProfile.h"
#include "platform/XmlDocument.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTimer>

colProfiles::colProfiles(Services services, AppHost& host, QObject* parent)
    : QObject(parent), m_services(std::move(services)), m_host(host) {}

colProfiles::~colProfiles() = default;

QString colProfiles::FilePath() const {
    return m_services.paths.ProfilesFolder() + QStringLiteral("/profiles.xml");
}

void colProfiles::init() {
    // The list arrives later, from the event loop, as an asynchronous load would deliver it.
    QTimer::singleShot(0, this, &colProfiles::XMLDoc_onreadystatechange);
}

void colProfiles::XMLDoc_onreadystatechange() {
    m_damagedFile.clear();
    QString error;
    const XmlDocument doc = XmlDocument::Load(FilePath(), &error);
    if (doc.IsNull()) {
        if (QFile::exists(FilePath())) {
            KeepDamagedAside();
        }
        m_host.PopupInfo(kReadError, QString(), QString());
    } else {
        ReadUsers(doc.DocumentElement());
    }
    Q_EMIT ProfilesLoaded();
}

void colProfiles::KeepDamagedAside() {
    // Renamed, never overwritten: the user may still recover the profiles from it.
    const QString stem =
        FilePath() + QStringLiteral(".damaged-") + QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-HHmmss"));
    QString aside = stem;
    for (int n = 2; QFileInfo::exists(aside); ++n) {
        aside = stem + u'-' + QString::number(n);
    }
    if (QFile::rename(FilePath(), aside)) {
        m_damagedFile = aside;
    }
}

void colProfiles::ReadUsers(const XmlNode& node) {
    for (XmlNode child = node.FirstChild(); !child.IsNull(); child = child.NextSibling()) {
        if (!child.IsElement()) {
            continue;
        }
        if (child.Name().toLower() != QStringLiteral("user")) {
            ReadUsers(child);
            continue;
        }
        auto profile = std::make_unique<clsProfile>(m_services, m_host, this);
        profile->LoadUser(child);
        // A profile without a name would own the folder of all profiles.
        if (!profile->Name().isEmpty() && !UserExists(profile->Name())) {
            m_users.push_back(std::move(profile));
        }
    }
}

clsProfile* colProfiles::User(int index) const {
    return index >= 1 && index <= UserCount() ? m_users[size_t(index - 1)].get() : nullptr;
}

clsProfile* colProfiles::GetUser(const QString& name) const {
    for (const auto& user : m_users) {
        if (user->Name() == name) {
            return user.get();
        }
    }
    return nullptr;
}

bool colProfiles::UserExists(const QString& name) const {
    return GetUser(name) != nullptr;
}

clsProfile* colProfiles::GetDefaultUser() {
    for (const auto& user : m_users) {
        if (user->Default()) {
            return user.get();
        }
    }
    if (m_users.empty()) {
        return nullptr;
    }
    m_users.front()->SetDefault(true);
    return m_users.front().get();
}

void colProfiles::SetDefault(const QString& name) {
    for (const auto& user : m_users) {
        user->SetDefault(user->Name() == name);
    }
}

clsProfile* colProfiles::AddUser(const QString& name, bool isDefault, bool offline) {
    if (isDefault) {
        SetDefault(QString());
    }
    QDir().mkpath(m_services.paths.ProfileFolder(name));
    auto profile = std::make_unique<clsProfile>(m_services, m_host, this);
    profile->SetName(name);
    profile->SetDefault(isDefault);
    profile->SetOffline(offline);
    m_users.push_back(std::move(profile));
    return m_users.back().get();
}

bool colProfiles::SaveAllXML(QString* error) {
    XmlDocument doc;
    XmlNode root = doc.CreateElement(QStringLiteral("tamselprofiles"));
    for (const auto& user : m_users) {
        root.AppendChild(user->SaveXML(doc));
    }
    doc.SetDocumentElement(root);
    QDir().mkpath(m_services.paths.ProfilesFolder());
    QStringList failures;
    QString listError;
    if (!doc.Save(FilePath(), &listError)) {
        failures << QStringLiteral("%1 could not be written: %2").arg(QDir::toNativeSeparators(FilePath()), listError);
    }
    for (const auto& user : m_users) {
        QString profileError;
        if (user->Active() && !user->SaveProfileXML(&profileError)) {
            failures << profileError;
        }
    }
    if (error) {
        *error = failures.join(u'\n');
    }
    return failures.isEmpty();
}
