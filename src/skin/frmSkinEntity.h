// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "skin/SkinLabel.h"
#include "skin/SkinPicture.h"

#include <QObject>
#include <QPointF>
#include <QPointer>
#include <QRectF>
#include <QSizeF>

class Clock;
class LongTimer;
class SkinSurface;
class SkinWindow;
class frmTamselSkin;

// One skin entity: a picture or a caption on a window kind that shows normal, hover and pressed
// states and may invoke a function of the window when clicked. Never shown itself; it draws on
// the surfaces of the windows that the engine hands it.
class frmSkinEntity final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(frmSkinEntity)
public:
    static constexpr int kLeaveCheckMs = 20;

    frmSkinEntity(frmTamselSkin& skin, Clock& clock, QObject* parent = nullptr);
    ~frmSkinEntity() override;

    // Normal, hover and pressed pictures; any may be empty.
    SkinPicture img;
    SkinPicture imgMM;
    SkinPicture imgMD;
    // Normal, hover and pressed captions.
    SkinLabel lbl;
    SkinLabel lblMM;
    SkinLabel lblMD;
    QString sFunction;
    int iWindow = 0;
    bool bHide = false;
    bool bCenter = false;
    double iTop = 0;
    double iLeft = 0;

    void SetTop(double value) { iTop = value; }
    void SetLeft(double value) { iLeft = value; }

    // Where the entity was last laid out.
    QRectF Rect() const { return m_rect; }
    bool LeaveDetectorEnabled() const;

    // Layout of a control of `control` size on a window whose client area has `inner` size: a
    // negative offset counts from the right or bottom edge, centring is not rounded.
    QRectF Layout(QSizeF control, QSizeF inner) const;
    // Strictly inside the last layout; points on the edges do not hit.
    bool Hits(QPointF point) const;

    void PaintIt(SkinWindow& window, SkinSurface& surface, bool skipHidden);
    void SkinMouseMove(SkinWindow& window, Qt::MouseButtons buttons, QPointF point, bool skipHidden);
    bool SkinMouseDown(SkinWindow& window, QPointF point, bool skipHidden);
    void SkinMouseUp(SkinWindow& window, QPointF point, bool skipHidden);

private:
    bool Skipped(bool skipHidden) const { return skipHidden && bHide; }
    // Lays out with the picture when there is one, else with the caption; false with neither.
    bool LayOutWith(const SkinPicture& picture, const SkinLabel& label, SkinSurface& surface);
    void Remember(SkinWindow& window);
    void DrawState(SkinSurface& surface, const SkinPicture& picture);
    void tmrMouse_OnTimer();

    frmTamselSkin& m_skin;
    LongTimer* m_tmrMouse;
    // The window last painted or hit, known by its surface: the surface goes with its window.
    QPointer<SkinSurface> m_frm;
    QRectF m_rect;
};
