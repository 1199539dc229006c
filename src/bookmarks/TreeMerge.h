#pragma once

#include <QHash>
#include <QString>
#include <QStringList>

// Three trees of bookmarks made one: the tree both sides last agreed on (the base), this machine's
// tree now (mine) and the other side's now (theirs, as a shared bookmarks file holds it), each
// entry known by a stable id. What one side changed since the base is taken; what both changed
// alike is taken once; where both changed an entry differently, this side's stays and the other
// side's comes beside it as a copy named "(from <theirs>)", never overwritten. Nothing is lost: a
// change beats a deletion (an entry deleted on one side and changed on the other stays, with its
// changes), a folder deleted on one side while the other changed something inside it comes back
// to hold it, and a move on each side that would put two folders inside each other keeps this
// side's. No widget, no file: plain data in, plain data out.
namespace TreeMerge {

inline const QString kRoot; // the id of the top, which every tree has implicitly

struct Item
{
    QString parent;  // the id of its folder (kRoot at the top)
    bool folder = false;
    QString title;
    QString url;     // a bookmark's address; empty for a folder

    bool operator==(const Item&) const = default;
};

using Tree = QHash<QString, Item>; // by id; the top is not in it

struct Result
{
    Tree merged;
    QStringList copies;      // ids of the copies made for entries both sides changed differently
    QStringList kept;        // ids that one side deleted and the other changed, kept
    QStringList broughtBack; // folders deleted on one side, back to hold what the other changed in them
};

Result merge(const Tree& base, const Tree& mine, const Tree& theirs, const QString& theirName);

// Whether every entry's folder is in the tree (or the top) and no folder is inside itself.
bool isWhole(const Tree& tree);

} // namespace TreeMerge
