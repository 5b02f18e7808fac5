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

namespace {

struct StyleProperty {
    const char* name;
    std::function<void(clsStyle&, bool)> write;
    quint32 bit;
    bool extended;
    Qt::WindowFlags flag; // the flag that follows the property while the window has a caption
};

class clsStyleTest : public ::testing::Test {
protected:
    void SetUp() override {
        window.resize(240, 160);
        style.SetClient(&window);
    }

    QWidget window;
    clsStyle style;
};

class clsStylePropertyTest : public clsStyleTest, public ::testing::WithParamInterface<StyleProperty> {};

TEST_P(clsStylePropertyTest, SetsTheStyleBitAndTheWindowFlag) {
    const StyleProperty& p = GetParam();
    // A caption and nothing else: buttons would bring the window menu along.
    style.SetStyle(clsStyle::kCaption);
    for (bool on : {true, false, true}) {
        p.write(style, on);
        const quint32 word = p.extended ? style.ExStyle() : style.Style();
        EXPECT_EQ((word & p.bit) == p.bit, on) << p.name;
        if (p.flag != Qt::WindowFlags()) {
            EXPECT_EQ((window.windowFlags() & p.flag) == p.flag, on) << p.name;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(
    Properties, clsStylePropertyTest,
    ::testing::Values(StyleProperty{"ControlBox", &clsStyle::SetControlBox, clsStyle::kSysMenu, false,
                                    Qt::WindowSystemMenuHint},
                      StyleProperty{"MaxButton", &clsStyle::SetMaxButton, clsStyle::kMaximizeBox, false,
                                    Qt::WindowMaximizeButtonHint},
                      StyleProperty{"MinButton", &clsStyle::SetMinButton, clsStyle::kMinimizeBox, false,
                                    Qt::WindowMinimizeButtonHint},
                      StyleProperty{"Sizable", &clsStyle::SetSizable, clsStyle::kThickFrame, false, {}},
                      StyleProperty{"ToolWindow", &clsStyle::SetToolWindow, clsStyle::kExToolWindow, true,
                                    Qt::Tool},
                      StyleProperty{"WhatsThisButton", &clsStyle::SetWhatsThisButton,
                                    clsStyle::kExContextHelp, true, Qt::WindowContextHelpButtonHint},
                      StyleProperty{"TopMost", &clsStyle::SetTopMost, clsStyle::kExTopMost, true,
                                    Qt::WindowStaysOnTopHint}),
    [](const ::testing::TestParamInfo<StyleProperty>& info) { return std::string(info.param.name); });

TEST_F(clsStyleTest, TheTitlebarIsTheNativeFrameAndEitherHalfOfTheCaptionBits) {
    style.SetTitlebar(true);
    EXPECT_FALSE(window.windowFlags().testFlag(Qt::FramelessWindowHint));
    style.SetTitlebar(false);
    EXPECT_EQ(style.Style() & clsStyle::kCaption, 0U);
    EXPECT_TRUE(window.windowFlags().testFlag(Qt::FramelessWindowHint));
    for (quint32 half : {0x00800000U, 0x00400000U}) {
        style.SetStyle(half);
        EXPECT_TRUE(style.Titlebar()) << half;
    }
}

TEST_F(clsStyleTest, WritingASetBitLeavesTheStyleAndStillRedraws) {
    style.SetSizable(true);
    const quint32 before = style.Style();
    QSignalSpy redrawn(&style, &clsStyle::FrameRedrawn);
    style.SetSizable(true);
    EXPECT_EQ(style.Style(), before);
    EXPECT_EQ(redrawn.count(), 1);
}

TEST_F(clsStyleTest, WithoutSizingBorderTheSizeIsFixedUntilItComesBack) {
    window.setMinimumSize(50, 40);
    style.SetSizable(false);
    EXPECT_EQ(window.minimumSize(), QSize(240, 160));
    EXPECT_EQ(window.maximumSize(), QSize(240, 160));
    style.SetSizable(true);
    EXPECT_EQ(window.minimumSize(), QSize(50, 40));
    EXPECT_EQ(window.maximumSize(), QSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX));
}

TEST_F(clsStyleTest, AVisibleWindowStaysVisibleAndKeepsItsClientArea) {
    window.show();
    const QRect before = window.geometry();
    style.SetTitlebar(false);
    EXPECT_TRUE(window.isVisible());
    EXPECT_EQ(window.geometry(), before);
    style.SetTitlebar(true);
    EXPECT_TRUE(window.isVisible());
    EXPECT_EQ(window.geometry().size(), before.size());
}

TEST_F(clsStyleTest, StylesBelongToTheWindow) {
    style.SetStyle(clsStyle::kCaption | clsStyle::kSysMenu);
    clsStyle second;
    second.SetClient(&window);
    EXPECT_EQ(second.Style(), clsStyle::kCaption | clsStyle::kSysMenu);
    clsStyle lone;
    lone.SetTitlebar(true);
    EXPECT_FALSE(lone.Titlebar());
}

TEST_F(clsStyleTest, RightClickOpensTheWindowMenuOnlyWhenAsked) {
    style.SetTitlebar(true);
    style.SetMinButton(true);
    style.SetMaxButton(false);
    window.show();
    const QPointF local(20, 20);
    const QPointF global = window.mapToGlobal(local);
    QMouseEvent release(QEvent::MouseButtonRelease, local, global, Qt::RightButton, Qt::NoButton,
                        Qt::NoModifier);
    QApplication::sendEvent(&window, &release);
    EXPECT_EQ(style.SysMenu(), nullptr);

    style.SetAutoSysMenu(true);
    QApplication::sendEvent(&window, &release);
    QMenu* menu = style.SysMenu();
    ASSERT_NE(menu, nullptr);
    const QList<QAction*> actions = menu->actions();
    ASSERT_EQ(actions.size(), 5);
    EXPECT_EQ(actions.at(0)->text(), QStringLiteral("&Restore"));
    EXPECT_FALSE(actions.at(0)->isEnabled());
    EXPECT_TRUE(actions.at(1)->isEnabled());  // minimise
    EXPECT_FALSE(actions.at(2)->isEnabled()); // maximise: no button
    EXPECT_TRUE(actions.at(3)->isSeparator());
    EXPECT_EQ(actions.at(4)->text(), QStringLiteral("&Close"));
    actions.at(4)->trigger();
    EXPECT_FALSE(window.isVisible());
}

} // namespace
