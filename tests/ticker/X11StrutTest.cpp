// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/QStringPrinter.h"

#include <QProcess>
#include <QStandardPaths>

#include <xcb/xcb.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <vector>

namespace {

constexpr int kWaitMs = 20000;

template <typename T> using Reply = std::unique_ptr<T, decltype(&std::free)>;

xcb_atom_t Atom(xcb_connection_t* connection, const char* name) {
    const Reply<xcb_intern_atom_reply_t> reply(
        xcb_intern_atom_reply(connection, xcb_intern_atom(connection, 0, quint16(qstrlen(name)), name),
                              nullptr),
        &std::free);
    return reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
}

std::vector<quint32> Property(xcb_connection_t* connection, xcb_window_t window, const char* name,
                              xcb_atom_t type) {
    const Reply<xcb_get_property_reply_t> reply(
        xcb_get_property_reply(connection,
                               xcb_get_property(connection, 0, window, Atom(connection, name), type, 0, 64),
                               nullptr),
        &std::free);
    if (!reply) {
        return {};
    }
    const auto* words = static_cast<const quint32*>(xcb_get_property_value(reply.get()));
    return {words, words + xcb_get_property_value_length(reply.get()) / 4};
}

// Docked bars on an X server of the test's own, on a display number the server chooses.
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
    const QString display = QStringLiteral(":") + QString::fromLatin1(output.trimmed());
    xcb_connection_t* connection = xcb_connect(display.toLatin1().constData(), nullptr);
    ASSERT_EQ(xcb_connection_has_error(connection), 0);
    const std::pair<int, std::vector<quint32>> cases[] = {
        {1, {0, 0, 20, 0, 0, 0, 0, 0, 0, 799, 0, 0}},
        {3, {0, 0, 0, 20, 0, 0, 0, 0, 0, 0, 0, 799}},
        {0, {20, 0, 0, 0, 0, 599, 0, 0, 0, 0, 0, 0}},
    };
    for (const auto& [edge, strut] : cases) {
        SCOPED_TRACE(edge);
        QProcess probe;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("DISPLAY"), display);
        environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("xcb"));
        environment.remove(QStringLiteral("QT_SCALE_FACTOR"));
        // On a real display the desktop bus library keeps one allocation to the end, which the
        // leak checker of the sanitizer build would turn into a failed exit; this probe is about
        // window properties.
        environment.insert(QStringLiteral("ASAN_OPTIONS"),
                           environment.value(QStringLiteral("ASAN_OPTIONS")) + QStringLiteral(":detect_leaks=0"));
        probe.setProcessEnvironment(environment);
        probe.start(QStringLiteral(TAMSEL_STRUT_PROBE), {QString::number(edge)});
        ASSERT_TRUE(probe.waitForReadyRead(kWaitMs)) << probe.readAllStandardError().toStdString();
        const auto window = xcb_window_t(probe.readLine().trimmed().toULongLong());
        ASSERT_NE(window, 0u);
        EXPECT_EQ(Property(connection, window, "_NET_WM_STRUT_PARTIAL", XCB_ATOM_CARDINAL), strut);
        EXPECT_EQ(Property(connection, window, "_NET_WM_STRUT", XCB_ATOM_CARDINAL),
                  std::vector<quint32>(strut.begin(), strut.begin() + 4));
        EXPECT_EQ(Property(connection, window, "_NET_WM_WINDOW_TYPE", XCB_ATOM_ATOM),
                  std::vector<quint32>({Atom(connection, "_NET_WM_WINDOW_TYPE_DOCK")}));
        probe.closeWriteChannel();
        EXPECT_TRUE(probe.waitForFinished(kWaitMs));
        EXPECT_EQ(probe.exitCode(), 0);
    }
    xcb_disconnect(connection);
    server.kill();
    server.waitForFinished(kWaitMs);
}

} // namespace
