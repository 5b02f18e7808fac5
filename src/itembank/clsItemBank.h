// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "itembank/ItemTextIndex.h"
#include "itembank/ItemTextMask.h"
#include "platform/Paths.h"
#include "platform/XmlDocument.h"
#include "platform/XmlNode.h"

#include <QByteArrayView>
#include <QDate>
#include <QString>
#include <deque>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

class Clock;
struct _xmlNode;

// Items as the bank hands them out: nodes of its document in document order. They stay readable
// until the bank is destroyed, also when the bank removes or replaces them meanwhile.
using ItemList = std::vector<XmlNode>;

// A profile's item bank: every item its channels delivered, with the user's read, tagged and
// deleted state, kept as one XML document (items.xml in the profile's folder) that is written
// back when the bank is released.
//
// The document is the store. Beside it the bank keeps compact indexes (items per channel and per
// date, the state of each item, the guid, title and description texts, a summary of the bytes in
// each item's text) so that lists, counts, searches and duplicate checks never evaluate XPath over
// the whole document. Every change of items goes
// through the bank or through the item helpers of modItemHandler, which report to the bank that
// owns the node (ItemEdit), so the indexes stay exact.
//
// Everything runs on the one user-interface thread; no operation yields to the event loop, as
// each one finishes in micro- to milliseconds.
class clsItemBank final {
public:
    clsItemBank(Clock& clock, Paths paths);
    // Releases the bank unless it was released already.
    ~clsItemBank();
    clsItemBank(const clsItemBank&) = delete;
    clsItemBank& operator=(const clsItemBank&) = delete;

    // Sets the bank's folder to the profile's folder and loads its items.xml.
    void init(const QString& profileName);
    // Loads items.xml synchronously. A missing file gives an empty bank. A file that cannot be
    // read or parsed, or whose root is not "itembank", is renamed aside
    // (items.xml.damaged-yyyyMMdd-HHmmss) and left untouched there; the bank starts with the items
    // that could still be read from it (all but the last, which a cut-off write may have left
    // half written), or empty.
    void LoadXML();

    // Merges a candidate item (of any document) into the bank: dropped when it is a duplicate by
    // guid, title or description, replacing in place a stored item whose guid it shares alone,
    // else appended. True when the store changed.
    bool AddItem(const XmlNode& item);
    // True when the candidate carries every compared child value of the stored item (children
    // other than pubDate, read, flag and delete, each found among the candidate's children of
    // the same name with an equal text).
    static bool Same(const XmlNode& stored, const XmlNode& candidate);
    // Removes the channel's untagged items dated more than `days` days away from today.
    void RemoveExpired(const QString& url, int days);
    // Removes the items of the channel's own list (SubChannelList(url, "", "")): those not
    // marked deleted. Its deleted items stay in the Deleted folder.
    void KillChannel(const QString& url);
    // The number of child nodes of the root element, deleted items included.
    int Count() const;

    // The items of a channel or built-in folder (`key`), narrowed by a folder key (`filter`; an
    // empty or unknown filter keeps the items not deleted) and a search text, in document order.
    // The search text, trimmed, is looked for in an item's whole text (all its children's texts
    // run together, attributes not included) with only A to Z folded to lower case. In the
    // Deleted folder the filters narrow the deleted items: "All Items" lists every deleted item,
    // "Unread" the unread ones, and so on.
    ItemList SubChannelList(const QString& key, const QString& filter, const QString& search) const;
    // Today's unread items that are not deleted, in document order.
    ItemList UnreadTodayList() const;
    // True for the seven built-in folder keys; any other key is a channel URL.
    static bool IsItemFolder(const QString& key);

    // Writes items.xml now, atomically; false (see LastError) when it could not be written.
    bool SaveXML();
    // Saves the bank for the last time, unless nothing changed since it was read or last written;
    // the destructor then saves no more. Lists handed out stay readable until the bank is destroyed.
    bool Release();
    QString LastError() const { return m_lastError; }
    // Whether items changed since items.xml was read or last written.
    bool HasUnsavedChanges() const { return m_loaded && m_generation != m_savedGeneration; }

    QString BankFolder() const { return m_bankFolder; }
    QString FilePath() const;
    // Where a damaged items.xml was kept aside by the last load; empty when none was.
    QString DamagedFile() const { return m_damagedFile; }
    // Why that file could not be read.
    QString DamageReason() const { return m_damageReason; }
    // Whether the last load could not read all of items.xml, so that items may be missing.
    bool LostItems() const { return !m_damagedFile.isEmpty() || m_saveBlocked; }
    // The store, for reading only: items are changed through the bank and modItemHandler.
    const XmlDocument& XMLDoc() const { return m_doc; }

    // Made by the item helpers around every change of a node: finds the bank owning the node
    // (if any) and the item holding it, takes the item out of the indexes that the change may
    // touch before the change, and puts it back after it.
    class ItemEdit final {
    public:
        ItemEdit(const XmlNode& node, QByteArrayView childName);
        ~ItemEdit();
        ItemEdit(const ItemEdit&) = delete;
        ItemEdit& operator=(const ItemEdit&) = delete;

    private:
        clsItemBank* m_bank = nullptr;
        quint32 m_slot = 0;
        bool m_texts = false;
    };

private:
    static constexpr quint32 kNoId = 0xFFFFFFFFu;

    // State bits of an item: which texts its read, flag and delete children have (an item may
    // have several children of one name), and whether the slot holds a live item.
    enum StateBit : quint8 {
        kLive = 1 << 0,
        kReadTrue = 1 << 1,
        kReadFalse = 1 << 2,
        kFlagTrue = 1 << 3,
        kFlagFalse = 1 << 4,
        kDeleteTrue = 1 << 5,
        kDeleteFalse = 1 << 6,
    };

    // One item of the document. Slots are numbered in document order: new items are appended
    // and a replacement takes over the slot of the item it replaces.
    struct Slot {
        _xmlNode* node = nullptr;
        quint32 channel = kNoId;
        quint32 date = kNoId;
        quint8 state = 0;
        // Whether m_textMasks holds the summary of this item's current text.
        mutable bool textMaskReady = false;
    };

    // The condition of a list: which items of which source pass.
    struct Selection;
    struct CachedSearch {
        quint64 generation = 0;
        qint64 today = 0;
        QString key;
        QString filter;
        QByteArray needle;
        std::vector<quint32> slotIds;
    };

    struct StringHash {
        using is_transparent = void;
        size_t operator()(std::string_view text) const { return std::hash<std::string_view>{}(text); }
    };
    using Interned = std::unordered_map<std::string, quint32, StringHash, std::equal_to<>>;

    static clsItemBank* OwnerOf(const _xmlNode* node);
    static bool IsItemElement(const _xmlNode* node);

    void StartEmpty();
    void KeepDamagedAside(const QString& reason);
    bool RecoverFrom(const QString& damagedFile);
    void RebuildIndexes();
    quint32 SlotOf(const _xmlNode* item) const;

    quint32 Intern(Interned& table, std::vector<std::vector<quint32>>& lists, std::string_view text);
    void IndexSlot(quint32 slot, bool inOrder);
    void UnindexSlot(quint32 slot);
    ItemTextIndex* TextIndexOf(const _xmlNode* child, bool hasTitle);
    void IndexTexts(quint32 slot);
    void UnindexTexts(quint32 slot);
    static quint8 StateOf(const _xmlNode* item);
    void RemoveSlots(const std::vector<quint32>& slotIds);
    void Changed() { ++m_generation; }

    // The live items, in document order, with a child `childName` whose text is `text`.
    std::vector<quint32> SlotsWithText(const ItemTextIndex& index, QByteArrayView childName,
                                       std::string_view text) const;
    bool Replace(quint32 slot, const XmlNode& item);
    bool Append(const XmlNode& item);

    Selection Select(const QString& key, const QString& filter, const QDate& today) const;
    quint32 DateIdOf(const QDate& date) const;
    std::vector<quint32> Candidates(const Selection& selection) const;
    ItemList ToList(const std::vector<quint32>& slotIds) const;
    // Summarises the item's text, and takes the bytes read from `budget`.
    void KeepTextMask(quint32 slot, qint64& budget) const;
    QDate Today() const;

    Clock& m_clock;
    Paths m_paths;
    QString m_bankFolder;
    QString m_lastError;
    QString m_damagedFile;
    QString m_damageReason;
    XmlDocument m_doc;
    // Documents of earlier loads, kept so that lists handed out from them never dangle.
    std::vector<XmlDocument> m_retiredDocs;
    bool m_loaded = false;
    bool m_released = false;
    // Set when a damaged file could not be kept aside: saving would overwrite it.
    bool m_saveBlocked = false;

    std::vector<Slot> m_slots;
    qsizetype m_deadSlots = 0;
    qsizetype m_rootChildren = 0;
    Interned m_channelIds;
    std::vector<std::vector<quint32>> m_channelSlots;
    Interned m_dateIds;
    std::vector<std::vector<quint32>> m_dateSlots;
    std::vector<qint64> m_dateDays;
    ItemTextIndex m_guids;
    ItemTextIndex m_titles;
    ItemTextIndex m_descriptions;

    // Bumped by every change of items, so that cached searches never outlive what they saw.
    quint64 m_generation = 0;
    // The generation that items.xml holds, so that an unchanged bank is not rewritten.
    quint64 m_savedGeneration = 0;
    mutable std::deque<CachedSearch> m_searchCache;
    // Beside m_slots, by slot number; an entry counts only while its slot's textMaskReady is set.
    mutable std::vector<ItemTextMask> m_textMasks;
};
