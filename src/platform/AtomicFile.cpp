// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/AtomicFile.h"

#include <QSaveFile>
#include <cerrno>
#include <cstring>

namespace AtomicFile {

bool Open(QSaveFile& file) {
    return file.open(QIODevice::WriteOnly | QIODevice::Unbuffered);
}

bool WriteAll(QSaveFile& file, const char* data, qint64 size, QString* reason) {
    errno = 0;
    if (file.write(data, size) == size) {
        return true;
    }
    // Unbuffered, the refusing call is the last one made: errno still tells why.
    const int cause = errno;
    if (reason) {
        *reason = cause != 0 ? QString::fromLocal8Bit(std::strerror(cause)) : file.errorString();
    }
    return false;
}

bool Write(const QString& path, const QByteArray& bytes, QString* error) {
    QSaveFile file(path);
    QString reason;
    if (!Open(file)) {
        reason = file.errorString();
    } else if (WriteAll(file, bytes.constData(), bytes.size(), &reason) && file.commit()) {
        return true;
    } else if (reason.isEmpty()) {
        reason = file.errorString();
    }
    file.cancelWriting();
    if (error) {
        *error = reason;
    }
    return false;
}

} // namespace AtomicFile
