#include "SleepWatch.h"

#include "EventLog.h"

SleepWatch::SleepWatch(const QDBusConnection& bus, QObject* parent) : QObject(parent), m_bus(bus)
{
    // Only logind's own signal counts: the match names its service, so another program on the bus
    // cannot make the pages reload.
    m_listening = m_bus.isConnected() &&
                  m_bus.connect(QStringLiteral("org.freedesktop.login1"), QStringLiteral("/org/freedesktop/login1"),
                                QStringLiteral("org.freedesktop.login1.Manager"), QStringLiteral("PrepareForSleep"),
                                this, SLOT(prepareForSleep(bool)));
}

void SleepWatch::prepareForSleep(bool sleeping)
{
    EventLog::write(sleeping ? QStringLiteral("the machine goes to sleep") : QStringLiteral("the machine woke up"));
    if (sleeping)
        emit goingToSleep();
    else
        emit wokeUp();
}
