#include "TestSupport.h"
#include "shortcuts/FavoritesWalk.h"

#include <QDir>
#include <QFile>
#include <QTest>

#include <unistd.h>

class TestFavoritesWalk : public QObject
{
    Q_OBJECT

    static void touch(const QString& path)
    {
        QVERIFY(writeAll(path, "[InternetShortcut]\r\nURL=https://e.org/\r\n"));
    }

private slots:
    void foldersComeBreadthFirstEachLevelInNameOrder()
    {
        QTemporaryDir dir;
        const QString root = dir.filePath("Favorites");
        for (const char* f : {"b", "A", "c/deep/deeper", "A/inner", "b/x", "b/Y"})
            QVERIFY(QDir().mkpath(root + "/" + f));
        const auto r = FavoritesWalk::walk(root);
        QStringList rel;
        for (const QString& f : r.folders)
            rel << FavoritesWalk::relativePath(f);
        QCOMPARE(rel, (QStringList{"A", "b", "c", "A/inner", "b/x", "b/Y", "c/deep", "c/deep/deeper"}));
        QCOMPARE(r.shortcuts.size(), r.folders.size());
    }
    void shortcutsEndInUrlInAnyCaseAndSortIgnoringCase()
    {
        QTemporaryDir dir;
        const QString root = dir.filePath("Favorites");
        QVERIFY(QDir().mkpath(root + "/site.url")); // a folder named like a shortcut is a folder
        for (const char* f : {"b.url", "A.URL", "c.Url", "notes.txt", "Zeta.url", "alpha.url", ".hidden.url"})
            touch(root + "/" + f);
        const auto r = FavoritesWalk::walk(root);
        QCOMPARE(r.rootShortcuts, (QStringList{"A.URL", "alpha.url", "b.url", "c.Url", "Zeta.url"}));
        QCOMPARE(r.folders.size(), 1);
        QCOMPARE(FavoritesWalk::shortcutText("A.URL"), QStringLiteral("A"));
    }
    void namesWithSpacesAndOtherScriptsAreListed()
    {
        QTemporaryDir dir;
        const QString root = dir.filePath("Favorites");
        QVERIFY(QDir().mkpath(root + QString::fromUtf8("/Ünïcode Ördner")));
        touch(root + QString::fromUtf8("/Ünïcode Ördner/Страница новостей.url"));
        touch(root + "/with  two  spaces.url");
        const auto r = FavoritesWalk::walk(root);
        QCOMPARE(r.shortcuts[0], QStringList{QString::fromUtf8("Страница новостей.url")});
        QCOMPARE(r.rootShortcuts, QStringList{"with  two  spaces.url"});
    }
    void linkLoopsAreNotFollowed()
    {
        QTemporaryDir dir;
        const QString root = dir.filePath("Favorites");
        QVERIFY(QDir().mkpath(root + "/real"));
        touch(root + "/real/page.url");
        QVERIFY(QFile::link(root, root + "/real/loop"));
        QVERIFY(QFile::link(root + "/real/page.url", root + "/linked.url")); // a link to a file counts
        const auto r = FavoritesWalk::walk(root);
        QCOMPARE(r.folders.size(), 1);
        QCOMPARE(r.rootShortcuts, QStringList{"linked.url"});
    }
    void unreadableFolderShowsNothingBelowIt()
    {
        QTemporaryDir dir;
        const QString root = dir.filePath("Favorites");
        QVERIFY(QDir().mkpath(root + "/closed/inner"));
        touch(root + "/closed/page.url");
        touch(root + "/open.url");
        FavoritesWalk::Result r;
        {
            ReadOnlyFolder closed(root + "/closed", 0000);
            r = FavoritesWalk::walk(root);
        }
        QCOMPARE(r.folders.size(), 1);
        QVERIFY(r.shortcuts[0].isEmpty());
        QCOMPARE(r.rootShortcuts, QStringList{"open.url"});
    }
    void missingRootGivesNothing()
    {
        QVERIFY(FavoritesWalk::walk("").folders.isEmpty());
        QVERIFY(FavoritesWalk::walk("/nonexistent/Favorites").rootShortcuts.isEmpty());
    }
    void atMost7500FoldersAreHeld()
    {
        QTemporaryDir dir;
        const QString root = dir.filePath("Favorites");
        for (int i = 0; i < 80; ++i)
            for (int j = 0; j < 95; ++j)
                QVERIFY(QDir().mkpath(
                    QString("%1/f%2/g%3").arg(root).arg(i, 2, 10, QChar('0')).arg(j, 2, 10, QChar('0'))));
        const auto r = FavoritesWalk::walk(root); // 80 + 7600 folders exist
        QCOMPARE(r.folders.size(), 7500);
        QCOMPARE(FavoritesWalk::relativePath(r.folders.first()), QStringLiteral("f00"));
        QCOMPARE(FavoritesWalk::relativePath(r.folders.last()), QStringLiteral("f78/g09"));
    }
    void relativePathsRestOnTheFavoritesFolderName()
    {
        QCOMPARE(FavoritesWalk::relativePath("/home/a/Favorites/Links/News"), QStringLiteral("Links/News"));
        QCOMPARE(FavoritesWalk::relativePath("/x/Favorites/Favorites/y"), QStringLiteral("Favorites/y"));
        QCOMPARE(FavoritesWalk::relativePath("/home/a/Bookmarks/Links"), QStringLiteral("okmarks/Links"));
    }
};

QTEST_GUILESS_MAIN(TestFavoritesWalk)
#include "tst_favoriteswalk.moc"
