#include "SyncedFolder.h"

#include "FavoritesImport.h"
#include "core/FileName.h"
#include "shortcuts/FavoritesWalk.h"
#include "shortcuts/FreedesktopTrash.h"
#include "shortcuts/ShortcutFile.h"

#include <QDir>
#include <QMultiHash>
#include <QSet>

#include <sys/stat.h>

// The Favorites folder made to hold a merged tree: folders made and moved top down, shortcuts
// after them, what is gone sent to the trash, nothing written over.
namespace SyncedFolder {

namespace {

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
        return fileName(item);
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

Applied apply(const QString& root, const Read& now, const TreeMerge::Tree& target)
{
    return Applier(root, now, target).run();
}

} // namespace SyncedFolder
