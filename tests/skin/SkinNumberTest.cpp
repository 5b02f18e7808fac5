// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "skin/SkinNumber.h"
#include "skin/SkinColor.h"

#include <QFile>
#include <QGuiApplication>
#include <QPalette>
#include <gtest/gtest.h>

namespace {

TEST(SkinNumberTest, ReadsTheLeadingNumberAndRoundsHalvesToEven) {
    // Each line of the table is "text|value".
    QFile table(QStringLiteral(TAMSEL_TEST_DATA_DIR "/numbers.txt"));
    ASSERT_TRUE(table.open(QIODevice::ReadOnly));
    for (const QString& row : QString::fromUtf8(table.readAll()).split(u'\n', Qt::SkipEmptyParts)) {
        EXPECT_DOUBLE_EQ(SkinNumber::Leading(row.section(u'|', 0, 0)), row.section(u'|', 1).toDouble())
            << row.toStdString();
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
