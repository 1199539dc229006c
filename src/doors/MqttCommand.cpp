#include "MqttCommand.h"

#include "core/WebAddress.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QSet>

namespace MqttCommand {

namespace {

constexpr int kSlots = 8;
constexpr int kMaxInterval = 24 * 60 * 60;
constexpr qsizetype kMaxId = 200;
constexpr qsizetype kMaxListName = 1000;

using Action = CommandRequest::Action;

struct Verb
{
    const char* name;
    Action action;
    QSet<QString> keys; // what its payload may hold, besides "id"
};

const QList<Verb>& table()
{
    static const QList<Verb> verbs = {
        {"open", Action::Open, {"address", "where", "slot"}},
        {"run", Action::Run, {"list", "interval", "loop", "severalWindows", "keepLoaded"}},
        {"stop", Action::Stop, {}},
        {"next", Action::Next, {}},
        {"previous", Action::Previous, {}},
        {"pause", Action::Pause, {"paused"}},
        {"resume", Action::Resume, {}},
        {"reload", Action::Reload, {"slot"}},
        {"raise", Action::Raise, {}},
    };
    return verbs;
}

// A whole number in [low, high], or why not.
bool wholeNumber(const QJsonObject& object, const QString& key, int low, int high, int* out, QString* error)
{
    const QJsonValue value = object.value(key);
    const double number = value.toDouble(-1e300);
    if (!value.isDouble() || number != double(qint64(number)) || number < low || number > high) {
        *error = QStringLiteral("\"%1\" must be a whole number from %2 to %3").arg(key).arg(low).arg(high);
        return false;
    }
    *out = int(number);
    return true;
}

bool flag(const QJsonObject& object, const QString& key, bool* out, QString* error)
{
    if (!object.contains(key))
        return true;
    if (!object.value(key).isBool()) {
        *error = QStringLiteral("\"%1\" must be true or false").arg(key);
        return false;
    }
    *out = object.value(key).toBool();
    return true;
}

bool readOpen(const QJsonObject& object, CommandRequest* request, QString* error)
{
    const QJsonValue address = object.value(QStringLiteral("address"));
    if (!address.isString()) {
        *error = QStringLiteral("\"address\" must be given, as text");
        return false;
    }
    const std::optional<QString> page = WebAddress::fromOutside(address.toString());
    if (!page) {
        *error = QStringLiteral("only http and https addresses are opened");
        return false;
    }
    request->pages = {*page};
    const QString where = object.value(QStringLiteral("where")).toString(QStringLiteral("default"));
    if (object.contains(QStringLiteral("where")) && !object.value(QStringLiteral("where")).isString()) {
        *error = QStringLiteral("\"where\" must be text");
        return false;
    }
    if (where == u"default") {
        request->where = CommandRequest::Where::AsTheNewButton;
    } else if (where == u"new") {
        request->where = CommandRequest::Where::NewWindow;
    } else if (where == u"current") {
        request->where = CommandRequest::Where::CurrentWindow;
    } else if (where == u"slot") {
        request->where = CommandRequest::Where::Slot;
        return wholeNumber(object, QStringLiteral("slot"), 1, kSlots, &request->slot, error);
    } else {
        *error = QStringLiteral("\"where\" must be \"default\", \"new\", \"current\" or \"slot\"");
        return false;
    }
    if (object.contains(QStringLiteral("slot"))) {
        *error = QStringLiteral("\"slot\" goes with \"where\": \"slot\"");
        return false;
    }
    return true;
}

bool readRun(const QJsonObject& object, CommandRequest* request, QString* error)
{
    const QJsonValue list = object.value(QStringLiteral("list"));
    if (!list.isString() || list.toString().trimmed().isEmpty() || list.toString().size() > kMaxListName) {
        *error = QStringLiteral("\"list\" must be given, as the list's name");
        return false;
    }
    request->list = list.toString();
    if (object.contains(QStringLiteral("interval"))
        && !wholeNumber(object, QStringLiteral("interval"), 1, kMaxInterval, &request->intervalSeconds, error))
        return false;
    return flag(object, QStringLiteral("loop"), &request->loop, error)
           && flag(object, QStringLiteral("severalWindows"), &request->severalWindows, error)
           && flag(object, QStringLiteral("keepLoaded"), &request->keepLoaded, error);
}

} // namespace

const QStringList& verbs()
{
    static const QStringList names = [] {
        QStringList list;
        for (const Verb& verb : table())
            list << QString::fromLatin1(verb.name);
        return list;
    }();
    return names;
}

Decoded decode(const QString& verb, const QByteArray& payload)
{
    Decoded decoded;
    if (payload.size() > kMaxPayload) {
        decoded.error = QStringLiteral("the payload is longer than %1 bytes").arg(kMaxPayload);
        return decoded;
    }
    QJsonObject object;
    if (!payload.trimmed().isEmpty()) {
        QJsonParseError parseError;
        const QJsonDocument document = QJsonDocument::fromJson(payload, &parseError);
        if (parseError.error != QJsonParseError::NoError || !document.isObject()) {
            decoded.error = QStringLiteral("the payload is not a JSON object");
            return decoded;
        }
        object = document.object();
    }
    // The id first, so that even a refusal names the request it refuses.
    if (object.contains(QStringLiteral("id"))) {
        const QJsonValue id = object.value(QStringLiteral("id"));
        const bool whole = id.isDouble() && id.toDouble() == double(qint64(id.toDouble()));
        if (!(id.isString() && id.toString().size() <= kMaxId) && !whole) {
            decoded.error = QStringLiteral("\"id\" must be text of at most %1 characters or a whole number").arg(kMaxId);
            return decoded;
        }
        decoded.id = id;
        object.remove(QStringLiteral("id"));
    }
    const Verb* known = nullptr;
    for (const Verb& each : table())
        if (verb == QLatin1String(each.name))
            known = &each;
    if (!known) {
        decoded.error = QStringLiteral("there is no verb \"%1\"").arg(verb.left(100));
        return decoded;
    }
    for (auto it = object.constBegin(); it != object.constEnd(); ++it)
        if (!known->keys.contains(it.key())) {
            decoded.error = QStringLiteral("\"%1\" takes no \"%2\"").arg(verb, it.key().left(100));
            return decoded;
        }
    CommandRequest& request = decoded.request;
    request.action = known->action;
    QString error;
    bool read = true;
    if (known->action == Action::Open)
        read = readOpen(object, &request, &error);
    else if (known->action == Action::Run)
        read = readRun(object, &request, &error);
    else if (known->action == Action::Pause && object.contains(QStringLiteral("paused"))) {
        bool paused = true;
        read = flag(object, QStringLiteral("paused"), &paused, &error);
        request.action = paused ? Action::Pause : Action::Resume; // a switch's on and off
    } else if (known->action == Action::Reload && object.contains(QStringLiteral("slot")))
        read = wholeNumber(object, QStringLiteral("slot"), 1, kSlots, &request.slot, &error);
    if (!read) {
        decoded.error = error;
        decoded.request = CommandRequest();
    }
    return decoded;
}

QByteArray result(const QJsonValue& id, const QString& verb, bool ok, const QString& reason)
{
    QJsonObject object{{QStringLiteral("id"), id.isUndefined() ? QJsonValue() : id},
                       {QStringLiteral("verb"), verb},
                       {QStringLiteral("ok"), ok}};
    if (!reason.isEmpty())
        object.insert(QStringLiteral("reason"), reason);
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

} // namespace MqttCommand
