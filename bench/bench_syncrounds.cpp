// The Favorites kept in step across two machines through one shared bookmarks file.
//
// 1. Rounds: two scratch Favorites folders and one file, thousands of random edits on both sides in
//    turns (new shortcuts and folders, renames, moves, new addresses, deletions of shortcuts and of
//    whole folders, the same entry changed on both sides), the file cut in the middle of a write now
//    and then. After each turn both folders must hold the same tree, and no address made and not
//    deleted on purpose may be missing. The median time of a round is set beside the floor of a
//    plain walk that reads every shortcut of the same folder.
// 2. The big Favorites (7,500 folders, 30,000 shortcuts, as the Favorites benchmark lays them out):
//    the first round (every address read, the file written) beside the floor of reading every
//    shortcut file; the round that finds nothing changed (what runs every minute) beside the floor
//    of a walk that only looks at each entry.
#include "BenchSupport.h"

#include "../tests/support/TwoMachines.h"

#include <QCoreApplication>
#include <QDirIterator>
#include <QTemporaryDir>

#include <cstdio>

namespace {

// Every shortcut file of the folder opened and read: what no round can do without.
qint64 readEveryShortcut(const QString& root)
{
    qint64 bytes = 0;
    QDirIterator it(root, {QStringLiteral("*.url"), QStringLiteral("*.URL")}, QDir::Files, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        QFile file(it.next());
        if (file.open(QIODevice::ReadOnly))
            bytes += file.readAll().size();
    }
    return bytes;
}

// Every entry of the folder looked at, nothing read.
qint64 lookAtEveryEntry(const QString& root)
{
    qint64 count = 0;
    QDirIterator it(root, QDir::AllEntries | QDir::NoDotAndDotDot, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        it.next();
        count += it.fileInfo().size() >= 0 ? 1 : 0;
    }
    return count;
}

void makeBigFavorites(const QString& root)
{
    int files = 0;
    for (int a = 0; a < 25; ++a)
        for (int b = 0; b < 15; ++b)
            for (int c = 0; c < 20 && files < 30000; ++c) {
                const QString folder = QStringLiteral("%1/Topic %2/Sub %3/Leaf %4").arg(root).arg(a).arg(b).arg(c);
                QDir().mkpath(folder);
                for (int k = 0; k < 4 && files < 30000; ++k, ++files)
                    WriteShortcutFile(QStringLiteral("%1/Page %2.url").arg(folder).arg(files),
                                      QStringLiteral("https://www.site%1.example/page/%2").arg(files % 977).arg(files));
            }
}

int rounds(const QString& folder, int turns)
{
    qputenv("XDG_DATA_HOME", (folder + QStringLiteral("/data")).toUtf8());
    QDir().mkpath(folder + QStringLiteral("/data"));
    TwoMachines two(folder, 20261126);
    two.settle();
    std::vector<double> roundMs, floorMs;
    int edits = 0, copies = 0, cut = 0, refused = 0;
    for (int turn = 0; turn < turns; ++turn) {
        for (int side = 0; side < 2; ++side) {
            const int n = 1 + int(two.random().bounded(8));
            for (int e = 0; e < n; ++e, ++edits)
                two.edit(side);
            if (turn % 9 == 4 && side == 0) {
                // The sync program caught in the middle of its write: the round must leave it be.
                QFile file(two.file());
                file.open(QIODevice::ReadOnly);
                const QByteArray whole = file.readAll();
                file.close();
                file.open(QIODevice::WriteOnly);
                file.write(whole.left(whole.size() * int(1 + two.random().bounded(9)) / 10));
                file.close();
                ++cut;
                refused += two.round(side, true).problem.isEmpty() ? 0 : 1;
                file.open(QIODevice::WriteOnly);
                file.write(whole);
                file.close();
            }
            QElapsedTimer timer;
            timer.start();
            const SyncRound::Outcome outcome = two.round(side);
            roundMs.push_back(double(timer.nsecsElapsed()) / 1e6);
            copies += int(outcome.copies.size());
            if (!outcome.problem.isEmpty() || !outcome.failed.isEmpty()) {
                std::printf("FAILED at turn %d: %s\n", turn, qPrintable(outcome.logText(two.file())));
                return 1;
            }
            timer.restart();
            readEveryShortcut(two.machine(side).favorites);
            floorMs.push_back(double(timer.nsecsElapsed()) / 1e6);
        }
        if (!two.settle()) {
            std::printf("FAILED: the machines did not settle at turn %d (%s)\n", turn, qPrintable(two.lastSettle()));
            return 1;
        }
        const TreeMerge::Tree desk = two.tree(0);
        if (desk != two.tree(1) || !TreeMerge::isWhole(desk)) {
            std::printf("FAILED: the two folders differ after turn %d\n", turn);
            return 1;
        }
        const QSet<QString> missing = two.alive() - TwoMachines::addresses(desk);
        if (!missing.isEmpty()) {
            std::printf("FAILED: %lld addresses vanished after turn %d, e.g. %s\n", qint64(missing.size()), turn,
                        qPrintable(*missing.cbegin()));
            return 1;
        }
    }
    const TreeMerge::Tree last = two.tree(0);
    std::printf("%d turns, %d random edits on two machines, the file cut mid-write %d times (refused %d), "
                "%d entries kept twice; %lld entries at the end, the same on both, none lost\n",
                turns, edits, cut, refused, copies, qint64(last.size()));
    report("a round", median(roundMs), "reading every shortcut", median(floorMs), 20.0);
    return refused == cut ? 0 : 1;
}

void bigFavorites(const QString& folder)
{
    qputenv("XDG_DATA_HOME", (folder + QStringLiteral("/data")).toUtf8());
    const QString root = folder + QStringLiteral("/Favorites");
    makeBigFavorites(root);
    const QString file = folder + QStringLiteral("/bookmarks.xbel");
    SyncState::State state;
    const double first = medianMs(3, [&] { SyncRound::run(root, file, QStringLiteral("desk"), &state); },
                                  [&] { state = {}; QFile::remove(file); });
    const double readAll = medianMs(3, [&] { readEveryShortcut(root); });
    SyncRound::run(root, file, QStringLiteral("desk"), &state);
    const double quiet = medianMs(5, [&] { SyncRound::run(root, file, QStringLiteral("desk"), &state); });
    const double look = medianMs(5, [&] { lookAtEveryEntry(root); });
    std::printf("Big Favorites: %lld entries, the file %lld KiB\n", qint64(state.base.size()),
                QFileInfo(file).size() / 1024);
    report("first round", first, "reading every shortcut", readAll, 3.0);
    report("round, nothing changed", quiet, "looking at each entry", look, 3.0);
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    const int turns = argc > 1 ? QByteArray(argv[1]).toInt() : 400;
    QTemporaryDir dir;
    std::printf("Favorites kept in step through one shared file, medians\n");
    const int failed = rounds(dir.filePath(QStringLiteral("rounds")), turns);
    bigFavorites(dir.filePath(QStringLiteral("big")));
    return failed;
}
