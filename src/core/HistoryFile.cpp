#include "HistoryFile.h"

#include "Globals.h"
#include "PageRecords.h"

namespace {
PageRecords::Arrays historyArrays(Globals& g)
{
    return {g.HistGroup, g.HistTitle, g.HistUrl};
}
} // namespace

bool LoadHistoryFile(const QString& path)
{
    Globals& g = globals();
    g.HistoryCount = 0;
    const auto records = PageRecords::load(path, historyArrays(g));
    g.HistoryCount = records.count;
    return records.complete;
}

bool SaveHistoryFile(int nodeCount)
{
    Globals& g = globals();
    if (!PageRecords::saveOrReport(appFilePath(QString::fromLatin1(kHistoryFileName)), historyArrays(g),
                                   nodeCount))
        return false;
    g.HistoryChanged = false;
    return true;
}
