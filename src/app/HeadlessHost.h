// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/AppHost.h"
#include "app/RefreshCoordinator.h"
#include "feeds/ChannelViewer.h"

#include <QHash>
#include <QRect>
#include <QStringList>
#include <functional>
#include <map>
#include <memory>

class Clock;
class XsltStylesheet;

// The program around the channels without any window: for tests and the command-line tool. It
// holds the active profile, shares the slot limit and the folder recount with the main window
// (RefreshCoordinator), stores items through the active profile, keeps each channel's caption
// and icon as the tree would show them, records messages and viewer requests, and opens no window.
class HeadlessHost final : public AppHost, private RefreshCoordinator::Target {
public:
    // A viewer that is only a record: what the channel asked of it, and a geometry it keeps.
    class RecordedViewer final : public ChannelViewer {
    public:
        explicit RecordedViewer(RSSChannel& channel) : m_channel(channel) {}

        void SetCaption(const QString& caption) override;
        void SetupView(const QString& key, const QString& pagePath) override;
        void SetVisible(bool visible) override;
        void ShowItem(int index) override;
        void SetGeometry(const QRect& geometry) override;
        QRect Geometry() const override { return m_geometry; }
        int WindowState() const override { return m_windowState; }
        void SetPanelHeight(int height) override;
        int PanelHeight() const override { return m_panelHeight; }

        // What a user would do to the window.
        void UserResize(const QRect& geometry);
        void SetWindowState(int state) { m_windowState = state; }

        bool Visible() const { return m_visible; }
        QString Caption() const { return m_caption; }
        // Every request in order: "caption …", "setup key|page", "show", "hide", "item n",
        // "geometry left,top,width,height", "panel n".
        QStringList Calls() const { return m_calls; }

    private:
        RSSChannel& m_channel;
        QString m_caption;
        QRect m_geometry;
        int m_windowState = kNormalState;
        int m_panelHeight = 0;
        bool m_visible = false;
        QStringList m_calls;
    };

    HeadlessHost(Clock& clock, const XsltStylesheet& namespaceTransform, QString helpUrl);
    ~HeadlessHost() override;
    HeadlessHost(const HeadlessHost&) = delete;
    HeadlessHost& operator=(const HeadlessHost&) = delete;

    // Switches profiles as the main window does: the old one is deactivated after it stopped
    // being the active one, then the new one becomes active and loads. None leaves no profile.
    void ChangeUser(clsProfile* profile);

    void PopupInfo(const QString& message, const QString& profileName, const QString& channelKey) override;
    bool RequestConnect() override { return m_coordinator.RequestConnect(); }
    void ConnectRelease() override { m_coordinator.ConnectRelease(); }
    void StateChange(const QString& profileName, RSSChannel& channel) override;
    bool AddRSSItem(const XmlNode& item) override;
    clsProfile* ActiveProfile() const override { return m_activeProfile; }
    const XsltStylesheet& NamespaceTransform() const override { return m_namespaceTransform; }
    bool FirstRun() const override { return m_firstRun; }
    void SetFirstRun(bool firstRun) override { m_firstRun = firstRun; }
    ChannelViewer* Viewer(const RSSChannel& channel) const override;
    ChannelViewer* LoadViewer(RSSChannel& channel) override;
    void UnloadViewer(RSSChannel& channel) override;
    void AddChannel(const QString& url, const QString& groupName) override;

    RefreshCoordinator& Coordinator() { return m_coordinator; }
    // Messages are also written to standard error when asked (the command-line tool).
    void SetPrintPopups(bool print) { m_printPopups = print; }
    // Told of every state report of a channel of the active profile, and of every item handed
    // to the bank with whether it changed the bank (how the command-line tool follows a fetch).
    void SetStateObserver(std::function<void(RSSChannel& channel)> observer) {
        m_stateObserver = std::move(observer);
    }
    void SetItemObserver(std::function<void(const XmlNode& item, bool isNew)> observer) {
        m_itemObserver = std::move(observer);
    }
    QStringList Popups() const { return m_popups; }
    // The caption and icon key last shown for a channel URL; empty when never shown.
    QString NodeText(const QString& url) const;
    QString NodeIcon(const QString& url) const;
    // URLs of the channels whose state reports were accepted, in order.
    QStringList StateChanges() const { return m_stateChanges; }
    void ClearStateChanges() { m_stateChanges.clear(); }
    // The loaded viewer of a channel as a record; none when not loaded.
    RecordedViewer* ViewerOf(const RSSChannel& channel) const;
    // "load URL" and "unload URL", in order.
    QStringList ViewerRequests() const { return m_viewerRequests; }

private:
    struct Node {
        QString text;
        QString icon;
    };

    bool UpdateChannelNode(RSSChannel& channel) override;

    const XsltStylesheet& m_namespaceTransform;
    RefreshCoordinator m_coordinator;
    clsProfile* m_activeProfile = nullptr;
    bool m_firstRun = false;
    bool m_printPopups = false;
    std::function<void(RSSChannel&)> m_stateObserver;
    std::function<void(const XmlNode&, bool)> m_itemObserver;
    QStringList m_popups;
    QHash<QString, Node> m_nodes;
    QStringList m_stateChanges;
    std::map<const RSSChannel*, std::unique_ptr<RecordedViewer>> m_viewers;
    QStringList m_viewerRequests;
};
