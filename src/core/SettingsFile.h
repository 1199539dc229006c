#pragma once

#include "RunError.h"

#include <QString>
#include <QStringList>

#include <functional>

// The options and colours files: sequential files of values in the program folder, read at start
// with a one-line hint when missing, and written on Apply.
namespace SettingsFile {

// Reads AppPath/`fileName` with `read`. A missing file shows `missingHint` and leaves the defaults;
// any other failure, reading or reading the values, shows `failureMessage`.
void load(const QString& fileName, const QString& missingHint, const QString& failureMessage,
          const std::function<RunError(const QString&)>& read);

// Writes the lines to AppPath/`fileName`; a failure shows "Error: <number> - <text>".
bool save(const QString& fileName, const QStringList& lines);

} // namespace SettingsFile
