#include "Verbs.h"

#include "FavoritesModel.h"
#include "HistoryModel.h"
#include "ListsModel.h"
#include "PageSettingsStore.h"
#include "RunRoster.h"
#include "TimedRun.h"
#include "WebForm1.h"
#include "browser/BrowserWindow.h"
#include "screens/ScreenPlacer.h"
#include "core/Clock.h"
#include "core/DialogService.h"
#include "core/Globals.h"
#include "watch/WindowRecovery.h"

#include <QMetaObject>

namespace {


const QString kMaximumQuestion =
    QStringLiteral("        That's It - Maximum is 8 ! - Continue in Last Window ?");

bool isSlot(int slot)
{
    return slot >= 1 && slot <= kWindowSlots;
}

} // namespace

Verbs::Verbs(QObject* parent)
    : QObject(parent), m_pool(new WebForm1(this)), m_run(new TimedRun(this, this)), m_runs(new RunRoster(this, m_run, this)), m_lists(new ListsModel(this)),
      m_history(new HistoryModel(this)), m_favorites(new FavoritesModel(this)),
      m_pageSettings(new PageSettingsStore(m_lists, this))
{
    setObjectName(QStringLiteral("Verbs"));
    followPool();
    connect(m_run, &TimedRun::completed, this, &Verbs::runCompleted);
    connect(m_run, &TimedRun::dialogWanted, this, &Verbs::runDialogWanted);
    connect(m_run, &TimedRun::listTooLong, this, &Verbs::runListTooLong);
    connect(m_run, &TimedRun::changed, this, &Verbs::noteChange);
    connect(m_runs, &RunRoster::changed, this, &Verbs::noteChange);
    connect(m_pool->placer(), &ScreenPlacer::placed, this, &Verbs::noteChange); // windows moved
    connect(m_lists, &ListsModel::reset, this, &Verbs::noteChange);
    connect(m_lists, &ListsModel::groupAdded, this, &Verbs::noteChange);
    connect(m_lists, &ListsModel::pageAdded, this, &Verbs::noteChange);
    connect(m_lists, &ListsModel::listRenamed, this, &Verbs::noteChange);
    connect(m_lists, &ListsModel::titleChanged, this, &Verbs::noteChange);
    connect(m_pageSettings, &PageSettingsStore::changed, this, [this] {
        m_run->refreshPageSettings();
        m_runs->refreshOthers();
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
        if (TimedRun* run = m_runs->owning(slot))
            run->personActed(slot);
    });
    connect(m_pool, &WebForm1::runKeyPressed, this, [this](int slot, RunKey key) {
        if (TimedRun* run = m_runs->owning(slot))
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
    const QSet<int> reserved = m_runs->reserved();
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
            g.WindowIndex = reserved.contains(kWindowSlots) ? m_runs->nextUnreserved(kWindowSlots - 1) : kWindowSlots;
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
            g.WindowIndex = m_runs->nextUnreserved(g.WindowIndex); // round the windows no other run keeps
        }
        if (g.WindowIndex >= 1)
            m_pool->SelectieNavigate(g.WindowIndex, g.WindowUrl[g.WindowIndex].isEmpty());
    }
    noteChange();
    return VerbResult::done();
}

VerbResult Verbs::openNewPage(bool newWindow, Caller caller)
{
    Globals& g = globals();
    if (!g.NewWindowUrl.trimmed().isEmpty())
        g.CurrentUrl = g.NewWindowUrl;
    return NewBtnAction(newWindow, caller);
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
    const QSet<int> reserved = m_runs->reserved();
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
        QSet<int> spare = m_runs->reserved();
        if (const TimedRun* own = m_runs->owning(slot); own && own->inOtherWindows())
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
    TimedRun* run = m_runs->owning(slot);
    w.runPaused = run && run->shownSlot() == slot && run->run().paused();
    w.runHeldByPerson = w.runPaused && run->heldByPerson();
    if (const BrowserWindow* browser = m_pool->ie(slot)) {
        w.monitor = browser->monitor();
        w.fullScreen = browser->isFullScreen();
    }
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
