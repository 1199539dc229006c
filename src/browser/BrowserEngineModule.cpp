#include "BrowserEngineModule.h"

#include "BrowserProfile.h"
#include "WebBrowserWindow.h"

extern "C" Q_DECL_EXPORT BrowserWindow* vantrelCreateBrowserWindow(QObject* parent,
                                                                   const QString& profileFolder)
{
    BrowserProfile::setStorageFolder(profileFolder);
    return new WebBrowserWindow(parent);
}
