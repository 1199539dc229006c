// The pages' own times kept to the moment, with the real engine on local pages: a looping
// one-window run whose pages have mixed times of their own (5, 6, 7 and 5 s), "Show each page of
// a run only when it has loaded" on, the program's timer ticking as in the program. For each step
// after the first it reports how far from its planned moment (the step before plus that page's
// time) the run took the step, and how far the page came into view: median and worst of N steps
// (200 unless --steps gives another number). The floor, measured in the same run: how late a bare
// precise Qt timer of the same lengths fires in this process, with the engine loaded.
#include "BenchSupport.h"
#include "EngineBench.h"
#include "ListRecords.h"
#include "LocalHttpServer.h"
#include "browser/BrowserEngine.h"
#include "browser/BrowserFrame.h"
#include "browser/BrowserProfile.h"
#include "browser/WebBrowserWindow.h"
#include "core/Globals.h"
#include "mainwindow/Vantrel1.h"
#include "settings/PageSettings.h"
#include "verbs/ListsModel.h"
#include "verbs/Verbs.h"
#include "verbs/WebForm1.h"

#include <QApplication>
#include <QTemporaryDir>
#include <QWebEngineView>

#include <array>
#include <cmath>

namespace {

constexpr std::array<int, 4> kSeconds = {5, 6, 7, 5};

// How late a precise single-shot timer of `ms` fires, in milliseconds.
double timerLateness(int ms)
{
    QElapsedTimer clock;
    QEventLoop loop;
    double late = 0;
    clock.start();
    QTimer::singleShot(ms, Qt::PreciseTimer, &loop, [&] {
        late = double(clock.nsecsElapsed()) / 1e6 - ms;
        loop.quit();
    });
    loop.exec();
    return late;
}

} // namespace

int main(int argc, char* argv[])
{
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    const int steps = numberArgument(argc, argv, "--steps", 200, 2);
    EngineBench engine;
    QApplication app(argc, argv);
    engine.ready();

    LocalHttpServer server;
    server.start();
    ListState timing{"Timing", {}};
    QStringList urls; // the pages' addresses, in the list's order
    for (size_t i = 0; i < kSeconds.size(); ++i) {
        const QString path = QStringLiteral("/t%1.html").arg(i);
        server.setPage(path, QStringLiteral("<html><head><title>T%1</title></head><body style='background:hsl(%2,60%,60%)'>"
                                            "<h1>Page %1</h1></body></html>")
                                 .arg(i)
                                 .arg(i * 90)
                                 .toUtf8());
        timing.pages.append({path, server.url(path)});
        urls << server.url(path);
    }

    Vantrel1 main;
    main.Form_Load();
    main.show();
    Verbs* verbs = main.verbs();
    loadLists(verbs->lists(), {timing});
    for (size_t i = 0; i < kSeconds.size(); ++i) {
        PageSettings own;
        own.seconds = kSeconds[i];
        verbs->setPageSettings("Timing", urls[qsizetype(i)], own);
    }

    // The floor: a bare precise timer of each length, a few times, with the engine up.
    std::vector<double> floor;
    for (int round = 0; round < 3; ++round)
        for (int seconds : kSeconds)
            floor.push_back(timerLateness(seconds * 100)); // a tenth of the length: the same timer, sooner

    verbs->runList({"Timing", 30, true, false, false}, Caller::Outside);
    verbs->tick();
    QElapsedTimer clock;
    clock.start();
    std::vector<double> stepLate, shownLate;
    double previousStep = 0;
    int previousPosition = verbs->runState().position;
    int previousSeconds = kSeconds[size_t(std::max(previousPosition, 0)) % kSeconds.size()];
    for (int step = 0; step < steps; ++step) {
        // The next step: the run's position changes.
        if (!waitUntil([&] { return verbs->runState().position != previousPosition; }, 30000)) {
            std::fprintf(stderr, "the run stopped stepping\n");
            return 1;
        }
        const double stepAt = double(clock.nsecsElapsed()) / 1e6;
        const int position = verbs->runState().position;
        const QString address = urls[position];
        // In view: the window shows the page, no longer staged.
        auto* window = qobject_cast<WebBrowserWindow*>(main.webForm()->ie(verbs->runState().slot));
        waitUntil(
            [&] {
                return window && window->frame()->view()->page()->url().toString() == address &&
                       !window->frame()->hasStagedPage();
            },
            10000);
        const double shownAt = double(clock.nsecsElapsed()) / 1e6;
        if (step > 0) {
            const double planned = previousStep + previousSeconds * 1000.0;
            stepLate.push_back(std::abs(stepAt - planned));
            shownLate.push_back(std::abs(shownAt - planned));
        }
        previousStep = stepAt;
        previousPosition = position;
        previousSeconds = kSeconds[size_t(position) % kSeconds.size()];
    }
    verbs->stopRun();
    const double worstStep = *std::max_element(stepLate.begin(), stepLate.end());
    const double worstShown = *std::max_element(shownLate.begin(), shownLate.end());
    const double floorMedian = median(floor);
    std::printf("page times of their own over %d steps (5, 6, 7, 5 s), one window, shown only when loaded\n",
                int(stepLate.size()));
    std::printf("  step taken:    median %6.1f ms  worst %6.1f ms   target median < 20, worst < 100  %s\n",
                median(stepLate), worstStep, median(stepLate) < 20 && worstStep < 100 ? "ok" : "OVER");
    std::printf("  page in view:  median %6.1f ms  worst %6.1f ms   target median < 20, worst < 100  %s\n",
                median(shownLate), worstShown, median(shownLate) < 20 && worstShown < 100 ? "ok" : "OVER");
    std::printf("  floor: a bare precise timer fires %.2f ms late (median of %d)   step ratio %.1fx\n", floorMedian,
                int(floor.size()), median(stepLate) / std::max(floorMedian, 0.01));
    main.Form_Unload();
    return 0;
}
