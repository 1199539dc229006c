#include "HistoryModel.h"

#include "WebForm1.h"
#include "core/Globals.h"

#include <algorithm>

void HistoryModel::clear()
{
    clearEntries();
    for (int slot = 1; slot <= kWindowSlots; ++slot) {
        const QString group = WebForm1::slotName(slot);
        add({group, group, group, QString(), false});
    }
    emit reset();
}

void HistoryModel::load(PageRecords::Arrays arrays, int count)
{
    const int n = std::clamp(count, 0, int(arrays.first.size()));
    for (int i = 0; i < n; ++i)
        if (!arrays.url[i].trimmed().isEmpty())
            addPageQuietly(arrays.first[i], arrays.title[i], arrays.url[i]);
    emit reset();
}
