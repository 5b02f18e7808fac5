// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "views/ViewerServices.h"

#include <QObject>
#include <QPointer>
#include <map>
#include <memory>

class ChannelViewer;
class RSSChannel;
class frmProperties;
class frmViewer;

// The viewer windows of the active profile, one per channel or folder, each standing by itself.
// It answers the host's Viewer, LoadViewer and UnloadViewer, tells each channel when its window
// moved or resized so that it keeps the window state, and forgets a window the user closed.
class ViewerWindows final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(ViewerWindows)
public:
    explicit ViewerWindows(ViewerServices services, QObject* parent = nullptr);
    ~ViewerWindows() override;

    ChannelViewer* Viewer(const RSSChannel& channel) const;
    ChannelViewer* LoadViewer(RSSChannel& channel);
    void UnloadViewer(RSSChannel& channel);
    // Closes every viewer (a profile change, the end of the program).
    void CloseAll();

    frmViewer* Window(const RSSChannel& channel) const;
    int Count() const { return int(m_windows.size()); }
    // The one properties window for channels, made on first use.
    frmProperties& ChannelProperties();

private:
    ViewerServices m_services;
    std::map<const RSSChannel*, QPointer<frmViewer>> m_windows;
    std::unique_ptr<frmProperties> m_properties;
};
