// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
// The item bank at size: a synthetic bank (100,000 items over 300 channels by default, about 1 KB
// of text each, half of them read, dated over 60 days) is loaded, queried, merged into and saved,
// and each figure is set beside libxml2 doing the same on a plain document of the same file.
//
// Usage: itembank_benchmark [items]
// Prints one line per figure: name value unit.
#include "BenchReport.h"
#include "itembank/clsItemBank.h"
#include "itembank/modItemHandler.h"
#include "platform/Clock.h"
#include "platform/Memory.h"
#include "platform/XmlDocument.h"
#include "platform/XmlSecurity.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <algorithm>
#include <cctype>
#include <cstdio>
#include <functional>
#include <libxml/parser.h>
#include <libxml/tree.h>
#include <libxml/xpath.h>
#include <random>
#include <unistd.h>
#include <vector>

namespace {

constexpr int kDefaultItems = 100000;
constexpr int kChannels = 300;
constexpr int kDays = 60;
constexpr int kDescriptionBytes = 850;
constexpr int kVocabulary = 3000;
constexpr int kFeedItems = 50;
// XPath lookups are slow at size; their per-item cost is taken over the first few items.
constexpr size_t kXPathFeedItems = 10;
constexpr int kLoadRuns = 2;
// About one item in twenty holds the searched word.
constexpr int kSearchWordOdds = 3000;
constexpr unsigned kBankSeed = 20261116u;
constexpr unsigned kFeedSeed = 7u;
constexpr double kBytesPerMb = 1024.0 * 1024.0;
const QDate kToday(2026, 11, 16);
const QString kProfile = QStringLiteral("Bench");
const QString kSearchWord = QStringLiteral("storm");
const QString kUnread = QStringLiteral("_tamsel/unread");
const QString kRead = QStringLiteral("_tamsel/read");
const QString kTodayKey = QStringLiteral("_tamsel/today");
const char* const kAlphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZ";
const char* const kLowerAlphabet = "abcdefghijklmnopqrstuvwxyz";
constexpr int kParseFlags = XML_PARSE_NOBLANKS | XML_PARSE_NOCDATA | XML_PARSE_NONET | XML_PARSE_NOENT |
                            XML_PARSE_NOERROR | XML_PARSE_NOWARNING;

// The bench's "now": a fixed Monday noon, so that the folders hold the same items every run.
class FixedClock final : public Clock {
public:
    quint32 TickCount() const override { return m_system.TickCount(); }
    QDateTime Now() const override { return QDateTime(kToday, QTime(12, 0)); }
    std::unique_ptr<TimerSource> CreateTimer() override { return m_system.CreateTimer(); }

private:
    SystemClock m_system;
};

// ---- The synthetic bank

class Generator {
public:
    explicit Generator(unsigned seed) : m_random(seed) {
        const char* syllables[] = {"ka", "to", "ri", "ne", "sa", "lo", "mi", "da", "ve", "po",
                                   "lu", "ge", "ta", "re", "bo", "fi", "an", "el", "or", "un",
                                   "ch", "st", "pr", "th", "wa", "qu", "ex", "ho"};
        for (int n = 0; n < kVocabulary; ++n) {
            QByteArray word;
            for (int parts = 1 + Roll(3); parts > 0; --parts) {
                word += syllables[Roll(int(std::size(syllables)))];
            }
            m_words.push_back(word);
        }
    }

    int Roll(int count) { return int(m_random() % unsigned(count)); }

    // Frequent words come up far more often than rare ones, as in real text.
    const QByteArray& Word() {
        const double u = double(m_random()) / double(std::mt19937::max());
        return m_words[size_t(double(kVocabulary - 1) * u * u * u)];
    }

    QByteArray Words(int bytes) {
        QByteArray text;
        while (text.size() < bytes) {
            text += Roll(kSearchWordOdds) == 0 ? kSearchWord.toUtf8() : Word();
            text += Roll(12) == 0 ? ". " : " ";
        }
        return text.trimmed();
    }

    static QByteArray Channel(int channel) {
        return QByteArrayLiteral("http://feeds.example/channel-") + QByteArray::number(channel) + "/rss";
    }

    QByteArray Item(int index, int channel, const QDate& date, const char* read, const char* flag,
                    const char* deleted) {
        QByteArray title = Words(60);
        title[0] = char(std::toupper(title[0]));
        QByteArray item = "<item channel=\"" + Channel(channel) + "\" date=\"" +
                          FormatItemDate(date).toUtf8() + "\" time=\"" + QByteArray::number(10 + index % 12) +
                          ":" + QByteArray::number(10 + index % 50) + ":00\">";
        item += "<title>" + title + "</title>";
        item += "<link>http://feeds.example/channel-" + QByteArray::number(channel) + "/story/" +
                QByteArray::number(index) + "</link>";
        item += "<description>" + Words(kDescriptionBytes) + "</description>";
        item +=
            "<guid>urn:bench:" + QByteArray::number(channel) + ":" + QByteArray::number(index) + "</guid>";
        item += "<pubDate>" + QLocale::c().toString(date, QStringLiteral("ddd, dd MMM yyyy")).toUtf8() +
                " 12:00:00 GMT</pubDate>";
        item += "<category>" + Word() + "</category>";
        item +=
            QByteArray("<read>") + read + "</read><flag>" + flag + "</flag><delete>" + deleted + "</delete>";
        item += "<channeltitle>Channel " + QByteArray::number(channel) + " News</channeltitle></item>";
        return item;
    }

    QByteArray Bank(int items) {
        QByteArray bank = "<itembank>";
        bank.reserve(qsizetype(items) * 1300);
        for (int index = 0; index < items; ++index) {
            // Stored oldest first, as channels deliver them.
            const QDate date = kToday.addDays(-(kDays - 1) + qint64(index) * kDays / items);
            const bool read = Roll(2) == 0;
            bank += Item(index, Roll(kChannels), date, read ? "true" : "false",
                         Roll(50) == 0 ? "true" : "false", Roll(50) == 0 ? "true" : "false");
        }
        return bank + "</itembank>\n";
    }

private:
    std::mt19937 m_random;
    std::vector<QByteArray> m_words;
};

// ---- Plain libxml2

// The file read and parsed as XmlDocument::Load does, with nothing built beside the tree. (The
// program's entity loader refuses to open documents by name, so the bytes are read here.)
QByteArray ReadAll(const QString& file) {
    QFile in(file);
    return in.open(QIODevice::ReadOnly) ? in.readAll() : QByteArray();
}

struct PlainDocument {
    explicit PlainDocument(const QString& file) {
        const QByteArray bytes = ReadAll(file);
        doc = xmlReadMemory(bytes.constData(), int(bytes.size()), nullptr, nullptr, kParseFlags);
    }
    ~PlainDocument() { xmlFreeDoc(doc); }
    PlainDocument(const PlainDocument&) = delete;
    PlainDocument& operator=(const PlainDocument&) = delete;

    // Evaluates the expression on the root element; the number of nodes selected.
    int Select(const QString& xpath) const {
        xmlXPathContext* context = xmlXPathNewContext(doc);
        context->node = xmlDocGetRootElement(doc);
        xmlXPathObject* result =
            xmlXPathEvalExpression(reinterpret_cast<const xmlChar*>(xpath.toUtf8().constData()), context);
        const int count = result && result->nodesetval ? result->nodesetval->nodeNr : -1;
        xmlXPathFreeObject(result);
        xmlXPathFreeContext(context);
        return count;
    }

    xmlDoc* doc = nullptr;
};

QString SearchXPath(const QString& search, const QString& state) {
    return QStringLiteral("item[contains(translate(., '%1', '%2'),'%3') and read='%4' and delete='false']")
        .arg(QString::fromLatin1(kAlphabet), QString::fromLatin1(kLowerAlphabet), search, state);
}

// ---- Child processes: one load each, measured from a clean start

int MeasureLoad(const QString& what, const QString& path) {
    XmlSecurity::Install();
    Memory::TrimWorkingSet();
    const qint64 before = Memory::ResidentBytes();
    QElapsedTimer timer;
    timer.start();
    double ms = 0;
    int items = 0;
    FixedClock clock;
    std::unique_ptr<clsItemBank> bank;
    std::unique_ptr<PlainDocument> plain;
    if (what == QLatin1String("bank")) {
        bank = std::make_unique<clsItemBank>(clock, Paths(path, path, path));
        bank->init(kProfile);
        ms = Ms(timer);
        items = bank->Count();
    } else {
        plain = std::make_unique<PlainDocument>(path);
        ms = Ms(timer);
        items = plain->doc ? int(xmlChildElementCount(xmlDocGetRootElement(plain->doc))) : -1;
    }
    Memory::TrimWorkingSet();
    const qint64 after = Memory::ResidentBytes();
    std::printf("%.3f %lld %d\n", ms, static_cast<long long>(after - before), items);
    std::fflush(stdout);
    // Leave without saving the bank or freeing the tree: only the load is measured.
    _exit(0);
}

struct LoadFigures {
    double ms = 1e300;
    double rssBytes = 0;
};

LoadFigures MeasureInChildren(const QString& what, const QString& path) {
    LoadFigures figures;
    for (int run = 0; run < kLoadRuns; ++run) {
        QProcess child;
        child.start(QCoreApplication::applicationFilePath(), {QStringLiteral("--load"), what, path});
        child.waitForFinished(-1);
        const QList<QByteArray> fields = child.readAllStandardOutput().trimmed().split(' ');
        if (fields.size() != 3) {
            std::fprintf(stderr, "the %s load failed\n", qPrintable(what));
            return figures;
        }
        figures.ms = std::min(figures.ms, fields[0].toDouble());
        figures.rssBytes = fields[1].toDouble();
    }
    return figures;
}

void PrintComparison(const char* name, double bankMs, double xpathMs) {
    Print(name, bankMs, "ms");
    const QByteArray stem = QByteArray(name).chopped(3);
    Print(QByteArray(stem + "_xpath_ms").constData(), xpathMs, "ms");
    Print(QByteArray(stem + "_speedup").constData(), bankMs > 0 ? xpathMs / bankMs : 0, "x");
}

int Run(int itemCount) {
    XmlSecurity::Install();
    QTemporaryDir home;
    const QString folder = home.path() + QStringLiteral("/profiles/") + kProfile;
    QDir().mkpath(folder);
    const QString file = folder + QStringLiteral("/items.xml");
    {
        Generator generator(kBankSeed);
        QFile out(file);
        if (!out.open(QIODevice::WriteOnly) || out.write(generator.Bank(itemCount)) < 0) {
            std::fprintf(stderr, "cannot write %s\n", qPrintable(file));
            return 1;
        }
    }
    Print("bank_items", itemCount, "items");
    Print("bank_file_mb", double(QFile(file).size()) / kBytesPerMb, "MB");

    // Loads and their memory, each in a fresh process.
    const LoadFigures bankLoad = MeasureInChildren(QStringLiteral("bank"), home.path());
    const LoadFigures plainLoad = MeasureInChildren(QStringLiteral("dom"), file);
    Print("bank_load_ms", bankLoad.ms, "ms");
    Print("xml_parse_ms", plainLoad.ms, "ms");
    Print("bank_load_ratio", bankLoad.ms / plainLoad.ms, "x");
    Print("bank_rss_mb", bankLoad.rssBytes / kBytesPerMb, "MB");
    Print("xml_dom_rss_mb", plainLoad.rssBytes / kBytesPerMb, "MB");
    Print("bank_rss_ratio", bankLoad.rssBytes / plainLoad.rssBytes, "x");

    FixedClock clock;
    clsItemBank bank(clock, Paths(home.path(), home.path(), home.path()));
    bank.init(kProfile);
    const PlainDocument plain(file);
    const int xpathRuns = itemCount > 20000 ? 3 : 11;

    // One channel's list, as every channel's count and viewer asks for it.
    std::vector<QString> channels;
    for (int channel = 0; channel < kChannels; channel += kChannels / 30) {
        channels.push_back(QString::fromUtf8(Generator::Channel(channel)));
    }
    size_t next = 0;
    const double channelMs = TimeMs(int(channels.size()) * 10, [&] {
        bank.SubChannelList(channels[next++ % channels.size()], QString(), QString());
    });
    next = 0;
    const double channelXPathMs = TimeMs(xpathRuns, [&] {
        plain.Select(
            QStringLiteral("item[@channel='%1' and delete='false']").arg(channels[next++ % channels.size()]));
    });
    PrintComparison("channel_list_ms", channelMs, channelXPathMs);

    PrintComparison(
        "unread_folder_ms", TimeMs(21, [&] { bank.SubChannelList(kUnread, QString(), QString()); }),
        TimeMs(xpathRuns, [&] { plain.Select(QStringLiteral("item[read='false' and delete='false']")); }));
    const QString today = FormatItemDate(kToday);
    PrintComparison(
        "today_folder_ms", TimeMs(21, [&] { bank.SubChannelList(kTodayKey, QString(), QString()); }),
        TimeMs(xpathRuns, [&] {
            plain.Select(QStringLiteral("item[@date='%1' and delete='false' and delete='false']").arg(today));
        }));

    // The main window's full recount: every channel's set and unread count, and the folders.
    std::vector<QString> allChannels;
    for (int channel = 0; channel < kChannels; ++channel) {
        allChannels.push_back(QString::fromUtf8(Generator::Channel(channel)));
    }
    Print("recount_all_ms",
          TimeMs(5,
                 [&] {
                     for (const QString& channel : allChannels) {
                         bank.SubChannelList(channel, QString(), QString());
                         bank.SubChannelList(channel, kUnread, QString());
                     }
                     for (const char* folder :
                          {"today", "yesterday", "week", "flagged", "deleted", "unread", "read"}) {
                         bank.SubChannelList(QStringLiteral("_tamsel/") + QString::fromLatin1(folder),
                                             QString(), QString());
                     }
                 }),
          "ms");

    // Typing a word into the search box of a view of all items: the Unread and the Read folder
    // together hold every item that is not deleted, so each keystroke searches both.
    std::vector<double> keystrokes;
    std::vector<double> keystrokesXPath;
    int found = 0;
    for (qsizetype length = 1; length <= kSearchWord.size(); ++length) {
        const QString typed = kSearchWord.left(length);
        QElapsedTimer timer;
        timer.start();
        found = int(bank.SubChannelList(kUnread, QString(), typed).size() +
                    bank.SubChannelList(kRead, QString(), typed).size());
        keystrokes.push_back(Ms(timer));
        timer.restart();
        plain.Select(SearchXPath(typed, QStringLiteral("false")));
        plain.Select(SearchXPath(typed, QStringLiteral("true")));
        keystrokesXPath.push_back(Ms(timer));
    }
    for (size_t n = 0; n < keystrokes.size(); ++n) {
        Print(QByteArray("search_keystroke_" + QByteArray::number(qulonglong(n + 1)) + "_ms").constData(),
              keystrokes[n], "ms");
    }
    PrintComparison("search_keystroke_ms", Median(keystrokes), Median(keystrokesXPath));
    Print("search_found_items", found, "items");
    // Without an earlier keystroke to build on (after a change in the bank): the whole word, and
    // a letter that most items contain, over all items.
    const ItemList some = bank.SubChannelList(kTodayKey, QString(), QString());
    const auto touch = [&] { SetItemRead(some.front(), IsItemRead(some.front())); };
    Print("search_cold_word_ms",
          TimeMs(5,
                 [&] {
                     touch();
                     bank.SubChannelList(kUnread, QString(), kSearchWord);
                     bank.SubChannelList(kRead, QString(), kSearchWord);
                 }),
          "ms");
    Print("search_cold_letter_ms",
          TimeMs(5,
                 [&] {
                     touch();
                     bank.SubChannelList(kUnread, QString(), QStringLiteral("q"));
                     bank.SubChannelList(kRead, QString(), QStringLiteral("q"));
                 }),
          "ms");

    // Merging a 50-item feed: once with items the bank holds, once with new ones.
    const ItemList stored = bank.SubChannelList(channels.front(), QString(), QString());
    XmlDocument feed;
    feed.SetDocumentElement(feed.CreateElement(QStringLiteral("channel")));
    std::vector<XmlNode> duplicates;
    for (size_t n = 0; n < stored.size() && duplicates.size() < size_t(kFeedItems); ++n) {
        duplicates.push_back(feed.DocumentElement().AppendChild(feed.ImportNode(stored[n])));
    }
    QElapsedTimer timer;
    timer.start();
    int changed = 0;
    for (const XmlNode& item : duplicates) {
        changed += bank.AddItem(item) ? 1 : 0;
    }
    const double dupUs = Ms(timer) * 1000.0 / double(duplicates.size());
    // The lookups that the rules make, as XPath: one guid query for a stored item.
    timer.restart();
    for (size_t n = 0; n < kXPathFeedItems; ++n) {
        plain.Select(
            QStringLiteral("item[guid=\"%1\"]").arg(GetChildText(duplicates[n], QStringLiteral("guid"))));
    }
    const double dupXPathUs = Ms(timer) * 1000.0 / double(kXPathFeedItems);
    Print("additem_dup_us", dupUs, "us");
    Print("additem_dup_xpath_us", dupXPathUs, "us");
    Print("additem_dup_speedup", dupXPathUs / dupUs, "x");

    Generator fresh(kFeedSeed);
    const QString freshXml = QStringLiteral("<channel>") + QString::fromUtf8([&] {
                                 QByteArray items;
                                 for (int n = 0; n < kFeedItems; ++n) {
                                     items += fresh.Item(itemCount + n, 7, kToday, "false", "false", "false");
                                 }
                                 return items;
                             }()) +
                             QStringLiteral("</channel>");
    const XmlDocument freshFeed = XmlDocument::Parse(freshXml.toUtf8());
    const std::vector<XmlNode> freshItems = freshFeed.DocumentElement().ChildNodes();
    timer.restart();
    for (const XmlNode& item : freshItems) {
        changed += bank.AddItem(item) ? 1 : 0;
    }
    const double newUs = Ms(timer) * 1000.0 / double(freshItems.size());
    // A new item costs a guid query and a title query, both finding nothing.
    timer.restart();
    for (size_t n = 0; n < kXPathFeedItems; ++n) {
        plain.Select(
            QStringLiteral("item[guid=\"%1\"]").arg(GetChildText(freshItems[n], QStringLiteral("guid"))));
        plain.Select(QStringLiteral("item[title=\"%1\"]").arg(GetItemTitle(freshItems[n])));
    }
    const double newXPathUs = Ms(timer) * 1000.0 / double(kXPathFeedItems);
    Print("additem_new_us", newUs, "us");
    Print("additem_new_xpath_us", newXPathUs, "us");
    Print("additem_new_speedup", newXPathUs / newUs, "x");
    Print("additem_changed_items", changed, "items");

    timer.restart();
    const bool saved = bank.Release();
    Print("bank_save_ms", Ms(timer), "ms");
    return saved ? 0 : 1;
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    const QStringList args = app.arguments();
    if (args.size() == 4 && args[1] == QLatin1String("--load")) {
        return MeasureLoad(args[2], args[3]);
    }
    const int items = args.size() > 1 ? args[1].toInt() : kDefaultItems;
    if (items <= 0) {
        std::fprintf(stderr, "usage: %s [items]\n", argv[0]);
        return 2;
    }
    return Run(items);
}
