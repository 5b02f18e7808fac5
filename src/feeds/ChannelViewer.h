// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QRect>
#include <QString>

// A channel's viewer window as the channel sees it. The host loads and unloads it; the channel
// sets it up, places it and reads its geometry back. Geometry is in the window system's units.
class ChannelViewer {
public:
    // The window state that SaveWndState records; other states (minimised, maximised) are not saved.
    static constexpr int kNormalState = 0;

    virtual ~ChannelViewer() = default;

    virtual void SetCaption(const QString& caption) = 0;
    // What the viewer lists (a channel URL or a folder key) and where it writes its preview page.
    virtual void SetupView(const QString& key, const QString& pagePath) = 0;
    virtual void SetVisible(bool visible) = 0;
    // Renders the item at that index of the viewer's list.
    virtual void ShowItem(int index) = 0;

    virtual void SetGeometry(const QRect& geometry) = 0;
    virtual QRect Geometry() const = 0;
    virtual int WindowState() const = 0;
    virtual void SetPanelHeight(int height) = 0;
    virtual int PanelHeight() const = 0;
};
