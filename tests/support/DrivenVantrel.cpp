// Vantrel started by a test in a child process, so that the test can kill it at any moment and
// start it again: the program's own start (StartUp, the main window's load), with the browser
// engine or with scripted windows, a clock that runs fast so that timed runs move on quickly,
// answers to its questions given on the command line, and what it shows written to standard
// output as one JSON line after its start and after every tick of its timer.
//
//   --scripted           scripted windows in place of the engine's
//   --answer yes|no      the answer to the next question (may be given several times)
//   --clock-speed N      the program's clock runs N times as fast (1 unless given)
//   --open URL           opens URL in a new window once the program has started
//   --run LIST           starts the list's run from its dialog, every 30 s of the clock
//   --several --loop --keep   the run dialog's check boxes
//   --wander SEED        uses the program at random, every 20 ms: opens and closes windows,
//                        clicks rows, starts and stops runs
// A line "quit" on standard input closes the main window as the user does.
#include "ScriptedBrowserWindow.h"
#include "browser/BrowserEngine.h"
#include "surf/SurfPanel.h"
#include "mainwindow/Vantrel1.h"
#include "browser/WebBrowserWindow.h"
#include "verbs/WebForm1.h"
#include "core/Clock.h"
#include "core/DialogService.h"
#include "core/Globals.h"
#include "core/Startup.h"
#include "verbs/ListRun.h"
#include "lists/ListsPanel.h"
#include "lists/RunList1.h"
#include "widgets/GradientButton.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QElapsedTimer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRandomGenerator>
#include <QSocketNotifier>
#include <QTimer>

#include <cstdio>
#include <unistd.h>

namespace {

class FastClock : public Clock
{
public:
    explicit FastClock(int speed) : m_speed(speed) { m_elapsed.start(); }
    QDateTime now() const override
    {
        static const QDateTime start(QDate(2026, 5, 1), QTime(1, 0));
        return start.addMSecs(m_elapsed.elapsed() * m_speed);
    }

private:
    QElapsedTimer m_elapsed;
    int m_speed;
};

struct Options
{
    bool scripted = false;
    int clockSpeed = 1;
    QStringList answers;
    QStringList opens;
    QString run;
    bool several = false;
    bool loop = false;
    bool keep = false;
    std::optional<quint32> wanderSeed;
};

Options parse(int argc, char* argv[])
{
    Options o;
    for (int i = 1; i < argc; ++i) {
        const QByteArray arg = argv[i];
        const QString next = i + 1 < argc ? QString::fromLocal8Bit(argv[i + 1]) : QString();
        if (arg == "--scripted")
            o.scripted = true;
        else if (arg == "--several")
            o.several = true;
        else if (arg == "--loop")
            o.loop = true;
        else if (arg == "--keep")
            o.keep = true;
        else if (arg == "--answer" && ++i)
            o.answers << next;
        else if (arg == "--clock-speed" && ++i)
            o.clockSpeed = next.toInt();
        else if (arg == "--open" && ++i)
            o.opens << next;
        else if (arg == "--run" && ++i)
            o.run = next;
        else if (arg == "--wander" && ++i)
            o.wanderSeed = next.toUInt();
    }
    return o;
}

void startRun(Vantrel1& main, const Options& o)
{
    main.listsPanel()->RunListBtn_Click();
    RunList1* dialog = main.listsPanel()->runDialog();
    dialog->CMBLIST()->setCurrentIndex(dialog->CMBLIST()->findText(o.run));
    dialog->CMBTIME()->setCurrentIndex(0); // 30 seconds
    dialog->CHKPAGE()->setChecked(o.several);
    dialog->CHKLOOP()->setChecked(o.loop);
    dialog->CHKKEEP()->setChecked(o.keep);
    dialog->GoBtn_Click();
}

QByteArray state(Vantrel1& main)
{
    const Globals& g = globals();
    QJsonArray windows;
    for (int slot = 1; slot <= kWindowSlots; ++slot)
        if (!g.WindowUrl[slot].isEmpty())
            windows.append(QJsonObject{{"slot", slot},
                                       {"first", g.WindowUrl[slot]},
                                       {"row", main.surf()->Button(slot - 1)->tag()}});
    QJsonObject run{{"running", g.RunListRunning}};
    if (RunList1* dialog = main.listsPanel()->runDialog()) {
        run.insert("dialog", dialog->isVisible());
        run.insert("list", dialog->CMBLIST()->currentText());
        run.insert("several", dialog->CHKPAGE()->isChecked());
        run.insert("loop", dialog->CHKLOOP()->isChecked());
        run.insert("keep", dialog->CHKKEEP()->isChecked());
    }
    run.insert("position", main.listsPanel()->run().RunPos);
    run.insert("currentUrl", g.CurrentUrl);
    const QJsonObject all{{"windows", windows},
                          {"count", g.WindowCount},
                          {"index", g.WindowIndex},
                          {"run", run},
                          {"asked", DialogService::shownTexts().filter("did not close normally").join('\n')},
                          {"startedAt", qint64(::getpid())}};
    return QJsonDocument(all).toJson(QJsonDocument::Compact);
}

// One step of a person using the program at random.
void wander(Vantrel1& main, QRandomGenerator& random, const Options& o)
{
    Globals& g = globals();
    switch (random.bounded(8)) {
    case 0:
    case 1:
    case 2:
        if (g.WindowCount < kWindowSlots) {
            g.CurrentUrl = QStringLiteral("https://page%1.example/").arg(random.bounded(1000));
            main.NewBtnAction(true);
        }
        break;
    case 3: {
        const int slot = 1 + int(random.bounded(kWindowSlots));
        if (auto* window = qobject_cast<ScriptedBrowserWindow*>(main.webForm()->ie(slot)))
            window->closeByHand();
        break;
    }
    case 4:
        if (g.WindowCount > 0)
            main.surf()->bringForward(1 + int(random.bounded(kWindowSlots)));
        break;
    case 5:
        if (!o.run.isEmpty() && !g.RunListRunning)
            startRun(main, o);
        break;
    case 6:
        if (g.RunListRunning && random.bounded(4) == 0)
            main.listsPanel()->RunListBtn_Click(); // stops the run
        break;
    default:
        main.surf()->ToggleBtn()->click();
        break;
    }
}

void say(const QByteArray& line)
{
    std::fwrite(line.constData(), 1, size_t(line.size()), stdout);
    std::fputc('\n', stdout);
    std::fflush(stdout);
}

} // namespace

int main(int argc, char* argv[])
{
    const Options o = parse(argc, argv);
    if (!o.scripted)
        BrowserEngine::prepare();
    QApplication app(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    FastClock clock(std::max(1, o.clockSpeed));
    Clock::setInstance(&clock);
    for (const QString& answer : o.answers)
        DialogService::setNextAnswer(answer == "yes" ? DialogService::Answer::Yes : DialogService::Answer::No);
    if (!o.scripted)
        BrowserEngine::setWindowMaker([](QObject* parent) { return new WebBrowserWindow(parent); });

    StartUp();
    Vantrel1 main;
    QList<ScriptedBrowserWindow*> created;
    if (o.scripted)
        ScriptedBrowserWindow::installOn(main.webForm(), &created);
    main.Form_Load();
    main.show();
    say(state(main));
    for (const QString& url : o.opens) {
        globals().CurrentUrl = url;
        main.NewBtnAction(true);
    }
    if (!o.run.isEmpty() && !o.wanderSeed)
        startRun(main, o);
    QObject::connect(main.Timer1(), &QTimer::timeout, &main, [&] { say(state(main)); });

    QRandomGenerator random(o.wanderSeed.value_or(0));
    QTimer wanderer;
    if (o.wanderSeed) {
        QObject::connect(&wanderer, &QTimer::timeout, &main, [&] { wander(main, random, o); });
        wanderer.start(20);
    }
    QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, &main, [&] {
        char line[64] = {};
        const ssize_t n = ::read(STDIN_FILENO, line, sizeof line - 1);
        if (n <= 0 || QByteArray(line).startsWith("quit")) {
            input.setEnabled(false);
            main.close();
        }
    });
    QObject::connect(&main, &Vantrel1::unloaded, &app, &QApplication::quit, Qt::QueuedConnection);
    const int result = app.exec();
    Clock::setInstance(nullptr);
    return result;
}
