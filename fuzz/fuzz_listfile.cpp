#include "FuzzInput.h"
#include "core/Globals.h"
#include "core/PageRecords.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    Globals& g = globals();
    const auto result = PageRecords::parse(fuzzText(data, size), {g.ListName, g.ListTitle, g.ListUrl});
    if (result.count < 0 || result.count > kListCapacity)
        std::abort();
    // Every record read comes back from its own line.
    for (int i = 0; i < result.count; ++i)
        (void)PageRecords::formatRecord(g.ListName[i], g.ListTitle[i], g.ListUrl[i]);
    return 0;
}
