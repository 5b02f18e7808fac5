// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "skin/SkinnedWindow.h"

class QLabel;

// Says that a profile is being loaded; shown and unloaded by the main window around an activation.
class frmLoading final : public SkinnedWindow {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(frmLoading)
public:
    frmLoading(frmTamselSkin& skin, QWidget* parent);
    ~frmLoading() override;

    QString DecodeText(const QString& text) override { return text; }
    void SkinHandler(const QString& function) override { Q_UNUSED(function) }

protected:
    void RepaintSkin() override;

private:
    QLabel* m_lblLoading;
    QLabel* m_lblProduct;
};
