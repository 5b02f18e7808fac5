// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

class QSaveFile;

// Files replaced whole or not at all: written to a temporary file that is renamed over the old one
// only when every byte reached the disk.
//
// QSaveFile alone does not promise that: commit() flushes the last buffered bytes without
// looking at the result, so a full disk could still rename a truncated file into place. Files are
// therefore written unbuffered, and a write the disk refuses fails where it happens.
namespace AtomicFile {

// Opens `file` for writing as described above.
bool Open(QSaveFile& file);
// Writes all of `data` to `file`; false, with what the system said (such as "No space left on
// device"), when it did not take them all.
bool WriteAll(QSaveFile& file, const char* data, qint64 size, QString* reason);
// Writes `bytes` as the whole new content of `path`; false, with the reason, when the old file
// stays as it was.
bool Write(const QString& path, const QByteArray& bytes, QString* error = nullptr);

} // namespace AtomicFile
