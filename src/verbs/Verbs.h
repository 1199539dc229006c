#pragma once

#include "Caller.h"
#include "NewWindowGate.h"
#include "ProgramState.h"
#include "TimedRun.h"
#include "VerbResult.h"
#include "settings/ScreenPlaces.h"

#include <QObject>
#include <QSet>

#include <array>

class FavoritesModel;
class QDateTime;
class HistoryModel;
class ListsModel;
class PageSettingsStore;
struct PageSettings;
class RunRoster;
class RunWatch;
class WebForm1;

// What the program does, in one place: open a page where, bring a window forward, close or reload
// it, run a list and stop, pause, resume, go to the next or previous page; and the state of it all
// as a value with a signal when it changes. Every door goes through these verbs: the Surf buttons,
// the trees, the run dialog, the start-up page and list, the session reopened after a crash, the
// recovery of crashed pages. No widget here: what the windows show follows the signals.
class Verbs : public QObject, public RunHost
{
    Q_OBJECT

public:
    // A run holds at most this many pages; a longer list runs its first ones.
    static constexpr int kRunCapacity = TimedRun::kRunCapacity;

    explicit Verbs(QObject* parent = nullptr);
    ~Verbs() override;

    WebForm1* pool() const override { return m_pool; }
    ListRun& run();
    KeptPages& keptPages();
    RunWatch* runWatch() const;
    // The favourite lists with their pages.
    ListsModel* lists() const { return m_lists; }
    // The pages each window showed; a completed document of a window is recorded here.
    HistoryModel* history() const { return m_history; }
    // The Favorites folder's folders and shortcuts.
    FavoritesModel* favorites() const { return m_favorites; }
    // How each page of a list is shown when the list runs.
    PageSettingsStore* pageSettings() const { return m_pageSettings; }
    // The lists' names, and the pages of the list `upperName` (its name upper-cased).
    QStringList listNames() const override;
    QList<ListPageState> listPages(const QString& upperName) const override;
    PageSettings pageSettings(const QString& list, const QString& address) const override;
    QString windowAddress(int slot) const override;

    // ---- windows
    // Opens `address` (its title when known) where asked. At the limit of eight windows a person
    // is asked whether to go on in the last window; an outside caller gets AllWindowsOpen.
    VerbResult openPage(const QString& address, const QString& title, OpenWhere where, int slot = 0,
                        Caller caller = Caller::Person) override;
    // Opens CurrentUrl in a new window or the current one: the path of the program's own buttons.
    VerbResult NewBtnAction(bool newWindow, Caller caller = Caller::Person) override;
    // The New button: the New page of the options (when one is set) in a new window or the
    // current one.
    VerbResult openNewPage(bool newWindow, Caller caller = Caller::Person);
    // A page that asks for a window by itself goes the New button's path; bursts of such requests
    // at the limit ask once (see NewWindowGate).
    void pageAskedForWindow(const QString& address, bool userInitiated);
    // Brings the slot's window forward and hides the others, as a click on its row does.
    VerbResult bringForward(int slot) override;
    VerbResult closeWindow(int slot);
    // Loads the slot's page again.
    VerbResult reload(int slot);
    // No schedule runs in the slot now: its window shows what its screen's setting says (the
    // desktop left be, black, or a page of the person's choice). A window that a run owns is left
    // to it; a slot with no window has nothing to turn black.
    VerbResult showWhenIdle(int slot);
    // What the slot's window shows with no schedule running in it, as its screen's setting says.
    SlotIdle::Show idleShowOf(int slot) const;
    // A run of a list owns the slot's window now.
    bool slotOwnedByRun(int slot) const;
    // Closes every browser window (the program's end).
    void closeAllWindows();
    // New windows or the current one for the program's own buttons.
    void setNewWindowMode(bool newWindows);

    // ---- the lists
    // Gives the page of the list its own way of being shown (empty settings: the run's way).
    VerbResult setPageSettings(const QString& list, const QString& address, const PageSettings& settings);
    // Keeps the pages of the open windows, in slot order, as a new list named after the moment
    // ("Open Windows 2026-11-25 14:05"; numbered as a new list is when the name is taken). A run's
    // own list is never touched. `made` gets the new list's name. NoOpenWindows when no window
    // shows a web page, ListsFull when the lists have no room for the list and its pages.
    VerbResult saveOpenWindowsAsList(QString* made = nullptr);
    // The name such a list gets at `moment`, before it is numbered.
    static QString openWindowsListName(const QDateTime& moment);
    // Takes the page of that key (address, "/" and list name) out of its list. NoSuchPage when
    // the lists hold none.
    VerbResult removeListPage(const QString& key);
    // Gives a list's page a new address where it stands (a page moved for good). NoSuchPage, or
    // NotAWebAddress.
    VerbResult moveListPage(const QString& key, const QString& address);
    // Makes a new list named `base` (numbered as a new list is when taken) holding the pages, each
    // address once; `made` gets its name. ListsFull when the lists have no room for it all.
    VerbResult makeList(const QString& base, const QList<ListPageState>& pages, QString* made = nullptr);

    // ---- the Favorites
    // Sends the favourite of that key (a shortcut, or a folder with all it holds) to the desktop's
    // trash, where it can be restored from. NoSuchPage when there is none, NotTrashed when the
    // trash refused it (it then stays where it is, and in the tree).
    VerbResult trashFavorite(const QString& key);
    // Points the favourite of that key to `address` (a page moved for good): its file's URL= line
    // is rewritten in place. NoSuchPage, NotAWebAddress, or NotSaved when the file could not be
    // written (it then stays as it was).
    VerbResult moveFavorite(const QString& key, const QString& address);

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

    // ---- runs in other windows: more lists running at once, each in windows of its own
    // Starts running the list in the windows `windows` (1 to 8, none of them another run's);
    // `id` tells the new run's number (2 and on).
    VerbResult runInOtherWindows(const RunChoice& choice, const QList<int>& windows, Caller caller = Caller::Person,
                                 int* id = nullptr);
    // The same, going on at page `position` (a run that was going when the program ended).
    VerbResult resumeInOtherWindows(const RunChoice& choice, const QList<int>& windows, int position);
    // The verbs of a run by its number: 1 is the run dialog's.
    VerbResult stopRun(int id);
    VerbResult nextPage(int id);
    VerbResult previousPage(int id);
    VerbResult pauseRun(int id);
    VerbResult resumeRun(int id);
    QList<RunState> otherRuns() const;
    // The windows that runs own: the run dialog's while it runs, and every run in other windows.
    QSet<int> slotsOfRuns() const;

    // Timer1's work: the run, the watch over it, the retries and reloads of the windows' pages.
    void tick();

    // ---- the state
    ProgramState state() const;
    // Parts of it, for a reader that needs no more (the session, written at the timer's ticks).
    QList<WindowState> windows() const;
    RunState runState() const;
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
    void noteChange();
    void followPool();

    WebForm1* m_pool;
    TimedRun* m_run;
    RunRoster* m_runs; // every run: the run dialog's and those in other windows
    NewWindowGate m_newWindowGate;
    ListsModel* m_lists;
    HistoryModel* m_history;
    FavoritesModel* m_favorites;
    PageSettingsStore* m_pageSettings;
    struct Row
    {
        QString title;
        QString address;
    };
    std::array<Row, 9> m_rows{};
    bool m_changePending = false;
};
