// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/XmlSecurity.h"

#include <QDir>
#include <QFileInfo>
#include <QHash>
#include <QUrl>
#include <libxml/parser.h>
#include <libxml/parserInternals.h>
#include <mutex>

namespace {

struct Guard {
    QString trustedFolder; // canonical, without a trailing separator
    QHash<QString, QString> dtds;
};

Guard& TheGuard() {
    static Guard guard;
    return guard;
}

QString LocalPathOf(const char* url) {
    if (!url) {
        return {};
    }
    const QString text = QString::fromUtf8(url);
    const QUrl parsed(text);
    if (parsed.isLocalFile()) {
        return parsed.toLocalFile();
    }
    // A scheme other than file (http, ftp, data, ...) never names a file of ours.
    if (!parsed.scheme().isEmpty() && parsed.scheme().size() > 1) {
        return {};
    }
    return text;
}

xmlParserInput* GuardedLoader(const char* url, const char* id, xmlParserCtxt* ctxt) {
    const Guard& guard = TheGuard();
    QString local;
    if (id && guard.dtds.contains(QString::fromUtf8(id))) {
        local = guard.dtds.value(QString::fromUtf8(id));
    } else if (url && guard.dtds.contains(QString::fromUtf8(url))) {
        local = guard.dtds.value(QString::fromUtf8(url));
    } else {
        local = LocalPathOf(url);
        if (!XmlSecurity::IsTrustedFile(local)) {
            return nullptr;
        }
    }
    return xmlNewInputFromFile(ctxt, QFile::encodeName(local).constData());
}

} // namespace

namespace XmlSecurity {

void Install() {
    static std::once_flag once;
    std::call_once(once, [] {
        xmlInitParser();
        xmlSetExternalEntityLoader(GuardedLoader);
    });
}

void SetTrustedFolder(const QString& folder) {
    Install();
    const QString canonical = QFileInfo(folder).canonicalFilePath();
    TheGuard().trustedFolder = canonical;
}

QString TrustedFolder() {
    return TheGuard().trustedFolder;
}

void MapDtd(const QString& publicOrSystemId, const QString& localFile) {
    Install();
    TheGuard().dtds.insert(publicOrSystemId, localFile);
}

void MapShippedDtds(const QString& resourceFolder) {
    struct ShippedDtd {
        const char* id;
        const char* file;
    };
    static constexpr ShippedDtd kShippedDtds[] = {
        {"-//Netscape Communications//DTD RSS 0.91//EN", "dtd/rss-0.91.dtd"},
        {"http://my.netscape.com/publish/formats/rss-0.91.dtd", "dtd/rss-0.91.dtd"},
    };
    const QDir folder(resourceFolder);
    for (const ShippedDtd& dtd : kShippedDtds) {
        MapDtd(QString::fromLatin1(dtd.id), folder.filePath(QString::fromLatin1(dtd.file)));
    }
}

bool IsTrustedFile(const QString& path) {
    const QString folder = TheGuard().trustedFolder;
    if (folder.isEmpty() || path.isEmpty()) {
        return false;
    }
    const QString canonical = QFileInfo(path).canonicalFilePath();
    return !canonical.isEmpty() && canonical.startsWith(folder + u'/');
}

} // namespace XmlSecurity
