#include "doors/CommandLine.h"

#include <QTest>

using Action = CommandRequest::Action;
using Where = CommandRequest::Where;

class TestCommandLine : public QObject
{
    Q_OBJECT

    static CommandRequest parse(const QStringList& arguments) { return CommandLine::parse(arguments); }

private slots:
    void pagesOpenAsTheNewButtonOrWhereAsked()
    {
        CommandRequest r = parse({"https://example.org/", "/home/me/Favorites/News.url"});
        QVERIFY(r.error.isEmpty());
        QCOMPARE(r.action, Action::Open);
        QCOMPARE(r.pages, (QStringList{"https://example.org/", "/home/me/Favorites/News.url"}));
        QCOMPARE(r.where, Where::AsTheNewButton);
        QVERIFY(!r.needsRunningProgram());
        QCOMPARE(parse({"--new-window", "a.org"}).where, Where::NewWindow);
        QCOMPARE(parse({"--current-window", "a.org"}).where, Where::CurrentWindow);
        r = parse({"--slot", "3", "a.org"});
        QCOMPARE(r.where, Where::Slot);
        QCOMPARE(r.slot, 3);
        r = parse({"--new-window"}); // the launcher's "New Window"
        QVERIFY(r.error.isEmpty());
        QCOMPARE(r.where, Where::NewWindow);
        QVERIFY(r.pages.isEmpty());
        QCOMPARE(parse({"--run-startup-list"}).action, Action::RunStartupList);
        QVERIFY(!parse({"--run-startup-list"}).needsRunningProgram());
        QCOMPARE(parse({}).action, Action::Open); // a plain start
        QVERIFY(parse({}).pages.isEmpty());
    }
    void aRunTakesItsChoices()
    {
        const CommandRequest r =
            parse({"--run", "Shop Window", "--interval", "45", "--loop", "--several-windows", "--keep-loaded"});
        QVERIFY2(r.error.isEmpty(), qPrintable(r.error));
        QCOMPARE(r.action, Action::Run);
        QCOMPARE(r.list, QStringLiteral("Shop Window"));
        QCOMPARE(r.intervalSeconds, 45);
        QVERIFY(r.loop && r.severalWindows && r.keepLoaded);
        const CommandRequest plain = parse({"--run", "Shop"});
        QCOMPARE(plain.intervalSeconds, 120);
        QVERIFY(!plain.loop && !plain.severalWindows && !plain.keepLoaded);
        QVERIFY(!plain.needsRunningProgram()); // a run starts Vantrel when none runs
    }
    void eachVerbIsOneOption()
    {
        const QList<std::pair<QString, Action>> verbs{{"--stop", Action::Stop},       {"--next", Action::Next},
                                                      {"--previous", Action::Previous}, {"--pause", Action::Pause},
                                                      {"--resume", Action::Resume},   {"--reload", Action::Reload},
                                                      {"--raise", Action::Raise},     {"--quit", Action::Quit},
                                                      {"--status", Action::Status}};
        for (const auto& [option, action] : verbs) {
            const CommandRequest r = parse({option});
            QVERIFY2(r.error.isEmpty(), qPrintable(option + ": " + r.error));
            QCOMPARE(r.action, action);
            QCOMPARE(r.needsRunningProgram(), action != Action::Raise);
        }
        QCOMPARE(parse({"--reload", "5"}).slot, 5);
        QCOMPARE(parse({"--reload"}).slot, 0);
        QVERIFY(parse({"--quit", "--discard"}).discard);
        QVERIFY(!parse({"--quit"}).discard);
        QVERIFY(parse({"--status", "--watch"}).watch);
        QVERIFY(parse({"--help"}).help);
        QVERIFY(parse({"--version"}).version);
    }
    void badArgumentsAreNamed_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("error");
        QTest::newRow("unknown") << QStringList{"--frobnicate"} << "Unknown option 'frobnicate'.";
        QTest::newRow("two verbs") << QStringList{"--stop", "--next"} << "Choose one of --stop, --next, not all of them.";
        QTest::newRow("slot out of range") << QStringList{"--slot", "9", "a.org"}
                                           << "--slot takes a window from 1 to 8, not \"9\".";
        QTest::newRow("slot not a number") << QStringList{"--slot", "two", "a.org"}
                                           << "--slot takes a window from 1 to 8, not \"two\".";
        QTest::newRow("two places") << QStringList{"--new-window", "--slot", "2", "a.org"}
                                    << "Choose one of --new-window, --current-window and --slot.";
        QTest::newRow("place without pages to open") << QStringList{"--stop", "--new-window"}
                                                     << "--new-window, --current-window and --slot go only with pages to open.";
        QTest::newRow("interval without run") << QStringList{"--interval", "30"} << "--interval goes only with --run.";
        QTest::newRow("bad interval") << QStringList{"--run", "Shop", "--interval", "-4"}
                                      << "--interval takes a number of seconds, not \"-4\".";
        QTest::newRow("run without list") << QStringList{"--run", " "} << "--run needs the name of a list.";
        QTest::newRow("missing value") << QStringList{"--run"} << "Missing value after '--run'.";
        QTest::newRow("discard without quit") << QStringList{"--discard"} << "--discard goes only with --quit.";
        QTest::newRow("watch without status") << QStringList{"--watch"} << "--watch goes only with --status.";
        QTest::newRow("page with a verb") << QStringList{"--stop", "a.org"} << "\"a.org\" was not expected with --stop.";
        QTest::newRow("reload of no window") << QStringList{"--reload", "12"}
                                             << "--reload takes a window from 1 to 8, not \"12\".";
        QTest::newRow("reload of two") << QStringList{"--reload", "1", "2"} << "--reload takes one window at most.";
        QTest::newRow("empty page") << QStringList{""} << "An empty page was given.";
        QTest::newRow("slot without pages") << QStringList{"--slot", "2"} << "--current-window and --slot need pages to open.";
        QTest::newRow("current without pages") << QStringList{"--current-window"}
                                               << "--current-window and --slot need pages to open.";
    }
    void badArgumentsAreNamed()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QString, error);
        QCOMPARE(parse(arguments).error, error);
    }
    void theHelpNamesEveryOption()
    {
        const QString help = CommandLine::helpText();
        for (const char* option : {"--new-window", "--current-window", "--slot <N>", "--run <LIST>", "--interval",
                                   "--loop", "--several-windows", "--keep-loaded", "--run-startup-list", "--stop", "--next", "--previous",
                                   "--pause", "--resume", "--reload", "--raise", "--quit", "--discard", "--status",
                                   "--watch", "--version"})
            QVERIFY2(help.contains(QLatin1String(option)), option);
    }
};

QTEST_GUILESS_MAIN(TestCommandLine)
#include "tst_commandline.moc"
