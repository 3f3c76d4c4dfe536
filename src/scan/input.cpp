#include "base/files.h"
#include "frame/memory_error.h"
#include "frame/model.h"
#include "scan/scan_state.h"
#include "scan/scanner.h"

#include <cstring>

// What the scanner reads: files, and the strings of an attribute read again as tokens.

namespace
{

constexpr size_t PADDING = 16;
constexpr uint32_t FIRST_PIECES = 64;

// Above every address, so that one comparison tells whether the end of a string piece was passed.
const char *const NO_PIECE =
    reinterpret_cast<const char *>(UINTPTR_MAX); // NOLINT(performance-no-int-to-ptr)

} // namespace

static InputFile *current_file(ScanState *reading) { return &reading->files[reading->depth]; }

static void set_origin(ScanState *reading, const char *at, uint32_t place)
{
    reading->origin = low_half(at) - place;
}

static void resume_file(ScanState *reading)
{
    reading->at = current_file(reading)->at;
    reading->end = current_file(reading)->end;
    reading->base = current_file(reading)->base;
    set_origin(reading, current_file(reading)->text, reading->base.begin);
}

// ------------------------------------------------------------------------------ the string store

static bool piece_room(StringStore *strings)
{
    if (strings->count < strings->capacity)
        return true;
    uint32_t capacity = strings->capacity ? strings->capacity * 2 : FIRST_PIECES;
    auto *pieces = static_cast<StringPiece *>(memory_request(capacity * sizeof(StringPiece)));
    if (!pieces)
        return false;
    if (strings->count)
        std::memcpy(pieces, strings->pieces, strings->count * sizeof(StringPiece));
    memory_return(strings->pieces);
    strings->pieces = pieces;
    strings->capacity = capacity;
    return true;
}

void store_string(Bsdl *bsdl, QuotedText piece)
{
    ScanState *reading = bsdl->reading;
    StringStore *strings = &reading->strings;
    // An empty piece counts only where it is the first.
    uint32_t length = piece.text && piece.length > 2 ? piece.length - 2 : 0;
    if (!length && strings->count)
        return;
    if (!piece_room(strings)) {
        memory_ran_out(bsdl);
        return;
    }
    uint32_t offset = strings->count ? strings->pieces[strings->count - 1].end : 0;
    if (length && offset)
        std::memmove(strings->begin + offset, piece.text + 1, length);
    else if (length)
        strings->begin = piece.text + 1;
    const InputFile *file = current_file(reading);
    const auto at = static_cast<uint32_t>(length ? piece.text + 1 - file->text : 0);
    strings->pieces[strings->count++] = {
        .end = offset + length, .place = file->base.begin + at, .line = reading->line};
}

static void enter_piece(ScanState *reading)
{
    StringStore *strings = &reading->strings;
    const StringPiece *piece = &strings->pieces[strings->current];
    const uint32_t begin = strings->current ? piece[-1].end : 0;
    reading->piece_end = strings->begin + piece->end;
    reading->line = piece->line;
    set_origin(reading, strings->begin + begin, piece->place);
}

void input_pass_pieces(ScanState *reading, const char *at)
{
    StringStore *strings = &reading->strings;
    while (at >= reading->piece_end && strings->current + 1 < strings->count) {
        strings->current++;
        enter_piece(reading);
    }
}

void input_leave_strings(ScanState *reading)
{
    StringStore *strings = &reading->strings;
    strings->active = false;
    strings->count = 0;
    reading->line = strings->line_behind;
    reading->piece_end = NO_PIECE;
    resume_file(reading);
}

void rescan_strings(Bsdl *bsdl)
{
    ScanState *reading = bsdl->reading;
    StringStore *strings = &reading->strings;
    // Nothing was stored when strings are skipped, or the only piece was empty: the file goes on.
    if (!strings->count || !strings->pieces[strings->count - 1].end) {
        strings->count = 0;
        return;
    }
    current_file(reading)->at = const_cast<char *>(reading->at);
    char *end = strings->begin + strings->pieces[strings->count - 1].end;
    *end = '\0'; // at the latest the closing quote of the last piece, which has been read
    reading->at = strings->begin;
    reading->end = end;
    reading->strings_behind = reading->place.end;
    strings->active = true;
    strings->current = 0;
    strings->line_behind = reading->line;
    enter_piece(reading);
}

void release_strings(Bsdl *bsdl)
{
    ScanState *reading = bsdl->reading;
    StringStore *strings = &reading->strings;
    if (strings->active && reading->looked_ahead && reading->at < reading->end) {
        // The character that ended the last token was taken out of the string with it. It is read
        // again, so that "HIGHZ, CLAMP" in the place of one name is not taken for HIGHZ.
        char *end = const_cast<char *>(reading->at) + 1;
        *end = '\0';
        reading->end = end;
        return;
    }
    if (strings->active)
        input_leave_strings(reading);
    strings->count = 0;
}

void drop_unread_strings(Bsdl *bsdl)
{
    if (!bsdl->reading->strings.active)
        bsdl->reading->strings.count = 0;
}

const char *join_strings(Bsdl *bsdl)
{
    const StringStore *strings = &bsdl->reading->strings;
    size_t length =
        strings->count ? strings->pieces[strings->count - 1].end + strings->count - 1 : 0;
    auto *text = static_cast<char *>(arena_try(&bsdl->arena, length + 1, 1));
    if (!text) {
        memory_ran_out(bsdl);
        return "";
    }
    char *at = text;
    uint32_t from = 0;
    for (uint32_t i = 0; i < strings->count; i++) {
        if (i)
            *at++ = '\n';
        uint32_t end = strings->pieces[i].end;
        if (end > from)
            std::memcpy(at, strings->begin + from, end - from);
        at += end - from;
        from = end;
    }
    return text;
}

// --------------------------------------------------------------------------------------- the lines

void input_count_line_end(ScanState *reading, const char *at)
{
    if (at >= reading->piece_end)
        input_pass_pieces(reading, at);
    // In a string the next character brings back the line of its piece.
    if (!reading->strings.active)
        reading->line++;
}

void input_count_line_ends(ScanState *reading, const char *at, const char *end)
{
    const auto length = static_cast<size_t>(end - at);
    if (!std::memchr(at, '\n', length) && !std::memchr(at, '\r', length))
        return; // most strings
    for (; at < end; at++)
        if (*at == '\n' || (*at == '\r' && at[1] != '\n'))
            input_count_line_end(reading, at);
}

void input_line_of_last_looked_at(ScanState *reading, const char *last)
{
    StringStore *strings = &reading->strings;
    uint32_t piece = strings->current;
    while (piece < strings->count && last >= strings->begin + strings->pieces[piece].end)
        piece++;
    reading->line = piece < strings->count ? strings->pieces[piece].line : strings->line_behind;
}

// -------------------------------------------------------------------------------------- the places

Place input_place(const ScanState *reading, const char *start, const char *end)
{
    const uint32_t begin = low_half(start) - reading->origin;
    const StringStore *strings = &reading->strings;
    if (!strings->active || end <= reading->piece_end)
        return {begin, low_half(end) - reading->origin};
    // What spans several pieces ends after its last byte in the last of them.
    const auto last = static_cast<uint32_t>(end - 1 - strings->begin);
    uint32_t piece = strings->current;
    while (piece + 1 < strings->count && last >= strings->pieces[piece].end)
        piece++;
    return {begin, strings->pieces[piece].place + last + 1 - strings->pieces[piece - 1].end};
}

// --------------------------------------------------------------------------------------- the files

// The text in its buffer, closed by a line end so that its last token is always ended.
static InputFile closed_text(char *text, size_t length, size_t capacity, const char *path)
{
    text[length] = '\n';
    std::memset(text + length + 1, 0, PADDING - 1);
    return {.text = text,
            .size = capacity + PADDING,
            .at = text,
            .end = text + length + 1,
            .path = path,
            .base = {}};
}

static bool load_file(InputFile *file, const char *path)
{
    std::FILE *stream = open_to_read(path);
    if (!stream)
        return false;
    std::setvbuf(stream, nullptr, _IONBF, 0); // straight into our own
    size_t capacity = size_t{64} << 10;
    if (std::fseek(stream, 0, SEEK_END) == 0) {
        long size = std::ftell(stream);
        if (size > 0)
            capacity = static_cast<size_t>(size) + 1;
        std::rewind(stream);
    }
    auto *text = static_cast<char *>(memory_request_large(capacity + PADDING));
    size_t length = 0;
    while (text) {
        length += std::fread(text + length, 1, capacity - length, stream);
        if (length < capacity)
            break;
        // A stream that does not tell its size, or a file that grows while it is read.
        auto *larger = static_cast<char *>(memory_request_large(2 * capacity + PADDING));
        if (larger)
            std::memcpy(larger, text, length);
        memory_return_large(text, capacity + PADDING);
        text = larger;
        capacity *= 2;
    }
    std::fclose(stream);
    if (!text)
        return false;
    *file = closed_text(text, length, capacity, path);
    return true;
}

static bool load_text(InputFile *file, std::string_view text, const char *path)
{
    auto *copy = static_cast<char *>(memory_request_large(text.size() + 1 + PADDING));
    if (!copy)
        return false;
    text.copy(copy, text.size());
    *file = closed_text(copy, text.size(), text.size() + 1, path);
    return true;
}

static void enter_source(Bsdl *bsdl, InputFile *file)
{
    file->base = source_add(&bsdl->arena, &bsdl->sources, file->path, file->text,
                            static_cast<size_t>(file->end - 1 - file->text));
}

static void close_file(InputFile *file) { memory_return_large(file->text, file->size); }

static void read_from(ScanState *reading)
{
    resume_file(reading);
    reading->line = 1;
}

bool reading_start(Bsdl *bsdl, ScanState *reading)
{
    InputFile *file = &reading->files[0];
    if (!(reading->source ? load_text(file, reading->source->text, bsdl->file_name)
                          : load_file(file, bsdl->file_name)))
        return false;
    enter_source(bsdl, &reading->files[0]);
    read_from(reading);
    reading->piece_end = NO_PIECE;
    reading->token = reading->at;
    return true;
}

void reading_end(ScanState *reading)
{
    for (int depth = reading->depth; depth >= 0; depth--)
        close_file(&reading->files[depth]);
    memory_return(reading->strings.pieces);
    *reading = ScanState{};
}

int include_depth(const Bsdl *bsdl) { return bsdl->reading->depth; }

const BsdlPackageText *find_package_text(const Bsdl *bsdl, const char *name)
{
    if (bsdl->reading->source)
        for (const BsdlPackageText &package : bsdl->reading->source->packages)
            if (same_text(package.name, name))
                return &package;
    return nullptr;
}

bool include_file(Bsdl *bsdl, const char *path, const BsdlPackageText *text)
{
    ScanState *reading = bsdl->reading;
    InputFile included;
    if (!(text ? load_text(&included, {text->text, text->text ? text->length : 0}, path)
               : load_file(&included, path)))
        return false;
    enter_source(bsdl, &included);
    current_file(reading)->at = const_cast<char *>(reading->at);
    reading->include_saved_line = reading->line;
    reading->files[++reading->depth] = included;
    read_from(reading);
    return true;
}

bool input_next(ScanState *reading)
{
    if (reading->strings.active) {
        input_leave_strings(reading);
        return true;
    }
    if (reading->depth == 0)
        return false;
    close_file(current_file(reading));
    reading->depth--;
    resume_file(reading);
    reading->line = reading->include_saved_line;
    return true;
}
