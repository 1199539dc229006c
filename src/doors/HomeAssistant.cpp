#include "HomeAssistant.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace HomeAssistant {

namespace {

struct Entity
{
    const char* component;
    const char* object;
};

constexpr Entity kEntities[] = {
    {"sensor", "page"},  {"sensor", "list"}, {"select", "run"},  {"button", "next"}, {"button", "previous"},
    {"button", "stop"},  {"button", "reload"}, {"switch", "pause"}, {"text", "open"},
};

QString configTopic(const Entity& entity, const QString& node)
{
    return QStringLiteral("%1/%2/%3/%4/config")
        .arg(QLatin1String(kPrefix), QLatin1String(entity.component), node, QLatin1String(entity.object));
}

// What every entity of this Vantrel shares: its device, and when it counts as there.
QJsonObject common(const QString& node, const QString& base, const QString& version, const char* object,
                   const QString& name)
{
    const QString id = QStringLiteral("vantrel_") + node;
    return {{QStringLiteral("name"), name},
            {QStringLiteral("unique_id"), id + u'_' + QLatin1String(object)},
            {QStringLiteral("object_id"), id + u'_' + QLatin1String(object)},
            {QStringLiteral("availability_topic"), base + QStringLiteral("/availability")},
            {QStringLiteral("payload_available"), QStringLiteral("online")},
            {QStringLiteral("payload_not_available"), QStringLiteral("offline")},
            {QStringLiteral("device"), QJsonObject{{QStringLiteral("identifiers"), QJsonArray{id}},
                                                   {QStringLiteral("name"), QStringLiteral("Vantrel ") + node},
                                                   {QStringLiteral("manufacturer"), QStringLiteral("Vantrel")},
                                                   {QStringLiteral("model"), QStringLiteral("Vantrel")},
                                                   {QStringLiteral("sw_version"), version}}}};
}

QJsonObject button(const QString& node, const QString& base, const QString& version, const char* verb, const QString& name)
{
    QJsonObject config = common(node, base, version, verb, name);
    config.insert(QStringLiteral("command_topic"), base + QStringLiteral("/cmd/") + QLatin1String(verb));
    config.insert(QStringLiteral("payload_press"), QStringLiteral("{}"));
    return config;
}

// The current window, in Home Assistant's templates over the published state.
const QString kCurrentWindow = QStringLiteral("{% set w = value_json.windows | selectattr('current') | list %}");

} // namespace

QList<Message> discovery(const QString& node, const QString& base, const QStringList& lists, const QString& version)
{
    const QString state = base + QStringLiteral("/state");
    QList<Message> messages;
    const auto add = [&](const Entity& entity, const QJsonObject& config) {
        messages.append({configTopic(entity, node), QJsonDocument(config).toJson(QJsonDocument::Compact)});
    };

    QJsonObject page = common(node, base, version, "page", QStringLiteral("Page"));
    page.insert(QStringLiteral("state_topic"), state);
    page.insert(QStringLiteral("value_template"),
                kCurrentWindow + QStringLiteral("{{ (w[0].address if w else 'none')[:255] }}"));
    page.insert(QStringLiteral("json_attributes_topic"), state);
    page.insert(QStringLiteral("json_attributes_template"),
                kCurrentWindow + QStringLiteral("{{ {'title': w[0].title if w else '', 'window': w[0].slot if w else 0} | tojson }}"));
    page.insert(QStringLiteral("icon"), QStringLiteral("mdi:web"));
    add(kEntities[0], page);

    QJsonObject list = common(node, base, version, "list", QStringLiteral("List"));
    list.insert(QStringLiteral("state_topic"), state);
    list.insert(QStringLiteral("value_template"), QStringLiteral("{{ value_json.run.list if value_json.run else 'none' }}"));
    list.insert(QStringLiteral("icon"), QStringLiteral("mdi:playlist-play"));
    add(kEntities[1], list);

    if (!lists.isEmpty()) {
        QJsonObject select = common(node, base, version, "run", QStringLiteral("Run list"));
        select.insert(QStringLiteral("command_topic"), base + QStringLiteral("/cmd/run"));
        select.insert(QStringLiteral("command_template"), QStringLiteral("{\"list\": {{ value | tojson }}, \"loop\": true}"));
        select.insert(QStringLiteral("options"), QJsonArray::fromStringList(lists));
        select.insert(QStringLiteral("state_topic"), state);
        select.insert(QStringLiteral("value_template"), QStringLiteral("{{ value_json.run.list if value_json.run else '' }}"));
        select.insert(QStringLiteral("icon"), QStringLiteral("mdi:playlist-play"));
        add(kEntities[2], select);
    } else {
        messages.append({configTopic(kEntities[2], node), QByteArray()});
    }

    add(kEntities[3], button(node, base, version, "next", QStringLiteral("Next")));
    add(kEntities[4], button(node, base, version, "previous", QStringLiteral("Previous")));
    add(kEntities[5], button(node, base, version, "stop", QStringLiteral("Stop")));
    add(kEntities[6], button(node, base, version, "reload", QStringLiteral("Reload")));

    QJsonObject pause = common(node, base, version, "pause", QStringLiteral("Pause"));
    pause.insert(QStringLiteral("command_topic"), base + QStringLiteral("/cmd/pause"));
    pause.insert(QStringLiteral("payload_on"), QStringLiteral("{\"paused\": true}"));
    pause.insert(QStringLiteral("payload_off"), QStringLiteral("{\"paused\": false}"));
    pause.insert(QStringLiteral("state_topic"), state);
    pause.insert(QStringLiteral("value_template"),
                 QStringLiteral("{{ 'ON' if value_json.run and value_json.run.paused else 'OFF' }}"));
    pause.insert(QStringLiteral("state_on"), QStringLiteral("ON"));
    pause.insert(QStringLiteral("state_off"), QStringLiteral("OFF"));
    pause.insert(QStringLiteral("icon"), QStringLiteral("mdi:pause"));
    add(kEntities[7], pause);

    QJsonObject open = common(node, base, version, "open", QStringLiteral("Open address"));
    open.insert(QStringLiteral("command_topic"), base + QStringLiteral("/cmd/open"));
    open.insert(QStringLiteral("command_template"), QStringLiteral("{\"address\": {{ value | tojson }}}"));
    open.insert(QStringLiteral("mode"), QStringLiteral("text"));
    open.insert(QStringLiteral("min"), 0);
    open.insert(QStringLiteral("max"), 255);
    open.insert(QStringLiteral("icon"), QStringLiteral("mdi:web-plus"));
    add(kEntities[8], open);
    return messages;
}

QList<Message> removal(const QString& node)
{
    QList<Message> messages;
    for (const Entity& entity : kEntities)
        messages.append({configTopic(entity, node), QByteArray()});
    return messages;
}

} // namespace HomeAssistant
