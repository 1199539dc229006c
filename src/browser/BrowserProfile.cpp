#include "BrowserProfile.h"

#include "DownloadHandler.h"
#include "FrameReport.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QWebEngineProfile>
#include <QWebEngineScript>
#include <QWebEngineScriptCollection>

namespace BrowserProfile {

namespace {
QString g_storageFolder;
QWebEngineProfile* g_profile = nullptr;
} // namespace

void setStorageFolder(const QString& folder)
{
    if (!g_profile)
        g_storageFolder = folder;
}

QString reportToken()
{
    static const QString token = FrameReport::makeToken();
    return token;
}

QWebEngineProfile* profile()
{
    if (g_profile)
        return g_profile;
    const QString folder = g_storageFolder;
    // Cookies and logins are the user's alone: the folder is made, or kept, private.
    constexpr QFile::Permissions kPrivate = QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner;
    if (!QDir().mkdir(folder, kPrivate)) {
        QDir().mkpath(folder);
        QFile::setPermissions(folder, kPrivate);
    }
    // Owned by the application object, so it outlives every page of every window.
    g_profile = new QWebEngineProfile(QStringLiteral("Vantrel"), QCoreApplication::instance());
    g_profile->setPersistentStoragePath(folder);
    g_profile->setCachePath(folder + QStringLiteral("/Cache"));
    g_profile->setPersistentCookiesPolicy(QWebEngineProfile::ForcePersistentCookies);

    QWebEngineScript script;
    script.setName(QStringLiteral("vantrel-frame-report"));
    script.setInjectionPoint(QWebEngineScript::DocumentCreation);
    script.setWorldId(QWebEngineScript::ApplicationWorld);
    script.setRunsOnSubFrames(true);
    script.setSourceCode(FrameReport::scriptSource(reportToken()));
    g_profile->scripts()->insert(script);

    DownloadHandler::attach(g_profile);
    return g_profile;
}

} // namespace BrowserProfile
