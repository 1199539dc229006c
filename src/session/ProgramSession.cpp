#include "ProgramSession.h"

#include "core/DialogService.h"
#include "core/Globals.h"
#include "settings/VantrelConf.h"
#include "verbs/Verbs.h"
#include "watch/EventLog.h"

ProgramSession::ProgramSession(Verbs* verbs, RunResumer resumeRun)
    : m_verbs(verbs), m_resumeRun(std::move(resumeRun)), m_keeper(SessionFile::path(), [this] { return snapshot(); })
{
}

Session ProgramSession::snapshot() const
{
    // The windows and the run only: the lists are no part of the session.
    const Globals& g = globals();
    Session now;
    for (const WindowState& window : m_verbs->windows())
        now.windows.append({window.slot, window.address, window.title});
    now.currentSlot = g.WindowIndex >= 0 && g.WindowIndex <= kWindowSlots ? g.WindowIndex : 0;
    now.newWindowMode = g.NewWindowMode;
    const RunState run = m_verbs->runState();
    if (run.running && !run.list.isEmpty())
        now.run = SessionRun{run.list, run.intervalSeconds, run.loop, run.severalWindows, run.keepPagesLoaded, run.next, {}};
    for (const RunState& other : m_verbs->otherRuns())
        if (other.running)
            now.otherRuns.append(SessionRun{other.list, other.intervalSeconds, other.loop, other.severalWindows,
                                            other.keepPagesLoaded, other.next, other.windows});
    return now;
}

bool ProgramSession::resume()
{
    QString problem;
    const std::optional<Session> last = SessionFile::read(SessionFile::path(), &problem);
    if (!problem.isEmpty())
        EventLog::write(QStringLiteral("session of the last run ignored: %1").arg(problem));
    const SessionStart start = decideSessionStart(last, VantrelConf::flag(VantrelConf::kReopenAfterCrash),
                                                  VantrelConf::flag(VantrelConf::kAlwaysReopen));
    bool reopened = false;
    if (start.action == SessionStart::Ask) {
        reopened = DialogService::question(sessionQuestion(*last));
        if (!reopened)
            EventLog::write(QStringLiteral("session of the last run not reopened (the user said no)"));
    }
    if (start.action == SessionStart::Reopen)
        reopened = true;
    if (reopened)
        reopen(*last, start.withRun);
    m_keeper.start();
    return reopened;
}

void ProgramSession::reopen(const Session& last, bool withRun)
{
    if (globals().NewWindowMode != last.newWindowMode)
        m_verbs->setNewWindowMode(last.newWindowMode);
    // Each page in its own slot; the current one last, so that it comes up in front and the
    // program goes on from it.
    QList<SessionWindow> order = last.windows;
    std::stable_partition(order.begin(), order.end(),
                          [&](const SessionWindow& w) { return w.slot != last.currentSlot; });
    for (const SessionWindow& window : order)
        m_verbs->openPage(window.address, window.title, OpenWhere::Slot, window.slot);
    QString run;
    if (withRun && last.run) {
        const SessionRun& r = *last.run;
        if (m_resumeRun && m_resumeRun(r))
            run = QStringLiteral(", the run of %1 going on at page %2").arg(r.list).arg(r.position + 1);
        else
            run = QStringLiteral(", the run of %1 not (the list or its interval is gone)").arg(r.list);
    }
    if (withRun) {
        for (const SessionRun& r : last.otherRuns) {
            const RunChoice choice{r.list, r.interval, r.loop, r.severalWindows, r.keepPagesLoaded};
            if (m_verbs->resumeInOtherWindows(choice, r.windows, r.position).ok())
                run += QStringLiteral(", the run of %1 in other windows going on at page %2").arg(r.list).arg(r.position + 1);
            else
                run += QStringLiteral(", the run of %1 in other windows not (the list is gone)").arg(r.list);
        }
    }
    EventLog::write(QStringLiteral("session of the last run reopened: %1 windows%2").arg(last.windows.size()).arg(run));
}
