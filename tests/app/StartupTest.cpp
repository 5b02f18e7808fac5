// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/Runtime.h"
#include "platform/CRegSettings.h"
#include "platform/XmlDocument.h"
#include "platform/XsltStylesheet.h"
#include "support/RecordingDesktop.h"
#include "support/TestHome.h"

#include <QFile>
#include <QProcess>
#include <QTest>
#include <gtest/gtest.h>
#include <memory>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int kProcessLimitMs = 30000;

// The window program on `home`, its resources taken from `resources`.
std::unique_ptr<QProcess> StartProgram(const TestHome& home, const QString& resources) {
    auto program = std::make_unique<QProcess>();
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"TAMSEL_HOME"_s, home.Path());
    environment.insert(u"TAMSEL_RESOURCES"_s, resources);
    environment.insert(u"QT_QPA_PLATFORM"_s, u"offscreen"_s);
    program->setProcessEnvironment(environment);
    program->start(QStringLiteral(TAMSEL_EXECUTABLE), {});
    return program;
}

// A first start prepares an empty profile list; a later one keeps the list and the skin chosen. The
// shipped namespace stylesheet loads at every start of the window program in the tests that run it.
TEST(StartupTest, StartsPrepareTheDataFolderStopWithoutTheNamespaceStylesheetAndASecondHandsOverToTheFirst) {
    TestHome home;
    RecordingDesktop desktop;
    Runtime runtime(home.GetPaths(), desktop);
    runtime.InstallDataFolder();
    EXPECT_EQ(home.Read(u"profiles/profiles.xml"_s), QByteArray("<tamselprofiles/>\n"));
    EXPECT_EQ(runtime.Settings().GetSetting(u"SETTINGS"_s, u"SKINNAME"_s, QString()), u"Default"_s);
    runtime.Settings().SaveSetting(u"SETTINGS"_s, u"SKINNAME"_s, u"Nightfall"_s);
    home.Write(u"profiles/profiles.xml"_s,
               "<tamselprofiles><user><username>A</username></user></tamselprofiles>");
    runtime.InstallDataFolder();
    EXPECT_TRUE(home.Read(u"profiles/profiles.xml"_s).contains("<username>A</username>"));
    EXPECT_EQ(runtime.Settings().GetSetting(u"SETTINGS"_s, u"SKINNAME"_s, QString()), u"Nightfall"_s);

    home.Write(u"res/tamselns.xsl"_s, "<xsl:stylesheet");
    Runtime broken(Paths(home.File(u"res"_s), home.Path(), home.Path()), desktop);
    QString message;
    EXPECT_FALSE(broken.LoadNamespaceStylesheet(&message));
    EXPECT_TRUE(broken.NamespaceStylesheet().IsNull());
    const std::unique_ptr<QProcess> program = StartProgram(home, home.File(u"empty"_s));
    ASSERT_TRUE(program->waitForFinished(kProcessLimitMs));
    EXPECT_NE(program->exitCode(), 0);
    EXPECT_TRUE(program->readAllStandardError().contains(
        QString(home.File(u"empty"_s) + u"/tamselns.xsl  -  File not found\n"_s).toUtf8()));

    // With the shipped resources a second start hands over to the first and ends quietly.
    const std::unique_ptr<QProcess> first = StartProgram(home, QStringLiteral(TAMSEL_BUILD_DATA_DIR));
    // The first start has settled once its event loop opened the profile, which saves the list in
    // the program's own form first.
    ASSERT_TRUE(QTest::qWaitFor([&] { return home.Read(u"profiles/profiles.xml"_s).endsWith('\n'); },
                                kProcessLimitMs));
    const std::unique_ptr<QProcess> second = StartProgram(home, QStringLiteral(TAMSEL_BUILD_DATA_DIR));
    ASSERT_TRUE(second->waitForFinished(kProcessLimitMs));
    EXPECT_EQ(second->exitCode(), 0);
    EXPECT_EQ(first->state(), QProcess::Running);
    // A logout ends it through the main window's own shutdown, which saves everything: the window's
    // place is written only there.
    const QString settings = u"config/Orvane/Tamsel.conf"_s;
    EXPECT_FALSE(home.Read(settings).contains("[Tamsel]"));
    first->terminate();
    ASSERT_TRUE(first->waitForFinished(kProcessLimitMs));
    EXPECT_EQ(first->exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(first->exitCode(), 0);
    EXPECT_TRUE(home.Read(settings).contains("[Tamsel]"));
}

TEST(StartupTest, TheShippedDefaultItemPageIsReadableUtf8HtmlAndTheAlertAShortWaveSound) {
    QString error;
    const XsltStylesheet style =
        XsltStylesheet::Load(QStringLiteral(TAMSEL_BUILD_DATA_DIR "/rss.xsl"), &error);
    ASSERT_FALSE(style.IsNull()) << error.toStdString();
    QFile item(QStringLiteral(TAMSEL_TEST_DATA_DIR "/item.xml"));
    ASSERT_TRUE(item.open(QIODevice::ReadOnly));
    const QString html =
        QString::fromUtf8(style.TransformToBytes(XmlDocument::Parse(item.readAll()), &error));
    ASSERT_FALSE(html.isEmpty()) << error.toStdString();
    for (const QString& part :
         {u"charset=UTF-8"_s, u"<a href=\"http://example.org/a?x=1&amp;y=2\">Café opens &amp; closes</a>"_s,
          u"15 Nov 2005 13:45"_s, u"Example News"_s, u"<p>First <b>bold</b> paragraph</p>"_s}) {
        EXPECT_TRUE(html.contains(part)) << part.toStdString() << " in " << html.toStdString();
    }
    EXPECT_FALSE(html.contains(u"false"_s));

    QFile sound(QStringLiteral(TAMSEL_BUILD_DATA_DIR "/alert.wav"));
    ASSERT_TRUE(sound.open(QIODevice::ReadOnly));
    const QByteArray header = sound.read(12);
    EXPECT_EQ(header.left(4) + header.mid(8, 4), QByteArray("RIFFWAVE"));
    EXPECT_LT(sound.size(), 200 * 1024);
    EXPECT_GT(sound.size(), 1024);
}

} // namespace
