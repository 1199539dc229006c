#include "watch/ProcessMemory.h"

#include <QCoreApplication>
#include <QTest>

#include <cstring>
#include <limits>
#include <memory>

// How much a page's process holds, and when a page over the limit is loaded again.
class TestProcessMemory : public QObject
{
    Q_OBJECT

    const QDateTime t0{QDate(2026, 5, 1), QTime(10, 0)};
    static constexpr qint64 MB = 1024 * 1024;

private slots:
    void theResidentMemoryOfAProcessIsRead()
    {
        const qint64 before = ProcessMemory::residentBytes(QCoreApplication::applicationPid());
        QVERIFY(before > 1 * MB);
        // 64 MB written to is held in RAM: the reading grows with it.
        auto block = std::make_unique<char[]>(size_t(64 * MB));
        std::memset(block.get(), 1, size_t(64 * MB));
        const qint64 after = ProcessMemory::residentBytes(QCoreApplication::applicationPid());
        QVERIFY2(after - before >= 60 * MB, qPrintable(QString::number((after - before) / MB)));
        QCOMPARE(block[size_t(32 * MB)], char(1));
    }
    void aProcessThatIsNotThereHoldsNothing()
    {
        QCOMPARE(ProcessMemory::residentBytes(0), qint64(0));
        QCOMPARE(ProcessMemory::residentBytes(-5), qint64(0));
        QCOMPARE(ProcessMemory::residentBytes(std::numeric_limits<int>::max()), qint64(0));
    }
    void aPageWithinTheLimitOrWithNoLimitIsLeftAlone()
    {
        PageMemoryGuard guard;
        QCOMPARE(guard.look(100 * MB, 200 * MB, true, t0), PageMemoryGuard::Verdict::Fine);
        QCOMPARE(guard.look(200 * MB, 200 * MB, true, t0), PageMemoryGuard::Verdict::Fine);
        QCOMPARE(guard.look(5000 * MB, 0, true, t0), PageMemoryGuard::Verdict::Fine);
    }
    void aHiddenPageOverTheLimitIsLoadedAgainOnceUntilItIsShown()
    {
        PageMemoryGuard guard;
        QCOMPARE(guard.look(300 * MB, 200 * MB, true, t0), PageMemoryGuard::Verdict::Reload);
        // It takes as much again at once: not loaded round and round out of sight.
        QCOMPARE(guard.look(300 * MB, 200 * MB, true, t0.addSecs(2)), PageMemoryGuard::Verdict::OverLimit);
        QCOMPARE(guard.look(300 * MB, 200 * MB, true, t0.addSecs(600)), PageMemoryGuard::Verdict::StillOver);
        // Shown at last, over the limit for long: loaded again at this show.
        QCOMPARE(guard.look(300 * MB, 200 * MB, false, t0.addSecs(610)), PageMemoryGuard::Verdict::Reload);
        // Hidden again: its next time out of sight brings it back fresh.
        QCOMPARE(guard.look(300 * MB, 200 * MB, true, t0.addSecs(640)), PageMemoryGuard::Verdict::Reload);
    }
    void aShownPageIsLoadedAgainAfterFiveMinutesOverTheLimit()
    {
        PageMemoryGuard guard;
        QCOMPARE(guard.look(300 * MB, 200 * MB, false, t0), PageMemoryGuard::Verdict::OverLimit);
        QCOMPARE(guard.look(300 * MB, 200 * MB, false, t0.addSecs(299)), PageMemoryGuard::Verdict::StillOver);
        QCOMPARE(guard.look(300 * MB, 200 * MB, false, t0.addSecs(300)), PageMemoryGuard::Verdict::Reload);
        QCOMPARE(guard.look(300 * MB, 200 * MB, false, t0.addSecs(302)), PageMemoryGuard::Verdict::OverLimit);
    }
    void aShortPeakCostsNoReload()
    {
        PageMemoryGuard guard;
        QCOMPARE(guard.look(300 * MB, 200 * MB, false, t0), PageMemoryGuard::Verdict::OverLimit);
        QCOMPARE(guard.look(150 * MB, 200 * MB, false, t0.addSecs(200)), PageMemoryGuard::Verdict::Fine);
        QCOMPARE(guard.look(300 * MB, 200 * MB, false, t0.addSecs(250)), PageMemoryGuard::Verdict::OverLimit);
        QCOMPARE(guard.look(300 * MB, 200 * MB, false, t0.addSecs(500)), PageMemoryGuard::Verdict::StillOver);
        QCOMPARE(guard.look(300 * MB, 200 * MB, false, t0.addSecs(550)), PageMemoryGuard::Verdict::Reload);
    }
};

QTEST_GUILESS_MAIN(TestProcessMemory)
#include "tst_processmemory.moc"
