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

    QTemporaryDir resources;
    QTemporaryDir data;
    Paths paths;
    CRegSettings settings;
    FakeSkinHost host;
};

// A folder of files has no skins; otherwise the user's and the shipped skins are listed once
// (names differing in case are two skins) and the current one is selected, "Default" without a
// stored name. Without a selection the button keeps the old skin; with one it stores the name.
TEST_F(frmSkinTest, ListsTheSkinsOnceAndTheButtonStoresTheChosenOne) {
    QDir(data.path()).mkpath(QStringLiteral("skins"));
    QFile file(data.filePath(QStringLiteral("skins/readme.txt")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.close();
    {
        frmSkin chooser(settings, paths, host);
        EXPECT_FALSE(chooser.LoadList());
        EXPECT_EQ(chooser.lstSkins()->count(), 0);
        EXPECT_EQ(host.messages, QStringList{QStringLiteral("No Skins Found")});
        EXPECT_EQ(chooser.exec(), int(QDialog::Rejected));
        EXPECT_FALSE(chooser.SkinChanged());
        host.messages.clear();
    }
    for (const char* folder : {"skins/Default", "skins/Nightfall"}) {
        QDir(resources.path()).mkpath(QString::fromUtf8(folder));
    }
    for (const char* folder : {"skins/nightfall", "skins/Default", "skins/Amber"}) {
        QDir(data.path()).mkpath(QString::fromUtf8(folder));
    }
    const QString section = QStringLiteral("SETTINGS"), key = QStringLiteral("SKINNAME");
    for (const auto& [stored, selected] : {std::pair<const char*, const char*>{nullptr, "Default"},
                                           {"Gone", nullptr},
                                           {"Nightfall", "Nightfall"}}) {
        SCOPED_TRACE(stored ? stored : "none");
        if (stored) {
            settings.SaveSetting(section, key, QString::fromUtf8(stored));
        }
        frmSkin chooser(settings, paths, host);
        ASSERT_TRUE(chooser.LoadList());
        QStringList names;
        for (int i = 0; i < chooser.lstSkins()->count(); ++i) {
            names.append(chooser.lstSkins()->item(i)->text());
        }
        EXPECT_EQ(names, (QStringList{QStringLiteral("Amber"), QStringLiteral("Default"),
                                      QStringLiteral("Nightfall"), QStringLiteral("nightfall")}));
        const QList<QListWidgetItem*> chosen = chooser.lstSkins()->selectedItems();
        EXPECT_EQ(chosen.isEmpty() ? QString() : chosen.first()->text(), QString::fromUtf8(selected));
        if (!selected) {
            chooser.cmdOk()->click();
            EXPECT_FALSE(chooser.SkinChanged());
            EXPECT_EQ(chooser.result(), int(QDialog::Rejected));
            EXPECT_EQ(settings.GetSetting(section, key, QString()), QString::fromUtf8(stored));
        }
    }
    EXPECT_TRUE(host.messages.isEmpty());
    frmSkin chooser(settings, paths, host);
    ASSERT_TRUE(chooser.LoadList());
    QListWidgetItem* other = chooser.lstSkins()->item(0);
    chooser.lstSkins()->setCurrentItem(other);
    Q_EMIT chooser.lstSkins()->itemClicked(other);
    EXPECT_EQ(chooser.cmdOk()->text(), QStringLiteral("Load Skin"));
    chooser.cmdOk()->click();
    EXPECT_TRUE(chooser.SkinChanged());
    EXPECT_EQ(chooser.result(), int(QDialog::Accepted));
    EXPECT_EQ(settings.GetSetting(section, key, QString()), QStringLiteral("Amber"));
}

} // namespace
