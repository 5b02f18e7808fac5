// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "SkinTestSupport.h"

#include "skin/SkinnedWindow.h"
#include "skin/clsStyle.h"

#include <QAction>
#include <QApplication>
#include <QMenu>
#include <QMouseEvent>
#include <QSignalSpy>
#include <QWidget>

#include <functional>

using namespace Qt::StringLiterals;

namespace {

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
    // Each line of data/zones.txt is "x,y | edge bits, pointer" for a point of a 100 x 80 window: edge bits
    // 1 top, 2 left, 4 right, 8 bottom within four pixels of each edge; pointers 0 arrow, 5 vertical,
    // 6 horizontal, 7 rising and 8 falling diagonal.
    for (const QString& row : DataText(u"zones.txt"_s).split(u'\n', Qt::SkipEmptyParts)) {
        const QStringList at = row.section(u'|', 0, 0).trimmed().split(u',');
        const Qt::Edges edges =
            SkinnedWindow::EdgeZone(QPointF(at[0].toDouble(), at[1].toDouble()), QSizeF(100, 80));
        EXPECT_EQ(Summary(edges.toInt(), SkinnedWindow::ZoneCursor(edges)), row.section(u'|', 1).trimmed())
            << row.toStdString();
    }

    SkinFixture fixture;
    fixture.Load(u"Win"_s);
    ASSERT_TRUE(fixture.host.messages.isEmpty());
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
