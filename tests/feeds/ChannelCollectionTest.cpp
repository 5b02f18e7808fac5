// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
// A profile's channel collection: the built-ins, channels.xml (round trip, damaged files, hostile
// values), expiry at load, adding and finding channels and the OPML export. Then the refresh
// coordination: the four connection slots and the folder recount about a second after a real
// channel changed, through the headless host that shares this logic with the main window.
#include "FeedsFixture.h"

using namespace Qt::StringLiterals;

namespace {

class ChannelCollectionTest : public FeedsFixture {
protected:
    colChannels& Channels() const { return *profile.Channels(); }
    void WriteChannels(const QByteArray& xml) { home.Write(u"profiles/Tester/channels.xml"_s, xml); }
    // channels.xml as the profile saves it now.
    QString Saved() {
        EXPECT_TRUE(profile.SaveChannelXML());
        return QString::fromUtf8(home.Read(u"profiles/Tester/channels.xml"_s));
    }
    void Reactivate() {
        host.ChangeUser(nullptr);
        Flush();
        host.ChangeUser(&profile);
    }
};

// A fresh profile saves the nine built-ins as data/fresh-channels.expected lists them; the user's
// channels follow them, one per address whatever its case (adding one again in other letters:
// ProfileGroupsTest), and only they are exported, as data/export.opml holds them. The status pass
// reports every channel in order.
TEST_F(ChannelCollectionTest, BuiltInsComeFirstEachAddressOnceAndOnlyTheUsersAreExported) {
    Activate(true);
    EXPECT_EQ(profile.GetChannel(u"_TAMSEL/READ"_s), profile.GetChannel(9));
    EXPECT_EQ(profile.GetChannel(10), nullptr);
    EXPECT_EQ(profile.GetChannel(9)->ProfileFolder(), ProfileFolder());
    EXPECT_EQ(Saved(), QString::fromUtf8(ReadData(u"fresh-channels.expected"_s)));

    RSSChannel* first = Channels().AddChannel(kFeedUrl + u"?a=1&b=2"_s);
    EXPECT_EQ(first->Expire(), RSSChannel::kNewExpireDays);
    EXPECT_EQ(Channels().AddChannel(u"  "_s), nullptr);
    first->SetTitle(u"Quotes \"and\" <tags>"_s);
    Channels().AddChannel(u"http://b.example.org/feed"_s);
    Channels().AddChannel(kFeedUrl);
    Channels().DelChannel(kFeedUrl.toUpper());
    EXPECT_EQ(profile.GetChannel(kFeedUrl), nullptr);
    ASSERT_TRUE(profile.SaveOPML(home.File(u"export.opml"_s)));
    EXPECT_EQ(home.Read(u"export.opml"_s), ReadData(u"export.opml"_s));
    EXPECT_FALSE(profile.SaveOPML(home.File(u"no/such/folder/x.opml"_s)));

    host.ClearStateChanges();
    Channels().RequestAllStatus();
    EXPECT_EQ(host.StateChanges().join(u' '),
              u"_tamsel/today _tamsel/flagged tamsel://site/tamsel/news.xml tamsel://site/tamsel/help.xml "
              u"_tamsel/deleted _tamsel/yesterday _tamsel/week _tamsel/unread _tamsel/read "
              u"http://feeds.example.org/news.xml?a=1&b=2 http://b.example.org/feed"_s);
    EXPECT_EQ(host.NodeText(first->URL()), u"Quotes \"and\" <tags>  (0)"_s);
}

// Each data/collection-*.xml channels.xml is saved again as its .expected file holds it, and no
// file is read for it (an outside one would be, under an unsafe id); a load and save of that
// changes nothing. A damaged file is kept aside and never overwritten.
TEST_F(ChannelCollectionTest, ChannelFilesAreReadLenientlyAndDamagedOnesKeptAside) {
    clock.SetNow(QDateTime(QDate(2026, 11, 16), QTime(10, 11, 12)));
    home.Write(u"outside.xml"_s, ExampleFeed());
    const QStringList files = DataFiles(u"collection-*.xml"_s);
    ASSERT_EQ(files.size(), 2);
    for (const QString& file : files) {
        SCOPED_TRACE(file.toStdString());
        WriteChannels(ReadData(file));
        Reactivate();
        const QString expected = QString::fromUtf8(ReadData(file.chopped(4) + u".expected"_s));
        EXPECT_EQ(Saved(), expected);
        Reactivate();
        EXPECT_EQ(Saved(), expected);
    }
    EXPECT_TRUE(http.Requests().isEmpty());

    const QByteArray damaged = "<tamselchannels><channel><url>http://x.example.org/feed</url>";
    WriteChannels(damaged);
    Reactivate();
    EXPECT_EQ(profile.ChannelCount(), colChannels::kBuiltinCount);
    const QString aside = ProfileFolder() + u"channels.xml.damaged-20261116-101112"_s;
    EXPECT_EQ(Channels().DamagedFile(), aside);
    Channels().AddChannel(kFeedUrl);
    EXPECT_TRUE(Saved().contains(kFeedUrl));
    EXPECT_EQ(home.Read(u"profiles/Tester/channels.xml.damaged-20261116-101112"_s), damaged);

    // A second damaged file within the same second gets a name of its own.
    WriteChannels("not xml");
    Reactivate();
    EXPECT_EQ(Channels().DamagedFile(), aside + u"-1"_s);
    EXPECT_EQ(QDir(ProfileFolder()).entryList({u"channels.xml.damaged-*"_s}).size(), 2);
}

// data/expiry-items.xml, loaded with a channel that keeps its items 30 days (data/expiry-channels.xml),
// loses one of four items at load (which ones expire: RandomItemBank in the item bank's tests); the
// channel, which has no title, is shown by its address. The host records the messages of the active
// profile and of its grouped channels only.
TEST_F(ChannelCollectionTest, ExpiryAtLoadAndMessagesOfTheActiveProfile) {
    home.Write(u"profiles/Tester/items.xml"_s, ReadData(u"expiry-items.xml"_s));
    WriteChannels(ReadData(u"expiry-channels.xml"_s));
    host.PopupInfo(u"Error Reading OPML File !!!"_s, QString(), QString());
    host.PopupInfo(u"Of nobody"_s, kProfile, QString());
    Activate();
    EXPECT_EQ(Items(u"http://other.example.org/"_s).size(), 1u)
        << "a channel without expiry keeps everything";
    clock.Advance(RSSChannel::kFirstCheckMs);
    EXPECT_EQ(http.Requests(), QStringList{u"HEAD http://x.example.org/feed"_s})
        << "loaded channels check 7 s later";
    EXPECT_EQ(host.NodeText(u"http://x.example.org/feed"_s), u"http://x.example.org/feed  (3)"_s)
        << "untitled, with the three items expiry left";
    host.PopupInfo(u"Of the active profile"_s, kProfile, QString());
    host.PopupInfo(u"Of another profile"_s, u"Other"_s, QString());
    host.PopupInfo(u"Of a channel in no group"_s, kProfile, kFeedUrl);
    profile.AddChannel(kFeedUrl, u"My Channels"_s);
    profile.AddGroup(u"My Channels"_s);
    profile.AddChannel(kFeedUrl, u"My Channels"_s);
    host.PopupInfo(u"Of a grouped channel"_s, kProfile, kFeedUrl);
    EXPECT_EQ(host.Popups(), (QStringList{u"Error Reading OPML File !!!"_s, u"Of the active profile"_s,
                                          u"Of a grouped channel"_s}));
}

// Changes within a second recount the folders once, about a second after the first; the recount
// reads the folder counts again. Only a shown change of one of the active profile's own real
// channels arms it. Four slots, never counted below zero; a profile switch drops the fetches and
// saves the bank.
TEST_F(ChannelCollectionTest, ChangesRecountTheFoldersOnceASecondLater) {
    // The maker's channels fail their first checks (next try in an hour): they report nothing more.
    Activate(true);
    for (int i = 0; i < 6; ++i) {
        host.Coordinator().ConnectRelease();
    }
    EXPECT_EQ(host.Coordinator().ConnCount(), 0) << "slots are never counted below zero";
    clock.Advance(RSSChannel::kFirstCheckMs);
    for (const QString& url : {site.NewsURL(), site.HelpURL()}) {
        ASSERT_TRUE(http.Fail(url, "HEAD"));
        ASSERT_TRUE(http.Fail(url, "GET"));
    }
    RSSChannel* channel = Channels().AddChannel(kFeedUrl);
    channel->SetUpdate(0);
    clock.Advance(RSSChannel::kFirstCheckMs);
    AnswerFullCheck(kFeedUrl, ReadData(u"example-more.xml"_s));
    EXPECT_EQ(host.NodeText(FolderKey::Unread), u"Unread  (0)"_s) << "folders wait for the recount";
    clock.Advance(RefreshCoordinator::kFolderRecountMs);
    EXPECT_EQ(host.NodeText(FolderKey::Unread), u"Unread  (3)"_s);

    host.ClearStateChanges();
    channel->SetNewItems(false);
    clock.Advance(200);
    channel->SetNewItems(true);
    clock.Advance(300);
    channel->SetNewItems(false);
    clock.Advance(499);
    EXPECT_EQ(host.StateChanges(), QStringList(3, kFeedUrl)) << "no recount before a second has passed";
    clock.Advance(1);
    EXPECT_EQ(host.StateChanges().mid(3),
              (QStringList{FolderKey::Flagged, FolderKey::Today, FolderKey::Yesterday, FolderKey::Week,
                           FolderKey::Deleted, FolderKey::Read, FolderKey::Unread, site.HelpURL()}));
    EXPECT_FALSE(host.Coordinator().RecountPending()) << "the help channel's own change does not re-arm it";

    profile.GetChannel(FolderKey::Today)->SetNewItems(true);
    EXPECT_EQ(host.NodeIcon(FolderKey::Today), u"newitems"_s);
    EXPECT_FALSE(host.Coordinator().RecountPending()) << "a folder's change";
    profile.GetChannel(site.HelpURL())->SetState();
    EXPECT_FALSE(host.Coordinator().RecountPending()) << "a report that changes nothing shown";
    host.ClearStateChanges();
    auto outsider = NewChannel(u"http://outside.example.org/"_s);
    outsider->SetState();
    channel->SetUsername(u"Someone else"_s);
    channel->SetNewItems(true);
    EXPECT_TRUE(host.StateChanges().isEmpty());
    EXPECT_FALSE(host.Coordinator().RecountPending()) << "reports of others";
    channel->LoadRSS();
    ASSERT_EQ(host.Coordinator().ConnCount(), 1);
    host.ChangeUser(nullptr);
    EXPECT_EQ(host.Coordinator().ConnCount(), 0) << "a dropped fetch gives its slot back";
    EXPECT_TRUE(QFile::exists(ProfileFolder() + u"items.xml"_s)) << "the bank is saved on release";
    host.Coordinator().StateChange(kProfile, *outsider);
    EXPECT_FALSE(host.Coordinator().RecountPending()) << "no active profile";
}

} // namespace
