// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ItemBankFixture.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>

namespace {

using ItemBankTest = ItemBankFixture;

QStringList FilesBeside(const QString& path) {
    return QDir(QFileInfo(path).path()).entryList(QDir::Files);
}

// Each row of the data file asks for one list and names the titles listed, moves the clock, or asks
// whether a key is a built-in folder.
TEST_F(ItemBankTest, ChannelsFoldersFiltersAndSearchesListTheirItems) {
    OpenBankFrom(ReadData(u"queries-bank.xml"_s));
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
    EXPECT_EQ(Titles(m_bank->XMLDoc().DocumentElement().ChildNodes()),
              steps.Attribute(u"stored"_s).split(u'|'));
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
    EXPECT_EQ(FilesBeside(m_home.File(kBankFile)), QStringList({u"items.xml"_s}));
}

// A cut-off file, an empty one, one of another kind and one that is no text at all.
class DamagedBankFile : public ItemBankFixture, public ::testing::WithParamInterface<QByteArray> {};

TEST_P(DamagedBankFile, IsKeptAsideAndTheBankStartsEmpty) {
    m_clock.SetNow(QDateTime(QDate(2026, 11, 16), QTime(14, 5, 9)));
    OpenBankFrom(GetParam());
    const QString aside = m_home.File(kBankFile) + u".damaged-20261116-140509"_s;
    EXPECT_EQ(m_bank->DamagedFile(), aside);
    EXPECT_FALSE(QFileInfo::exists(m_home.File(kBankFile)));
    EXPECT_TRUE(m_bank->AddItem(Candidate("<item><title>Fresh</title></item>")));
    EXPECT_TRUE(m_bank->Release());
    EXPECT_EQ(FilesBeside(aside), QStringList({u"items.xml"_s, u"items.xml.damaged-20261116-140509"_s}));
    EXPECT_EQ(m_home.Read(kBankFile + u".damaged-20261116-140509"_s), GetParam());
    EXPECT_EQ(m_home.Read(kBankFile), "<itembank><item><title>Fresh</title></item></itembank>\n");

    // A second damage within the same second gets its own name.
    OpenBankFrom(GetParam());
    EXPECT_EQ(m_bank->DamagedFile(), aside + u"-2"_s);
}

INSTANTIATE_TEST_SUITE_P(Files, DamagedBankFile,
                         ::testing::Values("<itembank><item><title>Half", "", "<channels><item/></channels>",
                                           QByteArray("\x00\x01\xff\xfe", 4)));

} // namespace
