#include "base/index.h"

#include "base/names.h"

#include <cstring>

// The upper half of the product depends on all bits of the key.
static uint32_t first_slot(uint64_t key)
{
    return static_cast<uint32_t>((key * 0x9E3779B97F4A7C15) >> 32);
}

static uint32_t slot_of(const Index *index, uint64_t key)
{
    auto at = first_slot(key) & index->mask;
    while (index->values[at] != INDEX_NONE && index->keys[at] != key)
        at = (at + 1) & index->mask;
    return at;
}

void index_start(Index *index, Arena *arena, size_t entries)
{
    *index = Index{.built = true};
    if (entries > UINT32_MAX / 4) {
        arena->failed = true;
        return;
    }
    size_t slots = 8;
    while (slots < entries + entries / 4)
        slots *= 2;
    auto *keys = arena_array<uint64_t>(arena, slots);
    auto *values = arena_array<uint32_t>(arena, slots);
    if (!keys || !values)
        return;
    std::memset(values, 0xFF, slots * sizeof *values);
    index->keys = keys;
    index->values = values;
    index->mask = static_cast<uint32_t>(slots - 1);
}

static uint32_t index_put(Index *index, uint64_t key, uint32_t value, bool replace)
{
    if (!index->values)
        return INDEX_NONE;
    uint32_t at = slot_of(index, key);
    uint32_t before = index->values[at];
    if (before == INDEX_NONE || replace) {
        index->keys[at] = key;
        index->values[at] = value;
    }
    return before;
}

uint32_t index_first(Index *index, uint64_t key, uint32_t value)
{
    return index_put(index, key, value, false);
}

uint32_t index_last(Index *index, uint64_t key, uint32_t value)
{
    return index_put(index, key, value, true);
}

uint32_t index_find(const Index *index, uint64_t key)
{
    return index->values ? index->values[slot_of(index, key)] : INDEX_NONE;
}
