// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// How a test uses the crash stand-in of KillAtWrite.cpp (the tamsel_killat module): the
// environment that preloads it into a program, the events it logged, and the moments worth a kill.
// Needs TAMSEL_KILLAT_PATH from the test's build.
#include <QFile>
#include <QHash>
#include <QList>
#include <QRegularExpression>
#include <QString>
#include <QStringList>

// Preloads the stand-in: it watches the writes and renames below `home`, kills the program at
// event `killAt` (0: never) and logs every event to `log` when one is named.
inline QHash<QString, QString> KillAtWriteEnvironment(const QString& home, long killAt,
                                                      const QString& log = {}) {
    // The sanitizers' runtime must otherwise come first among the loaded libraries.
    return {{QStringLiteral("LD_PRELOAD"), QStringLiteral(TAMSEL_KILLAT_PATH)},
            {QStringLiteral("TAMSEL_KILL_PREFIX"), home + u'/'},
            {QStringLiteral("TAMSEL_KILL_AT"), QString::number(killAt)},
            {QStringLiteral("TAMSEL_KILL_LOG"), log},
            {QStringLiteral("ASAN_OPTIONS"),
             qEnvironmentVariable("ASAN_OPTIONS") + QStringLiteral(":verify_asan_link_order=0")}};
}

// The logged events, one "write PATH", "rename PATH" or "link PATH" each; empty when no log.
inline QStringList KillAtWriteEvents(const QString& log) {
    QFile file(log);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts)
                                          : QStringList();
}

// An event with what differs from run to run made alike: `home` becomes "~", an unnamed file
// being written "#new", the random end of a temporary name "XXXXXX". For messages, and for
// comparing the events of runs in different homes.
inline QString KillAtWriteEventShape(QString event, const QString& home) {
    event.replace(home + u'/', QStringLiteral("~/"));
    static const QRegularExpression unnamed(QStringLiteral("#\\d+ \\(deleted\\)$"));
    static const QRegularExpression temporary(QStringLiteral("(\\.\\w+)\\.\\w{6}$"));
    return event.replace(unnamed, QStringLiteral("#new")).replace(temporary, QStringLiteral("\\1.XXXXXX"));
}

// Kill points: every rename or link that puts a file in place, and the first and the last write
// of each run of writes to one file (a file begun, a file all but finished). Between those, a
// kill finds the disk in the same state as at one of them. Numbered from 1, as the events count.
inline QList<long> KillPoints(const QStringList& events) {
    QList<long> points;
    for (qsizetype i = 0; i < events.size(); ++i) {
        const bool write = events[i].startsWith(QStringLiteral("write "));
        const bool firstOfRun = write && (i == 0 || events[i - 1] != events[i]);
        const bool lastOfRun = write && (i + 1 == events.size() || events[i + 1] != events[i]);
        if (!write || firstOfRun || lastOfRun) {
            points.append(long(i + 1));
        }
    }
    return points;
}
