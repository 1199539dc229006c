#include "PageGroups.h"

bool PageGroups::add(Entry entry)
{
    if (m_index.contains(entry.key))
        return false;
    m_index.insert(entry.key, m_entries.size());
    m_entries.append(std::move(entry));
    return true;
}

void PageGroups::clearEntries()
{
    m_entries.clear();
    m_index.clear();
}

bool PageGroups::addPageQuietly(const QString& group, const QString& title, const QString& url)
{
    // A page goes under the entry whose key is its group's name.
    return m_index.contains(group) && add({pageKey(url, group), group, title, url, true});
}

bool PageGroups::removePage(const QString& key)
{
    const auto found = m_index.constFind(key);
    if (found == m_index.cend() || !m_entries.at(*found).page)
        return false;
    m_entries.removeAt(*found);
    m_index.clear();
    for (qsizetype i = 0; i < m_entries.size(); ++i)
        m_index.insert(m_entries.at(i).key, i);
    emit pageRemoved(key);
    return true;
}

bool PageGroups::setPageAddress(const QString& key, const QString& url)
{
    const auto found = m_index.constFind(key);
    if (found == m_index.cend() || !m_entries.at(*found).page)
        return false;
    Entry& entry = m_entries[*found];
    const QString newKey = pageKey(url, entry.group);
    if (m_index.contains(newKey))
        return false;
    const qsizetype at = *found;
    m_index.remove(key);
    entry.key = newKey;
    entry.url = url;
    m_index.insert(newKey, at);
    emit pageAddressChanged(key, newKey);
    return true;
}

bool PageGroups::addGroup(const QString& name)
{
    if (!add({name, name, name, QString(), false}))
        return false;
    emit groupAdded(name);
    return true;
}

bool PageGroups::addPage(const QString& group, const QString& title, const QString& url)
{
    if (!addPageQuietly(group, title, url))
        return false;
    emit pageAdded(group, title, url);
    return true;
}

int PageGroups::toRecords(PageRecords::Arrays arrays) const
{
    const qsizetype capacity = arrays.first.size();
    int n = 0;
    for (const Entry& entry : m_entries) {
        if (n >= capacity)
            break; // the surplus is dropped without a word
        if (entry.page) {
            arrays.first[n] = entry.group;
            arrays.title[n] = entry.title;
            arrays.url[n] = entry.url;
        } else {
            // A group is a record with a single blank for its title and address.
            arrays.first[n] = entry.key;
            arrays.title[n] = QStringLiteral(" ");
            arrays.url[n] = QStringLiteral(" ");
        }
        ++n;
    }
    return n;
}

QStringList PageGroups::groups() const
{
    QStringList names;
    for (const Entry& entry : m_entries)
        if (!entry.page)
            names.append(entry.key);
    return names;
}

QList<ListPageState> PageGroups::pagesOf(const QString& name) const
{
    QList<ListPageState> pages;
    for (const Entry& entry : m_entries)
        if (entry.page && entry.group == name)
            pages.append({entry.title, entry.url});
    return pages;
}
