// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/CliArguments.h"
#include "DataRows.h"
#include "support/QStringPrinter.h"

#include <QProcess>
#include <gtest/gtest.h>
#include <ostream>

using namespace Qt::StringLiterals;

namespace {

// The fields of `request` that differ from a fresh request's, as "name=value"; a switch that is on
// shows as its name alone.
QString Fields(const CliRequest& request) {
    const auto number = [](int value, int fresh) {
        return value == fresh ? QString() : QString::number(value);
    };
    const auto on = [](bool value, const QString& name) { return value ? name : QString(); };
    const std::pair<QString, QString> fields[] = {{u"command"_s, request.command},
                                                  {u"arguments"_s, request.arguments.join(u'|')},
                                                  {u"profile"_s, request.profile},
                                                  {u"group"_s, request.group},
                                                  {u"channel"_s, request.channel},
                                                  {u"folder"_s, request.folder},
                                                  {u"filter"_s, request.filter},
                                                  {u"search"_s, request.search},
                                                  {u"page"_s, number(request.page, 1)},
                                                  {u"number"_s, number(request.number, 0)},
                                                  {u"pick"_s, number(request.pick, 0)},
                                                  {u"json"_s, on(request.json, u"json"_s)},
                                                  {u"force"_s, on(request.force, u"force"_s)},
                                                  {u"help"_s, on(request.help, u"help"_s)},
                                                  {u"version"_s, on(request.version, u"version"_s)}};
    QStringList shown;
    for (const auto& [name, value] : fields) {
        if (!value.isEmpty()) {
            shown.append(value == name ? name : name + u'=' + value);
        }
    }
    return shown.join(u' ');
}

TEST(CliArgumentsTest, CommandLinesParseAsTheTableSays) {
    const QStringList rows = DataRows("arguments.txt");
    EXPECT_GE(rows.size(), 60);
    for (const QString& row : rows) {
        SCOPED_TRACE(row.toStdString());
        CliRequest request;
        QString error;
        const QString line = row.section(u" => "_s, 0, 0);
        const bool parsed = CliArguments::Parse(QProcess::splitCommand(line), &request, &error);
        EXPECT_EQ(parsed ? Fields(request) : u"error: "_s + error, row.section(u" => "_s, 1));
    }
}

// The help of each command is read by the session "usage"; a command that does not exist has none.
TEST(CliArgumentsTest, AnUnknownCommandHasNoHelp) {
    EXPECT_TRUE(CliArguments::CommandUsage(u"nosuch"_s).isEmpty());
}

} // namespace
