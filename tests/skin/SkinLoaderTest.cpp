// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "SkinTestSupport.h"

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
    EXPECT_EQ(imageList.added, frmTamselSkin::TreeIconKeys() + QStringList{QStringLiteral("last")});
    EXPECT_EQ(skin.GetXSLFilename(), home.GetPaths().ResourceFile(QStringLiteral("rss.xsl")));
    for (int number = 1; number <= frmTamselSkin::kEntitySlots; ++number) {
        EXPECT_EQ(skin.Entity(number), nullptr);
    }
    for (int icon = 0; icon < frmTamselSkin::kListIcons; ++icon) {
        EXPECT_EQ(skin.GetListIcon(frmTamselSkin::ListIcon(icon)).Size(), QSize(16, 16)) << icon;
    }
}

// Keywords ignore case, arguments keep it; numbers are read as far as they go (&h is hexadecimal)
// and rounded half to even; booleans are true only for "true"; unknown keywords, comments and
// keyword-only lines are skipped.
TEST_F(SkinLoaderTest, KeywordsSetTheirValues) {
    WritePicture(QStringLiteral("All"), QStringLiteral("n.png"), QSize(8, 12), Qt::red);
    WritePicture(QStringLiteral("All"), QStringLiteral("w.png"), QSize(3, 8), Qt::red);
    Load(
        QStringLiteral("All"),
        QStringLiteral("; definefont 22\n   ;  image missing.png\n\n \t \nframen\nimage\nnosuchkeyword 12\r\n"
                       "DEFINEFONT 4\nFace  Nimbus Sans  \nSize 11.5\nBold TRUE\nitalic yes\ncolor &hFF0000\n"
                       "definefont 5\nsize 7\ncolor 16711680\nshadowcolor &h80000005\nstrike TrUe\n"
                       "definefont 21\nface Last\n"
                       "defineentity 36\ntext {user}\nfont 4\nfontmousemove 5\nfunction Close\n"
                       "window TICKER\nhide true\ncenter TRUE\ntop 2.5\nleft -7.25\n"
                       "defineframe Channel\nframensize 40\nframen n.png\nframew w.png\nframeesize 7\n"
                       "framessize 9.5\nframecolor &h123456\ndefineframe unknown\nframew n.png\n"
                       "filtertop 31\nfilterleft -12\nfilterwidth 140.5\nsearchleft &h20\nsearchwidth 201.5\n"
                       "gridfont 21\ntickerfont 1\ntreecolor &h00ff00\ngridcoloreven 4\n"));
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
        {"window kind names", {frmTamselSkin::KindOf(QStringLiteral("TickerItem")), 4}},
        {"unknown window kind", {frmTamselSkin::KindOf(QStringLiteral("viewer")), 0}},
    };
    for (const auto& [name, value] : values) {
        EXPECT_DOUBLE_EQ(value.first, value.second) << name;
    }
}

struct FailingLine {
    const char* text;
    const char* line;
};

class SkinLoaderFailureTest : public SkinLoaderTest, public ::testing::WithParamInterface<FailingLine> {};

// The load stops at the line: later lines, the icon list and the stylesheet step do not run.
TEST_P(SkinLoaderFailureTest, StopsWithTheLineNamed) {
    QSignalSpy loaded(&skin, &frmTamselSkin::SkinLoaded);
    WritePicture(QStringLiteral("Bad"), QStringLiteral("p.png"), QSize(4, 4), Qt::red);
    Load(QStringLiteral("Bad"), QString::fromUtf8(GetParam().text) + QStringLiteral("treecolor 5\n"));
    ASSERT_EQ(host.messages.size(), 1);
    const QString message = host.messages.at(0);
    EXPECT_TRUE(message.startsWith(ThreeLines(QStringLiteral("Bad"), QString::fromUtf8(GetParam().line))))
        << message.toStdString();
    EXPECT_EQ(message.count(u'\n'), 2);
    EXPECT_GT(message.section(QStringLiteral("Error Return: "), 1).size(), 0);
    EXPECT_EQ(skin.TreeColor(), 0xFFB29DU);
    EXPECT_EQ(loaded.count(), 0);
    EXPECT_TRUE(imageList.added.isEmpty());
}

INSTANTIATE_TEST_SUITE_P(
    Lines, SkinLoaderFailureTest,
    ::testing::Values(
        FailingLine{"defineentity 0\n", "defineentity 0"},
        FailingLine{"defineentity 37\n", "defineentity 37"}, FailingLine{"definefont 0\n", "definefont 0"},
        FailingLine{"definefont 22\n", "definefont 22"}, FailingLine{"  image p.png  \n", "image p.png"},
        FailingLine{"text Hello\n", "text Hello"}, FailingLine{"function close\n", "function close"},
        FailingLine{"defineentity 1\nimage missing.png\n", "image missing.png"},
        FailingLine{"defineentity 1\nimage ../Bad/p.png\n", "image ../Bad/p.png"},
        FailingLine{"defineframe main\nframen nothing.png\n", "framen nothing.png"},
        FailingLine{"framensize 40000\n", "framensize 40000"},
        FailingLine{"defineentity 2\nfont 9\n", "font 9"}, FailingLine{"gridfont 22\n", "gridfont 22"},
        FailingLine{"iconunread none.png\n", "iconunread none.png"}));

TEST_F(SkinLoaderTest, AMissingSkinOrOneOutsideTheSkinFolderGivesTheShortMessage) {
    QSignalSpy loaded(&skin, &frmTamselSkin::SkinLoaded);
    home.Write(QStringLiteral("skin.txt"), QByteArrayLiteral("treecolor 1\n"));
    for (const QString& name : {QStringLiteral("Nowhere"), QStringLiteral("..")}) {
        host.messages.clear();
        Choose(name);
        skin.LoadSkin();
        EXPECT_EQ(host.messages, QStringList{QStringLiteral("Error Loading Skin File: ") + name});
    }
    EXPECT_EQ(loaded.count(), 0);
    EXPECT_EQ(skin.TreeColor(), 0xFFB29DU);
}

TEST_F(SkinLoaderTest, EveryLoadStartsFromTheDefaults) {
    WritePicture(QStringLiteral("First"), QStringLiteral("p.png"), QSize(4, 4), Qt::red);
    Load(QStringLiteral("First"),
         QStringLiteral("treecolor 255\ngridcolorodd 1\ndefinefont 9\ndefineentity 3\n"
                        "image p.png\ndefineframe ticker\nframecolor 7\nframen p.png\n"
                        "filtertop 40\ntickerfont 9\niconread p.png\n"));
    ASSERT_TRUE(host.messages.isEmpty());
    ASSERT_NE(skin.Entity(3), nullptr);
    Load(QStringLiteral("Default"), QStringLiteral("; nothing but a comment\n"));
    // User skins come before shipped ones of the same name.
    EXPECT_EQ(skin.SkinFolder(), home.File(QStringLiteral("skins/Default")));
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
                        "defineentity 2\nimage a.png\nimagemousemove b.png\ntext A\n"
                        "textmousedown B\ndefineentity 3\nimage a.png\n"
                        "imagemousemove b.png\nimagemousedown c.png\ntext A\n"
                        "textmousedown B\ntextmousemove C\ndefineentity 4\n"
                        "imagemousedown c.png\nimage a.png\ntextmousemove C\ntext A\n"));
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
        EXPECT_EQ(QList<QColor>({PictureColour(entity->img), PictureColour(entity->imgMM),
                                 PictureColour(entity->imgMD)}),
                  QList<QColor>({e.img, e.mm, e.md}))
            << e.entity;
        EXPECT_EQ(
            QStringList({entity->lbl.Caption, entity->lblMM.Caption, entity->lblMD.Caption}),
            QStringList({QString::fromUtf8(e.lbl), QString::fromUtf8(e.lblMM), QString::fromUtf8(e.lblMD)}))
            << e.entity;
    }
}

TEST_F(SkinLoaderTest, TreeIconKeywordsReplaceTheImagesOfTheirKeys) {
    WritePicture(QStringLiteral("Icons"), QStringLiteral("u.png"), QSize(16, 16), Qt::red);
    WritePicture(QStringLiteral("Icons"), QStringLiteral("g.png"), QSize(16, 16), Qt::green);
    WritePicture(QStringLiteral("Icons"), QStringLiteral("l.png"), QSize(16, 16), Qt::blue);
    skin.LoadSkin();
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
    for (const char* line : {"xslfile absent.xsl\n", "xslfile ../Xsl/mine.xsl\n"}) {
        Load(QStringLiteral("Xsl"), QString::fromUtf8(line));
        EXPECT_EQ(skin.GetXSLFilename(), home.GetPaths().ResourceFile(QStringLiteral("rss.xsl"))) << line;
    }
    // The skin's own rss.xsl is taken without an xslfile line; a broken one leaves a reason.
    home.Write(QStringLiteral("skins/Broken/rss.xsl"), QByteArrayLiteral("<not-xslt/>"));
    Load(QStringLiteral("Broken"), QString());
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
    EXPECT_TRUE(label.font().italic() && label.font().underline() && label.font().strikeOut());
    EXPECT_NE(label.palette().color(QPalette::WindowText), QColor(0, 0, 255));
    skin.SetFont(&label, 3, true);
    EXPECT_EQ(label.palette().color(QPalette::WindowText), QColor(0, 0, 255));
    skin.SetFont(nullptr, 3, true);
    skin.SetFont(&label, 40, true);
    EXPECT_DOUBLE_EQ(label.font().pointSizeF(), 13);
    EXPECT_EQ(skin.GetFont(10).family(), QStringLiteral("Arial")) << "an undefined slot gives the default";
    EXPECT_DOUBLE_EQ(skin.GetFont(10).pointSizeF(), 8);
    TestWindow window;
    skin.SetFont(window.picSkin(), 3, true);
    EXPECT_EQ(window.picSkin()->DrawFont().family(), QStringLiteral("Nimbus Sans"));
    EXPECT_EQ(window.picSkin()->ForeColor(), QColor(0, 0, 255));
}

} // namespace
