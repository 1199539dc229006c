#include "SyncState.h"

#include "core/Globals.h"

#include <QCryptographicHash>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>

namespace SyncState {

namespace {

// Inodes and nanosecond times pass the 53 bits a JSON number keeps exactly: they travel as text.
QString number(quint64 value)
{
    return QString::number(value);
}

QJsonObject entryObject(const QString& id, const TreeMerge::Item& item)
{
    QJsonObject object{{QStringLiteral("id"), id}, {QStringLiteral("title"), item.title}};
    if (!item.parent.isEmpty())
        object.insert(QStringLiteral("parent"), item.parent);
    if (item.folder)
        object.insert(QStringLiteral("folder"), true);
    else
        object.insert(QStringLiteral("url"), item.url);
    return object;
}

QJsonObject placeObject(const QString& id, const SyncedFolder::Place& place)
{
    QJsonObject object{{QStringLiteral("id"), id},
                       {QStringLiteral("path"), place.path},
                       {QStringLiteral("inode"), number(place.inode)},
                       {QStringLiteral("modified"), number(quint64(place.modified))},
                       {QStringLiteral("size"), number(quint64(place.size))}};
    if (place.folder)
        object.insert(QStringLiteral("folder"), true);
    else
        object.insert(QStringLiteral("url"), place.url);
    return object;
}

} // namespace

QString path()
{
    return appFilePath(QString::fromLatin1(kFileName));
}

State load(const QString& file)
{
    QFile in(file);
    if (!in.open(QIODevice::ReadOnly))
        return {};
    const QJsonDocument document = QJsonDocument::fromJson(in.readAll());
    const QJsonObject top = document.object();
    if (top.value(QStringLiteral("format")).toInt() != kFormat)
        return {};
    State state;
    state.file = top.value(QStringLiteral("file")).toString();
    state.agreed = QByteArray::fromHex(top.value(QStringLiteral("agreed")).toString().toLatin1());
    for (const QJsonValue& value : top.value(QStringLiteral("base")).toArray()) {
        const QJsonObject object = value.toObject();
        const QString id = object.value(QStringLiteral("id")).toString();
        if (id.isEmpty())
            return {};
        state.base.insert(id, {object.value(QStringLiteral("parent")).toString(),
                               object.value(QStringLiteral("folder")).toBool(),
                               object.value(QStringLiteral("title")).toString(),
                               object.value(QStringLiteral("url")).toString()});
    }
    for (const QJsonValue& value : top.value(QStringLiteral("places")).toArray()) {
        const QJsonObject object = value.toObject();
        const QString id = object.value(QStringLiteral("id")).toString();
        if (id.isEmpty())
            return {};
        state.places.insert(id, {object.value(QStringLiteral("path")).toString(),
                                 object.value(QStringLiteral("folder")).toBool(),
                                 object.value(QStringLiteral("inode")).toString().toULongLong(),
                                 object.value(QStringLiteral("modified")).toString().toLongLong(),
                                 object.value(QStringLiteral("size")).toString().toLongLong(),
                                 object.value(QStringLiteral("url")).toString()});
    }
    if (!TreeMerge::isWhole(state.base))
        return {};
    return state;
}

bool save(const QString& file, const State& state)
{
    QJsonArray base, places;
    QStringList ids = state.base.keys();
    ids.sort();
    for (const QString& id : std::as_const(ids))
        base.append(entryObject(id, state.base.value(id)));
    ids = state.places.keys();
    ids.sort();
    for (const QString& id : std::as_const(ids))
        places.append(placeObject(id, state.places.value(id)));
    const QJsonObject top{{QStringLiteral("format"), kFormat},
                          {QStringLiteral("file"), state.file},
                          {QStringLiteral("agreed"), QString::fromLatin1(state.agreed.toHex())},
                          {QStringLiteral("base"), base},
                          {QStringLiteral("places"), places}};
    QSaveFile out(file);
    if (!out.open(QIODevice::WriteOnly))
        return false;
    out.write(QJsonDocument(top).toJson(QJsonDocument::Compact));
    return out.commit();
}

QByteArray hashOf(const QByteArray& bytes)
{
    return QCryptographicHash::hash(bytes, QCryptographicHash::Sha256);
}

} // namespace SyncState
