// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "SimulatedShell.h"

#include "itembank/clsItemBank.h"
#include "itembank/modItemHandler.h"
#include "platform/XsltStylesheet.h"
#include "skin/SkinTestSupport.h"
#include "support/FakeHttpClient.h"
#include "support/QStringPrinter.h"
#include "support/RecordingDesktop.h"
#include "ticker/TickerItemView.h"
#include "ticker/frmTicker.h"
#include "ticker/frmTickerView.h"
#include "views/GuardedBrowser.h"
#include "views/ImageLoader.h"

#include <QFile>
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

class FakeItemView final : public TickerItemView {
public:
    bool IsVisible() const override { return visible; }
    void ShowItem(const XmlNode& item, const QRect& where) override {
        visible = true;
        shown << GetItemTitle(item);
        placement = where;
    }
    void HideItem() override { visible = false; }

    bool visible = false;
    QStringList shown;
    QRect placement;
};

// The Plain skin prints red text fading to white on a green bar; data/items.xml holds today's
// unread "Abc", "Next", a title of 80 letters, one of 81 and one with a description only.
class TickerTest : public ::testing::Test {
protected:
    TickerTest() {
        fixture.Load(u"Plain"_s);
        WriteItems(QStringLiteral(TAMSEL_TEST_DATA_DIR "/items.xml"));
    }

    void WriteItems(const QString& source) {
        QFile file(source);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        fixture.home.Write(u"profiles/Reader/items.xml"_s, file.readAll());
        bank = std::make_unique<clsItemBank>(fixture.clock, fixture.home.GetPaths());
        bank->init(u"Reader"_s);
    }

    frmTicker& Open(const QString& effect = u"1"_s) {
        fixture.settings.SaveSetting(frmTicker::kSection, u"Effect"_s, effect);
        ticker = new frmTicker(
            fixture.skin, fixture.settings, fixture.clock, desktop, [this] { return bank.get(); },
            [this](QWidget&) {
                auto created = std::make_unique<SimulatedShell>(shellDesktop);
                shell = created.get();
                return created;
            });
        ticker->SetItemView(&view);
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

    void TearDown() override { delete ticker.data(); }

    SkinFixture fixture;
    RecordingDesktop desktop;
    SimulatedDesktop shellDesktop;
    SimulatedShell* shell = nullptr;
    FakeItemView view;
    std::unique_ptr<clsItemBank> bank;
    QPointer<frmTicker> ticker;
};

TEST_F(TickerTest, UnknownOrEmptyEffectsScrollHorizontally) {
    QStringList effects;
    for (const QString& setting : {u"7"_s, QString(), u"x"_s, u"2"_s, u"3"_s, u"4"_s}) {
        effects << QString::number(Open(setting).CurrentEffect());
        delete ticker.data();
    }
    // Horizontal, vertical, fade and typewriter are 1 to 4.
    EXPECT_EQ(effects.join(u' '), u"1 1 1 2 3 4"_s);
}

// Entry texts follow the title up to 80 letters and fall back to the description; placeholders
// are expanded once. Stepping back from the first entry wraps to a list fetched anew; without
// items the ticker says so and a click opens nothing.
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
    ticker->SkinHandler(u"next"_s);
    Tick();
    EXPECT_EQ(ticker->EntryText(), u"Abc"_s);

    fixture.home.Write(u"empty.xml"_s, QByteArrayLiteral("<itembank/>"));
    const std::unique_ptr<clsItemBank> previous = std::move(bank);
    WriteItems(fixture.home.File(u"empty.xml"_s));
    ticker->ProfileChanged();
    Tick();
    EXPECT_EQ(Entry().section(u' ', 1), u"No Unread Items For Today Tamsel "_s);
    QTest::mouseClick(ticker->picSkin(), Qt::LeftButton, {}, QPoint(100, 10));
    EXPECT_TRUE(view.shown.isEmpty());
    bank.reset();
    EXPECT_EQ(ticker->DecodeText(u"{chl} {time}"_s), u"{chl} {time}"_s);
}

TEST_F(TickerTest, ALeftOrRightBarDrawsTheSkinButNoText) {
    for (const int edge : {0, 1, 2, 3}) {
        SCOPED_TRACE(edge);
        fixture.settings.SaveSetting(frmTicker::kSection, u"Edge"_s, QString::number(edge));
        Open();
        ticker->resize(edge % 2 == 0 ? QSize(20, 400) : QSize(400, 20));
        const bool horizontal = edge == 1 || edge == 3;
        ASSERT_TRUE(TickUntil([&] { return ticker->Interval() == 500; }));
        // Text printed, red text pixels, green bar pixels.
        EXPECT_EQ(Summary(ticker->Printed(), PixelsOf(qRgb(255, 0, 0)) > 0, PixelsOf(qRgb(0, 255, 0)) > 0),
                  Summary(horizontal, horizontal, 1));
        delete ticker.data();
    }
}

// It enters from the right edge, far from the centre: fast and shaded toward the fade colour; it
// slows down, rests once at the centre in full colour and leaves.
TEST_F(TickerTest, HorizontalTextSlowsRestsOnceAtTheCentreAndLeaves) {
    Open().resize(600, 20);
    Tick();
    EXPECT_EQ(Summary(ticker->EntryText(), ticker->PrintPos().x()), u"Abc 600"_s);
    Tick();
    const int entering = int(ticker->Interval());
    EXPECT_LT(entering, 30);
    EXPECT_EQ(ticker->PrintColor(),
              frmTicker::BlendColor(kRed, kWhite, int(std::lround((entering - 20) * 3.5))));
    quint32 last = ticker->Interval();
    int rests = 0;
    while (ticker->EntryText() == u"Abc"_s) {
        const double x = ticker->PrintPos().x();
        Tick();
        const quint32 interval = ticker->Interval();
        if (interval == 500) {
            ++rests;
            EXPECT_LE(std::abs(x - ticker->RestX()), 2);
            EXPECT_EQ(ticker->PrintColor(), kRed);
        } else if (x > ticker->RestX() + 2) {
            EXPECT_GE(interval, last) << "approaching at " << x;
            EXPECT_EQ(interval, quint32(std::lround(2000.0 / (x - ticker->RestX() + 4) + 20)));
        }
        last = interval;
        ASSERT_LT(fixture.clock.ElapsedMs(), 120000);
    }
    EXPECT_EQ(rests, 1);
    EXPECT_EQ(ticker->EntryText(), u"Next"_s);
}

TEST_F(TickerTest, VerticalTextRisesAndRestsFiveSecondsAtTheCentre) {
    Open(u"2"_s).resize(400, 20);
    ASSERT_TRUE(TickUntil([&] { return ticker->Interval() == 5000; }));
    EXPECT_EQ(ticker->PrintPos(),
              QPointF(ticker->RestX(), std::floor((20 - ticker->TextSize().height()) / 2) - 1));
    Tick();
    EXPECT_EQ(ticker->Interval(), 50u);
    ASSERT_TRUE(TickUntil([&] { return ticker->EntryText() == u"Next"_s; }));
}

// A hundred steps of 30 ms fade in, a 3 s hold, a hundred steps out.
TEST_F(TickerTest, AFadeTakesAHundredStepsInAHoldAndAHundredOut) {
    Open(u"3"_s);
    // Milliseconds to advance, then the colour of "Abc" and the next step's delay.
    const std::tuple<int, quint32, quint32> steps[] = {
        {20, frmTicker::BlendColor(kRed, kWhite, 1), 30},
        {99 * 30, kRed, 3000},
        {3000 + 99 * 30 - 1, frmTicker::BlendColor(kRed, kWhite, 1), 30},
        {1, kWhite, 30},
        {29, kWhite, 30},
    };
    for (const auto& [ms, colour, delay] : steps) {
        fixture.clock.Advance(ms);
        EXPECT_EQ(Summary(ticker->EntryText(), ticker->PrintColor(), ticker->Interval()),
                  Summary(u"Abc"_s, colour, delay))
            << ms;
    }
    fixture.clock.Advance(1);
    EXPECT_EQ(ticker->EntryText(), u"Next"_s);
}

TEST_F(TickerTest, TheTypewriterShowsOneMoreLetterEveryTenthOfASecond) {
    Open(u"4"_s);
    fixture.clock.Advance(20);
    QStringList shown;
    for (const int ms : {0, 100, 100, 100, 4999, 1}) {
        fixture.clock.Advance(ms);
        shown << Summary(ticker->ShownText(), ticker->Interval());
    }
    EXPECT_EQ(shown.join(u'|'), u"A_ 100|Ab_ 100|Abc_ 100|Abc 5000|Abc 5000|N_ 100"_s);
}

// A click opens the item view below a top bar; the ticker goes on until it rests at the centre
// and stays there while the view is open. A second click closes the view; the entry leaves.
TEST_F(TickerTest, TheOpenItemViewFreezesTheTickerAtTheNextRest) {
    Open().resize(600, 20);
    Tick();
    Tick();
    QTest::mouseClick(ticker->picSkin(), Qt::LeftButton, {}, QPoint(300, 10));
    ASSERT_EQ(view.shown, QStringList({u"Abc"_s}));
    EXPECT_EQ(view.placement.top(), ticker->screen()->geometry().top() + ticker->height());
    ASSERT_TRUE(TickUntil([&] { return ticker->HeldByView(); }));
    const QPointF frozen = ticker->PrintPos();
    EXPECT_LE(std::abs(frozen.x() + 1 - ticker->RestX()), 2);
    for (int i = 0; i < 50; ++i) {
        Tick();
    }
    EXPECT_EQ(ticker->PrintPos(), frozen);
    EXPECT_EQ(ticker->EntryText(), u"Abc"_s);
    QTest::mouseClick(ticker->picSkin(), Qt::LeftButton, {}, QPoint(300, 10));
    EXPECT_FALSE(view.visible);
    Tick();
    EXPECT_FALSE(ticker->HeldByView());
    EXPECT_LT(ticker->PrintPos().x(), frozen.x());
    ASSERT_TRUE(TickUntil([&] { return ticker->EntryText() == u"Next"_s; }));
}

// Pause, play and link buttons; a right click asks for the menu; the bar docks at the top through
// the shell at first, and a new edge is saved and docked (the view then opens above it).
TEST_F(TickerTest, SkinButtonsMenuAndDocking) {
    Open();
    Tick();
    ticker->SkinHandler(u"pause"_s);
    const QPointF at = ticker->PrintPos();
    fixture.clock.Advance(1000);
    EXPECT_EQ(ticker->PrintPos(), at);
    ticker->SkinHandler(u"play"_s);
    EXPECT_TRUE(ticker->Running());
    ticker->SkinHandler(u"link"_s);
    EXPECT_EQ(desktop.opened, QStringList({u"https://a.example/1"_s}));

    QSignalSpy menu(ticker.data(), &frmTicker::MenuRequested);
    QTest::mouseClick(ticker->picSkin(), Qt::RightButton, {}, QPoint(30, 5));
    ASSERT_EQ(menu.count(), 1);
    EXPECT_EQ(menu.first().first().toPoint(), ticker->picSkin()->mapToGlobal(QPoint(30, 5)));
    EXPECT_TRUE(view.shown.isEmpty());

    EXPECT_EQ(shell->window, QRect(0, 0, 1000, 20));
    ticker->DockBar(3);
    EXPECT_EQ(Summary(fixture.settings.GetSetting(frmTicker::kSection, u"Edge"_s, QString()),
                      SimulatedShell::Text(shell->reserved)),
              u"3 0,540 1000x20"_s);
    Tick();
    ticker->ShowItem();
    EXPECT_EQ(view.placement.top(), ticker->screen()->geometry().top());

    ticker->SkinHandler(u"unknown"_s);
    QSignalSpy closed(ticker.data(), &frmTicker::Closed);
    ticker->SkinHandler(u"close"_s);
    EXPECT_EQ(closed.count(), 1);
}

TEST(TickerBlendTest, BlendMovesEachByteFromTheTargetTowardTheBase) {
    const std::tuple<quint32, quint32, int, quint32> cases[] = {
        {0x0000FF, 0xFFFFFF, 100, 0x0000FF}, {0x0000FF, 0xFFFFFF, 0, 0xFFFFFF},
        {0x0000FF, 0xFFFFFF, 150, 0x0000FF}, {0x0000FF, 0xFFFFFF, -5, 0xFFFFFF},
        {0x000000, 0xFFFFFF, 50, 0x808080},  {0xFFFFFF, 0x000000, 50, 0x7F7F7F},
        {0x102030, 0x302010, 25, 0x282018},
    };
    for (const auto& [base, target, percent, result] : cases) {
        EXPECT_EQ(frmTicker::BlendColor(base, target, percent), result)
            << base << " " << target << " " << percent;
    }
}

// The item view in front of the ticker's skin and item bank.
class TickerViewTest : public TickerTest {
protected:
    std::unique_ptr<frmTickerView> OpenView() {
        return std::make_unique<frmTickerView>(
            fixture.skin, fixture.settings, fixture.clock, desktop, images, namespaceTransform,
            [this] { return pagePath; }, [this](const XmlNode& item) { reported << GetItemTitle(item); });
    }

    FakeHttpClient http;
    ImageLoader images{http};
    XsltStylesheet namespaceTransform =
        XsltStylesheet::Load(QStringLiteral(TAMSEL_BUILD_DATA_DIR "/tamselns.xsl"));
    QString pagePath = fixture.home.GetPaths().ProfileFolder(u"Reader"_s) + u"/tck_tmp.html"_s;
    QStringList reported;
};

// Without a saved height the view opens 300 pixels high; a link leaves it on the item.
TEST_F(TickerViewTest, ShowingAnItemMarksItReadAndSlidesOpenToThePanelHeight) {
    auto view = OpenView();
    const XmlNode item = bank->UnreadTodayList().front();
    view->ShowItem(item, QRect(100, 20, 600, 0));
    EXPECT_EQ(Summary(IsItemRead(item), bank->UnreadTodayList().size(), reported.join(u'|')), u"1 4 Abc"_s);
    QFile page(pagePath);
    ASSERT_TRUE(page.open(QIODevice::ReadOnly));
    EXPECT_TRUE(page.readAll().contains("Body of Abc"));

    int last = view->height();
    EXPECT_EQ(last, 0);
    for (int ticks = 0; view->height() < 300 && ticks < 100; ++ticks) {
        fixture.clock.Advance(20);
        EXPECT_FALSE(view->height() < 300 && view->webView().isVisible());
        EXPECT_GT(view->height(), last);
        last = view->height();
    }
    EXPECT_EQ(Summary(view->width(), view->height(), view->webView().isVisible()), u"600 300 1"_s);

    EXPECT_FALSE(view->webView().BeforeNavigate(QUrl(QStringLiteral("https://b.example/more"))));
    EXPECT_EQ(desktop.opened, QStringList({QStringLiteral("https://b.example/more")}));
    EXPECT_EQ(view->CurrentItem(), item);
    EXPECT_EQ(view->webView().CurrentDocument(), pagePath);
}

TEST_F(TickerViewTest, HidingSlidesShutAndKeepsThePanelHeight) {
    fixture.settings.SaveSetting(QStringLiteral("Ticker"), QStringLiteral("PanelHeight"),
                                 QStringLiteral("180"));
    auto view = OpenView();
    view->ShowItem(bank->UnreadTodayList().front(), QRect(0, 20, 400, 0));
    fixture.clock.Advance(2000);
    EXPECT_EQ(view->height(), 180);
    view->HideItem();
    EXPECT_TRUE(view->CurrentItem().IsNull());
    fixture.clock.Advance(20);
    EXPECT_EQ(Summary(view->height(), view->webView().isVisible()), Summary(180 - (90 + 5), 0));
    fixture.clock.Advance(2000);
    EXPECT_FALSE(view->IsVisible());
    EXPECT_EQ(fixture.settings.GetSetting(QStringLiteral("Ticker"), QStringLiteral("PanelHeight"), QString()),
              QStringLiteral("180"));
}

} // namespace
