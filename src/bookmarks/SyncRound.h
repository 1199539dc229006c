#pragma once

#include "SyncState.h"

#include <QString>
#include <QStringList>

// One round of keeping the Favorites folder in step with a bookmarks file: the file read (whole, or
// not used at all), the folder read with its ids, the two merged against what both last agreed
// on, the folder made to hold the merge, the file written when it holds something else (atomic),
// and the agreement kept. A file that does not read whole is neither applied nor written over; a
// round in which the system refused a change leaves the file and the agreement as they were, so
// that the next round tries again and nothing that was not deleted on purpose is lost.
namespace SyncRound {

// A bookmarks file bigger than this is nobody's bookmarks: it is not read.
inline constexpr qint64 kMaxFileBytes = 256LL * 1024 * 1024;

struct Outcome
{
    QString problem;          // nothing was applied nor written: why
    bool folderChanged = false;
    bool fileWritten = false;
    int made = 0, moved = 0, readdressed = 0, trashed = 0;
    QStringList copies;       // titles of the copies made for entries both sides changed
    QStringList failed;       // what the system refused

    // One line for the log; empty when the round changed nothing.
    QString logText(const QString& file) const;
};

// The round between the Favorites folder `favorites` and the bookmarks file `file` for the machine
// `machine` (its name in the file and in copies made elsewhere). `state` is the agreement this
// machine keeps; it is updated. `fileChanged` says the round was started by the file changing:
// when the file still holds what was last agreed, the folder is not read at all.
Outcome run(const QString& favorites, const QString& file, const QString& machine, SyncState::State* state,
            bool fileChanged = false);

} // namespace SyncRound
