// The doors from outside, on the real program with its own runtime folder and session bus:
// (1) `vantrel --current-window ADDRESS` started, to the running program's navigation begun (its
//     state shows the new address), set against a bare Qt program that connects a QLocalSocket and
//     writes the same bytes, started the same way;
// (2) a verb called over D-Bus (Pause and Resume of a running list, in turn), set against a bare
//     D-Bus ping of the same program, with a property read for scale.
// The navigation is seen on `vantrel --status --watch`, which both starts are measured through.
#include "BenchSupport.h"
#include "LocalHttpServer.h"
#include "core/DoorMessage.h"
#include "doors/InstanceDoor.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <cstdio>
#include <vector>

namespace {

constexpr int kRuns = 50;
const QString kService = QStringLiteral("org.vantrel.Vantrel");
const QString kPath = QStringLiteral("/org/vantrel/Vantrel");

struct Scratch
{
    QTemporaryDir dir;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    QString runtime;
};

void writeFile(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    if (file.open(QIODevice::WriteOnly))
        file.write(bytes);
}

// The program folder of someone who has used Vantrel before (no first-start hints) with one list.
void prepare(Scratch& s, const QString& firstPage, const QString& secondPage)
{
    const QString data = s.dir.filePath(QStringLiteral("data/Vantrel"));
    QDir().mkpath(data);
    QDir().mkpath(s.dir.filePath(QStringLiteral("home")));
    writeFile(data + QStringLiteral("/Options.INI"),
              " 7100  250  8100  4700  1  0 \r\n 0  0  0  0  1 \r\nabout:blank\r\nabout:blank\r\n");
    writeFile(data + QStringLiteral("/Colors.INI"),
              " 16744576 -2147483640  16777215  16761024  16448  14737632 -2147483630  0  0  16777215 \r\n");
    writeFile(data + QStringLiteral("/DefaultList.NLS"),
              QStringLiteral("Bench[#@!] [#@!] \r\nBench[#@!]One[#@!]%1\r\nBench[#@!]Two[#@!]%2\r\n")
                  .arg(firstPage, secondPage)
                  .toUtf8());
    s.runtime = s.dir.filePath(QStringLiteral("run"));
    QDir().mkpath(s.runtime);
    QFile::setPermissions(s.runtime, QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
    s.env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    s.env.insert(QStringLiteral("HOME"), s.dir.filePath(QStringLiteral("home")));
    s.env.insert(QStringLiteral("XDG_DATA_HOME"), s.dir.filePath(QStringLiteral("data")));
    s.env.insert(QStringLiteral("XDG_RUNTIME_DIR"), s.runtime);
    s.env.remove(QStringLiteral("WAYLAND_DISPLAY"));
}

// A second start of `program` with `arguments`; its exit status.
int secondStart(const Scratch& s, const QString& program, const QStringList& arguments)
{
    QProcess start;
    start.setProcessEnvironment(s.env);
    start.start(program, arguments);
    start.waitForFinished(30000);
    return start.exitStatus() == QProcess::NormalExit ? start.exitCode() : -1;
}

// The lines `vantrel --status --watch` prints; `seen(address)` waits for one that shows it.
class Watch
{
public:
    Watch(const Scratch& s, const QString& program)
    {
        m_process.setProcessEnvironment(s.env);
        m_process.start(program, {QStringLiteral("--status"), QStringLiteral("--watch")});
        m_process.waitForStarted();
    }
    ~Watch()
    {
        m_process.kill();
        m_process.waitForFinished();
    }
    bool seen(const QString& address, int timeoutMs)
    {
        const QByteArray wanted = QByteArray("\"address\":\"") + address.toUtf8() + '"';
        return waitUntil(
            [&] {
                m_lines += m_process.readAllStandardOutput();
                const qsizetype found = m_lines.indexOf(wanted);
                if (found < 0)
                    return false;
                m_lines.remove(0, found + wanted.size());
                return true;
            },
            timeoutMs);
    }

private:
    QProcess m_process;
    QByteArray m_lines;
};

// From a client's start to the navigation seen: milliseconds, or a negative number on a failure.
double handOverMs(Watch& watch, const QString& address, const std::function<QProcess*()>& startClient)
{
    QElapsedTimer timer;
    timer.start();
    std::unique_ptr<QProcess> client(startClient());
    const bool seen = watch.seen(address, 15000);
    const double ms = double(timer.nsecsElapsed()) / 1e6;
    client->waitForFinished(15000);
    return seen ? ms : -1.0;
}

double callMs(QDBusConnection& bus, const QDBusMessage& call, bool* failed)
{
    QElapsedTimer timer;
    timer.start();
    const QDBusMessage reply = bus.call(call, QDBus::Block, 5000);
    const double ms = double(timer.nsecsElapsed()) / 1e6;
    if (reply.type() == QDBusMessage::ErrorMessage) {
        std::printf("  call %s failed: %s\n", qPrintable(call.member()), qPrintable(reply.errorMessage()));
        *failed = true;
    }
    return ms;
}

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    const QString program = QStringLiteral(VANTREL_PROGRAM);
    const QString bare = QStringLiteral(VANTREL_BARE_CLIENT);

    LocalHttpServer pages;
    if (!pages.start()) {
        std::printf("no local HTTP server\n");
        return 1;
    }
    for (const char* path : {"/one", "/two", "/step"})
        pages.setPage(QString::fromLatin1(path), "<html><head><title>Bench</title></head><body>Bench</body></html>");

    Scratch s;
    prepare(s, pages.url(QStringLiteral("/one")), pages.url(QStringLiteral("/two")));

    QProcess bus;
    bus.start(QStringLiteral("dbus-daemon"), {QStringLiteral("--session"), QStringLiteral("--nofork"),
                                              QStringLiteral("--print-address=1")});
    if (!bus.waitForReadyRead(10000)) {
        std::printf("no private session bus (dbus-daemon)\n");
        return 1;
    }
    const QString address = QString::fromUtf8(bus.readLine()).trimmed();
    s.env.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), address);

    QProcess vantrel;
    vantrel.setProcessEnvironment(s.env);
    vantrel.setWorkingDirectory(s.dir.path());
    vantrel.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    vantrel.setStandardOutputFile(QProcess::nullDevice());
    vantrel.start(program, {pages.url(QStringLiteral("/one"))});
    const QString socket = InstancePlace::socketFile(s.runtime + QStringLiteral("/vantrel"));
    if (!waitUntil([&] { return QFile::exists(socket) && secondStart(s, program, {QStringLiteral("--status")}) == 0; },
                   60000)) {
        std::printf("Vantrel did not start\n");
        return 1;
    }

    int failures = 0;
    {
        Watch watch(s, program);
        std::vector<double> viaProgram, viaBare;
        for (int i = 0; i < 2 * kRuns + 2; ++i) {
            const QString page = pages.url(QStringLiteral("/step")) + QStringLiteral("?n=%1").arg(i);
            const QStringList arguments{QStringLiteral("--current-window"), page};
            double ms;
            if (i % 2 == 0) {
                ms = handOverMs(watch, page, [&] {
                    auto* client = new QProcess;
                    client->setProcessEnvironment(s.env);
                    client->start(program, arguments);
                    return client;
                });
            } else {
                const QString bytesFile = s.dir.filePath(QStringLiteral("request%1").arg(i));
                writeFile(bytesFile, DoorMessage::encode(DoorMessage::Request{arguments, QDir::currentPath(), {}}));
                ms = handOverMs(watch, page, [&] {
                    auto* client = new QProcess;
                    client->setProcessEnvironment(s.env);
                    client->start(bare, {socket, bytesFile});
                    return client;
                });
            }
            if (ms < 0) {
                ++failures;
                continue;
            }
            if (i >= 2) // the first pair warms the disk cache and the engine
                (i % 2 == 0 ? viaProgram : viaBare).push_back(ms);
        }
        std::printf("a page handed to the running program, to its navigation begun, medians of %d runs\n", kRuns);
        report("vantrel --current-window", median(viaProgram), "bare QLocalSocket", median(viaBare), 1.5);
    }

    QDBusConnection dbus = QDBusConnection::connectToBus(address, QStringLiteral("bench"));
    bool failed = false;
    QDBusMessage run = QDBusMessage::createMethodCall(kService, kPath, kService, QStringLiteral("Run"));
    run << QStringLiteral("Bench") << 600 << true << false << false;
    callMs(dbus, run, &failed);
    std::vector<double> verbs, pings;
    for (int i = 0; i < kRuns + 1; ++i) {
        const QString verb = i % 2 == 0 ? QStringLiteral("Pause") : QStringLiteral("Resume");
        const double verbMs = callMs(dbus, QDBusMessage::createMethodCall(kService, kPath, kService, verb), &failed);
        const double pingMs = callMs(
            dbus,
            QDBusMessage::createMethodCall(kService, kPath, QStringLiteral("org.freedesktop.DBus.Peer"),
                                           QStringLiteral("Ping")),
            &failed);
        if (i > 0) {
            verbs.push_back(verbMs);
            pings.push_back(pingMs);
        }
    }
    std::vector<double> reads;
    for (int i = 0; i < kRuns; ++i) {
        QDBusMessage get = QDBusMessage::createMethodCall(kService, kPath, QStringLiteral("org.freedesktop.DBus.Properties"),
                                                          QStringLiteral("Get"));
        get << kService << QStringLiteral("WindowCount");
        reads.push_back(callMs(dbus, get, &failed));
    }
    std::printf("a verb over the session bus, medians of %d calls\n", kRuns);
    report("D-Bus Pause/Resume", median(verbs), "D-Bus ping", median(pings), 2.0);
    // The ping is answered on the bus's own thread; every method and property goes to the
    // program's main thread, which is most of what a verb costs beyond the ping.
    std::printf("  for scale: a property read, also answered on the main thread: median %.3f ms\n", median(reads));

    secondStart(s, program, {QStringLiteral("--quit"), QStringLiteral("--discard")});
    if (!vantrel.waitForFinished(20000))
        vantrel.kill();
    bus.kill();
    bus.waitForFinished();
    if (failures || failed)
        std::printf("%d hand-overs not seen, D-Bus calls %s\n", failures, failed ? "failed" : "fine");
    return failures || failed ? 1 : 0;
}
