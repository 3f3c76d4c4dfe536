#include "targets.h"
void fuzz_calls(const uint8_t *, size_t) {}
