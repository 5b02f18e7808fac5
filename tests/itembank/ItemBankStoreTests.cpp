// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ItemBankFixture.h"
#include "support/FileSizeLimit.h"

#include <QDir>
#include <QFileInfo>

namespace {

using ItemBankStore = ItemBankFixture;

QStringList FilesBeside(const QString& path) {
    return QDir(QFileInfo(path).path()).entryList(QDir::Files);
}

TEST_F(ItemBankStore, DuplicatesAreFoundByGuidThenByTitleOrDescription) {
    WriteBankFile(ReadData(u"duplicates-bank.xml"_s));
    OpenBank();
    const ItemList held = m_bank->SubChannelList(kChannelA, QString(), QString());
    // "New" becomes "New!" through an element below its title.
    SetChildText(held.back().FirstChildElement(u"title"_s), u"em"_s, u"!"_s);
    const XmlNode steps = Candidate(ReadData(u"duplicates-steps.xml"_s));
    for (const XmlNode& step : steps.SelectNodes(u"step"_s)) {
        SCOPED_TRACE(step.Attribute(u"why"_s).toStdString());
        EXPECT_EQ(m_bank->AddItem(step.FirstChildElement(u"item"_s)), step.Attribute(u"added"_s) == u"true");
    }
    EXPECT_EQ(StoredTitles(), steps.Attribute(u"stored"_s).split(u'|'));
    const XmlNode replaced = m_bank->XMLDoc().DocumentElement().ChildNodes()[1];
    EXPECT_FALSE(IsItemRead(replaced));
    EXPECT_FALSE(IsItemFlagged(replaced));
    EXPECT_EQ(GetItemDate(replaced) + u' ' + GetItemTime(replaced), u"17 Nov 2026 10:30:00"_s);
    // The list handed out before still reads the old version.
    EXPECT_EQ(GetItemTitle(held[1]), u"Two"_s);
}

// A declaration and indentation would not survive a save, so the bytes tell whether one happened.
TEST_F(ItemBankStore, ABankIsSavedExactlyAndOnlyWhenItChanged) {
    EXPECT_TRUE(m_bank->Release());
    EXPECT_EQ(m_home.Read(kBankFile), "<itembank/>\n");
    const QByteArray original(
        "<?xml version=\"1.0\"?>\n<itembank>\n  <item channel=\"http://a.example/feed\" "
        "date=\"16 Nov 2026\" time=\"09:00:00\"><title>Kept</title><read>false</read><delete>false</delete>"
        "</item>\n</itembank>\n");
    WriteBankFile(original);
    OpenBank();
    EXPECT_TRUE(m_bank->Release());
    EXPECT_EQ(m_home.Read(kBankFile), original);

    OpenBank();
    SetItemRead(m_bank->SubChannelList(kChannelA, QString(), QString()).front(), true);
    m_bank.reset();
    const QByteArray kept(
        "<itembank><item channel=\"http://a.example/feed\" date=\"16 Nov 2026\" "
        "time=\"09:00:00\"><title>Kept</title><read>true</read><delete>false</delete></item>");
    EXPECT_EQ(m_home.Read(kBankFile), kept + "</itembank>\n");

    OpenBank();
    ASSERT_TRUE(m_bank->AddItem(
        Candidate("<item channel=\"b\"><title>Tom &amp; \"Jerry\"</title>"
                  "<link>http://b.example/1?a=1&amp;b=2</link><guid>g&lt;1&gt;</guid></item>")));
    m_bank.reset();
    EXPECT_EQ(m_home.Read(kBankFile), kept +
                                          "<item channel=\"b\"><title>Tom &amp; \"Jerry\"</title>"
                                          "<link>http://b.example/1?a=1&amp;b=2</link><guid>g&lt;1&gt;</guid>"
                                          "</item></itembank>\n");
    EXPECT_EQ(FilesBeside(m_home.File(kBankFile)), QStringList({u"items.xml"_s}));
}

// A cut-off file, an empty one, one of another kind and one that is no text at all.
class DamagedBankFile : public ItemBankFixture, public ::testing::WithParamInterface<QByteArray> {};

TEST_P(DamagedBankFile, IsKeptAsideAndTheBankStartsEmpty) {
    WriteBankFile(GetParam());
    m_clock.SetNow(QDateTime(QDate(2026, 11, 16), QTime(14, 5, 9)));
    OpenBank();
    const QString aside = m_home.File(kBankFile) + u".damaged-20261116-140509"_s;
    EXPECT_EQ(m_bank->DamagedFile(), aside);
    EXPECT_EQ(m_bank->Count(), 0);
    EXPECT_FALSE(QFileInfo::exists(m_home.File(kBankFile)));
    EXPECT_TRUE(m_bank->AddItem(Candidate("<item><title>Fresh</title></item>")));
    EXPECT_TRUE(m_bank->Release());
    EXPECT_EQ(FilesBeside(aside), QStringList({u"items.xml"_s, u"items.xml.damaged-20261116-140509"_s}));
    EXPECT_EQ(m_home.Read(kBankFile + u".damaged-20261116-140509"_s), GetParam());
    EXPECT_EQ(m_home.Read(kBankFile), "<itembank><item><title>Fresh</title></item></itembank>\n");

    // A second damage within the same second gets its own name.
    WriteBankFile(GetParam());
    OpenBank();
    EXPECT_EQ(m_bank->DamagedFile(), aside + u"-2"_s);
}

INSTANTIATE_TEST_SUITE_P(Files, DamagedBankFile,
                         ::testing::Values("<itembank><item><title>Half", "", "<channels><item/></channels>",
                                           QByteArray("\x00\x01\xff\xfe", 4)));

TEST_F(ItemBankStore, AFailedSaveIsReportedAndLeavesTheOldFileWhole) {
    ASSERT_TRUE(m_bank->SaveXML());
    const QByteArray saved = m_home.Read(kBankFile);
    // A few items: the whole file is smaller than a write buffer, so the disk refuses it only when
    // the last bytes go out.
    for (int n = 0; n < 6; ++n) {
        ASSERT_TRUE(m_bank->AddItem(Candidate(u"<item><title>Item %1</title></item>"_s.arg(n).toUtf8())));
    }
    bool written = true;
    {
        const FileSizeLimit full(rlim_t(saved.size() + 100));
        ASSERT_TRUE(full.Active());
        written = m_bank->SaveXML();
    }
    EXPECT_FALSE(written);
    EXPECT_TRUE(m_bank->LastError().contains(u"items.xml"_s));
    EXPECT_EQ(m_home.Read(kBankFile), saved);
    EXPECT_EQ(FilesBeside(m_home.File(kBankFile)), QStringList({u"items.xml"_s}));
    EXPECT_TRUE(m_bank->SaveXML());
    EXPECT_TRUE(m_bank->LastError().isEmpty());
}

TEST_F(ItemBankStore, ABankWhoseFolderCannotExistReportsTheFailedSave) {
    // The profile's folder is taken by a plain file.
    m_home.Write(u"profiles/Blocked"_s, QByteArray());
    clsItemBank bank(m_clock, m_home.GetPaths());
    bank.init(u"Blocked"_s);
    EXPECT_EQ(bank.Count(), 0);
    EXPECT_FALSE(bank.Release());
    EXPECT_FALSE(bank.LastError().isEmpty());
}

} // namespace
