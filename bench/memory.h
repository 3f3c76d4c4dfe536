#pragma once

#include <cstdint>

/** What malloc and its kin were asked for since allocations_start(). */
struct Allocations {
    uint64_t count; ///< calls that gave a new block or a larger one
    int64_t live;   ///< bytes, as the allocator rounds them
    int64_t peak;
};

void allocations_start();
Allocations allocations_stop();

/** Largest resident size of this process so far, in bytes; pages of mapped files included. */
uint64_t peak_resident();
