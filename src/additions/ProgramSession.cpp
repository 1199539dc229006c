#include "ProgramSession.h"

#include "EventLog.h"
#include "VantrelConf.h"
#include "browser/SurfPanel.h"
#include "browser/Vantrel1.h"
#include "core/DialogService.h"
#include "core/Globals.h"
#include "lists/ListRun.h"
#include "lists/ListsPanel.h"
#include "widgets/GradientButton.h"

ProgramSession::ProgramSession(Vantrel1* main)
    : m_main(main), m_keeper(SessionFile::path(), [this] { return snapshot(); })
{
}

Session ProgramSession::snapshot() const
{
    const Globals& g = globals();
    SurfPanel* surf = m_main->surf();
    Session now;
    for (int slot = 1; slot <= kWindowSlots; ++slot) {
        if (g.WindowUrl[slot].isEmpty())
            continue; // a free slot
        // The row shows where the window is now; the slot's first address until it knows.
        const GradientButton* row = surf->Button(slot - 1);
        const QString address = row->tag().isEmpty() ? g.WindowUrl[slot] : row->tag();
        now.windows.append({slot, address, row->text()});
    }
    now.currentSlot = g.WindowIndex >= 0 && g.WindowIndex <= kWindowSlots ? g.WindowIndex : 0;
    now.newWindowMode = g.NewWindowMode;
    if (g.RunListRunning && !g.RunListName.isEmpty()) {
        ListsPanel* lists = m_main->listsPanel();
        now.run = SessionRun{g.RunListName,   g.RunInterval,          g.RunListLoop, g.RunListMulti,
                             lists->keepingPages(), lists->run().RunPos};
    }
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
    Globals& g = globals();
    SurfPanel* surf = m_main->surf();
    if (g.NewWindowMode != last.newWindowMode) {
        surf->ToggleBtn()->setValue(!last.newWindowMode);
        surf->ToggleBtn_Click();
    }
    // Each page in its own slot; the current one last, so that it comes up in front and the
    // program goes on from it.
    QList<SessionWindow> order = last.windows;
    std::stable_partition(order.begin(), order.end(),
                          [&](const SessionWindow& w) { return w.slot != last.currentSlot; });
    for (const SessionWindow& window : order) {
        g.CurrentUrl = window.address;
        g.CurrentTitle = window.title;
        surf->openInSlot(window.slot);
    }
    QString run;
    if (withRun && last.run) {
        const SessionRun& r = *last.run;
        if (m_main->listsPanel()->resumeRun(r.list, r.interval, r.loop, r.severalWindows, r.keepPagesLoaded,
                                             r.position))
            run = QStringLiteral(", the run of %1 going on at page %2").arg(r.list).arg(r.position + 1);
        else
            run = QStringLiteral(", the run of %1 not (the list or its interval is gone)").arg(r.list);
    }
    EventLog::write(QStringLiteral("session of the last run reopened: %1 windows%2").arg(last.windows.size()).arg(run));
}
