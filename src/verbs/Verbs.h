#pragma once

#include "ListRun.h"
#include "NewWindowGate.h"
#include "ProgramState.h"
#include "VerbResult.h"
#include "watch/KeptPages.h"

#include <QObject>

#include <array>
#include <functional>

class RunWatch;
class WebForm1;

// Who asked for a verb. A person at the screen may be asked a question (the eight-window limit);
// a caller from outside (a command line, a bus, a schedule) never is: it gets a result.
enum class Caller { Person, Outside };

// Where a page opens: in a new window (the lowest free slot), in the current window, or in the
// slot given.
enum class OpenWhere { NewWindow, CurrentWindow, Slot };

// The choices of a timed run of a list, as the run dialog offers them.
struct RunChoice
{
    QString list;
    int intervalSeconds = 120;
    bool loop = false;
    bool severalWindows = false;
    bool keepPagesLoaded = false;
};

// What the program does, in one place: open a page where, bring a window forward, close or reload
// it, run a list and stop, pause, resume, go to the next or previous page; and the state of it all
// as a value with a signal when it changes. Every door goes through these verbs: the Surf buttons,
// the trees, the run dialog, the start-up page and list, the session reopened after a crash, the
// recovery of crashed pages. No widget here: what the windows show follows the signals.
class Verbs : public QObject
{
    Q_OBJECT

public:
    // The lists the program holds: their names in order, and the pages of one list (found by its
    // name upper-cased) as title and address.
    struct ListsSource
    {
        std::function<QStringList()> names;
        std::function<QList<ListPageState>(const QString& upperName)> pages;
    };
    // A run holds at most this many pages; a longer list runs its first ones.
    static constexpr int kRunCapacity = 251;

    explicit Verbs(QObject* parent = nullptr);
    ~Verbs() override;

    WebForm1* pool() const { return m_pool; }
    ListRun& run() { return m_run; }
    KeptPages& keptPages() { return m_kept; }
    RunWatch* runWatch() const { return m_runWatch; }
    void setListsSource(ListsSource source) { m_lists = std::move(source); }

    // ---- windows
    // Opens `address` (its title when known) where asked. At the limit of eight windows a person
    // is asked whether to go on in the last window; an outside caller gets AllWindowsOpen.
    VerbResult openPage(const QString& address, const QString& title, OpenWhere where, int slot = 0,
                        Caller caller = Caller::Person);
    // Opens CurrentUrl in a new window or the current one: the path of the program's own buttons.
    VerbResult NewBtnAction(bool newWindow, Caller caller = Caller::Person);
    // A page that asks for a window by itself goes the New button's path; bursts of such requests
    // at the limit ask once (see NewWindowGate).
    void pageAskedForWindow(const QString& address, bool userInitiated);
    // Brings the slot's window forward and hides the others, as a click on its row does.
    VerbResult bringForward(int slot);
    VerbResult closeWindow(int slot);
    // Loads the slot's page again.
    VerbResult reload(int slot);
    // New windows or the current one for the program's own buttons.
    void setNewWindowMode(bool newWindows);

    // ---- the timed run
    // Collects the pages of the list for a run; false when it has none. `overflow` when it holds
    // more than a run does.
    bool BuildRunList(const QString& upperName, bool* overflow = nullptr);
    // Starts running the list. A run going on is replaced.
    VerbResult runList(const RunChoice& choice, Caller caller = Caller::Person);
    // The list chosen as start-up list, each page in a window of its own, once through.
    VerbResult runStartupList(const QString& list);
    // Goes on with a run that was going when the program ended, at page `position`.
    VerbResult resumeRunAt(const RunChoice& choice, int position);
    VerbResult stopRun();
    VerbResult nextPage();
    VerbResult previousPage();
    VerbResult pauseRun();
    VerbResult resumeRun();
    const RunChoice& runChoice() const { return m_choice; }
    // Who started the run going on.
    Caller runCaller() const { return m_runCaller; }

    // Timer1's work for the run and the watch over it.
    void tick();

    // ---- the state
    ProgramState state() const;
    // The window of the slot as the program knows it (its row's title and address).
    WindowState window(int slot) const;

signals:
    // Something in state() changed; at most once an event-loop turn.
    void stateChanged();

    // What the Surf rows follow.
    void pageOpening();                        // a page goes to a window: the hint makes room
    void rowsCleared();                        // every row back to its normal look
    void windowShown(int slot, bool newCount); // the slot's row appears (newCount: rows to count)
    void windowBroughtForward(int previousSlot, int slot);
    void lastWindowModeChosen();               // at the limit, the person chose the last window
    void newWindowModeChanged(bool newWindows);

    // What the run's dialog follows.
    void runCompleted(Caller startedBy);       // once through: "List Run Complete" is due
    void runDialogWanted();
    void runListTooLong(Caller startedBy);     // the list holds more pages than a run

private:
    VerbResult openInSlot(int slot);
    void openNewSlot(bool updateCalendar, int slot = 0);
    bool FindFreeSlot();
    void openRunPage(bool multi);
    // A kept page's window comes forward instead of the page loading again; false when the page
    // must be loaded.
    bool showKeptPage();
    VerbResult startRun(const RunChoice& choice, Caller caller);
    void noteChange();
    void followPool();

    WebForm1* m_pool;
    ListRun m_run;
    KeptPages m_kept;
    RunWatch* m_runWatch;
    NewWindowGate m_newWindowGate;
    ListsSource m_lists;
    RunChoice m_choice;
    Caller m_runCaller = Caller::Person;
    struct Row
    {
        QString title;
        QString address;
    };
    std::array<Row, 9> m_rows{};
    bool m_changePending = false;
};
