// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/CliArguments.h"

#include "app/SharedHelpers.h"

#include <array>

namespace {

enum Option : unsigned {
    kProfile = 1u << 0,
    kGroup = 1u << 1,
    kChannel = 1u << 2,
    kFolder = 1u << 3,
    kFilter = 1u << 4,
    kSearch = 1u << 5,
    kPage = 1u << 6,
    kJson = 1u << 7,
    kForce = 1u << 8,
    kPick = 1u << 9,
};

struct OptionSpec {
    const char16_t* name;
    Option option;
    bool takesValue;
};

constexpr std::array kOptions = {
    OptionSpec{u"profile", kProfile, true}, OptionSpec{u"group", kGroup, true},
    OptionSpec{u"channel", kChannel, true}, OptionSpec{u"folder", kFolder, true},
    OptionSpec{u"filter", kFilter, true},   OptionSpec{u"search", kSearch, true},
    OptionSpec{u"page", kPage, true},       OptionSpec{u"json", kJson, false},
    OptionSpec{u"force", kForce, false},    OptionSpec{u"pick", kPick, true},
};

struct CommandSpec {
    const char16_t* name;
    // The one positional argument's name; none when the command takes no argument.
    const char16_t* argument;
    unsigned options;
    bool changesData;
    const char16_t* summary;
    const char16_t* help;
};

constexpr std::array kCommands = {
    CommandSpec{u"profiles", nullptr, 0, false, u"List the profiles; * marks the default.",
                u"Lists the profiles, one a line; the default profile is marked with *.\n"},
    CommandSpec{u"profile-add", u"NAME", 0, true, u"Create a profile and make it the default.",
                u"Creates the profile NAME with its group \"My Channels\" and makes it the default, as\n"
                u"the window program does for a new profile.\n"},
    CommandSpec{u"import", u"FILE.opml", kProfile | kGroup, true,
                u"Subscribe to the channels of an OPML file.",
                u"Subscribes to every outline of the OPML file that has an http or https URL, in the\n"
                u"group G (default \"My Channels\", created when missing). The next fetch loads them.\n"
                u"\n  --group G       the group to put the channels in\n"},
    CommandSpec{u"export", u"FILE.opml", kProfile, false, u"Write the profile's channels as OPML.",
                u"Writes the profile's own channels (not the built-in ones) to an OPML file.\n"},
    CommandSpec{u"add", u"URL", kProfile | kGroup | kForce | kPick, true,
                u"Subscribe to a feed, or to the feed a web page names.",
                u"Subscribes to the feed at URL in the group G (default \"My Channels\", created when\n"
                u"missing). URL is an http, https or file address; without a scheme https is meant,\n"
                u"and feed: addresses are read as http. URL is read first: a feed is subscribed to as\n"
                u"it is; a web page is searched for the feeds it names (or, naming none, its site for\n"
                u"a feed at /feed, /rss, /atom.xml, /feed.xml, /rss.xml or /index.xml). One feed found\n"
                u"is subscribed to; several are listed, numbered, and --pick N chooses one. When\n"
                u"nothing is found or URL cannot be read, nothing is subscribed to and the exit\n"
                u"status is 1. The next fetch loads the feed.\n"
                u"\n  --group G       the group to put the feed in"
                u"\n  --pick N        subscribe to the N-th feed the page names"
                u"\n  --force         subscribe to URL as it stands, without reading it (offline)\n"},
    CommandSpec{u"remove", u"URL", kProfile, true, u"Unsubscribe from a channel.",
                u"Unsubscribes from the channel at URL: it leaves every group and its items leave\n"
                u"the item bank (items marked deleted stay in the Deleted folder).\n"},
    CommandSpec{u"fetch", nullptr, kProfile | kForce, true, u"Fetch every subscribed channel once.",
                u"Fetches every subscribed channel once, at most four at a time. A channel whose\n"
                u"Last-modified header did not change since the last fetch is not downloaded.\n"
                u"Exit status: 0 when every channel was fetched or unchanged, 1 when some failed.\n"
                u"\n  --force         download every channel whatever its Last-modified header says\n"},
    CommandSpec{u"list", nullptr, kProfile | kChannel | kFolder | kFilter | kSearch | kPage | kJson, false,
                u"List items as the viewer shows them.",
                u"Lists the items of a channel or a built-in folder (default: the Unread folder),\n"
                u"newest stored first, 50 a page. The numbers refer to the items in show, tag and\n"
                u"delete until the next list.\n"
                u"\n  --channel URL   the items of a channel"
                u"\n  --folder KEY    today, yesterday, week, unread, read, tagged or deleted"
                u"\n  --filter KEY    all, unread, tagged, today, yesterday, week, read, old or deleted"
                u"\n  --search TEXT   only items whose text holds TEXT (A to Z in any case)"
                u"\n  --page N        the page to show (default 1)"
                u"\n  --json          one JSON object a line: n, channel, channeltitle, title, link,"
                u"\n                  guid, date, time, read, flag, delete\n"},
    CommandSpec{u"show", u"N", kProfile, true, u"Show item N of the last list and mark it read.",
                u"Prints item N of the last list as text and marks it read.\n"},
    CommandSpec{u"mark-read", nullptr, kProfile | kChannel | kFolder, true,
                u"Mark every item of a channel or folder read.",
                u"Marks every item of the channel or folder read.\n"
                u"\n  --channel URL   the items of a channel"
                u"\n  --folder KEY    today, yesterday, week, unread, read, tagged or deleted\n"},
    CommandSpec{u"tag", u"N", kProfile, true, u"Tag or untag item N of the last list.",
                u"Tags item N of the last list, or takes the tag off when it is tagged.\n"},
    CommandSpec{u"delete", u"N", kProfile, true, u"Delete or restore item N of the last list.",
                u"Moves item N of the last list to the Deleted folder, or back when it is there.\n"},
    CommandSpec{u"stats", nullptr, kProfile, false, u"Count the items per folder and channel.",
                u"Counts the items of every built-in folder and of every channel.\n"},
};

const CommandSpec* FindCommand(const QString& name) {
    for (const CommandSpec& command : kCommands) {
        if (name == QString::fromUtf16(command.name)) {
            return &command;
        }
    }
    return nullptr;
}

const OptionSpec* FindOption(const QString& name) {
    for (const OptionSpec& option : kOptions) {
        if (name == QString::fromUtf16(option.name)) {
            return &option;
        }
    }
    return nullptr;
}

// A whole number from 1 up; 0 when the text is none.
int PositiveNumber(const QString& text) {
    bool ok = false;
    const int value = text.toInt(&ok);
    return ok && value >= 1 && !text.startsWith(u'+') ? value : 0;
}

bool Fail(QString* error, const QString& message) {
    if (error) {
        *error = message;
    }
    return false;
}

} // namespace

bool CliArguments::Parse(const QStringList& arguments, CliRequest* request, QString* error) {
    CliRequest parsed;
    unsigned given = 0;
    bool optionsEnded = false;
    for (qsizetype at = 0; at < arguments.size(); ++at) {
        const QString& argument = arguments[at];
        if (!optionsEnded && argument == QStringLiteral("--")) {
            optionsEnded = true;
            continue;
        }
        if (!optionsEnded && (argument == QStringLiteral("--help") || argument == QStringLiteral("-h"))) {
            parsed.help = true;
            continue;
        }
        if (!optionsEnded && argument == QStringLiteral("--version")) {
            parsed.version = true;
            continue;
        }
        if (!optionsEnded && argument.startsWith(u'-') && argument.size() > 1) {
            if (!argument.startsWith(QStringLiteral("--"))) {
                return Fail(error, QStringLiteral("Unknown option %1").arg(argument));
            }
            const qsizetype equals = argument.indexOf(u'=');
            const QString name = argument.mid(2, equals < 0 ? -1 : equals - 2);
            const OptionSpec* option = FindOption(name);
            if (!option) {
                return Fail(error, QStringLiteral("Unknown option --%1").arg(name));
            }
            if (given & option->option) {
                return Fail(error, QStringLiteral("--%1 is given twice").arg(name));
            }
            given |= option->option;
            QString value;
            if (option->takesValue) {
                if (equals >= 0) {
                    value = argument.mid(equals + 1);
                } else if (at + 1 < arguments.size()) {
                    value = arguments[++at];
                } else {
                    return Fail(error, QStringLiteral("--%1 needs a value").arg(name));
                }
            } else if (equals >= 0) {
                return Fail(error, QStringLiteral("--%1 takes no value").arg(name));
            }
            switch (option->option) {
            case kProfile:
                parsed.profile = value;
                break;
            case kGroup:
                parsed.group = value;
                break;
            case kChannel:
                parsed.channel = value;
                break;
            case kFolder:
                parsed.folder = value;
                break;
            case kFilter:
                parsed.filter = value;
                break;
            case kSearch:
                parsed.search = value;
                break;
            case kPage:
                parsed.page = PositiveNumber(value);
                break;
            case kJson:
                parsed.json = true;
                break;
            case kForce:
                parsed.force = true;
                break;
            case kPick:
                parsed.pick = PositiveNumber(value);
                break;
            }
            continue;
        }
        if (parsed.command.isEmpty()) {
            parsed.command = argument;
        } else {
            parsed.arguments.append(argument);
        }
    }

    const CommandSpec* command = parsed.command.isEmpty() ? nullptr : FindCommand(parsed.command);
    if (!parsed.command.isEmpty() && !command) {
        return Fail(error, QStringLiteral("Unknown command \"%1\"").arg(parsed.command));
    }
    if (parsed.help || (parsed.version && !command)) {
        *request = parsed;
        return true;
    }
    if (!command) {
        return Fail(error, QStringLiteral("No command given"));
    }
    const QString commandName = parsed.command;
    if (parsed.version) {
        return Fail(error, QStringLiteral("--version is not an option of %1").arg(commandName));
    }
    for (const OptionSpec& option : kOptions) {
        if ((given & option.option) && !(command->options & option.option)) {
            return Fail(error, QStringLiteral("--%1 is not an option of %2")
                                   .arg(QString::fromUtf16(option.name), commandName));
        }
    }
    const qsizetype wanted = command->argument ? 1 : 0;
    if (parsed.arguments.size() < wanted) {
        return Fail(error,
                    QStringLiteral("%1 needs %2").arg(commandName, QString::fromUtf16(command->argument)));
    }
    if (parsed.arguments.size() > wanted) {
        return Fail(error, QStringLiteral("Unexpected argument \"%1\"").arg(parsed.arguments[wanted]));
    }
    if (command->argument && QString::fromUtf16(command->argument) == QStringLiteral("N")) {
        parsed.number = PositiveNumber(parsed.arguments.first());
        if (parsed.number == 0) {
            return Fail(error, QStringLiteral("N must be an item number from 1 up, not \"%1\"")
                                   .arg(parsed.arguments.first()));
        }
    } else if (command->argument && parsed.arguments.first().trimmed().isEmpty()) {
        return Fail(error, QStringLiteral("%1 must not be empty").arg(QString::fromUtf16(command->argument)));
    }
    if ((given & kPick) && parsed.pick == 0) {
        return Fail(error, QStringLiteral("--pick must be a feed number from 1 up"));
    }
    if ((given & kPick) && (given & kForce)) {
        return Fail(error, QStringLiteral("Give either --pick or --force, not both"));
    }
    if ((given & kPage) && parsed.page == 0) {
        return Fail(error, QStringLiteral("--page must be a page number from 1 up"));
    }
    if ((given & kProfile) && parsed.profile.isEmpty()) {
        return Fail(error, QStringLiteral("--profile needs a profile name"));
    }
    if ((given & kChannel) && (given & kFolder)) {
        return Fail(error, QStringLiteral("Give either --channel or --folder, not both"));
    }
    if (commandName == QStringLiteral("mark-read") && !(given & (kChannel | kFolder))) {
        return Fail(error, QStringLiteral("mark-read needs --channel URL or --folder KEY"));
    }
    if ((given & kChannel) && parsed.channel.trimmed().isEmpty()) {
        return Fail(error, QStringLiteral("--channel needs a channel URL"));
    }
    if (given & kFolder) {
        const QString key = FolderKeyOf(parsed.folder);
        if (key.isEmpty()) {
            return Fail(error,
                        QStringLiteral("Unknown folder \"%1\"; use today, yesterday, week, unread, read, "
                                       "tagged or deleted")
                            .arg(parsed.folder));
        }
        parsed.folder = key;
    }
    if (given & kFilter) {
        QString key;
        if (!FilterKeyOf(parsed.filter, &key)) {
            return Fail(error,
                        QStringLiteral("Unknown filter \"%1\"; use all, unread, tagged, today, yesterday, "
                                       "week, read, old or deleted")
                            .arg(parsed.filter));
        }
        parsed.filter = key;
    }
    if ((given & kGroup) && parsed.group.trimmed().isEmpty()) {
        return Fail(error, QStringLiteral("--group needs a group name"));
    }
    *request = parsed;
    return true;
}

QString CliArguments::Usage() {
    QString text = QStringLiteral("Usage: tamsel-cli [--profile NAME] COMMAND [ARGUMENTS] [OPTIONS]\n"
                                  "\n"
                                  "Reads and fetches the news of a Tamsel profile without a window.\n"
                                  "\n"
                                  "Commands:\n");
    for (const CommandSpec& command : kCommands) {
        QString head = QString::fromUtf16(command.name);
        if (command.argument) {
            head += u' ' + QString::fromUtf16(command.argument);
        }
        text += QStringLiteral("  ") + head.leftJustified(22) + QString::fromUtf16(command.summary) + u'\n';
    }
    text += QStringLiteral("\n"
                           "Options:\n"
                           "  --profile NAME        use this profile instead of the default one\n"
                           "  --help                this help; COMMAND --help tells more about a command\n"
                           "  --version             the version of the program\n"
                           "\n"
                           "Commands that change the data refuse to run while Tamsel runs; profiles, list,\n"
                           "stats and export read a copy of the data and may run at any time.\n"
                           "Exit status: 0 on success, 1 when the command failed, 2 for a usage error.\n");
    return text;
}

QString CliArguments::CommandUsage(const QString& name) {
    const CommandSpec* command = FindCommand(name);
    if (!command) {
        return {};
    }
    QString text = QStringLiteral("Usage: tamsel-cli ") + name;
    if (command->argument) {
        text += u' ' + QString::fromUtf16(command->argument);
    }
    if (command->options & kGroup) {
        text += QStringLiteral(" [--group G]");
    }
    if (command->options & kPick) {
        text += QStringLiteral(" [--pick N | --force]");
    } else if (command->options & kForce) {
        text += QStringLiteral(" [--force]");
    }
    if (name == QStringLiteral("list")) {
        text += QStringLiteral(
            " [--channel URL | --folder KEY] [--filter KEY] [--search TEXT] [--page N] [--json]");
    } else if (name == QStringLiteral("mark-read")) {
        text += QStringLiteral(" (--channel URL | --folder KEY)");
    }
    if (command->options & kProfile) {
        text += QStringLiteral(" [--profile NAME]");
    }
    return text + QStringLiteral("\n\n") + QString::fromUtf16(command->help);
}

bool CliArguments::ChangesData(const QString& name) {
    const CommandSpec* command = FindCommand(name);
    return command && command->changesData;
}

QString CliArguments::FolderKeyOf(const QString& name) {
    const QString lower = name.trimmed().toLower();
    const std::pair<const char16_t*, const QString*> names[] = {
        {u"today", &FolderKey::Today},    {u"yesterday", &FolderKey::Yesterday},
        {u"week", &FolderKey::Week},      {u"unread", &FolderKey::Unread},
        {u"read", &FolderKey::Read},      {u"flagged", &FolderKey::Flagged},
        {u"tagged", &FolderKey::Flagged}, {u"deleted", &FolderKey::Deleted},
    };
    for (const auto& [folderName, key] : names) {
        if (lower == QString::fromUtf16(folderName) || lower == *key) {
            return *key;
        }
    }
    return {};
}

bool CliArguments::FilterKeyOf(const QString& name, QString* key) {
    const QString lower = name.trimmed().toLower();
    if (lower == QStringLiteral("all")) {
        key->clear();
        return true;
    }
    if (lower == QStringLiteral("old") || lower == FolderKey::Old) {
        *key = FolderKey::Old;
        return true;
    }
    *key = FolderKeyOf(lower);
    return !key->isEmpty();
}
