// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
// The channel record: its channels.xml element (exact bytes, lenient reading), its items in the
// bank, its tree icon, its viewer window and its logo.
#include "FeedsFixture.h"

#include "app/SharedHelpers.h"
#include "feeds/RSSChannel.h"
#include "feeds/RSSImage.h"
#include "itembank/clsItemBank.h"
#include "itembank/modItemHandler.h"
#include "platform/XmlDocument.h"

#include <QDir>
#include <QFile>

using namespace Qt::StringLiterals;

namespace {

class ChannelRecordTest : public FeedsFixture {
protected:
    // The channel's element alone, serialised.
    static QByteArray ElementBytes(RSSChannel& channel) {
        XmlDocument doc;
        doc.SetDocumentElement(channel.SaveXML(doc));
        return doc.ToBytes();
    }
    // A channel filled from a channels.xml element.
    std::unique_ptr<RSSChannel> Loaded(const QByteArray& element) {
        const XmlDocument doc = XmlDocument::Parse(element);
        EXPECT_FALSE(doc.IsNull()) << element.constData();
        auto channel = std::make_unique<RSSChannel>(ChannelServices());
        channel->LoadChannel(doc.DocumentElement());
        return channel;
    }
};

TEST_F(ChannelRecordTest, NewChannelElementHasTheDocumentedBytes) {
    auto channel = NewChannel(u"http://example.org/feed.xml"_s);
    channel->SetTitle(u"Example"_s);
    EXPECT_EQ(channel->ID(), u"A01"_s);
    EXPECT_EQ(settings.GetSetting(u"Common"_s, u"LastID"_s, QString()), u"2561"_s);
    EXPECT_EQ(ElementBytes(*channel),
              QByteArrayLiteral(
                  "<channel><url>http://example.org/feed.xml</url><title>Example</title><expire>60</expire>"
                  "<update>60</update><lastmod>-1</lastmod><id>A01</id><windowstate>0</windowstate>"
                  "<windowtop>0</windowtop><windowleft>0</windowleft><windowheight>0</windowheight>"
                  "<windowwidth>0</windowwidth><panelheight>0</panelheight></channel>\n"));
}

// Each data/record-*.xml element, read into a channel titled "Before", is written back as the bytes
// of its .expected file; those bytes read back to themselves.
TEST_F(ChannelRecordTest, RecordsAreReadLenientlyAndWrittenInTheFixedOrder) {
    const QDir data(QStringLiteral(TAMSEL_TEST_DATA_DIR));
    const QStringList files = data.entryList({u"record-*.xml"_s}, QDir::Files, QDir::Name);
    ASSERT_GE(files.size(), 9);
    for (const QString& file : files) {
        SCOPED_TRACE(file.toStdString());
        QFile input(data.filePath(file));
        QFile expected(data.filePath(file.chopped(4) + u".expected"_s));
        ASSERT_TRUE(input.open(QIODevice::ReadOnly) && expected.open(QIODevice::ReadOnly));
        const XmlDocument doc = XmlDocument::Parse(input.readAll());
        ASSERT_FALSE(doc.IsNull());
        RSSChannel channel(ChannelServices());
        channel.SetTitle(u"Before"_s);
        channel.LoadChannel(doc.DocumentElement());
        const QByteArray written = ElementBytes(channel);
        EXPECT_EQ(written, expected.readAll());
        EXPECT_EQ(ElementBytes(*Loaded(written)), written);
    }
}

TEST_F(ChannelRecordTest, DeleteFlagAndMarkReadActOnTheBank) {
    Activate();
    const QString url = u"http://example.org/x.xml"_s;
    StoreItems(url, 3);
    auto channel = NewChannel(url);
    ASSERT_EQ(channel->ItemCount(), 3);

    // Positions outside the set are ignored.
    channel->DeleteItem(-1);
    channel->DeleteItem(3);
    channel->FlagItem(3);
    EXPECT_EQ(Bank().SubChannelList(FolderKey::Deleted, FolderKey::Deleted, QString()).size(), 0u);

    channel->FlagItem(1);
    EXPECT_TRUE(IsItemFlagged(channel->ItemNode(1)));
    channel->DeleteItem(0);
    EXPECT_EQ(channel->ItemCount(), 2) << "the set is loaded again without the deleted item";
    EXPECT_EQ(Bank().SubChannelList(FolderKey::Deleted, FolderKey::Deleted, QString()).size(), 1u);

    channel->SetNewItems(true);
    channel->MarkAllRead();
    EXPECT_EQ(channel->UnreadCount(), 0);
    EXPECT_FALSE(channel->NewItems());
    EXPECT_EQ(channel->GetImage(), u"read"_s);
}

TEST_F(ChannelRecordTest, KillMeRemovesItemsAndLogoFile) {
    Activate();
    const QString url = u"http://example.org/x.xml"_s;
    StoreItems(url, 2);
    StoreItems(u"http://example.org/other.xml"_s, 1);
    auto channel = NewChannel(url);
    channel->DeleteItem(0);
    home.Write(u"profiles/Tester/"_s + channel->ID() + u".jpg"_s, "picture");
    channel->KillMe();
    EXPECT_FALSE(QFile::exists(ProfileFolder() + channel->ID() + u".jpg"_s));
    EXPECT_EQ(Bank().SubChannelList(url, FolderKey::Deleted, QString()).size(), 1u) << "deleted items stay";
    EXPECT_EQ(Bank().SubChannelList(url, QString(), QString()).size(), 0u);
    EXPECT_EQ(Bank().SubChannelList(u"http://example.org/other.xml"_s, QString(), QString()).size(), 1u);
    channel->KillMe();
    clock.Advance(RSSChannel::kFirstCheckMs);
    EXPECT_TRUE(http.Requests().isEmpty()) << "a removed channel no longer checks";
}

TEST_F(ChannelRecordTest, IconKeysFollowTheStateInOrder) {
    Activate();
    auto help = NewChannel(site.HelpURL());
    help->ForceLoadRSS();
    EXPECT_EQ(help->GetImage(), u"help"_s) << "help wins over reload";
    auto flagged = NewChannel(FolderKey::Flagged);
    flagged->SetNewItems(true);
    EXPECT_EQ(flagged->GetImage(), u"flagged"_s);
    auto unreadFolder = NewChannel(FolderKey::Unread);
    EXPECT_EQ(unreadFolder->GetImage(), u"unread"_s) << "an empty Unread folder still shows unread";
    unreadFolder->SetNewItems(true);
    EXPECT_EQ(unreadFolder->GetImage(), u"newitems"_s);

    const QString url = u"http://example.org/x.xml"_s;
    auto channel = NewChannel(url);
    EXPECT_EQ(channel->GetImage(), u"read"_s) << "no unread items";
    StoreItems(url, 1);
    channel->LoadChannelSet();
    EXPECT_EQ(channel->GetImage(), u"unread"_s);
    channel->SetNewItems(true);
    EXPECT_EQ(channel->GetImage(), u"newitems"_s);
    channel->ForceLoadRSS();
    EXPECT_EQ(channel->GetImage(), u"reload"_s);
    clock.Advance(RSSChannel::kTimeOutMs);
    EXPECT_EQ(channel->GetImage(), u"err"_s) << "err wins over newitems";
}

TEST_F(ChannelRecordTest, ViewerIsPlacedAndItsGeometryKept) {
    Activate();
    auto channel =
        Loaded("<channel><url>http://example.org/x.xml</url><title>Example</title><id>C1</id>"
               "<newitems>yes</newitems><windowtop>10</windowtop><windowleft>20</windowleft>"
               "<windowheight>300</windowheight><windowwidth>400</windowwidth><panelheight>250</panelheight>"
               "</channel>");
    channel->SetUsername(kProfile);
    channel->LoadLocal(ProfileFolder());
    channel->CreateChannelView(false);
    HeadlessHost::RecordedViewer* viewer = host.ViewerOf(*channel);
    ASSERT_NE(viewer, nullptr);
    EXPECT_FALSE(channel->NewItems());
    EXPECT_EQ(
        viewer->Calls(),
        (QStringList{u"geometry 20,10,400,300"_s, u"panel 250"_s, u"caption Example"_s,
                     u"setup http://example.org/x.xml|"_s + ProfileFolder() + u"C1_tmp.html"_s, u"hide"_s}));
    EXPECT_EQ(channel->PanelHeight(), 250) << "the move made by SetWndState is not saved back";

    viewer->UserResize(QRect(5, 6, 500, 350));
    EXPECT_EQ(channel->WindowGeometry(), QRect(5, 6, 500, 350));
    viewer->SetWindowState(2);
    viewer->UserResize(QRect(0, 0, 1920, 1080));
    EXPECT_EQ(channel->WindowGeometry(), QRect(5, 6, 500, 350)) << "only a normal window's geometry is kept";

    channel->ShowItem(4);
    EXPECT_EQ(viewer->Calls().last(), u"item 4"_s);
    EXPECT_EQ(host.ViewerRequests(), QStringList{u"load http://example.org/x.xml"_s});
    home.Write(u"profiles/Tester/C1_tmp.html"_s, "<html/>");
    channel.reset();
    EXPECT_EQ(host.ViewerRequests().last(), u"unload http://example.org/x.xml"_s);
    EXPECT_FALSE(QFile::exists(ProfileFolder() + u"C1_tmp.html"_s)) << "the page file goes with the channel";
}

// A viewer for a channel without a stored size is not moved; restored, it gets the default panel.
TEST_F(ChannelRecordTest, UnsizedViewerIsNotMovedAndARestoredOneGetsTheDefaultPanel) {
    auto channel = NewChannel(u"http://example.org/x.xml"_s);
    channel->ShowItem(0);
    HeadlessHost::RecordedViewer* viewer = host.ViewerOf(*channel);
    ASSERT_NE(viewer, nullptr);
    EXPECT_FALSE(viewer->Calls().join(u';').contains(u"geometry"_s));
    EXPECT_EQ(viewer->Calls().last(), u"item 0"_s);

    auto restored = Loaded("<channel><url>http://example.org/y.xml</url><windowheight>300</windowheight>"
                           "<windowwidth>400</windowwidth></channel>");
    restored->CreateChannelView(true);
    ASSERT_NE(host.ViewerOf(*restored), nullptr);
    EXPECT_EQ(restored->PanelHeight(), RSSChannel::kDefaultPanelHeight);
    EXPECT_EQ(host.ViewerOf(*restored)->PanelHeight(), RSSChannel::kDefaultPanelHeight);
    EXPECT_TRUE(host.ViewerOf(*restored)->Visible());
}

// The logo comes only from channels.xml and is downloaded once into the profile folder.
class ChannelImageTest : public ChannelRecordTest {
protected:
    static inline const QString kLogo = u"http://img.example.org/logo.png"_s;

    std::unique_ptr<RSSChannel> WithLogo(const QString& logoUrl) {
        auto channel = Loaded(QStringLiteral("<channel><url>%1</url><id>D4</id><image><title>Logo</title>"
                                             "<url>%2</url></image></channel>")
                                  .arg(kFeedUrl, logoUrl)
                                  .toUtf8());
        channel->LoadLocal(ProfileFolder());
        return channel;
    }
    QString PicturePath() const { return ProfileFolder() + u"D4.jpg"_s; }
};

TEST_F(ChannelImageTest, DownloadedOnceThenReusedAndAFailureWritesNothing) {
    FakeHttpClient::Answer answer;
    answer.body = QByteArray("\x89PNG picture bytes", 18);
    http.AnswerAlways(kLogo, "GET", answer);
    auto channel = WithLogo(kLogo);
    EXPECT_EQ(channel->GetRSSImage(), PicturePath());
    EXPECT_EQ(home.Read(u"profiles/Tester/D4.jpg"_s), answer.body);
    EXPECT_EQ(channel->GetRSSImage(), PicturePath());
    // A later start finds the file.
    EXPECT_EQ(WithLogo(kLogo)->GetRSSImage(), PicturePath());
    EXPECT_EQ(http.Requests(), QStringList{u"GET "_s + kLogo});

    ASSERT_TRUE(QFile::remove(PicturePath()));
    FakeHttpClient::Answer failure;
    failure.error = true;
    http.AnswerAlways(kLogo, "GET", failure);
    EXPECT_TRUE(WithLogo(kLogo)->GetRSSImage().isEmpty());
    EXPECT_FALSE(QFile::exists(PicturePath()));
}

// Only web addresses are fetched, and an id that leaves the profile folder names no file: no logo
// is written, no cached feed read and nothing deleted outside it.
TEST_F(ChannelImageTest, HostileAddressesAndIdsTouchNothing) {
    home.Write(u"secret.txt"_s, "secret");
    for (const QString& address : {QUrl::fromLocalFile(home.File(u"secret.txt"_s)).toString(),
                                   u"tamsel://site/tamsel/news.xml"_s, u"ftp://example.org/logo.png"_s}) {
        EXPECT_TRUE(WithLogo(address)->GetRSSImage().isEmpty()) << address.toStdString();
        EXPECT_FALSE(QFile::exists(PicturePath()));
    }

    Activate();
    ASSERT_TRUE(QDir().mkpath(ProfileFolder()));
    http.AnswerAlways(kLogo, "GET", FakeHttpClient::Answer{"bytes", {}, false});
    home.Write(u"outside.xml"_s, ExampleFeed());
    home.Write(u"outside.jpg"_s, "picture");
    home.Write(u"outside_tmp.html"_s, "<html/>");
    auto channel = Loaded(QStringLiteral("<channel><url>%1</url><id>../../outside</id><image><url>%2</url>"
                                         "</image></channel>")
                              .arg(kFeedUrl, kLogo)
                              .toUtf8());
    channel->LoadLocal(ProfileFolder());
    EXPECT_FALSE(channel->LocalLoad());
    EXPECT_TRUE(channel->GetRSSImage().isEmpty());
    channel->KillMe();
    channel.reset();
    EXPECT_TRUE(QFile::exists(home.File(u"outside.jpg"_s)));
    EXPECT_TRUE(QFile::exists(home.File(u"outside_tmp.html"_s)));
    EXPECT_TRUE(http.Requests().isEmpty());
}

} // namespace
