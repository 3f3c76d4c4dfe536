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

/** Largest resident size of this program so far, in bytes; 0 where the system does not tell. */
uint64_t peak_resident();

/**
 * Large blocks come from the system and go back to it each time, as in a process that reads
 * one file. Otherwise small descriptions would be read into memory that is warm from the run
 * before and large ones would not, and growth would seem steeper than it is.
 */
void memory_always_fresh();
