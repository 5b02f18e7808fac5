// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
// Random banks and random changes, with every list compared to the same list selected by XPath
// on the bank's own document, so that the bank's indexes cannot drift unnoticed.
#include "ItemBankFixture.h"

#include "itembank/modItemHandler.h"

#include <QStringList>
#include <random>
#include <utility>

namespace {

const QStringList kChannels = {QStringLiteral("http://a.example/feed"),
                               QStringLiteral("http://b.example/rss"),
                               QStringLiteral("http://c.example/it's"),
                               QStringLiteral("http://d.example/\"q\""), QStringLiteral("_tamsel/old")};
const QStringList kFolders = {QStringLiteral("_tamsel/today"),   QStringLiteral("_tamsel/yesterday"),
                              QStringLiteral("_tamsel/week"),    QStringLiteral("_tamsel/flagged"),
                              QStringLiteral("_tamsel/deleted"), QStringLiteral("_tamsel/unread"),
                              QStringLiteral("_tamsel/read")};
const QString kOld = QStringLiteral("_tamsel/old");
const QStringList kWords = {QStringLiteral("alpha"), QStringLiteral("Beta"),        QStringLiteral("GAMMA"),
                            QStringLiteral("war"),   QStringLiteral("peace"),       QStringLiteral("it's"),
                            QStringLiteral("\"q\""), QStringLiteral("back\\slash"), QStringLiteral("Émile"),
                            QStringLiteral("école"), QStringLiteral("false"),       QStringLiteral("TRUE"),
                            QStringLiteral("news"),  QStringLiteral("Sport"),       QStringLiteral("x y")};
const QStringList kSpecialSearches = {
    QStringLiteral("false"),     QStringLiteral("truefalse"), QStringLiteral("it's"), QStringLiteral("\"q"),
    QStringLiteral("  Alpha  "), QStringLiteral("é"),         QStringLiteral("É"),    QStringLiteral("s'\"x"),
    QStringLiteral("sefalseal"), QStringLiteral("newsalpha")};

// ---- The reference: the lists' queries written out in XPath.

QString Literal(const QString& text) {
    if (!text.contains(u'\'')) {
        return u'\'' + text + u'\'';
    }
    if (!text.contains(u'"')) {
        return u'"' + text + u'"';
    }
    QString concat = QStringLiteral("concat(");
    const QStringList parts = text.split(u'\'');
    for (qsizetype i = 0; i < parts.size(); ++i) {
        if (i > 0) {
            concat += QStringLiteral(", \"'\", ");
        }
        concat += u'\'' + parts[i] + u'\'';
    }
    return concat + u')';
}

QString FoldAsciiCapitals(const QString& text) {
    QString folded = text;
    for (QChar& c : folded) {
        if (c >= u'A' && c <= u'Z') {
            c = QChar(c.unicode() + (u'a' - u'A'));
        }
    }
    return folded;
}

QString DateTest(const QDate& today, int days) {
    QStringList tests;
    for (int back = 0; back < days; ++back) {
        tests.append(QStringLiteral("@date='") + FormatItemDate(today.addDays(-back)) + u'\'');
    }
    return tests.join(QStringLiteral(" or "));
}

// The condition of a folder key; without its "not deleted" part when `notDeleted` is false.
QString FolderCondition(const QString& key, const QDate& today, bool notDeleted) {
    const QString undeleted = notDeleted ? QStringLiteral(" and delete='false'") : QString();
    const auto orTrue = [](const QString& condition) {
        return condition.isEmpty() ? QStringLiteral("true()") : condition;
    };
    if (key == u"_tamsel/today") {
        return DateTest(today, 1) + undeleted;
    }
    if (key == u"_tamsel/yesterday") {
        return QStringLiteral("@date='") + FormatItemDate(today.addDays(-1)) + u'\'' + undeleted;
    }
    if (key == u"_tamsel/week") {
        return u'(' + DateTest(today, 7) + u')' + undeleted;
    }
    if (key == u"_tamsel/old") {
        return QStringLiteral("not(") + DateTest(today, 7) + u')' + undeleted;
    }
    if (key == u"_tamsel/flagged") {
        return QStringLiteral("flag='true'");
    }
    if (key == u"_tamsel/deleted") {
        return QStringLiteral("delete='true'");
    }
    if (key == u"_tamsel/unread") {
        return QStringLiteral("read='false'") + undeleted;
    }
    if (key == u"_tamsel/read") {
        return QStringLiteral("read='true'") + undeleted;
    }
    return orTrue(notDeleted ? QStringLiteral("delete='false'") : QString());
}

bool IsFolderKey(const QString& key) {
    return kFolders.contains(key) || key == kOld;
}

QString ReferenceQuery(const QString& key, const QString& filter, const QString& search, const QDate& today) {
    QString query = QStringLiteral("item[");
    if (!kFolders.contains(key)) {
        query += QStringLiteral("@channel=") + Literal(key) + QStringLiteral(" and ");
    }
    const QString needle = FoldAsciiCapitals(search.trimmed());
    if (!needle.isEmpty()) {
        query += QStringLiteral(
                     "contains(translate(., 'ABCDEFGHIJKLMNOPQRSTUVWXYZ', 'abcdefghijklmnopqrstuvwxyz'), ") +
                 Literal(needle) + QStringLiteral(") and ");
    }
    const bool keyWritten = IsFolderKey(key);
    if (keyWritten) {
        query += FolderCondition(key, today, true);
    }
    if (filter.isEmpty() || filter != key) {
        // In the Deleted folder the filters narrow the deleted items.
        const bool notDeleted = key != u"_tamsel/deleted";
        query += (keyWritten ? QStringLiteral(" and ") : QString()) +
                 FolderCondition(IsFolderKey(filter) ? filter : QString(), today, notDeleted);
    }
    return query + u']';
}

// ---- Random items

struct RandomItem {
    QString attributes;
    std::vector<std::pair<QString, QString>> children; // name, markup

    QString Xml() const {
        QString xml = QStringLiteral("<item") + attributes + u'>';
        for (const auto& child : children) {
            xml += child.second;
        }
        return xml + QStringLiteral("</item>");
    }
};

class RandomItemBank : public ItemBankFixture, public ::testing::WithParamInterface<unsigned> {
protected:
    RandomItemBank() : m_random(GetParam()) {}

    int Roll(int count) { return int(m_random() % unsigned(count)); }
    bool Chance(int percent) { return Roll(100) < percent; }
    template <typename List> auto Pick(const List& list) { return list[Roll(int(list.size()))]; }

    QString Words(int most) {
        QStringList words;
        for (int n = 1 + Roll(most); n > 0; --n) {
            words.append(Pick(kWords));
        }
        return words.join(u' ');
    }

    static QString Element(const QString& name, const QString& text) {
        return u'<' + name + u'>' + text.toHtmlEscaped() + QStringLiteral("</") + name + u'>';
    }

    QString StateText() {
        const int roll = Roll(100);
        return roll < 45   ? QStringLiteral("false")
               : roll < 90 ? QStringLiteral("true")
                           : Pick(QStringList{QStringLiteral("True"), QStringLiteral(" false"), QString()});
    }

    RandomItem MakeItem() {
        RandomItem item;
        const QDate today = m_clock.Now().date();
        if (!Chance(5)) {
            item.attributes += QStringLiteral(" channel=\"") + Pick(kChannels).toHtmlEscaped() + u'"';
        }
        if (Chance(4)) {
            item.attributes += QStringLiteral(" date=\"someday\"");
        } else if (!Chance(4)) {
            item.attributes +=
                QStringLiteral(" date=\"") + FormatItemDate(today.addDays(3 - Roll(16))) + u'"';
        }
        item.attributes += QStringLiteral(" time=\"09:00:00\"");
        const auto add = [&item](const QString& name, const QString& markup) {
            item.children.emplace_back(name, markup);
        };
        if (Chance(85)) {
            add(QStringLiteral("title"), Element(QStringLiteral("title"), Chance(5) ? QString() : Words(2)));
        }
        if (Chance(50)) {
            add(QStringLiteral("link"),
                Element(QStringLiteral("link"), QStringLiteral("http://x.example/") + Words(1)));
        }
        if (Chance(70)) {
            add(QStringLiteral("description"), Element(QStringLiteral("description"), Words(4)));
        }
        if (Chance(60)) {
            add(QStringLiteral("guid"),
                Element(QStringLiteral("guid"), Chance(8) ? QString() : QStringLiteral("g%1").arg(Roll(40))));
        }
        for (int n = Chance(30) ? 1 + Roll(2) : 0; n > 0; --n) {
            add(QStringLiteral("category"), Element(QStringLiteral("category"), Pick(kWords)));
        }
        if (Chance(10)) {
            add(QStringLiteral("source"), QStringLiteral("<source><name>") + Pick(kWords).toHtmlEscaped() +
                                              QStringLiteral("</name>tail</source>"));
        }
        if (Chance(10)) {
            add(QStringLiteral("dc:creator"), QStringLiteral("<dc:creator xmlns:dc=\"urn:dc\">") +
                                                  Pick(kWords).toHtmlEscaped() +
                                                  QStringLiteral("</dc:creator>"));
        }
        add(QStringLiteral("pubDate"),
            Element(QStringLiteral("pubDate"), QStringLiteral("Mon, 16 Nov 2026")));
        for (const QString& state :
             {QStringLiteral("read"), QStringLiteral("flag"), QStringLiteral("delete")}) {
            for (int n = Chance(8) ? 0 : Chance(6) ? 2 : 1; n > 0; --n) {
                add(state, Element(state, StateText()));
            }
        }
        if (Chance(90)) {
            add(QStringLiteral("channeltitle"), Element(QStringLiteral("channeltitle"), Words(2)));
        }
        return item;
    }

    // A new item, or a variant of one made before: exact twins, changed titles, other states.
    RandomItem MakeCandidate() {
        if (m_made.empty() || Chance(40)) {
            m_made.push_back(MakeItem());
            return m_made.back();
        }
        RandomItem item = Pick(m_made);
        for (auto& [name, markup] : item.children) {
            if (name == u"title" && Chance(30)) {
                markup = Element(name, Words(2));
            } else if ((name == u"read" || name == u"flag" || name == u"delete" || name == u"pubDate") &&
                       Chance(50)) {
                markup = Element(name, StateText());
            }
        }
        if (Chance(15) && !item.children.empty()) {
            item.children.erase(item.children.begin() + Roll(int(item.children.size())));
        }
        return item;
    }

    void CreateBank(int items) {
        QString xml = QStringLiteral("<itembank>");
        for (int n = 0; n < items; ++n) {
            m_made.push_back(MakeItem());
            xml += m_made.back().Xml();
            if (Chance(3)) {
                xml += Chance(50) ? QStringLiteral("<!-- note -->") : QStringLiteral("<other>alpha</other>");
            }
        }
        WriteBankFile((xml + QStringLiteral("</itembank>")).toUtf8());
        OpenBank();
        ASSERT_TRUE(m_bank->DamagedFile().isEmpty());
    }

    XmlNode Root() const { return m_bank->XMLDoc().DocumentElement(); }

    std::vector<XmlNode> Reference(const QString& key, const QString& filter, const QString& search) const {
        return Root().SelectNodes(ReferenceQuery(key, filter, search, m_clock.Now().date()));
    }

    void ExpectSameList(const QString& key, const QString& filter, const QString& search, bool hold = false) {
        const ItemList actual = m_bank->SubChannelList(key, filter, search);
        const std::vector<XmlNode> expected = Reference(key, filter, search);
        EXPECT_EQ(actual, expected) << "key " << key.toStdString() << ", filter " << filter.toStdString()
                                    << ", search " << search.toStdString() << " on day "
                                    << m_clock.Now().date().toString().toStdString() << " at step " << m_step
                                    << ": " << actual.size() << " items, expected " << expected.size();
        if (hold || Chance(5)) {
            Hold(actual);
        }
    }

    void Hold(ItemList list) {
        constexpr size_t kMostHeld = 16;
        if (m_held.size() < kMostHeld) {
            m_held.push_back(std::move(list));
        } else {
            m_held[size_t(Roll(int(kMostHeld)))] = std::move(list);
        }
    }

    QStringList Keys() const {
        QStringList keys = kFolders + kChannels;
        keys.append(kOld);
        keys.append(QStringLiteral("http://unknown.example/"));
        return keys;
    }

    QStringList Filters() const {
        QStringList filters = kFolders;
        filters.append(kOld);
        filters.append(QString());
        filters.append(QStringLiteral("bogus"));
        return filters;
    }

    void CheckEverything() {
        const QString word = Pick(kWords);
        QStringList searches = {Pick(kSpecialSearches)};
        // Keystrokes: each search extends the one before.
        for (qsizetype length = 1; length <= word.size(); length += 2) {
            searches.append(word.left(length));
        }
        constexpr int kSearchedFilters = 3;
        for (const QString& key : Keys()) {
            for (const QString& filter : Filters()) {
                ExpectSameList(key, filter, QString());
            }
            for (int n = 0; n < kSearchedFilters; ++n) {
                const QString filter = Pick(Filters());
                for (const QString& search : searches) {
                    ExpectSameList(key, filter, search);
                }
            }
        }
        CheckFewer();
    }

    void CheckFewer() {
        // A search typed one letter per step, whatever changes between the letters.
        if (m_typed >= m_typing.size()) {
            m_typing = Pick(kWords) + Pick(kWords);
            m_typingKey = Pick(Keys());
            m_typingFilter = Pick(Filters());
            m_typed = 0;
        }
        ExpectSameList(m_typingKey, m_typingFilter, m_typing.left(++m_typed), true);
        for (int n = 0; n < 4; ++n) {
            ExpectSameList(Pick(Keys()), Pick(Filters()), Chance(50) ? QString() : Pick(kSpecialSearches));
        }
        const std::vector<XmlNode> unreadToday =
            Root().SelectNodes(QStringLiteral("item[@date=\"%1\" and read=\"false\" and delete=\"false\"]")
                                   .arg(FormatItemDate(m_clock.Now().date())));
        EXPECT_EQ(m_bank->UnreadTodayList(), unreadToday) << "step " << m_step;
        EXPECT_EQ(m_bank->Count(), int(Root().ChildNodes().size())) << "step " << m_step;
        // Whatever the bank removed meanwhile, lists handed out stay readable.
        for (const ItemList& held : m_held) {
            for (const XmlNode& item : held) {
                EXPECT_EQ(item.Name(), QStringLiteral("item"));
                GetItemTitle(item);
            }
        }
    }

    // ---- Changes, each checked against what the document says it should do

    void ChangeAHeldItem() {
        if (m_held.empty() || Chance(20)) {
            Hold(m_bank->SubChannelList(Pick(Keys()), Pick(Filters()), QString()));
        }
        const ItemList& list = Pick(m_held);
        if (list.empty()) {
            return;
        }
        const XmlNode item = Pick(list);
        const int roll = Roll(10);
        if (roll < 3) {
            SetItemRead(item, Chance(50));
        } else if (roll < 7) {
            SetChildText(
                item,
                Pick(QStringList{QStringLiteral("read"), QStringLiteral("flag"), QStringLiteral("delete")}),
                StateText());
        } else {
            SetChildText(item,
                         Pick(QStringList{QStringLiteral("title"), QStringLiteral("guid"),
                                          QStringLiteral("description"), QStringLiteral("category")}),
                         Chance(50) ? Words(2) : QStringLiteral("g%1").arg(Roll(40)));
        }
    }

    void AddACandidate() {
        const XmlNode candidate = Candidate(MakeCandidate().Xml());
        const std::vector<XmlNode> before = Root().ChildNodes();
        // What the rules say, found by XPath.
        enum class Outcome { Dropped, Replaced, Appended } expected = Outcome::Dropped;
        XmlNode replaced;
        bool decided = false;
        const QString guid = GetChildText(candidate, QStringLiteral("guid"));
        if (!guid.isEmpty()) {
            const std::vector<XmlNode> twins =
                Root().SelectNodes(QStringLiteral("item[guid=%1]").arg(Literal(guid)));
            if (twins.size() == 1) {
                decided = true;
                if (!clsItemBank::Same(twins.front(), candidate)) {
                    expected = Outcome::Replaced;
                    replaced = twins.front();
                }
            }
        }
        if (!decided) {
            const bool hasTitle = !candidate.FirstChildElement(QStringLiteral("title")).IsNull();
            const QString field = hasTitle ? QStringLiteral("title") : QStringLiteral("description");
            if (hasTitle || !candidate.FirstChildElement(field).IsNull()) {
                expected = Outcome::Appended;
                for (const XmlNode& twin : Root().SelectNodes(
                         QStringLiteral("item[%1=%2]").arg(field, Literal(GetChildText(candidate, field))))) {
                    if (clsItemBank::Same(twin, candidate)) {
                        expected = Outcome::Dropped;
                    }
                }
            }
        }

        const bool changed = m_bank->AddItem(candidate);

        const std::vector<XmlNode> after = Root().ChildNodes();
        EXPECT_EQ(changed, expected != Outcome::Dropped) << "step " << m_step;
        if (expected == Outcome::Dropped) {
            EXPECT_EQ(after, before);
        } else if (expected == Outcome::Appended) {
            ASSERT_EQ(after.size(), before.size() + 1);
            EXPECT_EQ(GetItemTitle(after.back()), GetItemTitle(candidate));
        } else {
            ASSERT_EQ(after.size(), before.size());
            const auto at = std::find(before.begin(), before.end(), replaced) - before.begin();
            EXPECT_NE(after[size_t(at)], replaced);
            EXPECT_EQ(GetItemTitle(after[size_t(at)]), GetItemTitle(candidate));
            EXPECT_EQ(GetChildText(after[size_t(at)], QStringLiteral("read")),
                      GetChildText(candidate, QStringLiteral("read")));
        }
    }

    void ExpectRemoved(const std::vector<XmlNode>& before, const std::vector<XmlNode>& gone) {
        std::vector<XmlNode> expected;
        for (const XmlNode& node : before) {
            if (std::find(gone.begin(), gone.end(), node) == gone.end()) {
                expected.push_back(node);
            }
        }
        EXPECT_EQ(Root().ChildNodes(), expected) << "step " << m_step << ", " << gone.size() << " to remove";
    }

    void RemoveExpiredItems() {
        const QString channel = Pick(kChannels);
        const int days = Roll(10);
        const QDate today = m_clock.Now().date();
        std::vector<XmlNode> gone;
        for (const XmlNode& item : Root().SelectNodes(
                 QStringLiteral("item[@channel=%1 and flag=\"false\"]").arg(Literal(channel)))) {
            if (GetItemAge(item, today) > days) {
                gone.push_back(item);
            }
        }
        const std::vector<XmlNode> before = Root().ChildNodes();
        m_bank->RemoveExpired(channel, days);
        ExpectRemoved(before, gone);
    }

    void KillAChannel() {
        const QString channel = Pick(kChannels);
        // The channel's own list goes, that is its items that are not deleted.
        const std::vector<XmlNode> gone = Reference(channel, QString(), QString());
        const std::vector<XmlNode> before = Root().ChildNodes();
        m_bank->KillChannel(channel);
        ExpectRemoved(before, gone);
    }

    std::mt19937 m_random;
    std::vector<RandomItem> m_made;
    std::vector<ItemList> m_held;
    int m_step = 0;
    QString m_typing;
    QString m_typingKey;
    QString m_typingFilter;
    qsizetype m_typed = 0;
};

TEST_P(RandomItemBank, ListsMatchTheirXPathThroughRandomChanges) {
    constexpr int kItems = 150;
    constexpr int kSteps = 120;
    constexpr int kFullCheckEvery = 40;
    CreateBank(kItems);
    CheckEverything();
    for (m_step = 1; m_step <= kSteps; ++m_step) {
        const int roll = Roll(100);
        if (roll < 45) {
            ChangeAHeldItem();
        } else if (roll < 85) {
            AddACandidate();
        } else if (roll < 92) {
            RemoveExpiredItems();
        } else if (roll < 95) {
            KillAChannel();
        } else {
            m_clock.SetNow(m_clock.Now().addDays(1));
        }
        if (m_step % kFullCheckEvery == 0) {
            CheckEverything();
        } else {
            CheckFewer();
        }
        if (HasFatalFailure()) {
            return;
        }
    }
    // The indexes survive a save and a load as well. Lists never outlive their bank.
    m_held.clear();
    OpenBank();
    CheckEverything();
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomItemBank, ::testing::Values(1u, 2u, 3u, 4u));

} // namespace
