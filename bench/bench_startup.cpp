// (1) Start-up of a fresh process to the main window shown and idle, with full data files (1001
//     list records, 10001 history records, 32 buttons), set against a bare Qt Widgets program
//     showing one window, in the same run.
// (2) The same start with one 50 MB caption in the button file, one 50 MB title in the list file
//     and one in the history file, set against the normal start plus reading those bytes.
// (3) CPU used by the idle program over 30 seconds, read from /proc for a real run of vantrel.
#include "BenchSupport.h"
#include "IdleAfterPaint.h"
#include "browser/BrowserEngine.h"
#include "mainwindow/EntryProcedure.h"
#include "mainwindow/Vantrel1.h"
#include "core/ButtonFile.h"
#include "core/ColorsFile.h"
#include "core/Globals.h"
#include "core/HistoryFile.h"
#include "core/ListFile.h"
#include "core/OptionsFile.h"

#include <QApplication>
#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>

#include <QTimer>
#include <algorithm>
#include <vector>

#include <chrono>
#include <fstream>
#include <sstream>
#include <unistd.h>

namespace {

constexpr int kRuns = 11;
constexpr int kIdleSeconds = 30;

constexpr qsizetype kHugeText = 50 * 1000 * 1000;

void writeFullDataFiles(const QString& folder, bool huge = false)
{
    Globals& g = globals();
    g.AppPath = folder;
    for (int i = 0; i < kListCapacity; ++i) {
        g.ListName[i] = QStringLiteral("List %1").arg(i / 50);
        g.ListTitle[i] = QStringLiteral("Page %1 of a favourite list").arg(i);
        g.ListUrl[i] = QStringLiteral("https://www.example.org/list/%1").arg(i);
    }
    for (int i = 0; i < kHistoryCapacity; ++i) {
        g.HistGroup[i] = QStringLiteral("Internet Explorer %1").arg(i % 8 + 1);
        g.HistTitle[i] = QStringLiteral("Visited page %1").arg(i);
        g.HistUrl[i] = QStringLiteral("https://www.example.org/history/%1").arg(i);
    }
    for (int i = 0; i < 32; ++i) {
        g.BtnTitle[i] = QStringLiteral("Button %1").arg(i);
        g.BtnUrl[i] = QStringLiteral("https://www.example.org/button/%1").arg(i);
    }
    if (huge) {
        // Files that another program wrote, or that a page filled before titles were bounded.
        g.BtnTitle[0] = QString(kHugeText, u'B');
        g.ListTitle[0] = QString(kHugeText, u'L');
        g.HistTitle[kHistoryCapacity - 1] = QString(kHugeText, u'H');
    }
    SaveListFile(kListCapacity);
    SaveHistoryFile(kHistoryCapacity);
    SaveButtonFile(appFilePath(QString::fromLatin1(kButtonFileName)));
    SaveOptions();
    SaveColors();
}

qint64 nowNs()
{
    return std::chrono::duration_cast<std::chrono::nanoseconds>(
               std::chrono::system_clock::now().time_since_epoch())
        .count();
}

// The child's side: the program's own start-up in this process, reported when painted and idle.
int runChild()
{
    BrowserEngine::prepare();
    int argc = 1;
    char name[] = "vantrel";
    char* argv[] = {name, nullptr};
    QApplication app(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    std::unique_ptr<Vantrel1> window = RunEntryProcedure();
    new IdleAfterPaint(window.get());
    app.exec();
    window->hide();
    return 0;
}

// Starts `program` and returns the milliseconds until it reported going idle.
double startToIdleMs(const QString& program, const QStringList& arguments, const QProcessEnvironment& env)
{
    QProcess child;
    child.setProcessEnvironment(env);
    child.setProcessChannelMode(QProcess::SeparateChannels);
    const qint64 start = nowNs();
    child.start(program, arguments);
    child.waitForFinished(60000);
    const qint64 idle = child.readAllStandardOutput().trimmed().toLongLong();
    return double(idle - start) / 1e6;
}

long cpuTicks(qint64 pid)
{
    std::ifstream stat("/proc/" + std::to_string(pid) + "/stat");
    std::string line;
    std::getline(stat, line);
    // Fields after the command name, which is in parentheses and may hold blanks.
    std::istringstream rest(line.substr(line.rfind(')') + 2));
    std::string field;
    long utime = 0, stime = 0;
    for (int i = 3; i <= 15 && rest >> field; ++i) {
        if (i == 14)
            utime = std::stol(field);
        if (i == 15)
            stime = std::stol(field);
    }
    return utime + stime;
}

void idleCpu(const QString& program, const QString& dataHome)
{
    QProcess vantrel;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    env.insert(QStringLiteral("XDG_DATA_HOME"), dataHome);
    // A runtime folder of its own: a Vantrel the person runs meanwhile does not take the start.
    const QString runtime = dataHome + QStringLiteral("/run");
    QDir().mkpath(runtime);
    QFile::setPermissions(runtime, QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
    env.insert(QStringLiteral("XDG_RUNTIME_DIR"), runtime);
    vantrel.setProcessEnvironment(env);
    vantrel.setWorkingDirectory(dataHome);
    vantrel.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    vantrel.start(program, {});
    if (!vantrel.waitForStarted()) {
        std::printf("idle CPU: could not start %s\n", qPrintable(program));
        return;
    }
    QThread::sleep(3); // start-up settles
    const long before = cpuTicks(vantrel.processId());
    QThread::sleep(kIdleSeconds);
    const long after = cpuTicks(vantrel.processId());
    vantrel.kill();
    vantrel.waitForFinished();
    const double seconds = double(after - before) / double(sysconf(_SC_CLK_TCK));
    const double percent = 100.0 * seconds / kIdleSeconds;
    std::printf("idle CPU over %d s: %.3f s of CPU = %.3f %% of one core   target < 0.2 %%  %s\n",
                kIdleSeconds, seconds, percent, percent < 0.2 ? "ok" : "OVER");
}

} // namespace

int main(int argc, char* argv[])
{
    if (argc > 1 && QByteArray(argv[1]) == "--child")
        return runChild();
    QTemporaryDir dir;
    BrowserEngine::prepare();
    QApplication app(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);

    const QString dataHome = dir.filePath("data");
    const QString programFolder = dataHome + QStringLiteral("/Vantrel");
    QDir().mkpath(programFolder);
    writeFullDataFiles(programFolder);
    qputenv("XDG_DATA_HOME", dataHome.toUtf8());

    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("XDG_DATA_HOME"), dataHome);
    std::vector<double> program, bare;
    for (int i = 0; i < kRuns; ++i) {
        program.push_back(
            startToIdleMs(QCoreApplication::applicationFilePath(), {QStringLiteral("--child")}, env));
        bare.push_back(startToIdleMs(QStringLiteral(VANTREL_BARE_WINDOW), {}, env));
    }
    std::sort(program.begin(), program.end());
    std::sort(bare.begin(), bare.end());
    std::printf("process start to main window shown and idle, full data files, medians of %d runs\n", kRuns);
    report("start-up to idle", program[kRuns / 2], "bare Qt window", bare[kRuns / 2], 2.0);

    const QString hugeHome = dir.filePath("huge");
    const QString hugeFolder = hugeHome + QStringLiteral("/Vantrel");
    QDir().mkpath(hugeFolder);
    writeFullDataFiles(hugeFolder, true);
    QProcessEnvironment hugeEnv = env;
    hugeEnv.insert(QStringLiteral("XDG_DATA_HOME"), hugeHome);
    const QStringList dataFiles = {QString::fromLatin1(kButtonFileName), QString::fromLatin1(kListFileName),
                                   QString::fromLatin1(kHistoryFileName)};
    const double readMs = medianMs(kRuns, [&] {
        for (const QString& name : dataFiles) {
            QFile file(hugeFolder + u'/' + name);
            file.open(QIODevice::ReadOnly);
            const QByteArray bytes = file.readAll();
            const QString text = QString::fromUtf8(bytes); // the program reads them as text
            if (text.isEmpty())
                std::printf("nothing read\n");
        }
    });
    std::vector<double> hugeStart;
    for (int i = 0; i < kRuns; ++i)
        hugeStart.push_back(
            startToIdleMs(QCoreApplication::applicationFilePath(), {QStringLiteral("--child")}, hugeEnv));
    std::sort(hugeStart.begin(), hugeStart.end());
    std::printf("the same with a 50 MB caption in the button file and 50 MB titles in the list and history "
                "files (reading those bytes as text: %.1f ms)\n",
                readMs);
    // Each 50 MB text is still copied a few times on its way into its record and its control (read,
    // decoded, cut out of its line, named on its button); nothing measures or paints more of it
    // than can be seen.
    report("start-up to idle, 50 MB texts", hugeStart[kRuns / 2], "normal start + read", program[kRuns / 2] + readMs,
           3.0);

    idleCpu(QStringLiteral(VANTREL_PROGRAM), dataHome);
    return 0;
}
