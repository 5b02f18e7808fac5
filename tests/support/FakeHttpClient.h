// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/HttpClient.h"

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QPointer>
#include <QSet>
#include <QString>
#include <QStringList>
#include <utility>

// An HTTP client whose requests answer only when the test says so: Complete or Fail answer the
// oldest waiting request of a URL and method at once, from the test's own call. Answers given in
// advance with AnswerAlways are delivered from the event loop, as the network would deliver them
// (needed for OpenURL, which waits in a nested loop).
class FakeHttpClient final : public HttpClient {
public:
    struct Answer {
        QByteArray body;
        QList<std::pair<QString, QString>> headers;
        // Fail instead of completing.
        bool error = false;
    };

    std::unique_ptr<HttpRequest> Execute(const QUrl& url, const QByteArray& method) override;

    // Every request made, in order, as "METHOD url".
    QStringList Requests() const { return m_log; }
    void ClearRequests() { m_log.clear(); }
    // Requests still waiting whose owner has not dropped them (of that URL and method, if given).
    int Waiting(const QString& url = {}, const QByteArray& method = {}) const;
    // Answers the oldest waiting request of that URL and method; false when none waits.
    bool Complete(const QString& url, const QByteArray& method, const Answer& answer);
    bool Complete(const QString& url, const QByteArray& method, const QByteArray& body,
                  const QString& lastModified = QString());
    bool Fail(const QString& url, const QByteArray& method);
    // Every later request of that URL and method is answered so from the event loop.
    void AnswerAlways(const QString& url, const QByteArray& method, const Answer& answer);
    // Requests of that URL are neither logged nor answered: a service the test does not look at.
    void Ignore(const QString& url) { m_ignored.insert(url); }

    class Request;

private:
    QStringList m_log;
    QList<QPointer<Request>> m_waiting;
    QHash<QString, Answer> m_standing;
    QSet<QString> m_ignored;
};
