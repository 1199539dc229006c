#include "FuzzInput.h"
#include "core/Globals.h"
#include "core/PageRecords.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    Globals& g = globals();
    const auto result = PageRecords::parse(fuzzText(data, size), {g.HistGroup, g.HistTitle, g.HistUrl});
    if (result.count < 0 || result.count > kHistoryCapacity)
        std::abort();
    return 0;
}
