#include "base/names.h"

#include <cstring>

namespace
{

constexpr uint64_t ADDRESS_BITS = (uint64_t{1} << 48) - 1;
constexpr uint32_t FIRST_SLOTS = 1024;
constexpr uint32_t MOST_FIRST_SLOTS = uint32_t{1} << 24;

} // namespace

static char fold(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c; }

bool equal_folded(const char *a, const char *b, size_t length)
{
    for (size_t i = 0; i < length; i++)
        if (a[i] != b[i] && fold(a[i]) != fold(b[i]))
            return false;
    return true;
}

static size_t slots_size(uint32_t mask) { return (size_t{mask} + 1) * sizeof(uint64_t); }

bool names_start(NameTable *names, Arena *arena, size_t expected)
{
    uint32_t slots = FIRST_SLOTS;
    while (slots < expected && slots < MOST_FIRST_SLOTS)
        slots *= 2;
    *names = NameTable{.arena = arena};
    names->slots = static_cast<uint64_t *>(memory_request_large(slots * sizeof(uint64_t)));
    names->mask = slots - 1;
    return names->slots != nullptr;
}

void names_release(NameTable *names)
{
    if (names->slots)
        memory_return_large(names->slots, slots_size(names->mask));
    *names = NameTable{};
}

static const char *slot_text(uint64_t slot)
{
    return reinterpret_cast<const char *>(slot & ADDRESS_BITS); // NOLINT(performance-no-int-to-ptr)
}

static void names_grow(NameTable *names)
{
    uint32_t mask = names->mask * 2 + 1;
    auto *slots = static_cast<uint64_t *>(memory_request_large(slots_size(mask)));
    if (!slots) {
        names->arena->failed = true;
        return;
    }
    for (uint32_t i = 0; i <= names->mask; i++) {
        if (!names->slots[i])
            continue;
        const char *text = slot_text(names->slots[i]);
        auto at = static_cast<uint32_t>(text_hash(text, std::strlen(text))) & mask;
        while (slots[at])
            at = (at + 1) & mask;
        slots[at] = names->slots[i];
    }
    memory_return_large(names->slots, slots_size(names->mask));
    names->slots = slots;
    names->mask = mask;
}

static const char *name_store(NameTable *names, const char *text, size_t length, uint32_t fold)
{
    auto *stored = static_cast<char *>(arena_alloc(names->arena, sizeof(uint32_t) + length + 1)) +
                   sizeof(uint32_t);
    reinterpret_cast<uint32_t *>(stored)[-1] = fold;
    std::memcpy(stored, text, length);
    return stored;
}

static bool same_writing(const char *known, const char *text, size_t length)
{
    return std::strncmp(known, text, length) == 0 && known[length] == '\0';
}

// Compares in words. The bytes after a name in the arena are readable, see Arena.
static bool same_writing_padded(const char *known, const char *text, size_t length)
{
    if (ARENA_GUARD) // there a sanitizer watches
        return same_writing(known, text, length);
    for (; length >= 8; known += 8, text += 8, length -= 8)
        if (load_word(known, 8) != load_word(text, 8))
            return false;
    const uint64_t mask = (uint64_t{1} << 8 * length) - 1;
    return ((load_word(known, 8) ^ load_word(text, 8)) & mask) == 0 && known[length] == '\0';
}

template <bool padded>
static const char *intern(NameTable *names, const char *text, size_t length, uint64_t hash)
{
    const uint64_t tag = hash & ~ADDRESS_BITS;
    auto at = static_cast<uint32_t>(hash) & names->mask;
    uint32_t fold = 0;
    for (uint64_t slot; (slot = names->slots[at]); at = (at + 1) & names->mask) {
        if ((slot & ~ADDRESS_BITS) != tag)
            continue;
        const char *known = slot_text(slot);
        if (padded ? same_writing_padded(known, text, length) : same_writing(known, text, length))
            return known;
        if (!fold && std::strlen(known) == length && equal_folded(known, text, length))
            fold = name_fold(known);
    }
    const char *stored = name_store(names, text, length, fold ? fold : ++names->folds);
    // A table that cannot grow is filled up to its last free slot. Then the reading has failed
    // (`failed`), and no name is entered any more.
    if (names->used < names->mask) {
        names->slots[at] = tag | reinterpret_cast<uint64_t>(stored);
        names->used++;
    }
    if (names->used > names->mask - names->mask / 4 && !names->arena->failed)
        names_grow(names);
    return stored;
}

const char *name_intern(NameTable *names, const char *text, size_t length, uint64_t hash)
{
    return intern<false>(names, text, length, hash);
}

const char *name_intern_padded(NameTable *names, const char *text, size_t length, uint64_t hash)
{
    return intern<true>(names, text, length, hash);
}

const char *name_find(const NameTable *names, std::string_view text)
{
    if (!names->slots)
        return nullptr;
    uint64_t hash = text_hash(text.data(), text.size());
    auto at = static_cast<uint32_t>(hash) & names->mask;
    for (uint64_t slot; (slot = names->slots[at]); at = (at + 1) & names->mask) {
        const char *known = slot_text(slot);
        if ((slot & ~ADDRESS_BITS) == (hash & ~ADDRESS_BITS) && std::strlen(known) == text.size() &&
            equal_folded(known, text.data(), text.size()))
            return known;
    }
    return nullptr;
}

const char *name_upper(NameTable *names, const char *name)
{
    if (!name)
        return nullptr;
    size_t length = std::strlen(name);
    char capitals[64];
    char *upper = length < sizeof capitals
                      ? capitals
                      : static_cast<char *>(arena_alloc(names->arena, length + 1));
    bool changed = false;
    for (size_t i = 0; i < length; i++) {
        upper[i] =
            name[i] >= 'a' && name[i] <= 'z' ? static_cast<char>(name[i] - ('a' - 'A')) : name[i];
        changed |= upper[i] != name[i];
    }
    return changed ? name_intern(names, {upper, length}) : name;
}

bool same_text(const char *a, const char *b)
{
    if (!a || !b)
        return a == b;
    size_t length = std::strlen(a);
    return std::strlen(b) == length && equal_folded(a, b, length);
}

bool text_starts_with(const char *text, const char *start)
{
    size_t length = std::strlen(start);
    return std::strlen(text) >= length && equal_folded(text, start, length);
}
