// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
// The main window on a synthetic profile of 300 channels in ten groups and a bank of 100,000
// items (about 1 KB each): from constructing the window to the tree shown with every count, beside
// the bank's own load of the same file; then all 300 channels report a change at once and the
// folders are recounted once, as the window does a second later.
//
// Usage: main_window_benchmark [items]
// Prints one line per figure: name value unit.
#include "BenchFiles.h"
#include "BenchReport.h"
#include "app/Runtime.h"
#include "app/SharedHelpers.h"
#include "app/clsProfile.h"
#include "app/frmMain.h"
#include "feeds/RSSChannel.h"
#include "itembank/clsItemBank.h"
#include "itembank/modItemHandler.h"
#include "platform/Clock.h"
#include "platform/Paths.h"
#include "platform/SystemDesktop.h"
#include "platform/XmlSecurity.h"
#include "skin/SkinHost.h"
#include "skin/frmTamselSkin.h"

#include <QApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTreeWidget>

namespace {

constexpr int kDefaultItems = 100000;
constexpr int kChannels = 300;
constexpr int kGroups = 10;
constexpr int kLoadLimitMs = 600000;
constexpr unsigned kSeed = 20261123u;
const QString kProfile = QStringLiteral("Bench");

class SilentSkinHost final : public SkinHost {
public:
    void ShowMessage(const QString&) override {}
    QPointF CursorOn(const SkinSurface&) const override { return {-1000, -1000}; }
};

void WriteProfile(const Paths& paths, int items) {
    WriteFile(
        paths.ProfilesFolder() + QStringLiteral("/profiles.xml"),
        "<tamselprofiles><user><username>Bench</username><default>true</default></user></tamselprofiles>");
    QByteArray channels = "<tamselchannels>";
    QByteArray groups = "<groups>";
    for (int group = 0; group < kGroups; ++group) {
        groups += "<group><title>Group " + QByteArray::number(group) + "</title><expand>true</expand>";
        for (int channel = group; channel < kChannels; channel += kGroups) {
            groups += "<channel>" + ChannelUrl(channel) + "</channel>";
        }
        groups += "</group>";
    }
    for (int channel = 0; channel < kChannels; ++channel) {
        channels += "<channel><url>" + ChannelUrl(channel) + "</url><title>Channel " +
                    QByteArray::number(channel) +
                    " News</title><expire>100</expire><update>60</update><lastmod>-1</lastmod><id>B" +
                    QByteArray::number(channel) + "</id></channel>";
    }
    WriteFile(paths.ProfileFolder(kProfile) + QStringLiteral("/channels.xml"),
              channels + "</tamselchannels>");
    WriteFile(paths.ProfileFolder(kProfile) + QStringLiteral("/groups.xml"), groups + "</groups>");

    const QByteArray bank = BenchItemBank(items, kChannels, kSeed);
    WriteFile(paths.ProfileFolder(kProfile) + QStringLiteral("/items.xml"), bank);
}

bool Serve(const std::function<bool()>& done) {
    const QDeadlineTimer limit(kLoadLimitMs);
    while (!done()) {
        if (limit.hasExpired()) {
            return false;
        }
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    }
    return true;
}

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    const int items = argc > 1 ? std::max(1, QByteArray(argv[1]).toInt()) : kDefaultItems;
    QTemporaryDir home;
    qputenv("TAMSEL_HOME", home.path().toUtf8());
    const Paths paths = Paths::FromEnvironment();
    XmlSecurity::SetTrustedFolder(paths.ResourceFolder());
    XmlSecurity::MapShippedDtds(paths.ResourceFolder());
    WriteProfile(paths, items);
    Print("main_bank_items", items, "items");

    SystemDesktop desktop(paths);
    Runtime runtime(paths, desktop);
    if (!runtime.LoadNamespaceStylesheet(nullptr)) {
        std::fprintf(stderr, "no namespace stylesheet\n");
        return 1;
    }

    SilentSkinHost skinHost;
    frmTamselSkin skin(runtime.Settings(), paths, runtime.GetServices().clock, skinHost);
    QElapsedTimer timer;
    timer.start();
    frmMain window(runtime, skin, false);
    // Every group's node and every channel's node with its count.
    const int nodes = kGroups + kChannels;
    const bool shown = Serve([&window] {
        if (!window.ActiveProfile() || !window.Tree()->isVisible()) {
            return false;
        }
        int count = 0;
        for (QTreeWidgetItemIterator it(window.Tree()); *it; ++it) {
            ++count;
        }
        return count >= nodes;
    });
    const double startToTree = Ms(timer);
    if (!shown) {
        std::fprintf(stderr, "the tree did not come up\n");
        return 1;
    }
    Print("main_start_to_tree_ms", startToTree, "ms");
    // The bank alone, from the same files, now as warm in the page cache as they were for the window.
    const double bankLoad = TimeMs(1, [&] {
        SystemClock clock;
        clsItemBank bank(clock, paths);
        bank.init(kProfile);
    });
    Print("bank_load_ms", bankLoad, "ms");

    clsProfile& profile = *window.ActiveProfile();
    std::vector<RSSChannel*> channels;
    for (int channel = 0; channel < kChannels; ++channel) {
        channels.push_back(profile.GetChannel(QString::fromUtf8(ChannelUrl(channel))));
    }
    const QString recounted[] = {FolderKey::Today,   FolderKey::Yesterday,    FolderKey::Week,
                                 FolderKey::Deleted, FolderKey::Read,         FolderKey::Unread,
                                 FolderKey::Flagged, runtime.Site().HelpURL()};
    double updates = 0;
    double recount = 0;
    timer.restart();
    for (RSSChannel* channel : channels) {
        channel->SetTitle(channel->Title() + QStringLiteral(" *"));
        window.StateChange(kProfile, *channel);
    }
    updates = Ms(timer);
    // What the window does once, a second after the first change.
    timer.restart();
    for (const QString& key : recounted) {
        if (RSSChannel* channel = profile.GetChannel(key)) {
            channel->LoadChannelSet();
        }
    }
    for (const QString& key : recounted) {
        if (RSSChannel* channel = profile.GetChannel(key)) {
            window.StateChange(kProfile, *channel);
        }
    }
    recount = Ms(timer);
    Print("tree_statechange_300_ms", updates + recount, "ms");
    Print("tree_statechange_300_nodes_ms", updates, "ms");
    Print("tree_statechange_300_recount_ms", recount, "ms");
    return 0;
}
