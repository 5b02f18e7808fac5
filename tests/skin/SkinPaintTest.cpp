// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "SkinTestSupport.h"

#include "skin/frmSkinEntity.h"

#include <QGuiApplication>
#include <QPalette>
#include <gtest/gtest.h>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

class SkinPaintTest : public ::testing::Test, public SkinFixture {
protected:
    // Paints the window of `size` after loading data/skins/<name>; every listed pixel must match.
    void Expect(const QString& name, int kind, QSize size,
                std::initializer_list<std::pair<QPoint, QColor>> pixels) {
        Load(name);
        ASSERT_TRUE(host.messages.isEmpty()) << host.messages.join(u'|').toStdString();
        window = std::make_unique<TestWindow>(size);
        skin.PaintAll(*window, *window->picSkin(), kind, false);
        for (const auto& [at, colour] : pixels) {
            EXPECT_EQ(window->Pixel(at.x(), at.y()), colour)
                << name.toStdString() << " at " << at.x() << "," << at.y();
        }
    }

    std::unique_ptr<TestWindow> window;
};

TEST_F(SkinPaintTest, KindWithoutPiecesShowsOnlyItsColour) {
    skin.LoadSkin();
    TestWindow window(QSize(60, 40));
    for (const auto& [kind, colour] :
         {std::pair{frmTamselSkin::KindMain, QGuiApplication::palette().color(QPalette::Button)},
          std::pair{frmTamselSkin::KindTicker, QColor(0, 0, 255)}}) {
        skin.PaintAll(window, *window.picSkin(), kind, false);
        QImage filled(window.picSkin()->Image().size(), window.picSkin()->Image().format());
        filled.fill(colour);
        EXPECT_EQ(window.picSkin()->Image(), filled) << kind;
    }
}

// Top tiles (first column dark) start at 5, 12, 19 and 26; the top-right corner covers 26 to 29
// but shows the last tile through its clear left half. Side bands start below the top band, the
// bottom band is copied at H - its thickness over them, corners come last. Negative offsets anchor
// the far side; centring does not round.
TEST_F(SkinPaintTest, BandsCornersAndEntitiesLandWhereTheSkinPlacesThem) {
    const QColor red(Qt::red), green(Qt::green), blue(Qt::blue), white(Qt::white), dark(Qt::darkGreen);
    Expect(u"Band"_s, frmTamselSkin::KindMain, QSize(30, 20),
           {{{5, 3}, dark},
            {{12, 3}, dark},
            {{19, 3}, dark},
            {{26, 3}, dark},
            {{4, 3}, red},
            {{25, 3}, green},
            {{27, 3}, green},
            {{28, 3}, blue},
            {{29, 5}, blue},
            {{15, 6}, white}});
    const QColor magenta(Qt::magenta), yellow(Qt::yellow), cyan(Qt::cyan), black(Qt::black);
    Expect(u"Sides"_s, frmTamselSkin::KindDialog, QSize(40, 30),
           {{{1, 5}, QColor(Qt::gray)},
            {{1, 6}, yellow},
            {{3, 6}, white},
            {{38, 6}, cyan},
            {{37, 6}, white},
            {{1, 25}, magenta},
            {{1, 27}, magenta},
            {{1, 28}, yellow},
            {{38, 28}, black},
            {{35, 25}, black},
            {{34, 25}, magenta},
            {{20, 15}, white}});
    Expect(u"Far"_s, frmTamselSkin::KindMain, QSize(200, 40),
           {{{179, 6}, red},
            {{198, 6}, red},
            {{178, 6}, white},
            {{199, 6}, white},
            {{10, 29}, red},
            {{10, 30}, white},
            {{10, 19}, white}});
    EXPECT_DOUBLE_EQ(skin.Entity(1)->Rect().left(), 179);
    EXPECT_DOUBLE_EQ(skin.Entity(2)->Rect().left(), 200 / 2 - 21 / 2.0);
    EXPECT_DOUBLE_EQ(skin.Entity(3)->Rect().bottom(), 40 - 10);
    // Only entities of the kind are painted, never slot 36, hidden ones only when the window asks.
    Expect(u"Kinds"_s, frmTamselSkin::KindTicker, QSize(100, 20),
           {{{5, 5}, red}, {{25, 5}, white}, {{45, 5}, white}, {{65, 5}, red}});
    skin.PaintAll(*window, *window->picSkin(), frmTamselSkin::KindTicker, true);
    EXPECT_EQ(window->Pixel(65, 5), white);
}

TEST_F(SkinPaintTest, TextsArePrintedAsTheWindowDecodesThem) {
    Expect(u"Text"_s, frmTamselSkin::KindMain, QSize(200, 40), {{{150, 20}, QColor(Qt::white)}});
    EXPECT_EQ(window->decoded, QStringList{u"Hello {user}"_s});
    const frmSkinEntity* entity = skin.Entity(1);
    // Laid out with the caption as written, placeholders included.
    EXPECT_DOUBLE_EQ(entity->Rect().width(),
                     SkinSurface::TextExtent(entity->lbl.Font, u"Hello {user}"_s).width());
    // The caption is inked in red (anti-aliased) where it was placed.
    const QImage caption = window->picSkin()
                               ->Image()
                               .copy(4, 4, 56, int(entity->Rect().height()))
                               .convertToFormat(QImage::Format_RGB32);
    const auto* pixels = reinterpret_cast<const QRgb*>(caption.constBits());
    const auto inked = std::count_if(pixels, pixels + caption.width() * caption.height(), [](QRgb p) {
        return qRed(p) > 150 && qGreen(p) < 100 && qBlue(p) < 100;
    });
    EXPECT_GT(inked, 20);
}

TEST_F(SkinPaintTest, AWindowWithoutSurfaceIsLeftAlone) {
    Load(u"Gone"_s);
    TestWindow window;
    SkinSurface other;
    other.resize(50, 50);
    window.Unload();
    skin.PaintEntities(window, other, frmTamselSkin::KindMain, false);
    EXPECT_NE(other.Image().pixelColor(5, 5), QColor(Qt::red));
    EXPECT_TRUE(window.decoded.isEmpty());
    EXPECT_FALSE(skin.SkinMouseDown(window, Qt::LeftButton, QPointF(5, 5), frmTamselSkin::KindMain, false));
}

// A doubled file serves scaled surfaces, unless it has the wrong size.
TEST_F(SkinPaintTest, DoubledPicturesServeScaledSurfaces) {
    Load(u"Hi"_s);
    const SkinPicture& p = skin.Entity(1)->img;
    EXPECT_EQ(p.Size(), QSize(4, 2));
    EXPECT_EQ(p.ForRatio(1).pixelColor(0, 0), QColor(Qt::red));
    EXPECT_EQ(p.ForRatio(2).pixelColor(0, 0), QColor(Qt::blue));
    EXPECT_EQ(p.ForRatio(2).devicePixelRatio(), 2);
    EXPECT_EQ(skin.Entity(2)->img.ForRatio(2).pixelColor(0, 0), QColor(Qt::red));
}

} // namespace
