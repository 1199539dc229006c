#pragma once

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QStringList>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>

#include <signal.h>

// Debian's real Mosquitto broker, started by a test on a free port of 127.0.0.1 with a
// configuration of the test's own in a scratch folder (anonymous access unless the extra lines say
// otherwise, sessions kept on disk so that a restart keeps what was queued), and ended by it.
class MosquittoBroker
{
public:
    explicit MosquittoBroker(const QString& folder, const QStringList& extraConfig = {}) : m_folder(folder)
    {
        QDir().mkpath(folder);
        QTcpServer probe;
        probe.listen(QHostAddress::LocalHost, 0);
        m_port = probe.serverPort();
        probe.close();
        QFile config(folder + QStringLiteral("/mosquitto.conf"));
        config.open(QIODevice::WriteOnly);
        const bool anonymous = !extraConfig.join(u'\n').contains(QStringLiteral("allow_anonymous"));
        QStringList lines = {QStringLiteral("listener %1 127.0.0.1").arg(m_port),
                             QStringLiteral("allow_anonymous %1").arg(anonymous ? "true" : "false"),
                             QStringLiteral("persistence true"),
                             QStringLiteral("persistence_location %1/").arg(folder),
                             QStringLiteral("log_dest file %1/mosquitto.log").arg(folder),
                             QStringLiteral("user root")};
        if (::geteuid() != 0)
            lines.removeLast(); // an ordinary user is what the broker runs as anyway
        for (const QString& line : extraConfig)
            if (!line.startsWith(QStringLiteral("allow_anonymous")))
                lines << line;
        config.write(lines.join(u'\n').toUtf8() + '\n');
    }
    ~MosquittoBroker() { stop(); }

    int port() const { return m_port; }
    QString log() const
    {
        QFile file(m_folder + QStringLiteral("/mosquitto.log"));
        return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
    }

    // Starts it and waits until it takes connections; false when it did not.
    bool start()
    {
        m_process.setProgram(QStringLiteral("mosquitto"));
        m_process.setArguments({QStringLiteral("-c"), m_folder + QStringLiteral("/mosquitto.conf")});
        m_process.setProcessChannelMode(QProcess::ForwardedChannels);
        m_process.start();
        if (!m_process.waitForStarted(5000))
            return false;
        return QTest::qWaitFor([this] {
            QTcpSocket socket;
            socket.connectToHost(QHostAddress::LocalHost, quint16(m_port));
            return socket.waitForConnected(100);
        }, 10000);
    }
    // Ends it as a service manager would (SIGTERM: it saves what it keeps on disk).
    void stop()
    {
        if (m_process.state() == QProcess::NotRunning)
            return;
        ::kill(pid_t(m_process.processId()), SIGTERM);
        if (!m_process.waitForFinished(5000)) {
            m_process.kill();
            m_process.waitForFinished(2000);
        }
    }

private:
    QString m_folder;
    int m_port = 0;
    QProcess m_process;
};

// Debian's mosquitto_sub on every topic below `pattern`, each message a line "topic payload",
// kept for a test to read; and mosquitto_pub to send one.
class MosquittoSub
{
public:
    MosquittoSub(int port, const QString& pattern)
    {
        m_process.setProgram(QStringLiteral("mosquitto_sub"));
        m_process.setArguments({QStringLiteral("-h"), QStringLiteral("127.0.0.1"), QStringLiteral("-p"),
                                QString::number(port), QStringLiteral("-q"), QStringLiteral("1"), QStringLiteral("-v"),
                                QStringLiteral("-t"), pattern});
        m_process.start();
        m_process.waitForStarted(5000);
    }
    ~MosquittoSub()
    {
        m_process.kill();
        m_process.waitForFinished(2000);
    }
    // Every line received so far.
    QStringList lines()
    {
        m_buffer += m_process.readAllStandardOutput();
        const qsizetype end = m_buffer.lastIndexOf('\n');
        if (end >= 0) {
            for (const QByteArray& line : m_buffer.left(end).split('\n'))
                m_lines << QString::fromUtf8(line);
            m_buffer = m_buffer.mid(end + 1);
        }
        return m_lines;
    }
    // The payloads received on `topic`.
    QStringList payloads(const QString& topic)
    {
        QStringList found;
        for (const QString& line : lines())
            if (line.startsWith(topic + u' '))
                found << line.mid(topic.size() + 1);
        return found;
    }
    void clear()
    {
        lines();
        m_lines.clear();
    }

    static bool publish(int port, const QString& topic, const QByteArray& payload, bool retain = false)
    {
        QStringList arguments = {QStringLiteral("-h"), QStringLiteral("127.0.0.1"), QStringLiteral("-p"), QString::number(port),
                                 QStringLiteral("-q"), QStringLiteral("1"), QStringLiteral("-t"), topic, QStringLiteral("-m"),
                                 QString::fromUtf8(payload)};
        if (retain)
            arguments << QStringLiteral("-r");
        return QProcess::execute(QStringLiteral("mosquitto_pub"), arguments) == 0;
    }

private:
    QProcess m_process;
    QByteArray m_buffer;
    QStringList m_lines;
};
