#pragma once

#include "settings/Schedule.h"
#include "watch/ScreenAwake.h"

#include <QDate>
#include <QDateTime>
#include <QHash>
#include <QObject>
#include <QPointer>
#include <QSet>
#include <QTimer>

class Verbs;
struct RunState;

// The door of the hours: every second it works out from the schedules' rules and the wall clock
// which scheduled rotations should be running, and makes it so through the verbs, as a caller that
// is not at the screen. A rotation starts when its hours begin (also when the machine wakes up or
// the program starts inside them) and stops when they end. A run that somebody started by hand or
// from outside is never stopped by it; a scheduled run that somebody stopped inside its hours
// stays stopped until its hours begin again. Each start and stop goes to the log.
class Scheduler : public QObject
{
    Q_OBJECT

public:
    explicit Scheduler(Verbs* verbs, QObject* parent = nullptr);

    // The schedules to keep; what should run is worked out again at once.
    void setSchedules(const QList<Schedule>& schedules);
    const QList<Schedule>& schedules() const { return m_schedules; }
    // Starts the timer that looks every second (at the turn of the second).
    void start();
    // No more looks: the program is closing, and its runs end with it.
    void stop() { m_timer.stop(); }
    // Works out what should run now and makes it so: each second, and at once after the machine
    // woke up, the clock was set, or the schedules changed.
    void evaluate();

    // The run a schedule runs under now (1 the run dialog's, 2 and on in other windows), 0 when none.
    int runOf(const QString& scheduleName) const;
    // The windows that show black or a page of their own now, with nothing scheduled in them:
    // while there are any, the screen is held awake as during a run (when the settings ask for
    // it), so that what they show stays in view; "Leave the desktop be" lets it go.
    const QSet<int>& idleShown() const { return m_idleShown; }

signals:
    void changed();

private:
    struct Track
    {
        bool looked = false;       // it was looked at once: the program knows where it stands
        bool inHours = false;      // as the last look found it
        int runId = 0;             // the run it started, while that runs
        bool stoppedByHand = false; // stopped inside its hours: it waits for the next ones
        QDate stoppedOn;           // where it was stopped by its hours, for "where it stopped today"
        int stoppedAt = -1;
        QString refusal;        // why it could not start, as last logged
        QDateTime refusalLogged;
    };

    void begin(const Schedule& schedule, Track& track, const QDate& today);
    void end(const Schedule& schedule, Track& track, const QDate& today);
    // The run of the verbs' state that is this schedule's rotation, if one runs.
    const RunState* runningRotation(const Schedule& schedule, const QList<RunState>& runs) const;
    void armTimer();

    QPointer<Verbs> m_verbs;
    QList<Schedule> m_schedules;
    QHash<QString, Track> m_tracks; // by the schedule's name
    QSet<int> m_idleShown;
    ScreenAwake m_awake;
    bool m_awakeRefused = false; // said once in the log
    QTimer m_timer;
};
