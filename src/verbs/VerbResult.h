#pragma once

#include <QString>

// What came of a verb: done, or the reason it could not be done, in words a caller can pass on.
// Nothing is shown to anybody: the door that called decides.
struct VerbResult
{
    enum Code {
        Ok,
        AllWindowsOpen,   // all eight windows are open and nobody at the screen chose to go on
        Declined,         // the person at the screen said No
        NoSuchSlot,       // not a slot 1 to 8
        SlotEmpty,        // no window in that slot
        SlotTaken,        // a window is open in that slot already
        NoSuchList,
        EmptyList,
        BadInterval,
        NotRunning,
        NoPageThere,      // no page before the first of a run that does not loop
        NotAWebAddress,
        NoSuchPage,       // the list holds no page of that address
        NotSaved,         // a file could not be written
        SlotOfAnotherRun, // the window belongs to another run
        NoOpenWindows,    // no window shows a web page
        ListsFull,        // the lists hold at most 1000 lists and pages together
        NotTrashed,       // the desktop's trash refused a file
    };

    Code code = Ok;
    QString detail; // what a caller may add to the reason (a list's name, a slot)

    bool ok() const { return code == Ok; }
    QString reason() const;

    static VerbResult done() { return {}; }
    static VerbResult failed(Code code, const QString& detail = QString()) { return {code, detail}; }
};
