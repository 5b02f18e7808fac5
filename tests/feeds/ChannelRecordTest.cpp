// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
// The channel record: its channels.xml element (exact bytes, lenient reading), its items in the
// bank, its tree icon, its viewer window and its logo.
#include "FeedsFixture.h"

using namespace Qt::StringLiterals;

namespace {

class ChannelRecordTest : public FeedsFixture {
protected:
    void SetUp() override { Activate(); }
    // A channel filled from a channels.xml element, in the profile folder.
    std::unique_ptr<RSSChannel> Loaded(const QString& element) {
        const XmlDocument doc = XmlDocument::Parse(element.toUtf8());
        EXPECT_FALSE(doc.IsNull()) << element.toStdString();
        auto channel = std::make_unique<RSSChannel>(ChannelServices());
        channel->LoadChannel(doc.DocumentElement());
        channel->LoadLocal(ProfileFolder());
        return channel;
    }
    size_t Deleted() const { return Bank().SubChannelList(kFeedUrl, FolderKey::Deleted, QString()).size(); }
};

// Each data/record-*.xml element, read into a channel titled "Before", is written back as the bytes
// of its .expected file; those bytes read back to themselves.
TEST_F(ChannelRecordTest, RecordsAreReadLenientlyAndWrittenInTheFixedOrder) {
    const QStringList files = DataFiles(u"record-*.xml"_s);
    ASSERT_EQ(files.size(), 9);
    for (const QString& file : files) {
        SCOPED_TRACE(file.toStdString());
        const XmlDocument doc = XmlDocument::Parse(ReadData(file));
        ASSERT_FALSE(doc.IsNull());
        RSSChannel channel(ChannelServices());
        channel.SetTitle(u"Before"_s);
        channel.LoadChannel(doc.DocumentElement());
        const QByteArray written = ElementBytes(channel);
        EXPECT_EQ(written, ReadData(file.chopped(4) + u".expected"_s));
        EXPECT_EQ(ElementBytes(*Loaded(QString::fromUtf8(written))), written);
    }
}

// Deleting, flagging and marking read act on the bank; the icon follows the state in the order
// help, flagged, reload, err, newitems, then unread or read (the fetch tests see reload, err over
// newitems, and read); removing a channel keeps its deleted items and stops its checks (that it
// takes the other items: ProfileGroupsTest; its logo file: LogoIsDownloadedOnceIntoTheProfileFolder).
TEST_F(ChannelRecordTest, ItemsIconAndRemoval) {
    auto channel = NewChannel();
    StoreItems(kFeedUrl, 3);
    channel->LoadChannelSet();
    ASSERT_EQ(channel->ItemCount(), 3);
    EXPECT_EQ(channel->GetImage(), u"unread"_s);
    for (int outside : {-1, 3}) {
        channel->DeleteItem(outside);
        channel->FlagItem(outside);
    }
    EXPECT_EQ(Deleted(), 0u) << "positions outside the set are ignored";
    channel->FlagItem(1);
    EXPECT_TRUE(IsItemFlagged(channel->ItemNode(1)));
    channel->DeleteItem(0);
    EXPECT_EQ(channel->ItemCount(), 2) << "the set is loaded again without the deleted item";
    EXPECT_EQ(Deleted(), 1u);
    channel->SetNewItems(true);
    channel->MarkAllRead();
    EXPECT_EQ(channel->UnreadCount(), 0);
    EXPECT_FALSE(channel->NewItems());
    EXPECT_EQ(channel->GetImage(), u"read"_s);

    auto help = NewChannel(site.HelpURL());
    help->ForceLoadRSS();
    EXPECT_EQ(help->GetImage(), u"help"_s) << "help wins over reload";
    auto flagged = NewChannel(FolderKey::Flagged);
    flagged->SetNewItems(true);
    EXPECT_EQ(flagged->GetImage(), u"flagged"_s);
    auto unreadFolder = NewChannel(FolderKey::Unread);
    EXPECT_EQ(unreadFolder->GetImage(), u"unread"_s) << "an empty Unread folder still shows unread";

    channel->KillMe();
    EXPECT_EQ(Deleted(), 1u) << "deleted items stay";
    http.ClearRequests();
    clock.Advance(RSSChannel::kBackOffMs);
    EXPECT_FALSE(http.Requests().join(u' ').contains(kFeedUrl)) << "a removed channel no longer checks";
}

// The viewer is placed where data/viewer-placed.xml says, with the stored panel height; only a
// normal window's geometry is kept. Without a stored size it is not moved; restored, it gets the
// default panel (data/viewer-restored.xml).
TEST_F(ChannelRecordTest, ViewerIsPlacedAndItsGeometryKept) {
    auto channel = Loaded(QString::fromUtf8(ReadData(u"viewer-placed.xml"_s)));
    channel->CreateChannelView(false);
    HeadlessHost::RecordedViewer* viewer = host.ViewerOf(*channel);
    ASSERT_NE(viewer, nullptr);
    EXPECT_EQ(
        viewer->Calls(),
        (QStringList{u"geometry 20,10,400,300"_s, u"panel 250"_s, u"caption Example"_s,
                     u"setup http://example.org/x.xml|"_s + ProfileFolder() + u"C1_tmp.html"_s, u"hide"_s}));
    EXPECT_EQ(channel->PanelHeight(), 250) << "the move made by SetWndState is not saved back";
    viewer->UserResize(QRect(5, 6, 500, 350));
    EXPECT_EQ(channel->WindowGeometry(), QRect(5, 6, 500, 350));
    viewer->SetWindowState(2);
    viewer->UserResize(QRect(0, 0, 1920, 1080));
    EXPECT_EQ(channel->WindowGeometry(), QRect(5, 6, 500, 350)) << "a maximised window's is not kept";
    channel->ShowItem(4);
    EXPECT_EQ(viewer->Calls().last(), u"item 4"_s);
    home.Write(u"profiles/Tester/C1_tmp.html"_s, "<html/>");
    channel.reset();
    EXPECT_EQ(host.ViewerRequests(),
              (QStringList{u"load http://example.org/x.xml"_s, u"unload http://example.org/x.xml"_s}));
    EXPECT_FALSE(QFile::exists(ProfileFolder() + u"C1_tmp.html"_s)) << "the page file goes with the channel";

    host.ChangeUser(nullptr);
    auto unsized = NewChannel(u"http://example.org/y.xml"_s);
    unsized->ShowItem(0);
    ASSERT_NE(host.ViewerOf(*unsized), nullptr);
    EXPECT_EQ(host.ViewerOf(*unsized)->Calls(),
              (QStringList{u"caption http://example.org/y.xml"_s,
                           u"setup http://example.org/y.xml|"_s + ProfileFolder() + u"A01_tmp.html"_s,
                           u"show"_s, u"item 0"_s}))
        << "not moved without a stored size";
    auto restored = Loaded(QString::fromUtf8(ReadData(u"viewer-restored.xml"_s)));
    restored->CreateChannelView(true);
    ASSERT_NE(host.ViewerOf(*restored), nullptr);
    EXPECT_EQ(restored->PanelHeight(), RSSChannel::kDefaultPanelHeight);
    EXPECT_EQ(host.ViewerOf(*restored)->Calls(),
              (QStringList{u"geometry 0,0,400,300"_s, u"panel %1"_s.arg(RSSChannel::kDefaultPanelHeight),
                           u"caption "_s, u"setup http://example.org/z.xml|"_s, u"show"_s}));
}

// The logo comes only from channels.xml, is downloaded once into the profile folder and goes with
// the channel; a failed download writes nothing, and only web addresses are fetched. An id that
// leaves the profile folder names no file: no logo is written, no cached feed read and nothing
// deleted outside it.
TEST_F(ChannelRecordTest, LogoIsDownloadedOnceIntoTheProfileFolder) {
    ASSERT_TRUE(QDir().mkpath(ProfileFolder()));
    const QString logo = u"http://img.example.org/logo.png"_s;
    const QString picture = ProfileFolder() + u"D4.jpg"_s;
    const QString record =
        u"<channel><url>http://feeds.example.org/x</url><id>%1</id><image><url>%2</url></image></channel>"_s;
    const QByteArray bytes("\x89PNG picture bytes", 18);
    http.AnswerAlways(logo, "GET", FakeHttpClient::Answer{bytes, {}, false});
    home.Write(u"outside.xml"_s, ExampleFeed());
    home.Write(u"outside.jpg"_s, "picture");
    home.Write(u"outside_tmp.html"_s, "<html/>");
    auto hostile = Loaded(record.arg(u"../../outside"_s, logo));
    EXPECT_FALSE(hostile->LocalLoad());
    EXPECT_TRUE(hostile->GetRSSImage().isEmpty());
    hostile->KillMe();
    hostile.reset();
    EXPECT_TRUE(QFile::exists(home.File(u"outside.jpg"_s)));
    EXPECT_TRUE(QFile::exists(home.File(u"outside_tmp.html"_s)));
    EXPECT_TRUE(http.Requests().isEmpty());

    auto channel = Loaded(record.arg(u"D4"_s, logo));
    EXPECT_EQ(channel->GetRSSImage(), picture);
    EXPECT_EQ(home.Read(u"profiles/Tester/D4.jpg"_s), bytes);
    EXPECT_EQ(channel->GetRSSImage(), picture) << "asked again, the stored file answers";
    EXPECT_EQ(Loaded(record.arg(u"D4"_s, logo))->GetRSSImage(), picture) << "a later start finds it";
    EXPECT_EQ(http.Requests(), QStringList{u"GET "_s + logo});
    channel->KillMe();
    EXPECT_FALSE(QFile::exists(picture)) << "a removed channel takes its logo file";
    http.AnswerAlways(logo, "GET", FakeHttpClient::Answer{{}, {}, true});
    home.Write(u"secret.txt"_s, "secret");
    // The download fails; the others are not web addresses.
    for (const QString& address : {logo, QUrl::fromLocalFile(home.File(u"secret.txt"_s)).toString(),
                                   u"tamsel://site/tamsel/news.xml"_s, u"ftp://example.org/logo.png"_s}) {
        EXPECT_TRUE(Loaded(record.arg(u"D4"_s, address))->GetRSSImage().isEmpty()) << address.toStdString();
        EXPECT_FALSE(QFile::exists(picture));
    }
}

} // namespace
