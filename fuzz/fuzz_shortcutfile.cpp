#include "FuzzInput.h"
#include "core/ProfileString.h"
#include "shortcuts/ShortcutFile.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char*>(data), qsizetype(size));
    const QString value = ProfileValue(TextCodec::decodeWithUtf16(bytes), QStringLiteral("InternetShortcut"),
                                       QStringLiteral("URL"), QString());
    if (value.size() > 2047)
        std::abort();
    // The same bytes as a title: the name never holds a "/" and never grows past its limit + 4.
    if (const auto name = ShortcutFileName(fuzzText(data, size))) {
        if (name->contains(u'/'))
            std::abort();
    }
    return 0;
}
