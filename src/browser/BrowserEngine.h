#pragma once

#include <QString>

#include <functional>

class BrowserWindow;
class QObject;

// The browser engine is large, and many starts of the program never open a page, so it lives in a
// module of its own that is loaded when the first browser window is made.
namespace BrowserEngine {

// Sets the engine's flags before the application object exists: the engine refuses to start as
// root unless its sandbox is off, so it is off exactly then.
void prepare();

// A new browser window on the engine, its profile kept in AppPath/Browser; nullptr when the
// engine cannot be loaded (the reason is in errorString()).
BrowserWindow* createWindow(QObject* parent);
QString errorString();

// Programs that link the engine themselves (tests, benchmarks) hand over its window maker.
void setWindowMaker(std::function<BrowserWindow*(QObject*)> maker);

} // namespace BrowserEngine
