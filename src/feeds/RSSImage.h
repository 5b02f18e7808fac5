// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QString>

class HttpClient;
class XmlDocument;
class XmlNode;

// A channel's logo: its URL, title and link as kept in channels.xml, and a local copy of the
// picture (folder + channel ID + ".jpg") downloaded once, on the first request.
class RSSImage final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(RSSImage)
public:
    explicit RSSImage(HttpClient& http, QObject* parent = nullptr);
    ~RSSImage() override;

    QString URL() const { return m_url; }
    QString Title() const { return m_title; }
    QString Link() const { return m_link; }
    // Whether a logo is known (not whether its file exists).
    bool ImageExists() const { return !m_url.isEmpty(); }

    // Reads an "image" element of channels.xml (names in any letter case, at any depth).
    void LoadImage(const XmlNode& node, const QString& id, const QString& folder);
    // An "image" element made in `doc` with title, link and url, each only when not empty.
    XmlNode SaveXML(XmlDocument& doc) const;
    // The path of the local copy; the first call downloads the picture unless the file exists.
    // Empty when no logo is known, the address is not http(s), or the download or its save failed.
    // The download keeps the event loop running; the owner may be gone when it returns.
    QString GetImage(const QString& id, const QString& folder);

private:
    void ReadImageNode(const XmlNode& node);

    HttpClient& m_http;
    QString m_url;
    QString m_title;
    QString m_link;
    QString m_id;
    QString m_folder;
    QString m_localPath;
};
