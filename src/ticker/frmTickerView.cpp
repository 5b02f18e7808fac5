// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ticker/frmTickerView.h"

#include "itembank/modItemHandler.h"
#include "platform/CRegSettings.h"
#include "platform/LongTimer.h"
#include "skin/SkinSurface.h"
#include "skin/frmTamselSkin.h"
#include "views/GuardedBrowser.h"
#include "views/ItemRenderer.h"

#include <QResizeEvent>

namespace {

const QString kSection = QStringLiteral("Ticker");
const QString kPanelHeightKey = QStringLiteral("PanelHeight");
constexpr int kGrip = 4;
constexpr int kClosedHeight = 15;
constexpr int kSlidePadding = 5;

} // namespace

frmTickerView::frmTickerView(frmTamselSkin& skin, CRegSettings& settings, Clock& clock, Desktop& desktop,
                             ImageLoader& images, const XsltStylesheet& namespaceTransform, PagePath pagePath,
                             ItemRead itemRead, QWidget* parent)
    : SkinnedWindow(skin, frmTamselSkin::KindTickerItem, parent), m_settings(settings),
      m_namespaceTransform(namespaceTransform), m_pagePath(std::move(pagePath)),
      m_itemRead(std::move(itemRead)), m_webView(new GuardedBrowser(desktop, images, this)),
      m_tmrIEShowHide(new LongTimer(clock, this)) {
    setWindowTitle(QStringLiteral("Tamsel Item"));
    setAccessibleName(windowTitle());
    picSkin()->setAccessibleName(QStringLiteral("Item panel"));
    m_webView->setAccessibleName(QStringLiteral("Item"));
    setWindowFlag(Qt::WindowStaysOnTopHint, true);
    setWindowFlag(Qt::Tool, true);
    setMinimumHeight(0);
    m_webView->hide();
    m_tmrIEShowHide->SetInterval(kSlideInterval);
    connect(m_tmrIEShowHide, &LongTimer::OnTimer, this, &frmTickerView::tmrIEShowHide_OnTimer);
    bool ok = false;
    const int stored =
        m_settings.GetSetting(kSection, kPanelHeightKey, QString::number(kDefaultPanelHeight)).toInt(&ok);
    m_panelHeight = ok && stored > kClosedHeight ? stored : kDefaultPanelHeight;
}

frmTickerView::~frmTickerView() = default;

bool frmTickerView::IsVisible() const {
    return isVisible();
}

void frmTickerView::ShowItem(const XmlNode& item, const QRect& placement) {
    m_resizing = false;
    m_currentItem = item;
    SetItemRead(item, true);
    if (m_itemRead) {
        m_itemRead(item);
    }
    const QString path = m_pagePath ? m_pagePath() : QString();
    if (!path.isEmpty()) {
        const ItemRenderer renderer(m_namespaceTransform, Skin().ItemStylesheet());
        if (renderer.RenderToFile(item, path)) {
            m_webView->Navigate(path);
        }
    }
    if (!isVisible()) {
        setGeometry(placement.left(), placement.top(), placement.width(), 0);
    }
    m_closing = false;
    m_tmrIEShowHide->SetEnabled(true);
    show();
}

void frmTickerView::HideItem() {
    m_resizing = false;
    m_closing = true;
    m_currentItem = XmlNode();
    m_tmrIEShowHide->SetEnabled(true);
    m_settings.SaveSetting(kSection, kPanelHeightKey, QString::number(m_panelHeight));
}

void frmTickerView::tmrIEShowHide_OnTimer() {
    const int current = height();
    if (!m_closing) {
        m_webView->hide();
        const int grown = current + (m_panelHeight - current) / 5 + kSlidePadding;
        if (grown < m_panelHeight) {
            resize(width(), grown);
            return;
        }
        resize(width(), m_panelHeight);
        m_tmrIEShowHide->SetEnabled(false);
        m_webView->show();
        m_webView->setFocus();
        return;
    }
    m_webView->hide();
    if (current > kClosedHeight) {
        resize(width(), current - (current / 2 + kSlidePadding));
        return;
    }
    hide();
    m_tmrIEShowHide->SetEnabled(false);
}

void frmTickerView::SkinHandler(const QString& function) {
    if (function == QLatin1String("close")) {
        HideItem();
    }
}

void frmTickerView::PlaceBrowser() {
    const int kind = SkinKind();
    const int left = Skin().FrameWSize(kind);
    const int top = Skin().FrameNSize(kind);
    const int right = Skin().FrameESize(kind);
    const int bottom = qMax(int(Skin().FrameSSize(kind)), kGrip);
    m_webView->setGeometry(left, top, qMax(0, width() - left - right), qMax(0, height() - top - bottom));
}

void frmTickerView::resizeEvent(QResizeEvent* event) {
    SkinnedWindow::resizeEvent(event);
    PlaceBrowser();
    if (m_resizing) {
        m_panelHeight = height();
    }
}

void frmTickerView::SurfacePressed(Qt::MouseButton button, QPointF point) {
    if (Skin().SkinMouseDown(*this, button, point, SkinKind(), SkipHidden())) {
        return;
    }
    if (button == Qt::LeftButton && point.y() >= height() - kGrip) {
        m_resizing = true;
        BeginSystemDrag(Qt::BottomEdge);
    }
}
