// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/Runtime.h"
#include "app/frmMain.h"
#include "platform/Paths.h"
#include "platform/SingleInstance.h"
#include "platform/SystemDesktop.h"
#include "platform/XmlSecurity.h"

#include <QApplication>
#include <QMessageBox>

#include <cstdio>

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Tamsel"));
    QApplication::setOrganizationName(QStringLiteral("Orvane"));
    QApplication::setApplicationVersion(QStringLiteral(TAMSEL_VERSION));

    const Paths paths = Paths::FromEnvironment();
    XmlSecurity::SetTrustedFolder(paths.ResourceFolder());
    XmlSecurity::MapShippedDtds(paths.ResourceFolder());
    SingleInstance instance(paths.DataFolder());
    if (!instance.Acquire()) {
        return 0;
    }

    SystemDesktop desktop(paths);
    Runtime runtime(paths, desktop);
    QString message;
    if (!runtime.LoadNamespaceStylesheet(&message)) {
        std::fprintf(stderr, "%s\n", qUtf8Printable(message));
        // Without a screen to show it on, standard error has said it.
        if (QGuiApplication::platformName() != QStringLiteral("offscreen")) {
            QMessageBox::critical(nullptr, QStringLiteral("Tamsel"), message, QMessageBox::Ok);
        }
        return 1;
    }
    runtime.InstallDataFolder();

    frmMain main(runtime);
    QObject::connect(&instance, &SingleInstance::ShowRequested, &main, &frmMain::ShowAndRaise);
    main.show();
    return app.exec();
}
