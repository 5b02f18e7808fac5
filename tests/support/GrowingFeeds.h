// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// A home whose profile "Reader" is subscribed to a few feeds of a local server, has fetched them
// once with tamsel-cli and marked the first feed read; afterwards every feed gains stories and a new
// Last-modified, so that the next fetch downloads all of them and writes every file. Tests copy the home and
// do that fetch in their own way. Needs TAMSEL_CLI_PATH and TAMSEL_BUILD_DATA_DIR from the test's build.
#include "platform/CRegSettings.h"
#include "platform/XmlDocument.h"
#include "support/CliProcess.h"
#include "support/LocalHttpServer.h"
#include "support/StoryFeed.h"

#include <QSet>
#include <QTemporaryDir>

class GrowingFeeds final {
public:
    static constexpr int kFeeds = 4;
    static constexpr int kItemsBefore = 3;
    static constexpr int kItemsAfter = 8;
    static inline const QByteArray kModifiedBefore = QByteArrayLiteral("Mon, 16 Nov 2026 08:00:00 GMT");
    static inline const QByteArray kModifiedAfter = QByteArrayLiteral("Tue, 17 Nov 2026 08:00:00 GMT");
    static inline const QString kProfile = QStringLiteral("Reader");

    GrowingFeeds() {
        m_server.ServeXml(QStringLiteral("/tamsel/spotlight.xml"), "<opml><body/></opml>",
                          "Mon, 16 Nov 2026 09:00:00 GMT");
        const QString home = m_base.path();
        CRegSettings(HomePaths(home))
            .SaveSetting(QStringLiteral("Common"), QStringLiteral("MakerSite"),
                         m_server.Url(QString()).toString());
        Serve(kItemsBefore, kModifiedBefore);
        m_ready = RunIn(home, {QStringLiteral("profile-add"), kProfile}).exitCode == 0;
        for (int feed = 1; feed <= kFeeds; ++feed) {
            m_ready = m_ready && RunIn(home, {QStringLiteral("add"), FeedUrl(feed)}).exitCode == 0;
        }
        const QStringList markRead{QStringLiteral("mark-read"), QStringLiteral("--channel"), FeedUrl(1)};
        m_ready = m_ready && RunIn(home, {QStringLiteral("fetch")}).exitCode == 0 &&
                  RunIn(home, markRead).exitCode == 0 && StoredItems(home) == Expected(kItemsBefore);
        Serve(kItemsAfter, kModifiedAfter);
    }

    // Whether the home could be made.
    bool Ready() const { return m_ready; }
    QString BaseHome() const { return m_base.path(); }
    QString FeedUrl(int feed) const {
        return m_server.Url(QStringLiteral("/feed") + QString::number(feed)).toString();
    }

    // Every feed carries `items` stories (a later version carries the earlier stories too).
    void Serve(int items, const QByteArray& lastModified) {
        for (int feed = 1; feed <= kFeeds; ++feed) {
            m_server.ServeXml(QStringLiteral("/feed") + QString::number(feed),
                              StoryFeed(feed, items, QByteArray(400, 'x')), lastModified);
        }
    }

    static QString ProfileFile(const QString& home, const QString& name) {
        return HomePaths(home).ProfileFolder(kProfile) + u'/' + name;
    }

    // The guids of the stored items, with " read" after those marked read.
    static QSet<QString> StoredItems(const QString& home) {
        const XmlDocument doc = XmlDocument::Load(ProfileFile(home, QStringLiteral("items.xml")));
        QSet<QString> items;
        for (XmlNode item = doc.DocumentElement().FirstChild(); !item.IsNull(); item = item.NextSibling()) {
            const XmlNode read = item.FirstChildElement(QStringLiteral("read"));
            items.insert(item.FirstChildElement(QStringLiteral("guid")).Text() +
                         (!read.IsNull() && read.Text() == QStringLiteral("true") ? QStringLiteral(" read")
                                                                                  : QString()));
        }
        return items;
    }

    // What StoredItems gives after a fetch of the first `items` stories of every feed: the stories
    // of the first feed that were there before the feeds grew are read.
    static QSet<QString> Expected(int items) {
        QSet<QString> expected;
        for (int feed = 1; feed <= kFeeds; ++feed) {
            for (int item = 1; item <= items; ++item) {
                expected.insert(QStringLiteral("feed%1-%2").arg(feed).arg(item) +
                                (feed == 1 && item <= kItemsBefore ? QStringLiteral(" read") : QString()));
            }
        }
        return expected;
    }

private:
    LocalHttpServer m_server;
    QTemporaryDir m_base;
    bool m_ready = false;
};
