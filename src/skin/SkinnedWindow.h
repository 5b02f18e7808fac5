// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "skin/SkinWindow.h"

#include <QPointF>
#include <QSizeF>
#include <QWidget>

class SkinSurface;
class clsStyle;
class frmTamselSkin;

// The base of the skinned windows: a window without a native frame whose client area is one
// drawing surface (`picSkin`) that the skin paints with the frame and entities of the window's
// kind. Presses, moves and releases on the surface go to the skin's entities; a left press that
// no entity takes moves the window, or resizes it within 4 pixels of an edge. The native frame
// can be switched back on ("windowframe"); then the skin no longer moves or resizes the window.
// Subclasses place their controls over the surface and supply DecodeText and SkinHandler.
class SkinnedWindow : public QWidget, public SkinWindow {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(SkinnedWindow)
public:
    static constexpr int kGrabSize = 4;

    SkinnedWindow(frmTamselSkin& skin, int kind, QWidget* parent = nullptr);
    ~SkinnedWindow() override;

    SkinSurface* picSkin() override { return m_picSkin; }
    frmTamselSkin& Skin() const { return m_skin; }
    int SkinKind() const { return m_kind; }
    clsStyle& WindowStyle() const { return *m_style; }

    // The native frame (caption, buttons, sizing border) is shown.
    bool Framed() const;
    void SetFramed(bool framed);
    // Whether entities marked "hide" are left out when this window is painted and clicked.
    bool SkipHidden() const { return m_skipHidden; }
    void SetSkipHidden(bool skip) { m_skipHidden = skip; }

    // The border zone of a point on a surface of `size`: the edges to resize, none for a move.
    static Qt::Edges EdgeZone(QPointF point, QSizeF size);
    // The pointer over a zone: the sizing arrows, or the ordinary arrow for a move.
    static Qt::CursorShape ZoneCursor(Qt::Edges edges);

    // Paints the frame and the entities anew.
    virtual void RepaintSkin();

protected:
    void resizeEvent(QResizeEvent* event) override;

    virtual void SurfacePressed(Qt::MouseButton button, QPointF point);
    virtual void SurfaceMoved(Qt::MouseButtons buttons, QPointF point);
    virtual void SurfaceReleased(Qt::MouseButton button, QPointF point);
    // Hands the move (no edges) or resize to the window system.
    virtual void BeginSystemDrag(Qt::Edges edges);

private:
    bool SkinMovesWindow() const;

    frmTamselSkin& m_skin;
    int m_kind;
    SkinSurface* m_picSkin;
    clsStyle* m_style;
    bool m_skipHidden = false;
};
