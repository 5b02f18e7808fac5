// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
// The item viewer on a large bank (100,000 items over 300 channels by default, half of them read,
// one channel of 5,000 items): the time from the user's action to the window being ready to
// paint. Runs off screen unless a display is asked for.
//
// Usage: views_benchmark [items]
// Prints one line per figure: name value unit.
#include "BenchReport.h"
#include "app/HeadlessHost.h"
#include "app/MakerSite.h"
#include "app/Services.h"
#include "app/clsProfile.h"
#include "feeds/RSSChannel.h"
#include "itembank/clsItemBank.h"
#include "itembank/modItemHandler.h"
#include "platform/CRegSettings.h"
#include "platform/Clock.h"
#include "platform/Desktop.h"
#include "platform/HttpClient.h"
#include "platform/XmlSecurity.h"
#include "platform/XsltStylesheet.h"
#include "skin/SkinHost.h"
#include "skin/frmTamselSkin.h"
#include "views/GuardedBrowser.h"
#include "views/frmViewer.h"

#include <QAbstractTextDocumentLayout>
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QKeyEvent>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QTextDocument>
#include <memory>
#include <random>

namespace {

constexpr int kDefaultItems = 100000;
constexpr int kChannels = 300;
constexpr int kBigChannelItems = 5000;
constexpr int kDays = 60;
constexpr int kRuns = 9;
constexpr unsigned kSeed = 20261123u;
const QString kProfile = QStringLiteral("Bench");
const QString kUnread = QStringLiteral("_tamsel/unread");
const QString kBigChannel = QStringLiteral("http://bench.example.org/big.xml");

// No network: requests are accepted and never answered.
class SilentRequest final : public HttpRequest {
public:
    QString GetHeader(const QString&) const override { return {}; }
    QByteArray Body() const override { return {}; }
    QString ErrorString() const override { return {}; }
};
class NoNetwork final : public HttpClient {
public:
    std::unique_ptr<HttpRequest> Execute(const QUrl&, const QByteArray&) override {
        return std::make_unique<SilentRequest>();
    }
};
class NoDesktop final : public Desktop {
public:
    void PlaySound(const QString&) override {}
    void OpenDocument(const QString&) override {}
};
class QuietSkinHost final : public SkinHost {
public:
    void ShowMessage(const QString& text) override { std::fprintf(stderr, "%s\n", qPrintable(text)); }
    QPointF CursorOn(const SkinSurface&) const override { return {}; }
};

QString Escaped(const QString& text) {
    return text.toHtmlEscaped();
}

// items.xml of `count` items; every channel gets an even share, the big one kBigChannelItems.
void WriteBank(const QString& folder, int count) {
    std::mt19937 random(kSeed);
    const QStringList words = {
        QStringLiteral("storm"),   QStringLiteral("harbour"), QStringLiteral("council"),
        QStringLiteral("market"),  QStringLiteral("railway"), QStringLiteral("festival"),
        QStringLiteral("science"), QStringLiteral("river"),   QStringLiteral("election"),
        QStringLiteral("garden"),  QStringLiteral("bridge"),  QStringLiteral("orchestra")};
    const QDate today = QDate::currentDate();
    QByteArray xml = "<itembank>";
    xml.reserve(qsizetype(count) * 1100);
    for (int i = 0; i < count; ++i) {
        const bool big = i % (count / kBigChannelItems) == 0;
        const QString channel = big ? kBigChannel
                                    : QStringLiteral("http://bench.example.org/c") +
                                          QString::number(random() % kChannels) + QStringLiteral(".xml");
        QString title;
        QString body;
        for (int w = 0; w < 8; ++w) {
            title += words.at(int(random() % words.size())) + u' ';
        }
        for (int w = 0; w < 120; ++w) {
            body += words.at(int(random() % words.size())) + u' ';
        }
        const QString date = FormatItemDate(today.addDays(-int(random() % kDays)));
        const bool read = !big && random() % 2 == 0;
        const QString item =
            QStringLiteral("<item channel=\"") + channel + QStringLiteral("\" date=\"") + date +
            QStringLiteral("\" time=\"12:00:00\"><title>") + Escaped(title) +
            QStringLiteral("</title><link>http://bench.example.org/") + QString::number(i) +
            QStringLiteral("</link><description>") +
            Escaped(QStringLiteral("<p>") + body + QStringLiteral("</p>")) +
            QStringLiteral("</description><guid>g") + QString::number(i) + QStringLiteral("</guid><read>") +
            (read ? QStringLiteral("true") : QStringLiteral("false")) +
            QStringLiteral(
                "</read><flag>false</flag><delete>false</delete><channeltitle>Channel</channeltitle></item>");
        xml += item.toUtf8();
    }
    xml += "</itembank>";
    QDir().mkpath(folder);
    QFile file(folder + QStringLiteral("/items.xml"));
    if (!file.open(QIODevice::WriteOnly) || file.write(xml) != xml.size()) {
        std::fprintf(stderr, "cannot write the bank\n");
        std::exit(1);
    }
}

void Type(QLineEdit& box, QChar letter) {
    QKeyEvent press(QEvent::KeyPress, Qt::Key_unknown, Qt::NoModifier, QString(letter));
    QCoreApplication::sendEvent(&box, &press);
}

} // namespace

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    QApplication app(argc, argv);
    const int count =
        argc > 1 ? std::max(kBigChannelItems, QString::fromLocal8Bit(argv[1]).toInt()) : kDefaultItems;
    QTemporaryDir home;
    const QString resources = QStringLiteral(TAMSEL_BUILD_DATA_DIR);
    XmlSecurity::SetTrustedFolder(resources);
    XmlSecurity::MapShippedDtds(resources);
    const Paths paths(resources, home.path(), home.path() + QStringLiteral("/config"));
    WriteBank(paths.ProfileFolder(kProfile), count);

    SystemClock clock;
    CRegSettings settings(paths);
    settings.SaveSetting(QStringLiteral("SETTINGS"), QStringLiteral("SKINNAME"), QStringLiteral("Default"));
    NoNetwork http;
    NoDesktop desktop;
    QuietSkinHost skinHost;
    const XsltStylesheet namespaceTransform =
        XsltStylesheet::Load(paths.ResourceFile(QStringLiteral("tamselns.xsl")));
    MakerSite site(settings);
    HeadlessHost host(clock, namespaceTransform, site.HelpURL());
    frmTamselSkin skin(settings, paths, clock, skinHost);
    skin.LoadSkin();
    clsProfile profile(Services{clock, settings, http, desktop, paths}, host);
    profile.SetName(kProfile);
    host.ChangeUser(&profile);
    const ViewerServices services{host, skin, desktop, http, settings};
    const QString page = paths.ProfileFolder(kProfile) + QStringLiteral("/F5_tmp.html");

    std::unique_ptr<frmViewer> viewer;
    Print("viewer_open_unread_ms",
          TimeMs(kRuns,
                 [&] {
                     viewer = std::make_unique<frmViewer>(services);
                     viewer->SetCaption(QStringLiteral("Unread"));
                     viewer->SetupView(kUnread, page);
                     viewer->show();
                     QCoreApplication::sendPostedEvents();
                 }),
          "ms");
    std::printf("# unread items %zu\n", viewer->Items().size());

    QLineEdit& search = *viewer->txtSearch();
    const QString prefixes = QStringLiteral("sthcmrfegbeo");
    const QString next = QStringLiteral("tairaioalrrr");
    int run = 0;
    Print("viewer_search_keystroke_ms",
          TimeMs(kRuns,
                 [&] {
                     search.clear();
                     Type(search, prefixes.at(run % prefixes.size()));
                     QCoreApplication::sendPostedEvents();
                     const QChar letter = next.at(run % next.size());
                     ++run;
                     Type(search, letter);
                     QCoreApplication::sendPostedEvents();
                 }),
          "ms");
    // The bank's share of a keystroke, for comparison: the same refinement without the window.
    const clsItemBank& bank = *profile.ItemBank();
    run = 0;
    const double bankMs = TimeMs(kRuns, [&] {
        const QString prefix(prefixes.at(run % prefixes.size()));
        bank.SubChannelList(kUnread, QString(), prefix.toUpper());
        const QString longer = prefix.toUpper() + next.at(run % next.size()).toUpper();
        ++run;
        bank.SubChannelList(kUnread, QString(), longer);
    });
    std::printf("# bank part of a keystroke, both searches %.3f ms\n", bankMs);
    search.clear();
    Type(search, QChar(u's'));
    search.clear();
    viewer->LoadList();

    Print("viewer_next_page_ms",
          TimeMs(kRuns,
                 [&] {
                     viewer->SkinHandler(QStringLiteral("nextpage"));
                     QCoreApplication::sendPostedEvents();
                 }),
          "ms");

    viewer->SkinHandler(QStringLiteral("firstpage"));
    int item = int(viewer->Items().size()) - 1;
    std::vector<double> times;
    for (int i = 0; i < kRuns; ++i) {
        viewer->SkinHandler(QStringLiteral("firstpage"));
        QElapsedTimer timer;
        timer.start();
        viewer->ShowItem(item--);
        viewer->webView()->document()->documentLayout()->documentSize();
        QCoreApplication::sendPostedEvents();
        times.push_back(Ms(timer));
    }
    Print("viewer_show_item_ms", Median(times), "ms");
    viewer.reset();

    RSSChannel big(
        FeedServices{clock, settings, http, paths, host, namespaceTransform, site.HelpURL(), site.NewsURL()});
    big.GenerateChannel(kBigChannel, QStringLiteral("Big"), 0, 0, QStringLiteral("B01"),
                        paths.ProfileFolder(kProfile), kProfile);
    big.StopReloading();
    times.clear();
    for (int i = 0; i < kRuns; ++i) {
        for (int index = 0; index < big.ItemCount(); ++index) {
            SetItemRead(big.ItemNode(index), false);
        }
        QElapsedTimer timer;
        timer.start();
        big.MarkAllRead();
        times.push_back(Ms(timer));
    }
    std::printf("# big channel items %d\n", big.ItemCount());
    Print("mark_all_read_ms", Median(times), "ms");
    host.ChangeUser(nullptr);
    return 0;
}
