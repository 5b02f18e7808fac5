// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/AtomicFile.h"
#include "platform/XmlDocument.h"
#include "support/FileSizeLimit.h"
#include "support/TestHome.h"

#include <QDir>
#include <cerrno>
#include <cstring>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

constexpr rlim_t kDiskRoom = 1024;

// Sizes below and far above a write buffer: a refusal in the last flush counts as much as one on
// the way. Torn saves under a file-size limit once left half files behind.
class AtomicFileTest : public ::testing::TestWithParam<int> {};

TEST_P(AtomicFileTest, AFullDiskLeavesTheOldFileWhole) {
    const TestHome home;
    const QString path = home.File(u"data.txt"_s);
    const QByteArray old("old content\n");
    const QByteArray large(GetParam(), 'x');
    XmlDocument doc;
    doc.SetDocumentElement(doc.CreateTextElement(u"root"_s, QString::fromLatin1(large)));
    for (bool viaXml : {false, true}) {
        ASSERT_TRUE(AtomicFile::Write(path, old));
        QString error;
        bool written = true;
        {
            const FileSizeLimit full(kDiskRoom);
            ASSERT_TRUE(full.Active());
            written = viaXml ? doc.Save(path, &error) : AtomicFile::Write(path, large, &error);
        }
        EXPECT_FALSE(written) << viaXml;
        EXPECT_EQ(error, QString::fromLocal8Bit(std::strerror(EFBIG)));
        EXPECT_EQ(home.Read(u"data.txt"_s), old);
        EXPECT_EQ(QDir(home.Path()).entryList(QDir::Files), QStringList({u"data.txt"_s}));
    }
    EXPECT_TRUE(AtomicFile::Write(path, large));
}

INSTANTIATE_TEST_SUITE_P(Sizes, AtomicFileTest, ::testing::Values(3000, 200000));

} // namespace
