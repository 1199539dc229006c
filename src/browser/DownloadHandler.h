#pragma once

#include <functional>

class QWebEngineDownloadRequest;
class QWebEngineProfile;

// Saves every download of the profile into the user's Downloads folder, under a name that does not
// overwrite an existing file, and tells the window that started it how it went.
namespace DownloadHandler {
void attach(QWebEngineProfile* profile);
// Who is told of each accepted download: the browser windows, which find the one that started it.
void setWatcher(std::function<void(QWebEngineDownloadRequest*)> watcher);
}
