// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "skin/WidgetSkinHost.h"

#include "skin/SkinSurface.h"

#include <QApplication>
#include <QCursor>
#include <QMessageBox>

void WidgetSkinHost::ShowMessage(const QString& text) {
    QMessageBox::information(nullptr, QApplication::applicationName(), text, QMessageBox::Ok);
}

QPointF WidgetSkinHost::CursorOn(const SkinSurface& surface) const {
    return surface.mapFromGlobal(QPointF(QCursor::pos()));
}
