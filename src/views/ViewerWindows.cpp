// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "views/ViewerWindows.h"

#include "feeds/RSSChannel.h"
#include "views/frmProperties.h"
#include "views/frmViewer.h"

ViewerWindows::ViewerWindows(ViewerServices services, QObject* parent)
    : QObject(parent), m_services(services) {}

ViewerWindows::~ViewerWindows() {
    CloseAll();
}

frmViewer* ViewerWindows::Window(const RSSChannel& channel) const {
    const auto found = m_windows.find(&channel);
    return found == m_windows.end() ? nullptr : found->second.data();
}

ChannelViewer* ViewerWindows::Viewer(const RSSChannel& channel) const {
    return Window(channel);
}

ChannelViewer* ViewerWindows::LoadViewer(RSSChannel& channel) {
    if (frmViewer* existing = Window(channel)) {
        return existing;
    }
    // Owned here: deleted when closed, when unloaded and with this object. Without a parent it
    // stands beside the main window rather than above it.
    auto* window = new frmViewer(m_services);
    QPointer<RSSChannel> owner(&channel);
    connect(window, &frmViewer::Resized, this, [owner] {
        if (owner) {
            owner->frm_Resized();
        }
    });
    connect(window, &frmViewer::Closed, this, [this, owner, window] {
        if (owner) {
            m_windows.erase(owner.data());
        } else {
            std::erase_if(m_windows, [window](const auto& entry) { return entry.second == window; });
        }
        window->deleteLater();
    });
    // By the time destroyed() is sent the channel is only a QObject: its address is the key, never
    // cast back to the channel.
    connect(&channel, &QObject::destroyed, window, [this, window, key = &channel] {
        m_windows.erase(key);
        window->deleteLater();
    });
    m_windows[&channel] = window;
    return window;
}

void ViewerWindows::UnloadViewer(RSSChannel& channel) {
    const auto found = m_windows.find(&channel);
    if (found == m_windows.end()) {
        return;
    }
    QPointer<frmViewer> window = found->second;
    m_windows.erase(found);
    if (window) {
        window->disconnect(this);
        window->hide();
        window->deleteLater();
    }
}

void ViewerWindows::CloseAll() {
    auto windows = std::move(m_windows);
    m_windows.clear();
    for (auto& [channel, window] : windows) {
        if (window) {
            window->disconnect(this);
            window->hide();
            // The channel may already be gone; the window is deleted now, not later, so that no
            // pending event reaches a window of a profile that left.
            delete window.data();
        }
    }
}

frmProperties& ViewerWindows::ChannelProperties() {
    if (!m_properties) {
        m_properties =
            std::make_unique<frmProperties>(m_services.settings, m_services.desktop, m_services.skin);
    }
    return *m_properties;
}
