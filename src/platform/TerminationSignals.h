// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

class QSocketNotifier;

// Turns SIGTERM, SIGINT and SIGHUP (a desktop logout, a kill, a closed terminal) into the signal
// Received on the event loop, so that the program can save and end in its own way instead of
// dying with unsaved news. One at a time per process; the default handlers return when it goes.
class TerminationSignals final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(TerminationSignals)
public:
    explicit TerminationSignals(QObject* parent = nullptr);
    ~TerminationSignals() override;

    // Whether the handlers are in place (false when another instance holds them).
    bool Installed() const { return m_notifier != nullptr; }

Q_SIGNALS:
    void Received(int signalNumber);

private:
    void ReadPending();

    QSocketNotifier* m_notifier = nullptr;
};
