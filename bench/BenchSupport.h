#pragma once

#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <vector>

// Runs `work` `runs` times and returns the median time in milliseconds; `setup`, when given, runs
// untimed before each run.
inline double medianMs(int runs, const std::function<void()>& work, const std::function<void()>& setup = {})
{
    std::vector<double> times;
    times.reserve(size_t(runs));
    for (int i = 0; i < runs; ++i) {
        if (setup)
            setup();
        QElapsedTimer timer;
        timer.start();
        work();
        times.push_back(double(timer.nsecsElapsed()) / 1e6);
    }
    std::sort(times.begin(), times.end());
    return times[times.size() / 2];
}

// One line of the report: the measured median, the floor it is set against, and their ratio.
inline void report(const char* what, double ms, const char* floorName, double floorMs, double target)
{
    const double ratio = ms / floorMs;
    std::printf("%-28s median %8.3f ms   %-22s %8.3f ms   ratio %5.2fx   target <= %.1fx  %s\n", what, ms,
                floorName, floorMs, ratio, target, ratio <= target ? "ok" : "OVER");
}

// A line of the report for a target in milliseconds: the measured median and whether it is below.
inline void reportUnder(const char* what, double ms, double targetMs)
{
    std::printf("%-34s median %9.3f ms   target < %.3f ms  %s\n", what, ms, targetMs,
                ms < targetMs ? "ok" : "OVER");
}

// The median of `values` (taken by value: it sorts its own copy).
inline double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values.empty() ? 0.0 : values[values.size() / 2];
}

// Lets the event loop run for `ms` milliseconds.
inline void waitMs(int ms)
{
    QEventLoop loop;
    QTimer::singleShot(ms, &loop, &QEventLoop::quit);
    loop.exec();
}

// Lets the event loop run until `done()` holds, looking every millisecond; false after `timeoutMs`.
template <typename Done> bool waitUntil(Done done, int timeoutMs)
{
    QElapsedTimer timer;
    timer.start();
    while (!done()) {
        if (timer.elapsed() > timeoutMs)
            return false;
        waitMs(1);
    }
    return true;
}
