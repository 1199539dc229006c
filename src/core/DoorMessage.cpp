#include "DoorMessage.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QtEndian>

namespace DoorMessage {

namespace {

std::optional<QJsonObject> objectFrom(const QByteArray& payload, QString* problem)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(payload, &error);
    if (error.error != QJsonParseError::NoError || !document.isObject()) {
        if (problem)
            *problem = QStringLiteral("not a JSON object");
        return std::nullopt;
    }
    return document.object();
}

bool refuse(QString* problem, const QString& why)
{
    if (problem)
        *problem = why;
    return false;
}

// A text field: absent is empty; anything but a string is refused.
bool textField(const QJsonObject& object, const QString& key, QString* out, QString* problem)
{
    const QJsonValue value = object.value(key);
    if (value.isUndefined()) {
        out->clear();
        return true;
    }
    if (!value.isString())
        return refuse(problem, QStringLiteral("\"%1\" is not text").arg(key));
    *out = value.toString();
    return true;
}

} // namespace

QByteArray frame(const QByteArray& payload)
{
    QByteArray out(kMagic, 4);
    out.append(char(kVersion));
    char length[4];
    qToBigEndian(quint32(payload.size()), length);
    out.append(length, 4);
    return out + payload;
}

QByteArray encode(const Request& request)
{
    const QJsonObject object{{QStringLiteral("args"), QJsonArray::fromStringList(request.arguments)},
                             {QStringLiteral("cwd"), request.folder},
                             {QStringLiteral("token"), request.activationToken}};
    return frame(QJsonDocument(object).toJson(QJsonDocument::Compact));
}

QByteArray encode(const Reply& reply)
{
    const QJsonObject object{{QStringLiteral("status"), reply.status},
                             {QStringLiteral("out"), reply.out},
                             {QStringLiteral("err"), reply.err},
                             {QStringLiteral("more"), reply.more}};
    return frame(QJsonDocument(object).toJson(QJsonDocument::Compact));
}

std::optional<Request> requestFrom(const QByteArray& payload, QString* problem)
{
    const std::optional<QJsonObject> object = objectFrom(payload, problem);
    if (!object)
        return std::nullopt;
    const QJsonValue args = object->value(QStringLiteral("args"));
    if (!args.isArray()) {
        refuse(problem, QStringLiteral("no list of arguments"));
        return std::nullopt;
    }
    const QJsonArray list = args.toArray();
    if (list.size() > kMostArguments) {
        refuse(problem, QStringLiteral("more than %1 arguments").arg(kMostArguments));
        return std::nullopt;
    }
    Request request;
    for (const QJsonValue& argument : list) {
        if (!argument.isString()) {
            refuse(problem, QStringLiteral("an argument is not text"));
            return std::nullopt;
        }
        request.arguments.append(argument.toString());
    }
    if (!textField(*object, QStringLiteral("cwd"), &request.folder, problem) ||
        !textField(*object, QStringLiteral("token"), &request.activationToken, problem))
        return std::nullopt;
    return request;
}

std::optional<Reply> replyFrom(const QByteArray& payload, QString* problem)
{
    const std::optional<QJsonObject> object = objectFrom(payload, problem);
    if (!object)
        return std::nullopt;
    const QJsonValue status = object->value(QStringLiteral("status"));
    const QJsonValue more = object->value(QStringLiteral("more"));
    if (!status.isDouble() || status.toDouble() != double(status.toInt()) || status.toInt() < 0 ||
        status.toInt() > 255) {
        refuse(problem, QStringLiteral("no exit status from 0 to 255"));
        return std::nullopt;
    }
    if (!more.isUndefined() && !more.isBool()) {
        refuse(problem, QStringLiteral("\"more\" is not true or false"));
        return std::nullopt;
    }
    Reply reply;
    reply.status = status.toInt();
    reply.more = more.toBool();
    if (!textField(*object, QStringLiteral("out"), &reply.out, problem) ||
        !textField(*object, QStringLiteral("err"), &reply.err, problem))
        return std::nullopt;
    return reply;
}

void Reader::append(const QByteArray& bytes)
{
    if (!refused())
        m_buffer.append(bytes);
}

std::optional<QByteArray> Reader::next()
{
    if (refused())
        return std::nullopt;
    // Even the first bytes show a stranger: refused at once, not after waiting for a whole header.
    const QByteArray magic(kMagic, 4);
    if (!magic.startsWith(m_buffer.left(4))) {
        m_problem = QStringLiteral("not a message of Vantrel");
        return std::nullopt;
    }
    if (m_buffer.size() > 4 && quint8(m_buffer.at(4)) != kVersion) {
        m_problem = QStringLiteral("a message of version %1, not %2").arg(quint8(m_buffer.at(4))).arg(kVersion);
        return std::nullopt;
    }
    if (m_buffer.size() < kHeaderSize)
        return std::nullopt;
    const quint32 length = qFromBigEndian<quint32>(m_buffer.constData() + 5);
    if (length > quint32(kLongestPayload)) {
        m_problem = QStringLiteral("a message of %1 bytes, more than %2").arg(length).arg(kLongestPayload);
        return std::nullopt;
    }
    if (m_buffer.size() < kHeaderSize + qsizetype(length))
        return std::nullopt;
    QByteArray payload = m_buffer.mid(kHeaderSize, qsizetype(length));
    m_buffer.remove(0, kHeaderSize + qsizetype(length));
    return payload;
}

} // namespace DoorMessage
