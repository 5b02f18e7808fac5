// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ItemBankFixture.h"

#include <QDateTime>

namespace {

class ItemBankQueries : public ItemBankFixture {
protected:
    ItemBankQueries() {
        WriteBankFile(ReadData(u"queries-bank.xml"_s));
        OpenBank();
    }
};

// Each row of the data file asks for one list and names the titles listed, moves the clock, or asks
// whether a key is a built-in folder.
TEST_F(ItemBankQueries, ChannelsFoldersFiltersAndSearchesListTheirItems) {
    for (const XmlNode& row : Candidate(ReadData(u"queries-lists.xml"_s)).SelectNodes(u"*"_s)) {
        const QString key = row.Attribute(u"key"_s);
        const QString filter = row.Attribute(u"filter"_s);
        const QString search = row.Attribute(u"search"_s);
        SCOPED_TRACE(QStringList({row.Name(), key, filter, search}).join(u" / "_s).toStdString());
        const QStringList titles = row.Text().split(u'|', Qt::SkipEmptyParts);
        if (row.Name() == u"clock") {
            m_clock.SetNow(QDateTime::fromString(row.Attribute(u"now"_s), Qt::ISODate));
        } else if (row.Name() == u"folder") {
            EXPECT_EQ(clsItemBank::IsItemFolder(key), row.Text() == u"true");
        } else if (row.Name() == u"unreadtoday") {
            EXPECT_EQ(Titles(m_bank->UnreadTodayList()), titles);
        } else {
            EXPECT_EQ(Titles(m_bank->SubChannelList(key, filter, search)), titles);
        }
    }
}

// Expiry takes untagged items too old either way; killing a channel keeps its deleted items; lists
// handed out before stay readable, and changes on their removed items touch nothing in the bank.
TEST_F(ItemBankQueries, RemovalsKeepWhatTheUserKept) {
    const ItemList held = m_bank->SubChannelList(u"_tamsel/today"_s, QString(), u"unread"_s);
    m_bank->RemoveExpired(kChannelA, 6);
    const QStringList searched = {u"War and PEACE"_s, u"ÉCOLE élève"_s, u"It's \"all\" here"_s};
    EXPECT_EQ(StoredTitles(),
              QStringList({u"today unread"_s, u"today read"_s, u"yesterday tagged"_s, u"tuesday deleted"_s,
                           u"old tagged deleted"_s, u"today unread"_s}) +
                  searched);
    m_bank->KillChannel(kChannelA);
    m_bank->KillChannel(u"http://b.example/rss"_s);
    const QStringList deleted = {u"tuesday deleted"_s, u"old tagged deleted"_s};
    EXPECT_EQ(StoredTitles(), deleted + searched);
    ASSERT_EQ(held.size(), 2u);
    EXPECT_EQ(GetItemTitle(held[0]), u"today unread"_s);
    SetItemRead(held[1], true);
    EXPECT_TRUE(IsItemRead(held[1]));
    SetChildText(held[0], u"delete"_s, u"true"_s);
    EXPECT_EQ(Titles(m_bank->SubChannelList(u"_tamsel/deleted"_s, QString(), QString())), deleted);
    EXPECT_EQ(Titles(m_bank->UnreadTodayList()), searched);
    EXPECT_EQ(m_bank->Count(), 5);
}

} // namespace
