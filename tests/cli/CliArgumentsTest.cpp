// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/CliArguments.h"
#include "app/SharedHelpers.h"
#include "support/QStringPrinter.h"

#include <gtest/gtest.h>
#include <ostream>

using namespace Qt::StringLiterals;

namespace {

QStringList Split(const QString& line) {
    return line.split(u' ', Qt::SkipEmptyParts);
}

bool Parse(const QString& line, CliRequest* request, QString* error = nullptr) {
    return CliArguments::Parse(Split(line), request, error);
}

TEST(CliArgumentsTest, OptionsStandBeforeOrAfterTheCommand) {
    CliRequest request;
    ASSERT_TRUE(Parse(u"--profile Ann list --folder today --search=war --page 3 --json"_s, &request));
    EXPECT_EQ(request.command, u"list"_s);
    EXPECT_EQ(request.profile, u"Ann"_s);
    EXPECT_EQ(request.folder, FolderKey::Today);
    EXPECT_EQ(request.search, u"war"_s);
    EXPECT_EQ(request.page, 3);
    EXPECT_TRUE(request.json);

    ASSERT_TRUE(Parse(u"add http://a.example/feed --group News --profile Bo"_s, &request));
    EXPECT_EQ(request.arguments, QStringList{u"http://a.example/feed"_s});
    EXPECT_EQ(request.group, u"News"_s);
    EXPECT_EQ(request.profile, u"Bo"_s);
    EXPECT_EQ(request.pick, 0);
    ASSERT_TRUE(Parse(u"add example.org --pick=2"_s, &request));
    EXPECT_EQ(request.pick, 2);
    EXPECT_FALSE(request.force);
}

TEST(CliArgumentsTest, DefaultsOfList) {
    CliRequest request;
    ASSERT_TRUE(Parse(u"list"_s, &request));
    EXPECT_TRUE(request.folder.isEmpty());
    EXPECT_TRUE(request.channel.isEmpty());
    EXPECT_TRUE(request.filter.isEmpty());
    EXPECT_EQ(request.page, 1);
    EXPECT_FALSE(request.json);
}

TEST(CliArgumentsTest, DoubleDashEndsTheOptions) {
    CliRequest request;
    ASSERT_TRUE(CliArguments::Parse({u"profile-add"_s, u"--"_s, u"--odd"_s}, &request, nullptr));
    EXPECT_EQ(request.arguments, QStringList{u"--odd"_s});
}

TEST(CliArgumentsTest, ItemNumbers) {
    CliRequest request;
    ASSERT_TRUE(Parse(u"show 12"_s, &request));
    EXPECT_EQ(request.number, 12);
    for (const QString& bad : {u"show 0"_s, u"show -3"_s, u"tag x"_s, u"delete 1.5"_s, u"show +4"_s}) {
        QString error;
        EXPECT_FALSE(Parse(bad, &request, &error)) << bad.toStdString();
        EXPECT_FALSE(error.isEmpty());
    }
}

TEST(CliArgumentsTest, UsageErrorsAreRefusedWithAReason) {
    const QStringList lines = {
        u""_s,                                      // no command
        u"frobnicate"_s,                            // unknown command
        u"list --colour red"_s,                     // unknown option
        u"list -x"_s,                               // short options are not known
        u"list --page"_s,                           // value missing
        u"list --page 0"_s,                         // not a page
        u"list --page two"_s,                       // not a number
        u"list --json=yes"_s,                       // a switch takes no value
        u"list --folder today --folder read"_s,     // twice
        u"list --folder later"_s,                   // no such folder
        u"list --filter newest"_s,                  // no such filter
        u"list --channel http://a --folder read"_s, // both
        u"fetch --group News"_s,                    // not an option of fetch
        u"stats --json"_s,                          // not an option of stats
        u"profiles --profile Ann"_s,                // profiles lists all of them
        u"profile-add"_s,                           // name missing
        u"add http://a http://b"_s,                 // one URL only
        u"add http://a --pick 0"_s,                 // feeds count from 1
        u"add http://a --pick two"_s,               // not a number
        u"add http://a --pick 2 --force"_s,         // pick reads the page, force does not
        u"fetch --pick 1"_s,                        // not an option of fetch
        u"mark-read"_s,                             // what to mark is missing
        u"remove"_s,                                // URL missing
        u"fetch --version"_s,                       // the tool's option only
    };
    for (const QString& line : lines) {
        CliRequest request;
        QString error;
        EXPECT_FALSE(Parse(line, &request, &error)) << line.toStdString();
        EXPECT_FALSE(error.isEmpty()) << line.toStdString();
    }
    CliRequest request;
    QString error;
    EXPECT_FALSE(CliArguments::Parse({u"add"_s, u"  "_s}, &request, &error));
    EXPECT_FALSE(CliArguments::Parse({u"list"_s, u"--profile="_s}, &request, &error));
}

TEST(CliArgumentsTest, HelpIsValidAnywhere) {
    CliRequest request;
    ASSERT_TRUE(Parse(u"--help"_s, &request));
    EXPECT_TRUE(request.help);
    EXPECT_TRUE(request.command.isEmpty());
    ASSERT_TRUE(Parse(u"fetch --help --force --group X"_s, &request));
    EXPECT_TRUE(request.help);
    EXPECT_EQ(request.command, u"fetch"_s);
    ASSERT_TRUE(Parse(u"-h show"_s, &request));
    EXPECT_EQ(request.command, u"show"_s);
    QString error;
    EXPECT_FALSE(Parse(u"--help nosuch"_s, &request, &error));
}

TEST(CliArgumentsTest, EveryCommandHasItsHelp) {
    const QString usage = CliArguments::Usage();
    for (const QString& command :
         {u"profiles"_s, u"profile-add"_s, u"import"_s, u"export"_s, u"add"_s, u"remove"_s, u"fetch"_s,
          u"list"_s, u"show"_s, u"mark-read"_s, u"tag"_s, u"delete"_s, u"stats"_s}) {
        EXPECT_TRUE(usage.contains(u"  "_s + command + u' ')) << command.toStdString();
        EXPECT_TRUE(CliArguments::CommandUsage(command).startsWith(u"Usage: tamsel-cli "_s + command))
            << command.toStdString();
    }
    EXPECT_TRUE(CliArguments::CommandUsage(u"list"_s).contains(u"--filter KEY"_s));
    EXPECT_TRUE(CliArguments::CommandUsage(u"fetch"_s).contains(u"--force"_s));
    EXPECT_TRUE(CliArguments::CommandUsage(u"nosuch"_s).isEmpty());
}

TEST(CliArgumentsTest, FolderNamesAndKeys) {
    const std::pair<QString, QString> cases[] = {
        {u"today"_s, FolderKey::Today},
        {u"Yesterday"_s, FolderKey::Yesterday},
        {u"week"_s, FolderKey::Week},
        {u"unread"_s, FolderKey::Unread},
        {u"read"_s, FolderKey::Read},
        {u"tagged"_s, FolderKey::Flagged},
        {u"flagged"_s, FolderKey::Flagged},
        {u"deleted"_s, FolderKey::Deleted},
        {u"_tamsel/week"_s, FolderKey::Week},
        {u"old"_s, QString()},
        {u"all"_s, QString()},
        {u"_tamsel/old"_s, QString()},
    };
    for (const auto& [name, key] : cases) {
        EXPECT_EQ(CliArguments::FolderKeyOf(name), key) << name.toStdString();
    }
}

TEST(CliArgumentsTest, TheViewersFilters) {
    const std::pair<QString, QString> cases[] = {
        {u"all"_s, QString()},
        {u"unread"_s, FolderKey::Unread},
        {u"tagged"_s, FolderKey::Flagged},
        {u"today"_s, FolderKey::Today},
        {u"yesterday"_s, FolderKey::Yesterday},
        {u"week"_s, FolderKey::Week},
        {u"read"_s, FolderKey::Read},
        {u"old"_s, FolderKey::Old},
        {u"deleted"_s, FolderKey::Deleted},
    };
    for (const auto& [name, key] : cases) {
        QString found = u"unset"_s;
        EXPECT_TRUE(CliArguments::FilterKeyOf(name, &found)) << name.toStdString();
        EXPECT_EQ(found, key) << name.toStdString();
    }
    QString found;
    EXPECT_FALSE(CliArguments::FilterKeyOf(u"newest"_s, &found));
    EXPECT_FALSE(CliArguments::FilterKeyOf(QString(), &found));
}

} // namespace
