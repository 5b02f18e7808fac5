// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/XmlNode.h"

#include <QRect>

// The ticker's item view as the ticker drives it: a panel that slides open beside the ticker to
// show one item and slides shut again.
class TickerItemView {
public:
    virtual ~TickerItemView() = default;

    virtual bool IsVisible() const = 0;
    // Opens on `item`; `placement` gives the panel's top, left and width in screen pixels (its
    // height is the view's own).
    virtual void ShowItem(const XmlNode& item, const QRect& placement) = 0;
    virtual void HideItem() = 0;
};
