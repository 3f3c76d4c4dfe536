#pragma once

#include "base/arena.h"

#include <cstdint>

// A look-up table from a key to a position in a list (or any other number), made for a known number
// of entries. When memory runs out it stays empty and its arena is marked as failed; whoever owns
// the arena reports that, so the rules built on an index test nothing.
struct Index {
    uint64_t *keys = nullptr;
    uint32_t *values = nullptr;
    uint32_t mask = 0;
    bool built = false;
};

constexpr uint32_t INDEX_NONE = UINT32_MAX;

void index_start(Index *index, Arena *arena, size_t entries);

// The value kept for the key: the first one given (index_first) or the latest (index_last).
// Both return the value that the key had before, INDEX_NONE for a new key.
uint32_t index_first(Index *index, uint64_t key, uint32_t value);
uint32_t index_last(Index *index, uint64_t key, uint32_t value);

uint32_t index_find(const Index *index, uint64_t key); // INDEX_NONE when absent
