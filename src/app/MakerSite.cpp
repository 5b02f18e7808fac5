// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/MakerSite.h"

#include "platform/CRegSettings.h"
#include "platform/Paths.h"

namespace {

QString WithoutTrailingSlash(QString url) {
    while (url.endsWith(u'/')) {
        url.chop(1);
    }
    return url;
}

} // namespace

MakerSite::MakerSite(CRegSettings& settings)
    : MakerSite(settings.GetSetting(QStringLiteral("Common"), QStringLiteral("MakerSite"), Paths::kSiteBase)) {}

MakerSite::MakerSite(QString baseUrl) : m_base(WithoutTrailingSlash(baseUrl.trimmed())) {}

QString MakerSite::NewsURL() const {
    return m_base + QStringLiteral("/tamsel/news.xml");
}

QString MakerSite::HelpURL() const {
    return m_base + QStringLiteral("/tamsel/help.xml");
}

QString MakerSite::SpotlightURL() const {
    return m_base + QStringLiteral("/tamsel/spotlight.xml");
}

QString MakerSite::HomePage() const {
    return m_base + QStringLiteral("/index.html");
}
