#pragma once

// What a soak watches of this process and the engine's processes below it: resident memory, open
// files (less the benchmark's own servers' sockets), threads.
#include <QDir>
#include <QFile>
#include <QList>
#include <QSet>
#include <QString>

#include <fstream>
#include <sstream>
#include <string>
#include <sys/types.h>

inline long statusField(const std::string& path, const std::string& field)
{
    std::ifstream status(path);
    std::string line;
    while (std::getline(status, line))
        if (line.rfind(field + ":", 0) == 0)
            return std::stol(line.substr(field.size() + 1));
    return 0;
}

// The processes below `root` (the engine's helpers and renderers), children before grandchildren.
inline QList<pid_t> descendantsOf(pid_t root)
{
    QList<pid_t> parents{root};
    const QStringList entries = QDir("/proc").entryList(QDir::Dirs);
    for (int i = 0; i < parents.size(); ++i) {
        for (const QString& entry : entries) {
            bool ok = false;
            const pid_t pid = entry.toInt(&ok);
            if (!ok)
                continue;
            std::ifstream stat("/proc/" + entry.toStdString() + "/stat");
            std::string line;
            std::getline(stat, line);
            const size_t close = line.rfind(')');
            if (close == std::string::npos)
                continue;
            std::istringstream rest(line.substr(close + 2));
            std::string state;
            pid_t parent = 0;
            rest >> state >> parent;
            if (parent == parents[i])
                parents.append(pid);
        }
    }
    parents.removeFirst();
    return parents;
}

// The resident memory (kB) of the processes below `root`.
inline long descendantsRssKb(pid_t root)
{
    long total = 0;
    for (pid_t pid : descendantsOf(root))
        total += statusField("/proc/" + std::to_string(pid) + "/status", "VmRSS");
    return total;
}

// The socket inodes of this process's TCP connections whose local port is one of `ports`: the
// benchmark's own web servers' ends of their connections.
inline QSet<QString> serverSockets(const QList<quint16>& ports)
{
    QSet<QString> inodes;
    for (const char* table : {"/proc/self/net/tcp", "/proc/self/net/tcp6"}) {
        QFile file(QString::fromLatin1(table));
        if (!file.open(QIODevice::ReadOnly))
            continue;
        file.readLine(); // the heading
        while (!file.atEnd()) {
            const QList<QByteArray> fields = file.readLine().simplified().split(' ');
            if (fields.size() < 10)
                continue;
            const quint16 port = quint16(fields[1].split(':').value(1).toUInt(nullptr, 16));
            if (ports.contains(port))
                inodes.insert(QString::fromLatin1(fields[9]));
        }
    }
    return inodes;
}

// This process's open files, less the benchmark's web servers' sockets: those of the program and
// its engine, and (apart) those in the browser profile's folder, the engine's own databases
// (cookies, history, session storage), which its caches keep open as they see fit.
struct OpenFiles
{
    int program = 0;
    int profile = 0;
};
inline OpenFiles openFilesOf(const QString& profileFolder, const QList<quint16>& serverPorts)
{
    const QSet<QString> servers = serverSockets(serverPorts);
    OpenFiles count;
    const QDir fds(QStringLiteral("/proc/self/fd"));
    for (const QString& fd : fds.entryList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::System)) {
        const QString target = QFile::symLinkTarget(fds.filePath(fd));
        if (target.startsWith(profileFolder))
            ++count.profile;
        else if (!(target.contains(QLatin1String("socket:[")) && servers.contains(target.section(u'[', 1).chopped(1))))
            ++count.program;
    }
    return count;
}
