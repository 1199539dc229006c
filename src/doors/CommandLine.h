#pragma once

#include <QString>
#include <QStringList>

// What a start of Vantrel is asked to do, read from its arguments (the program's name left out):
//   vantrel [ADDRESS | FILE.url]... [--new-window | --current-window | --slot N]
//   vantrel --run LIST [--interval SECONDS] [--loop] [--several-windows] [--keep-loaded]
//   vantrel --new-window (the New button's page) | --run-startup-list
//   vantrel --stop | --next | --previous | --pause | --resume | --reload [SLOT] | --raise
//   vantrel --quit [--discard] | --status [--watch] | --help | --version
// Plain data, no widget: the same request is carried out whether it comes from this start or from
// a second one that hands it to the running program.
struct CommandRequest
{
    enum class Action { Open, Run, RunStartupList, Stop, Next, Previous, Pause, Resume, Reload, Raise, Quit, Status };
    enum class Where { AsTheNewButton, NewWindow, CurrentWindow, Slot };

    Action action = Action::Open;
    QStringList pages; // addresses and Internet Shortcut files, as given
    Where where = Where::AsTheNewButton;
    int slot = 0; // --slot, or --reload's window (0: the current one)

    QString list;
    int intervalSeconds = 120;
    bool loop = false;
    bool severalWindows = false;
    bool keepLoaded = false;

    bool watch = false;
    bool discard = false;

    bool help = false;
    bool version = false;
    QString error; // a bad argument, named: the start ends with status 2

    // A request that only a running program can carry out: none running, the start ends with 4.
    bool needsRunningProgram() const;
};

namespace CommandLine {

// The exit statuses a script can tell apart.
inline constexpr int kDone = 0;
inline constexpr int kBadArgument = 2;
inline constexpr int kRefused = 3;
inline constexpr int kNotRunning = 4;

CommandRequest parse(const QStringList& arguments);
// What --help prints.
QString helpText();

} // namespace CommandLine
