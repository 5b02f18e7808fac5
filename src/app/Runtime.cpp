// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/Runtime.h"

#include "platform/AtomicFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

Runtime::Runtime(Paths paths, Desktop& desktop) : Runtime(std::move(paths), desktop, m_systemClock) {}

Runtime::Runtime(Paths paths, Desktop& desktop, Clock& clock)
    : m_paths(std::move(paths)), m_desktop(desktop), m_clock(clock), m_settings(m_paths), m_http(m_paths),
      m_site(m_settings),
      m_alerts(m_clock, m_settings, m_desktop, m_paths.ResourceFile(QStringLiteral("alert.wav"))) {}

Runtime::~Runtime() = default;

void Runtime::InstallDataFolder() {
    // The skin loader reads an unset skin name as "no skin"; a new installation wears the default.
    const QString settings = QStringLiteral("SETTINGS");
    const QString skinName = QStringLiteral("SKINNAME");
    if (m_settings.GetSetting(settings, skinName, QString()).isEmpty()) {
        m_settings.SaveSetting(settings, skinName, QStringLiteral("Default"));
    }
    QDir().mkpath(m_paths.ProfilesFolder());
    const QString list = m_paths.ProfilesFolder() + QStringLiteral("/profiles.xml");
    if (QFileInfo::exists(list) || QDir(m_paths.ProfilesFolder()).entryList({QStringLiteral("profiles.xml.damaged-*")}).size() > 0) {
        return;
    }
    AtomicFile::Write(list, QByteArrayLiteral("<tamselprofiles/>\n"));
}

bool Runtime::LoadNamespaceStylesheet(QString* message) {
    const QString path = m_paths.ResourceFile(QStringLiteral("tamselns.xsl"));
    QString error;
    m_namespaceDocument = XmlDocument::Load(path, &error);
    if (!m_namespaceDocument.IsNull()) {
        m_namespaceTransform = XsltStylesheet::Compile(m_namespaceDocument, &error);
    }
    if (m_namespaceDocument.IsNull() || m_namespaceTransform.IsNull()) {
        m_namespaceDocument = XmlDocument::Adopt(nullptr);
        if (message) {
            *message = path + QStringLiteral("  -  File not found");
        }
        return false;
    }
    return true;
}
