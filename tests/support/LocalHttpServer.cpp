// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/LocalHttpServer.h"

#include <QHostAddress>
#include <QTcpSocket>

LocalHttpServer::LocalHttpServer() {
    m_server.listen(QHostAddress::LocalHost);
    connect(&m_server, &QTcpServer::newConnection, this, [this] {
        while (QTcpSocket* socket = m_server.nextPendingConnection()) {
            socket->setParent(this);
            auto buffer = std::make_shared<QByteArray>();
            connect(socket, &QTcpSocket::readyRead, this, [this, socket, buffer] {
                buffer->append(socket->readAll());
                const qsizetype end = buffer->indexOf("\r\n\r\n");
                if (end >= 0) {
                    const QByteArray request = buffer->left(end);
                    buffer->remove(0, end + 4);
                    Answer(socket, request);
                }
            });
            connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
        }
    });
}

QUrl LocalHttpServer::Url(const QString& path) const {
    return QUrl(QStringLiteral("http://127.0.0.1:%1%2").arg(m_server.serverPort()).arg(path));
}

void LocalHttpServer::Serve(const QString& path, Route route) {
    m_routes.insert(path, std::move(route));
}

void LocalHttpServer::ServeXml(const QString& path, const QByteArray& body, const QByteArray& lastModified) {
    Route route{.body = body, .headers = {{"Content-Type", "application/xml; charset=utf-8"}}};
    if (!lastModified.isEmpty()) {
        route.headers.append({"Last-Modified", lastModified});
    }
    Serve(path, route);
}

void LocalHttpServer::Redirect(const QString& path, const QUrl& target, int status) {
    Serve(path, {.status = status, .headers = {{"Location", target.toEncoded()}}});
}

void LocalHttpServer::Answer(QTcpSocket* socket, const QByteArray& request) {
    const QList<QByteArray> words = request.left(request.indexOf("\r\n")).split(' ');
    const QByteArray method = words.value(0);
    const QString path = QString::fromLatin1(words.value(1));
    m_requests.append(QString::fromLatin1(method) + u' ' + path);
    const Route route = m_routes.value(path, {.status = 404, .body = "not found"});
    if (route.reset) {
        socket->abort();
        return;
    }
    if (route.hold) {
        return;
    }
    QByteArray answer = "HTTP/1.1 " + QByteArray::number(route.status) + " Status\r\n";
    for (const auto& [name, value] : std::as_const(route.headers)) {
        answer += name + ": " + value + "\r\n";
    }
    answer += "Content-Length: " + QByteArray::number(route.body.size()) + "\r\nConnection: close\r\n\r\n";
    if (method != "HEAD") {
        answer += route.body;
    }
    socket->write(answer);
    socket->disconnectFromHost();
}
