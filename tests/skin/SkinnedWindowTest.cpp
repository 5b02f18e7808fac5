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
        WritePicture(QStringLiteral("Win"), QStringLiteral("x.png"), QSize(16, 16), Qt::red);
        Load(QStringLiteral("Win"), QStringLiteral("defineframe channel\nframecolor &hFFFFFF\n"
                                                   "defineentity 1\nwindow channel\nimage x.png\n"
                                                   "function Close\ntop 6\nleft -6\n"));
        ASSERT_TRUE(host.messages.isEmpty());
        window.resize(160, 100);
        window.show();
    }

    RecordingWindow window{skin, frmTamselSkin::KindChannel};
};

TEST_F(SkinnedWindowTest, StartsWithoutANativeFrameAndItsSurfaceCoversAndFollowsIt) {
    EXPECT_FALSE(window.Framed());
    EXPECT_TRUE(window.windowFlags().testFlag(Qt::FramelessWindowHint));
    EXPECT_EQ(window.picSkin()->geometry(), window.rect());
    EXPECT_EQ(window.picSkin()->Image().pixelColor(140, 10), QColor(Qt::red));
    EXPECT_EQ(window.picSkin()->Image().pixelColor(80, 50), QColor(Qt::white));
    // Another skin, and another size, repaint the window.
    Load(QStringLiteral("Plain"), QStringLiteral("defineframe channel\nframecolor &hFF0000\n"));
    EXPECT_EQ(window.picSkin()->Image().pixelColor(140, 10), QColor(Qt::blue));
    EXPECT_EQ(window.picSkin()->Image().pixelColor(80, 50), QColor(Qt::blue));
    window.resize(200, 120);
    EXPECT_EQ(window.picSkin()->Image().size(), QSize(200, 120));
    EXPECT_EQ(window.picSkin()->Image().pixelColor(190, 110), QColor(Qt::blue));
}

TEST_F(SkinnedWindowTest, PressesThatNoEntityTakesMoveOrResizeTheWindow) {
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
}

TEST_F(SkinnedWindowTest, WithTheNativeFrameTheSkinNeitherMovesNorResizes) {
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
}

TEST_F(SkinnedWindowTest, ThePointerShowsTheSizingArrowsAndHoverIsHandedToTheSkin) {
    window.Move(QPointF(158, 98));
    EXPECT_EQ(window.picSkin()->cursor().shape(), Qt::SizeFDiagCursor);
    window.Move(QPointF(80, 50));
    EXPECT_FALSE(window.picSkin()->testAttribute(Qt::WA_SetCursor));
    WritePicture(QStringLiteral("Win"), QStringLiteral("h.png"), QSize(16, 16), Qt::green);
    Load(QStringLiteral("Win"),
         QStringLiteral("defineframe channel\nframecolor &hFFFFFF\n"
                        "defineentity 1\nwindow channel\nimage x.png\nimagemousemove h.png\n"
                        "function Close\ntop 6\nleft -6\n"));
    window.Move(QPointF(145, 14));
    EXPECT_EQ(window.picSkin()->Image().pixelColor(140, 10), QColor(Qt::green));
}

} // namespace
