// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/LastListStore.h"

#include "app/SharedHelpers.h"
#include "itembank/clsItemBank.h"
#include "itembank/modItemHandler.h"
#include "platform/AtomicFile.h"
#include "platform/XmlNode.h"

#include <QCryptographicHash>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace {

constexpr int kFormat = 1;
const QString kKeyFormat = QStringLiteral("format");
const QString kKeyKey = QStringLiteral("key");
const QString kKeyFilter = QStringLiteral("filter");
const QString kKeySearch = QStringLiteral("search");
const QString kKeyPage = QStringLiteral("page");
const QString kKeyItems = QStringLiteral("items");
const QString kKeyNumber = QStringLiteral("n");
const QString kKeyChannel = QStringLiteral("channel");
const QString kKeyGuid = QStringLiteral("guid");
const QString kKeyTitle = QStringLiteral("title");
const QString kKeyDate = QStringLiteral("date");
const QString kKeyTime = QStringLiteral("time");
const QString kKeyDigest = QStringLiteral("digest");

// Every item of the channel that a list can show: those not deleted and those deleted.
ItemList ItemsOfChannel(const clsItemBank& bank, const QString& channel) {
    ItemList items = bank.SubChannelList(channel, QString(), QString());
    const ItemList deleted = bank.SubChannelList(channel, FolderKey::Deleted, QString());
    items.insert(items.end(), deleted.begin(), deleted.end());
    return items;
}

} // namespace

LastListStore::LastListStore(QString profileFolder) : m_profileFolder(std::move(profileFolder)) {}

QString LastListStore::FilePath() const {
    return m_profileFolder + u'/' + kFileName;
}

bool LastListStore::Save(const List& list, QString* error) const {
    QJsonArray items;
    for (const Entry& entry : list.entries) {
        items.append(QJsonObject{{kKeyNumber, entry.number},
                                 {kKeyChannel, entry.channel},
                                 {kKeyGuid, entry.guid},
                                 {kKeyTitle, entry.title},
                                 {kKeyDate, entry.date},
                                 {kKeyTime, entry.time},
                                 {kKeyDigest, QString::fromLatin1(entry.digest.toHex())}});
    }
    const QJsonObject root{{kKeyFormat, kFormat},     {kKeyKey, list.key},   {kKeyFilter, list.filter},
                           {kKeySearch, list.search}, {kKeyPage, list.page}, {kKeyItems, items}};
    const QByteArray bytes = QJsonDocument(root).toJson(QJsonDocument::Compact) + '\n';
    QString reason;
    if (!AtomicFile::Write(FilePath(), bytes, &reason)) {
        if (error) {
            *error = QStringLiteral("%1 could not be written: %2").arg(FilePath(), reason);
        }
        return false;
    }
    return true;
}

std::optional<LastListStore::List> LastListStore::Load(QString* error) const {
    const auto fail = [error](const QString& reason) -> std::optional<List> {
        if (error) {
            *error = reason;
        }
        return std::nullopt;
    };
    QFile file(FilePath());
    if (!file.exists()) {
        return fail(QStringLiteral("There is no list yet; run tamsel-cli list first."));
    }
    if (file.size() > kMaxFileBytes || !file.open(QIODevice::ReadOnly)) {
        return fail(QStringLiteral("%1 cannot be read; run tamsel-cli list again.").arg(FilePath()));
    }
    const QJsonDocument doc = QJsonDocument::fromJson(file.read(kMaxFileBytes));
    const QJsonObject root = doc.object();
    if (!doc.isObject() || root.value(kKeyFormat).toInt() != kFormat || !root.value(kKeyItems).isArray()) {
        return fail(
            QStringLiteral("%1 is not a list of this program; run tamsel-cli list again.").arg(FilePath()));
    }
    List list;
    list.key = root.value(kKeyKey).toString();
    list.filter = root.value(kKeyFilter).toString();
    list.search = root.value(kKeySearch).toString();
    list.page = root.value(kKeyPage).toInt(1);
    for (const QJsonValue& value : root.value(kKeyItems).toArray()) {
        const QJsonObject object = value.toObject();
        Entry entry;
        entry.number = object.value(kKeyNumber).toInt();
        entry.channel = object.value(kKeyChannel).toString();
        entry.guid = object.value(kKeyGuid).toString();
        entry.title = object.value(kKeyTitle).toString();
        entry.date = object.value(kKeyDate).toString();
        entry.time = object.value(kKeyTime).toString();
        entry.digest = QByteArray::fromHex(object.value(kKeyDigest).toString().toLatin1());
        if (entry.number >= 1 && !entry.channel.isEmpty()) {
            list.entries.push_back(std::move(entry));
        }
    }
    return list;
}

LastListStore::Entry LastListStore::EntryOf(int number, const XmlNode& item) {
    return Entry{number,
                 GetAttributeText(item, QStringLiteral("channel")),
                 GetChildText(item, QStringLiteral("guid")),
                 GetItemTitle(item),
                 GetItemDate(item),
                 GetItemTime(item),
                 Digest(item)};
}

QByteArray LastListStore::Digest(const XmlNode& item) {
    QCryptographicHash hash(QCryptographicHash::Sha256);
    for (XmlNode child = item.FirstChild(); !child.IsNull(); child = child.NextSibling()) {
        if (!child.IsElement() || !IsCustomItemField(child.Name())) {
            continue;
        }
        // Lengths first, so that no two different children run together into the same bytes.
        const QByteArray name = child.Name().toUtf8();
        const QByteArray text = child.Text().toUtf8();
        hash.addData(
            QByteArray(QByteArray::number(name.size()) + ':' + name + QByteArray::number(text.size()) + ':'));
        hash.addData(text);
    }
    hash.addData(QByteArray(GetItemDate(item).toUtf8() + ' ' + GetItemTime(item).toUtf8()));
    return hash.result();
}

XmlNode LastListStore::Find(const clsItemBank& bank, const Entry& entry) {
    const ItemList items = ItemsOfChannel(bank, entry.channel);
    for (const XmlNode& item : items) {
        if (Digest(item) == entry.digest) {
            return item;
        }
    }
    if (entry.guid.isEmpty()) {
        return {};
    }
    XmlNode found;
    for (const XmlNode& item : items) {
        if (GetChildText(item, QStringLiteral("guid")) == entry.guid) {
            if (!found.IsNull()) {
                return {};
            }
            found = item;
        }
    }
    return found;
}
