// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/HeadlessHost.h"
#include "app/MakerSite.h"
#include "app/clsProfile.h"
#include "feeds/RSSChannel.h"
#include "feeds/colChannels.h"
#include "itembank/modItemHandler.h"
#include "platform/XmlDocument.h"
#include "platform/XsltStylesheet.h"
#include "skin/SkinColor.h"
#include "skin/SkinTestSupport.h"
#include "support/FakeHttpClient.h"
#include "support/FocusChain.h"
#include "support/RecordingDesktop.h"
#include "views/GuardedBrowser.h"
#include "views/ItemRenderer.h"
#include "views/ViewerWindows.h"
#include "views/frmProperties.h"
#include "views/frmViewer.h"

#include <QtTest>
#include <QtWidgets>

using namespace Qt::StringLiterals;

namespace {
using enum frmViewer::Column;
const QString kUnread = u"_tamsel/unread"_s;

const QString kData = QString::fromUtf8(TAMSEL_TEST_DATA_DIR "/");

// A table under data/: one row a line, cells split at "|" and trimmed; blank lines and "# " comments skipped.
QList<QStringList> Table(const QString& name) {
    QList<QStringList> rows;
    for (const QString& line : DataText(name).split(u'\n', Qt::SkipEmptyParts)) {
        if (!line.startsWith(u"# "_s)) {
            rows.append(line.trimmed().split(QRegularExpression(u"\\s*\\|\\s*"_s)));
        }
    }
    EXPECT_FALSE(rows.isEmpty()) << name.toStdString();
    return rows;
}

// The titles of the item rows, top to bottom.
QStringList Titles(const frmViewer& viewer) {
    QStringList titles;
    for (int row = 0; row < viewer.flexItems()->rowCount(); row += 2) {
        titles.append(viewer.flexItems()->item(row, ColTitle)->text());
    }
    return titles;
}

QImage CellIcon(const frmViewer& viewer, int row, int column) {
    return viewer.flexItems()->item(row, column)->icon().pixmap(16).toImage();
}

void Flush() {
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

// An active profile "Reader" with the shipped Default skin, real item bank and channels, and the viewer
// windows; the network never answers and links are recorded.
class ViewerTest : public ::testing::Test, public SkinFixture, public AppHost {
protected:
    static inline const QString kFeedUrl = u"http://feeds.example.org/news.xml"_s;
    static inline const QString kFeedTitle = u"Example News"_s;

    ViewerTest() {
        // The viewers work without the main window and its tree's image list.
        skin.SetImageListTarget(nullptr);
        Choose(u"Default"_s);
        skin.LoadSkin();
        http.Ignore(site.SpotlightURL());
        profile.SetName(u"Reader"_s);
        inner.ChangeUser(&profile);
        profile.AddChannel(kFeedUrl, u"News"_s)->SetTitle(kFeedTitle);
        Channel().StopReloading();
    }
    ~ViewerTest() override {
        windows.CloseAll();
        inner.ChangeUser(nullptr);
        Flush();
    }

    // The host of the profile: a headless one, but with the real viewer windows.
    void PopupInfo(const QString&, const QString&, const QString&) override {}
    void StateChange(const QString& name, RSSChannel& channel) override { inner.StateChange(name, channel); }
    clsProfile* ActiveProfile() const override { return inner.ActiveProfile(); }
    const XsltStylesheet& NamespaceTransform() const override { return inner.NamespaceTransform(); }
    ChannelViewer* Viewer(const RSSChannel& channel) const override { return windows.Viewer(channel); }
    ChannelViewer* LoadViewer(RSSChannel& channel) override { return windows.LoadViewer(channel); }
    void UnloadViewer(RSSChannel& channel) override { windows.UnloadViewer(channel); }

    RSSChannel& Channel() { return *profile.GetChannel(kFeedUrl); }
    // Stores `count` items: "Item 0" first (oldest) to "Item count-1".
    void AddItems(int count) {
        for (int i = 0; i < count; ++i) {
            AddItem(u"Item %1"_s.arg(i), QString(), u"Text %1"_s.arg(i));
        }
    }
    void AddItem(const QString& title, const QString& link = {}, const QString& description = {}) {
        const QString xml = DataText(u"item.xml"_s)
                                .arg(kFeedUrl, FormatItemDate(clock.Now().date()), title.toHtmlEscaped(),
                                     link.toHtmlEscaped(), description.toHtmlEscaped(),
                                     QString::number(++m_guid), kFeedTitle);
        ASSERT_TRUE(profile.AddItem(XmlDocument::Parse(xml.toUtf8()).DocumentElement())) << xml.toStdString();
    }
    // Opens the channel's (or folder's) viewer as the tree does.
    frmViewer& Open(const QString& key = kFeedUrl) {
        profile.GetChannel(key)->CreateChannelView(true);
        return *windows.Window(*profile.GetChannel(key));
    }
    // A properties window's rows as "name=value", joined with "|".
    static QString Shown(const frmProperties& properties) {
        QStringList rows;
        for (const auto& [name, value] : properties.Rows()) {
            rows.append(name + u'=' + value);
        }
        return rows.join(u'|');
    }
    // Runs the preview animation until it stops.
    static void Settle(frmViewer& viewer) {
        for (int tick = 0; tick < 200 && viewer.PreviewAnimating(); ++tick) {
            viewer.tmrIEShowHide_Timer();
        }
    }

    FakeHttpClient http;
    RecordingDesktop desktop;
    XsltStylesheet namespaceTransform{XsltStylesheet::Load(home.GetPaths().ResourceFile(u"tamselns.xsl"_s))};
    MakerSite site{settings};
    HeadlessHost inner{clock, namespaceTransform, site.HelpURL()};
    // Before the profile, so that its channels still find the windows while they go.
    ViewerWindows windows{ViewerServices{*this, skin, desktop, http, settings}};
    clsProfile profile{Services{clock, settings, http, desktop, home.GetPaths()}, *this};
    int m_guid = 0;
};
} // namespace

TEST_F(ViewerTest, PagesRunFromTheNewestItemBackwards) {
    int stored = 0;
    for (const QStringList& test : Table(u"pages.txt"_s)) {
        SCOPED_TRACE(test.join(u'|').toStdString());
        if (stored != test[0].toInt()) {
            windows.CloseAll();
            profile.ItemBank()->KillChannel(kFeedUrl);
            AddItems(stored = test[0].toInt());
        }
        frmViewer& viewer = Open();
        viewer.SetupView(QString(), QString());
        for (const QString& action : test[1].split(u' ', Qt::SkipEmptyParts)) {
            viewer.SkinHandler(action);
        }
        const QStringList titles = Titles(viewer);
        const QString shown =
            u"%1: %2..%3 (%4)"_s.arg(viewer.Page()).arg(titles.first(), titles.last()).arg(titles.size());
        EXPECT_EQ(
            (QStringList{shown, viewer.DecodeText(u"{page}/{pages}: {items} of {allitems} in {title}"_s)}),
            test.mid(2));
    }
}

// Rows show long titles cut, the description's text for a missing title and, in a folder, the channel.
// Opening an unread item marks it read, in a folder for its channel too, drops the tree's counts and writes
// the channel's one page file, which the next item reuses.
TEST_F(ViewerTest, RowsShowTheItemsAndOpeningOneMarksItRead) {
    const QString exact(128, u'a');
    AddItem(exact, u"http://example.org/1"_s, u"<p>One</p>"_s);
    AddItem(QString(130, u'b'));
    AddItem(QString(), QString(), u"<p>Only a <b>description</b> &amp; more</p>"_s);
    Channel().SetState();
    profile.GetChannel(kUnread)->SetState();
    const QString before = inner.NodeText(kUnread);
    ASSERT_TRUE(before.endsWith(u"(3)"_s));
    frmViewer& folder = Open(kUnread);
    EXPECT_EQ(Titles(folder).last(), exact + u"  ("_s + kFeedTitle + u')');
    folder.flexItems_Click(4, ColDate);
    EXPECT_EQ(Summary(Channel().UnreadCount(), inner.NodeText(kUnread)),
              Summary(2, before.chopped(3) + u"(2)"_s));
    frmViewer& viewer = Open();
    EXPECT_EQ(Titles(viewer),
              QStringList({u"Only a description & more"_s, QString(125, u'b') + u"..."_s, exact}));
    EXPECT_EQ(viewer.flexItems()->item(0, ColDate)->text(),
              FormatItemDate(clock.Now().date()) + u"  10:00:00"_s);
    const auto bold = [&viewer](int row) { return viewer.flexItems()->item(row, ColTitle)->font().bold(); };
    ASSERT_TRUE(bold(0) && bold(2) && !bold(4));
    viewer.flexItems_Click(0, ColTitle);
    const QString page = viewer.PagePath();
    // The rows' bold titles, the read mark, the unread count, the page on disk and in the preview.
    EXPECT_EQ(Summary(bold(0), bold(2), IsItemRead(viewer.Items().at(2)), Channel().UnreadCount(),
                      ReadWholeFile(page).contains("Only a"),
                      viewer.webView()->toPlainText().contains(u"Only a description"_s)),
              u"0 1 1 1 1 1"_s);
    // The channel asks for another item: the open one shuts first. The page file is reused and
    // declares UTF-8 once; a page that cannot be made or stored is refused.
    viewer.ShowItem(1);
    EXPECT_EQ(viewer.PendingRow(), 2);
    Settle(viewer);
    const QByteArray next = ReadWholeFile(page);
    EXPECT_EQ(Summary(viewer.PagePath() == page, next.contains("bbbb"), next.contains("Only a"),
                      next.count("charset="), Channel().UnreadCount()),
              u"1 1 0 1 0"_s);
    // The declaration goes after the head tag, or before a page that has none.
    const QByteArray meta = R"(<meta http-equiv="Content-Type" content="text/html; charset=UTF-8">)";
    EXPECT_EQ(ItemRenderer::WithUtf8Declaration("<html><head><title>é</title></head></html>") +
                  ItemRenderer::WithUtf8Declaration("<p>x</p>"),
              "<html><head>" + meta + "<title>é</title></head></html>" + meta + "<p>x</p>");
    const XsltStylesheet none;
    QString error;
    EXPECT_FALSE(
        ItemRenderer(none, none).RenderToFile(viewer.Items().at(0), home.File(u"page.html"_s), &error));
    const ItemRenderer renderer(namespaceTransform, skin.ItemStylesheet());
    // No item; a page whose folder would have to be made inside a file.
    EXPECT_EQ(Summary(error, renderer.Render(XmlNode()).isEmpty(),
                      renderer.RenderToFile(viewer.Items().at(0),
                                            home.GetPaths().ResourceFile(u"tamselns.xsl"_s) + u"/p"_s)),
              u"No stylesheet to show items with 1 0"_s);
}

// A tag or a deletion changes the item where it stands; the filters narrow by them, by the read mark and by
// date; a filter that leaves nothing shows no rows and page 0.
TEST_F(ViewerTest, RowIconsMarkItemsAndTheFiltersFollow) {
    const QDateTime now = clock.Now();
    for (const auto& [title, age] :
         {std::pair{"Old", 10}, {"Recent", 3}, {"Tagged", 0}, {"Deleted", 0}, {"Read", 0}}) {
        clock.SetNow(now.addDays(-age));
        AddItem(QString::fromUtf8(title));
    }
    clock.SetNow(now);
    frmViewer& viewer = Open();
    const QImage untagged = CellIcon(viewer, 4, ColTag);
    const QImage kept = CellIcon(viewer, 2, ColDelete);
    viewer.flexItems_Click(4, ColTag);
    viewer.flexItems_Click(2, ColDelete);
    // The items' marks, whether the icons changed, the tag's tip.
    const auto marks = [&] {
        return Summary(IsItemFlagged(viewer.Items().at(2)), IsItemDeleted(viewer.Items().at(3)),
                       CellIcon(viewer, 4, ColTag) == untagged, CellIcon(viewer, 2, ColDelete) == kept,
                       viewer.flexItems()->item(4, ColTag)->toolTip());
    };
    EXPECT_EQ(marks(), u"1 1 0 0 Tagged"_s);
    // The hidden column and rows do nothing; a deleted item stays in view until a reload.
    viewer.flexItems_Click(0, ColHidden);
    viewer.flexItems_Click(1, ColTitle);
    viewer.flexItems_Click(0, ColIcon);
    EXPECT_TRUE(viewer.PreviewRow() == 1 && Titles(viewer).size() == 5);
    for (const QStringList& test : Table(u"filters.txt"_s)) {
        SCOPED_TRACE(test[0].toStdString());
        viewer.cboSort()->setCurrentIndex(viewer.cboSort()->findText(test[0]));
        EXPECT_EQ((QStringList{viewer.DecodeText(u"{page}"_s), Titles(viewer).join(u", "_s)}), test.mid(1));
    }
    // Out of the deleted items again, and the view starts over with every item.
    viewer.flexItems_Click(0, ColDelete);
    viewer.SetupView(QString(), QString());
    viewer.flexItems_Click(4, ColTag);
    EXPECT_EQ(marks(), u"0 0 1 1 Tag"_s);
}

// The preview opens in steps of a third of what remains plus 5 and shuts in halves; the splitter, dragged
// with the left button, sets its height within 100 to 800 pixels.
TEST_F(ViewerTest, ThePreviewGrowsShrinksAndFollowsTheSplitter) {
    AddItems(3);
    frmViewer& viewer = Open();
    viewer.SetPanelHeight(0);
    const auto steps = [&viewer] {
        std::vector<int> heights;
        for (const bool closing = viewer.PreviewClosed();
             viewer.PreviewAnimating() && viewer.PreviewClosed() == closing && heights.size() < 100;) {
            viewer.tmrIEShowHide_Timer();
            heights.push_back(viewer.PreviewRow() == 1 ? viewer.PreviewRowHeight() : -1);
        }
        return heights;
    };
    viewer.flexItems_Click(0, ColTitle);
    EXPECT_EQ(steps(), std::vector<int>({105, 175, 221, 252, 273, 287, 296, 300}));
    EXPECT_TRUE(viewer.webView()->isVisibleTo(&viewer));
    QWidget* splitter = viewer.picSplitter();
    const auto drag = [splitter](QEvent::Type type, int y, Qt::MouseButtons buttons) {
        const QPoint at = splitter->parentWidget()->mapToGlobal(QPoint(5, y));
        QMouseEvent event(type, splitter->mapFromGlobal(at), at, Qt::LeftButton, buttons, Qt::NoModifier);
        QApplication::sendEvent(splitter, &event);
    };
    QSignalSpy resized(&viewer, &frmViewer::Resized);
    drag(QEvent::MouseMove, 250, Qt::LeftButton);
    EXPECT_EQ(viewer.PreviewRowHeight(), 250);
    drag(QEvent::MouseMove, 400, Qt::NoButton);
    drag(QEvent::MouseButtonRelease, 2000, Qt::NoButton);
    EXPECT_TRUE(viewer.PreviewRowHeight() == frmViewer::kMaxPanelHeight && resized.size() == 1);
    viewer.SetPanelHeight(300);
    // Another item while one is open: the open one shuts first, then the other opens.
    viewer.flexItems_Click(4, ColTitle);
    EXPECT_EQ(viewer.PendingRow(), 4);
    EXPECT_EQ(steps(), std::vector<int>({145, 68, 29, 10, -1}));
    EXPECT_EQ(viewer.PreviewRow(), 5);
    Settle(viewer);
    EXPECT_EQ(viewer.PreviewRowHeight(), frmViewer::kDefaultPanelHeight);
    // A click on the open item shuts it; the splitter of a shut preview does nothing.
    viewer.flexItems_Click(4, ColTitle);
    drag(QEvent::MouseButtonRelease, 200, Qt::NoButton);
    Settle(viewer);
    EXPECT_TRUE(viewer.PreviewRow() == -1 && viewer.PanelHeight() == frmViewer::kDefaultPanelHeight);
}

// Only the web and mail go to the desktop; local files and scripts go nowhere. Pictures load after the page
// shows and are fitted to its width; a broken, local or unnamed one leaves its alternative text, and an
// answer for a page no longer shown changes nothing.
TEST_F(ViewerTest, LinksLeaveOnlyForTheWebAndPicturesAreNotWaitedFor) {
    const QString picture = u"http://img.example.org/harbour.png"_s;
    AddItem(u"Linked"_s, u"http://example.org/story"_s, DataText(u"pictured.html"_s));
    AddItem(u"Sneaky"_s, u"file:///etc/passwd"_s);
    AddItem(u"Plain"_s);
    frmViewer& viewer = Open();
    EXPECT_TRUE(CellIcon(viewer, 0, ColLink).isNull() && !CellIcon(viewer, 4, ColLink).isNull());
    for (int row : {0, 2, 4}) {
        viewer.flexItems_Click(row, ColLink);
    }
    EXPECT_EQ(desktop.opened, QStringList{u"http://example.org/story"_s});
    viewer.flexItems_Click(4, ColTitle);
    Settle(viewer);
    GuardedBrowser& browser = *viewer.webView();
    const QString page = browser.CurrentDocument();
    for (const QStringList& test : Table(u"links.txt"_s)) {
        SCOPED_TRACE(test[0].toStdString());
        desktop.opened.clear();
        EXPECT_EQ(browser.BeforeNavigate(QUrl(test[0])), test[1] == u"preview"_s);
        EXPECT_EQ(desktop.opened, test[1] == u"desktop"_s ? QStringList{test[0]} : QStringList());
        EXPECT_EQ(browser.CurrentDocument(), page);
    }
    EXPECT_TRUE(browser.BeforeNavigate(QUrl::fromLocalFile(page)));

    const auto text = [&browser] { return browser.toPlainText(); };
    const auto image = [&browser](const QString& url) {
        return browser.document()->resource(QTextDocument::ImageResource, QUrl(url)).value<QImage>();
    };
    EXPECT_EQ(Summary(http.Waiting(), text().contains(u"Local"_s), text().contains(u"Unnamed"_s),
                      text().contains(u"Quay map"_s)),
              u"4 1 1 0"_s);
    ASSERT_TRUE(http.Complete(picture, "GET", ReadWholeFile(kData + u"wide.png"_s)));
    EXPECT_TRUE(!image(picture).isNull() && image(picture).width() <= browser.viewport()->width());
    ASSERT_TRUE(
        http.Complete(u"http://img.example.org/broken.png"_s, "GET", QByteArrayLiteral("not a picture")));
    browser.resize(browser.width() - 40, browser.height());
    EXPECT_TRUE(text().contains(u"Quay map"_s));
    viewer.flexItems_Click(0, ColTitle);
    Settle(viewer);
    const QString plain = text();
    ASSERT_TRUE(http.Fail(u"http://img.example.org/refused.png"_s, "GET"));
    ASSERT_TRUE(
        http.Complete(u"http://img.example.org/late.png"_s, "GET", ReadWholeFile(kData + u"small.png"_s)));
    EXPECT_EQ(text(), plain);
    // Back on its page, the picture that arrived meanwhile shows, at its own size as it fits.
    viewer.flexItems_Click(4, ColTitle);
    Settle(viewer);
    EXPECT_EQ(image(u"http://img.example.org/late.png"_s).width(), 10);
}

// Up and Down stop at the ends of the page, Return, Enter and Space open, Escape shuts the preview from the
// list or from within it, and paging stops at the last page. Ctrl+F leads to the search box, where every
// keystroke reloads the list and closes the preview.
TEST_F(ViewerTest, KeyboardMovesOpensPagesAndSearchesAndEveryControlHasAName) {
    AddItems(60);
    for (const char* title : {"Quince jam", "Quinoa", "Quark"}) {
        AddItem(QString::fromUtf8(title));
    }
    frmViewer& viewer = Open();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&viewer));
    QTableWidget* grid = viewer.flexItems();
    QTest::keySequence(grid, QKeySequence(u"Up, Down, Return"_s));
    EXPECT_EQ(viewer.PreviewRow(), 99);
    Settle(viewer);
    QTest::keyClick(viewer.webView(), Qt::Key_Escape);
    Settle(viewer);
    EXPECT_EQ(Summary(viewer.PreviewRow(), grid->hasFocus()), u"-1 1"_s);
    QTest::keySequence(grid, QKeySequence(u"Space, Esc, A, PgDown"_s));
    QTest::keySequence(grid, QKeySequence(u"Return, Esc"_s));
    EXPECT_EQ(viewer.PreviewRow(), -1);
    QTest::keySequence(grid, QKeySequence(u"Down, Up, Down, Enter"_s));
    QTest::keyClick(grid, Qt::Key_PageDown);
    EXPECT_TRUE(viewer.Page() == 2 && viewer.PreviewRow() == 3);
    QTest::keySequence(grid, QKeySequence(u"PgUp, Down, Return"_s));
    EXPECT_TRUE(viewer.Page() == 1 && viewer.PreviewRow() == 1);
    QTest::keyClick(&viewer, Qt::Key_F, Qt::ControlModifier);
    // After each letter: the preview row, the rows found, whether the search box keeps the focus.
    QStringList found;
    for (const char letter : QByteArray("quinox")) {
        QTest::keyClick(viewer.txtSearch(), letter);
        found << Summary(viewer.PreviewRow(), Titles(viewer).size(), viewer.txtSearch()->hasFocus());
    }
    EXPECT_EQ(found.join(u'|'), u"-1 3 1|-1 3 1|-1 2 1|-1 2 1|-1 1 1|-1 0 1"_s);
    EXPECT_EQ(viewer.DecodeText(u"{page} of {pages}"_s), u"0 of 0"_s);

    // Every control the focus reaches has a name. With the preview open and the vertical scroll bar
    // shown, the columns still fit the grid, so a click on a row's icon does not slide it sideways.
    QTest::keyClick(viewer.txtSearch(), Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(viewer.txtSearch(), Qt::Key_Backspace);
    viewer.resize(700, 400);
    viewer.flexItems_Click(0, ColTitle);
    Settle(viewer);
    const FocusChain chain = FocusChain::Walk(viewer, viewer.cboSort());
    EXPECT_TRUE(chain.unnamed.isEmpty()) << chain.Unnamed();
    // Tab leaves the grid for the preview instead of walking its cells, and comes round again.
    EXPECT_GE(chain.visited.indexOf(viewer.webView()), chain.visited.indexOf(viewer.flexItems()) + 1);
    EXPECT_EQ(QApplication::focusWidget(), viewer.cboSort());
    ASSERT_TRUE(grid->verticalScrollBar()->isVisible());
    QTest::mouseClick(grid->viewport(), Qt::LeftButton, {},
                      grid->visualRect(grid->model()->index(2, ColProp)).center());
    EXPECT_EQ(Summary(grid->horizontalHeader()->length() == grid->viewport()->width(),
                      grid->columnWidth(ColHidden), grid->horizontalScrollBar()->value(),
                      grid->columnWidth(ColTitle) > 0),
              u"1 0 0 1"_s);
}

// The channel keeps the window's place and size. An item's properties are its elements, read only: a value
// can be copied, and a double click opens a web address but nothing else. A new skin dresses the next item
// opened, the plain controls and an open properties window. The skin's buttons frame, size and close the
// window; one window per channel or folder, gone with its channel.
TEST_F(ViewerTest, TheWindowItsPropertiesItsSkinAndItsChannel) {
    AddItem(u"Story"_s, u"http://example.org/story"_s, u"Body"_s);
    frmViewer& viewer = Open();
    viewer.setGeometry(QRect(100, 120, 500, 400));
    EXPECT_EQ(Channel().WindowGeometry(), QRect(100, 120, 500, 400));
    viewer.SetPanelHeight(250);
    Channel().SaveWndState();
    EXPECT_EQ(Channel().PanelHeight(), 250);

    viewer.flexItems_Click(0, ColProp);
    const QPointer<frmProperties> properties = viewer.Properties();
    ASSERT_TRUE(properties && QTest::qWaitForWindowExposed(properties));
    EXPECT_FALSE(properties->cmdApply()->isVisibleTo(properties) ||
                 properties->cmdOk()->isVisibleTo(properties) || properties->Apply());
    EXPECT_EQ(Shown(*properties), DataText(u"item-rows.txt"_s).trimmed());
    QTreeWidget* list = properties->lstProp();
    list->setCurrentItem(list->topLevelItem(1));
    properties->CopyValue();
    EXPECT_EQ(QApplication::clipboard()->text(), u"http://example.org/story"_s);
    for (int row : {0, 1}) {
        const QPoint at = list->visualItemRect(list->topLevelItem(row)).center();
        QTest::mousePress(list->viewport(), Qt::LeftButton, {}, at);
        QTest::mouseDClick(list->viewport(), Qt::LeftButton, {}, at);
    }
    EXPECT_EQ(desktop.opened, QStringList{u"http://example.org/story"_s});
    QTest::mouseClick(properties->cmdCancel(), Qt::LeftButton);
    EXPECT_FALSE(properties->isVisible());

    viewer.flexItems_Click(0, ColTitle);
    const QByteArray light = ReadWholeFile(viewer.PagePath());
    const auto frame = [this] { return SkinColor::ToQColor(skin.FrameColor(frmTamselSkin::KindDialog)); };
    const QColor lightFrame = frame();
    EXPECT_EQ(properties->palette().color(QPalette::Window), lightFrame);
    Choose(u"Nightfall"_s);
    skin.LoadSkin();
    viewer.flexItems_Click(0, ColTitle);
    Settle(viewer);
    viewer.flexItems_Click(0, ColTitle);
    const QByteArray dark = ReadWholeFile(viewer.PagePath());
    EXPECT_TRUE(!light.isEmpty() && light != dark && dark.contains("Story"));
    ASSERT_NE(frame(), lightFrame);
    EXPECT_EQ(properties->palette().color(QPalette::Window), frame());
    for (QWidget* control : std::initializer_list<QWidget*>{
             viewer.txtSearch(), viewer.webView(), list, properties->txtReload(), properties->txtRemove()}) {
        EXPECT_TRUE(control->palette().color(QPalette::Base).lightness() < 128 &&
                    control->palette().color(QPalette::Text).lightness() > 128)
            << control->accessibleName().toStdString();
    }
    EXPECT_GT(properties->chkOpenOnNew()->palette().color(QPalette::WindowText).lightness(), 128);

    // Framed and the window state (0 normal, 1 minimised, 2 maximised) after each of the skin's buttons.
    QStringList states;
    for (const QString& button : {u"windowframe"_s, u"max"_s, u"max"_s, u"min"_s}) {
        viewer.SkinHandler(button);
        states << Summary(viewer.Framed(), viewer.WindowState());
    }
    EXPECT_EQ(states.join(u'|'), u"1 0|1 2|1 0|1 1"_s);
    viewer.SetVisible(true);
    EXPECT_EQ(viewer.WindowState(), ChannelViewer::kNormalState);
    viewer.SetVisible(false);
    EXPECT_FALSE(viewer.isVisible());
    EXPECT_EQ(windows.LoadViewer(Channel()), static_cast<ChannelViewer*>(&viewer));
    viewer.flexItems_Click(0, ColProp);
    ASSERT_TRUE(properties->isVisible());
    QPointer<frmViewer> other(&Open(kUnread));
    other->SkinHandler(u"close"_s);
    windows.UnloadViewer(*profile.GetChannel(kUnread));
    viewer.SkinHandler(u"close"_s);
    EXPECT_FALSE(properties->isVisible());
    Flush();
    EXPECT_TRUE(properties.isNull() && other.isNull() && !Channel().IsViewerLoaded());
    const QPointer<frmViewer> reopened(&Open());
    profile.Channels()->DelChannel(kFeedUrl);
    Flush();
    EXPECT_TRUE(reopened.isNull() && windows.Count() == 0);
}

// A channel's rows leave out empty values but never "Items", and the category keeps its old spelling. Bad
// numbers are refused and the kept value comes back into the box; Ok stays open on them. Every control the
// focus reaches has a name.
TEST_F(ViewerTest, TheChannelsPropertiesShowItsRowsAndCheckItsSettings) {
    frmProperties& properties = windows.ChannelProperties();
    RSSChannel& channel = Channel();
    properties.SetChannelProp(channel);
    EXPECT_EQ(Shown(properties), u"Title=Example News|URL=%1|Items=0"_s.arg(kFeedUrl));
    channel.LoadChannel(XmlDocument::Load(kData + u"channel.xml"_s).DocumentElement());
    properties.SetChannelProp(channel);
    EXPECT_EQ(Shown(properties), DataText(u"channel-rows.txt"_s).trimmed());
    for (const QStringList& test : Table(u"settings.txt"_s)) {
        SCOPED_TRACE(test.join(u'|').toStdString());
        // Blanks around a number are allowed.
        properties.txtReload()->setText(u' ' + test[0] + u' ');
        properties.txtRemove()->setText(u' ' + test[1] + u' ');
        EXPECT_EQ(properties.Apply(), test[2] == u"stored"_s);
        EXPECT_EQ(u"%1 %2"_s.arg(channel.Update()).arg(channel.Expire()), test[3]);
        EXPECT_EQ(properties.txtReload()->text().trimmed() + u' ' + properties.txtRemove()->text().trimmed(),
                  test[4]);
    }
    properties.show();
    const FocusChain chain = FocusChain::Walk(properties, properties.lstProp());
    EXPECT_TRUE(chain.unnamed.isEmpty()) << chain.Unnamed();
    EXPECT_EQ(chain.visited,
              (QList<QWidget*>{properties.lstProp(), properties.txtReload(), properties.txtRemove(),
                               properties.chkOpenOnNew(), properties.cmdApply(), properties.cmdOk(),
                               properties.cmdCancel()}));
    properties.chkOpenOnNew()->setChecked(true);
    properties.txtRemove()->setText(u"many"_s);
    QTest::mouseClick(properties.cmdOk(), Qt::LeftButton);
    EXPECT_TRUE(properties.isVisible() && !channel.OpenLink());
    properties.txtRemove()->setText(u"9"_s);
    QTest::mouseClick(properties.cmdOk(), Qt::LeftButton);
    EXPECT_TRUE(!properties.isVisible() && channel.OpenLink() && channel.Expire() == 9);
}
