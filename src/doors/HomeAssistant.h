#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

// What Home Assistant's MQTT discovery finds of Vantrel: retained messages on
// "homeassistant/<component>/<node>/<object>/config", each an entity of one device (the Vantrel
// of that node), available while "<base>/availability" says "online":
//   sensor page      the current window's address (its title as an attribute)
//   sensor list      the list running, or "none"
//   select run       the lists; choosing one runs it (in a loop, as a wall screen does)
//   button next, previous, stop, reload
//   switch pause     the rotation held or going on
//   text open        an address to open
// Every command is a payload the verbs take on "<base>/cmd/<verb>", so a press in Home Assistant
// goes through the same reading and the same refusals as any other command.
namespace HomeAssistant {

inline constexpr char kPrefix[] = "homeassistant";

struct Message
{
    QString topic;
    QByteArray payload; // JSON; empty to take the entity away
};

// The entities for the node `node` with topics under `base`, the lists there are and this version.
// The select is left out while there are no lists (Home Assistant takes no select without options).
QList<Message> discovery(const QString& node, const QString& base, const QStringList& lists, const QString& version);

// Empty retained messages on every entity's topic: Home Assistant forgets them.
QList<Message> removal(const QString& node);

} // namespace HomeAssistant
