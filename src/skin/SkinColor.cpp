// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "skin/SkinColor.h"

#include <QGuiApplication>
#include <QPalette>

#include <array>

namespace {

constexpr quint32 kByte = 0xFF;
constexpr int kGreenShift = 8;
constexpr int kBlueShift = 16;

// The desktop colour that stands in for each system colour index of the skin format.
constexpr std::array<QPalette::ColorRole, 25> kSystemRoles = {
    QPalette::Button,          // scroll bar
    QPalette::Window,          // desktop
    QPalette::Highlight,       // active caption
    QPalette::Mid,             // inactive caption
    QPalette::Window,          // menu
    QPalette::Base,            // window
    QPalette::Shadow,          // window frame
    QPalette::WindowText,      // menu text
    QPalette::WindowText,      // window text
    QPalette::HighlightedText, // caption text
    QPalette::Mid,             // active border
    QPalette::Mid,             // inactive border
    QPalette::Window,          // application workspace
    QPalette::Highlight,       // highlight
    QPalette::HighlightedText, // highlighted text
    QPalette::Button,          // button face
    QPalette::Mid,             // button shadow
    QPalette::PlaceholderText, // grey text
    QPalette::ButtonText,      // button text
    QPalette::WindowText,      // inactive caption text
    QPalette::Light,           // button highlight
    QPalette::Shadow,          // dark 3D shadow
    QPalette::Midlight,        // 3D light
    QPalette::ToolTipText,     // tooltip text
    QPalette::ToolTipBase,     // tooltip background
};

} // namespace

QColor SkinColor::ToQColor(quint32 colour) {
    if ((colour & kSystemFlag) != 0) {
        const quint32 index = colour & kByte;
        const QPalette::ColorRole role =
            index < kSystemRoles.size() ? kSystemRoles.at(index) : QPalette::Dark;
        return QGuiApplication::palette().color(QPalette::Active, role);
    }
    return QColor(int(colour & kByte), int((colour >> kGreenShift) & kByte),
                  int((colour >> kBlueShift) & kByte));
}
