// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Desktop.h"

#include <memory>

class QSoundEffect;

// The real desktop: Qt Multimedia for sound, the desktop's URL handlers for documents.
class SystemDesktop final : public Desktop {
public:
    SystemDesktop();
    ~SystemDesktop() override;
    void PlaySound(const QString& path) override;
    void OpenDocument(const QString& urlOrPath) override;

private:
    std::unique_ptr<QSoundEffect> m_sound;
};
