// The `vantrel` command. Most starts come while Vantrel runs (a script, a launcher's action, a
// shortcut opened in the file manager): they hand their arguments over on the user's socket and end
// with the answer, so this command loads no more than Qt Core and Network. Any other start (the
// first, the help, a bad argument, one that must wait for a program still starting) becomes the
// program itself, which answers the rest as it always does.
#include "doors/CommandLine.h"
#include "doors/InstanceClient.h"
#include "doors/InstancePlace.h"

#include <QDir>
#include <QFileInfo>

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <unistd.h>

namespace {

QString ownPath()
{
    char path[PATH_MAX];
    const ssize_t length = ::readlink("/proc/self/exe", path, sizeof path - 1);
    return length > 0 ? QString::fromLocal8Bit(path, length) : QString();
}

// The program beside this command (a build), then where this installation puts it.
QString programPath(const QString& command)
{
    const QDir here = QFileInfo(command).absoluteDir();
    for (const QString& candidate : {here.filePath(QStringLiteral(VANTREL_PROGRAM_NAME)),
                                     QDir::cleanPath(here.filePath(QStringLiteral(VANTREL_PROGRAM_RELATIVE))),
                                     QStringLiteral(VANTREL_PROGRAM_INSTALLED)}) {
        if (::access(QFile::encodeName(candidate).constData(), X_OK) == 0)
            return candidate;
    }
    return QString();
}

} // namespace

int main(int argc, char* argv[])
{
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments << QString::fromLocal8Bit(argv[i]);
    const CommandRequest request = CommandLine::parse(arguments);
    if (request.error.isEmpty() && !request.help && !request.version) {
        const DoorMessage::Request handed{arguments, QDir::currentPath(),
                                          qEnvironmentVariable("XDG_ACTIVATION_TOKEN",
                                                               qEnvironmentVariable("DESKTOP_STARTUP_ID"))};
        if (const std::optional<int> status = InstanceClient::handOver(InstancePlace::folder(), handed, stdout, stderr))
            return *status;
    }

    const QString command = ownPath();
    const QString program = programPath(command);
    if (program.isEmpty()) {
        std::fprintf(stderr, "vantrel: the program is not installed beside this command (%s).\n",
                     qPrintable(command));
        return 1;
    }
    // The program names this command, not itself, where the desktop is to start Vantrel (the
    // autostart entry).
    ::setenv("VANTREL_COMMAND", QFile::encodeName(command).constData(), 1);
    const QByteArray file = QFile::encodeName(program);
    ::execv(file.constData(), argv);
    std::fprintf(stderr, "vantrel: cannot start %s: %s\n", file.constData(), std::strerror(errno));
    return 1;
}
