#include "targets.h"

// Descriptions and PPC/PRG files: the text is the input.

static void exercise_text(const uint8_t *data, size_t size, uint32_t steps)
{
    static MemoryFile file("description");
    file.write(data, size);
    exercise(file.path().c_str(), nullptr, steps, fingerprint(data, size));
}

void fuzz_bsdl(const uint8_t *data, size_t size) { exercise_text(data, size, CHECK); }

void fuzz_isc_aio(const uint8_t *data, size_t size)
{
    // Either driver runs the general checks when they have not run yet.
    constexpr uint32_t ORDERS[] = {CHECK | CHECK_ISC | CHECK_AIO, CHECK_ISC, CHECK_AIO,
                                   CHECK_ISC | CHECK_AIO};
    exercise_text(data, size, ORDERS[fingerprint(data, size) >> 16 & 3]);
}

void fuzz_prg(const uint8_t *data, size_t size) { exercise_text(data, size, CHECK_PRG); }
