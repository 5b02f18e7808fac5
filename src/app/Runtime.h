// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/AlertPlayer.h"
#include "app/MakerSite.h"
#include "app/Services.h"
#include "platform/CRegSettings.h"
#include "platform/Clock.h"
#include "platform/HttpClient.h"
#include "platform/XmlDocument.h"
#include "platform/XsltStylesheet.h"

#include <memory>

// The process-wide objects that live from start to end: the settings store, the clock, the
// network, the namespace stylesheet and the alert sound.
class Runtime final {
public:
    Runtime(Paths paths, Desktop& desktop);
    // The same with a clock of the caller's, which must outlive the runtime (a test program whose
    // time runs faster).
    Runtime(Paths paths, Desktop& desktop, Clock& clock);
    ~Runtime();
    Runtime(const Runtime&) = delete;
    Runtime& operator=(const Runtime&) = delete;

    // Creates the data folder and, on the first start, an empty profile list and the default skin.
    void InstallDataFolder();
    // Loads tamselns.xsl; false with the message to show when it is missing or broken.
    bool LoadNamespaceStylesheet(QString* message);

    Services GetServices() { return Services{m_clock, m_settings, m_http, m_desktop, m_paths}; }
    const Paths& GetPaths() const { return m_paths; }
    CRegSettings& Settings() { return m_settings; }
    AlertPlayer& Alerts() { return m_alerts; }
    const MakerSite& Site() const { return m_site; }
    const XmlDocument& NamespaceStylesheet() const { return m_namespaceDocument; }
    const XsltStylesheet& NamespaceTransform() const { return m_namespaceTransform; }

private:
    Paths m_paths;
    Desktop& m_desktop;
    SystemClock m_systemClock;
    Clock& m_clock;
    CRegSettings m_settings;
    NetworkHttpClient m_http;
    MakerSite m_site;
    AlertPlayer m_alerts;
    XmlDocument m_namespaceDocument;
    XsltStylesheet m_namespaceTransform;
};
