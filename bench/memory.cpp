#include "memory.h"

#include <cstddef>
#include <cstdio>
#include <malloc.h>

// These stand before those of the C library for the whole program, GLib included. While
// nothing is counted they cost one test.
extern "C" {
void *__libc_malloc(size_t size);
void *__libc_calloc(size_t count, size_t size);
void *__libc_realloc(void *block, size_t size);
void *__libc_memalign(size_t alignment, size_t size);
void __libc_free(void *block);
}

static bool counting;
static Allocations allocations;

static void count_block(void *block, size_t before)
{
    if (!block)
        return;
    allocations.count++;
    allocations.live += static_cast<int64_t>(malloc_usable_size(block) - before);
    if (allocations.live > allocations.peak)
        allocations.peak = allocations.live;
}

extern "C" {

void *malloc(size_t size)
{
    void *block = __libc_malloc(size);
    if (counting)
        count_block(block, 0);
    return block;
}

void *calloc(size_t count, size_t size)
{
    void *block = __libc_calloc(count, size);
    if (counting)
        count_block(block, 0);
    return block;
}

void *realloc(void *block, size_t size)
{
    const size_t before = counting && block ? malloc_usable_size(block) : 0;
    void *moved = __libc_realloc(block, size);
    if (counting)
        count_block(moved, before);
    return moved;
}

void *aligned_alloc(size_t alignment, size_t size)
{
    void *block = __libc_memalign(alignment, size);
    if (counting)
        count_block(block, 0);
    return block;
}

void free(void *block)
{
    if (counting && block)
        allocations.live -= static_cast<int64_t>(malloc_usable_size(block));
    __libc_free(block);
}

} // extern "C"

void allocations_start()
{
    allocations = {};
    counting = true;
}

Allocations allocations_stop()
{
    counting = false;
    return allocations;
}

// Not getrusage(): its figure is kept over exec and would be that of the parent.
uint64_t peak_resident()
{
    FILE *status = fopen("/proc/self/status", "r");
    if (!status)
        return 0;
    char line[256];
    unsigned long kilobytes = 0;
    while (fgets(line, sizeof line, status)) {
        if (sscanf(line, "VmHWM: %lu kB", &kilobytes) == 1)
            break;
    }
    fclose(status);
    return static_cast<uint64_t>(kilobytes) * 1024;
}

void memory_always_fresh()
{
    // Naming the threshold stops it from growing with each block that is given back.
    mallopt(M_MMAP_THRESHOLD, 128 * 1024);
    mallopt(M_TRIM_THRESHOLD, 128 * 1024);
}
