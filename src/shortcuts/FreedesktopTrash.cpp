#include "FreedesktopTrash.h"

#include "core/FileName.h"
#include "core/Startup.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace FreedesktopTrash {

namespace {

bool makePrivateFolder(const QByteArray& path)
{
    return ::mkdir(path.constData(), 0700) == 0 || errno == EEXIST;
}

bool writeAll(int fd, const QByteArray& bytes)
{
    qsizetype done = 0;
    while (done < bytes.size()) {
        const ssize_t n = ::write(fd, bytes.constData() + done, size_t(bytes.size() - done));
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            return false;
        done += n;
    }
    return true;
}

} // namespace

QString homeTrash()
{
    return QDir::cleanPath(DataHomeFolder() + QStringLiteral("/Trash"));
}

bool moveToTrash(const QString& path)
{
    const QString absolute = QDir::isAbsolutePath(path) ? QDir::cleanPath(path)
                                                        : QDir::cleanPath(QDir::currentPath() + u'/' + path);
    const QByteArray source = FileName::encode(absolute);
    struct stat entry
    {
    };
    if (::lstat(source.constData(), &entry) != 0)
        return false;

    const QByteArray trash = FileName::encode(homeTrash());
    QDir().mkpath(homeTrash());
    const QByteArray files = trash + "/files";
    const QByteArray info = trash + "/info";
    if (!makePrivateFolder(trash) || !makePrivateFolder(files) || !makePrivateFolder(info))
        return false;
    struct stat trashStat
    {
    };
    if (::stat(files.constData(), &trashStat) != 0 || trashStat.st_dev != entry.st_dev)
        return false; // a move across file systems would be a copy: not done here

    const QByteArray base = source.mid(source.lastIndexOf('/') + 1);
    const QByteArray record = "[Trash Info]\nPath=" + source.toPercentEncoding("/") + "\nDeletionDate=" +
                              QDateTime::currentDateTime().toString(Qt::ISODate).left(19).toLatin1() + '\n';
    for (int attempt = 1; attempt < 10000; ++attempt) {
        const QByteArray name = attempt == 1 ? base : base + '.' + QByteArray::number(attempt);
        const QByteArray infoPath = info + '/' + name + ".trashinfo";
        // The record is made first and exclusively: it reserves the name in the trash.
        const int fd = ::open(infoPath.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
        if (fd < 0) {
            if (errno == EEXIST)
                continue;
            return false;
        }
        const bool written = writeAll(fd, record);
        const bool closed = ::close(fd) == 0;
        const QByteArray target = files + '/' + name;
        struct stat existing
        {
        };
        if (written && closed && ::lstat(target.constData(), &existing) != 0 &&
            ::rename(source.constData(), target.constData()) == 0)
            return true;
        ::unlink(infoPath.constData());
        if (!written || !closed || errno != EEXIST)
            return false;
    }
    return false;
}

bool sendToTrash(const QString& path)
{
    // Qt's trash takes names as UTF-8; a name with other bytes goes the same way by hand.
    if (FileName::hasRawBytes(path))
        return moveToTrash(path);
    return QFile::moveToTrash(path);
}

} // namespace FreedesktopTrash
