#include "TestSupport.h"
#include "watch/EventLog.h"
#include "session/SessionFile.h"
#include "session/SessionKeeper.h"
#include "core/Clock.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QTest>

// The session file, its keeping while the program runs, and what a start does with it.
class TestSession : public QObject
{
    Q_OBJECT

    std::unique_ptr<TempAppFolder> m_app;
    std::unique_ptr<ManualClock> m_clock;

    static Session sample()
    {
        Session s;
        s.windows = {{1, "http://127.0.0.1:8000/a.html", "Page A"},
                     {3, "https://example.org/b?x=1&y=%20", "B \"quoted\" = [x]\tand a tab"},
                     {8, "http://127.0.0.1:8000/c.html", QString::fromUtf8("Ümlaut \xe2\x9c\x93 title\r\nsecond line")}};
        s.currentSlot = 3;
        s.newWindowMode = false;
        s.run = SessionRun{"Morning Dashboards", 60, true, true, false, 5, {}};
        return s;
    }
    QString file() { return m_app->file("Session.INI"); }
    std::optional<Session> readBack(QString* problem = nullptr) { return SessionFile::read(file(), problem); }
    QString problemWith(const QByteArray& bytes)
    {
        if (!writeAll(file(), bytes))
            return "not written";
        QString problem;
        if (readBack(&problem))
            return QString();
        return problem;
    }

private slots:
    void init()
    {
        m_app = std::make_unique<TempAppFolder>();
        m_clock = std::make_unique<ManualClock>(QDateTime(QDate(2026, 5, 1), QTime(10, 0)));
        Clock::setInstance(m_clock.get());
    }
    void cleanup()
    {
        Clock::setInstance(nullptr);
        m_app.reset();
    }

    void runsInOtherWindowsComeBackWithTheirWindows()
    {
        Session s = sample();
        s.otherRuns = {SessionRun{"Lobby", 10, true, true, true, 2, {5, 6}},
                       SessionRun{"Kitchen", 45, false, false, false, 0, {7}}};
        QVERIFY(SessionFile::write(file(), s));
        QVERIFY(readAll(file()).contains("[OtherRun2]\nList=Kitchen\n"));
        QVERIFY(readAll(file()).contains("Windows=5,6\n"));
        QCOMPARE(readBack(), std::optional<Session>(s));
        // A window named twice, or no window at all, is a damaged file.
        QByteArray twice = readAll(file());
        twice.replace("Windows=7", "Windows=6");
        QCOMPARE(problemWith(twice), QStringLiteral("it is damaged"));
        QByteArray none = readAll(file());
        none.replace("Windows=5,6", "Windows=");
        QCOMPARE(problemWith(none), QStringLiteral("it is damaged"));
        QByteArray outside = readAll(file());
        outside.replace("Windows=5,6", "Windows=5,9");
        QCOMPARE(problemWith(outside), QStringLiteral("it is damaged"));
    }

    void aSessionComesBackAsItWasWritten()
    {
        QCOMPARE(SessionFile::path(), file());
        const Session s = sample();
        QVERIFY(SessionFile::write(file(), s));
        const std::optional<Session> back = readBack();
        QVERIFY(back);
        QCOMPARE(back->windows.size(), 3);
        QCOMPARE(back->windows[1].title, s.windows[1].title);
        QCOMPARE(back->windows[2].title, s.windows[2].title);
        QCOMPARE(back->windows[1].address, s.windows[1].address);
        QVERIFY(*back == s);
        // One key a line: the title's line ends are written escaped.
        const QByteArray bytes = readAll(file());
        QVERIFY(bytes.contains("Title=\xc3\x9cmlaut \xe2\x9c\x93 title%0D%0Asecond line\n"));
        QVERIFY(bytes.startsWith("[Session]\nVersion=1\nEnded=running\nCurrent=3\nNewWindowMode=0\n"));

        Session ended;
        ended.endedNormally = true;
        QVERIFY(SessionFile::write(file(), ended));
        QVERIFY(*readBack() == ended);
        QVERIFY(!readBack()->run);
    }
    void noFileIsNoSessionAndNoProblem()
    {
        QString problem = "x";
        QVERIFY(!readBack(&problem));
        QVERIFY(problem.isEmpty());
    }
    void aFileThatCannotBeTrustedIsRefusedWithItsReason()
    {
        QVERIFY(SessionFile::write(file(), sample()));
        const QByteArray good = readAll(file());
        QCOMPARE(problemWith(good), QString());
        QCOMPARE(problemWith(""), QStringLiteral("it is damaged"));
        QCOMPARE(problemWith(good.left(good.size() / 3)), QStringLiteral("it is damaged"));
        QCOMPARE(problemWith(QByteArray(good).replace("Version=1", "Version=2")),
                 QStringLiteral("it is from another version (2)"));
        QCOMPARE(problemWith(QByteArray(good).replace("Version=1", "Version=one")), QStringLiteral("it is damaged"));
        QCOMPARE(problemWith(QByteArray(good).replace("[Window8]", "[Window9]")),
                 QStringLiteral("it names a slot outside 1 to 8"));
        QCOMPARE(problemWith(QByteArray(good).replace("[Window1]", "[Window0]")),
                 QStringLiteral("it names a slot outside 1 to 8"));
        QCOMPARE(problemWith(QByteArray(good).replace("Current=3", "Current=12")),
                 QStringLiteral("it names a slot outside 1 to 8"));
        QCOMPARE(problemWith(QByteArray(good).replace("[Window8]", "[Window3]")), QStringLiteral("it is damaged"));
        QCOMPARE(problemWith(QByteArray(good).replace("[Window8]", "[Window03]")), QStringLiteral("it is damaged"));
        QCOMPARE(problemWith(QByteArray(good).replace("Ended=running", "Ended=maybe")), QStringLiteral("it is damaged"));
        QCOMPARE(problemWith(QByteArray(good).replace("Interval=60", "Interval=-5")), QStringLiteral("it is damaged"));
        QCOMPARE(problemWith(QByteArray(good).replace("Position=5", "Position=")), QStringLiteral("it is damaged"));
        QCOMPARE(problemWith(QByteArray(good).replace("Address=http://127.0.0.1:8000/a.html", "Address=")),
                 QStringLiteral("it is damaged"));
        QCOMPARE(problemWith(QByteArray(good).append("garbage line\n")), QStringLiteral("it is damaged"));
        QCOMPARE(problemWith(QByteArray(10000, '\0')), QStringLiteral("it is damaged"));
    }
    void randomBytesNeverBreakTheReader()
    {
        QVERIFY(SessionFile::write(file(), sample()));
        const QByteArray good = readAll(file());
        QRandomGenerator random(20261121);
        int accepted = 0;
        for (int round = 0; round < 2000; ++round) {
            QByteArray bytes = good;
            const int changes = 1 + int(random.bounded(6));
            for (int c = 0; c < changes; ++c)
                bytes[int(random.bounded(int(bytes.size())))] = char(random.bounded(256));
            QVERIFY(writeAll(file(), bytes));
            QString problem;
            const std::optional<Session> s = readBack(&problem);
            if (s) {
                ++accepted;
                for (const SessionWindow& w : s->windows)
                    QVERIFY(w.slot >= 1 && w.slot <= 8);
                QVERIFY(s->currentSlot >= 0 && s->currentSlot <= 8);
            } else {
                QVERIFY(!problem.isEmpty());
            }
        }
        QVERIFY(accepted > 0); // changes inside titles and addresses are no damage
    }

    void theKeeperWritesAtMostOnceASecondAndOnlyChanges()
    {
        Session now = sample();
        SessionKeeper keeper(file(), [&] { return now; });
        keeper.tick();
        QVERIFY(!QFile::exists(file())); // not keeping before start()
        keeper.start();
        QCOMPARE(keeper.writes(), 0); // the start waits for no disk
        QVERIFY(!QFile::exists(file()));
        keeper.tick();
        QCOMPARE(keeper.writes(), 1);
        QVERIFY(!readBack()->endedNormally);
        // Nothing changed: nothing written, however often it ticks.
        for (int i = 0; i < 10; ++i) {
            m_clock->advanceSeconds(0.6);
            keeper.tick();
        }
        QCOMPARE(keeper.writes(), 1);
        // Changes within a second of the last write wait; the last of them is written.
        m_clock->advanceSeconds(0.6);
        now.windows[0].title = "changed once";
        keeper.tick();
        QCOMPARE(keeper.writes(), 2);
        m_clock->advanceSeconds(0.6);
        now.windows[0].title = "changed twice";
        keeper.tick();
        QCOMPARE(keeper.writes(), 2);
        QCOMPARE(readBack()->windows[0].title, QStringLiteral("changed once"));
        m_clock->advanceSeconds(0.6);
        now.windows[0].title = "changed three times";
        keeper.tick();
        QCOMPARE(keeper.writes(), 3);
        QCOMPARE(readBack()->windows[0].title, QStringLiteral("changed three times"));
    }
    void theUnloadEndsTheSessionAsItWasAndWritesNothingAfter()
    {
        Session now = sample();
        SessionKeeper keeper(file(), [&] { return now; });
        keeper.start();
        keeper.tick();
        now.currentSlot = 8;
        keeper.end(); // at once, whatever the time since the last write
        QCOMPARE(keeper.writes(), 2);
        std::optional<Session> back = readBack();
        QVERIFY(back->endedNormally);
        QCOMPARE(back->currentSlot, 8);
        QCOMPARE(back->windows.size(), 3);
        // The windows closing during the unload are not the session.
        now.windows.clear();
        m_clock->advanceSeconds(5);
        keeper.tick();
        keeper.end();
        QCOMPARE(readBack()->windows.size(), 3);
        QVERIFY(!keeper.keeping());
    }
    void aSaveThatFailsIsSaidOnceAndTriedAgain()
    {
        Session now = sample();
        const QString blocked = m_app->file("no-such-folder/Session.INI");
        SessionKeeper keeper(blocked, [&] { return now; });
        keeper.start();
        keeper.tick();
        m_clock->advanceSeconds(1.2);
        keeper.tick();
        m_clock->advanceSeconds(1.2);
        keeper.tick();
        QCOMPARE(keeper.writes(), 0);
        QCOMPARE(readAll(EventLog::path()).count("session could not be saved in"), 1);
        QVERIFY(QDir().mkpath(m_app->file("no-such-folder")));
        m_clock->advanceSeconds(1.2);
        keeper.tick();
        QCOMPARE(keeper.writes(), 1);
        QVERIFY(SessionFile::read(blocked));
    }

    void whatAStartDoesWithTheLastSession()
    {
        Session crashed = sample();
        Session crashedNoRun = sample();
        crashedNoRun.run.reset();
        Session ended = sample();
        ended.endedNormally = true;
        Session empty;
        auto is = [](SessionStart s, SessionStart::Action action, bool withRun) {
            return s.action == action && s.withRun == withRun;
        };
        QVERIFY(is(decideSessionStart(std::nullopt, false, false), SessionStart::Nothing, false));
        QVERIFY(is(decideSessionStart(empty, false, true), SessionStart::Nothing, false));
        QVERIFY(is(decideSessionStart(crashed, false, false), SessionStart::Ask, true));
        QVERIFY(is(decideSessionStart(crashedNoRun, false, false), SessionStart::Ask, false));
        QVERIFY(is(decideSessionStart(crashed, true, false), SessionStart::Reopen, true));
        QVERIFY(is(decideSessionStart(crashed, false, true), SessionStart::Reopen, true));
        QVERIFY(is(decideSessionStart(ended, false, false), SessionStart::Nothing, false));
        QVERIFY(is(decideSessionStart(ended, true, false), SessionStart::Nothing, false));
        QVERIFY(is(decideSessionStart(ended, false, true), SessionStart::Reopen, false));
    }
    void theQuestionNamesTheWindowsAndTheRun()
    {
        Session s = sample();
        QCOMPARE(sessionQuestion(s), QStringLiteral("Vantrel did not close normally. Reopen its 3 browser windows "
                                                    "and go on running the list Morning Dashboards?"));
        s.run.reset();
        QCOMPARE(sessionQuestion(s), QStringLiteral("Vantrel did not close normally. Reopen its 3 browser windows?"));
        s.windows.resize(1);
        QCOMPARE(sessionQuestion(s), QStringLiteral("Vantrel did not close normally. Reopen its browser window?"));
        s.windows.clear();
        s.run = SessionRun{"L", 30, false, false, false, 1, {}};
        QCOMPARE(sessionQuestion(s), QStringLiteral("Vantrel did not close normally. Go on running the list L?"));
        // Lists that ran in other windows are named too, and go on with the windows.
        s.otherRuns = {SessionRun{"Lobby", 30, true, true, false, 0, {5}}, SessionRun{"Shop", 30, true, true, false, 0, {6}}};
        QCOMPARE(sessionQuestion(s), QStringLiteral("Vantrel did not close normally. Go on running the lists L, Lobby and Shop?"));
        s.run.reset();
        QCOMPARE(sessionQuestion(s), QStringLiteral("Vantrel did not close normally. Go on running the lists Lobby and Shop?"));
        QVERIFY(decideSessionStart(s, false, false).withRun);
    }
};

QTEST_GUILESS_MAIN(TestSession)
#include "tst_session.moc"
