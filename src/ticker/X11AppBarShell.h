// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ticker/WidgetAppBarShell.h"

#include <QByteArray>
#include <QtGlobal>

// The shell of an X11 desktop: the bar is a dock window whose strip is reserved with
// _NET_WM_STRUT_PARTIAL (and the older _NET_WM_STRUT), so that window managers keep maximised
// windows out of it. The one auto-hide bar of each edge is claimed with a property of the root
// window that names the claiming window; a claim by a window that no longer exists is void.
class X11AppBarShell final : public WidgetAppBarShell {
public:
    explicit X11AppBarShell(QWidget& window);

    bool Register() override;
    void Unregister() override;
    void SetPos(int edge, const QRect& rect) override;
    bool SetAutoHideBar(int edge, bool claim) override;

private:
    struct Connection;
    quint32 NativeWindow() const;
    void WriteStrut(const quint32 (&strut)[12]);

    bool m_registered = false;
};
