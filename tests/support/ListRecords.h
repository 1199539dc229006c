#pragma once

#include "verbs/ListsModel.h"
#include "verbs/ProgramState.h"

// Gives the lists' model these lists as the list file would: a record for each list, then one for
// each of its pages. For tests and benchmarks that need lists without a list file.
inline void loadLists(ListsModel* model, const QList<ListState>& lists)
{
    QList<QString> names, titles, urls;
    for (const ListState& list : lists) {
        names << list.name;
        titles << QString();
        urls << QString();
        for (const ListPageState& page : list.pages) {
            names << list.name;
            titles << page.title;
            urls << page.address;
        }
    }
    model->load({names, titles, urls}, int(names.size()));
}
