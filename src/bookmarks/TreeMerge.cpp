#include "TreeMerge.h"

#include <QSet>

namespace TreeMerge {

namespace {

// One field of three: what changed since the base wins; the same change on both sides is one.
template<typename T> bool pick(const T& base, const T& mine, const T& theirs, T* out)
{
    if (mine == theirs || theirs == base) {
        *out = mine;
        return true;
    }
    if (mine == base) {
        *out = theirs;
        return true;
    }
    *out = mine;
    return false; // both changed it, differently
}

bool isInside(const Tree& tree, QString id, const QString& folder)
{
    // Whether `folder` is `id` or one of its folders, walking up at most the tree's size.
    for (qsizetype steps = 0; !id.isEmpty() && steps <= tree.size(); ++steps) {
        if (id == folder)
            return true;
        const auto it = tree.constFind(id);
        if (it == tree.cend())
            return false;
        id = it->parent;
    }
    return false;
}

} // namespace

bool isWhole(const Tree& tree)
{
    for (auto it = tree.cbegin(); it != tree.cend(); ++it) {
        if (!it->parent.isEmpty() && !tree.contains(it->parent))
            return false;
        if (!it->parent.isEmpty() && !tree.value(it->parent).folder)
            return false;
        if (isInside(tree, it->parent, it.key()))
            return false;
    }
    return true;
}

Result merge(const Tree& base, const Tree& mine, const Tree& theirs, const QString& theirName)
{
    Result result;
    Tree& merged = result.merged;
    QSet<QString> ids;
    for (const Tree* tree : {&base, &mine, &theirs})
        for (auto it = tree->cbegin(); it != tree->cend(); ++it)
            ids.insert(it.key());
    QStringList order = QStringList(ids.cbegin(), ids.cend());
    order.sort(); // the same three trees, the same result
    QStringList conflicted;
    for (const QString& id : order) {
        const bool inBase = base.contains(id), inMine = mine.contains(id), inTheirs = theirs.contains(id);
        if (!inBase) {
            if (inMine && inTheirs && mine.value(id) != theirs.value(id)) {
                merged.insert(id, mine.value(id));
                conflicted << id;
            } else {
                merged.insert(id, inMine ? mine.value(id) : theirs.value(id));
            }
            continue;
        }
        const Item& was = base.value(id);
        if (!inMine && !inTheirs)
            continue; // deleted on both sides
        if (!inMine || !inTheirs) {
            const Item& other = inMine ? mine.value(id) : theirs.value(id);
            if (other == was)
                continue; // deleted on one side, left alone on the other
            merged.insert(id, other); // a change beats a deletion
            result.kept << id;
            continue;
        }
        const Item& a = mine.value(id);
        const Item& b = theirs.value(id);
        Item item;
        // Moved to two places: this side's place stands. Named or pointed differently: a copy.
        pick(was.parent, a.parent, b.parent, &item.parent);
        const bool titleClean = pick(was.title, a.title, b.title, &item.title);
        const bool urlClean = pick(was.url, a.url, b.url, &item.url);
        item.folder = a.folder;
        merged.insert(id, item);
        if (!titleClean || !urlClean)
            conflicted << id;
    }
    // Both sides changed these differently: theirs comes beside ours as a copy.
    for (const QString& id : conflicted) {
        Item copy = theirs.value(id);
        if (copy.folder)
            continue; // a folder's content merges inside it; only its name was ours
        copy.parent = merged.value(id).parent;
        copy.title = QStringLiteral("%1 (from %2)").arg(copy.title, theirName);
        const QString copyId = id + QStringLiteral("~") + theirName;
        merged.insert(copyId, copy);
        result.copies << copyId;
    }
    // Folders that are gone but still hold something: back from whichever side last had them.
    bool changed = true;
    while (changed) {
        changed = false;
        for (auto it = merged.cbegin(); it != merged.cend(); ++it) {
            const QString parent = it->parent; // a copy: the insert below moves the items
            if (parent.isEmpty() || merged.contains(parent))
                continue;
            const Item back = mine.contains(parent) ? mine.value(parent)
                              : theirs.contains(parent) ? theirs.value(parent)
                                                        : base.value(parent);
            merged.insert(parent, back.folder ? back : Item{QString(), true, back.title, QString()});
            result.broughtBack << parent;
            changed = true;
            break; // the hash changed under the iterator
        }
    }
    // A move on each side that puts a folder inside itself: on the circle, the entry whose place
    // came from the other side goes back to its place here.
    for (const QString& id : order) {
        if (!merged.contains(id) || !isInside(merged, merged.value(id).parent, id))
            continue;
        QString at = id;
        for (qsizetype steps = 0; steps <= merged.size(); ++steps) {
            Item& item = merged[at];
            if (mine.contains(at) && item.parent != mine.value(at).parent) {
                item.parent = mine.value(at).parent;
                break;
            }
            at = item.parent;
            if (at == id || at.isEmpty() || !merged.contains(at))
                break;
        }
        if (isInside(merged, merged.value(id).parent, id))
            merged[id].parent = kRoot;
    }
    // Whatever stands under an entry that is no folder (a folder turned bookmark on one side) goes
    // to the top rather than out of sight.
    for (auto it = merged.begin(); it != merged.end(); ++it)
        if (!it->parent.isEmpty() && (!merged.contains(it->parent) || !merged.value(it->parent).folder))
            it->parent = kRoot;
    result.copies.sort();
    result.kept.sort();
    result.broughtBack.sort();
    return result;
}

} // namespace TreeMerge
