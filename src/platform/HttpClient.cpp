// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/HttpClient.h"

#include <QEventLoop>
#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <QNetworkAccessManager>
#include <QNetworkProxyFactory>
#include <QNetworkReply>
#include <QPointer>
#include <QTimer>

namespace {

constexpr int kMaxRedirects = 10;

// RFC 7231 date, as servers send it in Last-Modified.
QString HttpDate(const QDateTime& time) {
    return QLocale::c().toString(time.toUTC(), QStringLiteral("ddd, dd MMM yyyy hh:mm:ss")) + QStringLiteral(" GMT");
}

class NetworkRequest final : public HttpRequest {
public:
    NetworkRequest(QNetworkReply* reply) : m_reply(reply) {
        m_reply->setParent(this);
        connect(m_reply, &QNetworkReply::metaDataChanged, this, [this] { CheckSize(m_reply->header(QNetworkRequest::ContentLengthHeader).toLongLong()); });
        connect(m_reply, &QNetworkReply::downloadProgress, this, [this](qint64 received, qint64) { CheckSize(received); });
        connect(m_reply, &QNetworkReply::finished, this, &NetworkRequest::Finished);
    }
    ~NetworkRequest() override {
        // Aborting finishes the reply at once; nobody may hear of it any more.
        disconnect(m_reply, nullptr, this, nullptr);
        if (m_reply->isRunning()) {
            m_reply->abort();
        }
    }

    QString GetHeader(const QString& name) const override {
        return QString::fromLatin1(m_reply->rawHeader(name.toLatin1())).trimmed();
    }
    QByteArray Body() const override { return m_body; }
    QString ErrorString() const override { return m_error; }

private:
    void CheckSize(qint64 bytes) {
        if (bytes > HttpClient::kMaxResponseBytes && !m_tooLarge) {
            m_tooLarge = true;
            m_reply->abort();
        }
    }
    void Finished() {
        const int status = m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
        if (m_tooLarge) {
            m_error = QStringLiteral("the response is larger than %1 MiB").arg(HttpClient::kMaxResponseBytes >> 20);
        } else if (m_reply->error() != QNetworkReply::NoError) {
            m_error = m_reply->errorString();
        } else if (status >= 300) {
            m_error = QStringLiteral("HTTP status %1").arg(status);
        } else {
            m_body = m_reply->readAll();
        }
        Q_EMIT StateChange(m_error.isEmpty() ? icResponseCompleted : icError);
    }

    QNetworkReply* m_reply;
    QByteArray m_body;
    QString m_error;
    bool m_tooLarge = false;
};

// A file URL answered like a server would: HEAD gives Last-Modified, GET the bytes.
class FileRequest final : public HttpRequest {
public:
    FileRequest(const QString& path, bool head) {
        const QFileInfo info(path);
        QFile file(path);
        if (!info.isFile() || !file.open(QIODevice::ReadOnly)) {
            m_error = QStringLiteral("cannot open %1").arg(path);
        } else if (info.size() > HttpClient::kMaxResponseBytes) {
            m_error = QStringLiteral("the file is larger than %1 MiB").arg(HttpClient::kMaxResponseBytes >> 20);
        } else {
            m_lastModified = HttpDate(info.lastModified());
            if (!head) {
                m_body = file.readAll();
            }
        }
        // Reported from the event loop, as a network answer would be.
        QTimer::singleShot(0, this, [this] { Q_EMIT StateChange(m_error.isEmpty() ? icResponseCompleted : icError); });
    }

    QString GetHeader(const QString& name) const override {
        return name.compare(QStringLiteral("Last-modified"), Qt::CaseInsensitive) == 0 ? m_lastModified : QString();
    }
    QByteArray Body() const override { return m_body; }
    QString ErrorString() const override { return m_error; }

private:
    QString m_lastModified;
    QByteArray m_body;
    QString m_error;
};

class FailedRequest final : public HttpRequest {
public:
    explicit FailedRequest(QString error) : m_error(std::move(error)) {
        QTimer::singleShot(0, this, [this] { Q_EMIT StateChange(icError); });
    }
    QString GetHeader(const QString&) const override { return {}; }
    QByteArray Body() const override { return {}; }
    QString ErrorString() const override { return m_error; }

private:
    QString m_error;
};

} // namespace

QByteArray HttpClient::OpenURL(const QUrl& url, bool* ok) {
    if (ok) {
        *ok = false;
    }
    std::unique_ptr<HttpRequest> request = Execute(url, "GET");
    QEventLoop loop;
    int state = 0;
    QObject::connect(request.get(), &HttpRequest::StateChange, &loop, [&](int newState) {
        state = newState;
        loop.quit();
    });
    QTimer::singleShot(kOpenUrlTimeoutMs, &loop, &QEventLoop::quit);
    loop.exec();
    if (state != HttpRequest::icResponseCompleted) {
        return {};
    }
    if (ok) {
        *ok = true;
    }
    return request->Body();
}

struct NetworkHttpClient::Private {
    explicit Private(Paths folders) : paths(std::move(folders)) {}
    Paths paths;
    QNetworkAccessManager manager;
};

NetworkHttpClient::NetworkHttpClient(Paths paths) : d(std::make_unique<Private>(std::move(paths))) {
    QNetworkProxyFactory::setUseSystemConfiguration(true);
    d->manager.setRedirectPolicy(QNetworkRequest::NoLessSafeRedirectPolicy);
}

NetworkHttpClient::~NetworkHttpClient() = default;

QByteArray NetworkHttpClient::UserAgent() {
    return QByteArrayLiteral("Tamsel/" TAMSEL_VERSION " (feed reader; Linux)");
}

std::unique_ptr<HttpRequest> NetworkHttpClient::Execute(const QUrl& address, const QByteArray& method) {
    const QUrl url = d->paths.ResolveSiteUrl(address);
    const bool head = method.compare("HEAD", Qt::CaseInsensitive) == 0;
    if (url.isLocalFile()) {
        return std::make_unique<FileRequest>(url.toLocalFile(), head);
    }
    const QString scheme = url.scheme().toLower();
    if (!url.isValid() || (scheme != QStringLiteral("http") && scheme != QStringLiteral("https"))) {
        return std::make_unique<FailedRequest>(QStringLiteral("unsupported address %1").arg(url.toString()));
    }
    QNetworkRequest request(url);
    request.setHeader(QNetworkRequest::UserAgentHeader, UserAgent());
    request.setMaximumRedirectsAllowed(kMaxRedirects);
    request.setAttribute(QNetworkRequest::CacheLoadControlAttribute, QNetworkRequest::AlwaysNetwork);
    QNetworkReply* reply = head ? d->manager.head(request) : d->manager.get(request);
    return std::make_unique<NetworkRequest>(reply);
}
