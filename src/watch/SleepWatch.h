#pragma once

#include <QDBusConnection>
#include <QObject>

// The machine going to sleep and waking up, as logind tells it on the system bus
// (org.freedesktop.login1.Manager.PrepareForSleep). Where there is no system bus or no logind,
// nothing is told, and nothing else changes.
class SleepWatch : public QObject
{
    Q_OBJECT

public:
    // Listens on `bus` (the system bus in the program; a private one in tests).
    explicit SleepWatch(const QDBusConnection& bus, QObject* parent = nullptr);

    bool listening() const { return m_listening; }

signals:
    void goingToSleep();
    void wokeUp();

private slots:
    void prepareForSleep(bool sleeping);

private:
    QDBusConnection m_bus;
    bool m_listening = false;
};
