// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QUrl>

// Where Tamsel finds its files. The resource folder is read-only (the shipped stylesheets, sound,
// skins and the maker's site); the data folder is writable (profiles and the user's own skins);
// the settings file and the autostart entry live under the configuration folder.
class Paths final {
public:
    Paths(QString resourceFolder, QString dataFolder, QString configFolder);

    // TAMSEL_HOME=DIR puts data and configuration under DIR; otherwise the XDG folders.
    // TAMSEL_RESOURCES=DIR names the resource folder; otherwise the installed share folder,
    // else the source tree's data folder.
    static Paths FromEnvironment();

    QString ResourceFolder() const { return m_resourceFolder; }
    QString DataFolder() const { return m_dataFolder; }
    QString ConfigFolder() const { return m_configFolder; }

    QString ResourceFile(const QString& name) const;
    QString ProfilesFolder() const;
    // The profile's folder, without a trailing separator.
    QString ProfileFolder(const QString& profileName) const;
    QString SettingsFile(const QString& company, const QString& appName) const;
    QString AutostartFolder() const;
    // Skins are looked up in the user's folder first, then among the shipped ones.
    QString SkinFolder(const QString& skinName) const;

    // The maker's site ships with the program and is addressed as "tamsel://site/..." so that
    // channel keys do not depend on where the program is installed; this gives the file URL.
    // Other URLs come back unchanged; one that would leave the site folder comes back invalid.
    QUrl ResolveSiteUrl(const QUrl& url) const;
    static inline const QString kSiteBase = QStringLiteral("tamsel://site");

private:
    QString m_resourceFolder;
    QString m_dataFolder;
    QString m_configFolder;
};
