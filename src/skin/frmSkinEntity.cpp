// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "skin/frmSkinEntity.h"

#include "platform/LongTimer.h"
#include "skin/SkinColor.h"
#include "skin/SkinHost.h"
#include "skin/SkinSurface.h"
#include "skin/SkinWindow.h"
#include "skin/frmTamselSkin.h"

frmSkinEntity::frmSkinEntity(frmTamselSkin& skin, Clock& clock, QObject* parent)
    : QObject(parent), m_skin(skin), m_tmrMouse(new LongTimer(clock, this)) {
    m_tmrMouse->SetInterval(kLeaveCheckMs);
    connect(m_tmrMouse, &LongTimer::OnTimer, this, &frmSkinEntity::tmrMouse_OnTimer);
}

frmSkinEntity::~frmSkinEntity() = default;

bool frmSkinEntity::LeaveDetectorEnabled() const {
    return m_tmrMouse->Enabled();
}

QRectF frmSkinEntity::Layout(QSizeF control, QSizeF inner) const {
    double left = 0;
    if (bCenter) {
        left = inner.width() / 2 - control.width() / 2;
    } else if (iLeft >= 0) {
        left = iLeft;
    } else {
        left = inner.width() + iLeft - control.width();
    }
    const double top = iTop >= 0 ? iTop : inner.height() + iTop - control.height();
    return QRectF(QPointF(left, top), control);
}

bool frmSkinEntity::Hits(QPointF point) const {
    return m_rect.left() < point.x() && point.x() < m_rect.left() + m_rect.width() &&
           m_rect.top() < point.y() && point.y() < m_rect.top() + m_rect.height();
}

bool frmSkinEntity::LayOutWith(const SkinPicture& picture, const SkinLabel& label, SkinSurface& surface) {
    QSizeF control;
    if (!picture.IsNull()) {
        control = picture.Size();
    } else if (!label.IsEmpty()) {
        control = label.Extent();
    } else {
        return false;
    }
    m_rect = Layout(control, surface.size());
    return true;
}

void frmSkinEntity::Remember(SkinWindow& window) {
    m_frm = window.picSkin();
}

void frmSkinEntity::DrawState(SkinSurface& surface, const SkinPicture& picture) {
    // Each state is shown over the frame alone, so that a translucent picture never shows
    // through to the state it replaces.
    QSizeF covered = m_rect.size();
    for (const SkinPicture* state : {&img, &imgMM, &imgMD}) {
        covered = covered.expandedTo(QSizeF(state->Size()));
    }
    m_skin.RestoreBackground(surface, iWindow, QRectF(m_rect.topLeft(), covered));
    surface.DrawPicture(m_rect.topLeft(), picture);
}

void frmSkinEntity::PaintIt(SkinWindow& window, SkinSurface& surface, bool skipHidden) {
    SkinSurface* own = window.picSkin();
    if (!own || Skipped(skipHidden)) {
        return;
    }
    Remember(window);
    if (!img.IsNull()) {
        m_rect = Layout(img.Size(), own->size());
        surface.DrawPicture(m_rect.topLeft(), img);
    } else if (!lbl.IsEmpty()) {
        m_rect = Layout(lbl.Extent(), own->size());
        surface.SetDrawFont(lbl.Font);
        surface.SetForeColor(SkinColor::ToQColor(lbl.ForeColor));
        surface.SetCurrentPos(m_rect.topLeft());
        surface.Print(window.DecodeText(lbl.Caption));
    }
}

void frmSkinEntity::SkinMouseMove(SkinWindow& window, Qt::MouseButtons buttons, QPointF point,
                                  bool skipHidden) {
    SkinSurface* surface = window.picSkin();
    if (!surface || !LayOutWith(img, lbl, *surface)) {
        return;
    }
    const SkinPicture* state = nullptr;
    if (buttons == Qt::NoButton) {
        state = &imgMM;
    } else if (buttons == Qt::LeftButton) {
        state = &imgMD;
    } else {
        return;
    }
    if (Skipped(skipHidden) || !Hits(point)) {
        return;
    }
    if (!state->IsNull()) {
        Remember(window);
        DrawState(*surface, *state);
        m_tmrMouse->SetEnabled(true);
    } else if (img.IsNull() && !sFunction.isEmpty() && !lblMM.IsEmpty()) {
        Remember(window);
        surface->setCursor(Qt::PointingHandCursor);
        m_tmrMouse->SetEnabled(true);
    }
}

bool frmSkinEntity::SkinMouseDown(SkinWindow& window, QPointF point, bool skipHidden) {
    SkinSurface* surface = window.picSkin();
    if (!surface || !LayOutWith(imgMM, lblMM, *surface) || Skipped(skipHidden) || !Hits(point)) {
        return false;
    }
    if (!imgMD.IsNull()) {
        Remember(window);
        DrawState(*surface, imgMD);
        m_tmrMouse->SetEnabled(true);
    }
    return !imgMD.IsNull() || !lblMD.IsEmpty();
}

void frmSkinEntity::SkinMouseUp(SkinWindow& window, QPointF point, bool skipHidden) {
    SkinSurface* surface = window.picSkin();
    if (!surface || !LayOutWith(imgMD, lblMD, *surface) || sFunction.isEmpty() || Skipped(skipHidden) ||
        !Hits(point)) {
        return;
    }
    // Last: the window's handler may load another skin, which drops this entity.
    window.SkinHandler(sFunction.toLower());
}

void frmSkinEntity::tmrMouse_OnTimer() {
    SkinSurface* surface = m_frm.data();
    if (!surface) {
        m_tmrMouse->SetEnabled(false);
        return;
    }
    if (Hits(m_skin.Host().CursorOn(*surface))) {
        return;
    }
    // A caption never changes with the mouse, so only a picture has a state to undo; printing
    // a caption again over itself would thicken its anti-aliased edges.
    if (!img.IsNull()) {
        m_rect = Layout(img.Size(), surface->size());
        DrawState(*surface, img);
    }
    surface->unsetCursor();
    m_tmrMouse->SetEnabled(false);
}
