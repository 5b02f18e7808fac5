// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/AtomicFile.h"

#include <QSaveFile>

namespace AtomicFile {

bool Open(QSaveFile& file) {
    return file.open(QIODevice::WriteOnly | QIODevice::Unbuffered);
}

bool Write(const QString& path, const QByteArray& bytes, QString* error) {
    QSaveFile file(path);
    if (!Open(file) || file.write(bytes) != bytes.size() || !file.commit()) {
        if (error) {
            *error = file.errorString();
        }
        return false;
    }
    return true;
}

} // namespace AtomicFile
