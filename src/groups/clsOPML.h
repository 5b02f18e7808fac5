// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QString>
#include <memory>
#include <vector>

class AppHost;
class Clock;
class HttpClient;
class HttpRequest;
class QEventLoop;
class XmlNode;

// Reads an OPML document from a file or a URL into a list of (URL, title, expire) entries, in the
// order in which outlines end: a category comes after its members, with an empty URL. Folders may
// nest at any depth the parser accepts; an outline with an "xmlUrl" is a feed whatever its "type".
class clsOPML final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(clsOPML)
public:
    static constexpr int kWaitMs = 25000;
    static inline const QString kReadError = QStringLiteral("Error Reading OPML File !!!");

    clsOPML(Clock& clock, HttpClient& http, AppHost& host, QObject* parent = nullptr);
    ~clsOPML() override;

    // Loads the document, keeping the event loop running for at most 25 s, and returns after
    // FileLoaded or FileTimout was raised. A completion after the wait is ignored.
    void LoadOPML(const QString& location);

    QString Title() const { return m_title; }
    // Whether the last load could not read a document (missing, unreachable or not well-formed).
    bool Failed() const { return m_failed; }
    int GetCount() const { return int(m_entries.size()); }
    QString GetURL(int index) const;
    QString GetTitle(int index) const;
    int GetExpire(int index) const;

Q_SIGNALS:
    void FileLoaded();
    void FileTimout();

private:
    struct Entry {
        QString url;
        QString title;
        int expire = 0;
    };

    void XMLDoc_onreadystatechange(int state);
    void WalkOutlines(const XmlNode& node);

    Clock& m_clock;
    HttpClient& m_http;
    AppHost& m_host;
    QString m_location;
    QString m_title;
    bool m_loading = false;
    bool m_failed = false;
    // The wait in progress, so that destroying the reader ends it.
    QEventLoop* m_wait = nullptr;
    std::unique_ptr<HttpRequest> m_request;
    std::vector<Entry> m_entries;
};
