// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "SkinTestSupport.h"

#include "skin/SkinnedWindow.h"
#include "skin/clsStyle.h"
#include "skin/frmSkinEntity.h"

#include <QAction>
#include <QApplication>
#include <QMenu>
#include <QMouseEvent>
#include <QPalette>
#include <QSignalSpy>
#include <QWidget>

#include <functional>

using namespace Qt::StringLiterals;

namespace {

constexpr int kKind = frmTamselSkin::KindMain;

// The skin engine, and the window it painted last.
class SkinPaintTest : public ::testing::Test, public SkinFixture {
protected:
    // Loads data/skins/<name> and paints a window as its line of data/paint.txt says ("name kind
    // WxH x,y=#rrggbb..."); every listed pixel must match.
    void Paint(const QString& name) {
        const QStringList words =
            DataText(u"paint.txt"_s).split(u'\n').filter(name + u' ').value(0).split(u' ');
        ASSERT_GE(words.size(), 4) << name.toStdString();
        ASSERT_EQ(Load(name), QString());
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

    bool Down(QPointF at) { return skin.SkinMouseDown(*window, Qt::LeftButton, at, kKind, false); }
    void Move(QPointF at, Qt::MouseButtons buttons = Qt::NoButton) {
        skin.SkinMouseMove(*window, buttons, at, kKind, false);
    }
    // The pointer goes to `at` and the leave detector looks once.
    void PointerAt(QPointF at) {
        host.cursor = at;
        clock.Advance(frmSkinEntity::kLeaveCheckMs);
    }
    frmSkinEntity& Button() { return *skin.Entity(1); }
    // The button's colour, whether the leave detector runs, the pointer shape (0 arrow, 13 hand).
    QString State() {
        return Summary(window->Pixel(20, 15), Button().LeaveDetectorEnabled(),
                       window->picSkin()->cursor().shape());
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
         {std::pair{frmTamselSkin::KindMain, QApplication::palette().color(QPalette::Button)},
          std::pair{frmTamselSkin::KindTicker, QColor(0, 0, 255)}}) {
        skin.PaintAll(plain, *plain.picSkin(), kind, false);
        QImage filled(plain.picSkin()->Image().size(), plain.picSkin()->Image().format());
        filled.fill(colour);
        EXPECT_EQ(plain.picSkin()->Image(), filled) << kind;
    }
    for (const QString& name : {u"Band"_s, u"Sides"_s, u"Far"_s}) {
        ASSERT_NO_FATAL_FAILURE(Paint(name));
    }
    EXPECT_EQ(Summary(skin.Entity(1)->Rect().left(), skin.Entity(2)->Rect().left(),
                      skin.Entity(3)->Rect().bottom()),
              Summary(179, 200 / 2 - 21 / 2.0, 40 - 10));
    // Only entities of the kind are painted, never slot 36, hidden ones only when the window asks.
    ASSERT_NO_FATAL_FAILURE(Paint(u"Kinds"_s));
    skin.PaintAll(*window, *window->picSkin(), frmTamselSkin::KindTicker, true);
    EXPECT_EQ(window->Pixel(65, 5), QColor(Qt::white));

    ASSERT_NO_FATAL_FAILURE(Paint(u"Text"_s));
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

// data/skins/Mouse: one button at (10, 10), 20 x 10: red normal, green hover, blue pressed, function
// "Close". The left button hits inside the edges only; the release calls the function in lower case;
// hidden entities are skipped when the window says so.
TEST_F(SkinPaintTest, TheLeftButtonHitsInsideTheEdgesOnlyAndAReloadEndsTheWalk) {
    ASSERT_NO_FATAL_FAILURE(Paint(u"Mouse"_s));
    EXPECT_FALSE(skin.SkinMouseDown(*window, Qt::RightButton, QPointF(20, 15), kKind, false));
    EXPECT_EQ(State(), u"#ff0000 0 0"_s);
    EXPECT_TRUE(Down(QPointF(10.5, 15)));
    EXPECT_EQ(State(), u"#0000ff 1 0"_s);
    for (QPointF outside : {QPointF(10, 15), QPointF(30, 15), QPointF(20, 10), QPointF(20, 20)}) {
        EXPECT_FALSE(Down(outside)) << outside.x() << "," << outside.y();
    }
    EXPECT_TRUE(Down(QPointF(29.9, 19.9)));

    skin.SkinMouseUp(*window, Qt::RightButton, QPointF(20, 15), kKind, false);
    skin.SkinMouseUp(*window, Qt::LeftButton, QPointF(40, 15), kKind, false);
    skin.SkinMouseUp(*window, Qt::LeftButton, QPointF(20, 15), kKind, false);
    EXPECT_EQ(window->handled, QStringList{u"close"_s});
    // The release does not repaint; the pressed picture stays until the pointer leaves.
    EXPECT_EQ(State(), u"#0000ff 1 0"_s);

    Button().bHide = true;
    EXPECT_FALSE(skin.SkinMouseDown(*window, Qt::LeftButton, QPointF(20, 15), kKind, true));
    skin.SkinMouseUp(*window, Qt::LeftButton, QPointF(20, 15), kKind, true);
    EXPECT_EQ(window->handled.size(), 1);
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
    skin.SkinMouseUp(*window, Qt::LeftButton, onBoth, kKind, false);
    window->onHandler = [this](const QString&) { skin.LoadSkin(); };
    skin.SkinMouseUp(*window, Qt::LeftButton, onBoth, frmTamselSkin::KindDialog, false);
    EXPECT_EQ(window->handled, (QStringList{u"close"_s, u"reload"_s}));
    EXPECT_NE(skin.Entity(2), nullptr);
}

// The hover picture lasts while the pointer stays and the leave detector restores the normal one
// over the frame, not over the hover picture, even when the normal one is half transparent.
TEST_F(SkinPaintTest, HoverLastsWhileThePointerStaysAndTheLeaveDetectorRestoresIt) {
    ASSERT_NO_FATAL_FAILURE(Paint(u"Mouse"_s));
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
    const QColor restored = window->Pixel(20, 15);
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
    window->Unload();
    clock.Advance(frmSkinEntity::kLeaveCheckMs);
    EXPECT_FALSE(Button().LeaveDetectorEnabled());
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
    void Move(QPointF at) { Q_EMIT picSkin()->MouseMoved(Qt::NoButton, at); }
    // Pixels at the button and in the middle, the drags begun, whether the surface sets a pointer.
    QString State() {
        return Summary(picSkin()->Image().pixelColor(140, 10), picSkin()->Image().pixelColor(80, 50),
                       drags.join(u','), picSkin()->testAttribute(Qt::WA_SetCursor));
    }

    QStringList handled;
    // The edge bits of each drag begun.
    QStringList drags;

protected:
    void BeginSystemDrag(Qt::Edges edges) override { drags.append(QString::number(edges.toInt())); }
};

// The window starts without a native frame; its surface covers and follows it, another skin and
// another size repaint it. Presses that no entity takes move (0) or resize (edge bits: 1 top,
// 2 left, 4 right, 8 bottom) the window. With the native frame the skin neither moves nor
// resizes; without it the pointer shows the sizing arrows and hover is handed to the skin.
TEST(SkinnedWindowTest, ItsSurfaceFollowsItAndPressesBesideTheEntitiesMoveOrResizeIt) {
    // data/zones.txt: a point of a 100 x 80 window => its edge bits and pointer.
    ExpectTable("zones.txt", 13, [](const QString& at) {
        const Qt::Edges edges = SkinnedWindow::EdgeZone(
            QPointF(at.section(u',', 0, 0).toDouble(), at.section(u',', 1).toDouble()), QSizeF(100, 80));
        return Summary(edges.toInt(), SkinnedWindow::ZoneCursor(edges));
    });

    SkinFixture fixture;
    ASSERT_EQ(fixture.Load(u"Win"_s), QString());
    RecordingWindow window{fixture.skin, frmTamselSkin::KindChannel};
    window.resize(160, 100);
    window.show();
    EXPECT_EQ(Summary(window.Framed(), window.windowFlags().testFlag(Qt::FramelessWindowHint),
                      window.picSkin()->geometry() == window.rect()),
              u"0 1 1"_s);
    window.Press(QPointF(80, 50));
    window.Press(QPointF(1, 1));
    window.Press(QPointF(159, 50));
    window.Press(QPointF(80, 50), Qt::RightButton);
    window.Press(QPointF(145, 14));
    EXPECT_EQ(window.State(), u"#ff0000 #ffffff 0,3,4 0"_s);
    Q_EMIT window.picSkin()->MouseReleased(Qt::LeftButton, QPointF(145, 14));
    EXPECT_EQ(window.handled, QStringList{u"close"_s});

    window.drags.clear();
    window.SetFramed(true);
    EXPECT_EQ(Summary(window.Framed(), window.windowFlags().testFlag(Qt::FramelessWindowHint),
                      window.WindowStyle().Sizable()),
              u"1 0 1"_s);
    window.Press(QPointF(80, 50));
    window.Move(QPointF(1, 50));
    EXPECT_EQ(window.State(), u"#ff0000 #ffffff  0"_s);
    window.SetFramed(false);
    window.Press(QPointF(80, 50));
    window.Move(QPointF(158, 98));
    EXPECT_EQ(window.picSkin()->cursor().shape(), Qt::SizeFDiagCursor);
    window.Move(QPointF(80, 50));
    EXPECT_EQ(window.State(), u"#ff0000 #ffffff 0 0"_s);
    fixture.Load(u"Win"_s, u"defineframe channel\nframecolor &hFFFFFF\ndefineentity 1\nwindow channel\n"
                           "image x.png\nimagemousemove h.png\nfunction Close\ntop 6\nleft -6\n"_s);
    window.Move(QPointF(145, 14));
    EXPECT_EQ(window.State(), u"#00ff00 #ffffff 0 0"_s);

    fixture.Load(u"Plain"_s, u"defineframe channel\nframecolor &hFF0000\n"_s);
    EXPECT_EQ(window.State(), u"#0000ff #0000ff 0 0"_s);
    window.resize(200, 120);
    EXPECT_TRUE(window.picSkin()->Image().size() == QSize(200, 120) &&
                window.picSkin()->Image().pixelColor(190, 110) == QColor(Qt::blue));
}

// Each property sets its style bit and, while the window has a caption, the matching window flag. Without
// sizing border the size is fixed until it comes back. The title bar is the native frame and either half of
// the caption bits; a visible window stays visible and keeps its client area. Styles belong to the window,
// not to one clsStyle. A right click opens the window menu only when asked.
TEST(clsStyleTest, PropertiesTheSizingBorderTheTitlebarAndTheWindowMenuFollowTheStyleBits) {
    QWidget window;
    window.resize(240, 160);
    clsStyle style;
    style.SetClient(&window);
    // Name, writer, style bit, whether it is an extended bit, the window flag (none for sizing).
    using Property =
        std::tuple<const char*, std::function<void(clsStyle&, bool)>, quint32, bool, Qt::WindowFlags>;
    const Property properties[] = {
        {"ControlBox", &clsStyle::SetControlBox, clsStyle::kSysMenu, false, Qt::WindowSystemMenuHint},
        {"MaxButton", &clsStyle::SetMaxButton, clsStyle::kMaximizeBox, false, Qt::WindowMaximizeButtonHint},
        {"MinButton", &clsStyle::SetMinButton, clsStyle::kMinimizeBox, false, Qt::WindowMinimizeButtonHint},
        {"Sizable", &clsStyle::SetSizable, clsStyle::kThickFrame, false, {}},
        {"ToolWindow", &clsStyle::SetToolWindow, clsStyle::kExToolWindow, true, Qt::Tool},
        {"WhatsThis", &clsStyle::SetWhatsThisButton, clsStyle::kExContextHelp, true,
         Qt::WindowContextHelpButtonHint},
        {"TopMost", &clsStyle::SetTopMost, clsStyle::kExTopMost, true, Qt::WindowStaysOnTopHint},
    };
    for (const auto& [name, write, bit, extended, flag] : properties) {
        // A caption and nothing else: buttons would bring the window menu along.
        style.SetStyle(clsStyle::kCaption);
        style.SetExStyle(0);
        for (bool on : {true, false, true}) {
            SCOPED_TRACE(testing::Message() << name << " " << on);
            write(style, on);
            EXPECT_EQ(((extended ? style.ExStyle() : style.Style()) & bit) == bit, on);
            EXPECT_TRUE(flag == Qt::WindowFlags() || ((window.windowFlags() & flag) == flag) == on);
        }
    }
    // Writing a set bit leaves the style and still redraws.
    style.SetSizable(true);
    const quint32 before = style.Style();
    QSignalSpy redrawn(&style, &clsStyle::FrameRedrawn);
    style.SetSizable(true);
    EXPECT_EQ(Summary(style.Style(), redrawn.count()), Summary(before, 1));

    window.setMinimumSize(50, 40);
    // Minimum and maximum size.
    const auto sizes = [&] { return QList<QSize>{window.minimumSize(), window.maximumSize()}; };
    style.SetSizable(false);
    EXPECT_EQ(sizes(), (QList<QSize>{QSize(240, 160), QSize(240, 160)}));
    style.SetSizable(true);
    EXPECT_EQ(sizes(), (QList<QSize>{QSize(50, 40), QSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX)}));
    window.show();
    const QRect shown = window.geometry();
    // Caption bits, frameless, visible, geometry kept.
    const auto frame = [&] {
        return Summary(style.Style() & clsStyle::kCaption,
                       window.windowFlags().testFlag(Qt::FramelessWindowHint), window.isVisible(),
                       window.geometry() == shown);
    };
    style.SetTitlebar(false);
    EXPECT_EQ(frame(), u"0 1 1 1"_s);
    style.SetTitlebar(true);
    EXPECT_EQ(frame(), Summary(clsStyle::kCaption, 0, 1, 1));
    for (quint32 half : {0x00800000U, 0x00400000U}) {
        style.SetStyle(half | clsStyle::kSysMenu);
        EXPECT_TRUE(style.Titlebar()) << half;
    }
    clsStyle second;
    second.SetClient(&window);
    EXPECT_EQ(second.Style(), 0x00400000U | clsStyle::kSysMenu);
    clsStyle lone;
    lone.SetTitlebar(true);
    EXPECT_FALSE(lone.Titlebar());

    style.SetTitlebar(true);
    style.SetMinButton(true);
    style.SetMaxButton(false);
    QMouseEvent release(QEvent::MouseButtonRelease, QPointF(20, 20), window.mapToGlobal(QPointF(20, 20)),
                        Qt::RightButton, Qt::NoButton, Qt::NoModifier);
    QApplication::sendEvent(&window, &release);
    EXPECT_EQ(style.SysMenu(), nullptr);
    style.SetAutoSysMenu(true);
    QApplication::sendEvent(&window, &release);
    ASSERT_NE(style.SysMenu(), nullptr);
    // Each entry as its text, "-" for the separator, marked when disabled.
    QStringList entries;
    const QList<QAction*> actions = style.SysMenu()->actions();
    for (const QAction* action : actions) {
        entries << (action->isSeparator() ? u"-"_s : action->text()) +
                       (action->isEnabled() ? u""_s : u" (off)"_s);
    }
    ASSERT_EQ(entries.join(u'|'), u"&Restore (off)|Mi&nimize|Ma&ximize (off)|-|&Close"_s);
    actions.at(4)->trigger();
    EXPECT_FALSE(window.isVisible());
}

} // namespace
