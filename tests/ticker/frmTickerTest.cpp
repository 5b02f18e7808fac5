// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ticker/frmTicker.h"
#include "itembank/clsItemBank.h"
#include "itembank/modItemHandler.h"
#include "platform/XsltStylesheet.h"
#include "skin/SkinTestSupport.h"
#include "support/FakeHttpClient.h"
#include "support/FocusChain.h"
#include "support/RecordingDesktop.h"
#include "ticker/frmTickerView.h"
#include "views/GuardedBrowser.h"
#include "views/ImageLoader.h"

#include <QPointer>
#include <QSignalSpy>
#include <QTest>
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

constexpr quint32 kRed = 0x0000FF;
constexpr quint32 kWhite = 0xFFFFFF;

// The Plain skin prints red text fading to white on a green bar; data/items.xml holds today's
// unread "Abc", "Next", a title of 80 letters, one of 81 and one with a description only. The
// ticker opens its items in a real item view.
class TickerTest : public ::testing::Test {
protected:
    TickerTest() {
        fixture.Load(u"Plain"_s);
        fixture.home.Write(u"profiles/Reader/items.xml"_s, DataText(u"items.xml"_s).toUtf8());
        bank->init(u"Reader"_s);
    }

    // Opens a new ticker in place of the one open before, if any.
    frmTicker& Open(const QString& effect = u"1"_s) {
        delete ticker.data();
        fixture.settings.SaveSetting(frmTicker::kSection, u"Effect"_s, effect);
        view = std::make_unique<frmTickerView>(
            fixture.skin, fixture.settings, fixture.clock, desktop, images, namespaceTransform,
            [this] { return pagePath; }, [this](const XmlNode& item) { reported << GetItemTitle(item); });
        ticker = new frmTicker(fixture.skin, fixture.settings, fixture.clock, desktop,
                               [this] { return bank.get(); });
        ticker->SetItemView(view.get());
        return *ticker;
    }

    // Runs ticks until `done` holds, at most `limit` of them; false when it never did.
    template <typename Done> bool TickUntil(Done done, int limit = 5000) {
        for (int i = 0; i < limit && !done(); ++i) {
            Tick();
        }
        return done();
    }
    void Tick() { fixture.clock.Advance(ticker->Interval()); }
    // The entry on show: index, text, source and time.
    QString Entry() {
        return Summary(ticker->Index(), ticker->EntryText(), ticker->EntrySource(), ticker->EntryTime());
    }
    qsizetype PixelsOf(QRgb colour) {
        const QImage image = ticker->picSkin()->Image().convertToFormat(QImage::Format_RGB32);
        const auto* pixels = reinterpret_cast<const QRgb*>(image.constBits());
        return std::count(pixels, pixels + image.width() * image.height(), colour);
    }
    int ViewTop() { return view->y() - ticker->screen()->geometry().top(); }

    void TearDown() override { delete ticker.data(); }

    SkinFixture fixture;
    RecordingDesktop desktop;
    FakeHttpClient http;
    ImageLoader images{http};
    XsltStylesheet namespaceTransform =
        XsltStylesheet::Load(QStringLiteral(TAMSEL_BUILD_DATA_DIR "/tamselns.xsl"));
    QString pagePath = fixture.home.GetPaths().ProfileFolder(u"Reader"_s) + u"/tck_tmp.html"_s;
    QStringList reported;
    std::unique_ptr<frmTickerView> view;
    std::unique_ptr<clsItemBank> bank = std::make_unique<clsItemBank>(fixture.clock, fixture.home.GetPaths());
    QPointer<frmTicker> ticker;
};

// Entry texts follow the title up to 80 letters and fall back to the description; placeholders
// are expanded once. Stepping back from the first entry wraps to a list fetched anew; with a
// profile without items the ticker says so and a click opens nothing.
TEST_F(TickerTest, EntriesFollowTheListAndSayWhenItIsEmpty) {
    fixture.clock.SetNow(QDateTime(fixture.clock.Now().date(), QTime(11, 1)));
    Open();
    const QStringList expected = {u"Abc"_s, u"Next"_s, QString(80, u'a'), QString(80, u'b') + u"..."_s,
                                  u"only a description"_s};
    for (int i = 0; i < expected.size(); ++i) {
        SCOPED_TRACE(i);
        Tick();
        EXPECT_EQ(Entry(), Summary(i, expected.at(i), u"Channel A"_s, u"08:15:00"_s));
        EXPECT_EQ(ticker->DecodeText(u"{chl} and {chl} at {time}, {hrs} h"_s),
                  u"Channel A and {chl} at 08:15:00, 3 h"_s);
        ticker->SkinHandler(u"next"_s);
    }
    Tick();
    ASSERT_EQ(ticker->EntryText(), u"Abc"_s);
    // The last one is read meanwhile: the list fetched anew no longer holds it.
    SetItemRead(bank->UnreadTodayList().back(), true);
    ticker->SkinHandler(u"prev"_s);
    Tick();
    EXPECT_EQ(Entry(), Summary(3, expected.at(3), u"Channel A"_s, u"08:15:00"_s));

    ticker->ProfileChanged();
    bank = std::make_unique<clsItemBank>(fixture.clock, fixture.home.GetPaths());
    bank->init(u"Nobody"_s);
    Tick();
    EXPECT_EQ(Entry().section(u' ', 1), u"No Unread Items For Today Tamsel "_s);
    QTest::mouseClick(ticker->picSkin(), Qt::LeftButton, {}, QPoint(100, 10));
    EXPECT_FALSE(view->isVisible());
    bank.reset();
    EXPECT_EQ(ticker->DecodeText(u"{chl} {time}"_s), u"{chl} {time}"_s);
}

// An unknown or empty effect setting scrolls horizontally (it rests for half a second); a left or
// right bar draws the skin but no text. Vertical text rises and rests five seconds at the centre.
TEST_F(TickerTest, UnknownEffectsScrollASideBarDrawsNoTextAndVerticalTextRests) {
    const std::pair<int, QString> cases[] = {{0, u"7"_s}, {1, QString()}, {2, u"x"_s}, {3, u"1"_s}};
    for (const auto& [edge, effect] : cases) {
        SCOPED_TRACE(edge);
        fixture.settings.SaveSetting(frmTicker::kSection, u"Edge"_s, QString::number(edge));
        Open(effect).resize(edge % 2 == 0 ? QSize(20, 400) : QSize(400, 20));
        ASSERT_TRUE(TickUntil([&] { return ticker->Interval() == 500; }));
        // Effect, text printed, red text pixels, green bar pixels.
        EXPECT_EQ(Summary(ticker->CurrentEffect(), ticker->Printed(), PixelsOf(qRgb(255, 0, 0)) > 0,
                          PixelsOf(qRgb(0, 255, 0)) > 0),
                  Summary(frmTicker::EffectHorizontal, edge % 2, edge % 2, 1));
    }
    Open(u"2"_s).resize(400, 20);
    ASSERT_TRUE(TickUntil([&] { return ticker->Interval() == 5000; }));
    EXPECT_EQ(ticker->PrintPos(),
              QPointF(ticker->RestX(), std::floor((20 - ticker->TextSize().height()) / 2) - 1));
    Tick();
    EXPECT_EQ(Summary(ticker->CurrentEffect(), ticker->Interval()), Summary(frmTicker::EffectVertical, 50));
    ASSERT_TRUE(TickUntil([&] { return ticker->EntryText() == u"Next"_s; }));
}

// A fade takes a hundred steps of 30 ms in (red, ff), a 3 s hold and a hundred steps out (white,
// ffffff); the typewriter shows one more letter every tenth of a second, then the whole entry for
// 5 s. Rows: milliseconds advanced per step, then the effect setting (as the ticker reads it back)
// and after each step the text shown, its colour and the next step's delay.
TEST_F(TickerTest, FadeAndTypewriterStepThroughTheEntry) {
    const std::pair<QList<int>, QString> cases[] = {
        {{20, 99 * 30, 3000 + 99 * 30 - 1, 1, 29, 1},
         u"3|Abc fdfdff 30|Abc ff 3000|Abc fdfdff 30|Abc ffffff 30|Abc ffffff 30|Next fdfdff 30"_s},
        {{20, 100, 100, 100, 4999, 1},
         u"4|A_ ff 100|Ab_ ff 100|Abc_ ff 100|Abc ff 5000|Abc ff 5000|N_ ff 100"_s},
    };
    for (const auto& [steps, expected] : cases) {
        QStringList seen{QString::number(Open(expected.section(u'|', 0, 0)).CurrentEffect())};
        for (const int ms : steps) {
            fixture.clock.Advance(ms);
            seen << Summary(ticker->ShownText(), QString::number(ticker->PrintColor(), 16),
                            ticker->Interval());
        }
        EXPECT_EQ(seen.join(u'|'), expected);
    }
}

// It enters from the right edge, far from the centre: fast and shaded toward the fade colour. A
// click meanwhile opens the item view below the top bar: the item is marked read, rendered to the
// page and reported, and the view opens to the panel height (300 pixels when the saved one is too
// small) with the page and the focus. The entry slows down and rests at the centre in full colour,
// where the open view holds it. A second click slides the view shut, halving it and five pixels
// more per step, and saves its height; the entry leaves without resting again.
TEST_F(TickerTest, HorizontalTextSlowsAndRestsAtTheCentreWhereTheOpenViewHoldsIt) {
    fixture.settings.SaveSetting(frmTicker::kSection, u"PanelHeight"_s, u"15"_s);
    Open().resize(600, 20);
    Tick();
    EXPECT_EQ(Summary(ticker->EntryText(), ticker->PrintPos().x()), u"Abc 600"_s);
    Tick();
    const int entering = int(ticker->Interval());
    EXPECT_EQ(Summary(entering < 30, ticker->PrintColor()),
              Summary(1, frmTicker::BlendColor(kRed, kWhite, int(std::lround((entering - 20) * 3.5)))));
    const XmlNode first = bank->UnreadTodayList().front();
    QTest::mouseClick(ticker->picSkin(), Qt::LeftButton, {}, QPoint(300, 10));
    EXPECT_EQ(Summary(reported.join(u'|'), view->CurrentItem() == first, IsItemRead(first),
                      bank->UnreadTodayList().size(), ViewTop(), view->height(),
                      fixture.home.Read(u"profiles/Reader/tck_tmp.html"_s).contains("Body of Abc")),
              Summary(u"Abc"_s, 1, 1, 4, ticker->height(), 0, 1));
    // Approaching, each step waits longer the nearer the entry is to the rest.
    while (!ticker->HeldByView()) {
        const double x = ticker->PrintPos().x();
        Tick();
        if (x > ticker->RestX() + 2) {
            EXPECT_EQ(ticker->Interval(), quint32(std::lround(2000.0 / (x - ticker->RestX() + 4) + 20)))
                << "approaching at " << x;
        }
        ASSERT_LT(fixture.clock.ElapsedMs(), 120000);
    }
    // At the rest (within 2 pixels), in red, with the view open on the page and holding the focus.
    const QPointF frozen = ticker->PrintPos();
    EXPECT_EQ(Summary(std::abs(frozen.x() + 1 - ticker->RestX()) <= 2, ticker->Interval(),
                      ticker->PrintColor(), view->height(), view->webView().isVisible(),
                      view->focusWidget() == &view->webView(), view->webView().CurrentDocument() == pagePath),
              Summary(1, 500, kRed, 300, 1, 1, 1));
    // Tab through the bar and through the open view: every widget reached has a name.
    const FocusChain bar = FocusChain::Walk(*ticker, ticker->picSkin());
    const FocusChain panel = FocusChain::Walk(*view, &view->webView());
    EXPECT_EQ(bar.visited + panel.visited, (QList<QWidget*>{ticker->picSkin(), &view->webView()}));
    EXPECT_TRUE(bar.unnamed.isEmpty() && panel.unnamed.isEmpty()) << bar.Unnamed() << panel.Unnamed();

    // Fifty half-second ticks later it has not moved.
    fixture.clock.Advance(50 * 500);
    EXPECT_EQ(Summary(ticker->PrintPos().x(), ticker->EntryText()), Summary(frozen.x(), u"Abc"_s));
    QTest::mouseClick(ticker->picSkin(), Qt::LeftButton, {}, QPoint(300, 10));
    fixture.clock.Advance(20);
    EXPECT_EQ(Summary(view->height(), view->webView().isVisible(), view->CurrentItem().IsNull()),
              u"145 0 1"_s);
    Tick();
    EXPECT_EQ(Summary(view->isVisible(), ticker->HeldByView(), ticker->PrintPos().x() < frozen.x(),
                      fixture.settings.GetSetting(frmTicker::kSection, u"PanelHeight"_s, QString())),
              u"0 0 1 300"_s);
    ASSERT_TRUE(TickUntil([&] { return ticker->Interval() == 500 || ticker->EntryText() == u"Next"_s; }));
    EXPECT_EQ(ticker->EntryText(), u"Next"_s);
}

// Pause, play and link buttons (a function the ticker does not know changes nothing); a right click
// asks for the menu; the bar docks at the top of the screen at first, and a new edge is saved and
// docked. The view then opens at the screen's top, showing the page only at the saved panel height.
TEST_F(TickerTest, SkinButtonsMenuAndDocking) {
    fixture.settings.SaveSetting(frmTicker::kSection, u"PanelHeight"_s, u"180"_s);
    Open();
    Tick();
    ticker->SkinHandler(u"pause"_s);
    const QPointF at = ticker->PrintPos();
    fixture.clock.Advance(1000);
    ticker->SkinHandler(u"play"_s);
    ticker->SkinHandler(u"unknown"_s);
    ticker->SkinHandler(u"link"_s);
    EXPECT_EQ(Summary(ticker->PrintPos() == at, ticker->Running(), desktop.opened.join(u'|')),
              u"1 1 https://a.example/1"_s);

    QSignalSpy menu(ticker.data(), &frmTicker::MenuRequested);
    QTest::mouseClick(ticker->picSkin(), Qt::RightButton, {}, QPoint(30, 5));
    ASSERT_EQ(Summary(menu.count(), view->isVisible()), u"1 0"_s);
    EXPECT_EQ(menu.first().first().toPoint(), ticker->picSkin()->mapToGlobal(QPoint(30, 5)));

    const QRect screen = ticker->screen()->geometry();
    EXPECT_EQ(ticker->geometry(), QRect(screen.topLeft(), QSize(screen.width(), 20)));
    ticker->DockBar(3);
    EXPECT_EQ(std::pair(ticker->geometry(), fixture.settings.GetSetting(frmTicker::kSection, u"Edge"_s, {})),
              std::pair(QRect(screen.left(), screen.bottom() - 19, screen.width(), 20), u"3"_s));
    Tick();
    ticker->ShowItem();
    // Each 20 ms it grows by a fifth of what is left and five pixels more.
    QStringList heights;
    while (heights.size() < 20 && !view->webView().isVisible()) {
        fixture.clock.Advance(20);
        heights << QString::number(view->height());
    }
    EXPECT_EQ(Summary(ViewTop(), heights.join(u' ')), u"0 41 73 99 120 137 150 161 169 176 180"_s);
}

// 100 and 0 per cent are the fade's full colour and its end.
TEST(TickerBlendTest, BlendMovesEachByteFromTheTargetTowardTheBase) {
    const std::tuple<quint32, quint32, int, quint32> cases[] = {
        {0x0000FF, 0xFFFFFF, 150, 0x0000FF}, {0x0000FF, 0xFFFFFF, -5, 0xFFFFFF},
        {0x000000, 0xFFFFFF, 50, 0x808080},  {0xFFFFFF, 0x000000, 50, 0x7F7F7F},
        {0x102030, 0x302010, 25, 0x282018},
    };
    for (const auto& [base, target, percent, result] : cases) {
        EXPECT_EQ(frmTicker::BlendColor(base, target, percent), result)
            << base << " " << target << " " << percent;
    }
}

} // namespace
