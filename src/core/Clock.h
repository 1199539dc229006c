#pragma once

#include <QDate>
#include <QDateTime>
#include <QTime>

// The time of day as the program reads it. Timed runs count seconds since midnight; tests put a
// clock of their own in place and move it forward instead of waiting.
class Clock
{
public:
    virtual ~Clock() = default;

    // Local time of day in seconds since midnight, with fractions.
    static double secondsSinceMidnight();
    static QTime timeOfDay();
    static QDate today();
    // The local date and time.
    static QDateTime localNow();
    // Seconds since the epoch, with fractions: for waits that run past midnight (kept pages,
    // crash reloads, a person's hold).
    static double epochSeconds() { return double(localNow().toMSecsSinceEpoch()) / 1000.0; }

    // Replaces the clock; nullptr restores the system clock. The caller keeps ownership.
    static void setInstance(Clock* clock);

    // The local date and time this clock reads.
    virtual QDateTime now() const;
};

// A clock that stands still until it is moved: for tests and benchmarks.
class ManualClock : public Clock
{
public:
    explicit ManualClock(QDateTime start) : m_now(std::move(start)) {}
    void setNow(const QDateTime& now) { m_now = now; }
    void advanceSeconds(double seconds) { m_now = m_now.addMSecs(qint64(seconds * 1000.0)); }
    QDateTime now() const override { return m_now; }

private:
    QDateTime m_now;
};
