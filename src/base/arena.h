#pragma once

#include "base/memory.h"

#include <cstddef>
#include <type_traits>

// Under the address sanitizer each piece of an arena ends in memory that must not be touched, so
// that a step beyond a record or text is seen although all of them lie in one block.
#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define ARENA_GUARDED 1
#endif
#elif defined(__SANITIZE_ADDRESS__)
#define ARENA_GUARDED 1
#endif
#ifdef ARENA_GUARDED
#include <sanitizer/asan_interface.h>
constexpr size_t ARENA_GUARD = 8;
#define ARENA_CLOSE(memory, size) ASAN_POISON_MEMORY_REGION(memory, size)
#define ARENA_OPEN(memory, size) ASAN_UNPOISON_MEMORY_REGION(memory, size)
#else
constexpr size_t ARENA_GUARD = 0;
#define ARENA_CLOSE(memory, size) ((void)0)
#define ARENA_OPEN(memory, size) ((void)0)
#endif

// Memory of one reading (the model) or of one check (its indexes): blocks that are handed out piece
// by piece and given back all at once. Borrowed pointers stay good as long as the arena.
//
// When the system has no more memory the arena goes on from a reserve that it set aside at its
// start and marks itself as failed. The reserve is ample for the current step, so the code that
// builds records tests nothing; the parser loop and the loops of the checks look at `failed` once a
// step and give up. A large array may be refused: arena_array() gives NULL then.
//
// Eight bytes after anything that an arena handed out may be read, so that text can be compared by
// words; not where ARENA_GUARD is set.
struct ArenaBlock;

struct Arena {
    ArenaBlock *blocks = nullptr;
    ArenaBlock *reserve = nullptr;
    char *next = nullptr;
    char *end = nullptr;
    size_t block_size = 0; // of the next block
    size_t total = 0;      // of all blocks
    bool failed = false;
};

// False when not even the reserve could be had.
bool arena_start(Arena *arena);
void arena_release(Arena *arena);

// The arena of one step, such as a check: `failed` at once when not even the reserve could be had.
struct Scratch : Arena {
    Scratch() { arena_start(this); }
    ~Scratch() { arena_release(this); }
    Scratch(const Scratch &) = delete;
    Scratch &operator=(const Scratch &) = delete;
};

void *arena_grow(Arena *arena, size_t size);

// Zeroed and aligned for any record of the model. Never NULL for sizes up to a token's length.
inline void *arena_alloc(Arena *arena, size_t size)
{
    const size_t room = ((size + 7) & ~size_t{7}) + ARENA_GUARD;
    if (room > static_cast<size_t>(arena->end - arena->next))
        return arena_grow(arena, size);
    void *piece = arena->next;
    arena->next += room;
    ARENA_OPEN(piece, size);
    return piece;
}

// A terminated copy.
char *arena_text(Arena *arena, const char *text, size_t length);

template <class T> T *arena_new(Arena *arena)
{
    static_assert(std::is_trivially_destructible_v<T> && alignof(T) <= 8);
    return static_cast<T *>(arena_alloc(arena, sizeof(T)));
}

// Called when even the reserve has no room for a step. It does not return. The program that uses
// arenas defines it.
[[noreturn]] void arena_exhausted();

// An array whose length comes from the file; NULL (and `failed`) when it cannot be had.
void *arena_try(Arena *arena, size_t count, size_t size);

template <class T> T *arena_array(Arena *arena, size_t count)
{
    static_assert(std::is_trivially_destructible_v<T> && alignof(T) <= 8);
    return static_cast<T *>(arena_try(arena, count, sizeof(T)));
}
