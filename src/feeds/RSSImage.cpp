// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "feeds/RSSImage.h"

#include "feeds/RSSChannel.h"
#include "platform/AtomicFile.h"
#include "platform/HttpClient.h"
#include "platform/XmlDocument.h"

#include <QDir>
#include <QFile>
#include <QPointer>
#include <QUrl>

namespace {

const QString kPictureSuffix = QStringLiteral(".jpg");

// Logos come from the web only: an address in channels.xml must not copy a local file.
bool IsWebAddress(const QUrl& url) {
    const QString scheme = url.scheme().toLower();
    return url.isValid() && (scheme == QStringLiteral("http") || scheme == QStringLiteral("https"));
}

} // namespace

RSSImage::RSSImage(HttpClient& http, QObject* parent) : QObject(parent), m_http(http) {}

RSSImage::~RSSImage() = default;

void RSSImage::LoadImage(const XmlNode& node, const QString& id, const QString& folder) {
    m_id = id;
    m_folder = folder;
    ReadImageNode(node);
}

void RSSImage::ReadImageNode(const XmlNode& node) {
    if (!node.HasChildNodes()) {
        return;
    }
    const QString key = node.Name().toLower();
    if (key == QStringLiteral("title")) {
        m_title = node.FirstChild().Text();
    } else if (key == QStringLiteral("url")) {
        m_url = node.FirstChild().Text();
    } else if (key == QStringLiteral("link")) {
        m_link = node.FirstChild().Text();
    } else {
        for (XmlNode child = node.FirstChild(); !child.IsNull(); child = child.NextSibling()) {
            ReadImageNode(child);
        }
    }
}

XmlNode RSSImage::SaveXML(XmlDocument& doc) const {
    XmlNode image = doc.CreateElement(QStringLiteral("image"));
    if (!m_title.isEmpty()) {
        image.AppendChild(doc.CreateTextElement(QStringLiteral("title"), m_title));
    }
    if (!m_link.isEmpty()) {
        image.AppendChild(doc.CreateTextElement(QStringLiteral("link"), m_link));
    }
    if (!m_url.isEmpty()) {
        image.AppendChild(doc.CreateTextElement(QStringLiteral("url"), m_url));
    }
    return image;
}

QString RSSImage::GetImage(const QString& id, const QString& folder) {
    m_id = id;
    m_folder = folder;
    if (!m_localPath.isEmpty()) {
        return m_localPath;
    }
    if (folder.isEmpty() || !RSSChannel::IsSafeID(id)) {
        return {};
    }
    QDir().mkpath(folder);
    const QString path = folder + id + kPictureSuffix;
    if (!ImageExists()) {
        return {};
    }
    if (QFile file(path); file.open(QIODevice::ReadOnly)) {
        m_localPath = path;
        return m_localPath;
    }
    const QUrl url(m_url);
    if (!IsWebAddress(url)) {
        return {};
    }
    const QPointer<RSSImage> self(this);
    bool ok = false;
    const QByteArray data = m_http.OpenURL(url, &ok);
    if (!self) {
        return {};
    }
    if (!ok) {
        return {};
    }
    // A picture that did not reach the disk is not recorded: the next request downloads it again.
    if (!AtomicFile::Write(path, data)) {
        return {};
    }
    m_localPath = path;
    return m_localPath;
}
