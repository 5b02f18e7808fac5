// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ViewerFixture.h"

#include "feeds/RSSChannel.h"
#include "itembank/clsItemBank.h"
#include "itembank/modItemHandler.h"
#include "skin/SkinColor.h"
#include "views/GuardedBrowser.h"
#include "views/ItemRenderer.h"
#include "views/frmProperties.h"
#include "views/frmViewer.h"

#include <QApplication>
#include <QBuffer>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QFile>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QTableWidget>
#include <QTest>
#include <QTextDocument>
#include <QTreeWidget>

namespace {
const QString kUnread = QStringLiteral("_tamsel/unread");

QString RowTitle(const frmViewer& viewer, int row) {
    const QTableWidgetItem* cell = viewer.flexItems()->item(row, frmViewer::ColTitle);
    return cell ? cell->text() : QString();
}

QByteArray FileText(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}
} // namespace

using ViewerTest = ViewerFixture;

TEST_F(ViewerTest, PagesRunFromTheNewestItemBackwards) {
    struct Case {
        int items;
        QStringList actions;
        int page;
        int first;
        int last;
    };
    const QString next = QStringLiteral("nextpage");
    const QString prev = QStringLiteral("prevpage");
    const QString last = QStringLiteral("lastpage");
    const std::vector<Case> cases = {
        {120, {}, 1, 119, 70},
        {120, {next}, 2, 69, 20},
        {120, {next, next}, 3, 19, 0},
        {120, {last, next}, 3, 19, 0},
        {120, {prev}, 1, 119, 70},
        {120, {last, prev}, 2, 69, 20},
        {120, {last, QStringLiteral("firstpage")}, 1, 119, 70},
        {100, {last}, 2, 49, 0},
        {51, {next}, 2, 0, 0},
        {51, {next, next}, 2, 0, 0},
    };
    int stored = 0;
    for (const Case& test : cases) {
        SCOPED_TRACE(testing::Message() << test.items << " items, " << test.actions.join(u' ').toStdString());
        if (stored != test.items) {
            windows.CloseAll();
            Bank().KillChannel(kFeedUrl);
            AddItems(test.items);
            stored = test.items;
        }
        frmViewer& viewer = Open();
        viewer.SetupView(QString(), QString());
        for (const QString& action : test.actions) {
            viewer.SkinHandler(action);
        }
        EXPECT_EQ(viewer.Page(), test.page);
        std::vector<int> shown;
        for (int row = 0; row < viewer.flexItems()->rowCount(); row += 2) {
            shown.push_back(viewer.ItemIndexOfRow(row));
        }
        ASSERT_FALSE(shown.empty());
        EXPECT_EQ(shown.front(), test.first);
        EXPECT_EQ(shown.back(), test.last);
        EXPECT_EQ(int(shown.size()), test.first - test.last + 1);
        EXPECT_EQ(viewer.DecodeText(QStringLiteral("{page}/{pages}: {items}")),
                  QStringLiteral("%1/%2: %3").arg(test.page).arg((test.items + 49) / 50).arg(test.items));
    }
}

TEST_F(ViewerTest, LongTitlesAreCutAndFoldersNameTheChannel) {
    const QString exact(128, u'a');
    AddItem(exact);
    AddItem(QString(130, u'b'));
    AddItem(QString(), QString(), QStringLiteral("<p>Only a <b>description</b> &amp; more</p>"));
    frmViewer& channelView = Open();
    EXPECT_EQ(RowTitle(channelView, 0), QStringLiteral("Only a description & more"));
    EXPECT_EQ(RowTitle(channelView, 2), QString(125, u'b') + QStringLiteral("..."));
    EXPECT_EQ(RowTitle(channelView, 4), exact);
    EXPECT_EQ(RowTitle(Open(kUnread), 4), exact + QStringLiteral("  (") + kFeedTitle + u')');
}

// Two items of one channel share one page file.
TEST_F(ViewerTest, OpeningAnItemMarksItReadAndDropsTheTreeCount) {
    AddItem(QStringLiteral("First"), QStringLiteral("http://example.org/1"), QStringLiteral("<p>One</p>"));
    AddItem(QStringLiteral("Second"), QStringLiteral("http://example.org/2"), QStringLiteral("Two"));
    Channel().SetState();
    profile.GetChannel(kUnread)->SetState();
    const QString before = inner.NodeText(kUnread);
    ASSERT_TRUE(before.endsWith(QStringLiteral("(2)")));
    frmViewer& viewer = Open();
    const auto bold = [&viewer](int row) {
        return viewer.flexItems()->item(row, frmViewer::ColTitle)->font().bold();
    };
    ASSERT_TRUE(bold(0));
    ASSERT_TRUE(bold(2));

    viewer.flexItems_Click(0, frmViewer::ColTitle);
    EXPECT_FALSE(bold(0));
    EXPECT_TRUE(bold(2));
    EXPECT_TRUE(IsItemRead(viewer.Items().at(1)));
    EXPECT_FALSE(IsItemRead(viewer.Items().at(0)));
    EXPECT_EQ(Channel().UnreadCount(), 1);
    EXPECT_EQ(inner.NodeText(kUnread), before.chopped(3) + QStringLiteral("(1)"));
    const QString page = viewer.PagePath();
    EXPECT_TRUE(FileText(page).contains("Second"));
    EXPECT_EQ(viewer.webView()->CurrentDocument(), page);
    EXPECT_TRUE(viewer.webView()->toPlainText().contains(QStringLiteral("Second")));

    viewer.flexItems_Click(2, frmViewer::ColTitle);
    Settle(viewer);
    EXPECT_EQ(viewer.PagePath(), page);
    EXPECT_TRUE(FileText(page).contains("First"));
    EXPECT_FALSE(FileText(page).contains("Second"));
    EXPECT_EQ(Channel().UnreadCount(), 0);
}

TEST_F(ViewerTest, OpeningAnItemInAFolderCountsForItsChannelToo) {
    AddItem(QStringLiteral("Only"));
    Channel().SetState();
    Open(kUnread).flexItems_Click(0, frmViewer::ColDate);
    EXPECT_EQ(Channel().UnreadCount(), 0);
    EXPECT_TRUE(inner.StateChanges().contains(kFeedUrl));
    EXPECT_TRUE(inner.StateChanges().contains(kUnread));
}

TEST_F(ViewerTest, ThePreviewGrowsAndShrinksInSteps) {
    AddItems(3);
    frmViewer& viewer = Open();
    viewer.SetPanelHeight(0);
    ASSERT_EQ(viewer.PanelHeight(), frmViewer::kDefaultPanelHeight);
    viewer.flexItems_Click(0, frmViewer::ColTitle);
    ASSERT_EQ(viewer.PreviewRow(), 1);
    std::vector<int> heights;
    while (viewer.PreviewAnimating() && heights.size() < 100) {
        viewer.tmrIEShowHide_Timer();
        heights.push_back(viewer.PreviewRowHeight());
    }
    // Each step is a third of what remains plus 5; the last one lands exactly.
    EXPECT_EQ(heights, std::vector<int>({105, 175, 221, 252, 273, 287, 296, 300}));
    EXPECT_TRUE(viewer.webView()->isVisibleTo(&viewer));

    // Another item while one is open: the open one shuts first, then the other opens.
    viewer.flexItems_Click(4, frmViewer::ColTitle);
    EXPECT_EQ(viewer.PendingRow(), 4);
    heights.clear();
    while (viewer.PreviewClosed() && viewer.PreviewAnimating() && heights.size() < 100) {
        viewer.tmrIEShowHide_Timer();
        heights.push_back(viewer.PreviewRow() == 1 ? viewer.PreviewRowHeight() : -1);
    }
    EXPECT_EQ(heights, std::vector<int>({145, 68, 29, 10, -1}));
    EXPECT_EQ(viewer.PreviewRow(), 5);
    Settle(viewer);
    EXPECT_EQ(viewer.PreviewRowHeight(), frmViewer::kDefaultPanelHeight);
}

TEST_F(ViewerTest, EveryKeystrokeInTheSearchBoxReloadsAndClosesThePreview) {
    for (const char* title : {"Apples and pears", "Apricots", "Bananas"}) {
        AddItem(QString::fromUtf8(title));
    }
    frmViewer& viewer = Open();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&viewer));
    viewer.flexItems_Click(0, frmViewer::ColTitle);
    Settle(viewer);
    QTest::keyClick(viewer.txtSearch(), Qt::Key_A);
    EXPECT_EQ(viewer.PreviewRow(), -1);
    EXPECT_EQ(viewer.Items().size(), 3u);
    QTest::keyClick(viewer.txtSearch(), Qt::Key_P);
    EXPECT_EQ(viewer.Items().size(), 2u);
    QTest::keyClick(viewer.txtSearch(), Qt::Key_R);
    ASSERT_EQ(viewer.Items().size(), 1u);
    EXPECT_EQ(RowTitle(viewer, 0), QStringLiteral("Apricots"));
    EXPECT_TRUE(viewer.txtSearch()->hasFocus());
}

// Only the web and mail go to the desktop; local files and scripts go nowhere.
TEST_F(ViewerTest, LinksLeaveOnlyForTheWeb) {
    AddItem(QStringLiteral("Linked"), QStringLiteral("http://example.org/story"));
    AddItem(QStringLiteral("Sneaky"), QStringLiteral("file:///etc/passwd"));
    frmViewer& viewer = Open();
    viewer.flexItems_Click(2, frmViewer::ColLink);
    viewer.flexItems_Click(0, frmViewer::ColLink);
    EXPECT_EQ(desktop.opened, QStringList{QStringLiteral("http://example.org/story")});

    viewer.flexItems_Click(2, frmViewer::ColTitle);
    Settle(viewer);
    GuardedBrowser& browser = *viewer.webView();
    const QString page = browser.CurrentDocument();
    const std::pair<const char*, bool> cases[] = {
        {"http://example.org/more", true},   {"https://example.org/more", true},
        {"mailto:editor@example.org", true}, {"file:///etc/passwd", false},
        {"javascript:alert(1)", false},      {"ftp://example.org/file", false},
        {"vbscript:msgbox(1)", false},       {"/usr/bin/xterm", false},
    };
    for (const auto& [url, handedOver] : cases) {
        SCOPED_TRACE(url);
        desktop.opened.clear();
        EXPECT_FALSE(browser.BeforeNavigate(QUrl(QString::fromUtf8(url))));
        EXPECT_EQ(desktop.opened, handedOver ? QStringList{QString::fromUtf8(url)} : QStringList());
        EXPECT_EQ(browser.CurrentDocument(), page);
    }
    EXPECT_TRUE(browser.BeforeNavigate(QUrl::fromLocalFile(page)));
}

TEST_F(ViewerTest, KeyboardMovesOpensAndPages) {
    AddItems(60);
    frmViewer& viewer = Open();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&viewer));
    QWidget* grid = viewer.flexItems();
    grid->setFocus();
    QTest::keyClick(grid, Qt::Key_Down);
    QTest::keyClick(grid, Qt::Key_Down);
    QTest::keyClick(grid, Qt::Key_Return);
    EXPECT_EQ(viewer.PreviewRow(), 3);
    Settle(viewer);
    grid->setFocus();
    QTest::keyClick(grid, Qt::Key_Escape);
    Settle(viewer);
    EXPECT_EQ(viewer.PreviewRow(), -1);
    QTest::keyClick(grid, Qt::Key_Space);
    EXPECT_EQ(viewer.PreviewRow(), 3);
    QTest::keyClick(grid, Qt::Key_PageDown);
    EXPECT_EQ(viewer.Page(), 2);
    EXPECT_EQ(viewer.PreviewRow(), -1);
    QTest::keyClick(grid, Qt::Key_PageUp);
    EXPECT_EQ(viewer.Page(), 1);
    QTest::keyClick(&viewer, Qt::Key_F, Qt::ControlModifier);
    EXPECT_TRUE(viewer.txtSearch()->hasFocus());
}

TEST_F(ViewerTest, EveryControlInTheFocusChainHasAName) {
    AddItems(2);
    frmViewer& viewer = Open();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&viewer));
    viewer.flexItems_Click(0, frmViewer::ColTitle);
    Settle(viewer);
    viewer.cboSort()->setFocus();
    QWidget* first = QApplication::focusWidget();
    ASSERT_NE(first, nullptr);
    QWidget* current = first;
    int seen = 0;
    do {
        SCOPED_TRACE(current->metaObject()->className());
        EXPECT_FALSE(current->accessibleName().isEmpty());
        current = current->nextInFocusChain();
        while (current != first && (!current->isVisibleTo(&viewer) || current->focusPolicy() == Qt::NoFocus ||
                                    current->window() != &viewer)) {
            current = current->nextInFocusChain();
        }
        ++seen;
    } while (current != first && seen < 50);
    EXPECT_GE(seen, 4);
}

TEST_F(ViewerTest, ClosingTheWindowUnloadsItAndKeepsItsState) {
    frmViewer& viewer = Open();
    viewer.show();
    viewer.setGeometry(QRect(100, 120, 500, 400));
    Flush();
    // Moving and resizing are kept by the channel as they happen.
    EXPECT_EQ(Channel().WindowGeometry(), QRect(100, 120, 500, 400));
    viewer.SetPanelHeight(250);
    Channel().SaveWndState();
    EXPECT_EQ(Channel().PanelHeight(), 250);
    viewer.SkinHandler(QStringLiteral("close"));
    Flush();
    EXPECT_FALSE(Channel().IsViewerLoaded());
    EXPECT_EQ(windows.Count(), 0);
}

TEST_F(ViewerTest, TheSkinDecidesHowTheNextItemLooks) {
    AddItem(QStringLiteral("Styled"), QString(), QStringLiteral("Body"));
    frmViewer& viewer = Open();
    viewer.flexItems_Click(0, frmViewer::ColTitle);
    Settle(viewer);
    const QByteArray light = FileText(viewer.PagePath());
    settings.SaveSetting(QStringLiteral("SETTINGS"), QStringLiteral("SKINNAME"), QStringLiteral("Nightfall"));
    skin.LoadSkin();
    for (int click = 0; click < 2; ++click) {
        viewer.flexItems_Click(0, frmViewer::ColTitle);
        Settle(viewer);
    }
    const QByteArray dark = FileText(viewer.PagePath());
    ASSERT_FALSE(light.isEmpty());
    EXPECT_NE(light, dark);
    EXPECT_TRUE(dark.contains("Styled"));
    // The plain controls take the skin's colours as well.
    EXPECT_LT(viewer.txtSearch()->palette().color(QPalette::Base).lightness(), 128);
    EXPECT_LT(viewer.webView()->palette().color(QPalette::Base).lightness(), 128);
}

// Pictures load after the page shows; a broken or local one leaves its alternative text.
TEST_F(ViewerTest, PicturesArriveWithoutBeingWaitedFor) {
    const QString picture = QStringLiteral("http://img.example.org/harbour.png");
    const QString broken = QStringLiteral("http://img.example.org/broken.png");
    AddItem(
        QStringLiteral("Pictured"), QString(),
        QStringLiteral("<p>Before <img src=\"%1\" alt=\"Harbour view\"> middle <img src=\"%2\" alt=\"Quay "
                       "map\"> <img src=\"file:///etc/hosts.png\" alt=\"Local\"> after</p>")
            .arg(picture, broken));
    frmViewer& viewer = Open();
    viewer.flexItems_Click(0, frmViewer::ColTitle);
    Settle(viewer);
    const auto text = [&viewer] { return viewer.webView()->toPlainText(); };
    EXPECT_EQ(http.Waiting(picture, "GET"), 1);
    EXPECT_EQ(http.Waiting(broken, "GET"), 1);
    EXPECT_EQ(http.Waiting(QStringLiteral("file:///etc/hosts.png"), "GET"), 0);
    EXPECT_TRUE(text().contains(QStringLiteral("Local")));
    EXPECT_FALSE(text().contains(QStringLiteral("Quay map")));

    QImage image(400, 200, QImage::Format_RGB32);
    image.fill(Qt::darkBlue);
    QByteArray png;
    QBuffer buffer(&png);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    ASSERT_TRUE(http.Complete(picture, "GET", png));
    const QImage shown =
        viewer.webView()->document()->resource(QTextDocument::ImageResource, QUrl(picture)).value<QImage>();
    EXPECT_FALSE(shown.isNull());
    EXPECT_LE(shown.width(), viewer.webView()->viewport()->width());
    ASSERT_TRUE(http.Complete(broken, "GET", QByteArrayLiteral("not a picture")));
    EXPECT_TRUE(text().contains(QStringLiteral("Quay map")));
    Flush();
}

TEST(ItemRendererTest, PagesDeclareTheirEncodingOnce) {
    const QByteArray declared = "<html><head><meta charset=\"utf-8\"></head><body>x</body></html>";
    EXPECT_EQ(ItemRenderer::WithUtf8Declaration(declared), declared);
    const QByteArray bare = "<html><head><title>é</title></head><body>x</body></html>";
    EXPECT_EQ(ItemRenderer::WithUtf8Declaration(bare),
              "<html><head><meta http-equiv=\"Content-Type\" content=\"text/html; charset=UTF-8\">" +
                  bare.mid(12));
    EXPECT_TRUE(ItemRenderer::WithUtf8Declaration("<p>x</p>").contains("charset=UTF-8"));
}

using PropertiesTest = ViewerFixture;

TEST_F(PropertiesTest, ChannelRowsLeaveOutEmptyValuesButNotItems) {
    frmProperties& properties = windows.ChannelProperties();
    properties.SetChannelProp(Channel());
    const QList<QPair<QString, QString>> rows = properties.Rows();
    ASSERT_EQ(rows.size(), 3);
    EXPECT_EQ(rows.at(0).first, QStringLiteral("Title"));
    EXPECT_EQ(rows.at(1).first, QStringLiteral("URL"));
    EXPECT_EQ(rows.at(2), qMakePair(QStringLiteral("Items"), QStringLiteral("0")));
    EXPECT_TRUE(properties.cmdApply()->isVisibleTo(&properties));
}

// Bad numbers are refused and the previous value comes back into the field.
TEST_F(PropertiesTest, SettingsAreCheckedBeforeTheyAreStored) {
    frmProperties& properties = windows.ChannelProperties();
    RSSChannel& channel = Channel();
    channel.SetUpdate(60);
    channel.SetExpire(30);
    properties.SetChannelProp(channel);
    struct Case {
        const char* reload;
        const char* remove;
        bool stored;
        int update;
        int expire;
        const char* shownReload;
    };
    const Case cases[] = {{"15", "7", true, 15, 7, "15"},  {"abc", "7", false, 15, 7, "15"},
                          {"-5", "7", false, 15, 7, "15"}, {"", "7", false, 15, 7, "15"},
                          {"20", "x", false, 15, 7, "20"}, {" 0 ", "0", true, 0, 0, " 0 "}};
    for (const Case& test : cases) {
        SCOPED_TRACE(testing::Message() << test.reload << "/" << test.remove);
        properties.txtReload()->setText(QString::fromUtf8(test.reload));
        properties.txtRemove()->setText(QString::fromUtf8(test.remove));
        EXPECT_EQ(properties.Apply(), test.stored);
        EXPECT_EQ(channel.Update(), test.update);
        EXPECT_EQ(channel.Expire(), test.expire);
        EXPECT_EQ(properties.txtReload()->text(), QString::fromUtf8(test.shownReload));
    }
    properties.chkOpenOnNew()->setChecked(true);
    QTest::mouseClick(properties.cmdApply(), Qt::LeftButton);
    EXPECT_TRUE(channel.OpenLink());
}

TEST_F(PropertiesTest, AnItemShowsItsElementsReadOnly) {
    AddItem(QStringLiteral("Story"), QStringLiteral("http://example.org/story"), QStringLiteral("Body"));
    frmViewer& viewer = Open();
    viewer.flexItems_Click(0, frmViewer::ColProp);
    frmProperties* properties = viewer.Properties();
    ASSERT_NE(properties, nullptr);
    EXPECT_FALSE(properties->cmdApply()->isVisibleTo(properties));
    EXPECT_FALSE(properties->cmdOk()->isVisibleTo(properties));
    const auto rows = properties->Rows();
    ASSERT_GE(rows.size(), 8);
    EXPECT_EQ(rows.at(0), qMakePair(QStringLiteral("title"), QStringLiteral("Story")));
    EXPECT_EQ(rows.back().first, QStringLiteral("channeltitle"));
    properties->lstProp()->setCurrentItem(properties->lstProp()->topLevelItem(1));
    properties->CopyValue();
    EXPECT_EQ(QApplication::clipboard()->text(), QStringLiteral("http://example.org/story"));
    QTest::mouseClick(properties->cmdCancel(), Qt::LeftButton);
    EXPECT_FALSE(properties->isVisible());
}

// With the dark skin the window, its list and its boxes are dark too, and a skin change recolours
// the open window.
TEST_F(PropertiesTest, TheWindowWearsTheSkinsColoursAndFollowsAChange) {
    frmProperties& properties = windows.ChannelProperties();
    properties.SetChannelProp(Channel());
    const auto frame = [this] { return SkinColor::ToQColor(skin.FrameColor(frmTamselSkin::KindDialog)); };
    const QColor defaultFrame = frame();
    EXPECT_EQ(properties.palette().color(QPalette::Window), defaultFrame);

    settings.SaveSetting(QStringLiteral("SETTINGS"), QStringLiteral("SKINNAME"), QStringLiteral("Nightfall"));
    skin.LoadSkin();
    ASSERT_NE(frame(), defaultFrame);
    EXPECT_EQ(properties.palette().color(QPalette::Window), frame());
    constexpr int kDark = 128;
    for (QWidget* control :
         {static_cast<QWidget*>(properties.lstProp()), static_cast<QWidget*>(properties.txtReload()),
          static_cast<QWidget*>(properties.txtRemove())}) {
        SCOPED_TRACE(control->accessibleName().toStdString());
        EXPECT_LT(control->palette().color(QPalette::Base).lightness(), kDark);
        EXPECT_GT(control->palette().color(QPalette::Text).lightness(), kDark);
    }
    EXPECT_GT(properties.chkOpenOnNew()->palette().color(QPalette::WindowText).lightness(), kDark);
}

TEST_F(PropertiesTest, EveryControlInTheFocusChainHasAName) {
    frmProperties& properties = windows.ChannelProperties();
    properties.SetChannelProp(Channel());
    properties.show();
    QApplication::setActiveWindow(&properties);
    properties.lstProp()->setFocus();
    QList<QWidget*> visited;
    QWidget* current = QApplication::focusWidget();
    while (current && !visited.contains(current)) {
        visited.append(current);
        EXPECT_FALSE(current->accessibleName().isEmpty()) << current->metaObject()->className();
        QTest::keyClick(current, Qt::Key_Tab);
        current = QApplication::focusWidget();
    }
    EXPECT_EQ(visited, (QList<QWidget*>{properties.lstProp(), properties.txtReload(), properties.txtRemove(),
                                        properties.chkOpenOnNew(), properties.cmdApply(), properties.cmdOk(),
                                        properties.cmdCancel()}));
    properties.close();
}

// With the preview open and the vertical scroll bar shown, the columns still fit the grid, so a
// click on a row's icon does not slide the grid sideways.
TEST_F(ViewerTest, TheColumnsFitTheGridWhateverScrollsVertically) {
    AddItems(40);
    frmViewer& viewer = Open();
    viewer.show();
    viewer.resize(700, 400);
    viewer.flexItems_Click(0, frmViewer::ColTitle);
    Settle(viewer);
    QTableWidget* grid = viewer.flexItems();
    ASSERT_TRUE(grid->verticalScrollBar()->isVisible());
    int total = 0;
    for (int column = 0; column < grid->columnCount(); ++column) {
        total += grid->columnWidth(column);
    }
    EXPECT_EQ(total, grid->viewport()->width());
    EXPECT_EQ(grid->columnWidth(frmViewer::ColHidden), 0);
    QTest::mouseClick(grid->viewport(), Qt::LeftButton, {},
                      grid->visualRect(grid->model()->index(2, frmViewer::ColProp)).center());
    EXPECT_EQ(grid->horizontalScrollBar()->value(), 0);
    EXPECT_GT(grid->columnWidth(frmViewer::ColTitle), 0);
    if (viewer.Properties()) {
        viewer.Properties()->close();
    }
}
