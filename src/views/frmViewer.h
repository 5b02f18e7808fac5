// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "feeds/ChannelViewer.h"
#include "itembank/clsItemBank.h"
#include "skin/SkinnedWindow.h"
#include "views/ViewerServices.h"

#include <QPointer>
#include <QString>
#include <initializer_list>

class GuardedBrowser;
class ImageLoader;
class QComboBox;
class QFrame;
class QLineEdit;
class QTableWidget;
class QTimer;
class frmProperties;

// The window in which the user reads one channel or built-in folder: a paged list of its items,
// newest first, narrowed by a filter list and a search box, with each item's page opening inline
// below its row. Every item takes two rows of the grid: its own, and a row of no height that
// becomes the room of the preview when the item is opened.
class frmViewer final : public SkinnedWindow, public ChannelViewer {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(frmViewer)
public:
    static constexpr int kItemsPerPage = 50;
    static constexpr int kRowsPerPage = 2 * kItemsPerPage;
    static constexpr int kItemRowHeight = 18;
    static constexpr int kTitleLimit = 128;
    static constexpr int kTitleKeep = 125;
    static constexpr int kPreviewTickMs = 20;
    static constexpr int kDefaultPanelHeight = 300;
    static constexpr int kMinPanelHeight = 100;
    static constexpr int kMaxPanelHeight = 800;
    // Below this height a closing preview is shut at once.
    static constexpr int kClosedHeight = 15;
    static constexpr int kSplitterHeight = 6;

    enum Column {
        ColHidden,
        ColIcon,
        ColTitle,
        ColDate,
        ColTag,
        ColLink,
        ColProp,
        ColDelete,
        ColEnd,
        ColumnCount
    };

    explicit frmViewer(ViewerServices services, QWidget* parent = nullptr);
    ~frmViewer() override;

    // ChannelViewer
    void SetCaption(const QString& caption) override;
    void SetupView(const QString& key, const QString& pagePath) override;
    void SetVisible(bool visible) override;
    void ShowItem(int index) override;
    void SetGeometry(const QRect& geometry) override;
    QRect Geometry() const override;
    int WindowState() const override;
    void SetPanelHeight(int height) override;
    int PanelHeight() const override { return m_panelHeight; }

    // SkinWindow
    QString DecodeText(const QString& text) override;
    void SkinHandler(const QString& function) override;

    // The filter entries: their texts and the folder keys they narrow by.
    static QStringList FilterTexts();
    static QString FilterKey(int index);
    // A title as the grid shows it: over 128 characters it is cut to 125 and "...".
    static QString ShortTitle(const QString& title);
    // Where a control goes along one side: values of 0 or more from the left or top edge,
    // negative ones from the right or bottom edge.
    static int PlaceFromEdge(int value, int extent, int size);

    QString Key() const { return m_key; }
    QString Caption() const { return m_caption; }
    QString PagePath() const { return m_pagePath; }
    bool IsFolderView() const;
    const ItemList& Items() const { return m_items; }
    int Page() const { return m_page; }
    int Pages() const;
    int PageStart() const { return m_pageStart; }
    // The index in the item list shown by a grid row; -1 for none.
    int ItemIndexOfRow(int row) const;
    int GridRowOfItem(int index) const;
    int PreviewRow() const { return m_previewRow; }
    int PendingRow() const { return m_pendingRow; }
    bool PreviewClosed() const { return m_previewClosed; }
    bool PreviewAnimating() const;
    int PreviewRowHeight() const;

    // Loads the list again with the chosen filter and the search text.
    void LoadList();
    // A click on a cell of the grid.
    void flexItems_Click(int row, int column);
    // One step of the preview animation.
    void tmrIEShowHide_Timer();

    QComboBox* cboSort() const { return m_cboSort; }
    QLineEdit* txtSearch() const { return m_txtSearch; }
    QTableWidget* flexItems() const { return m_flexItems; }
    GuardedBrowser* webView() const { return m_webView; }
    QWidget* picSplitter() const;
    frmProperties* Properties() const;

Q_SIGNALS:
    // The window was shown the first time.
    void Loaded();
    // The window was moved or resized by the user or the window system.
    void Resized();
    // The window was closed; its owner unloads it.
    void Closed();

protected:
    void resizeEvent(QResizeEvent* event) override;
    void moveEvent(QMoveEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void changeEvent(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    clsItemBank* Bank() const;
    void ApplySkin();
    void LayoutControls();
    void LayoutColumns();
    void LayoutPreview();
    void FillGrid();
    void FillRow(int row, int index);
    void SetRowIcon(int row, bool expanded);
    void SetRowTitleBold(int row, bool bold);
    void OpenRow(int row);
    void ClosePreview();
    bool Render(int index);
    void ReportStates(const XmlNode& item, std::initializer_list<QString> folders);
    void ToggleFlag(int row, int index);
    // The tag column's picture and tooltip follow the item's tag.
    void SetTagCell(int row, bool flagged);
    void ToggleDelete(int row, int index);
    void OpenProperties(int index);
    void MoveCurrent(int step);
    void SplitterDragged(int panelY);
    void GoToPage(int pageStart, int page);

    ViewerServices m_services;
    QComboBox* m_cboSort;
    QLineEdit* m_txtSearch;
    QTableWidget* m_flexItems;
    QFrame* m_picPanelSkin;
    GuardedBrowser* m_webView;
    QFrame* m_picSplitter;
    QTimer* m_tmrIEShowHide;
    ImageLoader* m_images;
    QPointer<frmProperties> m_properties;

    QString m_key;
    QString m_caption;
    QString m_pagePath;
    ItemList m_items;
    int m_page = 1;
    int m_pageStart = -1;
    int m_previewRow = -1;
    int m_pendingRow = -1;
    bool m_previewClosed = true;
    int m_panelHeight = kDefaultPanelHeight;
    int m_currentRow = -1;
    bool m_loaded = false;
    bool m_searching = false;
};
