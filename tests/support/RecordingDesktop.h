// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Desktop.h"

#include <QStringList>

// Remembers the sounds played and the documents opened instead of reaching the desktop.
class RecordingDesktop final : public Desktop {
public:
    void PlaySound(const QString& path) override { sounds.append(path); }
    void OpenDocument(const QString& urlOrPath) override { opened.append(urlOrPath); }

    QStringList sounds;
    QStringList opened;
};
