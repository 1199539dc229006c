#include "SessionKeeper.h"

#include "watch/EventLog.h"
#include "core/Clock.h"

namespace {
constexpr qint64 kShortestGapMs = 1000;
} // namespace

SessionKeeper::SessionKeeper(QString file, Snapshot snapshot) : m_file(std::move(file)), m_snapshot(std::move(snapshot))
{
}

void SessionKeeper::start()
{
    // The first tick writes it: the start itself waits for no disk. A crash before that tick
    // leaves the last session's file, which is what this run began from.
    m_keeping = true;
    m_written.reset();
}

void SessionKeeper::tick()
{
    if (!m_keeping)
        return;
    Session now = m_snapshot();
    now.endedNormally = false;
    if (m_written && now == *m_written)
        return;
    // Written less than a second ago: the change goes at a later tick. A clock set back makes the
    // gap negative, and then the change is written at once rather than held until the clock is back.
    const qint64 since = m_lastWrite.isValid() ? m_lastWrite.msecsTo(Clock::localNow()) : -1;
    if (since >= 0 && since < kShortestGapMs)
        return;
    write(now);
}

void SessionKeeper::end()
{
    if (!m_keeping)
        return;
    Session now = m_snapshot();
    now.endedNormally = true;
    write(now);
    m_keeping = false;
}

void SessionKeeper::write(Session session)
{
    m_lastWrite = Clock::localNow();
    if (!SessionFile::write(m_file, session)) {
        // Tried again at a later tick; said once, not at every tick.
        if (!m_failing)
            EventLog::write(QStringLiteral("session could not be saved in %1").arg(m_file));
        m_failing = true;
        m_written.reset();
        return;
    }
    m_failing = false;
    m_written = std::move(session);
    ++m_writes;
}

SessionStart decideSessionStart(const std::optional<Session>& last, bool reopenAfterCrash, bool alwaysReopen)
{
    if (!last || (last->windows.isEmpty() && !last->run && last->otherRuns.isEmpty()))
        return {};
    if (last->endedNormally) {
        if (alwaysReopen && !last->windows.isEmpty())
            return {SessionStart::Reopen, false};
        return {};
    }
    const bool askless = reopenAfterCrash || alwaysReopen;
    return {askless ? SessionStart::Reopen : SessionStart::Ask, last->run.has_value() || !last->otherRuns.isEmpty()};
}

QString sessionQuestion(const Session& last)
{
    // The run dialog's list first, then those that ran in other windows.
    QStringList lists;
    if (last.run)
        lists << last.run->list;
    for (const SessionRun& other : last.otherRuns)
        lists << other.list;
    QString running;
    if (lists.size() == 1)
        running = QStringLiteral("the list %1").arg(lists.first());
    else if (lists.size() > 1)
        running = QStringLiteral("the lists %1 and %2").arg(lists.mid(0, lists.size() - 1).join(QStringLiteral(", ")),
                                                           lists.last());
    QString question = QStringLiteral("Vantrel did not close normally. ");
    const qsizetype windows = last.windows.size();
    if (windows == 0 && !running.isEmpty())
        return question + QStringLiteral("Go on running %1?").arg(running);
    question += windows == 1 ? QStringLiteral("Reopen its browser window")
                             : QStringLiteral("Reopen its %1 browser windows").arg(windows);
    if (!running.isEmpty())
        question += QStringLiteral(" and go on running %1").arg(running);
    return question + u'?';
}
