// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
// Preloaded into a program under test (LD_PRELOAD) to stand in for a crash at a chosen moment.
// Every write to a file below TAMSEL_KILL_PREFIX and every rename into it is one event; the
// events are appended to TAMSEL_KILL_LOG (one "write PATH" or "rename PATH" line each), and the
// TAMSEL_KILL_AT-th event kills the process with SIGKILL before the call happens, as a power cut
// or the out-of-memory killer would.
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

struct Settings {
    const char* prefix = nullptr;
    size_t prefixLength = 0;
    int logFd = -1;
    long killAt = 0;
};

const Settings& GetSettings() {
    static const Settings settings = [] {
        Settings s;
        s.prefix = std::getenv("TAMSEL_KILL_PREFIX");
        s.prefixLength = s.prefix ? std::strlen(s.prefix) : 0;
        if (const char* log = std::getenv("TAMSEL_KILL_LOG")) {
            s.logFd =
                int(syscall(SYS_openat, AT_FDCWD, log, O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0644));
        }
        if (const char* at = std::getenv("TAMSEL_KILL_AT")) {
            s.killAt = std::atol(at);
        }
        return s;
    }();
    return settings;
}

std::atomic<long> g_events{0};

bool Watched(const char* path) {
    const Settings& settings = GetSettings();
    return settings.prefixLength > 0 && path &&
           std::strncmp(path, settings.prefix, settings.prefixLength) == 0;
}

// Logs the event and dies when it is the chosen one. Raw system calls: the log must not count.
void Event(const char* kind, const char* path) {
    const Settings& settings = GetSettings();
    const long number = ++g_events;
    if (settings.logFd >= 0) {
        char line[4200];
        const int length = std::snprintf(line, sizeof line, "%s %s\n", kind, path);
        if (length > 0) {
            syscall(SYS_write, settings.logFd, line,
                    size_t(length) < sizeof line ? size_t(length) : sizeof line - 1);
        }
    }
    if (number == settings.killAt) {
        syscall(SYS_kill, getpid(), SIGKILL);
    }
}

template <typename Function> Function Next(const char* name) {
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

} // namespace

extern "C" ssize_t write(int fd, const void* data, size_t size) {
    static const auto next = Next<ssize_t (*)(int, const void*, size_t)>("write");
    if (GetSettings().prefixLength > 0) {
        char link[64];
        char path[4096];
        std::snprintf(link, sizeof link, "/proc/self/fd/%d", fd);
        const int saved = errno;
        const ssize_t length = readlink(link, path, sizeof path - 1);
        errno = saved;
        if (length > 0) {
            path[length] = '\0';
            if (Watched(path)) {
                Event("write", path);
            }
        }
    }
    return next(fd, data, size);
}

extern "C" int rename(const char* from, const char* to) {
    static const auto next = Next<int (*)(const char*, const char*)>("rename");
    if (Watched(to)) {
        Event("rename", to);
    }
    return next(from, to);
}

extern "C" int renameat(int fromDir, const char* from, int toDir, const char* to) {
    static const auto next = Next<int (*)(int, const char*, int, const char*)>("renameat");
    if (Watched(to)) {
        Event("rename", to);
    }
    return next(fromDir, from, toDir, to);
}

extern "C" int renameat2(int fromDir, const char* from, int toDir, const char* to, unsigned int flags) {
    static const auto next = Next<int (*)(int, const char*, int, const char*, unsigned int)>("renameat2");
    if (Watched(to)) {
        Event("rename", to);
    }
    return next(fromDir, from, toDir, to, flags);
}

extern "C" int linkat(int fromDir, const char* from, int toDir, const char* to, int flags) {
    static const auto next = Next<int (*)(int, const char*, int, const char*, int)>("linkat");
    if (Watched(to)) {
        Event("link", to);
    }
    return next(fromDir, from, toDir, to, flags);
}
