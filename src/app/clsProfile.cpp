// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/clsProfile.h"

#include "platform/XmlDocument.h"

namespace {

const QString kTrue = QStringLiteral("true");

// The text of an element's first child node; empty when it has none.
QString FirstChildText(const XmlNode& node) {
    return node.FirstChild().IsNull() ? QString() : node.FirstChild().Text();
}

} // namespace

clsProfile::clsProfile(Services services, QObject* parent) : QObject(parent), m_services(std::move(services)) {}

clsProfile::~clsProfile() = default;

QString clsProfile::Folder() const {
    return m_services.paths.ProfileFolder(m_name);
}

void clsProfile::LoadUser(const XmlNode& user) {
    ReadUserFields(user);
}

void clsProfile::ReadUserFields(const XmlNode& node) {
    for (XmlNode child = node.FirstChild(); !child.IsNull(); child = child.NextSibling()) {
        if (!child.IsElement()) {
            continue;
        }
        const QString key = child.Name().toLower();
        if (key == QStringLiteral("username")) {
            m_name = FirstChildText(child);
        } else if (key == QStringLiteral("default")) {
            m_default = FirstChildText(child) == kTrue;
        } else if (key == QStringLiteral("offline")) {
            m_offline = FirstChildText(child) == kTrue;
        } else {
            ReadUserFields(child);
        }
    }
}

XmlNode clsProfile::SaveXML(XmlDocument& doc) const {
    XmlNode user = doc.CreateElement(QStringLiteral("user"));
    user.AppendChild(doc.CreateTextElement(QStringLiteral("username"), m_name));
    if (m_default) {
        user.AppendChild(doc.CreateTextElement(QStringLiteral("default"), kTrue));
    }
    if (m_offline) {
        user.AppendChild(doc.CreateTextElement(QStringLiteral("offline"), kTrue));
    }
    return user;
}

void clsProfile::SetUserActive() {
    if (m_active) {
        return;
    }
    m_active = true;
}

void clsProfile::Deactivate() {
    m_active = false;
}
