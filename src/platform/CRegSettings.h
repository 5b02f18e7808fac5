// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Paths.h"

#include <QDateTime>
#include <QList>
#include <QString>

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
    // Creates the section when needed; true when the value was written to disk.
    bool SaveSetting(const QString& section, const QString& key, const QString& value);
    // With a key: deletes that value. With an empty key: deletes the section and those below it.
    bool DeleteSetting(const QString& section, const QString& key);

    // The usual text-to-boolean conversion: "True"/"False" in any case, numbers by non-zero.
    static bool ToBool(const QString& text);
    static QString FromBool(bool value);

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
    struct Store {
        QString path;
        QList<Section> sections;
        QDateTime stamp;
        qint64 size = -1;
        bool damaged = false;
    };

    bool IsAutostart(const QString& section) const;
    QString AutostartFile(const QString& key) const;
    Store& CurrentStore();
    void Reload(Store& store);
    bool Write(Store& store);
    static Section* FindSection(Store& store, const QString& name);

    Paths m_paths;
    QString m_company = kCompany;
    QString m_appName = kAppName;
    QList<Store> m_stores;
};
