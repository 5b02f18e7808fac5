// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
// A profile's channel collection: the built-ins, channels.xml (round trip, damaged files, hostile
// values), expiry at load, adding and finding channels, the OPML export and the status pass.
#include "FeedsFixture.h"

#include "app/SharedHelpers.h"
#include "feeds/RSSChannel.h"
#include "feeds/colChannels.h"
#include "itembank/clsItemBank.h"
#include "itembank/modItemHandler.h"

#include <QDir>
#include <QFile>

using namespace Qt::StringLiterals;

namespace {

class ChannelCollectionTest : public FeedsFixture {
protected:
    colChannels& Channels() const { return *profile.Channels(); }
    void WriteChannels(const QByteArray& xml) { home.Write(u"profiles/Tester/channels.xml"_s, xml); }
    QByteArray ReadChannels() const { return home.Read(u"profiles/Tester/channels.xml"_s); }
    QStringList Urls() const {
        QStringList urls;
        for (int i = 1; i <= profile.ChannelCount(); ++i) {
            urls.append(profile.GetChannel(i)->URL());
        }
        return urls;
    }
    void Reactivate() {
        host.ChangeUser(nullptr);
        Flush();
        host.ChangeUser(&profile);
    }
};

TEST_F(ChannelCollectionTest, FreshProfileHasTheNineBuiltinsInOrder) {
    Activate(true);
    ASSERT_EQ(profile.ChannelCount(), colChannels::kBuiltinCount);
    struct Expected {
        QString id, title, url;
        int expire, update;
    };
    const Expected expected[] = {
        {u"F0"_s, u"Today"_s, FolderKey::Today, 0, 0},
        {u"F1"_s, u"Tagged"_s, FolderKey::Flagged, 0, 0},
        {u"F2"_s, u"Tamsel News"_s, u"tamsel://site/tamsel/news.xml"_s, 100, 1500},
        {u"F3"_s, u"Help"_s, u"tamsel://site/tamsel/help.xml"_s, 0, 7000},
        {u"F4"_s, u"Deleted"_s, FolderKey::Deleted, 0, 0},
        {u"F5"_s, u"Yesterday"_s, FolderKey::Yesterday, 0, 0},
        {u"F6"_s, u"Past 7 Days"_s, FolderKey::Week, 0, 0},
        {u"F7"_s, u"Unread"_s, FolderKey::Unread, 0, 0},
        {u"F8"_s, u"Read"_s, FolderKey::Read, 0, 0},
    };
    for (int i = 0; i < colChannels::kBuiltinCount; ++i) {
        const RSSChannel* channel = profile.GetChannel(i + 1);
        SCOPED_TRACE(expected[i].title.toStdString());
        EXPECT_EQ(channel->ID(), expected[i].id);
        EXPECT_EQ(channel->Title(), expected[i].title);
        EXPECT_EQ(channel->URL(), expected[i].url);
        EXPECT_EQ(channel->Expire(), expected[i].expire);
        EXPECT_EQ(channel->Update(), expected[i].update);
        EXPECT_EQ(channel->ProfileFolder(), ProfileFolder());
    }
    EXPECT_EQ(profile.GetChannel(u"_TAMSEL/READ"_s), profile.GetChannel(9));
    EXPECT_EQ(profile.GetChannel(10), nullptr);
}

TEST_F(ChannelCollectionTest, AddingAUrlTwiceOrInAnotherCaseGivesTheSameChannel) {
    Activate(true);
    RSSChannel* added = Channels().AddChannel(kFeedUrl);
    ASSERT_NE(added, nullptr);
    EXPECT_EQ(added->Expire(), RSSChannel::kNewExpireDays);
    EXPECT_EQ(Channels().AddChannel(kFeedUrl.toUpper()), added);
    EXPECT_EQ(Channels().AddChannel(u"  "_s), nullptr);
    EXPECT_EQ(profile.ChannelCount(), 10);

    Channels().DelChannel(kFeedUrl.toUpper());
    EXPECT_EQ(profile.GetChannel(kFeedUrl), nullptr);
}

TEST_F(ChannelCollectionTest, SavedChannelsComeBackInOrder) {
    Activate(true);
    RSSChannel* first = Channels().AddChannel(u"http://b.example.org/feed"_s);
    first->SetTitle(u"Bee"_s);
    first->SetExpire(0);
    first->SetOpenLink(true);
    Channels().AddChannel(u"http://a.example.org/feed"_s)->SetUpdate(5);
    ASSERT_TRUE(profile.SaveChannelXML());
    const QByteArray saved = ReadChannels();
    EXPECT_TRUE(saved.startsWith("<tamselchannels><channel><url>_tamsel/today</url><title>Today</title>"));

    Reactivate();
    EXPECT_EQ(Urls().mid(colChannels::kBuiltinCount),
              (QStringList{u"http://b.example.org/feed"_s, u"http://a.example.org/feed"_s}));
    const RSSChannel* bee = profile.GetChannel(u"http://b.example.org/feed"_s);
    EXPECT_EQ(bee->Expire(), 0);
    EXPECT_TRUE(bee->OpenLink());
    ASSERT_TRUE(profile.SaveChannelXML());
    EXPECT_EQ(ReadChannels(), saved) << "a load and save changes nothing";
}

TEST_F(ChannelCollectionTest, BuiltinsKeepTheirValuesAndDuplicatesAreDropped) {
    WriteChannels(
        "<tamselchannels>"
        "<channel><url>_tamsel/today</url><title>Renamed</title><id>ZZ</id><update>5</update></channel>"
        "<channel><url>http://x.example.org/feed</url><title>First</title><id>B1</id></channel>"
        "<channel><url>HTTP://X.EXAMPLE.ORG/FEED</url><title>Second</title><id>B2</id></channel>"
        "<channel><title>No address</title><id>B3</id></channel>"
        "<group><channel><url>http://y.example.org/feed</url><id>B4</id></channel></group>"
        "</tamselchannels>");
    Activate(true);
    EXPECT_EQ(profile.GetChannel(1)->Title(), u"Today"_s);
    EXPECT_EQ(profile.GetChannel(1)->Update(), 0);
    EXPECT_EQ(Urls().mid(colChannels::kBuiltinCount),
              (QStringList{u"http://x.example.org/feed"_s, u"http://y.example.org/feed"_s}));
    EXPECT_EQ(profile.GetChannel(u"http://x.example.org/feed"_s)->Title(), u"First"_s);
}

TEST_F(ChannelCollectionTest, LoadedChannelsCheckSevenSecondsLater) {
    WriteChannels(
        "<tamselchannels><channel><url>http://x.example.org/feed</url><id>B1</id><update>30</update>"
        "</channel></tamselchannels>");
    Activate();
    clock.Advance(RSSChannel::kFirstCheckMs);
    EXPECT_EQ(http.Requests(), QStringList{u"HEAD http://x.example.org/feed"_s});
    EXPECT_EQ(profile.GetChannel(u"http://x.example.org/feed"_s)->ReloadInterval(),
              30u * RSSChannel::kMinuteMs);
}

TEST_F(ChannelCollectionTest, UnsafeIdsAreReplaced) {
    ASSERT_TRUE(QDir().mkpath(ProfileFolder()));
    home.Write(u"outside.xml"_s, ExampleFeed());
    WriteChannels(
        "<tamselchannels><channel><url>http://x.example.org/feed</url><id>../../outside</id></channel>"
        "</tamselchannels>");
    Activate();
    const RSSChannel* channel = profile.GetChannel(u"http://x.example.org/feed"_s);
    ASSERT_NE(channel, nullptr);
    EXPECT_EQ(channel->ID(), u"A01"_s);
    EXPECT_TRUE(http.Requests().isEmpty()) << "no file outside the profile folder is read";
}

TEST_F(ChannelCollectionTest, DamagedFileIsKeptAsideAndNeverOverwritten) {
    const QByteArray damaged = "<tamselchannels><channel><url>http://x.example.org/feed</url>";
    WriteChannels(damaged);
    clock.SetNow(QDateTime(QDate(2026, 11, 16), QTime(10, 11, 12)));
    Activate(true);
    EXPECT_EQ(profile.ChannelCount(), colChannels::kBuiltinCount);
    const QString aside = ProfileFolder() + u"channels.xml.damaged-20261116-101112"_s;
    EXPECT_EQ(Channels().DamagedFile(), aside);
    QFile keptAside(aside);
    ASSERT_TRUE(keptAside.open(QIODevice::ReadOnly));
    EXPECT_EQ(keptAside.readAll(), damaged);

    Channels().AddChannel(kFeedUrl);
    ASSERT_TRUE(profile.SaveChannelXML());
    EXPECT_TRUE(ReadChannels().contains(kFeedUrl.toUtf8()));
    keptAside.seek(0);
    EXPECT_EQ(keptAside.readAll(), damaged);

    // A second damaged file within the same second gets a name of its own.
    WriteChannels("not xml");
    Reactivate();
    EXPECT_EQ(Channels().DamagedFile(), aside + u"-1"_s);
    EXPECT_EQ(QDir(ProfileFolder()).entryList({u"channels.xml.damaged-*"_s}).size(), 2);
}

TEST_F(ChannelCollectionTest, ExpiryAtLoadRemovesOldUntaggedItems) {
    const QString url = u"http://x.example.org/feed"_s;
    const QDate today = clock.Now().date();
    QByteArray items = "<itembank>";
    const std::pair<int, bool> ages[] = {{31, false}, {30, false}, {400, true}, {1, false}};
    for (const auto& [age, tagged] : ages) {
        items += QStringLiteral("<item channel=\"%1\" date=\"%2\" time=\"10:00:00\"><title>Age %3</title>"
                                "<read>false</read><flag>%4</flag><delete>false</delete></item>")
                     .arg(url, FormatItemDate(today.addDays(-age)))
                     .arg(age)
                     .arg(tagged ? u"true"_s : u"false"_s)
                     .toUtf8();
    }
    items += "<item channel=\"http://other.example.org/\" date=\"01 Jan 2001\" "
             "time=\"10:00:00\"><title>Other</title>"
             "<read>false</read><flag>false</flag><delete>false</delete></item></itembank>";
    home.Write(u"profiles/Tester/items.xml"_s, items);
    WriteChannels(
        QStringLiteral("<tamselchannels><channel><url>%1</url><id>B1</id><expire>30</expire></channel>"
                       "</tamselchannels>")
            .arg(url)
            .toUtf8());
    Activate();
    QStringList titles;
    for (const XmlNode& item : Bank().SubChannelList(url, QString(), QString())) {
        titles.append(GetItemTitle(item));
    }
    EXPECT_EQ(titles, (QStringList{u"Age 30"_s, u"Age 400"_s, u"Age 1"_s}));
    EXPECT_EQ(Bank().SubChannelList(u"http://other.example.org/"_s, QString(), QString()).size(), 1u)
        << "a channel without expiry keeps everything";
}

TEST_F(ChannelCollectionTest, OpmlExportHoldsOnlyTheUsersChannels) {
    Activate(true);
    const QString path = home.File(u"export.opml"_s);
    ASSERT_TRUE(profile.SaveOPML(path));
    EXPECT_EQ(home.Read(u"export.opml"_s), QByteArrayLiteral("<opml><body/></opml>\n"));

    Channels().AddChannel(kFeedUrl + u"?a=1&b=2"_s)->SetTitle(u"Quotes \"and\" <tags>"_s);
    Channels().AddChannel(u"http://b.example.org/feed"_s);
    ASSERT_TRUE(profile.SaveOPML(path));
    EXPECT_EQ(
        home.Read(u"export.opml"_s),
        QByteArrayLiteral("<opml><body><outline text=\"Quotes &quot;and&quot; &lt;tags&gt;\" "
                          "xmlUrl=\"http://feeds.example.org/news.xml?a=1&amp;b=2\"/>"
                          "<outline text=\"http://b.example.org/feed\" xmlUrl=\"http://b.example.org/feed\"/>"
                          "</body></opml>\n"));
    EXPECT_FALSE(profile.SaveOPML(home.File(u"no/such/folder/x.opml"_s)));
}

TEST_F(ChannelCollectionTest, RequestAllStatusReportsEveryChannelInOrder) {
    Activate(true);
    Channels().AddChannel(kFeedUrl);
    host.ClearStateChanges();
    Channels().RequestAllStatus();
    EXPECT_EQ(host.StateChanges(), Urls());
    EXPECT_EQ(host.NodeIcon(FolderKey::Flagged), u"flagged"_s);
    EXPECT_EQ(host.NodeText(kFeedUrl), kFeedUrl + u"  (0)"_s);
}

TEST_F(ChannelCollectionTest, SwitchingProfilesReleasesEverything) {
    Activate();
    RSSChannel* channel = Channels().AddChannel(kFeedUrl);
    channel->LoadRSS();
    ASSERT_EQ(host.Coordinator().ConnCount(), 1);
    host.ChangeUser(nullptr);
    EXPECT_EQ(host.Coordinator().ConnCount(), 0) << "a dropped fetch gives its slot back";
    EXPECT_TRUE(QFile::exists(ProfileFolder() + u"items.xml"_s)) << "the bank is saved on release";
}

} // namespace
