#pragma once

#include "TreeMerge.h"

#include <QByteArray>
#include <QString>

// The bookmarks file that keeps the Favorites in step across machines: XBEL, so that a
// bookmark-sync browser extension or another program can read and write it too, with a stable id
// on every <folder> and <bookmark> (the XBEL attribute id) and, in <info>, Vantrel's format number
// and the machine that wrote it last:
//   <info><metadata owner="https://vantrel.org/sync" vantrel:format="1" vantrel:machine="desk"/></info>
// A file is taken whole or not at all: one that is not well-formed (damaged, or half-written by
// a sync program), that is no XBEL, or whose format is newer than this Vantrel knows gives a
// problem and no tree, so that it is neither applied nor written over until it reads whole again.
namespace SyncFile {

inline constexpr int kFormat = 1;

struct Read
{
    TreeMerge::Tree tree;
    QString machine; // who wrote it last, when Vantrel did
    QString problem; // empty when the file was read whole
    bool ok() const { return problem.isEmpty(); }
};

// The tree in the file. An entry without an id (written by a program that keeps none) gets one
// from its place: its folder's id and its position there. Separators are passed over.
Read read(const QByteArray& bytes);

// The file for the tree: folders before bookmarks, each group by title then id, so that the same
// tree always gives the same bytes.
QByteArray write(const TreeMerge::Tree& tree, const QString& machine);

} // namespace SyncFile
