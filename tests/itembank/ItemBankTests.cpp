// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "itembank/clsItemBank.h"
#include "itembank/modItemHandler.h"
#include "support/DataRows.h"
#include "support/FakeClock.h"
#include "support/TestHome.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QHash>
#include <QStringList>
#include <algorithm>
#include <deque>
#include <gtest/gtest.h>
#include <memory>
#include <random>

using namespace Qt::Literals::StringLiterals;

namespace {

// The bank of the profile "Tester" in a temporary home, with the clock on Monday 16 Nov 2026, 09:00.
class ItemBankTest : public ::testing::Test {
protected:
    static inline const QString kChannelA = u"http://a.example/feed"_s;
    static inline const QString kBankFolder = u"profiles/Tester"_s;
    static inline const QString kBankFile = kBankFolder + u"/items.xml"_s;

    ItemBankTest() { OpenBank(); }

    // (Re)creates the bank and loads the profile's items.xml.
    void OpenBank() {
        m_bank.reset();
        m_bank = std::make_unique<clsItemBank>(m_clock, m_home.GetPaths());
        m_bank->init(u"Tester"_s);
    }
    // Opens the bank on an items.xml of these bytes, written once the open bank (which would save
    // over it) is gone.
    void OpenBankFrom(const QByteArray& bytes) {
        m_bank.reset();
        m_home.Write(kBankFile, bytes);
        OpenBank();
    }
    static QByteArray ReadData(const QString& name) {
        return ReadWholeFile(QStringLiteral(TAMSEL_TEST_DATA_DIR "/") + name);
    }
    // The root of a separate (feed) document, kept alive for the test.
    XmlNode Candidate(const QByteArray& xml) {
        QString error;
        m_feeds.push_back(XmlDocument::Parse(xml, &error));
        EXPECT_FALSE(m_feeds.back().IsNull()) << error.toStdString();
        return m_feeds.back().DocumentElement();
    }
    // The items' titles, joined by '|'.
    static QString Titles(const ItemList& items) {
        QStringList titles;
        std::ranges::transform(items, std::back_inserter(titles), GetItemTitle);
        return titles.join(u'|');
    }

    TestHome m_home;
    FakeClock m_clock;
    std::deque<XmlDocument> m_feeds;
    std::unique_ptr<clsItemBank> m_bank;
};

// Each row of the data file asks for one list and names the titles listed, moves the clock, or asks
// whether a key is a built-in folder.
TEST_F(ItemBankTest, ChannelsFoldersFiltersAndSearchesListTheirItems) {
    OpenBankFrom(ReadData(u"queries-bank.xml"_s));
    for (const XmlNode& row : Candidate(ReadData(u"queries-lists.xml"_s)).SelectNodes(u"*"_s)) {
        const QString key = row.Attribute(u"key"_s);
        const QString filter = row.Attribute(u"filter"_s);
        const QString search = row.Attribute(u"search"_s);
        SCOPED_TRACE(QStringList({row.Name(), key, filter, search}).join(u" / "_s).toStdString());
        if (row.Name() == u"clock") {
            m_clock.SetNow(QDateTime::fromString(row.Attribute(u"now"_s), Qt::ISODate));
        } else if (row.Name() == u"folder") {
            EXPECT_EQ(clsItemBank::IsItemFolder(key), row.Text() == u"true");
        } else if (row.Name() == u"unreadtoday") {
            EXPECT_EQ(Titles(m_bank->UnreadTodayList()), row.Text());
        } else {
            EXPECT_EQ(Titles(m_bank->SubChannelList(key, filter, search)), row.Text());
        }
    }
}

TEST_F(ItemBankTest, DuplicatesAreFoundByGuidThenByTitleOrDescription) {
    OpenBankFrom(ReadData(u"duplicates-bank.xml"_s));
    const ItemList held = m_bank->SubChannelList(kChannelA, QString(), QString());
    // "New" becomes "New!" through an element below its title.
    SetChildText(held.back().FirstChildElement(u"title"_s), u"em"_s, u"!"_s);
    const XmlNode steps = Candidate(ReadData(u"duplicates-steps.xml"_s));
    for (const XmlNode& step : steps.SelectNodes(u"step"_s)) {
        SCOPED_TRACE(step.Attribute(u"why"_s).toStdString());
        EXPECT_EQ(m_bank->AddItem(step.FirstChildElement(u"item"_s)), step.Attribute(u"added"_s) == u"true");
    }
    EXPECT_EQ(Titles(m_bank->XMLDoc().DocumentElement().ChildNodes()), steps.Attribute(u"stored"_s));
    const XmlNode replaced = m_bank->XMLDoc().DocumentElement().ChildNodes()[1];
    EXPECT_FALSE(IsItemRead(replaced));
    EXPECT_FALSE(IsItemFlagged(replaced));
    EXPECT_EQ(GetItemDate(replaced) + u' ' + GetItemTime(replaced), u"17 Nov 2026 10:30:00"_s);
    // The list handed out before still reads the old version.
    EXPECT_EQ(GetItemTitle(held[1]), u"Two"_s);
}

// A declaration and indentation would not survive a save, so the bytes tell whether one happened.
TEST_F(ItemBankTest, ABankIsSavedExactlyAndOnlyWhenItChanged) {
    EXPECT_TRUE(m_bank->Release());
    EXPECT_EQ(m_home.Read(kBankFile), "<itembank/>\n");
    const QByteArray original = ReadData(u"saved-before.xml"_s);
    OpenBankFrom(original);
    EXPECT_TRUE(m_bank->Release());
    EXPECT_EQ(m_home.Read(kBankFile), original);
    // A changed state, then a new item of characters to escape, each saved as the bank goes.
    OpenBank();
    SetItemRead(m_bank->SubChannelList(kChannelA, QString(), QString()).front(), true);
    OpenBank();
    ASSERT_TRUE(m_bank->AddItem(Candidate(ReadData(u"saved-new-item.xml"_s))));
    m_bank.reset();
    EXPECT_EQ(m_home.Read(kBankFile), ReadData(u"saved-after.xml"_s));
    EXPECT_EQ(QDir(m_home.File(kBankFolder)).entryList(QDir::Files), QStringList({u"items.xml"_s}));
}

// A cut-off file, an empty one, one of another kind and one that is no text at all.
class DamagedBankFile : public ItemBankTest, public ::testing::WithParamInterface<QByteArray> {};

TEST_P(DamagedBankFile, IsKeptAsideAndTheBankStartsEmpty) {
    m_clock.SetNow(QDateTime(QDate(2026, 11, 16), QTime(14, 5, 9)));
    OpenBankFrom(GetParam());
    const QString aside = kBankFile + u".damaged-20261116-140509"_s;
    EXPECT_EQ(m_bank->DamagedFile(), m_home.File(aside));
    EXPECT_FALSE(QFileInfo::exists(m_home.File(kBankFile)));
    EXPECT_TRUE(m_bank->AddItem(Candidate("<item><title>Fresh</title></item>")));
    EXPECT_TRUE(m_bank->Release());
    EXPECT_EQ(QDir(m_home.File(kBankFolder)).entryList(QDir::Files),
              QStringList({u"items.xml"_s, u"items.xml.damaged-20261116-140509"_s}));
    EXPECT_EQ(m_home.Read(aside), GetParam());
    EXPECT_EQ(m_home.Read(kBankFile), "<itembank><item><title>Fresh</title></item></itembank>\n");

    // A second damage within the same second gets its own name.
    OpenBankFrom(GetParam());
    EXPECT_EQ(m_bank->DamagedFile(), m_home.File(aside) + u"-2"_s);
}

INSTANTIATE_TEST_SUITE_P(Files, DamagedBankFile,
                         ::testing::Values("<itembank><item><title>Half", "", "<channels><item/></channels>",
                                           QByteArray("\x00\x01\xff\xfe", 4)));

// ---- Random banks and random changes, with every list compared to the same list selected by
// XPath on the bank's own document, so that the bank's indexes and cached searches cannot drift
// unnoticed.

const QString kOld = u"_tamsel/old"_s;
// A channel whose address is a folder key that is no folder.
const QStringList kChannels = {u"http://a.example/feed"_s, u"http://c.example/2"_s, kOld};
const QStringList kFolders = u"_tamsel/today _tamsel/yesterday _tamsel/week _tamsel/flagged _tamsel/deleted "
                             u"_tamsel/unread _tamsel/read"_s.split(u' ');
const QStringList kWords = {u"alpha"_s, u"Beta"_s, u"a&b"_s, u"Émile"_s, u"école"_s, u"false"_s, u"TRUE"_s};
const QStringList kSearches = {u"truefalse"_s, u"  Alpha  "_s, u"É"_s, u"sefalseal"_s};
const QStringList kStates = {u"read"_s, u"flag"_s, u"delete"_s};

// ---- The reference: the folders' conditions written out in XPath (see RandomItemBank::Reference).

QString Dates(const QDate& today, int from, int days) {
    QStringList tests;
    for (int back = from; back < from + days; ++back) {
        tests.append(u"@date='"_s + FormatItemDate(today.addDays(-back)) + u'\'');
    }
    return u'(' + tests.join(u" or "_s) + u')';
}

// The condition of a folder key (or of no folder); its "not deleted" part only when asked.
QString FolderCondition(const QString& key, const QDate& today, bool notDeleted) {
    const QString undeleted = notDeleted ? u" and delete='false'"_s : QString();
    const QHash<QString, QString> conditions = {{u"_tamsel/today"_s, Dates(today, 0, 1) + undeleted},
                                                {u"_tamsel/yesterday"_s, Dates(today, 1, 1) + undeleted},
                                                {u"_tamsel/week"_s, Dates(today, 0, 7) + undeleted},
                                                {kOld, u"not"_s + Dates(today, 0, 7) + undeleted},
                                                {u"_tamsel/unread"_s, u"read='false'"_s + undeleted},
                                                {u"_tamsel/read"_s, u"read='true'"_s + undeleted},
                                                {u"_tamsel/flagged"_s, u"flag='true'"_s},
                                                {u"_tamsel/deleted"_s, u"delete='true'"_s}};
    return conditions.value(key, u"true()"_s + undeleted);
}

// ---- Random items and changes

class RandomItemBank : public ItemBankTest, public ::testing::WithParamInterface<unsigned> {
protected:
    RandomItemBank() : m_random(GetParam()) {}

    int Roll(int count) { return int(m_random() % unsigned(count)); }
    bool Chance(int percent) { return Roll(100) < percent; }
    template <typename List> auto Pick(const List& list) { return list[size_t(Roll(int(list.size())))]; }
    QString Words() { return Pick(kWords) + (Chance(50) ? u' ' + Pick(kWords) : QString()); }
    // The markup, with that chance in percent.
    QString Sometimes(int percent, const QString& markup) { return Chance(percent) ? markup : QString(); }
    static QString Element(const QString& name, const QString& text) {
        return u'<' + name + u'>' + text.toHtmlEscaped() + u"</"_s + name + u'>';
    }
    // Mostly "true" or "false", sometimes not quite.
    QString StateText() {
        return Pick(u"false|false|false|false|true|true|true|true|True| false|"_s.split(u'|'));
    }

    // Items with missing or odd attributes and children, nested and prefixed children, and state
    // children that are missing, doubled or not quite "true"/"false".
    QString MakeItem() {
        QString xml = u"<item"_s + (Chance(5) ? QString() : u" channel=\""_s + Pick(kChannels) + u'"');
        const QDate date = m_clock.Now().date().addDays(3 - Roll(16));
        xml += u" date=\""_s + (Chance(4) ? u"someday"_s : FormatItemDate(date)) + u"\">"_s;
        xml += Sometimes(85, Element(u"title"_s, Chance(5) ? QString() : Words()));
        xml += Sometimes(70, Element(u"description"_s, Words() + u' ' + Words()));
        xml += Sometimes(60, Element(u"guid"_s, Chance(8) ? QString() : u"g%1"_s.arg(Roll(40))));
        xml += Sometimes(30, u"<source><name>"_s + Pick(kWords).toHtmlEscaped() + u"</name>tail</source>"_s);
        xml += Sometimes(10, u"<dc:creator xmlns:dc=\"urn:dc\">alpha</dc:creator>"_s);
        for (const QString& state : kStates) {
            xml += Sometimes(92, Element(state, StateText())) + Sometimes(6, Element(state, StateText()));
        }
        return xml + Element(u"channeltitle"_s, Words()) + u"</item>"_s;
    }

    // A new item, or a variant of one made before: exact twins, changed titles, other states.
    XmlNode MakeCandidate() {
        if (m_made.isEmpty() || Chance(40)) {
            m_made.append(MakeItem());
            return Candidate(m_made.last().toUtf8());
        }
        const XmlNode item = Candidate(Pick(m_made).toUtf8());
        if (Chance(60)) {
            ChangeAChild(item);
        }
        if (Chance(15)) {
            XmlDocument::RemoveChild(item, Pick(item.ChildNodes()));
        }
        return item;
    }

    XmlNode Root() const { return m_bank->XMLDoc().DocumentElement(); }
    // The list's query written out in XPath.
    std::vector<XmlNode> Reference(const QString& key, const QString& filter, const QString& search) const {
        const auto isFolder = [](const QString& text) { return kFolders.contains(text) || text == kOld; };
        QStringList conditions = {kFolders.contains(key) ? u"true()"_s : u"@channel='"_s + key + u'\''};
        if (!search.trimmed().isEmpty()) {
            conditions.append(u"contains(translate(., %1), translate('%2', %1))"_s.arg(
                u"'ABCDEFGHIJKLMNOPQRSTUVWXYZ', 'abcdefghijklmnopqrstuvwxyz'"_s, search.trimmed()));
        }
        if (isFolder(key)) {
            conditions.append(FolderCondition(key, m_clock.Now().date(), true));
        }
        if (filter.isEmpty() || filter != key) {
            // In the Deleted folder the filters narrow the deleted items.
            conditions.append(FolderCondition(isFolder(filter) ? filter : QString(), m_clock.Now().date(),
                                              key != u"_tamsel/deleted"));
        }
        return Root().SelectNodes(u"item["_s + conditions.join(u" and "_s) + u']');
    }
    QString AnyKey() { return Chance(10) ? u"http://unknown.example/"_s : Pick(kFolders + kChannels); }
    QString AnyFilter() { return Pick(kFolders + QStringList{kOld, QString(), u"bogus"_s}); }

    void ExpectSameList(const QString& key, const QString& filter, const QString& search) {
        EXPECT_EQ(m_bank->SubChannelList(key, filter, search), Reference(key, filter, search))
            << QStringList({key, filter, search}).join(u" / "_s).toStdString() << " at step " << m_step;
    }

    void Check(int lists) {
        // A search typed one letter per step, whatever changes between the letters, and three at a
        // checkpoint, where nothing changes between them.
        for (int letters = lists > 6 ? 3 : 1; letters > 0; --letters) {
            if (m_typed >= m_typing.size()) {
                m_typing = Pick(kWords) + Pick(kWords);
                m_typingKey = AnyKey();
                m_typingFilter = AnyFilter();
                m_typed = 0;
            }
            ExpectSameList(m_typingKey, m_typingFilter, m_typing.left(++m_typed));
        }
        for (int n = 0; n < lists; ++n) {
            ExpectSameList(AnyKey(), AnyFilter(), Chance(50) ? QString() : Pick(kSearches + kWords));
        }
        EXPECT_EQ(m_bank->UnreadTodayList(), Reference(u"_tamsel/today"_s, u"_tamsel/unread"_s, QString()));
        EXPECT_EQ(m_bank->Count(), int(Root().ChildNodes().size())) << "step " << m_step;
    }

    // A state child gets a state text, or the title or guid other words.
    void ChangeAChild(const XmlNode& item) {
        const QString child = Pick(kStates + QStringList{u"title"_s, u"guid"_s});
        SetChildText(item, child, kStates.contains(child) ? StateText() : Words());
    }

    // Of a list handed out now or of the items held since many steps: one of those may have left
    // the bank meanwhile, and then a change on it touches nothing in the bank.
    void ChangeAnItem() {
        if (m_held.empty() || Chance(5)) {
            m_held = Root().ChildNodes();
        }
        const ItemList list = Chance(50) ? m_held : m_bank->SubChannelList(AnyKey(), AnyFilter(), QString());
        if (!list.empty()) {
            ChangeAChild(Pick(list));
        }
    }

    // The duplicate rules, found by XPath: one guid twin decides; otherwise the title (or, without
    // one, the description) twins, and a candidate with neither is dropped.
    void AddACandidate() {
        const XmlNode candidate = MakeCandidate();
        const int before = m_bank->Count();
        const std::vector<XmlNode> guidTwins =
            Root().SelectNodes(u"item[guid='%1' and '%1'!='']"_s.arg(GetChildText(candidate, u"guid"_s)));
        const QString field =
            candidate.FirstChildElement(u"title"_s).IsNull() ? u"description"_s : u"title"_s;
        bool expectAdded = guidTwins.size() == 1 || !candidate.FirstChildElement(field).IsNull();
        const std::vector<XmlNode> twins =
            guidTwins.size() == 1
                ? guidTwins
                : Root().SelectNodes(u"item[%1='%2']"_s.arg(field, GetChildText(candidate, field)));
        for (const XmlNode& twin : twins) {
            expectAdded = expectAdded && !clsItemBank::Same(twin, candidate);
        }

        EXPECT_EQ(m_bank->AddItem(candidate), expectAdded) << "step " << m_step;

        // A changed single guid twin takes the stored item's place; anything else added is one item more.
        EXPECT_EQ(m_bank->Count(), before + (expectAdded && guidTwins.size() != 1 ? 1 : 0))
            << "step " << m_step;
    }

    // RemoveExpired takes the untagged items too old either way; KillChannel the channel's own list.
    void Remove() {
        const QString channel = Pick(kChannels);
        const int days = Roll(10);
        const bool expire = Chance(70);
        const std::vector<XmlNode> gone =
            expire ? Root().SelectNodes(u"item[@channel='%1' and flag='false']"_s.arg(channel))
                   : Reference(channel, QString(), QString());
        std::vector<XmlNode> expected = Root().ChildNodes();
        std::erase_if(expected, [&](const XmlNode& item) {
            return std::ranges::count(gone, item) > 0 &&
                   (!expire || GetItemAge(item, m_clock.Now().date()) > days);
        });
        if (expire) {
            m_bank->RemoveExpired(channel, days);
        } else {
            m_bank->KillChannel(channel);
        }
        EXPECT_EQ(Root().ChildNodes(), expected) << "step " << m_step;
    }

    std::mt19937 m_random;
    QStringList m_made;
    ItemList m_held;
    int m_step = 0;
    QString m_typing;
    QString m_typingKey;
    QString m_typingFilter;
    qsizetype m_typed = 0;
};

TEST_P(RandomItemBank, ListsMatchTheirXPathThroughRandomChanges) {
    QString xml = u"<itembank>"_s;
    for (int n = 0; n < 150; ++n) {
        xml += MakeItem() + Sometimes(3, u"<!-- note --><other>alpha</other>"_s);
    }
    OpenBankFrom((xml + u"</itembank>"_s).toUtf8());
    ASSERT_TRUE(m_bank->DamagedFile().isEmpty());
    Check(200);
    for (m_step = 1; m_step <= 150 && !HasFatalFailure(); ++m_step) {
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
    // The indexes survive a save and a load as well.
    OpenBank();
    Check(200);
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomItemBank, ::testing::Values(1u, 2u, 3u, 4u));

} // namespace
