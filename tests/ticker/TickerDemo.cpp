// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
// Shows the ticker over a profile with a few of today's items, beside a maximised window, to be
// looked at on a real display: ticker_demo SKIN EDGE [EFFECT [view]]; "view" opens the first item
// in the item view. The data live in $TAMSEL_HOME.
#include "TickerItems.h"

#include "itembank/clsItemBank.h"
#include "platform/CRegSettings.h"
#include "platform/Clock.h"
#include "platform/Desktop.h"
#include "platform/HttpClient.h"
#include "platform/Paths.h"
#include "platform/XsltStylesheet.h"
#include "skin/WidgetSkinHost.h"
#include "skin/frmTamselSkin.h"
#include "ticker/frmTicker.h"
#include "ticker/frmTickerView.h"
#include "views/ImageLoader.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QTimer>

namespace {

class NoDesktop final : public Desktop {
public:
    void PlaySound(const QString&) override {}
    void OpenDocument(const QString&) override {}
};

} // namespace

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    const QStringList args = QCoreApplication::arguments();
    const QString skinName = args.value(1, QStringLiteral("Default"));
    const QString edge = args.value(2, QStringLiteral("1"));
    const QString effect = args.value(3, QStringLiteral("1"));
    const Paths paths = Paths::FromEnvironment();
    CRegSettings settings(paths);
    settings.SaveSetting(QStringLiteral("SETTINGS"), QStringLiteral("SKINNAME"), skinName);
    settings.SaveSetting(frmTicker::kSection, QStringLiteral("Edge"), edge);
    settings.SaveSetting(frmTicker::kSection, QStringLiteral("Effect"), effect);
    SystemClock clock;
    WidgetSkinHost host;
    frmTamselSkin skin(settings, paths, clock, host);
    skin.LoadSkin();

    const QString profile = QStringLiteral("Demo");
    QDir().mkpath(paths.ProfileFolder(profile));
    QList<TickerItem> items;
    for (const char* title : {"Council approves the new tram line through the old town",
                              "Rain expected all weekend", "Library extends its opening hours"}) {
        const QString text = QString::fromUtf8(title);
        items.append({text, QStringLiteral("The full story of %1, as the channel tells it.").arg(text),
                      QStringLiteral("07:30:00"), QStringLiteral("City News"), QString()});
    }
    QFile file(paths.ProfileFolder(profile) + QStringLiteral("/items.xml"));
    if (!file.open(QIODevice::WriteOnly) || file.write(ItemBankOf(items, clock.Now().date())) < 0) {
        return 1;
    }
    file.close();
    clsItemBank bank(clock, paths);
    bank.init(profile);

    QLabel maximised(QStringLiteral("A maximised window"));
    maximised.setAlignment(Qt::AlignCenter);
    maximised.setStyleSheet(QStringLiteral("background: #335; color: white; font-size: 24px"));
    maximised.showMaximized();

    NoDesktop desktop;
    auto* ticker = new frmTicker(skin, settings, clock, desktop, [&bank] { return &bank; });
    NetworkHttpClient http(paths);
    ImageLoader images(http);
    const XsltStylesheet namespaceTransform =
        XsltStylesheet::Load(paths.ResourceFolder() + QStringLiteral("/tamselns.xsl"));
    const QString page = paths.ProfileFolder(profile) + QStringLiteral("/tck_tmp.html");
    frmTickerView view(skin, settings, clock, desktop, images, namespaceTransform, [&page] { return page; });
    ticker->SetItemView(&view);
    ticker->show();
    if (args.value(4) == QLatin1String("view")) {
        QTimer::singleShot(500, ticker, [ticker] { ticker->ShowItem(); });
    }
    return QApplication::exec();
}
