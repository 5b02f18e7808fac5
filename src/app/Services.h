// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Paths.h"

class Clock;
class CRegSettings;
class Desktop;
class HttpClient;

// The platform services that the system's objects receive through their constructors.
struct Services {
    Clock& clock;
    CRegSettings& settings;
    HttpClient& http;
    Desktop& desktop;
    Paths paths;
};
