// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include <QProcess>
#include <QStandardPaths>

#include <gtest/gtest.h>

namespace {

constexpr int kWaitMs = 20000;

// Docked bars on an X server of the test's own, on a display number the server chooses; the probe
// prints the partial strut, the strut, whether its window is a dock, whether a second bar on the
// same edge left it the edge's claim, and whether that bar took over a claim of a vanished window.
TEST(X11StrutTest, ADockedBarReservesItsStripWithAPartialStrut) {
    const QString xvfb = QStandardPaths::findExecutable(QStringLiteral("Xvfb"));
    if (xvfb.isEmpty()) {
        GTEST_SKIP() << "Xvfb is not installed";
    }
    QProcess server;
    server.start(xvfb, {QStringLiteral("-displayfd"), QStringLiteral("1"), QStringLiteral("-screen"),
                        QStringLiteral("0"), QStringLiteral("800x600x24"), QStringLiteral("-nolisten"),
                        QStringLiteral("tcp")});
    QByteArray output;
    while (!output.contains('\n') && server.waitForReadyRead(kWaitMs)) {
        output += server.readAll();
    }
    ASSERT_TRUE(output.contains('\n'));
    const std::pair<int, QByteArray> cases[] = {
        {1, "0 0 20 0 0 0 0 0 0 799 0 0\n0 0 20 0\n1\n1\n1\n"},
        {3, "0 0 0 20 0 0 0 0 0 0 0 799\n0 0 0 20\n1\n1\n1\n"},
        {0, "20 0 0 0 0 599 0 0 0 0 0 0\n20 0 0 0\n1\n1\n1\n"},
    };
    for (const auto& [edge, properties] : cases) {
        SCOPED_TRACE(edge);
        QProcess probe;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("DISPLAY"), u':' + QString::fromLatin1(output.trimmed()));
        environment.remove(QStringLiteral("QT_SCALE_FACTOR"));
        // On a real display the desktop bus library keeps one allocation to the end, which the
        // leak checker of the sanitizer build would turn into a failed exit; this probe is about
        // window properties.
        environment.insert(QStringLiteral("ASAN_OPTIONS"), environment.value(QStringLiteral("ASAN_OPTIONS")) +
                                                               QStringLiteral(":detect_leaks=0"));
        probe.setProcessEnvironment(environment);
        probe.start(QStringLiteral(TAMSEL_STRUT_PROBE), {QString::number(edge)});
        ASSERT_TRUE(probe.waitForFinished(kWaitMs));
        EXPECT_EQ(probe.exitCode(), 0) << probe.readAllStandardError().toStdString();
        EXPECT_EQ(probe.readAllStandardOutput(), properties);
    }
    server.kill();
    server.waitForFinished(kWaitMs);
}

} // namespace
