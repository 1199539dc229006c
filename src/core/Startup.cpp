#include "Startup.h"

#include "ButtonFile.h"
#include "ColorsFile.h"
#include "Globals.h"
#include "HistoryFile.h"
#include "ListFile.h"
#include "OptionsFile.h"
#include "TextFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

void InitDefaults()
{
    Globals& g = globals();
    g.MainLeft = kDefaultMainLeft;
    g.MainTop = kDefaultMainTop;
    g.MainHeight = kDefaultMainHeight;
    g.MainWidth = kDefaultMainWidth;
    const auto colors = g.colors();
    for (size_t i = 0; i < colors.size(); ++i)
        *colors[i] = kDefaultColors[i];
    g.OptBold = false;
    g.OptStartList = false;
    g.OptStartUrl = false;
    g.AppTitle = QString::fromLatin1(kDefaultTitle);
    g.FontType = kDefaultFontType;
    g.StartUrl = QString::fromLatin1(kDefaultStartUrl);
    g.NewWindowUrl = QString::fromLatin1(kDefaultNewWindowUrl);
}

void InitState()
{
    Globals& g = globals();
    g.WindowCount = 0;
    g.WindowIndex = 0;
    g.NextRunItem = 1;
    g.WebFormBusy = false;
    g.WindowFlagB = false;
    g.FavFolderSel.clear();
    g.NewWindowMode = true;
    g.RunListShown = false;
    g.RunListRunning = false;
    g.RunListLoop = false;
    g.RunInterval = 30;
    g.StartListIndex = 0;
    g.RunListMulti = false;
    g.AboutShown = false;
    g.OptTheater = false;
    g.LastWindowMode = false;
    g.OptOnTop = true;
    for (int slot = 1; slot <= kWindowSlots; ++slot)
        g.WindowUrl[slot].clear();
}

QString DataHomeFolder()
{
    const QString dataHome = qEnvironmentVariable("XDG_DATA_HOME");
    if (dataHome.isEmpty() || !QDir::isAbsolutePath(dataHome))
        return QDir::homePath() + QStringLiteral("/.local/share");
    return dataHome;
}

QString DefaultProgramFolder()
{
    return QDir::cleanPath(DataHomeFolder() + QStringLiteral("/Vantrel"));
}

void ResolveAppPath(const QString& programFileName)
{
    Globals& g = globals();
    g.AppPath = QDir::currentPath();
    if (QFileInfo(QDir::current().filePath(programFileName)).isFile())
        return; // a portable installation keeps its files beside the program
    // An installed program lives in the system's program folder; its own files live in the user's
    // data folder, which therefore stands for the program folder.
    g.AppPath = DefaultProgramFolder();
    if (QDir().mkpath(g.AppPath))
        QDir::setCurrent(g.AppPath);
}

void TidyProgramFolder()
{
    const QString folder = globals().AppPath;
    // A save cut short (the power went, the program was killed) leaves its temporary file beside
    // the file it was to replace; the next start has no use for it.
    static const QList<QByteArray> dataFiles = {kButtonFileName, kListFileName,    kHistoryFileName,
                                                kOptionsFileName, kColorsFileName, kSessionFileName};
    TextFile::removeLeftovers(folder, [](const QByteArray& name) { return dataFiles.contains(name); });
    const QString profile = QDir(folder).filePath(QString::fromLatin1(kBrowserFolderName));
    if (QFileInfo(profile).isDir())
        QFile::setPermissions(profile, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

void StartUp()
{
    InitDefaults();
    InitState();
    ResolveAppPath();
    TidyProgramFolder();
    LoadButtonFile(appFilePath(QString::fromLatin1(kButtonFileName)));
    LoadListFile(appFilePath(QString::fromLatin1(kListFileName)));
    LoadHistoryFile(appFilePath(QString::fromLatin1(kHistoryFileName)));
}

QString GetFavoritesFolder(long folderId)
{
    constexpr long kFavoritesFolderId = 6;
    const QString home = qEnvironmentVariable("HOME");
    if (folderId != kFavoritesFolderId || home.isEmpty())
        return QString();
    const QString folder = QDir::cleanPath(home + QStringLiteral("/Favorites"));
    return QDir().mkpath(folder) ? folder : QString();
}
