#pragma once

#include <QString>

// The user's trash laid out as the freedesktop.org desktops keep it ($XDG_DATA_HOME/Trash, with a
// "files" folder and an "info" record per entry), for names that Qt's own trash cannot reach:
// names that are not valid UTF-8 and travel in the program's strings as FileName keeps them. The
// entry keeps its bytes, and its record names its original place byte for byte, so that the
// desktop's trash can put it back.
namespace FreedesktopTrash {

// The trash folder: $XDG_DATA_HOME/Trash, or ~/.local/share/Trash.
QString homeTrash();

// Moves the file or folder `path` into the home trash. False when it does not exist, lies on
// another file system than the trash, or cannot be moved; it then stays where it is.
bool moveToTrash(const QString& path);

// Moves a file or folder to the desktop's trash, so that it can be restored: through Qt's trash,
// or the way above for a name Qt cannot carry. True on success.
bool sendToTrash(const QString& path);

} // namespace FreedesktopTrash
