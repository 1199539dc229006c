// Timed browsing left alone, with the real engine on local pages that load slowly on purpose:
// (1) how long a blank or half-drawn page is seen when a run's window goes to its next page, with
//     "Show each page of a run only when it has loaded" and without it (the floor it is set
//     against: a target of 0 blank samples with it);
// (2) a soak: a looping run of 20 pages over 8 windows for N page switches (1000 unless given),
//     the run's clock moved on by the benchmark, with the main process's and the renderers'
//     memory after the first round and at the end, open file handles and threads before and
//     after, and the samples of each switching window that showed no page's colour. Once the
//     eight windows are open, a looping run goes round them and goes back to its first page at
//     every step, as the run does in the program: each switch loads that page again in the next
//     window.
#include "BenchSupport.h"
#include "ProcessFigures.h"
#include "LocalHttpServer.h"
#include "settings/VantrelConf.h"
#include "browser/BrowserEngine.h"
#include "browser/BrowserFrame.h"
#include "browser/BrowserProfile.h"
#include "surf/SurfPanel.h"
#include "mainwindow/Vantrel1.h"
#include "browser/WebBrowserWindow.h"
#include "verbs/WebForm1.h"
#include "core/Clock.h"
#include "core/Globals.h"
#include "core/ListFile.h"
#include "lists/ListsPanel.h"
#include "lists/RunList1.h"

#include <QApplication>
#include <QBuffer>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QSet>
#include <QTemporaryDir>
#include <QWebEngineView>

#include <array>
#include <fstream>
#include <numeric>
#include <sstream>
#include <unistd.h>

namespace {

constexpr int kPages = 20;
constexpr int kPageMs = 40;   // the page itself answers quickly...
constexpr int kPictureMs = 300; // ...its picture, which fills the window, comes late
constexpr int kBlankSwitches = 12;
constexpr int kSampleEveryMs = 4;

QColor pageColor(int i)
{
    return QColor::fromHsv((i * 360 / kPages) % 360, 200, 180);
}

// Pages alternate between two origins (two servers), as a rotation of dashboards from several
// sites does: the engine then has nothing of the page before to hold on screen.
std::array<LocalHttpServer*, 2> g_origins{};

QString g_profileFolder;

OpenFiles openFiles()
{
    return openFilesOf(g_profileFolder, {g_origins[0]->serverPort(), g_origins[1]->serverPort()});
}

QByteArray picture(const QColor& color)
{
    QImage image(16, 16, QImage::Format_RGB32);
    image.fill(color);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return bytes;
}

// Page i on one origin: white until its picture, which fills the window in the page's colour,
// has come. Seen before that, the page is half drawn.
void servePages(LocalHttpServer& origin)
{
    for (int i = 0; i < kPages; ++i) {
        const QString page = QStringLiteral("/p%1.html").arg(i);
        const QString image = QStringLiteral("/p%1.png").arg(i);
        origin.setPage(page, QStringLiteral("<html><head><title>Page %1</title></head>"
                                            "<body style='margin:0;background:#fff'><h1 style='position:absolute'>Page %1</h1><img src='%2' "
                                            "style='display:block;width:100vw;height:100vh'></body></html>")
                                 .arg(i)
                                 .arg(image)
                                 .toUtf8());
        origin.setDelay(page, kPageMs);
        origin.setResponse(image, picture(pageColor(i)), "Content-Type: image/png\r\nCache-Control: no-store\r\n");
        origin.setDelay(image, kPictureMs);
    }
}


QString pageUrl(int i)
{
    return g_origins[size_t(i % 2)]->url(QStringLiteral("/p%1.html").arg(i));
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

// Whether the window's middle shows one of the pages (and not a blank or half-drawn one).
bool showsAPage(BrowserFrame* frame)
{
    const QColor seen = shownColor(frame);
    for (int i = 0; i < kPages; ++i)
        if (near(seen, pageColor(i)))
            return true;
    return false;
}

BrowserFrame* frameOf(Vantrel1& main, int slot)
{
    auto* window = qobject_cast<WebBrowserWindow*>(main.webForm()->ie(slot));
    return window ? window->frame() : nullptr;
}

// Watches window `frame` go from page `from` to page `to`: the samples (one every few
// milliseconds) that showed neither, and their time.
struct Blank {
    int samples = 0;
    double ms = 0;
};
Blank watchSwitch(BrowserFrame* frame, int from, int to)
{
    Blank blank;
    QElapsedTimer timer;
    timer.start();
    qint64 last = 0;
    while (timer.elapsed() < 5000) {
        const QColor seen = shownColor(frame);
        const qint64 now = timer.elapsed();
        if (near(seen, pageColor(to)))
            break;
        if (!near(seen, pageColor(from))) {
            ++blank.samples;
            blank.ms += double(now - last);
        }
        last = now;
        waitMs(kSampleEveryMs);
    }
    return blank;
}

// One step of a one-window run in window 1, as the run makes it.
void runStepInWindowOne(Vantrel1& main, const QString& url)
{
    Globals& g = globals();
    g.RunListRunning = true;
    g.RunListMulti = false;
    g.NextRunItem = 1;
    g.WindowIndex = 1;
    g.CurrentUrl = url;
    main.webForm()->RunNavigating = true;
    main.NewBtnAction(false);
    main.webForm()->RunNavigating = false;
}

QByteArray soakList()
{
    QByteArray list = "SOAK[#@!] [#@!] \r\n";
    for (int i = 0; i < kPages; ++i)
        list += "SOAK[#@!]Page " + QByteArray::number(i) + "[#@!]" + pageUrl(i).toUtf8() + "\r\n";
    return list;
}

} // namespace

int main(int argc, char* argv[])
{
    std::setvbuf(stdout, nullptr, _IOLBF, 0); // each line as soon as it is measured
    int switches = 1000;
    for (int i = 1; i + 1 < argc; ++i)
        if (QByteArray(argv[i]) == "--switches")
            switches = QByteArray(argv[i + 1]).toInt();
    QTemporaryDir dir;
    g_profileFolder = dir.filePath("profile") + u'/';
    BrowserProfile::setStorageFolder(dir.filePath("profile"));
    BrowserEngine::prepare();
    QApplication app(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    ManualClock clock(QDateTime(QDate(2026, 5, 1), QTime(0, 0, 1)));
    Clock::setInstance(&clock);
    globals().AppPath = dir.path();
    BrowserEngine::setWindowMaker([](QObject* parent) { return new WebBrowserWindow(parent); });

    LocalHttpServer first;
    LocalHttpServer second;
    g_origins = {&first, &second};
    for (LocalHttpServer* origin : g_origins) {
        origin->start();
        servePages(*origin);
    }
    QFile lists(dir.filePath("DefaultList.NLS"));
    if (!lists.open(QIODevice::WriteOnly) || lists.write(soakList()) < 0)
        return 1;
    lists.close();
    LoadListFile(lists.fileName());

    Vantrel1 main;
    main.Form_Load();
    main.show();
    int completed = 0;
    QObject::connect(main.webForm(), &WebForm1::documentCompleted, &main, [&] { ++completed; });

    // (1) Blank time per switch, in one window, with and without showing pages only when loaded.
    globals().CurrentUrl = pageUrl(0);
    main.NewBtnAction(true);
    BrowserFrame* frame = frameOf(main, 1);
    frame->resize(480, 360);
    waitUntil([&] { return near(shownColor(frame), pageColor(0)); }, 10000);
    std::vector<double> samplesOn, samplesOff, msOn, msOff;
    int page = 0;
    for (bool on : {true, false}) {
        VantrelConf::setValue(VantrelConf::kShowWhenLoaded, on ? 1 : 0);
        for (int i = 0; i < kBlankSwitches; ++i) {
            const int next = (page + 1) % kPages;
            runStepInWindowOne(main, pageUrl(next));
            const Blank blank = watchSwitch(frame, page, next);
            (on ? samplesOn : samplesOff).push_back(blank.samples);
            (on ? msOn : msOff).push_back(blank.ms);
            page = next;
            waitMs(100);
        }
    }
    globals().RunListRunning = false;
    const double blankSamplesOn = std::accumulate(samplesOn.begin(), samplesOn.end(), 0.0);
    std::printf("blank or half-drawn page seen per switch (page after %d ms, its picture after %d ms), "
                "%d switches each, a sample every %d ms\n",
                kPageMs, kPictureMs, kBlankSwitches, kSampleEveryMs);
    std::printf("  shown only when loaded: median %.1f ms, %d samples in all   without it (floor): median "
                "%.1f ms, median %d samples   target 0 samples with it  %s\n",
                median(msOn), int(blankSamplesOn), median(msOff), int(median(samplesOff)),
                blankSamplesOn == 0 ? "ok" : "OVER");
    VantrelConf::setValue(VantrelConf::kShowWhenLoaded, 1);

    // (2) The soak: the list run from its dialog, looping over eight windows; each tick of the
    // program's timer comes after the run's interval on the run's clock.
    main.listsPanel()->RunListBtn_Click();
    RunList1* dialog = main.listsPanel()->runDialog();
    dialog->CMBLIST()->setCurrentIndex(dialog->CMBLIST()->findText(QStringLiteral("SOAK")));
    dialog->CMBTIME()->setCurrentIndex(0);
    dialog->CHKPAGE()->setChecked(true);
    dialog->CHKLOOP()->setChecked(true);
    dialog->GoBtn_Click();
    int stalls = 0;
    QSet<QString> addresses;
    std::vector<double> soakSamples;
    auto nextSwitch = [&] {
        const int before = completed;
        const QString opening = [&] {
            // Ticks 31 s apart open a page at every other tick of an interval of 30 s; the
            // switches fit in one day of the run's clock, which knows no midnight.
            for (int tick = 0; tick < 10; ++tick) {
                // A page opened: the next address, or (round the eight windows) the next window.
                const QString url = globals().CurrentUrl;
                const int window = globals().WindowIndex;
                main.Timer1_Timer();
                clock.advanceSeconds(31);
                if (globals().CurrentUrl != url || globals().WindowIndex != window)
                    return globals().CurrentUrl;
            }
            return QString();
        }();
        addresses.insert(opening);
        BrowserFrame* switching = frameOf(main, globals().WindowIndex);
        const bool watched = switching && !switching->view()->page()->url().isEmpty();
        int blank = 0;
        const bool done = waitUntil(
            [&] {
                if (watched && !showsAPage(switching))
                    ++blank;
                return completed > before && !switching->hasStagedPage();
            },
            15000);
        if (!done) {
            ++stalls;
            std::fprintf(stderr, "a switch to %s in window %d did not complete\n", qPrintable(opening),
                         globals().WindowIndex);
        }
        if (watched)
            soakSamples.push_back(blank);
    };
    for (int i = 0; i < kPages; ++i) // the first round opens the eight windows and settles them
        nextSwitch();
    waitMs(1000);
    const pid_t self = ::getpid();
    const long mainStart = statusField("/proc/self/status", "VmRSS");
    const long renderersStart = descendantsRssKb(self);
    const OpenFiles filesStart = openFiles();
    const long threadsStart = statusField("/proc/self/status", "Threads");
    soakSamples.clear();
    QStringList filesOnTheWay; // after each tenth of the switches
    addresses.clear();
    QElapsedTimer soak;
    soak.start();
    for (int i = 0; i < switches; ++i) {
        nextSwitch();
        if ((i + 1) % (std::max(switches, 10) / 10) == 0)
            filesOnTheWay.append(QStringLiteral("%1+%2").arg(openFiles().program).arg(openFiles().profile));
    }
    waitMs(2000);
    const long mainEnd = statusField("/proc/self/status", "VmRSS");
    const long renderersEnd = descendantsRssKb(self);
    const OpenFiles filesEnd = openFiles();
    const long threadsEnd = statusField("/proc/self/status", "Threads");
    const double growth = 100.0 * double(mainEnd + renderersEnd - mainStart - renderersStart) /
                          double(mainStart + renderersStart);
    const double soakBlank = std::accumulate(soakSamples.begin(), soakSamples.end(), 0.0);
    std::printf("soak: %d page switches of a looping run of %d pages over %d windows in %.0f s (%.0f ms a "
                "switch) to %d different addresses, %d switches without a completed document\n",
                switches, kPages, globals().WindowCount, double(soak.elapsed()) / 1000.0,
                double(soak.elapsed()) / std::max(switches, 1), int(addresses.size()), stalls);
    std::printf("  main process %ld -> %ld kB, renderers %ld -> %ld kB: growth %.1f %%   target < 5 %%  %s\n",
                mainStart, mainEnd, renderersStart, renderersEnd, growth, growth < 5.0 ? "ok" : "OVER");
    std::printf("  open files %d -> %d, threads %ld -> %ld   target no growth  %s\n", filesStart.program,
                filesEnd.program, threadsStart, threadsEnd,
                filesEnd.program <= filesStart.program && threadsEnd <= threadsStart ? "ok" : "OVER");
    std::printf("  (apart: the engine's databases in the profile folder %d -> %d; after each tenth, program + "
                "profile: %s; the benchmark's own servers' sockets left out)\n",
                filesStart.profile, filesEnd.profile, qPrintable(filesOnTheWay.join(u' ')));
    std::printf("  blank or half-drawn samples over %d watched switches: %d   target 0  %s\n",
                int(soakSamples.size()), int(soakBlank), soakBlank == 0 ? "ok" : "OVER");
    dialog->close();
    main.Form_Unload();
    Clock::setInstance(nullptr);
    return 0;
}
