#pragma once

#include "PageGroups.h"

// The favourite lists as the program holds them while it runs: each list a group of pages, as the
// list file keeps them and the lists tree shows them. The tree, the run and every door read and
// change the lists here.
class ListsModel : public PageGroups
{
    Q_OBJECT

public:
    using PageGroups::PageGroups;

    // The lists of the list records (the shared arrays): a list record starts a list, a page
    // record joins its list; a second list of the same name and a page its list holds already or
    // whose list is missing are left out.
    void load(PageRecords::Arrays arrays, int count);

    bool addList(const QString& name) { return addGroup(name); }
    // Makes a list named `base`, or "base_2", "base_3", ... when the name is taken; the name it
    // got, or "" when every number is taken.
    QString addNumberedList(const QString& base);
    // A page's new title (edited in the tree); false when there is no such page.
    bool setTitle(const QString& key, const QString& title);
    // Gives the list a new name, and its pages with it; false when the name is taken.
    bool renameList(const QString& oldName, const QString& newName);

    QStringList names() const { return groups(); }
    // The pages of the list `upperName` (its name upper-cased), in order.
    QList<ListPageState> pages(const QString& upperName) const;

signals:
    void listRenamed(const QString& oldName, const QString& newName);
    void titleChanged(const QString& key, const QString& title);
};
