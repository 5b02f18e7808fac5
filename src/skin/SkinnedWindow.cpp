// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "skin/SkinnedWindow.h"

#include "skin/SkinSurface.h"
#include "skin/clsStyle.h"
#include "skin/frmTamselSkin.h"

#include <QResizeEvent>
#include <QWindow>

SkinnedWindow::SkinnedWindow(frmTamselSkin& skin, int kind, QWidget* parent)
    : QWidget(parent, Qt::Window), m_skin(skin), m_kind(kind), m_picSkin(new SkinSurface(this)),
      m_style(new clsStyle(this)) {
    m_picSkin->setGeometry(rect());
    m_style->SetClient(this);
    SetFramed(false);
    connect(m_picSkin, &SkinSurface::MousePressed, this, &SkinnedWindow::SurfacePressed);
    connect(m_picSkin, &SkinSurface::MouseMoved, this, &SkinnedWindow::SurfaceMoved);
    connect(m_picSkin, &SkinSurface::MouseReleased, this, &SkinnedWindow::SurfaceReleased);
    connect(m_picSkin, &SkinSurface::Invalidated, this, &SkinnedWindow::RepaintSkin);
    connect(&m_skin, &frmTamselSkin::SkinLoaded, this, &SkinnedWindow::RepaintSkin);
}

SkinnedWindow::~SkinnedWindow() = default;

bool SkinnedWindow::Framed() const {
    return m_style->Titlebar();
}

void SkinnedWindow::SetFramed(bool framed) {
    if (framed) {
        m_style->SetStyle(m_style->Style() | clsStyle::kCaption | clsStyle::kSysMenu |
                          clsStyle::kMinimizeBox | clsStyle::kMaximizeBox | clsStyle::kThickFrame);
    } else {
        m_style->SetTitlebar(false);
    }
}

Qt::Edges SkinnedWindow::EdgeZone(QPointF point, QSizeF size) {
    const double x = point.x();
    const double y = point.y();
    const double w = size.width();
    const double h = size.height();
    const bool left = x <= kGrabSize;
    const bool top = y <= kGrabSize;
    const bool right = x >= w - kGrabSize;
    const bool bottom = y >= h - kGrabSize;
    if (left && top) {
        return Qt::LeftEdge | Qt::TopEdge;
    }
    if (left && bottom) {
        return Qt::LeftEdge | Qt::BottomEdge;
    }
    if (left) {
        return Qt::LeftEdge;
    }
    if (top && right) {
        return Qt::TopEdge | Qt::RightEdge;
    }
    if (top) {
        return Qt::TopEdge;
    }
    if (right && bottom) {
        return Qt::RightEdge | Qt::BottomEdge;
    }
    if (right) {
        return Qt::RightEdge;
    }
    if (bottom) {
        return Qt::BottomEdge;
    }
    return {};
}

Qt::CursorShape SkinnedWindow::ZoneCursor(Qt::Edges edges) {
    const bool vertical = edges.testFlag(Qt::TopEdge) || edges.testFlag(Qt::BottomEdge);
    const bool horizontal = edges.testFlag(Qt::LeftEdge) || edges.testFlag(Qt::RightEdge);
    if (vertical && horizontal) {
        const bool fallingDiagonal =
            edges == (Qt::LeftEdge | Qt::TopEdge) || edges == (Qt::RightEdge | Qt::BottomEdge);
        return fallingDiagonal ? Qt::SizeFDiagCursor : Qt::SizeBDiagCursor;
    }
    if (vertical) {
        return Qt::SizeVerCursor;
    }
    if (horizontal) {
        return Qt::SizeHorCursor;
    }
    return Qt::ArrowCursor;
}

void SkinnedWindow::RepaintSkin() {
    // A hidden window learns of a new size only when shown; the surface follows it at once.
    m_picSkin->setGeometry(rect());
    m_skin.PaintAll(*this, *m_picSkin, m_kind, m_skipHidden);
}

void SkinnedWindow::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    RepaintSkin();
}

bool SkinnedWindow::SkinMovesWindow() const {
    return !Framed() && !(windowState() & (Qt::WindowMaximized | Qt::WindowFullScreen));
}

void SkinnedWindow::SurfacePressed(Qt::MouseButton button, QPointF point) {
    const bool hit = m_skin.SkinMouseDown(*this, button, point, m_kind, m_skipHidden);
    if (!hit && button == Qt::LeftButton && SkinMovesWindow()) {
        BeginSystemDrag(EdgeZone(point, m_picSkin->size()));
    }
}

void SkinnedWindow::SurfaceMoved(Qt::MouseButtons buttons, QPointF point) {
    if (SkinMovesWindow()) {
        const Qt::CursorShape shape = ZoneCursor(EdgeZone(point, m_picSkin->size()));
        if (shape == Qt::ArrowCursor) {
            m_picSkin->unsetCursor();
        } else {
            m_picSkin->setCursor(shape);
        }
    }
    m_skin.SkinMouseMove(*this, buttons, point, m_kind, m_skipHidden);
}

void SkinnedWindow::SurfaceReleased(Qt::MouseButton button, QPointF point) {
    m_skin.SkinMouseUp(*this, button, point, m_kind, m_skipHidden);
}

void SkinnedWindow::BeginSystemDrag(Qt::Edges edges) {
    QWindow* handle = windowHandle();
    if (!handle) {
        return;
    }
    if (edges == Qt::Edges()) {
        handle->startSystemMove();
    } else {
        handle->startSystemResize(edges);
    }
}
