// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtGlobal>
#include <csignal>
#include <sys/resource.h>

// Stands in for a full disk while it lives: no file of this process may grow beyond `bytes`, and a
// write past the limit fails (instead of the signal that would end the process).
class FileSizeLimit final {
public:
    explicit FileSizeLimit(rlim_t bytes) : m_previousHandler(std::signal(SIGXFSZ, SIG_IGN)) {
        getrlimit(RLIMIT_FSIZE, &m_original);
        rlimit small = m_original;
        small.rlim_cur = bytes;
        m_active = setrlimit(RLIMIT_FSIZE, &small) == 0;
    }
    ~FileSizeLimit() {
        setrlimit(RLIMIT_FSIZE, &m_original);
        std::signal(SIGXFSZ, m_previousHandler);
    }
    Q_DISABLE_COPY_MOVE(FileSizeLimit)

    bool Active() const { return m_active; }

private:
    rlimit m_original{};
    void (*m_previousHandler)(int);
    bool m_active = false;
};
