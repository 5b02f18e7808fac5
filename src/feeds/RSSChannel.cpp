// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "feeds/RSSChannel.h"

#include "app/AppHost.h"
#include "app/SharedHelpers.h"
#include "app/clsProfile.h"
#include "feeds/ChannelViewer.h"
#include "feeds/RSSImage.h"
#include "itembank/modItemHandler.h"
#include "platform/Clock.h"
#include "platform/HttpClient.h"
#include "platform/XsltStylesheet.h"

#include <QFile>
#include <QStringList>
#include <algorithm>
#include <limits>

namespace {

const QString kYes = QStringLiteral("yes");
const QString kFalse = QStringLiteral("false");
const QString kTrue = QStringLiteral("true");
const QString kHelpIcon = QStringLiteral("help");
const QString kFlaggedIcon = QStringLiteral("flagged");
const QString kReloadIcon = QStringLiteral("reload");
const QString kErrorIcon = QStringLiteral("err");
const QString kNewItemsIcon = QStringLiteral("newitems");
const QString kReadIcon = QStringLiteral("read");
const QString kUnreadIcon = QStringLiteral("unread");
const QString kCacheSuffix = QStringLiteral(".xml");
const QString kPictureSuffix = QStringLiteral(".jpg");
const QString kPageSuffix = QStringLiteral("_tmp.html");
constexpr qsizetype kMaxIdLength = 64;

// Names of the channel fields as channels.xml writes them, in the order of TextField.
const std::array kFieldElements = {
    QStringLiteral("title"),     QStringLiteral("link"),      QStringLiteral("description"),
    QStringLiteral("language"),  QStringLiteral("copyright"), QStringLiteral("managingEditor"),
    QStringLiteral("webMaster"), QStringLiteral("pubDate"),   QStringLiteral("lastBuildDate"),
    QStringLiteral("category"),  QStringLiteral("generator"), QStringLiteral("docs")};

// The leading number of a text ("30 days" reads 30); 0 when there is none; clamped to 32 bits.
qint32 LeadingNumber(const QString& text) {
    const QString trimmed = text.trimmed();
    qsizetype at = 0;
    bool negative = false;
    if (at < trimmed.size() && (trimmed[at] == u'-' || trimmed[at] == u'+')) {
        negative = trimmed[at] == u'-';
        ++at;
    }
    qint64 value = 0;
    for (; at < trimmed.size() && trimmed[at] >= u'0' && trimmed[at] <= u'9'; ++at) {
        value = std::min<qint64>(value * 10 + (trimmed[at].unicode() - u'0'), qint64(1) << 32);
    }
    value = negative ? -value : value;
    return qint32(
        std::clamp<qint64>(value, std::numeric_limits<qint32>::min(), std::numeric_limits<qint32>::max()));
}

qint16 Clamp16(qint64 value) {
    return qint16(
        std::clamp<qint64>(value, std::numeric_limits<qint16>::min(), std::numeric_limits<qint16>::max()));
}

// English month names, full or abbreviated to three letters, in any letter case; 0 when none.
int MonthOfName(const QString& name) {
    static const QStringList kMonths = {
        QStringLiteral("january"), QStringLiteral("february"), QStringLiteral("march"),
        QStringLiteral("april"),   QStringLiteral("may"),      QStringLiteral("june"),
        QStringLiteral("july"),    QStringLiteral("august"),   QStringLiteral("september"),
        QStringLiteral("october"), QStringLiteral("november"), QStringLiteral("december")};
    constexpr qsizetype kShortName = 3;
    const QString lower = name.toLower();
    for (qsizetype month = 0; month < kMonths.size(); ++month) {
        if (lower == kMonths[month] || (lower.size() == kShortName && kMonths[month].startsWith(lower))) {
            return int(month) + 1;
        }
    }
    return 0;
}

bool IsDigits(const QString& text, qsizetype minLength, qsizetype maxLength) {
    return text.size() >= minLength && text.size() <= maxLength &&
           std::all_of(text.cbegin(), text.cend(), [](QChar c) { return c >= u'0' && c <= u'9'; });
}

// "h:mm" or "h:mm:ss" on the 24-hour clock.
QTime ParseClockTime(const QString& text) {
    const QStringList parts = text.split(u':');
    if (parts.size() < 2 || parts.size() > 3 || !IsDigits(parts[0], 1, 2) || !IsDigits(parts[1], 2, 2) ||
        (parts.size() == 3 && !IsDigits(parts[2], 2, 2))) {
        return {};
    }
    return QTime(parts[0].toInt(), parts[1].toInt(), parts.size() == 3 ? parts[2].toInt() : 0);
}

// The date forms that remain once a weekday and a time-zone name are cut off: day (one or two
// digits), month name, year (four digits, or two: 00-29 are 2000-2029, 30-99 are 1930-1999),
// then optionally a time. Anything else, trailing text included, is no date.
QDateTime ParseEnglishDate(const QString& text) {
    constexpr int kCenturyPivot = 30;
    constexpr int kTwentiethCentury = 1900;
    constexpr int kTwentyFirstCentury = 2000;
    const QStringList parts = text.simplified().split(u' ', Qt::SkipEmptyParts);
    if (parts.size() < 3 || parts.size() > 4 || !IsDigits(parts[0], 1, 2)) {
        return {};
    }
    const int month = MonthOfName(parts[1]);
    int year = 0;
    if (IsDigits(parts[2], 4, 4)) {
        year = parts[2].toInt();
    } else if (IsDigits(parts[2], 2, 2)) {
        const int shortYear = parts[2].toInt();
        year = shortYear + (shortYear < kCenturyPivot ? kTwentyFirstCentury : kTwentiethCentury);
    }
    const QDate date(year, month, parts[0].toInt());
    const QTime time = parts.size() == 4 ? ParseClockTime(parts[3]) : QTime(0, 0);
    if (month == 0 || !date.isValid() || !time.isValid()) {
        return {};
    }
    // Kept as written: no time zone, so that no daylight-saving gap can move it.
    return QDateTime(date, time, Qt::UTC);
}

} // namespace

RSSChannel::RSSChannel(FeedServices services, QObject* parent)
    : QObject(parent), m_services(std::move(services)), m_Reloader(m_services.clock),
      m_TimeOut(m_services.clock) {
    m_TimeOut.SetInterval(kTimeOutMs);
    // Every channel, also one read from channels.xml, has its first check 7 s after creation.
    m_Reloader.SetInterval(kFirstCheckMs);
    m_Reloader.SetEnabled(true);
    connect(&m_Reloader, &LongTimer::OnTimer, this, &RSSChannel::m_Reloader_OnTimer);
    connect(&m_TimeOut, &LongTimer::OnTimer, this, &RSSChannel::m_TimeOut_OnTimer);
}

RSSChannel::~RSSChannel() {
    if (IsViewerLoaded()) {
        m_services.host.UnloadViewer(*this);
    }
    m_request.reset();
    while (m_slotsHeld > 0) {
        ReleaseSlot();
    }
    if (const QString page = LocalFile(kPageSuffix); !page.isEmpty()) {
        QFile::remove(page);
    }
}

void RSSChannel::CreateRSS(const QString& url) {
    GenerateChannel(url, url, kNewExpireDays, kNewUpdateMinutes, NewChannelID(m_services.settings), m_profileFolder,
                    m_username);
}

void RSSChannel::GenerateChannel(const QString& url, const QString& title, int expire, int update,
                                 const QString& id, const QString& folder, const QString& username) {
    m_username = username;
    m_profileFolder = folder;
    m_expire = expire;
    m_update = update;
    m_openLink = false;
    m_lastModified = kNeverChecked;
    m_Reloader.SetInterval(kFirstCheckMs);
    m_url = url;
    SetTitle(title);
    m_id = id;
}

RSSImage& RSSChannel::Image() {
    if (!m_image) {
        m_image = new RSSImage(m_services.http, this);
    }
    return *m_image;
}

QString RSSChannel::ImageURL() {
    return Image().URL();
}

void RSSChannel::SetNewItems(bool newItems) {
    m_newItems = newItems;
    SetState();
}

void RSSChannel::SetWindowGeometry(const QRect& geometry) {
    m_windowTop = Clamp16(geometry.top());
    m_windowLeft = Clamp16(geometry.left());
    m_windowWidth = Clamp16(geometry.width());
    m_windowHeight = Clamp16(geometry.height());
}

QString RSSChannel::TitleAndCount() {
    const QString caption = Title().isEmpty() ? m_url : Title();
    return caption + QStringLiteral("  (") + QString::number(ItemCount()) + u')';
}

qint32 RSSChannel::ItemCount() {
    if (!m_itemSetLoaded) {
        LoadChannelSet();
    }
    return qint32(m_itemSet.size());
}

XmlNode RSSChannel::ItemNode(int index) {
    if (index < 0 || index >= ItemCount()) {
        return {};
    }
    return m_itemSet[size_t(index)];
}

RSSChannel::TextField RSSChannel::FieldOfKey(const QString& key) {
    static_assert(kFieldElements.size() == size_t(TextField::Count));
    for (size_t field = 0; field < kFieldElements.size(); ++field) {
        if (key.compare(kFieldElements[field], Qt::CaseInsensitive) == 0) {
            return TextField(field);
        }
    }
    return TextField::Count;
}

XmlNode RSSChannel::SaveXML(XmlDocument& doc) {
    XmlNode channel = doc.CreateElement(QStringLiteral("channel"));
    channel.AppendChild(doc.CreateTextElement(QStringLiteral("url"), m_url));
    SaveChildXML(channel, doc);
    if (m_openLink) {
        channel.AppendChild(doc.CreateTextElement(QStringLiteral("openlink"), kYes));
    }
    if (m_newItems) {
        channel.AppendChild(doc.CreateTextElement(QStringLiteral("newitems"), kYes));
    }
    if (m_expire != 0) {
        channel.AppendChild(doc.CreateTextElement(QStringLiteral("expire"), QString::number(m_expire)));
    }
    if (m_update != 0) {
        channel.AppendChild(doc.CreateTextElement(QStringLiteral("update"), QString::number(m_update)));
    }
    if (!m_lastModified.isEmpty()) {
        channel.AppendChild(doc.CreateTextElement(QStringLiteral("lastmod"), m_lastModified));
    }
    if (!m_id.isEmpty()) {
        channel.AppendChild(doc.CreateTextElement(QStringLiteral("id"), m_id));
    }
    const std::pair<const char16_t*, qint16> geometry[] = {
        {u"windowstate", m_windowState},   {u"windowtop", m_windowTop},     {u"windowleft", m_windowLeft},
        {u"windowheight", m_windowHeight}, {u"windowwidth", m_windowWidth}, {u"panelheight", m_panelHeight}};
    for (const auto& [name, value] : geometry) {
        channel.AppendChild(doc.CreateTextElement(QString::fromUtf16(name), QString::number(value)));
    }
    return channel;
}

void RSSChannel::SaveChildXML(XmlNode& channel, XmlDocument& doc) {
    for (size_t field = 0; field < kFieldElements.size(); ++field) {
        if (!m_texts[field].isEmpty()) {
            channel.AppendChild(doc.CreateTextElement(kFieldElements[field], m_texts[field]));
        }
    }
    if (m_timeToLive != 0) {
        channel.AppendChild(doc.CreateTextElement(QStringLiteral("ttl"), QString::number(m_timeToLive)));
    }
    if (!m_rating.isEmpty()) {
        channel.AppendChild(doc.CreateTextElement(QStringLiteral("rating"), m_rating));
    }
    if (m_image && m_image->ImageExists()) {
        channel.AppendChild(m_image->SaveXML(doc));
    }
}

void RSSChannel::LoadChannel(const XmlNode& node) {
    if (!node.HasChildNodes()) {
        return;
    }
    const QString key = node.Name().toLower();
    const auto text = [&node] { return node.FirstChild().Text(); };
    if (const TextField field = FieldOfKey(key); field != TextField::Count) {
        SetText(field, text());
    } else if (key == QStringLiteral("rating")) {
        m_rating = text();
    } else if (key == QStringLiteral("url")) {
        m_url = text();
    } else if (key == QStringLiteral("id")) {
        m_id = text();
    } else if (key == QStringLiteral("lastmod")) {
        m_lastModified = text();
    } else if (key == QStringLiteral("ttl")) {
        m_timeToLive = LeadingNumber(text());
    } else if (key == QStringLiteral("expire")) {
        m_expire = LeadingNumber(text());
    } else if (key == QStringLiteral("update")) {
        m_update = LeadingNumber(text());
    } else if (key == QStringLiteral("windowstate")) {
        m_windowState = Clamp16(LeadingNumber(text()));
    } else if (key == QStringLiteral("windowtop")) {
        m_windowTop = Clamp16(LeadingNumber(text()));
    } else if (key == QStringLiteral("windowleft")) {
        m_windowLeft = Clamp16(LeadingNumber(text()));
    } else if (key == QStringLiteral("windowheight")) {
        m_windowHeight = Clamp16(LeadingNumber(text()));
    } else if (key == QStringLiteral("windowwidth")) {
        m_windowWidth = Clamp16(LeadingNumber(text()));
    } else if (key == QStringLiteral("panelheight")) {
        m_panelHeight = Clamp16(LeadingNumber(text()));
    } else if (key == QStringLiteral("openlink")) {
        m_openLink = text() == kYes;
    } else if (key == QStringLiteral("newitems")) {
        m_newItems = text() == kYes;
    } else if (key == QStringLiteral("image")) {
        Image().LoadImage(node, m_id, m_profileFolder);
    } else {
        for (XmlNode child = node.FirstChild(); !child.IsNull(); child = child.NextSibling()) {
            LoadChannel(child);
        }
    }
}

void RSSChannel::LoadLocal(const QString& folder) {
    m_profileFolder = folder;
    const QString path = LocalFile(kCacheSuffix);
    if (path.isEmpty() || !QFile(path).open(QIODevice::ReadOnly)) {
        return;
    }
    m_localLoad = true;
    StartFullLoad(QUrl::fromLocalFile(path));
}

XmlNode RSSChannel::SaveOPML(XmlDocument& doc) const {
    XmlNode outline = doc.CreateElement(QStringLiteral("outline"));
    outline.SetAttribute(QStringLiteral("text"), Title());
    outline.SetAttribute(QStringLiteral("xmlUrl"), m_url);
    return outline;
}

void RSSChannel::LoadChannelSet() {
    clsProfile* profile = m_services.host.ActiveProfile();
    clsItemBank* bank = profile ? profile->ItemBank() : nullptr;
    if (!bank) {
        return;
    }
    m_itemSet = bank->SubChannelList(m_url, QString(), QString());
    m_itemSetLoaded = true;
    m_unreadCount = qint32(bank->SubChannelList(m_url, FolderKey::Unread, QString()).size());
}

void RSSChannel::DeleteItem(int index) {
    if (index < 0 || index >= ItemCount()) {
        return;
    }
    SetChildText(ItemNode(index), QStringLiteral("delete"), kTrue);
    SetState();
}

void RSSChannel::FlagItem(int index) {
    if (index < 0 || index >= ItemCount()) {
        return;
    }
    SetChildText(ItemNode(index), QStringLiteral("flag"), kTrue);
    SetState();
}

void RSSChannel::MarkAllRead() {
    ItemCount();
    for (const XmlNode& item : m_itemSet) {
        SetItemRead(item, true);
    }
    m_newItems = false;
    SetState();
}

void RSSChannel::KillMe() {
    m_Reloader.SetEnabled(false);
    m_TimeOut.SetEnabled(false);
    RetireRequest();
    m_busy = false;
    while (m_slotsHeld > 0) {
        ReleaseSlot();
    }
    if (IsViewerLoaded()) {
        m_services.host.UnloadViewer(*this);
    }
    if (const QString picture = LocalFile(kPictureSuffix); !picture.isEmpty()) {
        QFile::remove(picture);
    }
    clsProfile* profile = m_services.host.ActiveProfile();
    if (clsItemBank* bank = profile ? profile->ItemBank() : nullptr) {
        bank->KillChannel(m_url);
    }
    m_itemSet.clear();
    m_itemSetLoaded = false;
}

ChannelViewer* RSSChannel::Viewer() const {
    return m_services.host.Viewer(*this);
}

bool RSSChannel::IsViewerLoaded() const {
    return Viewer() != nullptr;
}

void RSSChannel::CreateChannelView(bool show) {
    SetNewItems(false);
    ChannelViewer* frm = Viewer();
    if (!frm) {
        frm = m_services.host.LoadViewer(*this);
        if (!frm) {
            return;
        }
        SetWndState();
    }
    frm->SetCaption(Title());
    frm->SetupView(m_url, LocalFile(kPageSuffix));
    frm->SetVisible(show);
}

void RSSChannel::ShowItem(int index) {
    if (!IsViewerLoaded()) {
        CreateChannelView(true);
    }
    if (ChannelViewer* frm = Viewer()) {
        frm->ShowItem(index);
    }
}

void RSSChannel::SetWndState() {
    ChannelViewer* frm = Viewer();
    if (!frm || m_windowWidth < 1 || m_windowHeight < 1) {
        return;
    }
    m_restoring = true;
    frm->SetGeometry(WindowGeometry());
    if (m_panelHeight == 0) {
        m_panelHeight = kDefaultPanelHeight;
    }
    frm->SetPanelHeight(m_panelHeight);
    m_restoring = false;
}

void RSSChannel::SaveWndState() {
    const ChannelViewer* frm = Viewer();
    if (!frm || frm->WindowState() != ChannelViewer::kNormalState) {
        return;
    }
    SetWindowGeometry(frm->Geometry());
    m_windowState = Clamp16(frm->WindowState());
    m_panelHeight = Clamp16(frm->PanelHeight());
}

void RSSChannel::frm_Resized() {
    if (!m_restoring) {
        SaveWndState();
    }
}

QString RSSChannel::GetRSSImage() {
    // Nothing of this channel is touched after the download, which runs the event loop.
    return Image().GetImage(m_id, m_profileFolder);
}

QString RSSChannel::GetImage() const {
    if (m_url == m_services.helpUrl) {
        return kHelpIcon;
    }
    if (m_url == FolderKey::Flagged) {
        return kFlaggedIcon;
    }
    if (m_busy) {
        return kReloadIcon;
    }
    if (m_loadFailed) {
        return kErrorIcon;
    }
    if (m_newItems) {
        return kNewItemsIcon;
    }
    if (m_url == FolderKey::Read) {
        return kReadIcon;
    }
    if (m_url == FolderKey::Unread) {
        return kUnreadIcon;
    }
    return m_unreadCount < 1 ? kReadIcon : kUnreadIcon;
}

void RSSChannel::SetState() {
    LoadChannelSet();
    m_services.host.StateChange(m_username, *this);
}

bool RSSChannel::LoadRSS() {
    m_Reloader_OnTimer();
    return true;
}

void RSSChannel::ForceLoadRSS() {
    if (m_busy || IsVirtual()) {
        return;
    }
    StartFullLoad(QUrl(m_url));
}

bool RSSChannel::IsSafeID(const QString& id) {
    return !id.isEmpty() && id.size() <= kMaxIdLength && std::all_of(id.cbegin(), id.cend(), [](QChar c) {
        return (c >= u'0' && c <= u'9') || (c >= u'A' && c <= u'Z') || (c >= u'a' && c <= u'z') ||
               c == u'_' || c == u'-';
    });
}

QString RSSChannel::LocalFile(const QString& suffix) const {
    // An ID read from a damaged or doctored channels.xml must not reach outside the folder.
    if (m_profileFolder.isEmpty() || !IsSafeID(m_id)) {
        return {};
    }
    return m_profileFolder + m_id + suffix;
}

bool RSSChannel::IsVirtual() const {
    return IsVirtualFolder(m_url);
}

quint32 RSSChannel::UpdatePeriodMs() const {
    return quint32(std::clamp(m_update, 0, kMaxUpdateMinutes)) * kMinuteMs;
}

void RSSChannel::m_Reloader_OnTimer() {
    if (IsViewerLoaded()) {
        m_Reloader.SetInterval(kViewerOpenDelayMs);
        return;
    }
    if (m_services.host.RequestConnect()) {
        ++m_slotsHeld;
        StartHeadCheck();
        if (const quint32 period = UpdatePeriodMs(); m_Reloader.Interval() != period) {
            m_Reloader.SetInterval(period);
        }
        return;
    }
    const double r = std::clamp(m_services.random(), 0.0, 1.0);
    m_Reloader.SetInterval(quint32(qRound(kRetryMinMs + r * kRetrySpreadMs)));
}

void RSSChannel::StartHeadCheck() {
    if (m_busy || IsVirtual()) {
        ReleaseSlot();
        return;
    }
    m_busy = true;
    m_TimeOut.SetEnabled(true);
    SetState();
    StartRequest(QUrl(m_url), Fetch::Head);
}

void RSSChannel::objInet_StateChange(int state) {
    if (!m_busy) {
        return;
    }
    if (state == HttpRequest::icError) {
        RetireRequest();
        StartFullLoad(QUrl(m_url));
        return;
    }
    if (state != HttpRequest::icResponseCompleted) {
        return;
    }
    const QString header = m_request->GetHeader(QStringLiteral("Last-modified"));
    RetireRequest();
    if (!header.isEmpty() && header == m_lastModified && m_lastModified != kNeverChecked) {
        m_busy = false;
        m_TimeOut.SetEnabled(false);
        ReleaseSlot();
        SetState();
    } else {
        StartFullLoad(QUrl(m_url));
    }
    // Taken when the load starts, not when it succeeds.
    if (!header.isEmpty()) {
        m_lastModified = header;
    }
}

void RSSChannel::StartFullLoad(const QUrl& location) {
    m_TimeOut.SetEnabled(true);
    m_busy = true;
    m_loadFailed = false;
    StartRequest(location, Fetch::Load);
    SetState();
}

void RSSChannel::StartRequest(const QUrl& url, Fetch kind) {
    RetireRequest();
    m_location = url;
    m_fetch = kind;
    m_request = m_services.http.Execute(url, kind == Fetch::Head ? QByteArrayLiteral("HEAD")
                                                                 : QByteArrayLiteral("GET"));
    HttpRequest* request = m_request.get();
    connect(request, &HttpRequest::StateChange, this, [this, request](int state) {
        // Only the request in flight is listened to; anything older was dropped.
        if (request != m_request.get()) {
            return;
        }
        if (m_fetch == Fetch::Head) {
            objInet_StateChange(state);
        } else {
            XMLDoc_onreadystatechange(state);
        }
    });
}

void RSSChannel::RetireRequest() {
    m_fetch = Fetch::None;
    if (!m_request) {
        return;
    }
    disconnect(m_request.get(), nullptr, this, nullptr);
    m_request.release()->deleteLater();
}

void RSSChannel::ReleaseSlot() {
    // A load without a slot (forced, or of the local copy) gives nothing back, so that the count
    // of fetches through slots stays exact.
    if (m_slotsHeld > 0) {
        --m_slotsHeld;
        m_services.host.ConnectRelease();
    }
}

XmlDocument RSSChannel::NormalisedFeed(int state) const {
    XmlDocument none = XmlDocument::Adopt(nullptr);
    if (state != HttpRequest::icResponseCompleted || !m_request) {
        return none;
    }
    const QByteArray body = m_request->Body();
    if (body.size() > HttpClient::kMaxResponseBytes || m_services.namespaceTransform.IsNull()) {
        return none;
    }
    // Only the DTDs that the program ships and maps may be read; nothing the feed names.
    const XmlDocument feed = XmlDocument::Parse(body, nullptr, XmlParseOptions::ForFeed(m_location.toString()));
    if (feed.IsNull()) {
        return none;
    }
    XmlDocument normalised = m_services.namespaceTransform.TransformToDocument(feed);
    if (normalised.IsNull() || normalised.DocumentElement().IsNull()) {
        return none;
    }
    return normalised;
}

void RSSChannel::XMLDoc_onreadystatechange(int state) {
    // After a time-out the fetch is over; its late answer changes nothing.
    if (!m_busy) {
        return;
    }
    XmlDocument feedDoc = NormalisedFeed(state);
    RetireRequest();
    m_TimeOut.SetEnabled(false);
    const qint32 before = ItemCount();
    if (!feedDoc.IsNull()) {
        ParseNode(feedDoc.DocumentElement(), feedDoc);
        feedDoc = XmlDocument::Adopt(nullptr);
        LoadChannelSet();
        if (m_url == m_services.helpUrl && m_services.host.FirstRun()) {
            if (!IsViewerLoaded()) {
                CreateChannelView(true);
            }
            m_services.host.SetFirstRun(false);
        }
        if (!m_localLoad && ItemCount() != before && m_openLink && !IsViewerLoaded()) {
            CreateChannelView(true);
        }
    } else {
        m_loadFailed = true;
        m_Reloader.SetInterval(kBackOffMs);
    }
    ReleaseSlot();
    m_busy = false;
    m_localLoad = false;
    SetState();
}

void RSSChannel::m_TimeOut_OnTimer() {
    m_TimeOut.SetEnabled(false);
    m_loadFailed = true;
    m_busy = false;
    m_localLoad = false;
    m_Reloader.SetInterval(kBackOffMs);
    // The request still running is dropped; should it answer, nobody listens.
    RetireRequest();
    SetState();
    ReleaseSlot();
}

void RSSChannel::ParseNode(const XmlNode& node, XmlDocument& feedDoc) {
    if (!node.HasChildNodes()) {
        return;
    }
    const QString key = node.Name().toLower();
    if (const TextField field = FieldOfKey(key); field != TextField::Count) {
        SetText(field, node.FirstChild().Text());
    } else if (key == QStringLiteral("ttl")) {
        m_timeToLive = LeadingNumber(node.FirstChild().Text());
    } else if (key == QStringLiteral("rating")) {
        m_rating = node.FirstChild().Text();
    } else if (key == QStringLiteral("image")) {
        // The logo's own title and link must not overwrite the channel's.
    } else if (key == QStringLiteral("item")) {
        XmlNode item = node;
        StampItem(item, feedDoc);
    } else {
        for (XmlNode child = node.FirstChild(); !child.IsNull(); child = child.NextSibling()) {
            ParseNode(child, feedDoc);
        }
    }
}

void RSSChannel::StampItem(XmlNode& item, XmlDocument& feedDoc) {
    item.SetAttribute(QStringLiteral("channel"), m_url);
    const QDateTime date = FindItemDate(item);
    item.SetAttribute(QStringLiteral("date"), FormatItemDate(date.date()));
    item.SetAttribute(QStringLiteral("time"), FormatItemTime(date.time()));
    if (!IsItemRead(item)) {
        item.AppendChild(feedDoc.CreateTextElement(QStringLiteral("read"), kFalse));
    }
    if (!IsItemFlagged(item)) {
        item.AppendChild(feedDoc.CreateTextElement(QStringLiteral("flag"), kFalse));
    }
    if (!IsItemDeleted(item)) {
        item.AppendChild(feedDoc.CreateTextElement(QStringLiteral("delete"), kFalse));
    }
    item.AppendChild(feedDoc.CreateTextElement(QStringLiteral("channeltitle"), Title()));
    const bool isNew = m_services.host.AddRSSItem(item);
    m_newItems = m_newItems || isNew;
}

QDateTime RSSChannel::FindItemDate(const XmlNode& item) const {
    QDateTime date = ParseItemDate(GetItemPubDate(item));
    if (!date.isValid()) {
        date = ParseItemDate(PubDate());
    }
    if (!date.isValid()) {
        date = m_services.clock.Now();
    }
    return date;
}

QDateTime RSSChannel::ParseItemDate(const QString& text) {
    // Skips "Tue, " and drops a trailing zone name ("GMT"); the second try suits other lengths.
    constexpr qsizetype kSkipped = 4;
    constexpr qsizetype kDateLength = 21;
    constexpr qsizetype kCutOff = 8;
    if (text.isEmpty()) {
        return {};
    }
    if (const QDateTime date = ParseEnglishDate(text.mid(kSkipped, kDateLength)); date.isValid()) {
        return date;
    }
    if (text.size() < kCutOff) {
        return {};
    }
    return ParseEnglishDate(text.mid(kSkipped, text.size() - kCutOff));
}
