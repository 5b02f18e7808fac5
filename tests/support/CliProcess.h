// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The built tamsel-cli run as a user runs it: in its own process, under a temporary TAMSEL_HOME.
// The event loop is served while the program runs, so that a local server of the test can answer.
// Needs TAMSEL_CLI_PATH and TAMSEL_BUILD_DATA_DIR from the test's build.
#include "support/EventPump.h"
#include "support/TestHome.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QHash>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <csignal>
#include <functional>
#include <gtest/gtest.h>
#include <ostream>

struct CliRun {
    int exitCode = -1;
    // Ended by SIGKILL, as a crash stand-in does.
    bool killed = false;
    QString out;
    QString err;
    QStringList Lines() const { return out.split(u'\n', Qt::SkipEmptyParts); }
    // The objects of a --json list.
    QList<QJsonObject> Objects() const {
        QList<QJsonObject> objects;
        for (const QString& line : Lines()) {
            objects.append(QJsonDocument::fromJson(line.toUtf8()).object());
        }
        return objects;
    }
};

// What a run of the program printed, for failure messages.
inline std::ostream& operator<<(std::ostream& os, const CliRun& run) {
    return os << "exit " << run.exitCode << "\n--- out\n"
              << run.out.toStdString() << "--- err\n"
              << run.err.toStdString();
}

// Runs tamsel-cli under `home` with `extra` added to the environment. `inChild` runs in the new
// process before the program starts (async-signal-safe calls only).
inline CliRun RunIn(const QString& home, const QStringList& arguments,
                    const QHash<QString, QString>& extra = {}, const std::function<void()>& inChild = {}) {
    constexpr int kRunLimitMs = 90000;
    QProcess process;
    if (inChild) {
        process.setChildProcessModifier(inChild);
    }
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("TAMSEL_HOME"), home);
    environment.insert(QStringLiteral("TAMSEL_RESOURCES"), QStringLiteral(TAMSEL_BUILD_DATA_DIR));
    for (auto it = extra.cbegin(); it != extra.cend(); ++it) {
        environment.insert(it.key(), it.value());
    }
    process.setProcessEnvironment(environment);
    process.setWorkingDirectory(home);
    process.start(QStringLiteral(TAMSEL_CLI_PATH), arguments);
    if (!PumpUntil([&process] { return process.state() == QProcess::NotRunning; }, kRunLimitMs)) {
        process.kill();
        process.waitForFinished();
        ADD_FAILURE() << "tamsel-cli " << arguments.join(u' ').toStdString() << " did not end";
        return CliRun();
    }
    return CliRun{.exitCode = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
                  .killed = process.exitStatus() == QProcess::CrashExit && process.exitCode() == SIGKILL,
                  .out = QString::fromUtf8(process.readAllStandardOutput()),
                  .err = QString::fromUtf8(process.readAllStandardError())};
}

// Copies every file below `from` to the same place below `to`, replacing what is there.
inline void CopyFolder(const QString& from, const QString& to) {
    QDirIterator it(from, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString source = it.next();
        const QString target = to + source.mid(from.size());
        QDir().mkpath(QFileInfo(target).path());
        QFile::remove(target);
        ASSERT_TRUE(QFile::copy(source, target)) << target.toStdString();
    }
}
