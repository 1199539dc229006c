#pragma once

#include <QString>

class QWebEngineProfile;

// The one browser profile that every browser window shares. It is kept in the program folder, so
// cookies and logins survive a restart; downloads go to the user's Downloads folder; every frame
// of every page gets the frame-report script.
namespace BrowserProfile {

// The profile, made on first use in the folder set below.
QWebEngineProfile* profile();

// Where the profile keeps its files; counts only before the first profile() call.
void setStorageFolder(const QString& folder);

// The secret that the frame reports carry.
QString reportToken();

} // namespace BrowserProfile
