// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "views/frmViewer.h"

#include "app/AppHost.h"
#include "app/SharedHelpers.h"
#include "app/clsProfile.h"
#include "feeds/RSSChannel.h"
#include "itembank/modItemHandler.h"
#include "platform/Desktop.h"
#include "skin/SkinColor.h"
#include "skin/SkinPalette.h"
#include "skin/frmTamselSkin.h"
#include "views/GuardedBrowser.h"
#include "views/ImageLoader.h"
#include "views/ItemRenderer.h"
#include "views/frmProperties.h"

#include <QComboBox>
#include <QFrame>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMouseEvent>
#include <QScrollBar>
#include <QShortcut>
#include <QTableWidget>
#include <QTextDocumentFragment>
#include <QTimer>
#include <QVBoxLayout>
#include <algorithm>
#include <array>

namespace {
struct FilterEntry {
    const char16_t* text;
    const char16_t* key;
};
constexpr std::array<FilterEntry, 9> kFilters{{
    {u"All Items", u""},
    {u"Unread", u"_tamsel/unread"},
    {u"Tagged", u"_tamsel/flagged"},
    {u"Today", u"_tamsel/today"},
    {u"Yesterday", u"_tamsel/yesterday"},
    {u"Past 7 Days", u"_tamsel/week"},
    {u"Read", u"_tamsel/read"},
    {u"Older", u"_tamsel/old"},
    {u"Deleted", u"_tamsel/deleted"},
}};
constexpr int kIconColumnWidth = 16;
// The part of a description read for a row without a title; far more than a row shows.
constexpr qsizetype kDescriptionRead = 4096;
constexpr int kDateColumnWidth = 160;
constexpr int kActionColumnWidth = 18;
const QString kTrue = QStringLiteral("true");
const QString kFalse = QStringLiteral("false");

QIcon IconOf(const SkinPicture& picture) {
    return picture.IsNull() ? QIcon() : picture.ToIcon();
}
} // namespace

frmViewer::frmViewer(ViewerServices services, QWidget* parent)
    : SkinnedWindow(services.skin, frmTamselSkin::KindChannel, parent), m_services(services),
      m_cboSort(new QComboBox(this)), m_txtSearch(new QLineEdit(this)), m_flexItems(new QTableWidget(this)),
      m_picPanelSkin(new QFrame(m_flexItems->viewport())), m_webView(nullptr), m_picSplitter(nullptr),
      m_tmrIEShowHide(new QTimer(this)), m_images(new ImageLoader(services.http, this)) {
    m_webView = new GuardedBrowser(services.desktop, *m_images, m_picPanelSkin);
    m_picSplitter = new QFrame(m_picPanelSkin);
    m_picSplitter->setFixedHeight(kSplitterHeight);
    m_picSplitter->setCursor(Qt::SplitVCursor);
    m_picSplitter->setAccessibleName(QStringLiteral("Preview height"));
    m_picSplitter->installEventFilter(this);
    auto* panelLayout = new QVBoxLayout(m_picPanelSkin);
    panelLayout->setContentsMargins(0, 0, 0, 0);
    panelLayout->setSpacing(0);
    panelLayout->addWidget(m_webView);
    panelLayout->addWidget(m_picSplitter);
    m_picPanelSkin->hide();
    m_webView->hide();
    m_webView->installEventFilter(this);

    m_cboSort->addItems(FilterTexts());
    m_cboSort->setAccessibleName(QStringLiteral("Show"));
    m_txtSearch->setAccessibleName(QStringLiteral("Search"));
    m_txtSearch->setPlaceholderText(QStringLiteral("Search"));
    m_txtSearch->setClearButtonEnabled(true);

    m_flexItems->setAccessibleName(QStringLiteral("Items"));
    m_flexItems->setColumnCount(ColumnCount);
    m_flexItems->horizontalHeader()->hide();
    m_flexItems->verticalHeader()->hide();
    m_flexItems->setShowGrid(false);
    m_flexItems->setEditTriggers(QAbstractItemView::NoEditTriggers);
    // Rows are read, not edited cell by cell: Tab goes on to the preview and the other controls.
    m_flexItems->setTabKeyNavigation(false);
    m_flexItems->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_flexItems->setSelectionMode(QAbstractItemView::SingleSelection);
    m_flexItems->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    m_flexItems->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    // The title takes what the other columns leave, also while the vertical scroll bar comes and
    // goes; otherwise the rows overhang and a click on an icon slides the whole grid sideways.
    m_flexItems->horizontalHeader()->setSectionResizeMode(ColTitle, QHeaderView::Stretch);
    // Stretching re-applies the header's minimum to every column; the hidden one stays at 0.
    m_flexItems->horizontalHeader()->setMinimumSectionSize(0);
    m_flexItems->setWordWrap(false);
    m_flexItems->setTextElideMode(Qt::ElideRight);
    m_flexItems->setIconSize(QSize(kIconColumnWidth, kIconColumnWidth));
    m_flexItems->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    m_flexItems->verticalHeader()->setMinimumSectionSize(0);
    m_flexItems->installEventFilter(this);
    // The title column takes what the viewport leaves, and the viewport knows its width only
    // once the grid has laid itself out (after a resize, or when its scroll bar comes or goes).
    m_flexItems->viewport()->installEventFilter(this);
    m_flexItems->verticalScrollBar()->setSingleStep(kItemRowHeight);
    m_flexItems->verticalScrollBar()->setAccessibleName(QStringLiteral("Scroll items"));
    connect(m_flexItems, &QTableWidget::cellClicked, this, &frmViewer::flexItems_Click);
    connect(m_flexItems->verticalScrollBar(), &QScrollBar::valueChanged, this, &frmViewer::LayoutPreview);

    connect(m_cboSort, &QComboBox::currentIndexChanged, this, &frmViewer::LoadList);
    connect(m_txtSearch, &QLineEdit::textEdited, this, [this] {
        m_searching = true;
        LoadList();
        m_searching = false;
    });
    m_tmrIEShowHide->setInterval(kPreviewTickMs);
    connect(m_tmrIEShowHide, &QTimer::timeout, this, &frmViewer::tmrIEShowHide_Timer);

    auto* find = new QShortcut(QKeySequence::Find, this);
    connect(find, &QShortcut::activated, this, [this] {
        m_txtSearch->setFocus(Qt::ShortcutFocusReason);
        m_txtSearch->selectAll();
    });

    setTabOrder(m_cboSort, m_txtSearch);
    setTabOrder(m_txtSearch, m_flexItems);
    connect(&m_services.skin, &frmTamselSkin::SkinLoaded, this, &frmViewer::ApplySkin);
    resize(640, 480);
    ApplySkin();
}

frmViewer::~frmViewer() = default;

QStringList frmViewer::FilterTexts() {
    QStringList texts;
    for (const FilterEntry& entry : kFilters) {
        texts.append(QString::fromUtf16(entry.text));
    }
    return texts;
}

QString frmViewer::FilterKey(int index) {
    if (index < 0 || index >= int(kFilters.size())) {
        return {};
    }
    return QString::fromUtf16(kFilters.at(size_t(index)).key);
}

QString frmViewer::ShortTitle(const QString& title) {
    if (title.size() > kTitleLimit) {
        return title.left(kTitleKeep) + QStringLiteral("...");
    }
    return title;
}

int frmViewer::PlaceFromEdge(int value, int extent, int size) {
    return value >= 0 ? value : extent + value - size;
}

void frmViewer::SetCaption(const QString& caption) {
    m_caption = caption;
    setWindowTitle(caption);
    RepaintSkin();
}

void frmViewer::SetupView(const QString& key, const QString& pagePath) {
    if (!key.isEmpty()) {
        m_key = key;
    }
    if (!pagePath.isEmpty()) {
        m_pagePath = pagePath;
    }
    if (m_cboSort->currentIndex() != 0) {
        m_cboSort->setCurrentIndex(0);
    } else {
        LoadList();
    }
}

void frmViewer::SetVisible(bool visible) {
    if (visible) {
        if (isMinimized()) {
            showNormal();
        } else {
            show();
        }
        raise();
        activateWindow();
    } else {
        hide();
    }
}

void frmViewer::SetGeometry(const QRect& geometry) {
    setGeometry(geometry);
}

QRect frmViewer::Geometry() const {
    return geometry();
}

int frmViewer::WindowState() const {
    constexpr int kMinimised = 1;
    constexpr int kMaximised = 2;
    if (isMinimized()) {
        return kMinimised;
    }
    if (isMaximized()) {
        return kMaximised;
    }
    return kNormalState;
}

void frmViewer::SetPanelHeight(int height) {
    m_panelHeight = height > 0 ? std::clamp(height, kMinPanelHeight, kMaxPanelHeight) : kDefaultPanelHeight;
    if (m_previewRow >= 0 && !m_previewClosed && !PreviewAnimating()) {
        m_flexItems->setRowHeight(m_previewRow, m_panelHeight);
        LayoutPreview();
    }
}

bool frmViewer::IsFolderView() const {
    return clsItemBank::IsItemFolder(m_key);
}

int frmViewer::Pages() const {
    const int count = int(m_items.size());
    return (count + kItemsPerPage - 1) / kItemsPerPage;
}

QString frmViewer::DecodeText(const QString& text) {
    const int count = int(m_items.size());
    QString result = text;
    const auto replaceFirst = [&result](const QString& placeholder, const QString& value) {
        const qsizetype at = result.indexOf(placeholder);
        if (at >= 0) {
            result.replace(at, placeholder.size(), value);
        }
    };
    replaceFirst(QStringLiteral("{page}"), QString::number(count == 0 ? 0 : m_page));
    replaceFirst(QStringLiteral("{pages}"), QString::number(Pages()));
    replaceFirst(QStringLiteral("{items}"), QString::number(count));
    replaceFirst(QStringLiteral("{allitems}"), QString::number(count));
    replaceFirst(QStringLiteral("{title}"), m_caption);
    return result;
}

void frmViewer::SkinHandler(const QString& function) {
    const int last = int(m_items.size()) - 1;
    if (function == QStringLiteral("close")) {
        close();
    } else if (function == QStringLiteral("max")) {
        if (isMaximized()) {
            showNormal();
        } else {
            if (!Framed()) {
                SetFramed(true);
            }
            showMaximized();
        }
    } else if (function == QStringLiteral("min")) {
        showMinimized();
    } else if (function == QStringLiteral("windowframe")) {
        SetFramed(!Framed());
        show();
    } else if (function == QStringLiteral("firstpage")) {
        GoToPage(last, 1);
    } else if (function == QStringLiteral("prevpage")) {
        if (m_pageStart < last) {
            GoToPage(std::min(m_pageStart + kItemsPerPage, last), m_page - 1);
        }
    } else if (function == QStringLiteral("nextpage")) {
        if (m_pageStart - kItemsPerPage >= 0) {
            GoToPage(m_pageStart - kItemsPerPage, m_page + 1);
        }
    } else if (function == QStringLiteral("lastpage")) {
        const int pages = std::max(1, Pages());
        GoToPage(last - kItemsPerPage * (pages - 1), pages);
    }
}

void frmViewer::GoToPage(int pageStart, int page) {
    m_pageStart = pageStart;
    m_page = page;
    FillGrid();
}

clsItemBank* frmViewer::Bank() const {
    clsProfile* profile = m_services.host.ActiveProfile();
    return profile ? profile->ItemBank() : nullptr;
}

void frmViewer::LoadList() {
    m_tmrIEShowHide->stop();
    m_picPanelSkin->hide();
    m_webView->hide();
    m_previewClosed = true;
    m_previewRow = -1;
    m_pendingRow = -1;
    const clsItemBank* bank = Bank();
    m_items = bank ? bank->SubChannelList(m_key, FilterKey(m_cboSort->currentIndex()), m_txtSearch->text())
                   : ItemList();
    m_pageStart = int(m_items.size()) - 1;
    m_page = 1;
    FillGrid();
    if (m_searching) {
        m_txtSearch->setFocus();
    } else if (m_flexItems->isVisible()) {
        m_flexItems->setFocus();
    }
}

void frmViewer::FillGrid() {
    m_tmrIEShowHide->stop();
    m_picPanelSkin->hide();
    m_webView->hide();
    m_previewRow = -1;
    m_pendingRow = -1;
    m_previewClosed = true;
    m_currentRow = -1;
    m_flexItems->setUpdatesEnabled(false);
    m_flexItems->clearContents();
    int rows = 0;
    for (int index = m_pageStart; index >= 0 && rows < kRowsPerPage; --index) {
        rows += 2;
    }
    m_flexItems->setRowCount(rows);
    for (int row = 0; row < rows; row += 2) {
        FillRow(row, m_pageStart - row / 2);
    }
    if (rows > 0) {
        m_flexItems->setCurrentCell(1, ColTitle, QItemSelectionModel::NoUpdate);
        m_flexItems->clearSelection();
    }
    m_flexItems->verticalScrollBar()->setValue(0);
    m_flexItems->setUpdatesEnabled(true);
    LayoutColumns();
    RepaintSkin();
}

void frmViewer::FillRow(int row, int index) {
    const XmlNode& item = m_items.at(size_t(index));
    const frmTamselSkin& skin = m_services.skin;
    const QColor colour = SkinColor::ToQColor(row % 4 == 0 ? skin.GridColorOdd() : skin.GridColorEven());
    QString title = GetItemTitle(item);
    if (title.isEmpty()) {
        // Descriptions are HTML: the row shows their text, not their markup. Only the start is
        // read, as the row shows only the start.
        title =
            QTextDocumentFragment::fromHtml(GetItemDescription(item).left(kDescriptionRead)).toPlainText();
    }
    title = ShortTitle(title.simplified());
    if (IsFolderView()) {
        title += QStringLiteral("  (") + GetChildText(item, QStringLiteral("channeltitle")) + u')';
    }
    for (int column = 0; column < ColumnCount; ++column) {
        auto* cell = new QTableWidgetItem();
        cell->setBackground(colour);
        m_flexItems->setItem(row, column, cell);
    }
    m_flexItems->item(row, ColTitle)->setText(title);
    m_flexItems->item(row, ColTitle)->setToolTip(title);
    m_flexItems->item(row, ColDate)->setText(GetItemDate(item) + QStringLiteral("  ") + GetItemTime(item));
    SetTagCell(row, IsItemFlagged(item));
    if (!GetItemLink(item).isEmpty()) {
        m_flexItems->item(row, ColLink)->setIcon(IconOf(skin.GetListIcon(frmTamselSkin::ListIcon::Link)));
        m_flexItems->item(row, ColLink)->setToolTip(GetItemLink(item));
    }
    m_flexItems->item(row, ColProp)->setIcon(IconOf(skin.GetListIcon(frmTamselSkin::ListIcon::Elements)));
    m_flexItems->item(row, ColProp)->setToolTip(QStringLiteral("Properties"));
    m_flexItems->item(row, ColDelete)
        ->setIcon(IconOf(skin.GetListIcon(IsItemDeleted(item) ? frmTamselSkin::ListIcon::Del
                                                              : frmTamselSkin::ListIcon::NoDel)));
    m_flexItems->item(row, ColDelete)->setToolTip(QStringLiteral("Delete"));
    SetRowIcon(row, false);
    SetRowTitleBold(row, !IsItemRead(item));
    m_flexItems->setRowHeight(row, kItemRowHeight);
    m_flexItems->setRowHeight(row + 1, 0);
}

void frmViewer::SetRowIcon(int row, bool expanded) {
    if (QTableWidgetItem* cell = m_flexItems->item(row, ColIcon)) {
        cell->setIcon(IconOf(m_services.skin.GetListIcon(expanded ? frmTamselSkin::ListIcon::ItemEx
                                                                  : frmTamselSkin::ListIcon::Item)));
    }
}

void frmViewer::SetRowTitleBold(int row, bool bold) {
    if (QTableWidgetItem* cell = m_flexItems->item(row, ColTitle)) {
        QFont font = m_flexItems->font();
        font.setBold(bold);
        cell->setFont(font);
    }
}

int frmViewer::ItemIndexOfRow(int row) const {
    if (row < 0 || row % 2 != 0 || row >= m_flexItems->rowCount()) {
        return -1;
    }
    return m_pageStart - row / 2;
}

int frmViewer::GridRowOfItem(int index) const {
    const int row = 2 * (m_pageStart - index);
    return index >= 0 && row >= 0 && row < m_flexItems->rowCount() ? row : -1;
}

void frmViewer::flexItems_Click(int row, int column) {
    const int index = ItemIndexOfRow(row);
    if (index < 0 || column == ColHidden) {
        return;
    }
    m_currentRow = row;
    switch (column) {
    case ColIcon:
    case ColTitle:
    case ColDate:
        if (m_previewRow == row + 1 && !m_previewClosed) {
            ClosePreview();
        } else if (m_previewRow >= 0 && !m_previewClosed) {
            m_pendingRow = row;
            ClosePreview();
        } else {
            OpenRow(row);
        }
        break;
    case ColTag:
        ToggleFlag(row, index);
        break;
    case ColLink:
        if (const QString link = GetItemLink(m_items.at(size_t(index))); !link.isEmpty()) {
            const QUrl url(link);
            if (GuardedBrowser::IsSafeExternal(url)) {
                m_services.desktop.OpenDocument(link);
            }
        }
        break;
    case ColProp:
        OpenProperties(index);
        break;
    case ColDelete:
        ToggleDelete(row, index);
        break;
    default:
        break;
    }
}

void frmViewer::ToggleFlag(int row, int index) {
    const XmlNode& item = m_items.at(size_t(index));
    const bool flagged = !IsItemFlagged(item);
    SetChildText(item, QStringLiteral("flag"), flagged ? kTrue : kFalse);
    SetTagCell(row, flagged);
    ReportStates(item, {FolderKey::Flagged});
}

void frmViewer::SetTagCell(int row, bool flagged) {
    const frmTamselSkin& skin = m_services.skin;
    QTableWidgetItem* cell = m_flexItems->item(row, ColTag);
    cell->setIcon(IconOf(flagged ? skin.TreeIcon(QStringLiteral("flagged"))
                                 : skin.GetListIcon(frmTamselSkin::ListIcon::NoTag)));
    cell->setToolTip(flagged ? QStringLiteral("Tagged") : QStringLiteral("Tag"));
}

void frmViewer::ToggleDelete(int row, int index) {
    const XmlNode& item = m_items.at(size_t(index));
    const bool deleted = !IsItemDeleted(item);
    SetChildText(item, QStringLiteral("delete"), deleted ? kTrue : kFalse);
    m_flexItems->item(row, ColDelete)
        ->setIcon(IconOf(m_services.skin.GetListIcon(deleted ? frmTamselSkin::ListIcon::Del
                                                             : frmTamselSkin::ListIcon::NoDel)));
    ReportStates(item, {FolderKey::Deleted, FolderKey::Unread});
}

void frmViewer::OpenProperties(int index) {
    if (!m_properties) {
        m_properties = new frmProperties(m_services.settings, m_services.desktop, m_services.skin, this);
    }
    m_properties->SetProp(m_items.at(size_t(index)));
    m_properties->show();
    m_properties->raise();
}

void frmViewer::OpenRow(int row) {
    const int index = ItemIndexOfRow(row);
    if (index < 0) {
        return;
    }
    m_previewRow = row + 1;
    m_previewClosed = false;
    m_currentRow = row;
    SetRowIcon(row, true);
    SetRowTitleBold(row, false);
    m_flexItems->selectRow(row);
    Render(index);
    m_webView->hide();
    LayoutPreview();
    m_picPanelSkin->show();
    m_tmrIEShowHide->start();
}

void frmViewer::ClosePreview() {
    if (m_previewRow < 0) {
        return;
    }
    m_previewClosed = true;
    SetRowIcon(m_previewRow - 1, false);
    m_tmrIEShowHide->start();
}

bool frmViewer::PreviewAnimating() const {
    return m_tmrIEShowHide->isActive();
}

int frmViewer::PreviewRowHeight() const {
    return m_previewRow >= 0 ? m_flexItems->rowHeight(m_previewRow) : 0;
}

void frmViewer::tmrIEShowHide_Timer() {
    if (m_previewRow < 0) {
        m_tmrIEShowHide->stop();
        return;
    }
    const int height = m_flexItems->rowHeight(m_previewRow);
    if (!m_previewClosed) {
        const int step = (m_panelHeight - height) / 3 + 5;
        if (height + step < m_panelHeight) {
            m_flexItems->setRowHeight(m_previewRow, height + step);
            m_webView->hide();
        } else {
            m_flexItems->setRowHeight(m_previewRow, m_panelHeight);
            m_tmrIEShowHide->stop();
            m_webView->show();
            m_webView->setFocus();
        }
        LayoutPreview();
        m_flexItems->scrollToItem(m_flexItems->item(m_previewRow - 1, ColTitle));
        return;
    }
    m_webView->hide();
    if (height > kClosedHeight) {
        m_flexItems->setRowHeight(m_previewRow, height - (height / 2 + 5));
        LayoutPreview();
        return;
    }
    m_flexItems->setRowHeight(m_previewRow, 0);
    m_picPanelSkin->hide();
    m_previewRow = -1;
    if (m_pendingRow >= 0) {
        const int pending = m_pendingRow;
        m_pendingRow = -1;
        m_flexItems->setCurrentCell(pending, ColTitle);
        OpenRow(pending);
        return;
    }
    m_tmrIEShowHide->stop();
}

void frmViewer::ShowItem(int index) {
    if (index < 0 || index >= int(m_items.size())) {
        return;
    }
    const int row = GridRowOfItem(index);
    if (row >= 0) {
        if (m_previewRow == row + 1 && !m_previewClosed) {
            Render(index);
        } else if (m_previewRow >= 0 && !m_previewClosed) {
            m_pendingRow = row;
            ClosePreview();
        } else {
            OpenRow(row);
        }
        return;
    }
    Render(index);
}

bool frmViewer::Render(int index) {
    if (index < 0 || index >= int(m_items.size())) {
        return false;
    }
    const XmlNode& item = m_items.at(size_t(index));
    SetItemRead(item, true);
    bool written = false;
    if (!m_pagePath.isEmpty()) {
        const ItemRenderer renderer(m_services.host.NamespaceTransform(), m_services.skin.ItemStylesheet());
        written = renderer.RenderToFile(item, m_pagePath);
        if (written) {
            m_webView->Navigate(m_pagePath);
        }
    }
    ReportStates(item, {FolderKey::Unread, FolderKey::Read});
    return written;
}

void frmViewer::ReportStates(const XmlNode& item, std::initializer_list<QString> folders) {
    const clsProfile* profile = m_services.host.ActiveProfile();
    if (!profile) {
        return;
    }
    // The viewer's channel, the item's own channel when the viewer shows a folder, and the
    // folders the change moves the item into or out of: their counts in the tree follow at once.
    QList<RSSChannel*> reported;
    const auto report = [&reported, profile](const QString& key) {
        RSSChannel* channel = profile->GetChannel(key);
        if (channel && !reported.contains(channel)) {
            reported.append(channel);
            channel->SetState();
        }
    };
    report(m_key);
    report(GetAttributeText(item, QStringLiteral("channel")));
    for (const QString& folder : folders) {
        report(folder);
    }
}

void frmViewer::MoveCurrent(int step) {
    const int rows = m_flexItems->rowCount();
    if (rows == 0) {
        return;
    }
    int row = m_currentRow < 0 ? (step > 0 ? 0 : rows - 2) : m_currentRow + 2 * step;
    row = std::clamp(row, 0, rows - 2);
    m_currentRow = row;
    m_flexItems->setCurrentCell(row, ColTitle);
    m_flexItems->selectRow(row);
    m_flexItems->scrollToItem(m_flexItems->item(row, ColTitle));
}

bool frmViewer::eventFilter(QObject* watched, QEvent* event) {
    if (watched == m_flexItems->viewport() && event->type() == QEvent::Resize) {
        LayoutColumns();
    }
    if (watched == m_flexItems && event->type() == QEvent::KeyPress) {
        const auto* key = static_cast<QKeyEvent*>(event);
        switch (key->key()) {
        case Qt::Key_Up:
            MoveCurrent(-1);
            return true;
        case Qt::Key_Down:
            MoveCurrent(1);
            return true;
        case Qt::Key_Return:
        case Qt::Key_Enter:
        case Qt::Key_Space:
            if (m_currentRow >= 0) {
                flexItems_Click(m_currentRow, ColTitle);
            }
            return true;
        case Qt::Key_PageUp:
            SkinHandler(QStringLiteral("prevpage"));
            return true;
        case Qt::Key_PageDown:
            SkinHandler(QStringLiteral("nextpage"));
            return true;
        case Qt::Key_Escape:
            if (m_previewRow >= 0 && !m_previewClosed) {
                ClosePreview();
            }
            return true;
        default:
            break;
        }
    }
    if (watched == m_webView && event->type() == QEvent::KeyPress &&
        static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape) {
        ClosePreview();
        m_flexItems->setFocus();
        return true;
    }
    if (watched == m_picSplitter) {
        if (event->type() == QEvent::MouseMove) {
            const auto* mouse = static_cast<QMouseEvent*>(event);
            if (mouse->buttons() & Qt::LeftButton) {
                SplitterDragged(m_picPanelSkin->mapFromGlobal(mouse->globalPosition().toPoint()).y());
            }
            return true;
        }
        if (event->type() == QEvent::MouseButtonRelease) {
            const auto* mouse = static_cast<QMouseEvent*>(event);
            if (mouse->button() == Qt::LeftButton) {
                SplitterDragged(m_picPanelSkin->mapFromGlobal(mouse->globalPosition().toPoint()).y());
                Q_EMIT Resized();
            }
            return true;
        }
    }
    return SkinnedWindow::eventFilter(watched, event);
}

void frmViewer::SplitterDragged(int panelY) {
    if (m_previewRow < 0 || m_previewClosed) {
        return;
    }
    m_panelHeight = std::clamp(panelY, kMinPanelHeight, kMaxPanelHeight);
    m_flexItems->setRowHeight(m_previewRow, m_panelHeight);
    LayoutPreview();
}

frmProperties* frmViewer::Properties() const {
    return m_properties;
}

QWidget* frmViewer::picSplitter() const {
    return m_picSplitter;
}

void frmViewer::LayoutPreview() {
    if (m_previewRow < 0) {
        return;
    }
    const int top = m_flexItems->rowViewportPosition(m_previewRow);
    m_picPanelSkin->setGeometry(0, top, m_flexItems->viewport()->width(),
                                m_flexItems->rowHeight(m_previewRow));
}

void frmViewer::LayoutColumns() {
    m_flexItems->setColumnWidth(ColHidden, 0);
    m_flexItems->setColumnWidth(ColIcon, kIconColumnWidth);
    m_flexItems->setColumnWidth(ColDate, kDateColumnWidth);
    m_flexItems->setColumnWidth(ColTag, kIconColumnWidth);
    m_flexItems->setColumnWidth(ColLink, kActionColumnWidth);
    m_flexItems->setColumnWidth(ColProp, kActionColumnWidth);
    m_flexItems->setColumnWidth(ColDelete, kActionColumnWidth);
    m_flexItems->setColumnWidth(ColEnd, kIconColumnWidth);
    LayoutPreview();
}

void frmViewer::LayoutControls() {
    const frmTamselSkin& skin = m_services.skin;
    const int kind = frmTamselSkin::KindChannel;
    const int inner = width();
    const int innerHeight = height();
    const int comboHeight = m_cboSort->sizeHint().height();
    const int searchHeight = m_txtSearch->sizeHint().height();
    m_cboSort->setGeometry(PlaceFromEdge(skin.FilterLeft(), inner, skin.FilterWidth()),
                           PlaceFromEdge(skin.FilterTop(), innerHeight, comboHeight), skin.FilterWidth(),
                           comboHeight);
    m_txtSearch->setGeometry(PlaceFromEdge(skin.SearchLeft(), inner, skin.SearchWidth()),
                             PlaceFromEdge(skin.SearchTop(), innerHeight, searchHeight), skin.SearchWidth(),
                             searchHeight);
    const int left = skin.FrameWSize(kind);
    const int top = skin.FrameNSize(kind);
    m_flexItems->setGeometry(left, top, std::max(0, inner - left - skin.FrameESize(kind)),
                             std::max(0, innerHeight - top - skin.FrameSSize(kind)));
    LayoutColumns();
}

void frmViewer::ApplySkin() {
    const frmTamselSkin& skin = m_services.skin;
    const QPalette palette = SkinPalette(this->palette(), skin, frmTamselSkin::KindChannel);
    setPalette(palette);
    for (QWidget* control : {static_cast<QWidget*>(m_cboSort), static_cast<QWidget*>(m_txtSearch),
                             static_cast<QWidget*>(m_flexItems), static_cast<QWidget*>(m_webView),
                             static_cast<QWidget*>(m_flexItems->verticalScrollBar())}) {
        control->setPalette(palette);
    }
    QPalette panel = palette;
    panel.setColor(QPalette::Window, SkinColor::ToQColor(skin.FrameColor(frmTamselSkin::KindItem)));
    m_picPanelSkin->setPalette(panel);
    m_picPanelSkin->setAutoFillBackground(true);
    m_picSplitter->setPalette(panel);
    m_picSplitter->setAutoFillBackground(true);
    skin.SetFont(m_flexItems, skin.GridFont(), false);
    m_flexItems->verticalHeader()->setDefaultSectionSize(kItemRowHeight);
    if (!m_items.empty()) {
        FillGrid();
    }
    LayoutControls();
}

void frmViewer::resizeEvent(QResizeEvent* event) {
    SkinnedWindow::resizeEvent(event);
    LayoutControls();
    if (m_loaded) {
        Q_EMIT Resized();
    }
}

void frmViewer::moveEvent(QMoveEvent* event) {
    SkinnedWindow::moveEvent(event);
    if (m_loaded) {
        Q_EMIT Resized();
    }
}

void frmViewer::showEvent(QShowEvent* event) {
    SkinnedWindow::showEvent(event);
    if (!m_loaded) {
        m_loaded = true;
        Q_EMIT Loaded();
    }
}

void frmViewer::changeEvent(QEvent* event) {
    SkinnedWindow::changeEvent(event);
    if (event->type() == QEvent::WindowStateChange && m_loaded) {
        Q_EMIT Resized();
    }
}

void frmViewer::closeEvent(QCloseEvent* event) {
    SkinnedWindow::closeEvent(event);
    if (m_properties) {
        m_properties->close();
    }
    Q_EMIT Closed();
}
