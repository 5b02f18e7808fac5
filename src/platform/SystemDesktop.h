// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Desktop.h"
#include "platform/Paths.h"

#include <memory>

class QSoundEffect;

// The real desktop: Qt Multimedia for sound, the desktop's URL handlers for documents.
class SystemDesktop final : public Desktop {
public:
    // Addresses of the shipped maker's site open as the files under `paths`.
    explicit SystemDesktop(Paths paths);
    ~SystemDesktop() override;
    void PlaySound(const QString& path) override;
    void OpenDocument(const QString& urlOrPath) override;

private:
    Paths m_paths;
    std::unique_ptr<QSoundEffect> m_sound;
};
