// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/SilentDesktop.h"
#include "platform/Paths.h"

#include <QString>
#include <memory>

class HeadlessHost;
class QTemporaryDir;
class Runtime;
class SingleInstance;
class clsProfile;
class colProfiles;

// The data folder as one run of tamsel-cli uses it: the process-wide services, the headless host,
// the profile list and the active profile, released (and the item bank saved) by Close.
//
// A session that writes takes the data folder as the window program does (so that neither can
// start while the other changes the files) and is refused while another program holds it. A
// session that only reads works on a copy of the files it needs, made in a temporary folder, so
// that it may run at any time and never changes the data folder, whatever the program's objects
// write when they are released.
class CliSession final {
public:
    enum class Access { ReadCopy, Write };

    CliSession(Paths paths, Access access);
    ~CliSession();
    CliSession(const CliSession&) = delete;
    CliSession& operator=(const CliSession&) = delete;

    // Takes or copies the data folder, loads the namespace stylesheet and reads the profile list;
    // false with the message to show when it cannot.
    bool Open(QString* error);
    Access GetAccess() const { return m_access; }

    Runtime& GetRuntime() const { return *m_runtime; }
    HeadlessHost& Host() const { return *m_host; }
    colProfiles& Profiles() const { return *m_profiles; }

    // Activates the profile of that name, or the default profile when the name is empty; none,
    // with the message to show, when there is no such profile.
    clsProfile* Activate(const QString& name, QString* error);
    // The profile's folder in the data folder itself (never the copy).
    QString DataProfileFolder(const QString& name) const;
    // Writes the profile list and everything the active profile holds, items before channels
    // (SaveAllXML); false with the message to show when any file could not be written.
    bool SaveAll(QString* error);
    // Releases the profile (the item bank writes items.xml when it changed) and the data folder;
    // false with the message to show when a session that writes could not save the item bank.
    bool Close(QString* error = nullptr);

    // Whether a name can name a profile's folder: not empty, no path separators or control
    // characters, not "." or "..", no surrounding blanks, at most 100 characters.
    static bool IsUsableProfileName(const QString& name);
    static QString InUseMessage(const QString& dataFolder);

private:
    bool CopyFile(const QString& from, const QString& to) const;
    bool LoadProfiles(QString* error);
    // Tells the user where an unreadable items.xml of the profile really is.
    void ReportDamagedItems(clsProfile& profile);

    Paths m_dataPaths;
    Access m_access;
    SilentDesktop m_desktop;
    std::unique_ptr<QTemporaryDir> m_copy;
    std::unique_ptr<SingleInstance> m_instance;
    std::unique_ptr<Runtime> m_runtime;
    std::unique_ptr<HeadlessHost> m_host;
    std::unique_ptr<colProfiles> m_profiles;
    bool m_closed = false;
};
