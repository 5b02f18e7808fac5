// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
// The processor time the ticker takes while it scrolls a day's items for 20 s on a window
// system of its own (offscreen unless QT_QPA_PLATFORM says otherwise).
#include "BenchReport.h"

#include "itembank/clsItemBank.h"
#include "itembank/modItemHandler.h"
#include "platform/CRegSettings.h"
#include "platform/Clock.h"
#include "platform/Desktop.h"
#include "platform/Paths.h"
#include "skin/WidgetSkinHost.h"
#include "skin/frmTamselSkin.h"
#include "ticker/frmTicker.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTimer>

#include <sys/resource.h>

namespace {

constexpr int kItems = 60;
constexpr int kWarmUpMs = 1000;
constexpr int kRunMs = 20000;

class NoDesktop final : public Desktop {
public:
    void PlaySound(const QString&) override {}
    void OpenDocument(const QString&) override {}
};

double CpuSeconds() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    const auto seconds = [](const timeval& t) { return double(t.tv_sec) + double(t.tv_usec) / 1e6; };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

} // namespace

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    QApplication app(argc, argv);
    QTemporaryDir home;
    const Paths paths(QStringLiteral(TAMSEL_BUILD_DATA_DIR), home.path(),
                      home.path() + QStringLiteral("/config"));
    CRegSettings settings(paths);
    settings.SaveSetting(QStringLiteral("SETTINGS"), QStringLiteral("SKINNAME"), QStringLiteral("Default"));
    SystemClock clock;
    WidgetSkinHost host;
    frmTamselSkin skin(settings, paths, clock, host);
    skin.LoadSkin();

    const QString profile = QStringLiteral("Bench");
    QDir().mkpath(paths.ProfileFolder(profile));
    QString xml = QStringLiteral("<itembank>");
    const QString today = FormatItemDate(clock.Now().date());
    for (int i = 0; i < kItems; ++i) {
        xml +=
            QStringLiteral("<item channel=\"http://bench.example/feed\" date=\"%1\" time=\"08:%2:00\">"
                           "<title>Headline number %3 of a busy news day</title><description>d</description>"
                           "<read>false</read><flag>false</flag><delete>false</delete>"
                           "<channeltitle>Bench Channel</channeltitle></item>")
                .arg(today)
                .arg(i % 60, 2, 10, QLatin1Char('0'))
                .arg(i);
    }
    xml += QStringLiteral("</itembank>");
    QFile file(paths.ProfileFolder(profile) + QStringLiteral("/items.xml"));
    if (!file.open(QIODevice::WriteOnly) || file.write(xml.toUtf8()) < 0) {
        return 1;
    }
    file.close();
    clsItemBank bank(clock, paths);
    bank.init(profile);

    NoDesktop desktop;
    auto* ticker = new frmTicker(skin, settings, clock, desktop, [&bank] { return &bank; });
    ticker->show();

    double cpuStart = 0;
    QTimer::singleShot(kWarmUpMs, [&] { cpuStart = CpuSeconds(); });
    QTimer::singleShot(kWarmUpMs + kRunMs, [&] {
        const double used = CpuSeconds() - cpuStart;
        Print("ticker_cpu_percent", used / (kRunMs / 1000.0) * 100.0, "%");
        ticker->close();
        QCoreApplication::quit();
    });
    return QApplication::exec();
}
