// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/frmPreferences.h"
#include "platform/CRegSettings.h"
#include "skin/SkinColor.h"
#include "skin/SkinTestSupport.h"
#include "support/FakeClock.h"
#include "support/FocusChain.h"
#include "support/QStringPrinter.h"
#include "support/TestHome.h"

#include <QCheckBox>
#include <QCoreApplication>
#include <QFile>
#include <QPushButton>
#include <QTest>
#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

namespace {

class PreferencesTest : public ::testing::Test {
protected:
    PreferencesTest() : settings(home.GetPaths()), skin(settings, home.GetPaths(), clock, skinHost) {
        skin.LoadSkin();
    }

    QString AutostartFile() const { return home.GetPaths().AutostartFolder() + u"/tamsel.desktop"_s; }
    static QByteArray Contents(const QString& path) {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    // The switches as the dialog shows them: updates, sound, run at log-in, open the main window.
    static QList<bool> Boxes(frmPreferences& dialog) {
        return {dialog.chkUpdates()->isChecked(), dialog.chkAlert()->isChecked(),
                dialog.chkRunStartup()->isChecked(), dialog.chkOpenMain()->isChecked()};
    }

    TestHome home;
    FakeClock clock;
    CRegSettings settings;
    FakeSkinHost skinHost;
    frmTamselSkin skin;
};

TEST_F(PreferencesTest, CancelStoresNothingAndOkWritesTheSwitchesAndTheStartEntryThenRemovesIt) {
    for (const bool ok : {false, true}) {
        frmPreferences dialog(settings, skin);
        dialog.show();
        EXPECT_EQ(Boxes(dialog), (QList<bool>{true, true, false, true})) << "Cancel stores nothing";
        QTest::mouseClick(dialog.chkRunStartup(), Qt::LeftButton);
        QTest::mouseClick(dialog.chkAlert(), Qt::LeftButton);
        QTest::mouseClick(dialog.chkOpenMain(), Qt::LeftButton);
        QTest::mouseClick(ok ? dialog.cmdOk() : dialog.cmdCancel(), Qt::LeftButton);
    }
    EXPECT_EQ((QStringList{settings.GetSetting(u"START"_s, u"CHECKUPDATE"_s, {}),
                           settings.GetSetting(u"PREF"_s, u"ALERT"_s, {}),
                           settings.GetSetting(u"START"_s, u"OPENMAIN"_s, {})}),
              (QStringList{u"True"_s, u"False"_s, u"False"_s}));
    // The desktop runs the entry's command line: the full path, without quotes.
    EXPECT_TRUE(
        Contents(AutostartFile())
            .contains(QByteArray("\nExec=" + QCoreApplication::applicationFilePath().toUtf8() + '\n')));
    EXPECT_EQ((QStringList{settings.Company(), settings.AppName()}),
              (QStringList{CRegSettings::kCompany, CRegSettings::kAppName}))
        << "the start entry's names are left again";

    frmPreferences again(settings, skin);
    again.show();
    EXPECT_EQ(Boxes(again), (QList<bool>{true, false, true, false}));
    QTest::mouseClick(again.chkRunStartup(), Qt::LeftButton);
    QTest::mouseClick(again.cmdOk(), Qt::LeftButton);
    EXPECT_FALSE(QFile::exists(AutostartFile()));
}

TEST_F(PreferencesTest, ADarkSkinGivesADarkDialog) {
    frmPreferences dialog(settings, skin);
    settings.SaveSetting(u"SETTINGS"_s, u"SKINNAME"_s, u"Nightfall"_s);
    skin.LoadSkin();
    const QColor window = dialog.palette().color(QPalette::Window);
    EXPECT_EQ(window, SkinColor::ToQColor(skin.FrameColor(frmTamselSkin::KindDialog)));
    EXPECT_LT(window.lightness(), 128);
}

TEST_F(PreferencesTest, EveryControlInTheFocusChainHasAnAccessibleName) {
    frmPreferences dialog(settings, skin);
    dialog.show();
    const FocusChain chain = FocusChain::Walk(dialog, dialog.chkUpdates());
    EXPECT_TRUE(chain.unnamed.isEmpty()) << chain.Unnamed();
    EXPECT_EQ(chain.visited, (QList<QWidget*>{dialog.chkUpdates(), dialog.chkAlert(), dialog.chkRunStartup(),
                                              dialog.chkOpenMain(), dialog.cmdOk(), dialog.cmdCancel()}));
}

} // namespace
