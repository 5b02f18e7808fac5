// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/SharedHelpers.h"

#include "platform/CRegSettings.h"

namespace {

const QString kCommon = QStringLiteral("Common");
const QString kLastID = QStringLiteral("LastID");
const QString kFirstLastID = QStringLiteral("2560");
constexpr QChar kKeySeparator = u'|';

} // namespace

QString NewChannelID(CRegSettings& settings) {
    const qlonglong next = settings.GetSetting(kCommon, kLastID, kFirstLastID).trimmed().toLongLong() + 1;
    settings.SaveSetting(kCommon, kLastID, QString::number(next));
    return QString::number(next, 16).toUpper();
}

bool IsVirtualFolder(const QString& key) {
    return key == FolderKey::Read || key == FolderKey::Unread || key == FolderKey::Deleted || key == FolderKey::Week ||
           key == FolderKey::Yesterday || key == FolderKey::Today || key == FolderKey::Flagged;
}

bool IsMakerChannel(const QString& url, const QString& helpUrl, const QString& newsUrl) {
    return url == helpUrl || url == newsUrl;
}

bool IsBuiltinChannel(const QString& key, const QString& helpUrl, const QString& newsUrl) {
    return IsVirtualFolder(key) || IsMakerChannel(key, helpUrl, newsUrl);
}

bool IsReservedGroupName(const QString& name) {
    return name == GroupName::AllItems || name == GroupName::Spotlight || name == GroupName::Tamsel;
}

bool IsCustomItemField(const QString& elementName) {
    if (elementName.compare(QStringLiteral("pubdate"), Qt::CaseInsensitive) == 0) {
        return false;
    }
    return elementName != QStringLiteral("read") && elementName != QStringLiteral("delete") &&
           elementName != QStringLiteral("flag");
}

bool PointInRect(float left, float top, float width, float height, float x, float y) {
    return left <= x && x <= left + width && top <= y && y <= top + height;
}

QString GroupOfKey(const QString& treeKey) {
    const qsizetype bar = treeKey.indexOf(kKeySeparator);
    return bar < 0 ? treeKey : treeKey.left(bar);
}

QString ChannelOfKey(const QString& treeKey) {
    const qsizetype bar = treeKey.indexOf(kKeySeparator);
    return bar < 0 ? QString() : treeKey.mid(bar + 1);
}

QString TrimText(const QVariant& value) {
    return value.toString().trimmed();
}
