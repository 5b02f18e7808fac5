// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "views/ItemRenderer.h"

#include "platform/AtomicFile.h"
#include "platform/XmlDocument.h"
#include "platform/XsltStylesheet.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>

namespace {
const QByteArray kLineBreak = QByteArrayLiteral("\r\n");
const QByteArray kMeta =
    QByteArrayLiteral("<meta http-equiv=\"Content-Type\" content=\"text/html; charset=UTF-8\">");
} // namespace

ItemRenderer::ItemRenderer(const XsltStylesheet& namespaceTransform, const XsltStylesheet& itemTransform)
    : m_namespaceTransform(namespaceTransform), m_itemTransform(itemTransform) {}

QByteArray ItemRenderer::Render(const XmlNode& item, QString* error) const {
    if (item.IsNull()) {
        return {};
    }
    if (m_namespaceTransform.IsNull() || m_itemTransform.IsNull()) {
        if (error) {
            *error = QStringLiteral("No stylesheet to show items with");
        }
        return {};
    }
    // The namespace stylesheet knows feeds by their root, so the "channel" around the copy
    // stands inside an RSS 2.0 root.
    XmlDocument input;
    XmlNode rss = input.CreateElement(QStringLiteral("rss"));
    rss.SetAttribute(QStringLiteral("version"), QStringLiteral("2.0"));
    input.SetDocumentElement(rss);
    XmlNode channel = rss.AppendChild(input.CreateElement(QStringLiteral("channel")));
    channel.AppendChild(input.ImportNode(item));
    const XmlDocument normalised = m_namespaceTransform.TransformToDocument(input, error);
    if (normalised.IsNull()) {
        return {};
    }
    const QByteArray page = m_itemTransform.TransformToBytes(normalised, error);
    if (page.isEmpty()) {
        return {};
    }
    return WithUtf8Declaration(page);
}

bool ItemRenderer::RenderToFile(const XmlNode& item, const QString& path, QString* error) const {
    const QByteArray page = Render(item, error);
    if (page.isEmpty()) {
        return false;
    }
    QDir().mkpath(QFileInfo(path).absolutePath());
    return AtomicFile::Write(path, page + kLineBreak, error);
}

QByteArray ItemRenderer::WithUtf8Declaration(const QByteArray& page) {
    static const QRegularExpression charset(QStringLiteral("<meta[^>]*charset"),
                                            QRegularExpression::CaseInsensitiveOption);
    const QString head = QString::fromUtf8(page.left(4096));
    if (charset.match(head).hasMatch()) {
        return page;
    }
    static const QRegularExpression headTag(QStringLiteral("<head[^>]*>"),
                                            QRegularExpression::CaseInsensitiveOption);
    const QRegularExpressionMatch match = headTag.match(head);
    if (match.hasMatch()) {
        QByteArray result = page;
        result.insert(head.left(match.capturedEnd()).toUtf8().size(), kMeta);
        return result;
    }
    return kMeta + page;
}
