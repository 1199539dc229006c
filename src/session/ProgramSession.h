#pragma once

#include "SessionKeeper.h"

#include <functional>

class Verbs;

// The session of the running program: what SessionKeeper keeps, read from the program's state;
// and, at the start, the session the last run of the program left, asked about or reopened through
// the verbs.
class ProgramSession
{
public:
    // Goes on with the run of a reopened session, its dialog showing its choices; false when the
    // list or its interval is no longer there.
    using RunResumer = std::function<bool(const SessionRun& run)>;

    ProgramSession(Verbs* verbs, RunResumer resumeRun);

    // Once the main window has loaded, before its first focus acts: reads what the last run left,
    // asks or reopens as the settings say, then begins keeping this run's session. True when a
    // session was reopened: this start's own start-up page and list then stay closed.
    bool resume();
    // Timer1's tick: the session is written when it changed.
    void tick() { m_keeper.tick(); }
    // The unload, before the windows close: the session as it is, ended normally.
    void end() { m_keeper.end(); }

    // What is kept, as the program shows it now.
    Session snapshot() const;

private:
    void reopen(const Session& last, bool withRun);

    Verbs* m_verbs;
    RunResumer m_resumeRun;
    SessionKeeper m_keeper;
};
