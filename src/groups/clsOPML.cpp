// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "groups/clsOPML.h"

#include "app/AppHost.h"
#include "platform/HttpClient.h"
#include "platform/LongTimer.h"
#include "platform/XmlDocument.h"

#include <QEventLoop>
#include <QFileInfo>
#include <QPointer>
#include <QUrl>

namespace {

QUrl UrlOf(const QString& location) {
    const QUrl url(location);
    if (url.scheme().size() > 1) {
        return url;
    }
    return QUrl::fromLocalFile(QFileInfo(location).absoluteFilePath());
}

// The leading number of a text, as the outline's "count" is read; 0 when there is none.
int LeadingNumber(const QString& text) {
    const QString trimmed = text.trimmed();
    qsizetype end = 0;
    if (end < trimmed.size() && (trimmed[end] == u'-' || trimmed[end] == u'+')) {
        ++end;
    }
    while (end < trimmed.size() && trimmed[end].isDigit()) {
        ++end;
    }
    return trimmed.left(end).toInt();
}

} // namespace

clsOPML::clsOPML(Clock& clock, HttpClient& http, AppHost& host, QObject* parent)
    : QObject(parent), m_clock(clock), m_http(http), m_host(host) {}

clsOPML::~clsOPML() {
    if (m_wait) {
        m_wait->quit();
    }
}

void clsOPML::LoadOPML(const QString& location) {
    m_entries.clear();
    m_location = location;
    m_title = location;
    m_loading = true;
    m_failed = false;
    m_request = m_http.Execute(UrlOf(location), "GET");

    QEventLoop wait;
    LongTimer timeout(m_clock);
    timeout.SetInterval(kWaitMs);
    timeout.SetEnabled(true);
    connect(&timeout, &LongTimer::OnTimer, &wait, &QEventLoop::quit);
    connect(m_request.get(), &HttpRequest::StateChange, this, [this, &wait](int state) {
        XMLDoc_onreadystatechange(state);
        wait.quit();
    });
    const QPointer<clsOPML> self(this);
    m_wait = &wait;
    wait.exec();
    if (!self) {
        return;
    }
    m_wait = nullptr;
    // A completion after the wait must find nobody listening.
    m_request.reset();
    if (m_loading) {
        m_loading = false;
        m_failed = true;
        Q_EMIT FileTimout();
    } else {
        Q_EMIT FileLoaded();
    }
}

void clsOPML::XMLDoc_onreadystatechange(int state) {
    if (!m_loading) {
        return;
    }
    const XmlDocument doc = state == HttpRequest::icResponseCompleted ? XmlDocument::Parse(m_request->Body())
                                                                      : XmlDocument::Adopt(nullptr);
    if (!doc.IsNull()) {
        WalkOutlines(doc.DocumentElement());
    } else {
        m_failed = true;
        m_host.PopupInfo(kReadError + QStringLiteral("\r\n") + m_title, QString(), QString());
    }
    m_loading = false;
}

void clsOPML::WalkOutlines(const XmlNode& node) {
    const QString name = node.Name().toLower();
    if (node.HasChildNodes()) {
        if (name == QStringLiteral("title")) {
            m_title = node.FirstChild().Text();
        } else {
            for (XmlNode child = node.FirstChild(); !child.IsNull(); child = child.NextSibling()) {
                WalkOutlines(child);
            }
        }
    }
    if (name != QStringLiteral("outline") && !name.endsWith(QStringLiteral(":outline"))) {
        return;
    }
    Entry entry;
    // Some readers write only "title"; it names the outline when "text" does not.
    QString titleAttribute;
    for (const auto& [name, value] : node.Attributes()) {
        const QString local = name.toLower();
        if (local == QStringLiteral("text")) {
            entry.title = value;
        } else if (local == QStringLiteral("title")) {
            titleAttribute = value;
        } else if (local == QStringLiteral("count")) {
            entry.expire = LeadingNumber(value);
        } else if (local == QStringLiteral("xmlurl")) {
            entry.url = value.trimmed();
        }
    }
    if (entry.title.trimmed().isEmpty()) {
        entry.title = titleAttribute;
    }
    m_entries.push_back(std::move(entry));
}

QString clsOPML::GetURL(int index) const {
    return index >= 0 && index < GetCount() ? m_entries[size_t(index)].url : QString();
}

QString clsOPML::GetTitle(int index) const {
    return index >= 0 && index < GetCount() ? m_entries[size_t(index)].title : QString();
}

int clsOPML::GetExpire(int index) const {
    return index >= 0 && index < GetCount() ? m_entries[size_t(index)].expire : 0;
}
