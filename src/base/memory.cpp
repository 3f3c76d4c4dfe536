#include "base/memory.h"

#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <sys/mman.h>

namespace
{

constexpr size_t LARGE_PAGE = size_t{2} << 20;

// Under a sanitizer every block comes from the heap that it watches.
#ifndef __has_feature // clang's way of telling
#define __has_feature(name) 0
#endif
#if defined(__SANITIZE_ADDRESS__) || __has_feature(address_sanitizer)
constexpr size_t SMALLEST_LARGE = SIZE_MAX;
#else
constexpr size_t SMALLEST_LARGE = 2 * LARGE_PAGE; // at most half a page in five is wasted
#endif

std::atomic<long> requests_left = -1;
std::atomic<bool> was_refused;
std::atomic<long> blocks_held;

} // namespace

void memory_fail_after(long requests)
{
    requests_left = requests;
    was_refused = false;
}

bool memory_was_refused() { return was_refused; }

static bool refused()
{
    if (requests_left < 0 || requests_left-- > 0)
        return false;
    requests_left = 0;
    was_refused = true;
    return true;
}

void *memory_request(size_t size)
{
    void *memory = refused() ? nullptr : std::calloc(1, size);
    blocks_held += memory != nullptr;
    return memory;
}

void memory_return(void *memory)
{
    blocks_held -= memory != nullptr;
    std::free(memory);
}

long memory_held() { return blocks_held; }

static size_t whole_pages(size_t size) { return (size + LARGE_PAGE - 1) & ~(LARGE_PAGE - 1); }

void *memory_request_large(size_t size)
{
    if (size < SMALLEST_LARGE)
        return memory_request(size);
    if (refused() || size > SIZE_MAX - 2 * LARGE_PAGE)
        return nullptr;
    // One page more than asked for, to cut an aligned piece from.
    const size_t wanted = whole_pages(size);
    const size_t mapped = wanted + LARGE_PAGE;
    void *mapping =
        mmap(nullptr, mapped, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (mapping == MAP_FAILED)
        return nullptr;
    auto *begin = static_cast<char *>(mapping);
    const size_t front =
        whole_pages(reinterpret_cast<uintptr_t>(begin)) - reinterpret_cast<uintptr_t>(begin);
    if (front)
        munmap(begin, front);
    munmap(begin + front + wanted, LARGE_PAGE - front);
    madvise(begin + front, wanted, MADV_HUGEPAGE);
    blocks_held++;
    return begin + front;
}

void memory_return_large(void *memory, size_t size)
{
    if (size < SMALLEST_LARGE) {
        memory_return(memory);
    } else if (memory) {
        munmap(memory, whole_pages(size));
        blocks_held--;
    }
}
