#include "watch/PageRecovery.h"

#include <QTest>

// When a page that failed or crashed is tried again.
class TestPageRecovery : public QObject
{
    Q_OBJECT
private slots:
    void networkFailuresAreTriedAgainEverLessOften()
    {
        PageRecovery page;
        page.loadStarted("https://wall/");
        QList<double> delays;
        for (int i = 0; i < 12; ++i) {
            delays << page.loadFailed("https://wall/", true);
            page.loadStarted("https://wall/"); // the retry
        }
        QCOMPARE(delays, (QList<double>{2, 4, 8, 16, 32, 64, 128, 256, 300, 300, 300, 300}));
        QCOMPARE(page.state(), PageRecovery::State::Retrying);
        QVERIFY(page.networkBack());
        page.loadSucceeded();
        QCOMPARE(page.state(), PageRecovery::State::Shown);
        QVERIFY(!page.networkBack());
        QCOMPARE(page.loadFailed("https://wall/", true), 2.0); // a new failure starts again at 2 s
    }
    void anotherAddressForgetsTheFailures()
    {
        PageRecovery page;
        page.loadFailed("https://a/", true);
        page.loadFailed("https://a/", true);
        page.loadStarted("https://b/");
        QCOMPARE(page.failures(), 0);
        QCOMPARE(page.loadFailed("https://b/", true), 2.0);
    }
    void otherFailuresAreNotTriedAgain()
    {
        PageRecovery page;
        QCOMPARE(page.loadFailed("https://a/", false), -1.0);
        QCOMPARE(page.state(), PageRecovery::State::Failed);
        PageRecovery off;
        PageRecovery::Policy policy;
        policy.networkRetry = false;
        off.setPolicy(policy);
        QCOMPARE(off.loadFailed("https://a/", true), -1.0);
    }
    void crashesAreReloadedThreeTimesInTenMinutes()
    {
        PageRecovery page;
        QCOMPARE(page.crashed(100), 2.0);
        QCOMPARE(page.state(), PageRecovery::State::CrashedReloading);
        page.loadSucceeded();
        QCOMPARE(page.crashed(200), 2.0);
        QCOMPARE(page.crashed(300), 2.0);
        QCOMPARE(page.crashed(400), -1.0); // the fourth within ten minutes
        QCOMPARE(page.state(), PageRecovery::State::GivenUp);
        // Ten minutes after the first reload, one is allowed again.
        QCOMPARE(page.crashed(700), 2.0);
        QCOMPARE(page.crashed(701), -1.0);
    }
    void theCrashBudgetFollowsThePolicy()
    {
        PageRecovery page;
        PageRecovery::Policy policy;
        policy.crashReloads = 0;
        page.setPolicy(policy);
        QCOMPARE(page.crashed(1), -1.0);
        policy.crashReloads = 1;
        policy.crashDelaySeconds = 5;
        policy.crashWindowSeconds = 60;
        page.setPolicy(policy);
        QCOMPARE(page.crashed(10), 5.0);
        QCOMPARE(page.crashed(20), -1.0);
        QCOMPARE(page.crashed(71), 5.0);
    }
};

QTEST_GUILESS_MAIN(TestPageRecovery)
#include "tst_pagerecovery.moc"
