// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/frmLoading.h"

#include "skin/SkinColor.h"
#include "skin/frmTamselSkin.h"

#include <QLabel>

namespace {

constexpr int kWidth = 300;
constexpr int kHeight = 110;
// The product name stands out from the message.
constexpr double kProductScale = 1.8;

} // namespace

frmLoading::frmLoading(frmTamselSkin& skin, QWidget* parent)
    : SkinnedWindow(skin, frmTamselSkin::KindDialog, parent),
      m_lblLoading(new QLabel(QStringLiteral("Loading Profile . . .  Please Wait"), this)),
      m_lblProduct(new QLabel(QStringLiteral("TAMSEL"), this)) {
    setWindowTitle(QStringLiteral("Tamsel"));
    setAttribute(Qt::WA_ShowWithoutActivating);
    for (QLabel* label : {m_lblProduct, m_lblLoading}) {
        label->setAlignment(Qt::AlignCenter);
        label->setAccessibleName(label->text());
    }
    resize(kWidth, kHeight);
    if (parent) {
        move(parent->geometry().center() - rect().center());
    }
}

frmLoading::~frmLoading() = default;

void frmLoading::RepaintSkin() {
    SkinnedWindow::RepaintSkin();
    frmTamselSkin& skin = Skin();
    const int kind = SkinKind();
    QFont productFont = skin.GetFont(skin.TreeFont());
    productFont.setBold(true);
    productFont.setPointSizeF(productFont.pointSizeF() * kProductScale);
    m_lblProduct->setFont(productFont);
    m_lblLoading->setFont(skin.GetFont(skin.TreeFont()));
    QPalette palette = m_lblLoading->palette();
    palette.setColor(QPalette::WindowText, SkinColor::ToQColor(skin.GetFontColor(skin.TreeFont())));
    m_lblLoading->setPalette(palette);
    m_lblProduct->setPalette(palette);
    const QRect inside = rect().adjusted(skin.FrameWSize(kind), skin.FrameNSize(kind), -skin.FrameESize(kind),
                                         -skin.FrameSSize(kind));
    const int half = inside.height() / 2;
    m_lblProduct->setGeometry(inside.left(), inside.top(), inside.width(), half);
    m_lblLoading->setGeometry(inside.left(), inside.top() + half, inside.width(), inside.height() - half);
}
