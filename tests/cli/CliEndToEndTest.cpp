// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
// The built tamsel-cli, run as a user runs it: in its own process, under a temporary TAMSEL_HOME,
// against feeds served by a local HTTP server. The test serves the event loop while the program
// runs, so that the server can answer. Each session is a script in data/ (see Play).
#include "platform/CRegSettings.h"
#include "platform/SingleInstance.h"
#include "support/CliProcess.h"
#include "support/DataRows.h"
#include "support/LocalHttpServer.h"
#include "support/QStringPrinter.h"
#include "support/StoryFeed.h"
#include "support/TestHome.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonObject>
#include <QProcess>
#include <csignal>
#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <sys/resource.h>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr int kFeeds = 6;

// Feed N, whose stories say hello in HTML with a relative link.
QByteArray Feed(int feed, int items) {
    return StoryFeed(feed, items,
                     "&lt;p&gt;Hello from &lt;b&gt;feed " + QByteArray::number(feed) +
                         "&lt;/b&gt; &lt;a href=\"/more\"&gt;more&lt;/a&gt;&lt;/p&gt;");
}

// One server for the suite, and one home subscribed to its six feeds that each session that
// starts "subscribed" copies: the import and the first fetch run once.
class CliEndToEndTest : public ::testing::TestWithParam<const char*> {
protected:
    static void SetUpTestSuite() {
        s_server = std::make_unique<LocalHttpServer>();
        s_subscribed = std::make_unique<TestHome>();
        // The maker's site is this server: its (empty) Spotlight list subscribes to nothing.
        s_server->ServeXml(u"/tamsel/spotlight.xml"_s, "<opml><body/></opml>",
                           "Mon, 16 Nov 2026 09:00:00 GMT");
        ServeFeeds();
        Prepare(*s_subscribed);
        const QString home = s_subscribed->Path();
        RunIn(home, {u"profile-add"_s, u"Reader"_s});
        RunIn(home, {u"import"_s, home + u"/in.opml"_s});
        s_fetched = RunIn(home, {u"fetch"_s});
    }
    static void TearDownTestSuite() {
        s_subscribed.reset();
        s_server.reset();
    }
    void SetUp() override {
        Prepare(home);
        ServeFeeds();
    }

    // Points `home` at the server as the maker's site and writes data/in.opml there: the six feeds
    // and one address that is no feed's.
    static void Prepare(const TestHome& home) {
        CRegSettings(home.GetPaths())
            .SaveSetting(u"Common"_s, u"MakerSite"_s, s_server->Url(QString()).toString());
        const QString opml = QString::fromUtf8(ReadFile(QStringLiteral(TAMSEL_TEST_DATA_DIR "/in.opml")));
        home.Write(u"in.opml"_s, Expanded(opml, home.Path()).toUtf8());
    }
    // The text with $FEED1 to $FEED6, $SERVER and $HOME replaced (see Play).
    static QString Expanded(QString text, const QString& home) {
        for (int feed = 1; feed <= kFeeds; ++feed) {
            text.replace(u"$FEED%1"_s.arg(feed), s_server->Url(u"/feed%1"_s.arg(feed)).toString());
        }
        return text.replace(u"$SERVER"_s, s_server->Url(QString()).toString()).replace(u"$HOME"_s, home);
    }
    static void ServeFeeds() {
        for (int feed = 1; feed <= kFeeds; ++feed) {
            s_server->ServeXml(u"/feed"_s + QString::number(feed), Feed(feed, 2),
                               "Mon, 16 Nov 2026 08:00:00 GMT");
        }
    }

    // Runs the session data/<name> in this test's home. Its lines:
    //   subscribed         the home starts as the profile "Reader" subscribed to the six feeds
    //   $ ARGS             runs tamsel-cli with ARGS (split and quoted as a shell does); it must
    //                      exit with 0 unless the next line is "exit N"
    //   out is TEXT        the whole standard output is TEXT ("\n" is a line end; nothing after
    //                      "is" means empty); "starts", "ends", "has", "lacks" and "each" (every
    //                      line has it) compare parts of it
    //   err has TEXT       the same checks on the error output; "/PATH has TEXT" on a file
    //   lines N            the standard output has N non-empty lines (a --json list has N items)
    //   json N KEY TEXT    the Nth object of a --json list has KEY with the value TEXT
    //   requests TEXT      the run asked the server for feeds so, sorted ("GET /feed1, HEAD ...")
    //   feed PATH N ITEMS  the server serves feed N with ITEMS items at PATH, modified later
    //   route PATH TYPE X  the server answers PATH with the body X of the content type TYPE, or
    //                      closes the connection without an answer when TYPE is "reset"
    //   limit BYTES        the next run may write no file larger than BYTES, as on a full disk
    //   write PATH TEXT    writes TEXT into the file PATH
    //   cut PATH           cuts the file PATH off inside its last item
    //   keep PATH...       remembers these files (only these); "same" checks that they did not change
    //   absent PATH        no such file or folder
    //   tamsel runs        Tamsel holds the data folder until "tamsel ends"
    //   # ...              a comment
    // $FEED1 to $FEED6 are the six feeds ("Feed N", items "Story N.1" and "Story N.2"), $SERVER is
    // the server and $HOME the test's home.
    void Play(const QString& name) {
        const QString file = QStringLiteral(TAMSEL_TEST_DATA_DIR "/") + name;
        const std::string path = file.toStdString();
        const QString script = QString::fromUtf8(ReadFile(file));
        ASSERT_FALSE(script.isEmpty()) << path;
        const QStringList lines = Expanded(script, home.Path()).split(u'\n');
        CliRun run;
        std::optional<testing::ScopedTrace> trace;
        std::function<void()> inChild;
        QHash<QString, QByteArray> kept;
        std::optional<SingleInstance> tamsel;
        for (qsizetype at = 0; at < lines.size(); ++at) {
            const QString& line = lines[at];
            const QString word = line.section(u' ', 0, 0);
            const QString rest = line.section(u' ', 1);
            if (word.isEmpty() || word == u"#" || word == u"exit") {
                continue;
            }
            if (word == u"$") {
                trace.emplace(path.c_str(), int(at + 1), line.toStdString());
                s_server->ClearRequests();
                run = RunIn(home.Path(), QProcess::splitCommand(rest), {}, std::exchange(inChild, {}));
                const QString next = lines.value(at + 1);
                EXPECT_EQ(run.exitCode, next.startsWith(u"exit "_s) ? next.mid(5).toInt() : 0) << run;
            } else if (word == u"subscribed") {
                ASSERT_EQ(s_fetched.exitCode, 0) << s_fetched;
                CopyFolder(s_subscribed->Path(), home.Path());
            } else if (word == u"feed") {
                s_server->ServeXml(line.section(u' ', 1, 1),
                                   Feed(line.section(u' ', 2, 2).toInt(), line.section(u' ', 3).toInt()),
                                   "Mon, 16 Nov 2026 10:00:00 GMT");
            } else if (word == u"route") {
                const QString type = line.section(u' ', 2, 2);
                s_server->Serve(line.section(u' ', 1, 1), {.body = line.section(u' ', 3).toUtf8(),
                                                           .headers = {{"Content-Type", type.toUtf8()}},
                                                           .reset = type == u"reset"});
            } else if (word == u"limit") {
                inChild = [limit = rlim_t(rest.toLongLong())] {
                    std::signal(SIGXFSZ, SIG_IGN);
                    const rlimit small{limit, limit};
                    setrlimit(RLIMIT_FSIZE, &small);
                };
            } else if (word == u"keep") {
                kept.clear();
                for (const QString& name : rest.split(u' ')) {
                    kept.insert(name, ReadFile(name));
                    EXPECT_FALSE(kept.value(name).isEmpty()) << name.toStdString();
                }
            } else if (word == u"same") {
                for (auto it = kept.cbegin(); it != kept.cend(); ++it) {
                    EXPECT_EQ(ReadFile(it.key()), it.value()) << it.key().toStdString();
                }
            } else if (word == u"write") {
                QFile written(line.section(u' ', 1, 1));
                EXPECT_TRUE(written.open(QIODevice::WriteOnly) &&
                            written.write(line.section(u' ', 2).toUtf8()) >= 0);
            } else if (word == u"cut") {
                const QByteArray whole = ReadFile(rest);
                QFile cut(rest);
                EXPECT_TRUE(cut.open(QIODevice::WriteOnly) &&
                            cut.write(whole.left(whole.lastIndexOf("<item") + 40)) > 0);
            } else if (word == u"absent") {
                EXPECT_FALSE(QFileInfo::exists(rest)) << rest.toStdString();
            } else if (line == u"tamsel runs") {
                tamsel.emplace(home.Path());
                ASSERT_EQ(tamsel->Acquire(), SingleInstance::Result::Acquired);
            } else if (line == u"tamsel ends") {
                tamsel.reset();
            } else if (word == u"requests") {
                QStringList requests = s_server->Requests().filter(u" /feed"_s);
                requests.sort();
                EXPECT_EQ(requests.join(u", "_s), rest);
            } else if (word == u"lines") {
                EXPECT_EQ(run.Lines().size(), rest.toInt()) << run;
            } else if (word == u"json") {
                const QJsonObject object = run.Objects().value(line.section(u' ', 1, 1).toInt() - 1);
                const QString value = object.value(line.section(u' ', 2, 2)).toVariant().toString();
                EXPECT_EQ(value, line.section(u' ', 3)) << run;
            } else {
                const QString how = line.section(u' ', 1, 1);
                const QString text = line.section(u' ', 2).replace(u"\\n"_s, u"\n"_s);
                const QString actual =
                    word == u"out" ? run.out : (word == u"err" ? run.err : QString::fromUtf8(ReadFile(word)));
                const QStringList lines = actual.split(u'\n', Qt::SkipEmptyParts);
                const bool holds = how == u"is"       ? actual == text
                                   : how == u"starts" ? actual.startsWith(text)
                                   : how == u"ends"   ? actual.endsWith(text)
                                   : how == u"has"    ? actual.contains(text)
                                   : how == u"lacks"  ? !actual.contains(text)
                                   : how == u"each"
                                       ? !lines.isEmpty() && lines.filter(text).size() == lines.size()
                                       : false;
                EXPECT_TRUE((word == u"out" || word == u"err" || word.startsWith(u'/')) && holds)
                    << "step: " << line.toStdString() << "\ngot: " << actual.toStdString();
            }
        }
    }

    static inline std::unique_ptr<LocalHttpServer> s_server;
    static inline std::unique_ptr<TestHome> s_subscribed;
    static inline CliRun s_fetched;
    TestHome home;
};

TEST_P(CliEndToEndTest, RunsAsItsScriptSays) {
    Play(QString::fromLatin1(GetParam()) + u".txt"_s);
}

// One session for each way the user goes.
INSTANTIATE_TEST_SUITE_P(Sessions, CliEndToEndTest,
                         testing::Values("subscribe", "lists", "item-commands", "numbers", "refused-fetch",
                                         "unchanged-feeds", "failed-feeds", "pages", "add-from-page",
                                         "export", "while-tamsel-runs", "usage", "no-profile",
                                         "damaged-items", "numbers-follow-items"),
                         [](const testing::TestParamInfo<const char*>& info) {
                             return QString::fromLatin1(info.param).replace(u'-', u'_').toStdString();
                         });

} // namespace
