// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/Runtime.h"
#include "platform/XsltStylesheet.h"
#include "support/RecordingDesktop.h"
#include "support/TestHome.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QTest>
#include <gtest/gtest.h>

namespace {

QProcessEnvironment ProgramEnvironment(const TestHome& home, const QString& resources) {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("TAMSEL_HOME"), home.Path());
    environment.insert(QStringLiteral("TAMSEL_RESOURCES"), resources);
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    return environment;
}

} // namespace

TEST(StartupTest, ASkippedOrBrokenNamespaceStylesheetStopsTheStartWithItsMessage) {
    TestHome home;
    RecordingDesktop desktop;
    Runtime missing(Paths(home.File(QStringLiteral("res")), home.Path(), home.Path()), desktop);
    QString message;
    EXPECT_FALSE(missing.LoadNamespaceStylesheet(&message));
    EXPECT_EQ(message, home.File(QStringLiteral("res")) + QStringLiteral("/tamselns.xsl  -  File not found"));

    home.Write(QStringLiteral("res/tamselns.xsl"), "<xsl:stylesheet");
    Runtime broken(Paths(home.File(QStringLiteral("res")), home.Path(), home.Path()), desktop);
    EXPECT_FALSE(broken.LoadNamespaceStylesheet(&message));
    EXPECT_TRUE(broken.NamespaceStylesheet().IsNull());

    Runtime shipped(home.GetPaths(), desktop);
    EXPECT_TRUE(shipped.LoadNamespaceStylesheet(&message));
    EXPECT_FALSE(shipped.NamespaceTransform().IsNull());
}

TEST(StartupTest, TheFirstStartPreparesAnEmptyProfileList) {
    TestHome home;
    RecordingDesktop desktop;
    Runtime runtime(home.GetPaths(), desktop);
    runtime.InstallDataFolder();
    EXPECT_EQ(home.Read(QStringLiteral("profiles/profiles.xml")), QByteArray("<tamselprofiles/>\n"));
    EXPECT_EQ(runtime.Settings().GetSetting(QStringLiteral("SETTINGS"), QStringLiteral("SKINNAME"), QString()), QStringLiteral("Default"));
    runtime.Settings().SaveSetting(QStringLiteral("SETTINGS"), QStringLiteral("SKINNAME"), QStringLiteral("Nightfall"));
    home.Write(QStringLiteral("profiles/profiles.xml"), "<tamselprofiles><user><username>A</username></user></tamselprofiles>");
    runtime.InstallDataFolder();
    EXPECT_TRUE(home.Read(QStringLiteral("profiles/profiles.xml")).contains("<username>A</username>"));
    EXPECT_EQ(runtime.Settings().GetSetting(QStringLiteral("SETTINGS"), QStringLiteral("SKINNAME"), QString()), QStringLiteral("Nightfall"));
}

TEST(StartupTest, TheProgramEndsWithAnErrorWhenTheStylesheetIsMissing) {
    TestHome home;
    QProcess program;
    program.setProcessEnvironment(ProgramEnvironment(home, home.File(QStringLiteral("empty"))));
    program.start(QStringLiteral(TAMSEL_EXECUTABLE), {});
    ASSERT_TRUE(program.waitForFinished(30000));
    EXPECT_NE(program.exitCode(), 0);
    EXPECT_TRUE(program.readAllStandardError().contains("/tamselns.xsl  -  File not found"));
}

TEST(StartupTest, ASecondStartHandsOverToTheFirstAndEndsQuietly) {
    TestHome home;
    QProcess first;
    first.setProcessEnvironment(ProgramEnvironment(home, QStringLiteral(TAMSEL_BUILD_DATA_DIR)));
    first.start(QStringLiteral(TAMSEL_EXECUTABLE), {});
    ASSERT_TRUE(first.waitForStarted(30000));
    // The first start has settled once it wrote the profile list of a fresh installation.
    ASSERT_TRUE(QTest::qWaitFor([&] { return QFileInfo::exists(home.File(QStringLiteral("profiles/profiles.xml"))); }, 30000));

    QProcess second;
    second.setProcessEnvironment(first.processEnvironment());
    second.start(QStringLiteral(TAMSEL_EXECUTABLE), {});
    ASSERT_TRUE(second.waitForFinished(30000));
    EXPECT_EQ(second.exitCode(), 0);
    EXPECT_EQ(first.state(), QProcess::Running);
    first.kill();
    first.waitForFinished(30000);
}
