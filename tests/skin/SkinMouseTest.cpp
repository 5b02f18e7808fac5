// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "SkinTestSupport.h"

#include "skin/frmSkinEntity.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int kKind = frmTamselSkin::KindMain;

// One button at (10, 10), 20 x 10: red normal, green hover, blue pressed, function "Close".
class SkinMouseTest : public ::testing::Test, public SkinFixture {
protected:
    void SetUp() override {
        Load(u"Mouse"_s);
        ASSERT_TRUE(host.messages.isEmpty()) << host.messages.join(u'|').toStdString();
        skin.PaintAll(window, *window.picSkin(), kKind, false);
    }

    bool Down(QPointF at) { return skin.SkinMouseDown(window, Qt::LeftButton, at, kKind, false); }
    void Move(QPointF at, Qt::MouseButtons buttons = Qt::NoButton) {
        skin.SkinMouseMove(window, buttons, at, kKind, false);
    }
    // The pointer goes to `at` and the leave detector looks once.
    void PointerAt(QPointF at) {
        host.cursor = at;
        clock.Advance(frmSkinEntity::kLeaveCheckMs);
    }
    frmSkinEntity& Button() { return *skin.Entity(1); }
    QColor Shown() { return window.Pixel(20, 15); }

    TestWindow window{QSize(100, 50)};
};

// The left button hits inside the edges only; the release calls the function in lower case;
// hidden entities are skipped when the window says so.
TEST_F(SkinMouseTest, TheLeftButtonHitsInsideTheEdgesOnly) {
    EXPECT_FALSE(skin.SkinMouseDown(window, Qt::RightButton, QPointF(20, 15), kKind, false));
    EXPECT_EQ(Shown(), QColor(Qt::red));
    EXPECT_TRUE(Down(QPointF(10.5, 15)));
    EXPECT_EQ(Shown(), QColor(Qt::blue));
    EXPECT_TRUE(Button().LeaveDetectorEnabled());
    for (QPointF outside : {QPointF(10, 15), QPointF(30, 15), QPointF(20, 10), QPointF(20, 20)}) {
        EXPECT_FALSE(Down(outside)) << outside.x() << "," << outside.y();
    }
    EXPECT_TRUE(Down(QPointF(29.9, 19.9)));

    skin.SkinMouseUp(window, Qt::RightButton, QPointF(20, 15), kKind, false);
    skin.SkinMouseUp(window, Qt::LeftButton, QPointF(40, 15), kKind, false);
    EXPECT_TRUE(window.handled.isEmpty());
    skin.SkinMouseUp(window, Qt::LeftButton, QPointF(20, 15), kKind, false);
    EXPECT_EQ(window.handled, QStringList{u"close"_s});
    // The release does not repaint; the pressed picture stays until the pointer leaves.
    EXPECT_EQ(Shown(), QColor(Qt::blue));

    Button().bHide = true;
    EXPECT_FALSE(skin.SkinMouseDown(window, Qt::LeftButton, QPointF(20, 15), kKind, true));
    skin.SkinMouseUp(window, Qt::LeftButton, QPointF(20, 15), kKind, true);
    EXPECT_EQ(window.handled.size(), 1);
    EXPECT_TRUE(Down(QPointF(20, 15)));

    // Without state pictures only a pressed caption makes a hit, and starts no leave detector.
    PointerAt(QPointF(90, 45));
    Button().imgMM = SkinPicture();
    Button().imgMD = SkinPicture();
    EXPECT_FALSE(Down(QPointF(20, 15)));
    Button().lblMM.Caption = u"Go"_s;
    Button().lblMD.Caption = u"Go"_s;
    const QSizeF extent = Button().lblMM.Extent();
    const QPointF inside(10 + extent.width() / 2, 10 + extent.height() / 2);
    EXPECT_TRUE(Down(inside));
    EXPECT_FALSE(Button().LeaveDetectorEnabled());

    // Text buttons show the hand pointer; a caption without a function is a label.
    Button().img = SkinPicture();
    Button().lbl.Caption = u"Go"_s;
    Move(inside);
    EXPECT_EQ(window.picSkin()->cursor().shape(), Qt::PointingHandCursor);
    EXPECT_TRUE(Button().LeaveDetectorEnabled());
    PointerAt(QPointF(90, 45));
    EXPECT_EQ(window.picSkin()->cursor().shape(), Qt::ArrowCursor);
    EXPECT_FALSE(Button().LeaveDetectorEnabled());
    Button().sFunction.clear();
    Move(inside);
    EXPECT_EQ(window.picSkin()->cursor().shape(), Qt::ArrowCursor);
    EXPECT_FALSE(Button().LeaveDetectorEnabled());
}

// The hover picture lasts while the pointer stays and the leave detector restores the normal one
// over the frame, not over the hover picture, even when the normal one is half transparent.
TEST_F(SkinMouseTest, HoverLastsWhileThePointerStaysAndTheLeaveDetectorRestoresIt) {
    QImage glass(20, 10, QImage::Format_ARGB32);
    glass.fill(QColor(255, 0, 0, 128));
    Button().img = SkinPicture(glass);
    Move(QPointF(20, 15));
    EXPECT_EQ(Shown(), QColor(Qt::green));
    ASSERT_TRUE(Button().LeaveDetectorEnabled());
    PointerAt(QPointF(21, 16));
    EXPECT_EQ(Shown(), QColor(Qt::green));
    EXPECT_TRUE(Button().LeaveDetectorEnabled());

    host.cursor = QPointF(30, 16); // on the right edge: outside
    clock.Advance(frmSkinEntity::kLeaveCheckMs - 1);
    EXPECT_EQ(Shown(), QColor(Qt::green));
    clock.Advance(1);
    EXPECT_EQ(Shown().green(), Shown().blue()) << Shown().name().toStdString();
    EXPECT_GT(Shown().green(), 100);
    EXPECT_GT(Shown().red(), 240);
    EXPECT_FALSE(Button().LeaveDetectorEnabled());
    EXPECT_EQ(clock.ActiveTimers(), 0);

    // Dragging with the left button shows the pressed picture, with other buttons nothing.
    const QColor restored = Shown();
    Move(QPointF(20, 15), Qt::RightButton);
    EXPECT_EQ(Shown(), restored);
    EXPECT_FALSE(Button().LeaveDetectorEnabled());
    Move(QPointF(20, 15), Qt::LeftButton);
    EXPECT_EQ(Shown(), QColor(Qt::blue));
    Move(QPointF(50, 40));
    EXPECT_EQ(Shown(), QColor(Qt::blue));

    // The detector stops when the window is gone.
    ASSERT_TRUE(Button().LeaveDetectorEnabled());
    window.Unload();
    clock.Advance(frmSkinEntity::kLeaveCheckMs);
    EXPECT_FALSE(Button().LeaveDetectorEnabled());
}

// Slot 36 is never hit; a function that loads another skin ends the walk over the entities
// (two buttons on the same spot, the first one's function reloads the skin).
TEST_F(SkinMouseTest, Slot36IsNeverHitAndAReloadEndsTheWalk) {
    Load(u"Last"_s, u"defineentity 36\ntext Close\nfunction close\n"
                    "defineentity 1\ntext Reload\nfunction reload\nwindow dialog\n"
                    "defineentity 2\ntext Reload\nfunction other\nwindow dialog\n"_s);
    const QSizeF extent = skin.Entity(36)->lbl.Extent();
    const QPointF inside(extent.width() / 2, extent.height() / 2);
    EXPECT_FALSE(Down(inside));
    skin.SkinMouseUp(window, Qt::LeftButton, inside, kKind, false);
    EXPECT_TRUE(window.handled.isEmpty());

    window.onHandler = [this](const QString&) { skin.LoadSkin(); };
    skin.SkinMouseUp(window, Qt::LeftButton, inside, frmTamselSkin::KindDialog, false);
    EXPECT_EQ(window.handled, QStringList{u"reload"_s});
    EXPECT_NE(skin.Entity(2), nullptr);
}

} // namespace
