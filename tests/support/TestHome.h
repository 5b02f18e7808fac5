// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Paths.h"

#include <QByteArray>
#include <QString>
#include <QTemporaryDir>

// A fresh data and configuration folder for one test, with the shipped resources.
class TestHome final {
public:
    TestHome();
    Paths GetPaths() const;
    QString Path() const { return m_dir.path(); }
    QString File(const QString& relative) const { return m_dir.filePath(relative); }
    // Writes `bytes` to a file below the home, creating folders as needed.
    void Write(const QString& relative, const QByteArray& bytes) const;
    QByteArray Read(const QString& relative) const;

private:
    QTemporaryDir m_dir;
};
