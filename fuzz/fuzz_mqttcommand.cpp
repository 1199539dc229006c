#include "doors/MqttCommand.h"

#include <QJsonDocument>
#include <QUrl>

#include <cstdlib>

// Any bytes as a command from a broker: the first line names the verb, the rest is the payload.
// A command is refused with a reason and nothing in it, or read whole: an address to open is http
// or https, a window is one of the eight, an interval is in its range. Its result is JSON.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char*>(data), qsizetype(size));
    const qsizetype line = bytes.indexOf('\n');
    const QString verb = QString::fromUtf8(line < 0 ? bytes : bytes.left(line));
    const QByteArray payload = line < 0 ? QByteArray() : bytes.mid(line + 1);
    const MqttCommand::Decoded decoded = MqttCommand::decode(verb, payload);
    const CommandRequest& request = decoded.request;
    if (!decoded.ok()) {
        if (!request.pages.isEmpty() || !request.list.isEmpty() || request.slot != 0)
            std::abort();
    } else {
        if (!MqttCommand::verbs().contains(verb))
            std::abort();
        for (const QString& page : request.pages) {
            const QString scheme = QUrl(page).scheme();
            if (scheme != u"http" && scheme != u"https")
                std::abort();
        }
        if (request.slot < 0 || request.slot > 8 || request.intervalSeconds < 1 || request.intervalSeconds > 86400)
            std::abort();
    }
    const QByteArray result = MqttCommand::result(decoded.id, verb, decoded.ok(), decoded.error);
    if (!QJsonDocument::fromJson(result).isObject())
        std::abort();
    return 0;
}
