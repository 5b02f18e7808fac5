// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/TestHome.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

TestHome::TestHome() = default;

Paths TestHome::GetPaths() const {
    return Paths(QStringLiteral(TAMSEL_BUILD_DATA_DIR), m_dir.path(), m_dir.path() + QStringLiteral("/config"));
}

void TestHome::Write(const QString& relative, const QByteArray& bytes) const {
    const QString path = File(relative);
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    if (file.open(QIODevice::WriteOnly)) {
        file.write(bytes);
    }
}

QByteArray TestHome::Read(const QString& relative) const {
    QFile file(File(relative));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}
