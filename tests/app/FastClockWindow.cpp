// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
// The window program put together as the tamsel executable does, on a clock that runs
// kTimeFactor times faster, so that the channels' first checks come within a fraction of a second
// instead of after 7 s. Nothing reaches the desktop. Prints "checked" on standard output once every
// channel of the active profile has finished its first check; SIGTERM, SIGINT and SIGHUP end it
// through the main window's own shutdown, as they end the real program.
#include "app/Runtime.h"
#include "app/clsProfile.h"
#include "app/frmMain.h"
#include "feeds/RSSChannel.h"
#include "platform/Paths.h"
#include "platform/SingleInstance.h"
#include "platform/TerminationSignals.h"
#include "platform/XmlSecurity.h"
#include "skin/WidgetSkinHost.h"
#include "skin/frmTamselSkin.h"
#include "support/RecordingDesktop.h"
#include "support/ScaledClock.h"

#include <QApplication>
#include <QSystemTrayIcon>
#include <QTimer>

#include <cstdio>

namespace {

// The 7 s of the first check become 280 ms; a fetch still has a second before it times out, also
// on a busy machine.
constexpr int kTimeFactor = 25;
constexpr int kWatchMs = 10;
constexpr int kToolWaitMs = 10000;

// Every channel of the active profile has run and ended a check: its reload timer no longer waits
// for the first check or for a free slot (both under a minute) but for the update period (0 for the
// built-in folders), or an hour after a failure.
bool AllChecked(const frmMain& main) {
    const clsProfile* profile = main.ActiveProfile();
    bool checked = profile && profile->ChannelCount() > 0;
    for (int i = 1; checked && i <= profile->ChannelCount(); ++i) {
        const RSSChannel* channel = profile->GetChannel(i);
        const quint32 interval = channel ? channel->ReloadInterval() : 0;
        checked = channel && !channel->Busy() && (interval == 0 || interval >= RSSChannel::kMinuteMs);
    }
    return checked;
}

} // namespace

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Tamsel"));
    QApplication::setOrganizationName(QStringLiteral("Orvane"));

    const Paths paths = Paths::FromEnvironment();
    XmlSecurity::SetTrustedFolder(paths.ResourceFolder());
    XmlSecurity::MapShippedDtds(paths.ResourceFolder());
    SingleInstance instance(paths.DataFolder());
    if (instance.Acquire(kToolWaitMs) != SingleInstance::Result::Acquired) {
        std::fprintf(stderr, "The data folder is in use.\n");
        return 1;
    }

    ScaledClock clock(kTimeFactor);
    RecordingDesktop desktop;
    Runtime runtime(paths, desktop, clock);
    QString message;
    if (!runtime.LoadNamespaceStylesheet(&message)) {
        std::fprintf(stderr, "%s\n", qUtf8Printable(message));
        return 1;
    }
    runtime.InstallDataFolder();

    QApplication::setQuitOnLastWindowClosed(false);
    WidgetSkinHost skinHost;
    frmTamselSkin skin(runtime.Settings(), paths, clock, skinHost);
    frmMain main(runtime, skin, QSystemTrayIcon::isSystemTrayAvailable());
    QObject::connect(&main, &frmMain::Unloaded, &app, &QCoreApplication::quit, Qt::QueuedConnection);
    TerminationSignals termination;
    QObject::connect(&termination, &TerminationSignals::Received, &main, &frmMain::ShutDown);

    // Watched on real time: the scaled clock is the program's, not the observer's.
    QTimer watch;
    QObject::connect(&watch, &QTimer::timeout, &main, [&watch, &main] {
        if (AllChecked(main)) {
            watch.stop();
            std::printf("checked\n");
            std::fflush(stdout);
        }
    });
    watch.start(kWatchMs);
    return QApplication::exec();
}
