#include "Autostart.h"

#include "core/TextFile.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

namespace {

// A desktop entry's Exec argument: quoted when it holds a character the Exec key reserves, with
// '"', '`', '$' and '\' escaped inside the quotes; '%' doubled as field codes want.
QByteArray execArgument(const QString& program)
{
    QByteArray path = program.toUtf8();
    path.replace("%", "%%");
    static const QByteArray reserved = " \t\n\"'\\><~|&;$*?#()`";
    if (std::none_of(path.cbegin(), path.cend(), [](char c) { return reserved.contains(c); }))
        return path;
    QByteArray quoted = "\"";
    for (const char c : path) {
        if (c == '"' || c == '`' || c == '$' || c == '\\')
            quoted += '\\';
        quoted += c;
    }
    // In the file, a backslash is itself escaped once more.
    quoted.replace("\\", "\\\\");
    return quoted + '"';
}

} // namespace

namespace Autostart {

QString entryPath()
{
    return QDir(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation))
        .filePath(QStringLiteral("autostart/") + QString::fromLatin1(kEntryName));
}

bool isEnabled()
{
    return QFileInfo(entryPath()).isFile();
}

QByteArray entryFor(const QByteArray& entry, const QString& program)
{
    QByteArray out;
    bool execWritten = false;
    bool inMainGroup = false;
    for (const QByteArray& line : entry.split('\n')) {
        if (line.isEmpty())
            continue;
        // The launcher's own group only: its actions and file types are the menu's, not a log-in's,
        // and a log-in starts this very program, not whatever the bus would start.
        if (line.startsWith('[')) {
            if (inMainGroup)
                break;
            inMainGroup = line == "[Desktop Entry]";
        }
        if (line.startsWith("Actions=") || line.startsWith("MimeType=") || line.startsWith("DBusActivatable="))
            continue;
        if (line.startsWith("Exec=")) {
            out += "Exec=" + execArgument(program) + '\n';
            execWritten = true;
        } else if (!line.startsWith("TryExec=")) {
            out += line + '\n';
        }
    }
    if (!execWritten)
        out += "Exec=" + execArgument(program) + '\n';
    return out;
}

QString command()
{
    static const QString path = [] {
        QString told = qEnvironmentVariable("VANTREL_COMMAND");
        qunsetenv("VANTREL_COMMAND");
        return told.isEmpty() ? QCoreApplication::applicationFilePath() : told;
    }();
    return path;
}

bool setEnabled(bool on, const QString& program, QString* error)
{
    const QString path = entryPath();
    if (!on) {
        if (!QFileInfo::exists(path) || QFile::remove(path))
            return true;
        if (error)
            *error = QStringLiteral("%1 could not be removed").arg(path);
        return false;
    }
    QFile own(QStringLiteral(":/org.vantrel.Vantrel.desktop"));
    if (!own.open(QIODevice::ReadOnly)) {
        if (error)
            *error = QStringLiteral("the program's own desktop entry could not be read");
        return false;
    }
    if (!QDir().mkpath(QFileInfo(path).path())) {
        if (error)
            *error = QStringLiteral("the folder of %1 could not be made").arg(path);
        return false;
    }
    const RunError written = TextFile::writeAtomically(path, entryFor(own.readAll(), program));
    if (written && error)
        *error = QStringLiteral("%1 could not be written (%2)").arg(path, written.numberAndText());
    return !written;
}

} // namespace Autostart
