#include "SyncedFolder.h"

#include "FavoritesImport.h"
#include "core/FileName.h"
#include "shortcuts/FavoritesWalk.h"
#include "shortcuts/FreedesktopTrash.h"
#include "shortcuts/ShortcutFile.h"

#include <QDir>
#include <QSet>
#include <QUuid>

#include <sys/stat.h>

namespace SyncedFolder {

namespace {

// Folders deeper than this are not followed: a tree that deep is a loop a file system made.
constexpr int kMaxDepth = 64;
constexpr qsizetype kMaxNameBytes = 255;
constexpr int kMaxNumber = 1000;

struct Found
{
    QString path; // below the root
    QString parentPath;
    QString name;
    bool folder = false;
    quint64 inode = 0;
    qint64 modified = 0;
    qint64 size = 0;
};

QString joined(const QString& folder, const QString& name)
{
    return folder.isEmpty() ? name : folder + u'/' + name;
}

bool statOf(const QString& fullPath, Found* found)
{
    struct stat st {};
    if (::stat(FileName::encode(fullPath).constData(), &st) != 0)
        return false;
    found->inode = quint64(st.st_ino);
    found->modified = qint64(st.st_mtim.tv_sec) * 1000000000 + st.st_mtim.tv_nsec;
    found->size = qint64(st.st_size);
    return true;
}

bool existsOnDisk(const QString& fullPath)
{
    struct stat st {};
    return ::lstat(FileName::encode(fullPath).constData(), &st) == 0;
}

// Whether a name is taken in its folder. A shortcut's name is taken whatever the case of its
// extension: "Shop.url" and "Shop.URL" would be two favourites of one name.
bool taken(const QString& fullPath)
{
    if (!fullPath.endsWith(QStringLiteral(".url"), Qt::CaseInsensitive))
        return existsOnDisk(fullPath);
    const QString base = fullPath.chopped(3);
    for (int cases = 0; cases < 8; ++cases) {
        QString extension = QStringLiteral("url");
        for (int letter = 0; letter < 3; ++letter)
            if (cases & (1 << letter))
                extension[letter] = extension.at(letter).toUpper();
        if (existsOnDisk(base + extension))
            return true;
    }
    return false;
}

void walk(const QString& root, const QString& below, int depth, QList<Found>* out)
{
    if (depth > kMaxDepth)
        return;
    QStringList folders, shortcuts;
    FavoritesWalk::list(joined(root, below), &folders, &shortcuts);
    for (const QString& name : shortcuts) {
        Found found{joined(below, name), below, name, false};
        if (statOf(root + u'/' + found.path, &found))
            out->append(found);
    }
    for (const QString& name : folders) {
        Found found{joined(below, name), below, name, true};
        if (!statOf(root + u'/' + found.path, &found))
            continue;
        out->append(found);
        walk(root, found.path, depth + 1, out);
    }
}

// A title as a file name can hold it: no "/", no NUL, no line ends or other control characters.
QString cleanName(const QString& title)
{
    QString name = FavoritesImport::folderName(title);
    for (QChar& c : name)
        if (c.unicode() < 0x20)
            c = u' ';
    return name;
}

QString folderFileName(const QString& title)
{
    return cleanName(title);
}

QString diskName(const TreeMerge::Item& item)
{
    return item.folder ? folderFileName(item.title) : shortcutFileName(item.title);
}

// What a name on disk is told apart by: a shortcut's extension in any case is the same.
QString nameKey(const TreeMerge::Item& item)
{
    const QString name = diskName(item);
    return item.folder ? name : name.chopped(4) + QStringLiteral(".url");
}

QString lastPart(const QString& path)
{
    return path.section(u'/', -1);
}

// The folder's work while it is made to hold a target: where each entry lies at this moment.
class Applier
{
public:
    Applier(const QString& root, const Read& now, const TreeMerge::Tree& target)
        : m_root(root), m_target(target)
    {
        m_result.places = now.places;
        for (auto it = now.tree.cbegin(); it != now.tree.cend(); ++it)
            m_at.insert(it.key(), {it->parent, lastPart(now.places.value(it.key()).path), it->folder});
        m_now = now.tree;
    }

    Applied run()
    {
        trashWhollyDeleted();
        placeFolders();
        placeShortcuts();
        trashTheRest();
        for (auto it = m_at.cbegin(); it != m_at.cend(); ++it) {
            Place& place = m_result.places[it.key()];
            place.path = pathOf(it.key());
            place.folder = it->folder;
        }
        for (auto it = m_result.places.begin(); it != m_result.places.end();)
            it = m_at.contains(it.key()) ? std::next(it) : m_result.places.erase(it);
        return m_result;
    }

private:
    struct At
    {
        QString parent;
        QString name; // on disk
        bool folder = false;
    };

    QString pathOf(const QString& id) const
    {
        QStringList parts;
        QString at = id;
        for (int steps = 0; !at.isEmpty() && steps <= kMaxDepth * 4 + m_at.size(); ++steps) {
            const auto it = m_at.constFind(at);
            if (it == m_at.cend())
                break;
            parts.prepend(it->name);
            at = it->parent;
        }
        return parts.join(u'/');
    }

    QString full(const QString& id) const
    {
        return id.isEmpty() ? m_root : m_root + u'/' + pathOf(id);
    }

    // A name in the folder `parent` that nothing holds yet: `wanted`, or its numbered form.
    QString freeName(const QString& parent, const QString& wanted) const
    {
        const QString folder = full(parent);
        for (int number = 1; number <= kMaxNumber; ++number) {
            const QString name = number == 1 ? wanted : FavoritesImport::numberedName(wanted, number);
            if (!taken(folder + u'/' + name))
                return name;
        }
        return QString();
    }

    QString wantedName(const TreeMerge::Item& item) const
    {
        return diskName(item);
    }

    bool inPlace(const QString& id, const TreeMerge::Item& item) const
    {
        const At& at = m_at.value(id);
        if (at.parent != item.parent)
            return false;
        const QString title = at.folder ? at.name : FavoritesWalk::shortcutText(at.name);
        return title == item.title || at.name == wantedName(item);
    }

    void fail(const QString& what)
    {
        m_result.failed << what;
    }

    // Moves the entry `id` to the place `item` names; true when it stands there now.
    bool move(const QString& id, const TreeMerge::Item& item)
    {
        if (inPlace(id, item))
            return true;
        const QString from = full(id);
        const QString name = freeName(item.parent, wantedName(item));
        const QString to = full(item.parent) + u'/' + name;
        if (name.isEmpty() || ::rename(FileName::encode(from).constData(), FileName::encode(to).constData()) != 0) {
            fail(QStringLiteral("could not move %1 to %2").arg(from, to));
            return false;
        }
        m_at[id] = {item.parent, name, item.folder};
        ++m_result.moved;
        return true;
    }

    // Top down, so that each folder's folder stands where it belongs before it moves in.
    void placeFolders()
    {
        QHash<QString, QStringList> children;
        for (auto it = m_target.cbegin(); it != m_target.cend(); ++it)
            if (it->folder)
                children[it->parent] << it.key();
        QStringList level = children.value(TreeMerge::kRoot);
        while (!level.isEmpty()) {
            QStringList next;
            for (const QString& id : placeInTurn(level))
                next << children.value(id);
            level = next;
        }
    }

    void placeShortcuts()
    {
        QStringList ids;
        for (auto it = m_target.cbegin(); it != m_target.cend(); ++it)
            if (!it->folder)
                ids << it.key();
        placeInTurn(ids);
    }

    // Each entry made or moved to its place; the ones that stand there now. An entry that takes
    // the name another one is leaving waits for it to leave, so that two entries swapping names
    // keep them rather than end up numbered.
    QStringList placeInTurn(QStringList ids)
    {
        ids.sort();
        QStringList placed;
        for (int pass = 0; pass < 3 && !ids.isEmpty(); ++pass) {
            QStringList waiting;
            for (const QString& id : std::as_const(ids)) {
                const TreeMerge::Item& item = m_target.value(id);
                if (!item.parent.isEmpty() && !m_at.contains(item.parent))
                    continue; // its folder could not be made: nothing goes below it
                const bool there = m_at.contains(id);
                if (pass < 2 && !(there && inPlace(id, item)) && taken(full(item.parent) + u'/' + wantedName(item))) {
                    waiting << id;
                    continue;
                }
                if (there ? move(id, item) : make(id, item)) {
                    if (there && !item.folder)
                        readdress(id, item.url);
                    placed << id;
                }
            }
            ids = waiting;
        }
        return placed;
    }

    bool make(const QString& id, const TreeMerge::Item& item)
    {
        const QString name = freeName(item.parent, wantedName(item));
        const QString path = full(item.parent) + u'/' + name;
        const bool made = !name.isEmpty()
                          && (item.folder ? QDir().mkdir(path) : WriteShortcutFile(path, item.url));
        if (!made) {
            fail(QStringLiteral("could not make %1").arg(path));
            return false;
        }
        m_at.insert(id, {item.parent, name, item.folder});
        m_result.places.insert(id, Place{QString(), item.folder, 0, 0, 0, QString()});
        ++m_result.made;
        return true;
    }

    void readdress(const QString& id, const QString& url)
    {
        Place& place = m_result.places[id];
        if (!m_now.contains(id) || m_now.value(id).url == url)
            return;
        const QString path = full(id);
        // The address is rewritten in place, keeping the shortcut's other lines; an address that
        // no shortcut can carry that way (not plain ASCII) gets a shortcut written anew.
        if (!RewriteShortcutAddress(path, url) && !WriteShortcutFile(path, url)) {
            fail(QStringLiteral("could not point %1 to %2").arg(path, url));
            return;
        }
        place.inode = 0; // read it again
        ++m_result.readdressed;
    }

    void trash(const QString& id)
    {
        const QString path = full(id);
        if (!FreedesktopTrash::sendToTrash(path)) {
            fail(QStringLiteral("could not send %1 to the trash").arg(path));
            return;
        }
        ++m_result.trashed;
        // Everything below went with it.
        QMultiHash<QString, QString> children;
        for (auto it = m_at.cbegin(); it != m_at.cend(); ++it)
            children.insert(it->parent, it.key());
        QStringList gone{id};
        for (qsizetype i = 0; i < gone.size(); ++i)
            gone << children.values(gone.at(i));
        for (const QString& each : std::as_const(gone))
            m_at.remove(each);
    }

    QStringList deletedTopmost(bool whollyOnly) const
    {
        QSet<QString> keptBelow; // deleted folders that still hold something the target keeps
        for (auto it = m_at.cbegin(); it != m_at.cend(); ++it) {
            if (!m_target.contains(it.key()))
                continue;
            for (QString up = it->parent; !up.isEmpty() && m_at.contains(up) && !keptBelow.contains(up);
                 up = m_at.value(up).parent)
                keptBelow.insert(up);
        }
        QStringList ids;
        for (auto it = m_at.cbegin(); it != m_at.cend(); ++it) {
            if (m_target.contains(it.key()) || (whollyOnly && keptBelow.contains(it.key())))
                continue;
            const QString parent = it->parent;
            const bool parentGoes = !parent.isEmpty() && m_at.contains(parent) && !m_target.contains(parent)
                                    && !(whollyOnly && keptBelow.contains(parent));
            if (!parentGoes)
                ids << it.key();
        }
        ids.sort();
        return ids;
    }

    // What goes with everything below it goes first, so that its names are free for what comes.
    void trashWhollyDeleted()
    {
        for (const QString& id : deletedTopmost(true))
            trash(id);
    }

    // Folders that held something the target keeps elsewhere go once it has moved out.
    void trashTheRest()
    {
        for (const QString& id : deletedTopmost(false))
            if (m_at.contains(id))
                trash(id);
    }

    QString m_root;
    const TreeMerge::Tree& m_target;
    TreeMerge::Tree m_now;
    QHash<QString, At> m_at;
    Applied m_result;
};

} // namespace

Read read(const QString& root, const Places& known)
{
    QList<Found> found;
    walk(root, QString(), 0, &found);

    QHash<QString, QString> byPath;
    QHash<quint64, QString> byInode;
    for (auto it = known.cbegin(); it != known.cend(); ++it) {
        byPath.insert(it->path, it.key());
        if (it->inode)
            byInode.insert(it->inode, it.key());
    }
    // Known again: first what stayed where it was, then what moved (the same inode elsewhere),
    // then what was replaced where it was (a shortcut saved again through a new file).
    QStringList idOf(found.size());
    QSet<QString> claimed;
    const auto claim = [&](qsizetype i, const QString& id) {
        if (id.isEmpty() || claimed.contains(id) || (known.contains(id) && known.value(id).folder != found.at(i).folder))
            return;
        idOf[i] = id;
        claimed.insert(id);
    };
    for (qsizetype i = 0; i < found.size(); ++i) {
        const QString id = byPath.value(found.at(i).path);
        if (!id.isEmpty() && known.value(id).inode == found.at(i).inode)
            claim(i, id);
    }
    for (qsizetype i = 0; i < found.size(); ++i)
        if (idOf.at(i).isEmpty())
            claim(i, byInode.value(found.at(i).inode));
    for (qsizetype i = 0; i < found.size(); ++i)
        if (idOf.at(i).isEmpty())
            claim(i, byPath.value(found.at(i).path));
    for (qsizetype i = 0; i < found.size(); ++i)
        if (idOf.at(i).isEmpty())
            claim(i, QUuid::createUuid().toString(QUuid::WithoutBraces));

    Read result;
    QHash<QString, QString> folderIds; // path below the root -> id
    for (qsizetype i = 0; i < found.size(); ++i)
        if (found.at(i).folder)
            folderIds.insert(found.at(i).path, idOf.at(i));
    for (qsizetype i = 0; i < found.size(); ++i) {
        const Found& entry = found.at(i);
        const QString& id = idOf.at(i);
        Place place{entry.path, entry.folder, entry.inode, entry.modified, entry.size, QString()};
        if (!entry.folder) {
            const Place was = known.value(id);
            const bool unchanged = was.inode == entry.inode && was.modified == entry.modified
                                   && was.size == entry.size && was.path == entry.path && entry.inode;
            place.url = unchanged ? was.url : ShortcutAddress(root + u'/' + entry.path);
        }
        TreeMerge::Item item;
        item.parent = entry.parentPath.isEmpty() ? TreeMerge::kRoot : folderIds.value(entry.parentPath);
        item.folder = entry.folder;
        item.title = entry.folder ? entry.name : FavoritesWalk::shortcutText(entry.name);
        item.url = place.url;
        result.tree.insert(id, item);
        result.places.insert(id, place);
    }
    return result;
}

Applied apply(const QString& root, const Read& now, const TreeMerge::Tree& target)
{
    return Applier(root, now, target).run();
}

TreeMerge::Tree distinctNames(const TreeMerge::Tree& tree)
{
    QHash<QString, QStringList> siblings; // by folder
    for (auto it = tree.cbegin(); it != tree.cend(); ++it)
        siblings[it->parent] << it.key();
    TreeMerge::Tree result = tree;
    for (QStringList& ids : siblings) {
        ids.sort();
        QSet<QString> used;
        QStringList clashing;
        for (const QString& id : std::as_const(ids)) {
            const QString key = nameKey(tree.value(id));
            if (used.contains(key))
                clashing << id;
            else
                used.insert(key);
        }
        for (const QString& id : std::as_const(clashing)) {
            TreeMerge::Item& item = result[id];
            const QString title = item.title;
            for (int number = 2; number <= kMaxNumber + 1; ++number) {
                item.title = QStringLiteral("%1 (%2)").arg(title).arg(number);
                if (!used.contains(nameKey(item)))
                    break;
            }
            used.insert(nameKey(item));
        }
    }
    return result;
}

QString shortcutFileName(const QString& title)
{
    return FileName::cutToBytes(cleanName(title), kMaxNameBytes - 4) + QStringLiteral(".URL");
}

} // namespace SyncedFolder
