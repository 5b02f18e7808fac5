// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "SkinTestSupport.h"

#include "skin/frmSkinEntity.h"

#include <QLabel>
#include <QSignalSpy>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

class SkinLoaderTest : public ::testing::Test, public SkinFixture {};

// An empty skin name loads no entities and still updates the icons and the stylesheet; tree icon
// keywords then replace the images of their keys.
TEST_F(SkinLoaderTest, AnEmptySkinNameLoadsTheDefaultIconsThatTreeIconKeywordsReplace) {
    QSignalSpy loaded(&skin, &frmTamselSkin::SkinLoaded);
    skin.LoadSkin();
    EXPECT_TRUE(host.messages.isEmpty());
    EXPECT_EQ(loaded.count(), 1);
    EXPECT_EQ(imageList.added, frmTamselSkin::TreeIconKeys() + QStringList{u"last"_s});
    EXPECT_EQ(skin.GetXSLFilename(), home.GetPaths().ResourceFile(u"rss.xsl"_s));
    for (int number = 1; number <= frmTamselSkin::kEntitySlots; ++number) {
        EXPECT_EQ(skin.Entity(number), nullptr);
    }
    for (int icon = 0; icon < frmTamselSkin::kListIcons; ++icon) {
        EXPECT_EQ(skin.GetListIcon(frmTamselSkin::ListIcon(icon)).Size(), QSize(16, 16)) << icon;
    }
    imageList.added.clear();
    Load(u"Icons"_s);
    ASSERT_TRUE(host.messages.isEmpty()) << host.messages.join(u'|').toStdString();
    EXPECT_EQ(imageList.removed, (QStringList{u"unread"_s, u"expanded"_s, u"collapse"_s}));
    EXPECT_EQ(imageList.added, (QStringList{u"unread"_s, u"collapse"_s, u"expanded"_s, u"last"_s}));
    EXPECT_EQ(PictureColour(imageList.images.value(u"unread"_s)), QColor(Qt::red));
    EXPECT_EQ(PictureColour(imageList.images.value(u"expanded"_s)), QColor(Qt::green));
    EXPECT_EQ(PictureColour(imageList.images.value(u"collapse"_s)), QColor(Qt::green));
    EXPECT_EQ(PictureColour(skin.GetListIcon(frmTamselSkin::ListIcon::Link)), QColor(Qt::blue));
}

// Keywords ignore case, arguments keep it; numbers are read as far as they go (&h is hexadecimal)
// and rounded half to even; booleans are true only for "true"; unknown keywords, comments and
// keyword-only lines are skipped (data/skins/All). A later load starts again from the defaults.
TEST_F(SkinLoaderTest, KeywordsSetTheirValuesAndTheNextLoadStartsFromTheDefaults) {
    Load(u"All"_s);
    ASSERT_TRUE(host.messages.isEmpty()) << host.messages.join(u'|').toStdString();
    const frmSkinEntity* entity = skin.Entity(36);
    ASSERT_NE(entity, nullptr);
    const std::pair<const char*, std::pair<double, double>> values[] = {
        {"font name", {skin.FontSlot(3)->Name == u"Nimbus Sans", 1}},
        {"font size", {skin.FontSlot(3)->Size, 11.5}},
        {"bold", {skin.FontSlot(3)->Bold, 1}},
        {"italic", {skin.FontSlot(3)->Italic, 0}},
        {"strike", {skin.FontSlot(4)->StrikeThrough, 1}},
        {"hex colour", {skin.GetFontColor(3), 0xFF0000}},
        {"decimal colour", {skin.GetFontColor(4), 0xFF0000}},
        {"system colour", {skin.FontSlot(4)->ShadowColor, 0x80000005}},
        {"last font slot", {skin.FontSlot(20)->Name == u"Last", 1}},
        {"entity function", {entity->sFunction == u"Close", 1}},
        {"entity window", {entity->iWindow, frmTamselSkin::KindTicker}},
        {"entity hide", {entity->bHide, 1}},
        {"entity center", {entity->bCenter, 1}},
        {"entity top", {entity->iTop, 2.5}},
        {"entity left", {entity->iLeft, -7.25}},
        {"caption font", {entity->lbl.Font.pointSizeF(), 11.5}},
        {"caption colour", {entity->lbl.ForeColor, 0xFF0000}},
        {"hover font", {entity->lblMM.Font.pointSizeF(), 7}},
        {"hover takes no colour", {entity->lblMM.ForeColor, 0}},
        {"frame size from picture", {skin.FrameNSize(1), 12}},
        {"frame size without picture", {skin.FrameESize(1), 7}},
        {"frame size rounded to even", {skin.FrameSSize(1), 10}},
        {"frame colour", {skin.FrameColor(1), 0x123456}},
        {"unknown frame is main", {skin.FrameWSize(0), 8}},
        {"no frame of kind 7", {skin.FrameNSize(7), 0}},
        {"filter top", {skin.FilterTop(), 31}},
        {"filter left", {skin.FilterLeft(), -12}},
        {"filter width", {skin.FilterWidth(), 140}},
        {"search left", {skin.SearchLeft(), 32}},
        {"search width", {skin.SearchWidth(), 202}},
        {"grid font", {skin.GridFont(), 20}},
        {"ticker font", {skin.TickerFont(), 0}},
        {"tree colour", {skin.TreeColor(), 0x00FF00}},
        {"grid colour", {skin.GridColorEven(), 4}},
        {"window kind names", {frmTamselSkin::KindOf(u"TickerItem"_s), 4}},
        {"unknown window kind", {frmTamselSkin::KindOf(u"viewer"_s), 0}},
        {"entity 3", {skin.Entity(3) != nullptr, 1}},
        {"ticker frame picture", {skin.FrameNSize(frmTamselSkin::KindTicker), 4}},
        {"ticker frame colour", {skin.FrameColor(frmTamselSkin::KindTicker), 7}},
        {"odd grid colour", {skin.GridColorOdd(), 1}},
    };
    for (const auto& [name, value] : values) {
        EXPECT_DOUBLE_EQ(value.first, value.second) << name;
    }
    // Fonts reach widgets and skin surfaces; the colour only when asked, unknown slots not at all.
    QLabel label;
    skin.SetFont(&label, 4, false);
    EXPECT_DOUBLE_EQ(label.font().pointSizeF(), 7);
    EXPECT_TRUE(label.font().italic() && label.font().underline() && label.font().strikeOut());
    EXPECT_NE(label.palette().color(QPalette::WindowText), QColor(0, 0, 255));
    skin.SetFont(&label, 3, true);
    EXPECT_EQ(label.font().family(), u"Nimbus Sans"_s);
    EXPECT_EQ(label.palette().color(QPalette::WindowText), QColor(0, 0, 255));
    skin.SetFont(nullptr, 3, true);
    skin.SetFont(&label, 40, true);
    EXPECT_DOUBLE_EQ(label.font().pointSizeF(), 11.5);
    TestWindow window;
    skin.SetFont(window.picSkin(), 3, true);
    EXPECT_EQ(window.picSkin()->DrawFont().family(), u"Nimbus Sans"_s);
    EXPECT_EQ(window.picSkin()->ForeColor(), QColor(0, 0, 255));

    Load(u"Default"_s, u"; nothing but a comment\n"_s);
    // User skins come before shipped ones of the same name.
    EXPECT_EQ(skin.SkinFolder(), home.File(u"skins/Default"_s));
    const std::pair<const char*, std::pair<double, double>> defaults[] = {
        {"tree colour", {skin.TreeColor(), 0xFFB29D}},
        {"grid colour", {skin.GridColorOdd(), 0xFFCCCC}},
        {"font slot", {skin.FontSlot(8) == nullptr, 1}},
        {"entity", {skin.Entity(3) == nullptr, 1}},
        {"frame colour", {skin.FrameColor(frmTamselSkin::KindTicker), 0xFF0000}},
        {"frame size", {skin.FrameNSize(frmTamselSkin::KindTicker), 0}},
        {"filter top", {skin.FilterTop(), 5}},
        {"ticker font", {skin.TickerFont(), 1}},
        {"tree icon", {skin.TreeIcon(u"read"_s).Size() == QSize(16, 16), 1}},
        {"default font", {skin.GetFont(10).pointSizeF(), 8}},
    };
    for (const auto& [name, value] : defaults) {
        EXPECT_DOUBLE_EQ(value.first, value.second) << name;
    }
    EXPECT_EQ(skin.GetFont(10).family(), u"Arial"_s);
}

// The load stops at the failing line, which the message names: later lines, the icon list and
// the stylesheet step do not run. A missing skin, or one outside the skin folder, gives the
// short message.
TEST_F(SkinLoaderTest, AFailingLineStopsTheLoadAndIsNamed) {
    QSignalSpy loaded(&skin, &frmTamselSkin::SkinLoaded);
    for (const char* text :
         {"defineentity 0", "defineentity 37", "definefont 0", "definefont 22", "  image p.png  ",
          "text Hello", "function close", "defineentity 1\nimage missing.png",
          "defineentity 1\nimage ../Bad/p.png", "defineframe main\nframen nothing.png", "framensize 40000",
          "defineentity 2\nfont 9", "gridfont 22", "iconunread none.png"}) {
        SCOPED_TRACE(text);
        host.messages.clear();
        Load(u"Bad"_s, QString::fromUtf8(text) + u"\ntreecolor 5\n"_s);
        ASSERT_EQ(host.messages.size(), 1);
        const QString line = QString::fromUtf8(text).section(u'\n', -1).trimmed();
        EXPECT_TRUE(host.messages.at(0).startsWith(
            u"Error Loading Skin File: Bad\nskin.txt - Error On Line: "_s + line + u"\nError Return: "_s))
            << host.messages.at(0).toStdString();
        EXPECT_EQ(host.messages.at(0).count(u'\n'), 2);
        EXPECT_GT(host.messages.at(0).section(u"Error Return: "_s, 1).size(), 0);
        EXPECT_EQ(skin.TreeColor(), 0xFFB29DU);
    }
    home.Write(u"skin.txt"_s, QByteArrayLiteral("treecolor 1\n"));
    for (const QString& name : {u"Nowhere"_s, u".."_s}) {
        host.messages.clear();
        Choose(name);
        skin.LoadSkin();
        EXPECT_EQ(host.messages, QStringList{u"Error Loading Skin File: "_s + name});
        EXPECT_EQ(skin.TreeColor(), 0xFFB29DU);
    }
    EXPECT_EQ(loaded.count(), 0);
    EXPECT_TRUE(imageList.added.isEmpty());
}

TEST_F(SkinLoaderTest, StateKeywordsAreAsymmetric) {
    Load(u"States"_s);
    ASSERT_TRUE(host.messages.isEmpty()) << host.messages.join(u'|').toStdString();
    // Normal, hover and pressed picture colours, then the three captions.
    const std::pair<int, QString> expected[] = {
        {1, u"#ff0000 #ff0000 #ff0000 A A A"_s},
        {2, u"#ff0000 #00ff00 #00ff00 A B B"_s},
        {3, u"#ff0000 #00ff00 #0000ff A C B"_s},
        {4, u"#ff0000 #ff0000 #ff0000 A A A"_s},
    };
    for (const auto& [number, states] : expected) {
        const frmSkinEntity* entity = skin.Entity(number);
        ASSERT_NE(entity, nullptr);
        EXPECT_EQ(QStringList({PictureColour(entity->img).name(), PictureColour(entity->imgMM).name(),
                               PictureColour(entity->imgMD).name(), entity->lbl.Caption,
                               entity->lblMM.Caption, entity->lblMD.Caption})
                      .join(u' '),
                  states)
            << number;
    }
}

TEST_F(SkinLoaderTest, ItemStylesheetComesFromTheSkinFolderWhenItOpens) {
    Load(u"Xsl"_s);
    EXPECT_EQ(skin.GetXSLFilename(), home.File(u"skins/Xsl/mine.xsl"_s));
    EXPECT_FALSE(skin.ItemStylesheet().IsNull());
    EXPECT_TRUE(skin.ItemStylesheetError().isEmpty());
    for (const char* line : {"xslfile absent.xsl\n", "xslfile ../Xsl/mine.xsl\n"}) {
        Load(u"Xsl"_s, QString::fromUtf8(line));
        EXPECT_EQ(skin.GetXSLFilename(), home.GetPaths().ResourceFile(u"rss.xsl"_s)) << line;
    }
    // The skin's own rss.xsl is taken without an xslfile line; a broken one leaves a reason.
    Load(u"Broken"_s);
    EXPECT_EQ(skin.GetXSLFilename(), home.File(u"skins/Broken/rss.xsl"_s));
    EXPECT_TRUE(skin.ItemStylesheet().IsNull());
    EXPECT_FALSE(skin.ItemStylesheetError().isEmpty());
}

} // namespace
