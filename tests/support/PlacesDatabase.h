#pragma once

#include "BookmarkTrees.h"
#include "TestSupport.h"

#include <QCryptographicHash>
#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QTemporaryDir>

#include <functional>

// Databases in the shape Firefox gives places.sqlite, made by the tests themselves.

inline constexpr int kBookmark = 1;
inline constexpr int kFolder = 2;
inline constexpr int kSeparator = 3;

// The ids Firefox gives the folder that holds all and the five folders below it.
inline constexpr qint64 kRootId = 1;
inline constexpr qint64 kMenuId = 2;
inline constexpr qint64 kToolbarId = 3;
inline constexpr qint64 kTagsId = 4;
inline constexpr qint64 kUnfiledId = 5;
inline constexpr qint64 kMobileId = 6;

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

inline const QString kNullTitle = QString(); // bound as NULL

// Bookmarks of every kind Firefox keeps, in nested folders, with tags beside them.
inline void addKnownBookmarks(Places& places)
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

inline BookmarkNode knownBookmarksTree()
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

// `folders` folders in the menu, each with `links` bookmarks.
inline void addManyBookmarks(Places& places, int folders, int links)
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
inline QByteArray databaseBytes(const std::function<void(Places&)>& make)
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
inline QStringList folderState(const QString& path)
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
