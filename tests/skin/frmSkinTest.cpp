// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "SkinTestSupport.h"

#include "skin/frmSkin.h"

#include <QDir>
#include <QListWidget>
#include <QPushButton>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace {

class frmSkinTest : public ::testing::Test {
protected:
    // Shipped skins in one temporary folder, the user's in another.
    frmSkinTest()
        : paths(resources.path(), data.path(), data.path() + QStringLiteral("/config")), settings(paths) {}

    void MakeFolder(const QTemporaryDir& root, const QString& relative) {
        QDir(root.path()).mkpath(relative);
    }

    QTemporaryDir resources;
    QTemporaryDir data;
    Paths paths;
    CRegSettings settings;
    FakeSkinHost host;
};

TEST_F(frmSkinTest, AFolderOfFilesHasNoSkins) {
    MakeFolder(data, QStringLiteral("skins"));
    QFile file(data.filePath(QStringLiteral("skins/readme.txt")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.close();
    frmSkin chooser(settings, paths, host);
    EXPECT_FALSE(chooser.LoadList());
    EXPECT_EQ(chooser.lstSkins()->count(), 0);
    EXPECT_EQ(host.messages, QStringList{QStringLiteral("No Skins Found")});
    EXPECT_EQ(chooser.exec(), int(QDialog::Rejected));
    EXPECT_FALSE(chooser.SkinChanged());
}

TEST_F(frmSkinTest, ListsTheUsersAndTheShippedSkinsOnceAndSelectsTheCurrentOne) {
    MakeFolder(resources, QStringLiteral("skins/Default"));
    MakeFolder(resources, QStringLiteral("skins/Nightfall"));
    MakeFolder(data, QStringLiteral("skins/nightfall"));
    MakeFolder(data, QStringLiteral("skins/Default"));
    MakeFolder(data, QStringLiteral("skins/Amber"));
    frmSkin chooser(settings, paths, host);
    ASSERT_TRUE(chooser.LoadList());
    QStringList names;
    for (int i = 0; i < chooser.lstSkins()->count(); ++i) {
        names.append(chooser.lstSkins()->item(i)->text());
    }
    EXPECT_EQ(names, (QStringList{QStringLiteral("Amber"), QStringLiteral("Default"),
                                  QStringLiteral("Nightfall"), QStringLiteral("nightfall")}));
    // Without a stored name the chooser takes "Default".
    ASSERT_NE(chooser.lstSkins()->currentItem(), nullptr);
    EXPECT_EQ(chooser.lstSkins()->currentItem()->text(), QStringLiteral("Default"));
    EXPECT_TRUE(host.messages.isEmpty());
}

// Without a selection the button keeps the old skin; with one it stores the chosen name.
TEST_F(frmSkinTest, TheButtonStoresTheChosenSkinOnly) {
    MakeFolder(resources, QStringLiteral("skins/Default"));
    MakeFolder(resources, QStringLiteral("skins/Nightfall"));
    const QString section = QStringLiteral("SETTINGS"), key = QStringLiteral("SKINNAME");
    settings.SaveSetting(section, key, QStringLiteral("Gone"));
    {
        frmSkin chooser(settings, paths, host);
        ASSERT_TRUE(chooser.LoadList());
        EXPECT_TRUE(chooser.lstSkins()->selectedItems().isEmpty());
        chooser.cmdOk()->click();
        EXPECT_FALSE(chooser.SkinChanged());
        EXPECT_EQ(chooser.result(), int(QDialog::Rejected));
        EXPECT_EQ(settings.GetSetting(section, key, QString()), QStringLiteral("Gone"));
    }
    settings.SaveSetting(section, key, QStringLiteral("Nightfall"));
    frmSkin chooser(settings, paths, host);
    ASSERT_TRUE(chooser.LoadList());
    EXPECT_EQ(chooser.lstSkins()->currentItem()->text(), QStringLiteral("Nightfall"));
    QListWidgetItem* other = chooser.lstSkins()->item(0);
    chooser.lstSkins()->setCurrentItem(other);
    Q_EMIT chooser.lstSkins()->itemClicked(other);
    EXPECT_EQ(chooser.cmdOk()->text(), QStringLiteral("Load Skin"));
    chooser.cmdOk()->click();
    EXPECT_TRUE(chooser.SkinChanged());
    EXPECT_EQ(chooser.result(), int(QDialog::Accepted));
    EXPECT_EQ(settings.GetSetting(section, key, QString()), QStringLiteral("Default"));
}

} // namespace
