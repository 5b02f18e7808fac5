// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ItemBankFixture.h"

#include "itembank/modItemHandler.h"
#include "support/FileSizeLimit.h"

#include <QDir>
#include <QFileInfo>

namespace {

using ItemBankStore = ItemBankFixture;

TestItem Story(const QString& title, const QString& guid = QString()) {
    TestItem item;
    item.Field(QStringLiteral("title"), title)
        .Field(QStringLiteral("link"), QStringLiteral("http://a.example/") + title);
    item.Field(QStringLiteral("description"), QStringLiteral("About ") + title);
    if (!guid.isNull()) {
        item.Field(QStringLiteral("guid"), guid);
    }
    item.Field(QStringLiteral("pubDate"), QStringLiteral("Mon, 16 Nov 2026 09:00:00 GMT"));
    return item;
}

TEST_F(ItemBankStore, AGuidTwinWithTheSameFieldsIsADuplicateWhateverItsDateAndState) {
    ASSERT_TRUE(Add(Story(QStringLiteral("One"), QStringLiteral("g1"))));
    TestItem again = Story(QStringLiteral("One"), QStringLiteral("g1"));
    again.fields.last().second = QStringLiteral("Tue, 17 Nov 2026 10:00:00 GMT");
    again.date = QDate(2026, 11, 17);
    again.read = again.flag = again.deleted = QStringLiteral("true");
    EXPECT_FALSE(Add(again));
    EXPECT_EQ(m_bank->Count(), 1);
}

TEST_F(ItemBankStore, AChangedGuidTwinReplacesTheStoredItemInPlaceWithFreshState) {
    ASSERT_TRUE(Add(Story(QStringLiteral("One"), QStringLiteral("g1"))));
    ASSERT_TRUE(Add(Story(QStringLiteral("Two"), QStringLiteral("g2"))));
    ASSERT_TRUE(Add(Story(QStringLiteral("Three"), QStringLiteral("g3"))));
    const ItemList before = m_bank->SubChannelList(kChannelA, QString(), QString());
    SetItemRead(before[1], true);
    SetChildText(before[1], QStringLiteral("flag"), QStringLiteral("true"));

    TestItem changed = Story(QStringLiteral("Two, corrected"), QStringLiteral("g2"));
    changed.date = QDate(2026, 11, 17);
    changed.time = QStringLiteral("10:30:00");
    EXPECT_TRUE(Add(changed));

    EXPECT_EQ(StoredTitles(), QStringList({QStringLiteral("One"), QStringLiteral("Two, corrected"),
                                           QStringLiteral("Three")}));
    const ItemList after = m_bank->SubChannelList(kChannelA, QString(), QString());
    ASSERT_EQ(after.size(), 3u);
    EXPECT_FALSE(IsItemRead(after[1]));
    EXPECT_FALSE(IsItemFlagged(after[1]));
    EXPECT_EQ(GetItemDate(after[1]), QStringLiteral("17 Nov 2026"));
    EXPECT_EQ(GetItemTime(after[1]), QStringLiteral("10:30:00"));
    // The list handed out before still reads the old version.
    EXPECT_EQ(GetItemTitle(before[1]), QStringLiteral("Two"));
    // The old title no longer finds a twin; the new one does.
    EXPECT_TRUE(Add(Story(QStringLiteral("Two"))));
    EXPECT_FALSE(Add(Story(QStringLiteral("Two, corrected"), QStringLiteral("g2"))));
}

TEST_F(ItemBankStore, TwoStoredItemsWithOneGuidLeaveTheDecisionToTheTitle) {
    WriteBankFile(
        "<itembank>"
        "<item channel=\"http://a.example/feed\" date=\"16 Nov 2026\" time=\"09:00:00\"><title>A</title>"
        "<guid>same</guid><read>false</read><flag>false</flag><delete>false</delete>"
        "<channeltitle>Channel A</channeltitle></item>"
        "<item channel=\"http://a.example/feed\" date=\"16 Nov 2026\" time=\"09:00:00\"><title>B</title>"
        "<guid>same</guid><read>false</read><flag>false</flag><delete>false</delete>"
        "<channeltitle>Channel A</channeltitle></item></itembank>");
    OpenBank();
    ASSERT_EQ(m_bank->Count(), 2);
    TestItem sameAsB;
    sameAsB.Field(QStringLiteral("title"), QStringLiteral("B"))
        .Field(QStringLiteral("guid"), QStringLiteral("same"));
    EXPECT_FALSE(Add(sameAsB));
    TestItem changed;
    changed.Field(QStringLiteral("title"), QStringLiteral("C"))
        .Field(QStringLiteral("guid"), QStringLiteral("same"));
    EXPECT_TRUE(Add(changed));
    EXPECT_EQ(StoredTitles(), QStringList({QStringLiteral("A"), QStringLiteral("B"), QStringLiteral("C")}));
}

TEST_F(ItemBankStore, WithoutASingleGuidTwinTheTitleOrElseTheDescriptionDecides) {
    ASSERT_TRUE(Add(Story(QStringLiteral("One"), QStringLiteral(""))));
    EXPECT_FALSE(Add(Story(QStringLiteral("One"), QStringLiteral(""))));
    TestItem note;
    note.Field(QStringLiteral("description"), QStringLiteral("Only words"));
    ASSERT_TRUE(Add(note));
    EXPECT_FALSE(Add(note));
    TestItem bare;
    bare.Field(QStringLiteral("link"), QStringLiteral("http://a.example/1"))
        .Field(QStringLiteral("guid"), QStringLiteral("unknown"));
    EXPECT_FALSE(Add(bare));
    EXPECT_EQ(m_bank->Count(), 2);
}

TEST_F(ItemBankStore, AStoredChildThatTheCandidateLacksMakesANewItem) {
    TestItem tagged = Story(QStringLiteral("One"));
    tagged.Field(QStringLiteral("category"), QStringLiteral("World"))
        .Field(QStringLiteral("category"), QStringLiteral("Sport"));
    ASSERT_TRUE(Add(tagged));
    TestItem reordered = Story(QStringLiteral("One"));
    reordered.Field(QStringLiteral("category"), QStringLiteral("Sport"))
        .Field(QStringLiteral("category"), QStringLiteral("World"));
    EXPECT_FALSE(Add(reordered));
    TestItem fewer = Story(QStringLiteral("One"));
    fewer.Field(QStringLiteral("category"), QStringLiteral("World"));
    EXPECT_TRUE(Add(fewer));
    TestItem otherChannelTitle = tagged;
    otherChannelTitle.channelTitle = QStringLiteral("Renamed");
    EXPECT_TRUE(Add(otherChannelTitle));
    EXPECT_EQ(m_bank->Count(), 3);
}

TEST_F(ItemBankStore, SameComparesChildrenNotAttributesAndSkipsDateAndState) {
    const XmlNode stored = Candidate(QStringLiteral(
        "<item channel=\"a\" date=\"01 Jan 2026\"><title>T</title><PubDate>1</PubDate><READ>x</READ>"
        "<Flag>y</Flag><delete>z</delete><channeltitle>C</channeltitle></item>"));
    const XmlNode candidate = Candidate(
        QStringLiteral("<item channel=\"b\" date=\"02 Jan "
                       "2026\"><extra>e</extra><channeltitle>C</channeltitle><title>T</title></item>"));
    EXPECT_TRUE(clsItemBank::Same(stored, candidate));
    EXPECT_FALSE(clsItemBank::Same(candidate, stored));
    const XmlNode caseChanged =
        Candidate(QStringLiteral("<item><title>t</title><channeltitle>C</channeltitle></item>"));
    EXPECT_FALSE(clsItemBank::Same(stored, caseChanged));
}

TEST_F(ItemBankStore, ChangesBelowAChildThroughTheHelpersReachTheDuplicateRule) {
    ASSERT_TRUE(Add(Story(QStringLiteral("New"))));
    const ItemList items = m_bank->SubChannelList(kChannelA, QString(), QString());
    // The title becomes "New!".
    SetChildText(items[0].FirstChildElement(QStringLiteral("title")), QStringLiteral("em"),
                 QStringLiteral("!"));
    TestItem exclaimed = Story(QStringLiteral("New"));
    exclaimed.fields[0].second = QStringLiteral("New!");
    EXPECT_FALSE(Add(exclaimed));
    EXPECT_TRUE(Add(Story(QStringLiteral("New"))));
    EXPECT_EQ(m_bank->SubChannelList(kChannelA, QString(), QStringLiteral("new!")).size(), 1u);
}

class ItemBankExpiry : public ItemBankFixture {
protected:
    void AddDated(const QString& title, int daysAgo, const QString& flag = QStringLiteral("false"),
                  const QString& deleted = QStringLiteral("false"), const QString& channel = kChannelA) {
        TestItem item = Story(title);
        item.date = m_clock.Now().date().addDays(-daysAgo);
        item.flag = flag;
        item.deleted = deleted;
        item.channel = channel;
        ASSERT_TRUE(Add(item));
    }
};

// Expiry takes untagged items too old either way; killing a channel keeps its deleted items.
TEST_F(ItemBankExpiry, RemoveExpiredAndKillChannel) {
    AddDated(QStringLiteral("eight days ago"), 8);
    AddDated(QStringLiteral("seven days ago"), 7);
    AddDated(QStringLiteral("tagged a year ago"), 365, QStringLiteral("true"));
    AddDated(QStringLiteral("eight days ahead"), -8);
    AddDated(QStringLiteral("deleted, seven days ago"), 7, QStringLiteral("false"), QStringLiteral("true"));
    AddDated(QStringLiteral("other channel, old"), 30, QStringLiteral("false"), QStringLiteral("false"),
             kChannelB);
    m_bank->RemoveExpired(kChannelA, 7);
    EXPECT_EQ(StoredTitles(),
              QStringList({QStringLiteral("seven days ago"), QStringLiteral("tagged a year ago"),
                           QStringLiteral("deleted, seven days ago"), QStringLiteral("other channel, old")}));
    const ItemList held = m_bank->SubChannelList(kChannelA, QString(), QString());
    m_bank->KillChannel(kChannelA);
    EXPECT_EQ(StoredTitles(),
              QStringList({QStringLiteral("deleted, seven days ago"), QStringLiteral("other channel, old")}));
    EXPECT_EQ(Titles(m_bank->SubChannelList(QStringLiteral("_tamsel/deleted"), QString(), QString())),
              QStringList({QStringLiteral("deleted, seven days ago")}));
    // Changes on removed nodes touch nothing in the bank.
    SetChildText(held[0], QStringLiteral("delete"), QStringLiteral("true"));
    EXPECT_EQ(m_bank->SubChannelList(QStringLiteral("_tamsel/deleted"), QString(), QString()).size(), 1u);
}

// ---- Loading and saving

TEST_F(ItemBankStore, BanksAreSavedExactly) {
    EXPECT_EQ(m_bank->Count(), 0);
    EXPECT_TRUE(m_bank->Release());
    EXPECT_EQ(ReadBankFile(), QByteArray("<itembank/>\n"));
    OpenBank();
    TestItem item;
    item.Field(QStringLiteral("title"), QStringLiteral("Tom & \"Jerry\""))
        .Field(QStringLiteral("link"), QStringLiteral("http://a.example/1?a=1&b=2"))
        .Field(QStringLiteral("guid"), QStringLiteral("g<1>"));
    ASSERT_TRUE(Add(item));
    SetItemRead(m_bank->SubChannelList(kChannelA, QString(), QString()).front(), true);
    m_bank.reset();
    EXPECT_EQ(
        ReadBankFile(),
        QByteArray("<itembank><item channel=\"http://a.example/feed\" date=\"16 Nov 2026\" time=\"09:00:00\">"
                   "<title>Tom &amp; \"Jerry\"</title><link>http://a.example/1?a=1&amp;b=2</link>"
                   "<guid>g&lt;1&gt;</guid><read>true</read><flag>false</flag><delete>false</delete>"
                   "<channeltitle>Channel A</channeltitle></item></itembank>\n"));
    EXPECT_EQ(QDir(QFileInfo(BankFilePath()).path()).entryList(QDir::Files),
              QStringList({QStringLiteral("items.xml")}));
}

TEST_F(ItemBankStore, AnUnchangedBankIsNotRewrittenButAnyChangeIs) {
    // A declaration and indentation would not survive a save, so the bytes tell whether one happened.
    const QByteArray original(
        "<?xml version=\"1.0\"?>\n<itembank>\n  <item channel=\"http://a.example/feed\" "
        "date=\"16 Nov 2026\" time=\"09:00:00\"><title>Kept</title><read>false</read>"
        "<flag>false</flag><delete>false</delete></item>\n</itembank>\n");
    WriteBankFile(original);
    OpenBank();
    const ItemList items = m_bank->SubChannelList(kChannelA, QString(), QString());
    ASSERT_EQ(items.size(), 1u);
    EXPECT_TRUE(m_bank->Release());
    EXPECT_EQ(ReadBankFile(), original);

    OpenBank();
    SetItemRead(m_bank->SubChannelList(kChannelA, QString(), QString()).front(), true);
    m_bank.reset();
    EXPECT_TRUE(ReadBankFile().startsWith("<itembank>"));
    EXPECT_TRUE(ReadBankFile().contains("<read>true</read>"));
}

struct DamagedCase {
    const char* name;
    QByteArray bytes;
};

class DamagedBankFile : public ItemBankFixture, public ::testing::WithParamInterface<DamagedCase> {};

TEST_P(DamagedBankFile, IsKeptAsideAndTheBankStartsEmpty) {
    WriteBankFile(GetParam().bytes);
    m_clock.SetNow(QDateTime(QDate(2026, 11, 16), QTime(14, 5, 9)));
    OpenBank();
    const QString aside = BankFilePath() + QStringLiteral(".damaged-20261116-140509");
    EXPECT_EQ(m_bank->DamagedFile(), aside);
    EXPECT_EQ(m_bank->Count(), 0);
    EXPECT_FALSE(QFileInfo::exists(BankFilePath()));
    EXPECT_TRUE(Add(Story(QStringLiteral("Fresh"))));
    EXPECT_TRUE(m_bank->Release());
    QFile kept(aside);
    ASSERT_TRUE(kept.open(QIODevice::ReadOnly));
    EXPECT_EQ(kept.readAll(), GetParam().bytes);
    EXPECT_TRUE(ReadBankFile().contains("<title>Fresh</title>"));

    // A second damage within the same second gets its own name.
    WriteBankFile(GetParam().bytes);
    OpenBank();
    EXPECT_EQ(m_bank->DamagedFile(), aside + QStringLiteral("-2"));
}

INSTANTIATE_TEST_SUITE_P(
    Files, DamagedBankFile,
    ::testing::Values(DamagedCase{"truncated", QByteArray("<itembank><item><title>Half")},
                      DamagedCase{"empty", QByteArray()},
                      DamagedCase{"wrong_root", QByteArray("<channels><item/></channels>")},
                      DamagedCase{"binary", QByteArray("\x00\x01\xff\xfe", 4)}),
    [](const auto& info) { return std::string(info.param.name); });

TEST_F(ItemBankStore, AFailedSaveIsReportedAndLeavesTheOldFileWhole) {
    ASSERT_TRUE(Add(Story(QStringLiteral("One"))));
    ASSERT_TRUE(m_bank->SaveXML());
    const QByteArray saved = ReadBankFile();
    // A few items more: the whole file is smaller than a write buffer, so the disk refuses it
    // only when the last bytes go out.
    for (int n = 0; n < 5; ++n) {
        ASSERT_TRUE(Add(Story(QStringLiteral("More %1").arg(n))));
    }
    bool written = true;
    {
        const FileSizeLimit full(rlim_t(saved.size() + 100));
        ASSERT_TRUE(full.Active());
        written = m_bank->SaveXML();
    }

    EXPECT_FALSE(written);
    EXPECT_TRUE(m_bank->LastError().contains(QStringLiteral("items.xml")));
    EXPECT_EQ(ReadBankFile(), saved);
    EXPECT_EQ(QDir(QFileInfo(BankFilePath()).path()).entryList(QDir::Files),
              QStringList({QStringLiteral("items.xml")}));
    EXPECT_TRUE(m_bank->SaveXML());
    EXPECT_TRUE(m_bank->LastError().isEmpty());
}

TEST_F(ItemBankStore, ABankWhoseFolderCannotExistReportsTheFailedSave) {
    // The profile's folder is taken by a plain file.
    const QString folder = m_home.GetPaths().ProfileFolder(QStringLiteral("Blocked"));
    QDir().mkpath(QFileInfo(folder).path());
    QFile blocker(folder);
    ASSERT_TRUE(blocker.open(QIODevice::WriteOnly));
    blocker.close();
    clsItemBank bank(m_clock, m_home.GetPaths());
    bank.init(QStringLiteral("Blocked"));
    EXPECT_EQ(bank.Count(), 0);
    EXPECT_FALSE(bank.Release());
    EXPECT_FALSE(bank.LastError().isEmpty());
}

} // namespace
