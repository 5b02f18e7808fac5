// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#include "skin/SkinNumber.h"

#include <cfenv>
#include <cmath>

namespace {

constexpr int kHexBase = 16;
constexpr int kDecimalBase = 10;
// More digits than this cannot change a 32-bit pattern or a double's value in a sensible way.
constexpr int kMaxHexDigits = 8;

bool IsBlank(QChar c) {
    return c == u' ' || c == u'\t';
}

int HexDigit(QChar c) {
    if (c >= u'0' && c <= u'9') {
        return c.unicode() - u'0';
    }
    if (c >= u'a' && c <= u'f') {
        return c.unicode() - u'a' + kDecimalBase;
    }
    if (c >= u'A' && c <= u'F') {
        return c.unicode() - u'A' + kDecimalBase;
    }
    return -1;
}

} // namespace

double SkinNumber::Leading(QStringView text) {
    qsizetype i = 0;
    while (i < text.size() && IsBlank(text[i])) {
        ++i;
    }
    if (i + 1 < text.size() && text[i] == u'&' && (text[i + 1] == u'h' || text[i + 1] == u'H')) {
        quint32 value = 0;
        int digits = 0;
        for (i += 2; i < text.size() && digits < kMaxHexDigits; ++i, ++digits) {
            const int digit = HexDigit(text[i]);
            if (digit < 0) {
                break;
            }
            value = value * kHexBase + quint32(digit);
        }
        return double(value);
    }
    bool negative = false;
    if (i < text.size() && (text[i] == u'-' || text[i] == u'+')) {
        negative = text[i] == u'-';
        ++i;
    }
    double value = 0;
    double scale = 0; // 0 before the decimal point, then the place value of the next digit
    for (; i < text.size(); ++i) {
        const QChar c = text[i];
        if (c >= u'0' && c <= u'9') {
            const int digit = c.unicode() - u'0';
            if (scale == 0) {
                value = value * kDecimalBase + digit;
            } else {
                value += digit * scale;
                scale /= kDecimalBase;
            }
        } else if (c == u'.' && scale == 0) {
            scale = 1.0 / kDecimalBase;
        } else {
            break;
        }
    }
    return negative ? -value : value;
}

qint64 SkinNumber::Round(double value) {
    // Beyond this a double has no fraction left, and the cast to 64 bits would overflow.
    constexpr double kLimit = 9.0e18;
    if (!std::isfinite(value)) {
        return 0;
    }
    if (std::fabs(value) >= kLimit) {
        return value < 0 ? qint64(-kLimit) : qint64(kLimit);
    }
    // The default rounding mode of the floating-point unit rounds halves to even.
    const int previous = std::fegetround();
    std::fesetround(FE_TONEAREST);
    const double rounded = std::nearbyint(value);
    std::fesetround(previous);
    return qint64(rounded);
}

bool SkinNumber::Boolean(QStringView text) {
    return text.compare(u"true", Qt::CaseInsensitive) == 0;
}
