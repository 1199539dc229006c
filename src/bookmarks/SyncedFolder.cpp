#include "SyncedFolder.h"

#include "FavoritesImport.h"
#include "core/FileName.h"
#include "shortcuts/FavoritesWalk.h"
#include "shortcuts/ShortcutFile.h"

#include <QSet>
#include <QUuid>

#include <sys/stat.h>

namespace SyncedFolder {

namespace {

constexpr qsizetype kMaxNameBytes = 255;

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

// What a name on disk is told apart by: a shortcut's extension in any case is the same.
QString nameKey(const TreeMerge::Item& item)
{
    const QString name = fileName(item);
    return item.folder ? name : name.chopped(4) + QStringLiteral(".url");
}

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

QString fileName(const TreeMerge::Item& item)
{
    return item.folder ? cleanName(item.title) : shortcutFileName(item.title);
}

QString shortcutFileName(const QString& title)
{
    return FileName::cutToBytes(cleanName(title), kMaxNameBytes - 4) + QStringLiteral(".URL");
}

} // namespace SyncedFolder
