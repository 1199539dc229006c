#include "TimedRun.h"

#include "WebForm1.h"
#include "browser/BrowserWindow.h"
#include "core/Clock.h"
#include "core/Globals.h"
#include "settings/VantrelConf.h"
#include "watch/EventLog.h"
#include "watch/RunWatch.h"

#include <algorithm>
#include <cmath>

TimedRun::TimedRun(RunHost* host, QObject* parent, const QList<int>& windows)
    : QObject(parent), m_verbs(host), m_runWatch(new RunWatch(this)), m_ownSlots(windows)
{
    if (inOtherWindows())
        m_run.keepOwnFlags();
    m_run.openPage = [this](bool multi) { openRunPage(multi); };
    m_run.showComplete = [this] {
        m_runWatch->completed();
        emit completed(m_runCaller);
    };
    m_run.focusDialog = [this] { emit dialogWanted(); };
    m_run.pageRule = [this](int position) { return m_pages.ruleAt(position); };
    m_stepTimer.setSingleShot(true);
    m_stepTimer.setTimerType(Qt::PreciseTimer);
    connect(&m_stepTimer, &QTimer::timeout, this, &TimedRun::tick);
    m_aheadTimer.setSingleShot(true);
    connect(&m_aheadTimer, &QTimer::timeout, this, &TimedRun::loadAhead);
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
    m_pages = RunPages();
    refreshPageSettings();
    m_kept.start(0, false, false); // a run that keeps pages asks for it itself
    return m_run.RunCount() > 0;
}

void TimedRun::refreshPageSettings()
{
    const QStringList& urls = m_run.pages();
    QList<PageSettings> settings;
    for (const QString& url : urls)
        settings.append(m_verbs->pageSettings(m_run.flags().name, url));
    m_pages.setPages(urls, settings);
}

double TimedRun::shownFor(int position) const
{
    const int own = m_pages.ruleAt(position).seconds;
    return own > 0 ? own : m_run.flags().interval;
}

int TimedRun::shownSlot() const
{
    return m_run.flags().running ? m_pages.slotOf(m_run.RunPos - 1) : 0;
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
    const ListRun::Flags f = m_run.flags();
    if (caller == Caller::Outside && f.running)
        m_run.stop();
    m_choice = choice;
    m_runCaller = caller;
    f.multi = choice.severalWindows;
    f.loop = choice.loop;
    f.running = true;
    f.name = choice.list;
    f.interval = choice.intervalSeconds;
    bool overflow = false;
    BuildRunList(f.name.toUpper(), &overflow);
    m_kept.start(m_run.RunCount(), choice.keepPagesLoaded, choice.severalWindows);
    if (g.WindowIndex > 0 && !m_run.hasOwnFlags())
        g.NextRunItem = g.WindowIndex; // a one-window run goes on in the window used last
    if (overflow)
        emit listTooLong(caller);
    emit changed();
    armStep();
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
    if (!m_run.flags().running || m_run.RunCount() == 0) {
        m_run.stop();
        emit changed();
        return VerbResult::failed(VerbResult::EmptyList, choice.list);
    }
    goOnAt(position);
    return VerbResult::done();
}

void TimedRun::goOnAt(int position)
{
    m_run.RunPos = std::clamp(position, 0, m_run.RunCount());
    m_run.RunStart = 0;
    // The windows that show the run's pages again are the run's, as if it had opened them: the
    // run keys and a person's hold work there from the first moment.
    const double now = Clock::epochSeconds();
    for (int slot = 1; slot <= kWindowSlots; ++slot) {
        if (inOtherWindows() && !m_ownSlots.contains(slot))
            continue;
        const int shown = m_run.pages().indexOf(globals().WindowUrl[slot]);
        if (shown < 0)
            continue;
        if (m_pages.slotOf(shown) == 0)
            m_pages.loaded(shown, slot, now);
        // Reopened as a plain page: one with a zoom or a scroll of its own takes its look again.
        const PageSettings look = m_pages.settingsAt(shown);
        if (look.zoom != 0 || look.scroll != PageSettings::Scroll::None)
            m_verbs->pool()->reloadInPlace(slot, m_pages.address(shown), look, shownFor(shown));
        m_slots.insert(slot);
        m_verbs->pool()->setRunKeys(slot, true);
    }
}

VerbResult TimedRun::stop()
{
    const ListRun::Flags f = m_run.flags();
    if (!f.running) {
        f.loop = false;
        f.multi = false;
        return VerbResult::failed(VerbResult::NotRunning);
    }
    const int front = shownSlot();
    m_run.stop();
    f.loop = false;
    f.multi = false;
    if (m_kept.active() && !inOtherWindows())
        m_verbs->pool()->hideBeneath(m_slots, front); // as after any bringing forward: one in view
    releaseSlots();
    emit changed();
    return VerbResult::done();
}

void TimedRun::releaseSlots()
{
    for (int slot : std::as_const(m_slots))
        m_verbs->pool()->setRunKeys(slot, false);
    m_slots.clear();
    m_handsOn = false;
    m_stepTimer.stop();
    m_aheadTimer.stop();
}

VerbResult TimedRun::next()
{
    if (!m_run.flags().running)
        return VerbResult::failed(VerbResult::NotRunning);
    if (!m_run.next())
        return VerbResult::failed(VerbResult::NoPageThere);
    m_handsOn = false;
    emit changed();
    armStep();
    return VerbResult::done();
}

VerbResult TimedRun::previous()
{
    if (!m_run.flags().running)
        return VerbResult::failed(VerbResult::NotRunning);
    if (!m_run.previous())
        return VerbResult::failed(VerbResult::NoPageThere);
    m_handsOn = false;
    emit changed();
    armStep();
    return VerbResult::done();
}

VerbResult TimedRun::pause()
{
    if (!m_run.flags().running)
        return VerbResult::failed(VerbResult::NotRunning);
    m_handsOn = false; // held on purpose: only Resume goes on
    if (m_run.pause()) {
        m_stepTimer.stop();
        m_aheadTimer.stop();
        m_addressAtHold = m_verbs->windowAddress(shownSlot());
        EventLog::write(QStringLiteral("run paused: %1 at page %2").arg(m_run.flags().name).arg(m_run.RunPos));
        emit changed();
    }
    return VerbResult::done();
}

VerbResult TimedRun::resume()
{
    if (!m_run.flags().running)
        return VerbResult::failed(VerbResult::NotRunning);
    m_handsOn = false;
    if (m_run.resume()) {
        bringBackShownPage();
        EventLog::write(QStringLiteral("run resumed: %1").arg(m_run.flags().name));
        emit changed();
        armStep();
    }
    return VerbResult::done();
}

void TimedRun::bringBackShownPage()
{
    const int shown = m_run.RunPos - 1;
    const int slot = m_pages.slotOf(shown);
    const QString now = m_verbs->windowAddress(slot);
    if (slot == 0 || now.isEmpty() || now == m_addressAtHold)
        return;
    EventLog::write(QStringLiteral("page brought back: window %1 %2").arg(slot).arg(m_pages.address(shown)));
    m_verbs->pool()->reloadInPlace(slot, m_pages.address(shown), m_pages.settingsAt(shown), m_run.secondsToNext());
    m_pages.loaded(shown, slot, Clock::epochSeconds());
}

void TimedRun::personActed(int slot)
{
    if (!m_run.flags().running || !owns(slot) || !VantrelConf::flag(VantrelConf::kHandsOnPause))
        return;
    m_lastInput = Clock::epochSeconds();
    if (m_run.paused())
        return; // held already: by this person a moment ago, or on purpose
    if (!m_run.pause())
        return;
    m_handsOn = true;
    m_stepTimer.stop();
    m_aheadTimer.stop();
    m_addressAtHold = m_verbs->windowAddress(shownSlot());
    EventLog::write(QStringLiteral("run paused: someone uses window %1 (%2 at page %3)")
                        .arg(slot)
                        .arg(m_run.flags().name)
                        .arg(m_run.RunPos));
    emit changed();
}

void TimedRun::runKey(int slot, RunKey key)
{
    if (!m_run.flags().running || !owns(slot))
        return;
    switch (key) {
    case RunKey::PauseOrResume:
        if (m_run.paused())
            resume();
        else
            pause();
        break;
    case RunKey::Next:
        next();
        break;
    case RunKey::Previous:
        previous();
        break;
    }
}

void TimedRun::armStep()
{
    m_stepTimer.stop();
    m_aheadTimer.stop();
    if (!m_run.flags().running || m_run.paused() || m_run.RunPos == 0 || m_run.RunStart == 0)
        return;
    if (m_pages.ruleAt(m_run.RunPos - 1).seconds <= 0)
        return; // the run's interval is waited out at the ticks, as it always was
    const int msToStep = int(std::ceil(m_run.secondsToNext() * 1000.0));
    m_stepTimer.start(msToStep);
    armLoadAhead(msToStep);
}

void TimedRun::tick()
{
    const int before = m_run.RunPos;
    const bool running = m_run.flags().running;
    // A run that was just started is logged before its first page opens.
    const ListRun::Flags f = m_run.flags();
    m_runWatch->tick({f.running, f.name, f.interval, f.multi, f.loop});
    m_run.tick();
    const double now = Clock::epochSeconds();
    const int shown = m_run.RunPos - 1;
    if (m_run.flags().running && !m_run.paused() && m_pages.reloadWhileShown(shown, now)) {
        // A live page is loaded again while it stays in view, as its own rule says.
        const int slot = m_pages.slotOf(shown);
        EventLog::write(QStringLiteral("page reloaded: window %1 %2").arg(slot).arg(m_pages.address(shown)));
        m_verbs->pool()->reloadInPlace(slot, m_pages.address(shown), m_pages.settingsAt(shown), 0);
        m_pages.loaded(shown, slot, now);
    }
    if (m_handsOn && m_run.paused() && now - m_lastInput >= VantrelConf::value(VantrelConf::kHandsOnSeconds)) {
        m_handsOn = false;
        m_run.resume();
        bringBackShownPage();
        EventLog::write(QStringLiteral("run resumed: nobody used its window for %1 s (%2)")
                            .arg(VantrelConf::value(VantrelConf::kHandsOnSeconds))
                            .arg(m_run.flags().name));
        emit changed();
    }
    if (!m_run.flags().running && !m_slots.isEmpty())
        releaseSlots();
    if (m_run.RunPos != before || m_run.flags().running != running)
        emit changed();
    armStep();
}

void TimedRun::fill(RunState& r) const
{
    const ListRun::Flags f = m_run.flags();
    r.running = f.running;
    if (!r.running)
        return;
    r.list = f.name;
    r.intervalSeconds = f.interval;
    r.loop = f.loop;
    r.severalWindows = f.multi;
    r.windows = m_ownSlots;
    r.keepPagesLoaded = m_choice.keepPagesLoaded;
    r.count = m_run.RunCount();
    r.position = m_run.RunPos - 1;
    r.next = m_run.RunPos;
    r.paused = m_run.paused();
    r.heldByPerson = m_handsOn;
    r.slot = shownSlot();
    r.secondsToNext = m_run.secondsToNext();
}

