// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class AppHost;
class CRegSettings;
class Desktop;
class HttpClient;
class frmTamselSkin;

// What the reading windows work with: the host for the active profile, the item stylesheets and
// state reports; the skin; the desktop for links; the network for pictures; the settings store
// for window placements.
struct ViewerServices {
    AppHost& host;
    frmTamselSkin& skin;
    Desktop& desktop;
    HttpClient& http;
    CRegSettings& settings;
};
