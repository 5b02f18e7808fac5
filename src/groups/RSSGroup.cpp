// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "groups/RSSGroup.h"

#include "app/SharedHelpers.h"
#include "platform/XmlDocument.h"

namespace {

const QString kTrue = QStringLiteral("true");

} // namespace

QString RSSGroup::Name(bool withCount) const {
    if (!withCount || m_name == GroupName::AllItems || m_name == GroupName::Tamsel) {
        return m_name;
    }
    return m_name + QStringLiteral("  (") + QString::number(ChannelCount()) + u')';
}

bool RSSGroup::CreateGroup(const QString& name) {
    m_name = name;
    m_expanded = true;
    return true;
}

QString RSSGroup::ChannelURL(int index) const {
    return m_urls.value(index);
}

void RSSGroup::AddChannel(const QString& url) {
    if (!m_urls.contains(url)) {
        m_urls.append(url);
    }
}

void RSSGroup::DeleteChannel(const QString& url) {
    for (qsizetype i = 0; i < m_urls.size();) {
        if (m_urls[i] == url) {
            m_urls[i] = m_urls.last();
            m_urls.removeLast();
        } else {
            ++i;
        }
    }
}

XmlNode RSSGroup::SaveXML(XmlDocument& doc) const {
    XmlNode group = doc.CreateElement(QStringLiteral("group"));
    group.AppendChild(doc.CreateTextElement(QStringLiteral("title"), m_name));
    group.AppendChild(doc.CreateTextElement(QStringLiteral("expand"), m_expanded ? kTrue : QStringLiteral("false")));
    for (const QString& url : m_urls) {
        group.AppendChild(doc.CreateTextElement(QStringLiteral("channel"), url));
    }
    return group;
}

void RSSGroup::LoadGroup(const XmlNode& node) {
    if (!node.HasChildNodes()) {
        return;
    }
    const QString text = node.FirstChild().Text();
    const QString key = node.Name().toLower();
    if (key == QStringLiteral("title")) {
        m_name = text;
    } else if (key == QStringLiteral("expand")) {
        m_expanded = text == kTrue;
    } else if (key == QStringLiteral("channel")) {
        AddChannel(text);
    } else {
        for (XmlNode child = node.FirstChild(); !child.IsNull(); child = child.NextSibling()) {
            LoadGroup(child);
        }
    }
}
