// Building the Favorites tree from a generated folder of 7500 folders (three levels) and 30000
// shortcut files, nodes included, set against `find FOLDER -iname '*.url'` on the same folder with
// a warm cache; and the peak memory of the process.
#include "BenchSupport.h"
#include "browser/BrowserEngine.h"
#include "mainwindow/Vantrel1.h"
#include "core/Globals.h"
#include "favorites/FavoritesTree.h"
#include "widgets/KeyedTree.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <sys/resource.h>

namespace {

constexpr int kRuns = 7;

void generate(const QString& root)
{
    // 25 first-level folders, each with 15 second-level ones, each with 19 third-level ones:
    // 25 + 375 + 7125 = 7525 folders, of which the walk holds 7500; four shortcuts in each.
    const QByteArray body = "[InternetShortcut]\r\nURL=https://www.example.org/page\r\n";
    int files = 0;
    auto shortcuts = [&](const QString& folder) {
        for (int k = 0; k < 4 && files < 30000; ++k, ++files) {
            QFile f(QStringLiteral("%1/Page %2.url").arg(folder).arg(k));
            f.open(QIODevice::WriteOnly);
            f.write(body);
        }
    };
    for (int a = 0; a < 25; ++a) {
        const QString first = QStringLiteral("%1/Topic %2").arg(root).arg(a);
        QDir().mkpath(first);
        shortcuts(first);
        for (int b = 0; b < 15; ++b) {
            const QString second = QStringLiteral("%1/Sub %2").arg(first).arg(b);
            QDir().mkpath(second);
            shortcuts(second);
            for (int c = 0; c < 19; ++c) {
                const QString third = QStringLiteral("%1/Leaf %2").arg(second).arg(c);
                QDir().mkpath(third);
                shortcuts(third);
            }
        }
    }
}

long peakKilobytes()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

} // namespace

int main(int argc, char* argv[])
{
    BrowserEngine::prepare();
    QApplication app(argc, argv);
    QTemporaryDir dir;
    const QString root = dir.filePath("Favorites");
    QDir().mkpath(root);
    generate(root);
    qputenv("HOME", dir.path().toUtf8());
    globals().AppPath = dir.path();

    Vantrel1 main;
    globals().FavoritesPath = root;
    const long before = peakKilobytes();
    main.favorites()->RefreshBtn_Click(); // warms the cache
    const double buildMs = medianMs(kRuns, [&] { main.favorites()->RefreshBtn_Click(); });
    const long after = peakKilobytes();
    const int nodes = main.SSTree1()->nodeCount();

    const double findMs = medianMs(kRuns, [&] {
        QProcess find;
        find.setStandardOutputFile(QProcess::nullDevice());
        find.start(QStringLiteral("find"), {root, QStringLiteral("-iname"), QStringLiteral("*.url")});
        find.waitForFinished(-1);
    });
    std::printf("Favorites tree of %d nodes (7500 folders, 30000 shortcuts), medians of %d runs\n", nodes,
                kRuns);
    report("build the tree", buildMs, "find -iname '*.url'", findMs, 3.0);
    std::printf("peak memory: %.1f MiB before the first build, %.1f MiB after (%.1f MiB for the tree)\n",
                before / 1024.0, after / 1024.0, (after - before) / 1024.0);
    return nodes > 0 ? 0 : 1;
}
