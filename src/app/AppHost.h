// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/XsltStylesheet.h"

#include <QString>

class ChannelViewer;
class RSSChannel;
class XmlNode;
class clsProfile;

// What the system's objects ask of the program around them (the main window, or a headless host
// in tests and the command-line tool).
//
// The operations after PopupInfo serve the channels. Their defaults describe a host that runs no
// fetches: it grants no connection slot (so its channels wait), has no active profile, stores no
// item and opens no viewer. The main window and HeadlessHost override them.
class AppHost {
public:
    virtual ~AppHost() = default;

    // A file could not be read. Only acted on for the active profile and channels in a group;
    // the window program sounds the alert, a headless host may print the message.
    virtual void PopupInfo(const QString& message, const QString& profileName, const QString& channelKey) = 0;

    // Takes one of the connection slots; false when all are in use.
    virtual bool RequestConnect() { return false; }
    // Gives a slot back.
    virtual void ConnectRelease() {}
    // A channel of `profileName` changed its state, unread count or icon.
    virtual void StateChange(const QString& profileName, RSSChannel& channel) {
        Q_UNUSED(profileName)
        Q_UNUSED(channel)
    }
    // Hands a stamped item to the active profile's item bank; true when the bank changed.
    virtual bool AddRSSItem(const XmlNode& item) {
        Q_UNUSED(item)
        return false;
    }
    // The profile the program shows, or none.
    virtual clsProfile* ActiveProfile() const { return nullptr; }
    // The compiled namespace stylesheet that every fetched feed passes through.
    virtual const XsltStylesheet& NamespaceTransform() const {
        static const XsltStylesheet none;
        return none;
    }
    // The first start on this machine: the help channel opens itself once it has loaded.
    virtual bool FirstRun() const { return false; }
    virtual void SetFirstRun(bool firstRun) { Q_UNUSED(firstRun) }

    // The channel's viewer window while one is loaded, else none.
    virtual ChannelViewer* Viewer(const RSSChannel& channel) const {
        Q_UNUSED(channel)
        return nullptr;
    }
    // Loads a viewer window for the channel (hidden) and returns it; none when the host has no windows.
    virtual ChannelViewer* LoadViewer(RSSChannel& channel) {
        Q_UNUSED(channel)
        return nullptr;
    }
    // Closes the channel's viewer window, if one is loaded.
    virtual void UnloadViewer(RSSChannel& channel) { Q_UNUSED(channel) }

    // Finds or creates the channel in the active profile, puts it into the group and saves the
    // groups. An empty URL is ignored.
    virtual void AddChannel(const QString& url, const QString& groupName) {
        Q_UNUSED(url)
        Q_UNUSED(groupName)
    }
};
