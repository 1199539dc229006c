// Blank frames on the real screen while a list runs over several windows in theater view, with the
// real engine on local pages that build themselves with scripts as web applications do. Run it on
// an X display with a window manager, e.g.
//   xvfb-run -a -s "-screen 0 1280x900x24" sh -c 'openbox & sleep 1; ./bench_blankframes'
// The screen's middle is sampled 25 times a second from the moment of each step until the step's
// page is in view; a sample that shows no page (the desktop, an empty or white window) is a blank
// frame. Reported per kind of step, as medians and worst over the steps:
//   - new windows (the first round opens a window for each page),
//   - windows that show a page already (the next rounds go round them),
//   - kept windows brought forward ("Keep Pages Loaded"),
// each with "Show each page of a run only when it has loaded" on, and off: the floor it is set
// against, measured in the same run. Target: 0 blank frames at every step after the first.
#include "BenchSupport.h"
#include "EngineBench.h"
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
    return QColor::fromHsv((i * 360 / kPages) % 360, 190, 200);
}

// A page that is an empty shell until its script has built it, as applications of today's
// frameworks are: a header, a grid of cards and a wide band in the page's colour.
QByteArray appPage(int i)
{
    return QStringLiteral(
               "<!doctype html><html><head><title>App %1</title><style>body{margin:0;font:16px sans-serif}"
               ".band{position:fixed;left:20%;top:30%;width:60%;height:40%;background:%2}"
               ".card{display:inline-block;width:180px;height:120px;margin:8px;background:#eee}</style></head>"
               "<body><div id=app></div><script>"
               "document.addEventListener('DOMContentLoaded', function () {"
               "  var app = document.getElementById('app'), html = '<h1>Application %1</h1>';"
               "  for (var c = 0; c < 60; ++c) html += '<div class=card>Card ' + c + '</div>';"
               "  html += '<div class=band></div>';"
               "  app.innerHTML = html;"
               "});</script></body></html>")
        .arg(i)
        .arg(pageColor(i).name())
        .toUtf8();
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
    std::vector<double> on, off;
};

void print(const char* what, const Kind& kind)
{
    const auto worst = [](const std::vector<double>& v) { return v.empty() ? 0.0 : *std::max_element(v.begin(), v.end()); };
    std::printf("  %-34s shown when loaded: median %4.1f worst %4.1f   without (floor): median %4.1f worst %4.1f   "
                "target 0  %s\n",
                what, median(kind.on), worst(kind.on), median(kind.off), worst(kind.off), worst(kind.on) == 0 ? "ok" : "OVER");
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
    LocalHttpServer server;
    server.start();
    QList<QString> names{"Apps"}, titles{QString()}, urls{QString()};
    for (int i = 0; i < kPages; ++i) {
        const QString path = QStringLiteral("/app%1.html").arg(i);
        server.setPage(path, appPage(i));
        names << "Apps";
        titles << path;
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
            verbs->lists()->load({names, titles, urls}, int(names.size()));
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
    std::printf("blank frames per step, %d pages over windows in theater view, the screen sampled every %d ms\n",
                kPages, kSampleMs);
    print("a new window (first round)", fresh);
    print("a window that shows a page", reused);
    print("a kept window brought forward", kept);
    return 0;
}
