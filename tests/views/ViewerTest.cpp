// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ViewerFixture.h"

#include "feeds/RSSChannel.h"
#include "itembank/clsItemBank.h"
#include "itembank/modItemHandler.h"
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
#include <QMouseEvent>
#include <QPushButton>
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

bool RowBold(const frmViewer& viewer, int row) {
    return viewer.flexItems()->item(row, frmViewer::ColTitle)->font().bold();
}

// The list indexes shown on the current page, top to bottom.
std::vector<int> PageIndexes(const frmViewer& viewer) {
    std::vector<int> indexes;
    for (int row = 0; row < viewer.flexItems()->rowCount(); row += 2) {
        indexes.push_back(viewer.ItemIndexOfRow(row));
    }
    return indexes;
}
} // namespace

using ViewerTest = ViewerFixture;

TEST_F(ViewerTest, PagesRunFromTheNewestItemBackwards) {
    struct Case {
        int items;
        std::vector<QString> actions;
        int page;
        int first;
        int last;
    };
    const std::vector<Case> cases = {
        {120, {}, 1, 119, 70},
        {120, {QStringLiteral("nextpage")}, 2, 69, 20},
        {120, {QStringLiteral("nextpage"), QStringLiteral("nextpage")}, 3, 19, 0},
        {120, {QStringLiteral("lastpage"), QStringLiteral("nextpage")}, 3, 19, 0},
        {120, {QStringLiteral("prevpage")}, 1, 119, 70},
        {120, {QStringLiteral("lastpage"), QStringLiteral("prevpage")}, 2, 69, 20},
        {120, {QStringLiteral("lastpage"), QStringLiteral("firstpage")}, 1, 119, 70},
        {100, {QStringLiteral("lastpage")}, 2, 49, 0},
        {51, {QStringLiteral("nextpage")}, 2, 0, 0},
        {51, {QStringLiteral("nextpage"), QStringLiteral("nextpage")}, 2, 0, 0},
    };
    int stored = 0;
    for (const Case& test : cases) {
        SCOPED_TRACE(testing::Message() << test.items << " items, " << test.actions.size() << " actions");
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
        const std::vector<int> shown = PageIndexes(viewer);
        ASSERT_FALSE(shown.empty());
        EXPECT_EQ(shown.front(), test.first);
        EXPECT_EQ(shown.back(), test.last);
        EXPECT_EQ(int(shown.size()), test.first - test.last + 1);
        EXPECT_EQ(RowTitle(viewer, 0), QStringLiteral("Item ") + QString::number(test.first));
        EXPECT_EQ(viewer.DecodeText(QStringLiteral("{page}/{pages}: {items}")),
                  QString::number(test.page) + u'/' + QString::number((test.items + 49) / 50) +
                      QStringLiteral(": ") + QString::number(test.items));
    }
}

TEST_F(ViewerTest, AnEmptyListShowsPageZero) {
    frmViewer& viewer = Open();
    EXPECT_EQ(viewer.flexItems()->rowCount(), 0);
    EXPECT_EQ(viewer.DecodeText(QStringLiteral("{page} of {pages} ({allitems}) {title}")),
              QStringLiteral("0 of 0 (0) ") + kFeedTitle);
    viewer.SkinHandler(QStringLiteral("nextpage"));
    viewer.SkinHandler(QStringLiteral("lastpage"));
    viewer.ShowItem(0);
    EXPECT_EQ(viewer.Page(), 1);
}

TEST_F(ViewerTest, LongTitlesAreCutAndFoldersNameTheChannel) {
    const QString exact(128, u'a');
    const QString longer(130, u'b');
    AddItem(exact);
    AddItem(longer);
    AddItem(QString(), QString(), QStringLiteral("Only a description"));
    frmViewer& channelView = Open();
    EXPECT_EQ(RowTitle(channelView, 0), QStringLiteral("Only a description"));
    EXPECT_EQ(RowTitle(channelView, 2), QString(125, u'b') + QStringLiteral("..."));
    EXPECT_EQ(RowTitle(channelView, 4), exact);

    frmViewer& folderView = Open(kUnread);
    EXPECT_EQ(RowTitle(folderView, 4), exact + QStringLiteral("  (") + kFeedTitle + u')');
    EXPECT_NE(&folderView, &channelView);
}

TEST_F(ViewerTest, OpeningAnItemMarksItReadAndDropsTheTreeCount) {
    AddItem(QStringLiteral("First"), QStringLiteral("http://example.org/1"), QStringLiteral("<p>One</p>"));
    AddItem(QStringLiteral("Second"), QStringLiteral("http://example.org/2"), QStringLiteral("Two"));
    Channel().SetState();
    ASSERT_EQ(Channel().UnreadCount(), 2);
    profile.GetChannel(kUnread)->SetState();
    const QString before = inner.NodeText(kUnread);
    ASSERT_TRUE(before.endsWith(QStringLiteral("(2)")));
    frmViewer& viewer = Open();
    ASSERT_TRUE(RowBold(viewer, 0));
    ASSERT_TRUE(RowBold(viewer, 2));

    viewer.flexItems_Click(0, frmViewer::ColTitle);
    EXPECT_FALSE(RowBold(viewer, 0));
    EXPECT_TRUE(RowBold(viewer, 2));
    EXPECT_TRUE(IsItemRead(viewer.Items().at(1)));
    EXPECT_FALSE(IsItemRead(viewer.Items().at(0)));
    EXPECT_EQ(Bank().SubChannelList(kFeedUrl, kUnread, QString()).size(), 1u);
    EXPECT_EQ(Channel().UnreadCount(), 1);
    EXPECT_EQ(inner.NodeText(kUnread), before.chopped(3) + QStringLiteral("(1)"));

    const QString page =
        home.GetPaths().ProfileFolder(kProfile) + u'/' + Channel().ID() + QStringLiteral("_tmp.html");
    EXPECT_EQ(viewer.PagePath(), page);
    QFile file(page);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray first = file.readAll();
    file.close();
    EXPECT_TRUE(first.contains("Second")) << first.toStdString();
    EXPECT_TRUE(first.toLower().contains("charset=utf-8"));
    EXPECT_TRUE(first.endsWith("\r\n"));
    EXPECT_EQ(viewer.webView()->CurrentDocument(), page);
    EXPECT_TRUE(viewer.webView()->toPlainText().contains(QStringLiteral("Second")));

    // The other item of the channel reuses the same page file.
    viewer.flexItems_Click(2, frmViewer::ColTitle);
    Settle(viewer);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray second = file.readAll();
    EXPECT_TRUE(second.contains("First"));
    EXPECT_FALSE(second.contains("Second"));
    EXPECT_EQ(Channel().UnreadCount(), 0);
}

TEST_F(ViewerTest, OpeningAnItemInAFolderCountsForItsChannelToo) {
    AddItem(QStringLiteral("Only"));
    Channel().SetState();
    frmViewer& viewer = Open(kUnread);
    viewer.flexItems_Click(0, frmViewer::ColDate);
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
    ASSERT_TRUE(viewer.PreviewAnimating());
    std::vector<int> heights;
    while (viewer.PreviewAnimating()) {
        viewer.tmrIEShowHide_Timer();
        heights.push_back(viewer.PreviewRowHeight());
        ASSERT_LT(heights.size(), 100u);
    }
    // Each step is a third of what remains plus 5; the last one lands exactly.
    const std::vector<int> growing = {105, 175, 221, 252, 273, 287, 296, 300};
    EXPECT_EQ(heights, growing);
    EXPECT_TRUE(viewer.webView()->isVisibleTo(&viewer));

    // Another item while one is open: the open one shuts first, then the other opens.
    viewer.flexItems_Click(4, frmViewer::ColTitle);
    EXPECT_EQ(viewer.PendingRow(), 4);
    EXPECT_TRUE(viewer.PreviewClosed());
    heights.clear();
    while (viewer.PreviewClosed() && viewer.PreviewAnimating()) {
        viewer.tmrIEShowHide_Timer();
        heights.push_back(viewer.PreviewRow() == 1 ? viewer.PreviewRowHeight() : -1);
    }
    const std::vector<int> shrinking = {145, 68, 29, 10, -1};
    EXPECT_EQ(heights, shrinking);
    EXPECT_EQ(viewer.PreviewRow(), 5);
    EXPECT_EQ(viewer.PendingRow(), -1);
    Settle(viewer);
    EXPECT_EQ(viewer.PreviewRowHeight(), frmViewer::kDefaultPanelHeight);

    // A click on the open item closes it.
    viewer.flexItems_Click(4, frmViewer::ColIcon);
    Settle(viewer);
    EXPECT_EQ(viewer.PreviewRow(), -1);
    EXPECT_EQ(viewer.flexItems()->rowHeight(5), 0);
}

TEST_F(ViewerTest, EveryKeystrokeInTheSearchBoxReloadsAndClosesThePreview) {
    AddItem(QStringLiteral("Apples and pears"));
    AddItem(QStringLiteral("Apricots"));
    AddItem(QStringLiteral("Bananas"));
    frmViewer& viewer = Open();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&viewer));
    viewer.flexItems_Click(0, frmViewer::ColTitle);
    Settle(viewer);
    ASSERT_FALSE(viewer.PreviewClosed());

    QTest::keyClick(viewer.txtSearch(), Qt::Key_A);
    EXPECT_TRUE(viewer.PreviewClosed());
    EXPECT_EQ(viewer.PreviewRow(), -1);
    EXPECT_EQ(viewer.Items().size(), 3u);
    QTest::keyClick(viewer.txtSearch(), Qt::Key_P);
    EXPECT_EQ(viewer.Items().size(), 2u);
    QTest::keyClick(viewer.txtSearch(), Qt::Key_R);
    ASSERT_EQ(viewer.Items().size(), 1u);
    EXPECT_EQ(RowTitle(viewer, 0), QStringLiteral("Apricots"));
    EXPECT_TRUE(viewer.txtSearch()->hasFocus());
}

TEST_F(ViewerTest, FilterEntriesNarrowTheList) {
    EXPECT_EQ(
        frmViewer::FilterTexts(),
        QStringList({QStringLiteral("All Items"), QStringLiteral("Unread"), QStringLiteral("Tagged"),
                     QStringLiteral("Today"), QStringLiteral("Yesterday"), QStringLiteral("Past 7 Days"),
                     QStringLiteral("Read"), QStringLiteral("Older"), QStringLiteral("Deleted")}));
    AddItems(4);
    frmViewer& viewer = Open();
    viewer.flexItems_Click(0, frmViewer::ColTag);
    viewer.flexItems_Click(2, frmViewer::ColDelete);
    EXPECT_EQ(viewer.Items().size(), 4u) << "the list stays until it is loaded again";
    viewer.cboSort()->setCurrentIndex(2);
    ASSERT_EQ(viewer.Items().size(), 1u);
    EXPECT_EQ(RowTitle(viewer, 0), QStringLiteral("Item 3"));
    viewer.cboSort()->setCurrentIndex(8);
    ASSERT_EQ(viewer.Items().size(), 1u);
    EXPECT_EQ(RowTitle(viewer, 0), QStringLiteral("Item 2"));
    viewer.cboSort()->setCurrentIndex(0);
    EXPECT_EQ(viewer.Items().size(), 3u);
}

TEST_F(ViewerTest, LinksLeaveOnlyForTheWeb) {
    AddItem(QStringLiteral("Linked"), QStringLiteral("http://example.org/story"));
    AddItem(QStringLiteral("Sneaky"), QStringLiteral("file:///etc/passwd"));
    frmViewer& viewer = Open();
    viewer.flexItems_Click(2, frmViewer::ColLink);
    viewer.flexItems_Click(0, frmViewer::ColLink);
    EXPECT_EQ(desktop.opened, QStringList{QStringLiteral("http://example.org/story")});
    desktop.opened.clear();

    viewer.flexItems_Click(2, frmViewer::ColTitle);
    Settle(viewer);
    GuardedBrowser& browser = *viewer.webView();
    const QString page = browser.CurrentDocument();
    struct Case {
        const char* url;
        bool handedOver;
    };
    const Case cases[] = {
        {"http://example.org/more", true},   {"https://example.org/more", true},
        {"mailto:editor@example.org", true}, {"file:///etc/passwd", false},
        {"javascript:alert(1)", false},      {"ftp://example.org/file", false},
        {"vbscript:msgbox(1)", false},       {"/usr/bin/xterm", false},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.url);
        desktop.opened.clear();
        EXPECT_FALSE(browser.BeforeNavigate(QUrl(QString::fromUtf8(test.url))));
        EXPECT_EQ(desktop.opened.size(), test.handedOver ? 1 : 0);
        EXPECT_EQ(browser.CurrentDocument(), page);
    }
    EXPECT_TRUE(browser.BeforeNavigate(QUrl::fromLocalFile(page)));
}

TEST_F(ViewerTest, MissingPicturesLeaveTheirAlternativeText) {
    const QString html = QStringLiteral("<p>a<img src=\"file:///etc/x.png\" alt=\"Local\">b<img alt='Web' "
                                        "src='http://example.org/p.png'>c</p>");
    const QString kept = GuardedBrowser::WithoutUnfetchableImages(
        html, [](const QUrl& url) { return url.scheme() != QStringLiteral("http"); });
    EXPECT_EQ(kept, QStringLiteral("<p>aLocalb<img alt='Web' src='http://example.org/p.png'>c</p>"));
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

TEST_F(ViewerTest, FiltersAndSearchArePlacedFromEitherEdge) {
    EXPECT_EQ(frmViewer::PlaceFromEdge(8, 600, 130), 8);
    EXPECT_EQ(frmViewer::PlaceFromEdge(0, 600, 130), 0);
    EXPECT_EQ(frmViewer::PlaceFromEdge(-10, 600, 130), 460);
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

using PropertiesTest = ViewerFixture;

TEST_F(PropertiesTest, ChannelRowsLeaveOutEmptyValuesButNotItems) {
    frmProperties& properties = windows.ChannelProperties();
    properties.SetChannelProp(Channel());
    const auto rows = properties.Rows();
    QStringList names;
    for (const auto& row : rows) {
        names.append(row.first);
    }
    EXPECT_EQ(names, QStringList({QStringLiteral("Title"), QStringLiteral("URL"), QStringLiteral("Items")}));
    EXPECT_EQ(rows.at(2).second, QStringLiteral("0"));
    EXPECT_TRUE(properties.cmdApply()->isVisibleTo(&properties));
    EXPECT_TRUE(properties.cmdOk()->isVisibleTo(&properties));
}

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
    };
    const Case cases[] = {{"15", "7", true}, {"abc", "7", false}, {"-5", "7", false},
                          {"", "7", false},  {"20", "x", false},  {" 0 ", "0", true}};
    for (const Case& test : cases) {
        SCOPED_TRACE(testing::Message() << test.reload << "/" << test.remove);
        const int update = channel.Update();
        const int expire = channel.Expire();
        properties.txtReload()->setText(QString::fromUtf8(test.reload));
        properties.txtRemove()->setText(QString::fromUtf8(test.remove));
        EXPECT_EQ(properties.Apply(), test.stored);
        if (test.stored) {
            EXPECT_EQ(channel.Update(), QString::fromUtf8(test.reload).trimmed().toInt());
            EXPECT_EQ(channel.Expire(), QString::fromUtf8(test.remove).toInt());
        } else {
            EXPECT_EQ(channel.Update(), update);
            EXPECT_EQ(channel.Expire(), expire);
            const bool badReload = QString::fromUtf8(test.reload).trimmed().toInt() <= 0 &&
                                   QString::fromUtf8(test.reload).trimmed() != QStringLiteral("0");
            EXPECT_EQ(properties.txtReload()->text(),
                      badReload ? QString::number(update) : QString::fromUtf8(test.reload));
        }
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
    EXPECT_TRUE(properties->isVisible());
    EXPECT_FALSE(properties->isModal());
    EXPECT_FALSE(properties->cmdApply()->isVisibleTo(properties));
    EXPECT_FALSE(properties->cmdOk()->isVisibleTo(properties));
    EXPECT_TRUE(properties->cmdCancel()->isVisibleTo(properties));
    const auto rows = properties->Rows();
    ASSERT_GE(rows.size(), 8);
    EXPECT_EQ(rows.at(0), qMakePair(QStringLiteral("title"), QStringLiteral("Story")));
    EXPECT_EQ(rows.at(1), qMakePair(QStringLiteral("link"), QStringLiteral("http://example.org/story")));
    EXPECT_EQ(rows.back().first, QStringLiteral("channeltitle"));

    properties->lstProp()->setCurrentItem(properties->lstProp()->topLevelItem(1));
    properties->CopyValue();
    EXPECT_EQ(QApplication::clipboard()->text(), QStringLiteral("http://example.org/story"));
    QTest::mouseClick(properties->cmdCancel(), Qt::LeftButton);
    EXPECT_FALSE(properties->isVisible());
}

TEST_F(ViewerTest, TheSkinDecidesHowTheNextItemLooks) {
    AddItem(QStringLiteral("Styled"), QString(), QStringLiteral("Body"));
    frmViewer& viewer = Open();
    const auto renderedPage = [&viewer] {
        QFile file(viewer.PagePath());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    };
    viewer.flexItems_Click(0, frmViewer::ColTitle);
    Settle(viewer);
    const QByteArray light = renderedPage();
    settings.SaveSetting(QStringLiteral("SETTINGS"), QStringLiteral("SKINNAME"), QStringLiteral("Nightfall"));
    skin.LoadSkin();
    viewer.flexItems_Click(0, frmViewer::ColTitle);
    Settle(viewer);
    viewer.flexItems_Click(0, frmViewer::ColTitle);
    Settle(viewer);
    const QByteArray dark = renderedPage();
    ASSERT_FALSE(light.isEmpty());
    ASSERT_FALSE(dark.isEmpty());
    EXPECT_NE(light, dark);
    EXPECT_TRUE(dark.contains("Styled"));
    // The plain controls take the skin's colours as well.
    EXPECT_LT(viewer.txtSearch()->palette().color(QPalette::Base).lightness(), 128);
    EXPECT_LT(viewer.webView()->palette().color(QPalette::Base).lightness(), 128);
}

TEST_F(ViewerTest, PicturesArriveWithoutBeingWaitedFor) {
    const QString picture = QStringLiteral("http://img.example.org/harbour.png");
    const QString broken = QStringLiteral("http://img.example.org/broken.png");
    AddItem(QStringLiteral("Pictured"), QString(),
            QStringLiteral("<p>Before <img src=\"") + picture +
                QStringLiteral("\" alt=\"Harbour view\"> middle <img src=\"") + broken +
                QStringLiteral(
                    "\" alt=\"Quay map\"> <img src=\"file:///etc/hosts.png\" alt=\"Local\"> after</p>"));
    frmViewer& viewer = Open();
    viewer.flexItems_Click(0, frmViewer::ColTitle);
    Settle(viewer);
    QTextDocument& document = *viewer.webView()->document();
    EXPECT_EQ(http.Waiting(picture, "GET"), 1);
    EXPECT_EQ(http.Waiting(broken, "GET"), 1);
    EXPECT_EQ(http.Waiting(QStringLiteral("file:///etc/hosts.png"), "GET"), 0);
    EXPECT_TRUE(viewer.webView()->toPlainText().contains(QStringLiteral("Local")));
    EXPECT_FALSE(viewer.webView()->toPlainText().contains(QStringLiteral("Quay map")));

    QImage image(400, 200, QImage::Format_RGB32);
    image.fill(Qt::darkBlue);
    QByteArray png;
    QBuffer buffer(&png);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    ASSERT_TRUE(http.Complete(picture, "GET", png));
    const QImage shown = document.resource(QTextDocument::ImageResource, QUrl(picture)).value<QImage>();
    EXPECT_FALSE(shown.isNull());
    EXPECT_LE(shown.width(), viewer.webView()->viewport()->width());

    ASSERT_TRUE(http.Complete(broken, "GET", QByteArrayLiteral("not a picture")));
    EXPECT_TRUE(viewer.webView()->toPlainText().contains(QStringLiteral("Quay map")));
    EXPECT_EQ(http.Waiting(), 0);
    Flush();
}

TEST(ItemRendererTest, PagesDeclareTheirEncodingOnce) {
    const QByteArray declared = "<html><head><meta charset=\"utf-8\"></head><body>x</body></html>";
    EXPECT_EQ(ItemRenderer::WithUtf8Declaration(declared), declared);
    const QByteArray bare = "<html><head><title>é</title></head><body>x</body></html>";
    const QByteArray fixed = ItemRenderer::WithUtf8Declaration(bare);
    EXPECT_TRUE(fixed.startsWith(
        "<html><head><meta http-equiv=\"Content-Type\" content=\"text/html; charset=UTF-8\">"));
    EXPECT_TRUE(fixed.endsWith(bare.mid(12)));
    EXPECT_TRUE(ItemRenderer::WithUtf8Declaration("<p>x</p>").contains("charset=UTF-8"));
}

TEST_F(ViewerTest, TheSplitterSetsThePreviewHeightWithinLimits) {
    AddItems(2);
    frmViewer& viewer = Open();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&viewer));
    viewer.flexItems_Click(0, frmViewer::ColTitle);
    Settle(viewer);
    QWidget* splitter = viewer.picSplitter();
    const auto drag = [&](int panelY) {
        const QPoint start(5, 2);
        const QPoint target(5, panelY - splitter->y());
        QMouseEvent press(QEvent::MouseButtonPress, start, splitter->mapToGlobal(start), Qt::LeftButton,
                          Qt::LeftButton, Qt::NoModifier);
        QMouseEvent move(QEvent::MouseMove, target, splitter->mapToGlobal(target), Qt::NoButton,
                         Qt::LeftButton, Qt::NoModifier);
        QMouseEvent release(QEvent::MouseButtonRelease, target, splitter->mapToGlobal(target), Qt::LeftButton,
                            Qt::NoButton, Qt::NoModifier);
        QCoreApplication::sendEvent(splitter, &press);
        QCoreApplication::sendEvent(splitter, &move);
        QCoreApplication::sendEvent(splitter, &release);
    };
    const std::pair<int, int> cases[] = {{450, 450}, {2000, 800}, {20, 100}, {260, 260}};
    for (const auto& [dragged, kept] : cases) {
        SCOPED_TRACE(dragged);
        drag(dragged);
        EXPECT_EQ(viewer.PanelHeight(), kept);
        EXPECT_EQ(viewer.PreviewRowHeight(), kept);
        EXPECT_EQ(Channel().PanelHeight(), kept);
    }
}
