#pragma once

#include "base/arena.h"

#include <cstddef>
#include <cstdint>

// A range in the texts of a reading, from its first byte to after its last. All files of a reading
// lie one after the other in the order in which they were opened, the first byte at 1, so that two
// numbers name file, line and column. Both 0: no place.
struct Place {
    uint32_t begin;
    uint32_t end;
};

inline bool has_place(Place place) { return place.begin != 0; }
inline bool has_text(Place place) { return place.begin != place.end; }

// From the begin of the one to the end of the other.
inline Place place_through(Place first, Place last)
{
    return {first.begin, last.end > first.end ? last.end : first.end};
}

inline Place place_or(Place place, Place otherwise) { return has_place(place) ? place : otherwise; }

// What is kept of a text when it is not in memory any more: where its lines begin, and where its
// tokens begin and end. A carriage return, a newline, and the two together end a line.
struct SourceFile;

// Sixty-four bytes of a text, a bit for each.
struct TokenMarks {
    uint64_t begins;
    uint64_t ends; // the last byte of a token
};

// The files of one reading, in its arena.
struct SourceMap {
    SourceFile *latest;
    uint32_t end; // of all texts
    Place entity; // the name of what is described
    bool full;    // they are more than numbers can name: no place is known any more
};

struct SourceBase {
    uint32_t begin;
    TokenMarks *marks; // to be set by the scanner; NULL when there are no places
};

// Enters a text; seven bytes after it may be read.
SourceBase source_add(Arena *arena, SourceMap *sources, const char *path, const char *text,
                      size_t length);

[[gnu::always_inline]] inline void mark_token(const SourceBase &base, Place token)
{
    if (!base.marks)
        return;
    const uint32_t begin = token.begin - base.begin;
    const uint32_t last = token.end - 1 - base.begin;
    base.marks[begin / 64].begins |= uint64_t{1} << begin % 64;
    base.marks[last / 64].ends |= uint64_t{1} << last % 64;
}

// The token that begins at the offset, or the one so many tokens after it: a record keeps where
// its row of tokens begins, and what stands in the row is found by counting. None where there is
// no such token.
Place source_token(const SourceMap *sources, uint32_t offset, uint32_t behind);

struct SourcePosition {
    const char *file; // NULL for none, as lines and columns are 0 then
    int32_t line;     // from 1
    int32_t column;   // in bytes, from 1
};

SourcePosition source_position(const SourceMap *sources, uint32_t offset);
