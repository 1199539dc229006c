#include "Scheduler.h"

#include "core/Clock.h"
#include "settings/VantrelConf.h"
#include "verbs/ProgramState.h"
#include "verbs/TimedRun.h"
#include "verbs/Verbs.h"
#include "watch/EventLog.h"

#include <QSet>

#include <algorithm>

#include <QSet>

namespace {

RunChoice choiceOf(const Schedule& schedule)
{
    return RunChoice{schedule.list, schedule.intervalSeconds, schedule.loop, schedule.severalWindows,
                     schedule.keepPagesLoaded};
}

QString windowsText(const QList<int>& windows)
{
    QStringList numbers;
    for (int slot : windows)
        numbers << QString::number(slot);
    return windows.isEmpty() ? QStringLiteral("the run dialog's window") : QStringLiteral("windows ") + numbers.join(u',');
}

} // namespace

Scheduler::Scheduler(Verbs* verbs, QObject* parent) : QObject(parent), m_verbs(verbs)
{
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::PreciseTimer);
    connect(&m_timer, &QTimer::timeout, this, [this] {
        evaluate();
        armTimer();
    });
}

void Scheduler::setSchedules(const QList<Schedule>& schedules)
{
    m_schedules = schedules;
    QHash<QString, Track> kept;
    for (const Schedule& schedule : schedules)
        kept.insert(schedule.name, m_tracks.value(schedule.name));
    m_tracks = kept;
    evaluate();
}

void Scheduler::start()
{
    evaluate();
    armTimer();
}

void Scheduler::armTimer()
{
    // At the turn of the next second, so that a rotation starts within a second of its minute.
    const int msecs = 1000 - Clock::localNow().time().msec();
    m_timer.start(std::clamp(msecs, 1, 1000));
}

int Scheduler::runOf(const QString& scheduleName) const
{
    return m_tracks.value(scheduleName).runId;
}

const RunState* Scheduler::runningRotation(const Schedule& schedule, const QList<RunState>& runs) const
{
    for (const RunState& run : runs) {
        if (!run.running || run.list.toUpper() != schedule.list.toUpper())
            continue;
        const bool dialogsRun = run.id == 1;
        if (schedule.windows.isEmpty() ? dialogsRun
                                       : (!dialogsRun && QSet<int>(run.windows.begin(), run.windows.end()) ==
                                                             QSet<int>(schedule.windows.begin(), schedule.windows.end())))
            return &run;
    }
    return nullptr;
}

void Scheduler::evaluate()
{
    if (!m_verbs)
        return;
    const QDateTime now = Clock::localNow();
    bool anyChange = false;
    QSet<int> idle, busy; // the windows whose rotation just ended, and those of rotations in their hours
    for (const Schedule& schedule : m_schedules) {
        Track& track = m_tracks[schedule.name];
        const bool firstLook = !track.looked;
        track.looked = true;
        const bool inHours = schedule.activeAt(now);
        const QList<int> windows = schedule.windows.isEmpty() ? QList<int>{1} : schedule.windows;
        if (inHours)
            busy += QSet<int>(windows.begin(), windows.end());
        else if (schedule.enabled && (firstLook || track.inHours))
            idle += QSet<int>(windows.begin(), windows.end()); // at the end of its hours, or outside them at the start
        const ProgramState state = m_verbs->state();
        QList<RunState> runs{state.run};
        runs += state.otherRuns;
        const RunState* running = runningRotation(schedule, runs);
        if (track.runId != 0 && (!running || running->id != track.runId)) {
            // Its run ended while its hours went on: somebody stopped it.
            EventLog::write(QStringLiteral("schedule \"%1\": its run of %2 was stopped; it waits for its next hours")
                                .arg(schedule.name, schedule.list));
            track.runId = 0;
            track.stoppedByHand = inHours;
            anyChange = true;
        }
        if (inHours && !track.inHours)
            track.stoppedByHand = false; // its hours begin again
        if (inHours && track.runId == 0 && !track.stoppedByHand) {
            if (running) {
                track.runId = running->id; // already going (the last session's, or started from outside)
            } else {
                begin(schedule, track, now.date());
            }
            anyChange = anyChange || track.runId != 0;
        } else if (!inHours && track.runId != 0) {
            end(schedule, track, now.date());
            anyChange = true;
        }
        if (!inHours)
            track.stoppedByHand = false;
        track.inHours = inHours;
    }
    // What a window shows with nothing scheduled comes after every rotation that begins now has
    // begun, so that a window whose next rotation follows at once never shows it in between.
    QList<int> showIdle(idle.begin(), idle.end());
    std::sort(showIdle.begin(), showIdle.end());
    for (int slot : showIdle)
        if (!busy.contains(slot) && m_verbs->showWhenIdle(slot).ok() && m_verbs->idleShowOf(slot) != SlotIdle::Show::Desktop)
            m_idleShown.insert(slot);
    // A window that a run took again, or that is gone, shows its idle time no more.
    for (auto it = m_idleShown.begin(); it != m_idleShown.end();)
        it = busy.contains(*it) || m_verbs->window(*it).slot == 0 || m_verbs->slotOwnedByRun(*it) ? m_idleShown.erase(it) : std::next(it);
    if (m_idleShown.isEmpty()) {
        m_awake.release();
    } else if (!m_awake.held() && VantrelConf::flag(VantrelConf::kKeepScreenAwake)) {
        QString why;
        if (!m_awake.hold(QStringLiteral("A screen shows what it shows with nothing scheduled"), &why) && !m_awakeRefused) {
            EventLog::write(QStringLiteral("the screen cannot be kept awake: ") + why);
            m_awakeRefused = true;
        }
    }
    if (anyChange)
        emit changed();
}

void Scheduler::begin(const Schedule& schedule, Track& track, const QDate& today)
{
    const ProgramState state = m_verbs->state();
    // A run somebody started in the same windows is theirs: the schedule waits until it ends.
    if (schedule.windows.isEmpty() && state.run.running)
        return;
    const bool resume = schedule.start == Schedule::Start::WhereItStoppedToday && track.stoppedOn == today &&
                        track.stoppedAt >= 0;
    VerbResult result;
    int id = 1;
    if (schedule.windows.isEmpty()) {
        result = resume ? m_verbs->resumeRunAt(choiceOf(schedule), track.stoppedAt)
                        : m_verbs->runList(choiceOf(schedule), Caller::Outside);
    } else if (resume) {
        result = m_verbs->resumeInOtherWindows(choiceOf(schedule), schedule.windows, track.stoppedAt);
        for (const RunState& run : m_verbs->otherRuns())
            if (run.running && run.windows == schedule.windows)
                id = run.id;
    } else {
        result = m_verbs->runInOtherWindows(choiceOf(schedule), schedule.windows, Caller::Outside, &id);
    }
    if (!result.ok()) {
        // Said once an hour at most: it is tried again each second while its hours last.
        const QString said = result.reason();
        const QDateTime now = Clock::localNow();
        if (track.refusal != said || !track.refusalLogged.isValid() || track.refusalLogged.secsTo(now) >= 3600) {
            EventLog::write(QStringLiteral("schedule \"%1\": %2 cannot run yet: %3").arg(schedule.name, schedule.list, said));
            track.refusal = said;
            track.refusalLogged = now;
        }
        return;
    }
    track.refusal.clear();
    track.runId = id;
    EventLog::write(QStringLiteral("schedule \"%1\": its hours began, %2 runs in %3%4")
                        .arg(schedule.name, schedule.list, windowsText(schedule.windows),
                             resume ? QStringLiteral(" from page %1").arg(track.stoppedAt + 1) : QString()));
}

void Scheduler::end(const Schedule& schedule, Track& track, const QDate& today)
{
    const ProgramState state = m_verbs->state();
    QList<RunState> runs{state.run};
    runs += state.otherRuns;
    for (const RunState& run : runs)
        if (run.id == track.runId && run.running) {
            track.stoppedAt = run.next; // as the session keeps it: the page it goes on with
            track.stoppedOn = today;
        }
    m_verbs->stopRun(track.runId);
    EventLog::write(QStringLiteral("schedule \"%1\": its hours ended, %2 stopped").arg(schedule.name, schedule.list));
    track.runId = 0;
}
