// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtGlobal>

namespace Memory {

// Returns freed heap pages to the system, so a program hidden in the tray holds little memory.
void TrimWorkingSet();
// The resident set size of this process in bytes, 0 when unknown.
qint64 ResidentBytes();

} // namespace Memory
