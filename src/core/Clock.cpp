#include "Clock.h"

namespace {

Clock* g_clock = nullptr;

const Clock& current()
{
    static Clock systemClock;
    return g_clock ? *g_clock : systemClock;
}

} // namespace

QDateTime Clock::now() const
{
    return QDateTime::currentDateTime();
}

double Clock::secondsSinceMidnight()
{
    const QTime t = current().now().time();
    return t.msecsSinceStartOfDay() / 1000.0;
}

QTime Clock::timeOfDay()
{
    return current().now().time();
}

QDate Clock::today()
{
    return current().now().date();
}

QDateTime Clock::localNow()
{
    return current().now();
}

void Clock::setInstance(Clock* clock)
{
    g_clock = clock;
}
