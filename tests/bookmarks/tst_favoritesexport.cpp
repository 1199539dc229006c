#include "TestSupport.h"
#include "bookmarks/FavoritesExport.h"
#include "bookmarks/FavoritesImport.h"
#include "bookmarks/NetscapeBookmarks.h"
#include "bookmarks/XbelBookmarks.h"
#include "core/ProfileString.h"
#include "shortcuts/ShortcutFile.h"

#include <QDir>
#include <QDirIterator>
#include <QMap>
#include <QTest>

// The Favorites folder taken out as HTML bookmarks and XBEL, and brought back: the same folders,
// names and addresses.
class TestFavoritesExport : public QObject
{
    Q_OBJECT

    std::unique_ptr<TempAppFolder> m_app;

    // Every folder and shortcut below `root`, with the shortcuts' addresses.
    static QMap<QString, QString> contents(const QString& root)
    {
        QMap<QString, QString> all;
        QDirIterator it(root, QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden, QDirIterator::Subdirectories);
        while (it.hasNext()) {
            const QString path = it.next();
            const QString relative = path.mid(root.size() + 1);
            all.insert(relative, it.fileInfo().isDir() ? QStringLiteral("folder")
                                                       : GetIniString(QStringLiteral("InternetShortcut"),
                                                                      QStringLiteral("URL"), QString(), path));
        }
        return all;
    }

private slots:
    void init() { m_app = std::make_unique<TempAppFolder>(); }
    void cleanup() { m_app.reset(); }

    void aShortcutIsExportedUnderATitleThatNamesItTheSame()
    {
        QCOMPARE(FavoritesExport::titleOf("Debian.URL"), QStringLiteral("Debian"));
        QCOMPARE(FavoritesExport::titleOf("v1.2 notes.URL"), QStringLiteral("v1.2 notes"));
        QCOMPARE(FavoritesExport::titleOf("a.b.URL"), QStringLiteral("a.b.URL")); // "a.b" would be "a.URL"
        QCOMPARE(FavoritesExport::titleOf("lower.url"), QStringLiteral("lower")); // as other programs write them
    }
    void aLongAddressGoesOutWhole()
    {
        const QString url = "https://long.example/?q=" + QString(3000, u'x');
        QVERIFY(QDir().mkpath(m_app->favorites()));
        QVERIFY(CreateFavoriteFile(url, "Long", m_app->favorites() + u'/'));
        const BookmarkNode tree = FavoritesExport::treeOf(m_app->favorites());
        QCOMPARE(tree.linkCount(), 1);
        QCOMPARE(tree.children.first().url, url);
    }
    void exportAndImportGiveBackTheSameFolder()
    {
        // 100 folders deep, 100 shortcuts in each: 10,000, with every character the names keep.
        const QString favorites = m_app->favorites();
        const QString special = QString::fromUtf8(" &<>\"'%#?*[]{};=+,!@$^~`\\ \xc3\xa9\xe4\xb8\xad\xf0\x9f\x98\x80");
        QString folder = favorites;
        for (int level = 1; level <= 100; ++level) {
            folder += QStringLiteral("/L%1").arg(level) + (level % 10 == 0 ? special : QString());
            QVERIFY(QDir().mkpath(folder));
            for (int page = 1; page <= 100; ++page)
                QVERIFY(CreateFavoriteFile(QStringLiteral("https://example.org/%1/%2?q=a&b=<c>&d=\"e\"").arg(level).arg(page),
                                           QStringLiteral("Page %1%2 v1.%1").arg(page).arg(page % 7 == 0 ? special : QString()),
                                           folder + u'/'));
        }
        const QMap<QString, QString> original = contents(favorites);
        QCOMPARE(original.size(), 10100);

        const BookmarkNode tree = FavoritesExport::treeOf(favorites);
        QCOMPARE(tree.linkCount(), 10000);
        QCOMPARE(tree.depth(), 100);
        for (const char* format : {"html", "xbel"}) {
            const bool html = qstrcmp(format, "html") == 0;
            const QByteArray file = html ? NetscapeBookmarks::write(tree) : XbelBookmarks::write(tree);
            const BookmarkRead read = html ? NetscapeBookmarks::read(file) : XbelBookmarks::read(file);
            QVERIFY2(read.ok(), qPrintable(read.problem));
            const QString empty = m_app->file(QStringLiteral("empty-%1").arg(format));
            QVERIFY(QDir().mkpath(empty));
            const ImportSummary summary = FavoritesImport::importInto(read.root, empty + u'/');
            QCOMPARE(summary.written, 10000);
            QCOMPARE(summary.folders, 100);
            QCOMPARE(summary.renamed, 0);
            QCOMPARE(contents(empty), original);
        }
    }
    void oneFolderOfTheFavoritesAlone()
    {
        const QString work = m_app->favorites() + "/Work";
        QVERIFY(QDir().mkpath(work + "/Old"));
        QVERIFY(CreateFavoriteFile("https://w.example/", "Wiki", work + u'/'));
        QVERIFY(CreateFavoriteFile("https://o.example/", "Old one", work + "/Old/"));
        QVERIFY(CreateFavoriteFile("https://elsewhere.example/", "Elsewhere", m_app->favorites() + u'/'));
        using B = BookmarkNode;
        QCOMPARE(FavoritesExport::treeOf(work),
                 B::folder("Work", {B::folder("Old", {B::link("Old one", "https://o.example/")}),
                                    B::link("Wiki", "https://w.example/")}));
    }
};

QTEST_GUILESS_MAIN(TestFavoritesExport)
#include "tst_favoritesexport.moc"
