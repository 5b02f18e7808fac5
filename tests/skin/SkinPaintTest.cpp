// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "SkinTestSupport.h"

#include "skin/SkinColor.h"
#include "skin/frmSkinEntity.h"

#include <QGuiApplication>
#include <QPalette>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

class SkinPaintTest : public ::testing::Test, public SkinFixture {
protected:
    static bool AllPixels(SkinSurface& surface, const QColor& colour) {
        const QImage& image = surface.Image();
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                if (image.pixelColor(x, y) != colour) {
                    return false;
                }
            }
        }
        return true;
    }
};

TEST_F(SkinPaintTest, KindWithoutPiecesShowsOnlyItsColour) {
    skin.LoadSkin();
    TestWindow window(QSize(60, 40));
    skin.PaintAll(window, *window.picSkin(), frmTamselSkin::KindMain, false);
    EXPECT_TRUE(AllPixels(*window.picSkin(), QGuiApplication::palette().color(QPalette::Button)));
    skin.PaintAll(window, *window.picSkin(), frmTamselSkin::KindTicker, false);
    EXPECT_TRUE(AllPixels(*window.picSkin(), QColor(0, 0, 255)));
}

TEST_F(SkinPaintTest, TopBandEndsInAPartialTileUnderTheTopRightCorner) {
    // The top tile marks its first column; the top-right corner is see-through on its left half.
    QImage tile(7, 6, QImage::Format_ARGB32);
    tile.fill(Qt::green);
    for (int y = 0; y < 6; ++y) {
        tile.setPixelColor(0, y, Qt::darkGreen);
    }
    WriteImage(QStringLiteral("Band"), QStringLiteral("n.png"), tile);
    QImage corner(4, 6, QImage::Format_ARGB32);
    corner.fill(Qt::blue);
    for (int y = 0; y < 6; ++y) {
        corner.setPixelColor(0, y, Qt::transparent);
        corner.setPixelColor(1, y, Qt::transparent);
    }
    WriteImage(QStringLiteral("Band"), QStringLiteral("ne.png"), corner);
    WritePicture(QStringLiteral("Band"), QStringLiteral("nw.png"), QSize(5, 6), Qt::red);
    Load(QStringLiteral("Band"),
         QStringLiteral("defineframe main\nframecolor &hFFFFFF\nframenw nw.png\nframen n.png\n"
                        "framene ne.png\n"));
    ASSERT_TRUE(host.messages.isEmpty()) << host.messages.join(u'|').toStdString();

    TestWindow window(QSize(30, 20));
    skin.PaintBorder(*window.picSkin(), frmTamselSkin::KindMain);
    // Tiles start at 5, 12, 19 and 26; the corner covers 26 to 29 but shows the last tile through
    // its clear half.
    for (int x : {5, 12, 19, 26}) {
        EXPECT_EQ(window.Pixel(x, 3), QColor(Qt::darkGreen)) << x;
    }
    EXPECT_EQ(window.Pixel(4, 3), QColor(Qt::red));
    EXPECT_EQ(window.Pixel(25, 3), QColor(Qt::green));
    EXPECT_EQ(window.Pixel(27, 3), QColor(Qt::green));
    EXPECT_EQ(window.Pixel(28, 3), QColor(Qt::blue));
    EXPECT_EQ(window.Pixel(29, 5), QColor(Qt::blue));
    EXPECT_EQ(window.Pixel(15, 6), QColor(Qt::white));
}

TEST_F(SkinPaintTest, SideBandsStartBelowTheTopBandAndCornersComeLast) {
    WritePicture(QStringLiteral("Sides"), QStringLiteral("n.png"), QSize(8, 6), Qt::gray);
    WritePicture(QStringLiteral("Sides"), QStringLiteral("w.png"), QSize(3, 4), Qt::yellow);
    WritePicture(QStringLiteral("Sides"), QStringLiteral("e.png"), QSize(2, 5), Qt::cyan);
    WritePicture(QStringLiteral("Sides"), QStringLiteral("s.png"), QSize(6, 3), Qt::magenta);
    WritePicture(QStringLiteral("Sides"), QStringLiteral("se.png"), QSize(5, 5), Qt::black);
    Load(QStringLiteral("Sides"),
         QStringLiteral("defineframe dialog\nframecolor &hFFFFFF\nframen n.png\nframew w.png\n"
                        "framee e.png\nframes s.png\nframese se.png\nframessize 5\n"));
    ASSERT_TRUE(host.messages.isEmpty()) << host.messages.join(u'|').toStdString();

    TestWindow window(QSize(40, 30));
    skin.PaintBorder(*window.picSkin(), frmTamselSkin::KindDialog);
    EXPECT_EQ(window.Pixel(1, 5), QColor(Qt::gray));   // top band, no corner: starts at 0
    EXPECT_EQ(window.Pixel(1, 6), QColor(Qt::yellow)); // left band from the top band's height
    EXPECT_EQ(window.Pixel(3, 6), QColor(Qt::white));
    EXPECT_EQ(window.Pixel(38, 6), QColor(Qt::cyan)); // right band at W - its width
    EXPECT_EQ(window.Pixel(37, 6), QColor(Qt::white));
    // The bottom band is copied at H - 5 (its thickness) and covers the side bands there.
    EXPECT_EQ(window.Pixel(1, 25), QColor(Qt::magenta));
    EXPECT_EQ(window.Pixel(1, 27), QColor(Qt::magenta));
    EXPECT_EQ(window.Pixel(1, 28), QColor(Qt::yellow));
    EXPECT_EQ(window.Pixel(38, 28), QColor(Qt::black)); // the corner is drawn last
    EXPECT_EQ(window.Pixel(35, 25), QColor(Qt::black));
    EXPECT_EQ(window.Pixel(34, 25), QColor(Qt::magenta));
    EXPECT_EQ(window.Pixel(20, 15), QColor(Qt::white));
}

TEST_F(SkinPaintTest, NegativeOffsetsAnchorTheFarSide) {
    WritePicture(u"Far"_s, u"p.png"_s, QSize(20, 10), Qt::red);
    WritePicture(u"Far"_s, u"odd.png"_s, QSize(21, 10), Qt::blue);
    Load(u"Far"_s, u"defineframe main\nframecolor &hFFFFFF\ndefineentity 1\nimage p.png\nleft -1\ntop 5\n"
                   "defineentity 2\nimage odd.png\ncenter true\nleft 30\ntop 20\n"
                   "defineentity 3\nimage p.png\ntop -10\nleft 5\n"_s);
    ASSERT_TRUE(host.messages.isEmpty());
    TestWindow window(QSize(200, 40));
    skin.PaintAll(window, *window.picSkin(), frmTamselSkin::KindMain, false);

    EXPECT_DOUBLE_EQ(skin.Entity(1)->Rect().left(), 179);
    EXPECT_EQ(window.Pixel(179, 6), QColor(Qt::red));
    EXPECT_EQ(window.Pixel(198, 6), QColor(Qt::red));
    EXPECT_EQ(window.Pixel(178, 6), QColor(Qt::white));
    EXPECT_EQ(window.Pixel(199, 6), QColor(Qt::white));
    // Centred without rounding: 200 / 2 - 21 / 2.
    EXPECT_DOUBLE_EQ(skin.Entity(2)->Rect().left(), 89.5);
    // A negative top places the entity above the bottom edge.
    EXPECT_DOUBLE_EQ(skin.Entity(3)->Rect().bottom(), 40 - 10);
    EXPECT_EQ(window.Pixel(10, 29), QColor(Qt::red));
    EXPECT_EQ(window.Pixel(10, 30), QColor(Qt::white));
    EXPECT_EQ(window.Pixel(10, 19), QColor(Qt::white));
}

TEST_F(SkinPaintTest, OnlyEntitiesOfTheKindAndNeverSlot36ArePainted) {
    WritePicture(QStringLiteral("Kinds"), QStringLiteral("p.png"), QSize(10, 10), Qt::red);
    Load(QStringLiteral("Kinds"),
         QStringLiteral("defineframe ticker\nframecolor &hFFFFFF\n"
                        "defineentity 35\nimage p.png\nwindow ticker\nleft 0\n"
                        "defineentity 36\nimage p.png\nwindow ticker\nleft 20\n"
                        "defineentity 1\nimage p.png\nwindow main\nleft 40\n"
                        "defineentity 2\nimage p.png\nwindow ticker\nleft 60\nhide true\n"));
    ASSERT_TRUE(host.messages.isEmpty());
    ASSERT_NE(skin.Entity(36), nullptr);
    TestWindow window(QSize(100, 20));
    skin.PaintAll(window, *window.picSkin(), frmTamselSkin::KindTicker, true);
    EXPECT_EQ(window.Pixel(5, 5), QColor(Qt::red));
    EXPECT_EQ(window.Pixel(25, 5), QColor(Qt::white));
    EXPECT_EQ(window.Pixel(45, 5), QColor(Qt::white));
    EXPECT_EQ(window.Pixel(65, 5), QColor(Qt::white));
    skin.PaintAll(window, *window.picSkin(), frmTamselSkin::KindTicker, false);
    EXPECT_EQ(window.Pixel(65, 5), QColor(Qt::red));
}

TEST_F(SkinPaintTest, TextsArePrintedAsTheWindowDecodesThem) {
    Load(QStringLiteral("Text"),
         QStringLiteral("defineframe main\nframecolor &hFFFFFF\ndefinefont 4\nsize 14\n"
                        "color &h0000FF\ndefineentity 1\ntext Hello {user}\nfont 4\n"
                        "left 4\ntop 4\n"));
    ASSERT_TRUE(host.messages.isEmpty());
    TestWindow window(QSize(200, 40));
    skin.PaintAll(window, *window.picSkin(), frmTamselSkin::KindMain, false);
    EXPECT_EQ(window.decoded, QStringList{QStringLiteral("Hello {user}")});
    const frmSkinEntity* entity = skin.Entity(1);
    // Laid out with the caption as written, placeholders included.
    EXPECT_DOUBLE_EQ(entity->Rect().width(),
                     SkinSurface::TextExtent(entity->lbl.Font, QStringLiteral("Hello {user}")).width());
    int inked = 0;
    for (int y = 4; y < 4 + int(entity->Rect().height()); ++y) {
        for (int x = 4; x < 60; ++x) {
            const QColor pixel = window.Pixel(x, y);
            if (pixel.red() > 150 && pixel.green() < 100 && pixel.blue() < 100) {
                ++inked;
            }
        }
    }
    EXPECT_GT(inked, 20);
    EXPECT_EQ(window.Pixel(150, 20), QColor(Qt::white));
}

TEST_F(SkinPaintTest, AWindowWithoutSurfaceIsLeftAlone) {
    WritePicture(QStringLiteral("Gone"), QStringLiteral("p.png"), QSize(10, 10), Qt::red);
    Load(QStringLiteral("Gone"), QStringLiteral("defineentity 1\nimage p.png\ntext {user}\n"));
    TestWindow window;
    SkinSurface other;
    other.resize(50, 50);
    window.Unload();
    skin.PaintEntities(window, other, frmTamselSkin::KindMain, false);
    EXPECT_NE(other.Image().pixelColor(5, 5), QColor(Qt::red));
    EXPECT_TRUE(window.decoded.isEmpty());
    EXPECT_FALSE(skin.SkinMouseDown(window, Qt::LeftButton, QPointF(5, 5), frmTamselSkin::KindMain, false));
}

TEST_F(SkinPaintTest, DoubledPicturesServeScaledSurfaces) {
    QImage base(4, 2, QImage::Format_ARGB32);
    base.fill(Qt::red);
    QImage doubled(8, 4, QImage::Format_ARGB32);
    doubled.fill(Qt::blue);
    WriteImage(QStringLiteral("Hi"), QStringLiteral("p.png"), base);
    WriteImage(QStringLiteral("Hi"), QStringLiteral("p@2x.png"), doubled);
    WriteImage(QStringLiteral("Hi"), QStringLiteral("q.png"), base);
    WriteImage(QStringLiteral("Hi"), QStringLiteral("q@2x.png"), base);
    Load(QStringLiteral("Hi"), QStringLiteral("defineentity 1\nimage p.png\ndefineentity 2\nimage q.png\n"));
    const SkinPicture& p = skin.Entity(1)->img;
    EXPECT_EQ(p.Size(), QSize(4, 2));
    EXPECT_EQ(p.ForRatio(1).pixelColor(0, 0), QColor(Qt::red));
    EXPECT_EQ(p.ForRatio(2).pixelColor(0, 0), QColor(Qt::blue));
    EXPECT_EQ(p.ForRatio(2).devicePixelRatio(), 2);
    // A doubled file of the wrong size is not used.
    EXPECT_EQ(skin.Entity(2)->img.ForRatio(2).pixelColor(0, 0), QColor(Qt::red));
}

} // namespace
