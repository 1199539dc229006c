// From NewBtnAction to the document-complete event of a local page, in the first and in later
// windows, set against a bare QWebEngineView loading the same page in the same run.
#include "BenchSupport.h"
#include "browser/BrowserEngine.h"
#include "browser/BrowserProfile.h"
#include "mainwindow/Vantrel1.h"
#include "browser/WebBrowserWindow.h"
#include "verbs/WebForm1.h"
#include "core/Globals.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QWebEnginePage>
#include <QWebEngineProfile>
#include <QWebEngineView>

#include <vector>

namespace {

constexpr int kRounds = 9;

// Milliseconds since `timer` started, once `done` has been set.
double msUntil(QElapsedTimer& timer, const bool& done)
{
    waitUntil([&] { return done; }, 60000);
    return double(timer.nsecsElapsed()) / 1e6;
}

} // namespace

int main(int argc, char* argv[])
{
    QTemporaryDir dir;
    BrowserProfile::setStorageFolder(dir.filePath("profile"));
    BrowserEngine::prepare();
    QApplication app(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    globals().AppPath = dir.path();
    BrowserEngine::setWindowMaker([](QObject* parent) { return new WebBrowserWindow(parent); });

    const QString pagePath = dir.filePath("page.html");
    QFile page(pagePath);
    page.open(QIODevice::WriteOnly);
    page.write(
        "<html><head><title>Bench Page</title></head><body><h1>Bench</h1><p>A local page.</p></body></html>");
    page.close();
    const QString url = QUrl::fromLocalFile(pagePath).toString();

    std::vector<double> firstWindow, laterWindows, bareFirst, bareLater;
    for (int round = 0; round < kRounds; ++round) {
        // The program's path: NewBtnAction to the top document's completion, eight windows.
        Vantrel1 main;
        main.Form_Load();
        bool done = false;
        QObject::connect(main.webForm(), &WebForm1::documentCompleted, &main, [&] { done = true; });
        for (int w = 0; w < 8; ++w) {
            done = false;
            QElapsedTimer timer;
            timer.start();
            globals().CurrentUrl = url;
            main.NewBtnAction(true);
            (w == 0 ? firstWindow : laterWindows).push_back(msUntil(timer, done));
        }
        main.Form_Unload();

        // A bare view on the same profile, eight windows.
        std::vector<std::unique_ptr<QWebEngineView>> views;
        for (int w = 0; w < 8; ++w) {
            bool loaded = false;
            QElapsedTimer timer;
            timer.start();
            auto view = std::make_unique<QWebEngineView>();
            auto* bare = new QWebEnginePage(BrowserProfile::profile(), view.get());
            view->setPage(bare);
            QObject::connect(bare, &QWebEnginePage::loadFinished, view.get(), [&] { loaded = true; });
            view->show();
            bare->load(QUrl(url));
            (w == 0 ? bareFirst : bareLater).push_back(msUntil(timer, loaded));
            views.push_back(std::move(view));
        }
        views.clear();
        waitMs(200);
    }
    std::printf("NewBtnAction to document complete, medians of %d rounds (later: windows 2..8)\n", kRounds);
    report("first window", median(firstWindow), "bare QWebEngineView", median(bareFirst), 1.1);
    report("later windows", median(laterWindows), "bare QWebEngineView", median(bareLater), 1.1);
    return 0;
}
