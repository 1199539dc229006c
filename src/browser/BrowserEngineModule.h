#pragma once

class BrowserWindow;
class QObject;
class QString;

// The one entry point of the browser engine module: a new browser window whose profile keeps its
// files in `profileFolder` (the folder counts only for the first window).
extern "C" {
using BrowserEngineCreateWindow = BrowserWindow* (*)(QObject* parent, const QString& profileFolder);
}
inline constexpr char kBrowserEngineCreateWindow[] = "vantrelCreateBrowserWindow";
