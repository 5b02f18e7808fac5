// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

class XmlDocument;
class XmlNode;

// A named, ordered list of channel URLs, shown as a folder of the tree. One URL may belong to
// several groups; the channels themselves live in the profile's channel collection.
class RSSGroup final {
public:
    // The plain name, or with "  (count)" when asked, except for "All Items" and "Tamsel".
    QString Name(bool withCount = false) const;
    void Rename(const QString& newName) { m_name = newName; }
    bool CreateGroup(const QString& name);

    bool Expanded() const { return m_expanded; }
    void SetExpanded(bool expanded) { m_expanded = expanded; }

    int ChannelCount() const { return int(m_urls.size()); }
    // The URL at a 0-based index; empty outside the list.
    QString ChannelURL(int index) const;
    bool HasChannel(const QString& url) const { return m_urls.contains(url); }
    // Appends the URL unless the group holds it already (exact comparison).
    void AddChannel(const QString& url);
    // Removes every entry of the URL; the last entries move into the freed places.
    void DeleteChannel(const QString& url);

    // The "group" element of groups.xml: title, expand, then one channel element per URL.
    XmlNode SaveXML(XmlDocument& doc) const;
    // Reads a "group" element, at any depth: title, expand and channel elements.
    void LoadGroup(const XmlNode& node);

private:
    QString m_name;
    bool m_expanded = false;
    QStringList m_urls;
};
