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
#include <QFile>
#include <QFileInfo>
#include <QSignalSpy>
#include <QTimer>
#include <gtest/gtest.h>
#include <memory>

using namespace Qt::Literals::StringLiterals;

namespace {

// The profiles' host: records the messages, does everything else as any host does by default.
class ProfilesTest : public ::testing::Test, public AppHost {
protected:
    void PopupInfo(const QString& message, const QString& profileName, const QString& channelKey) override {
        popups.append(message + u'|' + profileName + u'|' + channelKey);
    }
    // Reads profiles.xml (first written as `xml` unless null) into `list` as the program does;
    // false when ProfilesLoaded did not come.
    bool Load(const QByteArray& xml, colProfiles& list) {
        if (!xml.isNull()) {
            home.Write(u"profiles/profiles.xml"_s, xml);
        }
        QSignalSpy loaded(&list, &colProfiles::ProfilesLoaded);
        list.init();
        EXPECT_EQ(loaded.count(), 0) << "the list arrives from the event loop, not during init";
        QCoreApplication::processEvents();
        return loaded.count() == 1;
    }
    // Each profile's name, after a star when it is the default and a tilde when it is offline.
    static QString List(const colProfiles& list) {
        QStringList shown;
        for (int i = 1; i <= list.UserCount(); ++i) {
            const clsProfile* user = list.User(i);
            shown.append((user->Default() ? u"*"_s : QString()) + (user->Offline() ? u"~"_s : QString()) +
                         user->Name());
        }
        return shown.join(u' ');
    }

    TestHome home;
    FakeClock clock;
    CRegSettings settings{home.GetPaths()};
    NetworkHttpClient http{home.GetPaths()};
    RecordingDesktop desktop;
    Services services{clock, settings, http, desktop, home.GetPaths()};
    QStringList popups;
    colProfiles profiles{services, *this};
};

// The user must be able to go on: the list loads empty, so that a new profile can be made.
TEST_F(ProfilesTest, AMissingOrBrokenFileIsReportedAndABrokenOneKeptAsideForGood) {
    EXPECT_TRUE(Load(QByteArray(), profiles));
    EXPECT_EQ(popups, QStringList{QString(colProfiles::kReadError + u"||"_s)});
    EXPECT_EQ(profiles.DamagedFile(), QString()) << "nothing to keep aside";

    // Each broken list is kept aside under a name of its own.
    const QByteArray broken = "<tamselprofiles><user>";
    for (int n = 1; n <= 2; ++n) {
        colProfiles again(services, *this);
        EXPECT_TRUE(Load(broken, again));
        EXPECT_EQ(again.GetDefaultUser(), nullptr) << "nor any profile";
        EXPECT_EQ(popups.size(), n + 1);
        const QStringList aside = QDir(home.File(u"profiles"_s)).entryList({u"profiles.xml.damaged-*"_s});
        ASSERT_EQ(aside.size(), n);
        EXPECT_TRUE(aside.contains(QFileInfo(again.DamagedFile()).fileName()));
        again.AddUser(u"Ann"_s, true, false);
        ASSERT_TRUE(again.SaveAllXML());
        for (const QString& name : aside) {
            EXPECT_EQ(home.Read(u"profiles/"_s + name), broken)
                << "a new list never overwrites one kept aside";
        }
    }
}

// The reader is tolerant: a name found deeper counts; a second Ann, a user without a name and "True"
// do not. Without a default the first becomes it; a new default clears the others. The list is saved
// as exact bytes and reads back.
TEST_F(ProfilesTest, TheReaderIsTolerantTheDefaultIsAlwaysOneProfileAndTheListIsSavedAsExactBytes) {
    QFile tolerant(QStringLiteral(TAMSEL_TEST_DATA_DIR "/profiles-tolerant.xml"));
    ASSERT_TRUE(tolerant.open(QIODevice::ReadOnly));
    ASSERT_TRUE(Load(tolerant.readAll(), profiles));
    EXPECT_EQ(List(profiles), u"~Ann Bob Cy"_s);
    EXPECT_EQ(profiles.GetUser(u"ann"_s), nullptr);
    EXPECT_FALSE(profiles.UserExists(u"ANN"_s));
    EXPECT_TRUE(popups.isEmpty());
    EXPECT_EQ(profiles.GetDefaultUser()->Name(), u"Ann"_s);
    EXPECT_EQ(List(profiles), u"*~Ann Bob Cy"_s);
    profiles.SetDefault(u"Bob"_s);

    home.Write(u"profiles/Cy & Co/keep.txt"_s, "x");
    profiles.AddUser(u"Cy & Co"_s, false, true);
    EXPECT_EQ(List(profiles), u"~Ann *Bob Cy ~Cy & Co"_s);
    EXPECT_EQ(home.Read(u"profiles/Cy & Co/keep.txt"_s), QByteArray("x"))
        << "an existing folder is kept as it is";
    clsProfile* dee = profiles.AddUser(u"Dee"_s, true, false);
    EXPECT_EQ(dee->Folder(), home.File(u"profiles/Dee"_s));
    EXPECT_TRUE(QFileInfo(dee->Folder()).isDir());
    EXPECT_FALSE(dee->Active());
    ASSERT_TRUE(profiles.SaveAllXML());
    EXPECT_EQ(home.Read(u"profiles/profiles.xml"_s),
              QByteArray("<tamselprofiles><user><username>Ann</username><offline>true</offline></user><user>"
                         "<username>Bob</username></user><user><username>Cy</username></user><user><username>"
                         "Cy &amp; Co</username><offline>true</offline></user><user><username>Dee</username>"
                         "<default>true</default></user></tamselprofiles>\n"));
    colProfiles again(services, *this);
    ASSERT_TRUE(Load(QByteArray(), again));
    EXPECT_EQ(List(again), u"~Ann Bob Cy ~Cy & Co *Dee"_s);
}

// Activation lets pending events run between its steps; whatever they do to the profile (a window
// closed during a slow start releases it, a shutdown destroys it) must not be used afterwards.
TEST_F(ProfilesTest, ReleasedDuringActivationItStopsAndCanStartAgainDestroyedNothingOfItRunsOn) {
    auto profile = std::make_unique<clsProfile>(services, *this);
    profile->SetName(u"Ann"_s);
    QTimer::singleShot(0, profile.get(), [&profile] { profile->Deactivate(); });
    EXPECT_FALSE(profile->SetUserActive());
    EXPECT_FALSE(profile->Active() || profile->ItemBank() || profile->Channels());
    EXPECT_TRUE(profile->SetUserActive());
    EXPECT_TRUE(profile->SetUserActive()) << "activating an active profile changes nothing";
    EXPECT_NE(profile->GetGroup(u"Tamsel"_s), nullptr);
    profile->Deactivate();
    EXPECT_FALSE(profile->Active());

    clsProfile* const raw = profile.get();
    QTimer::singleShot(0, [&profile] { profile.reset(); });
    // Under the address sanitizer a use of the destroyed profile ends the test here.
    EXPECT_FALSE(raw->SetUserActive());
    EXPECT_EQ(profile, nullptr);
}

} // namespace
