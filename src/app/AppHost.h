// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

// What the system's objects ask of the program around them (the main window, or a headless host
// in tests and the command-line tool).
class AppHost {
public:
    virtual ~AppHost() = default;

    // A file could not be read. Only acted on for the active profile and channels in a group;
    // the window program sounds the alert, a headless host may print the message.
    virtual void PopupInfo(const QString& message, const QString& profileName, const QString& channelKey) = 0;
};
