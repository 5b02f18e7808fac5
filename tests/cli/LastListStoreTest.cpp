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

    // Adds an item of `channel` to the bank and returns what identifies it as item `number`.
    LastListStore::Entry Add(const QString& channel, const QString& children, int number = 1,
                             const QString& date = u"16 Nov 2026"_s) {
        const QString xml = u"<item channel=\""_s + channel + u"\" date=\""_s + date +
                            u"\" time=\"09:00:00\">"_s + children +
                            u"<read>false</read><flag>false</flag><delete>false</delete>"
                            u"<channeltitle>A</channeltitle></item>"_s;
        m_candidates.push_back(XmlDocument::Parse(xml.toUtf8()));
        EXPECT_TRUE(bank.AddItem(m_candidates.back().DocumentElement())) << xml.toStdString();
        return LastListStore::EntryOf(number, bank.SubChannelList(channel, QString(), QString()).back());
    }
    // The item the entry names, "title|description" and " read" when it is, or "gone".
    QString Found(const LastListStore::Entry& entry) const {
        const XmlNode found = LastListStore::Find(bank, entry);
        return found.IsNull() ? u"gone"_s
                              : GetItemTitle(found) + u'|' + GetItemDescription(found) +
                                    (IsItemRead(found) ? u" read"_s : QString());
    }

    TestHome home;
    FakeClock clock;
    clsItemBank bank;
    LastListStore store;
    std::deque<XmlDocument> m_candidates;
};

// The files that are no list tamsel-cli wrote are read by the session scripts; too large a file
// is not even read.
TEST_F(LastListStoreTest, TheSavedListReadsBackAndAnOversizedFileIsNoList) {
    LastListStore::List list{u"_tamsel/unread"_s, u"_tamsel/today"_s, u"storm"_s, 2, {}};
    list.entries.push_back(Add(kChannel, u"<title>One</title><guid>g1</guid>"_s, 51));
    QString error;
    ASSERT_TRUE(store.Save(list, &error)) << error.toStdString();
    std::optional<LastListStore::List> read = store.Load(&error);
    ASSERT_TRUE(read.has_value()) << error.toStdString();
    EXPECT_EQ(std::tuple(read->key, read->filter, read->search, read->page),
              std::tuple(list.key, list.filter, list.search, 2));
    ASSERT_EQ(read->entries.size(), 1u);
    const LastListStore::Entry& entry = read->entries.front();
    EXPECT_EQ(std::tuple(entry.number, entry.channel, entry.guid, entry.title, entry.date, entry.time,
                         entry.digest),
              std::tuple(51, kChannel, u"g1"_s, u"One"_s, u"16 Nov 2026"_s, u"09:00:00"_s,
                         list.entries.front().digest));
    // Written through a temporary file: nothing else is left in the folder.
    EXPECT_EQ(QDir(home.GetPaths().ProfileFolder(u"Tester"_s)).entryList(QDir::Files),
              QStringList{LastListStore::kFileName});
    QFile file(store.FilePath());
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(QByteArray(LastListStore::kMaxFileBytes + 1, ' '));
    file.close();
    EXPECT_FALSE(store.Load(&error).has_value());
    EXPECT_TRUE(error.contains(u"cannot be read"_s)) << error.toStdString();
}

TEST_F(LastListStoreTest, AnItemIsFoundWhateverCameAndWentUnlessItIsGone) {
    Add(kChannel, u"<title>One</title><guid>g1</guid>"_s);
    const LastListStore::Entry two = Add(kChannel, u"<title>Two</title><guid>g2</guid>"_s);
    Add(kChannel, u"<title>Same</title><description>first</description>"_s);
    const LastListStore::Entry second =
        Add(kChannel, u"<title>Same</title><description>second</description>"_s);
    const LastListStore::Entry deleted = Add(kChannel, u"<title>Gone soon</title>"_s);
    const LastListStore::Entry draft = Add(kChannel, u"<title>Draft</title><guid>g5</guid>"_s);
    const LastListStore::Entry withGuid = Add(kOther, u"<title>Short lived</title><guid>g9</guid>"_s);
    const LastListStore::Entry withoutGuid = Add(kOther, u"<title>No guid</title>"_s);
    // New items arrive, one of the same title in another channel; state changes; the feed
    // corrects a title (the bank replaces the item in place); a channel goes with its items.
    Add(kOther, u"<title>Two</title><guid>o2</guid>"_s);
    Add(kChannel, u"<title>Three</title><guid>g3</guid>"_s);
    Add(kChannel, u"<title>Final</title><guid>g5</guid>"_s, 1, u"17 Nov 2026"_s);
    SetItemRead(LastListStore::Find(bank, two), true);
    // Found by its digest alone: read, flag and delete are no part of it.
    SetItemRead(LastListStore::Find(bank, second), true);
    SetChildText(LastListStore::Find(bank, second), u"flag"_s, u"true"_s);
    SetChildText(LastListStore::Find(bank, deleted), u"delete"_s, u"true"_s);
    bank.KillChannel(kOther);
    Add(kChannel, u"<title>No guid</title>"_s);

    EXPECT_EQ(LastListStore::Find(bank, two), bank.SubChannelList(kChannel, QString(), QString())[1]);
    EXPECT_TRUE(IsItemDeleted(LastListStore::Find(bank, deleted)));
    // An item of the same title in another channel is not the one that went.
    EXPECT_EQ(QStringList({Found(two), Found(second), Found(draft), Found(withGuid), Found(withoutGuid)})
                  .join(u", "_s),
              u"Two| read, Same|second read, Final|, gone, gone"_s);
}

TEST(LastListStoreDigestTest, IgnoresPubDateButNotTheNamesOfChildren) {
    const auto digest = [](const char* children) {
        const XmlDocument doc = XmlDocument::Parse(QByteArray("<item channel=\"c\">") + children + "</item>");
        return LastListStore::Digest(doc.DocumentElement());
    };
    EXPECT_EQ(digest("<title>T</title><pubDate>Mon, 16 Nov 2026 09:00:00 GMT</pubDate>"),
              digest("<title>T</title><pubDate>Tue, 17 Nov 2026 10:00:00 GMT</pubDate>"));
    EXPECT_NE(digest("<title>T</title><x>1</x>"), digest("<title>T</title><x1></x1>"));
}

} // namespace
