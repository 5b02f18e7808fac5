// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>
#include <optional>
#include <vector>

class XmlNode;
class clsItemBank;

// The list that tamsel-cli showed last, so that a later run can act on "item N". It is kept in
// the profile's folder (cli-last-list.json), written atomically, and names each item by what
// identifies it in the bank rather than by position: its channel, guid, title, date and time and
// a digest of its compared children (those the bank's duplicate test compares), so that a bank
// changed meanwhile never makes a number point to another item.
class LastListStore final {
public:
    static inline const QString kFileName = QStringLiteral("cli-last-list.json");
    // A larger file is not a list this program wrote.
    static constexpr qint64 kMaxFileBytes = 1024 * 1024;

    struct Entry {
        int number = 0;
        QString channel;
        QString guid;
        QString title;
        QString date;
        QString time;
        QByteArray digest;
    };
    struct List {
        QString key;
        QString filter;
        QString search;
        int page = 1;
        std::vector<Entry> entries;
    };

    // `profileFolder` without a trailing separator.
    explicit LastListStore(QString profileFolder);

    QString FilePath() const;
    // False, with the reason, when the file could not be written.
    bool Save(const List& list, QString* error) const;
    // The list last saved; none, with the reason, when there is none or it cannot be read.
    std::optional<List> Load(QString* error) const;

    // What identifies the item.
    static Entry EntryOf(int number, const XmlNode& item);
    // A digest of the item's children other than pubDate, read, flag and delete, by name and text.
    static QByteArray Digest(const XmlNode& item);
    // The entry's item in the bank: the first item of its channel with the same digest; else the
    // one item of the channel with its guid (a newer version of the same item). A null node when
    // the item is gone.
    static XmlNode Find(const clsItemBank& bank, const Entry& entry);

private:
    QString m_profileFolder;
};
