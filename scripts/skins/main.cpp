// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
// Draws the pictures of the shipped skins and the built-in icons of the skin engine:
//   tamsel-skin-generator <source tree>
// writes data/skins/<skin>/*.png and src/skin/icons/*.png. Running it again gives the same files.
#include "SkinArtist.h"
#include "SkinTheme.h"

#include <QDir>
#include <QGuiApplication>

#include <cstdio>

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    QGuiApplication app(argc, argv);
    const QStringList arguments = QGuiApplication::arguments();
    if (arguments.size() != 2) {
        std::fprintf(stderr, "usage: tamsel-skin-generator <source tree>\n");
        return 2;
    }
    const QDir root(arguments.at(1));
    bool ok = true;
    for (const SkinTheme& theme : {SkinTheme::Default(), SkinTheme::Nightfall()}) {
        const QString folder = root.filePath(QStringLiteral("data/skins/") + theme.name);
        ok = QDir().mkpath(folder) && ok;
        ok = SkinArtist(theme, folder).DrawSkin() && ok;
    }
    const QString icons = root.filePath(QStringLiteral("src/skin/icons"));
    ok = QDir().mkpath(icons) && ok;
    ok = SkinArtist(SkinTheme::Default(), icons).DrawBuiltInIcons() && ok;
    if (!ok) {
        std::fprintf(stderr, "tamsel-skin-generator: some pictures could not be written\n");
        return 1;
    }
    return 0;
}
