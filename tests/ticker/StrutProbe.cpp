// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
// Docks a bar on the X display of $DISPLAY at the edge given as the first argument, prints its
// window id once the strut is written, and stays until its input closes.
#include "platform/Clock.h"
#include "ticker/TAppBar.h"
#include "ticker/X11AppBarShell.h"

#include <QApplication>
#include <QScreen>
#include <QSocketNotifier>
#include <QWidget>

#include <cstdio>
#include <unistd.h>

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", QByteArrayLiteral("xcb"));
    QApplication app(argc, argv);
    const int edge = argc > 1 ? QByteArray(argv[1]).toInt() : TAppBar::EdgeTop;
    QWidget window;
    window.resize(300, 20);
    SystemClock clock;
    X11AppBarShell shell(window);
    TAppBar bar(clock, QGuiApplication::primaryScreen()->geometry().size());
    bar.SetDockHeight(20);
    bar.SetDockWidth(20);
    bar.Extends(shell);
    bar.SetEdge(edge);
    window.show();
    QCoreApplication::processEvents();
    std::printf("%llu\n", static_cast<unsigned long long>(window.winId()));
    std::fflush(stdout);
    QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, &app, [&] {
        char buffer[64];
        if (read(STDIN_FILENO, buffer, sizeof buffer) <= 0) {
            QCoreApplication::quit();
        }
    });
    const int result = QApplication::exec();
    bar.Detach();
    return result;
}
