#include "TextFile.h"

#include "FileName.h"
#include "TextCodec.h"

#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>

#include <algorithm>

#include <cerrno>
#include <climits>
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace TextFile {

namespace {

class Fd
{
public:
    explicit Fd(int fd = -1) : m_fd(fd) {}
    ~Fd() { reset(); }
    Fd(const Fd&) = delete;
    Fd& operator=(const Fd&) = delete;
    int get() const { return m_fd; }
    int release() { return std::exchange(m_fd, -1); }
    void reset(int fd = -1)
    {
        if (m_fd >= 0)
            ::close(m_fd);
        m_fd = fd;
    }

private:
    int m_fd;
};

int writeAll(int fd, const char* data, qsizetype size)
{
    while (size > 0) {
        const ssize_t n = ::write(fd, data, size_t(size));
        if (n < 0) {
            if (errno == EINTR)
                continue;
            return errno;
        }
        data += n;
        size -= n;
    }
    return 0;
}

// Keep the temporary name short enough for the file system even when the target's is long.
constexpr qsizetype kTemporaryNameBytes = 200;
constexpr qsizetype kMaxRandomDigits = 13; // a 64-bit number in base 36
const QByteArray kTemporaryEnd = QByteArrayLiteral(".tmp");

QByteArray temporaryNameFor(const QByteArray& target)
{
    const qsizetype slash = target.lastIndexOf('/');
    const QByteArray folder = target.left(slash + 1);
    const QByteArray name = target.mid(slash + 1);
    const QByteArray suffix = QByteArray::number(QRandomGenerator::global()->generate64(), 36);
    return folder + '.' + name.left(kTemporaryNameBytes) + '.' + suffix + kTemporaryEnd;
}

bool isBase36Digit(char c)
{
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z');
}

bool removeTemporaryFile(const QByteArray& native)
{
    struct stat st
    {
    };
    // Only regular files: a folder or a link of that name is nothing a save made.
    return ::lstat(native.constData(), &st) == 0 && S_ISREG(st.st_mode) && ::unlink(native.constData()) == 0;
}

} // namespace

ReadResult readBytes(const QString& path)
{
    ReadResult result;
    if (path.size() >= PATH_MAX) { // every character takes a byte at least: no such file can be
        result.error = RunError::fromErrno(ENAMETOOLONG, path);
        return result;
    }
    const QByteArray native = FileName::encode(path);
    Fd fd(::open(native.constData(), O_RDONLY | O_CLOEXEC));
    if (fd.get() < 0) {
        result.error = RunError::fromErrno(errno, path);
        return result;
    }
    struct stat st
    {
    };
    if (::fstat(fd.get(), &st) == 0 && S_ISDIR(st.st_mode)) {
        result.error = RunError::PathFileAccessError;
        return result;
    }
    // Read in one go when the size is known; files that do not know their size grow as read.
    qsizetype used = 0;
    result.bytes.resize(std::max<qsizetype>(qsizetype(st.st_size) + 1, 4096));
    for (;;) {
        if (used == result.bytes.size())
            result.bytes.resize(used * 2);
        const ssize_t n = ::read(fd.get(), result.bytes.data() + used, size_t(result.bytes.size() - used));
        if (n == 0)
            break;
        if (n < 0) {
            if (errno == EINTR)
                continue;
            result.error = RunError::fromErrno(errno, path);
            result.bytes.clear();
            return result;
        }
        used += n;
    }
    result.bytes.truncate(used);
    return result;
}

RunError writeAtomically(const QString& path, const QByteArray& bytes)
{
    if (path.isEmpty())
        return RunError::FileNotFound;
    const QByteArray target = FileName::encode(QFileInfo(path).absoluteFilePath());

    mode_t mode = 0666; // narrowed by the umask for a new file
    bool replacing = false;
    struct stat st
    {
    };
    if (::stat(target.constData(), &st) == 0) {
        if (S_ISDIR(st.st_mode))
            return RunError::PathFileAccessError;
        if (::faccessat(AT_FDCWD, target.constData(), W_OK, AT_EACCESS) != 0)
            return RunError::fromErrno(errno, path);
        mode = st.st_mode & 07777;
        replacing = true;
    }

    QByteArray temporary;
    Fd fd;
    for (int attempt = 0; attempt < 100 && fd.get() < 0; ++attempt) {
        temporary = temporaryNameFor(target);
        fd.reset(::open(temporary.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode));
        if (fd.get() < 0 && errno != EEXIST)
            return RunError::fromErrno(errno, path);
    }
    if (fd.get() < 0)
        return RunError::PathFileAccessError;

    auto fail = [&](int err) {
        fd.reset();
        ::unlink(temporary.constData());
        return RunError::fromErrno(err, path);
    };
    if (replacing && ::fchmod(fd.get(), mode) != 0 && errno != EPERM)
        return fail(errno);
    if (const int err = writeAll(fd.get(), bytes.constData(), bytes.size()))
        return fail(err);
    if (::fsync(fd.get()) != 0)
        return fail(errno);
    if (::close(fd.release()) != 0)
        return fail(errno);
    if (::rename(temporary.constData(), target.constData()) != 0)
        return fail(errno);

    // Make the rename itself durable; a failure here no longer endangers either file.
    const qsizetype slash = target.lastIndexOf('/');
    Fd folder(::open(target.left(std::max<qsizetype>(slash, 1)).constData(), O_RDONLY | O_DIRECTORY));
    if (folder.get() >= 0)
        ::fsync(folder.get());
    return RunError::None;
}

std::optional<QByteArray> temporaryTarget(const QByteArray& entry)
{
    if (!entry.startsWith('.') || !entry.endsWith(kTemporaryEnd))
        return std::nullopt;
    const QByteArray inner = entry.sliced(1, entry.size() - 1 - kTemporaryEnd.size());
    const qsizetype dot = inner.lastIndexOf('.');
    if (dot <= 0)
        return std::nullopt;
    const QByteArray digits = inner.sliced(dot + 1);
    if (digits.isEmpty() || digits.size() > kMaxRandomDigits ||
        !std::all_of(digits.begin(), digits.end(), isBase36Digit))
        return std::nullopt;
    QByteArray name = inner.left(dot);
    if (name.size() > kTemporaryNameBytes)
        return std::nullopt;
    return name;
}

int removeLeftovers(const QString& folder, const std::function<bool(const QByteArray& name)>& wanted)
{
    const QByteArray native = FileName::encode(folder);
    DIR* dir = ::opendir(native.constData());
    if (!dir)
        return 0;
    QList<QByteArray> doomed;
    while (const dirent* entry = ::readdir(dir)) {
        const QByteArray name(entry->d_name);
        const auto target = temporaryTarget(name);
        if (target && wanted(*target))
            doomed.append(name);
    }
    ::closedir(dir);
    int removed = 0;
    for (const QByteArray& name : doomed)
        removed += removeTemporaryFile(native + '/' + name) ? 1 : 0;
    return removed;
}

bool removeLeftover(const QString& path)
{
    const QByteArray native = FileName::encode(path);
    if (!temporaryTarget(native.mid(native.lastIndexOf('/') + 1)))
        return false;
    return removeTemporaryFile(native);
}

RunError writeLines(const QString& path, const QStringList& lines)
{
    return writeAtomically(path, TextCodec::encode(TextCodec::joinLines(lines)));
}

} // namespace TextFile
