#include "frame/places.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace
{

// A line costs two bytes: its begin is kept as an offset into one of these blocks.
constexpr uint32_t BLOCK_BITS = 13;
constexpr uint32_t BLOCK_SIZE = uint32_t{1} << BLOCK_BITS;

struct LineBlock {
    const uint16_t *begins;
    uint32_t count;
    uint32_t lines_before; // in the blocks before
};

} // namespace

struct SourceFile {
    SourceFile *before;
    const char *path;
    const LineBlock *blocks;
    const TokenMarks *marks;
    uint32_t base;
    uint32_t length;
};

// The highest bit of each byte below 14, line ends among them, and perhaps of some above such a
// byte.
static uint64_t control_bits(uint64_t word)
{
    return (word - 0x0E0E0E0E0E0E0E0E) & ~word & 0x8080808080808080;
}

// The begins of the lines whose line ends stand in [from, end), as offsets from `from`.
static uint32_t find_lines(const char *text, size_t length, size_t from, size_t end,
                           uint16_t *begins)
{
    uint32_t count = 0;
    for (size_t at = from; at < end; at += sizeof(uint64_t)) {
        uint64_t word;
        std::memcpy(&word, text + at, sizeof word);
        for (uint64_t found = control_bits(word); found; found &= found - 1) {
            const size_t behind = at + static_cast<size_t>(std::countr_zero(found)) / 8 + 1;
            if (behind > end)
                break;
            const char last = text[behind - 1];
            if (last == '\r' && behind < length && text[behind] == '\n')
                continue; // the newline ends the line
            if (last != '\n' && last != '\r')
                continue;
            begins[count++] = static_cast<uint16_t>(behind - from);
        }
    }
    return count;
}

SourceBase source_add(Arena *arena, SourceMap *sources, const char *path, const char *text,
                      size_t length)
{
    sources->full |= length >= UINT32_MAX - 1 - sources->end;
    if (sources->full)
        return {};
    const size_t count = (length >> BLOCK_BITS) + 1;
    auto *blocks = arena_array<LineBlock>(arena, count);
    auto *marks = arena_array<TokenMarks>(arena, length / 64 + 1);
    if (!blocks || !marks)
        return {};
    uint32_t lines = 1;
    for (size_t i = 0; i < count; i++) {
        uint16_t begins[BLOCK_SIZE];
        const size_t from = i << BLOCK_BITS;
        const size_t end = std::min<size_t>(from + BLOCK_SIZE, length);
        const uint32_t found = find_lines(text, length, from, end, begins);
        auto *kept = arena_array<uint16_t>(arena, found);
        if (!kept)
            return {};
        std::copy_n(begins, found, kept);
        blocks[i] = {kept, found, lines};
        lines += found;
    }
    auto *file = arena_new<SourceFile>(arena);
    // The place after the end of a text is not that of the next one's begin.
    *file = {.before = sources->latest,
             .path = path,
             .blocks = blocks,
             .marks = marks,
             .base = sources->end + 1,
             .length = static_cast<uint32_t>(length)};
    sources->latest = file;
    sources->end = file->base + file->length;
    return {file->base, marks};
}

static const SourceFile *file_of(const SourceMap *sources, uint32_t offset)
{
    if (!sources || sources->full || !offset)
        return nullptr;
    const SourceFile *file = sources->latest;
    while (file && file->base > offset)
        file = file->before;
    return file;
}

SourcePosition source_position(const SourceMap *sources, uint32_t offset)
{
    const SourceFile *file = file_of(sources, offset);
    if (!file)
        return {};
    offset = std::min(offset - file->base, file->length);
    // A line begins after its line end, so the last begin up to here may be that of an earlier
    // block.
    uint32_t at = offset >> BLOCK_BITS;
    const LineBlock *block = &file->blocks[at];
    const uint16_t *behind =
        std::upper_bound(block->begins, block->begins + block->count, offset - (at << BLOCK_BITS));
    const auto line = static_cast<int32_t>(block->lines_before + (behind - block->begins));
    while (behind == block->begins && at > 0) {
        block = &file->blocks[--at];
        behind = block->begins + block->count;
    }
    const uint32_t begin = behind == block->begins ? 0 : (at << BLOCK_BITS) + behind[-1];
    return {file->path, line, static_cast<int32_t>(offset - begin + 1)};
}

// The number of the bit that is set so many set bits after the first from `from` on; `size` when
// there are not so many.
static uint32_t find_mark(const SourceFile *file, uint64_t TokenMarks::*bits, uint32_t from,
                          uint32_t behind)
{
    const uint32_t words = file->length / 64 + 1;
    uint64_t mask = ~uint64_t{0} << from % 64;
    for (uint32_t at = from / 64; at < words; at++, mask = ~uint64_t{0}) {
        uint64_t word = file->marks[at].*bits & mask;
        const auto count = static_cast<uint32_t>(std::popcount(word));
        if (behind >= count) {
            behind -= count;
            continue;
        }
        for (; behind > 0; behind--)
            word &= word - 1;
        return at * 64 + static_cast<uint32_t>(std::countr_zero(word));
    }
    return words * 64;
}

Place source_token(const SourceMap *sources, uint32_t offset, uint32_t behind)
{
    const SourceFile *file = file_of(sources, offset);
    if (!file || offset - file->base > file->length)
        return {};
    const uint32_t begin = find_mark(file, &TokenMarks::begins, offset - file->base, behind);
    const uint32_t last = find_mark(file, &TokenMarks::ends, std::min(begin, file->length), 0);
    if (begin >= file->length || last >= file->length)
        return {};
    return {file->base + begin, file->base + last + 1};
}
