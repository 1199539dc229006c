#pragma once

#include "CommandLine.h"
#include "core/DoorMessage.h"

#include <QByteArray>
#include <QJsonObject>

class Verbs;
struct ProgramState;

// What only the program's window can do for a door: come up, and close.
class DoorHost
{
public:
    virtual ~DoorHost() = default;
    // Brings the main window up, with the token the desktop gave the caller (empty: none).
    virtual void raise(const QString& activationToken) = 0;
    // Closes the program as its window's close does, never asking: what is unsaved is saved, or
    // with `discard` thrown away. Called once the caller has had its answer.
    virtual void quit(bool discard) = 0;
    // Runs the list chosen as start-up list; false when none is chosen.
    virtual bool runStartupList() = 0;
};

// A request from outside carried out through the verbs, as a caller that is not at the screen:
// nothing here ever opens a box. The answer is what the caller prints and the status it ends with.
namespace DoorCommands {

// `folder`: where the caller was started, for shortcut files named relative to it.
DoorMessage::Reply carryOut(const CommandRequest& request, Verbs& verbs, DoorHost& host, const QString& folder,
                            const QString& activationToken);
// A start's whole request (its arguments as given, its folder, its activation token), read and
// carried out: a bad argument, or --help and --version (which the start answers itself), are
// refused. `parsed`, when given, receives what the arguments asked for.
DoorMessage::Reply answer(const DoorMessage::Request& request, Verbs& verbs, DoorHost& host,
                          CommandRequest* parsed = nullptr);
// The state as one line of JSON: the windows (slot, title, address, state), the runs (list,
// position, seconds to the next page, paused) and the current window.
QByteArray stateJson(const ProgramState& state);
// The same as an object, for a door that tells more beside it.
QJsonObject stateObject(const ProgramState& state);

} // namespace DoorCommands
