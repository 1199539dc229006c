#pragma once

#include <QIcon>
#include <QString>

#include <functional>

// The desktop's services that the Favorites use: the trash, the file manager and file icons.
namespace ShellServices {

// Moves a file or folder to the desktop's trash, so that it can be restored; true on success.
bool moveToTrash(const QString& path);

// Opens the folder in the desktop's file manager; true when one could be asked to.
bool openFolder(const QString& path);

// Tests put their own file manager in place (none: the desktop's).
void setFolderOpener(std::function<bool(const QString& path)> opener);

// The small icon the desktop shows for the file; a page icon when it has none.
QIcon smallIcon(const QString& path);

} // namespace ShellServices
