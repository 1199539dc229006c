#include "ListRun.h"

#include "core/Clock.h"
#include "core/Globals.h"

#include <algorithm>

ListRun::Flags ListRun::flags() const
{
    Globals& g = globals();
    if (m_hasOwn)
        return {m_own.running, m_own.loop, m_own.multi, m_own.interval, m_own.name};
    return {g.RunListRunning, g.RunListLoop, g.RunListMulti, g.RunInterval, g.RunListName};
}

void ListRun::tick()
{
    const Flags f = flags();
    if (!f.running || m_paused)
        return;
    if (RunStart == 0)
        RunStart = Clock::secondsSinceMidnight();
    // Past midnight the clock starts again at 0 and the wait simply lasts until it catches up.
    const double elapsed = Clock::secondsSinceMidnight() - RunStart;
    // A page's own time is kept to the moment; the run's interval is waited out as always.
    const int own = RunPos > 0 ? ruleAt(RunPos - 1).seconds : 0;
    const bool due = own > 0 ? elapsed >= own : elapsed > f.interval;
    if (!(due || RunPos == 0))
        return;
    if (RunPos > 0)
        RunStart = 0; // the next wait begins at the next tick
    RunPos = shownFrom(RunPos);
    if (RunPos >= RunCount() && f.loop && own > 0) {
        // A page's own time ends at its moment: the loop goes round to its first page at once,
        // not at the tick after.
        restart();
        RunPos = shownFrom(0);
    }
    if (RunPos < RunCount()) {
        open();
    } else if (f.loop) {
        restart();
    } else {
        // The message comes first; the run is reset once the user has closed it.
        if (showComplete)
            showComplete();
        stop();
        if (!m_hasOwn && globals().RunListShown && focusDialog)
            focusDialog();
    }
}

void ListRun::restart()
{
    RunPos = 0;
    RunStart = 0;
}

void ListRun::stop()
{
    flags().running = false;
    RunPos = 0;
    RunStart = 0;
    m_paused = false;
    m_heldSeconds = 0;
}

ListRun::PageRule ListRun::ruleAt(int position) const
{
    if (!pageRule || position < 0 || position >= RunCount())
        return {};
    return pageRule(position);
}

int ListRun::shownFrom(int from) const
{
    int position = std::max(from, 0);
    while (position < RunCount() && ruleAt(position).skip)
        ++position;
    return position;
}

void ListRun::open()
{
    globals().CurrentUrl = m_urls[RunPos];
    if (openPage)
        openPage(flags().multi);
    RunPos = RunPos + 1;
    if (ruleAt(RunPos - 1).seconds > 0)
        RunStart = Clock::secondsSinceMidnight();
}

int ListRun::upcoming() const
{
    const Flags f = flags();
    if (!f.running || RunPos == 0)
        return -1;
    int position = shownFrom(RunPos);
    if (position >= RunCount() && f.loop && ruleAt(RunPos - 1).seconds > 0)
        position = shownFrom(0); // goes round at the moment, as tick() does
    return position < RunCount() ? position : -1;
}

double ListRun::shownFor() const
{
    const int own = RunPos > 0 ? ruleAt(RunPos - 1).seconds : 0;
    return own > 0 ? own : flags().interval;
}

void ListRun::step()
{
    open();
    // Its whole time from now: the wait is counted from this moment, as a tick would have.
    RunStart = Clock::secondsSinceMidnight();
    m_heldSeconds = shownFor();
}

bool ListRun::next()
{
    const Flags f = flags();
    if (!f.running || RunCount() == 0)
        return false;
    RunPos = shownFrom(RunPos);
    if (RunPos >= RunCount()) {
        if (!f.loop)
            return false; // the last page is shown: the run ends at its next tick
        RunPos = shownFrom(0);
        if (RunPos >= RunCount())
            return false; // every page is passed by for now
    }
    step();
    return true;
}

bool ListRun::previous()
{
    const Flags f = flags();
    if (!f.running || RunCount() == 0)
        return false;
    // RunPos is the page after the one shown; the one before that is two back, passing by the
    // pages skipped for now.
    int target = RunPos - 2;
    for (int looked = 0; looked < RunCount(); ++looked) {
        if (target < 0) {
            if (!f.loop)
                return false;
            target += RunCount();
            if (target < 0)
                target = 0;
        }
        target = std::clamp(target, 0, RunCount() - 1);
        if (!ruleAt(target).skip) {
            RunPos = target;
            step();
            return true;
        }
        --target;
    }
    return false;
}

double ListRun::secondsToNext() const
{
    if (!flags().running)
        return 0;
    if (m_paused)
        return m_heldSeconds;
    if (RunPos == 0 && RunStart == 0)
        return 0; // the first page opens at the next tick
    if (RunStart == 0)
        return shownFor(); // the wait begins at the next tick
    const double left = shownFor() - (Clock::secondsSinceMidnight() - RunStart);
    return std::max(0.0, left);
}

bool ListRun::pause()
{
    if (!flags().running || m_paused)
        return false;
    m_heldSeconds = secondsToNext();
    m_paused = true;
    return true;
}

bool ListRun::resume()
{
    if (!flags().running || !m_paused)
        return false;
    m_paused = false;
    if (RunPos == 0 && RunStart == 0)
        return true; // nothing was shown yet: the first page opens at the next tick
    // The wait goes on as if it had begun that much earlier.
    RunStart = Clock::secondsSinceMidnight() - (shownFor() - m_heldSeconds);
    if (RunStart == 0)
        RunStart = 1e-9; // 0 would mean "not started"
    return true;
}
