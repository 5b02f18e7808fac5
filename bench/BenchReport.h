// SPDX-FileCopyrightText: 2026 Orvane
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QElapsedTimer>
#include <algorithm>
#include <cstdio>
#include <functional>
#include <vector>

// What every benchmark prints and how it times: one line per figure, "name value unit", flushed
// at once so that a long run shows its figures as they come.
inline void Print(const char* name, double value, const char* unit) {
    std::printf("%s %.3f %s\n", name, value, unit);
    std::fflush(stdout);
}

inline double Ms(const QElapsedTimer& timer) {
    return double(timer.nsecsElapsed()) / 1e6;
}

inline double Median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values.empty() ? 0.0 : values[values.size() / 2];
}

// Runs `work` `runs` times; the median time in ms.
inline double TimeMs(int runs, const std::function<void()>& work) {
    std::vector<double> times;
    for (int run = 0; run < runs; ++run) {
        QElapsedTimer timer;
        timer.start();
        work();
        times.push_back(Ms(timer));
    }
    return Median(times);
}
