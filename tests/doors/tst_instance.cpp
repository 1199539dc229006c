// The real program, started as a person's desktop starts it, with a runtime folder, home and data
// of its own; then the real program again as a second process with each option: its arguments are
// handed over, its status tells the outcome, and there is never more than one program.
#include "TestSupport.h"
#include "core/DoorMessage.h"

#include <QDir>
#include <QElapsedTimer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocalServer>
#include <QLocalSocket>
#include <QProcess>
#include <QTest>

#include <algorithm>
#include <unistd.h>

class TestInstance : public QObject
{
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> m_root;
    std::unique_ptr<QProcess> m_first;
    QString m_busAddress; // a private session bus, for the test that asks through it

    QString runtime() const { return m_root->filePath(QStringLiteral("run")); }
    QString door() const { return runtime() + QStringLiteral("/vantrel/door"); }
    QProcessEnvironment environment() const
    {
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert("QT_QPA_PLATFORM", "offscreen");
        env.insert("HOME", m_root->filePath("home"));
        env.insert("XDG_DATA_HOME", m_root->filePath("data"));
        env.insert("XDG_RUNTIME_DIR", runtime());
        env.remove("DBUS_SESSION_BUS_ADDRESS"); // the person's own bus is not the test's
        if (!m_busAddress.isEmpty())
            env.insert("DBUS_SESSION_BUS_ADDRESS", m_busAddress);
        return env;
    }
    std::unique_ptr<QProcess> start(const QStringList& arguments)
    {
        auto process = std::make_unique<QProcess>();
        process->setProcessEnvironment(environment());
        process->setWorkingDirectory(m_root->path());
        process->start(QStringLiteral(VANTREL_PROGRAM), arguments);
        return process;
    }
    struct Outcome
    {
        int status = -1;
        QString out, err;
    };
    Outcome vantrel(const QStringList& arguments, int timeoutMs = 60000)
    {
        const std::unique_ptr<QProcess> process = start(arguments);
        if (!process->waitForFinished(timeoutMs)) {
            process->kill();
            process->waitForFinished();
            return {};
        }
        return {process->exitStatus() == QProcess::NormalExit ? process->exitCode() : -2,
                QString::fromLocal8Bit(process->readAllStandardOutput()),
                QString::fromLocal8Bit(process->readAllStandardError())};
    }
    QJsonObject status()
    {
        const Outcome outcome = vantrel({"--status"});
        return outcome.status == 0 ? QJsonDocument::fromJson(outcome.out.toUtf8()).object() : QJsonObject();
    }
    // The first program, running once its door answers.
    bool startFirst(const QStringList& arguments = {})
    {
        m_first = start(arguments);
        return m_first->waitForStarted() && waitFor([&] { return vantrel({"--status"}, 5000).status == 0; }, 60000);
    }

private slots:
    void init()
    {
        m_root = std::make_unique<QTemporaryDir>();
        const QString programFolder = m_root->filePath("data/Vantrel");
        QVERIFY(QDir().mkpath(programFolder));
        QVERIFY(QDir().mkpath(m_root->filePath("home")));
        QVERIFY(QDir().mkpath(runtime()));
        QVERIFY(QFile::setPermissions(runtime(), QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner));
        // Known options and colours: the first start's hints do not wait for a person.
        QVERIFY(writeAll(programFolder + "/Options.INI",
                         " 100  100  8100  4700  1  0 \r\n 0  1  0  0  0 \r\nabout:blank\r\nabout:blank\r\n"));
        QVERIFY(writeAll(programFolder + "/Colors.INI", testData("Colors.default.INI")));
        QVERIFY(writeAll(programFolder + "/DefaultList.NLS",
                         "Shop[#@!] [#@!] \r\nShop[#@!]One[#@!]https://one.invalid/\r\n"
                         "Shop[#@!]Two[#@!]https://two.invalid/\r\n"));
    }
    void cleanup()
    {
        if (m_first && m_first->state() != QProcess::NotRunning) {
            m_first->kill();
            m_first->waitForFinished();
        }
        m_first.reset();
        m_root.reset();
    }

    void commandsThatNeedAProgramEndWithFourWhenNoneRuns()
    {
        for (const char* option : {"--stop", "--status", "--next", "--quit"}) {
            const Outcome outcome = vantrel({option});
            QCOMPARE(outcome.status, 4);
            QCOMPARE(outcome.err, QStringLiteral("vantrel: Vantrel is not running.\n"));
        }
        QVERIFY(!QFile::exists(door())); // and none was started
    }
    void badArgumentsEndWithTwoAndTheHelpWithZero()
    {
        Outcome outcome = vantrel({"--slot", "12", "https://a.example/"});
        QCOMPARE(outcome.status, 2);
        QVERIFY(outcome.err.contains(QStringLiteral("--slot takes a window from 1 to 8, not \"12\".")));
        outcome = vantrel({"--help"});
        QCOMPARE(outcome.status, 0);
        QVERIFY(outcome.out.contains(QStringLiteral("--run <LIST>")));
        outcome = vantrel({"--version"});
        QCOMPARE(outcome.status, 0);
        QVERIFY(outcome.out.startsWith(QStringLiteral("Vantrel ")));
    }
    void aSecondStartHandsOverAndTheFirstCarriesOut()
    {
        QVERIFY(startFirst());
        QCOMPARE(vantrel({"--new-window", "https://a.invalid/"}).status, 0);
        QJsonObject state = status();
        QVERIFY(!state.isEmpty());
        bool found = false;
        for (const QJsonValue& window : state.value("windows").toArray())
            found = found || window.toObject().value("address").toString() == u"https://a.invalid/";
        QVERIFY(found);
        Outcome outcome = vantrel({"--run", "Nope"});
        QCOMPARE(outcome.status, 3);
        QCOMPARE(outcome.err, QStringLiteral("There is no list \"Nope\". The lists are: Shop.\n"));
        QCOMPARE(vantrel({"--run", "shop", "--interval", "45", "--loop"}).status, 0);
        state = status();
        QCOMPARE(state.value("run").toObject().value("list").toString(), QStringLiteral("Shop"));
        QCOMPARE(state.value("run").toObject().value("interval").toInt(), 45);
        QCOMPARE(vantrel({"--pause"}).status, 0);
        QVERIFY(status().value("run").toObject().value("paused").toBool());
        QCOMPARE(vantrel({"--stop"}).status, 0);
        outcome = vantrel({"--stop"});
        QCOMPARE(outcome.status, 3);
        QCOMPARE(outcome.err, QStringLiteral("No list is running.\n"));
        QCOMPARE(vantrel({"file:///etc/passwd"}).status, 3);
        QCOMPARE(m_first->state(), QProcess::Running);
        // --quit closes the program normally.
        QCOMPARE(vantrel({"--quit"}).status, 0);
        QVERIFY(m_first->waitForFinished(30000));
        QCOMPARE(m_first->exitCode(), 0);
        QCOMPARE(vantrel({"--status"}).status, 4);
    }
    void aWatchPrintsALineAtEachChange()
    {
        QVERIFY(startFirst());
        const std::unique_ptr<QProcess> watch = start({"--status", "--watch"});
        QVERIFY(watch->waitForStarted());
        QVERIFY(waitFor([&] { return watch->canReadLine(); }, 10000));
        const QJsonObject first = QJsonDocument::fromJson(watch->readLine()).object();
        QVERIFY(first.contains("windows"));
        QCOMPARE(vantrel({"--new-window", "https://watched.invalid/"}).status, 0);
        bool seen = false;
        QVERIFY(waitFor([&] {
            while (watch->canReadLine())
                if (watch->readLine().contains("https://watched.invalid/"))
                    seen = true;
            return seen;
        }, 20000));
        QCOMPARE(watch->state(), QProcess::Running); // it goes on listening
        watch->kill();
        watch->waitForFinished();
        QCOMPARE(vantrel({"--status"}).status, 0); // a watcher gone leaves the program as it was
    }
    void twentyStartsAtOnceEndWithOneProgramAndEveryRequestCarriedOut()
    {
        std::vector<std::unique_ptr<QProcess>> starts;
        for (int i = 0; i < 20; ++i)
            starts.push_back(start({"--current-window", QStringLiteral("https://p%1.invalid/").arg(i)}));
        const auto ended = [&] {
            return std::count_if(starts.begin(), starts.end(),
                                 [](const auto& process) { return process->state() == QProcess::NotRunning; });
        };
        QVERIFY(waitFor([&] { return ended() >= 19; }, 90000));
        QTest::qWait(1000); // a twentieth that would end as well has ended by now
        int handedOver = 0;
        int stillRunning = 0;
        for (const auto& process : starts) {
            if (process->state() != QProcess::NotRunning)
                ++stillRunning;
            else if (process->exitStatus() == QProcess::NormalExit && process->exitCode() == 0)
                ++handedOver;
        }
        QCOMPARE(stillRunning, 1);
        QCOMPARE(handedOver, 19);
        QVERIFY(status().value("windows").toArray().size() >= 1);
        for (auto& process : starts) // the one program, ended by cleanup()
            if (process->state() != QProcess::NotRunning)
                m_first = std::move(process);
    }
    void aLockLeftByAKilledProgramIsTakenOver()
    {
        QVERIFY(startFirst());
        m_first->kill(); // kill -9: lock file and socket stay behind
        QVERIFY(m_first->waitForFinished());
        QVERIFY(QFile::exists(door()));
        QCOMPARE(vantrel({"--status"}).status, 4);
        QVERIFY(startFirst());
        QCOMPARE(vantrel({"--status"}).status, 0);
    }
    void garbageAndSilenceOnTheSocketChangeNothingAndBlockNobody()
    {
        QVERIFY(startFirst());
        QLocalSocket garbage;
        garbage.connectToServer(door());
        QVERIFY(garbage.waitForConnected(5000));
        garbage.write("GET / HTTP/1.1\r\n\r\n");
        QVERIFY(garbage.waitForDisconnected(5000)); // refused at its first bytes
        QLocalSocket half;
        half.connectToServer(door());
        QVERIFY(half.waitForConnected(5000));
        half.write(DoorMessage::encode(DoorMessage::Request{{"--quit"}, {}, {}}).left(12));
        QVERIFY(half.waitForBytesWritten(5000));
        // While it hangs there, others are served.
        QElapsedTimer timer;
        timer.start();
        QCOMPARE(vantrel({"--status"}).status, 0);
        QVERIFY(timer.elapsed() < 4000);
        QVERIFY(half.waitForDisconnected(10000)); // dropped after its time
        QCOMPARE(m_first->state(), QProcess::Running); // the half "--quit" did nothing
        QFile log(m_root->filePath("data/Vantrel/Vantrel.log"));
        QVERIFY(log.open(QIODevice::ReadOnly));
        const QByteArray text = log.readAll();
        QVERIFY(text.contains("a message from another start was refused: not a message of Vantrel"));
        QVERIFY(text.contains("a message from another start was refused: it said nothing for 5 s"));
    }
    void theProgramAnswersOnItsSessionBus()
    {
        QProcess daemon;
        daemon.start("dbus-daemon", {"--session", "--nofork", "--print-address"});
        QVERIFY(daemon.waitForStarted());
        QVERIFY(daemon.waitForReadyRead(10000));
        m_busAddress = QString::fromUtf8(daemon.readLine().trimmed());
        QVERIFY(startFirst());
        const auto gdbus = [&](const QStringList& call) {
            QProcess process;
            QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
            env.insert("DBUS_SESSION_BUS_ADDRESS", m_busAddress);
            process.setProcessEnvironment(env);
            process.start("gdbus", QStringList{"call", "--session", "--dest", "org.vantrel.Vantrel", "--object-path",
                                               "/org/vantrel/Vantrel", "--method"} +
                                       call);
            process.waitForFinished(20000);
            return std::pair{process.exitCode(), QString::fromUtf8(process.readAllStandardOutput() +
                                                                   process.readAllStandardError())};
        };
        auto [status, text] = gdbus({"org.vantrel.Vantrel.Run", "Shop", "40", "true", "false", "false"});
        QCOMPARE(status, 0);
        QJsonObject state = this->status();
        QCOMPARE(state.value("run").toObject().value("interval").toInt(), 40);
        std::tie(status, text) = gdbus({"org.vantrel.Vantrel.Run", "Nope", "40", "true", "false", "false"});
        QVERIFY(status != 0);
        QVERIFY2(text.contains("org.vantrel.Vantrel.Error.Refused") &&
                     text.contains("There is no list \"Nope\". The lists are: Shop."),
                 qPrintable(text));
        std::tie(status, text) = gdbus({"org.vantrel.Vantrel.Status"});
        QCOMPARE(status, 0);
        QVERIFY2(text.contains("\"list\":\"Shop\""), qPrintable(text));
        QCOMPARE(gdbus({"org.vantrel.Vantrel.Quit", "false"}).first, 0);
        QVERIFY(m_first->waitForFinished(30000));
        m_busAddress.clear();
        daemon.kill();
        daemon.waitForFinished();
    }
    void aStartThatLooksInAnotherRuntimeFolderFindsTheProgramOnTheBus()
    {
        QProcess daemon;
        daemon.start("dbus-daemon", {"--session", "--nofork", "--print-address"});
        QVERIFY(daemon.waitForStarted());
        QVERIFY(daemon.waitForReadyRead(10000));
        m_busAddress = QString::fromUtf8(daemon.readLine().trimmed());
        QVERIFY(startFirst());
        // The same person's session, but a runtime folder the first program's lock is not in.
        const QString elsewhere = m_root->filePath("elsewhere");
        QVERIFY(QDir().mkpath(elsewhere));
        QVERIFY(QFile::setPermissions(elsewhere, QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner));
        QProcess second;
        QProcessEnvironment env = environment();
        env.insert("XDG_RUNTIME_DIR", elsewhere);
        second.setProcessEnvironment(env);
        second.setWorkingDirectory(m_root->path());
        second.start(QStringLiteral(VANTREL_PROGRAM), {"--new-window", "https://bus.invalid/"});
        QVERIFY(second.waitForFinished(30000));
        QCOMPARE(second.exitCode(), 0);
        const QJsonArray windows = status().value("windows").toArray();
        QVERIFY(std::any_of(windows.begin(), windows.end(), [](const QJsonValue& window) {
            return window.toObject().value("address").toString() == u"https://bus.invalid/";
        }));
        // A refusal comes back to the start as it would through the socket.
        second.start(QStringLiteral(VANTREL_PROGRAM), {"--run", "Nope"});
        QVERIFY(second.waitForFinished(30000));
        QCOMPARE(second.exitCode(), 3);
        QVERIFY(QString::fromLocal8Bit(second.readAllStandardError()).contains("There is no list \"Nope\""));
        QCOMPARE(m_first->state(), QProcess::Running);
        QCOMPARE(vantrel({"--quit"}).status, 0);
        QVERIFY(m_first->waitForFinished(30000));
        m_busAddress.clear();
        daemon.kill();
        daemon.waitForFinished();
    }
    void aSocketThatIsNotTheUsersOwnIsNeverSpokenTo()
    {
        if (::geteuid() != 0)
            QSKIP("needs root to give the socket to another user");
        const QString folder = runtime() + QStringLiteral("/vantrel");
        QVERIFY(QDir().mkpath(folder));
        QVERIFY(QFile::setPermissions(folder, QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner));
        QLocalServer stranger;
        QVERIFY(stranger.listen(door()));
        QVERIFY(::chown(QFile::encodeName(door()).constData(), 65534, 65534) == 0);
        QCOMPARE(vantrel({"--status"}).status, 4); // not "answered" by the stranger
        QVERIFY(!stranger.hasPendingConnections());
        QVERIFY(!stranger.waitForNewConnection(200));
    }
};

QTEST_GUILESS_MAIN(TestInstance)
#include "tst_instance.moc"
