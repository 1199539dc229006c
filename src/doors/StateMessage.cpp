#include "StateMessage.h"

#include "DoorCommands.h"
#include "verbs/Verbs.h"

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace StateMessage {

QByteArray json(const Verbs& verbs)
{
    QJsonObject state = DoorCommands::stateObject(verbs.state());
    state.insert(QStringLiteral("lists"), QJsonArray::fromStringList(verbs.listNames()));
    state.insert(QStringLiteral("version"), QCoreApplication::applicationVersion());
    return QJsonDocument(state).toJson(QJsonDocument::Compact);
}

} // namespace StateMessage
