// The History tab at full size: 10001 CreateNode3 calls into an empty tree (each must take constant
// time), saving the full tree, and building it again at start-up from the file.
#include "BenchSupport.h"
#include "browser/BrowserEngine.h"
#include "mainwindow/Vantrel1.h"
#include "core/Globals.h"
#include "core/HistoryFile.h"
#include "core/ListFile.h"
#include "history/HistoryPanel.h"
#include "history/HistoryTree.h"
#include "widgets/KeyedTree.h"

#include <QApplication>
#include <QTemporaryDir>

namespace {
constexpr int kRuns = 9;
constexpr int kPages = kHistoryCapacity - 8; // with the eight groups, a full file

} // namespace

int main(int argc, char* argv[])
{
    BrowserEngine::prepare();
    QApplication app(argc, argv);
    QTemporaryDir dir;
    qputenv("HOME", dir.path().toUtf8());
    Globals& g = globals();
    g.AppPath = dir.path();
    Vantrel1 main;
    HistoryTree* history = main.historyPanel()->history();
    KeyedTree* tree = history->tree();

    QStringList urls;
    for (int i = 0; i < kPages; ++i)
        urls << QStringLiteral("https://www.example.org/section/%1/page%2.html").arg(i % 97).arg(i);
    auto fill = [&](int count) {
        for (int i = 0; i < count; ++i) {
            g.CurrentUrl = urls[i];
            g.CurrentTitle = QStringLiteral("Visited page %1").arg(i);
            history->CreateNode3(QStringLiteral("Internet Explorer %1").arg(i % 8 + 1));
        }
    };
    auto fresh = [&] {
        tree->clearNodes();
        history->CreateHistoryRoots();
    };
    const double addMs = medianMs(
        kRuns, [&] { fill(kPages); }, fresh);
    // Constant time per call: the last thousand cost no more than the first thousand.
    const double firstMs = medianMs(
        kRuns, [&] { fill(1000); }, fresh);
    double lastMs = 0;
    {
        std::vector<double> times;
        for (int r = 0; r < kRuns; ++r) {
            fresh();
            fill(kPages - 1000);
            QElapsedTimer t;
            t.start();
            for (int i = kPages - 1000; i < kPages; ++i) {
                g.CurrentUrl = urls[i];
                g.CurrentTitle = QStringLiteral("Visited page %1").arg(i);
                history->CreateNode3(QStringLiteral("Internet Explorer %1").arg(i % 8 + 1));
            }
            times.push_back(t.nsecsElapsed() / 1e6);
        }
        std::sort(times.begin(), times.end());
        lastMs = times[times.size() / 2];
    }
    fresh();
    fill(kPages);
    const double saveMs = medianMs(kRuns, [&] { history->SaveHistBtn_Click(); });
    const QString list = appFilePath(QString::fromLatin1(kListFileName));
    const QString file = appFilePath(QString::fromLatin1(kHistoryFileName));
    const double loadMs = medianMs(kRuns, [&] {
        LoadListFile(list);
        LoadHistoryFile(file);
        fresh();
        history->LoadHistoryTree();
    });
    std::printf("History: %d nodes, %d records; medians of %d runs\n", tree->nodeCount(), g.HistoryCount,
                kRuns);
    reportUnder("10001 CreateNode3 into an empty tree", addMs, 100);
    std::printf("   first 1000 calls %.3f ms, last 1000 calls %.3f ms (ratio %.2f)\n", firstMs, lastMs,
                lastMs / firstMs);
    reportUnder("save the full tree", saveMs, 100);
    reportUnder("load it at start-up", loadMs, 100);
    return 0;
}
