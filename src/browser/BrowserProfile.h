#pragma once

#include <QString>

class QWebEngineProfile;

// The one browser profile that every browser window shares. It is kept in the program folder, so
// cookies and logins survive a restart; downloads go to the user's Downloads folder; every frame
// of every page gets the frame-report script.
namespace BrowserProfile {

// Sets the engine's flags before the application object exists: the engine refuses to start as
// root unless its sandbox is off, so it is off exactly then.
void prepareEngine();

// The profile, made on first use in AppPath/Browser (or the folder set below).
QWebEngineProfile* profile();

// Where the profile keeps its files; only before the first profile() call. Tests use it.
void setStorageFolder(const QString& folder);

// The secret that the frame reports carry.
QString reportToken();

} // namespace BrowserProfile
