#include "DoorCommands.h"

#include "core/Globals.h"
#include "core/ProfileString.h"
#include "core/WebAddress.h"
#include "verbs/Verbs.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTimer>
#include <QUrl>

namespace DoorCommands {

namespace {

using Reply = DoorMessage::Reply;

Reply done(const QString& out = QString())
{
    return {CommandLine::kDone, out, QString(), false};
}

Reply refused(const QString& why)
{
    return {CommandLine::kRefused, QString(), why + u'\n', false};
}

Reply answer(const VerbResult& result)
{
    if (result.ok())
        return done();
    QString why = result.reason();
    why[0] = why[0].toUpper();
    return refused(why + u'.');
}

QString pageStateName(PageRecovery::State state)
{
    switch (state) {
    case PageRecovery::State::Idle:
        return QStringLiteral("idle");
    case PageRecovery::State::Loading:
        return QStringLiteral("loading");
    case PageRecovery::State::Shown:
        return QStringLiteral("shown");
    case PageRecovery::State::Retrying:
        return QStringLiteral("retrying");
    case PageRecovery::State::CrashedReloading:
        return QStringLiteral("crashed, reloading");
    case PageRecovery::State::GivenUp:
        return QStringLiteral("given up");
    case PageRecovery::State::Failed:
        return QStringLiteral("failed");
    }
    return QString();
}

QJsonObject runJson(const RunState& run)
{
    QJsonArray windows;
    for (int slot : run.windows)
        windows.append(slot);
    return {{QStringLiteral("id"), run.id},
            {QStringLiteral("list"), run.list},
            {QStringLiteral("position"), run.position + 1},
            {QStringLiteral("pages"), run.count},
            {QStringLiteral("window"), run.slot},
            {QStringLiteral("windows"), windows},
            {QStringLiteral("interval"), run.intervalSeconds},
            {QStringLiteral("loop"), run.loop},
            {QStringLiteral("secondsToNext"), qRound(run.secondsToNext * 10) / 10.0},
            {QStringLiteral("paused"), run.paused},
            {QStringLiteral("heldByPerson"), run.heldByPerson}};
}

// A shortcut file given by its path, or as the file manager hands it over (a file: URL, for the
// launcher's %U); empty when `page` is no such file name.
QString shortcutPath(const QString& page)
{
    const QUrl url(page);
    const QString path = url.isLocalFile() ? url.toLocalFile() : page.contains(QLatin1String("://")) ? QString() : page;
    return path.endsWith(QLatin1String(".url"), Qt::CaseInsensitive) ? path : QString();
}

// The address a page given from outside stands for: a shortcut file's, or the address itself.
std::optional<QString> addressOf(const QString& page, const QString& folder, QString* why)
{
    if (const QString path = shortcutPath(page); !path.isEmpty()) {
        const QFileInfo file(QDir(folder.isEmpty() ? QDir::currentPath() : folder), path);
        if (!file.isFile() || !file.isReadable()) {
            *why = QStringLiteral("The shortcut file %1 cannot be read.").arg(file.filePath());
            return std::nullopt;
        }
        const QString url = GetIniString(QStringLiteral("InternetShortcut"), QStringLiteral("URL"), QString(),
                                         file.absoluteFilePath());
        const std::optional<QString> address = WebAddress::fromOutside(url);
        if (!address)
            *why = QStringLiteral("The shortcut file %1 holds no web address.").arg(file.filePath());
        return address;
    }
    const std::optional<QString> address = WebAddress::fromOutside(page);
    if (!address)
        *why = QStringLiteral("\"%1\" is not an http or https address.").arg(page);
    return address;
}

Reply open(const CommandRequest& request, Verbs& verbs, DoorHost& host, const QString& folder, const QString& token)
{
    if (request.pages.isEmpty() && request.where == CommandRequest::Where::NewWindow)
        return answer(verbs.openNewPage(true, Caller::Outside)); // the launcher's "New Window"
    if (request.pages.isEmpty()) {
        host.raise(token); // a plain start while one runs: the running one comes up
        return done();
    }
    // Every page is checked before any opens: a script's typo opens nothing rather than half.
    QList<std::pair<QString, QString>> pages; // address, title
    for (const QString& page : request.pages) {
        QString why;
        const std::optional<QString> address = addressOf(page, folder, &why);
        if (!address)
            return refused(why);
        const QString path = shortcutPath(page);
        pages.append({*address, path.isEmpty() ? QString() : QFileInfo(path).completeBaseName()});
    }
    OpenWhere where = OpenWhere::NewWindow;
    switch (request.where) {
    case CommandRequest::Where::AsTheNewButton:
        where = globals().NewWindowMode ? OpenWhere::NewWindow : OpenWhere::CurrentWindow;
        break;
    case CommandRequest::Where::NewWindow:
        where = OpenWhere::NewWindow;
        break;
    case CommandRequest::Where::CurrentWindow:
        where = OpenWhere::CurrentWindow;
        break;
    case CommandRequest::Where::Slot:
        where = OpenWhere::Slot;
        break;
    }
    for (qsizetype i = 0; i < pages.size(); ++i) {
        const VerbResult result = verbs.openPage(pages[i].first, pages[i].second, where, request.slot, Caller::Outside);
        if (!result.ok()) {
            Reply reply = answer(result);
            if (i > 0)
                reply.err = QStringLiteral("%1 of %2 pages opened. ").arg(i).arg(pages.size()) + reply.err;
            return reply;
        }
    }
    return done();
}

Reply run(const CommandRequest& request, Verbs& verbs)
{
    const QStringList lists = verbs.listNames();
    QString name;
    for (const QString& list : lists)
        if (list.compare(request.list, Qt::CaseInsensitive) == 0)
            name = list;
    if (name.isEmpty()) {
        return refused(lists.isEmpty() ? QStringLiteral("There is no list \"%1\": there are no lists.").arg(request.list)
                                       : QStringLiteral("There is no list \"%1\". The lists are: %2.")
                                             .arg(request.list, lists.join(QStringLiteral(", "))));
    }
    return answer(verbs.runList({name, request.intervalSeconds, request.loop, request.severalWindows, request.keepLoaded},
                                Caller::Outside));
}

} // namespace

Reply carryOut(const CommandRequest& request, Verbs& verbs, DoorHost& host, const QString& folder,
               const QString& activationToken)
{
    using Action = CommandRequest::Action;
    switch (request.action) {
    case Action::Open:
        return open(request, verbs, host, folder, activationToken);
    case Action::Run:
        return run(request, verbs);
    case Action::RunStartupList:
        return host.runStartupList() ? done() : refused(QStringLiteral("No start-up list is chosen in the options."));
    case Action::Stop:
        return answer(verbs.stopRun());
    case Action::Next:
        return answer(verbs.nextPage());
    case Action::Previous:
        return answer(verbs.previousPage());
    case Action::Pause:
        return answer(verbs.pauseRun());
    case Action::Resume:
        return answer(verbs.resumeRun());
    case Action::Reload: {
        const int slot = request.slot > 0 ? request.slot : verbs.state().currentSlot;
        if (slot == 0)
            return refused(QStringLiteral("No window is open."));
        return answer(verbs.reload(slot));
    }
    case Action::Raise:
        host.raise(activationToken);
        return done();
    case Action::Quit:
        // The caller hears first: the program then closes on its own time.
        QTimer::singleShot(0, &verbs, [&host, discard = request.discard] { host.quit(discard); });
        return done();
    case Action::Status:
        return done(QString::fromUtf8(stateJson(verbs.state())) + u'\n');
    }
    return refused(QStringLiteral("Nothing to do."));
}

DoorMessage::Reply answer(const DoorMessage::Request& request, Verbs& verbs, DoorHost& host,
                          CommandRequest* parsed)
{
    const CommandRequest command = CommandLine::parse(request.arguments);
    if (parsed)
        *parsed = command;
    if (!command.error.isEmpty())
        return {CommandLine::kBadArgument, QString(), command.error + u'\n', false};
    if (command.help || command.version)
        return {CommandLine::kBadArgument, QString(),
                QStringLiteral("--help and --version are answered by the start itself.\n"), false};
    return carryOut(command, verbs, host, request.folder, request.activationToken);
}

QJsonObject stateObject(const ProgramState& state)
{
    QJsonArray windows;
    for (const WindowState& window : state.windows)
        windows.append(QJsonObject{{QStringLiteral("slot"), window.slot},
                                   {QStringLiteral("title"), window.title},
                                   {QStringLiteral("address"), window.address},
                                   {QStringLiteral("state"), window.runPaused ? QStringLiteral("paused")
                                                                              : pageStateName(window.page)},
                                   {QStringLiteral("current"), window.current},
                                   {QStringLiteral("monitor"), window.monitor},
                                   {QStringLiteral("fullScreen"), window.fullScreen}});
    QJsonArray runs;
    if (state.run.running)
        runs.append(runJson(state.run));
    for (const RunState& other : state.otherRuns)
        if (other.running)
            runs.append(runJson(other));
    return {{QStringLiteral("windows"), windows},
            {QStringLiteral("currentWindow"), state.currentSlot},
            {QStringLiteral("newWindowMode"), state.newWindowMode},
            {QStringLiteral("run"), state.run.running ? QJsonValue(runJson(state.run)) : QJsonValue()},
            {QStringLiteral("runs"), runs}};
}

QByteArray stateJson(const ProgramState& state)
{
    return QJsonDocument(stateObject(state)).toJson(QJsonDocument::Compact);
}

} // namespace DoorCommands
