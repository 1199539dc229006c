#pragma once

#include <QList>
#include <QString>

#include <functional>

// "Keep Pages Loaded": a run over several windows of a list of at most eight pages gives each
// page a window of its own in its first round; from then on each step brings that page's window
// forward instead of loading the page again, so that pages which keep their own state (a
// dashboard with a filter, a live chart) keep it. A kept page may be loaded again after a while.
class KeptPages
{
public:
    static constexpr int kMostPages = 8;

    // A new run of `pageCount` pages; `keep` as the run dialog's check box says, `severalWindows`
    // as the run's several-windows choice.
    void start(int pageCount, bool keep, bool severalWindows);
    bool active() const { return m_active; }

    // The slot that still shows page `position` (`url`) in a window of its own, or 0 when the page
    // has to be loaded. `slotUrl` tells what a slot shows now ("" for a free slot).
    int keptSlot(int position, const QString& url, const std::function<QString(int slot)>& slotUrl) const;
    // Page `position` was loaded into `slot` at `now` (seconds).
    void loaded(int position, int slot, double now);
    // Whether a kept page was loaded `reloadSeconds` or more ago (never when it is 0).
    bool reloadDue(int position, double now, double reloadSeconds) const;

private:
    struct Page
    {
        int slot = 0;
        double loadedAt = 0;
    };
    bool m_active = false;
    QList<Page> m_pages;
};
