// The Lists tab with a full list file (1001 records): loading it into the tree, saving the tree
// back, building a run list of 251 pages, and Timer1's tick while a run waits.
#include "BenchSupport.h"
#include "browser/BrowserEngine.h"
#include "mainwindow/Vantrel1.h"
#include "verbs/ListRun.h"
#include "core/Globals.h"
#include "core/ListFile.h"
#include "lists/ListsPanel.h"
#include "lists/ListsTree.h"
#include "widgets/KeyedTree.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>

namespace {
constexpr int kRuns = 15;
constexpr int kTicks = 20000;

} // namespace

int main(int argc, char* argv[])
{
    BrowserEngine::prepare();
    QApplication app(argc, argv);
    QTemporaryDir dir;
    qputenv("HOME", dir.path().toUtf8());
    Globals& g = globals();
    g.AppPath = dir.path();
    // 1001 records: a list of 251 pages, three of 248, and a short one to fill the file.
    int n = 0;
    auto record = [&](const QString& list, const QString& title, const QString& url) {
        g.ListName[n] = list;
        g.ListTitle[n] = title;
        g.ListUrl[n] = url;
        ++n;
    };
    record("Long", " ", " ");
    for (int i = 0; i < 251; ++i)
        record("Long", QStringLiteral("Long page %1").arg(i),
               QStringLiteral("https://long.example/%1").arg(i));
    for (int l = 0; l < 3; ++l) {
        record(QStringLiteral("List %1").arg(l), " ", " ");
        for (int i = 0; i < 248; ++i)
            record(QStringLiteral("List %1").arg(l), QStringLiteral("Page %1").arg(i),
                   QStringLiteral("https://www.example.org/%1/%2").arg(l).arg(i));
    }
    record("Short", " ", " ");
    while (n < kListCapacity)
        record("Short", QStringLiteral("Page %1").arg(n), QStringLiteral("https://short.example/%1").arg(n));
    SaveListFile(kListCapacity);

    Vantrel1 main;
    ListsTree* lists = main.listsPanel()->lists();
    const QString path = appFilePath(QString::fromLatin1(kListFileName));
    const double loadMs = medianMs(kRuns, [&] {
        LoadListFile(path);
        lists->LoadListTree();
    });
    const double saveMs = medianMs(kRuns, [&] { lists->SaveListBtn_Click(); });
    const double buildMs = medianMs(kRuns, [&] { main.BuildRunList(QStringLiteral("LONG")); });

    // A run that waits: one page opened, the interval not yet over (the first tick starts the wait).
    ListRun& run = main.listsPanel()->run();
    run.RunPos = 1;
    run.RunStart = 0;
    g.RunListRunning = true;
    g.RunInterval = 1000000;
    const double tickMs = medianMs(kRuns, [&] {
        for (int i = 0; i < kTicks; ++i)
            main.Timer1_Timer();
    });
    g.RunListRunning = false;

    std::printf("Lists: %d records in %d nodes; %d run pages; medians of %d runs\n", g.ListCount,
                lists->tree()->nodeCount(), run.RunCount(), kRuns);
    reportUnder("load the list file into the tree", loadMs, 50);
    reportUnder("save the tree to the list file", saveMs, 50);
    reportUnder("build a run list of 251 pages", buildMs, 50);
    reportUnder("timer tick while a run waits", tickMs / kTicks, 0.05);
    return 0;
}
