#pragma once

#include <QString>

#include <optional>

// Internet Shortcut (.url) files in the user's Favorites folder: the address is the key "URL" of
// the section "InternetShortcut"; the files written here hold exactly four lines.

// Makes the shortcut at `path` the current page: CurrentUrl = its address ("" when it has none),
// CurrentTitle = its name below the Favorites folder, FavFolderSel = `path`.
void ReadFavoriteFile(const QString& path);

// The part of `path` after "/Favorites/" (first occurrence, case-sensitive). Where the folder name
// does not occur, the path less its first 10 characters, as it always has been.
QString FavoritesRelativeName(const QString& path);

// The file name a favourite titled `title` gets: ":" and "|" become "-", an extension other than
// .URL is replaced by ".URL", the name is cut to 250 characters, and each "/" becomes "." together
// with the character before it; a name whose UTF-8 form is still longer than the 255 bytes of a
// file name is then cut at a character boundary until it fits. None for a blank title or a "/" in
// first place.
std::optional<QString> ShortcutFileName(const QString& title);

// The whole address of the shortcut at `path` (the URL= line of [InternetShortcut]), however long;
// empty when it has none. What is compared or carried elsewhere (an import, an export, the
// duplicates, the search, the bookmarks file kept in step); a favourite is opened with the
// first 2047 characters, as ReadFavoriteFile reads it.
QString ShortcutAddress(const QString& path);

// Writes a shortcut to `url` into `folder` (which ends with "/"), named from `title`, replacing a
// file of the same name. False, silently, when nothing could be written.
bool CreateFavoriteFile(const QString& url, const QString& title, const QString& folder);

// Writes the shortcut file `path` (its four lines) pointing to `url`, replacing a file of that name.
bool WriteShortcutFile(const QString& path, const QString& url);

// Points the shortcut at `path` to `url` (a web address, ASCII as sent on the wire): the value of
// the first URL= line of its [InternetShortcut] section is replaced, and every other byte of the
// file stays as it was (its other lines, their ends, a BASEURL the page had). Atomic. False, and
// the file untouched, when it cannot be read or written, holds no such line, is UTF-16 (which no
// program writes for a shortcut any more), or `url` is not plain ASCII.
bool RewriteShortcutAddress(const QString& path, const QString& url);
