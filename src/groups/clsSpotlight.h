// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/Services.h"

#include <QObject>
#include <QString>
#include <memory>

class AppHost;
class HttpRequest;
class LongTimer;
class MakerSite;
class clsOPML;

// Keeps a profile's "Spotlight" group equal to the maker's list of suggested channels: checks the
// list 3.5 s after start and then every six hours, reloads it only when its Last-modified header
// changed, drops the channels that left it and adds the ones that joined.
class clsSpotlight final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(clsSpotlight)
public:
    static constexpr quint32 kFirstCheckMs = 3500;
    static constexpr quint32 kCheckPeriodMs = 21600000;

    clsSpotlight(Services services, const MakerSite& site, AppHost& host, QObject* parent = nullptr);
    ~clsSpotlight() override;

    void init(const QString& profileName);
    // Checks the list now.
    void LoadOPML();
    QString LastModified() const { return m_lastModified; }
    // The groups are on disk: the Last-modified of the list they reflect is kept for the next
    // start. Kept no earlier, so that a crash before never makes an unsaved list look current.
    void GroupsSaved();

private:
    void m_Reloader_OnTimer();
    void objInet_StateChange(int state);
    // Loads the list whose header was `lastModified`.
    void LoadList(const QString& lastModified);
    void OPML_FileLoaded();

    Services m_services;
    const MakerSite& m_site;
    AppHost& m_host;
    QString m_profileName;
    // Of the last list applied to the group; the header of a list still loading waits beside it.
    QString m_lastModified;
    QString m_pendingLastModified;
    std::unique_ptr<clsOPML> OPML;
    std::unique_ptr<LongTimer> m_Reloader;
    std::unique_ptr<HttpRequest> m_request;
};
