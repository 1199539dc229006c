#include "core/Clock.h"

#include <QTest>

class TestClock : public QObject
{
    Q_OBJECT
private slots:
    void manualClockStandsInForTheSystemClock()
    {
        ManualClock clock(QDateTime(QDate(2026, 11, 20), QTime(10, 30, 15, 500)));
        Clock::setInstance(&clock);
        QCOMPARE(Clock::secondsSinceMidnight(), 10 * 3600 + 30 * 60 + 15.5);
        QCOMPARE(Clock::timeOfDay(), QTime(10, 30, 15, 500));
        QCOMPARE(Clock::today(), QDate(2026, 11, 20));
        clock.advanceSeconds(0.6);
        QCOMPARE(Clock::secondsSinceMidnight(), 10 * 3600 + 30 * 60 + 16.1);
        clock.setNow(QDateTime(QDate(2026, 11, 20), QTime(23, 59, 59)));
        clock.advanceSeconds(2);
        QCOMPARE(Clock::secondsSinceMidnight(), 1.0); // past midnight the count starts again
        QCOMPARE(Clock::today(), QDate(2026, 11, 21));
        Clock::setInstance(nullptr);
    }
    void systemClockReadsTheTimeOfDay()
    {
        Clock::setInstance(nullptr);
        const QTime before = QTime::currentTime();
        const double seconds = Clock::secondsSinceMidnight();
        const QTime after = QTime::currentTime();
        if (after >= before) { // not across midnight
            QVERIFY(seconds >= before.msecsSinceStartOfDay() / 1000.0);
            QVERIFY(seconds <= after.msecsSinceStartOfDay() / 1000.0);
        }
        QCOMPARE(Clock::today().isValid(), true);
    }
};

QTEST_GUILESS_MAIN(TestClock)
#include "tst_clock.moc"
