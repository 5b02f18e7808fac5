// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "feeds/FeedsFixture.h"
#include "groups/clsOPML.h"

#include <QSignalSpy>
#include <QTimer>

using namespace Qt::StringLiterals;

namespace {

// A reader of files (through the real network client) and one of lists the test answers on the
// fake network; both tell the host.
class OpmlTest : public FeedsFixture {
protected:
    OpmlTest() : FeedsFixture(false, Network::Real) {}

    // The title, then "title | url | expire" per entry ("-" for no URL), a line each.
    static QString Entries(const clsOPML& OPML) {
        QString entries = OPML.Title() + u'\n';
        for (int index = 0; index < OPML.GetCount(); ++index) {
            const QString url = OPML.GetURL(index);
            entries += u"%1 | %2 | %3\n"_s.arg(OPML.GetTitle(index), url.isEmpty() ? u"-"_s : url)
                           .arg(OPML.GetExpire(index));
        }
        return entries;
    }

    clsOPML local{clock, *network, host};
    clsOPML OPML{clock, http, host};
    QSignalSpy loaded{&OPML, &clsOPML::FileLoaded};
};

} // namespace

// Each data/*.opml, loaded one after the other into one reader, gives what its .expected file
// lists: members before their folder, at every depth; without a head the path is the title. A
// missing or broken file pops the error and still reports loaded.
TEST_F(OpmlTest, OutlinesBecomeTheEntriesTheExpectedFilesList) {
    QSignalSpy localLoaded(&local, &clsOPML::FileLoaded);
    const QStringList files = DataFiles(u"*.opml"_s);
    ASSERT_GE(files.size(), 3);
    for (const QString& name : files) {
        SCOPED_TRACE(name.toStdString());
        const QString path = QStringLiteral(TAMSEL_TEST_DATA_DIR "/") + name;
        local.LoadOPML(path);
        EXPECT_EQ(Entries(local),
                  QString::fromUtf8(ReadData(name.chopped(5) + u".expected"_s)).replace(u"<path>"_s, path));
    }
    home.Write(u"bad.opml"_s, "<opml><body><outline");
    for (const QString& path : {home.File(u"none.opml"_s), home.File(u"bad.opml"_s)}) {
        local.LoadOPML(path);
        EXPECT_EQ(local.GetCount(), 0);
        EXPECT_EQ(host.Popups().last(), u"Error Reading OPML File !!!\r\n"_s + path);
    }
    EXPECT_EQ(std::pair(localLoaded.count(), host.Popups().size()),
              std::pair(files.size() + 2, qsizetype(2)));
}

// Fake time runs on from inside the reader's wait: first not quite enough, then enough. An
// answer after the time-out, or after the reader's end, reaches nobody. (A list read from a URL
// fills the Spotlight group in the profile's tests.)
TEST_F(OpmlTest, ReadsFromAUrlTimesOutAfter25SecondsAndIgnoresLateAnswers) {
    const QString url = u"http://lists.example.org/list.opml"_s;
    const QByteArray list = ReadData(u"mine.opml"_s);
    QSignalSpy timedOut(&OPML, &clsOPML::FileTimout);
    QTimer::singleShot(0, [&] { clock.Advance(clsOPML::kWaitMs - 1); });
    QTimer::singleShot(50, [&] { clock.Advance(1); });
    OPML.LoadOPML(url);
    EXPECT_EQ(std::tuple(timedOut.count(), loaded.count(), clock.ElapsedMs()),
              std::tuple(qsizetype(1), qsizetype(0), qint64(clsOPML::kWaitMs)));
    EXPECT_FALSE(http.Complete(url, "GET", list)) << "nobody listens any more";
    QCoreApplication::processEvents();
    EXPECT_EQ(OPML.GetCount(), 0);

    auto doomed = std::make_unique<clsOPML>(clock, http, host);
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, [&] {
        if (http.Waiting(url, "GET") > 0) {
            poll.stop();
            doomed.reset();
        }
    });
    poll.start(0);
    doomed->LoadOPML(url);
    EXPECT_EQ(doomed, nullptr) << "the wait ended when the reader went";
    EXPECT_FALSE(http.Complete(url, "GET", list));
}
