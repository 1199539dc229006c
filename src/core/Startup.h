#pragma once

#include <QString>

// The first steps of every start, before the main window exists.

// Option and colour defaults of a new installation (geometry, colours, start-up choices, titles).
void InitDefaults();

// The run-time state of a fresh start: no windows, no run, free slots.
void InitState();

// The user's data folder: $XDG_DATA_HOME, or ~/.local/share when it is unset or not absolute.
QString DataHomeFolder();

// The default program folder: $XDG_DATA_HOME/Vantrel, or ~/.local/share/Vantrel.
QString DefaultProgramFolder();

// Finds the program folder and makes it the current directory where needed:
// - the current folder when it holds the program file ("vantrel"): a portable installation;
// - otherwise the default program folder, created when missing so that saving works on a first
//   start, which then becomes the current directory.
// When the default folder can neither be found nor made, AppPath still names it, so that the data
// files are simply not found.
void ResolveAppPath(const QString& programFileName = QStringLiteral("vantrel"));

// The browser profile's folder (cookies, logins, visited links) in the program folder.
inline constexpr char kBrowserFolderName[] = "Browser";

// The session kept for the start after a crash, beside the data files; its reader and writer live
// with the session, but the start tidies its cut-short saves with the others.
inline constexpr char kSessionFileName[] = "Session.INI";

// Tidies the program folder before anything is read: removes the temporary files that interrupted
// saves of the five data files left there, and makes the browser profile's folder private to the
// user again when it exists.
void TidyProgramFolder();

// Steps 1 to 4 of the entry procedure: defaults, state, program folder (tidied), then the button,
// list and history files, in this order (reading the lists empties the history arrays).
void StartUp();

// The path of a shell folder; only the Favorites folder (id 6) is asked for: $HOME/Favorites,
// created when missing, "" when $HOME is unset or the folder cannot be made.
QString GetFavoritesFolder(long folderId);
