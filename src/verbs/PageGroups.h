#pragma once

#include "ProgramState.h"
#include "core/PageRecords.h"

#include <QHash>
#include <QObject>

// Pages kept in groups, as the favourite lists and the history keep them: groups and pages in the
// order they were made, each found by its key (a group by its name, a page by its address, "/"
// and its group's name), and written back as records in that order. No widget: the trees show it.
class PageGroups : public QObject
{
    Q_OBJECT

public:
    struct Entry
    {
        QString key;
        QString group; // the group it belongs to; a group belongs to itself
        QString title;
        QString url;
        bool page = false;
    };

    using QObject::QObject;

    static QString pageKey(const QString& url, const QString& group) { return url + u'/' + group; }

    // False (and nothing changes) when the key is taken.
    bool addGroup(const QString& name);
    // False when the group is missing or holds the page already.
    bool addPage(const QString& group, const QString& title, const QString& url);
    // Takes the page of that key out of its group; false when there is no such page.
    bool removePage(const QString& key);
    // Gives the page of that key a new address where it stands (and so a new key); false when
    // there is no such page or its group holds the new address already.
    bool setPageAddress(const QString& key, const QString& url);

    // One record per entry, in the order they were made: a page gives (group, title, address), a
    // group (name, " ", " "). Entries beyond the arrays are dropped. The number written.
    int toRecords(PageRecords::Arrays arrays) const;

    bool contains(const QString& key) const { return m_index.contains(key); }
    // Groups and pages together.
    int count() const { return int(m_entries.size()); }
    const QList<Entry>& entries() const { return m_entries; }
    QStringList groups() const;
    // The pages of the group named exactly `name`.
    QList<ListPageState> pagesOf(const QString& name) const;

signals:
    // Everything may have changed: read it all again.
    void reset();
    void groupAdded(const QString& name);
    void pageAdded(const QString& group, const QString& title, const QString& url);
    void pageRemoved(const QString& key);
    void pageAddressChanged(const QString& oldKey, const QString& newKey);

protected:
    // Adds without a word (loading); false when the key is taken.
    bool add(Entry entry);
    bool addPageQuietly(const QString& group, const QString& title, const QString& url);
    void clearEntries();

    QList<Entry> m_entries;
    QHash<QString, qsizetype> m_index; // key -> position in m_entries
};
