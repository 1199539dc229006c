#pragma once

#include "SyncedFolder.h"
#include "TreeMerge.h"

#include <QByteArray>
#include <QString>

// What this machine last agreed on with the bookmarks file kept in step: the file, the tree both
// sides held then (the base of the next merge) and where each entry of the Favorites folder lay.
// Kept in "FavoritesSync.json" beside Vantrel.conf, a file of Vantrel's own: a tree of thousands
// of entries with ids and paths reads and writes far better as JSON than as INI keys. A missing or
// damaged state is no agreement at all: the next round takes what both sides hold and loses
// nothing.
namespace SyncState {

inline constexpr char kFileName[] = "FavoritesSync.json";
inline constexpr int kFormat = 1;

struct State
{
    QString file;     // the bookmarks file this agreement is with
    QByteArray agreed; // a hash of the file's bytes as last read whole or written
    TreeMerge::Tree base;
    SyncedFolder::Places places;

    bool operator==(const State&) const = default;
};

// The state in the program folder.
QString path();

// The state in `file`; an empty state when there is none or it cannot be read whole.
State load(const QString& file);
// Saves it atomically; false when it could not be written.
bool save(const QString& file, const State& state);

// The hash kept in `agreed` for the bytes of a bookmarks file.
QByteArray hashOf(const QByteArray& bytes);

} // namespace SyncState
