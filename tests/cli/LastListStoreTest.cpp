// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/LastListStore.h"
#include "itembank/clsItemBank.h"
#include "itembank/modItemHandler.h"
#include "platform/XmlDocument.h"
#include "support/FakeClock.h"
#include "support/QStringPrinter.h"
#include "support/TestHome.h"

#include <QDir>
#include <QFile>
#include <deque>
#include <gtest/gtest.h>
#include <ostream>

using namespace Qt::StringLiterals;

namespace {

const QString kChannel = u"http://a.example/feed"_s;
const QString kOther = u"http://b.example/feed"_s;

// A bank of the profile "Tester" fed as the channels feed it, and the store in its folder.
class LastListStoreTest : public ::testing::Test {
protected:
    LastListStoreTest() : bank(clock, home.GetPaths()), store(home.GetPaths().ProfileFolder(u"Tester"_s)) {
        QDir().mkpath(home.GetPaths().ProfileFolder(u"Tester"_s));
        bank.init(u"Tester"_s);
    }

    bool Add(const QString& channel, const QString& children, const QString& date = u"16 Nov 2026"_s) {
        const QString xml = u"<item channel=\""_s + channel + u"\" date=\""_s + date +
                            u"\" time=\"09:00:00\">"_s + children +
                            u"<read>false</read><flag>false</flag><delete>false</delete>"
                            u"<channeltitle>A</channeltitle></item>"_s;
        m_candidates.push_back(XmlDocument::Parse(xml.toUtf8()));
        return bank.AddItem(m_candidates.back().DocumentElement());
    }
    XmlNode Stored(const QString& title) const {
        for (const XmlNode& item : bank.SubChannelList(kChannel, QString(), QString())) {
            if (GetItemTitle(item) == title) {
                return item;
            }
        }
        return {};
    }

    TestHome home;
    FakeClock clock;
    clsItemBank bank;
    LastListStore store;
    std::deque<XmlDocument> m_candidates;
};

TEST_F(LastListStoreTest, SavedListReadsBack) {
    ASSERT_TRUE(Add(kChannel, u"<title>One</title><guid>g1</guid>"_s));
    LastListStore::List list{u"_tamsel/unread"_s, u"_tamsel/today"_s, u"storm"_s, 2, {}};
    list.entries.push_back(LastListStore::EntryOf(51, Stored(u"One"_s)));
    QString error;
    ASSERT_TRUE(store.Save(list, &error)) << error.toStdString();
    const std::optional<LastListStore::List> read = store.Load(&error);
    ASSERT_TRUE(read.has_value()) << error.toStdString();
    EXPECT_EQ(read->key, list.key);
    EXPECT_EQ(read->filter, list.filter);
    EXPECT_EQ(read->search, list.search);
    EXPECT_EQ(read->page, 2);
    ASSERT_EQ(read->entries.size(), 1u);
    const LastListStore::Entry& entry = read->entries.front();
    EXPECT_EQ(entry.number, 51);
    EXPECT_EQ(entry.channel, kChannel);
    EXPECT_EQ(entry.guid, u"g1"_s);
    EXPECT_EQ(entry.title, u"One"_s);
    EXPECT_EQ(entry.date, u"16 Nov 2026"_s);
    EXPECT_EQ(entry.time, u"09:00:00"_s);
    EXPECT_EQ(entry.digest, LastListStore::Digest(Stored(u"One"_s)));
    // Written through a temporary file: nothing else is left in the folder.
    EXPECT_EQ(QDir(home.GetPaths().ProfileFolder(u"Tester"_s)).entryList(QDir::Files),
              QStringList{LastListStore::kFileName});
}

TEST_F(LastListStoreTest, MissingDamagedOrForeignFilesAreNoList) {
    QString error;
    EXPECT_FALSE(store.Load(&error).has_value());
    EXPECT_TRUE(error.contains(u"tamsel-cli list"_s));
    const QByteArray bad[] = {"{not json", "[1,2]", "{\"format\":99,\"items\":[]}",
                              "{\"format\":1,\"items\":{}}",
                              QByteArray(LastListStore::kMaxFileBytes + 1, ' ')};
    for (const QByteArray& bytes : bad) {
        QFile file(store.FilePath());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        file.close();
        error.clear();
        EXPECT_FALSE(store.Load(&error).has_value()) << bytes.left(30).toStdString();
        EXPECT_FALSE(error.isEmpty());
    }
    // Entries without a number or a channel are left out.
    QFile file(store.FilePath());
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(
        R"({"format":1,"items":[{"n":0,"channel":"x"},{"n":2},{"n":"3","channel":"x"},{"n":4,"channel":"c"}]})");
    file.close();
    const std::optional<LastListStore::List> read = store.Load(&error);
    ASSERT_TRUE(read.has_value());
    ASSERT_EQ(read->entries.size(), 1u);
    EXPECT_EQ(read->entries.front().number, 4);
}

TEST_F(LastListStoreTest, FindsTheItemWhateverCameBeforeIt) {
    ASSERT_TRUE(Add(kChannel, u"<title>One</title><guid>g1</guid>"_s));
    ASSERT_TRUE(Add(kChannel, u"<title>Two</title><guid>g2</guid>"_s));
    const LastListStore::Entry two = LastListStore::EntryOf(1, Stored(u"Two"_s));
    // New items arrive, another channel's too, and the first item goes.
    ASSERT_TRUE(Add(kOther, u"<title>Two</title><guid>o2</guid>"_s));
    ASSERT_TRUE(Add(kChannel, u"<title>Three</title><guid>g3</guid>"_s));
    bank.KillChannel(kOther);
    SetItemRead(Stored(u"Two"_s), true);
    const XmlNode found = LastListStore::Find(bank, two);
    ASSERT_FALSE(found.IsNull());
    EXPECT_EQ(found, Stored(u"Two"_s));
    EXPECT_EQ(GetAttributeText(found, u"channel"_s), kChannel);
}

TEST_F(LastListStoreTest, TellsApartItemsOfTheSameTitle) {
    ASSERT_TRUE(Add(kChannel, u"<title>Same</title><description>first</description>"_s));
    ASSERT_TRUE(Add(kChannel, u"<title>Same</title><description>second</description>"_s));
    const ItemList items = bank.SubChannelList(kChannel, QString(), QString());
    ASSERT_EQ(items.size(), 2u);
    const LastListStore::Entry second = LastListStore::EntryOf(2, items[1]);
    EXPECT_EQ(GetItemDescription(LastListStore::Find(bank, second)), u"second"_s);
}

TEST_F(LastListStoreTest, DeletedItemsAreFoundToo) {
    ASSERT_TRUE(Add(kChannel, u"<title>Gone soon</title>"_s));
    const LastListStore::Entry entry = LastListStore::EntryOf(1, Stored(u"Gone soon"_s));
    SetChildText(Stored(u"Gone soon"_s), u"delete"_s, u"true"_s);
    const XmlNode found = LastListStore::Find(bank, entry);
    ASSERT_FALSE(found.IsNull());
    EXPECT_TRUE(IsItemDeleted(found));
}

TEST_F(LastListStoreTest, AChangedItemIsFoundByItsGuid) {
    ASSERT_TRUE(Add(kChannel, u"<title>Draft</title><guid>g1</guid>"_s));
    const LastListStore::Entry entry = LastListStore::EntryOf(1, Stored(u"Draft"_s));
    // The feed corrected the title: the bank replaced the item in place.
    ASSERT_TRUE(Add(kChannel, u"<title>Final</title><guid>g1</guid>"_s, u"17 Nov 2026"_s));
    const XmlNode found = LastListStore::Find(bank, entry);
    ASSERT_FALSE(found.IsNull());
    EXPECT_EQ(GetItemTitle(found), u"Final"_s);
}

TEST_F(LastListStoreTest, AGoneItemIsNotFound) {
    ASSERT_TRUE(Add(kChannel, u"<title>Short lived</title><guid>g9</guid>"_s));
    ASSERT_TRUE(Add(kChannel, u"<title>No guid</title>"_s));
    const LastListStore::Entry withGuid = LastListStore::EntryOf(1, Stored(u"Short lived"_s));
    const LastListStore::Entry withoutGuid = LastListStore::EntryOf(2, Stored(u"No guid"_s));
    bank.KillChannel(kChannel);
    EXPECT_TRUE(LastListStore::Find(bank, withGuid).IsNull());
    EXPECT_TRUE(LastListStore::Find(bank, withoutGuid).IsNull());
    // An item of the same title in another channel is not it.
    ASSERT_TRUE(Add(kOther, u"<title>No guid</title>"_s));
    EXPECT_TRUE(LastListStore::Find(bank, withoutGuid).IsNull());
}

TEST_F(LastListStoreTest, DigestIgnoresStateAndPubDateButNotContent) {
    ASSERT_TRUE(Add(kChannel, u"<title>T</title><pubDate>Mon, 16 Nov 2026 09:00:00 GMT</pubDate>"_s));
    const XmlNode item = Stored(u"T"_s);
    const QByteArray before = LastListStore::Digest(item);
    SetItemRead(item, true);
    SetChildText(item, u"flag"_s, u"true"_s);
    EXPECT_EQ(LastListStore::Digest(item), before);
    XmlDocument other = XmlDocument::Parse(
        "<item channel=\"c\" date=\"16 Nov 2026\" time=\"09:00:00\"><title>T</title><x>1</x></item>");
    XmlDocument same = XmlDocument::Parse(
        "<item channel=\"c\" date=\"16 Nov 2026\" time=\"09:00:00\"><title>T</title><x>1</x></item>");
    XmlDocument shifted = XmlDocument::Parse(
        "<item channel=\"c\" date=\"16 Nov 2026\" time=\"09:00:00\"><title>T</title><x1></x1></item>");
    EXPECT_EQ(LastListStore::Digest(other.DocumentElement()), LastListStore::Digest(same.DocumentElement()));
    EXPECT_NE(LastListStore::Digest(other.DocumentElement()),
              LastListStore::Digest(shifted.DocumentElement()));
}

} // namespace
