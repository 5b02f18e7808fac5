// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/CliArguments.h"
#include "support/QStringPrinter.h"

#include <QFile>
#include <QProcess>
#include <gtest/gtest.h>
#include <ostream>

using namespace Qt::StringLiterals;

namespace {

// The fields of `request` that differ from a fresh request's, as "name=value" (a switch by name).
QString Fields(const CliRequest& request) {
    const auto number = [](int value, int fresh) {
        return value == fresh ? QString() : QString::number(value);
    };
    const std::pair<QString, QString> texts[] = {
        {u"command"_s, request.command},      {u"arguments"_s, request.arguments.join(u'|')},
        {u"profile"_s, request.profile},      {u"group"_s, request.group},
        {u"channel"_s, request.channel},      {u"folder"_s, request.folder},
        {u"filter"_s, request.filter},        {u"search"_s, request.search},
        {u"page"_s, number(request.page, 1)}, {u"number"_s, number(request.number, 0)},
        {u"pick"_s, number(request.pick, 0)}};
    QStringList fields;
    for (const auto& [name, value] : texts) {
        if (!value.isEmpty()) {
            fields.append(name + u'=' + value);
        }
    }
    const std::pair<QString, bool> switches[] = {{u"json"_s, request.json},
                                                 {u"force"_s, request.force},
                                                 {u"help"_s, request.help},
                                                 {u"version"_s, request.version}};
    for (const auto& [name, on] : switches) {
        if (on) {
            fields.append(name);
        }
    }
    return fields.join(u' ');
}

TEST(CliArgumentsTest, CommandLinesParseAsTheTableSays) {
    QFile table(QStringLiteral(TAMSEL_TEST_DATA_DIR "/arguments.txt"));
    ASSERT_TRUE(table.open(QIODevice::ReadOnly | QIODevice::Text));
    int rows = 0;
    for (const QString& row : QString::fromUtf8(table.readAll()).split(u'\n')) {
        if (row.isEmpty() || row.startsWith(u'#')) {
            continue;
        }
        SCOPED_TRACE(row.toStdString());
        ++rows;
        CliRequest request;
        QString error;
        const QString line = row.section(u" => "_s, 0, 0);
        const bool parsed = CliArguments::Parse(QProcess::splitCommand(line), &request, &error);
        EXPECT_EQ(parsed ? Fields(request) : u"error: "_s + error, row.section(u" => "_s, 1));
    }
    EXPECT_GE(rows, 60);
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

} // namespace
