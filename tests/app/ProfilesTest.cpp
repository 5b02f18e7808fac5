// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/AppHost.h"
#include "app/clsProfile.h"
#include "app/colProfiles.h"
#include "platform/CRegSettings.h"
#include "platform/HttpClient.h"
#include "support/FakeClock.h"
#include "support/RecordingDesktop.h"
#include "support/TestHome.h"

#include <QDir>
#include <QFileInfo>
#include <QSignalSpy>
#include <gtest/gtest.h>

namespace {

class RecordingHost final : public AppHost {
public:
    void PopupInfo(const QString& message, const QString& profileName, const QString& channelKey) override {
        popups.append(message + u'|' + profileName + u'|' + channelKey);
    }
    QStringList popups;
};

class ProfilesTest : public ::testing::Test {
protected:
    ProfilesTest()
        : settings(home.GetPaths()), http(home.GetPaths()),
          services{clock, settings, http, desktop, home.GetPaths()}, profiles(services, host) {}

    // Loads profiles.xml as the program does and reports whether ProfilesLoaded came.
    bool Load(const QByteArray& xml) {
        if (!xml.isNull()) {
            home.Write(QStringLiteral("profiles/profiles.xml"), xml);
        }
        QSignalSpy loaded(&profiles, &colProfiles::ProfilesLoaded);
        profiles.init();
        EXPECT_EQ(loaded.count(), 0) << "the list arrives from the event loop, not during init";
        QCoreApplication::processEvents();
        return loaded.count() == 1;
    }

    TestHome home;
    FakeClock clock;
    CRegSettings settings;
    NetworkHttpClient http;
    RecordingDesktop desktop;
    Services services;
    RecordingHost host;
    colProfiles profiles;
};

QStringList Names(const colProfiles& profiles) {
    QStringList names;
    for (int i = 1; i <= profiles.UserCount(); ++i) {
        names.append(profiles.User(i)->Name());
    }
    return names;
}

} // namespace

TEST_F(ProfilesTest, TheReaderIsTolerant) {
    ASSERT_TRUE(Load("<TamselProfiles>\n"
                     "  <user><username>Ann</username><offline>true</offline></user>\n"
                     "  <group><deeper><USER><info><Default>True</Default></info><UserName>Bob</UserName></USER></deeper></group>\n"
                     "  <user><default>true</default><username>Ann</username></user>\n"
                     "  <user><extra><username>Cy</username></extra><default>true</default></user>\n"
                     "  <user><username></username><default>true</default></user>\n"
                     "</TamselProfiles>"));
    EXPECT_EQ(Names(profiles), (QStringList{QStringLiteral("Ann"), QStringLiteral("Bob"), QStringLiteral("Cy")}));
    EXPECT_TRUE(profiles.GetUser(QStringLiteral("Ann"))->Offline());
    EXPECT_FALSE(profiles.GetUser(QStringLiteral("Ann"))->Default()) << "the second Ann was dropped";
    EXPECT_FALSE(profiles.GetUser(QStringLiteral("Bob"))->Default()) << "\"True\" is not true";
    EXPECT_EQ(profiles.GetDefaultUser()->Name(), QStringLiteral("Cy"));
    EXPECT_EQ(profiles.GetUser(QStringLiteral("ann")), nullptr);
    EXPECT_FALSE(profiles.UserExists(QStringLiteral("ANN")));
    EXPECT_TRUE(host.popups.isEmpty());
}

TEST_F(ProfilesTest, WithoutADefaultTheFirstProfileBecomesIt) {
    ASSERT_TRUE(Load("<tamselprofiles><user><username>Ann</username></user><user><username>Bob</username></user></tamselprofiles>"));
    EXPECT_FALSE(profiles.User(1)->Default());
    EXPECT_EQ(profiles.GetDefaultUser()->Name(), QStringLiteral("Ann"));
    EXPECT_TRUE(profiles.User(1)->Default());
    profiles.SetDefault(QStringLiteral("Bob"));
    EXPECT_EQ(profiles.GetDefaultUser()->Name(), QStringLiteral("Bob"));
    EXPECT_FALSE(profiles.User(1)->Default());
}

TEST_F(ProfilesTest, AnEmptyListLoadsWithoutProfiles) {
    ASSERT_TRUE(Load("<tamselprofiles/>"));
    EXPECT_EQ(profiles.UserCount(), 0);
    EXPECT_EQ(profiles.GetDefaultUser(), nullptr);
}

// The user must be able to go on: the list loads empty, so that a new profile can be made.
TEST_F(ProfilesTest, AMissingOrBrokenFileIsReportedAndABrokenOneKeptAside) {
    EXPECT_TRUE(Load(QByteArray()));
    EXPECT_EQ(host.popups, QStringList{QStringLiteral("Error Reading Profiles.XML File !!!||")});
    EXPECT_EQ(profiles.DamagedFile(), QString()) << "nothing to keep aside";

    colProfiles again(services, host);
    home.Write(QStringLiteral("profiles/profiles.xml"), "<tamselprofiles><user>");
    QSignalSpy loaded(&again, &colProfiles::ProfilesLoaded);
    again.init();
    QCoreApplication::processEvents();
    EXPECT_EQ(loaded.count(), 1);
    EXPECT_EQ(again.UserCount(), 0);
    EXPECT_EQ(host.popups.size(), 2);
    const QStringList aside = QDir(home.File(QStringLiteral("profiles"))).entryList({QStringLiteral("profiles.xml.damaged-*")});
    ASSERT_EQ(aside.size(), 1);
    EXPECT_EQ(again.DamagedFile(), home.File(QStringLiteral("profiles/") + aside.first()));
    EXPECT_EQ(home.Read(QStringLiteral("profiles/") + aside.first()), QByteArray("<tamselprofiles><user>"));
    again.AddUser(QStringLiteral("Ann"), true, false);
    ASSERT_TRUE(again.SaveAllXML());
    EXPECT_EQ(home.Read(QStringLiteral("profiles/") + aside.first()), QByteArray("<tamselprofiles><user>"))
        << "a new list never overwrites the one kept aside";
}

TEST_F(ProfilesTest, AddUserCreatesTheFolderAndADefaultClearsTheOthers) {
    ASSERT_TRUE(Load("<tamselprofiles><user><username>Ann</username><default>true</default></user></tamselprofiles>"));
    home.Write(QStringLiteral("profiles/Bob/keep.txt"), "x");
    clsProfile* bob = profiles.AddUser(QStringLiteral("Bob"), false, false);
    EXPECT_TRUE(profiles.GetUser(QStringLiteral("Ann"))->Default());
    EXPECT_EQ(home.Read(QStringLiteral("profiles/Bob/keep.txt")), QByteArray("x"));
    clsProfile* cy = profiles.AddUser(QStringLiteral("Cy"), true, true);
    EXPECT_TRUE(QFileInfo(home.File(QStringLiteral("profiles/Cy"))).isDir());
    EXPECT_FALSE(profiles.GetUser(QStringLiteral("Ann"))->Default());
    EXPECT_FALSE(bob->Default());
    EXPECT_TRUE(cy->Default());
    EXPECT_TRUE(cy->Offline());
    EXPECT_FALSE(cy->Active());
    EXPECT_EQ(cy->Folder(), home.File(QStringLiteral("profiles/Cy")));
}

TEST_F(ProfilesTest, SaveAllXmlWritesTheExactBytesAndReadsBack) {
    ASSERT_TRUE(Load("<tamselprofiles/>"));
    profiles.AddUser(QStringLiteral("Ann & Co"), false, true);
    profiles.AddUser(QStringLiteral("Bob"), true, false);
    ASSERT_TRUE(profiles.SaveAllXML());
    EXPECT_EQ(home.Read(QStringLiteral("profiles/profiles.xml")),
              QByteArray("<tamselprofiles><user><username>Ann &amp; Co</username><offline>true</offline></user>"
                         "<user><username>Bob</username><default>true</default></user></tamselprofiles>\n"));

    colProfiles again(services, host);
    QSignalSpy loaded(&again, &colProfiles::ProfilesLoaded);
    again.init();
    QCoreApplication::processEvents();
    ASSERT_EQ(loaded.count(), 1);
    EXPECT_EQ(Names(again), (QStringList{QStringLiteral("Ann & Co"), QStringLiteral("Bob")}));
    EXPECT_EQ(again.GetDefaultUser()->Name(), QStringLiteral("Bob"));
}

TEST_F(ProfilesTest, ActivationIsIdempotentAndDeactivationClearsIt) {
    ASSERT_TRUE(Load("<tamselprofiles><user><username>Ann</username></user></tamselprofiles>"));
    clsProfile* ann = profiles.User(1);
    ann->SetUserActive();
    EXPECT_TRUE(ann->Active());
    ann->SetUserActive();
    EXPECT_TRUE(ann->Active());
    ann->Deactivate();
    EXPECT_FALSE(ann->Active());
}
