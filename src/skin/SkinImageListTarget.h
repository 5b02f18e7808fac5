// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

class SkinPicture;

// The main window's tree image list, which the skin loader keeps up to date: tree icons are
// addressed by their keys ("read", "unread", ..., and "last").
class SkinImageListTarget {
public:
    virtual ~SkinImageListTarget() = default;

    virtual bool HasImage(const QString& key) const = 0;
    // Removing a key that has no image does nothing.
    virtual void RemoveImage(const QString& key) = 0;
    // Adds the picture under the key, in place of any picture the key had.
    virtual void AddImage(const QString& key, const SkinPicture& picture) = 0;
};
