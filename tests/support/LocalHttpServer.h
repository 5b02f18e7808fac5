// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QObject>
#include <QString>
#include <QTcpServer>
#include <QUrl>

// A small HTTP/1.1 server on 127.0.0.1 for integration tests. Each path answers as configured;
// every request is logged as "METHOD /path".
class LocalHttpServer final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(LocalHttpServer)
public:
    struct Route {
        int status = 200;
        QByteArray body;
        QList<std::pair<QByteArray, QByteArray>> headers;
        // Close the connection without an answer.
        bool reset = false;
        // Never answer: the connection stays open and silent.
        bool hold = false;
    };

    LocalHttpServer();

    QUrl Url(const QString& path) const;
    void Serve(const QString& path, Route route);
    void ServeXml(const QString& path, const QByteArray& body, const QByteArray& lastModified = {});
    void Redirect(const QString& path, const QUrl& target, int status = 302);
    QStringList Requests() const { return m_requests; }
    void ClearRequests() { m_requests.clear(); }

private:
    void Answer(class QTcpSocket* socket, const QByteArray& request);

    QTcpServer m_server;
    QHash<QString, Route> m_routes;
    QStringList m_requests;
};
