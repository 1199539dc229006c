// Blank frames on the real screen while a list runs over several windows in theater view, with the
// real engine on local web applications built with a real framework (bench/AppPages.h: Vue, from
// Debian's libjs-vue), beside Debian's Chromium in kiosk mode on the same pages and screen, driven
// over its DevTools pipe as kiosk set-ups drive it. Run it on an X display with a window manager:
//   xvfb-run -a -s "-screen 0 1280x900x24" sh -c 'openbox & sleep 1; ./bench_blankframes'
// The screen's middle is sampled 25 times a second from the moment of each step until the step's
// page is in view; a sample that shows no page (the desktop, an empty or white window) is a blank
// frame. Reported per kind of step, as medians and worst over the steps:
//   - new windows (the first round opens a window for each page; Chromium: a new tab each),
//   - windows that show a page already (the next rounds go round them; Chromium: its one tab
//     navigated from page to page),
//   - kept windows brought forward ("Keep Pages Loaded"; Chromium: its tabs activated in turn),
// for Vantrel with "Show each page of a run only when it has loaded" on, and off (the floor it is
// set against), and for Chromium, all measured in the same run. Target: 0 blank frames at every
// step after the first.
#include "AppPages.h"
#include "BenchSupport.h"
#include "ChromiumKiosk.h"
#include "EngineBench.h"
#include "ListRecords.h"
#include "LocalHttpServer.h"
#include "browser/BrowserEngine.h"
#include "browser/BrowserProfile.h"
#include "browser/WebBrowserWindow.h"
#include "core/Globals.h"
#include "mainwindow/Vantrel1.h"
#include "settings/VantrelConf.h"
#include "verbs/ListsModel.h"
#include "verbs/Verbs.h"

#include <QApplication>
#include <QGuiApplication>
#include <QPixmap>
#include <QScreen>
#include <QTemporaryDir>

namespace {

constexpr int kPages = 8;
constexpr int kSampleMs = 40; // 25 a second

QColor pageColor(int i)
{
    return AppPages::color(i, kPages);
}

QColor screenMiddle()
{
    QScreen* screen = QGuiApplication::primaryScreen();
    const QRect r = screen->geometry();
    const QImage image = screen->grabWindow(0, r.center().x() - 2, r.center().y() - 2, 4, 4).toImage();
    return image.isNull() ? QColor() : image.pixelColor(1, 1);
}

bool near(const QColor& a, const QColor& b)
{
    return std::abs(a.red() - b.red()) < 24 && std::abs(a.green() - b.green()) < 24 &&
           std::abs(a.blue() - b.blue()) < 24;
}

bool showsAPage(const QColor& seen)
{
    for (int i = 0; i < kPages; ++i)
        if (near(seen, pageColor(i)))
            return true;
    return false;
}

// Samples the screen from now until page `to` is in view (at most 4 s): the samples that showed no
// page at all.
int blankFramesUntil(int to)
{
    int blank = 0;
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < 4000) {
        const QColor seen = screenMiddle();
        if (near(seen, pageColor(to)))
            break;
        if (!showsAPage(seen))
            ++blank;
        waitMs(kSampleMs);
    }
    return blank;
}

struct Kind
{
    std::vector<double> on, off, chromium;
};

double worst(const std::vector<double>& v)
{
    return v.empty() ? 0.0 : *std::max_element(v.begin(), v.end());
}

void print(const char* what, const Kind& kind)
{
    std::printf("  %-30s %5.1f %5.1f      %5.1f %5.1f      ", what, median(kind.on), worst(kind.on), median(kind.off),
                worst(kind.off));
    if (kind.chromium.empty())
        std::printf("   -     -   ");
    else
        std::printf("%5.1f %5.1f", median(kind.chromium), worst(kind.chromium));
    std::printf("     target 0  %s\n", worst(kind.on) == 0 ? "ok" : "OVER");
}

// Chromium in kiosk mode on the same pages: one tab navigated round them, then a new tab for each,
// then its tabs activated in turn. False when Chromium is not there or does not answer.
bool measureChromium(const QStringList& urls, Kind& fresh, Kind& reused, Kind& kept)
{
    ChromiumKiosk chromium;
    if (!chromium.start(urls[0]))
        return false;
    if (!waitUntil([] { return near(screenMiddle(), pageColor(0)); }, 20000))
        return false;
    const QStringList tabs = chromium.pageTargets();
    if (tabs.isEmpty())
        return false;
    const QString session = chromium.attach(tabs.first());
    for (int step = 1; step < 3 * kPages; ++step) {
        const int page = step % kPages;
        chromium.send("Page.navigate", {{"url", urls[page]}}, session);
        const int blank = blankFramesUntil(page);
        if (step >= kPages)
            reused.chromium.push_back(blank);
        waitMs(400);
    }
    QList<int> asked;
    for (int page = 0; page < kPages; ++page) {
        asked << chromium.send("Target.createTarget", {{"url", urls[page]}});
        fresh.chromium.push_back(blankFramesUntil(page));
        waitMs(400);
    }
    QStringList own;
    for (int id : asked)
        own << chromium.answer(id).value("targetId").toString();
    for (int step = 0; step < 2 * kPages; ++step) {
        const int page = (step + 1) % kPages;
        chromium.send("Target.activateTarget", {{"targetId", own[page]}});
        kept.chromium.push_back(blankFramesUntil(page));
        waitMs(400);
    }
    return true;
}

} // namespace

int main(int argc, char* argv[])
{
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    EngineBench engine;
    QApplication app(argc, argv);
    if (QGuiApplication::platformName() != u"xcb") {
        std::fprintf(stderr, "bench_blankframes samples a real screen: run it on an X display\n");
        return 2;
    }
    engine.ready();
    const QByteArray vue = AppPages::vue();
    if (vue.isEmpty()) {
        std::fprintf(stderr, "bench_blankframes builds its pages with %s: install Debian's libjs-vue\n",
                     qPrintable(AppPages::vueFile()));
        return 2;
    }
    LocalHttpServer server;
    server.start();
    server.setResponse("/vue.min.js", vue, "Content-Type: text/javascript\r\n");
    ListState apps{"Apps", {}};
    QStringList urls; // the pages' addresses, in the list's order
    for (int i = 0; i < kPages; ++i) {
        const QString path = QStringLiteral("/app%1.html").arg(i);
        server.setPage(path, AppPages::shell(i, kPages));
        server.setResponse(QStringLiteral("/data%1.json").arg(i), AppPages::data(i),
                           "Content-Type: application/json\r\n");
        apps.pages.append({path, server.url(path)});
        urls << server.url(path);
    }

    Kind fresh, reused, kept;
    for (bool on : {true, false}) {
        VantrelConf::setValue(VantrelConf::kShowWhenLoaded, on ? 1 : 0);
        for (bool keep : {false, true}) {
            Vantrel1 main;
            main.Form_Load();
            globals().OptTheater = true;
            main.show();
            Verbs* verbs = main.verbs();
            loadLists(verbs->lists(), {apps});
            verbs->runList({"Apps", 600, true, true, keep}, Caller::Outside);
            verbs->tick(); // the first page
            waitMs(1500);
            for (int step = 1; step < 3 * kPages; ++step) {
                verbs->nextPage();
                const int page = step % kPages;
                const int blank = blankFramesUntil(page);
                const bool firstRound = step < kPages;
                if (firstRound && !keep)
                    (on ? fresh.on : fresh.off).push_back(blank);
                else if (!firstRound && !keep)
                    (on ? reused.on : reused.off).push_back(blank);
                else if (!firstRound && keep)
                    (on ? kept.on : kept.off).push_back(blank);
                waitMs(400);
            }
            verbs->stopRun();
            main.Form_Unload();
            waitMs(500);
        }
    }
    const bool chromium = measureChromium(urls, fresh, reused, kept);
    if (!chromium)
        std::fprintf(stderr, "Chromium (%s) did not start or answer: its column stays empty\n",
                     qPrintable(ChromiumKiosk::program()));
    std::printf("blank frames per step, %d framework pages, the screen sampled every %d ms: median and worst\n",
                kPages, kSampleMs);
    std::printf("  %-30s %-16s %-16s %-16s\n", "", "shown when loaded", "without (floor)", "Chromium kiosk");
    print("a new window (first round)", fresh);
    print("a window that shows a page", reused);
    print("a kept window brought forward", kept);
    return 0;
}
