#include "ListRun.h"

#include "core/Clock.h"
#include "core/Globals.h"

void ListRun::tick()
{
    Globals& g = globals();
    if (!g.RunListRunning)
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
}
