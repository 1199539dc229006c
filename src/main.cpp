#include "browser/BrowserEngine.h"
#include "doors/BusDoor.h"
#include "core/PlatformChoice.h"
#include "desktop/Autostart.h"
#include "doors/CommandLine.h"
#include "doors/DoorCommands.h"
#include "doors/InstanceClient.h"
#include "doors/InstanceDoor.h"
#include "mainwindow/EntryProcedure.h"
#include "mainwindow/Vantrel1.h"
#include "mainwindow/WindowDoorHost.h"
#include "doors/MqttDoor.h"
#include "doors/RemotePage.h"
#include "watch/EventLog.h"
#include "widgets/MessageBoxBackend.h"

#include <QApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QIcon>
#include <QThread>
#include <QTimer>

#include <cstdio>

namespace {

// How long a start waits for another that holds the lock to open its door (it may be loading).
constexpr int kWaitForTheFirstMs = 20000;

QStringList argumentsOf(int argc, char* argv[])
{
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments << QString::fromLocal8Bit(argv[i]);
    return arguments;
}

void printLine(FILE* stream, const QString& text)
{
    std::fputs(qPrintable(text + u'\n'), stream);
}

// Answers what needs no program at all: the help, the version, a bad argument.
std::optional<int> answeredAlone(const CommandRequest& request, int argc, char* argv[])
{
    if (!request.error.isEmpty()) {
        printLine(stderr, QStringLiteral("vantrel: ") + request.error);
        printLine(stderr, QStringLiteral("Try 'vantrel --help'."));
        return CommandLine::kBadArgument;
    }
    if (request.help || request.version) {
        QCoreApplication app(argc, argv); // the help names the program as it was started
        if (request.help)
            std::fputs(qPrintable(CommandLine::helpText()), stdout);
        else
            printLine(stdout, QStringLiteral("Vantrel ") + QStringLiteral(VANTREL_VERSION));
        return CommandLine::kDone;
    }
    return std::nullopt;
}

} // namespace

int main(int argc, char* argv[])
{
    const QStringList arguments = argumentsOf(argc, argv);
    const CommandRequest request = CommandLine::parse(arguments);
    if (const std::optional<int> status = answeredAlone(request, argc, argv))
        return *status;

    // One program per person: a start while one runs hands its arguments over and ends with the
    // answer. Many starts at once end with one program: the lock's holder opens the door, the
    // others wait for it.
    const QString place = InstancePlace::folder();
    const DoorMessage::Request handed{arguments, QDir::currentPath(),
                                      qEnvironmentVariable("XDG_ACTIVATION_TOKEN",
                                                           qEnvironmentVariable("DESKTOP_STARTUP_ID"))};
    InstanceLock lock(place);
    const QDeadlineTimer patience(kWaitForTheFirstMs);
    for (;;) {
        if (const std::optional<int> status = InstanceClient::handOver(place, handed, stdout, stderr))
            return *status;
        if (lock.claim())
            break;
        if (patience.hasExpired()) {
            printLine(stderr, QStringLiteral("vantrel: another Vantrel is starting and does not answer."));
            return 1;
        }
        QThread::msleep(50);
    }
    if (request.needsRunningProgram()) {
        printLine(stderr, QStringLiteral("vantrel: Vantrel is not running."));
        return CommandLine::kNotRunning;
    }

    PlatformChoice::apply();
    BrowserEngine::prepare();
    QApplication app(argc, argv);
    Autostart::command(); // taken from the environment before any page's process can inherit it
    QApplication::setApplicationName(QStringLiteral("Vantrel"));
    QApplication::setApplicationVersion(QStringLiteral(VANTREL_VERSION));
    QApplication::setDesktopFileName(QStringLiteral("org.vantrel.Vantrel"));
    QIcon icon;
    for (int size : {16, 32, 48, 64, 128, 256})
        icon.addFile(QStringLiteral(":/icons/vantrel-%1.png").arg(size), QSize(size, size));
    QApplication::setWindowIcon(icon);
    // The main window's unload ends the program, not the last browser window closing.
    QApplication::setQuitOnLastWindowClosed(false);
    MessageBoxBackend dialogs;
    DialogService::setBackend(&dialogs);

    // The lock only sees starts that share this runtime folder; the session bus sees every start
    // of this person's session. A Vantrel already there takes the arguments instead of a second one.
    if (const std::optional<DoorMessage::Reply> reply = BusDoor::handOverToRunning(QDBusConnection::sessionBus(), handed)) {
        std::fputs(qPrintable(reply->out), stdout);
        std::fputs(qPrintable(reply->err), stderr);
        return reply->status;
    }

    // Open before the window loads: starts that come meanwhile wait in line, not in a second program.
    InstanceDoor door;
    door.listen(place);
    std::unique_ptr<Vantrel1> window = RunEntryProcedure();
    QObject::connect(window.get(), &Vantrel1::unloaded, &app, &QApplication::quit, Qt::QueuedConnection);
    WindowDoorHost host(window.get());
    door.open(window->verbs(), &host);
    // The same verbs on the user's session bus, where there is one.
    BusDoor bus(window->verbs(), &host);
    QString noBus;
    if (!bus.publish(QDBusConnection::sessionBus(), &noBus))
        EventLog::write(QStringLiteral("not on the session bus: %1").arg(noBus));
    // And on an MQTT broker, when a person switched it on; it connects behind the start.
    // Both read their secrets once the window is up, so that a secret store never holds the start.
    MqttDoor mqtt(window->verbs(), &host);
    QTimer::singleShot(0, &mqtt, &MqttDoor::applySetting);
    window->setMqttDoor(&mqtt);
    // And a page for a phone's browser, when a person switched it on.
    RemotePage remote(window->verbs(), &host);
    QTimer::singleShot(0, &remote, &RemotePage::applySetting);
    window->setRemotePage(&remote);
    // This start's own pages or run, as a second start's would be.
    if (request.action != CommandRequest::Action::Open || !request.pages.isEmpty()) {
        const DoorMessage::Reply reply =
            DoorCommands::carryOut(request, *window->verbs(), host, QDir::currentPath(), handed.activationToken);
        std::fputs(qPrintable(reply.out), stdout);
        std::fputs(qPrintable(reply.err), stderr);
    }
    const int result = app.exec();
    DialogService::setBackend(nullptr);
    return result;
}
