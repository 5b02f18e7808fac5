// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Paths.h"

#include <QDateTime>
#include <QList>
#include <QString>
#include <QtGlobal>

class QFile;

// The settings store: text values by section and key, kept per user in an INI-style text file per
// company and program ($config/Orvane/Tamsel.conf). Sections and keys compare without regard to
// letter case. Key "*" is a section's default value. The system's start-up entry (company
// "Microsoft", program "Windows", section "CurrentVersion\Run") is an XDG autostart file.
class CRegSettings final {
public:
    explicit CRegSettings(Paths paths);

    QString Company() const { return m_company; }
    void SetCompany(const QString& company) { m_company = company; }
    QString AppName() const { return m_appName; }
    void SetAppName(const QString& appName) { m_appName = appName; }

    // The stored text; the default when the value is missing, empty or unreadable.
    QString GetSetting(const QString& section, const QString& key, const QString& defaultValue);
    // Creates the section when needed; true when the value was written to disk (or, inside a
    // DeferredWrites stretch, held for its end).
    bool SaveSetting(const QString& section, const QString& key, const QString& value);
    // With a key: deletes that value. With an empty key: deletes the section and those below it.
    bool DeleteSetting(const QString& section, const QString& key);

    // The usual text-to-boolean conversion: "True"/"False" in any case, numbers by non-zero.
    static bool ToBool(const QString& text);
    static QString FromBool(bool value);

    // While one lives, changes of the settings files stay in memory (reads see them); the outermost
    // one's end writes each changed file once. The start-up entry is still written at once.
    class DeferredWrites final {
    public:
        explicit DeferredWrites(CRegSettings& settings);
        // Ends the stretch if End() did not; a failed write is then ignored, as callers ignore
        // SaveSetting's result.
        ~DeferredWrites();
        Q_DISABLE_COPY_MOVE(DeferredWrites)

        // Ends the stretch now; false when a held change could not be written to disk.
        bool End();

    private:
        CRegSettings& m_settings;
        bool m_ended = false;
    };

    static inline const QString kCompany = QStringLiteral("Orvane");
    static inline const QString kAppName = QStringLiteral("Tamsel");

private:
    struct Entry {
        QString key;
        QString value;
    };
    struct Section {
        QString name;
        QList<Entry> entries;
    };
    // A change not yet on disk; an empty key with `remove` deletes the section and those below it.
    struct Change {
        QString section;
        QString key;
        QString value;
        bool remove = false;
    };
    struct Store {
        QString path;
        QList<Section> sections;
        QDateTime stamp;
        qint64 size = -1;
        bool damaged = false;
        // Replayed over what another writer saved meanwhile, so that a reload keeps them.
        QList<Change> pending;
    };

    bool IsAutostart(const QString& section) const;
    QString AutostartFile(const QString& key) const;
    Store& CurrentStore();
    void Reload(Store& store);
    static void Parse(QFile& file, Store& store);
    bool Write(Store& store);
    // Records the applied change and writes the store, or holds it while writes are deferred.
    bool Commit(Store& store, Change change);
    bool EndDeferred();
    static bool Apply(Store& store, const Change& change);
    static Section* FindSection(Store& store, const QString& name);

    Paths m_paths;
    QString m_company = kCompany;
    QString m_appName = kAppName;
    QList<Store> m_stores;
    int m_deferDepth = 0;
};
