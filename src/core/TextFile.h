#pragma once

#include "RunError.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

// Whole-file reading and atomic replacement, with failures as run-time error numbers.
namespace TextFile {

struct ReadResult
{
    RunError error;
    QByteArray bytes;
};

// Reads the whole file. A missing file is FileNotFound (or PathNotFound when its folder is missing).
ReadResult readBytes(const QString& path);

// Replaces `path` with `bytes` atomically: a temporary file in the same folder is written, synced
// to disk and renamed over the old one, so a failure at any point leaves the old file as it was.
// An existing file that may not be written is refused with PermissionDenied, as opening it for
// output would be; a new file gets the usual permissions, a replaced file keeps its own.
RunError writeAtomically(const QString& path, const QByteArray& bytes);

// The name that the folder entry `entry` was a temporary file for, when `entry` is one that
// writeAtomically() makes: "." + the name (its first 200 bytes) + "." + a random number in base 36
// + ".tmp". A save that was interrupted leaves such a file behind. None for any other name.
std::optional<QByteArray> temporaryTarget(const QByteArray& entry);

// Removes `path` when it is a regular file named as writeAtomically() names its temporary files.
bool removeLeftover(const QString& path);

// Removes the temporary files in `folder` that were left for names `wanted` accepts; returns how
// many went. Nothing else in the folder is touched.
int removeLeftovers(const QString& folder, const std::function<bool(const QByteArray& name)>& wanted);

// The program's text form: the lines, each ended by CR LF, in UTF-8.
RunError writeLines(const QString& path, const QStringList& lines);

} // namespace TextFile
