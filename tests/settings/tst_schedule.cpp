// The hours of a rotation: rules as a person writes them, what should run at a wall-clock moment
// (ranges past midnight, whole days, holidays, summer time in Europe/Berlin), and the file
// "Schedules.conf" they are kept in.
#include "TestSupport.h"
#include "settings/Schedule.h"
#include "settings/SchedulesFile.h"

#include <QTest>
#include <QTimeZone>

namespace {
QDateTime at(int year, int month, int day, int hour, int minute)
{
    return QDateTime(QDate(year, month, day), QTime(hour, minute));
}

Schedule withRules(const QStringList& rules)
{
    Schedule schedule;
    schedule.name = "Opening hours";
    schedule.list = "Shop";
    for (const QString& text : rules) {
        const std::optional<ScheduleRule> rule = ScheduleRule::fromText(text);
        if (rule)
            schedule.rules << *rule;
    }
    return schedule;
}
} // namespace

class TestSchedule : public QObject
{
    Q_OBJECT

private slots:
    void rulesAreReadAsAPersonWritesThem_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("written");
        QTest::newRow("weekdays") << "Mon-Fri 08:00-18:00" << "Mon-Fri 08:00-18:00";
        QTest::newRow("words") << "Weekdays 8:00-18:00" << "Mon-Fri 08:00-18:00";
        QTest::newRow("weekends") << "weekends 10:00 - 14:30" << "Sat,Sun 10:00-14:30";
        QTest::newRow("daily") << "Daily 00:00-00:00" << "Daily 00:00-00:00";
        QTest::newRow("full names") << "Monday, Wednesday 22:00-06:00" << "Mon,Wed 22:00-06:00";
        QTest::newRow("round the week") << "Fri-Mon 09:00-17:00" << "Mon,Fri-Sun 09:00-17:00";
        QTest::newRow("end of day") << "Tue 18:00-24:00" << "Tue 18:00-00:00";
        QTest::newRow("short days") << "Tues,Thur 07:15-07:45" << "Tue,Thu 07:15-07:45";
    }
    void rulesAreReadAsAPersonWritesThem()
    {
        QFETCH(QString, text);
        QFETCH(QString, written);
        const std::optional<ScheduleRule> rule = ScheduleRule::fromText(text);
        QVERIFY2(rule, qPrintable(text));
        QCOMPARE(rule->toText(), written);
        QCOMPARE(ScheduleRule::fromText(rule->toText()), rule);
    }
    void whatIsNoRuleIsRefused()
    {
        for (const char* text : {"", "Mon", "08:00-18:00", "Mo 08:00-18:00", "Mon 8-18", "Mon 25:00-26:00",
                                 "Mon 08:60-09:00", "Funday 08:00-09:00", "Mon 08:00-09:00-10:00", "Mon,xyz 08:00-09:00"})
            QVERIFY2(!ScheduleRule::fromText(QString::fromLatin1(text)), text);
    }

    void aRangeRunsFromItsStartToJustBeforeItsEndOnItsDays()
    {
        const Schedule schedule = withRules({"Mon-Fri 08:00-18:00"});
        QVERIFY(!schedule.activeAt(at(2026, 11, 23, 7, 59))); // a Monday
        QVERIFY(schedule.activeAt(at(2026, 11, 23, 8, 0)));
        QVERIFY(schedule.activeAt(at(2026, 11, 27, 17, 59))); // Friday
        QVERIFY(!schedule.activeAt(at(2026, 11, 27, 18, 0)));
        QVERIFY(!schedule.activeAt(at(2026, 11, 28, 12, 0))); // Saturday
    }
    void aRangePastMidnightGoesOnIntoTheNextMorning()
    {
        const Schedule schedule = withRules({"Sun,Mon 22:00-06:00"});
        QVERIFY(!schedule.activeAt(at(2026, 11, 23, 21, 59))); // Monday
        QVERIFY(schedule.activeAt(at(2026, 11, 23, 22, 0)));
        QVERIFY(schedule.activeAt(at(2026, 11, 24, 5, 59))); // Tuesday morning, Monday's night
        QVERIFY(!schedule.activeAt(at(2026, 11, 24, 6, 0)));
        QVERIFY(!schedule.activeAt(at(2026, 11, 24, 22, 30))); // Tuesday's night is not in it
        QVERIFY(schedule.activeAt(at(2026, 11, 23, 3, 0))); // Monday morning: Sunday's night
    }
    void aRangeWhoseEndIsItsStartLastsAWholeDay()
    {
        const Schedule schedule = withRules({"Wed 12:00-12:00"});
        QVERIFY(schedule.activeAt(at(2026, 11, 25, 12, 0)));
        QVERIFY(schedule.activeAt(at(2026, 11, 26, 11, 59)));
        QVERIFY(!schedule.activeAt(at(2026, 11, 26, 12, 0)));
        QVERIFY(!schedule.activeAt(at(2026, 11, 25, 11, 59)));
    }
    void aDayLeftOutIsLeftOutWholeAndAnotherRuleCanFillAGap()
    {
        Schedule schedule = withRules({"Daily 20:00-02:00", "Sat 10:00-12:00"});
        schedule.leftOut << QDate(2026, 12, 25);
        QVERIFY(schedule.activeAt(at(2026, 12, 24, 23, 0)));
        QVERIFY(!schedule.activeAt(at(2026, 12, 25, 1, 0))); // the morning of a holiday too
        QVERIFY(!schedule.activeAt(at(2026, 12, 25, 21, 0)));
        QVERIFY(schedule.activeAt(at(2026, 12, 26, 1, 0)));
        QVERIFY(schedule.activeAt(at(2026, 12, 26, 11, 0))); // Saturday's own rule
        schedule.enabled = false;
        QVERIFY(!schedule.activeAt(at(2026, 12, 26, 11, 0)));
    }
    void summerTimeInBerlinFollowsTheWallClock()
    {
        const QTimeZone berlin("Europe/Berlin");
        QVERIFY(berlin.isValid());
        // 2026-03-29: 02:00 becomes 03:00. A rule from 02:30 runs from the first minute that exists.
        const Schedule spring = withRules({"Sun 02:30-04:00"});
        const QDateTime beforeJump = QDateTime(QDate(2026, 3, 29), QTime(0, 59), Qt::UTC);
        QCOMPARE(beforeJump.toTimeZone(berlin).time(), QTime(1, 59));
        QVERIFY(!spring.activeAt(beforeJump.toTimeZone(berlin)));
        const QDateTime afterJump = beforeJump.addSecs(60).toTimeZone(berlin);
        QCOMPARE(afterJump.time(), QTime(3, 0));
        QVERIFY(spring.activeAt(afterJump));
        // 2026-10-25: 03:00 becomes 02:00 again. The hour in the rule is there twice, and runs twice.
        const Schedule autumn = withRules({"Sun 02:10-02:50"});
        int activeMinutes = 0;
        for (QDateTime utc(QDate(2026, 10, 24), QTime(22, 0), Qt::UTC);
             utc < QDateTime(QDate(2026, 10, 25), QTime(4, 0), Qt::UTC); utc = utc.addSecs(60))
            activeMinutes += autumn.activeAt(utc.toTimeZone(berlin));
        QCOMPARE(activeMinutes, 80);
    }
    void theActiveOnesOfManyAreFound()
    {
        QList<Schedule> schedules{withRules({"Mon-Fri 08:00-18:00"}), withRules({"Daily 18:00-08:00"}),
                                  withRules({"Sun 00:00-00:00"})};
        QCOMPARE(ScheduleRules::activeAt(schedules, at(2026, 11, 25, 9, 0)), QList<int>{0});
        QCOMPARE(ScheduleRules::activeAt(schedules, at(2026, 11, 25, 19, 0)), QList<int>{1});
        QCOMPARE(ScheduleRules::activeAt(schedules, at(2026, 11, 29, 7, 0)), (QList<int>{1, 2}));
    }

    void rulesAndDatesAreEditedALineEachAndWhatIsNoneIsNamed()
    {
        QStringList problems;
        const QList<ScheduleRule> rules =
            ScheduleRules::rulesFromLines("Mon-Fri 08:00-18:00\n\n  Sat 10:00-14:00 \nsometimes\n", &problems);
        QCOMPARE(rules.size(), 2);
        QCOMPARE(ScheduleRules::linesOf(rules), QStringLiteral("Mon-Fri 08:00-18:00\nSat 10:00-14:00"));
        QCOMPARE(problems, QStringList{"Line 4 is no rule: \"sometimes\" (write it as Mon-Fri 08:00-18:00)"});
        problems.clear();
        const QList<QDate> dates = ScheduleRules::datesFromLines("2026-12-25\n2026-12-25\n2026-13-01\n 2027-01-01", &problems);
        QCOMPARE(dates, (QList<QDate>{QDate(2026, 12, 25), QDate(2027, 1, 1)}));
        QCOMPARE(ScheduleRules::linesOf(dates), QStringLiteral("2026-12-25\n2027-01-01"));
        QCOMPARE(problems, QStringList{"Line 3 is no date: \"2026-13-01\" (write it as 2026-12-25)"});
    }
    void theFileKeepsEverySchedule()
    {
        TempAppFolder app;
        Schedule first = withRules({"Mon-Fri 08:00-18:00", "Sat 10:00-14:00"});
        first.intervalSeconds = 30;
        first.loop = false;
        first.severalWindows = true;
        first.keepPagesLoaded = true;
        first.windows = {3, 4};
        first.leftOut = {QDate(2026, 12, 25), QDate(2027, 1, 1)};
        first.start = Schedule::Start::WhereItStoppedToday;
        Schedule second = withRules({"Daily 22:00-06:00"});
        second.name = "Night";
        second.list = "Night wall";
        second.enabled = false;
        const QString path = app.file(QString::fromLatin1(SchedulesFile::kFileName));
        QCOMPARE(SchedulesFile::write(path, {first, second}), RunError::None);
        QCOMPARE(SchedulesFile::read(path), (QList<Schedule>{first, second}));
        QVERIFY(readAll(path).contains("Mon-Fri 08:00-18:00 | Sat 10:00-14:00"));
    }
    void whatCannotBeReadIsLeftOutAndTheRestKept()
    {
        TempAppFolder app;
        const QString path = app.file("Schedules.conf");
        QVERIFY(writeAll(path, "[Schedules]\n"
                               "1\\name=No list\n"
                               "2\\list=Shop\n2\\rules=Mon 08:00-09:00 | Someday 1-2 | Sat,Sun 10:00-11:00\n"
                               "2\\leaveOut=2026-12-25, 2026-13-40, yesterday\n2\\windows=\"2,9,x,2\"\n"
                               "2\\interval=-5\n"
                               "size=2\n"));
        const QList<Schedule> schedules = SchedulesFile::read(path);
        QCOMPARE(schedules.size(), 1);
        QCOMPARE(schedules[0].name, QStringLiteral("Shop"));
        QCOMPARE(schedules[0].rules.size(), 2);
        QCOMPARE(schedules[0].rules[1], *ScheduleRule::fromText("Sat,Sun 10:00-11:00")); // its comma kept
        QCOMPARE(schedules[0].leftOut, QList<QDate>{QDate(2026, 12, 25)});
        QCOMPARE(schedules[0].windows, QList<int>{2});
        QCOMPARE(schedules[0].intervalSeconds, 1);
        QVERIFY(SchedulesFile::read(app.file("none.conf")).isEmpty());
    }
    void aFolderThatCannotBeWrittenIsSaid()
    {
        TempAppFolder app;
        ReadOnlyFolder readOnly(app.path());
        QCOMPARE(SchedulesFile::write(app.file("Schedules.conf"), {withRules({"Mon 08:00-09:00"})}),
                 RunError::PermissionDenied);
    }
};

QTEST_MAIN(TestSchedule)
#include "tst_schedule.moc"
