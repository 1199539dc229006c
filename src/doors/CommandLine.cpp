#include "CommandLine.h"

#include "core/Globals.h"

#include <QCommandLineParser>

namespace {

struct Options
{
    QCommandLineOption newWindow{QStringLiteral("new-window"), QStringLiteral("Open the pages in new windows.")};
    QCommandLineOption currentWindow{QStringLiteral("current-window"),
                                     QStringLiteral("Open the pages in the current window.")};
    QCommandLineOption slot{QStringLiteral("slot"), QStringLiteral("Open the pages in window N (1 to 8)."),
                            QStringLiteral("N")};
    QCommandLineOption run{QStringLiteral("run"), QStringLiteral("Run the favourite list LIST."), QStringLiteral("LIST")};
    QCommandLineOption interval{QStringLiteral("interval"),
                                QStringLiteral("Seconds between the pages of the run (default 120)."),
                                QStringLiteral("SECONDS")};
    QCommandLineOption loop{QStringLiteral("loop"), QStringLiteral("Run the list in a continuous loop.")};
    QCommandLineOption several{QStringLiteral("several-windows"),
                               QStringLiteral("Run the list over several browser windows.")};
    QCommandLineOption keep{QStringLiteral("keep-loaded"), QStringLiteral("Keep the run's pages loaded.")};
    QCommandLineOption startupList{QStringLiteral("run-startup-list"),
                                   QStringLiteral("Run the list chosen as start-up list in the options.")};
    QCommandLineOption stop{QStringLiteral("stop"), QStringLiteral("Stop the run.")};
    QCommandLineOption next{QStringLiteral("next"), QStringLiteral("Show the run's next page now.")};
    QCommandLineOption previous{QStringLiteral("previous"), QStringLiteral("Go back one page of the run.")};
    QCommandLineOption pause{QStringLiteral("pause"), QStringLiteral("Pause the run.")};
    QCommandLineOption resume{QStringLiteral("resume"), QStringLiteral("Resume the paused run.")};
    QCommandLineOption reload{QStringLiteral("reload"),
                              QStringLiteral("Load the page of window SLOT again (default: the current window).")};
    QCommandLineOption raise{QStringLiteral("raise"), QStringLiteral("Bring Vantrel's main window up.")};
    QCommandLineOption quit{QStringLiteral("quit"), QStringLiteral("Close Vantrel, saving what is unsaved.")};
    QCommandLineOption discard{QStringLiteral("discard"),
                               QStringLiteral("With --quit: throw away unsaved lists, history and buttons.")};
    QCommandLineOption status{QStringLiteral("status"), QStringLiteral("Print Vantrel's state as JSON.")};
    QCommandLineOption watch{QStringLiteral("watch"),
                             QStringLiteral("With --status: print the state again, a line each time it changes.")};
    QCommandLineOption help{{QStringLiteral("h"), QStringLiteral("help")}, QStringLiteral("Show this help.")};
    QCommandLineOption version{{QStringLiteral("v"), QStringLiteral("version")}, QStringLiteral("Show the version.")};

    void addTo(QCommandLineParser& parser) const
    {
        parser.addOptions({newWindow, currentWindow, slot, run, interval, loop, several, keep, startupList, stop, next, previous,
                           pause, resume, reload, raise, quit, discard, status, watch, help, version});
        parser.addPositionalArgument(QStringLiteral("pages"),
                                     QStringLiteral("Web addresses or Internet Shortcut (.url) files to open."),
                                     QStringLiteral("[ADDRESS | FILE.url]..."));
    }
};

QCommandLineParser& configured(QCommandLineParser& parser, const Options& options)
{
    parser.setApplicationDescription(
        QStringLiteral("Vantrel runs up to eight browser windows and your favourite pages.\n"
                       "A second start hands its arguments to the Vantrel that runs."));
    parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    options.addTo(parser);
    return parser;
}

// A window number 1 to 8, or 0 when `text` is none.
int windowNumber(const QString& text)
{
    bool ok = false;
    const int n = text.toInt(&ok);
    return ok && n >= 1 && n <= kWindowSlots ? n : 0;
}

CommandRequest refused(const QString& why)
{
    CommandRequest request;
    request.error = why;
    return request;
}

} // namespace

bool CommandRequest::needsRunningProgram() const
{
    switch (action) {
    case Action::Stop:
    case Action::Next:
    case Action::Previous:
    case Action::Pause:
    case Action::Resume:
    case Action::Reload:
    case Action::Quit:
    case Action::Status:
        return true;
    case Action::Open:
    case Action::Run:
    case Action::RunStartupList:
    case Action::Raise:
        return false;
    }
    return false;
}

namespace CommandLine {

CommandRequest parse(const QStringList& arguments)
{
    const Options o;
    QCommandLineParser parser;
    configured(parser, o);
    if (!parser.parse(QStringList{QStringLiteral("vantrel")} + arguments))
        return refused(parser.errorText());
    CommandRequest request;
    request.help = parser.isSet(o.help);
    request.version = parser.isSet(o.version);
    if (request.help || request.version)
        return request;

    // One thing at a time: a start that both stops and runs would leave a script guessing.
    const QList<std::pair<const QCommandLineOption*, CommandRequest::Action>> actions{
        {&o.run, CommandRequest::Action::Run},       {&o.startupList, CommandRequest::Action::RunStartupList},
        {&o.stop, CommandRequest::Action::Stop},
        {&o.next, CommandRequest::Action::Next},     {&o.previous, CommandRequest::Action::Previous},
        {&o.pause, CommandRequest::Action::Pause},   {&o.resume, CommandRequest::Action::Resume},
        {&o.reload, CommandRequest::Action::Reload}, {&o.raise, CommandRequest::Action::Raise},
        {&o.quit, CommandRequest::Action::Quit},     {&o.status, CommandRequest::Action::Status}};
    QStringList chosen;
    for (const auto& [option, action] : actions) {
        if (parser.isSet(*option)) {
            chosen << QStringLiteral("--") + option->names().constFirst();
            request.action = action;
        }
    }
    if (chosen.size() > 1)
        return refused(QStringLiteral("Choose one of %1, not all of them.").arg(chosen.join(QStringLiteral(", "))));

    const QStringList positional = parser.positionalArguments();
    const auto onlyWith = [&](const QCommandLineOption& option, CommandRequest::Action action) {
        return !parser.isSet(option) || request.action == action;
    };
    for (const auto& [option, action] :
         {std::pair{&o.interval, CommandRequest::Action::Run}, std::pair{&o.loop, CommandRequest::Action::Run},
          std::pair{&o.several, CommandRequest::Action::Run}, std::pair{&o.keep, CommandRequest::Action::Run},
          std::pair{&o.discard, CommandRequest::Action::Quit}, std::pair{&o.watch, CommandRequest::Action::Status}}) {
        if (!onlyWith(*option, action))
            return refused(QStringLiteral("--%1 goes only with --%2.")
                               .arg(option->names().constFirst(),
                                    action == CommandRequest::Action::Run    ? QStringLiteral("run")
                                    : action == CommandRequest::Action::Quit ? QStringLiteral("quit")
                                                                             : QStringLiteral("status")));
    }

    const int whereOptions = int(parser.isSet(o.newWindow)) + int(parser.isSet(o.currentWindow)) +
                             int(parser.isSet(o.slot));
    if (whereOptions > 1)
        return refused(QStringLiteral("Choose one of --new-window, --current-window and --slot."));
    if (whereOptions > 0 && request.action != CommandRequest::Action::Open)
        return refused(QStringLiteral("--new-window, --current-window and --slot go only with pages to open."));

    switch (request.action) {
    case CommandRequest::Action::Open:
        request.pages = positional;
        if (request.pages.isEmpty() && (parser.isSet(o.currentWindow) || parser.isSet(o.slot)))
            return refused(QStringLiteral("--current-window and --slot need pages to open."));
        for (const QString& page : std::as_const(request.pages))
            if (page.trimmed().isEmpty())
                return refused(QStringLiteral("An empty page was given."));
        if (parser.isSet(o.newWindow))
            request.where = CommandRequest::Where::NewWindow;
        else if (parser.isSet(o.currentWindow))
            request.where = CommandRequest::Where::CurrentWindow;
        else if (parser.isSet(o.slot)) {
            request.where = CommandRequest::Where::Slot;
            request.slot = windowNumber(parser.value(o.slot));
            if (request.slot == 0)
                return refused(QStringLiteral("--slot takes a window from 1 to 8, not \"%1\".").arg(parser.value(o.slot)));
        }
        return request;
    case CommandRequest::Action::Run: {
        request.list = parser.value(o.run);
        if (request.list.trimmed().isEmpty())
            return refused(QStringLiteral("--run needs the name of a list."));
        if (parser.isSet(o.interval)) {
            bool ok = false;
            request.intervalSeconds = parser.value(o.interval).toInt(&ok);
            if (!ok || request.intervalSeconds <= 0)
                return refused(
                    QStringLiteral("--interval takes a number of seconds, not \"%1\".").arg(parser.value(o.interval)));
        }
        request.loop = parser.isSet(o.loop);
        request.severalWindows = parser.isSet(o.several);
        request.keepLoaded = parser.isSet(o.keep);
        break;
    }
    case CommandRequest::Action::Reload:
        if (positional.size() > 1)
            return refused(QStringLiteral("--reload takes one window at most."));
        if (!positional.isEmpty()) {
            request.slot = windowNumber(positional.constFirst());
            if (request.slot == 0)
                return refused(
                    QStringLiteral("--reload takes a window from 1 to 8, not \"%1\".").arg(positional.constFirst()));
        }
        return request;
    case CommandRequest::Action::Status:
        request.watch = parser.isSet(o.watch);
        break;
    case CommandRequest::Action::Quit:
        request.discard = parser.isSet(o.discard);
        break;
    default:
        break;
    }
    if (!positional.isEmpty())
        return refused(QStringLiteral("\"%1\" was not expected with %2.").arg(positional.constFirst(), chosen.value(0)));
    return request;
}

QString helpText()
{
    const Options o;
    QCommandLineParser parser;
    return configured(parser, o).helpText();
}

} // namespace CommandLine
