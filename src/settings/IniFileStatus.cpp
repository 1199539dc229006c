#include "IniFileStatus.h"

#include <QDir>
#include <QFileInfo>
#include <QSettings>

RunError iniWriteError(const QSettings& file, const QString& path)
{
    switch (file.status()) {
    case QSettings::NoError:
        return RunError::None;
    case QSettings::AccessError:
        return QFileInfo(path).absoluteDir().exists() ? RunError::PermissionDenied : RunError::PathNotFound;
    case QSettings::FormatError:
        return RunError::DeviceIoError;
    }
    return RunError::DeviceIoError;
}
