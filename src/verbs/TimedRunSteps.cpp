// How a run's step shows its page: in a new window or the current one as the program's buttons
// open pages, a kept window brought forward, or, for a run in other windows, in one of its own.
#include "TimedRun.h"

#include "WebForm1.h"
#include "browser/BrowserWindow.h"
#include "core/Clock.h"
#include "core/Globals.h"
#include "settings/VantrelConf.h"
#include "watch/EventLog.h"

void TimedRun::openRunPage(bool multi)
{
    if (inOtherWindows()) {
        openInOwnSlot(multi);
        return;
    }
    if (showKeptPage())
        return;
    const int position = m_run.RunPos;
    WebForm1* pool = m_verbs->pool();
    pool->RunNavigating = true;
    pool->RunLook = m_pages.settingsAt(position);
    pool->RunLookSeconds = shownFor(position);
    m_verbs->NewBtnAction(multi, m_runCaller);
    pool->RunNavigating = false;
    const int slot = globals().WindowIndex;
    const double now = Clock::epochSeconds();
    m_pages.loaded(position, slot, now);
    if (slot >= 1 && slot <= kWindowSlots) {
        m_slots.insert(slot);
        pool->setRunKeys(slot, true);
    }
}

void TimedRun::openInOwnSlot(bool multi)
{
    const int position = m_run.RunPos;
    // Several windows: page after page round its windows; one window: always its first.
    const int slot = multi ? m_ownSlots[position % m_ownSlots.size()] : m_ownSlots.first();
    BrowserWindow* window = m_verbs->pool()->ie(slot);
    const bool kept = m_kept.active() && window && m_pages.slotOf(position) == slot &&
                      globals().WindowUrl[slot] == m_pages.address(position);
    const double now = Clock::epochSeconds();
    if (kept && !m_pages.reloadAsShown(position, now, VantrelConf::value(VantrelConf::kKeptReloadMinutes))) {
        EventLog::write(QStringLiteral("page brought forward: window %1 %2").arg(slot).arg(m_pages.address(position)));
        window->setVisible(true); // up in its own place; the other runs' windows stay as they are
        window->shownAgain();
        return;
    }
    loadInto(slot, position);
}

void TimedRun::loadInto(int slot, int position)
{
    WebForm1* pool = m_verbs->pool();
    pool->RunNavigating = true;
    pool->RunLook = m_pages.settingsAt(position);
    pool->RunLookSeconds = shownFor(position);
    m_verbs->openPage(m_pages.address(position), QString(), OpenWhere::Slot, slot, Caller::Outside);
    pool->RunNavigating = false;
    const double now = Clock::epochSeconds();
    m_pages.loaded(position, slot, now);
    m_slots.insert(slot);
    pool->setRunKeys(slot, true);
}

bool TimedRun::showKeptPage()
{
    Globals& g = globals();
    const int position = m_run.RunPos;
    const int slot = m_kept.keptSlot(
        position, g.CurrentUrl, [this](int p) { return m_pages.slotOf(p); },
        [](int s) { return globals().WindowUrl[s]; });
    if (slot == 0)
        return false;
    const double now = Clock::epochSeconds();
    WebForm1* pool = m_verbs->pool();
    const bool reload = m_pages.reloadAsShown(position, now, VantrelConf::value(VantrelConf::kKeptReloadMinutes));
    if (reload) {
        g.WindowIndex = slot;
        pool->RunNavigating = true;
        pool->RunLook = m_pages.settingsAt(position);
        pool->RunLookSeconds = shownFor(position);
        pool->Form_LoadGo(slot); // loaded again in its own window
        pool->RunNavigating = false;
            m_pages.loaded(position, slot, now);
    } else {
        EventLog::write(QStringLiteral("page brought forward: window %1 %2").arg(slot).arg(g.CurrentUrl));
    }
    pool->RunNavigating = true; // the kept window comes up before the others go
    if (g.OptTheater)
        pool->RunKeptBeneath = m_slots; // full screen, the others wait beneath it, drawn
    m_verbs->bringForward(slot);
    pool->RunNavigating = false;
    pool->RunKeptBeneath.clear();
    if (!reload)
        if (BrowserWindow* window = pool->ie(slot))
            window->shownAgain(); // its scroll starts at the top again
    return true;
}

namespace {
// How long before its step the next page starts to load, at most: time for most pages to load
// and be drawn, and never more than half the time of the page shown.
constexpr int kLoadAheadMs = 3000;
} // namespace

void TimedRun::armLoadAhead(int msToStep)
{
    if (!VantrelConf::flag(VantrelConf::kShowWhenLoaded) || m_kept.active())
        return; // kept pages are loaded ahead by being kept
    if (m_aheadFor == m_run.RunStart)
        return; // once a step: the ticks that arm the step again leave the page loading
    m_aheadTimer.start(std::max(0, msToStep - std::min(kLoadAheadMs, msToStep / 2)));
}

void TimedRun::loadAhead()
{
    if (!m_run.flags().running || m_run.paused())
        return;
    m_aheadFor = m_run.RunStart;
    const int position = m_run.upcoming();
    if (position < 0)
        return;
    if (const int slot = upcomingSlot(position))
        m_verbs->pool()->loadAhead(slot, m_pages.address(position), m_pages.settingsAt(position));
}

int TimedRun::upcomingSlot(int position) const
{
    const Globals& g = globals();
    int slot = 0;
    if (inOtherWindows())
        slot = m_run.flags().multi ? m_ownSlots[position % m_ownSlots.size()] : m_ownSlots.first();
    else if (!m_run.flags().multi && g.WindowIndex != 0 && g.WindowCount < kWindowSlots)
        slot = g.NextRunItem; // a one-window run keeps to its own window
    // Several windows of the run dialog's run: which one comes next is the pool's to say, at the
    // step; nothing is loaded ahead there.
    return slot >= 1 && slot <= kWindowSlots && !g.WindowUrl[slot].isEmpty() ? slot : 0;
}
