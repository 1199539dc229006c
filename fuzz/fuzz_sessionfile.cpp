#include "session/SessionFile.h"
#include "core/Globals.h"

#include <cstdlib>

// Any bytes: a session is refused with a reason or accepted within its bounds, and an accepted one
// is written and read back as the same session.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char*>(data), qsizetype(size));
    QString problem;
    const std::optional<Session> session = SessionFile::parse(bytes, &problem);
    if (!session)
        return problem.isEmpty() ? (std::abort(), 0) : 0;
    if (session->currentSlot < 0 || session->currentSlot > kWindowSlots)
        std::abort();
    for (const SessionWindow& window : session->windows)
        if (window.slot < 1 || window.slot > kWindowSlots || window.address.trimmed().isEmpty())
            std::abort();
    const std::optional<Session> again = SessionFile::parse(SessionFile::format(*session));
    if (!again || !(*again == *session))
        std::abort();
    return 0;
}
