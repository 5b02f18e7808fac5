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

// A fresh profile saves the nine built-ins as data/fresh-channels.expected lists them; the user's
// channels follow them, and a load and save changes nothing.
TEST_F(ChannelCollectionTest, SavedChannelsComeBackInOrder) {
    Activate(true);
    EXPECT_EQ(profile.ChannelCount(), colChannels::kBuiltinCount);
    EXPECT_EQ(profile.GetChannel(u"_TAMSEL/READ"_s), profile.GetChannel(9));
    EXPECT_EQ(profile.GetChannel(10), nullptr);
    EXPECT_EQ(profile.GetChannel(9)->ProfileFolder(), ProfileFolder());
    ASSERT_TRUE(profile.SaveChannelXML());
    QFile fresh(QStringLiteral(TAMSEL_TEST_DATA_DIR "/fresh-channels.expected"));
    ASSERT_TRUE(fresh.open(QIODevice::ReadOnly));
    EXPECT_EQ(QString::fromUtf8(ReadChannels()), QString::fromUtf8(fresh.readAll()));

    RSSChannel* first = Channels().AddChannel(u"http://b.example.org/feed"_s);
    first->SetTitle(u"Bee"_s);
    first->SetExpire(0);
    first->SetOpenLink(true);
    Channels().AddChannel(u"http://a.example.org/feed"_s)->SetUpdate(5);
    ASSERT_TRUE(profile.SaveChannelXML());
    const QByteArray saved = ReadChannels();
    Reactivate();
    EXPECT_EQ(Urls().mid(colChannels::kBuiltinCount),
              (QStringList{u"http://b.example.org/feed"_s, u"http://a.example.org/feed"_s}));
    const RSSChannel* bee = profile.GetChannel(u"http://b.example.org/feed"_s);
    EXPECT_EQ(bee->Expire(), 0);
    EXPECT_TRUE(bee->OpenLink());
    ASSERT_TRUE(profile.SaveChannelXML());
    EXPECT_EQ(ReadChannels(), saved);
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

// Each data/collection-*.xml channels.xml is saved again as its .expected file holds it, and no
// file is read for it (an outside one would be, under an unsafe id).
TEST_F(ChannelCollectionTest, ChannelFilesAreReadLeniently) {
    ASSERT_TRUE(QDir().mkpath(ProfileFolder()));
    home.Write(u"outside.xml"_s, ExampleFeed());
    const QDir data(QStringLiteral(TAMSEL_TEST_DATA_DIR));
    const QStringList files = data.entryList({u"collection-*.xml"_s}, QDir::Files, QDir::Name);
    ASSERT_GE(files.size(), 2);
    for (const QString& file : files) {
        SCOPED_TRACE(file.toStdString());
        QFile input(data.filePath(file));
        QFile expected(data.filePath(file.chopped(4) + u".expected"_s));
        ASSERT_TRUE(input.open(QIODevice::ReadOnly) && expected.open(QIODevice::ReadOnly));
        host.ChangeUser(nullptr);
        Flush();
        WriteChannels(input.readAll());
        host.ChangeUser(&profile);
        ASSERT_TRUE(profile.SaveChannelXML());
        EXPECT_EQ(QString::fromUtf8(ReadChannels()), QString::fromUtf8(expected.readAll()));
        EXPECT_TRUE(http.Requests().isEmpty());
    }
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
