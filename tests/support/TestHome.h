// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Paths.h"

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QString>
#include <QTemporaryDir>

// The folders of a home whose data and configuration live below `home`, with the shipped resources.
inline Paths HomePaths(const QString& home) {
    return Paths(QStringLiteral(TAMSEL_BUILD_DATA_DIR), home, home + QStringLiteral("/config"));
}

// A fresh data and configuration folder for one test, with the shipped resources.
class TestHome final {
public:
    Paths GetPaths() const { return HomePaths(Path()); }
    QString Path() const { return m_dir.path(); }
    QString File(const QString& relative) const { return m_dir.filePath(relative); }
    // Writes `bytes` to a file below the home, creating folders as needed.
    void Write(const QString& relative, const QByteArray& bytes) const {
        QDir().mkpath(QFileInfo(File(relative)).absolutePath());
        QFile file(File(relative));
        if (file.open(QIODevice::WriteOnly)) {
            file.write(bytes);
        }
    }
    QByteArray Read(const QString& relative) const {
        QFile file(File(relative));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

private:
    QTemporaryDir m_dir;
};
