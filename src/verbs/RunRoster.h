#pragma once

#include "Caller.h"
#include "ProgramState.h"
#include "TimedRun.h"
#include "VerbResult.h"

#include <QMap>
#include <QObject>
#include <QSet>

// Every run going on: the run dialog's (number 1) and the runs in other windows (2 and on, never
// given twice), which windows each owns, and the windows that runs in other windows keep for
// themselves so that no other page goes there.
class RunRoster : public QObject
{
    Q_OBJECT

public:
    RunRoster(RunHost* host, TimedRun* first, QObject* parent);

    // The run of that number, or the one that owns the window; nullptr for none.
    TimedRun* byId(int id) const;
    TimedRun* owning(int slot) const;
    // The windows of the runs in other windows.
    QSet<int> reserved() const;
    // Those and the run dialog's windows while it runs.
    QSet<int> owned() const;
    // The window after `slot`, going round 1 to 8, that no run in other windows keeps; 0 for none.
    int nextUnreserved(int slot) const;

    VerbResult startInOtherWindows(const RunChoice& choice, const QList<int>& windows, Caller caller, int* id);
    VerbResult resumeInOtherWindows(const RunChoice& choice, const QList<int>& windows, int position);
    // Ends a run in other windows; its windows are free again.
    VerbResult stop(int id);
    QList<RunState> others() const;

    void tickOthers();
    void refreshOthers();

signals:
    void changed();

private:
    RunHost* m_host;
    TimedRun* m_first;
    QMap<int, TimedRun*> m_others; // by number
    int m_nextId = 2;
};
