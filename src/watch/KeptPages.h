#pragma once

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
    // has to be loaded. `slotOf` tells where the run loaded a page last (0: not yet), `slotUrl` what
    // a slot shows now ("" for a free slot). When a kept page is loaded again is the page's own
    // rule's business (the run's pages know when each was loaded).
    int keptSlot(int position, const QString& url, const std::function<int(int position)>& slotOf,
                 const std::function<QString(int slot)>& slotUrl) const;

private:
    bool m_active = false;
    int m_count = 0;
};
