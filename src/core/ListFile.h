#pragma once

#include <QString>

// DefaultList.NLS: the favourite lists, read at start-up into ListName/ListTitle/ListUrl.
inline constexpr char kListFileName[] = "DefaultList.NLS";

// Empties the list and history arrays (all but their last elements) and sets HistoryCount to 0.
void ClearListsAndHistory();

// Reads the list file into the list arrays; ListCount = records read. It empties the history
// arrays first, so the history file must be read after it. A missing file leaves no lists.
// True when the whole file was read.
bool LoadListFile(const QString& path);

// Writes AppPath/DefaultList.NLS from records 0 .. nodeCount - 1 (the caller has just refilled
// them from the lists tree, which may hold fewer or more than ListCount). On success ListsChanged
// becomes false; a failure shows "Save Error - ..." and leaves ListsChanged and the file as they were.
bool SaveListFile(int nodeCount);

// Orders the records for saving. The order the user gave the lists is kept: no record moves.
void SortLists();
