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
    const auto number = [](int value, int fresh) { return value == fresh ? u""_s : QString::number(value); };
    QStringList shown = {u"command="_s + request.command,      u"arguments="_s + request.arguments.join(u'|'),
                         u"profile="_s + request.profile,      u"group="_s + request.group,
                         u"channel="_s + request.channel,      u"folder="_s + request.folder,
                         u"filter="_s + request.filter,        u"search="_s + request.search,
                         u"page="_s + number(request.page, 1), u"number="_s + number(request.number, 0),
                         u"pick="_s + number(request.pick, 0)};
    shown.removeIf([](const QString& field) { return field.indexOf(u'=') == field.size() - 1; });
    for (const auto& [on, name] :
         {std::pair(request.json, u"json"_s), std::pair(request.force, u"force"_s),
          std::pair(request.help, u"help"_s), std::pair(request.version, u"version"_s)}) {
        if (on) {
            shown.append(name);
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
    // The help of each command is read by the session "usage"; a command that does not exist has none.
    EXPECT_TRUE(CliArguments::CommandUsage(u"nosuch"_s).isEmpty());
}

} // namespace
