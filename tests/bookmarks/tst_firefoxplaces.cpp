#include "PlacesDatabase.h"
#include "RealBrowserTrees.h"
#include "bookmarks/FirefoxPlaces.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QTemporaryDir>

#include <functional>

// Firefox's places.sqlite: databases made here in the shape Firefox gives them, read while a
// connection still writes to them, odd, hostile and damaged ones.

class TestFirefoxPlaces : public QObject
{
    Q_OBJECT

private slots:
    // First of all, before any test has loaded Qt's SQL drivers.
    void missingDriverIsNamed()
    {
        const QStringList saved = QCoreApplication::libraryPaths();
        QTemporaryDir empty;
        QCoreApplication::setLibraryPaths({empty.path()});
        const bool available = QSqlDatabase::isDriverAvailable(QStringLiteral("QSQLITE"));
        const BookmarkRead read =
            FirefoxPlaces::read(QStringLiteral(VANTREL_TEST_DATA "/Bookmarks.sample.json"));
        QCoreApplication::setLibraryPaths(saved);
        if (available)
            QSKIP("Qt's SQLite driver is built into Qt here");
        QCOMPARE(read.problem,
                 QStringLiteral("Firefox's bookmarks cannot be read: Qt's SQLite driver is not installed "
                                "(Debian package libqt6sql6-sqlite)"));
        COMPARE_TREES(read.root, rootOf({}));
        QVERIFY(QSqlDatabase::isDriverAvailable(QStringLiteral("QSQLITE")));
    }

    void knownBookmarksAreRead()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("places.sqlite"));
        {
            Places places(path);
            addKnownBookmarks(places);
            QVERIFY(!places.failed());
        }
        const QStringList before = folderState(dir.path());
        const BookmarkRead read = FirefoxPlaces::read(path);
        QCOMPARE(read.problem, QString());
        COMPARE_TREES(read.root, knownBookmarksTree());
        // The database was not opened: not a byte changed, and no journal was left beside it.
        QCOMPARE(folderState(dir.path()), before);
        QCOMPARE(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden),
                 QStringList{QStringLiteral("places.sqlite")});
    }

    void emptyTopFoldersAreLeftOut()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("places.sqlite"));
        Places places(path);
        places.createTables();
        places.addRoots();
        BookmarkRead read = FirefoxPlaces::read(path);
        QCOMPARE(read.problem, QString());
        COMPARE_TREES(read.root, rootOf({}));

        places.place(1, QStringLiteral("https://example.com/"));
        places.bookmark(10, kUnfiledId, 0, QStringLiteral("Unfiled"), 1);
        places.folder(11, kMobileId, 0, QStringLiteral("Only a folder"));
        read = FirefoxPlaces::read(path);
        QCOMPARE(read.problem, QString());
        COMPARE_TREES(read.root,
                      rootOf({folder("Other Bookmarks", {bookmark("Unfiled", "https://example.com/")}),
                              folder("Mobile Bookmarks", {folder("Only a folder")})}));
        QVERIFY(!places.failed());
    }

    void halfSurrogatePairsBecomeReplacementCharacters()
    {
        // A database kept in UTF-16 stores what it is given, half pairs too.
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("places.sqlite"));
        Places places(path);
        places.exec(QStringLiteral("PRAGMA encoding = 'UTF-16le'"));
        places.createTables();
        places.addRoots();
        const QString half =
            QStringLiteral("Half ") + QChar(0xD83D) + QStringLiteral(" pair ") + QChar(0xDE00);
        places.place(1, QStringLiteral("https://example.com/") + QChar(0xD800));
        places.bookmark(10, kMenuId, 0, half, 1);
        QVERIFY(!places.failed());
        const BookmarkRead read = FirefoxPlaces::read(path);
        QCOMPARE(read.problem, QString());
        COMPARE_TREES(read.root, rootOf({folder("Bookmarks Menu",
                                                {bookmark(QStringLiteral("Half \uFFFD pair \uFFFD"),
                                                          QStringLiteral("https://example.com/\uFFFD"))})}));
    }

    void hostileParentLinksAreSafe()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("places.sqlite"));
        Places places(path);
        places.createTables();
        places.addRoots();
        places.place(1, QStringLiteral("https://example.com/"));
        places.folder(10, kMenuId, 0, QStringLiteral("Holds the menu"));
        places.bookmark(11, 10, 0, QStringLiteral("In it"), 1);
        // The menu itself inside a folder of its own, the toolbar and the tags inside the menu, the
        // folder that holds all inside the toolbar.
        places.exec(QStringLiteral("UPDATE moz_bookmarks SET parent = 10, position = 1 WHERE id = ?"),
                    {kMenuId});
        places.exec(QStringLiteral("UPDATE moz_bookmarks SET parent = ?, position = 1 WHERE id IN (?, ?)"),
                    {kMenuId, kToolbarId, kTagsId});
        places.exec(QStringLiteral("UPDATE moz_bookmarks SET parent = ? WHERE id = ?"),
                    {kToolbarId, kRootId});
        places.bookmark(12, kToolbarId, 0, QStringLiteral("On the toolbar"), 1);
        places.bookmark(13, kTagsId, 0, QStringLiteral("A tag"), 1);
        // Two folders that hold each other, a folder that holds itself, a bookmark in a folder that
        // is not there: none of them is in any folder Firefox shows.
        places.folder(20, 21, 0, QStringLiteral("Holds 21"));
        places.folder(21, 20, 0, QStringLiteral("Holds 20"));
        places.bookmark(22, 21, 1, QStringLiteral("Inside the circle"), 1);
        places.folder(23, 23, 0, QStringLiteral("Holds itself"));
        places.bookmark(24, 999, 0, QStringLiteral("Nowhere"), 1);
        QVERIFY(!places.failed());

        const BookmarkRead read = FirefoxPlaces::read(path);
        QCOMPARE(read.problem, QString());
        COMPARE_TREES(read.root,
                      rootOf({
                          folder("Bookmarks Menu",
                                 {folder("Holds the menu", {bookmark("In it", "https://example.com/")})}),
                          folder("Bookmarks Toolbar", {bookmark("On the toolbar", "https://example.com/")}),
                      }));
    }

    void foldersHoldingEachOtherStopTheReading()
    {
        // Without a primary key two rows can share an id: each then holds the other's children,
        // itself among them.
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("places.sqlite"));
        Places places(path);
        places.createTables(false);
        places.addRoots();
        places.place(1, QStringLiteral("https://example.com/"));
        places.bookmark(10, kMenuId, 0, QStringLiteral("Before"), 1);
        places.folder(11, kMenuId, 1, QStringLiteral("Outer"));
        places.item(11, kFolder, QVariant(), 11, 0, QStringLiteral("Inner"), QStringLiteral("another guid"));
        places.bookmark(12, kToolbarId, 0, QStringLiteral("After"), 1);
        QVERIFY(!places.failed());

        const BookmarkRead read = FirefoxPlaces::read(path);
        QCOMPARE(read.problem, QStringLiteral("The folders' links to their parents go round in a circle"));
        COMPARE_TREES(read.root, rootOf({folder("Bookmarks Menu", {bookmark("Before", "https://example.com/"),
                                                                   folder("Outer", {folder("Inner")})})}));
    }

    void foldersNestedTooDeepStopTheReading()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("places.sqlite"));
        Places places(path);
        places.createTables();
        places.addRoots();
        places.place(1, QStringLiteral("https://example.com/"));
        places.bookmark(9, kToolbarId, 0, QStringLiteral("After"), 1);
        // A chain of folders in the menu, which is already one folder deep.
        const auto addChain = [&](int length) {
            places.begin();
            places.exec(QStringLiteral("DELETE FROM moz_bookmarks WHERE id >= 10"));
            for (int i = 0; i < length; ++i)
                places.folder(10 + i, i == 0 ? kMenuId : 9 + i, 0, QStringLiteral("F%1").arg(i + 1));
            places.commit();
        };

        addChain(kMaxBookmarkDepth + 1);
        BookmarkRead read = FirefoxPlaces::read(path);
        QCOMPARE(read.problem, QStringLiteral("The folders are nested more than 1000 deep"));
        QCOMPARE(read.root.depth(), kMaxBookmarkDepth);
        QCOMPARE(read.root.children.size(), 1); // the reading stopped before the toolbar
        QCOMPARE(read.root.folderCount(), kMaxBookmarkDepth);

        addChain(kMaxBookmarkDepth - 1);
        read = FirefoxPlaces::read(path);
        QCOMPARE(read.problem, QString());
        QCOMPARE(read.root.depth(), kMaxBookmarkDepth);
        QCOMPARE(read.root.children.size(), 2);
        QVERIFY(!places.failed());
    }

    void latestChangesInTheLogAreRead_data()
    {
        QTest::addColumn<bool>("exclusive");
        QTest::newRow("shared") << false;
        QTest::newRow("locked as Firefox locks it") << true;
    }
    void latestChangesInTheLogAreRead()
    {
        QFETCH(bool, exclusive);
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("places.sqlite"));
        const QString wal = path + QStringLiteral("-wal");
        // Firefox keeps its connection open and writes its changes to the log; with the log never
        // written into the database, the newest bookmarks are only there.
        Places firefox(path);
        if (exclusive)
            firefox.exec(QStringLiteral("PRAGMA locking_mode = EXCLUSIVE"));
        QCOMPARE(firefox.exec(QStringLiteral("PRAGMA journal_mode = WAL")).toString(), QStringLiteral("wal"));
        firefox.exec(QStringLiteral("PRAGMA wal_autocheckpoint = 0"));
        firefox.createTables();
        firefox.addRoots();
        firefox.place(1, QStringLiteral("https://older.example/"));
        firefox.bookmark(10, kMenuId, 0, QStringLiteral("Older"), 1);
        firefox.exec(QStringLiteral("PRAGMA wal_checkpoint(TRUNCATE)"));
        QCOMPARE(QFileInfo(wal).size(), 0);
        firefox.place(2, QStringLiteral("https://newer.example/"));
        firefox.bookmark(11, kMenuId, 1, QStringLiteral("Newer"), 2);
        firefox.folder(12, kToolbarId, 0, QStringLiteral("New folder"));
        firefox.exec(QStringLiteral("UPDATE moz_bookmarks SET title = 'Older, renamed' WHERE id = 10"));
        QVERIFY(!firefox.failed());
        QVERIFY(QFileInfo(wal).size() > 0);

        // The database alone still has the older state.
        QTemporaryDir alone;
        QVERIFY(QFile::copy(path, alone.filePath(QStringLiteral("places.sqlite"))));
        BookmarkRead read = FirefoxPlaces::read(alone.filePath(QStringLiteral("places.sqlite")));
        QCOMPARE(read.problem, QString());
        COMPARE_TREES(read.root,
                      rootOf({folder("Bookmarks Menu", {bookmark("Older", "https://older.example/")})}));

        const QStringList before = folderState(dir.path());
        read = FirefoxPlaces::read(path);
        QCOMPARE(read.problem, QString());
        COMPARE_TREES(read.root,
                      rootOf({folder("Bookmarks Menu", {bookmark("Older, renamed", "https://older.example/"),
                                                        bookmark("Newer", "https://newer.example/")}),
                              folder("Bookmarks Toolbar", {folder("New folder")})}));
        QCOMPARE(folderState(dir.path()), before);

        // Firefox goes on writing as before.
        firefox.bookmark(13, kMenuId, 2, QStringLiteral("Newest"), 2);
        QVERIFY(!firefox.failed());
    }

    void manyBookmarksAreRead()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("places.sqlite"));
        {
            Places places(path);
            places.createTables();
            places.addRoots();
            addManyBookmarks(places, 500, 20);
            QVERIFY(!places.failed());
        }
        const BookmarkRead read = FirefoxPlaces::read(path);
        QCOMPARE(read.problem, QString());
        QCOMPARE(read.root.linkCount(), 10000);
        QCOMPARE(read.root.folderCount(), 501);
        const BookmarkNode& menu = read.root.children.at(0);
        QCOMPARE(menu.children.size(), 500);
        QCOMPARE(menu.children.at(499).title, QStringLiteral("Folder 499"));
        COMPARE_TREES(menu.children.at(499).children.at(19),
                      bookmark("Link 499 19", "https://example.com/499/19"));
    }

    // ---- Databases Firefox ESR wrote (tests/data/browsers, described in its README) ----

    void firefoxEsrDatabaseIsRead()
    {
        const BookmarkRead read =
            FirefoxPlaces::read(QStringLiteral(VANTREL_TEST_DATA "/browsers/firefox-esr/places.sqlite"));
        QCOMPARE(read.problem, QString());
        COMPARE_TREES(read.root, firefoxDatabaseTree());
    }

    void firefoxEsrDatabaseCaughtRunningIsReadWithItsLatestChanges()
    {
        const QString running = QStringLiteral(VANTREL_TEST_DATA "/browsers/firefox-esr/running");
        QVERIFY(QFileInfo::exists(running + QStringLiteral("/places.sqlite-wal")));
        const QStringList before = folderState(running);
        const BookmarkRead read = FirefoxPlaces::read(running + QStringLiteral("/places.sqlite"));
        QCOMPARE(read.problem, QString());
        COMPARE_TREES(read.root, firefoxRunningTree());
        QCOMPARE(folderState(running), before);

        // Without its log the database holds the tree as it was before Firefox changed it.
        QTemporaryDir alone;
        QVERIFY(QFile::copy(running + QStringLiteral("/places.sqlite"),
                            alone.filePath(QStringLiteral("places.sqlite"))));
        const BookmarkRead older = FirefoxPlaces::read(alone.filePath(QStringLiteral("places.sqlite")));
        QCOMPARE(older.problem, QString());
        COMPARE_TREES(older.root, firefoxDatabaseTree());
    }

    void damagedFilesGiveAProblem_data()
    {
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<QString>("problem");
        QTest::newRow("empty") << QByteArray() << "The file is not a bookmarks file: it is empty";
        QTest::newRow("text") << QByteArray("These are my bookmarks:\nhttps://example.com/\n")
                              << "The file is not a Firefox bookmarks database: file is not a database";
        QTest::newRow("binary junk")
            << binaryJunk() << "The file is not a Firefox bookmarks database: file is not a database";
        QTest::newRow("no bookmarks table") << databaseBytes([](Places& places) {
            places.exec(QStringLiteral("CREATE TABLE moz_places (id INTEGER PRIMARY KEY, url LONGVARCHAR)"));
        }) << "The file is not a Firefox bookmarks database: it has no table moz_bookmarks";
        QTest::newRow("no places table") << databaseBytes([](Places& places) {
            places.exec(QStringLiteral(
                "CREATE TABLE moz_bookmarks (id INTEGER PRIMARY KEY, type INTEGER, fk INTEGER, "
                "parent INTEGER, position INTEGER, title LONGVARCHAR, guid TEXT)"));
        }) << "The file is not a Firefox bookmarks database: it has no table moz_places";
        QTest::newRow("no tables") << databaseBytes([](Places& places) {
            places.exec(QStringLiteral("PRAGMA user_version = 1"));
        }) << "The file is not a Firefox bookmarks database: it has no table moz_bookmarks";
        QTest::newRow("no guid column") << databaseBytes([](Places& places) {
            places.exec(QStringLiteral("CREATE TABLE moz_places (id INTEGER PRIMARY KEY, url LONGVARCHAR)"));
            places.exec(QStringLiteral(
                "CREATE TABLE moz_bookmarks (id INTEGER PRIMARY KEY, type INTEGER, fk INTEGER, "
                "parent INTEGER, position INTEGER, title LONGVARCHAR)"));
        }) << "The file is not a Firefox bookmarks database: no such column: b.guid";
        const QByteArray whole = databaseBytes([](Places& places) {
            addKnownBookmarks(places);
            addManyBookmarks(places, 50, 20);
        });
        QTest::newRow("cut short")
            << whole.left(whole.size() / 2)
            << "The Firefox bookmarks database is damaged: database disk image is malformed";
    }
    void damagedFilesGiveAProblem()
    {
        QFETCH(QByteArray, file);
        QFETCH(QString, problem);
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("places.sqlite"));
        QVERIFY(writeAll(path, file));
        const BookmarkRead read = FirefoxPlaces::read(path);
        QCOMPARE(read.problem, problem);
        QCOMPARE(readAll(path), file);
    }

    void fileThatCannotBeReadGivesTheSystemsReason()
    {
        QTemporaryDir dir;
        BookmarkRead read = FirefoxPlaces::read(dir.filePath(QStringLiteral("places.sqlite")));
        QCOMPARE(read.problem, QStringLiteral("The file cannot be read: No such file or directory"));
        COMPARE_TREES(read.root, rootOf({}));

        read = FirefoxPlaces::read(dir.path());
        QCOMPARE(read.problem, QStringLiteral("The file cannot be read: it is a folder"));

        const QString path = dir.filePath(QStringLiteral("locked.sqlite"));
        {
            Places places(path);
            addKnownBookmarks(places);
        }
        {
            const ReadOnlyFolder unreadable(path, 0200);
            read = FirefoxPlaces::read(path);
        }
        QCOMPARE(read.problem, QStringLiteral("The file cannot be read: Permission denied"));
        COMPARE_TREES(read.root, rootOf({}));
    }

    void copyThatCannotBeWrittenGivesAProblem()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("places.sqlite"));
        {
            Places places(path);
            addKnownBookmarks(places);
        }
        const QByteArray before = readAll(path);
        BookmarkRead read;
        {
            const FileSizeLimit full(1000);
            read = FirefoxPlaces::read(path);
        }
        QCOMPARE(read.problem,
                 QStringLiteral("Firefox's bookmarks cannot be read: a copy of them cannot be written "
                                "to the temporary folder (File too large)"));
        COMPARE_TREES(read.root, rootOf({}));
        QCOMPARE(readAll(path), before);
    }
};

QTEST_GUILESS_MAIN(TestFirefoxPlaces)
#include "tst_firefoxplaces.moc"
