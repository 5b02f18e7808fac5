// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/SingleInstance.h"

#include <QCryptographicHash>
#include <QDir>
#include <QLocalServer>
#include <QLocalSocket>

namespace {

constexpr int kAnswerWaitMs = 2000;
const QByteArray kShowMessage = QByteArrayLiteral("show\n");

QString LockPath(const QString& dataFolder) {
    return dataFolder + QStringLiteral("/tamsel.lock");
}

} // namespace

SingleInstance::SingleInstance(const QString& dataFolder, QObject* parent)
    : QObject(parent), m_dataFolder(dataFolder), m_lock(LockPath(dataFolder)) {
    m_lock.setStaleLockTime(0);
}

SingleInstance::~SingleInstance() = default;

QString SingleInstance::SocketName() const {
    const QByteArray hash =
        QCryptographicHash::hash(QDir(m_dataFolder).absolutePath().toUtf8(), QCryptographicHash::Sha1).toHex().left(16);
    return QStringLiteral("tamsel-") + QString::fromLatin1(hash);
}

bool SingleInstance::Acquire() {
    QDir().mkpath(m_dataFolder);
    if (!m_lock.tryLock(0)) {
        QLocalSocket socket;
        socket.connectToServer(SocketName());
        if (socket.waitForConnected(kAnswerWaitMs)) {
            socket.write(kShowMessage);
            socket.waitForBytesWritten(kAnswerWaitMs);
            socket.disconnectFromServer();
        }
        return false;
    }
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
    return true;
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
