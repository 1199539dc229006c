#pragma once

#include "ListRun.h"
#include "settings/PageSettings.h"

#include <QList>
#include <QStringList>

// The pages of one run with the settings of each, and where and when each was last loaded: what
// the run asks of a page before its step (its time, whether it is passed by for now, how it looks)
// and whether its window is to be loaded again, by the page's own rule or the run's.
class RunPages
{
public:
    void setPages(const QStringList& addresses, const QList<PageSettings>& settings);
    int count() const { return int(m_pages.size()); }
    QString address(int position) const;
    PageSettings settingsAt(int position) const;
    ListRun::PageRule ruleAt(int position) const;

    // Page `position` was loaded into `slot` at `now` (seconds).
    void loaded(int position, int slot, double now);
    int slotOf(int position) const;
    // Whether the window of a page kept loaded is loaded again as the page comes forward: at every
    // show, never, or once it was loaded `reloadMinutes` (the page's own, else `runMinutes`) or
    // more ago.
    bool reloadAsShown(int position, double now, int runMinutes) const;
    // Whether the page shown now, loaded `reloadMinutes` or more ago by its own rule, is to be
    // loaded again while it stays in view.
    bool reloadWhileShown(int position, double now) const;

private:
    struct Page
    {
        QString address;
        PageSettings settings;
        int slot = 0;
        double loadedAt = 0;
    };
    QList<Page> m_pages;
};
