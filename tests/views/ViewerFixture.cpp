// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ViewerFixture.h"

#include "feeds/RSSChannel.h"
#include "feeds/colChannels.h"
#include "itembank/clsItemBank.h"
#include "itembank/modItemHandler.h"
#include "platform/XmlDocument.h"
#include "views/frmProperties.h"
#include "views/frmViewer.h"

#include <QCoreApplication>

ViewerFixture::ViewerFixture()
    : settings(home.GetPaths()),
      namespaceTransform(XsltStylesheet::Load(home.GetPaths().ResourceFile(QStringLiteral("tamselns.xsl")))),
      site(settings), inner(clock, namespaceTransform, site.HelpURL()), host(inner),
      skin(settings, home.GetPaths(), clock, skinHost),
      profile(Services{clock, settings, http, desktop, home.GetPaths()}, host),
      windows(ViewerServices{host, skin, desktop, http, settings}) {
    settings.SaveSetting(QStringLiteral("SETTINGS"), QStringLiteral("SKINNAME"), QStringLiteral("Default"));
    skin.LoadSkin();
    host.SetWindows(&windows);
    http.Ignore(site.SpotlightURL());
    profile.SetName(kProfile);
    inner.ChangeUser(&profile);
    profile.Channels()->DelChannel(site.NewsURL());
    profile.Channels()->DelChannel(site.HelpURL());
    http.Ignore(kFeedUrl);
    RSSChannel* channel = profile.AddChannel(kFeedUrl, QStringLiteral("News"));
    channel->SetTitle(kFeedTitle);
    channel->StopReloading();
}

ViewerFixture::~ViewerFixture() {
    windows.CloseAll();
    inner.ChangeUser(nullptr);
    Flush();
}

clsItemBank& ViewerFixture::Bank() const {
    return *profile.ItemBank();
}

RSSChannel& ViewerFixture::Channel() {
    return *profile.GetChannel(kFeedUrl);
}

void ViewerFixture::AddItems(int count) {
    for (int i = 0; i < count; ++i) {
        AddItem(QStringLiteral("Item ") + QString::number(i), QString(),
                QStringLiteral("Text ") + QString::number(i));
    }
}

void ViewerFixture::AddItem(const QString& title, const QString& link, const QString& description) {
    const QString xml =
        QStringLiteral(
            "<item channel=\"%1\" date=\"%2\" time=\"10:00:00\"><title>%3</title>%4<description>%5"
            "</description><guid>g%6</guid><read>false</read><flag>false</flag><delete>false</delete>"
            "<channeltitle>%7</channeltitle></item>")
            .arg(kFeedUrl, FormatItemDate(clock.Now().date()), title.toHtmlEscaped(),
                 link.isEmpty() ? QString() : QStringLiteral("<link>%1</link>").arg(link.toHtmlEscaped()),
                 description.toHtmlEscaped(), QString::number(++m_guid), kFeedTitle);
    ASSERT_TRUE(profile.AddItem(XmlDocument::Parse(xml.toUtf8()).DocumentElement())) << title.toStdString();
}

frmViewer& ViewerFixture::Open(const QString& key) {
    RSSChannel* channel = profile.GetChannel(key);
    EXPECT_NE(channel, nullptr);
    channel->CreateChannelView(true);
    frmViewer* viewer = windows.Window(*channel);
    EXPECT_NE(viewer, nullptr);
    return *viewer;
}

void ViewerFixture::Settle(frmViewer& viewer) {
    constexpr int kMaxTicks = 200;
    for (int tick = 0; tick < kMaxTicks && viewer.PreviewAnimating(); ++tick) {
        viewer.tmrIEShowHide_Timer();
    }
}

void ViewerFixture::Flush() {
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}
