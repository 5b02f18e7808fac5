// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "SimulatedShell.h"
#include "TickerItems.h"

#include "itembank/clsItemBank.h"
#include "itembank/modItemHandler.h"
#include "skin/SkinTestSupport.h"
#include "support/QStringPrinter.h"
#include "support/RecordingDesktop.h"
#include "ticker/TickerItemView.h"
#include "ticker/frmTicker.h"

#include <QPointer>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

#include <memory>

namespace {

const QString kSection = QStringLiteral("Ticker");
// Red text fading to white on a green bar; nothing else is drawn.
const QString kPlainSkin = QStringLiteral("definefont 2\nface DejaVu Sans\nsize 9\ncolor &h0000FF\n"
                                          "tickerfont 2\ntickerfadecolor &hFFFFFF\n"
                                          "defineframe ticker\nframecolor &h00FF00\n");
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

class TickerTest : public ::testing::Test {
protected:
    TickerTest() { fixture.Load(QStringLiteral("Plain"), kPlainSkin); }

    void WriteItems(const QList<TickerItem>& items) {
        fixture.home.Write(QStringLiteral("profiles/Reader/items.xml"),
                           ItemBankOf(items, fixture.clock.Now().date()));
        bank = std::make_unique<clsItemBank>(fixture.clock, fixture.home.GetPaths());
        bank->init(QStringLiteral("Reader"));
    }

    frmTicker& Open() {
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

    int PixelsOf(QRgb colour) {
        const QImage& image = ticker->picSkin()->Image();
        int count = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                count += image.pixel(x, y) == colour ? 1 : 0;
            }
        }
        return count;
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
    const std::pair<QString, int> cases[] = {
        {QStringLiteral("7"), frmTicker::EffectHorizontal}, {QString(), frmTicker::EffectHorizontal},
        {QStringLiteral("x"), frmTicker::EffectHorizontal}, {QStringLiteral("2"), frmTicker::EffectVertical},
        {QStringLiteral("3"), frmTicker::EffectFade},       {QStringLiteral("4"), frmTicker::EffectType},
    };
    WriteItems({});
    for (const auto& [setting, effect] : cases) {
        SCOPED_TRACE(setting.toStdString());
        fixture.settings.SaveSetting(kSection, QStringLiteral("Effect"), setting);
        EXPECT_EQ(Open().CurrentEffect(), effect);
        delete ticker.data();
    }
}

TEST_F(TickerTest, EntryTextsFollowTheTitleLengthAndFallBackToTheDescription) {
    const QString eighty(80, u'a');
    WriteItems({{eighty}, {QString(80, u'b') + u'c'}, {QString(), QStringLiteral("only a description")}});
    Open();
    const QStringList expected = {eighty, QString(80, u'b') + QStringLiteral("..."),
                                  QStringLiteral("only a description")};
    for (int i = 0; i < expected.size(); ++i) {
        SCOPED_TRACE(i);
        ticker->SkinHandler(QStringLiteral("next"));
        Tick();
        EXPECT_EQ(ticker->Index(), i);
        EXPECT_EQ(ticker->EntryText(), expected.at(i));
        EXPECT_EQ(ticker->EntrySource(), QStringLiteral("Channel A"));
        EXPECT_EQ(ticker->EntryTime(), QStringLiteral("08:15:00"));
    }
}

TEST_F(TickerTest, WithoutItemsTheTickerSaysSoAndHasNothingToShow) {
    WriteItems({});
    Open();
    Tick();
    EXPECT_EQ(ticker->EntryText(), QStringLiteral("No Unread Items For Today"));
    EXPECT_EQ(ticker->EntrySource(), QStringLiteral("Tamsel"));
    EXPECT_TRUE(ticker->EntryTime().isEmpty());
    QTest::mouseClick(ticker->picSkin(), Qt::LeftButton, {}, QPoint(100, 10));
    EXPECT_TRUE(view.shown.isEmpty());
}

TEST_F(TickerTest, ALeftOrRightBarDrawsTheSkinButNoText) {
    WriteItems({{QStringLiteral("WWWWWWWW")}});
    for (const int edge : {0, 1, 2, 3}) {
        SCOPED_TRACE(edge);
        fixture.settings.SaveSetting(kSection, QStringLiteral("Edge"), QString::number(edge));
        Open();
        ticker->resize(edge % 2 == 0 ? QSize(20, 400) : QSize(400, 20));
        const bool horizontal = edge == 1 || edge == 3;
        ASSERT_TRUE(TickUntil([&] { return ticker->Interval() == 500; }));
        EXPECT_EQ(ticker->Printed(), horizontal);
        EXPECT_EQ(PixelsOf(qRgb(255, 0, 0)) > 0, horizontal);
        EXPECT_GT(PixelsOf(qRgb(0, 255, 0)), 0);
        delete ticker.data();
    }
}

TEST_F(TickerTest, HorizontalTextSlowsRestsOnceAtTheCentreAndLeaves) {
    WriteItems({{QStringLiteral("First")}, {QStringLiteral("Second")}});
    Open();
    ticker->resize(600, 20);
    Tick();
    EXPECT_EQ(ticker->EntryText(), QStringLiteral("First"));
    // It enters from the right edge, far from the centre: fast and shaded toward the fade colour.
    EXPECT_EQ(ticker->PrintPos().x(), 600);
    Tick();
    const int entering = int(ticker->Interval());
    EXPECT_LT(entering, 30);
    EXPECT_EQ(ticker->PrintColor(),
              frmTicker::BlendColor(kRed, kWhite, int(std::lround((entering - 20) * 3.5))));
    quint32 last = ticker->Interval();
    int rests = 0;
    while (ticker->EntryText() == QStringLiteral("First")) {
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
    EXPECT_EQ(ticker->EntryText(), QStringLiteral("Second"));
}

TEST_F(TickerTest, VerticalTextRisesAndRestsFiveSecondsAtTheCentre) {
    fixture.settings.SaveSetting(kSection, QStringLiteral("Effect"), QStringLiteral("2"));
    WriteItems({{QStringLiteral("Up")}, {QStringLiteral("Next")}});
    Open();
    ticker->resize(400, 20);
    ASSERT_TRUE(TickUntil([&] { return ticker->Interval() == 5000; }));
    const double centred = std::floor((20 - ticker->TextSize().height()) / 2);
    EXPECT_EQ(ticker->PrintPos().y(), centred - 1);
    EXPECT_EQ(ticker->PrintPos().x(), ticker->RestX());
    Tick();
    EXPECT_EQ(ticker->Interval(), 50u);
    ASSERT_TRUE(TickUntil([&] { return ticker->EntryText() == QStringLiteral("Next"); }));
}

TEST_F(TickerTest, AFadeTakesAHundredStepsInAHoldAndAHundredOut) {
    fixture.settings.SaveSetting(kSection, QStringLiteral("Effect"), QStringLiteral("3"));
    WriteItems({{QStringLiteral("One")}, {QStringLiteral("Two")}});
    Open();
    fixture.clock.Advance(20);
    EXPECT_EQ(ticker->EntryText(), QStringLiteral("One"));
    EXPECT_EQ(ticker->PrintColor(), frmTicker::BlendColor(kRed, kWhite, 1));
    // The hundredth step in, 99 steps of 30 ms later: full colour, and the 3 s hold begins.
    fixture.clock.Advance(99 * 30);
    EXPECT_EQ(ticker->PrintColor(), kRed);
    EXPECT_EQ(ticker->Interval(), 3000u);
    fixture.clock.Advance(3000 + 99 * 30 - 1);
    EXPECT_EQ(ticker->EntryText(), QStringLiteral("One"));
    EXPECT_EQ(ticker->PrintColor(), frmTicker::BlendColor(kRed, kWhite, 1));
    fixture.clock.Advance(1);
    EXPECT_EQ(ticker->PrintColor(), kWhite);
    fixture.clock.Advance(29);
    EXPECT_EQ(ticker->EntryText(), QStringLiteral("One"));
    fixture.clock.Advance(1);
    EXPECT_EQ(ticker->EntryText(), QStringLiteral("Two"));
}

TEST_F(TickerTest, TheTypewriterShowsOneMoreLetterEveryTenthOfASecond) {
    fixture.settings.SaveSetting(kSection, QStringLiteral("Effect"), QStringLiteral("4"));
    WriteItems({{QStringLiteral("Abc")}, {QStringLiteral("Next")}});
    Open();
    fixture.clock.Advance(20);
    for (const char* text : {"A_", "Ab_", "Abc_"}) {
        EXPECT_EQ(ticker->ShownText(), QString::fromUtf8(text));
        EXPECT_EQ(ticker->Interval(), 100u);
        fixture.clock.Advance(100);
    }
    EXPECT_EQ(ticker->ShownText(), QStringLiteral("Abc"));
    EXPECT_EQ(ticker->Interval(), 5000u);
    fixture.clock.Advance(4999);
    EXPECT_EQ(ticker->EntryText(), QStringLiteral("Abc"));
    fixture.clock.Advance(1);
    EXPECT_EQ(ticker->EntryText(), QStringLiteral("Next"));
    EXPECT_EQ(ticker->ShownText(), QStringLiteral("N_"));
}

TEST_F(TickerTest, TheOpenItemViewFreezesTheTickerAtTheNextRest) {
    WriteItems({{QStringLiteral("Held")}, {QStringLiteral("Later")}});
    Open();
    ticker->resize(600, 20);
    Tick();
    Tick();
    QTest::mouseClick(ticker->picSkin(), Qt::LeftButton, {}, QPoint(300, 10));
    ASSERT_EQ(view.shown, QStringList({QStringLiteral("Held")}));
    EXPECT_EQ(view.placement.top(), ticker->screen()->geometry().top() + ticker->height())
        << "below a top bar";
    // It still moves until it rests at the centre, then stays there.
    ASSERT_TRUE(TickUntil([&] { return ticker->HeldByView(); }));
    const QPointF frozen = ticker->PrintPos();
    EXPECT_LE(std::abs(frozen.x() + 1 - ticker->RestX()), 2);
    for (int i = 0; i < 50; ++i) {
        Tick();
    }
    EXPECT_EQ(ticker->PrintPos(), frozen);
    EXPECT_EQ(ticker->EntryText(), QStringLiteral("Held"));
    // A second click closes the view; the entry goes on and leaves.
    QTest::mouseClick(ticker->picSkin(), Qt::LeftButton, {}, QPoint(300, 10));
    EXPECT_FALSE(view.visible);
    Tick();
    EXPECT_FALSE(ticker->HeldByView());
    EXPECT_LT(ticker->PrintPos().x(), frozen.x());
    ASSERT_TRUE(TickUntil([&] { return ticker->EntryText() == QStringLiteral("Later"); }));
}

TEST_F(TickerTest, PlaceholdersAreExpandedOnceAndOnlyWithAProfile) {
    WriteItems({{QStringLiteral("Hours")}});
    fixture.clock.SetNow(QDateTime(fixture.clock.Now().date(), QTime(11, 1)));
    Open();
    Tick();
    EXPECT_EQ(ticker->DecodeText(QStringLiteral("{chl} and {chl} at {time}, {hrs} h")),
              QStringLiteral("Channel A and {chl} at 08:15:00, 3 h"));
    bank.reset();
    EXPECT_EQ(ticker->DecodeText(QStringLiteral("{chl} {time}")), QStringLiteral("{chl} {time}"));
}

TEST_F(TickerTest, SteppingBackFromTheFirstEntryWrapsToAFreshList) {
    WriteItems({{QStringLiteral("A")}, {QStringLiteral("B")}, {QStringLiteral("C")}});
    Open();
    Tick();
    ASSERT_EQ(ticker->EntryText(), QStringLiteral("A"));
    // C is read meanwhile: the list fetched anew no longer holds it.
    SetItemRead(bank->UnreadTodayList().back(), true);
    ticker->SkinHandler(QStringLiteral("prev"));
    Tick();
    EXPECT_EQ(ticker->EntryText(), QStringLiteral("B"));
    EXPECT_EQ(ticker->Index(), 1);
    ticker->SkinHandler(QStringLiteral("next"));
    Tick();
    EXPECT_EQ(ticker->EntryText(), QStringLiteral("A"));
}

TEST_F(TickerTest, SkinButtonsMenuAndDocking) {
    WriteItems({{QStringLiteral("Linked")}});
    Open();
    Tick();
    ticker->SkinHandler(QStringLiteral("pause"));
    const QPointF at = ticker->PrintPos();
    fixture.clock.Advance(1000);
    EXPECT_EQ(ticker->PrintPos(), at);
    ticker->SkinHandler(QStringLiteral("play"));
    EXPECT_TRUE(ticker->Running());
    ticker->SkinHandler(QStringLiteral("link"));
    EXPECT_EQ(desktop.opened, QStringList({QStringLiteral("https://a.example/1")}));

    QSignalSpy menu(ticker.data(), &frmTicker::MenuRequested);
    QTest::mouseClick(ticker->picSkin(), Qt::RightButton, {}, QPoint(30, 5));
    ASSERT_EQ(menu.count(), 1);
    EXPECT_EQ(menu.first().first().toPoint(), ticker->picSkin()->mapToGlobal(QPoint(30, 5)));
    EXPECT_TRUE(view.shown.isEmpty());

    // Docked at the top through the shell at first; a new edge is saved and docked.
    EXPECT_EQ(shell->window, QRect(0, 0, 1000, 20));
    ticker->DockBar(3);
    EXPECT_EQ(fixture.settings.GetSetting(kSection, QStringLiteral("Edge"), QString()), QStringLiteral("3"));
    EXPECT_EQ(shell->reserved, QRect(0, 540, 1000, 20));
    Tick();
    ticker->ShowItem();
    EXPECT_EQ(view.placement.top(), ticker->screen()->geometry().top()) << "above a bottom bar";

    ticker->SkinHandler(QStringLiteral("unknown"));
    QSignalSpy closed(ticker.data(), &frmTicker::Closed);
    ticker->SkinHandler(QStringLiteral("close"));
    EXPECT_EQ(closed.count(), 1);
}

TEST(TickerBlendTest, BlendMovesEachByteFromTheTargetTowardTheBase) {
    struct Case {
        quint32 base;
        quint32 target;
        int percent;
        quint32 result;
    };
    const Case cases[] = {
        {0x0000FF, 0xFFFFFF, 100, 0x0000FF}, {0x0000FF, 0xFFFFFF, 0, 0xFFFFFF},
        {0x0000FF, 0xFFFFFF, 150, 0x0000FF}, {0x0000FF, 0xFFFFFF, -5, 0xFFFFFF},
        {0x000000, 0xFFFFFF, 50, 0x808080},  {0xFFFFFF, 0x000000, 50, 0x7F7F7F},
        {0x102030, 0x302010, 25, 0x282018},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.percent);
        EXPECT_EQ(frmTicker::BlendColor(c.base, c.target, c.percent), c.result);
    }
}

} // namespace
