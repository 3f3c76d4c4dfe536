#include "targets.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    TARNLET_FUZZ_TARGET(data, size);
    return 0;
}
