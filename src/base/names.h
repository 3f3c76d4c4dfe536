#pragma once

#include "base/arena.h"

#include <cstdint>
#include <string_view>
#include <type_traits>

// Every identifier of a reading (ports, pins, cells, instructions, registers, packages, ...) is
// stored once for each way of writing it, and handed out as a pointer to its text. Names that
// differ in case alone share one fold number, so comparing names and indexing by name never looks
// at characters again. Patterns, paths and free texts are not names.
struct NameTable {
    Arena *arena = nullptr;
    uint64_t *slots = nullptr; // high 16 bits: part of the hash; low 48 bits: address of the text
    uint32_t mask = 0;
    uint32_t used = 0;
    uint32_t folds = 0; // fold numbers given out; 0 stands for "no name"
};

// Room for about so many names to begin with; the table grows when there are more.
bool names_start(NameTable *names, Arena *arena, size_t expected = 0);
void names_release(NameTable *names);

// The hash of a text with letters folded; callers that have it already hand it to name_intern(). It
// sets, in every byte, the bit that tells a small letter from a capital. Some other characters
// become equal too, which only costs a comparison.
constexpr uint64_t FOLD_BITS = 0x2020202020202020;

constexpr uint64_t hash_step(uint64_t hash, uint64_t word)
{
    hash = (hash ^ (word | FOLD_BITS)) * 0x9FB21C651E98DF25;
    return hash ^ hash >> 32;
}

constexpr uint64_t load_word(const char *text, size_t length)
{
    uint64_t word = 0;
    if (!std::is_constant_evaluated() && length == 8)
        __builtin_memcpy(&word, text, 8);
    else
        for (size_t i = 0; i < length; i++)
            word |= uint64_t{static_cast<unsigned char>(text[i])} << 8 * i;
    return word;
}

// Names that differ only in their last character get neighbouring places. Numbered ports are such
// names, and they follow each other in every statement. So a table of a million names is read cache
// line by cache line.
constexpr uint64_t hash_end(uint64_t hash, char last)
{
    const uint64_t folded = static_cast<unsigned char>(last) | 0x20;
    hash ^= hash >> 17;
    return ((hash & ~uint64_t{15}) | ((hash + folded) & 15)) ^ folded << 56;
}

constexpr uint64_t text_hash(const char *text, size_t length)
{
    if (!length)
        return 0;
    const char last = text[--length];
    uint64_t hash = (length + 1) * 0x9E3779B97F4A7C15;
    for (; length >= 8; text += 8, length -= 8)
        hash = hash_step(hash, load_word(text, 8));
    if (length)
        hash = hash_step(hash, load_word(text, length));
    return hash_end(hash, last);
}

// The same for text in the scanner's input, which may be read eight bytes beyond its end.
inline uint64_t text_hash_padded(const char *text, size_t length)
{
    if (!length)
        return 0;
    const char last = text[--length];
    uint64_t hash = (length + 1) * 0x9E3779B97F4A7C15;
    for (; length >= 8; text += 8, length -= 8)
        hash = hash_step(hash, load_word(text, 8));
    if (length)
        hash = hash_step(hash, load_word(text, 8) & ((uint64_t{1} << 8 * length) - 1));
    return hash_end(hash, last);
}

// Equal but for the case of ASCII letters.
bool equal_folded(const char *a, const char *b, size_t length);

const char *name_intern(NameTable *names, const char *text, size_t length, uint64_t hash);
// The same for text in the scanner's input, which may be read eight bytes beyond its end.
const char *name_intern_padded(NameTable *names, const char *text, size_t length, uint64_t hash);

inline const char *name_intern(NameTable *names, std::string_view text)
{
    return name_intern(names, text.data(), text.size(), text_hash(text.data(), text.size()));
}

// The name in capitals, as instructions and registers are kept. NULL stays NULL.
const char *name_upper(NameTable *names, const char *name);

// Some name of the reading that equals the text without regard to case, or NULL: the way from a
// host's text to a fold number.
const char *name_find(const NameTable *names, std::string_view text);

// The number that all writings of a name share; 0 for NULL. Only for texts from name_intern().
inline uint32_t name_fold(const char *name)
{
    return name ? reinterpret_cast<const uint32_t *>(name)[-1] : 0;
}

inline bool same_name(const char *a, const char *b) { return name_fold(a) == name_fold(b); }

// For texts that are no names: comparison by characters, ASCII letters folded. Two NULLs are equal.
bool same_text(const char *a, const char *b);
bool text_starts_with(const char *text, const char *start); // letters folded
