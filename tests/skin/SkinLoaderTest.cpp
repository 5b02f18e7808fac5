// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "SkinTestSupport.h"

#include "skin/SkinColor.h"
#include "skin/frmSkinEntity.h"

#include <QLabel>
#include <QSignalSpy>
#include <gtest/gtest.h>

namespace {

QString ThreeLines(const QString& skin, const QString& line) {
    return QStringLiteral("Error Loading Skin File: ") + skin +
           QStringLiteral("\nskin.txt - Error On Line: ") + line + QStringLiteral("\nError Return: ");
}

class SkinLoaderTest : public ::testing::Test, public SkinFixture {};

TEST_F(SkinLoaderTest, AnEmptySkinNameLoadsNoEntitiesAndStillUpdatesIconsAndStylesheet) {
    QSignalSpy loaded(&skin, &frmTamselSkin::SkinLoaded);
    skin.LoadSkin();

    EXPECT_TRUE(host.messages.isEmpty());
    EXPECT_EQ(loaded.count(), 1);
    QStringList expected = frmTamselSkin::TreeIconKeys();
    expected.append(QStringLiteral("last"));
    EXPECT_EQ(imageList.added, expected);
    EXPECT_EQ(skin.GetXSLFilename(), home.GetPaths().ResourceFile(QStringLiteral("rss.xsl")));

    for (int number = 1; number <= frmTamselSkin::kEntitySlots; ++number) {
        EXPECT_EQ(skin.Entity(number), nullptr);
    }
    for (const QString& key : frmTamselSkin::TreeIconKeys()) {
        EXPECT_EQ(skin.TreeIcon(key).Size(), QSize(16, 16)) << key.toStdString();
    }
    for (int icon = 0; icon < frmTamselSkin::kListIcons; ++icon) {
        EXPECT_EQ(skin.GetListIcon(frmTamselSkin::ListIcon(icon)).Size(), QSize(16, 16)) << icon;
    }
}

TEST_F(SkinLoaderTest, BooleansAreTrueOnlyForTrue) {
    Load(QStringLiteral("Bools"),
         QStringLiteral("definefont 4\nBold TRUE\nitalic True\ndefinefont 5\nbold yes\n"
                        "italic 1\nunderline true\nstrike TrUe\noutline true\nshadow false\n"));
    ASSERT_TRUE(host.messages.isEmpty()) << host.messages.join(u'|').toStdString();
    EXPECT_TRUE(skin.FontSlot(3)->Bold);
    EXPECT_TRUE(skin.FontSlot(3)->Italic);
    EXPECT_FALSE(skin.FontSlot(4)->Bold);
    EXPECT_FALSE(skin.FontSlot(4)->Italic);
    EXPECT_TRUE(skin.FontSlot(4)->Underline);
    EXPECT_TRUE(skin.FontSlot(4)->StrikeThrough);
    EXPECT_TRUE(skin.FontSlot(4)->Outline);
    EXPECT_FALSE(skin.FontSlot(4)->Shadow);
}

TEST_F(SkinLoaderTest, HexadecimalAndDecimalColoursAreTheSameBlue) {
    Load(QStringLiteral("Blue"), QStringLiteral("definefont 6\ncolor &hFF0000\ndefinefont 7\ncolor 16711680\n"
                                                "shadowcolor &h80000005\ntreecolor &h00ff00\n"));
    ASSERT_TRUE(host.messages.isEmpty());
    EXPECT_EQ(skin.GetFontColor(5), 16711680U);
    EXPECT_EQ(skin.GetFontColor(6), 16711680U);
    EXPECT_EQ(SkinColor::ToQColor(skin.GetFontColor(5)), QColor(0, 0, 255));
    EXPECT_EQ(skin.FontSlot(6)->ShadowColor, 0x80000005U);
    EXPECT_EQ(skin.TreeColor(), 0x00FF00U);
}

TEST_F(SkinLoaderTest, CommentsBlankAndKeywordOnlyLinesAreSkipped) {
    QSignalSpy loaded(&skin, &frmTamselSkin::SkinLoaded);
    Load(QStringLiteral("Quiet"),
         QStringLiteral("; definefont 22\n   ;  image missing.png\n\n \t \nframen\nimage\n"
                        "definefont\nnosuchkeyword 12\r\ntreecolor 7\r\n"));
    EXPECT_TRUE(host.messages.isEmpty()) << host.messages.join(u'|').toStdString();
    EXPECT_EQ(loaded.count(), 1);
    EXPECT_EQ(skin.TreeColor(), 7U);
}

TEST_F(SkinLoaderTest, KeywordsIgnoreCaseAndArgumentsKeepIt) {
    Load(QStringLiteral("Case"), QStringLiteral("DEFINEFONT 8\nFace  Liberation Serif  \nSize 11.5\n"));
    ASSERT_NE(skin.FontSlot(7), nullptr);
    EXPECT_EQ(skin.FontSlot(7)->Name, QStringLiteral("Liberation Serif"));
    EXPECT_DOUBLE_EQ(skin.FontSlot(7)->Size, 11.5);
}

TEST_F(SkinLoaderTest, FontTwentyOneIsTheLastSlot) {
    QSignalSpy loaded(&skin, &frmTamselSkin::SkinLoaded);
    Load(QStringLiteral("Fonts"), QStringLiteral("definefont 21\nface Last\ndefinefont 22\ntreecolor 5\n"));
    ASSERT_NE(skin.FontSlot(20), nullptr);
    EXPECT_EQ(skin.FontSlot(20)->Name, QStringLiteral("Last"));
    ASSERT_EQ(host.messages.size(), 1);
    EXPECT_TRUE(
        host.messages.at(0).startsWith(ThreeLines(QStringLiteral("Fonts"), QStringLiteral("definefont 22"))))
        << host.messages.at(0).toStdString();
    EXPECT_EQ(host.messages.at(0).count(u'\n'), 2);
    // The load stopped: later lines, the icon list and the stylesheet step did not run.
    EXPECT_EQ(skin.TreeColor(), 0xFFB29DU);
    EXPECT_EQ(loaded.count(), 0);
    EXPECT_TRUE(imageList.added.isEmpty());
}

struct FailingLine {
    const char* text;
    const char* line;
};

class SkinLoaderFailureTest : public SkinLoaderTest, public ::testing::WithParamInterface<FailingLine> {};

TEST_P(SkinLoaderFailureTest, StopsWithTheLineNamed) {
    WritePicture(QStringLiteral("Bad"), QStringLiteral("p.png"), QSize(4, 4), Qt::red);
    Load(QStringLiteral("Bad"), QString::fromUtf8(GetParam().text));
    ASSERT_EQ(host.messages.size(), 1);
    EXPECT_TRUE(
        host.messages.at(0).startsWith(ThreeLines(QStringLiteral("Bad"), QString::fromUtf8(GetParam().line))))
        << host.messages.at(0).toStdString();
    EXPECT_GT(host.messages.at(0).section(QStringLiteral("Error Return: "), 1).size(), 0);
}

INSTANTIATE_TEST_SUITE_P(
    Lines, SkinLoaderFailureTest,
    ::testing::Values(
        FailingLine{"defineentity 0\n", "defineentity 0"},
        FailingLine{"defineentity 37\n", "defineentity 37"}, FailingLine{"definefont 0\n", "definefont 0"},
        FailingLine{"  image p.png  \n", "image p.png"}, FailingLine{"text Hello\n", "text Hello"},
        FailingLine{"function close\n", "function close"},
        FailingLine{"defineentity 1\nimage missing.png\n", "image missing.png"},
        FailingLine{"defineentity 1\nimage ../Bad/p.png\n", "image ../Bad/p.png"},
        FailingLine{"defineframe main\nframen nothing.png\n", "framen nothing.png"},
        FailingLine{"framensize 40000\n", "framensize 40000"},
        FailingLine{"defineentity 2\nfont 9\n", "font 9"}, FailingLine{"gridfont 22\n", "gridfont 22"},
        FailingLine{"iconunread none.png\n", "iconunread none.png"}));

TEST_F(SkinLoaderTest, MissingSkinFileGivesTheShortMessage) {
    QSignalSpy loaded(&skin, &frmTamselSkin::SkinLoaded);
    Choose(QStringLiteral("Nowhere"));
    skin.LoadSkin();
    EXPECT_EQ(host.messages, QStringList{QStringLiteral("Error Loading Skin File: Nowhere")});
    EXPECT_EQ(loaded.count(), 0);
}

TEST_F(SkinLoaderTest, SkinNameThatLeavesTheSkinFolderIsRefused) {
    home.Write(QStringLiteral("skin.txt"), QByteArrayLiteral("treecolor 1\n"));
    Choose(QStringLiteral(".."));
    skin.LoadSkin();
    EXPECT_EQ(host.messages, QStringList{QStringLiteral("Error Loading Skin File: ..")});
    EXPECT_EQ(skin.TreeColor(), 0xFFB29DU);
}

TEST_F(SkinLoaderTest, NegativeTopPlacesTheEntityAboveTheBottomEdge) {
    WritePicture(QStringLiteral("Low"), QStringLiteral("p.png"), QSize(20, 8), Qt::red);
    Load(QStringLiteral("Low"), QStringLiteral("defineentity 1\nimage p.png\ntop -10\nleft 5\n"));
    ASSERT_TRUE(host.messages.isEmpty());
    TestWindow window(QSize(100, 60));
    skin.PaintAll(window, *window.picSkin(), 0, false);
    EXPECT_DOUBLE_EQ(skin.Entity(1)->Rect().bottom(), 60 - 10);
    EXPECT_EQ(window.Pixel(10, 49), QColor(Qt::red));
    EXPECT_NE(window.Pixel(10, 50), QColor(Qt::red));
    EXPECT_NE(window.Pixel(10, 41), QColor(Qt::red));
}

TEST_F(SkinLoaderTest, EveryLoadStartsFromTheDefaults) {
    WritePicture(QStringLiteral("First"), QStringLiteral("p.png"), QSize(4, 4), Qt::red);
    Load(QStringLiteral("First"),
         QStringLiteral("treecolor 255\ngridcolorodd 1\ndefinefont 9\ndefineentity 3\n"
                        "image p.png\ndefineframe ticker\nframecolor 7\nframen p.png\n"
                        "filtertop 40\ntickerfont 9\niconread p.png\n"));
    ASSERT_TRUE(host.messages.isEmpty());
    ASSERT_EQ(skin.TreeColor(), 255U);
    ASSERT_NE(skin.Entity(3), nullptr);

    Load(QStringLiteral("Second"), QStringLiteral("; nothing but a comment\n"));
    EXPECT_TRUE(host.messages.isEmpty());
    EXPECT_EQ(skin.TreeColor(), 0xFFB29DU);
    EXPECT_EQ(skin.GridColorOdd(), 0xFFCCCCU);
    EXPECT_EQ(skin.FontSlot(8), nullptr);
    EXPECT_EQ(skin.Entity(3), nullptr);
    EXPECT_EQ(skin.FrameColor(3), 0xFF0000U);
    EXPECT_EQ(skin.FrameNSize(3), 0);
    EXPECT_EQ(skin.FilterTop(), 5);
    EXPECT_EQ(skin.TickerFont(), 1);
    EXPECT_EQ(skin.TreeIcon(QStringLiteral("read")).Size(), QSize(16, 16));
}

TEST_F(SkinLoaderTest, StateKeywordsAreAsymmetric) {
    WritePicture(QStringLiteral("States"), QStringLiteral("a.png"), QSize(4, 4), Qt::red);
    WritePicture(QStringLiteral("States"), QStringLiteral("b.png"), QSize(4, 4), Qt::green);
    WritePicture(QStringLiteral("States"), QStringLiteral("c.png"), QSize(4, 4), Qt::blue);
    Load(QStringLiteral("States"),
         QStringLiteral("defineentity 1\nimage a.png\ntext A\n"
                        "defineentity 2\nimage a.png\nimagemousemove b.png\ntext A\ntextmousedown B\n"
                        "defineentity 3\nimage a.png\nimagemousemove b.png\nimagemousedown c.png\n"
                        "text A\ntextmousedown B\ntextmousemove C\n"
                        "defineentity 4\nimagemousedown c.png\nimage a.png\ntextmousemove C\ntext A\n"));
    ASSERT_TRUE(host.messages.isEmpty()) << host.messages.join(u'|').toStdString();
    const QColor red(Qt::red), green(Qt::green), blue(Qt::blue);
    struct Expected {
        int entity;
        QColor img, mm, md;
        const char *lbl, *lblMM, *lblMD;
    };
    for (const Expected& e :
         {Expected{1, red, red, red, "A", "A", "A"}, Expected{2, red, green, green, "A", "B", "B"},
          Expected{3, red, green, blue, "A", "C", "B"}, Expected{4, red, red, red, "A", "A", "A"}}) {
        const frmSkinEntity* entity = skin.Entity(e.entity);
        ASSERT_NE(entity, nullptr);
        EXPECT_EQ(PictureColour(entity->img), e.img) << e.entity;
        EXPECT_EQ(PictureColour(entity->imgMM), e.mm) << e.entity;
        EXPECT_EQ(PictureColour(entity->imgMD), e.md) << e.entity;
        EXPECT_EQ(entity->lbl.Caption, QString::fromUtf8(e.lbl)) << e.entity;
        EXPECT_EQ(entity->lblMM.Caption, QString::fromUtf8(e.lblMM)) << e.entity;
        EXPECT_EQ(entity->lblMD.Caption, QString::fromUtf8(e.lblMD)) << e.entity;
    }
}

TEST_F(SkinLoaderTest, EntityFieldsAndFonts) {
    Load(QStringLiteral("Fields"),
         QStringLiteral("definefont 4\nface Nimbus Sans\nsize 12\ncolor &h0000FF\n"
                        "definefont 5\nsize 7\ncolor &h00FF00\n"
                        "defineentity 36\ntext {user}\nfont 4\nfontmousemove 5\nfontmousedown 5\n"
                        "function Close\nwindow TICKER\nhide true\ncenter TRUE\ntop 2.5\nleft -7.25\n"));
    ASSERT_TRUE(host.messages.isEmpty()) << host.messages.join(u'|').toStdString();
    const frmSkinEntity* entity = skin.Entity(36);
    ASSERT_NE(entity, nullptr);
    EXPECT_EQ(entity->sFunction, QStringLiteral("Close"));
    EXPECT_EQ(entity->iWindow, frmTamselSkin::KindTicker);
    EXPECT_TRUE(entity->bHide);
    EXPECT_TRUE(entity->bCenter);
    EXPECT_DOUBLE_EQ(entity->iTop, 2.5);
    EXPECT_DOUBLE_EQ(entity->iLeft, -7.25);
    EXPECT_EQ(entity->lbl.Font.family(), QStringLiteral("Nimbus Sans"));
    EXPECT_DOUBLE_EQ(entity->lbl.Font.pointSizeF(), 12);
    EXPECT_EQ(entity->lbl.ForeColor, 0x0000FFU);
    EXPECT_DOUBLE_EQ(entity->lblMM.Font.pointSizeF(), 7);
    EXPECT_DOUBLE_EQ(entity->lblMD.Font.pointSizeF(), 7);
    // Hover and pressed captions take the font but not its colour.
    EXPECT_EQ(entity->lblMM.ForeColor, 0U);
}

TEST_F(SkinLoaderTest, WindowKindNames) {
    EXPECT_EQ(frmTamselSkin::KindOf(QStringLiteral("Main")), 0);
    EXPECT_EQ(frmTamselSkin::KindOf(QStringLiteral("channel")), 1);
    EXPECT_EQ(frmTamselSkin::KindOf(QStringLiteral("ITEM")), 2);
    EXPECT_EQ(frmTamselSkin::KindOf(QStringLiteral("ticker")), 3);
    EXPECT_EQ(frmTamselSkin::KindOf(QStringLiteral("TickerItem")), 4);
    EXPECT_EQ(frmTamselSkin::KindOf(QStringLiteral("dialog")), 5);
    EXPECT_EQ(frmTamselSkin::KindOf(QStringLiteral("viewer")), 0);
    EXPECT_EQ(frmTamselSkin::KindOf(QString()), 0);
}

TEST_F(SkinLoaderTest, FramePiecesTakeTheirPictureSizeUnlessOverridden) {
    WritePicture(QStringLiteral("Frame"), QStringLiteral("n.png"), QSize(8, 12), Qt::red);
    WritePicture(QStringLiteral("Frame"), QStringLiteral("w.png"), QSize(3, 8), Qt::red);
    WritePicture(QStringLiteral("Frame"), QStringLiteral("e.png"), QSize(4, 8), Qt::red);
    WritePicture(QStringLiteral("Frame"), QStringLiteral("s.png"), QSize(8, 6), Qt::red);
    Load(QStringLiteral("Frame"),
         QStringLiteral("defineframe Channel\nframensize 40\nframen n.png\nframew w.png\nframee e.png\n"
                        "frameesize 7\nframes s.png\nframessize 9.5\nframecolor &h123456\n"
                        "defineframe unknown\nframew e.png\n"));
    ASSERT_TRUE(host.messages.isEmpty()) << host.messages.join(u'|').toStdString();
    EXPECT_EQ(skin.FrameNSize(1), 12);
    EXPECT_EQ(skin.FrameWSize(1), 3);
    EXPECT_EQ(skin.FrameESize(1), 7);
    EXPECT_EQ(skin.FrameSSize(1), 10); // 9.5 rounds to the even 10
    EXPECT_EQ(skin.FrameColor(1), 0x123456U);
    EXPECT_EQ(skin.FrameWSize(0), 4);
    EXPECT_EQ(skin.FrameNSize(7), 0);
    EXPECT_EQ(skin.FrameColor(-1), 0U);
}

TEST_F(SkinLoaderTest, LayoutNumbersAndValues) {
    Load(QStringLiteral("Numbers"),
         QStringLiteral("filtertop 31\nfilterleft -12\nfilterwidth 140.5\nsearchtop 33\nsearchleft &h20\n"
                        "searchwidth 201.5\ngridfont 21\ntickerfont 1\ntreefont 2\ntickerfadecolor 3\n"
                        "gridcoloreven 4\n"));
    ASSERT_TRUE(host.messages.isEmpty()) << host.messages.join(u'|').toStdString();
    EXPECT_EQ(skin.FilterTop(), 31);
    EXPECT_EQ(skin.FilterLeft(), -12);
    EXPECT_EQ(skin.FilterWidth(), 140);
    EXPECT_EQ(skin.SearchTop(), 33);
    EXPECT_EQ(skin.SearchLeft(), 32);
    EXPECT_EQ(skin.SearchWidth(), 202);
    EXPECT_EQ(skin.GridFont(), 20);
    EXPECT_EQ(skin.TickerFont(), 0);
    EXPECT_EQ(skin.TreeFont(), 1);
    EXPECT_EQ(skin.TickerFadeColor(), 3U);
    EXPECT_EQ(skin.GridColorEven(), 4U);
}

TEST_F(SkinLoaderTest, TreeIconKeywordsReplaceTheImagesOfTheirKeys) {
    WritePicture(QStringLiteral("Icons"), QStringLiteral("u.png"), QSize(16, 16), Qt::red);
    WritePicture(QStringLiteral("Icons"), QStringLiteral("g.png"), QSize(16, 16), Qt::green);
    WritePicture(QStringLiteral("Icons"), QStringLiteral("l.png"), QSize(16, 16), Qt::blue);
    skin.LoadSkin();
    ASSERT_TRUE(imageList.HasImage(QStringLiteral("unread")));
    imageList.added.clear();

    Load(QStringLiteral("Icons"), QStringLiteral("iconunread u.png\nicongroupopen g.png\niconlink l.png\n"));
    ASSERT_TRUE(host.messages.isEmpty()) << host.messages.join(u'|').toStdString();
    EXPECT_EQ(imageList.removed, (QStringList{QStringLiteral("unread"), QStringLiteral("expanded"),
                                              QStringLiteral("collapse")}));
    EXPECT_EQ(imageList.added, (QStringList{QStringLiteral("unread"), QStringLiteral("collapse"),
                                            QStringLiteral("expanded"), QStringLiteral("last")}));
    EXPECT_EQ(PictureColour(imageList.Picture(QStringLiteral("unread"))), QColor(Qt::red));
    EXPECT_EQ(PictureColour(imageList.Picture(QStringLiteral("expanded"))), QColor(Qt::green));
    EXPECT_EQ(PictureColour(imageList.Picture(QStringLiteral("collapse"))), QColor(Qt::green));
    EXPECT_EQ(PictureColour(skin.GetListIcon(frmTamselSkin::ListIcon::Link)), QColor(Qt::blue));
    EXPECT_EQ(PictureColour(skin.TreeIcon(QStringLiteral("unread"))), QColor(Qt::red));
}

TEST_F(SkinLoaderTest, ItemStylesheetComesFromTheSkinFolderWhenItOpens) {
    home.Write(QStringLiteral("skins/Xsl/mine.xsl"),
               QByteArrayLiteral(
                   "<xsl:stylesheet version=\"1.0\" xmlns:xsl=\"http://www.w3.org/1999/XSL/Transform\">"
                   "<xsl:template match=\"/\"><p>mine</p></xsl:template></xsl:stylesheet>"));
    Load(QStringLiteral("Xsl"), QStringLiteral("xslfile mine.xsl\n"));
    EXPECT_EQ(skin.GetXSLFilename(), home.File(QStringLiteral("skins/Xsl/mine.xsl")));
    EXPECT_FALSE(skin.ItemStylesheet().IsNull());
    EXPECT_TRUE(skin.ItemStylesheetError().isEmpty());

    const QString fallback = home.GetPaths().ResourceFile(QStringLiteral("rss.xsl"));
    for (const char* line : {"xslfile absent.xsl\n", "xslfile ../Xsl/mine.xsl\n"}) {
        Load(QStringLiteral("Xsl"), QString::fromUtf8(line));
        EXPECT_EQ(skin.GetXSLFilename(), fallback) << line;
    }
}

TEST_F(SkinLoaderTest, BrokenItemStylesheetLeavesNoStylesheetAndAReason) {
    home.Write(QStringLiteral("skins/Broken/rss.xsl"), QByteArrayLiteral("<not-xslt/>"));
    Load(QStringLiteral("Broken"),
         QStringLiteral("; the skin's own rss.xsl is taken without an xslfile line\n"));
    EXPECT_EQ(skin.GetXSLFilename(), home.File(QStringLiteral("skins/Broken/rss.xsl")));
    EXPECT_TRUE(skin.ItemStylesheet().IsNull());
    EXPECT_FALSE(skin.ItemStylesheetError().isEmpty());
}

TEST_F(SkinLoaderTest, FontsApplyToControls) {
    Load(QStringLiteral("Apply"), QStringLiteral("definefont 4\nface Nimbus Sans\nsize 13\nitalic true\n"
                                                 "underline true\nstrike true\ncolor &hFF0000\n"));
    QLabel label;
    skin.SetFont(&label, 3, false);
    EXPECT_EQ(label.font().family(), QStringLiteral("Nimbus Sans"));
    EXPECT_DOUBLE_EQ(label.font().pointSizeF(), 13);
    EXPECT_TRUE(label.font().italic());
    EXPECT_TRUE(label.font().underline());
    EXPECT_TRUE(label.font().strikeOut());
    EXPECT_NE(label.palette().color(QPalette::WindowText), QColor(0, 0, 255));
    skin.SetFont(&label, 3, true);
    EXPECT_EQ(label.palette().color(QPalette::WindowText), QColor(0, 0, 255));
    skin.SetFont(nullptr, 3, true);
    skin.SetFont(&label, 40, true);
    EXPECT_DOUBLE_EQ(label.font().pointSizeF(), 13);

    const QFont font = skin.GetFont(3);
    EXPECT_EQ(font.family(), QStringLiteral("Nimbus Sans"));
    EXPECT_TRUE(font.strikeOut());
    EXPECT_EQ(skin.GetFont(10).family(), QStringLiteral("Arial"));
    EXPECT_DOUBLE_EQ(skin.GetFont(10).pointSizeF(), 8);
    EXPECT_EQ(skin.GetFontColor(10), 0U);

    TestWindow window;
    skin.SetFont(window.picSkin(), 3, true);
    EXPECT_EQ(window.picSkin()->DrawFont().family(), QStringLiteral("Nimbus Sans"));
    EXPECT_EQ(window.picSkin()->ForeColor(), QColor(0, 0, 255));
}

TEST_F(SkinLoaderTest, UserSkinsComeBeforeShippedOnes) {
    Load(QStringLiteral("Default"), QStringLiteral("treecolor 9\n"));
    EXPECT_EQ(skin.SkinFolder(), home.File(QStringLiteral("skins/Default")));
    EXPECT_EQ(skin.TreeColor(), 9U);
}

} // namespace
