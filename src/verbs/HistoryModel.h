#pragma once

#include "PageGroups.h"

// The pages each browser window showed, under that window's name ("Internet Explorer 1" to
// "Internet Explorer 8"), each page once per window, as the history file keeps them and the
// history tree shows them.
class HistoryModel : public PageGroups
{
    Q_OBJECT

public:
    using PageGroups::PageGroups;

    // Empties the history: only the eight windows' groups remain.
    void clear();
    // Adds the pages of the history records under their groups (a group record, or a page whose
    // group is not one of the windows', is passed over).
    void load(PageRecords::Arrays arrays, int count);
    // The page the window `group` showed; false when that window's history holds it already.
    bool record(const QString& group, const QString& title, const QString& url) { return addPage(group, title, url); }
};
