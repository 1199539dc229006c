#include "ShellServices.h"

#include "shortcuts/FreedesktopTrash.h"
#include "core/FileName.h"

#include <QApplication>
#include <QDesktopServices>
#include <QFile>
#include <QFileIconProvider>
#include <QFileInfo>
#include <QHash>
#include <QStyle>
#include <QUrl>

#include <climits>

namespace ShellServices {

bool moveToTrash(const QString& path)
{
    return FreedesktopTrash::sendToTrash(path);
}

namespace {
std::function<bool(const QString&)>& folderOpener()
{
    static std::function<bool(const QString&)> opener;
    return opener;
}
} // namespace

bool openFolder(const QString& path)
{
    if (folderOpener())
        return folderOpener()(path);
    return QDesktopServices::openUrl(QUrl::fromLocalFile(path));
}

void setFolderOpener(std::function<bool(const QString& path)> opener)
{
    folderOpener() = std::move(opener);
}

QIcon smallIcon(const QString& path)
{
    // Looking an icon up is slow and shortcut files share theirs: one look-up per kind of file.
    static QFileIconProvider provider;
    static QHash<QString, QIcon> byKind;
    static const QIcon page = QApplication::style()->standardIcon(QStyle::SP_FileLinkIcon);
    if (path.size() >= PATH_MAX)
        return page; // no file has such a name: not even asked for
    const QFileInfo info(path);
    if (!info.exists())
        return page;
    const QString kind = info.suffix().toLower();
    auto known = byKind.constFind(kind);
    if (known == byKind.constEnd()) {
        const QIcon icon = provider.icon(info);
        known = byKind.insert(kind, icon.isNull() ? page : icon);
    }
    return *known;
}

} // namespace ShellServices
