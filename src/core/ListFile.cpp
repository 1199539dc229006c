#include "ListFile.h"

#include "Globals.h"
#include "PageRecords.h"

namespace {
PageRecords::Arrays listArrays(Globals& g)
{
    return {g.ListName, g.ListTitle, g.ListUrl};
}
} // namespace

void ClearListsAndHistory()
{
    Globals& g = globals();
    // The last element of each array is left as it is, as it always has been.
    for (int i = 0; i < kListCapacity - 1; ++i) {
        g.ListName[i].clear();
        g.ListUrl[i].clear();
        g.ListTitle[i].clear();
    }
    for (int i = 0; i < kHistoryCapacity - 1; ++i) {
        g.HistGroup[i].clear();
        g.HistTitle[i].clear();
        g.HistUrl[i].clear();
    }
    g.HistoryCount = 0;
}

bool LoadListFile(const QString& path)
{
    Globals& g = globals();
    ClearListsAndHistory();
    g.ListCount = 0;
    const auto records = PageRecords::load(path, listArrays(g));
    g.ListCount = records.count;
    return records.complete;
}

bool SaveListFile(int nodeCount)
{
    Globals& g = globals();
    if (!PageRecords::saveOrReport(appFilePath(QString::fromLatin1(kListFileName)), listArrays(g), nodeCount))
        return false;
    g.ListsChanged = false;
    return true;
}

void SortLists()
{
    // The sort's inner loop never ran, so lists have always been saved in the order they were
    // built; users rely on that order, so nothing is compared and nothing moves.
}
