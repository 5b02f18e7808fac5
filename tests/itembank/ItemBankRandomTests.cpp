// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
// Random banks and random changes, with every list compared to the same list selected by XPath
// on the bank's own document, so that the bank's indexes and cached searches cannot drift unnoticed.
#include "ItemBankFixture.h"

#include "itembank/modItemHandler.h"

#include <random>

namespace {

const QString kOld = QStringLiteral("_tamsel/old");
const QStringList kChannels = {QStringLiteral("http://a.example/feed"),
                               QStringLiteral("http://c.example/it's"),
                               QStringLiteral("http://d.example/\"q\""), kOld};
const QStringList kFolders = {QStringLiteral("_tamsel/today"),   QStringLiteral("_tamsel/yesterday"),
                              QStringLiteral("_tamsel/week"),    QStringLiteral("_tamsel/flagged"),
                              QStringLiteral("_tamsel/deleted"), QStringLiteral("_tamsel/unread"),
                              QStringLiteral("_tamsel/read")};
const QStringList kWords = {QStringLiteral("alpha"), QStringLiteral("Beta"),        QStringLiteral("it's"),
                            QStringLiteral("\"q\""), QStringLiteral("back\\slash"), QStringLiteral("Émile"),
                            QStringLiteral("école"), QStringLiteral("false"),       QStringLiteral("TRUE")};
const QStringList kSearches = {QStringLiteral("truefalse"), QStringLiteral("s'\"x"),
                               QStringLiteral("  Alpha  "), QStringLiteral("É"), QStringLiteral("sefalseal")};
const QStringList kStates = {QStringLiteral("read"), QStringLiteral("flag"), QStringLiteral("delete")};

// ---- The reference: the lists' queries written out in XPath.

QString Literal(const QString& text) {
    if (!text.contains(u'\'')) {
        return u'\'' + text + u'\'';
    }
    if (!text.contains(u'"')) {
        return u'"' + text + u'"';
    }
    return QStringLiteral("concat('") + text.split(u'\'').join(QStringLiteral("', \"'\", '")) +
           QStringLiteral("')");
}

QString Dates(const QDate& today, int from, int days) {
    QStringList tests;
    for (int back = from; back < from + days; ++back) {
        tests.append(QStringLiteral("@date='") + FormatItemDate(today.addDays(-back)) + u'\'');
    }
    return u'(' + tests.join(QStringLiteral(" or ")) + u')';
}

// The condition of a folder key (or of no folder); its "not deleted" part only when asked.
QString FolderCondition(const QString& key, const QDate& today, bool notDeleted) {
    const QString undeleted = notDeleted ? QStringLiteral(" and delete='false'") : QString();
    if (key == u"_tamsel/flagged" || key == u"_tamsel/deleted") {
        return key == u"_tamsel/flagged" ? QStringLiteral("flag='true'") : QStringLiteral("delete='true'");
    }
    const QString condition = key == u"_tamsel/today"       ? Dates(today, 0, 1)
                              : key == u"_tamsel/yesterday" ? Dates(today, 1, 1)
                              : key == u"_tamsel/week"      ? Dates(today, 0, 7)
                              : key == kOld                 ? QStringLiteral("not") + Dates(today, 0, 7)
                              : key == u"_tamsel/unread"    ? QStringLiteral("read='false'")
                              : key == u"_tamsel/read"      ? QStringLiteral("read='true'")
                                                            : QStringLiteral("true()");
    return condition + undeleted;
}

bool IsFolderKey(const QString& key) {
    return kFolders.contains(key) || key == kOld;
}

QString ReferenceQuery(const QString& key, const QString& filter, const QString& search, const QDate& today) {
    QString query = QStringLiteral("item[");
    if (!kFolders.contains(key)) {
        query += QStringLiteral("@channel=") + Literal(key) + QStringLiteral(" and ");
    }
    QString needle = search.trimmed();
    for (QChar& c : needle) {
        c = c >= u'A' && c <= u'Z' ? c.toLower() : c;
    }
    if (!needle.isEmpty()) {
        query += QStringLiteral("contains(translate(., 'ABCDEFGHIJKLMNOPQRSTUVWXYZ', "
                                "'abcdefghijklmnopqrstuvwxyz'), ") +
                 Literal(needle) + QStringLiteral(") and ");
    }
    QStringList conditions;
    if (IsFolderKey(key)) {
        conditions.append(FolderCondition(key, today, true));
    }
    if (filter.isEmpty() || filter != key) {
        // In the Deleted folder the filters narrow the deleted items.
        conditions.append(
            FolderCondition(IsFolderKey(filter) ? filter : QString(), today, key != u"_tamsel/deleted"));
    }
    query += conditions.join(QStringLiteral(" and "));
    return query + u']';
}

// ---- Random items and changes

using Children = std::vector<std::pair<QString, QString>>; // name, markup

class RandomItemBank : public ItemBankFixture, public ::testing::WithParamInterface<unsigned> {
protected:
    RandomItemBank() : m_random(GetParam()) {}

    int Roll(int count) { return int(m_random() % unsigned(count)); }
    bool Chance(int percent) { return Roll(100) < percent; }
    template <typename List> auto Pick(const List& list) { return list[size_t(Roll(int(list.size())))]; }
    QString Words() { return Pick(kWords) + (Chance(50) ? u' ' + Pick(kWords) : QString()); }
    static QString Element(const QString& name, const QString& text) {
        return u'<' + name + u'>' + text.toHtmlEscaped() + QStringLiteral("</") + name + u'>';
    }
    QString StateText() {
        const int roll = Roll(100);
        return roll < 45   ? QStringLiteral("false")
               : roll < 90 ? QStringLiteral("true")
                           : Pick(QStringList{QStringLiteral("True"), QStringLiteral(" false"), QString()});
    }
    static QString Xml(const QString& attributes, const Children& children) {
        QString xml = QStringLiteral("<item") + attributes + u'>';
        for (const auto& child : children) {
            xml += child.second;
        }
        return xml + QStringLiteral("</item>");
    }

    // Items with missing or odd attributes and children, nested and prefixed children, and state
    // children that are missing, doubled or not quite "true"/"false".
    QString MakeItem(Children& children) {
        QString attributes =
            Chance(5) ? QString() : QStringLiteral(" channel=\"") + Pick(kChannels).toHtmlEscaped() + u'"';
        attributes += Chance(4) ? QStringLiteral(" date=\"someday\"")
                                : QStringLiteral(" date=\"") +
                                      FormatItemDate(m_clock.Now().date().addDays(3 - Roll(16))) + u'"';
        const auto add = [&children](const QString& name, const QString& markup) {
            children.emplace_back(name, markup);
        };
        if (Chance(85)) {
            add(QStringLiteral("title"), Element(QStringLiteral("title"), Chance(5) ? QString() : Words()));
        }
        if (Chance(70)) {
            add(QStringLiteral("description"),
                Element(QStringLiteral("description"), Words() + u' ' + Words()));
        }
        if (Chance(60)) {
            add(QStringLiteral("guid"),
                Element(QStringLiteral("guid"), Chance(8) ? QString() : QStringLiteral("g%1").arg(Roll(40))));
        }
        if (Chance(30)) {
            add(QStringLiteral("category"), Element(QStringLiteral("category"), Pick(kWords)));
        }
        if (Chance(10)) {
            add(QStringLiteral("source"), QStringLiteral("<source><name>") + Pick(kWords).toHtmlEscaped() +
                                              QStringLiteral("</name>tail</source>"));
        }
        if (Chance(10)) {
            add(QStringLiteral("dc:creator"),
                QStringLiteral("<dc:creator xmlns:dc=\"urn:dc\">alpha</dc:creator>"));
        }
        for (const QString& state : kStates) {
            for (int n = Chance(8) ? 0 : Chance(6) ? 2 : 1; n > 0; --n) {
                add(state, Element(state, StateText()));
            }
        }
        add(QStringLiteral("channeltitle"), Element(QStringLiteral("channeltitle"), Words()));
        return attributes;
    }

    // A new item, or a variant of one made before: exact twins, changed titles, other states.
    QString MakeCandidate() {
        if (m_made.empty() || Chance(40)) {
            Children children;
            const QString attributes = MakeItem(children);
            m_made.emplace_back(attributes, children);
            return Xml(attributes, children);
        }
        auto [attributes, children] = Pick(m_made);
        for (auto& [name, markup] : children) {
            if (name == u"title" && Chance(30)) {
                markup = Element(name, Words());
            } else if (kStates.contains(name) && Chance(50)) {
                markup = Element(name, StateText());
            }
        }
        if (Chance(15)) {
            children.erase(children.begin() + Roll(int(children.size())));
        }
        return Xml(attributes, children);
    }

    XmlNode Root() const { return m_bank->XMLDoc().DocumentElement(); }
    std::vector<XmlNode> Reference(const QString& key, const QString& filter, const QString& search) const {
        return Root().SelectNodes(ReferenceQuery(key, filter, search, m_clock.Now().date()));
    }
    QString AnyKey() {
        return Chance(10) ? QStringLiteral("http://unknown.example/") : Pick(kFolders + kChannels);
    }
    QString AnyFilter() {
        return Chance(20) ? Pick(QStringList{QString(), QStringLiteral("bogus")})
                          : Pick(kFolders + QStringList{kOld});
    }

    void ExpectSameList(const QString& key, const QString& filter, const QString& search) {
        const ItemList actual = m_bank->SubChannelList(key, filter, search);
        EXPECT_EQ(actual, Reference(key, filter, search))
            << "key " << key.toStdString() << ", filter " << filter.toStdString() << ", search "
            << search.toStdString() << " at step " << m_step;
        if (Chance(5)) {
            m_held.push_back(actual);
        }
    }

    void Check(int lists) {
        // A search typed one letter per step, whatever changes between the letters.
        if (m_typed >= m_typing.size()) {
            m_typing = Pick(kWords) + Pick(kWords);
            m_typingKey = AnyKey();
            m_typingFilter = AnyFilter();
            m_typed = 0;
        }
        ExpectSameList(m_typingKey, m_typingFilter, m_typing.left(++m_typed));
        for (int n = 0; n < lists; ++n) {
            ExpectSameList(AnyKey(), AnyFilter(), Chance(50) ? QString() : Pick(kSearches + kWords));
        }
        EXPECT_EQ(m_bank->UnreadTodayList(),
                  Reference(QStringLiteral("_tamsel/today"), QStringLiteral("_tamsel/unread"), QString()));
        EXPECT_EQ(m_bank->Count(), int(Root().ChildNodes().size())) << "step " << m_step;
        // Whatever the bank removed meanwhile, lists handed out stay readable.
        for (const ItemList& held : m_held) {
            for (const XmlNode& item : held) {
                EXPECT_EQ(item.Name(), QStringLiteral("item"));
                GetItemTitle(item);
            }
        }
    }

    void ChangeAnItem() {
        const ItemList list = m_bank->SubChannelList(AnyKey(), AnyFilter(), QString());
        if (list.empty()) {
            return;
        }
        const XmlNode item = Pick(list);
        if (Chance(60)) {
            SetChildText(item, Pick(kStates), StateText());
        } else {
            SetChildText(item, Pick(QStringList{QStringLiteral("title"), QStringLiteral("guid")}),
                         Chance(50) ? Words() : QStringLiteral("g%1").arg(Roll(40)));
        }
    }

    // The duplicate rules, found by XPath: one guid twin decides; otherwise the title (or, without
    // one, the description) twins, and a candidate with neither is dropped.
    void AddACandidate() {
        const XmlNode candidate = Candidate(MakeCandidate());
        const std::vector<XmlNode> before = Root().ChildNodes();
        bool expectAdded = false;
        XmlNode replaced;
        const QString guid = GetChildText(candidate, QStringLiteral("guid"));
        const std::vector<XmlNode> guidTwins =
            guid.isEmpty() ? std::vector<XmlNode>()
                           : Root().SelectNodes(QStringLiteral("item[guid=%1]").arg(Literal(guid)));
        if (guidTwins.size() == 1) {
            expectAdded = !clsItemBank::Same(guidTwins.front(), candidate);
            replaced = expectAdded ? guidTwins.front() : XmlNode();
        } else {
            const bool hasTitle = !candidate.FirstChildElement(QStringLiteral("title")).IsNull();
            const QString field = hasTitle ? QStringLiteral("title") : QStringLiteral("description");
            expectAdded = !candidate.FirstChildElement(field).IsNull();
            for (const XmlNode& twin : Root().SelectNodes(
                     QStringLiteral("item[%1=%2]").arg(field, Literal(GetChildText(candidate, field))))) {
                expectAdded = expectAdded && !clsItemBank::Same(twin, candidate);
            }
        }

        EXPECT_EQ(m_bank->AddItem(candidate), expectAdded) << "step " << m_step;

        std::vector<XmlNode> after = Root().ChildNodes();
        if (!replaced.IsNull()) {
            const size_t at = size_t(std::find(before.begin(), before.end(), replaced) - before.begin());
            ASSERT_EQ(after.size(), before.size());
            EXPECT_NE(after[at], replaced);
            EXPECT_EQ(GetItemTitle(after[at]), GetItemTitle(candidate));
            EXPECT_EQ(GetChildText(after[at], QStringLiteral("read")),
                      GetChildText(candidate, QStringLiteral("read")));
        } else if (expectAdded) {
            ASSERT_EQ(after.size(), before.size() + 1);
            EXPECT_EQ(GetItemTitle(after.back()), GetItemTitle(candidate));
        } else {
            EXPECT_EQ(after, before);
        }
    }

    // RemoveExpired takes the untagged items too old either way; KillChannel the channel's own list.
    void Remove() {
        const QString channel = Pick(kChannels);
        const int days = Roll(10);
        const bool expire = Chance(70);
        std::vector<XmlNode> gone;
        if (expire) {
            for (const XmlNode& item : Root().SelectNodes(
                     QStringLiteral("item[@channel=%1 and flag='false']").arg(Literal(channel)))) {
                if (GetItemAge(item, m_clock.Now().date()) > days) {
                    gone.push_back(item);
                }
            }
        } else {
            gone = Reference(channel, QString(), QString());
        }
        std::vector<XmlNode> expected = Root().ChildNodes();
        std::erase_if(expected, [&gone](const XmlNode& node) {
            return std::find(gone.begin(), gone.end(), node) != gone.end();
        });
        if (expire) {
            m_bank->RemoveExpired(channel, days);
        } else {
            m_bank->KillChannel(channel);
        }
        EXPECT_EQ(Root().ChildNodes(), expected) << "step " << m_step;
    }

    std::mt19937 m_random;
    std::vector<std::pair<QString, Children>> m_made;
    std::vector<ItemList> m_held;
    int m_step = 0;
    QString m_typing;
    QString m_typingKey;
    QString m_typingFilter;
    qsizetype m_typed = 0;
};

TEST_P(RandomItemBank, ListsMatchTheirXPathThroughRandomChanges) {
    constexpr int kItems = 150;
    constexpr int kSteps = 150;
    QString xml = QStringLiteral("<itembank>");
    for (int n = 0; n < kItems; ++n) {
        xml +=
            MakeCandidate() + (Chance(3) ? QStringLiteral("<!-- note --><other>alpha</other>") : QString());
    }
    WriteBankFile((xml + QStringLiteral("</itembank>")).toUtf8());
    OpenBank();
    ASSERT_TRUE(m_bank->DamagedFile().isEmpty());
    Check(200);
    for (m_step = 1; m_step <= kSteps && !HasFatalFailure(); ++m_step) {
        const int roll = Roll(100);
        if (roll < 45) {
            ChangeAnItem();
        } else if (roll < 85) {
            AddACandidate();
        } else if (roll < 95) {
            Remove();
        } else {
            m_clock.SetNow(m_clock.Now().addDays(1));
        }
        Check(m_step % 50 == 0 ? 200 : 6);
    }
    // The indexes survive a save and a load as well. Lists never outlive their bank.
    m_held.clear();
    OpenBank();
    Check(200);
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomItemBank, ::testing::Values(1u, 2u, 3u, 4u));

} // namespace
