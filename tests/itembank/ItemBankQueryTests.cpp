// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ItemBankFixture.h"

#include "itembank/modItemHandler.h"

namespace {

const QString kToday = QStringLiteral("_tamsel/today");
const QString kYesterday = QStringLiteral("_tamsel/yesterday");
const QString kWeek = QStringLiteral("_tamsel/week");
const QString kOld = QStringLiteral("_tamsel/old");
const QString kFlagged = QStringLiteral("_tamsel/flagged");
const QString kDeleted = QStringLiteral("_tamsel/deleted");
const QString kUnread = QStringLiteral("_tamsel/unread");
const QString kRead = QStringLiteral("_tamsel/read");

// A small bank on Monday 16 Nov 2026: items named after their date and state.
class ItemBankQueries : public ItemBankFixture {
protected:
    ItemBankQueries() {
        Put(QStringLiteral("today unread"), 0);
        Put(QStringLiteral("today read"), 0, QStringLiteral("true"));
        Put(QStringLiteral("yesterday tagged"), 1, QStringLiteral("false"), QStringLiteral("true"));
        Put(QStringLiteral("tuesday deleted"), 6, QStringLiteral("true"), QStringLiteral("false"),
            QStringLiteral("true"));
        Put(QStringLiteral("monday before"), 7);
        Put(QStringLiteral("next week"), -7, QStringLiteral("true"));
        Put(QStringLiteral("old tagged deleted"), 30, QStringLiteral("false"), QStringLiteral("true"),
            QStringLiteral("true"));
        Put(QStringLiteral("today unread"), 0, QStringLiteral("false"), QStringLiteral("false"),
            QStringLiteral("false"), kChannelB);
    }

    void Put(const QString& title, int daysAgo, const QString& read = QStringLiteral("false"),
             const QString& flag = QStringLiteral("false"), const QString& deleted = QStringLiteral("false"),
             const QString& channel = kChannelA) {
        TestItem item;
        item.channel = channel;
        item.channelTitle = channel == kChannelA ? QStringLiteral("Alpha News") : QStringLiteral("Beta Blog");
        item.date = m_clock.Now().date().addDays(-daysAgo);
        item.read = read;
        item.flag = flag;
        item.deleted = deleted;
        item.Field(QStringLiteral("title"), title)
            .Field(QStringLiteral("description"), QStringLiteral("Body of ") + title);
        ASSERT_TRUE(Add(item));
    }

    QStringList List(const QString& key, const QString& filter = QString(),
                     const QString& search = QString()) {
        return Titles(m_bank->SubChannelList(key, filter, search));
    }
};

TEST_F(ItemBankQueries, AChannelListsOnlyItsOwnUndeletedItems) {
    EXPECT_EQ(List(kChannelA), QStringList({QStringLiteral("today unread"), QStringLiteral("today read"),
                                            QStringLiteral("yesterday tagged"),
                                            QStringLiteral("monday before"), QStringLiteral("next week")}));
    EXPECT_EQ(List(kChannelB), QStringList({QStringLiteral("today unread")}));
    EXPECT_EQ(List(kChannelA, kUnread),
              QStringList({QStringLiteral("today unread"), QStringLiteral("yesterday tagged"),
                           QStringLiteral("monday before")}));
    EXPECT_EQ(List(kChannelA, QStringLiteral("no such filter")), List(kChannelA));
    EXPECT_TRUE(List(QStringLiteral("http://unknown.example/")).isEmpty());
}

struct FolderCase {
    const char* name;
    QString key;
    QString filter;
    std::vector<const char*> titles;
};

class ItemBankFolders : public ItemBankQueries, public ::testing::WithParamInterface<FolderCase> {};

TEST_P(ItemBankFolders, ListTheirItems) {
    QStringList expected;
    for (const char* title : GetParam().titles) {
        expected.append(QString::fromUtf8(title));
    }
    EXPECT_EQ(List(GetParam().key, GetParam().filter), expected);
}

INSTANTIATE_TEST_SUITE_P(
    MondayBank, ItemBankFolders,
    ::testing::Values(
        FolderCase{"today", kToday, QString(), {"today unread", "today read", "today unread"}},
        FolderCase{
            "today_with_its_own_filter", kToday, kToday, {"today unread", "today read", "today unread"}},
        FolderCase{"today_unread", kToday, kUnread, {"today unread", "today unread"}},
        FolderCase{"yesterday", kYesterday, QString(), {"yesterday tagged"}},
        // Past 7 Days on a Monday: back to the Tuesday before.
        FolderCase{
            "week", kWeek, QString(), {"today unread", "today read", "yesterday tagged", "today unread"}},
        FolderCase{"week_older", kWeek, kOld, {}},
        FolderCase{"unread_older", kUnread, kOld, {"monday before"}},
        FolderCase{"read_older", kRead, kOld, {"next week"}},
        FolderCase{"read", kRead, QString(), {"today read", "next week"}},
        FolderCase{"read_unread", kRead, kUnread, {}},
        FolderCase{"tagged", kFlagged, QString(), {"yesterday tagged"}},
        FolderCase{"tagged_all", kFlagged, kFlagged, {"yesterday tagged", "old tagged deleted"}},
        FolderCase{"tagged_today", kFlagged, kToday, {}},
        // The Deleted folder: every filter narrows the deleted items.
        FolderCase{"deleted_all", kDeleted, QString(), {"tuesday deleted", "old tagged deleted"}},
        FolderCase{"deleted_deleted", kDeleted, kDeleted, {"tuesday deleted", "old tagged deleted"}},
        FolderCase{"deleted_unread", kDeleted, kUnread, {"old tagged deleted"}},
        FolderCase{"deleted_read", kDeleted, kRead, {"tuesday deleted"}},
        FolderCase{"deleted_tagged", kDeleted, kFlagged, {"old tagged deleted"}},
        FolderCase{"deleted_week", kDeleted, kWeek, {"tuesday deleted"}},
        FolderCase{"deleted_older", kDeleted, kOld, {"old tagged deleted"}},
        FolderCase{"deleted_today", kDeleted, kToday, {}},
        FolderCase{"unread_deleted", kUnread, kDeleted, {}}),
    [](const auto& info) { return std::string(info.param.name); });

TEST_F(ItemBankQueries, FolderKeysAreExactlyTheSevenFolders) {
    for (const QString& key : {kToday, kYesterday, kWeek, kFlagged, kDeleted, kUnread, kRead}) {
        EXPECT_TRUE(clsItemBank::IsItemFolder(key)) << key.toStdString();
    }
    for (const QString& key :
         {kOld, QStringLiteral("_tamsel/Today"), QStringLiteral("_tamsel/"), QString(), kChannelA}) {
        EXPECT_FALSE(clsItemBank::IsItemFolder(key)) << key.toStdString();
    }
}

TEST_F(ItemBankQueries, TheDatesFollowTheClock) {
    m_clock.SetNow(QDateTime(QDate(2026, 11, 17), QTime(0, 0, 1)));
    EXPECT_EQ(List(kYesterday), QStringList({QStringLiteral("today unread"), QStringLiteral("today read"),
                                             QStringLiteral("today unread")}));
    EXPECT_TRUE(List(kToday).isEmpty());
    EXPECT_TRUE(m_bank->UnreadTodayList().empty());
}

TEST_F(ItemBankQueries, UnreadTodayListsTodaysUnreadUndeletedItems) {
    EXPECT_EQ(Titles(m_bank->UnreadTodayList()),
              QStringList({QStringLiteral("today unread"), QStringLiteral("today unread")}));
    SetItemRead(m_bank->UnreadTodayList().front(), true);
    EXPECT_EQ(m_bank->UnreadTodayList().size(), 1u);
}

TEST_F(ItemBankQueries, ChangesThroughTheHelpersMoveItemsBetweenLists) {
    const ItemList unread = m_bank->SubChannelList(kChannelA, kUnread, QString());
    ASSERT_EQ(unread.size(), 3u);
    SetItemRead(unread[0], true);
    SetChildText(unread[1], QStringLiteral("delete"), QStringLiteral("true"));
    SetChildText(unread[2], QStringLiteral("flag"), QStringLiteral("true"));
    EXPECT_EQ(List(kChannelA, kUnread), QStringList({QStringLiteral("monday before")}));
    EXPECT_EQ(List(kDeleted),
              QStringList({QStringLiteral("yesterday tagged"), QStringLiteral("tuesday deleted"),
                           QStringLiteral("old tagged deleted")}));
    EXPECT_EQ(List(kFlagged), QStringList({QStringLiteral("monday before")}));
    EXPECT_EQ(List(kRead, kToday),
              QStringList({QStringLiteral("today unread"), QStringLiteral("today read")}));
}

TEST_F(ItemBankQueries, AMissingStateChildIsCreatedAndCounted) {
    TestItem bare;
    bare.Field(QStringLiteral("title"), QStringLiteral("stateless"));
    const XmlNode candidate = Candidate(bare.Xml());
    for (const char* name : {"read", "flag", "delete"}) {
        XmlDocument::RemoveChild(candidate, candidate.FirstChildElement(QString::fromLatin1(name)));
    }
    ASSERT_TRUE(m_bank->AddItem(candidate));
    EXPECT_FALSE(List(kToday).contains(QStringLiteral("stateless")));
    const XmlNode stored = m_bank->XMLDoc().DocumentElement().ChildNodes().back();
    SetChildText(stored, QStringLiteral("delete"), QStringLiteral("false"));
    EXPECT_TRUE(List(kToday).contains(QStringLiteral("stateless")));
    EXPECT_FALSE(List(kUnread).contains(QStringLiteral("stateless")));
    SetItemRead(stored, false);
    EXPECT_TRUE(List(kUnread).contains(QStringLiteral("stateless")));
    EXPECT_EQ(stored.ChildNodes().back().Name(), QStringLiteral("read"));
}

TEST_F(ItemBankQueries, SearchIsTrimmedAndFoldsOnlyAToZ) {
    Put(QStringLiteral("War and PEACE"), 0);
    Put(QStringLiteral("ÉCOLE élève"), 0);
    EXPECT_EQ(List(kToday, QString(), QStringLiteral("  wAR  ")),
              QStringList({QStringLiteral("War and PEACE")}));
    EXPECT_EQ(List(kToday, QString(), QStringLiteral("peace")),
              QStringList({QStringLiteral("War and PEACE")}));
    EXPECT_EQ(List(kToday, QString(), QStringLiteral("ÉCOLE")), QStringList({QStringLiteral("ÉCOLE élève")}));
    EXPECT_TRUE(List(kToday, QString(), QStringLiteral("école")).isEmpty());
    EXPECT_TRUE(List(kToday, QString(), QStringLiteral("ÉLÈVE")).isEmpty());
    EXPECT_EQ(List(kToday, QString(), QStringLiteral("   ")), List(kToday));
}

TEST_F(ItemBankQueries, SearchCoversTheWholeStringValue) {
    // "false" is the text of the state children of every item that has one.
    EXPECT_EQ(List(kToday, QString(), QStringLiteral("FALSE")), List(kToday));
    // The channel's title is part of every item.
    EXPECT_EQ(List(kToday, QString(), QStringLiteral("beta blog")),
              QStringList({QStringLiteral("today unread")}));
    // Attributes are not.
    EXPECT_TRUE(List(kToday, QString(), QStringLiteral("a.example")).isEmpty());
    EXPECT_TRUE(List(kToday, QString(), QStringLiteral("16 Nov")).isEmpty());
    // Texts run on from one child into the next.
    EXPECT_EQ(List(kToday, QString(), QStringLiteral("readbody of today read")),
              QStringList({QStringLiteral("today read")}));
    EXPECT_EQ(List(kChannelA, QString(), QStringLiteral("truefalsefalsealpha")),
              QStringList({QStringLiteral("today read"), QStringLiteral("next week")}));
}

TEST_F(ItemBankQueries, ApostrophesAndQuotesAreSearchedAsTyped) {
    const QString quoted = QStringLiteral("http://c.example/it's \"quoted\"");
    Put(QStringLiteral("It's \"all\" here"), 0, QStringLiteral("false"), QStringLiteral("false"),
        QStringLiteral("false"), quoted);
    EXPECT_EQ(List(quoted), QStringList({QStringLiteral("It's \"all\" here")}));
    EXPECT_EQ(List(kToday, QString(), QStringLiteral("it's \"ALL\"")),
              QStringList({QStringLiteral("It's \"all\" here")}));
    EXPECT_TRUE(List(kToday, QString(), QStringLiteral("it's \"ALL\"'")).isEmpty());
    m_bank->KillChannel(quoted);
    EXPECT_TRUE(List(quoted).isEmpty());
}

TEST_F(ItemBankQueries, ListsHandedOutSurviveTheRemovalOfTheirItems) {
    const ItemList held = m_bank->SubChannelList(kToday, QString(), QStringLiteral("unread"));
    m_bank->KillChannel(kChannelA);
    m_bank->KillChannel(kChannelB);
    ASSERT_EQ(held.size(), 2u);
    EXPECT_EQ(GetItemTitle(held[0]), QStringLiteral("today unread"));
    SetItemRead(held[1], true);
    EXPECT_TRUE(IsItemRead(held[1]));
    EXPECT_TRUE(m_bank->UnreadTodayList().empty());
    EXPECT_EQ(m_bank->Count(), 2);
}

} // namespace
