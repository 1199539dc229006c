#include "TimedRun.h"

#include "WebForm1.h"
#include "core/Clock.h"
#include "core/Globals.h"
#include "settings/VantrelConf.h"
#include "watch/EventLog.h"
#include "watch/RunWatch.h"

#include <algorithm>

namespace {

double nowSeconds()
{
    return double(Clock::localNow().toMSecsSinceEpoch()) / 1000.0;
}

} // namespace

TimedRun::TimedRun(RunHost* host, QObject* parent)
    : QObject(parent), m_verbs(host), m_runWatch(new RunWatch(this))
{
    m_run.openPage = [this](bool multi) { openRunPage(multi); };
    m_run.showComplete = [this] {
        m_runWatch->completed();
        emit completed(m_runCaller);
    };
    m_run.focusDialog = [this] { emit dialogWanted(); };
}

QStringList TimedRun::runAddresses(const QList<ListPageState>& pages, bool* overflow)
{
    QStringList urls;
    if (overflow)
        *overflow = pages.size() > kRunCapacity; // a run holds at most 251 pages
    for (const ListPageState& page : pages.first(std::min<qsizetype>(pages.size(), kRunCapacity)))
        urls.append(page.address);
    return urls;
}

bool TimedRun::BuildRunList(const QString& upperName, bool* overflow)
{
    m_run.setPages(runAddresses(m_verbs->listPages(upperName), overflow));
    m_kept.start(0, false, false); // a run that keeps pages asks for it itself
    return m_run.RunCount() > 0;
}

VerbResult TimedRun::start(const RunChoice& choice, Caller caller)
{
    Globals& g = globals();
    if (caller == Caller::Outside) {
        // A caller that is not at the screen gets a reason instead of a run that ends at once.
        if (choice.intervalSeconds <= 0)
            return VerbResult::failed(VerbResult::BadInterval, QString::number(choice.intervalSeconds));
        const QStringList names = m_verbs->listNames();
        bool known = false;
        for (const QString& name : names)
            known = known || name.toUpper() == choice.list.toUpper();
        if (!known)
            return VerbResult::failed(VerbResult::NoSuchList, choice.list);
        if (m_verbs->listPages(choice.list.toUpper()).isEmpty())
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
        emit listTooLong(caller);
    emit changed();
    return VerbResult::done();
}

VerbResult TimedRun::startOnce(const QString& list)
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
        emit listTooLong(Caller::Person);
    emit changed();
    return VerbResult::done();
}

VerbResult TimedRun::startAt(const RunChoice& choice, int position)
{
    start(choice, Caller::Person);
    if (!globals().RunListRunning || m_run.RunCount() == 0) {
        m_run.stop();
        emit changed();
        return VerbResult::failed(VerbResult::EmptyList, choice.list);
    }
    m_run.RunPos = std::clamp(position, 0, m_run.RunCount());
    m_run.RunStart = 0;
    return VerbResult::done();
}

VerbResult TimedRun::stop()
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
    emit changed();
    return VerbResult::done();
}

VerbResult TimedRun::next()
{
    if (!globals().RunListRunning)
        return VerbResult::failed(VerbResult::NotRunning);
    if (!m_run.next())
        return VerbResult::failed(VerbResult::NoPageThere);
    emit changed();
    return VerbResult::done();
}

VerbResult TimedRun::previous()
{
    if (!globals().RunListRunning)
        return VerbResult::failed(VerbResult::NotRunning);
    if (!m_run.previous())
        return VerbResult::failed(VerbResult::NoPageThere);
    emit changed();
    return VerbResult::done();
}

VerbResult TimedRun::pause()
{
    if (!globals().RunListRunning)
        return VerbResult::failed(VerbResult::NotRunning);
    if (m_run.pause()) {
        EventLog::write(QStringLiteral("run paused: %1 at page %2").arg(globals().RunListName).arg(m_run.RunPos));
        emit changed();
    }
    return VerbResult::done();
}

VerbResult TimedRun::resume()
{
    if (!globals().RunListRunning)
        return VerbResult::failed(VerbResult::NotRunning);
    if (m_run.resume()) {
        EventLog::write(QStringLiteral("run resumed: %1").arg(globals().RunListName));
        emit changed();
    }
    return VerbResult::done();
}

void TimedRun::openRunPage(bool multi)
{
    if (showKeptPage())
        return;
    m_verbs->pool()->RunNavigating = true;
    m_verbs->NewBtnAction(multi, m_runCaller);
    m_verbs->pool()->RunNavigating = false;
    m_kept.loaded(m_run.RunPos, globals().WindowIndex, nowSeconds());
}

bool TimedRun::showKeptPage()
{
    Globals& g = globals();
    const int position = m_run.RunPos;
    const int slot = m_kept.keptSlot(position, g.CurrentUrl, [](int s) { return globals().WindowUrl[s]; });
    if (slot == 0)
        return false;
    const double now = nowSeconds();
    if (m_kept.reloadDue(position, now, 60.0 * VantrelConf::value(VantrelConf::kKeptReloadMinutes))) {
        g.WindowIndex = slot;
        m_verbs->pool()->Form_LoadGo(slot); // loaded again in its own window
        m_kept.loaded(position, slot, now);
    } else {
        EventLog::write(QStringLiteral("page brought forward: window %1 %2").arg(slot).arg(g.CurrentUrl));
    }
    m_verbs->bringForward(slot);
    return true;
}

void TimedRun::tick()
{
    const int before = m_run.RunPos;
    const bool running = globals().RunListRunning;
    m_runWatch->tick(); // a run that was just started is logged before its first page opens
    m_run.tick();
    if (m_run.RunPos != before || globals().RunListRunning != running)
        emit changed();
}

void TimedRun::fill(RunState& r) const
{
    const Globals& g = globals();
    r.running = g.RunListRunning;
    if (!r.running)
        return;
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

