#include "FuzzInput.h"
#include "core/ButtonFile.h"
#include "core/Globals.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    ClearButtons();
    ParseButtonText(fuzzText(data, size));
    return 0;
}
