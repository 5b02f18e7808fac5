// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "SkinTestSupport.h"

#include "skin/frmSkinEntity.h"

#include <gtest/gtest.h>

namespace {

constexpr int kKind = frmTamselSkin::KindMain;

// One button at (10, 10), 20 x 10: red normal, green hover, blue pressed, function "Close".
class SkinMouseTest : public ::testing::Test, public SkinFixture {
protected:
    void SetUp() override {
        WritePicture(QStringLiteral("Mouse"), QStringLiteral("n.png"), QSize(20, 10), Qt::red);
        WritePicture(QStringLiteral("Mouse"), QStringLiteral("h.png"), QSize(20, 10), Qt::green);
        WritePicture(QStringLiteral("Mouse"), QStringLiteral("d.png"), QSize(20, 10), Qt::blue);
        Load(QStringLiteral("Mouse"),
             QStringLiteral("defineframe main\nframecolor &hFFFFFF\n"
                            "defineentity 1\nimage n.png\nimagemousemove h.png\n"
                            "imagemousedown d.png\nfunction Close\ntop 10\nleft 10\n"));
        ASSERT_TRUE(host.messages.isEmpty()) << host.messages.join(u'|').toStdString();
        skin.PaintAll(window, *window.picSkin(), kKind, false);
    }

    bool Down(QPointF at) { return skin.SkinMouseDown(window, Qt::LeftButton, at, kKind, false); }
    void Up(QPointF at, Qt::MouseButton button = Qt::LeftButton) {
        skin.SkinMouseUp(window, button, at, kKind, false);
    }
    frmSkinEntity& Button() { return *skin.Entity(1); }

    TestWindow window{QSize(100, 50)};
};

// The left button hits inside the edges only; the release calls the function in lower case;
// hidden entities are skipped when the window says so.
TEST_F(SkinMouseTest, TheLeftButtonHitsInsideTheEdgesOnly) {
    EXPECT_FALSE(skin.SkinMouseDown(window, Qt::RightButton, QPointF(20, 15), kKind, false));
    EXPECT_EQ(window.Pixel(20, 15), QColor(Qt::red));
    EXPECT_TRUE(Down(QPointF(10.5, 15)));
    EXPECT_EQ(window.Pixel(20, 15), QColor(Qt::blue));
    EXPECT_TRUE(Button().LeaveDetectorEnabled());
    for (QPointF outside : {QPointF(10, 15), QPointF(30, 15), QPointF(20, 10), QPointF(20, 20)}) {
        EXPECT_FALSE(Down(outside)) << outside.x() << "," << outside.y();
    }
    EXPECT_TRUE(Down(QPointF(29.9, 19.9)));

    Up(QPointF(20, 15), Qt::RightButton);
    Up(QPointF(40, 15));
    EXPECT_TRUE(window.handled.isEmpty());
    Up(QPointF(20, 15));
    EXPECT_EQ(window.handled, QStringList{QStringLiteral("close")});
    // The release does not repaint; the pressed picture stays until the pointer leaves.
    EXPECT_EQ(window.Pixel(20, 15), QColor(Qt::blue));

    Button().bHide = true;
    EXPECT_FALSE(skin.SkinMouseDown(window, Qt::LeftButton, QPointF(20, 15), kKind, true));
    skin.SkinMouseUp(window, Qt::LeftButton, QPointF(20, 15), kKind, true);
    EXPECT_EQ(window.handled.size(), 1);
    EXPECT_TRUE(Down(QPointF(20, 15)));
}

TEST_F(SkinMouseTest, WithoutStatePicturesOnlyAPressedCaptionMakesAHit) {
    frmSkinEntity& entity = Button();
    entity.imgMM = SkinPicture();
    entity.imgMD = SkinPicture();
    EXPECT_FALSE(Down(QPointF(20, 15)));
    entity.lblMM.Caption = QStringLiteral("Go");
    entity.lblMD.Caption = QStringLiteral("Go");
    const QSizeF extent = entity.lblMM.Extent();
    EXPECT_TRUE(Down(QPointF(10 + extent.width() / 2, 10 + extent.height() / 2)));
    EXPECT_FALSE(entity.LeaveDetectorEnabled());
}

TEST_F(SkinMouseTest, HoverLastsWhileThePointerStaysAndTheLeaveDetectorRestoresIt) {
    skin.SkinMouseMove(window, Qt::NoButton, QPointF(20, 15), kKind, false);
    EXPECT_EQ(window.Pixel(20, 15), QColor(Qt::green));
    ASSERT_TRUE(Button().LeaveDetectorEnabled());

    host.cursor = QPointF(21, 16);
    clock.Advance(frmSkinEntity::kLeaveCheckMs);
    EXPECT_EQ(window.Pixel(20, 15), QColor(Qt::green));
    EXPECT_TRUE(Button().LeaveDetectorEnabled());

    host.cursor = QPointF(30, 16); // on the right edge: outside
    clock.Advance(frmSkinEntity::kLeaveCheckMs - 1);
    EXPECT_EQ(window.Pixel(20, 15), QColor(Qt::green));
    clock.Advance(1);
    EXPECT_EQ(window.Pixel(20, 15), QColor(Qt::red));
    EXPECT_FALSE(Button().LeaveDetectorEnabled());
    EXPECT_EQ(clock.ActiveTimers(), 0);

    // Dragging with the left button shows the pressed picture, with other buttons nothing.
    skin.SkinMouseMove(window, Qt::RightButton, QPointF(20, 15), kKind, false);
    EXPECT_EQ(window.Pixel(20, 15), QColor(Qt::red));
    EXPECT_FALSE(Button().LeaveDetectorEnabled());
    skin.SkinMouseMove(window, Qt::LeftButton, QPointF(20, 15), kKind, false);
    EXPECT_EQ(window.Pixel(20, 15), QColor(Qt::blue));
    skin.SkinMouseMove(window, Qt::NoButton, QPointF(50, 40), kKind, false);
    EXPECT_EQ(window.Pixel(20, 15), QColor(Qt::blue));
}

TEST_F(SkinMouseTest, StatesAreShownOverTheFrameNotOverEachOther) {
    // A half-transparent normal picture must not keep the hover picture visible through it.
    QImage glass(20, 10, QImage::Format_ARGB32);
    glass.fill(QColor(255, 0, 0, 128));
    Button().img = SkinPicture(glass);
    skin.SkinMouseMove(window, Qt::NoButton, QPointF(20, 15), kKind, false);
    host.cursor = QPointF(80, 40);
    clock.Advance(frmSkinEntity::kLeaveCheckMs);
    const QColor pixel = window.Pixel(20, 15);
    EXPECT_EQ(pixel.green(), pixel.blue()) << pixel.name().toStdString();
    EXPECT_GT(pixel.green(), 100);
    EXPECT_GT(pixel.red(), 240);
}

TEST_F(SkinMouseTest, TextButtonsShowTheHandPointer) {
    frmSkinEntity& entity = Button();
    entity.img = entity.imgMM = entity.imgMD = SkinPicture();
    entity.lbl.Caption = entity.lblMM.Caption = entity.lblMD.Caption = QStringLiteral("Close me");
    const QSizeF extent = entity.lbl.Extent();
    const QPointF inside(10 + extent.width() / 2, 10 + extent.height() / 2);
    skin.SkinMouseMove(window, Qt::NoButton, inside, kKind, false);
    EXPECT_EQ(window.picSkin()->cursor().shape(), Qt::PointingHandCursor);
    EXPECT_TRUE(entity.LeaveDetectorEnabled());
    host.cursor = QPointF(90, 45);
    clock.Advance(frmSkinEntity::kLeaveCheckMs);
    EXPECT_EQ(window.picSkin()->cursor().shape(), Qt::ArrowCursor);
    EXPECT_FALSE(entity.LeaveDetectorEnabled());

    // A caption without a function is a label: no pointer, no detector.
    entity.sFunction.clear();
    skin.SkinMouseMove(window, Qt::NoButton, inside, kKind, false);
    EXPECT_EQ(window.picSkin()->cursor().shape(), Qt::ArrowCursor);
    EXPECT_FALSE(entity.LeaveDetectorEnabled());
}

TEST_F(SkinMouseTest, TheLeaveDetectorStopsWhenTheWindowIsGone) {
    skin.SkinMouseMove(window, Qt::NoButton, QPointF(20, 15), kKind, false);
    ASSERT_TRUE(Button().LeaveDetectorEnabled());
    window.Unload();
    clock.Advance(frmSkinEntity::kLeaveCheckMs);
    EXPECT_FALSE(Button().LeaveDetectorEnabled());
}

TEST_F(SkinMouseTest, Slot36IsNeverHit) {
    Load(QStringLiteral("Last"), QStringLiteral("defineentity 36\ntext Close\nfunction close\n"));
    const QSizeF extent = skin.Entity(36)->lbl.Extent();
    const QPointF inside(extent.width() / 2, extent.height() / 2);
    EXPECT_FALSE(skin.SkinMouseDown(window, Qt::LeftButton, inside, kKind, false));
    skin.SkinMouseUp(window, Qt::LeftButton, inside, kKind, false);
    EXPECT_TRUE(window.handled.isEmpty());
}

TEST_F(SkinMouseTest, AFunctionThatLoadsAnotherSkinEndsTheWalk) {
    // Two buttons on the same spot; the first one's function reloads the skin.
    Load(QStringLiteral("Twice"), QStringLiteral("defineentity 1\ntext Reload\nfunction reload\n"
                                                 "defineentity 2\ntext Reload\nfunction other\n"));
    window.onHandler = [this](const QString&) { skin.LoadSkin(); };
    const QSizeF extent = skin.Entity(1)->lbl.Extent();
    skin.SkinMouseUp(window, Qt::LeftButton, QPointF(extent.width() / 2, extent.height() / 2), kKind, false);
    EXPECT_EQ(window.handled, QStringList{QStringLiteral("reload")});
    EXPECT_NE(skin.Entity(2), nullptr);
}

} // namespace
