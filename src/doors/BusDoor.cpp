#include "BusDoor.h"

#include "ApplicationAdaptor.h"
#include "VantrelAdaptor.h"
#include "verbs/Verbs.h"
#include "verbs/WebForm1.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusReply>

namespace {

CommandRequest request(CommandRequest::Action action)
{
    CommandRequest r;
    r.action = action;
    return r;
}

} // namespace

BusDoor::BusDoor(Verbs* verbs, DoorHost* host, QObject* parent) : QObject(parent), m_verbs(verbs), m_host(host)
{
    new VantrelAdaptor(this);
    new ApplicationAdaptor(this);
    connect(verbs, &Verbs::stateChanged, this, &BusDoor::tellChanges);
    connect(verbs->pool(), &WebForm1::rowCompleted, this, &BusDoor::PageShown);
    m_told = properties();
}

BusDoor::~BusDoor()
{
    if (!m_published)
        return;
    m_bus.interface()->unregisterService(QString::fromLatin1(kService));
    m_bus.unregisterObject(QString::fromLatin1(kPath));
}

bool BusDoor::publish(const QDBusConnection& bus, QString* why)
{
    auto refuse = [why](const QString& text) {
        if (why)
            *why = text;
        return false;
    };
    if (!bus.isConnected())
        return refuse(QStringLiteral("no session bus"));
    m_bus = bus;
    if (!m_bus.registerObject(QString::fromLatin1(kPath), this))
        return refuse(QStringLiteral("the object could not be registered"));
    // Not queued behind another owner, and not given up to one: one Vantrel answers, or none.
    const QDBusReply<QDBusConnectionInterface::RegisterServiceReply> reply = m_bus.interface()->registerService(
        QString::fromLatin1(kService), QDBusConnectionInterface::DontQueueService,
        QDBusConnectionInterface::DontAllowReplacement);
    if (!reply.isValid() || reply.value() != QDBusConnectionInterface::ServiceRegistered) {
        m_bus.unregisterObject(QString::fromLatin1(kPath));
        return refuse(QStringLiteral("the name %1 is another program's").arg(QLatin1String(kService)));
    }
    m_published = true;
    return true;
}

DoorMessage::Reply BusDoor::carryOut(const CommandRequest& command, const QString& activationToken)
{
    if (!m_verbs || !m_host)
        return {CommandLine::kRefused, QString(), QStringLiteral("Vantrel is closing."), false};
    const DoorMessage::Reply reply = DoorCommands::carryOut(command, *m_verbs, *m_host, QString(), activationToken);
    if (reply.status != CommandLine::kDone && calledFromDBus())
        sendErrorReply(reply.status == CommandLine::kBadArgument ? QStringLiteral("org.freedesktop.DBus.Error.InvalidArgs")
                                                                 : QString::fromLatin1(kRefused),
                       reply.err.trimmed());
    return reply;
}

void BusDoor::Open(const QStringList& pages, const QString& where, int slot)
{
    CommandRequest command = request(CommandRequest::Action::Open);
    command.pages = pages;
    if (where.isEmpty()) {
        command.where = CommandRequest::Where::AsTheNewButton;
    } else if (where == u"new-window") {
        command.where = CommandRequest::Where::NewWindow;
    } else if (where == u"current-window") {
        command.where = CommandRequest::Where::CurrentWindow;
    } else if (where == u"slot") {
        command.where = CommandRequest::Where::Slot;
        command.slot = slot;
    } else {
        sendErrorReply(QDBusError::InvalidArgs,
                       QStringLiteral("\"%1\" is no place: \"\", \"new-window\", \"current-window\" or \"slot\".").arg(where));
        return;
    }
    if (pages.isEmpty()) {
        sendErrorReply(QDBusError::InvalidArgs, QStringLiteral("No page was given."));
        return;
    }
    carryOut(command);
}

void BusDoor::Run(const QString& list, int intervalSeconds, bool loop, bool severalWindows, bool keepLoaded)
{
    CommandRequest command = request(CommandRequest::Action::Run);
    command.list = list;
    command.intervalSeconds = intervalSeconds;
    command.loop = loop;
    command.severalWindows = severalWindows;
    command.keepLoaded = keepLoaded;
    carryOut(command);
}

void BusDoor::Stop()
{
    carryOut(request(CommandRequest::Action::Stop));
}

void BusDoor::Next()
{
    carryOut(request(CommandRequest::Action::Next));
}

void BusDoor::Previous()
{
    carryOut(request(CommandRequest::Action::Previous));
}

void BusDoor::Pause()
{
    carryOut(request(CommandRequest::Action::Pause));
}

void BusDoor::Resume()
{
    carryOut(request(CommandRequest::Action::Resume));
}

void BusDoor::Reload(int slot)
{
    CommandRequest command = request(CommandRequest::Action::Reload);
    command.slot = slot;
    carryOut(command);
}

void BusDoor::Raise(const QString& activationToken)
{
    carryOut(request(CommandRequest::Action::Raise), activationToken);
}

void BusDoor::Quit(bool discard)
{
    CommandRequest command = request(CommandRequest::Action::Quit);
    command.discard = discard;
    carryOut(command);
}

QString BusDoor::Status()
{
    return carryOut(request(CommandRequest::Action::Status)).out.trimmed();
}

int BusDoor::HandOver(const QStringList& arguments, const QString& folder, const QString& activationToken,
                      QString& out, QString& err)
{
    // The answer is the start's to print, refusals included: they are not errors of the call.
    if (!m_verbs || !m_host) {
        err = QStringLiteral("Vantrel is closing.\n");
        return CommandLine::kRefused;
    }
    const DoorMessage::Reply reply =
        DoorCommands::answer(DoorMessage::Request{arguments, folder, activationToken}, *m_verbs, *m_host);
    out = reply.out;
    err = reply.err;
    return reply.status;
}

std::optional<DoorMessage::Reply> BusDoor::handOverToRunning(const QDBusConnection& bus,
                                                             const DoorMessage::Request& request)
{
    if (!bus.isConnected() || !bus.interface())
        return std::nullopt;
    const QDBusReply<bool> owned = bus.interface()->isServiceRegistered(QString::fromLatin1(kService));
    if (!owned.isValid() || !owned.value())
        return std::nullopt;
    QDBusMessage call = QDBusMessage::createMethodCall(QString::fromLatin1(kService), QString::fromLatin1(kPath),
                                                      QString::fromLatin1(kInterface), QStringLiteral("HandOver"));
    call << request.arguments << request.folder << request.activationToken;
    // As long as a start waits for the program that holds the lock: a busy program still answers.
    const QDBusMessage answer = bus.call(call, QDBus::Block, 20000);
    if (answer.type() != QDBusMessage::ReplyMessage || answer.arguments().size() != 3)
        return std::nullopt;
    return DoorMessage::Reply{answer.arguments().at(0).toInt(), answer.arguments().at(1).toString(),
                              answer.arguments().at(2).toString(), false};
}

namespace {

// The token the desktop gave with the call, to raise a window with.
QString tokenOf(const QVariantMap& platformData)
{
    const QString token = platformData.value(QStringLiteral("activation-token")).toString();
    return token.isEmpty() ? platformData.value(QStringLiteral("desktop-startup-id")).toString() : token;
}

} // namespace

void BusDoor::Activate(const QVariantMap& platformData)
{
    carryOut(request(CommandRequest::Action::Raise), tokenOf(platformData));
}

void BusDoor::Open(const QStringList& uris, const QVariantMap& platformData)
{
    CommandRequest command = request(CommandRequest::Action::Open);
    command.pages = uris;
    if (uris.isEmpty()) {
        carryOut(request(CommandRequest::Action::Raise), tokenOf(platformData));
        return;
    }
    carryOut(command, tokenOf(platformData));
}

void BusDoor::ActivateAction(const QString& actionName, const QVariantList& parameter, const QVariantMap& platformData)
{
    Q_UNUSED(parameter)
    // The launcher's actions, as its desktop file runs them on the command line.
    CommandRequest command;
    if (actionName == u"new-window") {
        command = request(CommandRequest::Action::Open);
        command.where = CommandRequest::Where::NewWindow;
    } else if (actionName == u"run-startup-list") {
        command = request(CommandRequest::Action::RunStartupList);
    } else if (actionName == u"stop") {
        command = request(CommandRequest::Action::Stop);
    } else {
        sendErrorReply(QDBusError::InvalidArgs, QStringLiteral("There is no action \"%1\".").arg(actionName));
        return;
    }
    carryOut(command, tokenOf(platformData));
}

QString BusDoor::State() const
{
    return m_verbs ? QString::fromUtf8(DoorCommands::stateJson(m_verbs->state())) : QString();
}

int BusDoor::CurrentWindow() const
{
    return m_verbs ? m_verbs->state().currentSlot : 0;
}

int BusDoor::WindowCount() const
{
    return m_verbs ? int(m_verbs->windows().size()) : 0;
}

bool BusDoor::Running() const
{
    return m_verbs && m_verbs->runState().running;
}

QString BusDoor::List() const
{
    return Running() ? m_verbs->runState().list : QString();
}

int BusDoor::Position() const
{
    return Running() ? m_verbs->runState().position + 1 : 0;
}

bool BusDoor::Paused() const
{
    return Running() && m_verbs->runState().paused;
}

double BusDoor::SecondsToNext() const
{
    return Running() ? qRound(m_verbs->runState().secondsToNext * 10) / 10.0 : 0.0; // as the status says it
}

QVariantMap BusDoor::properties() const
{
    return {{QStringLiteral("State"), State()},       {QStringLiteral("CurrentWindow"), CurrentWindow()},
            {QStringLiteral("WindowCount"), WindowCount()}, {QStringLiteral("Running"), Running()},
            {QStringLiteral("List"), List()},         {QStringLiteral("Position"), Position()},
            {QStringLiteral("Paused"), Paused()}};
}

void BusDoor::tellChanges()
{
    // SecondsToNext runs down all the time: read, never told.
    const QVariantMap now = properties();
    QVariantMap changed;
    for (auto it = now.cbegin(); it != now.cend(); ++it)
        if (m_told.value(it.key()) != it.value())
            changed.insert(it.key(), it.value());
    m_told = now;
    if (changed.isEmpty() || !m_bus.isConnected())
        return;
    QDBusMessage signal = QDBusMessage::createSignal(QString::fromLatin1(kPath),
                                                     QStringLiteral("org.freedesktop.DBus.Properties"),
                                                     QStringLiteral("PropertiesChanged"));
    signal << QString::fromLatin1(kInterface) << changed << QStringList();
    m_bus.send(signal);
}
