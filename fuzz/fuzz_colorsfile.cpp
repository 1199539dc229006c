#include "FuzzInput.h"
#include "core/ColorsFile.h"
#include "core/Globals.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    ReadColorsText(fuzzText(data, size));
    (void)FormatColors();
    return 0;
}
