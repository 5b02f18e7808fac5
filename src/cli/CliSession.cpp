// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/CliSession.h"

#include "app/HeadlessHost.h"
#include "app/Runtime.h"
#include "app/clsProfile.h"
#include "app/colProfiles.h"
#include "cli/HtmlToText.h"
#include "itembank/clsItemBank.h"
#include "platform/CRegSettings.h"
#include "platform/SingleInstance.h"

#include <QCoreApplication>
#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTimer>
#include <algorithm>

namespace {

constexpr qsizetype kMaxProfileName = 100;
// What a profile's activation reads from its folder.
const QStringList kProfileFiles = {QStringLiteral("items.xml"), QStringLiteral("channels.xml"),
                                   QStringLiteral("groups.xml")};

} // namespace

CliSession::CliSession(Paths paths, Access access) : m_dataPaths(std::move(paths)), m_access(access) {}

CliSession::~CliSession() {
    Close();
}

QString CliSession::InUseMessage(const QString& dataFolder) {
    return QStringLiteral(
               "The data folder %1 is in use by Tamsel (or another tamsel-cli); close it and try again.")
        .arg(QDir::toNativeSeparators(dataFolder));
}

bool CliSession::IsUsableProfileName(const QString& name) {
    return !name.isEmpty() && name.size() <= kMaxProfileName && name == name.trimmed() &&
           name != QStringLiteral(".") && name != QStringLiteral("..") && !name.contains(u'/') &&
           !name.contains(u'\\') &&
           std::all_of(name.cbegin(), name.cend(), [](QChar c) { return HtmlToText::IsShown(c); });
}

bool CliSession::CopyFile(const QString& from, const QString& to) const {
    if (!QFileInfo(from).isFile()) {
        return true;
    }
    QDir().mkpath(QFileInfo(to).absolutePath());
    return QFile::copy(from, to);
}

bool CliSession::Open(QString* error) {
    Paths paths = m_dataPaths;
    const QString listFile = m_dataPaths.ProfilesFolder() + QStringLiteral("/profiles.xml");
    if (m_access == Access::Write) {
        m_instance = std::make_unique<SingleInstance>(m_dataPaths.DataFolder(), SingleInstance::Role::Tool);
        if (m_instance->Acquire() != SingleInstance::Result::Acquired) {
            *error = InUseMessage(m_dataPaths.DataFolder());
            return false;
        }
    } else {
        m_copy = std::make_unique<QTemporaryDir>();
        if (!m_copy->isValid()) {
            *error = QStringLiteral("No temporary folder could be made: %1").arg(m_copy->errorString());
            return false;
        }
        paths = Paths(m_dataPaths.ResourceFolder(), m_copy->filePath(QStringLiteral("data")),
                      m_copy->filePath(QStringLiteral("config")));
        const QString settings = m_dataPaths.SettingsFile(CRegSettings::kCompany, CRegSettings::kAppName);
        if (!CopyFile(listFile, paths.ProfilesFolder() + QStringLiteral("/profiles.xml")) ||
            !CopyFile(settings, paths.SettingsFile(CRegSettings::kCompany, CRegSettings::kAppName))) {
            *error = QStringLiteral("The data folder %1 could not be read.").arg(m_dataPaths.DataFolder());
            return false;
        }
    }
    m_runtime = std::make_unique<Runtime>(paths, m_desktop);
    QString message;
    if (!m_runtime->LoadNamespaceStylesheet(&message)) {
        *error = message;
        return false;
    }
    if (m_access == Access::Write) {
        m_runtime->InstallDataFolder();
    }
    m_host = std::make_unique<HeadlessHost>(m_runtime->GetServices().clock, m_runtime->NamespaceTransform(),
                                            m_runtime->Site().HelpURL());
    m_profiles = std::make_unique<colProfiles>(m_runtime->GetServices(), *m_host);
    if (QFileInfo::exists(paths.ProfilesFolder() + QStringLiteral("/profiles.xml")) && !LoadProfiles(error)) {
        return false;
    }
    m_host->SetPrintPopups(true);
    return true;
}

bool CliSession::LoadProfiles(QString* error) {
    bool loaded = false;
    QObject::connect(m_profiles.get(), &colProfiles::ProfilesLoaded, m_profiles.get(),
                     [&loaded] { loaded = true; });
    m_profiles->init();
    // The list is read by a queued call; this one is queued after it.
    QEventLoop wait;
    QTimer::singleShot(0, &wait, &QEventLoop::quit);
    wait.exec();
    if (!loaded || !m_profiles->DamagedFile().isEmpty()) {
        const QString real = QDir::toNativeSeparators(m_dataPaths.ProfilesFolder() + QStringLiteral("/profiles.xml"));
        *error = colProfiles::kReadError + QStringLiteral(" (") + real + QStringLiteral(")");
        // A copy was set aside, not the file itself: say where the user's file really is.
        if (m_access == Access::Write && !m_profiles->DamagedFile().isEmpty()) {
            *error += QStringLiteral("; it was kept aside as ") + QDir::toNativeSeparators(m_profiles->DamagedFile());
        }
        return false;
    }
    return true;
}

clsProfile* CliSession::Activate(const QString& name, QString* error) {
    if (m_profiles->UserCount() == 0) {
        *error = QStringLiteral("There is no profile yet; create one with: tamsel-cli profile-add NAME");
        return nullptr;
    }
    clsProfile* profile = name.isEmpty() ? m_profiles->GetDefaultUser() : m_profiles->GetUser(name);
    if (!profile) {
        *error = QStringLiteral("There is no profile named \"%1\".").arg(HtmlToText::Printable(name));
        return nullptr;
    }
    if (!IsUsableProfileName(profile->Name())) {
        *error = QStringLiteral("The profile \"%1\" has a name that cannot name its folder.")
                     .arg(HtmlToText::Printable(profile->Name()));
        return nullptr;
    }
    if (m_copy) {
        for (const QString& file : kProfileFiles) {
            if (!CopyFile(DataProfileFolder(profile->Name()) + u'/' + file,
                          profile->Folder() + u'/' + file)) {
                *error = QStringLiteral("%1 could not be read.")
                             .arg(DataProfileFolder(profile->Name()) + u'/' + file);
                return nullptr;
            }
        }
    }
    m_host->ChangeUser(profile);
    ReportDamagedItems(*profile);
    return profile;
}

void CliSession::ReportDamagedItems(clsProfile& profile) {
    const clsItemBank* bank = profile.ItemBank();
    if (!bank || bank->DamagedFile().isEmpty()) {
        return;
    }
    const QString real = QDir::toNativeSeparators(DataProfileFolder(profile.Name()) + QStringLiteral("/items.xml"));
    QString message = QStringLiteral("%1 could not be read (%2); ").arg(real, bank->DamageReason());
    // A reading command set aside only its own copy, which goes when it ends.
    message += m_access == Access::Write
                   ? QStringLiteral("it was kept aside as %1. The items that could still be read were kept, and "
                                    "the next fetch brings back what the feeds still carry.")
                         .arg(QDir::toNativeSeparators(bank->DamagedFile()))
                   : QStringLiteral("it is left as it is. The items that could still be read are shown; the next "
                                    "fetch keeps the file aside and brings back what the feeds still carry.");
    m_host->PopupInfo(message, profile.Name(), QString());
}

QString CliSession::DataProfileFolder(const QString& name) const {
    return m_dataPaths.ProfileFolder(name);
}

bool CliSession::SaveAll(QString* error) {
    if (m_access != Access::Write) {
        *error = QStringLiteral("A reading command does not save.");
        return false;
    }
    return m_profiles->SaveAllXML(error);
}

bool CliSession::Close(QString* error) {
    if (m_closed) {
        return true;
    }
    m_closed = true;
    bool saved = true;
    if (m_host) {
        clsProfile* profile = m_host->ActiveProfile();
        clsItemBank* bank = profile ? profile->ItemBank() : nullptr;
        // Released here rather than by the profile, which cannot say that the save failed.
        if (bank && m_access == Access::Write && !bank->Release()) {
            saved = false;
            if (error) {
                *error = bank->LastError();
            }
        }
        m_host->ChangeUser(nullptr);
    }
    m_profiles.reset();
    // Requests that the channels dropped are deleted once control is back in the event loop.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    m_host.reset();
    m_runtime.reset();
    m_instance.reset();
    m_copy.reset();
    return saved;
}
