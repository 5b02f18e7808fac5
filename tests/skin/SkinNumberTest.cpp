// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "skin/SkinNumber.h"
#include "skin/SkinColor.h"

#include <QGuiApplication>
#include <QPalette>
#include <gtest/gtest.h>

namespace {

struct Leading {
    const char* text;
    double value;
};

class SkinNumberLeadingTest : public ::testing::TestWithParam<Leading> {};

TEST_P(SkinNumberLeadingTest, ReadsTheLeadingNumber) {
    EXPECT_DOUBLE_EQ(SkinNumber::Leading(QString::fromUtf8(GetParam().text)), GetParam().value)
        << GetParam().text;
}

INSTANTIATE_TEST_SUITE_P(Texts, SkinNumberLeadingTest,
                         ::testing::Values(Leading{"", 0}, Leading{"abc", 0}, Leading{"12", 12},
                                           Leading{"   12", 12}, Leading{"\t7", 7}, Leading{"-10", -10},
                                           Leading{"+5", 5}, Leading{"1.5", 1.5}, Leading{".25", 0.25},
                                           Leading{"1.2.3", 1.2}, Leading{"12px", 12}, Leading{"3 4", 3},
                                           Leading{"- 3", 0}, Leading{"&hFF0000", 16711680},
                                           Leading{"&Hff", 255}, Leading{"&h8000000F", 2147483663.0},
                                           Leading{"&hFFFFFFFF", 4294967295.0}, Leading{"&h1G", 1},
                                           Leading{"&h", 0}, Leading{"&", 0}, Leading{"  &h10", 16},
                                           Leading{"16711680", 16711680}));

TEST(SkinNumberTest, RoundsHalvesToEven) {
    EXPECT_EQ(SkinNumber::Round(2.5), 2);
    EXPECT_EQ(SkinNumber::Round(3.5), 4);
    EXPECT_EQ(SkinNumber::Round(-2.5), -2);
    EXPECT_EQ(SkinNumber::Round(-3.5), -4);
    EXPECT_EQ(SkinNumber::Round(2.4999), 2);
    EXPECT_EQ(SkinNumber::Round(2.5001), 3);
    EXPECT_EQ(SkinNumber::Round(1e300), qint64(9.0e18));
}

TEST(SkinNumberTest, BooleansAreTrueOnlyForTheWordTrue) {
    EXPECT_TRUE(SkinNumber::Boolean(u"true"));
    EXPECT_TRUE(SkinNumber::Boolean(u"TRUE"));
    EXPECT_TRUE(SkinNumber::Boolean(u"True"));
    EXPECT_FALSE(SkinNumber::Boolean(u"yes"));
    EXPECT_FALSE(SkinNumber::Boolean(u"1"));
    EXPECT_FALSE(SkinNumber::Boolean(u"true!"));
    EXPECT_FALSE(SkinNumber::Boolean(u""));
}

TEST(SkinColorTest, ColoursAreBlueGreenRed) {
    EXPECT_EQ(SkinColor::ToQColor(0xFF0000), QColor(0, 0, 255));
    EXPECT_EQ(SkinColor::ToQColor(0x0000FF), QColor(255, 0, 0));
    EXPECT_EQ(SkinColor::ToQColor(0x9DB2FF), QColor(0xFF, 0xB2, 0x9D));
    EXPECT_EQ(SkinColor::ToQColor(SkinColor::kButtonFace),
              QGuiApplication::palette().color(QPalette::Button));
    EXPECT_EQ(SkinColor::ToQColor(0x80000005), QGuiApplication::palette().color(QPalette::Base));
    EXPECT_EQ(SkinColor::ToQColor(0x800000FF), QGuiApplication::palette().color(QPalette::Dark));
}

} // namespace
