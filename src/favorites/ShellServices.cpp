#include "ShellServices.h"

#include <QApplication>
#include <QDesktopServices>
#include <QFile>
#include <QFileIconProvider>
#include <QFileInfo>
#include <QStyle>
#include <QUrl>

namespace ShellServices {

bool moveToTrash(const QString& path)
{
    return QFile::moveToTrash(path);
}

bool openFolder(const QString& path)
{
    return QDesktopServices::openUrl(QUrl::fromLocalFile(path));
}

QIcon smallIcon(const QString& path)
{
    static QFileIconProvider provider;
    QIcon icon;
    if (QFileInfo::exists(path))
        icon = provider.icon(QFileInfo(path));
    if (icon.isNull())
        icon = QApplication::style()->standardIcon(QStyle::SP_FileLinkIcon);
    return icon;
}

} // namespace ShellServices
