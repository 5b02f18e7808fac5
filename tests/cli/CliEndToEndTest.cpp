// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
// The built tamsel-cli, run as a user runs it: in its own process, under a temporary TAMSEL_HOME,
// against feeds served by a local HTTP s_server-> The test serves the event loop while the program
// runs, so that the server can answer.
#include "platform/CRegSettings.h"
#include "platform/Paths.h"
#include "platform/SingleInstance.h"
#include "platform/XmlDocument.h"
#include "support/CliProcess.h"
#include "support/LocalHttpServer.h"
#include "support/QStringPrinter.h"

#include <QDateTime>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocale>
#include <QProcess>
#include <QSet>
#include <QTemporaryDir>
#include <csignal>
#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <ostream>
#include <sys/resource.h>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 kSmallFileLimit = 1024;
constexpr int kFeeds = 6;
const QString kProfile = u"Reader"_s;

QByteArray Feed(int feed, int items) {
    // Dated now, as written by the server: the items land in Today and never expire meanwhile.
    const QByteArray now =
        QLocale::c().toString(QDateTime::currentDateTime(), u"ddd, dd MMM yyyy hh:mm:ss"_s).toUtf8() + " GMT";
    const QByteArray n = QByteArray::number(feed);
    QByteArray body = "<?xml version=\"1.0\"?><rss version=\"2.0\"><channel><title>Feed " + n +
                      "</title><link>http://news.example/" + n + "/</link>";
    for (int item = 1; item <= items; ++item) {
        const QByteArray i = QByteArray::number(item);
        body += "<item><title>Story " + n + "." + i + "</title><link>http://news.example/" + n + "/" + i +
                "</link><guid>feed" + n + "-" + i + "</guid><pubDate>" + now +
                "</pubDate><description>&lt;p&gt;Hello from &lt;b&gt;feed " + n +
                "&lt;/b&gt; &lt;a href=\"/more\"&gt;more&lt;/a&gt;&lt;/p&gt;</description></item>";
    }
    return body + "</channel></rss>";
}

QByteArray ReadFile(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// One server for the suite, and one home subscribed to its six feeds that each test that needs
// subscriptions starts from a copy of: the import and the first fetch run once.
class CliEndToEndTest : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        s_server = std::make_unique<LocalHttpServer>();
        s_subscribed = std::make_unique<QTemporaryDir>();
        // The maker's site is this server: its (empty) Spotlight list subscribes to nothing.
        s_server->ServeXml(u"/tamsel/spotlight.xml"_s, "<opml><body/></opml>",
                           "Mon, 16 Nov 2026 09:00:00 GMT");
        ServeFeeds();
        const QString home = s_subscribed->path();
        PointAtTheServer(home);
        s_added = RunIn(home, {u"profile-add"_s, kProfile});
        s_imported = RunIn(home, {u"import"_s, WriteOpml(home)});
        s_server->ClearRequests();
        s_fetched = RunIn(home, {u"fetch"_s});
        s_firstFetchRequests = FeedRequests();
    }
    static void TearDownTestSuite() {
        s_subscribed.reset();
        s_server.reset();
    }
    void SetUp() override {
        PointAtTheServer(home.path());
        ServeFeeds();
        s_server->ClearRequests();
    }

    static void PointAtTheServer(const QString& home) {
        CRegSettings settings(HomePaths(home));
        settings.SaveSetting(u"Common"_s, u"MakerSite"_s, s_server->Url(QString()).toString());
    }
    static QString FeedUrl(int feed) { return s_server->Url(u"/feed"_s + QString::number(feed)).toString(); }
    static void ServeFeeds(int items = 2) {
        for (int feed = 1; feed <= kFeeds; ++feed) {
            s_server->ServeXml(u"/feed"_s + QString::number(feed), Feed(feed, items),
                               "Mon, 16 Nov 2026 08:00:00 GMT");
        }
    }
    static QString WriteOpml(const QString& home) {
        QByteArray opml =
            "<opml version=\"1.0\"><head><title>Mine</title></head><body><outline text=\"News\">";
        for (int feed = 1; feed <= kFeeds; ++feed) {
            opml += "<outline text=\"F\" xmlUrl=\"" + FeedUrl(feed).toUtf8() + "\"/>";
        }
        opml += "<outline text=\"odd\" xmlUrl=\"ftp://files.example/feed\"/></outline></body></opml>";
        const QString path = home + u"/in.opml"_s;
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(opml);
        return path;
    }
    // Feed requests the server saw, in order ("HEAD /feed1", "GET /feed1", ...).
    static QStringList FeedRequests() {
        QStringList requests = s_server->Requests();
        requests.removeIf([](const QString& request) { return !request.contains(u" /feed"_s); });
        return requests;
    }

    CliRun Run(const QStringList& arguments, const std::function<void()>& inChild = {}) {
        return RunIn(home.path(), arguments, {}, inChild);
    }
    Paths GetPaths() const { return HomePaths(home.path()); }
    QString ProfileFile(const QString& name) const {
        return GetPaths().ProfileFolder(kProfile) + u'/' + name;
    }
    // This test's home becomes a profile subscribed to the six feeds, each fetched once.
    void Subscribe() {
        ASSERT_EQ(s_fetched.exitCode, 0) << s_fetched;
        CopyFolder(s_subscribed->path(), home.path());
    }
    QList<QJsonObject> List(const QStringList& options) {
        const CliRun run = Run(QStringList{u"list"_s, u"--json"_s} + options);
        EXPECT_EQ(run.exitCode, 0) << run;
        return run.Objects();
    }

    static inline std::unique_ptr<LocalHttpServer> s_server;
    static inline std::unique_ptr<QTemporaryDir> s_subscribed;
    static inline CliRun s_added;
    static inline CliRun s_imported;
    static inline CliRun s_fetched;
    static inline QStringList s_firstFetchRequests;
    QTemporaryDir home;
};

TEST_F(CliEndToEndTest, ImportAndTheFirstFetchLoadEveryFeed) {
    ASSERT_EQ(s_added.exitCode, 0) << s_added;
    ASSERT_EQ(s_imported.exitCode, 0) << s_imported;
    EXPECT_TRUE(
        s_imported.out.contains(u"Subscribed to 6 new channel(s) in \"My Channels\" (0 already subscribed, "
                                u"1 skipped)."_s))
        << s_imported;
    EXPECT_TRUE(s_imported.err.contains(u"Skipped ftp://files.example/feed"_s)) << s_imported;

    ASSERT_EQ(s_fetched.exitCode, 0) << s_fetched;
    EXPECT_TRUE(s_fetched.out.endsWith(u"6 channel(s): 6 ok, 0 unchanged, 0 failed; 12 new item(s).\n"_s))
        << s_fetched;
    // Not a terminal: no progress line.
    EXPECT_EQ(s_fetched.Lines().size(), 1) << s_fetched;
    for (int feed = 1; feed <= kFeeds; ++feed) {
        const QString path = u"/feed"_s + QString::number(feed);
        EXPECT_EQ(s_firstFetchRequests.count(u"HEAD "_s + path), 1)
            << s_firstFetchRequests.join(u", "_s).toStdString();
        EXPECT_EQ(s_firstFetchRequests.count(u"GET "_s + path), 1)
            << s_firstFetchRequests.join(u", "_s).toStdString();
    }
    Subscribe();

    // The Unread folder is the default list: every item, newest stored first.
    const QList<QJsonObject> unread = List({});
    ASSERT_EQ(unread.size(), 12);
    QSet<QString> titles;
    for (int n = 0; n < unread.size(); ++n) {
        const QJsonObject& item = unread[n];
        EXPECT_EQ(item.value(u"n"_s).toInt(), n + 1);
        EXPECT_FALSE(item.value(u"read"_s).toBool());
        EXPECT_FALSE(item.value(u"flag"_s).toBool());
        EXPECT_FALSE(item.value(u"delete"_s).toBool());
        EXPECT_TRUE(item.value(u"channel"_s).toString().startsWith(s_server->Url(u"/feed"_s).toString()));
        EXPECT_TRUE(item.value(u"channeltitle"_s).toString().startsWith(u"Feed "_s));
        EXPECT_FALSE(item.value(u"guid"_s).toString().isEmpty());
        titles.insert(item.value(u"title"_s).toString());
    }
    EXPECT_EQ(titles.size(), 12);
    // Within one channel the feed's order is the storage order: the later item is listed first.
    const QList<QJsonObject> one = List({u"--channel"_s, FeedUrl(1)});
    ASSERT_EQ(one.size(), 2);
    EXPECT_EQ(one[0].value(u"title"_s).toString(), u"Story 1.2"_s);
    EXPECT_EQ(one[1].value(u"title"_s).toString(), u"Story 1.1"_s);

    const CliRun text = Run({u"list"_s, u"--folder"_s, u"today"_s});
    ASSERT_EQ(text.exitCode, 0) << text;
    EXPECT_EQ(text.Lines().size(), 13) << text;
    EXPECT_TRUE(text.out.endsWith(u"Page 1 of 1, 12 item(s).\n"_s)) << text;
    EXPECT_TRUE(text.Lines().first().startsWith(u"   1  U..  "_s)) << text;
}

TEST_F(CliEndToEndTest, ListsFollowTheViewersFoldersFiltersAndSearch) {
    Subscribe();
    EXPECT_EQ(List({u"--folder"_s, u"week"_s}).size(), 12);
    EXPECT_EQ(List({u"--folder"_s, u"yesterday"_s}).size(), 0);
    EXPECT_EQ(List({u"--folder"_s, u"today"_s, u"--filter"_s, u"old"_s}).size(), 0);
    EXPECT_EQ(List({u"--folder"_s, u"read"_s}).size(), 0);
    const QList<QJsonObject> searched = List({u"--folder"_s, u"today"_s, u"--search"_s, u"  STORY 3.  "_s});
    ASSERT_EQ(searched.size(), 2);
    for (const QJsonObject& item : searched) {
        EXPECT_TRUE(item.value(u"title"_s).toString().startsWith(u"Story 3."_s));
    }
    // The search looks at the whole item: the description's text too.
    EXPECT_EQ(List({u"--search"_s, u"from <b>feed 4"_s}).size(), 2);
    EXPECT_EQ(List({u"--channel"_s, FeedUrl(4), u"--filter"_s, u"unread"_s}).size(), 2);

    const CliRun unknown = Run({u"list"_s, u"--channel"_s, u"http://elsewhere.example/feed"_s});
    EXPECT_EQ(unknown.exitCode, 1) << unknown;
    EXPECT_TRUE(unknown.err.contains(u"Not subscribed"_s)) << unknown;
    const CliRun noPage = Run({u"list"_s, u"--page"_s, u"2"_s});
    EXPECT_EQ(noPage.exitCode, 1) << noPage;
    EXPECT_TRUE(noPage.err.contains(u"no page 2; the list has 1 page(s)"_s)) << noPage;
}

TEST_F(CliEndToEndTest, ShowTagDeleteAndMarkReadChangeTheItems) {
    Subscribe();
    const QList<QJsonObject> listed = List({u"--channel"_s, FeedUrl(2)});
    ASSERT_EQ(listed.size(), 2);
    const QString first = listed[0].value(u"title"_s).toString();

    const CliRun shown = Run({u"show"_s, u"1"_s});
    ASSERT_EQ(shown.exitCode, 0) << shown;
    EXPECT_TRUE(shown.out.startsWith(first + u"\nChannel: Feed 2 <"_s)) << shown;
    EXPECT_TRUE(shown.out.contains(u"State:   unread\n\nHello from feed 2 more [1]\n"_s)) << shown;
    EXPECT_TRUE(shown.out.contains(u"[1] http://news.example/more\n"_s)) << shown;
    const QList<QJsonObject> read = List({u"--channel"_s, FeedUrl(2), u"--filter"_s, u"read"_s});
    ASSERT_EQ(read.size(), 1);
    EXPECT_EQ(read[0].value(u"title"_s).toString(), first);
    EXPECT_TRUE(read[0].value(u"read"_s).toBool());
    EXPECT_EQ(List({}).size(), 11);

    // Tag the newest unread item, then untag it from the Tagged folder's list.
    const QString newest = List({}).first().value(u"title"_s).toString();
    const CliRun tagged = Run({u"tag"_s, u"1"_s});
    ASSERT_EQ(tagged.exitCode, 0) << tagged;
    EXPECT_EQ(tagged.out, u"Tagged 1: "_s + newest + u'\n');
    const QList<QJsonObject> inTagged = List({u"--folder"_s, u"tagged"_s});
    ASSERT_EQ(inTagged.size(), 1);
    EXPECT_TRUE(inTagged[0].value(u"flag"_s).toBool());
    EXPECT_EQ(Run({u"tag"_s, u"1"_s}).out, u"Untagged 1: "_s + newest + u'\n');
    EXPECT_EQ(List({u"--folder"_s, u"tagged"_s}).size(), 0);

    // Delete moves an item to the Deleted folder; delete there brings it back.
    const QList<QJsonObject> five = List({u"--channel"_s, FeedUrl(5)});
    ASSERT_EQ(five.size(), 2);
    EXPECT_EQ(Run({u"delete"_s, u"2"_s}).exitCode, 0);
    EXPECT_EQ(List({u"--channel"_s, FeedUrl(5)}).size(), 1);
    const QList<QJsonObject> deleted = List({u"--folder"_s, u"deleted"_s});
    ASSERT_EQ(deleted.size(), 1);
    EXPECT_EQ(deleted[0].value(u"title"_s).toString(), five[1].value(u"title"_s).toString());
    EXPECT_TRUE(deleted[0].value(u"delete"_s).toBool());
    EXPECT_TRUE(Run({u"delete"_s, u"1"_s}).out.startsWith(u"Restored 1: "_s));
    EXPECT_EQ(List({u"--channel"_s, FeedUrl(5)}).size(), 2);

    const CliRun marked = Run({u"mark-read"_s, u"--channel"_s, FeedUrl(6)});
    ASSERT_EQ(marked.exitCode, 0) << marked;
    EXPECT_EQ(marked.out, u"Marked 2 item(s) read.\n"_s);
    EXPECT_EQ(List({u"--channel"_s, FeedUrl(6), u"--filter"_s, u"unread"_s}).size(), 0);
    const CliRun folder = Run({u"mark-read"_s, u"--folder"_s, u"today"_s});
    EXPECT_EQ(folder.out, u"Marked 9 item(s) read.\n"_s) << folder;
    EXPECT_EQ(List({}).size(), 0);

    const CliRun stats = Run({u"stats"_s});
    ASSERT_EQ(stats.exitCode, 0) << stats;
    EXPECT_TRUE(stats.out.contains(u"     12      0  Today\n"_s)) << stats;
    EXPECT_TRUE(stats.out.contains(u"      2      0  Feed 3 <"_s + FeedUrl(3) + u">\n"_s)) << stats;
    EXPECT_TRUE(stats.out.contains(u"12 item(s) in the item bank"_s)) << stats;
}

TEST_F(CliEndToEndTest, AnItemBankThatCannotBeSavedFailsTheCommand) {
    Subscribe();
    const QString newest = List({}).first().value(u"title"_s).toString();
    const QByteArray before = ReadFile(ProfileFile(u"items.xml"_s));
    ASSERT_GT(before.size(), kSmallFileLimit);
    // A file size limit below the bank's size stands in for a full disk.
    const CliRun full = Run({u"tag"_s, u"1"_s}, [] {
        std::signal(SIGXFSZ, SIG_IGN);
        rlimit limit{};
        getrlimit(RLIMIT_FSIZE, &limit);
        limit.rlim_cur = rlim_t(kSmallFileLimit);
        setrlimit(RLIMIT_FSIZE, &limit);
    });
    EXPECT_EQ(full.exitCode, 1) << full;
    EXPECT_TRUE(full.err.contains(u"items.xml could not be written"_s)) << full;
    EXPECT_EQ(ReadFile(ProfileFile(u"items.xml"_s)), before);
    EXPECT_EQ(List({u"--folder"_s, u"tagged"_s}).size(), 0);

    // With room on the disk again, the same item is tagged.
    ASSERT_EQ(List({}).first().value(u"title"_s).toString(), newest);
    const CliRun tagged = Run({u"tag"_s, u"1"_s});
    EXPECT_EQ(tagged.exitCode, 0) << tagged;
    EXPECT_EQ(tagged.out, u"Tagged 1: "_s + newest + u'\n');
}

TEST_F(CliEndToEndTest, NumbersNeverPointToAnotherItem) {
    Subscribe();
    ASSERT_EQ(List({u"--channel"_s, FeedUrl(3)}).size(), 2);
    const CliRun missing = Run({u"show"_s, u"3"_s});
    EXPECT_EQ(missing.exitCode, 1) << missing;
    EXPECT_TRUE(missing.err.contains(u"no item 3 in the last list; it holds items 1 to 2"_s)) << missing;
    ASSERT_EQ(Run({u"remove"_s, FeedUrl(3)}).exitCode, 0);
    const CliRun gone = Run({u"show"_s, u"1"_s});
    EXPECT_EQ(gone.exitCode, 1) << gone;
    EXPECT_TRUE(gone.err.contains(u"is no longer in the item bank"_s)) << gone;
    const CliRun stillGone = Run({u"--profile"_s, kProfile, u"tag"_s, u"1"_s});
    EXPECT_EQ(stillGone.exitCode, 1) << stillGone;
}

TEST_F(CliEndToEndTest, UnchangedFeedsAreCheckedButNotDownloaded) {
    Subscribe();
    // Four channels fit the four connection slots, so that no check waits for a free one; the
    // first fetch of six went through the slots already.
    ASSERT_EQ(Run({u"remove"_s, FeedUrl(5)}).exitCode, 0);
    ASSERT_EQ(Run({u"remove"_s, FeedUrl(6)}).exitCode, 0);
    constexpr int kChecked = 4;
    const auto fetch = [this](const QStringList& options, const QString& summary) {
        s_server->ClearRequests();
        const CliRun run = Run(QStringList{u"fetch"_s} + options);
        EXPECT_EQ(run.exitCode, 0) << run;
        EXPECT_TRUE(run.out.endsWith(summary)) << run;
        return FeedRequests();
    };
    QStringList requests = fetch({}, u"4 channel(s): 0 ok, 4 unchanged, 0 failed; 0 new item(s).\n"_s);
    EXPECT_EQ(requests.size(), kChecked) << requests.join(u", "_s).toStdString();
    EXPECT_TRUE(requests.filter(u"GET "_s).isEmpty()) << requests.join(u", "_s).toStdString();

    // One feed changes: only it is downloaded, and only its new item is new.
    s_server->ServeXml(u"/feed4"_s, Feed(4, 3), "Mon, 16 Nov 2026 10:00:00 GMT");
    requests = fetch({}, u"4 channel(s): 1 ok, 3 unchanged, 0 failed; 1 new item(s).\n"_s);
    EXPECT_EQ(requests.filter(u"GET "_s), QStringList{u"GET /feed4"_s});

    // --force downloads everything, after the same HEAD checks.
    requests = fetch({u"--force"_s}, u"4 channel(s): 4 ok, 0 unchanged, 0 failed; 0 new item(s).\n"_s);
    EXPECT_EQ(requests.filter(u"GET "_s).size(), kChecked) << requests.join(u", "_s).toStdString();
    EXPECT_EQ(requests.filter(u"HEAD "_s).size(), kChecked) << requests.join(u", "_s).toStdString();
    // And the next plain fetch is spared again.
    requests = fetch({}, u"4 channel(s): 0 ok, 4 unchanged, 0 failed; 0 new item(s).\n"_s);
    EXPECT_TRUE(requests.filter(u"GET "_s).isEmpty()) << requests.join(u", "_s).toStdString();
}

TEST_F(CliEndToEndTest, FailedFeedsMakeTheExitStatusOne) {
    s_server->ServeXml(u"/good"_s, Feed(1, 1));
    s_server->ServeXml(u"/broken"_s, "<rss><channel><title>cut off");
    LocalHttpServer::Route reset;
    reset.reset = true;
    s_server->Serve(u"/reset"_s, reset);
    ASSERT_EQ(Run({u"profile-add"_s, kProfile}).exitCode, 0);
    ASSERT_EQ(Run({u"add"_s, s_server->Url(u"/good"_s).toString()}).exitCode, 0);
    // Feeds that cannot be read now are subscribed to only when the user insists.
    for (const QString& path : {u"/broken"_s, u"/missing"_s, u"/reset"_s}) {
        const CliRun refused = Run({u"add"_s, s_server->Url(path).toString()});
        EXPECT_EQ(refused.exitCode, 1) << refused;
        EXPECT_TRUE(refused.err.contains(u"--force subscribes to "_s + s_server->Url(path).toString()))
            << refused;
        const CliRun added = Run({u"add"_s, s_server->Url(path).toString(), u"--force"_s});
        ASSERT_EQ(added.exitCode, 0) << added;
    }
    const CliRun fetched = Run({u"fetch"_s});
    EXPECT_EQ(fetched.exitCode, 1) << fetched;
    EXPECT_TRUE(fetched.out.endsWith(u"4 channel(s): 1 ok, 0 unchanged, 3 failed; 1 new item(s).\n"_s))
        << fetched;
    for (const QString& path : {u"/broken"_s, u"/missing"_s, u"/reset"_s}) {
        EXPECT_TRUE(fetched.err.contains(u"Failed: "_s + s_server->Url(path).toString() + u'\n')) << fetched;
    }
    EXPECT_FALSE(fetched.err.contains(s_server->Url(u"/good"_s).toString())) << fetched;
    EXPECT_EQ(List({}).size(), 1);
}

TEST_F(CliEndToEndTest, AddFindsTheFeedsAPageNamesAndPickChoosesOne) {
    LocalHttpServer::Route page;
    page.headers.append(std::pair<QByteArray, QByteArray>("Content-Type", "text/html"));
    page.body = "<html><head><title>News site</title>"
                "<link rel=\"alternate\" type=\"application/rss+xml\" title=\"Feed One\" href=\"../feed1\">"
                "<link rel=\"alternate\" type=\"application/atom+xml\" href=\"" +
                FeedUrl(2).toUtf8() + "\"></head><body>Stories</body></html>";
    s_server->Serve(u"/site/index.html"_s, page);
    const QString pageUrl = s_server->Url(u"/site/index.html"_s).toString();
    ASSERT_EQ(Run({u"profile-add"_s, kProfile}).exitCode, 0);

    // Two feeds: the user is asked to choose; a choice beyond them is refused.
    const CliRun listed = Run({u"add"_s, pageUrl});
    EXPECT_EQ(listed.exitCode, 1) << listed;
    EXPECT_EQ(listed.out, pageUrl + u" names 2 feeds:\n  1. Feed One <"_s + FeedUrl(1) + u">\n  2. "_s +
                              FeedUrl(2) + u'\n')
        << listed;
    EXPECT_TRUE(listed.err.contains(u"--pick N"_s)) << listed;
    const CliRun beyond = Run({u"add"_s, pageUrl, u"--pick"_s, u"3"_s});
    EXPECT_EQ(beyond.exitCode, 1) << beyond;
    EXPECT_TRUE(beyond.err.contains(u"There is no feed 3"_s)) << beyond;

    const CliRun picked = Run({u"add"_s, pageUrl, u"--pick"_s, u"2"_s, u"--group"_s, u"Picked"_s});
    ASSERT_EQ(picked.exitCode, 0) << picked;
    EXPECT_TRUE(
        picked.out.endsWith(u"Subscribed to "_s + FeedUrl(2) + u"; it is in the group \"Picked\".\n"_s))
        << picked;
    // A "feed:" address that is a feed is subscribed to as it is.
    const CliRun direct = Run({u"add"_s, u"feed:"_s + FeedUrl(3)});
    EXPECT_EQ(direct.exitCode, 0) << direct;
    EXPECT_EQ(direct.out, u"Subscribed to "_s + FeedUrl(3) + u"; it is in the group \"My Channels\".\n"_s);
    // Those two only: the refused runs subscribed to nothing.
    const CliRun fetched = Run({u"fetch"_s});
    EXPECT_TRUE(fetched.out.endsWith(u"2 channel(s): 2 ok, 0 unchanged, 0 failed; 4 new item(s).\n"_s))
        << fetched;
}

TEST_F(CliEndToEndTest, ExportWritesTheSubscribedChannels) {
    Subscribe();
    ASSERT_EQ(Run({u"remove"_s, FeedUrl(2)}).exitCode, 0);
    const QString path = home.filePath(u"out.opml"_s);
    const CliRun exported = Run({u"export"_s, path});
    ASSERT_EQ(exported.exitCode, 0) << exported;
    EXPECT_EQ(exported.out, u"Wrote 5 channel(s) to "_s + path + u".\n"_s);
    const XmlDocument doc = XmlDocument::Load(path);
    ASSERT_FALSE(doc.IsNull());
    EXPECT_EQ(doc.DocumentElement().Name(), u"opml"_s);
    QStringList urls;
    for (const XmlNode& outline : doc.DocumentElement().SelectNodes(u"body/outline"_s)) {
        urls.append(outline.Attribute(u"xmlUrl"_s));
        EXPECT_TRUE(outline.Attribute(u"text"_s).startsWith(u"Feed "_s));
    }
    EXPECT_EQ(urls, (QStringList{FeedUrl(1), FeedUrl(3), FeedUrl(4), FeedUrl(5), FeedUrl(6)}));

    // The export reads back as the same subscriptions.
    ASSERT_EQ(Run({u"profile-add"_s, u"Second"_s}).exitCode, 0);
    const CliRun imported = Run({u"import"_s, path, u"--group"_s, u"Back"_s});
    ASSERT_EQ(imported.exitCode, 0) << imported;
    EXPECT_TRUE(imported.out.contains(u"Subscribed to 5 new channel(s) in \"Back\""_s)) << imported;
    const CliRun again = Run({u"--profile"_s, u"Second"_s, u"export"_s, home.filePath(u"again.opml"_s)});
    ASSERT_EQ(again.exitCode, 0) << again;
    EXPECT_EQ(ReadFile(home.filePath(u"again.opml"_s)).count("xmlUrl="), 5);
    const CliRun profiles = Run({u"profiles"_s});
    EXPECT_EQ(profiles.out, u"  Reader\n* Second\n"_s) << profiles;
}

TEST_F(CliEndToEndTest, WhileTamselRunsOnlyReadingIsAllowed) {
    Subscribe();
    const QStringList files = {ProfileFile(u"items.xml"_s), ProfileFile(u"channels.xml"_s),
                               ProfileFile(u"groups.xml"_s),
                               GetPaths().ProfilesFolder() + u"/profiles.xml"_s};
    QList<QByteArray> before;
    for (const QString& file : files) {
        before.append(ReadFile(file));
        ASSERT_FALSE(before.last().isEmpty()) << file.toStdString();
    }
    {
        SingleInstance tamsel(home.path());
        ASSERT_EQ(tamsel.Acquire(), SingleInstance::Result::Acquired);
        const QList<QStringList> changing = {{u"fetch"_s},
                                             {u"add"_s, u"http://x.example/feed"_s},
                                             {u"remove"_s, FeedUrl(1)},
                                             {u"show"_s, u"1"_s},
                                             {u"tag"_s, u"1"_s},
                                             {u"mark-read"_s, u"--folder"_s, u"unread"_s},
                                             {u"profile-add"_s, u"Other"_s},
                                             {u"import"_s, WriteOpml(home.path())}};
        for (const QStringList& arguments : changing) {
            const CliRun refused = Run(arguments);
            EXPECT_EQ(refused.exitCode, 1) << arguments.join(u' ').toStdString() << "\n" << refused;
            EXPECT_TRUE(refused.err.contains(u"is in use by Tamsel"_s)) << refused;
            EXPECT_TRUE(refused.out.isEmpty()) << refused;
        }
        EXPECT_EQ(List({}).size(), 12);
        const CliRun stats = Run({u"stats"_s});
        EXPECT_EQ(stats.exitCode, 0) << stats;
        EXPECT_EQ(Run({u"profiles"_s}).out, u"* Reader\n"_s);
        EXPECT_EQ(Run({u"export"_s, home.filePath(u"held.opml"_s)}).exitCode, 0);
        for (qsizetype i = 0; i < files.size(); ++i) {
            EXPECT_EQ(ReadFile(files[i]), before[i]) << files[i].toStdString();
        }
    }
    const CliRun released = Run({u"show"_s, u"1"_s});
    EXPECT_EQ(released.exitCode, 0) << released;
}

TEST_F(CliEndToEndTest, UsageErrorsExitWithTwo) {
    for (const QStringList& arguments : QList<QStringList>{{},
                                                           {u"frobnicate"_s},
                                                           {u"list"_s, u"--page"_s, u"0"_s},
                                                           {u"list"_s, u"--folder"_s, u"later"_s},
                                                           {u"show"_s},
                                                           {u"fetch"_s, u"--group"_s, u"x"_s}}) {
        const CliRun run = Run(arguments);
        EXPECT_EQ(run.exitCode, 2) << arguments.join(u' ').toStdString() << "\n" << run;
        EXPECT_TRUE(run.err.contains(u"tamsel-cli --help"_s)) << run;
        EXPECT_TRUE(run.out.isEmpty()) << run;
    }
    const CliRun help = Run({u"--help"_s});
    EXPECT_EQ(help.exitCode, 0);
    EXPECT_TRUE(help.out.contains(u"Commands:"_s)) << help;
    const CliRun fetchHelp = Run({u"fetch"_s, u"--help"_s});
    EXPECT_EQ(fetchHelp.exitCode, 0);
    EXPECT_TRUE(fetchHelp.out.contains(u"--force"_s)) << fetchHelp;
    // Help needs no data folder, and asking for it made none.
    EXPECT_FALSE(QFileInfo::exists(GetPaths().ProfilesFolder()));
}

TEST_F(CliEndToEndTest, WithoutAProfileThereIsAClearMessage) {
    const CliRun list = Run({u"list"_s});
    EXPECT_EQ(list.exitCode, 1) << list;
    EXPECT_TRUE(list.err.contains(u"tamsel-cli profile-add NAME"_s)) << list;
    EXPECT_EQ(Run({u"fetch"_s}).exitCode, 1);
    ASSERT_EQ(Run({u"profile-add"_s, kProfile}).exitCode, 0);
    const CliRun twice = Run({u"profile-add"_s, kProfile});
    EXPECT_EQ(twice.exitCode, 1) << twice;
    const CliRun unknown = Run({u"--profile"_s, u"Nobody"_s, u"stats"_s});
    EXPECT_EQ(unknown.exitCode, 1) << unknown;
    EXPECT_TRUE(unknown.err.contains(u"no profile named \"Nobody\""_s)) << unknown;
    const CliRun escaping = Run({u"profile-add"_s, u"../outside"_s});
    EXPECT_EQ(escaping.exitCode, 1) << escaping;
    EXPECT_FALSE(QFileInfo::exists(home.filePath(u"outside"_s)));
    // The new profile has its group and its built-ins, and nothing to fetch.
    const CliRun fetched = Run({u"fetch"_s});
    EXPECT_EQ(fetched.exitCode, 0) << fetched;
    EXPECT_EQ(fetched.out, u"0 channel(s): 0 ok, 0 unchanged, 0 failed; 0 new item(s).\n"_s) << fetched;
    EXPECT_TRUE(ReadFile(ProfileFile(u"groups.xml"_s)).contains("My Channels"));
}

} // namespace
