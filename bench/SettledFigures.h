#pragma once

// The memory, open files and threads of the program and its page processes, once it has settled:
// shared by the soaks.
#include "BenchSupport.h"
#include "ProcessFigures.h"

#include <QElapsedTimer>
#include <QString>

#include <algorithm>
#include <functional>
#include <vector>

#include <unistd.h>

struct Figures
{
    long main = 0;
    long mainAnon = 0;  // of it: the heap and other private memory
    long mainShared = 0; // of it: shared memory (the frames the renderers hand over, among others)
    long renderers = 0;
    OpenFiles files;
    long threads = 0;
    long processes = 0; // the engine's, below this one
};

inline Figures figures(const QString& profile, quint16 port)
{
    return {statusField("/proc/self/status", "VmRSS"),        statusField("/proc/self/status", "RssAnon"),
            statusField("/proc/self/status", "RssShmem"),     descendantsRssKb(::getpid()),
            openFilesOf(profile, {port}),                      statusField("/proc/self/status", "Threads"),
            long(descendantsOf(::getpid()).size())};
}

// The figures once the program has settled (the loads still under way ended, the renderers of
// pages let go gone: their number the same for three seconds, twenty at most), each the median of
// several samples a little apart.
inline Figures settledFigures(const QString& profile, quint16 port)
{
    QElapsedTimer settling;
    settling.start();
    for (qsizetype count = -1, steady = 0; steady < 6 && settling.elapsed() < 20000; waitMs(500)) {
        const qsizetype now = descendantsOf(::getpid()).size();
        steady = now == count ? steady + 1 : 0;
        count = now;
    }
    constexpr int kSamples = 5;
    std::vector<Figures> samples;
    for (int i = 0; i < kSamples; ++i) {
        if (i > 0)
            waitMs(500);
        samples.push_back(figures(profile, port));
    }
    auto middle = [&](const std::function<long(const Figures&)>& field) {
        std::vector<long> values;
        for (const Figures& f : samples)
            values.push_back(field(f));
        std::nth_element(values.begin(), values.begin() + kSamples / 2, values.end());
        return values[kSamples / 2];
    };
    Figures m;
    m.main = middle([](const Figures& f) { return f.main; });
    m.mainAnon = middle([](const Figures& f) { return f.mainAnon; });
    m.mainShared = middle([](const Figures& f) { return f.mainShared; });
    m.renderers = middle([](const Figures& f) { return f.renderers; });
    m.threads = middle([](const Figures& f) { return f.threads; });
    m.processes = middle([](const Figures& f) { return f.processes; });
    m.files.program = int(middle([](const Figures& f) { return long(f.files.program); }));
    m.files.profile = int(middle([](const Figures& f) { return long(f.files.profile); }));
    return m;
}

