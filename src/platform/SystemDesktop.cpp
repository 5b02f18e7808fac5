// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/SystemDesktop.h"

#include <QDesktopServices>
#include <QFileInfo>
#include <QSoundEffect>
#include <QUrl>

SystemDesktop::SystemDesktop(Paths paths) : m_paths(std::move(paths)) {}
SystemDesktop::~SystemDesktop() = default;

void SystemDesktop::PlaySound(const QString& path) {
    if (!QFileInfo::exists(path)) {
        return;
    }
    if (!m_sound) {
        m_sound = std::make_unique<QSoundEffect>();
    }
    const QUrl source = QUrl::fromLocalFile(path);
    if (m_sound->source() != source) {
        m_sound->setSource(source);
    }
    m_sound->play();
}

void SystemDesktop::OpenDocument(const QString& urlOrPath) {
    const QUrl url = m_paths.ResolveSiteUrl(QUrl::fromUserInput(urlOrPath));
    if (url.isValid()) {
        QDesktopServices::openUrl(url);
    }
}
