// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
// OPML at size: a file of 1000 feeds in ten folders, as another reader exports it, read by
// clsOPML, then subscribed to whole in a new profile as tamsel-cli import does it (the profile
// activated, 1000 channels created and assigned, every file saved).
//
// Prints one line per figure: name value unit.
#include "BenchFiles.h"
#include "BenchReport.h"
#include "app/AppHost.h"
#include "cli/CliArguments.h"
#include "cli/CliCommands.h"
#include "groups/clsOPML.h"
#include "platform/Clock.h"
#include "platform/HttpClient.h"
#include "platform/Paths.h"
#include "platform/XmlSecurity.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QTextStream>
#include <cstdio>
#include <cstdlib>
#include <vector>

namespace {

constexpr int kFolders = 10;
constexpr int kFeedsPerFolder = 100;
constexpr int kLoadRuns = 9;
constexpr int kImportRuns = 3;

class QuietHost final : public AppHost {
public:
    void PopupInfo(const QString& message, const QString&, const QString&) override {
        std::fprintf(stderr, "%s\n", qPrintable(message));
        std::exit(1);
    }
};

QByteArray ThousandFeeds() {
    QByteArray opml =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?><opml version=\"2.0\"><head><title>Many</title>"
        "</head><body>";
    for (int folder = 0; folder < kFolders; ++folder) {
        opml += "<outline text=\"Folder " + QByteArray::number(folder) + "\" title=\"Folder " +
                QByteArray::number(folder) + "\">";
        for (int feed = 0; feed < kFeedsPerFolder; ++feed) {
            const QByteArray n = QByteArray::number(folder * kFeedsPerFolder + feed);
            opml += "<outline type=\"rss\" text=\"Feed " + n + "\" title=\"Feed " + n + "\" xmlUrl=\"" +
                    ChannelUrl(folder * kFeedsPerFolder + feed) + "\" htmlUrl=\"http://feeds.example/" + n +
                    "/\"/>";
        }
        opml += "</outline>";
    }
    return opml + "</body></opml>\n";
}

// Runs one command as tamsel-cli does, in this process; what it printed. Ends the benchmark when
// the command failed: a figure of a failed run would mislead.
QString RunCli(const Paths& paths, const QStringList& arguments) {
    CliRequest request;
    QString error;
    if (!CliArguments::Parse(arguments, &request, &error)) {
        std::fprintf(stderr, "%s\n", qPrintable(error));
        std::exit(1);
    }
    QString output;
    QTextStream out(&output);
    QString errors;
    QTextStream err(&errors);
    CliCommands commands(paths, out, err, false);
    if (commands.Run(request) != CliCommands::kSuccess) {
        std::fprintf(stderr, "%s failed: %s\n", qPrintable(arguments.join(u' ')), qPrintable(errors));
        std::exit(1);
    }
    out.flush();
    return output;
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    QTemporaryDir home;
    qputenv("TAMSEL_HOME", home.path().toUtf8());
    const Paths paths = Paths::FromEnvironment();
    XmlSecurity::SetTrustedFolder(paths.ResourceFolder());
    XmlSecurity::MapShippedDtds(paths.ResourceFolder());
    const QString file = home.filePath(QStringLiteral("many.opml"));
    WriteFile(file, ThousandFeeds());

    SystemClock clock;
    NetworkHttpClient http(paths);
    QuietHost host;
    clsOPML opml(clock, http, host);
    const double load = TimeMs(kLoadRuns, [&] { opml.LoadOPML(file); });
    if (opml.GetCount() != kFolders * (kFeedsPerFolder + 1)) {
        std::fprintf(stderr, "read %d entries\n", opml.GetCount());
        return 1;
    }
    Print("opml_load_1000_ms", load, "ms");

    std::vector<double> imports;
    for (int run = 0; run < kImportRuns; ++run) {
        const QString name = QStringLiteral("Bench%1").arg(run);
        RunCli(paths, {QStringLiteral("profile-add"), name});
        QElapsedTimer timer;
        timer.start();
        const QString said =
            RunCli(paths, {QStringLiteral("import"), file, QStringLiteral("--profile"), name});
        imports.push_back(Ms(timer));
        if (!said.contains(QStringLiteral("Subscribed to 1000 new channel(s)"))) {
            std::fprintf(stderr, "import said: %s\n", qPrintable(said));
            return 1;
        }
    }
    const double import = Median(imports);
    Print("opml_import_1000_ms", import, "ms");
    return 0;
}
