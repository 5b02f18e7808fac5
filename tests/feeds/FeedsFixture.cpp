// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "FeedsFixture.h"

FeedsFixture::FeedsFixture(bool serveSpotlight, Network kind)
    : settings(home.GetPaths()),
      network(kind == Network::Real ? std::make_unique<NetworkHttpClient>(home.GetPaths()) : nullptr),
      namespaceTransform(XsltStylesheet::Load(home.GetPaths().ResourceFile(QStringLiteral("tamselns.xsl")))),
      site(settings), host(clock, namespaceTransform, site.HelpURL()),
      profile(Services{clock, settings, Client(), desktop, home.GetPaths()}, host) {
    profile.SetName(kProfile);
    if (!serveSpotlight) {
        http.Ignore(site.SpotlightURL());
    }
}

FeedsFixture::~FeedsFixture() {
    host.ChangeUser(nullptr);
    Flush();
}

void FeedsFixture::Activate(bool keepMakerChannels) {
    host.ChangeUser(&profile);
    if (!keepMakerChannels) {
        profile.Channels()->DelChannel(site.NewsURL());
        profile.Channels()->DelChannel(site.HelpURL());
    }
    host.ClearStateChanges();
}

FeedServices FeedsFixture::ChannelServices() {
    return FeedServices{clock,           settings,       Client(),
                        home.GetPaths(), host,           namespaceTransform,
                        site.HelpURL(),  site.NewsURL(), [this] { return randomValue; }};
}

std::unique_ptr<RSSChannel> FeedsFixture::NewChannel(const QString& url) {
    auto channel = std::make_unique<RSSChannel>(ChannelServices());
    channel->CreateRSS(url);
    channel->SetUsername(kProfile);
    channel->LoadLocal(ProfileFolder());
    return channel;
}

void FeedsFixture::AnswerFullCheck(const QString& url, const QByteArray& body, const QString& lastModified) {
    ASSERT_TRUE(http.Complete(url, "HEAD", QByteArray(), lastModified))
        << "no HEAD waits for " << url.toStdString();
    ASSERT_TRUE(http.Complete(url, "GET", body, lastModified)) << "no GET waits for " << url.toStdString();
}

void FeedsFixture::StoreItems(const QString& url, int count) {
    const QString item =
        QStringLiteral("<item channel=\"%1\" date=\"16 Nov 2026\" time=\"09:00:00\"><title>%1 %2</title>"
                       "<read>false</read><flag>false</flag><delete>false</delete></item>");
    for (int i = 0; i < count; ++i) {
        ASSERT_TRUE(Bank().AddItem(XmlDocument::Parse(item.arg(url).arg(i).toUtf8()).DocumentElement()));
    }
}
