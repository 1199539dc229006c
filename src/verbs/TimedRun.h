#pragma once

#include "Caller.h"
#include "ListRun.h"
#include "ProgramState.h"
#include "RunPages.h"
#include "browser/BrowserWindow.h"
#include "VerbResult.h"
#include "watch/KeptPages.h"

#include <QObject>
#include <QSet>
#include <QTimer>

class RunWatch;
class WebForm1;

// The choices of a timed run of a list, as the run dialog offers them.
struct RunChoice
{
    QString list;
    int intervalSeconds = 120;
    bool loop = false;
    bool severalWindows = false;
    bool keepPagesLoaded = false;
};

// What a run needs of the program: the lists' pages, a page opened the way the program's buttons
// open one, a window brought forward, the pool of windows. The verbs give it.
class RunHost
{
public:
    virtual ~RunHost() = default;
    virtual QStringList listNames() const = 0;
    virtual QList<ListPageState> listPages(const QString& upperName) const = 0;
    virtual PageSettings pageSettings(const QString& list, const QString& address) const = 0;
    // Where the slot's window is now ("" when it is not open).
    virtual QString windowAddress(int slot) const = 0;
    virtual VerbResult NewBtnAction(bool newWindow, Caller caller) = 0;
    virtual VerbResult openPage(const QString& address, const QString& title, OpenWhere where, int slot,
                                Caller caller) = 0;
    virtual VerbResult bringForward(int slot) = 0;
    virtual WebForm1* pool() const = 0;
};

// A list's pages shown one after another on Timer1's ticks: which list, with which choices, who
// started it, its place, the pages kept loaded, the watch that logs it and keeps the screen awake.
// It opens its pages and brings kept windows forward through the verbs, as any door does.
class TimedRun : public QObject
{
    Q_OBJECT

public:
    // A run holds at most this many pages; a longer list runs its first ones.
    static constexpr int kRunCapacity = 251;

    // The run of the run dialog, in the program's shared state; or, with `windows`, a run in other
    // windows: its own state, its pages shown in those windows only.
    TimedRun(RunHost* host, QObject* parent, const QList<int>& windows = {});
    bool inOtherWindows() const { return !m_ownSlots.isEmpty(); }
    const QList<int>& ownSlots() const { return m_ownSlots; }

    ListRun& run() { return m_run; }
    KeptPages& keptPages() { return m_kept; }
    RunWatch* runWatch() const { return m_runWatch; }

    // The addresses a run of these pages goes through: at most kRunCapacity, `overflow` when the
    // list holds more.
    static QStringList runAddresses(const QList<ListPageState>& pages, bool* overflow);
    // Collects the pages of the list for a run; false when it has none. `overflow` when it holds
    // more than a run does.
    bool BuildRunList(const QString& upperName, bool* overflow = nullptr);
    VerbResult start(const RunChoice& choice, Caller caller);
    // The start-up list: each page in a window of its own, once through.
    VerbResult startOnce(const QString& list);
    // A run that was going when the program ended, going on at page `position`.
    VerbResult startAt(const RunChoice& choice, int position);
    // Goes on at page `position`, taking the windows that show the run's pages as its own.
    void goOnAt(int position);
    VerbResult stop();
    VerbResult next();
    VerbResult previous();
    VerbResult pause();
    VerbResult resume();
    // Timer1's work for the run and its watch.
    void tick();
    // The run as the state tells it.
    void fill(RunState& state) const;
    // The window of the page shown now; 0 before the first.
    int shownSlot() const;

    // The settings of the lists' pages changed: the run takes them from its next step on.
    void refreshPageSettings();
    // A person used the slot's window: a run that owns it holds still while they do (when the
    // setting says so), and goes on once they have left it alone for a while.
    void personActed(int slot);
    // A run key pressed in the slot's window.
    void runKey(int slot, RunKey key);
    bool owns(int slot) const { return m_slots.contains(slot); }
    // Paused because a person uses one of its windows.
    bool heldByPerson() const { return m_handsOn; }

signals:
    void completed(Caller startedBy);
    void dialogWanted();
    void listTooLong(Caller startedBy);
    void changed();

private:
    void openRunPage(bool multi);
    // The page's time kept to the moment: the step is due at a precise instant, not at a tick.
    void armStep();
    // With pages shown only once loaded, the next page loads ahead, beneath the page shown, in the
    // window it is to come up in, so that it is in view at its moment: armed `msToStep` before it.
    void armLoadAhead(int msToStep);
    void loadAhead();
    // The window the page at `position` comes up in at the next step, when it shows a page already
    // and is known beforehand; 0 otherwise.
    int upcomingSlot(int position) const;
    // A page the person took elsewhere while the run was held comes back as the run goes on.
    void bringBackShownPage();
    void releaseSlots();
    double shownFor(int position) const;
    // A kept page's window comes forward instead of the page loading again; false when the page
    // must be loaded.
    bool showKeptPage();
    // A run in other windows: page `position` in its window, kept or loaded.
    void openInOwnSlot(bool multi);
    // Loads the page at `position` into `slot` as the run's own navigation, with its look.
    void loadInto(int slot, int position);

    RunHost* m_verbs;
    ListRun m_run;
    KeptPages m_kept;
    RunWatch* m_runWatch;
    RunChoice m_choice;
    Caller m_runCaller = Caller::Person;
    RunPages m_pages;
    QList<int> m_ownSlots; // a run in other windows: its windows, in the order it uses them
    QTimer m_stepTimer;
    QTimer m_aheadTimer;
    double m_aheadFor = -1; // the wait (its start) whose next page was loaded ahead
    QSet<int> m_slots;       // the windows the run showed its pages in
    bool m_handsOn = false;  // held because a person uses a window of the run
    double m_lastInput = 0;  // when they last did, in seconds
    QString m_addressAtHold; // where the shown page's window was as the run was held
};
