// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/FakeHttpClient.h"

#include <QTimer>

class FakeHttpClient::Request final : public HttpRequest {
public:
    Request(QString url, QByteArray method) : m_url(std::move(url)), m_method(std::move(method)) {}

    QString GetHeader(const QString& name) const override {
        for (const auto& [header, value] : m_answer.headers) {
            if (header.compare(name, Qt::CaseInsensitive) == 0) {
                return value;
            }
        }
        return {};
    }
    QByteArray Body() const override { return m_answer.body; }
    QString ErrorString() const override { return m_answer.error ? QStringLiteral("failed") : QString(); }

    bool Matches(const QString& url, const QByteArray& method) const {
        return !m_answered && m_url == url && m_method == method;
    }
    bool Answered() const { return m_answered; }
    void Answer(const FakeHttpClient::Answer& answer) {
        m_answered = true;
        m_answer = answer;
        // A HEAD answer carries no body, as on the network.
        if (m_method == "HEAD") {
            m_answer.body.clear();
        }
        Q_EMIT StateChange(answer.error ? icError : icResponseCompleted);
    }

private:
    QString m_url;
    QByteArray m_method;
    FakeHttpClient::Answer m_answer;
    bool m_answered = false;
};

std::unique_ptr<HttpRequest> FakeHttpClient::Execute(const QUrl& url, const QByteArray& method) {
    const QString address = url.toString();
    auto request = std::make_unique<Request>(address, method);
    if (m_ignored.contains(address)) {
        return request;
    }
    m_log.append(QString::fromLatin1(method) + u' ' + address);
    const auto standing = m_standing.constFind(m_log.last());
    if (standing != m_standing.cend()) {
        QTimer::singleShot(0, request.get(),
                           [raw = request.get(), answer = *standing] { raw->Answer(answer); });
    } else {
        m_waiting.append(QPointer<Request>(request.get()));
    }
    return request;
}

int FakeHttpClient::Waiting(const QString& url, const QByteArray& method) const {
    int count = 0;
    for (const QPointer<Request>& request : m_waiting) {
        count += request && !request->Answered() && (url.isEmpty() || request->Matches(url, method)) ? 1 : 0;
    }
    return count;
}

bool FakeHttpClient::Complete(const QString& url, const QByteArray& method, const Answer& answer) {
    // Dropped and answered requests leave the list; the answer may start new requests.
    m_waiting.removeIf([](const QPointer<Request>& request) { return !request || request->Answered(); });
    for (const QPointer<Request>& request : std::as_const(m_waiting)) {
        if (request->Matches(url, method)) {
            request->Answer(answer);
            return true;
        }
    }
    return false;
}

bool FakeHttpClient::Complete(const QString& url, const QByteArray& method, const QByteArray& body,
                              const QString& lastModified) {
    Answer answer{.body = body};
    if (!lastModified.isEmpty()) {
        answer.headers.append({QStringLiteral("Last-Modified"), lastModified});
    }
    return Complete(url, method, answer);
}

bool FakeHttpClient::Fail(const QString& url, const QByteArray& method) {
    return Complete(url, method, Answer{.error = true});
}

void FakeHttpClient::AnswerAlways(const QString& url, const QByteArray& method, const Answer& answer) {
    m_standing.insert(QString::fromLatin1(method) + u' ' + url, answer);
}
