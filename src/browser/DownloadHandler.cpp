#include "DownloadHandler.h"

#include "BrowserFrame.h"

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

BrowserFrame* frameOf(QWebEngineDownloadRequest* download)
{
    QWebEnginePage* page = download->page();
    return page ? BrowserFrame::frameOfPage(page) : nullptr;
}

} // namespace

void attach(QWebEngineProfile* profile)
{
    QObject::connect(profile, &QWebEngineProfile::downloadRequested, profile,
                     [](QWebEngineDownloadRequest* download) {
                         const QString folder = downloadFolder();
                         download->setDownloadDirectory(folder);
                         download->setDownloadFileName(freeName(folder, download->downloadFileName()));
                         download->accept();
                         if (BrowserFrame* frame = frameOf(download))
                             frame->showDownload(download);
                     });
}

} // namespace DownloadHandler
