// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/SingleInstance.h"

#include <QCryptographicHash>
#include <QDateTime>
#include <QDeadlineTimer>
#include <QFileInfo>
#include <QDir>
#include <QLocalServer>
#include <QLocalSocket>
#include <QThread>
#include <algorithm>

namespace {

constexpr int kAnswerWaitMs = 2000;
constexpr unsigned long kRetryMs = 200;
// A live owner writes its details into the lock file right after creating it; a file that still
// names nobody after this long was left by a program killed in between.
constexpr qint64 kOwnerlessLockMs = 1000;
const QByteArray kShowMessage = QByteArrayLiteral("show\n");

QString LockPath(const QString& dataFolder) {
    return dataFolder + QStringLiteral("/tamsel.lock");
}

} // namespace

SingleInstance::SingleInstance(const QString& dataFolder, Role role, QObject* parent)
    : QObject(parent), m_dataFolder(dataFolder), m_role(role), m_lock(LockPath(dataFolder)) {
    m_lock.setStaleLockTime(0);
}

SingleInstance::~SingleInstance() = default;

QString SingleInstance::SocketName() const {
    const QByteArray hash =
        QCryptographicHash::hash(QDir(m_dataFolder).absolutePath().toUtf8(), QCryptographicHash::Sha1).toHex().left(16);
    return QStringLiteral("tamsel-") + QString::fromLatin1(hash);
}

bool SingleInstance::WindowAnswers(bool askToShow) const {
    QLocalSocket socket;
    socket.connectToServer(SocketName());
    if (!socket.waitForConnected(kAnswerWaitMs)) {
        return false;
    }
    if (askToShow) {
        socket.write(kShowMessage);
        socket.waitForBytesWritten(kAnswerWaitMs);
    }
    socket.disconnectFromServer();
    return true;
}

SingleInstance::Result SingleInstance::Acquire(int waitMs) {
    QDir().mkpath(m_dataFolder);
    const QDeadlineTimer deadline(m_role == Role::Window ? waitMs : 0);
    bool removedOwnerless = false;
    while (!m_lock.tryLock(0)) {
        if (!removedOwnerless && RemoveOwnerlessLock()) {
            removedOwnerless = true;
            continue;
        }
        if (WindowAnswers(m_role == Role::Window)) {
            return Result::HeldByWindow;
        }
        if (deadline.hasExpired()) {
            return Result::HeldByTool;
        }
        QThread::msleep(kRetryMs);
    }
    if (m_role == Role::Window) {
        Listen();
    }
    return Result::Acquired;
}

bool SingleInstance::RemoveOwnerlessLock() {
    qint64 pid = 0;
    QString hostname;
    QString appname;
    if (m_lock.getLockInfo(&pid, &hostname, &appname)) {
        return false;
    }
    const QFileInfo file(LockPath(m_dataFolder));
    if (!file.exists()) {
        return false;
    }
    const qint64 age = file.lastModified().msecsTo(QDateTime::currentDateTime());
    if (age < kOwnerlessLockMs) {
        QThread::msleep(static_cast<unsigned long>(kOwnerlessLockMs - std::max<qint64>(age, 0)));
        if (m_lock.getLockInfo(&pid, &hostname, &appname)) {
            return false;
        }
    }
    return m_lock.removeStaleLockFile();
}

void SingleInstance::Listen() {
    m_server = std::make_unique<QLocalServer>();
    QLocalServer::removeServer(SocketName());
    connect(m_server.get(), &QLocalServer::newConnection, this, [this] {
        while (QLocalSocket* socket = m_server->nextPendingConnection()) {
            connect(socket, &QLocalSocket::readyRead, this, [this, socket] {
                if (socket->readAll().contains(kShowMessage)) {
                    Q_EMIT ShowRequested();
                }
            });
            connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
        }
    });
    m_server->listen(SocketName());
}

bool SingleInstance::IsHeld(const QString& dataFolder) {
    QLockFile probe(LockPath(dataFolder));
    probe.setStaleLockTime(0);
    if (probe.tryLock(0)) {
        probe.unlock();
        return false;
    }
    return probe.error() == QLockFile::LockFailedError;
}
