// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/CliArguments.h"
#include "support/DataRows.h"

#include <QProcess>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

// The fields of `request` that differ from a fresh request's, as "name=value"; a switch that is on
// shows as its name alone.
QString Fields(const CliRequest& request) {
    const auto number = [](int value, int fresh) { return value == fresh ? u""_s : QString::number(value); };
    const auto on = [](bool value, const QString& name) { return value ? name : QString(); };
    QStringList shown = {u"command="_s + request.command,      u"arguments="_s + request.arguments.join(u'|'),
                         u"profile="_s + request.profile,      u"group="_s + request.group,
                         u"channel="_s + request.channel,      u"folder="_s + request.folder,
                         u"filter="_s + request.filter,        u"search="_s + request.search,
                         u"page="_s + number(request.page, 1), u"number="_s + number(request.number, 0),
                         u"pick="_s + number(request.pick, 0), on(request.json, u"json"_s),
                         on(request.force, u"force"_s),        on(request.help, u"help"_s),
                         on(request.version, u"version"_s)};
    // Drops the empty fields: those that end at their '=', and the switches that are off.
    shown.removeIf([](const QString& field) { return field.indexOf(u'=') == field.size() - 1; });
    return shown.join(u' ');
}

TEST(CliArgumentsTest, CommandLinesParseAsTheTableSays) {
    ExpectTable("arguments.txt", 60, [](const QString& line) {
        CliRequest request;
        QString error;
        const bool parsed = CliArguments::Parse(QProcess::splitCommand(line), &request, &error);
        return parsed ? Fields(request) : u"error: "_s + error;
    });
    // The help of each command is read by the session "usage"; a command that does not exist has none.
    EXPECT_TRUE(CliArguments::CommandUsage(u"nosuch"_s).isEmpty());
}

} // namespace
