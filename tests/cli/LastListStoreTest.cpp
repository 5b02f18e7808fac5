// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
// Lists are saved, read back and followed to their items by the sessions "numbers" and
// "numbers-follow-items"; here is what a session does not reach.
#include "cli/LastListStore.h"
#include "platform/XmlDocument.h"
#include "support/QStringPrinter.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <ostream>

using namespace Qt::StringLiterals;

namespace {

// Written through a temporary file: nothing else is left in the folder. Too large a file is not
// even read.
TEST(LastListStoreTest, AListIsSavedAtomicallyAndAnOversizedFileIsNoList) {
    const QTemporaryDir folder;
    const LastListStore store(folder.path());
    QString error;
    ASSERT_TRUE(store.Save({u"_tamsel/unread"_s, {}, {}, 1, {{1, u"http://a.example/feed"_s}}}, &error))
        << error.toStdString();
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files), QStringList{LastListStore::kFileName});
    ASSERT_TRUE(QFile::resize(store.FilePath(), LastListStore::kMaxFileBytes + 1));
    EXPECT_FALSE(store.Load(&error).has_value());
    EXPECT_TRUE(error.contains(u"cannot be read"_s)) << error.toStdString();
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
