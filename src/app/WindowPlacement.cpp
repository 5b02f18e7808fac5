// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/WindowPlacement.h"

#include "platform/CRegSettings.h"

namespace {

const QString kSaved = QStringLiteral("Saved");
const QString kWindowState = QStringLiteral("WindowState");
const QString kTop = QStringLiteral("Top");
const QString kLeft = QStringLiteral("Left");
const QString kHeight = QStringLiteral("Height");
const QString kWidth = QStringLiteral("Width");
const QString kDefaultPosition = QStringLiteral("0");
const QString kDefaultSize = QStringLiteral("3000");

int ReadTwips(CRegSettings& settings, const QString& section, const QString& key, const QString& defaultValue) {
    return int(settings.GetSetting(section, key, defaultValue).trimmed().toDouble()) / WindowPlacement::kTwipsPerPixel;
}

} // namespace

void WindowPlacement::Save(CRegSettings& settings, const QString& section) const {
    settings.SaveSetting(section, kWindowState, QString::number(state));
    if (state == Normal) {
        settings.SaveSetting(section, kTop, QString::number(geometry.top() * kTwipsPerPixel));
        settings.SaveSetting(section, kLeft, QString::number(geometry.left() * kTwipsPerPixel));
        settings.SaveSetting(section, kHeight, QString::number(geometry.height() * kTwipsPerPixel));
        settings.SaveSetting(section, kWidth, QString::number(geometry.width() * kTwipsPerPixel));
    }
    settings.SaveSetting(section, kSaved, CRegSettings::FromBool(true));
}

std::optional<WindowPlacement> WindowPlacement::Restore(CRegSettings& settings, const QString& section) {
    if (!CRegSettings::ToBool(settings.GetSetting(section, kSaved, CRegSettings::FromBool(false)))) {
        return std::nullopt;
    }
    WindowPlacement placement;
    placement.state = settings.GetSetting(section, kWindowState, kDefaultPosition).trimmed().toInt();
    if (placement.state == Normal) {
        placement.geometry = QRect(ReadTwips(settings, section, kLeft, kDefaultPosition),
                                   ReadTwips(settings, section, kTop, kDefaultPosition),
                                   ReadTwips(settings, section, kWidth, kDefaultSize),
                                   ReadTwips(settings, section, kHeight, kDefaultSize));
    }
    return placement;
}
