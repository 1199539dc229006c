#include "bookmarks/FirefoxPlaces.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QVariant>

#include <algorithm>
#include <atomic>
#include <vector>

namespace FirefoxPlaces {

namespace {

// SQLite's result code for a database whose pages do not hold together.
constexpr int kSqliteCorrupt = 11;

// How often the copy is taken again when Firefox changed the files while they were copied.
constexpr int kCopyAttempts = 3;

// The kinds of row in moz_bookmarks; older versions had others, which are skipped.
constexpr int kBookmarkType = 1;
constexpr int kFolderType = 2;
constexpr int kSeparatorType = 3;

// The folders Firefox shows at the top, by their guid, with the titles it shows them under.
const struct
{
    const char* guid;
    const char* title;
} kTopFolders[] = {
    {"menu________", "Bookmarks Menu"},
    {"toolbar_____", "Bookmarks Toolbar"},
    {"unfiled_____", "Other Bookmarks"},
    {"mobile______", "Mobile Bookmarks"},
};

// The folder that holds all the others, and the one that holds the tags as folders: neither is a
// folder of bookmarks.
const char* const kHiddenFolders[] = {"root________", "tags________"};

// One row of moz_bookmarks, with the address of its moz_places row.
struct Item
{
    qint64 id = 0;
    qint64 parent = 0;
    qint64 position = 0;
    int type = 0;
    bool hasPlace = false; // a moz_places row for its fk was there
    bool top = false;      // one of the folders at the top or a hidden one: nobody's child
    QString title;
    QString url;
};

// The text of a column, in whole characters.
QString text(const QVariant& value)
{
    return wholeCharacters(value.toString());
}

// What the database said went wrong, as the end of a sentence.
QString reason(const QSqlError& error)
{
    QString why = error.databaseText().isEmpty() ? error.driverText() : error.databaseText();
    if (why.endsWith(u'.'))
        why.chop(1);
    return why;
}

QString databaseProblem(const QSqlError& error)
{
    if (error.nativeErrorCode().toInt() == kSqliteCorrupt)
        return QStringLiteral("The Firefox bookmarks database is damaged: %1").arg(reason(error));
    return QStringLiteral("The file is not a Firefox bookmarks database: %1").arg(reason(error));
}

// What tells whether Firefox changed a file while it was copied.
struct Stamp
{
    bool exists = false;
    qint64 size = 0;
    QDateTime changed;

    bool operator==(const Stamp&) const = default;
};

Stamp stampOf(const QString& path)
{
    const QFileInfo info(path);
    return {info.exists(), info.size(), info.lastModified()};
}

// Copies `from` to `to` in pieces, so that a large database never sits in memory whole. Empty
// when done, else the problem; `unreadable` begins the sentence when `from` cannot be read.
QString copyFile(const QString& from, const QString& to, const QString& unreadable)
{
    QFile in(from);
    if (!in.open(QIODevice::ReadOnly))
        return unreadable + in.errorString();
    QFile out(to);
    const QString unwritable =
        QStringLiteral("Firefox's bookmarks cannot be read: a copy of them cannot be written "
                       "to the temporary folder (%1)");
    if (!out.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return unwritable.arg(out.errorString());
    QByteArray buffer(1 << 20, Qt::Uninitialized);
    for (;;) {
        const qint64 n = in.read(buffer.data(), buffer.size());
        if (n < 0)
            return unreadable + in.errorString();
        if (n == 0)
            break;
        // A write cut short says nothing; the next one gives the system's reason.
        for (qint64 done = 0; done < n;) {
            const qint64 written = out.write(buffer.constData() + done, n - done);
            if (written <= 0)
                return unwritable.arg(out.errorString());
            done += written;
        }
    }
    if (!out.flush())
        return unwritable.arg(out.errorString());
    return QString();
}

// Copies the database and, when there is one, its log of latest changes into `folder`, under the
// names SQLite looks for. Firefox may write while the copies are made: copies taken while neither
// file changed belong together, and are tried for a few times before the last ones are read.
QString copyDatabase(const QString& placesFile, const QString& folder)
{
    const QString walFile = placesFile + QStringLiteral("-wal");
    const QString placesCopy = folder + QStringLiteral("/places.sqlite");
    const QString walCopy = placesCopy + QStringLiteral("-wal");
    QString problem;
    for (int attempt = 1;; ++attempt) {
        const Stamp places = stampOf(placesFile);
        const Stamp wal = stampOf(walFile);
        problem = copyFile(placesFile, placesCopy, QStringLiteral("The file cannot be read: "));
        QFile::remove(walCopy);
        if (problem.isEmpty() && wal.exists)
            problem =
                copyFile(walFile, walCopy,
                         QStringLiteral("The file of Firefox's latest changes beside it cannot be read: "));
        if ((stampOf(placesFile) == places && stampOf(walFile) == wal) || attempt == kCopyAttempts)
            return problem;
    }
}

// Puts the rows into the tree below the folders at the top. Every row is placed once at most, so
// that parent links that go round in a circle (which only a damaged or hostile database has) end
// the reading instead of going on for ever.
class TreeBuilder
{
public:
    explicit TreeBuilder(std::vector<Item> items) : m_items(std::move(items)), m_placed(m_items.size(), false)
    {
        for (size_t i = 0; i < m_items.size(); ++i)
            m_children[m_items[i].parent].push_back(i);
        for (std::vector<size_t>& children : m_children)
            std::stable_sort(children.begin(), children.end(), [this](size_t a, size_t b) {
                return m_items[a].position < m_items[b].position;
            });
    }

    // Reading stops at the first problem, keeping what was read before it.
    BookmarkRead build(const QHash<QString, size_t>& topFolders)
    {
        BookmarkRead result;
        for (const auto& top : kTopFolders) {
            const auto found = topFolders.constFind(QLatin1String(top.guid));
            if (found == topFolders.cend())
                continue;
            BookmarkNode folder = BookmarkNode::folder(QString::fromLatin1(top.title));
            fill(folder, m_items[*found].id, 1);
            if (!folder.children.isEmpty())
                result.root.children.append(std::move(folder));
        }
        result.problem = m_problem;
        return result;
    }

private:
    // Adds the children of the row `id` to `folder`, which is `level` folders below the root.
    void fill(BookmarkNode& folder, qint64 id, int level)
    {
        const auto found = m_children.constFind(id);
        if (found == m_children.cend())
            return;
        for (size_t index : *found) {
            if (!m_problem.isEmpty())
                return;
            const Item& item = m_items[index];
            if (item.top)
                continue;
            if (m_placed[index]) {
                m_problem = QStringLiteral("The folders' links to their parents go round in a circle");
                return;
            }
            m_placed[index] = true;
            if (item.type == kBookmarkType && item.hasPlace) {
                folder.children.append(BookmarkNode::link(item.title, item.url));
            } else if (item.type == kSeparatorType) {
                folder.children.append(BookmarkNode::separator());
            } else if (item.type == kFolderType) {
                if (level >= kMaxBookmarkDepth) {
                    m_problem =
                        QStringLiteral("The folders are nested more than %1 deep").arg(kMaxBookmarkDepth);
                    return;
                }
                BookmarkNode sub = BookmarkNode::folder(item.title);
                fill(sub, item.id, level + 1);
                folder.children.append(std::move(sub));
            }
        }
    }

    std::vector<Item> m_items;
    std::vector<bool> m_placed;
    QHash<qint64, std::vector<size_t>> m_children; // by parent, in the order of their positions
    QString m_problem;
};

// Reads the tree from the open database: every row at once, then the tree in memory, which is
// quick for any number of bookmarks.
BookmarkRead readOpenDatabase(const QSqlDatabase& db)
{
    BookmarkRead result;
    QSqlQuery tables(db);
    tables.setForwardOnly(true);
    if (!tables.exec(QStringLiteral("SELECT name FROM sqlite_master WHERE type = 'table'"))) {
        result.problem = databaseProblem(tables.lastError());
        return result;
    }
    QStringList names;
    while (tables.next())
        names << tables.value(0).toString();
    if (tables.lastError().isValid()) {
        result.problem = databaseProblem(tables.lastError());
        return result;
    }
    for (const char* table : {"moz_bookmarks", "moz_places"}) {
        if (!names.contains(QLatin1String(table), Qt::CaseInsensitive)) {
            result.problem =
                QStringLiteral("The file is not a Firefox bookmarks database: it has no table %1").arg(table);
            return result;
        }
    }

    QSqlQuery rows(db);
    rows.setForwardOnly(true);
    if (!rows.exec(QStringLiteral(
            "SELECT b.id, b.parent, b.position, b.type, p.id IS NOT NULL, b.title, p.url, b.guid"
            " FROM moz_bookmarks b LEFT JOIN moz_places p ON p.id = b.fk"))) {
        result.problem = databaseProblem(rows.lastError());
        return result;
    }
    std::vector<Item> items;
    QHash<QString, size_t> topFolders;
    while (rows.next()) {
        Item item;
        item.id = rows.value(0).toLongLong();
        item.parent = rows.value(1).toLongLong();
        item.position = rows.value(2).toLongLong();
        item.type = rows.value(3).toInt();
        item.hasPlace = rows.value(4).toBool();
        item.title = text(rows.value(5));
        item.url = text(rows.value(6));
        const QString guid = rows.value(7).toString();
        for (const auto& top : kTopFolders)
            if (guid == QLatin1String(top.guid)) {
                item.top = true;
                if (!topFolders.contains(guid))
                    topFolders.insert(guid, items.size());
            }
        for (const char* hidden : kHiddenFolders)
            item.top = item.top || guid == QLatin1String(hidden);
        items.push_back(std::move(item));
    }
    // A damaged database can fail part of the way: the rows read before are still put in place.
    const QString damage = rows.lastError().isValid() ? databaseProblem(rows.lastError()) : QString();
    result = TreeBuilder(std::move(items)).build(topFolders);
    if (!damage.isEmpty())
        result.problem = damage;
    return result;
}

// A connection of its own for each reading, so that readings in several threads stay apart; the
// connection is removed once the database object that used it is gone.
class Connection
{
public:
    Connection() : m_name(QStringLiteral("FirefoxPlaces %1").arg(++s_count)) {}
    ~Connection() { QSqlDatabase::removeDatabase(m_name); }
    const QString& name() const { return m_name; }

private:
    static inline std::atomic<quint64> s_count{0};
    QString m_name;
};

} // namespace

BookmarkRead read(const QString& placesFile)
{
    BookmarkRead result;
    if (QFileInfo(placesFile).isDir()) {
        result.problem = QStringLiteral("The file cannot be read: it is a folder");
        return result;
    }
    if (!QSqlDatabase::isDriverAvailable(QStringLiteral("QSQLITE"))) {
        result.problem =
            QStringLiteral("Firefox's bookmarks cannot be read: Qt's SQLite driver is not installed "
                           "(Debian package libqt6sql6-sqlite)");
        return result;
    }
    const QTemporaryDir folder;
    if (!folder.isValid()) {
        result.problem =
            QStringLiteral("Firefox's bookmarks cannot be read: no temporary folder can be made for a "
                           "copy of them (%1)")
                .arg(folder.errorString());
        return result;
    }
    result.problem = copyDatabase(placesFile, folder.path());
    if (!result.problem.isEmpty())
        return result;
    const QString copy = folder.filePath(QStringLiteral("places.sqlite"));
    if (QFileInfo(copy).size() == 0 && QFileInfo(copy + QStringLiteral("-wal")).size() == 0) {
        result.problem = QStringLiteral("The file is not a bookmarks file: it is empty");
        return result;
    }

    const Connection connection;
    // Opened for writing, which is why only the copy is opened: SQLite must be able to write beside a
    // database to take in its log of latest changes.
    QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), connection.name());
    db.setDatabaseName(copy);
    if (!db.open()) {
        result.problem = databaseProblem(db.lastError());
        return result;
    }
    result = readOpenDatabase(db);
    db.close();
    return result;
}

} // namespace FirefoxPlaces
