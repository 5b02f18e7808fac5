// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

class clsProfile;
class colProfiles;

// The main window's commands that the channel and group dialogs act through; the dialogs keep no
// data of their own beyond what they show.
class ChannelCommands {
public:
    virtual ~ChannelCommands() = default;

    virtual clsProfile* ActiveProfile() const = 0;
    virtual colProfiles* Users() const = 0;
    // Finds or creates the channel in the active profile, puts it into the group and saves.
    virtual void AddChannel(const QString& url, const QString& groupName) = 0;
    // Both tell the user why a name was refused and return false then.
    virtual bool AddGroup(const QString& name) = 0;
    virtual bool RenameGroup(const QString& oldName, const QString& newName) = 0;
    // Unsubscribes the channel of that URL: the channel, its timers and its memberships go.
    virtual void RemoveChannel(const QString& key) = 0;
    // Saves everything and activates the named profile again, which rebuilds the tree.
    virtual void ChangeUser(const QString& name) = 0;
};
