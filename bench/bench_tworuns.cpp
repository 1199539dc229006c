// A soak of two lists running at once with pages' settings of their own, with the real engine on
// local pages: "Front" from the run dialog's verbs over windows 1 to 4 and "Back" in windows 5 to
// 8, both looping; pages zoomed, fitted to the width, scrolling slowly, reloaded every minute, with
// times of their own. The runs' clock is moved on by the benchmark, the program's timer ticks as in
// the program. After a first round it measures the main process's and the renderers' memory, the
// open files and the threads (settled, the median of five samples); then again after N ticks (400 unless --ticks gives another number).
// Targets: memory growth under 5 %, no growth of open files or threads. With --no-settings the
// same soak runs without the pages' settings, to tell their share.
#include "BenchSupport.h"
#include "EngineBench.h"
#include "ListRecords.h"
#include "LocalHttpServer.h"
#include "ProcessFigures.h"
#include "SettledFigures.h"
#include "browser/BrowserEngine.h"
#include "browser/BrowserProfile.h"
#include "browser/WebBrowserWindow.h"
#include "core/Clock.h"
#include "core/Globals.h"
#include "mainwindow/Vantrel1.h"
#include "verbs/ListsModel.h"
#include "verbs/Verbs.h"
#include "verbs/WebForm1.h"

#include <QApplication>
#include <QTemporaryDir>

#include <algorithm>
#include <functional>
#include <vector>

#include <unistd.h>

namespace {

constexpr int kPagesEach = 6;

QByteArray page(int i)
{
    QByteArray rows;
    for (int r = 0; r < 40; ++r)
        rows += "<p style='padding:12px;background:hsl(" + QByteArray::number((i * 37 + r * 9) % 360) +
                ",50%,85%)'>Row " + QByteArray::number(r) + "</p>";
    return "<html><head><title>Page " + QByteArray::number(i) + "</title></head><body style='margin:0'>"
           "<div style='width:1600px'>" + rows + "</div><script>setInterval(function () {"
           "document.title = 'Page " + QByteArray::number(i) + " ' + Date.now() % 1000; }, 1000);</script></body></html>";
}

} // namespace

int main(int argc, char* argv[])
{
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    const int ticks = numberArgument(argc, argv, "--ticks", 400, 10);
    bool withSettings = true;
    for (int i = 1; i < argc; ++i)
        withSettings = withSettings && QByteArray(argv[i]) != "--no-settings";
    EngineBench engine;
    const QString profile = engine.profileFolder();
    QApplication app(argc, argv);
    engine.ready();
    ManualClock clock(QDateTime(QDate(2026, 5, 1), QTime(0, 0, 1)));
    Clock::setInstance(&clock);
    LocalHttpServer server;
    server.start();
    ListState front{"Front", {}}, back{"Back", {}};
    for (ListState* list : {&front, &back}) {
        for (int i = 0; i < kPagesEach; ++i) {
            const int n = (list == &front ? 0 : kPagesEach) + i;
            const QString path = QStringLiteral("/p%1.html").arg(n);
            server.setPage(path, page(n));
            list->pages.append({path, server.url(path)});
        }
    }

    Vantrel1 main;
    main.Form_Load();
    main.show();
    Verbs* verbs = main.verbs();
    loadLists(verbs->lists(), {front, back});
    // Settings of their own on half the pages of each list.
    PageSettings zoom, slow, live, fit, longer;
    zoom.zoom = 150;
    slow.scroll = PageSettings::Scroll::Slowly;
    slow.seconds = 10;
    live.reload = PageSettings::Reload::EveryMinutes;
    live.reloadMinutes = 1;
    fit.zoom = PageSettings::kFitWidth;
    longer.seconds = 20;
    if (withSettings) {
        verbs->setPageSettings("Front", front.pages[0].address, zoom);
        verbs->setPageSettings("Front", front.pages[1].address, slow);
        verbs->setPageSettings("Front", front.pages[2].address, live);
        verbs->setPageSettings("Back", back.pages[0].address, fit);
        verbs->setPageSettings("Back", back.pages[1].address, longer);
    }

    int completed = 0;
    QObject::connect(main.webForm(), &WebForm1::documentCompleted, &main, [&] { ++completed; });
    if (!verbs->runInOtherWindows({"Back", 30, true, true, false}, {5, 6, 7, 8}, Caller::Outside).ok() ||
        !verbs->runList({"Front", 30, true, true, false}, Caller::Outside).ok()) {
        std::fprintf(stderr, "the runs did not start\n");
        return 1;
    }
    auto tick = [&] {
        main.Timer1_Timer();
        clock.advanceSeconds(31);
        waitMs(400); // what the engine makes of the step
    };
    for (int i = 0; i < 2 * kPagesEach + 4; ++i) // the first round opens and settles every window
        tick();
    // Measured with both runs held, so that no page that a run loads ahead of its step falls into
    // one measurement and not the other.
    auto measure = [&] {
        verbs->pauseRun();
        verbs->pauseRun(2);
        const Figures held = settledFigures(profile, server.serverPort());
        verbs->resumeRun();
        verbs->resumeRun(2);
        return held;
    };
    const Figures start = measure();
    const int completedStart = completed;
    QElapsedTimer soak;
    soak.start();
    for (int i = 0; i < ticks; ++i)
        tick();
    const Figures end = measure();
    const double growth = 100.0 * double(end.main + end.renderers - start.main - start.renderers) /
                          double(start.main + start.renderers);
    std::printf("two runs at once, %d pages each, %s: %d ticks 31 s apart in %.0f s, %d documents completed, %d "
                "windows\n",
                kPagesEach, withSettings ? "settings of their own on half of them" : "no page settings", ticks, double(soak.elapsed()) / 1000.0, completed - completedStart, globals().WindowCount);
    std::printf("  main process %ld -> %ld kB, renderers (%ld -> %ld processes) %ld -> %ld kB: growth %.1f %%   target < 5 %%  %s\n", start.main,
                end.main, start.processes, end.processes, start.renderers, end.renderers, growth, growth < 5.0 ? "ok" : "OVER");
    std::printf("  of the main process: private %ld -> %ld kB, shared memory %ld -> %ld kB\n", start.mainAnon,
                end.mainAnon, start.mainShared, end.mainShared);
    std::printf("  open files %d -> %d, threads %ld -> %ld   target no growth  %s\n", start.files.program,
                end.files.program, start.threads, end.threads,
                end.files.program <= start.files.program && end.threads <= start.threads ? "ok" : "OVER");
    verbs->stopRun(2);
    verbs->stopRun();
    main.Form_Unload();
    Clock::setInstance(nullptr);
    return 0;
}
