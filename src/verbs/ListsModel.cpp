#include "ListsModel.h"

void ListsModel::load(PageRecords::Arrays arrays, int count)
{
    m_entries.clear();
    m_index.clear();
    const int n = std::clamp(count, 0, int(arrays.first.size()));
    for (int i = 0; i < n; ++i) {
        const QString& name = arrays.first[i];
        if (arrays.url[i].trimmed().isEmpty())
            add({name, name, name, QString(), false});
        else if (m_index.contains(name))
            add({pageKey(arrays.url[i], name), name, arrays.title[i], arrays.url[i], true});
    }
    emit reset();
}

int ListsModel::toRecords(PageRecords::Arrays arrays) const
{
    const qsizetype capacity = arrays.first.size();
    int n = 0;
    for (const Entry& entry : m_entries) {
        if (n >= capacity)
            break; // the surplus is dropped without a word
        if (entry.page) {
            arrays.first[n] = entry.list;
            arrays.title[n] = entry.title;
            arrays.url[n] = entry.url;
        } else {
            // A list is a record with a single blank for its title and address.
            arrays.first[n] = entry.key;
            arrays.title[n] = QStringLiteral(" ");
            arrays.url[n] = QStringLiteral(" ");
        }
        ++n;
    }
    return n;
}

bool ListsModel::add(Entry entry)
{
    if (m_index.contains(entry.key))
        return false;
    m_index.insert(entry.key, m_entries.size());
    m_entries.append(std::move(entry));
    return true;
}

bool ListsModel::addList(const QString& name)
{
    if (!add({name, name, name, QString(), false}))
        return false;
    emit listAdded(name);
    return true;
}

bool ListsModel::addPage(const QString& list, const QString& title, const QString& url)
{
    // A page goes under the entry whose key is its list's name.
    if (!m_index.contains(list))
        return false;
    if (!add({pageKey(url, list), list, title, url, true}))
        return false;
    emit pageAdded(list, title, url);
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
        if (entry.list.trimmed() != oldName)
            continue;
        entry.list = newName;
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

bool ListsModel::setTitle(const QString& key, const QString& title)
{
    const auto found = m_index.constFind(key);
    if (found == m_index.cend() || !m_entries[*found].page)
        return false;
    m_entries[*found].title = title;
    emit titleChanged(key, title);
    return true;
}

QStringList ListsModel::names() const
{
    QStringList names;
    for (const Entry& entry : m_entries)
        if (!entry.page)
            names.append(entry.key);
    return names;
}

QList<ListPageState> ListsModel::pagesOf(const QString& name) const
{
    QList<ListPageState> pages;
    for (const Entry& entry : m_entries)
        if (entry.page && entry.list == name)
            pages.append({entry.title, entry.url});
    return pages;
}

QList<ListPageState> ListsModel::pages(const QString& upperName) const
{
    QList<ListPageState> pages;
    for (const Entry& entry : m_entries)
        if (entry.page && entry.list.toUpper() == upperName)
            pages.append({entry.title, entry.url});
    return pages;
}
