// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

class CRegSettings;

// The maker's web site: the news and help channels, the Spotlight directory and the home page.
// Its base is the setting Common/MakerSite; by default the site that ships with the program.
class MakerSite final {
public:
    explicit MakerSite(CRegSettings& settings);
    explicit MakerSite(QString baseUrl);

    QString BaseUrl() const { return m_base; }
    QString NewsURL() const;
    QString HelpURL() const;
    QString SpotlightURL() const;
    QString HomePage() const;

private:
    QString m_base;
};
