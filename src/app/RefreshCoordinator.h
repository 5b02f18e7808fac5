// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/LongTimer.h"

#include <QObject>
#include <QString>

class Clock;
class RSSChannel;
class clsProfile;

// What the program does about the channels' own fetching: it limits how many channels talk to
// the network at once (ConnCount), keeps the shown state of each channel in step, and recounts
// the built-in folders about a second after a real channel changed (tmrSysChannels). The main
// window and the headless host share this logic; each supplies its active profile and its way
// of showing a channel's state through Target.
class RefreshCoordinator final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(RefreshCoordinator)
public:
    static constexpr int kConnectionSlots = 4;
    static constexpr quint32 kFolderRecountMs = 1000;

    class Target {
    public:
        virtual ~Target() = default;
        virtual clsProfile* ActiveProfile() const = 0;
        // Brings what shows the channel (its tree nodes) up to date from its TitleAndCount and
        // GetImage; true when anything shown changed.
        virtual bool UpdateChannelNode(RSSChannel& channel) = 0;
    };

    // `helpUrl` is the maker's help channel, recounted with the folders.
    RefreshCoordinator(Clock& clock, QString helpUrl, Target& target, QObject* parent = nullptr);
    ~RefreshCoordinator() override;

    // Takes a slot when one of the four is free.
    bool RequestConnect();
    // Gives a slot back; the count never goes below 0.
    void ConnectRelease();
    int ConnCount() const { return m_ConnCount; }

    // A channel of `profileName` changed. Ignored unless that profile is the active one. When
    // what is shown of a channel that is not a folder changed, the folders are recounted about a
    // second later (once, however many changes come meanwhile).
    void StateChange(const QString& profileName, RSSChannel& channel);
    bool RecountPending() const { return tmrSysChannels.Enabled(); }

private:
    void tmrSysChannels_OnTimer();

    QString m_helpUrl;
    Target& m_target;
    qint16 m_ConnCount = 0;
    LongTimer tmrSysChannels;
};
