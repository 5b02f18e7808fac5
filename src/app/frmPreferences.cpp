// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/frmPreferences.h"

#include "app/WindowHelpers.h"
#include "platform/CRegSettings.h"
#include "skin/SkinPalette.h"
#include "skin/frmTamselSkin.h"

#include <QCheckBox>
#include <QCoreApplication>
#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

const QString kTrue = QStringLiteral("True");
const QString kStartSection = QStringLiteral("START");
const QString kOpenMain = QStringLiteral("OPENMAIN");
const QString kCheckUpdate = QStringLiteral("CHECKUPDATE");
const QString kPrefSection = QStringLiteral("PREF");
const QString kAlert = QStringLiteral("ALERT");
const QString kRunSection = QStringLiteral("CurrentVersion\\Run");

// The start-up entry lives under the desktop's own company and program names; the settings are
// switched there for the length of one scope, and always back.
class StartupScope final {
public:
    explicit StartupScope(CRegSettings& settings)
        : m_settings(settings), m_company(settings.Company()), m_appName(settings.AppName()) {
        m_settings.SetCompany(QStringLiteral("Microsoft"));
        m_settings.SetAppName(QStringLiteral("Windows"));
    }
    ~StartupScope() {
        m_settings.SetCompany(m_company);
        m_settings.SetAppName(m_appName);
    }
    StartupScope(const StartupScope&) = delete;
    StartupScope& operator=(const StartupScope&) = delete;

private:
    CRegSettings& m_settings;
    QString m_company;
    QString m_appName;
};

} // namespace

frmPreferences::frmPreferences(CRegSettings& settings, frmTamselSkin& skin, QWidget* parent)
    : QDialog(parent), m_settings(settings), m_skin(skin),
      m_chkUpdates(new QCheckBox(QStringLiteral("Check for program &updates on startup"), this)),
      m_chkAlert(new QCheckBox(QStringLiteral("Play &sound when new items are received"), this)),
      m_chkRunStartup(new QCheckBox(QStringLiteral("&Run Tamsel when I log in"), this)),
      m_chkOpenMain(new QCheckBox(QStringLiteral("Open &main window when Tamsel starts"), this)),
      m_cmdOk(new QPushButton(QStringLiteral("&Ok"), this)),
      m_cmdCancel(new QPushButton(QStringLiteral("&Cancel"), this)) {
    setWindowTitle(QStringLiteral("Preferences"));
    setModal(true);
    m_chkUpdates->setAccessibleName(QStringLiteral("Check for program updates on startup"));
    m_chkAlert->setAccessibleName(QStringLiteral("Play sound when new items are received"));
    m_chkRunStartup->setAccessibleName(QStringLiteral("Run Tamsel when I log in"));
    m_chkOpenMain->setAccessibleName(QStringLiteral("Open main window when Tamsel starts"));
    m_cmdOk->setAccessibleName(QStringLiteral("Ok"));
    m_cmdOk->setDefault(true);
    m_cmdCancel->setAccessibleName(QStringLiteral("Cancel"));

    auto* buttons = new QHBoxLayout();
    buttons->addStretch();
    buttons->addWidget(m_cmdOk);
    buttons->addWidget(m_cmdCancel);
    auto* layout = new QVBoxLayout(this);
    for (QCheckBox* box : {m_chkUpdates, m_chkAlert, m_chkRunStartup, m_chkOpenMain}) {
        layout->addWidget(box);
    }
    layout->addSpacing(layout->spacing() * 2);
    layout->addLayout(buttons);
    layout->setSizeConstraint(QLayout::SetFixedSize);
    SetTabChain({m_chkUpdates, m_chkAlert, m_chkRunStartup, m_chkOpenMain, m_cmdOk, m_cmdCancel});

    m_chkUpdates->setChecked(CRegSettings::ToBool(m_settings.GetSetting(kStartSection, kCheckUpdate, kTrue)));
    m_chkAlert->setChecked(CRegSettings::ToBool(m_settings.GetSetting(kPrefSection, kAlert, kTrue)));
    m_chkOpenMain->setChecked(CRegSettings::ToBool(m_settings.GetSetting(kStartSection, kOpenMain, kTrue)));
    {
        const StartupScope scope(m_settings);
        m_chkRunStartup->setChecked(
            !m_settings.GetSetting(kRunSection, CRegSettings::kAppName, QString()).isEmpty());
    }

    connect(m_cmdOk, &QPushButton::clicked, this, &frmPreferences::cmdOk_Click);
    connect(m_cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(&m_skin, &frmTamselSkin::SkinLoaded, this, &frmPreferences::ApplySkin);
    ApplySkin();
    m_chkUpdates->setFocus();
}

frmPreferences::~frmPreferences() = default;

void frmPreferences::ApplySkin() {
    ApplySkinPalette(*this, m_skin, frmTamselSkin::KindDialog);
}

void frmPreferences::cmdOk_Click() {
    {
        const StartupScope scope(m_settings);
        if (m_chkRunStartup->isChecked()) {
            m_settings.SaveSetting(kRunSection, CRegSettings::kAppName,
                                   QCoreApplication::applicationFilePath());
        } else {
            m_settings.DeleteSetting(kRunSection, CRegSettings::kAppName);
        }
    }
    m_settings.SaveSetting(kStartSection, kOpenMain, CRegSettings::FromBool(m_chkOpenMain->isChecked()));
    m_settings.SaveSetting(kStartSection, kCheckUpdate, CRegSettings::FromBool(m_chkUpdates->isChecked()));
    m_settings.SaveSetting(kPrefSection, kAlert, CRegSettings::FromBool(m_chkAlert->isChecked()));
    accept();
}
