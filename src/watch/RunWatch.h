#pragma once

#include "ScreenAwake.h"

#include <QObject>
#include <QString>

// Follows the timed run of a favourite list for what the program adds to it: each run's start and
// end go into the log (completed, or stopped before its end), and while a run goes the screen is
// kept awake when the settings ask for it. It looks at Timer1's ticks; at its end a run lets the
// screen go to sleep again, and so does the program's end.
class RunWatch : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    // What the watch knows of the run it follows.
    struct Run
    {
        bool running = false;
        QString list;
        int intervalSeconds = 0;
        bool severalWindows = false;
        bool loop = false;
    };

    // From Timer1: notices a run that began or ended since the last tick: the run of the run
    // dialog, as the program's shared state tells it, or the run given.
    void tick();
    void tick(const Run& run);
    // The run went through its last page (the end it is told about, not a stop).
    void completed() { m_completed = true; }

    bool screenHeld() const { return m_screen.held(); }

private:
    ScreenAwake m_screen;
    bool m_running = false;
    bool m_completed = false;
};
