// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/HeadlessHost.h"
#include "app/MakerSite.h"
#include "app/SharedHelpers.h"
#include "app/clsProfile.h"
#include "feeds/FeedServices.h"
#include "feeds/RSSChannel.h"
#include "feeds/colChannels.h"
#include "itembank/clsItemBank.h"
#include "itembank/modItemHandler.h"
#include "platform/CRegSettings.h"
#include "platform/HttpClient.h"
#include "platform/XsltStylesheet.h"
#include "support/DataRows.h"
#include "support/FakeClock.h"
#include "support/FakeHttpClient.h"
#include "support/RecordingDesktop.h"
#include "support/TestHome.h"

#include <QCoreApplication>
#include <QDir>
#include <QEvent>
#include <gtest/gtest.h>
#include <memory>

// A file of the suite's data folder, whole; empty when it cannot be read.
inline QByteArray ReadData(const QString& name) {
    return ReadFile(QStringLiteral(TAMSEL_TEST_DATA_DIR "/") + name);
}
// The names of the data files that match `pattern`, sorted.
inline QStringList DataFiles(const QString& pattern) {
    return QDir(QStringLiteral(TAMSEL_TEST_DATA_DIR)).entryList({pattern}, QDir::Files, QDir::Name);
}

// A profile ("Tester") on a fake clock and a fake network, held by a headless host that uses
// the shipped namespace stylesheet. Nothing is active until Activate. The Spotlight list is not
// fetched unless `serveSpotlight`.
class FeedsFixture : public ::testing::Test {
protected:
    static inline const QString kProfile = QStringLiteral("Tester");
    static inline const QString kFeedUrl = QStringLiteral("http://feeds.example.org/news.xml");

    // With `Network::Real` the profile fetches through a real network client (the integration
    // tests serve their feeds from a local server) and `http` stays idle.
    enum class Network { Fake, Real };
    explicit FeedsFixture(bool serveSpotlight = false, Network kind = Network::Fake);
    ~FeedsFixture() override;

    // Activates the profile through the host. Without `keepMakerChannels` the maker's two feeds
    // are taken out again, so that only the test's own channels use the network and the slots.
    void Activate(bool keepMakerChannels = false);
    clsItemBank& Bank() const { return *profile.ItemBank(); }
    // The items of `url` that are not deleted, in the bank of the active profile.
    ItemList Items(const QString& url = kFeedUrl) const { return Bank().SubChannelList(url, {}, {}); }
    QString ProfileFolder() const { return home.GetPaths().ProfileFolder(kProfile) + u'/'; }
    // data/fetch-example.xml: channel "Example News" dated Mon, 14 Nov 2005 08:00:00 GMT, a logo,
    // and items "First" (dated Tue, 15 Nov 2005 13:45:00 GMT) and "Second" (no date).
    static QByteArray ExampleFeed() { return ReadData(QStringLiteral("fetch-example.xml")); }
    // What channels of this profile work with; retries use `randomValue`.
    FeedServices ChannelServices();
    // A channel the user adds, outside the profile's collection (so the test owns it).
    std::unique_ptr<RSSChannel> NewChannel(const QString& url = kFeedUrl);

    // Answers the check in flight for `url` as a changed feed: HEAD, then GET with `body`.
    void AnswerFullCheck(const QString& url, const QByteArray& body, const QString& lastModified = QString());
    // Stores `count` unread items of `url` in the active profile's bank.
    void StoreItems(const QString& url, int count);
    // Lets queued events run, and the requests that channels dropped be destroyed.
    static void Flush() {
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    HttpClient& Client() { return network ? static_cast<HttpClient&>(*network) : http; }

    TestHome home;
    FakeClock clock;
    CRegSettings settings;
    FakeHttpClient http;
    std::unique_ptr<NetworkHttpClient> network;
    RecordingDesktop desktop;
    XsltStylesheet namespaceTransform;
    MakerSite site;
    HeadlessHost host;
    clsProfile profile;
    double randomValue = 0.5;
};

// The channel's channels.xml element alone, serialised.
inline QByteArray ElementBytes(RSSChannel& channel) {
    XmlDocument doc;
    doc.SetDocumentElement(channel.SaveXML(doc));
    return doc.ToBytes();
}
