// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
// Activation lets pending events run between its steps; whatever they do to the profile (a window
// closed during a slow start releases it, a shutdown destroys it) must not be used afterwards.
#include "app/AppHost.h"
#include "app/clsProfile.h"
#include "platform/CRegSettings.h"
#include "platform/HttpClient.h"
#include "support/FakeClock.h"
#include "support/RecordingDesktop.h"
#include "support/TestHome.h"

#include <QTimer>
#include <gtest/gtest.h>
#include <memory>

namespace {

class SilentHost final : public AppHost {
public:
    void PopupInfo(const QString&, const QString&, const QString&) override {}
};

class ProfileActivationTest : public ::testing::Test {
protected:
    ProfileActivationTest()
        : settings(home.GetPaths()), http(home.GetPaths()), services{clock, settings, http, desktop, home.GetPaths()} {
        profile->SetName(QStringLiteral("Ann"));
    }

    TestHome home;
    FakeClock clock;
    CRegSettings settings;
    NetworkHttpClient http;
    RecordingDesktop desktop;
    Services services;
    SilentHost host;
    std::unique_ptr<clsProfile> profile = std::make_unique<clsProfile>(services, host);
};

TEST_F(ProfileActivationTest, ReleasedDuringItsStepsItStopsAndCanStartAgain) {
    QTimer::singleShot(0, profile.get(), [this] { profile->Deactivate(); });
    EXPECT_FALSE(profile->SetUserActive());
    EXPECT_FALSE(profile->Active());
    EXPECT_EQ(profile->ItemBank(), nullptr);
    EXPECT_EQ(profile->Channels(), nullptr);

    EXPECT_TRUE(profile->SetUserActive());
    EXPECT_TRUE(profile->Active());
    EXPECT_NE(profile->GetGroup(QStringLiteral("Tamsel")), nullptr);
}

TEST_F(ProfileActivationTest, DestroyedDuringItsStepsNothingOfItRunsOn) {
    clsProfile* const raw = profile.get();
    QTimer::singleShot(0, [this] { profile.reset(); });
    // Under the address sanitizer a use of the destroyed profile ends the test here.
    EXPECT_FALSE(raw->SetUserActive());
    EXPECT_EQ(profile, nullptr);
}

} // namespace
