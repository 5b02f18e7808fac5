// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QVariant>

class CRegSettings;

// Keys of the built-in folders; each is the URL of a folder channel.
namespace FolderKey {
inline const QString Today = QStringLiteral("_tamsel/today");
inline const QString Yesterday = QStringLiteral("_tamsel/yesterday");
inline const QString Week = QStringLiteral("_tamsel/week");
inline const QString Flagged = QStringLiteral("_tamsel/flagged");
inline const QString Deleted = QStringLiteral("_tamsel/deleted");
inline const QString Unread = QStringLiteral("_tamsel/unread");
inline const QString Read = QStringLiteral("_tamsel/read");
// A filter only: items older than the past seven days.
inline const QString Old = QStringLiteral("_tamsel/old");
} // namespace FolderKey

// Names of the built-in groups.
namespace GroupName {
inline const QString Tamsel = QStringLiteral("Tamsel");
inline const QString Spotlight = QStringLiteral("Spotlight");
inline const QString AllItems = QStringLiteral("All Items");
inline const QString MyChannels = QStringLiteral("My Channels");
} // namespace GroupName

// Hands out the next channel identifier: Common/LastID + 1 (stored back), in upper-case hex.
// The first one on a fresh installation is "A01".
QString NewChannelID(CRegSettings& settings);

// The seven built-in folder keys.
bool IsVirtualFolder(const QString& key);
// The maker's help and news channels, whose URLs depend on the maker's site.
bool IsMakerChannel(const QString& url, const QString& helpUrl, const QString& newsUrl);
// The folders and the maker's two channels.
bool IsBuiltinChannel(const QString& key, const QString& helpUrl, const QString& newsUrl);
// "All Items", "Spotlight" and "Tamsel", exactly as written.
bool IsReservedGroupName(const QString& name);
// False for "pubdate" in any case and for exactly "read", "delete" and "flag".
bool IsCustomItemField(const QString& elementName);
// Edges included.
bool PointInRect(float left, float top, float width, float height, float x, float y);
// A tree key is the group name, or the group name, "|" and the channel key.
QString GroupOfKey(const QString& treeKey);
QString ChannelOfKey(const QString& treeKey);
// The value as text without surrounding blanks.
QString TrimText(const QVariant& value);
