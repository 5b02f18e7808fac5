// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "skin/SkinNumber.h"
#include "skin/SkinColor.h"

#include <QGuiApplication>
#include <QPalette>
#include <gtest/gtest.h>

namespace {

TEST(SkinNumberTest, ReadsTheLeadingNumberAndRoundsHalvesToEven) {
    const std::pair<const char*, double> texts[] = {{"", 0},
                                                    {"abc", 0},
                                                    {"   12", 12},
                                                    {"\t7", 7},
                                                    {"-10", -10},
                                                    {"+5", 5},
                                                    {".25", 0.25},
                                                    {"1.2.3", 1.2},
                                                    {"12px", 12},
                                                    {"3 4", 3},
                                                    {"- 3", 0},
                                                    {"&hFF0000", 16711680},
                                                    {"&Hff", 255},
                                                    {"&h8000000F", 2147483663.0},
                                                    {"&hFFFFFFFF", 4294967295.0},
                                                    {"&h1G", 1},
                                                    {"&h", 0},
                                                    {"&", 0},
                                                    {"  &h10", 16}};
    for (const auto& [text, value] : texts) {
        EXPECT_DOUBLE_EQ(SkinNumber::Leading(QString::fromUtf8(text)), value) << text;
    }
    const std::pair<double, qint64> rounds[] = {
        {2.5, 2}, {3.5, 4}, {-2.5, -2}, {-3.5, -4}, {2.4999, 2}, {2.5001, 3}, {1e300, qint64(9.0e18)}};
    for (const auto& [value, rounded] : rounds) {
        EXPECT_EQ(SkinNumber::Round(value), rounded) << value;
    }
    EXPECT_TRUE(SkinNumber::Boolean(u"TRUE"));
    for (const char16_t* text : {u"yes", u"1", u"true!", u""}) {
        EXPECT_FALSE(SkinNumber::Boolean(text));
    }
}

TEST(SkinColorTest, ColoursAreBlueGreenRedOrSystemColours) {
    EXPECT_EQ(SkinColor::ToQColor(0xFF0000), QColor(0, 0, 255));
    EXPECT_EQ(SkinColor::ToQColor(0x9DB2FF), QColor(0xFF, 0xB2, 0x9D));
    EXPECT_EQ(SkinColor::ToQColor(SkinColor::kButtonFace),
              QGuiApplication::palette().color(QPalette::Button));
    EXPECT_EQ(SkinColor::ToQColor(0x80000005), QGuiApplication::palette().color(QPalette::Base));
    EXPECT_EQ(SkinColor::ToQColor(0x800000FF), QGuiApplication::palette().color(QPalette::Dark));
}

} // namespace
