#include "FuzzInput.h"
#include "core/Globals.h"
#include "core/OptionsFile.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    ReadOptionsText(fuzzText(data, size));
    (void)FormatOptions();
    return 0;
}
