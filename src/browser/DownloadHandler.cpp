#include "DownloadHandler.h"


#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>
#include <QWebEngineDownloadRequest>
#include <QWebEnginePage>
#include <QWebEngineProfile>

namespace DownloadHandler {

namespace {

QString downloadFolder()
{
    QString folder = QStandardPaths::writableLocation(QStandardPaths::DownloadLocation);
    if (folder.isEmpty())
        folder = QDir::homePath();
    QDir().mkpath(folder);
    return folder;
}

// "name.ext", then "name (1).ext", "name (2).ext", ... until the name is free.
QString freeName(const QString& folder, const QString& wanted)
{
    const QFileInfo info(wanted);
    const QString base = info.completeBaseName();
    const QString suffix = info.suffix().isEmpty() ? QString() : u'.' + info.suffix();
    QString name = wanted;
    for (int n = 1; QFileInfo::exists(QDir(folder).filePath(name)); ++n)
        name = QStringLiteral("%1 (%2)%3").arg(base).arg(n).arg(suffix);
    return name;
}

std::function<void(QWebEngineDownloadRequest*)>& watcher()
{
    static std::function<void(QWebEngineDownloadRequest*)> w;
    return w;
}

} // namespace

void setWatcher(std::function<void(QWebEngineDownloadRequest*)> w)
{
    watcher() = std::move(w);
}

void attach(QWebEngineProfile* profile)
{
    QObject::connect(profile, &QWebEngineProfile::downloadRequested, profile,
                     [](QWebEngineDownloadRequest* download) {
                         const QString folder = downloadFolder();
                         download->setDownloadDirectory(folder);
                         download->setDownloadFileName(freeName(folder, download->downloadFileName()));
                         download->accept();
                         if (watcher())
                             watcher()(download);
                     });
}

} // namespace DownloadHandler
