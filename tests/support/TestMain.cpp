// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
// Test entry point: a Qt application object and a temporary TAMSEL_HOME for the whole run, so
// that no test reads or writes the user's real files.
#include "platform/XmlSecurity.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

#ifdef TAMSEL_TEST_WIDGETS
#include <QApplication>
using TestApplication = QApplication;
#else
#include <QCoreApplication>
using TestApplication = QCoreApplication;
#endif

int main(int argc, char** argv) {
    QTemporaryDir home;
    qputenv("TAMSEL_HOME", home.path().toUtf8());
    qputenv("TAMSEL_RESOURCES", QByteArrayLiteral(TAMSEL_BUILD_DATA_DIR));
    TestApplication app(argc, argv);
    XmlSecurity::SetTrustedFolder(QStringLiteral(TAMSEL_BUILD_DATA_DIR));
    XmlSecurity::MapShippedDtds(QStringLiteral(TAMSEL_BUILD_DATA_DIR));
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
