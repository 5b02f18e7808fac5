// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "SkinTestSupport.h"

#include "skin/frmSkinEntity.h"

#include <QGuiApplication>
#include <QPalette>

using namespace Qt::StringLiterals;

namespace {

class SkinPaintTest : public ::testing::Test, public SkinFixture {
protected:
    // Loads data/skins/<name> and paints a window as its line of data/paint.txt says ("name kind
    // WxH x,y=#rrggbb..."); every listed pixel must match.
    void Paint(const QString& name) {
        const QStringList words =
            DataText(u"paint.txt"_s).split(u'\n').filter(name + u' ').value(0).split(u' ');
        ASSERT_GE(words.size(), 4) << name.toStdString();
        Load(name);
        ASSERT_TRUE(host.messages.isEmpty()) << host.messages.join(u'|').toStdString();
        window = std::make_unique<TestWindow>(
            QSize(words.at(2).section(u'x', 0, 0).toInt(), words.at(2).section(u'x', 1).toInt()));
        skin.PaintAll(*window, *window->picSkin(), words.at(1).toInt(), false);
        for (const QString& pixel : words.mid(3)) {
            const QStringList at = pixel.section(u'=', 0, 0).split(u',');
            EXPECT_EQ(window->Pixel(at.at(0).toInt(), at.at(1).toInt()),
                      QColor::fromString(pixel.section(u'=', 1)))
                << name.toStdString() << " at " << pixel.toStdString();
        }
    }

    std::unique_ptr<TestWindow> window;
};

// A kind without pieces shows only its colour. Top tiles (first column dark) start at 5, 12, 19
// and 26; the top-right corner covers 26 to 29 but shows the last tile through its clear left
// half. Side bands start below the top band, the bottom band is copied at H - its thickness over
// them, corners come last. Negative offsets anchor the far side; centring does not round. Texts are
// laid out with the caption as written and printed as the window decodes them.
TEST_F(SkinPaintTest, BandsCornersEntitiesTextsAndDoubledPicturesLandWhereTheSkinPlacesThem) {
    skin.LoadSkin();
    TestWindow plain(QSize(60, 40));
    for (const auto& [kind, colour] :
         {std::pair{frmTamselSkin::KindMain, QGuiApplication::palette().color(QPalette::Button)},
          std::pair{frmTamselSkin::KindTicker, QColor(0, 0, 255)}}) {
        skin.PaintAll(plain, *plain.picSkin(), kind, false);
        QImage filled(plain.picSkin()->Image().size(), plain.picSkin()->Image().format());
        filled.fill(colour);
        EXPECT_EQ(plain.picSkin()->Image(), filled) << kind;
    }
    for (const QString& name : {u"Band"_s, u"Sides"_s, u"Far"_s}) {
        Paint(name);
    }
    EXPECT_EQ(Summary(skin.Entity(1)->Rect().left(), skin.Entity(2)->Rect().left(),
                      skin.Entity(3)->Rect().bottom()),
              Summary(179, 200 / 2 - 21 / 2.0, 40 - 10));
    // Only entities of the kind are painted, never slot 36, hidden ones only when the window asks.
    Paint(u"Kinds"_s);
    skin.PaintAll(*window, *window->picSkin(), frmTamselSkin::KindTicker, true);
    EXPECT_EQ(window->Pixel(65, 5), QColor(Qt::white));

    Paint(u"Text"_s);
    EXPECT_EQ(window->decoded, QStringList{u"Hello {user}"_s});
    const QRectF placed = skin.Entity(1)->Rect();
    EXPECT_DOUBLE_EQ(placed.width(),
                     SkinSurface::TextExtent(skin.Entity(1)->lbl.Font, u"Hello {user}"_s).width());
    // The caption is inked in red (anti-aliased) where it was placed.
    int inked = 0;
    for (int x = 4; x < 60; ++x) {
        for (int y = 4; y < 4 + int(placed.height()); ++y) {
            const QColor pixel = window->Pixel(x, y);
            inked += pixel.red() > 150 && pixel.green() < 100 && pixel.blue() < 100;
        }
    }
    EXPECT_GT(inked, 20);

    // A window without surface is left alone; a doubled file serves scaled surfaces, unless it has
    // the wrong size.
    Load(u"Gone"_s);
    TestWindow gone;
    TestWindow other(QSize(50, 50));
    gone.Unload();
    skin.PaintEntities(gone, *other.picSkin(), frmTamselSkin::KindMain, false);
    EXPECT_NE(other.Pixel(5, 5), QColor(Qt::red));
    EXPECT_TRUE(gone.decoded.isEmpty());
    EXPECT_FALSE(skin.SkinMouseDown(gone, Qt::LeftButton, QPointF(5, 5), frmTamselSkin::KindMain, false));

    Load(u"Hi"_s);
    const SkinPicture& p = skin.Entity(1)->img;
    EXPECT_EQ(Summary(p.Size().width(), p.Size().height(), p.ForRatio(1).pixelColor(0, 0),
                      p.ForRatio(2).pixelColor(0, 0), p.ForRatio(2).devicePixelRatio(),
                      skin.Entity(2)->img.ForRatio(2).pixelColor(0, 0)),
              u"4 2 #ff0000 #0000ff 2 #ff0000"_s);
}

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
    // The button's colour, whether the leave detector runs, the pointer shape (0 arrow, 13 hand).
    QString State() {
        return Summary(window.Pixel(20, 15), Button().LeaveDetectorEnabled(),
                       window.picSkin()->cursor().shape());
    }

    TestWindow window{QSize(100, 50)};
};

// The left button hits inside the edges only; the release calls the function in lower case;
// hidden entities are skipped when the window says so.
TEST_F(SkinMouseTest, TheLeftButtonHitsInsideTheEdgesOnlyAndAReloadEndsTheWalk) {
    EXPECT_FALSE(skin.SkinMouseDown(window, Qt::RightButton, QPointF(20, 15), kKind, false));
    EXPECT_EQ(State(), u"#ff0000 0 0"_s);
    EXPECT_TRUE(Down(QPointF(10.5, 15)));
    EXPECT_EQ(State(), u"#0000ff 1 0"_s);
    for (QPointF outside : {QPointF(10, 15), QPointF(30, 15), QPointF(20, 10), QPointF(20, 20)}) {
        EXPECT_FALSE(Down(outside)) << outside.x() << "," << outside.y();
    }
    EXPECT_TRUE(Down(QPointF(29.9, 19.9)));

    skin.SkinMouseUp(window, Qt::RightButton, QPointF(20, 15), kKind, false);
    skin.SkinMouseUp(window, Qt::LeftButton, QPointF(40, 15), kKind, false);
    skin.SkinMouseUp(window, Qt::LeftButton, QPointF(20, 15), kKind, false);
    EXPECT_EQ(window.handled, QStringList{u"close"_s});
    // The release does not repaint; the pressed picture stays until the pointer leaves.
    EXPECT_EQ(State(), u"#0000ff 1 0"_s);

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
    EXPECT_EQ(State().section(u' ', 1), u"1 13"_s);
    PointerAt(QPointF(90, 45));
    EXPECT_EQ(State().section(u' ', 1), u"0 0"_s);
    Button().sFunction.clear();
    Move(inside);
    EXPECT_EQ(State().section(u' ', 1), u"0 0"_s);

    // Slot 36 is never hit; a function that loads another skin ends the walk over the entities
    // (data/skins/Last: two buttons on the same spot, the first one's function reloads the skin).
    Load(u"Last"_s);
    const QSizeF corner = skin.Entity(36)->lbl.Extent();
    const QPointF onBoth(corner.width() / 2, corner.height() / 2);
    EXPECT_FALSE(Down(onBoth));
    skin.SkinMouseUp(window, Qt::LeftButton, onBoth, kKind, false);
    window.onHandler = [this](const QString&) { skin.LoadSkin(); };
    skin.SkinMouseUp(window, Qt::LeftButton, onBoth, frmTamselSkin::KindDialog, false);
    EXPECT_EQ(window.handled, (QStringList{u"close"_s, u"reload"_s}));
    EXPECT_NE(skin.Entity(2), nullptr);
}

// The hover picture lasts while the pointer stays and the leave detector restores the normal one
// over the frame, not over the hover picture, even when the normal one is half transparent.
TEST_F(SkinMouseTest, HoverLastsWhileThePointerStaysAndTheLeaveDetectorRestoresIt) {
    QImage glass(20, 10, QImage::Format_ARGB32);
    glass.fill(QColor(255, 0, 0, 128));
    Button().img = SkinPicture(glass);
    Move(QPointF(20, 15));
    ASSERT_EQ(State(), u"#00ff00 1 0"_s);
    PointerAt(QPointF(21, 16));
    EXPECT_EQ(State(), u"#00ff00 1 0"_s);

    host.cursor = QPointF(30, 16); // on the right edge: outside
    clock.Advance(frmSkinEntity::kLeaveCheckMs - 1);
    EXPECT_EQ(State(), u"#00ff00 1 0"_s);
    clock.Advance(1);
    const QColor restored = window.Pixel(20, 15);
    EXPECT_TRUE(restored.green() == restored.blue() && restored.green() > 100 && restored.red() > 240)
        << restored.name().toStdString();
    EXPECT_EQ(State(), Summary(restored, 0, 0));
    EXPECT_EQ(clock.ActiveTimers(), 0);

    // Dragging with the left button shows the pressed picture, with other buttons nothing.
    Move(QPointF(20, 15), Qt::RightButton);
    EXPECT_EQ(State(), Summary(restored, 0, 0));
    Move(QPointF(20, 15), Qt::LeftButton);
    EXPECT_EQ(State(), u"#0000ff 1 0"_s);
    Move(QPointF(50, 40));
    EXPECT_EQ(State(), u"#0000ff 1 0"_s);

    // The detector stops when the window is gone.
    window.Unload();
    clock.Advance(frmSkinEntity::kLeaveCheckMs);
    EXPECT_FALSE(Button().LeaveDetectorEnabled());
}

} // namespace
