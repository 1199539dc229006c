#pragma once

#include "ProgramState.h"
#include "core/PageRecords.h"

#include <QHash>
#include <QObject>

// The favourite lists as the program holds them while it runs: lists and their pages in the order
// they were made, each found by its key (a list by its name, a page by its address, "/" and its
// list's name), as the list file keeps them and as the lists tree shows them. No widget: the tree,
// the run and every door read and change the lists here.
class ListsModel : public QObject
{
    Q_OBJECT

public:
    struct Entry
    {
        QString key;
        QString list; // the list it belongs to; a list belongs to itself
        QString title;
        QString url;
        bool page = false;
    };

    using QObject::QObject;

    // The lists of the list records (the shared arrays): a list record starts a list, a page
    // record joins its list; a second list of the same name and a page its list holds already or
    // whose list is missing are left out.
    void load(PageRecords::Arrays arrays, int count);
    // One record per entry, in the order they were made: a page gives (list, title, address), a
    // list (name, " ", " "). Entries beyond the arrays are dropped. The number written.
    int toRecords(PageRecords::Arrays arrays) const;

    static QString pageKey(const QString& url, const QString& list) { return url + u'/' + list; }

    // False (and nothing changes) when the key is taken.
    bool addList(const QString& name);
    // False when the list is missing or holds the page already.
    bool addPage(const QString& list, const QString& title, const QString& url);
    // A page's new title (edited in the tree); false when there is no such page.
    bool setTitle(const QString& key, const QString& title);
    // Gives the list a new name, and its pages with it; false when the name is taken.
    bool renameList(const QString& oldName, const QString& newName);

    bool contains(const QString& key) const { return m_index.contains(key); }
    // Lists and pages together.
    int count() const { return int(m_entries.size()); }
    const QList<Entry>& entries() const { return m_entries; }
    QStringList names() const;
    // The pages of the list `upperName` (its name upper-cased), in order.
    QList<ListPageState> pages(const QString& upperName) const;
    // The pages of the list named exactly `name`.
    QList<ListPageState> pagesOf(const QString& name) const;

signals:
    void reset();
    void listAdded(const QString& name);
    void pageAdded(const QString& list, const QString& title, const QString& url);
    void listRenamed(const QString& oldName, const QString& newName);
    void titleChanged(const QString& key, const QString& title);

private:
    bool add(Entry entry);

    QList<Entry> m_entries;
    QHash<QString, qsizetype> m_index; // key -> position in m_entries
};
