// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/TerminationSignals.h"

#include <QSocketNotifier>
#include <array>
#include <csignal>
#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

constexpr std::array kSignals = {SIGTERM, SIGINT, SIGHUP};
// The handler may only write to a descriptor; the event loop reads the other end.
int g_pipe[2] = {-1, -1};

void OnSignal(int signalNumber) {
    const unsigned char byte = static_cast<unsigned char>(signalNumber);
    [[maybe_unused]] const ssize_t written = ::write(g_pipe[0], &byte, 1);
}

} // namespace

TerminationSignals::TerminationSignals(QObject* parent) : QObject(parent) {
    if (g_pipe[0] != -1 || ::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, g_pipe) != 0) {
        return;
    }
    m_notifier = new QSocketNotifier(g_pipe[1], QSocketNotifier::Read, this);
    connect(m_notifier, &QSocketNotifier::activated, this, &TerminationSignals::ReadPending);
    struct sigaction action = {};
    action.sa_handler = OnSignal;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    for (const int signalNumber : kSignals) {
        ::sigaction(signalNumber, &action, nullptr);
    }
}

TerminationSignals::~TerminationSignals() {
    if (!m_notifier) {
        return;
    }
    for (const int signalNumber : kSignals) {
        ::signal(signalNumber, SIG_DFL);
    }
    delete m_notifier;
    ::close(g_pipe[0]);
    ::close(g_pipe[1]);
    g_pipe[0] = g_pipe[1] = -1;
}

void TerminationSignals::ReadPending() {
    unsigned char byte = 0;
    while (::read(g_pipe[1], &byte, 1) == 1) {
        Q_EMIT Received(byte);
    }
}
