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

const QString kProfile = QStringLiteral("Reader");

class TickerViewTest : public ::testing::Test {
protected:
    TickerViewTest()
        : images(http),
          namespaceTransform(XsltStylesheet::Load(QStringLiteral(TAMSEL_BUILD_DATA_DIR "/tamselns.xsl"))) {
        fixture.Choose(QStringLiteral("Default"));
        fixture.skin.LoadSkin();
        const QString today = FormatItemDate(fixture.clock.Now().date());
        QString xml = QStringLiteral("<itembank>");
        for (const QString& title : {QStringLiteral("First story"), QStringLiteral("Second story")}) {
            xml += QStringLiteral("<item channel=\"http://a.example/feed\" date=\"%1\" time=\"08:00:00\">"
                                  "<title>%2</title><description>Body of %2</description>"
                                  "<link>https://a.example/story</link><read>false</read><flag>false</flag>"
                                  "<delete>false</delete><channeltitle>Channel A</channeltitle></item>")
                       .arg(today, title);
        }
        xml += QStringLiteral("</itembank>");
        fixture.home.Write(QStringLiteral("profiles/") + kProfile + QStringLiteral("/items.xml"),
                           xml.toUtf8());
        bank = std::make_unique<clsItemBank>(fixture.clock, fixture.home.GetPaths());
        bank->init(kProfile);
        pagePath = fixture.home.GetPaths().ProfileFolder(kProfile) + QStringLiteral("/tck_tmp.html");
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
    std::unique_ptr<clsItemBank> bank;
    QString pagePath;
    QStringList reported;
};

TEST_F(TickerViewTest, ShowingAnItemMarksItReadAndSlidesOpenToThePanelHeight) {
    auto view = Open();
    const XmlNode item = bank->UnreadTodayList().front();
    view->ShowItem(item, QRect(100, 20, 600, 0));
    EXPECT_TRUE(view->IsVisible());
    EXPECT_TRUE(IsItemRead(item));
    EXPECT_EQ(bank->UnreadTodayList().size(), 1u);
    EXPECT_EQ(reported, QStringList({QStringLiteral("First story")}));
    EXPECT_EQ(view->webView().CurrentDocument(), pagePath);
    QFile page(pagePath);
    ASSERT_TRUE(page.open(QIODevice::ReadOnly));
    EXPECT_TRUE(page.readAll().contains("Body of First story"));

    EXPECT_EQ(view->height(), 0);
    int ticks = 0;
    int last = view->height();
    while (view->height() < 300 && ticks < 100) {
        fixture.clock.Advance(20);
        EXPECT_FALSE(view->height() < 300 && view->webView().isVisible());
        EXPECT_GT(view->height(), last);
        last = view->height();
        ++ticks;
    }
    EXPECT_EQ(view->height(), 300);
    EXPECT_TRUE(view->webView().isVisible());
    EXPECT_EQ(view->width(), 600);
}

TEST_F(TickerViewTest, HidingSlidesShutAndKeepsThePanelHeight) {
    fixture.settings.SaveSetting(QStringLiteral("Ticker"), QStringLiteral("PanelHeight"),
                                 QStringLiteral("180"));
    auto view = Open();
    view->ShowItem(bank->UnreadTodayList().front(), QRect(0, 20, 400, 0));
    fixture.clock.Advance(2000);
    EXPECT_EQ(view->height(), 180);
    view->HideItem();
    EXPECT_TRUE(view->Closing());
    EXPECT_TRUE(view->CurrentItem().IsNull());
    fixture.clock.Advance(20);
    EXPECT_EQ(view->height(), 180 - (90 + 5));
    EXPECT_FALSE(view->webView().isVisible());
    fixture.clock.Advance(2000);
    EXPECT_FALSE(view->IsVisible());
    EXPECT_EQ(fixture.settings.GetSetting(QStringLiteral("Ticker"), QStringLiteral("PanelHeight"), QString()),
              QStringLiteral("180"));
}

TEST_F(TickerViewTest, ALinkOpensInTheDefaultBrowserAndTheItemStays) {
    auto view = Open();
    const XmlNode item = bank->UnreadTodayList().front();
    view->ShowItem(item, QRect(0, 20, 400, 0));
    fixture.clock.Advance(2000);
    EXPECT_FALSE(view->webView().BeforeNavigate(QUrl(QStringLiteral("https://b.example/more"))));
    EXPECT_EQ(desktop.opened, QStringList({QStringLiteral("https://b.example/more")}));
    EXPECT_EQ(view->CurrentItem(), item);
    EXPECT_TRUE(view->IsVisible());
    EXPECT_EQ(view->webView().CurrentDocument(), pagePath);
}

} // namespace
