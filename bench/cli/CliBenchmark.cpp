// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
// tamsel-cli on a large bank: a synthetic profile (100,000 items over 300 channels by default,
// about 1 KB of text each, half of them read, dated over the last 60 days) is opened as the
// program opens it (a copy of the files, the profile activated, the bank loaded), then list and
// stats run on it as the commands run; last, the built program is run whole.
//
// Usage: cli_benchmark [items]
// Prints one line per figure: name value unit.
#include "BenchFiles.h"
#include "BenchReport.h"
#include "cli/CliArguments.h"
#include "cli/CliCommands.h"
#include "cli/CliSession.h"
#include "itembank/modItemHandler.h"
#include "platform/Paths.h"
#include "platform/XmlSecurity.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTextStream>
#include <algorithm>
#include <cstdio>
#include <functional>
#include <vector>

namespace {

constexpr int kDefaultItems = 100000;
constexpr int kChannels = 300;
constexpr int kRuns = 5;
constexpr int kProcessRuns = 3;
constexpr unsigned kSeed = 20261116u;
constexpr double kBytesPerMb = 1024.0 * 1024.0;
const QString kProfile = QStringLiteral("Bench");

// The profile's files: profiles.xml, channels.xml and an items.xml of `items` items.
qint64 WriteProfile(const Paths& paths, int items) {
    WriteFile(
        paths.ProfilesFolder() + QStringLiteral("/profiles.xml"),
        "<tamselprofiles><user><username>Bench</username><default>true</default></user></tamselprofiles>");
    QByteArray channels = "<tamselchannels>";
    for (int channel = 0; channel < kChannels; ++channel) {
        channels += "<channel><url>" + ChannelUrl(channel) + "</url><title>Channel " +
                    QByteArray::number(channel) +
                    " News</title><expire>100</expire><update>60</update><lastmod>-1</lastmod><id>B" +
                    QByteArray::number(channel) + "</id></channel>";
    }
    WriteFile(paths.ProfileFolder(kProfile) + QStringLiteral("/channels.xml"),
              channels + "</tamselchannels>");

    const QByteArray bank = BenchItemBank(items, kChannels, kSeed);
    WriteFile(paths.ProfileFolder(kProfile) + QStringLiteral("/items.xml"), bank);
    return bank.size();
}

CliRequest Request(const QStringList& arguments) {
    CliRequest request;
    if (!CliArguments::Parse(arguments, &request, nullptr)) {
        std::fprintf(stderr, "bad request\n");
        std::exit(1);
    }
    return request;
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    const int items = argc > 1 ? std::max(1, QByteArray(argv[1]).toInt()) : kDefaultItems;
    QTemporaryDir home;
    qputenv("TAMSEL_HOME", home.path().toUtf8());
    const Paths paths = Paths::FromEnvironment();
    XmlSecurity::SetTrustedFolder(paths.ResourceFolder());
    XmlSecurity::MapShippedDtds(paths.ResourceFolder());
    Print("cli_bank_items", items, "items");
    Print("cli_bank_file", double(WriteProfile(paths, items)) / kBytesPerMb, "MB");

    QString error;
    const double open = TimeMs(1, [&] {
        CliSession session(paths, CliSession::Access::ReadCopy);
        if (!session.Open(&error) || !session.Activate(QString(), &error)) {
            std::fprintf(stderr, "%s\n", qPrintable(error));
            std::exit(1);
        }
        session.Close();
    });
    Print("cli_open_activate_close", open, "ms");

    CliSession session(paths, CliSession::Access::ReadCopy);
    QElapsedTimer timer;
    timer.start();
    clsProfile* profile = nullptr;
    if (session.Open(&error)) {
        profile = session.Activate(QString(), &error);
    }
    if (!profile) {
        std::fprintf(stderr, "%s\n", qPrintable(error));
        return 1;
    }
    Print("cli_open_activate", double(timer.nsecsElapsed()) / 1e6, "ms");

    QString output;
    QTextStream out(&output);
    QString errors;
    QTextStream err(&errors);
    CliCommands commands(paths, out, err, false);
    const std::pair<const char*, QStringList> cases[] = {
        {"cli_list_unread", {QStringLiteral("list")}},
        {"cli_list_unread_json", {QStringLiteral("list"), QStringLiteral("--json")}},
        {"cli_list_unread_page_500",
         {QStringLiteral("list"), QStringLiteral("--page"), QStringLiteral("500")}},
        {"cli_list_today", {QStringLiteral("list"), QStringLiteral("--folder"), QStringLiteral("today")}},
        {"cli_list_week_filter_old",
         {QStringLiteral("list"), QStringLiteral("--folder"), QStringLiteral("week"),
          QStringLiteral("--filter"), QStringLiteral("old")}},
        {"cli_list_channel",
         {QStringLiteral("list"), QStringLiteral("--channel"), QString::fromUtf8(ChannelUrl(7))}},
        {"cli_list_search",
         {QStringLiteral("list"), QStringLiteral("--search"), QStringLiteral("harbour bridge")}},
        {"cli_list_tagged_search",
         {QStringLiteral("list"), QStringLiteral("--folder"), QStringLiteral("tagged"),
          QStringLiteral("--search"), QStringLiteral("winter")}},
        {"cli_stats", {QStringLiteral("stats")}},
    };
    for (const auto& [name, arguments] : cases) {
        const CliRequest request = Request(arguments);
        int status = 0;
        const double ms = TimeMs(kRuns, [&] {
            output.clear();
            status = commands.RunOnProfile(session, *profile, request);
            out.flush();
        });
        if (status != 0) {
            std::fprintf(stderr, "%s failed: %s\n", name, qPrintable(errors));
            return 1;
        }
        Print(name, ms, "ms");
    }
    timer.restart();
    session.Close();
    Print("cli_close", double(timer.nsecsElapsed()) / 1e6, "ms");

    // The built program, start to end, as a user sees it.
    for (const auto& [name, arguments] :
         {std::pair<const char*, QStringList>{"cli_process_list", {QStringLiteral("list")}},
          std::pair<const char*, QStringList>{"cli_process_stats", {QStringLiteral("stats")}}}) {
        const double ms = TimeMs(kProcessRuns, [&arguments] {
            QProcess process;
            process.start(QStringLiteral(TAMSEL_CLI_PATH), arguments);
            process.waitForFinished(-1);
            process.readAllStandardOutput();
        });
        Print(name, ms, "ms");
    }
    return 0;
}
