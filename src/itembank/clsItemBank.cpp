// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "itembank/clsItemBank.h"

#include "itembank/ItemTextSearch.h"
#include "itembank/ItemXml.h"
#include "itembank/modItemHandler.h"
#include "platform/Clock.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QtDebug>
#include <algorithm>
#include <cstdint>
#include <libxml/tree.h>
#include <limits>

namespace {

constexpr qint64 kMaxBankBytes = qint64(1) << 30;
constexpr size_t kSearchCacheEntries = 4;
// Text that one search may summarise for the next ones. Smaller shares keep the cost coming back
// keystroke after keystroke; this one summarises a bank of 100,000 items within a few keystrokes,
// each of them slowed by some tens of milliseconds at most.
constexpr qint64 kTextMaskBytesPerSearch = qint64(16) << 20;
constexpr qsizetype kCompactAfterDeadSlots = 4096;
constexpr qint64 kNoDay = std::numeric_limits<qint64>::min();
constexpr int kWeekDays = 7;

// The conditions that folder keys stand for, plus the one that an empty or unknown filter adds.
enum class Condition { None, NotDeleted, Today, Yesterday, Week, Old, Flagged, Deleted, Unread, Read };

Condition ConditionOf(const QString& key) {
    if (key == QLatin1String("_tamsel/today")) {
        return Condition::Today;
    }
    if (key == QLatin1String("_tamsel/yesterday")) {
        return Condition::Yesterday;
    }
    if (key == QLatin1String("_tamsel/week")) {
        return Condition::Week;
    }
    if (key == QLatin1String("_tamsel/old")) {
        return Condition::Old;
    }
    if (key == QLatin1String("_tamsel/flagged")) {
        return Condition::Flagged;
    }
    if (key == QLatin1String("_tamsel/deleted")) {
        return Condition::Deleted;
    }
    if (key == QLatin1String("_tamsel/unread")) {
        return Condition::Unread;
    }
    if (key == QLatin1String("_tamsel/read")) {
        return Condition::Read;
    }
    return Condition::None;
}

std::vector<clsItemBank*>& Banks() {
    static std::vector<clsItemBank*> banks;
    return banks;
}

std::string_view ViewOf(const QByteArray& bytes) {
    return std::string_view(bytes.constData(), size_t(bytes.size()));
}

void AddInOrder(std::vector<quint32>& list, quint32 slot) {
    if (list.empty() || list.back() < slot) {
        list.push_back(slot);
    } else {
        list.insert(std::lower_bound(list.begin(), list.end(), slot), slot);
    }
}

void RemoveFrom(std::vector<quint32>& list, quint32 slot) {
    const auto at = std::lower_bound(list.begin(), list.end(), slot);
    if (at != list.end() && *at == slot) {
        list.erase(at);
    }
}

bool Contains(const std::vector<quint32>& sorted, quint32 value) {
    return std::binary_search(sorted.begin(), sorted.end(), value);
}

} // namespace

struct clsItemBank::Selection {
    bool nothing = false;
    // Slots to start from when not all: one channel's or some dates' lists.
    const std::vector<quint32>* channel = nullptr;
    quint8 required = kLive;
    bool datesLimited = false;
    std::vector<quint32> datesAllowed;
    std::vector<quint32> datesExcluded;

    void AllowDates(std::vector<quint32> dates) {
        std::sort(dates.begin(), dates.end());
        if (!datesLimited) {
            datesLimited = true;
            datesAllowed = std::move(dates);
            return;
        }
        std::vector<quint32> both;
        std::set_intersection(datesAllowed.begin(), datesAllowed.end(), dates.begin(), dates.end(),
                              std::back_inserter(both));
        datesAllowed = std::move(both);
    }
    void ExcludeDates(const std::vector<quint32>& dates) {
        datesExcluded.insert(datesExcluded.end(), dates.begin(), dates.end());
        std::sort(datesExcluded.begin(), datesExcluded.end());
    }
    bool Passes(const Slot& slot) const {
        return (slot.state & required) == required && (!datesLimited || Contains(datesAllowed, slot.date)) &&
               !Contains(datesExcluded, slot.date);
    }
};

clsItemBank::clsItemBank(Clock& clock, Paths paths) : m_clock(clock), m_paths(std::move(paths)) {
    Banks().push_back(this);
}

clsItemBank::~clsItemBank() {
    if (m_loaded && !m_released) {
        Release();
    }
    std::erase(Banks(), this);
}

void clsItemBank::init(const QString& profileName) {
    m_bankFolder = m_paths.ProfileFolder(profileName);
    LoadXML();
}

QString clsItemBank::FilePath() const {
    return m_bankFolder.isEmpty() ? QString() : m_bankFolder + QStringLiteral("/items.xml");
}

void clsItemBank::LoadXML() {
    m_damagedFile.clear();
    m_damageReason.clear();
    m_saveBlocked = false;
    const QString path = FilePath();
    const QFileInfo info(path);
    if (path.isEmpty() || (!info.exists() && !info.isSymLink())) {
        StartEmpty();
        return;
    }
    if (info.size() > kMaxBankBytes) {
        KeepDamagedAside(QStringLiteral("the file is larger than %1 bytes").arg(kMaxBankBytes));
        StartEmpty();
        return;
    }
    QString error;
    XmlDocument doc = XmlDocument::Load(path, &error);
    if (doc.IsNull()) {
        KeepDamagedAside(error);
        if (m_damagedFile.isEmpty() || !RecoverFrom(m_damagedFile)) {
            StartEmpty();
        }
        return;
    }
    if (!ItemXml::IsPlainElement(doc.DocumentElement().Raw(), "itembank")) {
        KeepDamagedAside(QStringLiteral("the root element is not \"itembank\""));
        StartEmpty();
        return;
    }
    if (!m_doc.IsNull() && !m_doc.DocumentElement().IsNull()) {
        m_retiredDocs.push_back(std::move(m_doc));
    }
    m_doc = std::move(doc);
    m_loaded = true;
    RebuildIndexes();
    m_savedGeneration = m_generation;
}

void clsItemBank::StartEmpty() {
    if (!m_doc.IsNull() && !m_doc.DocumentElement().IsNull()) {
        m_retiredDocs.push_back(std::move(m_doc));
    }
    m_doc = XmlDocument();
    m_doc.SetDocumentElement(m_doc.CreateElement(QStringLiteral("itembank")));
    m_loaded = true;
    RebuildIndexes();
}

bool clsItemBank::RecoverFrom(const QString& damagedFile) {
    XmlParseOptions options;
    options.recover = true;
    XmlDocument doc = XmlDocument::Load(damagedFile, nullptr, options);
    if (doc.IsNull() || !ItemXml::IsPlainElement(doc.DocumentElement().Raw(), "itembank")) {
        return false;
    }
    XmlNode root = doc.DocumentElement();
    if (XmlNode last = root.LastChild(); !last.IsNull()) {
        doc.RemoveChild(root, last);
    }
    if (!m_doc.IsNull() && !m_doc.DocumentElement().IsNull()) {
        m_retiredDocs.push_back(std::move(m_doc));
    }
    m_doc = std::move(doc);
    m_loaded = true;
    RebuildIndexes();
    // What was recovered becomes the new items.xml at the next save.
    Changed();
    return true;
}

void clsItemBank::KeepDamagedAside(const QString& reason) {
    const QString path = FilePath();
    const QString base =
        path + QStringLiteral(".damaged-") + m_clock.Now().toString(QStringLiteral("yyyyMMdd-HHmmss"));
    QString target = base;
    for (int n = 2; QFileInfo::exists(target) || QFileInfo(target).isSymLink(); ++n) {
        target = base + u'-' + QString::number(n);
    }
    if (QFile::rename(path, target)) {
        m_damagedFile = target;
        m_damageReason = reason;
        return;
    }
    // Saving now would overwrite the only copy of the user's items.
    m_saveBlocked = true;
    m_lastError = QStringLiteral("%1 could not be read (%2) nor be kept aside; it will not be overwritten")
                      .arg(QDir::toNativeSeparators(path), reason);
    qWarning().noquote() << m_lastError;
}

bool clsItemBank::SaveXML() {
    if (!m_loaded || FilePath().isEmpty()) {
        m_lastError = QStringLiteral("the item bank has not been loaded");
        return false;
    }
    if (m_saveBlocked) {
        qWarning().noquote() << m_lastError;
        return false;
    }
    QDir().mkpath(m_bankFolder);
    QString error;
    if (!m_doc.Save(FilePath(), &error)) {
        m_lastError =
            QStringLiteral("%1 could not be written: %2").arg(QDir::toNativeSeparators(FilePath()), error);
        qWarning().noquote() << m_lastError;
        return false;
    }
    m_lastError.clear();
    m_savedGeneration = m_generation;
    return true;
}

bool clsItemBank::Release() {
    m_released = true;
    return (m_loaded && !HasUnsavedChanges()) || SaveXML();
}

int clsItemBank::Count() const {
    return int(m_rootChildren);
}

bool clsItemBank::IsItemFolder(const QString& key) {
    const Condition condition = ConditionOf(key);
    return condition != Condition::None && condition != Condition::Old;
}

// ---- Indexes

clsItemBank* clsItemBank::OwnerOf(const xmlNode* node) {
    for (clsItemBank* bank : Banks()) {
        if (bank->m_loaded && bank->m_doc.Raw() == node->doc) {
            return bank;
        }
    }
    return nullptr;
}

bool clsItemBank::IsItemElement(const xmlNode* node) {
    return ItemXml::IsPlainElement(node, "item");
}

void clsItemBank::RebuildIndexes() {
    m_slots.clear();
    m_deadSlots = 0;
    m_rootChildren = 0;
    m_channelIds.clear();
    m_channelSlots.clear();
    m_dateIds.clear();
    m_dateSlots.clear();
    m_dateDays.clear();
    m_guids.Clear();
    m_titles.Clear();
    m_descriptions.Clear();
    m_searchCache.clear();
    const xmlNode* root = m_doc.DocumentElement().Raw();
    for (xmlNode* child = root ? root->children : nullptr; child; child = child->next) {
        ++m_rootChildren;
        if (IsItemElement(child)) {
            m_slots.push_back(Slot{child});
            IndexSlot(quint32(m_slots.size() - 1), true);
        }
    }
    Changed();
}

quint32 clsItemBank::SlotOf(const xmlNode* item) const {
    // The item element's private pointer holds its slot number; check it, since other code
    // could have used the pointer too.
    const auto fromNode = quint32(reinterpret_cast<uintptr_t>(item->_private));
    if (fromNode < m_slots.size() && m_slots[fromNode].node == item) {
        return fromNode;
    }
    for (size_t slot = 0; slot < m_slots.size(); ++slot) {
        if (m_slots[slot].node == item) {
            return quint32(slot);
        }
    }
    return kNoId;
}

quint32 clsItemBank::Intern(Interned& table, std::vector<std::vector<quint32>>& lists,
                            std::string_view text) {
    const auto found = table.find(text);
    if (found != table.end()) {
        return found->second;
    }
    const auto id = quint32(lists.size());
    table.emplace(std::string(text), id);
    lists.emplace_back();
    return id;
}

quint8 clsItemBank::StateOf(const xmlNode* item) {
    struct StateChild {
        const char* name;
        quint8 whenTrue;
        quint8 whenFalse;
    };
    static constexpr StateChild kStateChildren[] = {{"read", kReadTrue, kReadFalse},
                                                    {"flag", kFlagTrue, kFlagFalse},
                                                    {"delete", kDeleteTrue, kDeleteFalse}};
    quint8 state = 0;
    for (const xmlNode* child = item->children; child; child = child->next) {
        if (child->type != XML_ELEMENT_NODE) {
            continue;
        }
        for (const StateChild& stateChild : kStateChildren) {
            if (ItemXml::IsPlainElement(child, stateChild.name)) {
                const ItemXml::NodeText text(child);
                if (text.View() == "true") {
                    state |= stateChild.whenTrue;
                } else if (text.View() == "false") {
                    state |= stateChild.whenFalse;
                }
            }
        }
    }
    return state;
}

void clsItemBank::IndexSlot(quint32 slot, bool inOrder) {
    Slot& item = m_slots[slot];
    item.node->_private = reinterpret_cast<void*>(uintptr_t(slot));
    item.state = quint8(kLive | StateOf(item.node));
    item.textMaskReady = false;
    item.channel = kNoId;
    item.date = kNoId;
    if (const xmlAttr* channel = ItemXml::PlainAttribute(item.node, "channel")) {
        const ItemXml::NodeText text(channel);
        item.channel = Intern(m_channelIds, m_channelSlots, text.View());
        std::vector<quint32>& list = m_channelSlots[item.channel];
        inOrder ? list.push_back(slot) : AddInOrder(list, slot);
    }
    if (const xmlAttr* date = ItemXml::PlainAttribute(item.node, "date")) {
        const ItemXml::NodeText text(date);
        item.date = Intern(m_dateIds, m_dateSlots, text.View());
        if (m_dateDays.size() < m_dateSlots.size()) {
            const QDate parsed =
                ParseItemDateAttribute(QString::fromUtf8(text.View().data(), qsizetype(text.View().size())));
            m_dateDays.push_back(parsed.isValid() ? parsed.toJulianDay() : kNoDay);
        }
        std::vector<quint32>& list = m_dateSlots[item.date];
        inOrder ? list.push_back(slot) : AddInOrder(list, slot);
    }
    IndexTexts(slot);
}

void clsItemBank::UnindexSlot(quint32 slot) {
    const Slot& item = m_slots[slot];
    if (item.channel != kNoId) {
        RemoveFrom(m_channelSlots[item.channel], slot);
    }
    if (item.date != kNoId) {
        RemoveFrom(m_dateSlots[item.date], slot);
    }
    UnindexTexts(slot);
}

ItemTextIndex* clsItemBank::TextIndexOf(const xmlNode* child, bool hasTitle) {
    if (ItemXml::HasQualifiedName(child, "guid")) {
        return &m_guids;
    }
    if (ItemXml::HasQualifiedName(child, "title")) {
        return &m_titles;
    }
    // A candidate is looked up by its description only when it has no title, and then an item
    // with a title can never be the same as it: only items without a title need this index.
    if (!hasTitle && ItemXml::HasQualifiedName(child, "description")) {
        return &m_descriptions;
    }
    return nullptr;
}

void clsItemBank::IndexTexts(quint32 slot) {
    const xmlNode* item = m_slots[slot].node;
    const bool hasTitle = ItemXml::FirstChildNamed(item, "title") != nullptr;
    for (const xmlNode* child = item->children; child; child = child->next) {
        if (ItemTextIndex* index = TextIndexOf(child, hasTitle)) {
            index->Insert(ItemTextIndex::HashOf(ItemXml::NodeText(child).View()), slot);
        }
    }
}

void clsItemBank::UnindexTexts(quint32 slot) {
    const xmlNode* item = m_slots[slot].node;
    const bool hasTitle = ItemXml::FirstChildNamed(item, "title") != nullptr;
    for (const xmlNode* child = item->children; child; child = child->next) {
        if (ItemTextIndex* index = TextIndexOf(child, hasTitle)) {
            index->Remove(ItemTextIndex::HashOf(ItemXml::NodeText(child).View()), slot);
        }
    }
}

std::vector<quint32> clsItemBank::SlotsWithText(const ItemTextIndex& index, QByteArrayView childName,
                                                std::string_view text) const {
    std::vector<quint32> found;
    index.ForEach(ItemTextIndex::HashOf(text), [&found](quint32 slot) { found.push_back(slot); });
    std::sort(found.begin(), found.end());
    found.erase(std::unique(found.begin(), found.end()), found.end());
    // Entries share a hash, not necessarily the text: keep the items that really hold it.
    std::erase_if(found, [&](quint32 slot) {
        const Slot& item = m_slots[slot];
        if (!(item.state & kLive)) {
            return true;
        }
        for (const xmlNode* child = item.node->children; child; child = child->next) {
            if (ItemXml::HasQualifiedName(child, childName) && ItemXml::NodeText(child).View() == text) {
                return false;
            }
        }
        return true;
    });
    return found;
}

void clsItemBank::RemoveSlots(const std::vector<quint32>& slotIds) {
    if (slotIds.empty()) {
        return;
    }
    const XmlNode root = m_doc.DocumentElement();
    std::vector<quint32> channels;
    std::vector<quint32> dates;
    for (quint32 slot : slotIds) {
        Slot& item = m_slots[slot];
        UnindexTexts(slot);
        XmlDocument::RemoveChild(root, XmlNode(item.node));
        channels.push_back(item.channel);
        dates.push_back(item.date);
        item = Slot{};
        --m_rootChildren;
        ++m_deadSlots;
    }
    const auto isDead = [this](quint32 slot) { return !(m_slots[slot].state & kLive); };
    const auto sweep = [&isDead](std::vector<quint32>& ids, std::vector<std::vector<quint32>>& lists) {
        std::sort(ids.begin(), ids.end());
        ids.erase(std::unique(ids.begin(), ids.end()), ids.end());
        for (quint32 id : ids) {
            if (id != kNoId) {
                std::erase_if(lists[id], isDead);
            }
        }
    };
    sweep(channels, m_channelSlots);
    sweep(dates, m_dateSlots);
    Changed();
    const qsizetype liveSlots = qsizetype(m_slots.size()) - m_deadSlots;
    if (m_deadSlots > kCompactAfterDeadSlots && m_deadSlots > liveSlots) {
        RebuildIndexes();
    }
}

// ---- Store operations

bool clsItemBank::AddItem(const XmlNode& item) {
    if (!m_loaded || !item.IsElement()) {
        return false;
    }
    const xmlNode* candidate = item.Raw();
    if (const xmlNode* guid = ItemXml::FirstChildNamed(candidate, "guid")) {
        const ItemXml::NodeText text(guid);
        if (!text.IsEmpty()) {
            const std::vector<quint32> matches = SlotsWithText(m_guids, "guid", text.View());
            if (matches.size() == 1) {
                if (Same(XmlNode(m_slots[matches.front()].node), item)) {
                    return false;
                }
                // The changed version takes the old one's place; its state is the candidate's own.
                return Replace(matches.front(), item);
            }
        }
    }
    const xmlNode* keyChild = ItemXml::FirstChildNamed(candidate, "title");
    const ItemTextIndex* index = &m_titles;
    QByteArrayView keyName = "title";
    if (!keyChild) {
        keyChild = ItemXml::FirstChildNamed(candidate, "description");
        index = &m_descriptions;
        keyName = "description";
    }
    if (!keyChild) {
        return false;
    }
    const ItemXml::NodeText text(keyChild);
    for (quint32 slot : SlotsWithText(*index, keyName, text.View())) {
        if (Same(XmlNode(m_slots[slot].node), item)) {
            return false;
        }
    }
    return Append(item);
}

bool clsItemBank::Replace(quint32 slot, const XmlNode& item) {
    const XmlNode copy = m_doc.ImportNode(item);
    if (copy.IsNull()) {
        return false;
    }
    UnindexSlot(slot);
    XmlDocument::ReplaceChild(XmlNode(m_slots[slot].node), copy);
    m_slots[slot].node = copy.Raw();
    if (IsItemElement(copy.Raw())) {
        IndexSlot(slot, false);
    } else {
        m_slots[slot] = Slot{};
        ++m_deadSlots;
    }
    Changed();
    return true;
}

bool clsItemBank::Append(const XmlNode& item) {
    const XmlNode copy = m_doc.ImportNode(item);
    if (copy.IsNull() || m_doc.DocumentElement().AppendChild(copy).IsNull()) {
        return false;
    }
    ++m_rootChildren;
    if (IsItemElement(copy.Raw())) {
        m_slots.push_back(Slot{copy.Raw()});
        IndexSlot(quint32(m_slots.size() - 1), true);
    }
    Changed();
    return true;
}

bool clsItemBank::Same(const XmlNode& stored, const XmlNode& candidate) {
    if (stored.IsNull() || candidate.IsNull()) {
        return false;
    }
    // Element children are compared; text between them is not a field.
    for (const xmlNode* child = stored.Raw()->children; child; child = child->next) {
        if (child->type != XML_ELEMENT_NODE || ItemXml::HasQualifiedNameIgnoringCase(child, "pubdate") ||
            ItemXml::HasQualifiedNameIgnoringCase(child, "read") ||
            ItemXml::HasQualifiedNameIgnoringCase(child, "delete") ||
            ItemXml::HasQualifiedNameIgnoringCase(child, "flag")) {
            continue;
        }
        const ItemXml::NodeText value(child);
        bool found = false;
        for (const xmlNode* other = candidate.Raw()->children; other && !found; other = other->next) {
            found = other->type == XML_ELEMENT_NODE && ItemXml::SameQualifiedName(other, child) &&
                    ItemXml::NodeText(other).View() == value.View();
        }
        if (!found) {
            return false;
        }
    }
    return true;
}

void clsItemBank::RemoveExpired(const QString& url, int days) {
    const auto channel = m_channelIds.find(ViewOf(url.toUtf8()));
    if (!m_loaded || channel == m_channelIds.end()) {
        return;
    }
    const qint64 today = Today().toJulianDay();
    std::vector<quint32> expired;
    for (quint32 slot : m_channelSlots[channel->second]) {
        const Slot& item = m_slots[slot];
        // Tagged items never expire; an item without a readable date has no age and stays.
        const qint64 day = item.date != kNoId ? m_dateDays[item.date] : kNoDay;
        if ((item.state & kFlagFalse) && day != kNoDay && qAbs(today - day) > days) {
            expired.push_back(slot);
        }
    }
    RemoveSlots(expired);
}

void clsItemBank::KillChannel(const QString& url) {
    if (m_loaded) {
        RemoveSlots(Candidates(Select(url, QString(), Today())));
    }
}

// ---- Queries

QDate clsItemBank::Today() const {
    return m_clock.Now().date();
}

quint32 clsItemBank::DateIdOf(const QDate& date) const {
    const auto found = m_dateIds.find(ViewOf(FormatItemDate(date).toUtf8()));
    return found != m_dateIds.end() ? found->second : kNoId;
}

clsItemBank::Selection clsItemBank::Select(const QString& key, const QString& filter,
                                           const QDate& today) const {
    Selection selection;
    if (!IsItemFolder(key)) {
        const auto channel = m_channelIds.find(ViewOf(key.toUtf8()));
        if (channel == m_channelIds.end()) {
            selection.nothing = true;
            return selection;
        }
        selection.channel = &m_channelSlots[channel->second];
    }
    const auto datesBack = [&](int count) {
        std::vector<quint32> ids;
        for (int back = 0; back < count; ++back) {
            if (const quint32 id = DateIdOf(today.addDays(-back)); id != kNoId) {
                ids.push_back(id);
            }
        }
        return ids;
    };
    const auto apply = [&](Condition condition, bool keepDeleted) {
        const quint8 notDeleted = keepDeleted ? quint8(0) : quint8(kDeleteFalse);
        switch (condition) {
        case Condition::None:
            break;
        case Condition::NotDeleted:
            selection.required |= notDeleted;
            break;
        case Condition::Today:
            selection.AllowDates(datesBack(1));
            selection.required |= notDeleted;
            break;
        case Condition::Yesterday: {
            const quint32 id = DateIdOf(today.addDays(-1));
            selection.AllowDates(id != kNoId ? std::vector<quint32>{id} : std::vector<quint32>{});
            selection.required |= notDeleted;
            break;
        }
        case Condition::Week:
            selection.AllowDates(datesBack(kWeekDays));
            selection.required |= notDeleted;
            break;
        case Condition::Old:
            selection.ExcludeDates(datesBack(kWeekDays));
            selection.required |= notDeleted;
            break;
        case Condition::Flagged:
            selection.required |= kFlagTrue;
            break;
        case Condition::Deleted:
            selection.required |= kDeleteTrue;
            break;
        case Condition::Unread:
            selection.required |= quint8(kReadFalse | notDeleted);
            break;
        case Condition::Read:
            selection.required |= quint8(kReadTrue | notDeleted);
            break;
        }
    };
    const Condition keyCondition = ConditionOf(key);
    apply(keyCondition, false);
    if (filter.isEmpty() || filter != key) {
        const Condition filterCondition = ConditionOf(filter);
        // In the Deleted folder a filter narrows the deleted items instead of excluding them all.
        apply(filterCondition == Condition::None ? Condition::NotDeleted : filterCondition,
              keyCondition == Condition::Deleted);
    }
    selection.nothing = selection.datesLimited && selection.datesAllowed.empty();
    return selection;
}

std::vector<quint32> clsItemBank::Candidates(const Selection& selection) const {
    std::vector<quint32> slotIds;
    if (selection.nothing) {
        return slotIds;
    }
    const auto take = [&](const std::vector<quint32>& from) {
        for (quint32 slot : from) {
            if (selection.Passes(m_slots[slot])) {
                slotIds.push_back(slot);
            }
        }
    };
    if (selection.channel) {
        take(*selection.channel);
    } else if (selection.datesLimited && selection.datesAllowed.size() == 1) {
        take(m_dateSlots[selection.datesAllowed.front()]);
    } else if (selection.datesLimited) {
        for (quint32 date : selection.datesAllowed) {
            take(m_dateSlots[date]);
        }
        std::sort(slotIds.begin(), slotIds.end());
    } else {
        for (size_t slot = 0; slot < m_slots.size(); ++slot) {
            if (selection.Passes(m_slots[slot])) {
                slotIds.push_back(quint32(slot));
            }
        }
    }
    return slotIds;
}

ItemList clsItemBank::ToList(const std::vector<quint32>& slotIds) const {
    ItemList list;
    list.reserve(slotIds.size());
    for (quint32 slot : slotIds) {
        list.emplace_back(m_slots[slot].node);
    }
    return list;
}

ItemList clsItemBank::SubChannelList(const QString& key, const QString& filter, const QString& search) const {
    if (!m_loaded) {
        return {};
    }
    const QDate today = Today();
    const QString trimmed = search.trimmed();
    if (trimmed.isEmpty()) {
        return ToList(Candidates(Select(key, filter, today)));
    }
    const ItemTextSearch finder(trimmed);
    // A search that extends an earlier one of the same list (the next keystroke) only needs to
    // look at what the earlier one found, as long as no item has changed since.
    const qint64 day = today.toJulianDay();
    const CachedSearch* base = nullptr;
    for (const CachedSearch& cached : m_searchCache) {
        if (cached.generation == m_generation && cached.today == day && cached.key == key &&
            cached.filter == filter && finder.Needle().contains(cached.needle) &&
            (!base || cached.needle.size() > base->needle.size())) {
            base = &cached;
        }
    }
    const ItemTextMask needleMask = ItemTextMask::OfNeedle(finder.Needle());
    qint64 maskBudget = kTextMaskBytesPerSearch;
    std::vector<quint32> found;
    for (quint32 slot : base ? base->slotIds : Candidates(Select(key, filter, today))) {
        const Slot& item = m_slots[slot];
        if (item.textMaskReady && !m_textMasks[slot].MayContain(needleMask)) {
            continue;
        }
        if (finder.Matches(item.node)) {
            found.push_back(slot);
        } else if (!item.textMaskReady && maskBudget > 0) {
            // Summarising costs a few scans of the text, so it is spent on the items that a search
            // had to read to the end, and only so much per search that no keystroke stalls: the
            // next searches turn most of them away unread.
            KeepTextMask(slot, maskBudget);
        }
    }
    std::erase_if(m_searchCache,
                  [this](const CachedSearch& cached) { return cached.generation != m_generation; });
    if (m_searchCache.size() >= kSearchCacheEntries) {
        m_searchCache.pop_back();
    }
    m_searchCache.push_front(CachedSearch{m_generation, day, key, filter, finder.Needle(), found});
    return ToList(found);
}

void clsItemBank::KeepTextMask(quint32 slot, qint64& budget) const {
    if (m_textMasks.size() < m_slots.size()) {
        m_textMasks.resize(m_slots.size());
    }
    qint64 bytesRead = 0;
    m_textMasks[slot] = ItemTextMask::OfItem(m_slots[slot].node, bytesRead);
    budget -= bytesRead;
    m_slots[slot].textMaskReady = true;
}

ItemList clsItemBank::UnreadTodayList() const {
    if (!m_loaded) {
        return {};
    }
    Selection selection;
    const quint32 today = DateIdOf(Today());
    selection.AllowDates(today != kNoId ? std::vector<quint32>{today} : std::vector<quint32>{});
    selection.nothing = selection.datesAllowed.empty();
    selection.required |= quint8(kReadFalse | kDeleteFalse);
    return ToList(Candidates(selection));
}

// ---- Changes made through item nodes

clsItemBank::ItemEdit::ItemEdit(const XmlNode& node, QByteArrayView childName) {
    xmlNode* changed = node.Raw();
    clsItemBank* bank = changed ? OwnerOf(changed) : nullptr;
    if (!bank) {
        return;
    }
    // Even a change outside the indexed items makes the bank differ from its file.
    bank->Changed();
    const xmlNode* root = bank->m_doc.DocumentElement().Raw();
    xmlNode* item = changed;
    while (item && item->parent != root) {
        item = item->parent;
    }
    if (!item || !IsItemElement(item)) {
        return;
    }
    const quint32 slot = bank->SlotOf(item);
    if (slot == kNoId) {
        return;
    }
    m_bank = bank;
    m_slot = slot;
    // A change below a child of the item may touch any of its texts.
    m_texts = item != changed || childName == "guid" || childName == "title" || childName == "description";
    if (m_texts) {
        bank->UnindexTexts(slot);
    }
}

clsItemBank::ItemEdit::~ItemEdit() {
    if (!m_bank) {
        return;
    }
    Slot& item = m_bank->m_slots[m_slot];
    if (m_texts) {
        m_bank->IndexTexts(m_slot);
    }
    item.state = quint8(kLive | StateOf(item.node));
    item.textMaskReady = false;
    m_bank->Changed();
}
