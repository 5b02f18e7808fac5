// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
// tamsel-cli: the news of a Tamsel profile without a window, for timers, SSH sessions and scripts.
#include "cli/CliArguments.h"
#include "cli/CliCommands.h"
#include "platform/Paths.h"
#include "platform/XmlSecurity.h"

#include <QCoreApplication>
#include <QTextStream>
#include <cstdio>
#include <unistd.h>

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("Tamsel"));
    QCoreApplication::setOrganizationName(QStringLiteral("Orvane"));
    QCoreApplication::setApplicationVersion(QStringLiteral(TAMSEL_VERSION));

    QTextStream out(stdout);
    QTextStream err(stderr);
    constexpr int kUsageError = 2;
    CliRequest request;
    QString error;
    if (!CliArguments::Parse(QCoreApplication::arguments().mid(1), &request, &error)) {
        err << "tamsel-cli: " << error << "\nTry: tamsel-cli --help" << Qt::endl;
        return kUsageError;
    }
    if (request.help) {
        out << (request.command.isEmpty() ? CliArguments::Usage()
                                          : CliArguments::CommandUsage(request.command));
        return 0;
    }
    if (request.version) {
        out << "tamsel-cli " << TAMSEL_VERSION << Qt::endl;
        return 0;
    }

    const Paths paths = Paths::FromEnvironment();
    XmlSecurity::SetTrustedFolder(paths.ResourceFolder());
    XmlSecurity::MapShippedDtds(paths.ResourceFolder());
    CliCommands commands(paths, out, err, isatty(STDOUT_FILENO) == 1);
    return commands.Run(request);
}
