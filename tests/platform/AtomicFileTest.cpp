// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/AtomicFile.h"
#include "platform/XmlDocument.h"
#include "support/FileSizeLimit.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <cerrno>
#include <cstring>
#include <gtest/gtest.h>

namespace {

constexpr rlim_t kDiskRoom = 1024;

// What the system says when a file may not grow: the reason shown to the user.
QString RefusalText() {
    return QString::fromLocal8Bit(std::strerror(EFBIG));
}

class AtomicFileTest : public ::testing::TestWithParam<int> {
protected:
    QString Path() const { return m_folder.filePath(QStringLiteral("data.txt")); }
    QByteArray Read() const {
        QFile file(Path());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    QStringList Files() const { return QDir(m_folder.path()).entryList(QDir::Files); }

    QTemporaryDir m_folder;
};

// Sizes below and far above a write buffer: a refusal in the last flush counts as much as one
// on the way.
TEST_P(AtomicFileTest, AFullDiskLeavesTheOldFileWhole) {
    const QByteArray old("old content\n");
    ASSERT_TRUE(AtomicFile::Write(Path(), old));
    const QByteArray large(GetParam(), 'x');
    QString error;
    bool written = true;
    {
        const FileSizeLimit full(kDiskRoom);
        ASSERT_TRUE(full.Active());
        written = AtomicFile::Write(Path(), large, &error);
    }
    EXPECT_FALSE(written);
    EXPECT_EQ(error, RefusalText());
    EXPECT_EQ(Read(), old);
    EXPECT_EQ(Files(), QStringList({QStringLiteral("data.txt")}));
    EXPECT_TRUE(AtomicFile::Write(Path(), large));
    EXPECT_EQ(Read(), large);
}

TEST_P(AtomicFileTest, AFullDiskFailsAnXmlSave) {
    XmlDocument doc;
    XmlNode root = doc.CreateElement(QStringLiteral("root"));
    root.SetText(QString(GetParam(), u'y'));
    doc.SetDocumentElement(root);
    const QByteArray old("<old/>\n");
    ASSERT_TRUE(AtomicFile::Write(Path(), old));
    QString error;
    bool saved = true;
    {
        const FileSizeLimit full(kDiskRoom);
        ASSERT_TRUE(full.Active());
        saved = doc.Save(Path(), &error);
    }
    EXPECT_FALSE(saved);
    EXPECT_EQ(error, RefusalText());
    EXPECT_EQ(Read(), old);
    EXPECT_EQ(Files(), QStringList({QStringLiteral("data.txt")}));
}

INSTANTIATE_TEST_SUITE_P(Sizes, AtomicFileTest, ::testing::Values(3000, 200000));

} // namespace
