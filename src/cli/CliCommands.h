// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Paths.h"

#include <QString>

class CliSession;
class QTextStream;
class clsProfile;
struct CliRequest;

// Runs one command of tamsel-cli on the data folder and writes what it has to say.
class CliCommands final {
public:
    static constexpr int kSuccess = 0;
    static constexpr int kFailure = 1;

    // `interactive`: standard output is a terminal, so fetch shows its progress.
    CliCommands(Paths paths, QTextStream& out, QTextStream& err, bool interactive);

    // The exit status: 0 on success, 1 when the command failed.
    int Run(const CliRequest& request);
    // Runs a command on a profile that the session has activated (every command but profiles,
    // profile-add, import and add, which activate the profile themselves).
    int RunOnProfile(CliSession& session, clsProfile& profile, const CliRequest& request);

private:
    int Fail(const QString& message);
    int Profiles(CliSession& session);
    int ProfileAdd(CliSession& session, const CliRequest& request);
    int Import(CliSession& session, const CliRequest& request);
    int Export(CliSession& session, clsProfile& profile, const CliRequest& request);
    // Reads the address first (FeedDiscovery) unless --force is given, then subscribes.
    int Add(CliSession& session, const CliRequest& request);
    int Remove(CliSession& session, clsProfile& profile, const CliRequest& request);
    int Fetch(CliSession& session, clsProfile& profile, const CliRequest& request);
    int List(CliSession& session, clsProfile& profile, const CliRequest& request);
    int MarkRead(CliSession& session, clsProfile& profile, const CliRequest& request);
    // show, tag and delete: item N of the last list.
    int ActOnItem(CliSession& session, clsProfile& profile, const CliRequest& request);
    int Stats(clsProfile& profile);

    // The group name to use: the existing group's own spelling, else the name given.
    static QString GroupFor(clsProfile& profile, const QString& requested);

    Paths m_paths;
    QTextStream& m_out;
    QTextStream& m_err;
    bool m_interactive = false;
};
