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

void ViewerFixture::AddItems(int count, const QString& url) {
    for (int i = 0; i < count; ++i) {
        AddItem(QStringLiteral("Item ") + QString::number(i), QString(),
                QStringLiteral("Text ") + QString::number(i), url);
    }
}

void ViewerFixture::AddItem(const QString& title, const QString& link, const QString& description,
                            const QString& url, const QString& guid) {
    XmlDocument doc;
    XmlNode item = doc.CreateElement(QStringLiteral("item"));
    doc.SetDocumentElement(item);
    item.SetAttribute(QStringLiteral("channel"), url);
    item.SetAttribute(QStringLiteral("date"), FormatItemDate(clock.Now().date()));
    item.SetAttribute(QStringLiteral("time"), QStringLiteral("10:00:00"));
    item.AppendChild(doc.CreateTextElement(QStringLiteral("title"), title));
    if (!link.isEmpty()) {
        item.AppendChild(doc.CreateTextElement(QStringLiteral("link"), link));
    }
    item.AppendChild(doc.CreateTextElement(QStringLiteral("description"), description));
    item.AppendChild(doc.CreateTextElement(
        QStringLiteral("guid"), guid.isEmpty() ? QStringLiteral("g") + QString::number(++m_guid) : guid));
    item.AppendChild(doc.CreateTextElement(QStringLiteral("read"), QStringLiteral("false")));
    item.AppendChild(doc.CreateTextElement(QStringLiteral("flag"), QStringLiteral("false")));
    item.AppendChild(doc.CreateTextElement(QStringLiteral("delete"), QStringLiteral("false")));
    const RSSChannel* channel = profile.GetChannel(url);
    item.AppendChild(doc.CreateTextElement(QStringLiteral("channeltitle"),
                                           channel ? channel->Title() : QStringLiteral("Other")));
    ASSERT_TRUE(profile.AddItem(item)) << title.toStdString();
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
