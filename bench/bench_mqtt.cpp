// Vantrel on a local Mosquitto broker: from a command published to the broker to its verb done in
// Vantrel (the window brought up), median of 100, beside the floor of a bare publish to a
// subscriber through the same broker in the same run (both QoS 1, both through libmosquitto on
// this event loop); and from a change of the state to the state received by a subscriber.
#include "BenchSupport.h"

#include "../tests/support/MosquittoBroker.h"
#include "../tests/support/VerbsHarness.h"
#include "doors/MqttDoor.h"
#include "verbs/Verbs.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>

#include <cstdio>

namespace {

constexpr int kRuns = 100;

struct TimedHost : DoorHost
{
    QElapsedTimer* clock = nullptr;
    qint64 raisedAt = -1;
    void raise(const QString&) override { raisedAt = clock->nsecsElapsed(); }
    void quit(bool) override {}
    bool runStartupList() override { return false; }
};

bool connect(MqttClient& client, int port, const QString& id)
{
    MqttClient::Settings settings;
    settings.port = port;
    settings.clientId = id;
    client.start(settings);
    return waitUntil([&] { return client.isConnected(); }, 5000);
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationVersion(QStringLiteral("bench"));
    QTemporaryDir dir;
    MosquittoBroker broker(dir.filePath(QStringLiteral("broker")));
    if (!broker.start()) {
        std::printf("FAILED: no mosquitto broker\n");
        return 1;
    }
    QElapsedTimer clock;
    clock.start();

    // The floor: a bare publish to a subscriber.
    MqttClient sender, receiver;
    if (!connect(sender, broker.port(), QStringLiteral("bench-sender")) || !connect(receiver, broker.port(), QStringLiteral("bench-receiver"))) {
        std::printf("FAILED: cannot connect to the broker\n");
        return 1;
    }
    qint64 receivedAt = -1;
    QString receivedTopic;
    QObject::connect(&receiver, &MqttClient::message, [&](const QString& topic, const QByteArray&) {
        receivedAt = clock.nsecsElapsed();
        receivedTopic = topic;
    });
    bool subscribed = false;
    QObject::connect(&receiver, &MqttClient::subscribed, [&] { subscribed = true; });
    receiver.subscribe(QStringLiteral("bench/floor"), 1);
    waitUntil([&] { return subscribed; }, 5000);
    std::vector<double> floor;
    for (int i = 0; i < kRuns; ++i) {
        receivedAt = -1;
        const qint64 sent = clock.nsecsElapsed();
        sender.publish(QStringLiteral("bench/floor"), QByteArray::number(i), 1, false);
        if (!waitUntil([&] { return receivedAt >= 0; }, 5000)) {
            std::printf("FAILED: a message to the subscriber was lost\n");
            return 1;
        }
        floor.push_back(double(receivedAt - sent) / 1e6);
    }

    // Commands through Vantrel's door.
    VerbsHarness h;
    TimedHost host;
    host.clock = &clock;
    MqttDoor door(h.verbs.get(), &host);
    MqttSettings settings;
    settings.enabled = true;
    settings.port = broker.port();
    settings.node = QStringLiteral("bench");
    settings.homeAssistant = false;
    door.setSettings(settings);
    if (!waitUntil([&] { return door.isListening(); }, 5000)) {
        std::printf("FAILED: Vantrel did not connect\n");
        return 1;
    }
    std::vector<double> commands;
    for (int i = 0; i < kRuns; ++i) {
        host.raisedAt = -1;
        const qint64 sent = clock.nsecsElapsed();
        sender.publish(QStringLiteral("vantrel/bench/cmd/raise"), QStringLiteral("{\"id\": %1}").arg(i).toUtf8(), 1, false);
        if (!waitUntil([&] { return host.raisedAt >= 0; }, 5000)) {
            std::printf("FAILED: a command was lost\n");
            return 1;
        }
        commands.push_back(double(host.raisedAt - sent) / 1e6);
    }

    // The state after a change, spaced past the four-a-second limit.
    subscribed = false;
    receiver.subscribe(QStringLiteral("vantrel/bench/state"), 1);
    waitUntil([&] { return subscribed; }, 5000);
    waitMs(300);
    std::vector<double> states;
    for (int i = 0; i < 20; ++i) {
        receivedAt = -1;
        waitMs(MqttDoor::kStateEveryMs + 50);
        const qint64 changed = clock.nsecsElapsed();
        h.verbs->openPage(QStringLiteral("https://state.example/%1").arg(i), QString(), OpenWhere::Slot, 1, Caller::Outside);
        if (!waitUntil([&] { return receivedAt >= 0 && receivedTopic.endsWith(QStringLiteral("/state")); }, 5000)) {
            std::printf("FAILED: a state was not published\n");
            return 1;
        }
        states.push_back(double(receivedAt - changed) / 1e6);
    }

    std::printf("Vantrel on a local mosquitto broker, medians of %d\n", kRuns);
    report("command to verb done", median(commands), "bare publish to sub", median(floor), 2.0);
    reportUnder("change to state received", median(states), 100.0);
    return 0;
}
