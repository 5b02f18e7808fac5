// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLockFile>
#include <QObject>
#include <QString>
#include <memory>

class QLocalServer;

// One program at a time per data folder. The holder keeps a lock file; the window program also
// listens on a local socket, so that a later start can ask it to show itself instead of starting
// twice. A tool without a window (tamsel-cli) holds the lock but does not listen, which is how a
// later start tells the two apart.
class SingleInstance final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(SingleInstance)
public:
    enum class Role { Window, Tool };
    enum class Result {
        Acquired,
        // The window program holds the folder; a Window start asked it to show its main window.
        HeldByWindow,
        // A tool holds the folder (or a window program that is not yet listening).
        HeldByTool,
    };

    explicit SingleInstance(const QString& dataFolder, Role role = Role::Window, QObject* parent = nullptr);
    ~SingleInstance() override;

    // Takes the data folder. While a tool holds it, a Window start keeps trying for up to waitMs,
    // since the tool's command usually ends within seconds.
    Result Acquire(int waitMs = 0);
    // Whether some process holds the data folder, without taking it (for a tool that only reads).
    static bool IsHeld(const QString& dataFolder);

Q_SIGNALS:
    // Another start asked this instance to bring its main window forward.
    void ShowRequested();

private:
    QString SocketName() const;
    bool WindowAnswers(bool askToShow) const;
    void Listen();
    // Removes a lock file that names no owner once it is old enough; true when it was removed.
    bool RemoveOwnerlessLock();

    QString m_dataFolder;
    Role m_role;
    QLockFile m_lock;
    std::unique_ptr<QLocalServer> m_server;
};
