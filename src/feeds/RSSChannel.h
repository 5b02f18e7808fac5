// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "feeds/FeedServices.h"
#include "itembank/clsItemBank.h"
#include "platform/LongTimer.h"
#include "platform/XmlDocument.h"
#include "platform/XmlNode.h"

#include <QDateTime>
#include <QObject>
#include <QRect>
#include <QString>
#include <QUrl>
#include <array>
#include <memory>

class ChannelViewer;
class HttpRequest;
class RSSImage;

// One subscribed feed of a profile, or one built-in folder. It holds the feed's channel fields,
// the user's settings for it and the geometry of its viewer, and fetches the feed on its own
// schedule: a reload tick asks the host for a connection slot, a HEAD request compares the
// feed's Last-Modified with the stored one, and only a changed (or never checked) feed is loaded,
// normalised by the namespace stylesheet and walked; its items are stamped and handed to the
// host, which stores them in the active profile's item bank.
//
// The channel stores no items: ItemSet is its list of items in the bank. The host must outlive
// its channels.
class RSSChannel final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(RSSChannel)
public:
    // The first check follows 7 s after creation.
    static constexpr quint32 kFirstCheckMs = 7000;
    static constexpr quint32 kTimeOutMs = 25000;
    // While the viewer is open the check is put off by a minute at a time.
    static constexpr quint32 kViewerOpenDelayMs = 60000;
    static constexpr quint32 kMinuteMs = 60000;
    // A refused slot is asked for again after 1 to 3 s.
    static constexpr quint32 kRetryMinMs = 1000;
    static constexpr quint32 kRetrySpreadMs = 2000;
    // After a time-out or a document that did not parse.
    static constexpr quint32 kBackOffMs = 3600000;
    // The largest reload period whose milliseconds fit a signed 32-bit number.
    static constexpr int kMaxUpdateMinutes = 35791;
    static constexpr int kNewExpireDays = 60;
    static constexpr int kNewUpdateMinutes = 60;
    static constexpr qint16 kDefaultPanelHeight = 300;
    static inline const QString kNeverChecked = QStringLiteral("-1");

    explicit RSSChannel(FeedServices services, QObject* parent = nullptr);
    // Closes the viewer, drops a fetch in flight (its completion is never heard), gives back a
    // slot it holds and deletes the viewer's page file.
    ~RSSChannel() override;

    // A channel the user adds: expire 60 days, update 60 minutes, a new ID, title = URL.
    void CreateRSS(const QString& url);
    // A channel with given values (the built-ins); `folder` ends in a path separator.
    void GenerateChannel(const QString& url, const QString& title, int expire, int update, const QString& id,
                         const QString& folder, const QString& username);

    QString URL() const { return m_url; }
    QString ID() const { return m_id; }
    void SetID(const QString& id) { m_id = id; }
    QString Username() const { return m_username; }
    void SetUsername(const QString& username) { m_username = username; }
    QString ProfileFolder() const { return m_profileFolder; }
    QString Title() const { return Text(TextField::Title); }
    void SetTitle(const QString& title) { SetText(TextField::Title, title); }
    QString Link() const { return Text(TextField::Link); }
    QString Description() const { return Text(TextField::Description); }
    QString Language() const { return Text(TextField::Language); }
    QString Copyright() const { return Text(TextField::Copyright); }
    QString ManagingEditor() const { return Text(TextField::ManagingEditor); }
    QString WebMaster() const { return Text(TextField::WebMaster); }
    QString PubDate() const { return Text(TextField::PubDate); }
    QString LastBuildDate() const { return Text(TextField::LastBuildDate); }
    QString Catergory() const { return Text(TextField::Catergory); }
    QString Generator() const { return Text(TextField::Generator); }
    QString Docs() const { return Text(TextField::Docs); }
    QString Rating() const { return m_rating; }
    qint32 TimeToLive() const { return m_timeToLive; }
    // The logo's address (the image object is created on first use).
    QString ImageURL();
    RSSImage& Image();

    qint32 Expire() const { return m_expire; }
    void SetExpire(qint32 days) { m_expire = days; }
    qint32 Update() const { return m_update; }
    // Only stores the value; the reload timer takes it over at its next tick.
    void SetUpdate(qint32 minutes) { m_update = minutes; }
    bool OpenLink() const { return m_openLink; }
    void SetOpenLink(bool openLink) { m_openLink = openLink; }
    bool NewItems() const { return m_newItems; }
    // Stores the value and reports the state, so that the tree's icon follows.
    void SetNewItems(bool newItems);

    qint16 WindowState() const { return m_windowState; }
    QRect WindowGeometry() const { return QRect(m_windowLeft, m_windowTop, m_windowWidth, m_windowHeight); }
    void SetWindowGeometry(const QRect& geometry);
    qint16 PanelHeight() const { return m_panelHeight; }
    bool Restoring() const { return m_restoring; }

    bool Busy() const { return m_busy; }
    bool LocalLoad() const { return m_localLoad; }
    bool LoadFailed() const { return m_loadFailed; }
    QString LastModified() const { return m_lastModified; }
    qint32 UnreadCount() const { return m_unreadCount; }
    // The reload timer's current period, for the host's and tests' inspection.
    quint32 ReloadInterval() const { return m_Reloader.Interval(); }

    // Tree caption: the title (else the URL), two blanks and the item count in parentheses.
    QString TitleAndCount();
    // Loads the item set first when it was never loaded.
    qint32 ItemCount();
    // The item at a 0-based index of the item set; a null node outside it.
    XmlNode ItemNode(int index);

    // A "channel" element made in `doc` (the caller appends it).
    XmlNode SaveXML(XmlDocument& doc);
    // Appends the feed's fields, the TTL, the rating and the image to `channel`.
    void SaveChildXML(XmlNode& channel, XmlDocument& doc);
    // Fills the channel from a "channel" element; names in any letter case, at any depth.
    void LoadChannel(const XmlNode& node);
    // Sets the profile folder and, when the cached feed (folder + ID + ".xml") can be read, loads
    // it like a network load but without a slot.
    void LoadLocal(const QString& folder);
    // An "outline" element for the OPML export.
    XmlNode SaveOPML(XmlDocument& doc) const;

    // With an active profile: the item set and the unread count from its item bank.
    void LoadChannelSet();
    void DeleteItem(int index);
    void FlagItem(int index);
    void MarkAllRead();
    // The channel is being removed from its profile: stops its fetching, deletes its logo file
    // and removes its items (except those marked deleted) from the active profile's bank.
    void KillMe();

    // Opens the viewer (loading it when needed) and shows or hides it; clears NewItems.
    void CreateChannelView(bool show);
    void ShowItem(int index);
    void SetWndState();
    void SaveWndState();
    bool IsViewerLoaded() const;
    // The viewer window was moved or resized: its geometry is kept unless SetWndState moved it.
    void frm_Resized();

    // The local copy of the logo; empty when there is none.
    QString GetRSSImage();
    // The key of the tree icon: "help", "flagged", "reload", "err", "newitems", "read" or "unread".
    QString GetImage() const;
    // Recomputes the item set and reports to the host.
    void SetState();
    // Runs the reload tick now.
    bool LoadRSS();
    // Loads the whole feed now, without HEAD check and without a slot (not for folders).
    void ForceLoadRSS();
    // The next check loads the whole feed whatever the Last-modified header says, as the first
    // check of a new channel does; it still goes through a slot and the HEAD request.
    void ForgetLastModified() { m_lastModified = kNeverChecked; }
    // No further check starts by itself; a check in progress runs to its end. For a host that
    // runs one round of checks and then ends.
    void StopReloading() { m_Reloader.SetEnabled(false); }

    // Whether an ID may name the channel's files: letters, digits, "_" and "-" only.
    static bool IsSafeID(const QString& id);
    // An item date as feeds write it ("Tue, 15 Nov 2005 13:45:00 GMT"): the 21 characters from
    // the fifth, else all from the fifth but the last eight, read as day, month name, year and
    // an optional time, in English and without time-zone conversion. Invalid when unreadable.
    static QDateTime ParseItemDate(const QString& text);

private:
    enum class TextField {
        Title,
        Link,
        Description,
        Language,
        Copyright,
        ManagingEditor,
        WebMaster,
        PubDate,
        LastBuildDate,
        Catergory,
        Generator,
        Docs,
        Count
    };
    enum class Fetch { None, Head, Load };

    QString Text(TextField field) const { return m_texts[size_t(field)]; }
    void SetText(TextField field, const QString& value) { m_texts[size_t(field)] = value; }
    // The channel field that an element of this lower-case name sets; Count when none.
    static TextField FieldOfKey(const QString& key);
    // A file of the channel in the profile folder; empty when the folder or the ID cannot name one.
    QString LocalFile(const QString& suffix) const;
    bool IsVirtual() const;
    quint32 UpdatePeriodMs() const;
    ChannelViewer* Viewer() const;

    void m_Reloader_OnTimer();
    void m_TimeOut_OnTimer();
    void objInet_StateChange(int state);
    void XMLDoc_onreadystatechange(int state);
    void StartHeadCheck();
    void StartFullLoad(const QUrl& location);
    void StartRequest(const QUrl& url, Fetch kind);
    // Stops listening to the request in flight; it is destroyed once control is back in the event
    // loop, as it may be the one whose signal is being delivered.
    void RetireRequest();
    void ReleaseSlot();
    // The new feed document, or a null one when the answer did not parse or normalise.
    XmlDocument NormalisedFeed(int state) const;

    // Walks the normalised feed (FeedDoc), which is released after the walk: the bank keeps
    // copies of the items and nothing else reads it.
    void ParseNode(const XmlNode& node, XmlDocument& feedDoc);
    void StampItem(XmlNode& item, XmlDocument& feedDoc);
    QDateTime FindItemDate(const XmlNode& item) const;

    FeedServices m_services;
    LongTimer m_Reloader;
    LongTimer m_TimeOut;

    ItemList m_itemSet;
    bool m_itemSetLoaded = false;
    QString m_profileFolder;
    QString m_username;
    QString m_url;
    QString m_id;
    std::array<QString, size_t(TextField::Count)> m_texts;
    qint32 m_timeToLive = 0;
    RSSImage* m_image = nullptr;
    QString m_rating;
    qint32 m_expire = 0;
    qint32 m_update = 0;
    bool m_openLink = false;
    bool m_newItems = false;
    qint16 m_windowState = 0;
    qint16 m_windowTop = 0;
    qint16 m_windowLeft = 0;
    qint16 m_windowHeight = 0;
    qint16 m_windowWidth = 0;
    bool m_restoring = false;
    qint16 m_panelHeight = 0;
    bool m_busy = false;
    bool m_localLoad = false;
    bool m_loadFailed = false;
    QString m_lastModified;
    qint32 m_unreadCount = 0;

    // The request in flight: the HEAD check (objInet) or the load (XMLDoc).
    std::unique_ptr<HttpRequest> m_request;
    QUrl m_location;
    Fetch m_fetch = Fetch::None;
    // Slots taken from the host and not yet given back; only these are released.
    int m_slotsHeld = 0;
};
