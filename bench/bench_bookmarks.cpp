// Bookmarks in and out of the Favorites folder: 10,000 bookmarks in 500 folders read from an HTML
// bookmarks file and written as shortcuts, set against writing the same number of shortcut files in
// a plain loop with the program's own writer (each file replaced atomically and synced, as every
// save is); and the folder taken out again as an HTML bookmarks file, set against reading the same
// files' bytes in a plain loop.
#include "BenchSupport.h"
#include "bookmarks/FavoritesExport.h"
#include "bookmarks/FavoritesImport.h"
#include "bookmarks/NetscapeBookmarks.h"
#include "shortcuts/ShortcutFile.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QTemporaryDir>

int main()
{
    constexpr int kFolders = 500;
    constexpr int kPerFolder = 20;
    constexpr int kRuns = 5;
    BookmarkNode root = BookmarkNode::folder({});
    for (int f = 0; f < kFolders; ++f) {
        BookmarkNode folder = BookmarkNode::folder(QStringLiteral("Folder %1").arg(f));
        for (int b = 0; b < kPerFolder; ++b)
            folder.children << BookmarkNode::link(QStringLiteral("Bookmark %1 of folder %2").arg(b).arg(f),
                                                  QStringLiteral("https://site%1.example/page/%2?x=1&y=2").arg(f).arg(b));
        root.children << folder;
    }
    const QByteArray html = NetscapeBookmarks::write(root);

    QTemporaryDir dir;
    int run = 0;
    QString target;
    auto freshFolder = [&] {
        target = dir.filePath(QStringLiteral("import%1").arg(++run));
        QDir().mkpath(target);
    };
    const double import = medianMs(
        kRuns,
        [&] {
            const BookmarkRead read = NetscapeBookmarks::read(html);
            FavoritesImport::importInto(read.root, target + u'/');
        },
        freshFolder);
    const double plainWrite = medianMs(
        kRuns,
        [&] {
            for (int f = 0; f < kFolders; ++f)
                for (int b = 0; b < kPerFolder; ++b)
                    WriteShortcutFile(target + QStringLiteral("/Folder %1/Bookmark %2.URL").arg(f).arg(b),
                                      QStringLiteral("https://site%1.example/page/%2?x=1&y=2").arg(f).arg(b));
        },
        [&] {
            freshFolder();
            for (int f = 0; f < kFolders; ++f)
                QDir().mkpath(target + QStringLiteral("/Folder %1").arg(f));
        });

    const QString imported = dir.filePath(QStringLiteral("import1"));
    const double exportMs = medianMs(kRuns, [&] {
        const QByteArray out = NetscapeBookmarks::write(FavoritesExport::treeOf(imported));
        if (out.size() < html.size() / 2)
            std::abort();
    });
    const double plainRead = medianMs(kRuns, [&] {
        QDirIterator it(imported, {QStringLiteral("*.URL")}, QDir::Files, QDirIterator::Subdirectories);
        qsizetype bytes = 0;
        while (it.hasNext()) {
            QFile file(it.next());
            if (file.open(QIODevice::ReadOnly))
                bytes += file.readAll().size();
        }
        if (bytes == 0)
            std::abort();
    });
    std::printf("%d bookmarks in %d folders, medians of %d runs\n", kFolders * kPerFolder, kFolders, kRuns);
    report("import from HTML", import, "plain loop of writes", plainWrite, 3.0);
    report("export to HTML", exportMs, "plain loop of reads", plainRead, 3.0);
    return 0;
}
