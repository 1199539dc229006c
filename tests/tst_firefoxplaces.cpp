#include "BookmarkTrees.h"
#include "TestSupport.h"
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

namespace {

constexpr int kBookmark = 1;
constexpr int kFolder = 2;
constexpr int kSeparator = 3;

// The ids Firefox gives the folder that holds all and the five folders below it.
constexpr qint64 kRootId = 1;
constexpr qint64 kMenuId = 2;
constexpr qint64 kToolbarId = 3;
constexpr qint64 kTagsId = 4;
constexpr qint64 kUnfiledId = 5;
constexpr qint64 kMobileId = 6;

// A connection of the test's own to a database file, made when missing; it plays Firefox.
class Places
{
public:
    explicit Places(const QString& path) : m_name(QStringLiteral("fixture %1").arg(++s_count))
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), m_name);
        db.setDatabaseName(path);
        if (!db.open())
            qWarning("cannot open %s: %s", qPrintable(path), qPrintable(db.lastError().text()));
        // The test's databases need not survive a power cut: no waiting for the disk.
        exec(QStringLiteral("PRAGMA synchronous = OFF"));
    }
    ~Places()
    {
        {
            QSqlDatabase db = QSqlDatabase::database(m_name, false);
            db.close();
        }
        QSqlDatabase::removeDatabase(m_name);
    }

    // The first column of the first row the statement gives; an invalid value when it fails.
    QVariant exec(const QString& sql, const QVariantList& values = {})
    {
        QSqlQuery query(QSqlDatabase::database(m_name, false));
        bool done = query.prepare(sql);
        for (const QVariant& value : values)
            query.addBindValue(value);
        done = done && query.exec();
        if (!done) {
            qWarning("%s: %s", qPrintable(sql), qPrintable(query.lastError().text()));
            m_failed = true;
            return QVariant();
        }
        return query.next() ? query.value(0) : QVariant(QStringLiteral("done"));
    }
    bool failed() const { return m_failed; }

    void begin() { QSqlDatabase::database(m_name, false).transaction(); }
    void commit() { QSqlDatabase::database(m_name, false).commit(); }

    // Firefox's two tables, with the columns of its recent versions. `keyed` false leaves out the
    // primary keys, so that a hostile file can give two rows the same id.
    void createTables(bool keyed = true)
    {
        const QString key = keyed ? QStringLiteral(" PRIMARY KEY") : QString();
        exec(QStringLiteral(
                 "CREATE TABLE moz_places (id INTEGER%1, url LONGVARCHAR, title LONGVARCHAR, "
                 "rev_host LONGVARCHAR, visit_count INTEGER DEFAULT 0, hidden INTEGER DEFAULT 0 NOT NULL, "
                 "typed INTEGER DEFAULT 0 NOT NULL, frecency INTEGER DEFAULT -1 NOT NULL, "
                 "last_visit_date INTEGER, guid TEXT, foreign_count INTEGER DEFAULT 0 NOT NULL, "
                 "url_hash INTEGER DEFAULT 0 NOT NULL, description TEXT, preview_image_url TEXT, "
                 "site_name TEXT, origin_id INTEGER, recalc_frecency INTEGER NOT NULL DEFAULT 0, "
                 "alt_frecency INTEGER, recalc_alt_frecency INTEGER NOT NULL DEFAULT 0)")
                 .arg(key));
        exec(QStringLiteral(
                 "CREATE TABLE moz_bookmarks (id INTEGER%1, type INTEGER, fk INTEGER DEFAULT NULL, "
                 "parent INTEGER, position INTEGER, title LONGVARCHAR, keyword_id INTEGER, "
                 "folder_type TEXT, dateAdded INTEGER, lastModified INTEGER, guid TEXT, "
                 "syncStatus INTEGER NOT NULL DEFAULT 0, syncChangeCounter INTEGER NOT NULL DEFAULT 1)")
                 .arg(key));
        if (keyed) {
            exec(QStringLiteral("CREATE UNIQUE INDEX moz_places_guid_uniqueindex ON moz_places (guid)"));
            exec(QStringLiteral("CREATE INDEX moz_bookmarks_itemindex ON moz_bookmarks (fk, type)"));
            exec(
                QStringLiteral("CREATE INDEX moz_bookmarks_parentindex ON moz_bookmarks (parent, position)"));
            exec(
                QStringLiteral("CREATE UNIQUE INDEX moz_bookmarks_guid_uniqueindex ON moz_bookmarks (guid)"));
        }
    }

    // The folders every profile has, as Firefox makes them (their titles are not the ones shown).
    void addRoots()
    {
        item(kRootId, kFolder, QVariant(), 0, 0, QString(), QStringLiteral("root________"));
        item(kMenuId, kFolder, QVariant(), kRootId, 0, QStringLiteral("menu"),
             QStringLiteral("menu________"));
        item(kToolbarId, kFolder, QVariant(), kRootId, 1, QStringLiteral("toolbar"),
             QStringLiteral("toolbar_____"));
        item(kTagsId, kFolder, QVariant(), kRootId, 2, QStringLiteral("tags"),
             QStringLiteral("tags________"));
        item(kUnfiledId, kFolder, QVariant(), kRootId, 3, QStringLiteral("unfiled"),
             QStringLiteral("unfiled_____"));
        item(kMobileId, kFolder, QVariant(), kRootId, 4, QStringLiteral("mobile"),
             QStringLiteral("mobile______"));
    }

    void place(qint64 id, const QString& url)
    {
        exec(QStringLiteral("INSERT INTO moz_places (id, url, title, guid) VALUES (?, ?, ?, ?)"),
             {id, url, QStringLiteral("title of the page"),
              QStringLiteral("place%1").arg(id, 7, 10, QChar(u'0'))});
    }

    void item(qint64 id, int type, const QVariant& fk, qint64 parent, qint64 position, const QVariant& title,
              const QString& guid = QString())
    {
        exec(QStringLiteral(
                 "INSERT INTO moz_bookmarks (id, type, fk, parent, position, title, dateAdded, "
                 "lastModified, guid) VALUES (?, ?, ?, ?, ?, ?, 1700000000000000, 1700000000000000, ?)"),
             {id, type, fk, parent, position, title,
              guid.isEmpty() ? QStringLiteral("item%1").arg(id, 8, 10, QChar(u'0')) : guid});
    }
    void bookmark(qint64 id, qint64 parent, qint64 position, const QVariant& title, qint64 placeId)
    {
        item(id, kBookmark, placeId, parent, position, title);
    }
    void folder(qint64 id, qint64 parent, qint64 position, const QVariant& title)
    {
        item(id, kFolder, QVariant(), parent, position, title);
    }
    void separator(qint64 id, qint64 parent, qint64 position)
    {
        item(id, kSeparator, QVariant(), parent, position, QVariant());
    }

private:
    static inline int s_count = 0;
    QString m_name;
    bool m_failed = false;
};

const QString kNullTitle = QString(); // bound as NULL

// Bookmarks of every kind Firefox keeps, in nested folders, with tags beside them.
void addKnownBookmarks(Places& places)
{
    places.createTables();
    places.addRoots();
    places.place(1, QStringLiteral("https://start.example.com/"));
    places.place(2, QStringLiteral("https://example.com/blanks"));
    places.place(3, QStringLiteral("https://xn--bcher-kva.example/caf%C3%A9"));
    places.place(4, QStringLiteral("https://null-title.example/"));
    places.place(5, QStringLiteral("https://empty-title.example/"));
    places.place(6, QStringLiteral("place:sort=8&maxResults=10"));
    places.place(7, QStringLiteral("javascript:alert(document.title)"));
    places.place(8, QStringLiteral("https://toolbar.example.org/?a=1&b=2"));
    places.place(9, QStringLiteral("https://m.transit.example/lines/12"));
    places.place(10, QStringLiteral("https://tagged.example/"));
    places.place(11, QStringLiteral("https://not-bookmarked.example/"));

    places.bookmark(10, kMenuId, 0, QStringLiteral("Start page"), 1);
    places.folder(11, kMenuId, 1, QStringLiteral("Reading"));
    // Stored out of the order of their positions.
    places.folder(20, 11, 2, QStringLiteral("Deep"));
    places.bookmark(21, 11, 0, QStringLiteral("  Blanks kept  "), 2);
    places.separator(22, 11, 1);
    places.bookmark(23, 20, 0, QStringLiteral("Bücher 中文 עברית ") + QString::fromUtf8("\xF0\x9F\x98\x80"),
                    3);
    places.separator(12, kMenuId, 2);
    places.bookmark(13, kMenuId, 3, QVariant(QMetaType::fromType<QString>()), 4);
    places.bookmark(14, kMenuId, 4, QStringLiteral(""), 5);
    places.bookmark(15, kMenuId, 5, QStringLiteral("Most visited"), 6);
    places.bookmark(16, kMenuId, 6, QStringLiteral("Bookmarklet"), 7);
    places.bookmark(17, kMenuId, 7, QStringLiteral("Its address is gone"), 99);
    places.folder(18, kMenuId, 8, QVariant(QMetaType::fromType<QString>()));
    places.folder(19, kMenuId, 9, QStringLiteral("Empty"));
    places.item(24, 4, QVariant(), kMenuId, 10, QStringLiteral("Of a kind older versions had"));

    places.bookmark(30, kToolbarId, 0, QStringLiteral("Tagged page"), 10);
    places.bookmark(31, kToolbarId, 1, QStringLiteral("Toolbar & more <b>\t"), 8);

    places.bookmark(40, kMobileId, 0, QStringLiteral("Timetable"), 9);

    // The tags: a folder for each, holding a bookmark without title for each tagged page.
    places.folder(50, kTagsId, 0, QStringLiteral("work"));
    places.bookmark(51, 50, 0, QVariant(QMetaType::fromType<QString>()), 10);
    places.folder(52, kTagsId, 1, QStringLiteral("news"));
    places.bookmark(53, 52, 0, QVariant(QMetaType::fromType<QString>()), 1);
}

BookmarkNode knownBookmarksTree()
{
    return rootOf({
        folder("Bookmarks Menu",
               {
                   bookmark("Start page", "https://start.example.com/"),
                   folder("Reading",
                          {
                              bookmark("  Blanks kept  ", "https://example.com/blanks"),
                              separator(),
                              folder("Deep", {bookmark(QStringLiteral("Bücher 中文 עברית ") +
                                                           QString::fromUtf8("\xF0\x9F\x98\x80"),
                                                       "https://xn--bcher-kva.example/caf%C3%A9")}),
                          }),
                   separator(),
                   bookmark("", "https://null-title.example/"),
                   bookmark("", "https://empty-title.example/"),
                   bookmark("Most visited", "place:sort=8&maxResults=10"),
                   bookmark("Bookmarklet", "javascript:alert(document.title)"),
                   folder(""),
                   folder("Empty"),
               }),
        folder("Bookmarks Toolbar",
               {
                   bookmark("Tagged page", "https://tagged.example/"),
                   bookmark("Toolbar & more <b>\t", "https://toolbar.example.org/?a=1&b=2"),
               }),
        folder("Mobile Bookmarks", {bookmark("Timetable", "https://m.transit.example/lines/12")}),
    });
}

// The tree Firefox ESR made of imported-source.html in tests/data/browsers/firefox-esr: the mobile
// folder is empty and the tags (alpha, beta) are not there.
BookmarkNode firefoxEsrTree()
{
    return rootOf({
        folder("Bookmarks Menu",
               {
                   bookmark("Menu First", "https://example.com/menu-first"),
                   bookmark(QStringLiteral("Café 中文 ") + QString::fromUtf8("\xF0\x9F\x8E\x89"),
                            "https://example.org/caf%C3%A9?q=%E4%B8%AD%E6%96%87"),
                   bookmark("Padded title", "https://example.org/padded"),
                   bookmark("", "https://example.net/empty-title"),
                   separator(),
                   bookmark("Punycode host", "http://xn--bcher-kva.example/"),
                   bookmark("Query & escaped ampersands", "https://example.com/search?a=1&b=2&c=%26d"),
                   bookmark("Query with raw & in source", "https://example.com/raw?x=1&y=2"),
                   bookmark("Tagged <b> \"quoted\" 'single'", "https://example.com/tagged"),
                   bookmark("Most Visited Query", "place:sort=8&maxResults=10"),
                   bookmark("Bookmarklet", "javascript:alert(%22hi%22)"),
                   folder("Folder <angle> & \"quotes\"",
                          {bookmark("Inside odd folder", "https://example.com/inside-odd-folder")}),
                   folder("Empty Folder"),
               }),
        folder("Bookmarks Toolbar",
               {
                   bookmark("Example Home", "https://example.com/"),
                   folder("Nested Folder",
                          {
                              bookmark("Level 1", "https://example.com/level1"),
                              separator(),
                              folder("Deeper", {bookmark("Level 2", "https://example.com/level2?tag=alpha")}),
                              bookmark("FTP file", "ftp://ftp.example.com/pub/file.txt"),
                          }),
                   bookmark("After Folder", "https://example.com/after-folder"),
               }),
        folder("Other Bookmarks",
               {
                   bookmark("Other One", "https://example.com/other-1"),
                   bookmark("Other Two", "https://example.com/other-2#frag"),
               }),
    });
}

// `folders` folders in the menu, each with `links` bookmarks.
void addManyBookmarks(Places& places, int folders, int links)
{
    places.begin();
    qint64 id = 100;
    for (int f = 0; f < folders; ++f) {
        const qint64 folderId = id++;
        places.folder(folderId, kMenuId, f, QStringLiteral("Folder %1").arg(f));
        for (int l = 0; l < links; ++l) {
            const qint64 linkId = id++;
            places.place(linkId, QStringLiteral("https://example.com/%1/%2").arg(f).arg(l));
            places.bookmark(linkId, folderId, l, QStringLiteral("Link %1 %2").arg(f).arg(l), linkId);
        }
    }
    places.commit();
}

// The bytes of a database made by `make`.
QByteArray databaseBytes(const std::function<void(Places&)>& make)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("made.sqlite"));
    {
        Places places(path);
        make(places);
    }
    return readAll(path);
}

// Every file in a folder with its bytes and its time of change, to see that nothing was touched.
QStringList folderState(const QString& path)
{
    QStringList state;
    const QDir dir(path);
    for (const QFileInfo& info : dir.entryInfoList(QDir::Files | QDir::Hidden, QDir::Name))
        state << QStringLiteral("%1 %2 %3 %4")
                     .arg(info.fileName())
                     .arg(info.size())
                     .arg(info.fileTime(QFileDevice::FileModificationTime).toMSecsSinceEpoch())
                     .arg(QString::fromLatin1(
                         QCryptographicHash::hash(readAll(info.filePath()), QCryptographicHash::Sha256)
                             .toHex()));
    return state;
}

} // namespace

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
        COMPARE_TREES(read.root, firefoxEsrTree());
    }

    void firefoxEsrDatabaseCaughtRunningIsReadWithItsLatestChanges()
    {
        const QString running = QStringLiteral(VANTREL_TEST_DATA "/browsers/firefox-esr/running");
        QVERIFY(QFileInfo::exists(running + QStringLiteral("/places.sqlite-wal")));
        const QStringList before = folderState(running);
        const BookmarkRead read = FirefoxPlaces::read(running + QStringLiteral("/places.sqlite"));
        QCOMPARE(read.problem, QString());
        BookmarkNode expected = firefoxEsrTree();
        BookmarkNode& toolbar = expected.children[1];
        toolbar.children.prepend(bookmark("Running Two", "https://example.com/running-2"));
        BookmarkNode& other = expected.children[2];
        other.children[0].title = QStringLiteral("Other One (renamed while running)");
        other.children.append(
            folder("Added While Running", {bookmark("Running One", "https://example.com/running-1")}));
        COMPARE_TREES(read.root, expected);
        QCOMPARE(folderState(running), before);

        // Without its log the database holds the tree as it was before Firefox changed it.
        QTemporaryDir alone;
        QVERIFY(QFile::copy(running + QStringLiteral("/places.sqlite"),
                            alone.filePath(QStringLiteral("places.sqlite"))));
        const BookmarkRead older = FirefoxPlaces::read(alone.filePath(QStringLiteral("places.sqlite")));
        QCOMPARE(older.problem, QString());
        COMPARE_TREES(older.root, firefoxEsrTree());
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
