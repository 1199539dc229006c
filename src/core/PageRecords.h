#pragma once

#include "RunError.h"

#include <QList>
#include <QString>

// The record layout shared by the favourite list file and the browse history file: one page per
// line, three fields joined by "[#@!]" (group or list name, title, address), every "," written as
// "~" and every "~" read back as ",".
namespace PageRecords {

inline constexpr char16_t kDelimiter[] = u"[#@!]";

struct Arrays
{
    QList<QString>& first;
    QList<QString>& title;
    QList<QString>& url;
};

struct ParseResult
{
    int count = 0;         // records read
    bool complete = false; // every line of the text was a record
};

// Fills the arrays from the file's text, from record 0 on. The load ends at the first line that
// lacks its two delimiters (its first field may already be stored, uncounted) and when the arrays
// are full.
ParseResult parse(QString text, Arrays arrays);

// One line of the file.
QString formatRecord(const QString& first, const QString& title, const QString& url);

// Writes records 0 .. count - 1; SubscriptOutOfRange (and no change to the file) when `count`
// goes beyond the arrays.
RunError save(const QString& path, Arrays arrays, int count);

// Reads the file at `path` into the arrays; a file that cannot be read gives no records.
ParseResult load(const QString& path, Arrays arrays);

// Saves as save() does; a failure shows "Save Error - <number> - <text>". True on success.
bool saveOrReport(const QString& path, Arrays arrays, int count);

} // namespace PageRecords
