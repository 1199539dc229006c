// Timed browsing left alone, with the real engine on local pages that load slowly on purpose:
// (1) how long a blank or half-drawn page is seen when a run's window goes to its next page, with
//     "Show each page of a run only when it has loaded" and without it (the floor it is set
//     against: a target of 0 blank samples with it);
// (2) a soak: a looping run of 20 pages over 8 windows for N page switches (1000 unless given),
//     with the main process's and the renderers' memory at the start (after the first round) and
//     the end, open file handles and threads before and after.
#include "BenchSupport.h"
#include "LocalHttpServer.h"
#include "additions/VantrelConf.h"
#include "browser/BrowserEngine.h"
#include "browser/BrowserFrame.h"
#include "browser/BrowserProfile.h"
#include "browser/SurfPanel.h"
#include "browser/Vantrel1.h"
#include "browser/WebBrowserWindow.h"
#include "browser/WebForm1.h"
#include "core/Globals.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QTemporaryDir>
#include <QTimer>
#include <QWebEngineView>

#include <fstream>
#include <numeric>
#include <sstream>
#include <unistd.h>
#include <vector>

namespace {

constexpr int kPages = 20;
constexpr int kSlowMs = 300;
constexpr int kBlankSwitches = 12;

QColor pageColor(int i)
{
    return QColor::fromHsv((i * 360 / kPages) % 360, 200, 180);
}

void wait(int ms)
{
    QEventLoop loop;
    QTimer::singleShot(ms, &loop, &QEventLoop::quit);
    loop.exec();
}

template <typename Done> bool waitFor(Done done, int timeoutMs)
{
    QElapsedTimer timer;
    timer.start();
    while (!done()) {
        if (timer.elapsed() > timeoutMs)
            return false;
        wait(2);
    }
    return true;
}

long statusField(const std::string& path, const std::string& field)
{
    std::ifstream status(path);
    std::string line;
    while (std::getline(status, line))
        if (line.rfind(field + ":", 0) == 0)
            return std::stol(line.substr(field.size() + 1));
    return 0;
}

// The resident memory (kB) of the processes below `root` (the engine's helpers and renderers).
long descendantsRssKb(pid_t root)
{
    long total = 0;
    QList<pid_t> parents{root};
    for (int i = 0; i < parents.size(); ++i) {
        for (const QString& entry : QDir("/proc").entryList(QDir::Dirs)) {
            bool ok = false;
            const pid_t pid = entry.toInt(&ok);
            if (!ok)
                continue;
            std::ifstream stat("/proc/" + entry.toStdString() + "/stat");
            std::string line;
            std::getline(stat, line);
            const size_t close = line.rfind(')');
            if (close == std::string::npos)
                continue;
            std::istringstream rest(line.substr(close + 2));
            std::string state;
            pid_t parent = 0;
            rest >> state >> parent;
            if (parent == parents[i]) {
                parents.append(pid);
                total += statusField("/proc/" + entry.toStdString() + "/status", "VmRSS");
            }
        }
    }
    return total;
}

int openFiles()
{
    return int(
        QDir("/proc/self/fd").entryList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::System).size());
}

// Pages alternate between two origins (two servers), as a rotation of dashboards from several
// sites does: the engine then has nothing of the page before to hold on screen.
LocalHttpServer* g_otherOrigin = nullptr;

QString pageUrl(const LocalHttpServer& server, int i)
{
    return (i % 2 && g_otherOrigin ? *g_otherOrigin : server).url(QStringLiteral("/p%1.html").arg(i));
}

// One step of a run in window `slot`: the program's own path for it.
void runStep(Vantrel1& main, int slot, const QString& url)
{
    // The step of a one-window run, pointed at each of the eight windows in turn: the window goes
    // from the page it shows to the next one.
    Globals& g = globals();
    g.RunListMulti = false;
    g.NextRunItem = slot;
    g.WindowIndex = slot;
    g.CurrentUrl = url;
    main.surf()->RunNavigating = true;
    main.NewBtnAction(false);
    main.surf()->RunNavigating = false;
}

// What the window shows in its middle: the colour of a page, or something else (blank, half-drawn).
QColor shownColor(BrowserFrame* frame)
{
    QWidget* area = frame->findChild<QWidget*>(QStringLiteral("PageArea"));
    const QImage image = area->grab(QRect(area->width() / 2 - 2, area->height() / 2 - 2, 4, 4)).toImage();
    return image.isNull() ? QColor() : image.pixelColor(1, 1);
}

bool near(const QColor& a, const QColor& b)
{
    return std::abs(a.red() - b.red()) < 24 && std::abs(a.green() - b.green()) < 24 &&
           std::abs(a.blue() - b.blue()) < 24;
}

// Blank samples and their time while window 1 goes from page `from` to page `to`.
std::pair<int, double> blankWhileSwitching(Vantrel1& main, int from, int to, const LocalHttpServer& server)
{
    BrowserFrame* frame = qobject_cast<WebBrowserWindow*>(main.webForm()->ie(1))->frame();
    globals().WindowIndex = 1;
    globals().RunListMulti = false;
    globals().CurrentUrl = pageUrl(server, to);
    main.surf()->RunNavigating = true;
    main.NewBtnAction(false);
    main.surf()->RunNavigating = false;
    int blank = 0;
    QElapsedTimer timer;
    timer.start();
    double blankMs = 0;
    qint64 last = 0;
    while (timer.elapsed() < 5000) {
        const QColor seen = shownColor(frame);
        const qint64 now = timer.elapsed();
        if (near(seen, pageColor(to)))
            break;
        if (!near(seen, pageColor(from))) {
            ++blank;
            blankMs += double(now - last);
        }
        last = now;
        wait(4);
    }
    return {blank, blankMs};
}

} // namespace

int main(int argc, char* argv[])
{
    int switches = 1000;
    for (int i = 1; i + 1 < argc; ++i)
        if (QByteArray(argv[i]) == "--switches")
            switches = QByteArray(argv[i + 1]).toInt();
    QTemporaryDir dir;
    BrowserProfile::setStorageFolder(dir.filePath("profile"));
    BrowserEngine::prepare();
    QApplication app(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    globals().AppPath = dir.path();
    BrowserEngine::setWindowMaker([](QObject* parent) { return new WebBrowserWindow(parent); });

    LocalHttpServer server;
    server.start();
    LocalHttpServer other;
    other.start();
    g_otherOrigin = &other;
    for (LocalHttpServer* origin : {&server, &other})
        for (int i = 0; i < kPages; ++i) {
            origin->setPage(
                QStringLiteral("/p%1.html").arg(i),
                QStringLiteral(
                    "<html><head><title>Page %1</title></head><body style='margin:0;background:%2'>"
                    "<h1>Page %1</h1></body></html>")
                    .arg(i)
                    .arg(pageColor(i).name())
                    .toUtf8());
            origin->setDelay(QStringLiteral("/p%1.html").arg(i), kSlowMs);
        }

    Vantrel1 main;
    main.Form_Load();
    int completed = 0;
    QObject::connect(main.webForm(), &WebForm1::documentCompleted, &main, [&] { ++completed; });

    // (1) Blank time per switch, in one window, with and without showing pages only when loaded.
    globals().CurrentUrl = pageUrl(server, 0);
    main.NewBtnAction(true);
    auto* first = qobject_cast<WebBrowserWindow*>(main.webForm()->ie(1));
    first->frame()->resize(480, 360);
    waitFor([&] { return near(shownColor(first->frame()), pageColor(0)); }, 10000);
    globals().RunListRunning = true;
    std::vector<double> blankOn, blankOff;
    std::vector<double> samplesOn, samplesOff;
    int page = 0;
    for (bool on : {true, false}) {
        VantrelConf::setValue(VantrelConf::kShowWhenLoaded, on ? 1 : 0);
        for (int i = 0; i < kBlankSwitches; ++i) {
            const int next = (page + 1) % kPages;
            const auto [samples, ms] = blankWhileSwitching(main, page, next, server);
            (on ? blankOn : blankOff).push_back(ms);
            (on ? samplesOn : samplesOff).push_back(samples);
            page = next;
            wait(100);
        }
    }
    std::sort(samplesOn.begin(), samplesOn.end());
    std::sort(samplesOff.begin(), samplesOff.end());
    const double blankOnMs = *std::max_element(blankOn.begin(), blankOn.end());
    std::sort(blankOff.begin(), blankOff.end());
    std::printf("blank or half-drawn page seen per switch (pages answering after %d ms), %d switches each\n",
                kSlowMs, kBlankSwitches);
    std::printf(
        "  shown only when loaded: worst %.1f ms, %d blank samples in all; without it: median %.1f ms, "
        "median %d samples   target 0 blank samples with it  %s\n",
        blankOnMs, int(std::accumulate(samplesOn.begin(), samplesOn.end(), 0.0)),
        blankOff[blankOff.size() / 2], int(samplesOff[samplesOff.size() / 2]),
        std::accumulate(samplesOn.begin(), samplesOn.end(), 0.0) == 0 ? "ok" : "OVER");
    VantrelConf::setValue(VantrelConf::kShowWhenLoaded, 1);

    // (2) The soak: a looping run over eight windows, page after page.
    for (int w = 2; w <= 8; ++w) {
        globals().RunListRunning = false;
        globals().CurrentUrl = pageUrl(server, w);
        main.NewBtnAction(true);
    }
    globals().RunListRunning = true;
    auto soakStep = [&](int i) {
        const int before = completed;
        runStep(main, i % 8 + 1, pageUrl(server, i % kPages));
        if (!waitFor([&] { return completed > before; }, 15000))
            std::fprintf(stderr, "switch %d: no document completed (window %d of %d)\n", i,
                         globals().WindowIndex, globals().WindowCount);
    };
    for (int i = 0; i < kPages; ++i) // the first round settles every window
        soakStep(i);
    wait(1000);
    const pid_t self = ::getpid();
    const long mainStart = statusField("/proc/self/status", "VmRSS");
    const long renderersStart = descendantsRssKb(self);
    const int filesStart = openFiles();
    const long threadsStart = statusField("/proc/self/status", "Threads");
    QElapsedTimer soak;
    soak.start();
    for (int i = 0; i < switches; ++i)
        soakStep(kPages + i);
    wait(2000);
    const long mainEnd = statusField("/proc/self/status", "VmRSS");
    const long renderersEnd = descendantsRssKb(self);
    const int filesEnd = openFiles();
    const long threadsEnd = statusField("/proc/self/status", "Threads");
    const double growth = 100.0 * double(mainEnd + renderersEnd - mainStart - renderersStart) /
                          double(mainStart + renderersStart);
    std::printf("soak: %d page switches over 8 windows in %.0f s (%.0f ms a switch)\n", switches,
                double(soak.elapsed()) / 1000.0, double(soak.elapsed()) / switches);
    std::printf("  main process %ld -> %ld kB, renderers %ld -> %ld kB: growth %.1f %%   target < 5 %%  %s\n",
                mainStart, mainEnd, renderersStart, renderersEnd, growth, growth < 5.0 ? "ok" : "OVER");
    std::printf("  open files %d -> %d, threads %ld -> %ld   target no growth  %s\n", filesStart, filesEnd,
                threadsStart, threadsEnd,
                filesEnd <= filesStart && threadsEnd <= threadsStart ? "ok" : "OVER");
    globals().RunListRunning = false;
    main.Form_Unload();
    return 0;
}
