// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "groups/colGroups.h"

#include "app/MakerSite.h"
#include "app/SharedHelpers.h"
#include "groups/RSSGroup.h"
#include "platform/Paths.h"
#include "platform/XmlDocument.h"

#include <QDateTime>
#include <QDir>
#include <QFile>

colGroups::colGroups(const Paths& paths, const MakerSite& site, QObject* parent)
    : QObject(parent), m_paths(paths), m_site(site) {}

colGroups::~colGroups() = default;

QString colGroups::FilePath() const {
    return m_profileFolder + QStringLiteral("/groups.xml");
}

void colGroups::init(const QString& profileName) {
    m_profileFolder = m_paths.ProfileFolder(profileName);
    AddGroup(GroupName::Tamsel);
    AddGroup(GroupName::Spotlight);
    AddGroup(GroupName::AllItems);
    for (const QString& url : {FolderKey::Flagged, m_site.NewsURL(), FolderKey::Deleted, m_site.HelpURL()}) {
        AssignChannel(GroupName::Tamsel, url);
    }
    for (const QString& url : {FolderKey::Today, FolderKey::Yesterday, FolderKey::Week, FolderKey::Unread, FolderKey::Read}) {
        AssignChannel(GroupName::AllItems, url);
    }
    LoadXML();
}

void colGroups::LoadXML() {
    if (!QFile::exists(FilePath())) {
        return;
    }
    const XmlDocument doc = XmlDocument::Load(FilePath());
    if (doc.IsNull()) {
        // Kept aside: the next save would otherwise replace the user's groups with the built-ins.
        QFile::rename(FilePath(), FilePath() + QStringLiteral(".damaged-") +
                                      QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-HHmmss")));
        return;
    }
    WalkGroups(doc.DocumentElement());
}

void colGroups::WalkGroups(const XmlNode& node) {
    if (!node.HasChildNodes()) {
        return;
    }
    if (node.Name().toLower() != QStringLiteral("group")) {
        for (XmlNode child = node.FirstChild(); !child.IsNull(); child = child.NextSibling()) {
            WalkGroups(child);
        }
        return;
    }
    auto group = std::make_unique<RSSGroup>();
    group->LoadGroup(node);
    // A group of the same name, also in another letter case (names are keys), takes the saved
    // expand state and members; the built-ins get theirs this way.
    if (RSSGroup* existing = Group(group->Name())) {
        const QString name = existing->Name();
        existing->LoadGroup(node);
        existing->Rename(name);
        return;
    }
    if (group->Name().isEmpty()) {
        return;
    }
    m_groups.push_back(std::move(group));
    Q_EMIT NewGroup(m_groups.back().get());
}

bool colGroups::SaveGroupXML(QString* error) const {
    XmlDocument doc;
    XmlNode root = doc.CreateElement(QStringLiteral("tamselgroups"));
    for (const auto& group : m_groups) {
        root.AppendChild(group->SaveXML(doc));
    }
    doc.SetDocumentElement(root);
    QDir().mkpath(m_profileFolder);
    return doc.Save(FilePath(), error);
}

RSSGroup* colGroups::Group(int index) const {
    return index >= 1 && index <= GroupCount() ? m_groups[size_t(index - 1)].get() : nullptr;
}

RSSGroup* colGroups::Group(const QString& name) const {
    const int index = IndexOf(name);
    return index < 0 ? nullptr : m_groups[size_t(index)].get();
}

int colGroups::IndexOf(const QString& name) const {
    for (size_t i = 0; i < m_groups.size(); ++i) {
        if (m_groups[i]->Name().compare(name, Qt::CaseInsensitive) == 0) {
            return int(i);
        }
    }
    return -1;
}

bool colGroups::AddGroup(const QString& name) {
    // Also a name that differs only in letter case is taken: names are the groups' keys.
    if (Group(name)) {
        return true;
    }
    auto group = std::make_unique<RSSGroup>();
    group->CreateGroup(name);
    m_groups.push_back(std::move(group));
    Q_EMIT NewGroup(m_groups.back().get());
    return true;
}

void colGroups::AssignChannel(const QString& groupName, const QString& url) {
    RSSGroup* group = Group(groupName);
    // A channel the group holds already is no news: listeners would add a second node.
    if (!group || group->HasChannel(url)) {
        return;
    }
    group->AddChannel(url);
    Q_EMIT NewChannel(url, group);
}

bool colGroups::Rename(const QString& oldName, const QString& newName) {
    const int index = IndexOf(oldName);
    if (index < 0) {
        return false;
    }
    const int clash = IndexOf(newName);
    if (clash >= 0 && clash != index) {
        return false;
    }
    // The group keeps its place in the list.
    m_groups[size_t(index)]->Rename(newName);
    return true;
}

void colGroups::Remove(const QString& name) {
    const int index = IndexOf(name);
    if (index >= 0) {
        m_groups.erase(m_groups.begin() + index);
    }
}

bool colGroups::IsInGroup(const QString& url) const {
    for (const auto& group : m_groups) {
        if (group->HasChannel(url)) {
            return true;
        }
    }
    return false;
}
