// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QRect>
#include <QSize>
#include <QtGlobal>

// The persistent part of an application bar: a 90-byte little-endian record. Booleans are 16-bit
// 0 or -1. Stored options A, B and C are kept for their owner and drive nothing here.
struct AppBarState {
    static constexpr int kRecordSize = 90;

    qint32 edge = 5;
    qint32 flags = 31;
    bool autoHide = false;
    bool optionA = true;
    bool optionB = true;
    qint32 autoHideDelay = 400;
    qint32 sizeIncX = 1;
    qint32 sizeIncY = 1;
    qint32 dockWidth = 32;
    qint32 dockHeight = 32;
    QRect floatRect; // stored as top, left, right, bottom with exclusive right and bottom
    QSize minTrackFloat{0, 0};
    QSize maxTrackFloat;
    QSize minTrackDocked{0, 0};
    QSize maxTrackDocked;
    qint16 optionC = 2;

    // Defaults whose tracking limits follow the screen.
    static AppBarState Defaults(QSize screen);

    QByteArray ToBytes() const;
    // False (leaving `state` alone) unless `bytes` holds exactly one record.
    static bool FromBytes(const QByteArray& bytes, AppBarState* state);
};
