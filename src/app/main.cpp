// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/Runtime.h"
#include "app/frmMain.h"
#include "platform/Paths.h"
#include "platform/SingleInstance.h"
#include "platform/SystemDesktop.h"
#include "platform/TerminationSignals.h"
#include "platform/XmlSecurity.h"
#include "skin/WidgetSkinHost.h"
#include "skin/frmTamselSkin.h"

#include <QApplication>
#include <QDir>
#include <QMessageBox>
#include <QSystemTrayIcon>

#include <cstdio>

namespace {

// How long a start waits for a command of tamsel-cli to end before it says why it cannot start.
constexpr int kToolWaitMs = 10000;

// On standard error, and in a message box where there is a screen to show it on.
void ShowStartError(const QString& message) {
    std::fprintf(stderr, "%s\n", qUtf8Printable(message));
    if (QGuiApplication::platformName() != QStringLiteral("offscreen")) {
        QMessageBox::critical(nullptr, QStringLiteral("Tamsel"), message, QMessageBox::Ok);
    }
}

// A Wayland client may neither place its windows nor reserve a screen edge, and Tamsel does both
// (the ticker docks to an edge, every window returns where it was left). Where the session also
// offers an X server, Tamsel runs as its client; QT_QPA_PLATFORM still chooses when it is set.
void PreferX11OnWayland() {
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM") &&
        qEnvironmentVariable("XDG_SESSION_TYPE") == u"wayland" && !qEnvironmentVariableIsEmpty("DISPLAY")) {
        qputenv("QT_QPA_PLATFORM", "xcb");
    }
}

} // namespace

int main(int argc, char** argv) {
    PreferX11OnWayland();
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Tamsel"));
    QApplication::setOrganizationName(QStringLiteral("Orvane"));
    QApplication::setApplicationVersion(QStringLiteral(TAMSEL_VERSION));

    const Paths paths = Paths::FromEnvironment();
    XmlSecurity::SetTrustedFolder(paths.ResourceFolder());
    XmlSecurity::MapShippedDtds(paths.ResourceFolder());
    SingleInstance instance(paths.DataFolder());
    switch (instance.Acquire(kToolWaitMs)) {
    case SingleInstance::Result::Acquired:
        break;
    case SingleInstance::Result::HeldByWindow:
        return 0;
    case SingleInstance::Result::HeldByTool:
        ShowStartError(QStringLiteral("The data folder %1 is in use by tamsel-cli. Start Tamsel again when "
                                      "the command has finished.")
                           .arg(QDir::toNativeSeparators(paths.DataFolder())));
        return 1;
    }

    SystemDesktop desktop(paths);
    Runtime runtime(paths, desktop);
    QString message;
    if (!runtime.LoadNamespaceStylesheet(&message)) {
        ShowStartError(message);
        return 1;
    }
    runtime.InstallDataFolder();

    // The main window hides to the tray; the program ends when it has unloaded itself.
    QApplication::setQuitOnLastWindowClosed(false);
    WidgetSkinHost skinHost;
    frmTamselSkin skin(runtime.Settings(), paths, runtime.GetServices().clock, skinHost);
    frmMain main(runtime, skin, QSystemTrayIcon::isSystemTrayAvailable());
    QObject::connect(&instance, &SingleInstance::ShowRequested, &main, &frmMain::ShowAndRaise);
    QObject::connect(&main, &frmMain::Unloaded, &app, &QCoreApplication::quit, Qt::QueuedConnection);
    // A logout or a kill saves everything as the tray's Exit does.
    TerminationSignals termination;
    QObject::connect(&termination, &TerminationSignals::Received, &main, &frmMain::ShutDown);
    return app.exec();
}
