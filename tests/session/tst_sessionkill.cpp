#include "LocalHttpServer.h"
#include "TestSupport.h"
#include "session/SessionFile.h"
#include "session/SessionKeeper.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QRandomGenerator>
#include <QTest>

// The program killed with SIGKILL in the middle of its work, and started again: it asks, and
// reopens its windows in their slots with its run going on; it says nothing after a normal close;
// and a hundred kills at random moments never leave a session file it cannot read.
class TestSessionKill : public QObject
{
    Q_OBJECT

    QTemporaryDir m_root;
    LocalHttpServer m_server;

    QString programFolder() const { return m_root.filePath("data/Vantrel"); }
    QString sessionFile() const { return programFolder() + "/Session.INI"; }
    QString page(const QString& name) const { return m_server.url("/" + name + ".html"); }

    // The program in a child process, with its last JSON report.
    struct Child
    {
        QProcess process;
        QJsonObject last;
        QList<QJsonObject> reports;

        ~Child()
        {
            if (process.state() != QProcess::NotRunning)
                kill();
        }

        bool readReports()
        {
            bool any = false;
            while (process.canReadLine()) {
                const QJsonDocument doc = QJsonDocument::fromJson(process.readLine().trimmed());
                if (doc.isObject()) {
                    last = doc.object();
                    reports << last;
                    any = true;
                }
            }
            return any;
        }
        template <typename Check> bool waitFor(Check check, int timeoutMs)
        {
            return ::waitFor(
                [&] {
                    readReports();
                    return !reports.isEmpty() && check(last);
                },
                timeoutMs);
        }
        QJsonObject first(int timeoutMs)
        {
            ::waitFor(
                [&] {
                    readReports();
                    return !reports.isEmpty() || process.state() != QProcess::Running;
                },
                timeoutMs);
            return reports.value(0);
        }
        void kill()
        {
            process.kill(); // SIGKILL: no unload, no last write
            process.waitForFinished(10000);
        }
    };

    std::unique_ptr<Child> start(const QStringList& arguments)
    {
        auto child = std::make_unique<Child>();
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert("QT_QPA_PLATFORM", "offscreen");
        env.insert("HOME", m_root.filePath("home"));
        env.insert("XDG_DATA_HOME", m_root.filePath("data"));
        env.insert("XDG_CONFIG_HOME", m_root.filePath("home/.config"));
        child->process.setProcessEnvironment(env);
        child->process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        child->process.start(QStringLiteral(VANTREL_DRIVEN), arguments);
        child->process.waitForStarted();
        return child;
    }
    static QStringList slotsOf(const QJsonObject& report)
    {
        QStringList open;
        for (const QJsonValue w : report["windows"].toArray())
            open << QString("%1 %2").arg(w["slot"].toInt()).arg(w["first"].toString());
        return open;
    }
    static QStringList slotsOf(const Session& session)
    {
        QStringList open;
        for (const SessionWindow& w : session.windows)
            open << QString("%1 %2").arg(w.slot).arg(w.address);
        return open;
    }
    std::optional<Session> session()
    {
        QString problem;
        std::optional<Session> s = SessionFile::read(sessionFile(), &problem);
        if (!problem.isEmpty())
            qWarning() << "session file refused:" << problem << readAll(sessionFile());
        return s;
    }
    // Four windows on local pages and a one-window run of "Walls" going in the fourth; killed
    // once the run has opened its second page.
    Session killedDuringARun()
    {
        auto child = start({"--clock-speed", "50", "--open", page("a1"), "--open", page("a2"), "--open",
                            page("a3"), "--open", page("a4"), "--run", "Walls"});
        const bool running = waitFor(
            [&] {
                child->readReports();
                const std::optional<Session> s = session();
                return s && s->windows.size() == 4 && s->run && s->run->position >= 2;
            },
            60000);
        child->kill();
        if (!running)
            return {};
        return *session();
    }

private slots:
    void initTestCase()
    {
        QVERIFY(m_server.start());
        for (const QString name : {"a1", "a2", "a3", "a4", "w1", "w2", "w3", "w4", "w5", "w6"})
            m_server.setPage("/" + name + ".html", QString("<html><head><title>%1</title></head><body>%1</body></html>")
                                                       .arg(name)
                                                       .toUtf8());
    }
    void init()
    {
        QDir(m_root.filePath("data")).removeRecursively(); // each test starts from a new program folder
        QDir(m_root.filePath("home")).removeRecursively();
        QVERIFY(QDir().mkpath(programFolder()));
        QVERIFY(QDir().mkpath(m_root.filePath("home")));
        // No first-start notices: a message takes a queued answer as its OK.
        QVERIFY(writeAll(programFolder() + "/Colors.INI", testData("Colors.default.INI")));
        QVERIFY(writeAll(programFolder() + "/Options.INI", testData("Options.default.INI")));
        QByteArray list = "Walls[#@!] [#@!] \r\n";
        for (int i = 1; i <= 6; ++i)
            list += "Walls[#@!]w" + QByteArray::number(i) + "[#@!]" + page(QString("w%1").arg(i)).toUtf8() + "\r\n";
        QVERIFY(writeAll(programFolder() + "/DefaultList.NLS", list));
    }

    void killedAndAnsweredYesItPicksUpWhereItWas()
    {
        const Session killed = killedDuringARun();
        QCOMPARE(killed.windows.size(), 4);
        QVERIFY(!killed.endedNormally);
        QVERIFY(killed.run);
        QCOMPARE(killed.run->list, QStringLiteral("Walls"));
        const int next = killed.run->position;

        auto child = start({"--clock-speed", "50", "--answer", "yes"});
        const QJsonObject first = child->first(60000);
        QCOMPARE(first["asked"].toString(), QStringLiteral("Vantrel did not close normally. Reopen its 4 browser "
                                                           "windows and go on running the list Walls?"));
        QCOMPARE(slotsOf(first), slotsOf(killed));
        QCOMPARE(first["count"].toInt(), 4);
        const QJsonObject run = first["run"].toObject();
        QVERIFY(run["running"].toBool());
        QVERIFY(run["dialog"].toBool());
        QCOMPARE(run["list"].toString(), QStringLiteral("Walls"));
        QVERIFY(!run["several"].toBool());
        QCOMPARE(run["position"].toInt(), next);
        // The run goes on with its next page, in the window it ran in.
        const QString nextPage = page(QString("w%1").arg(next + 1));
        QVERIFY2(child->waitFor([&](const QJsonObject& r) { return r["run"]["currentUrl"].toString() == nextPage; },
                                30000),
                 qPrintable(QJsonDocument(child->last).toJson()));
        QVERIFY(child->waitFor(
            [&](const QJsonObject& r) {
                for (const QJsonValue w : r["windows"].toArray())
                    if (w["slot"].toInt() == 4 && w["row"].toString() == nextPage)
                        return true;
                return false;
            },
            30000));
        QCOMPARE(child->last["count"].toInt(), 4);
        child->process.write("quit\n");
        QVERIFY(child->process.waitForFinished(30000));
        QVERIFY(session()->endedNormally);
    }
    void killedAndAnsweredNoItStartsAsAlways()
    {
        const Session killed = killedDuringARun();
        QCOMPARE(killed.windows.size(), 4);
        auto child = start({"--clock-speed", "50", "--answer", "no"});
        const QJsonObject first = child->first(60000);
        QVERIFY(first["asked"].toString().startsWith("Vantrel did not close normally."));
        QCOMPARE(first["count"].toInt(), 0);
        QVERIFY(!first["run"]["running"].toBool());
        QTest::qWait(1500);
        child->readReports();
        QCOMPARE(child->last["count"].toInt(), 0);
        child->kill();
    }
    void closedNormallyItAsksNothing()
    {
        auto child = start({"--open", page("a1"), "--open", page("a2")});
        QVERIFY(child->waitFor([](const QJsonObject& r) { return r["count"].toInt() == 2; }, 60000));
        child->process.write("quit\n");
        QVERIFY(child->process.waitForFinished(30000));
        QCOMPARE(child->process.exitStatus(), QProcess::NormalExit);
        QVERIFY(session()->endedNormally);
        QCOMPARE(session()->windows.size(), 2);

        child = start({"--answer", "yes"});
        const QJsonObject first = child->first(60000);
        QCOMPARE(first["asked"].toString(), QString());
        QCOMPARE(first["count"].toInt(), 0);
        child->kill();
    }
    void aHundredKillsAtRandomMoments()
    {
        QRandomGenerator random(QRandomGenerator::global()->generate());
        int asked = 0;
        for (int round = 0; round < 100; ++round) {
            // Whatever moment the last kill came at, the file is the old session or the new one.
            QString problem;
            const std::optional<Session> last = SessionFile::read(sessionFile(), &problem);
            QVERIFY2(problem.isEmpty(), qPrintable(QString("round %1: %2").arg(round).arg(problem)));
            const SessionStart expected = decideSessionStart(last, false, false);

            auto child = start({"--scripted", "--answer", "yes", "--run", "Walls", "--several", "--wander",
                                QString::number(random.generate())});
            const QJsonObject first = child->first(20000);
            QVERIFY2(!first.isEmpty(), qPrintable(QString("round %1: no start").arg(round)));
            if (expected.action == SessionStart::Ask) {
                ++asked;
                QCOMPARE(first["asked"].toString(), sessionQuestion(*last));
                QCOMPARE(slotsOf(first), slotsOf(*last));
                QCOMPARE(first["run"]["running"].toBool(), expected.withRun);
                if (expected.withRun)
                    QCOMPARE(first["run"]["position"].toInt(), last->run->position);
            } else {
                QCOMPARE(first["asked"].toString(), QString());
                QCOMPARE(first["count"].toInt(), 0);
            }
            QTest::qWait(int(random.bounded(50, 1500)));
            child->kill();
        }
        qInfo() << asked << "of 100 starts asked to reopen";
        QVERIFY(asked >= 50);
    }
};

QTEST_GUILESS_MAIN(TestSessionKill)
#include "tst_sessionkill.moc"
