#pragma once

#include "SessionFile.h"

#include <QDateTime>

#include <functional>

// Keeps "Session.INI" up to date while the program runs: at most one write a second, and only
// when what is kept changed. The program's timer ticks it; its unload ends it with the session as
// it was at that moment, marked as ended normally, and nothing is written after that (the windows
// closing during the unload are not the session).
class SessionKeeper
{
public:
    using Snapshot = std::function<Session()>;

    SessionKeeper(QString file, Snapshot snapshot);

    // Begins keeping: the next tick writes the session, marked as running.
    void start();
    // Writes the session when it changed and a second has passed since the last write.
    void tick();
    // The program's unload: the session as it is, marked as ended normally; then no more writes.
    void end();

    bool keeping() const { return m_keeping; }
    int writes() const { return m_writes; }

private:
    void write(Session session);

    QString m_file;
    Snapshot m_snapshot;
    bool m_keeping = false;
    std::optional<Session> m_written;
    QDateTime m_lastWrite;
    int m_writes = 0;
    bool m_failing = false;
};

// What a start does with the session the last run of the program left.
struct SessionStart
{
    enum Action { Nothing, Ask, Reopen };
    Action action = Nothing;
    bool withRun = false; // the run that was going goes on too
};

// After an end that was not the program's unload (a crash, a kill, a power cut) the user is asked,
// or, with "reopenAfterCrash" or "alwaysReopen", everything is reopened without asking. After a
// normal end nothing is reopened unless "alwaysReopen" says so, and then only the windows (the
// unload stopped the run). A session with no window and no run leaves nothing to reopen.
SessionStart decideSessionStart(const std::optional<Session>& last, bool reopenAfterCrash, bool alwaysReopen);

// "Vantrel did not close normally. Reopen its N browser windows?", with "... and go on running
// the list <name>?" when a run was going.
QString sessionQuestion(const Session& last);
