// The verbs of the lists and the runs: the page settings, the run dialog's run and the runs in
// other windows. The runs do the work; these are the doors' way to them.
#include "Verbs.h"

#include "ListsModel.h"
#include "PageSettingsStore.h"
#include "RunRoster.h"
#include "TimedRun.h"
#include "WebForm1.h"
#include "watch/WindowRecovery.h"

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
    m_runs->tickOthers();
    m_pool->recovery()->tick();
}

// ---- runs in other windows: the roster does the work -----------------------------------------

VerbResult Verbs::runInOtherWindows(const RunChoice& choice, const QList<int>& windows, Caller caller, int* id)
{
    return m_runs->startInOtherWindows(choice, windows, caller, id);
}

VerbResult Verbs::resumeInOtherWindows(const RunChoice& choice, const QList<int>& windows, int position)
{
    return m_runs->resumeInOtherWindows(choice, windows, position);
}

VerbResult Verbs::stopRun(int id)
{
    return id == 1 ? stopRun() : m_runs->stop(id);
}

VerbResult Verbs::nextPage(int id)
{
    TimedRun* run = m_runs->byId(id);
    return run ? run->next() : VerbResult::failed(VerbResult::NotRunning);
}

VerbResult Verbs::previousPage(int id)
{
    TimedRun* run = m_runs->byId(id);
    return run ? run->previous() : VerbResult::failed(VerbResult::NotRunning);
}

VerbResult Verbs::pauseRun(int id)
{
    TimedRun* run = m_runs->byId(id);
    return run ? run->pause() : VerbResult::failed(VerbResult::NotRunning);
}

VerbResult Verbs::resumeRun(int id)
{
    TimedRun* run = m_runs->byId(id);
    return run ? run->resume() : VerbResult::failed(VerbResult::NotRunning);
}

QList<RunState> Verbs::otherRuns() const
{
    return m_runs->others();
}

QSet<int> Verbs::slotsOfRuns() const
{
    return m_runs->owned();
}
