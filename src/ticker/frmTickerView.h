// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/XmlNode.h"
#include "skin/SkinnedWindow.h"
#include "ticker/TickerItemView.h"

#include <QString>

#include <functional>

class CRegSettings;
class Clock;
class Desktop;
class GuardedBrowser;
class ImageLoader;
class LongTimer;
class XsltStylesheet;

// The ticker's item view: a frameless skinned panel that slides open beside the ticker to show
// one item as the item viewer renders it, and slides shut again. Its lowest 4 pixels are a grip
// that sets the open height, which is kept in the settings.
class frmTickerView final : public SkinnedWindow, public TickerItemView {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(frmTickerView)
public:
    static constexpr int kSlideInterval = 20;
    static constexpr int kDefaultPanelHeight = 300;

    // Where the page of the shown item is written ("tck_tmp.html" in the active profile's
    // folder); empty while no profile is active.
    using PagePath = std::function<QString()>;
    // Told of every item the view marks read.
    using ItemRead = std::function<void(const XmlNode&)>;

    frmTickerView(frmTamselSkin& skin, CRegSettings& settings, Clock& clock, Desktop& desktop,
                  ImageLoader& images, const XsltStylesheet& namespaceTransform, PagePath pagePath,
                  ItemRead itemRead = {}, QWidget* parent = nullptr);
    ~frmTickerView() override;

    bool IsVisible() const override;
    void ShowItem(const XmlNode& item, const QRect& placement) override;
    void HideItem() override;

    int PanelHeight() const { return m_panelHeight; }
    bool Closing() const { return m_closing; }
    GuardedBrowser& webView() const { return *m_webView; }
    XmlNode CurrentItem() const { return m_currentItem; }

    QString DecodeText(const QString& text) override { return text; }
    void SkinHandler(const QString& function) override;

protected:
    void resizeEvent(QResizeEvent* event) override;
    void SurfacePressed(Qt::MouseButton button, QPointF point) override;

private:
    void tmrIEShowHide_OnTimer();
    void PlaceBrowser();

    CRegSettings& m_settings;
    const XsltStylesheet& m_namespaceTransform;
    PagePath m_pagePath;
    ItemRead m_itemRead;
    GuardedBrowser* m_webView;
    LongTimer* m_tmrIEShowHide;
    bool m_closing = true;
    int m_panelHeight = kDefaultPanelHeight;
    bool m_resizing = false;
    XmlNode m_currentItem;
};
