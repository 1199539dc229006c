#pragma once

#include <QStringList>

#include <functional>

// The timed run of a favourite list: the pages' addresses, the position of the next one and the
// clock reading at which the current wait began. Timer1 calls tick() every 600 ms; a page opens
// at the first tick, then whenever more than RunInterval seconds have passed since the tick that
// followed the previous page. A run can be paused (it keeps its place and what was left of its
// wait) and sent on or back a page at once.
class ListRun
{
public:
    // Whether the run goes, loops and opens several windows, its interval and its list's name. The
    // run of the run dialog keeps them in the program's shared state, where the dialog and the
    // windows read them; a run in other windows keeps its own (keepOwnFlags()).
    struct Flags
    {
        bool& running;
        bool& loop;
        bool& multi;
        int& interval;
        QString& name;
    };
    Flags flags() const;
    void keepOwnFlags() { m_hasOwn = true; }
    bool hasOwnFlags() const { return m_hasOwn; }

    // Opens CurrentUrl as the run's own step, in several windows or one.
    std::function<void(bool multi)> openPage;
    // Shows "    List Run Complete".
    std::function<void()> showComplete;
    // Brings the run dialog forward when it is open.
    std::function<void()> focusDialog;

    // How the page at a position goes through the run, when it has a way of its own: shown for
    // `seconds` counted from the moment it opens (0: the run's interval, counted as always), or
    // passed by for now.
    struct PageRule
    {
        int seconds = 0;
        bool skip = false;
    };
    std::function<PageRule(int position)> pageRule;

    void setPages(const QStringList& urls) { m_urls = urls; }
    const QStringList& pages() const { return m_urls; }
    int RunCount() const { return int(m_urls.size()); }
    int RunPos = 0;
    double RunStart = 0; // seconds since midnight; 0 = not started

    // One tick of Timer1's run part.
    void tick();
    // Back to the first page (a looping run, or the eight-window cycle asking for it).
    void restart();
    // Stops the run: Idle again.
    void stop();

    // The following page now, its time starting afresh. False when the run is not going.
    bool next();
    // The page before the one shown now, its time starting afresh; a looping run goes round to its
    // last page. False when the run is not going or, once through, is at its first page.
    bool previous();
    // Holds the page shown and what is left of its time; resume() goes on from there.
    bool pause();
    bool resume();
    bool paused() const { return m_paused; }
    // The seconds until the next step, as the clock reads now (the held time while paused).
    double secondsToNext() const;
    // The position whose page the next step opens, as the run stands now; -1 when the step ends
    // the run or goes round at a tick of its own.
    int upcoming() const;
    // How long the page shown now stays: its own time, or the run's interval.
    double shownFor() const;

private:
    // Opens the page at RunPos now and begins its wait.
    void step();
    // Opens the page at RunPos as a tick does; a page with a time of its own starts it now.
    void open();
    PageRule ruleAt(int position) const;
    // The first position from `from` on whose page is not passed by; RunCount() when none.
    int shownFrom(int from) const;

    struct OwnFlags
    {
        bool running = false;
        bool loop = false;
        bool multi = false;
        int interval = 30;
        QString name;
    };
    mutable OwnFlags m_own;
    bool m_hasOwn = false;
    QStringList m_urls;
    bool m_paused = false;
    double m_heldSeconds = 0; // what was left of the wait when the run was paused
};
