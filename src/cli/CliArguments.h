// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

// One command line of tamsel-cli, parsed and checked.
struct CliRequest {
    QString command;
    QStringList arguments;
    QString profile;
    QString group;
    // A channel URL, or the key of a built-in folder ("_tamsel/unread" and the others).
    QString channel;
    QString folder;
    // The viewer's filter key: empty for "All Items", else a folder key or "_tamsel/old".
    QString filter;
    QString search;
    int page = 1;
    // The item number of show, tag and delete.
    int number = 0;
    // Which of the feeds a page names add subscribes to, from 1; 0 when not given.
    int pick = 0;
    bool json = false;
    bool force = false;
    bool help = false;
    bool version = false;
};

// The command-line grammar of tamsel-cli: commands, their options and their help texts.
//
//   tamsel-cli [--profile NAME] COMMAND [ARGUMENTS] [OPTIONS]
//
// Options may stand before or after the command, as "--name value" or "--name=value"; "--" ends
// the options.
class CliArguments final {
public:
    static constexpr int kItemsPerPage = 50;

    // Parses the arguments that follow the program name. False, with the reason, when the line
    // is not a valid command (a usage error); --help is valid with any command.
    static bool Parse(const QStringList& arguments, CliRequest* request, QString* error);

    // The help of the tool, listing every command.
    static QString Usage();
    // The help of one command; empty for an unknown command.
    static QString CommandUsage(const QString& command);
    // Whether the command changes the data folder (and so is refused while Tamsel runs).
    static bool ChangesData(const QString& command);

    // The folder key of a folder name ("today", "yesterday", "week", "unread", "read", "flagged"
    // or "tagged", "deleted"), or a folder key itself; empty when it names no folder.
    static QString FolderKeyOf(const QString& name);
    // The filter key of one of the viewer's filter entries ("all", "unread", "tagged", "today",
    // "yesterday", "week", "read", "old", "deleted"; folder keys are accepted too); false when it
    // names none.
    static bool FilterKeyOf(const QString& name, QString* key);
};
