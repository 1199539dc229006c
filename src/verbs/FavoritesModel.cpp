#include "FavoritesModel.h"

#include "core/Globals.h"

#include <QSet>

#include <utility>

void FavoritesModel::walk()
{
    m_hold = FavoritesWalk::walk(globals().FavoritesPath);
    m_leftovers = m_hold.leftovers;
}

void FavoritesModel::takeWalk()
{
    m_entries.clear();
    m_index.clear();
    // Folders first, breadth first, so that every parent exists before its children.
    QStringList relative;
    relative.reserve(m_hold.folders.size());
    for (const QString& folder : m_hold.folders) {
        const QString rel = FavoritesWalk::relativePath(folder);
        relative.append(rel);
        const qsizetype slash = rel.lastIndexOf(u'/');
        if (slash < 0)
            addEntry(rel, rel, rel, true, false);
        else
            addEntry(rel.left(slash), rel.mid(slash + 1), rel, true, true);
    }
    for (qsizetype i = 0; i < m_hold.folders.size() && i < m_hold.shortcuts.size(); ++i) {
        for (const QString& file : m_hold.shortcuts[i]) {
            const QString text = FavoritesWalk::shortcutText(file);
            addEntry(relative[i], text, relative[i] + u'/' + text, false, true, file);
        }
    }
    for (const QString& file : m_hold.rootShortcuts) {
        const QString text = FavoritesWalk::shortcutText(file);
        addEntry(text, text, text, false, false, file);
    }
    m_hold = {}; // the walk is needed no longer
    emit reset();
}

void FavoritesModel::rebuild()
{
    walk();
    takeWalk();
}

QStringList FavoritesModel::takeLeftovers()
{
    return std::exchange(m_leftovers, {});
}

bool FavoritesModel::addEntry(const QString& parentKey, const QString& text, const QString& key, bool folder,
                              bool child, const QString& fileName)
{
    Entry entry;
    entry.key = child ? key : parentKey;
    entry.parentKey = child ? parentKey : QString();
    entry.text = child ? text : parentKey;
    entry.folder = folder;
    if (m_index.contains(entry.key) || (child && !m_index.contains(parentKey)))
        return false; // a key present already, or a missing parent: skipped
    const QString root = globals().FavoritesPath;
    if (folder) {
        entry.path = root + u'/' + entry.key;
    } else {
        // The file as it lies on disk: names differ in case on this file system.
        const QString where = child ? root + u'/' + parentKey : root;
        entry.path = where + u'/' +
                     (fileName.isEmpty() ? entry.key.section(u'/', -1) + QStringLiteral(".url") : fileName);
    }
    m_index.insert(entry.key, m_entries.size());
    m_entries.append(std::move(entry));
    return true;
}

bool FavoritesModel::addShortcut(const QString& parentKey, const QString& fileName)
{
    const QString text = FavoritesWalk::shortcutText(fileName);
    const bool added = parentKey.isEmpty() ? addEntry(text, text, text, false, false, fileName)
                                           : addEntry(parentKey, text, parentKey + u'/' + text, false, true, fileName);
    if (added)
        emit this->added(m_entries.last().key);
    return added;
}

bool FavoritesModel::remove(const QString& key)
{
    if (!m_index.contains(key))
        return false;
    // Parents come before their children, so one pass finds everything below the entry.
    QSet<QString> going{key};
    QList<Entry> kept;
    kept.reserve(m_entries.size());
    for (Entry& entry : m_entries) {
        if (going.contains(entry.key) || going.contains(entry.parentKey))
            going.insert(entry.key);
        else
            kept.append(std::move(entry));
    }
    m_entries = std::move(kept);
    m_index.clear();
    for (qsizetype i = 0; i < m_entries.size(); ++i)
        m_index.insert(m_entries[i].key, i);
    emit removed(key);
    return true;
}

const FavoritesModel::Entry* FavoritesModel::find(const QString& key) const
{
    const auto found = m_index.constFind(key);
    return found == m_index.cend() ? nullptr : &m_entries[*found];
}
