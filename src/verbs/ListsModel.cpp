#include "ListsModel.h"

#include <algorithm>

void ListsModel::load(PageRecords::Arrays arrays, int count)
{
    clearEntries();
    const int n = std::clamp(count, 0, int(arrays.first.size()));
    for (int i = 0; i < n; ++i) {
        const QString& name = arrays.first[i];
        if (arrays.url[i].trimmed().isEmpty())
            add({name, name, name, QString(), false});
        else
            addPageQuietly(name, arrays.title[i], arrays.url[i]);
    }
    emit reset();
}

bool ListsModel::setTitle(const QString& key, const QString& title)
{
    const auto found = m_index.constFind(key);
    if (found == m_index.cend() || !m_entries[*found].page)
        return false;
    m_entries[*found].title = title;
    emit titleChanged(key, title);
    return true;
}

bool ListsModel::renameList(const QString& oldName, const QString& newName)
{
    const auto found = m_index.constFind(oldName);
    if (found == m_index.cend())
        return false;
    if (oldName != newName && m_index.contains(newName))
        return false; // two lists cannot share a name
    const qsizetype at = *found;
    m_index.remove(oldName);
    m_entries[at].key = newName;
    m_entries[at].title = newName;
    m_index.insert(newName, at);
    for (qsizetype i = 0; i < m_entries.size(); ++i) {
        Entry& entry = m_entries[i];
        if (entry.group.trimmed() != oldName)
            continue;
        entry.group = newName;
        if (!entry.page)
            continue;
        // A page keeps its old key when its new one is taken, as the tree's keys do.
        const QString key = pageKey(entry.url, newName);
        if (!m_index.contains(key)) {
            m_index.remove(entry.key);
            entry.key = key;
            m_index.insert(key, i);
        }
    }
    emit listRenamed(oldName, newName);
    return true;
}

QList<ListPageState> ListsModel::pages(const QString& upperName) const
{
    QList<ListPageState> pages;
    for (const Entry& entry : m_entries)
        if (entry.page && entry.group.toUpper() == upperName)
            pages.append({entry.title, entry.url});
    return pages;
}

QString ListsModel::addNumberedList(const QString& base)
{
    if (addList(base))
        return base;
    // The counter is a 16-bit number; past its end no further name is tried.
    for (int counter = 2; counter <= 32767; ++counter) {
        const QString name = base + u'_' + QString::number(counter);
        if (addList(name))
            return name;
    }
    return QString();
}
