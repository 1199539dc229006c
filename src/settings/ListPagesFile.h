#pragma once

#include "PageSettings.h"
#include "core/RunError.h"

#include <QList>

// "ListPages.conf" in the program folder: the settings of the lists' pages (PageSettings), one
// entry a page, found by its list's name and its address so that a page renamed or moved in its
// list keeps them. An INI file of Vantrel's own beside "Vantrel.conf", replaced as a whole each
// time it is written; the list file never holds any of it.
namespace ListPagesFile {

inline constexpr char kFileName[] = "ListPages.conf";

struct Entry
{
    QString list;
    QString address;
    PageSettings settings;

    bool operator==(const Entry&) const = default;
};

QString path();

// The entries in the file, in its order; an entry that is damaged, empty or names no page is left
// out, and of two for the same page the first counts. None when there is no file.
QList<Entry> read(const QString& path);
// Writes the entries (those with settings) in place of the file's, atomically.
RunError write(const QString& path, const QList<Entry>& entries);

} // namespace ListPagesFile
