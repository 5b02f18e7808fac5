// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/CRegSettings.h"

#include "platform/AtomicFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTextStream>
#include <algorithm>

namespace {

const QString kAutostartCompany = QStringLiteral("Microsoft");
const QString kAutostartApp = QStringLiteral("Windows");
const QString kAutostartSection = QStringLiteral("CurrentVersion\\Run");

// Backslash escapes keep every text on one line and section and key delimiters unambiguous.
QString Escape(const QString& text, const QString& specials) {
    QString out;
    out.reserve(text.size());
    for (const QChar c : text) {
        if (c == u'\\') {
            out += QStringLiteral("\\\\");
        } else if (c == u'\n') {
            out += QStringLiteral("\\n");
        } else if (c == u'\r') {
            out += QStringLiteral("\\r");
        } else {
            if (specials.contains(c)) {
                out += u'\\';
            }
            out += c;
        }
    }
    return out;
}

QString Unescape(QStringView text) {
    QString out;
    out.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i] == u'\\' && i + 1 < text.size()) {
            const QChar next = text[++i];
            out += next == u'n' ? QChar(u'\n') : next == u'r' ? QChar(u'\r') : next;
        } else {
            out += text[i];
        }
    }
    return out;
}

// The position of the first `delimiter` not escaped by a backslash, or -1.
qsizetype FindUnescaped(QStringView text, QChar delimiter) {
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i] == u'\\') {
            ++i;
        } else if (text[i] == delimiter) {
            return i;
        }
    }
    return -1;
}

bool SameName(const QString& a, const QString& b) {
    return a.compare(b, Qt::CaseInsensitive) == 0;
}

// The program as the Exec= value of a desktop entry: `%` doubled, the path quoted when the
// launcher would split or expand it, then escaped as every desktop-entry text is.
QString ExecValue(const QString& program) {
    constexpr QStringView kReserved = u" \t\n\"'\\><~|&;$*?#()`";
    constexpr QStringView kEscapedInQuotes = u"\"`$\\";
    QString exec = program;
    exec.replace(u'%', QStringLiteral("%%"));
    if (std::any_of(exec.cbegin(), exec.cend(), [&](QChar c) { return kReserved.contains(c); })) {
        QString quoted = QStringLiteral("\"");
        for (const QChar c : std::as_const(exec)) {
            if (kEscapedInQuotes.contains(c)) {
                quoted += u'\\';
            }
            quoted += c;
        }
        exec = quoted + u'"';
    }
    return Escape(exec, {});
}

QString ExecProgram(QStringView value) {
    QString exec = Unescape(value);
    if (exec.size() >= 2 && exec.startsWith(u'"') && exec.endsWith(u'"')) {
        exec = Unescape(QStringView(exec).sliced(1, exec.size() - 2));
    }
    return exec.replace(QStringLiteral("%%"), QStringLiteral("%"));
}

} // namespace

CRegSettings::CRegSettings(Paths paths) : m_paths(std::move(paths)) {}

bool CRegSettings::ToBool(const QString& text) {
    const QString trimmed = text.trimmed();
    if (SameName(trimmed, QStringLiteral("true"))) {
        return true;
    }
    bool numeric = false;
    const double number = trimmed.toDouble(&numeric);
    return numeric && number != 0.0;
}

QString CRegSettings::FromBool(bool value) {
    return value ? QStringLiteral("True") : QStringLiteral("False");
}

bool CRegSettings::IsAutostart(const QString& section) const {
    return SameName(m_company, kAutostartCompany) && SameName(m_appName, kAutostartApp) &&
           SameName(section, kAutostartSection);
}

QString CRegSettings::AutostartFile(const QString& key) const {
    return m_paths.AutostartFolder() + u'/' + key.toLower() + QStringLiteral(".desktop");
}

CRegSettings::Store& CRegSettings::CurrentStore() {
    const QString path = m_paths.SettingsFile(m_company, m_appName);
    for (Store& store : m_stores) {
        if (store.path == path) {
            Reload(store);
            return store;
        }
    }
    m_stores.append(Store{path, {}, {}, -1, false, {}});
    Reload(m_stores.last());
    return m_stores.last();
}

void CRegSettings::Reload(Store& store) {
    const QFileInfo info(store.path);
    const qint64 size = info.exists() ? info.size() : -1;
    const QDateTime stamp = info.exists() ? info.lastModified() : QDateTime();
    if (size == store.size && stamp == store.stamp) {
        return;
    }
    store.sections.clear();
    store.damaged = false;
    store.size = size;
    store.stamp = stamp;
    QFile file(store.path);
    if (file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        Parse(file, store);
    }
    for (const Change& change : std::as_const(store.pending)) {
        Apply(store, change);
    }
}

void CRegSettings::Parse(QFile& file, Store& store) {
    QTextStream in(&file);
    in.setEncoding(QStringConverter::Utf8);
    Section* current = nullptr;
    while (!in.atEnd()) {
        const QString line = in.readLine();
        const QStringView trimmed = QStringView(line).trimmed();
        if (trimmed.isEmpty() || trimmed.startsWith(u'#') || trimmed.startsWith(u';')) {
            continue;
        }
        if (trimmed.startsWith(u'[') && trimmed.endsWith(u']')) {
            const QString name = Unescape(trimmed.mid(1, trimmed.size() - 2));
            current = FindSection(store, name);
            if (!current) {
                store.sections.append(Section{name, {}});
                current = &store.sections.last();
            }
            continue;
        }
        const qsizetype equals = FindUnescaped(line, u'=');
        if (equals < 0 || !current) {
            store.damaged = true;
            continue;
        }
        current->entries.append(
            Entry{Unescape(QStringView(line).left(equals)), Unescape(QStringView(line).mid(equals + 1))});
    }
}

CRegSettings::Section* CRegSettings::FindSection(Store& store, const QString& name) {
    for (Section& section : store.sections) {
        if (SameName(section.name, name)) {
            return &section;
        }
    }
    return nullptr;
}

bool CRegSettings::Write(Store& store) {
    if (!QDir().mkpath(QFileInfo(store.path).absolutePath())) {
        return false;
    }
    if (store.damaged) {
        // A file we could not fully read is kept aside rather than overwritten.
        const QString aside = store.path + QStringLiteral(".damaged-") +
                              QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-HHmmss"));
        QFile::rename(store.path, aside);
        store.damaged = false;
    }
    QByteArray bytes;
    for (const Section& section : store.sections) {
        bytes += '[' + Escape(section.name, QStringLiteral("]")).toUtf8() + "]\n";
        for (const Entry& entry : section.entries) {
            bytes += Escape(entry.key, QStringLiteral("=[#;")).toUtf8() + '=' +
                     Escape(entry.value, {}).toUtf8() + '\n';
        }
    }
    if (!AtomicFile::Write(store.path, bytes)) {
        return false;
    }
    const QFileInfo info(store.path);
    store.size = info.size();
    store.stamp = info.lastModified();
    store.pending.clear();
    return true;
}

bool CRegSettings::Apply(Store& store, const Change& change) {
    if (change.remove && change.key.isEmpty()) {
        const QString prefix = change.section + u'\\';
        return store.sections.removeIf([&](const Section& s) {
            return SameName(s.name, change.section) || s.name.startsWith(prefix, Qt::CaseInsensitive);
        }) > 0;
    }
    Section* target = FindSection(store, change.section);
    if (change.remove) {
        return target &&
               target->entries.removeIf([&](const Entry& e) { return SameName(e.key, change.key); }) > 0;
    }
    if (!target) {
        store.sections.append(Section{change.section, {}});
        target = &store.sections.last();
    }
    for (Entry& entry : target->entries) {
        if (SameName(entry.key, change.key)) {
            entry.value = change.value;
            return true;
        }
    }
    target->entries.append(Entry{change.key, change.value});
    return true;
}

bool CRegSettings::Commit(Store& store, Change change) {
    store.pending.append(std::move(change));
    return m_deferDepth > 0 || Write(store);
}

bool CRegSettings::EndDeferred() {
    if (--m_deferDepth > 0) {
        return true;
    }
    bool written = true;
    for (Store& store : m_stores) {
        if (!store.pending.isEmpty()) {
            Reload(store);
            written = Write(store) && written;
        }
    }
    return written;
}

CRegSettings::DeferredWrites::DeferredWrites(CRegSettings& settings) : m_settings(settings) {
    ++m_settings.m_deferDepth;
}

CRegSettings::DeferredWrites::~DeferredWrites() {
    End();
}

bool CRegSettings::DeferredWrites::End() {
    if (m_ended) {
        return true;
    }
    m_ended = true;
    return m_settings.EndDeferred();
}

QString CRegSettings::GetSetting(const QString& section, const QString& key, const QString& defaultValue) {
    if (IsAutostart(section)) {
        QFile file(AutostartFile(key));
        if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
            return defaultValue;
        }
        while (!file.atEnd()) {
            const QString line = QString::fromUtf8(file.readLine()).trimmed();
            if (line.startsWith(QStringLiteral("Exec="))) {
                const QString value = ExecProgram(QStringView(line).mid(5));
                return value.isEmpty() ? defaultValue : value;
            }
        }
        return defaultValue;
    }
    Store& store = CurrentStore();
    if (Section* found = FindSection(store, section)) {
        for (const Entry& entry : std::as_const(found->entries)) {
            if (SameName(entry.key, key)) {
                return entry.value.isEmpty() ? defaultValue : entry.value;
            }
        }
    }
    return defaultValue;
}

bool CRegSettings::SaveSetting(const QString& section, const QString& key, const QString& value) {
    if (IsAutostart(section)) {
        if (!QDir().mkpath(m_paths.AutostartFolder())) {
            return false;
        }
        const QString text =
            QStringLiteral("[Desktop Entry]\nType=Application\nName=") + key +
            QStringLiteral("\nComment=Reader for RSS and Atom news channels\nExec=") + ExecValue(value) +
            QStringLiteral("\nIcon=tamsel\nTerminal=false\nX-GNOME-Autostart-enabled=true\n");
        return AtomicFile::Write(AutostartFile(key), text.toUtf8());
    }
    Store& store = CurrentStore();
    Change change{section, key, value, false};
    Apply(store, change);
    return Commit(store, std::move(change));
}

bool CRegSettings::DeleteSetting(const QString& section, const QString& key) {
    if (IsAutostart(section)) {
        return !key.isEmpty() && QFile::remove(AutostartFile(key));
    }
    Store& store = CurrentStore();
    Change change{section, key, {}, true};
    return Apply(store, change) && Commit(store, std::move(change));
}
