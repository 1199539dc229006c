#include "RunError.h"

#include <QDir>
#include <QFileInfo>

#include <cerrno>

QString RunError::text() const
{
    switch (number) {
    case None:
        return QString();
    case InvalidCall:
        return QStringLiteral("Invalid procedure call or argument");
    case Overflow:
        return QStringLiteral("Overflow");
    case SubscriptOutOfRange:
        return QStringLiteral("Subscript out of range");
    case TypeMismatch:
        return QStringLiteral("Type mismatch");
    case FileNotFound:
        return QStringLiteral("File not found");
    case DeviceIoError:
        return QStringLiteral("Device I/O error");
    case DiskFull:
        return QStringLiteral("Disk full");
    case InputPastEndOfFile:
        return QStringLiteral("Input past end of file");
    case PermissionDenied:
        return QStringLiteral("Permission denied");
    case PathFileAccessError:
        return QStringLiteral("Path/File access error");
    case PathNotFound:
        return QStringLiteral("Path not found");
    case InvalidPropertyValue:
        return QStringLiteral("Invalid property value");
    }
    return QStringLiteral("Application-defined or object-defined error");
}

QString RunError::numberAndText() const
{
    return QString::number(number) + QStringLiteral(" - ") + text();
}

RunError RunError::fromErrno(int err, const QString& path)
{
    switch (err) {
    case 0:
        return None;
    case ENOENT:
        if (!path.isEmpty() && !QFileInfo(path).absoluteDir().exists())
            return PathNotFound;
        return FileNotFound;
    case ENOTDIR:
        return PathNotFound;
    case EACCES:
    case EPERM:
    case EROFS:
    case ETXTBSY:
        return PermissionDenied;
    case ENOSPC:
    case EDQUOT:
    case EFBIG: // a file-size limit leaves no more room for this file, as a full disk does
        return DiskFull;
    case EIO:
        return DeviceIoError;
    default: // EISDIR, ENAMETOOLONG, EINVAL, ELOOP, EBUSY, EXDEV, ...
        return PathFileAccessError;
    }
}
