// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "skin/clsStyle.h"

#include <QAction>
#include <QApplication>
#include <QMenu>
#include <QMouseEvent>
#include <QSignalSpy>
#include <QWidget>
#include <gtest/gtest.h>

#include <functional>

using namespace Qt::StringLiterals;

namespace {

class clsStyleTest : public ::testing::Test {
protected:
    void SetUp() override {
        window.resize(240, 160);
        style.SetClient(&window);
    }

    QWidget window;
    clsStyle style;
};

// Each property sets its style bit and, while the window has a caption, the matching window flag.
TEST_F(clsStyleTest, PropertiesSetTheStyleBitAndTheWindowFlag) {
    struct Property {
        const char* name;
        std::function<void(clsStyle&, bool)> write;
        quint32 bit;
        bool extended;
        Qt::WindowFlags flag;
    };
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
    for (const Property& p : properties) {
        // A caption and nothing else: buttons would bring the window menu along.
        style.SetStyle(clsStyle::kCaption);
        style.SetExStyle(0);
        for (bool on : {true, false, true}) {
            SCOPED_TRACE(testing::Message() << p.name << " " << on);
            p.write(style, on);
            EXPECT_EQ(((p.extended ? style.ExStyle() : style.Style()) & p.bit) == p.bit, on);
            EXPECT_TRUE(p.flag == Qt::WindowFlags() || ((window.windowFlags() & p.flag) == p.flag) == on);
        }
    }
    // Writing a set bit leaves the style and still redraws.
    style.SetSizable(true);
    const quint32 before = style.Style();
    QSignalSpy redrawn(&style, &clsStyle::FrameRedrawn);
    style.SetSizable(true);
    EXPECT_EQ(style.Style(), before);
    EXPECT_EQ(redrawn.count(), 1);
}

// Without sizing border the size is fixed until it comes back. The title bar is the native frame
// and either half of the caption bits; a visible window stays visible and keeps its client area.
// Styles belong to the window, not to one clsStyle.
TEST_F(clsStyleTest, TheSizingBorderAndTheTitlebarFollowTheStyleBits) {
    window.setMinimumSize(50, 40);
    style.SetSizable(false);
    EXPECT_EQ(window.minimumSize(), QSize(240, 160));
    EXPECT_EQ(window.maximumSize(), QSize(240, 160));
    style.SetSizable(true);
    EXPECT_EQ(window.minimumSize(), QSize(50, 40));
    EXPECT_EQ(window.maximumSize(), QSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX));
    window.show();
    const QRect before = window.geometry();
    style.SetTitlebar(false);
    EXPECT_EQ(style.Style() & clsStyle::kCaption, 0U);
    EXPECT_TRUE(window.windowFlags().testFlag(Qt::FramelessWindowHint));
    EXPECT_TRUE(window.isVisible());
    EXPECT_EQ(window.geometry(), before);
    style.SetTitlebar(true);
    EXPECT_FALSE(window.windowFlags().testFlag(Qt::FramelessWindowHint));
    EXPECT_TRUE(window.isVisible());
    EXPECT_EQ(window.geometry().size(), before.size());
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
}

TEST_F(clsStyleTest, RightClickOpensTheWindowMenuOnlyWhenAsked) {
    style.SetTitlebar(true);
    style.SetMinButton(true);
    style.SetMaxButton(false);
    window.show();
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
