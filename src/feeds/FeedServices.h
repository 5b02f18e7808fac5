// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Paths.h"

#include <QRandomGenerator>
#include <QString>
#include <functional>

class AppHost;
class Clock;
class CRegSettings;
class HttpClient;
class XsltStylesheet;

// What every channel of a profile works with: time, settings, network, the host that
// coordinates the fetches, the namespace stylesheet and the maker's two channels.
struct FeedServices {
    // A uniform random number in [0, 1); replaced in tests to make the retry delays known.
    using RandomSource = std::function<double()>;

    Clock& clock;
    CRegSettings& settings;
    HttpClient& http;
    Paths paths;
    AppHost& host;
    const XsltStylesheet& namespaceTransform;
    QString helpUrl;
    QString newsUrl;
    RandomSource random = [] { return QRandomGenerator::global()->generateDouble(); };
};
