// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/Memory.h"

#include <QFile>
#include <malloc.h>
#include <unistd.h>

namespace Memory {

void TrimWorkingSet() {
    malloc_trim(0);
}

qint64 ResidentBytes() {
    QFile statm(QStringLiteral("/proc/self/statm"));
    if (!statm.open(QIODevice::ReadOnly)) {
        return 0;
    }
    const QList<QByteArray> fields = statm.readAll().split(' ');
    return fields.size() > 1 ? fields[1].toLongLong() * sysconf(_SC_PAGESIZE) : 0;
}

} // namespace Memory
