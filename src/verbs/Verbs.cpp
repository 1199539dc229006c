#include "Verbs.h"

#include "FavoritesModel.h"
#include "HistoryModel.h"
#include "ListsModel.h"
#include "PageSettingsStore.h"
#include "TimedRun.h"
#include "WebForm1.h"
#include "browser/BrowserWindow.h"
#include "core/Clock.h"
#include "core/DialogService.h"
#include "core/Globals.h"
#include "watch/EventLog.h"
#include "watch/WindowRecovery.h"

#include <QMetaObject>

namespace {

QString slotList(const QList<int>& windows)
{
    QStringList numbers;
    for (int slot : windows)
        numbers << QString::number(slot);
    return numbers.join(QStringLiteral(", "));
}

const QString kMaximumQuestion =
    QStringLiteral("        That's It - Maximum is 8 ! - Continue in Last Window ?");

bool isSlot(int slot)
{
    return slot >= 1 && slot <= kWindowSlots;
}

} // namespace

Verbs::Verbs(QObject* parent)
    : QObject(parent), m_pool(new WebForm1(this)), m_run(new TimedRun(this, this)), m_lists(new ListsModel(this)),
      m_history(new HistoryModel(this)), m_favorites(new FavoritesModel(this)),
      m_pageSettings(new PageSettingsStore(m_lists, this))
{
    setObjectName(QStringLiteral("Verbs"));
    followPool();
    connect(m_run, &TimedRun::completed, this, &Verbs::runCompleted);
    connect(m_run, &TimedRun::dialogWanted, this, &Verbs::runDialogWanted);
    connect(m_run, &TimedRun::listTooLong, this, &Verbs::runListTooLong);
    connect(m_run, &TimedRun::changed, this, &Verbs::noteChange);
    connect(m_lists, &ListsModel::reset, this, &Verbs::noteChange);
    connect(m_lists, &ListsModel::groupAdded, this, &Verbs::noteChange);
    connect(m_lists, &ListsModel::pageAdded, this, &Verbs::noteChange);
    connect(m_lists, &ListsModel::listRenamed, this, &Verbs::noteChange);
    connect(m_lists, &ListsModel::titleChanged, this, &Verbs::noteChange);
    connect(m_pageSettings, &PageSettingsStore::changed, this, [this] {
        m_run->refreshPageSettings();
        for (TimedRun* run : std::as_const(m_otherRuns))
            run->refreshPageSettings();
    });
}

Verbs::~Verbs() = default;

void Verbs::followPool()
{
    // The rows' captions and addresses are kept here too, so that every door reads the same state.
    connect(m_pool, &WebForm1::rowNavigating, this, [this](int slot, const QString& address) {
        if (isSlot(slot))
            m_rows[size_t(slot)] = {address, address};
        noteChange();
    });
    connect(m_pool, &WebForm1::rowCompleted, this, [this](int slot, const QString& url, const QString& title) {
        if (isSlot(slot))
            m_rows[size_t(slot)] = {title, url};
        noteChange();
    });
    connect(m_pool, &WebForm1::rowTitleChanged, this, [this](int slot, const QString& title) {
        if (isSlot(slot))
            m_rows[size_t(slot)].title = title;
        noteChange();
    });
    connect(m_pool, &WebForm1::rowClosed, this, [this](int slot) {
        if (isSlot(slot))
            m_rows[size_t(slot)] = {};
        noteChange();
    });
    connect(m_pool->recovery(), &WindowRecovery::stateShown, this, &Verbs::noteChange);
    connect(m_pool, &WebForm1::newWindowRequested, this, &Verbs::pageAskedForWindow);
    // A person at a window of the run: it holds still for them, and its keys steer it.
    connect(m_pool, &WebForm1::personActed, this, [this](int slot) {
        if (TimedRun* run = runOwning(slot))
            run->personActed(slot);
    });
    connect(m_pool, &WebForm1::runKeyPressed, this, [this](int slot, RunKey key) {
        if (TimedRun* run = runOwning(slot))
            run->runKey(slot, key);
    });
    // Every document a window completes is recorded under that window's group.
    connect(m_pool, &WebForm1::documentCompleted, this, [this](const QString& group) {
        const Globals& g = globals();
        if (m_history->record(group, g.CurrentTitle, g.CurrentUrl))
            globals().HistoryChanged = true;
    });
}

void Verbs::noteChange()
{
    if (m_changePending)
        return;
    m_changePending = true;
    QMetaObject::invokeMethod(
        this,
        [this] {
            m_changePending = false;
            emit stateChanged();
        },
        Qt::QueuedConnection);
}

// ---- windows -------------------------------------------------------------------------------

VerbResult Verbs::openPage(const QString& address, const QString& title, OpenWhere where, int slot, Caller caller)
{
    Globals& g = globals();
    if (where == OpenWhere::Slot) {
        if (!isSlot(slot))
            return VerbResult::failed(VerbResult::NoSuchSlot, QString::number(slot));
        g.CurrentUrl = address;
        g.CurrentTitle = title;
        if (g.WindowUrl[slot].isEmpty())
            return openInSlot(slot);
        // The slot's own window goes to the page, as a run's one-window step does.
        g.WindowIndex = slot;
        m_pool->Form_LoadGo(slot);
        noteChange();
        return VerbResult::done();
    }
    g.CurrentUrl = address;
    g.CurrentTitle = title;
    return NewBtnAction(where == OpenWhere::NewWindow, caller);
}

VerbResult Verbs::NewBtnAction(bool newWindow, Caller caller)
{
    Globals& g = globals();
    emit pageOpening();
    // Windows that runs in other windows keep count as taken: a new window goes elsewhere.
    const QSet<int> reserved = reservedSlots();
    int reservedEmpty = 0;
    for (int slot : reserved)
        reservedEmpty += g.WindowUrl[slot].isEmpty() ? 1 : 0;
    if (g.WindowCount + reservedEmpty < kWindowSlots) {
        g.LastWindowMode = false;
        emit rowsCleared();
        if (!newWindow) {
            if (g.WindowIndex == 0) {
                openNewSlot(false);
            } else {
                if (g.RunListRunning && !g.RunListMulti)
                    g.WindowIndex = g.NextRunItem; // a one-window run keeps to its own window
                m_pool->SelectieNavigate(g.WindowIndex, g.WindowIndex >= 0 && g.WindowIndex <= 10 &&
                                                            g.WindowUrl[g.WindowIndex].isEmpty());
            }
        } else {
            openNewSlot(true);
        }
        noteChange();
        return VerbResult::done();
    }

    if (!(m_pool->RunNavigating && g.RunListRunning)) {
        if (g.LastWindowMode) {
            g.WindowIndex = reserved.contains(kWindowSlots) ? nextUnreserved(kWindowSlots - 1) : kWindowSlots;
            m_pool->SelectieNavigate(g.WindowIndex, false);
            noteChange();
            return VerbResult::done();
        }
        // Only a person at the screen is asked; nobody else can answer.
        if (caller == Caller::Outside)
            return VerbResult::failed(VerbResult::AllWindowsOpen);
        if (!DialogService::question(kMaximumQuestion))
            return VerbResult::failed(VerbResult::Declined);
        emit rowsCleared();
        g.LastWindowMode = true;
        emit lastWindowModeChosen();
        noteChange();
        return VerbResult::done();
    }

    // A timed run with all eight windows open goes round windows 1 to 8.
    if (g.RunListLoop) {
        m_run->run().restart();
        g.RunListMulti = false;
    }
    if (g.WindowCount == kWindowSlots || !reserved.isEmpty()) {
        emit rowsCleared();
        if (reserved.isEmpty()) {
            if (g.WindowIndex == kWindowSlots)
                g.WindowIndex = 0;
            g.WindowIndex = g.WindowIndex + 1;
        } else {
            g.WindowIndex = nextUnreserved(g.WindowIndex); // round the windows no other run keeps
        }
        if (g.WindowIndex >= 1)
            m_pool->SelectieNavigate(g.WindowIndex, g.WindowUrl[g.WindowIndex].isEmpty());
    }
    noteChange();
    return VerbResult::done();
}

void Verbs::pageAskedForWindow(const QString& address, bool userInitiated)
{
    if (!m_newWindowGate.admit(userInitiated, Clock::secondsSinceMidnight()))
        return;
    const bool atLimit = globals().WindowCount >= kWindowSlots;
    globals().CurrentUrl = address;
    NewBtnAction(true);
    m_newWindowGate.opened(atLimit, Clock::secondsSinceMidnight());
}

VerbResult Verbs::openInSlot(int slot)
{
    Globals& g = globals();
    if (!isSlot(slot))
        return VerbResult::failed(VerbResult::NoSuchSlot, QString::number(slot));
    if (!g.WindowUrl[slot].isEmpty())
        return VerbResult::failed(VerbResult::SlotTaken, QString::number(slot));
    if (g.WindowCount >= kWindowSlots)
        return VerbResult::failed(VerbResult::AllWindowsOpen);
    emit pageOpening();
    g.LastWindowMode = false;
    emit rowsCleared();
    openNewSlot(true, slot);
    noteChange();
    return VerbResult::done();
}

void Verbs::openNewSlot(bool updateCalendar, int slot)
{
    Globals& g = globals();
    if (!g.WebFormBusy)
        m_pool->Load();
    if (slot == 0) {
        FindFreeSlot();
    } else {
        g.WindowIndex = slot;
        g.WindowCount = g.WindowCount + 1;
    }
    m_pool->Form_LoadGo(g.WindowIndex);
    emit windowShown(g.WindowIndex, updateCalendar);
}

bool Verbs::FindFreeSlot()
{
    Globals& g = globals();
    const QSet<int> reserved = reservedSlots();
    for (int slot = 1; slot <= kWindowSlots; ++slot) {
        if (g.WindowUrl[slot].isEmpty() && !reserved.contains(slot)) {
            g.WindowIndex = slot;
            g.WindowCount = g.WindowCount + 1;
            return true;
        }
    }
    return false;
}

VerbResult Verbs::bringForward(int slot)
{
    Globals& g = globals();
    if (!isSlot(slot))
        return VerbResult::failed(VerbResult::NoSuchSlot, QString::number(slot));
    const int previous = g.WindowIndex;
    g.WindowIndex = slot;
    if (!g.WindowFlagB) {
        // Windows of runs in other windows stay where they are: another screen of the wall.
        QSet<int> spare = reservedSlots();
        if (const TimedRun* own = runOwning(slot); own && own->inOtherWindows())
            for (int s : own->ownSlots())
                spare.remove(s);
        m_pool->SelectieWindow(slot, spare);
    }
    emit windowBroughtForward(previous, slot);
    noteChange();
    return VerbResult::done();
}

VerbResult Verbs::closeWindow(int slot)
{
    if (!isSlot(slot))
        return VerbResult::failed(VerbResult::NoSuchSlot, QString::number(slot));
    BrowserWindow* window = m_pool->ie(slot);
    if (!window || globals().WindowUrl[slot].isEmpty())
        return VerbResult::failed(VerbResult::SlotEmpty, QString::number(slot));
    window->quit(); // the window's end frees the slot and hides its row
    noteChange();
    return VerbResult::done();
}

VerbResult Verbs::reload(int slot)
{
    if (!isSlot(slot))
        return VerbResult::failed(VerbResult::NoSuchSlot, QString::number(slot));
    BrowserWindow* window = m_pool->ie(slot);
    if (!window || globals().WindowUrl[slot].isEmpty())
        return VerbResult::failed(VerbResult::SlotEmpty, QString::number(slot));
    const QString address = m_rows[size_t(slot)].address.isEmpty() ? globals().WindowUrl[slot]
                                                                     : m_rows[size_t(slot)].address;
    window->navigate(address);
    m_pool->recovery()->sentTo(slot, address);
    return VerbResult::done();
}

void Verbs::closeAllWindows()
{
    if (!globals().WebFormBusy)
        return; // no window was ever opened
    m_pool->Unload();
    noteChange();
}

void Verbs::setNewWindowMode(bool newWindows)
{
    globals().NewWindowMode = newWindows;
    emit newWindowModeChanged(newWindows);
    noteChange();
}

// ---- the state -----------------------------------------------------------------------------

WindowState Verbs::window(int slot) const
{
    const Globals& g = globals();
    WindowState w;
    if (!isSlot(slot) || g.WindowUrl[slot].isEmpty())
        return w;
    w.slot = slot;
    w.title = m_rows[size_t(slot)].title;
    // The row shows where the window is now; the slot's first address until it knows.
    w.address = m_rows[size_t(slot)].address.isEmpty() ? g.WindowUrl[slot] : m_rows[size_t(slot)].address;
    w.current = g.WindowIndex == slot;
    w.page = m_pool->recovery()->shownState(slot);
    w.pageText = m_pool->recovery()->shownText(slot);
    TimedRun* run = runOwning(slot);
    w.runPaused = run && run->shownSlot() == slot && run->run().paused();
    return w;
}

QList<WindowState> Verbs::windows() const
{
    QList<WindowState> open;
    for (int slot = 1; slot <= kWindowSlots; ++slot)
        if (!globals().WindowUrl[slot].isEmpty())
            open.append(window(slot));
    return open;
}

RunState Verbs::runState() const
{
    RunState run;
    m_run->fill(run);
    return run;
}

ProgramState Verbs::state() const
{
    const Globals& g = globals();
    ProgramState s;
    s.windows = windows();
    s.currentSlot = isSlot(g.WindowIndex) ? g.WindowIndex : 0;
    s.newWindowMode = g.NewWindowMode;
    s.run = runState();
    s.otherRuns = otherRuns();
    for (const QString& name : listNames())
        s.lists.append({name, listPages(name.toUpper())});
    return s;
}

QStringList Verbs::listNames() const
{
    return m_lists->names();
}

QList<ListPageState> Verbs::listPages(const QString& upperName) const
{
    return m_lists->pages(upperName);
}

PageSettings Verbs::pageSettings(const QString& list, const QString& address) const
{
    return m_pageSettings->of(list, address);
}

QString Verbs::windowAddress(int slot) const
{
    return window(slot).address;
}

// ---- the lists ----------------------------------------------------------------------------

VerbResult Verbs::setPageSettings(const QString& list, const QString& address, const PageSettings& settings)
{
    QString known; // the list's name as the lists write it
    for (const QString& name : listNames())
        if (known.isEmpty() && name.toUpper() == list.toUpper())
            known = name;
    if (known.isEmpty())
        return VerbResult::failed(VerbResult::NoSuchList, list);
    bool held = false;
    for (const ListPageState& page : listPages(list.toUpper()))
        held = held || page.address == address;
    if (!held)
        return VerbResult::failed(VerbResult::NoSuchPage, address);
    if (const RunError error = m_pageSettings->set(known, address, settings))
        return VerbResult::failed(VerbResult::NotSaved, error.text());
    noteChange();
    return VerbResult::done();
}

// ---- the timed run: the rotation does the work -----------------------------------------------

ListRun& Verbs::run()
{
    return m_run->run();
}

KeptPages& Verbs::keptPages()
{
    return m_run->keptPages();
}

RunWatch* Verbs::runWatch() const
{
    return m_run->runWatch();
}

bool Verbs::BuildRunList(const QString& upperName, bool* overflow)
{
    return m_run->BuildRunList(upperName, overflow);
}

VerbResult Verbs::runList(const RunChoice& choice, Caller caller)
{
    return m_run->start(choice, caller);
}

VerbResult Verbs::runStartupList(const QString& list)
{
    return m_run->startOnce(list);
}

VerbResult Verbs::resumeRunAt(const RunChoice& choice, int position)
{
    return m_run->startAt(choice, position);
}

VerbResult Verbs::stopRun()
{
    return m_run->stop();
}

VerbResult Verbs::nextPage()
{
    return m_run->next();
}

VerbResult Verbs::previousPage()
{
    return m_run->previous();
}

VerbResult Verbs::pauseRun()
{
    return m_run->pause();
}

VerbResult Verbs::resumeRun()
{
    return m_run->resume();
}

void Verbs::tick()
{
    m_run->tick();
    for (TimedRun* run : std::as_const(m_otherRuns))
        run->tick();
    m_pool->recovery()->tick();
}

// ---- runs in other windows -------------------------------------------------------------------

TimedRun* Verbs::runById(int id) const
{
    return id == 1 ? m_run : m_otherRuns.value(id);
}

TimedRun* Verbs::runOwning(int slot) const
{
    for (TimedRun* run : m_otherRuns)
        if (run->ownSlots().contains(slot))
            return run;
    return globals().RunListRunning && m_run->owns(slot) ? m_run : nullptr;
}

QSet<int> Verbs::reservedSlots() const
{
    QSet<int> kept;
    for (const TimedRun* run : m_otherRuns)
        for (int slot : run->ownSlots())
            kept.insert(slot);
    return kept;
}

QSet<int> Verbs::slotsOfRuns() const
{
    QSet<int> owned = reservedSlots();
    if (globals().RunListRunning)
        for (int slot = 1; slot <= kWindowSlots; ++slot)
            if (m_run->owns(slot))
                owned.insert(slot);
    return owned;
}

int Verbs::nextUnreserved(int slot) const
{
    const QSet<int> reserved = reservedSlots();
    for (int step = 1; step <= kWindowSlots; ++step) {
        const int candidate = (std::max(0, slot) + step - 1) % kWindowSlots + 1;
        if (!reserved.contains(candidate))
            return candidate;
    }
    return 0; // every window is kept by a run in other windows
}

VerbResult Verbs::runInOtherWindows(const RunChoice& choice, const QList<int>& windows, Caller caller, int* id)
{
    if (windows.isEmpty())
        return VerbResult::failed(VerbResult::NoSuchSlot, QStringLiteral("(none)"));
    const QSet<int> taken = slotsOfRuns();
    QList<int> own;
    for (int slot : windows) {
        if (!isSlot(slot))
            return VerbResult::failed(VerbResult::NoSuchSlot, QString::number(slot));
        if (taken.contains(slot))
            return VerbResult::failed(VerbResult::SlotOfAnotherRun, QString::number(slot));
        if (!own.contains(slot))
            own.append(slot);
    }
    if (choice.intervalSeconds <= 0)
        return VerbResult::failed(VerbResult::BadInterval, QString::number(choice.intervalSeconds));
    bool known = false;
    for (const QString& name : listNames())
        known = known || name.toUpper() == choice.list.toUpper();
    if (!known)
        return VerbResult::failed(VerbResult::NoSuchList, choice.list);
    if (listPages(choice.list.toUpper()).isEmpty())
        return VerbResult::failed(VerbResult::EmptyList, choice.list);
    auto* run = new TimedRun(this, this, own);
    const int number = m_nextRunId++;
    m_otherRuns.insert(number, run);
    connect(run, &TimedRun::changed, this, &Verbs::noteChange);
    connect(run, &TimedRun::completed, this, [this, number] {
        // Once through, a run in other windows ends: its windows are free again.
        QMetaObject::invokeMethod(this, [this, number] { stopRun(number); }, Qt::QueuedConnection);
    });
    const VerbResult started = run->start(choice, caller);
    if (id)
        *id = number;
    EventLog::write(QStringLiteral("run %1 started in windows %2: %3").arg(number).arg(slotList(own), choice.list));
    noteChange();
    return started;
}

VerbResult Verbs::resumeInOtherWindows(const RunChoice& choice, const QList<int>& windows, int position)
{
    int id = 0;
    const VerbResult started = runInOtherWindows(choice, windows, Caller::Outside, &id);
    if (!started.ok())
        return started;
    TimedRun* run = m_otherRuns.value(id);
    run->run().RunPos = std::clamp(position, 0, run->run().RunCount());
    run->run().RunStart = 0;
    return started;
}

VerbResult Verbs::stopRun(int id)
{
    if (id == 1)
        return stopRun();
    TimedRun* run = m_otherRuns.take(id);
    if (!run)
        return VerbResult::failed(VerbResult::NotRunning);
    run->stop();
    run->deleteLater();
    EventLog::write(QStringLiteral("run %1 stopped").arg(id));
    noteChange();
    return VerbResult::done();
}

VerbResult Verbs::nextPage(int id)
{
    TimedRun* run = runById(id);
    return run ? run->next() : VerbResult::failed(VerbResult::NotRunning);
}

VerbResult Verbs::previousPage(int id)
{
    TimedRun* run = runById(id);
    return run ? run->previous() : VerbResult::failed(VerbResult::NotRunning);
}

VerbResult Verbs::pauseRun(int id)
{
    TimedRun* run = runById(id);
    return run ? run->pause() : VerbResult::failed(VerbResult::NotRunning);
}

VerbResult Verbs::resumeRun(int id)
{
    TimedRun* run = runById(id);
    return run ? run->resume() : VerbResult::failed(VerbResult::NotRunning);
}

QList<RunState> Verbs::otherRuns() const
{
    QList<RunState> runs;
    for (auto it = m_otherRuns.cbegin(); it != m_otherRuns.cend(); ++it) {
        RunState r;
        it.value()->fill(r);
        r.id = it.key();
        runs.append(r);
    }
    return runs;
}
