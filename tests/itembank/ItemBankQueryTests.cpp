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
        item.channelTitle = channel == kChannelB ? QStringLiteral("Beta Blog") : QStringLiteral("Alpha News");
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

struct ListCase {
    QString key;
    QString filter;
    QStringList titles;
};

TEST_F(ItemBankQueries, ChannelsAndFoldersListTheirItems) {
    const QString tu = QStringLiteral("today unread"), tr = QStringLiteral("today read"),
                  yt = QStringLiteral("yesterday tagged"), td = QStringLiteral("tuesday deleted"),
                  mb = QStringLiteral("monday before"), nw = QStringLiteral("next week"),
                  od = QStringLiteral("old tagged deleted");
    const ListCase cases[] = {
        {kChannelA, QString(), {tu, tr, yt, mb, nw}},
        {kChannelB, QString(), {tu}},
        {kChannelA, kUnread, {tu, yt, mb}},
        {kChannelA, QStringLiteral("no such filter"), {tu, tr, yt, mb, nw}},
        {QStringLiteral("http://unknown.example/"), QString(), {}},
        {kToday, QString(), {tu, tr, tu}},
        {kToday, kToday, {tu, tr, tu}},
        {kToday, kUnread, {tu, tu}},
        {kYesterday, QString(), {yt}},
        // Past 7 Days on a Monday: back to the Tuesday before; Older is the rest, future included.
        {kWeek, QString(), {tu, tr, yt, tu}},
        {kWeek, kOld, {}},
        {kUnread, kOld, {mb}},
        {kRead, kOld, {nw}},
        {kRead, QString(), {tr, nw}},
        {kRead, kUnread, {}},
        {kFlagged, QString(), {yt}},
        {kFlagged, kFlagged, {yt, od}},
        {kFlagged, kToday, {}},
        // The Deleted folder: every filter narrows the deleted items.
        {kDeleted, QString(), {td, od}},
        {kDeleted, kDeleted, {td, od}},
        {kDeleted, kUnread, {od}},
        {kDeleted, kRead, {td}},
        {kDeleted, kFlagged, {od}},
        {kDeleted, kWeek, {td}},
        {kDeleted, kOld, {od}},
        {kDeleted, kToday, {}},
        {kUnread, kDeleted, {}},
    };
    for (const ListCase& c : cases) {
        EXPECT_EQ(List(c.key, c.filter), c.titles) << c.key.toStdString() << " / " << c.filter.toStdString();
    }
    for (const QString& key : {kToday, kYesterday, kWeek, kFlagged, kDeleted, kUnread, kRead}) {
        EXPECT_TRUE(clsItemBank::IsItemFolder(key)) << key.toStdString();
    }
    for (const QString& key : {kOld, QStringLiteral("_tamsel/Today"), QString(), kChannelA}) {
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

// Searches fold A to Z only, cover the item's whole text (state children and channel title
// included, attributes not, texts run on from child to child) and take quotes as typed.
TEST_F(ItemBankQueries, SearchesFindWhatTheUserTyped) {
    const QString quoted = QStringLiteral("http://c.example/it's \"quoted\"");
    Put(QStringLiteral("War and PEACE"), 0);
    Put(QStringLiteral("ÉCOLE élève"), 0);
    Put(QStringLiteral("It's \"all\" here"), 0, QStringLiteral("false"), QStringLiteral("false"),
        QStringLiteral("false"), quoted);
    const std::pair<QString, QStringList> cases[] = {
        {QStringLiteral("  wAR  "), {QStringLiteral("War and PEACE")}},
        {QStringLiteral("ÉCOLE"), {QStringLiteral("ÉCOLE élève")}},
        {QStringLiteral("école"), {}},
        {QStringLiteral("ÉLÈVE"), {}},
        {QStringLiteral("beta blog"), {QStringLiteral("today unread")}},
        {QStringLiteral("a.example"), {}},
        {QStringLiteral("16 Nov"), {}},
        {QStringLiteral("readbody of today read"), {QStringLiteral("today read")}},
        {QStringLiteral("it's \"ALL\""), {QStringLiteral("It's \"all\" here")}},
        {QStringLiteral("it's \"ALL\"'"), {}},
    };
    for (const auto& [search, titles] : cases) {
        EXPECT_EQ(List(kToday, QString(), search), titles) << search.toStdString();
    }
    EXPECT_EQ(List(kToday, QString(), QStringLiteral("   ")), List(kToday));
    EXPECT_EQ(List(kToday, QString(), QStringLiteral("FALSE")), List(kToday));
    EXPECT_EQ(List(quoted), QStringList({QStringLiteral("It's \"all\" here")}));
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
