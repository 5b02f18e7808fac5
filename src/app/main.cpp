// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/Runtime.h"
#include "app/frmMain.h"
#include "platform/Paths.h"
#include "platform/SingleInstance.h"
#include "platform/SystemDesktop.h"
#include "platform/XmlSecurity.h"

#include <QApplication>
#include <QDir>
#include <QMessageBox>

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

} // namespace

int main(int argc, char** argv) {
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

    frmMain main(runtime);
    QObject::connect(&instance, &SingleInstance::ShowRequested, &main, &frmMain::ShowAndRaise);
    main.show();
    return app.exec();
}
