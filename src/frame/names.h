#pragma once

#include "frame/arena.h"

#include <cstdint>
#include <string_view>

// Every identifier of a reading (ports, pins, cells, instructions, registers, packages, ...) is
// stored once, in the case of its first writing, and handed out as a pointer to its text. Names that
// differ in case alone share one fold number, so comparing names and indexing by name never looks at
// characters again. Patterns, paths and free texts are not names.
struct NameTable {
    Arena *arena = nullptr;
    uint64_t *slots = nullptr; // high 16 bits: part of the hash; low 48 bits: address of the text
    uint32_t mask = 0;
    uint32_t used = 0;
    uint32_t folds = 0; // fold numbers given out; 0 stands for "no name"
};

bool names_start(NameTable *names, Arena *arena);
void names_release(NameTable *names);

// The hash of a text with letters folded; names_intern() wants it from callers that have it already.
uint64_t text_hash(const char *text, size_t length);

const char *name_intern(NameTable *names, const char *text, size_t length, uint64_t hash);

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

inline bool same_name(const char *a, const char *b)
{
    return name_fold(a) == name_fold(b);
}

// For texts that are no names: comparison by characters, ASCII letters folded. Two NULLs are equal.
bool same_text(const char *a, const char *b);
bool text_starts_with(const char *text, const char *start); // letters folded
