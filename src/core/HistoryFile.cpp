#include "HistoryFile.h"

#include "Globals.h"
#include "PageRecords.h"
#include "SaveError.h"
#include "TextCodec.h"
#include "TextFile.h"

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
    const TextFile::ReadResult file = TextFile::readBytes(path);
    if (!file.error.ok())
        return false;
    const auto records = PageRecords::parse(TextCodec::decode(file.bytes), historyArrays(g));
    g.HistoryCount = records.count;
    return records.complete;
}

bool SaveHistoryFile(int nodeCount)
{
    Globals& g = globals();
    const RunError error =
        PageRecords::save(appFilePath(QString::fromLatin1(kHistoryFileName)), historyArrays(g), nodeCount);
    if (!error.ok()) {
        showSaveError(error);
        return false;
    }
    g.HistoryChanged = false;
    return true;
}
