// Requests from outside carried out through the verbs, with scripted windows and the manual clock:
// pages opened where asked (shortcut files too, only http and https), runs started and steered,
// refusals in words with their status, the state as JSON, raise and quit handed to the window.
#include "RecordingDoorHost.h"
#include "VerbsHarness.h"
#include "doors/DoorCommands.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>

class TestDoorCommands : public QObject
{
    Q_OBJECT

    std::unique_ptr<VerbsHarness> h;
    RecordingDoorHost host;
    QTemporaryDir folder;

    DoorMessage::Reply carryOut(const QStringList& arguments)
    {
        const CommandRequest request = CommandLine::parse(arguments);
        if (!request.error.isEmpty())
            qFatal("bad test arguments: %s", qPrintable(request.error));
        return DoorCommands::carryOut(request, *h->verbs, host, folder.path(), QStringLiteral("token-9"));
    }
    Verbs* verbs() { return h->verbs.get(); }

private slots:
    void init()
    {
        h = std::make_unique<VerbsHarness>();
        h->setLists({{QStringLiteral("Walls"), {{"W1", "https://w1.example/"}, {"W2", "https://w2.example/"}}},
                     {QStringLiteral("Lobby"), {{"L1", "https://l1.example/"}}}});
        host = RecordingDoorHost();
    }
    void cleanup() { h.reset(); }

    void pagesOpenWhereAsked()
    {
        QCOMPARE(carryOut({"--new-window", "https://a.example/", "b.example"}).status, 0);
        QCOMPARE(h->window(1)->navigations, QStringList{"https://a.example/"});
        QCOMPARE(h->window(2)->navigations, QStringList{"http://b.example"});
        QCOMPARE(carryOut({"--slot", "5", "https://c.example/"}).status, 0);
        QCOMPARE(h->window(5)->navigations, QStringList{"https://c.example/"});
        QCOMPARE(carryOut({"--current-window", "https://d.example/"}).status, 0);
        QCOMPARE(h->window(5)->navigations.last(), QStringLiteral("https://d.example/"));
        QVERIFY(host.raised.isEmpty()); // pages alone raise nothing over the screen's windows
    }
    void aShortcutFileOpensItsPageNamedAfterIt()
    {
        QFile file(folder.filePath(QStringLiteral("Morning News.url")));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("[InternetShortcut]\r\nURL=https://news.example/today\r\n");
        file.close();
        QCOMPARE(carryOut({"--new-window", "Morning News.url"}).status, 0); // relative to the caller's folder
        QCOMPARE(h->window(1)->navigations, QStringList{"https://news.example/today"});
        // As the file manager hands it to the launcher: a file: URL.
        const QString asUrl = QUrl::fromLocalFile(file.fileName()).toString(QUrl::FullyEncoded);
        QVERIFY(asUrl.contains(QLatin1String("%20")));
        QCOMPARE(carryOut({"--new-window", asUrl}).status, 0);
        QCOMPARE(h->window(2)->navigations, QStringList{"https://news.example/today"});
        QCOMPARE(verbs()->window(1).address, QStringLiteral("https://news.example/today"));
    }
    void onlyWebPagesComeFromOutsideAndNothingOpensWhenOneIsBad()
    {
        QFile file(folder.filePath(QStringLiteral("local.url")));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("[InternetShortcut]\r\nURL=file:///etc/passwd\r\n");
        file.close();
        DoorMessage::Reply reply = carryOut({"https://fine.example/", "file:///etc/passwd"});
        QCOMPARE(reply.status, 3);
        QCOMPARE(reply.err, QStringLiteral("\"file:///etc/passwd\" is not an http or https address.\n"));
        QVERIFY(h->created.isEmpty());
        reply = carryOut({"local.url"});
        QCOMPARE(reply.status, 3);
        QVERIFY(reply.err.contains(QStringLiteral("holds no web address")));
        reply = carryOut({"missing.url"});
        QCOMPARE(reply.status, 3);
        QVERIFY(reply.err.contains(QStringLiteral("cannot be read")));
        QVERIFY(h->created.isEmpty());
    }
    void atTheLimitAnOutsideCallerIsRefusedNeverAsked()
    {
        for (int i = 1; i <= 8; ++i)
            QCOMPARE(carryOut({"--new-window", QStringLiteral("https://p%1.example/").arg(i)}).status, 0);
        const DoorMessage::Reply reply = carryOut({"--new-window", "https://ninth.example/"});
        QCOMPARE(reply.status, 3);
        QCOMPARE(reply.err, QStringLiteral("All eight windows are open.\n"));
        QVERIFY(DialogService::shownTexts().isEmpty()); // nobody at the screen was asked
    }
    void aRunIsStartedAndSteered()
    {
        QCOMPARE(carryOut({"--run", "walls", "--interval", "30", "--loop"}).status, 0);
        QVERIFY(verbs()->state().run.running);
        QCOMPARE(verbs()->state().run.list, QStringLiteral("Walls"));
        QCOMPARE(verbs()->state().run.intervalSeconds, 30);
        verbs()->tick();
        QCOMPARE(carryOut({"--pause"}).status, 0);
        QVERIFY(verbs()->state().run.paused);
        QCOMPARE(carryOut({"--resume"}).status, 0);
        QVERIFY(!verbs()->state().run.paused);
        QCOMPARE(carryOut({"--next"}).status, 0);
        QCOMPARE(carryOut({"--previous"}).status, 0);
        QCOMPARE(carryOut({"--stop"}).status, 0);
        QVERIFY(!verbs()->state().run.running);
        const DoorMessage::Reply again = carryOut({"--stop"});
        QCOMPARE(again.status, 3);
        QCOMPARE(again.err, QStringLiteral("No list is running.\n"));
    }
    void anUnknownListIsRefusedNamingTheListsThereAre()
    {
        const DoorMessage::Reply reply = carryOut({"--run", "Shop"});
        QCOMPARE(reply.status, 3);
        QCOMPARE(reply.err, QStringLiteral("There is no list \"Shop\". The lists are: Walls, Lobby.\n"));
    }
    void reloadTakesTheCurrentWindowOrTheOneNamed()
    {
        QCOMPARE(carryOut({"--reload"}).err, QStringLiteral("No window is open.\n"));
        QCOMPARE(carryOut({"--new-window", "https://a.example/"}).status, 0);
        QCOMPARE(carryOut({"--reload"}).status, 0);
        QCOMPARE(carryOut({"--reload", "4"}).err, QStringLiteral("Window 4 is not open.\n"));
    }
    void theStateIsOneLineOfJson()
    {
        QCOMPARE(carryOut({"--new-window", "https://a.example/"}).status, 0);
        QCOMPARE(carryOut({"--run", "Lobby", "--interval", "60"}).status, 0);
        const DoorMessage::Reply reply = carryOut({"--status"});
        QCOMPARE(reply.status, 0);
        QVERIFY(reply.out.endsWith(u'\n'));
        QCOMPARE(reply.out.count(u'\n'), 1);
        const QJsonObject state = QJsonDocument::fromJson(reply.out.toUtf8()).object();
        const QJsonArray windows = state.value("windows").toArray();
        QCOMPARE(windows.size(), 1);
        QCOMPARE(windows[0].toObject().value("slot").toInt(), 1);
        QCOMPARE(windows[0].toObject().value("address").toString(), QStringLiteral("https://a.example/"));
        QVERIFY(windows[0].toObject().contains("title"));
        QVERIFY(windows[0].toObject().contains("state"));
        const QJsonObject run = state.value("run").toObject();
        QCOMPARE(run.value("list").toString(), QStringLiteral("Lobby"));
        QCOMPARE(run.value("interval").toInt(), 60);
        QVERIFY(run.contains("position"));
        QVERIFY(run.contains("secondsToNext"));
        QCOMPARE(run.value("paused").toBool(), false);
    }
    void theLaunchersActionsOpenTheNewPageAndRunTheStartUpList()
    {
        globals().NewWindowUrl = QStringLiteral("https://new.example/");
        QCOMPARE(carryOut({"--new-window"}).status, 0);
        QCOMPARE(h->window(1)->navigations, QStringList{"https://new.example/"});
        QCOMPARE(carryOut({"--new-window"}).status, 0);
        QCOMPARE(h->window(2)->navigations, QStringList{"https://new.example/"});
        QVERIFY(host.raised.isEmpty());
        const DoorMessage::Reply none = carryOut({"--run-startup-list"});
        QCOMPARE(none.status, 3);
        QCOMPARE(none.err, QStringLiteral("No start-up list is chosen in the options.\n"));
        host.startupListChosen = true;
        QCOMPARE(carryOut({"--run-startup-list"}).status, 0);
        QCOMPARE(host.startupRuns, 2);
    }
    void raiseAndQuitAreTheWindowsOwn()
    {
        QCOMPARE(carryOut({"--raise"}).status, 0);
        QCOMPARE(host.raised, QStringList{"token-9"});
        QCOMPARE(carryOut({}).status, 0); // a plain second start brings the first up
        QCOMPARE(host.raised.size(), 2);
        QCOMPARE(carryOut({"--quit", "--discard"}).status, 0);
        QVERIFY(host.quits.isEmpty()); // the caller hears first
        QTRY_COMPARE(host.quits, QList<bool>{true});
    }
};

QTEST_GUILESS_MAIN(TestDoorCommands)
#include "tst_doorcommands.moc"
