// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/Paths.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

namespace {

QString EnvironmentFolder(const char* name) {
    return QDir::cleanPath(qEnvironmentVariable(name));
}

QString FindResourceFolder() {
    if (qEnvironmentVariableIsSet("TAMSEL_RESOURCES")) {
        return EnvironmentFolder("TAMSEL_RESOURCES");
    }
    const QString nextToProgram =
        QDir(QCoreApplication::applicationDirPath()).filePath(QStringLiteral("../share/tamsel"));
    if (QFileInfo::exists(nextToProgram + QStringLiteral("/tamselns.xsl"))) {
        return QDir::cleanPath(nextToProgram);
    }
    const QString installed = QStringLiteral(TAMSEL_INSTALL_DATA_DIR);
    if (QFileInfo::exists(installed + QStringLiteral("/tamselns.xsl"))) {
        return installed;
    }
    return QStringLiteral(TAMSEL_BUILD_DATA_DIR);
}

QString XdgFolder(const char* variable, const QString& fallbackBelowHome) {
    const QString value = qEnvironmentVariable(variable);
    if (!value.isEmpty() && QDir::isAbsolutePath(value)) {
        return QDir::cleanPath(value);
    }
    return QDir::home().filePath(fallbackBelowHome);
}

} // namespace

Paths::Paths(QString resourceFolder, QString dataFolder, QString configFolder)
    : m_resourceFolder(std::move(resourceFolder)), m_dataFolder(std::move(dataFolder)),
      m_configFolder(std::move(configFolder)) {}

Paths Paths::FromEnvironment() {
    if (qEnvironmentVariableIsSet("TAMSEL_HOME") && !qEnvironmentVariableIsEmpty("TAMSEL_HOME")) {
        const QString home = QDir(EnvironmentFolder("TAMSEL_HOME")).absolutePath();
        return Paths(FindResourceFolder(), home, home + QStringLiteral("/config"));
    }
    return Paths(FindResourceFolder(), XdgFolder("XDG_DATA_HOME", QStringLiteral(".local/share")) + QStringLiteral("/tamsel"),
                 XdgFolder("XDG_CONFIG_HOME", QStringLiteral(".config")));
}

QString Paths::ResourceFile(const QString& name) const {
    return m_resourceFolder + u'/' + name;
}

QString Paths::ProfilesFolder() const {
    return m_dataFolder + QStringLiteral("/profiles");
}

QString Paths::ProfileFolder(const QString& profileName) const {
    return ProfilesFolder() + u'/' + profileName;
}

QString Paths::SettingsFile(const QString& company, const QString& appName) const {
    return m_configFolder + u'/' + company + u'/' + appName + QStringLiteral(".conf");
}

QString Paths::AutostartFolder() const {
    return m_configFolder + QStringLiteral("/autostart");
}

QString Paths::SkinFolder(const QString& skinName) const {
    const QString own = m_dataFolder + QStringLiteral("/skins/") + skinName;
    if (QFileInfo::exists(own + QStringLiteral("/skin.txt"))) {
        return own;
    }
    return m_resourceFolder + QStringLiteral("/skins/") + skinName;
}

QUrl Paths::ResolveSiteUrl(const QUrl& url) const {
    if (url.scheme() != QStringLiteral("tamsel") || url.host() != QStringLiteral("site")) {
        return url;
    }
    // No address may leave the site folder.
    const QString path = QDir::cleanPath(QStringLiteral("/") + url.path());
    if (path.split(u'/').contains(QStringLiteral(".."))) {
        return QUrl();
    }
    return QUrl::fromLocalFile(m_resourceFolder + QStringLiteral("/site") + path);
}
