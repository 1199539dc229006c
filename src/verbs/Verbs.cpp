#include "Verbs.h"

#include "WebForm1.h"
#include "browser/BrowserWindow.h"
#include "core/Clock.h"
#include "core/DialogService.h"
#include "core/Globals.h"
#include "settings/VantrelConf.h"
#include "watch/EventLog.h"
#include "watch/RunWatch.h"
#include "watch/WindowRecovery.h"

#include <QMetaObject>

namespace {

const QString kMaximumQuestion =
    QStringLiteral("        That's It - Maximum is 8 ! - Continue in Last Window ?");

bool isSlot(int slot)
{
    return slot >= 1 && slot <= kWindowSlots;
}

double nowSeconds()
{
    return double(Clock::localNow().toMSecsSinceEpoch()) / 1000.0;
}

} // namespace

Verbs::Verbs(QObject* parent) : QObject(parent), m_pool(new WebForm1(this)), m_runWatch(new RunWatch(this))
{
    setObjectName(QStringLiteral("Verbs"));
    followPool();
    m_run.openPage = [this](bool multi) { openRunPage(multi); };
    m_run.showComplete = [this] {
        m_runWatch->completed();
        emit runCompleted(m_runCaller);
    };
    m_run.focusDialog = [this] { emit runDialogWanted(); };
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
        if (!g.WindowUrl[slot].isEmpty()) {
            // The slot's own window goes to the page, as a run's one-window step does.
            g.WindowIndex = slot;
            m_pool->Form_LoadGo(slot);
            noteChange();
            return VerbResult::done();
        }
        if (g.WindowCount >= kWindowSlots)
            return VerbResult::failed(VerbResult::AllWindowsOpen);
        return openInSlot(slot);
    }
    g.CurrentUrl = address;
    g.CurrentTitle = title;
    return NewBtnAction(where == OpenWhere::NewWindow, caller);
}

VerbResult Verbs::NewBtnAction(bool newWindow, Caller caller)
{
    Globals& g = globals();
    emit pageOpening();
    if (g.WindowCount < kWindowSlots) {
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
            g.WindowIndex = kWindowSlots;
            m_pool->SelectieNavigate(kWindowSlots, false);
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
        m_run.restart();
        g.RunListMulti = false;
    }
    if (g.WindowCount == kWindowSlots) {
        emit rowsCleared();
        if (g.WindowIndex == kWindowSlots)
            g.WindowIndex = 0;
        g.WindowIndex = g.WindowIndex + 1;
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
    for (int slot = 1; slot <= kWindowSlots; ++slot) {
        if (g.WindowUrl[slot].isEmpty()) {
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
    if (!g.WindowFlagB)
        m_pool->SelectieWindow(slot);
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

void Verbs::setNewWindowMode(bool newWindows)
{
    globals().NewWindowMode = newWindows;
    emit newWindowModeChanged(newWindows);
    noteChange();
}

// ---- the timed run -------------------------------------------------------------------------

bool Verbs::BuildRunList(const QString& upperName, bool* overflow)
{
    QStringList urls;
    bool tooLong = false;
    const QList<ListPageState> pages = m_lists.pages ? m_lists.pages(upperName) : QList<ListPageState>();
    for (const ListPageState& page : pages) {
        if (urls.size() >= kRunCapacity) {
            tooLong = true; // a run holds at most 251 pages
            break;
        }
        urls.append(page.address);
    }
    m_run.setPages(urls);
    m_kept.start(0, false, false); // a run that keeps pages asks for it itself
    if (overflow)
        *overflow = tooLong;
    return !urls.isEmpty();
}

VerbResult Verbs::startRun(const RunChoice& choice, Caller caller)
{
    Globals& g = globals();
    if (caller == Caller::Outside) {
        // A caller that is not at the screen gets a reason instead of a run that ends at once.
        if (choice.intervalSeconds <= 0)
            return VerbResult::failed(VerbResult::BadInterval, QString::number(choice.intervalSeconds));
        const QStringList names = m_lists.names ? m_lists.names() : QStringList();
        bool known = false;
        for (const QString& name : names)
            known = known || name.toUpper() == choice.list.toUpper();
        if (!known)
            return VerbResult::failed(VerbResult::NoSuchList, choice.list);
        if (!m_lists.pages || m_lists.pages(choice.list.toUpper()).isEmpty())
            return VerbResult::failed(VerbResult::EmptyList, choice.list);
    }
    // A run asked for from outside starts at its first page; the run dialog's Go, pressed again
    // while its run goes, changes the choices and goes on where the run was, as it always has.
    if (caller == Caller::Outside && g.RunListRunning)
        m_run.stop();
    m_choice = choice;
    m_runCaller = caller;
    g.RunListMulti = choice.severalWindows;
    g.RunListLoop = choice.loop;
    g.RunListRunning = true;
    g.RunListName = choice.list;
    g.RunInterval = choice.intervalSeconds;
    bool overflow = false;
    BuildRunList(g.RunListName.toUpper(), &overflow);
    m_kept.start(m_run.RunCount(), choice.keepPagesLoaded, choice.severalWindows);
    if (g.WindowIndex > 0)
        g.NextRunItem = g.WindowIndex; // a one-window run goes on in the window used last
    if (overflow)
        emit runListTooLong(caller);
    noteChange();
    return VerbResult::done();
}

VerbResult Verbs::runList(const RunChoice& choice, Caller caller)
{
    return startRun(choice, caller);
}

VerbResult Verbs::runStartupList(const QString& list)
{
    Globals& g = globals();
    g.RunListName = list;
    bool overflow = false;
    if (!BuildRunList(g.RunListName.toUpper(), &overflow))
        return VerbResult::failed(VerbResult::EmptyList, list);
    m_choice = RunChoice{list, g.RunInterval, false, true, false};
    m_runCaller = Caller::Person;
    g.RunListRunning = true;
    g.RunListLoop = false;
    g.RunListMulti = true; // each page in a window of its own, once through
    if (overflow)
        emit runListTooLong(Caller::Person);
    noteChange();
    return VerbResult::done();
}

VerbResult Verbs::resumeRunAt(const RunChoice& choice, int position)
{
    startRun(choice, Caller::Person);
    if (!globals().RunListRunning || m_run.RunCount() == 0) {
        m_run.stop();
        noteChange();
        return VerbResult::failed(VerbResult::EmptyList, choice.list);
    }
    m_run.RunPos = std::clamp(position, 0, m_run.RunCount());
    m_run.RunStart = 0;
    return VerbResult::done();
}

VerbResult Verbs::stopRun()
{
    Globals& g = globals();
    if (!g.RunListRunning) {
        g.RunListLoop = false;
        g.RunListMulti = false;
        return VerbResult::failed(VerbResult::NotRunning);
    }
    m_run.stop();
    g.RunListLoop = false;
    g.RunListMulti = false;
    noteChange();
    return VerbResult::done();
}

VerbResult Verbs::nextPage()
{
    if (!globals().RunListRunning)
        return VerbResult::failed(VerbResult::NotRunning);
    if (!m_run.next())
        return VerbResult::failed(VerbResult::NoPageThere);
    noteChange();
    return VerbResult::done();
}

VerbResult Verbs::previousPage()
{
    if (!globals().RunListRunning)
        return VerbResult::failed(VerbResult::NotRunning);
    if (!m_run.previous())
        return VerbResult::failed(VerbResult::NoPageThere);
    noteChange();
    return VerbResult::done();
}

VerbResult Verbs::pauseRun()
{
    if (!globals().RunListRunning)
        return VerbResult::failed(VerbResult::NotRunning);
    if (m_run.pause()) {
        EventLog::write(QStringLiteral("run paused: %1 at page %2").arg(globals().RunListName).arg(m_run.RunPos));
        noteChange();
    }
    return VerbResult::done();
}

VerbResult Verbs::resumeRun()
{
    if (!globals().RunListRunning)
        return VerbResult::failed(VerbResult::NotRunning);
    if (m_run.resume()) {
        EventLog::write(QStringLiteral("run resumed: %1").arg(globals().RunListName));
        noteChange();
    }
    return VerbResult::done();
}

void Verbs::openRunPage(bool multi)
{
    if (showKeptPage())
        return;
    m_pool->RunNavigating = true;
    NewBtnAction(multi, m_runCaller);
    m_pool->RunNavigating = false;
    m_kept.loaded(m_run.RunPos, globals().WindowIndex, nowSeconds());
}

bool Verbs::showKeptPage()
{
    Globals& g = globals();
    const int position = m_run.RunPos;
    const int slot = m_kept.keptSlot(position, g.CurrentUrl, [](int s) { return globals().WindowUrl[s]; });
    if (slot == 0)
        return false;
    const double now = nowSeconds();
    if (m_kept.reloadDue(position, now, 60.0 * VantrelConf::value(VantrelConf::kKeptReloadMinutes))) {
        g.WindowIndex = slot;
        m_pool->Form_LoadGo(slot); // loaded again in its own window
        m_kept.loaded(position, slot, now);
    } else {
        EventLog::write(QStringLiteral("page brought forward: window %1 %2").arg(slot).arg(g.CurrentUrl));
    }
    bringForward(slot);
    return true;
}

void Verbs::tick()
{
    const int before = m_run.RunPos;
    const bool running = globals().RunListRunning;
    m_runWatch->tick(); // a run that was just started is logged before its first page opens
    m_run.tick();
    if (m_run.RunPos != before || globals().RunListRunning != running)
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
    return w;
}

ProgramState Verbs::state() const
{
    const Globals& g = globals();
    ProgramState s;
    for (int slot = 1; slot <= kWindowSlots; ++slot)
        if (!g.WindowUrl[slot].isEmpty())
            s.windows.append(window(slot));
    s.currentSlot = isSlot(g.WindowIndex) ? g.WindowIndex : 0;
    s.newWindowMode = g.NewWindowMode;
    RunState& r = s.run;
    r.running = g.RunListRunning;
    if (r.running) {
        r.list = g.RunListName;
        r.intervalSeconds = g.RunInterval;
        r.loop = g.RunListLoop;
        r.severalWindows = g.RunListMulti;
        r.keepPagesLoaded = m_choice.keepPagesLoaded;
        r.count = m_run.RunCount();
        r.position = m_run.RunPos - 1;
        r.next = m_run.RunPos;
        r.paused = m_run.paused();
        r.secondsToNext = m_run.secondsToNext();
    }
    const QStringList names = m_lists.names ? m_lists.names() : QStringList();
    for (const QString& name : names)
        s.lists.append({name, m_lists.pages ? m_lists.pages(name.toUpper()) : QList<ListPageState>()});
    return s;
}
