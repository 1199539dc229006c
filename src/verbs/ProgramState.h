#pragma once

#include "watch/PageRecovery.h"

#include <QList>
#include <QString>

// What the program is doing, as a value that any door can read and compare: the open browser
// windows, the run and the lists with their pages.
struct WindowState
{
    int slot = 0;         // 1 to 8
    QString title;        // what the slot's row shows: the page's title, its address while it loads
    QString address;      // where the window is now
    bool current = false; // the slot of WindowIndex
    PageRecovery::State page = PageRecovery::State::Idle; // the picture beside the row
    QString pageText;                                     // and its words
    bool runPaused = false; // it shows the page of a run that is paused
    bool runHeldByPerson = false; // ... because someone uses a window of that run
    QString monitor;        // the monitor the window stands on now, as the system names it
    bool fullScreen = false; // it covers that monitor

    bool operator==(const WindowState&) const = default;
};

struct RunState
{
    int id = 1; // 1: the run of the run dialog; 2 and on: runs in other windows
    bool running = false;
    QString list;
    int intervalSeconds = 0;
    bool loop = false;
    bool severalWindows = false;
    bool keepPagesLoaded = false;
    int count = 0;        // pages in the run
    int position = -1;    // the page shown now, 0-based; -1 before the first
    int next = 0;         // the page the next step opens
    bool paused = false;
    bool heldByPerson = false; // paused because someone uses a window of the run
    int slot = 0;              // the window of the page shown now
    QList<int> windows;        // a run in other windows: the windows it owns
    double secondsToNext = 0; // until the next step, as the run's clock sees it

    bool operator==(const RunState&) const = default;
};

struct ListPageState
{
    QString title;
    QString address;

    bool operator==(const ListPageState&) const = default;
};

struct ListState
{
    QString name;
    QList<ListPageState> pages;

    bool operator==(const ListState&) const = default;
};

struct ProgramState
{
    QList<WindowState> windows; // open windows by slot
    int currentSlot = 0;
    bool newWindowMode = true;
    RunState run;
    QList<RunState> otherRuns; // runs in other windows, by id
    QList<ListState> lists;

    bool operator==(const ProgramState&) const = default;
};
