// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ticker/frmTickerView.h"
#include "itembank/clsItemBank.h"
#include "itembank/modItemHandler.h"
#include "platform/XsltStylesheet.h"
#include "skin/SkinTestSupport.h"
#include "support/FakeHttpClient.h"
#include "support/QStringPrinter.h"
#include "support/RecordingDesktop.h"
#include "views/GuardedBrowser.h"
#include "views/ImageLoader.h"

#include <QFile>

#include <gtest/gtest.h>

#include <memory>

namespace {

class TickerViewTest : public ::testing::Test {
protected:
    TickerViewTest()
        : images(http),
          namespaceTransform(XsltStylesheet::Load(QStringLiteral(TAMSEL_BUILD_DATA_DIR "/tamselns.xsl"))) {
        fixture.Choose(QStringLiteral("Default"));
        fixture.skin.LoadSkin();
        QFile items(QStringLiteral(TAMSEL_TEST_DATA_DIR "/items.xml"));
        EXPECT_TRUE(items.open(QIODevice::ReadOnly));
        fixture.home.Write(QStringLiteral("profiles/Reader/items.xml"), items.readAll());
        bank.init(QStringLiteral("Reader"));
    }

    std::unique_ptr<frmTickerView> Open() {
        return std::make_unique<frmTickerView>(
            fixture.skin, fixture.settings, fixture.clock, desktop, images, namespaceTransform,
            [this] { return pagePath; }, [this](const XmlNode& item) { reported << GetItemTitle(item); });
    }

    SkinFixture fixture;
    RecordingDesktop desktop;
    FakeHttpClient http;
    ImageLoader images;
    XsltStylesheet namespaceTransform;
    clsItemBank bank{fixture.clock, fixture.home.GetPaths()};
    QString pagePath =
        fixture.home.GetPaths().ProfileFolder(QStringLiteral("Reader")) + QStringLiteral("/tck_tmp.html");
    QStringList reported;
};

// Without a saved height the view opens 300 pixels high; a link leaves it on the item.
TEST_F(TickerViewTest, ShowingAnItemMarksItReadAndSlidesOpenToThePanelHeight) {
    auto view = Open();
    const XmlNode item = bank.UnreadTodayList().front();
    view->ShowItem(item, QRect(100, 20, 600, 0));
    EXPECT_TRUE(IsItemRead(item));
    EXPECT_EQ(bank.UnreadTodayList().size(), 4u);
    EXPECT_EQ(reported, QStringList({QStringLiteral("Abc")}));
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
    EXPECT_EQ(view->size(), QSize(600, 300));
    EXPECT_TRUE(view->webView().isVisible());

    EXPECT_FALSE(view->webView().BeforeNavigate(QUrl(QStringLiteral("https://b.example/more"))));
    EXPECT_EQ(desktop.opened, QStringList({QStringLiteral("https://b.example/more")}));
    EXPECT_EQ(view->CurrentItem(), item);
    EXPECT_EQ(view->webView().CurrentDocument(), pagePath);
}

TEST_F(TickerViewTest, HidingSlidesShutAndKeepsThePanelHeight) {
    fixture.settings.SaveSetting(QStringLiteral("Ticker"), QStringLiteral("PanelHeight"),
                                 QStringLiteral("180"));
    auto view = Open();
    view->ShowItem(bank.UnreadTodayList().front(), QRect(0, 20, 400, 0));
    fixture.clock.Advance(2000);
    EXPECT_EQ(view->height(), 180);
    view->HideItem();
    EXPECT_TRUE(view->CurrentItem().IsNull());
    fixture.clock.Advance(20);
    EXPECT_EQ(view->height(), 180 - (90 + 5));
    EXPECT_FALSE(view->webView().isVisible());
    fixture.clock.Advance(2000);
    EXPECT_FALSE(view->IsVisible());
    EXPECT_EQ(fixture.settings.GetSetting(QStringLiteral("Ticker"), QStringLiteral("PanelHeight"), QString()),
              QStringLiteral("180"));
}

} // namespace
