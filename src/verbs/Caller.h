#pragma once

// Who asked for a verb. A person at the screen may be asked a question (the eight-window limit);
// a caller from outside (a command line, a bus, a schedule) never is: it gets a result.
enum class Caller { Person, Outside };

// Where a page opens: in a new window (the lowest free slot), in the current window, or in the
// slot given.
enum class OpenWhere { NewWindow, CurrentWindow, Slot };
