#pragma once

#include "CommandLine.h"

#include <QByteArray>
#include <QJsonValue>
#include <QString>
#include <QStringList>

// A command that comes in over MQTT, on "<base>/cmd/<verb>", with a JSON object as its payload,
// read into the request the command line and the bus carry out, or refused whole: a payload that is
// not JSON, a key the verb does not take, a value of the wrong type or out of range, an address
// that is not http or https. Nothing that comes from a broker is trusted, and nothing of a refused
// command is done. The same payloads serve the remote page's JSON API.
//
//   open      {"address": "https://...", "where": "new" | "current" | "slot" | "default", "slot": 1..8}
//   run       {"list": "Lobby", "interval": 1..86400, "loop": true, "severalWindows": false,
//              "keepLoaded": false}
//   reload    {"slot": 1..8}                (the current window without it)
//   pause     {"paused": true | false}     (false resumes; without it, pauses)
//   stop, next, previous, pause, resume, raise: {} (or nothing)
// Every payload may carry "id" (a string or a whole number), given back with the result.
namespace MqttCommand {

// A payload longer than this is refused unread.
inline constexpr qsizetype kMaxPayload = 16 * 1024;

// The verbs a command may name, in the order the docs list them.
const QStringList& verbs();

struct Decoded
{
    CommandRequest request;
    QJsonValue id;  // the caller's id of the request: a string, a number, or null
    QString error;  // why it was refused; empty when it was read whole
    bool ok() const { return error.isEmpty(); }
};

Decoded decode(const QString& verb, const QByteArray& payload);

// The result given back for a request: {"id": ..., "verb": "...", "ok": true|false, "reason": "..."}.
QByteArray result(const QJsonValue& id, const QString& verb, bool ok, const QString& reason);

} // namespace MqttCommand
