// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "SkinTestSupport.h"

#include "skin/SkinnedWindow.h"
#include "skin/clsStyle.h"

#include <gtest/gtest.h>

namespace {

constexpr Qt::Edges kMove;

// The grab size is four pixels from each edge; the pointer shows the matching sizing arrow.
TEST(SkinnedWindowZoneTest, GrabSizeFourFromEachEdge) {
    const Qt::Edges tl = Qt::LeftEdge | Qt::TopEdge, br = Qt::RightEdge | Qt::BottomEdge;
    const Qt::Edges tr = Qt::RightEdge | Qt::TopEdge, bl = Qt::LeftEdge | Qt::BottomEdge;
    const std::tuple<QPointF, Qt::Edges, Qt::CursorShape> zones[] = {
        {{0, 0}, tl, Qt::SizeFDiagCursor},
        {{4, 4}, tl, Qt::SizeFDiagCursor},
        {{4, 76}, bl, Qt::SizeBDiagCursor},
        {{2, 40}, Qt::LeftEdge, Qt::SizeHorCursor},
        {{96, 4}, tr, Qt::SizeBDiagCursor},
        {{50, 0}, Qt::TopEdge, Qt::SizeVerCursor},
        {{50, 4}, Qt::TopEdge, Qt::SizeVerCursor},
        {{96, 76}, br, Qt::SizeFDiagCursor},
        {{99, 40}, Qt::RightEdge, Qt::SizeHorCursor},
        {{50, 79}, Qt::BottomEdge, Qt::SizeVerCursor},
        {{5, 5}, kMove, Qt::ArrowCursor},
        {{95, 75}, kMove, Qt::ArrowCursor},
        {{4.5, 40}, kMove, Qt::ArrowCursor}};
    for (const auto& [at, edges, cursor] : zones) {
        EXPECT_EQ(SkinnedWindow::EdgeZone(at, QSizeF(100, 80)), edges) << at.x() << "," << at.y();
        EXPECT_EQ(SkinnedWindow::ZoneCursor(edges), cursor) << at.x() << "," << at.y();
    }
}

// A skinned window that records what it is asked to do.
class RecordingWindow final : public SkinnedWindow {
public:
    using SkinnedWindow::SkinnedWindow;
    QString DecodeText(const QString& text) override { return text; }
    void SkinHandler(const QString& function) override { handled.append(function); }

    void Press(QPointF at, Qt::MouseButton button = Qt::LeftButton) {
        Q_EMIT picSkin()->MousePressed(button, at);
    }
    void Move(QPointF at, Qt::MouseButtons buttons = Qt::NoButton) {
        Q_EMIT picSkin()->MouseMoved(buttons, at);
    }
    void Release(QPointF at) { Q_EMIT picSkin()->MouseReleased(Qt::LeftButton, at); }

    QStringList handled;
    QList<Qt::Edges> drags;

protected:
    void BeginSystemDrag(Qt::Edges edges) override { drags.append(edges); }
};

class SkinnedWindowTest : public ::testing::Test, public SkinFixture {
protected:
    void SetUp() override {
        Load(QStringLiteral("Win"));
        ASSERT_TRUE(host.messages.isEmpty());
        window.resize(160, 100);
        window.show();
    }

    QColor Pixel(int x, int y) { return window.picSkin()->Image().pixelColor(x, y); }

    RecordingWindow window{skin, frmTamselSkin::KindChannel};
};

// The window starts without a native frame; its surface covers and follows it, another skin and
// another size repaint it. Presses that no entity takes move or resize the window.
TEST_F(SkinnedWindowTest, ItsSurfaceFollowsItAndPressesBesideTheEntitiesMoveOrResizeIt) {
    EXPECT_FALSE(window.Framed());
    EXPECT_TRUE(window.windowFlags().testFlag(Qt::FramelessWindowHint));
    EXPECT_EQ(window.picSkin()->geometry(), window.rect());
    EXPECT_EQ(Pixel(140, 10), QColor(Qt::red));
    EXPECT_EQ(Pixel(80, 50), QColor(Qt::white));
    window.Press(QPointF(80, 50));
    window.Press(QPointF(1, 1));
    window.Press(QPointF(159, 50));
    window.Press(QPointF(80, 50), Qt::RightButton);
    EXPECT_EQ(window.drags, (QList<Qt::Edges>{kMove, Qt::LeftEdge | Qt::TopEdge, Qt::RightEdge}));
    window.drags.clear();
    window.Press(QPointF(145, 14));
    EXPECT_TRUE(window.drags.isEmpty());
    window.Release(QPointF(145, 14));
    EXPECT_EQ(window.handled, QStringList{QStringLiteral("close")});

    Load(QStringLiteral("Plain"), QStringLiteral("defineframe channel\nframecolor &hFF0000\n"));
    EXPECT_EQ(Pixel(140, 10), QColor(Qt::blue));
    EXPECT_EQ(Pixel(80, 50), QColor(Qt::blue));
    window.resize(200, 120);
    EXPECT_EQ(window.picSkin()->Image().size(), QSize(200, 120));
    EXPECT_EQ(Pixel(190, 110), QColor(Qt::blue));
}

// With the native frame the skin neither moves nor resizes; without it the pointer shows the
// sizing arrows and hover is handed to the skin.
TEST_F(SkinnedWindowTest, TheNativeFrameTakesOverMovingAndSizing) {
    window.SetFramed(true);
    EXPECT_TRUE(window.Framed());
    EXPECT_FALSE(window.windowFlags().testFlag(Qt::FramelessWindowHint));
    EXPECT_TRUE(window.WindowStyle().Sizable());
    window.Press(QPointF(80, 50));
    window.Move(QPointF(1, 50));
    EXPECT_TRUE(window.drags.isEmpty());
    EXPECT_FALSE(window.picSkin()->testAttribute(Qt::WA_SetCursor));
    window.SetFramed(false);
    window.Press(QPointF(80, 50));
    EXPECT_EQ(window.drags.size(), 1);

    window.Move(QPointF(158, 98));
    EXPECT_EQ(window.picSkin()->cursor().shape(), Qt::SizeFDiagCursor);
    window.Move(QPointF(80, 50));
    EXPECT_FALSE(window.picSkin()->testAttribute(Qt::WA_SetCursor));
    Load(QStringLiteral("Win"), QStringLiteral("defineframe channel\nframecolor &hFFFFFF\ndefineentity 1\n"
                                               "window channel\nimage x.png\nimagemousemove h.png\n"
                                               "function Close\ntop 6\nleft -6\n"));
    window.Move(QPointF(145, 14));
    EXPECT_EQ(Pixel(140, 10), QColor(Qt::green));
}

} // namespace
