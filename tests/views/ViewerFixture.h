// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/HeadlessHost.h"
#include "app/MakerSite.h"
#include "app/Services.h"
#include "app/clsProfile.h"
#include "platform/CRegSettings.h"
#include "platform/XsltStylesheet.h"
#include "skin/SkinTestSupport.h"
#include "support/FakeClock.h"
#include "support/FakeHttpClient.h"
#include "support/RecordingDesktop.h"
#include "support/TestHome.h"
#include "views/ViewerWindows.h"

#include <gtest/gtest.h>
#include <memory>

class RSSChannel;
class frmViewer;

// The program around the viewers for tests: everything but the windows is a headless host; the
// viewers are the real windows kept by ViewerWindows.
class ViewerTestHost final : public AppHost {
public:
    ViewerTestHost(HeadlessHost& inner) : m_inner(inner) {}
    void SetWindows(ViewerWindows* windows) { m_windows = windows; }

    void PopupInfo(const QString& message, const QString& profileName, const QString& channelKey) override {
        m_inner.PopupInfo(message, profileName, channelKey);
    }
    bool RequestConnect() override { return false; }
    void StateChange(const QString& profileName, RSSChannel& channel) override {
        m_inner.StateChange(profileName, channel);
    }
    bool AddRSSItem(const XmlNode& item) override { return m_inner.AddRSSItem(item); }
    clsProfile* ActiveProfile() const override { return m_inner.ActiveProfile(); }
    const XsltStylesheet& NamespaceTransform() const override { return m_inner.NamespaceTransform(); }
    ChannelViewer* Viewer(const RSSChannel& channel) const override {
        return m_windows ? m_windows->Viewer(channel) : nullptr;
    }
    ChannelViewer* LoadViewer(RSSChannel& channel) override {
        return m_windows ? m_windows->LoadViewer(channel) : nullptr;
    }
    void UnloadViewer(RSSChannel& channel) override {
        if (m_windows) {
            m_windows->UnloadViewer(channel);
        }
    }

private:
    HeadlessHost& m_inner;
    ViewerWindows* m_windows = nullptr;
};

// An active profile "Reader" with the shipped Default skin, real item bank and channels, and the
// viewer windows; the network never answers and links are recorded.
class ViewerFixture : public ::testing::Test {
protected:
    static inline const QString kProfile = QStringLiteral("Reader");
    static inline const QString kFeedUrl = QStringLiteral("http://feeds.example.org/news.xml");
    static inline const QString kFeedTitle = QStringLiteral("Example News");

    ViewerFixture();
    ~ViewerFixture() override;

    clsItemBank& Bank() const;
    // The test's channel, in the profile, titled kFeedTitle.
    RSSChannel& Channel();
    // Stores `count` items of the test channel: "Item 0" first (oldest) to "Item count-1".
    void AddItems(int count);
    // Stores one item of the test channel.
    void AddItem(const QString& title, const QString& link = QString(),
                 const QString& description = QString());
    // Opens the channel's (or folder's) viewer as the tree does.
    frmViewer& Open(const QString& key = kFeedUrl);
    // Runs the preview animation until it stops.
    static void Settle(frmViewer& viewer);
    static void Flush();

    TestHome home;
    FakeClock clock;
    CRegSettings settings;
    FakeHttpClient http;
    RecordingDesktop desktop;
    XsltStylesheet namespaceTransform;
    MakerSite site;
    HeadlessHost inner;
    ViewerTestHost host;
    FakeSkinHost skinHost;
    frmTamselSkin skin;
    clsProfile profile;
    ViewerWindows windows;
    int m_guid = 0;
};
