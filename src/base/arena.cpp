#include "base/arena.h"

#include <cstdint>
#include <cstring>

namespace
{

// Blocks grow with the arena, so that their number stays small and little of the last one is
// unused.
constexpr size_t FIRST_BLOCK = size_t{16} << 10;
constexpr size_t LARGEST_SHARE = 8;
constexpr size_t LARGEST_BLOCK = size_t{32} << 20;
// Readable bytes after the last record of a block, since text is read in words.
constexpr size_t READ_AHEAD = 8;
// Two tokens of the greatest length and the records of the longest chain of reductions.
constexpr size_t RESERVE_SIZE = size_t{96} << 10;

} // namespace

struct ArenaBlock {
    ArenaBlock *older;
    size_t size;
};

static char *block_start(ArenaBlock *block) { return reinterpret_cast<char *>(block + 1); }

static ArenaBlock *block_request(size_t size)
{
    auto *block =
        static_cast<ArenaBlock *>(memory_request_large(sizeof(ArenaBlock) + size + READ_AHEAD));
    if (block)
        block->size = size;
    return block;
}

static void block_return(ArenaBlock *block)
{
    if (block)
        memory_return_large(block, sizeof(ArenaBlock) + block->size + READ_AHEAD);
}

static void block_enter(Arena *arena, ArenaBlock *block)
{
    block->older = arena->blocks;
    arena->blocks = block;
    arena->next = block_start(block);
    arena->end = arena->next + block->size;
    ARENA_CLOSE(arena->next, block->size);
}

static void grow_blocks(Arena *arena, size_t size)
{
    arena->total += size;
    if (arena->block_size < LARGEST_BLOCK && arena->block_size * LARGEST_SHARE <= arena->total)
        arena->block_size *= 2;
}

bool arena_start(Arena *arena)
{
    *arena = Arena{};
    arena->block_size = FIRST_BLOCK;
    arena->reserve = block_request(RESERVE_SIZE);
    arena->failed = !arena->reserve;
    return !arena->failed;
}

void arena_release(Arena *arena)
{
    while (ArenaBlock *block = arena->blocks) {
        arena->blocks = block->older;
        block_return(block);
    }
    block_return(arena->reserve);
    *arena = Arena{};
}

void *arena_grow(Arena *arena, size_t size)
{
    const size_t room = size + sizeof(uint64_t) + ARENA_GUARD;
    size_t wanted = arena->block_size > room ? arena->block_size : room;
    ArenaBlock *block = block_request(wanted);
    if (block) {
        grow_blocks(arena, wanted);
    } else {
        // Two things use up the reserve: a path or name of the caller that is longer than any
        // token, and a host that keeps calling after failures. There is no memory left to write to.
        if (!arena->reserve || arena->reserve->size < room)
            arena_exhausted();
        arena->failed = true;
        block = arena->reserve;
        arena->reserve = nullptr;
    }
    block_enter(arena, block);
    return arena_alloc(arena, size);
}

char *arena_text(Arena *arena, const char *text, size_t length)
{
    auto *copy = static_cast<char *>(arena_alloc(arena, length + 1));
    if (length)
        std::memcpy(copy, text, length);
    return copy;
}

void *arena_try(Arena *arena, size_t count, size_t size)
{
    size_t bytes = 0;
    if (arena->failed || __builtin_mul_overflow(count, size, &bytes) || bytes > SIZE_MAX / 2) {
        arena->failed = true;
        return nullptr;
    }
    bytes = (bytes + 7) & ~size_t{7};
    const size_t room = bytes + ARENA_GUARD;
    if (room <= static_cast<size_t>(arena->end - arena->next))
        return arena_alloc(arena, bytes);
    const bool large = room > arena->block_size;
    ArenaBlock *block = block_request(large ? bytes : arena->block_size);
    if (!block) {
        arena->failed = true;
        return nullptr;
    }
    if (!large) {
        grow_blocks(arena, arena->block_size);
        block_enter(arena, block);
        return arena_alloc(arena, bytes);
    }
    // A large array gets a block of its own after the current one, which stays in use.
    if (arena->blocks) {
        block->older = arena->blocks->older;
        arena->blocks->older = block;
    } else {
        block_enter(arena, block);
        arena->next = arena->end;
        ARENA_OPEN(block_start(block), bytes);
    }
    return block_start(block);
}
