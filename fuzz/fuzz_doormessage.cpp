#include "core/DoorMessage.h"

#include <cstdlib>

// Any bytes on the socket, in two pieces: each frame read is refused as a request with a reason or
// accepted, and an accepted one framed again reads back the same. A refused reader gives nothing
// more.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char*>(data), qsizetype(size));
    DoorMessage::Reader reader;
    reader.append(bytes.left(bytes.size() / 2));
    reader.append(bytes.mid(bytes.size() / 2));
    for (std::optional<QByteArray> payload = reader.next(); payload; payload = reader.next()) {
        QString problem;
        const std::optional<DoorMessage::Request> request = DoorMessage::requestFrom(*payload, &problem);
        if (!request) {
            if (problem.isEmpty())
                std::abort();
            continue;
        }
        DoorMessage::Reader again;
        again.append(DoorMessage::encode(*request));
        const std::optional<QByteArray> back = again.next();
        if (!back || DoorMessage::requestFrom(*back) != request)
            std::abort();
    }
    if (reader.refused() && (reader.problem().isEmpty() || reader.next()))
        std::abort();
    return 0;
}
