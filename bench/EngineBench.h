#pragma once

#include "browser/BrowserEngine.h"
#include "browser/BrowserProfile.h"
#include "browser/WebBrowserWindow.h"
#include "core/Globals.h"

#include <QApplication>
#include <QByteArray>
#include <QTemporaryDir>

#include <algorithm>

// The browser engine for a benchmark: its profile in a scratch folder, set up before the
// application object exists (make one of these first), then the program folder beside it and the
// real browser windows once the application is there (ready()).
class EngineBench
{
public:
    EngineBench()
    {
        BrowserProfile::setStorageFolder(dir.filePath(QStringLiteral("profile")));
        BrowserEngine::prepare();
    }
    void ready()
    {
        QApplication::setQuitOnLastWindowClosed(false);
        globals().AppPath = dir.path();
        BrowserEngine::setWindowMaker([](QObject* parent) { return new WebBrowserWindow(parent); });
    }
    QString profileFolder() const { return dir.filePath(QStringLiteral("profile")) + u'/'; }

    QTemporaryDir dir;
};

// The number given after `name` on the command line, or `fallback`; at least `least`.
inline int numberArgument(int argc, char* argv[], const char* name, int fallback, int least = 1)
{
    for (int i = 1; i + 1 < argc; ++i)
        if (QByteArray(argv[i]) == name)
            return std::max(least, QByteArray(argv[i + 1]).toInt());
    return fallback;
}
