// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/CliCommands.h"

#include "app/HeadlessHost.h"
#include "app/MakerSite.h"
#include "app/Runtime.h"
#include "app/SharedHelpers.h"
#include "app/clsProfile.h"
#include "app/colProfiles.h"
#include "cli/CliArguments.h"
#include "cli/CliSession.h"
#include "cli/FetchRound.h"
#include "cli/HtmlToText.h"
#include "cli/ItemFormatter.h"
#include "cli/LastListStore.h"
#include "feeds/RSSChannel.h"
#include "groups/FeedDiscovery.h"
#include "groups/RSSGroup.h"
#include "groups/clsOPML.h"
#include "itembank/clsItemBank.h"
#include "itembank/modItemHandler.h"
#include "platform/CRegSettings.h"

#include <QDir>
#include <QEventLoop>
#include <QFileInfo>
#include <QTextStream>
#include <QUrl>

namespace {

const QString kTrue = QStringLiteral("true");
const QString kFalse = QStringLiteral("false");
constexpr int kCountColumn = 7;

bool IsWebUrl(const QUrl& url) {
    const QString scheme = url.scheme().toLower();
    return url.isValid() && (scheme == QStringLiteral("http") || scheme == QStringLiteral("https")) &&
           !url.host().isEmpty();
}

bool IsFileUrl(const QUrl& url) {
    return url.isValid() && url.scheme().toLower() == QStringLiteral("file") && !url.path().isEmpty();
}

QString ChannelCaption(RSSChannel& channel) {
    const QString title = HtmlToText::Printable(channel.Title());
    const QString url = HtmlToText::Printable(channel.URL());
    return title.isEmpty() || title == url ? url : title + QStringLiteral(" <") + url + u'>';
}

QString FeedCaption(const DiscoveredFeed& feed) {
    const QString title = HtmlToText::Printable(feed.title).simplified();
    const QString url = HtmlToText::Printable(feed.url);
    return title.isEmpty() ? url : title + QStringLiteral(" <") + url + u'>';
}

QString CountLine(qsizetype items, qsizetype unread, const QString& what) {
    return QString::number(items).rightJustified(kCountColumn) +
           QString::number(unread).rightJustified(kCountColumn) + QStringLiteral("  ") + what;
}

} // namespace

CliCommands::CliCommands(Paths paths, QTextStream& out, QTextStream& err, bool interactive)
    : m_paths(std::move(paths)), m_out(out), m_err(err), m_interactive(interactive) {}

int CliCommands::Fail(const QString& message) {
    m_err << message << Qt::endl;
    return kFailure;
}

int CliCommands::Run(const CliRequest& request) {
    CliSession session(m_paths, CliArguments::ChangesData(request.command) ? CliSession::Access::Write
                                                                           : CliSession::Access::ReadCopy);
    QString error;
    if (!session.Open(&error)) {
        return Fail(error);
    }
    int status = kFailure;
    if (request.command == QStringLiteral("profiles")) {
        status = Profiles(session);
    } else if (request.command == QStringLiteral("profile-add")) {
        status = ProfileAdd(session, request);
    } else if (request.command == QStringLiteral("import")) {
        status = Import(session, request);
    } else if (request.command == QStringLiteral("add")) {
        status = Add(session, request);
    } else if (clsProfile* profile = session.Activate(request.profile, &error)) {
        status = RunOnProfile(session, *profile, request);
    } else {
        status = Fail(error);
    }
    m_out.flush();
    if (!session.Close(&error)) {
        status = Fail(error);
    }
    return status;
}

int CliCommands::RunOnProfile(CliSession& session, clsProfile& profile, const CliRequest& request) {
    const QString& command = request.command;
    if (command == QStringLiteral("export")) {
        return Export(session, profile, request);
    }
    if (command == QStringLiteral("remove")) {
        return Remove(session, profile, request);
    }
    if (command == QStringLiteral("fetch")) {
        return Fetch(session, profile, request);
    }
    if (command == QStringLiteral("list")) {
        return List(session, profile, request);
    }
    if (command == QStringLiteral("show") || command == QStringLiteral("tag") ||
        command == QStringLiteral("delete")) {
        return ActOnItem(session, profile, request);
    }
    if (command == QStringLiteral("mark-read")) {
        return MarkRead(session, profile, request);
    }
    if (command == QStringLiteral("stats")) {
        return Stats(profile);
    }
    return Fail(QStringLiteral("%1 does not work on a profile.").arg(command));
}

QString CliCommands::GroupFor(clsProfile& profile, const QString& requested) {
    const RSSGroup* group = profile.GetGroup(requested);
    return group ? group->Name() : requested;
}

int CliCommands::Profiles(CliSession& session) {
    colProfiles& profiles = session.Profiles();
    if (profiles.UserCount() == 0) {
        m_out << "There is no profile yet; create one with: tamsel-cli profile-add NAME" << Qt::endl;
        return kSuccess;
    }
    const clsProfile* fallback = profiles.GetDefaultUser();
    for (int index = 1; index <= profiles.UserCount(); ++index) {
        const clsProfile* profile = profiles.User(index);
        m_out << (profile == fallback ? "* " : "  ") << HtmlToText::Printable(profile->Name()) << Qt::endl;
    }
    return kSuccess;
}

int CliCommands::ProfileAdd(CliSession& session, const CliRequest& request) {
    const QString name = request.arguments.first();
    if (!CliSession::IsUsableProfileName(name)) {
        return Fail(
            QStringLiteral("\"%1\" cannot name a profile: it names its folder, so it must not be empty, "
                           "begin or end with a blank, or hold / \\ or control characters.")
                .arg(HtmlToText::Printable(name)));
    }
    colProfiles& profiles = session.Profiles();
    if (profiles.UserExists(name)) {
        return Fail(QStringLiteral("There is a profile named \"%1\" already.").arg(name));
    }
    clsProfile* profile = profiles.AddUser(name, true, true);
    session.Host().ChangeUser(profile);
    profile->AddGroup(GroupName::MyChannels);
    QString error;
    if (!session.SaveAll(&error)) {
        return Fail(error);
    }
    m_out << "Created the profile \"" << name << "\"; it is now the default." << Qt::endl;
    return kSuccess;
}

int CliCommands::Import(CliSession& session, const CliRequest& request) {
    const QString file = request.arguments.first();
    const QString groupName = request.group.isEmpty() ? GroupName::MyChannels : request.group;
    if (IsReservedGroupName(groupName)) {
        return Fail(QStringLiteral("\"%1\" is a built-in group; choose another group.").arg(groupName));
    }
    if (!QFileInfo(file).isFile()) {
        return Fail(QStringLiteral("%1 is not a file that can be read.").arg(file));
    }
    // Read before the profile starts, so that no channel's timer runs during the read.
    const Services services = session.GetRuntime().GetServices();
    clsOPML opml(services.clock, services.http, session.Host());
    session.Host().SetPrintPopups(false);
    opml.LoadOPML(QFileInfo(file).absoluteFilePath());
    session.Host().SetPrintPopups(true);
    if (opml.Failed()) {
        return Fail(QStringLiteral("%1 could not be read as an OPML file.").arg(file));
    }
    QString error;
    clsProfile* profile = session.Activate(request.profile, &error);
    if (!profile) {
        return Fail(error);
    }
    const QString group = GroupFor(*profile, groupName);
    profile->AddGroup(group);
    int added = 0;
    int known = 0;
    int skipped = 0;
    // Every new channel takes the next id from the settings file: it is written once for all of
    // them, and before channels.xml, so that an id saved with a channel is never handed out again.
    CRegSettings::DeferredWrites ids(services.settings);
    for (int index = 0; index < opml.GetCount(); ++index) {
        const QString url = opml.GetURL(index).trimmed();
        if (url.isEmpty()) {
            continue;
        }
        if (!IsWebUrl(QUrl(url))) {
            ++skipped;
            m_err << "Skipped " << HtmlToText::Printable(url) << ": not an http or https URL" << Qt::endl;
            continue;
        }
        ++(profile->GetChannel(url) ? known : added);
        profile->AddChannel(url, group);
    }
    if (!ids.End()) {
        return Fail(QStringLiteral("The settings file could not be written, so nothing was subscribed to."));
    }
    if (!session.SaveAll(&error)) {
        return Fail(error);
    }
    m_out << "Subscribed to " << added << " new channel(s) in \"" << group << "\" (" << known
          << " already subscribed, " << skipped << " skipped)." << Qt::endl;
    return kSuccess;
}

int CliCommands::Export(CliSession& session, clsProfile& profile, const CliRequest& request) {
    const QString file = request.arguments.first();
    if (!profile.SaveOPML(QFileInfo(file).absoluteFilePath())) {
        return Fail(QStringLiteral("%1 could not be written.").arg(file));
    }
    const MakerSite& site = session.GetRuntime().Site();
    int channels = 0;
    for (int index = 1; index <= profile.ChannelCount(); ++index) {
        channels +=
            IsBuiltinChannel(profile.GetChannel(index)->URL(), site.HelpURL(), site.NewsURL()) ? 0 : 1;
    }
    m_out << "Wrote " << channels << " channel(s) to " << file << "." << Qt::endl;
    return kSuccess;
}

int CliCommands::Add(CliSession& session, const CliRequest& request) {
    const QString address = FeedDiscovery::NormalisedAddress(request.arguments.first());
    const QString groupName = request.group.isEmpty() ? GroupName::MyChannels : request.group;
    if (IsReservedGroupName(groupName)) {
        return Fail(QStringLiteral("\"%1\" is a built-in group; choose another group.").arg(groupName));
    }
    const bool addressable = IsWebUrl(QUrl(address)) || IsFileUrl(QUrl(address));
    QString url = address;
    if (!request.force) {
        // Read before the profile starts, so that no channel's timer runs while the site answers.
        const Services services = session.GetRuntime().GetServices();
        FeedDiscovery discovery(services.http, services.clock);
        QList<DiscoveredFeed> feeds;
        QString message;
        QEventLoop wait;
        QObject::connect(&discovery, &FeedDiscovery::Finished, &wait,
                         [&](const QList<DiscoveredFeed>& found, const QString& why) {
                             feeds = found;
                             message = why;
                             wait.quit();
                         });
        discovery.Discover(address);
        if (discovery.Busy()) {
            wait.exec();
        }
        if (!message.isEmpty()) {
            m_err << HtmlToText::Printable(message) << Qt::endl;
            if (addressable) {
                m_err << "Nothing was subscribed to; --force subscribes to " << HtmlToText::Printable(address)
                      << " without reading it." << Qt::endl;
            }
            return kFailure;
        }
        const qsizetype count = feeds.size();
        if (count > 1 && request.pick == 0) {
            m_out << HtmlToText::Printable(address) << " names " << count << " feeds:" << Qt::endl;
            for (qsizetype index = 0; index < count; ++index) {
                m_out << QString::number(index + 1).rightJustified(3) << ". " << FeedCaption(feeds[index])
                      << '\n';
            }
            m_out.flush();
            return Fail(
                QStringLiteral("Choose one with --pick N (1 to %1); nothing was subscribed to.").arg(count));
        }
        const qsizetype chosen = request.pick == 0 ? 0 : request.pick - 1;
        if (chosen >= count) {
            return Fail(
                QStringLiteral("There is no feed %1; %2 names %3.")
                    .arg(QString::number(request.pick), HtmlToText::Printable(address),
                         count == 1 ? QStringLiteral("one feed") : QStringLiteral("%1 feeds").arg(count)));
        }
        url = feeds[chosen].url;
        if (url != address) {
            m_out << "Found the feed " << FeedCaption(feeds[chosen]) << " at "
                  << HtmlToText::Printable(address) << "." << Qt::endl;
        }
    } else if (!addressable) {
        return Fail(
            QStringLiteral("%1 is not an http, https or file URL.").arg(HtmlToText::Printable(address)));
    }

    QString error;
    clsProfile* profile = session.Activate(request.profile, &error);
    if (!profile) {
        return Fail(error);
    }
    const bool known = profile->GetChannel(url) != nullptr;
    const QString group = GroupFor(*profile, groupName);
    profile->AddGroup(group);
    profile->AddChannel(url, group);
    if (!session.SaveAll(&error)) {
        return Fail(error);
    }
    m_out << (known ? "Already subscribed to " : "Subscribed to ") << HtmlToText::Printable(url)
          << "; it is in the group \"" << group << "\"." << Qt::endl;
    return kSuccess;
}

int CliCommands::Remove(CliSession& session, clsProfile& profile, const CliRequest& request) {
    QString error;
    const QString url = request.arguments.first().trimmed();
    const MakerSite& site = session.GetRuntime().Site();
    RSSChannel* channel = profile.GetChannel(url);
    if (!channel) {
        return Fail(QStringLiteral("Not subscribed to %1.").arg(HtmlToText::Printable(url)));
    }
    if (IsBuiltinChannel(channel->URL(), site.HelpURL(), site.NewsURL())) {
        return Fail(QStringLiteral("%1 is a built-in channel and stays.").arg(HtmlToText::Printable(url)));
    }
    const QString key = channel->URL();
    profile.RemoveChannel(key);
    if (!session.SaveAll(&error)) {
        return Fail(error);
    }
    m_out << "Unsubscribed from " << HtmlToText::Printable(key) << "." << Qt::endl;
    return kSuccess;
}

int CliCommands::Fetch(CliSession& session, clsProfile& profile, const CliRequest& request) {
    QString error;
    FetchRound round(session.Host(), profile, session.GetRuntime().Site(), request.force);
    int total = 0;
    if (m_interactive) {
        round.SetProgress([this, &total](const FetchRound::Summary& soFar, int done) {
            total = soFar.channels;
            m_out << "\rFetched " << done << " of " << soFar.channels << " channels, " << soFar.newItems
                  << " new item(s)  ";
            m_out.flush();
        });
    }
    const FetchRound::Summary summary = round.Run();
    if (m_interactive && total > 0) {
        m_out << Qt::endl;
    }
    const bool saved = session.SaveAll(&error);
    for (const QString& url : summary.failedUrls) {
        m_err << "Failed: " << HtmlToText::Printable(url) << Qt::endl;
    }
    m_out << summary.channels << " channel(s): " << summary.fetched << " ok, " << summary.unchanged
          << " unchanged, " << summary.failed << " failed; " << summary.newItems << " new item(s)."
          << Qt::endl;
    if (!saved) {
        return Fail(error);
    }
    return summary.failed > 0 ? kFailure : kSuccess;
}

int CliCommands::List(CliSession& session, clsProfile& profile, const CliRequest& request) {
    QString error;
    QString key = request.folder.isEmpty() ? FolderKey::Unread : request.folder;
    if (!request.channel.isEmpty()) {
        RSSChannel* channel = profile.GetChannel(request.channel.trimmed());
        if (!channel) {
            return Fail(QStringLiteral("Not subscribed to %1.").arg(HtmlToText::Printable(request.channel)));
        }
        key = channel->URL();
    }
    const ItemList items = profile.ItemBank()->SubChannelList(key, request.filter, request.search);
    const qsizetype count = qsizetype(items.size());
    LastListStore::List remembered{key, request.filter, request.search, request.page, {}};
    qsizetype first = 0;
    qsizetype last = 0;
    if (count > 0 && !ItemFormatter::PageBounds(count, request.page, &first, &last)) {
        return Fail(QStringLiteral("There is no page %1; the list has %2 page(s).")
                        .arg(request.page)
                        .arg(ItemFormatter::PageCount(count)));
    }
    if (count > 0) {
        int number = (request.page - 1) * CliArguments::kItemsPerPage + 1;
        for (qsizetype index = first; index >= last; --index, ++number) {
            const XmlNode& item = items[size_t(index)];
            m_out << (request.json ? ItemFormatter::JsonLine(number, item)
                                   : ItemFormatter::TextLine(number, item))
                  << '\n';
            remembered.entries.push_back(LastListStore::EntryOf(number, item));
        }
    }
    if (!request.json) {
        if (count == 0) {
            m_out << "No items.\n";
        } else {
            m_out << "Page " << request.page << " of " << ItemFormatter::PageCount(count) << ", " << count
                  << " item(s).\n";
        }
    }
    m_out.flush();
    const LastListStore store(session.DataProfileFolder(profile.Name()));
    if (!store.Save(remembered, &error)) {
        m_err << "The list could not be remembered for show, tag and delete: " << error << Qt::endl;
    }
    return kSuccess;
}

int CliCommands::MarkRead(CliSession& session, clsProfile& profile, const CliRequest& request) {
    QString error;
    const QString wanted = request.channel.isEmpty() ? request.folder : request.channel.trimmed();
    RSSChannel* channel = profile.GetChannel(wanted);
    if (!channel) {
        return Fail(QStringLiteral("Not subscribed to %1.").arg(HtmlToText::Printable(wanted)));
    }
    int marked = 0;
    for (const XmlNode& item : profile.ItemBank()->SubChannelList(channel->URL(), QString(), QString())) {
        marked += IsItemRead(item) ? 0 : 1;
    }
    channel->MarkAllRead();
    if (!session.SaveAll(&error)) {
        return Fail(error);
    }
    m_out << "Marked " << marked << " item(s) read." << Qt::endl;
    return kSuccess;
}

int CliCommands::ActOnItem(CliSession& session, clsProfile& profile, const CliRequest& request) {
    QString error;
    const LastListStore store(session.DataProfileFolder(profile.Name()));
    const std::optional<LastListStore::List> list = store.Load(&error);
    if (!list) {
        return Fail(error);
    }
    const LastListStore::Entry* entry = nullptr;
    for (const LastListStore::Entry& candidate : list->entries) {
        if (candidate.number == request.number) {
            entry = &candidate;
        }
    }
    if (!entry) {
        return Fail(list->entries.empty()
                        ? QStringLiteral("The last list was empty; there is no item %1.").arg(request.number)
                        : QStringLiteral("There is no item %1 in the last list; it holds items %2 to %3.")
                              .arg(request.number)
                              .arg(list->entries.front().number)
                              .arg(list->entries.back().number));
    }
    const XmlNode item = LastListStore::Find(*profile.ItemBank(), *entry);
    if (item.IsNull()) {
        return Fail(QStringLiteral("Item %1 (\"%2\") is no longer in the item bank.")
                        .arg(request.number)
                        .arg(HtmlToText::Printable(entry->title)));
    }
    const QString title = HtmlToText::Printable(GetItemTitle(item));
    if (request.command == QStringLiteral("show")) {
        m_out << ItemFormatter::ShowText(item);
        SetItemRead(item, true);
    } else if (request.command == QStringLiteral("tag")) {
        const bool tagged = !IsItemFlagged(item);
        SetChildText(item, QStringLiteral("flag"), tagged ? kTrue : kFalse);
        m_out << (tagged ? "Tagged " : "Untagged ") << request.number << ": " << title << Qt::endl;
    } else {
        const bool deleted = !IsItemDeleted(item);
        SetChildText(item, QStringLiteral("delete"), deleted ? kTrue : kFalse);
        m_out << (deleted ? "Deleted " : "Restored ") << request.number << ": " << title << Qt::endl;
    }
    return kSuccess;
}

int CliCommands::Stats(clsProfile& profile) {
    const clsItemBank& bank = *profile.ItemBank();
    const std::pair<const char*, const QString*> folders[] = {
        {"Today", &FolderKey::Today},      {"Yesterday", &FolderKey::Yesterday},
        {"Past 7 Days", &FolderKey::Week}, {"Unread", &FolderKey::Unread},
        {"Read", &FolderKey::Read},        {"Tagged", &FolderKey::Flagged},
        {"Deleted", &FolderKey::Deleted}};
    m_out << "  Items Unread  Folder\n";
    for (const auto& [name, key] : folders) {
        m_out << CountLine(qsizetype(bank.SubChannelList(*key, QString(), QString()).size()),
                           qsizetype(bank.SubChannelList(*key, FolderKey::Unread, QString()).size()),
                           QString::fromLatin1(name))
              << '\n';
    }
    m_out << "\n  Items Unread  Channel\n";
    for (int index = 1; index <= profile.ChannelCount(); ++index) {
        RSSChannel* channel = profile.GetChannel(index);
        if (IsVirtualFolder(channel->URL())) {
            continue;
        }
        m_out << CountLine(
                     qsizetype(bank.SubChannelList(channel->URL(), QString(), QString()).size()),
                     qsizetype(bank.SubChannelList(channel->URL(), FolderKey::Unread, QString()).size()),
                     ChannelCaption(*channel))
              << '\n';
    }
    m_out << "\n" << bank.Count() << " item(s) in the item bank, deleted ones included.\n";
    return kSuccess;
}
