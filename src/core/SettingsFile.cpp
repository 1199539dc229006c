#include "SettingsFile.h"

#include "DialogService.h"
#include "Globals.h"
#include "TextCodec.h"
#include "TextFile.h"

namespace SettingsFile {

void load(const QString& fileName, const QString& missingHint, const QString& failureMessage,
          const std::function<RunError(const QString&)>& read)
{
    const TextFile::ReadResult file = TextFile::readBytes(appFilePath(fileName));
    if (file.error.number == RunError::FileNotFound) {
        DialogService::message(missingHint);
        return;
    }
    if (!file.error.ok() || !read(TextCodec::decode(file.bytes)).ok())
        DialogService::message(failureMessage);
}

bool save(const QString& fileName, const QStringList& lines)
{
    const RunError error = TextFile::writeLines(appFilePath(fileName), lines);
    if (!error.ok())
        DialogService::message(QStringLiteral("Error: ") + error.numberAndText());
    return error.ok();
}

} // namespace SettingsFile
