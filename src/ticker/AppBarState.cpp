// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ticker/AppBarState.h"

#include <QtEndian>

namespace {

constexpr qint16 kTrue = -1;

class Writer final {
public:
    explicit Writer(QByteArray& bytes) : m_bytes(bytes) {}
    void Int32(qint32 value) { Put(qToLittleEndian(value)); }
    void Int16(qint16 value) { Put(qToLittleEndian(value)); }
    void Bool(bool value) { Int16(value ? kTrue : qint16(0)); }

private:
    template <typename T> void Put(T value) {
        m_bytes.append(reinterpret_cast<const char*>(&value), sizeof value);
    }
    QByteArray& m_bytes;
};

class Reader final {
public:
    explicit Reader(const QByteArray& bytes) : m_bytes(bytes) {}
    qint32 Int32() {
        const auto value = qFromLittleEndian<qint32>(m_bytes.constData() + m_at);
        m_at += 4;
        return value;
    }
    qint16 Int16() {
        const auto value = qFromLittleEndian<qint16>(m_bytes.constData() + m_at);
        m_at += 2;
        return value;
    }
    bool Bool() { return Int16() != 0; }

private:
    const QByteArray& m_bytes;
    qsizetype m_at = 0;
};

} // namespace

AppBarState AppBarState::Defaults(QSize screen) {
    AppBarState state;
    state.maxTrackFloat = screen;
    state.maxTrackDocked = QSize(screen.width() / 2, screen.height() / 2);
    return state;
}

QByteArray AppBarState::ToBytes() const {
    QByteArray bytes;
    bytes.reserve(kRecordSize);
    Writer out(bytes);
    out.Int32(kRecordSize);
    out.Int32(edge);
    out.Int32(flags);
    out.Bool(autoHide);
    out.Bool(optionA);
    out.Bool(optionB);
    out.Int16(0);
    out.Int32(autoHideDelay);
    out.Int32(sizeIncX);
    out.Int32(sizeIncY);
    out.Int32(dockWidth);
    out.Int32(dockHeight);
    out.Int32(floatRect.top());
    out.Int32(floatRect.left());
    out.Int32(floatRect.left() + floatRect.width());
    out.Int32(floatRect.top() + floatRect.height());
    for (const QSize& size : {minTrackFloat, maxTrackFloat, minTrackDocked, maxTrackDocked}) {
        out.Int32(size.width());
        out.Int32(size.height());
    }
    out.Int16(optionC);
    return bytes;
}

bool AppBarState::FromBytes(const QByteArray& bytes, AppBarState* state) {
    if (bytes.size() != kRecordSize) {
        return false;
    }
    Reader in(bytes);
    AppBarState read;
    in.Int32(); // the record size, already checked
    read.edge = in.Int32();
    read.flags = in.Int32();
    read.autoHide = in.Bool();
    read.optionA = in.Bool();
    read.optionB = in.Bool();
    in.Int16();
    read.autoHideDelay = in.Int32();
    read.sizeIncX = in.Int32();
    read.sizeIncY = in.Int32();
    read.dockWidth = in.Int32();
    read.dockHeight = in.Int32();
    const qint32 top = in.Int32();
    const qint32 left = in.Int32();
    const qint32 right = in.Int32();
    const qint32 bottom = in.Int32();
    read.floatRect = QRect(left, top, right - left, bottom - top);
    for (QSize* size :
         {&read.minTrackFloat, &read.maxTrackFloat, &read.minTrackDocked, &read.maxTrackDocked}) {
        const qint32 width = in.Int32();
        *size = QSize(width, in.Int32());
    }
    read.optionC = in.Int16();
    *state = read;
    return true;
}
