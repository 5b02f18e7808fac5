// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "SkinTheme.h"

#include <QSize>
#include <QString>

#include <functional>

class QPainter;

// Draws the pictures of a shipped skin in layout pixels; each picture is written twice, at its
// size ("name.png") and at twice its size ("name@2x.png"), from the same drawing.
class SkinArtist final {
public:
    // Geometry that skin.txt relies on.
    static constexpr int kTile = 8;
    static constexpr int kSide = 6;
    static constexpr int kCaption = 30;
    static constexpr int kMainTop = 58;
    static constexpr int kChannelTop = 62;
    static constexpr int kStatus = 24;
    static constexpr int kGrip = 6;
    static constexpr int kAccentTop = 3;
    static constexpr int kTickerHalf = 10;
    static constexpr int kButton = 20;
    static constexpr int kTickerButton = 16;
    static constexpr int kIcon = 16;

    enum class ButtonState { Normal, Hover, Pressed };

    SkinArtist(SkinTheme theme, QString folder);

    // Every picture of the skin; false when a file could not be written.
    bool DrawSkin();
    // Only the seventeen icons, named "tree-<key>.png" and "list-<name>.png".
    bool DrawBuiltInIcons();

private:
    using Drawing = std::function<void(QPainter&)>;

    bool Save(const QString& name, QSize size, const Drawing& draw);
    bool Frames();
    bool Buttons();
    bool Icons(const QString& treePrefix, const QString& listPrefix, bool openFolder);

    void TopBand(QPainter& p, int width, int height, bool leftEdge, bool rightEdge) const;
    void BottomBand(QPainter& p, int width, bool leftEdge, bool rightEdge) const;
    void GripBand(QPainter& p, int width, int height, const QColor& top, const QColor& bottom) const;
    void ButtonFace(QPainter& p, int size, ButtonState state, bool closing) const;
    QColor GlyphColour(ButtonState state, bool closing) const;

    SkinTheme m_theme;
    QString m_folder;
    bool m_ok = true;
};
