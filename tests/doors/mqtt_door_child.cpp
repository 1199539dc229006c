// A Vantrel door on a broker in a process of its own, for a test to kill: connects with the
// settings on its command line (port, node), says "listening" when the broker took its
// subscription, and waits to be killed.
#include "RecordingDoorHost.h"
#include "VerbsHarness.h"
#include "doors/MqttDoor.h"

#include <QCoreApplication>
#include <QTimer>

#include <cstdio>

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    if (argc < 3)
        return 2;
    VerbsHarness h;
    RecordingDoorHost host;
    MqttDoor door(h.verbs.get(), &host);
    MqttSettings settings;
    settings.enabled = true;
    settings.port = QByteArray(argv[1]).toInt();
    settings.node = QString::fromLocal8Bit(argv[2]);
    settings.homeAssistant = false;
    door.setSettings(settings);
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, [&] {
        if (door.isListening()) {
            std::puts("listening");
            std::fflush(stdout);
            poll.stop();
        }
    });
    poll.start(10);
    return app.exec();
}
