#pragma once

#include <QString>

// BrowseHistory.LST: the pages visited, grouped by window, read at start-up into
// HistGroup/HistTitle/HistUrl.
inline constexpr char kHistoryFileName[] = "BrowseHistory.LST";

// Reads the history file into the history arrays; HistoryCount = records read. The arrays are not
// emptied here: LoadListFile has done that and must run first. True when the whole file was read.
bool LoadHistoryFile(const QString& path);

// Writes AppPath/BrowseHistory.LST from records 0 .. nodeCount - 1 (refilled from the history
// tree). On success HistoryChanged becomes false; a failure shows "Save Error - ..." and leaves
// HistoryChanged and the file as they were.
bool SaveHistoryFile(int nodeCount);
