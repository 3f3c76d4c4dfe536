#include "mutate.h"

#include <algorithm>
#include <cstring>

extern "C" size_t LLVMFuzzerMutate(uint8_t *data, size_t size, size_t limit);
extern "C" size_t LLVMFuzzerCustomMutator(uint8_t *data, size_t size, size_t limit, unsigned seed);
extern "C" size_t LLVMFuzzerCustomCrossOver(const uint8_t *first, size_t first_size,
                                            const uint8_t *second, size_t second_size, uint8_t *out,
                                            size_t limit, unsigned seed);

static std::string_view as_text(const uint8_t *data, size_t size)
{
    return {reinterpret_cast<const char *>(data), size};
}

static size_t hand_out(const std::string &text, uint8_t *out, size_t limit)
{
    const size_t size = std::min(text.size(), limit);
    if (size)
        std::memcpy(out, text.data(), size);
    return size;
}

size_t LLVMFuzzerCustomMutator(uint8_t *data, size_t size, size_t limit, unsigned seed)
{
    Random random(seed);
    // The dictionary and what comparisons were seen come in by the general mutator.
    if (random.one_in(8))
        return LLVMFuzzerMutate(data, size, limit);
    const std::string text(as_text(data, size));
    return hand_out(mutated(text, text, limit, &random), data, limit);
}

size_t LLVMFuzzerCustomCrossOver(const uint8_t *first, size_t first_size, const uint8_t *second,
                                 size_t second_size, uint8_t *out, size_t limit, unsigned seed)
{
    Random random(seed);
    return hand_out(
        mutated(as_text(first, first_size), as_text(second, second_size), limit, &random), out,
        limit);
}
