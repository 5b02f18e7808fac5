// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
// Channels at size.
//
// Ingest: 200 feeds of 50 items each, served by a local HTTP server in this process, are all
// force-loaded at once and run through the whole road (network client, namespace stylesheet,
// walk and stamping, item bank) until every channel is idle again.
// Status: RequestAllStatus over 300 channels (nine built-ins and 291 of the user's) on a bank of
// 100,000 items, as the main window runs it to redraw every tree node.
//
// Prints one line per figure: name value unit.
#include "BenchReport.h"
#include "app/HeadlessHost.h"
#include "app/MakerSite.h"
#include "app/Services.h"
#include "app/clsProfile.h"
#include "feeds/RSSChannel.h"
#include "feeds/colChannels.h"
#include "itembank/clsItemBank.h"
#include "itembank/modItemHandler.h"
#include "platform/CRegSettings.h"
#include "platform/Clock.h"
#include "platform/Desktop.h"
#include "platform/HttpClient.h"
#include "platform/Memory.h"
#include "platform/XmlSecurity.h"
#include "platform/XsltStylesheet.h"
#include "support/EventPump.h"
#include "support/LocalHttpServer.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QTimer>
#include <algorithm>
#include <cstdio>
#include <functional>
#include <vector>

namespace {

constexpr int kFeeds = 200;
constexpr int kItemsPerFeed = 50;
constexpr int kBankItems = 100000;
constexpr int kStatusChannels = 300;
constexpr int kDays = 60;
constexpr int kStatusRuns = 7;
constexpr int kIngestLimitMs = 120000;
constexpr double kBytesPerMb = 1024.0 * 1024.0;

class QuietDesktop final : public Desktop {
public:
    void PlaySound(const QString&) override {}
    void OpenDocument(const QString&) override {}
};

QByteArray Feed(int feed) {
    const QByteArray f = QByteArray::number(feed);
    QByteArray xml =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?><rss version=\"2.0\"><channel><title>Bench feed " + f +
        "</title><link>http://bench.example.org/" + f +
        "/</link><description>A feed of the benchmark</description>"
        "<pubDate>Mon, 14 Nov 2005 08:00:00 GMT</pubDate>";
    for (int item = 0; item < kItemsPerFeed; ++item) {
        const QByteArray i = QByteArray::number(item);
        xml += "<item><title>Story " + i + " of feed " + f + "</title><link>http://bench.example.org/" + f +
               "/" + i + "</link><guid>bench-" + f + "-" + i + "</guid><pubDate>Tue, 15 Nov 2005 " +
               QByteArray::number(10 + item % 10) + ":" + QByteArray::number(10 + item) +
               ":00 GMT</pubDate><description>" + QByteArray(300, char('a' + item % 26)) + " " + i + " " + f +
               "</description></item>";
    }
    return xml + "</channel></rss>";
}

struct Program {
    explicit Program(const Paths& folders)
        : paths(folders), settings(paths), http(paths),
          namespaceTransform(XsltStylesheet::Load(paths.ResourceFile(QStringLiteral("tamselns.xsl")))),
          site(settings), host(clock, namespaceTransform, site.HelpURL()) {}

    Paths paths;
    SystemClock clock;
    CRegSettings settings;
    NetworkHttpClient http;
    QuietDesktop desktop;
    XsltStylesheet namespaceTransform;
    MakerSite site;
    HeadlessHost host;
};

void Ingest(const Paths& paths) {
    Program program(paths);
    if (program.namespaceTransform.IsNull()) {
        std::fprintf(stderr, "tamselns.xsl could not be loaded\n");
        return;
    }
    clsProfile profile(Services{program.clock, program.settings, program.http, program.desktop, paths},
                       program.host);
    profile.SetName(QStringLiteral("Ingest"));
    program.host.ChangeUser(&profile);
    profile.Channels()->DelChannel(program.site.NewsURL());
    profile.Channels()->DelChannel(program.site.HelpURL());

    LocalHttpServer server;
    std::vector<RSSChannel*> channels;
    for (int feed = 0; feed < kFeeds; ++feed) {
        const QString path = QStringLiteral("/feed/%1.xml").arg(feed);
        server.ServeXml(path, Feed(feed));
        channels.push_back(profile.Channels()->AddChannel(server.Url(path).toString()));
    }

    QElapsedTimer timer;
    timer.start();
    for (RSSChannel* channel : channels) {
        channel->ForceLoadRSS();
    }
    const bool finished = PumpUntil(
        [&channels] {
            return std::none_of(channels.begin(), channels.end(), [](RSSChannel* c) { return c->Busy(); });
        },
        kIngestLimitMs);
    const double seconds = double(timer.nsecsElapsed()) / 1e9;
    const qint64 resident = Memory::ResidentBytes();

    const int failed =
        int(std::count_if(channels.begin(), channels.end(), [](RSSChannel* c) { return c->LoadFailed(); }));
    const int stored = profile.ItemBank()->Count();
    if (!finished || failed > 0 || stored != kFeeds * kItemsPerFeed) {
        std::fprintf(stderr, "ingest incomplete: finished %d, failed channels %d, items stored %d\n",
                     int(finished), failed, stored);
    }
    Print("feeds_per_s", kFeeds / seconds, "feeds/s");
    Print("items_per_s", stored / seconds, "items/s");
    Print("ingest_rss_mb", double(resident) / kBytesPerMb, "MB");
    program.host.ChangeUser(nullptr);
}

// A bank of 100,000 items over the user's channels, dated over 60 days, half of them read.
void WriteStatusProfile(const Paths& paths, const QString& name, int userChannels) {
    const QString folder = paths.ProfileFolder(name);
    QDir().mkpath(folder);
    const QDate today = QDate::currentDate();
    QByteArray items = "<itembank>";
    items.reserve(kBankItems * 420);
    for (int i = 0; i < kBankItems; ++i) {
        const QByteArray n = QByteArray::number(i);
        const int channel = i % userChannels;
        items += "<item channel=\"http://status.example.org/" + QByteArray::number(channel) + "\" date=\"" +
                 FormatItemDate(today.addDays(-(i % kDays))).toUtf8() + "\" time=\"12:00:00\"><title>Item " +
                 n + "</title><link>http://status.example.org/i/" + n + "</link><guid>status-" + n +
                 "</guid><description>" + QByteArray(200, char('a' + i % 26)) + "</description><read>" +
                 (i % 2 ? "true" : "false") + "</read><flag>" + (i % 97 == 0 ? "true" : "false") +
                 "</flag><delete>" + (i % 101 == 0 ? "true" : "false") + "</delete><channeltitle>Channel " +
                 QByteArray::number(channel) + "</channeltitle></item>";
    }
    items += "</itembank>";
    QByteArray list = "<tamselchannels>";
    for (int channel = 0; channel < userChannels; ++channel) {
        const QByteArray c = QByteArray::number(channel);
        list += "<channel><url>http://status.example.org/" + c + "</url><title>Channel " + c +
                "</title><id>S" + c + "</id><update>60</update></channel>";
    }
    list += "</tamselchannels>";
    for (const auto& [file, bytes] :
         {std::pair{QStringLiteral("/items.xml"), items}, std::pair{QStringLiteral("/channels.xml"), list}}) {
        QFile out(folder + file);
        if (out.open(QIODevice::WriteOnly)) {
            out.write(bytes);
        }
    }
}

void Status(const Paths& paths) {
    Program program(paths);
    const QString name = QStringLiteral("Status");
    const int userChannels = kStatusChannels - colChannels::kBuiltinCount;
    WriteStatusProfile(paths, name, userChannels);
    clsProfile profile(Services{program.clock, program.settings, program.http, program.desktop, paths},
                       program.host);
    profile.SetName(name);
    program.host.ChangeUser(&profile);
    if (profile.ChannelCount() != kStatusChannels || profile.ItemBank()->Count() != kBankItems) {
        std::fprintf(stderr, "status profile incomplete: %d channels, %d items\n", profile.ChannelCount(),
                     profile.ItemBank()->Count());
    }
    std::vector<double> runs;
    for (int run = 0; run < kStatusRuns; ++run) {
        QElapsedTimer timer;
        timer.start();
        profile.Channels()->RequestAllStatus();
        runs.push_back(double(timer.nsecsElapsed()) / 1e6);
    }
    std::sort(runs.begin(), runs.end());
    Print("requestallstatus_ms", runs[runs.size() / 2], "ms");
    program.host.ChangeUser(nullptr);
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    QTemporaryDir home;
    const QString resources = QStringLiteral(TAMSEL_BUILD_DATA_DIR);
    XmlSecurity::SetTrustedFolder(resources);
    XmlSecurity::MapShippedDtds(resources);
    const Paths paths(resources, home.path(), home.path() + QStringLiteral("/config"));
    Ingest(paths);
    Status(paths);
    return 0;
}
