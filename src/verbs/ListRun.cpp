#include "ListRun.h"

#include "core/Clock.h"
#include "core/Globals.h"

#include <algorithm>

void ListRun::tick()
{
    Globals& g = globals();
    if (!g.RunListRunning || m_paused)
        return;
    if (RunStart == 0)
        RunStart = Clock::secondsSinceMidnight();
    // Past midnight the clock starts again at 0 and the wait simply lasts until it catches up.
    const double elapsed = Clock::secondsSinceMidnight() - RunStart;
    if (!(elapsed > g.RunInterval || RunPos == 0))
        return;
    if (RunPos > 0)
        RunStart = 0; // the next wait begins at the next tick
    if (RunPos < RunCount()) {
        g.CurrentUrl = m_urls[RunPos];
        if (openPage)
            openPage(g.RunListMulti);
        RunPos = RunPos + 1;
    } else if (g.RunListLoop) {
        restart();
    } else {
        // The message comes first; the run is reset once the user has closed it.
        if (showComplete)
            showComplete();
        stop();
        if (g.RunListShown && focusDialog)
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
    globals().RunListRunning = false;
    RunPos = 0;
    RunStart = 0;
    m_paused = false;
    m_heldSeconds = 0;
}

void ListRun::step()
{
    Globals& g = globals();
    g.CurrentUrl = m_urls[RunPos];
    if (openPage)
        openPage(g.RunListMulti);
    RunPos = RunPos + 1;
    // Its whole time from now: the wait is counted from this moment, as a tick would have.
    RunStart = Clock::secondsSinceMidnight();
    m_heldSeconds = g.RunInterval;
}

bool ListRun::next()
{
    const Globals& g = globals();
    if (!g.RunListRunning || RunCount() == 0)
        return false;
    if (RunPos >= RunCount()) {
        if (!g.RunListLoop)
            return false; // the last page is shown: the run ends at its next tick
        RunPos = 0;
    }
    step();
    return true;
}

bool ListRun::previous()
{
    const Globals& g = globals();
    if (!g.RunListRunning || RunCount() == 0)
        return false;
    // RunPos is the page after the one shown; the one before that is two back.
    int target = RunPos - 2;
    if (target < 0) {
        if (!g.RunListLoop)
            return false;
        target += RunCount();
        if (target < 0)
            target = 0;
    }
    RunPos = std::clamp(target, 0, RunCount() - 1);
    step();
    return true;
}

double ListRun::secondsToNext() const
{
    const Globals& g = globals();
    if (!g.RunListRunning)
        return 0;
    if (m_paused)
        return m_heldSeconds;
    if (RunPos == 0 && RunStart == 0)
        return 0; // the first page opens at the next tick
    if (RunStart == 0)
        return g.RunInterval; // the wait begins at the next tick
    const double left = g.RunInterval - (Clock::secondsSinceMidnight() - RunStart);
    return std::max(0.0, left);
}

bool ListRun::pause()
{
    if (!globals().RunListRunning || m_paused)
        return false;
    m_heldSeconds = secondsToNext();
    m_paused = true;
    return true;
}

bool ListRun::resume()
{
    const Globals& g = globals();
    if (!g.RunListRunning || !m_paused)
        return false;
    m_paused = false;
    if (RunPos == 0 && RunStart == 0)
        return true; // nothing was shown yet: the first page opens at the next tick
    // The wait goes on as if it had begun that much earlier.
    RunStart = Clock::secondsSinceMidnight() - (g.RunInterval - m_heldSeconds);
    if (RunStart == 0)
        RunStart = 1e-9; // 0 would mean "not started"
    return true;
}
