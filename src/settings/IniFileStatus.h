#pragma once

#include "core/RunError.h"

class QSettings;
class QString;

// What became of writing an INI file of Vantrel's own at `path` (after its sync): none, or the
// error the program reports for a file that could not be saved.
RunError iniWriteError(const QSettings& file, const QString& path);
