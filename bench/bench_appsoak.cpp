// A soak of a wall of web applications: the four applications of bench/AppPages.h (two news sites,
// a to-do app and a recipe site, built with Vue from Debian's libjs-vue) in one list that runs in
// several windows with Keep Pages Loaded, a page every 30 s, on the program's own timer and the
// real clock, with the real engine. After the first round (every window opened and kept) the
// memory of the program and its page processes is sampled each minute (the median of three
// samples a second apart) and its growth worked out as a straight line through the samples, per
// hour and as a share of the first sample. The floor is the same wall held still for as long (the
// run paused, its pages kept): what the engine's pages take by themselves with nothing stepping.
// Target: under 1 % an hour while it rotates. --minutes N sets each phase's length (8 unless given).
// Run it on an X display with a window manager, as a wall runs:
//   xvfb-run -a -s "-screen 0 1280x900x24" sh -c 'openbox & sleep 1; ./bench_appsoak'
#include "AppPages.h"
#include "BenchSupport.h"
#include "EngineBench.h"
#include "ListRecords.h"
#include "LocalHttpServer.h"
#include "SettledFigures.h"
#include "core/Globals.h"
#include "mainwindow/Vantrel1.h"
#include "verbs/ListsModel.h"
#include "verbs/Verbs.h"

#include <QApplication>

#include <vector>

namespace {

constexpr int kPages = 4;

long totalKb(const QString& profile, quint16 port)
{
    std::vector<long> samples;
    for (int i = 0; i < 3; ++i) {
        if (i > 0)
            waitMs(1000);
        const Figures f = figures(profile, port);
        samples.push_back(f.main + f.renderers);
    }
    std::sort(samples.begin(), samples.end());
    return samples[1];
}

struct Growth
{
    long first = 0;
    long last = 0;
    double kbPerHour = 0;
    double percentPerHour() const { return first > 0 ? 100.0 * kbPerHour / double(first) : 0; }
};

// Samples each minute for `minutes`; the growth as the slope of a straight line through them.
Growth sampleFor(int minutes, const QString& profile, quint16 port, const char* phase)
{
    std::vector<double> at, kb;
    QElapsedTimer clock;
    clock.start();
    for (int m = 0; m <= minutes; ++m) {
        while (clock.elapsed() < qint64(m) * 60000)
            waitMs(200);
        at.push_back(double(clock.elapsed()) / 3600000.0);
        kb.push_back(double(totalKb(profile, port)));
        std::printf("  %s, minute %2d: %8.0f kB\n", phase, m, kb.back());
    }
    double meanT = 0, meanK = 0;
    for (size_t i = 0; i < at.size(); ++i) {
        meanT += at[i] / double(at.size());
        meanK += kb[i] / double(at.size());
    }
    double num = 0, den = 0;
    for (size_t i = 0; i < at.size(); ++i) {
        num += (at[i] - meanT) * (kb[i] - meanK);
        den += (at[i] - meanT) * (at[i] - meanT);
    }
    return {long(kb.front()), long(kb.back()), den > 0 ? num / den : 0};
}

} // namespace

int main(int argc, char* argv[])
{
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    const int minutes = numberArgument(argc, argv, "--minutes", 8, 2);
    EngineBench engine;
    const QString profile = engine.profileFolder();
    QApplication app(argc, argv);
    engine.ready();
    const QByteArray vue = AppPages::vue();
    if (vue.isEmpty()) {
        std::fprintf(stderr, "bench_appsoak builds its pages with %s: install Debian's libjs-vue\n",
                     qPrintable(AppPages::vueFile()));
        return 2;
    }
    LocalHttpServer server;
    server.start();
    server.setResponse("/vue.min.js", vue, "Content-Type: text/javascript\r\n");
    ListState wall{"Wall", {}};
    for (int i = 0; i < kPages; ++i) {
        const QString path = QStringLiteral("/app%1.html").arg(i);
        server.setPage(path, AppPages::shell(i, kPages));
        server.setResponse(QStringLiteral("/data%1.json").arg(i), AppPages::data(i), "Content-Type: application/json\r\n");
        wall.pages.append({AppPages::kindName(i), server.url(path)});
    }

    Vantrel1 main;
    main.Form_Load();
    main.show();
    Verbs* verbs = main.verbs();
    loadLists(verbs->lists(), {wall});
    if (!verbs->runList({"Wall", 30, true, true, true}, Caller::Outside).ok()) {
        std::fprintf(stderr, "the run did not start\n");
        return 1;
    }
    // The first round opens a window for each application and keeps it; one more settles them.
    std::printf("a wall of %d web applications, a page every 30 s in several windows, pages kept\n", kPages);
    waitMs((2 * kPages + 1) * 30 * 1000);
    int forward = 0; // the steps of the rotation: each brings a kept window forward
    QObject::connect(verbs, &Verbs::windowBroughtForward, &main, [&] { ++forward; });
    const Growth rotating = sampleFor(minutes, profile, server.serverPort(), "rotating");
    const int steps = forward;
    verbs->pauseRun();
    waitMs(5000);
    const Growth held = sampleFor(minutes, profile, server.serverPort(), "held (floor)");
    verbs->stopRun();

    std::printf("memory of the program and its page processes, growth as a straight line through a sample a minute\n");
    std::printf("%d kept windows brought forward while it rotated, %d while it was held\n", steps, forward - steps);
    std::printf("rotating  %ld -> %ld kB  %+8.1f MB/h  %+6.2f %%/h   target < 1 %%/h  %s\n", rotating.first,
                rotating.last, rotating.kbPerHour / 1024.0, rotating.percentPerHour(),
                rotating.percentPerHour() < 1.0 ? "ok" : "OVER");
    std::printf("held      %ld -> %ld kB  %+8.1f MB/h  %+6.2f %%/h   (floor)\n", held.first, held.last,
                held.kbPerHour / 1024.0, held.percentPerHour());
    std::printf("ratio of the rotating growth to the floor's: %s\n",
                std::abs(held.kbPerHour) > 1024 ? qPrintable(QString::number(rotating.kbPerHour / held.kbPerHour, 'f', 2))
                                                : "the floor does not grow (under 1 MB/h)");
    main.Form_Unload();
    return 0;
}
