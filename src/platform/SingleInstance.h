// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLockFile>
#include <QObject>
#include <QString>
#include <memory>

class QLocalServer;

// One running Tamsel per data folder. The first start holds a lock file and listens on a local
// socket; a later start finds the lock held, asks the running one to show itself, and gives up.
class SingleInstance final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(SingleInstance)
public:
    explicit SingleInstance(const QString& dataFolder, QObject* parent = nullptr);
    ~SingleInstance() override;

    // True when this process now owns the data folder; false when another holds it (which was
    // then asked to show its main window).
    bool Acquire();
    // Whether some process holds the data folder, without taking it (for helpers such as the
    // command-line tool that must not change files the window program owns).
    static bool IsHeld(const QString& dataFolder);

Q_SIGNALS:
    // Another start asked this instance to bring its main window forward.
    void ShowRequested();

private:
    QString SocketName() const;

    QString m_dataFolder;
    QLockFile m_lock;
    std::unique_ptr<QLocalServer> m_server;
};
